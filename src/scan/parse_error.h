#pragma once

struct Bsdl;

struct ExpectedSymbols {
    static constexpr int MOST = 4;
    const char *names[MOST];
    int count;
};

void expected_symbol(ExpectedSymbols *expected, const char *name);

// "parse error", with the names when there are few, then what was found.
void report_expected(Bsdl *bsdl, const ExpectedSymbols *expected);

// Level 0, verbosity 1, "%s, found '%s' on line %i\n"; counts as a syntax error.
void report_syntax_error(Bsdl *bsdl, const char *text);
