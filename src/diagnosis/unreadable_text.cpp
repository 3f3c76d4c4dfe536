#include "diagnosis/unreadable_text.h"

#include <algorithm>
#include <utility>

// By its mark, or where there is none by the zero byte that each letter of a description has.
static bool is_utf16(std::string_view text)
{
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        return true;
    constexpr size_t ENOUGH = 32; // bytes
    text = text.substr(0, ENOUGH);
    if (text.size() < ENOUGH)
        return false;
    size_t zeros[2] = {};
    for (size_t i = 0; i < text.size(); i++)
        zeros[i % 2] += text[i] == '\0';
    return std::max(zeros[0], zeros[1]) == ENOUGH / 2 && std::min(zeros[0], zeros[1]) == 0;
}

static const char *why_unreadable(std::string_view text)
{
    if (is_utf16(text))
        return "the file is UTF-16 text; save it as UTF-8 or ASCII";
    if (text.empty())
        return "the file is empty";
    if (text.find_first_not_of(" \t\r\n") == text.npos)
        return "the file holds nothing but white space";
    return nullptr;
}

void explain_unreadable(std::string_view text, Found *found)
{
    const char *why = why_unreadable(text);
    std::vector<Finding> &findings = found->findings;
    const auto is_error = [](const Finding &each) { return each.severity == BSDL_SEVERITY_ERROR; };
    const auto error = std::find_if(findings.begin(), findings.end(), is_error);
    if (!why || error == findings.end())
        return;
    Finding only = std::move(*error);
    only.hint = why;
    only.because = -1;
    if (text.empty()) // the reader ends each text with a line end of its own
        only.text.resize(std::min(only.text.rfind(" on line "), only.text.size()));
    findings.clear();
    findings.push_back(std::move(only));
    found->unchecked = "nothing was checked";
}
