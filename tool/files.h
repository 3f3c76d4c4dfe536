#pragma once

#include <string>
#include <vector>

// The files that a command line names: files as they are written, "-" for standard input, and for
// a folder every description (.bsd, .bsdl, .bsm) and data file (.ppc, .prg) below it, in the order
// of their names. Folders that cannot be read go to `unreadable`.
std::vector<std::string> collect_files(const std::vector<std::string> &paths,
                                       std::vector<std::string> &unreadable);
