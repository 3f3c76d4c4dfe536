#pragma once

#include <cstddef>
#include <functional>
#include <string>

// Work on many files in a child process, so that a file that ends its process does not end the
// run: the next child goes on behind it.
struct GuardedWork {
    // In the child: the result of an item, in one line.
    std::function<std::string(size_t item)> work;
    // In this process, in the order of the items.
    std::function<void(size_t item, const std::string &line)> done;
    std::function<void(size_t item)> lost;
};

void run_guarded(size_t count, const GuardedWork &work);
