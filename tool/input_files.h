#pragma once

#include <string>
#include <vector>

// Neither a folder, nor a pipe or device, which can be read but once.
bool is_file(const std::string &path);

// The files that a command line names: files as they are written, "-" for standard input, and for
// a folder every description (.bsd, .bsdl, .bsm) and data file (.ppc, .prg) below it, in the order
// of their names; a file with several paths by the first. Sets `all_read` to false, and says so,
// when a folder cannot be read or when there are no files at all: a pipeline with a wrong folder
// must not pass.
std::vector<std::string> collect_files(const std::vector<std::string> &paths, bool *all_read);
