#pragma once

#include "diagnosis/find.h"

#include <string_view>

// A text of which no statement can be read, since it is written in UTF-16 or holds nothing: leaves
// the first error of the reading, and says what the text is. Any other text stays as it is found.
void explain_unreadable(std::string_view text, Found *found);
