#pragma once

#include <string>
#include <vector>

struct ProcessResult {
    int status;         ///< exit status, -1 when the program could not be run or was ended
    double seconds;     ///< from the start to the end of the process
    std::string output; ///< what it wrote to standard output
};

/** Runs a program with its standard output in a pipe that is read to its end. */
ProcessResult run_process(const std::vector<std::string> &arguments);

double median(std::vector<double> values);
double seconds_now();

/** The folder for generated files, made at the first call and removed at exit. */
const std::string &scratch_folder();
