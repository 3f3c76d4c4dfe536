#include "support/catalogue.h"

#include "support/description.h"
#include "tarnlet/diagnosis.h"

#include <regex>
#include <sstream>
#include <string_view>

namespace support
{

static bool is_reported_at(const BsdlRule &rule, int level)
{
    switch (rule.level) {
    case BSDL_RULE_ERROR:
        return level == ERROR;
    case BSDL_RULE_WARNING:
        return level == WARNING;
    case BSDL_RULE_NOTE:
        return level > WARNING;
    default:
        return level <= WARNING;
    }
}

static std::string_view trimmed(std::string_view text)
{
    constexpr const char *BLANKS = " \t\n";
    const size_t begin = text.find_first_not_of(BLANKS);
    return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

// What stands around the conversions of the form stands in the text, in order. Both end in a line
// end, so the last piece can stand at the end alone.
static bool reads_like(const std::string &form, std::string_view text)
{
    static const std::regex conversion("%[-.*0-9]*[a-z]");
    const std::vector<std::string> pieces(
        std::sregex_token_iterator(form.begin(), form.end(), conversion, -1), {});
    if (!text.starts_with(pieces.front()))
        return false;
    for (const std::string &piece : pieces) {
        const size_t at = text.find(piece);
        if (at == text.npos)
            return false;
        text.remove_prefix(at + piece.size());
    }
    return text.empty();
}

static bool has_form(const char *forms, const std::string &text)
{
    const std::string line = std::string(trimmed(text)) + "\n";
    std::istringstream stream(forms);
    for (std::string form; std::getline(stream, form);)
        if (reads_like(form + "\n", line))
            return true;
    return false;
}

void expect_in_catalogue(const Message &message)
{
    if (message.rule.empty()) {
        static const std::regex verdict("\t.* has errors|    BSDL .* semantic checks failed\n?");
        EXPECT_TRUE(message.level > WARNING || std::regex_match(message.text, verdict))
            << message << " has no rule";
        return;
    }
    const BsdlRule *rule = bsdlFindRule(message.rule.c_str());
    ASSERT_NE(rule, nullptr) << message << ": the catalogue has no rule " << message.rule;
    EXPECT_TRUE(is_reported_at(*rule, message.level)) << message << ": level of " << message.rule;
    const bool is_cut = message.text.size() >= 10000;
    EXPECT_TRUE(is_cut || has_form(rule->forms, message.text))
        << message << ": no form of " << message.rule;
}

} // namespace support
