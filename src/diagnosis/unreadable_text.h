#pragma once

#include "diagnosis/find.h"

#include <string_view>

// Whether a text is written in UTF-16, so that no statement of it can be read.
bool is_utf16(std::string_view text);

// What is to be said of such a text: the first error of the reading, and what it is.
void explain_utf16(Found *found);
