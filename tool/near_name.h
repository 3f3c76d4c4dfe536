#pragma once

#include <string>
#include <string_view>
#include <vector>

// "; did you mean 'check'?" when a name is near to one of those that are known; empty else.
std::string did_you_mean(std::string_view name, const std::vector<std::string> &known);
