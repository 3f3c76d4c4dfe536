#pragma once

#include "support/description.h"

#include <string>
#include <vector>

// What a run of the tool left behind.
struct ToolRun {
    int status = -1; // of the exit; 128 and more for a signal, as a shell gives it
    std::string out;
    std::string err;
};

// Runs the built tool in the source folder, standard input is `input`.
ToolRun run_tool(const std::vector<std::string> &arguments, const std::string &input = {});
// The same for arguments with a blank between them.
ToolRun run_line(const std::string &arguments);

bool contains(const std::string &text, const std::string &part);
// Holds an output to a file of tests/tool/golden, the build folder written as BUILD.
void expect_golden_output(const std::string &output, const std::string &name);

// A file made anew in the scratch folder of the process.
std::string scratch_file(const std::string &name, const std::string &text);
// examples/demo.bsd with one more use statement.
std::string demo_using(const std::string &package);
// Packages of packages, more than may be open at a time: that ends the process that reads it.
std::string description_that_ends_its_process();
