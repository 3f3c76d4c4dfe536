#pragma once

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

// Holds an output to a file of tests/tool/golden, which it becomes when TARNLET_UPDATE=1 stands in
// the environment. The build folder is written as BUILD.
void expect_golden(const std::string &output, const std::string &name);

// A file below the build folder, made anew.
std::string scratch_file(const std::string &name, const std::string &text);
