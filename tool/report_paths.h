#pragma once

#include <string>

// A path as reports name it: from the folder in which the tool runs, where the file lies below it;
// else absolute.
std::string report_path(const std::string &path);

// The same as a reference of a URI; file://... for an absolute one.
std::string report_uri(const std::string &path);
