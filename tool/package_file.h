#pragma once

#include <string>
#include <string_view>

// The name of the package that a text holds; empty for another text.
std::string package_name(std::string_view text);

// A description without a mistake that uses the package: packages are read through one.
std::string description_using(const std::string &package);
