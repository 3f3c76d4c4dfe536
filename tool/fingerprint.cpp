#include "fingerprint.h"

#include <cctype>
#include <cstdio>
#include <cstring>

namespace
{

// FNV-1a: written down, so that fingerprints of one version are good for the next.
class Hash
{
  public:
    void add(std::string_view text)
    {
        for (const char c : text)
            add(static_cast<unsigned char>(c));
        add(0);
    }
    void add_less_blanks(std::string_view text)
    {
        for (const char c : text)
            if (!std::isspace(static_cast<unsigned char>(c)))
                add(static_cast<unsigned char>(c));
        add(0);
    }
    std::string text() const
    {
        char digits[17];
        std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
        return digits;
    }

  private:
    void add(unsigned char byte) { value = (value ^ byte) * 0x100000001B3; }
    uint64_t value = 0xCBF29CE484222325;
};

} // namespace

std::string without_line_numbers(std::string_view text)
{
    constexpr std::string_view BEFORE = "line ";
    std::string result;
    while (!text.empty()) {
        const size_t at = text.find(BEFORE);
        const size_t end = at == text.npos ? text.size() : at + BEFORE.size();
        result += text.substr(0, end);
        text.remove_prefix(end);
        if (at != text.npos)
            text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
    }
    return result;
}

std::string fingerprint_of(const BsdlFinding &finding, Sources &sources)
{
    Hash hash;
    hash.add(finding.rule);
    hash.add_less_blanks(without_line_numbers(finding.text));
    hash.add_less_blanks(sources.line_of(finding.place));
    return hash.text();
}
