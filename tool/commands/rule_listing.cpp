// --list-rules and --explain.

#include "commands/rule_listing.h"

#include "command.h"
#include "console.h"
#include "rule_table.h"

#include <cstdio>
#include <nlohmann/json.hpp>

using nlohmann::ordered_json;

namespace
{

constexpr size_t COLUMNS = 80;
constexpr int ID_COLUMNS = 40;

} // namespace

static std::string folded(std::string_view text, const char *indent)
{
    std::string result = indent;
    size_t column = result.size();
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        if (column + 1 + word.size() > COLUMNS && column > 0) {
            result += "\n" + std::string(indent);
            column = std::string_view(indent).size();
        } else if (result.size() > std::string_view(indent).size()) {
            result += ' ';
            column++;
        }
        result += word;
        column += word.size();
        text.remove_prefix(std::min(text.size(), word.size() + 1));
    }
    return result;
}

// The forms of the message, each through `format`.
static std::string forms(const RuleEntry &rule, const char *before, const char *behind)
{
    std::string result;
    for (std::string_view text = rule.text; !text.empty();) {
        const std::string_view form = text.substr(0, text.find('\n'));
        result += std::string(before) + std::string(form) + behind;
        text.remove_prefix(std::min(text.size(), form.size() + 1));
    }
    return result;
}

static void list_as_markdown()
{
    std::printf("# Rules\n\n"
                "Made by `tarnlet check --list-rules --format markdown` from "
                "`tool/rule_table.cpp`. The\nidentifiers are stable: pipelines may go by them.\n");
    for (const RuleEntry *rule = rule_table_begin(); rule != rule_table_end(); rule++) {
        std::printf("\n## %s\n\n%s", rule->id, level_text(rule->level));
        if (rule->clause)
            std::printf("; %s", rule->clause);
        std::printf("\n\n");
        if (*rule->text)
            std::printf("%s\n", forms(*rule, "    ", "\n").c_str());
        std::printf("%s\n", folded(rule->meaning, "").c_str());
        if (*rule->mend)
            std::printf("\n%s\n", folded(rule->mend, "").c_str());
    }
}

static void list_as_json()
{
    ordered_json rules = ordered_json::array();
    for (const RuleEntry *rule = rule_table_begin(); rule != rule_table_end(); rule++)
        rules.push_back({{"id", rule->id},
                         {"level", level_text(rule->level)},
                         {"clause", rule->clause ? ordered_json(rule->clause) : nullptr},
                         {"text", rule->text},
                         {"meaning", rule->meaning},
                         {"mend", rule->mend}});
    std::printf("%s\n", rules.dump(2).c_str());
}

int list_rules(const std::string &format)
{
    if (format == "markdown")
        list_as_markdown();
    else if (format == "json")
        list_as_json();
    else
        for (const RuleEntry *rule = rule_table_begin(); rule != rule_table_end(); rule++)
            std::printf("%-*s %s\n", ID_COLUMNS, rule->id, level_text(rule->level));
    return STATUS_CLEAN;
}

int explain_rule(const std::string &id)
{
    const RuleEntry *rule = find_rule(id);
    if (!rule) {
        complain("there is no rule '" + escaped(id) + "'; --list-rules names them all");
        return STATUS_UNUSABLE;
    }
    std::printf("%s: %s\n", rule->id, level_text(rule->level));
    if (*rule->text)
        std::printf("\nMessage:\n%s", forms(*rule, "  ", "\n").c_str());
    std::printf("\nMeaning:\n%s\n", folded(rule->meaning, "  ").c_str());
    if (*rule->mend)
        std::printf("\nTo mend:\n%s\n", folded(rule->mend, "  ").c_str());
    if (rule->clause)
        std::printf("\nSource:\n  %s\n", rule->clause);
    return STATUS_CLEAN;
}
