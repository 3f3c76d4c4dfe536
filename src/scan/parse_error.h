#pragma once

#include "frame/messages.h"

// Adds a token under the name that messages give it.
void expected_token(ExpectedTokens *expected, const char *name);

// "parse error", with the names when there are few, then what was found: level 0, verbosity 1,
// "%s, found '%s' on line %i\n"; counts as a syntax error.
void report_expected(Bsdl *bsdl, Place place, ExpectedTokens *expected);

// The same with a text of its own.
void report_syntax_error(Bsdl *bsdl, Place place, const char *text,
                         ExpectedTokens *expected = nullptr);
