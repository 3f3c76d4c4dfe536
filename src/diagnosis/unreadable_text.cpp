#include "diagnosis/unreadable_text.h"

#include <algorithm>
#include <utility>

// By its mark, or where there is none by the zero byte that each letter of a description has.
bool is_utf16(std::string_view text)
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

void explain_utf16(Found *found)
{
    std::vector<Finding> &findings = found->findings;
    const auto is_error = [](const Finding &each) { return each.severity == BSDL_SEVERITY_ERROR; };
    const auto error = std::find_if(findings.begin(), findings.end(), is_error);
    if (error == findings.end())
        return;
    Finding only = std::move(*error);
    only.hint = "the file is UTF-16 text; save it as UTF-8 or ASCII";
    only.because = -1;
    findings.clear();
    findings.push_back(std::move(only));
    found->unchecked = "nothing was checked";
}
