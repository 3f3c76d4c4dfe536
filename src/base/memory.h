#pragma once

#include <cstddef>

// All memory of the library comes through these, so that a test can make the n-th request fail. It
// is zeroed; NULL when the system has no more.
void *memory_request(size_t size);
void memory_return(void *memory);

// The same for what grows with the file: large requests are laid on pages of the system's large
// size where it has them, since a model of a million cells spends much of its time finding pages.
void *memory_request_large(size_t size);
void memory_return_large(void *memory, size_t size); // NULL is ignored

void memory_fail_after(long requests); // -1: never (the default)
bool memory_was_refused();             // since memory_fail_after()
long memory_held();                    // requests that were not returned yet
