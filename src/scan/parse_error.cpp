#include "scan/parse_error.h"

#include "frame/messages.h"
#include "frame/model.h"
#include "scan/scanner.h"

#include <cstdio>

void expected_symbol(ExpectedSymbols *expected, const char *name)
{
    if (expected->count < ExpectedSymbols::MOST)
        expected->names[expected->count] = name;
    expected->count++;
}

void report_expected(Bsdl *bsdl, const ExpectedSymbols *expected)
{
    char text[64 + ExpectedSymbols::MOST * 64] = "parse error";
    size_t used = 11;
    if (expected->count <= ExpectedSymbols::MOST)
        for (int i = 0; i < expected->count; i++)
            used +=
                static_cast<size_t>(std::snprintf(text + used, sizeof text - used, "%s`%s'",
                                                  i ? " or " : ", expecting ", expected->names[i]));
    report_syntax_error(bsdl, text);
}

void report_syntax_error(Bsdl *bsdl, const char *text)
{
    const TokenText found = scan_token_text(bsdl);
    parse_refused(bsdl, "syntax-error", "%s, found '%.*s' on line %i\n", text, found.length,
                  found.text, scan_line(bsdl));
}
