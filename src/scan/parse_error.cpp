#include "scan/parse_error.h"

#include "frame/model.h"
#include "scan/scanner.h"

#include <cstdio>

namespace
{

constexpr int32_t MOST_NAMED = 4; // in the text of a message

} // namespace

void expected_token(ExpectedTokens *expected, const char *name)
{
    if (expected->count < ExpectedTokens::MOST)
        expected->tokens[expected->count++] = {name, nullptr};
}

void report_expected(Bsdl *bsdl, Place place, ExpectedTokens *expected)
{
    char text[64 + MOST_NAMED * 64] = "parse error";
    size_t used = 11;
    if (expected->count <= MOST_NAMED)
        for (int32_t i = 0; i < expected->count; i++)
            used += static_cast<size_t>(std::snprintf(text + used, sizeof text - used, "%s`%s'",
                                                      i ? " or " : ", expecting ",
                                                      expected->tokens[i].name));
    report_syntax_error(bsdl, place, text, expected);
}

void report_syntax_error(Bsdl *bsdl, Place place, const char *text, ExpectedTokens *expected)
{
    const TokenText found = scan_token_text(bsdl);
    syntax_error(bsdl, {"syntax-error", place, expected}, "%s, found '%.*s' on line %i\n", text,
                 found.length, found.text, scan_line(bsdl));
}
