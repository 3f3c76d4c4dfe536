#pragma once

struct Bsdl;

// Says "Memory error" at verbosity 0 and ends the process. Hosts of readBsdl() are promised this
// when memory runs out while text is scanned or a package is searched. A reading from memory stops
// instead, and the caller goes on with what it has. Besides, only arena_exhausted() ends the
// process for lack of memory: when the reserve of an arena is used up.
void memory_ran_out(Bsdl *bsdl);
