#pragma once

#include "file_report.h"

#include <functional>
#include <string>
#include <vector>

struct ChildEvents {
    // A report, in the order of the files. False ends the run.
    std::function<bool(const FileReport &report)> report;
    // How many files have been read so far, and one that is being read. May be empty.
    std::function<void(size_t done, const std::string &path)> progress;
};

// Checks the files in child processes, up to `processes` at a time or, for 0, one for each
// processor, so that a file that ends its process does not end the run: such a file has the state
// ENDED, and another process goes on.
void check_in_children(const std::vector<std::string> &files, const CheckJob &job, size_t processes,
                       const ChildEvents &events);
