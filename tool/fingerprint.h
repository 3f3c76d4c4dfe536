#pragma once

#include "source_lines.h"

#include <string>
#include <string_view>

// Tells a finding from others of its file, by its rule, its text and the line that it stands on,
// not by the number of the line: sixteen hexadecimal digits. Findings alike on lines alike have the
// same one.
std::string fingerprint_of(const BsdlFinding &finding, Sources &sources);

// "parse error, found ':' on line 111" less its number, which changes with every line above.
std::string without_line_numbers(std::string_view text);
