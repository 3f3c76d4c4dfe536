// check --list-rules, check --explain and explain.

#include "commands/rule_listing.h"

#include "command.h"
#include "console.h"
#include "near_name.h"
#include "tarnlet/diagnosis.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <nlohmann/json.hpp>

using nlohmann::ordered_json;

namespace
{

constexpr size_t COLUMNS = 80;
constexpr int ID_COLUMNS = 40;

} // namespace

static std::vector<const BsdlRule *> all_rules()
{
    std::vector<const BsdlRule *> rules(bsdlRuleCount());
    for (uint32_t i = 0; i < rules.size(); i++)
        rules[i] = bsdlRuleAt(i);
    return rules;
}

static const char *level_words(int32_t level)
{
    switch (level) {
    case BSDL_RULE_ERROR:
        return "error";
    case BSDL_RULE_WARNING:
        return "warning";
    case BSDL_RULE_EITHER:
        return "error or warning";
    case BSDL_RULE_BY_STRICT:
        return "warning, error under --strict";
    default:
        return "note";
    }
}

static std::string about_level(const BsdlRule &rule)
{
    return std::string(level_words(rule.level)) + (rule.always_on ? ", never turned off" : "");
}

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

// The forms of the message, each between `before` and `behind`.
static std::string forms(const BsdlRule &rule, const char *before, const char *behind)
{
    std::string result;
    for (std::string_view text = rule.forms; !text.empty();) {
        const std::string_view form = text.substr(0, text.find('\n'));
        result += std::string(before) + std::string(form) + behind;
        text.remove_prefix(std::min(text.size(), form.size() + 1));
    }
    return result;
}

static void list_as_markdown()
{
    std::printf(
        "# Rules\n\n"
        "Made by `tarnlet check --list-rules --format markdown` from "
        "`src/diagnosis/rule_table.cpp`. The\nidentifiers are stable: pipelines may go by them.\n");
    for (const BsdlRule *rule : all_rules()) {
        std::printf("\n## %s\n\n%s", rule->id, about_level(*rule).c_str());
        if (rule->clause)
            std::printf("; %s", rule->clause);
        std::printf("\n\n");
        if (*rule->forms)
            std::printf("%s\n", forms(*rule, "    ", "\n").c_str());
        std::printf("%s\n", folded(rule->meaning, "").c_str());
        if (*rule->fix)
            std::printf("\n%s\n", folded(rule->fix, "").c_str());
    }
}

static void list_as_json()
{
    ordered_json rules = ordered_json::array();
    for (const BsdlRule *rule : all_rules())
        rules.push_back({{"id", rule->id},
                         {"level", level_words(rule->level)},
                         {"always_on", rule->always_on != 0},
                         {"clause", rule->clause ? ordered_json(rule->clause) : nullptr},
                         {"text", rule->forms},
                         {"meaning", rule->meaning},
                         {"fix", rule->fix}});
    std::printf("%s\n", rules.dump(2).c_str());
}

int list_rules(const std::string &format)
{
    if (format == "markdown")
        list_as_markdown();
    else if (format == "json")
        list_as_json();
    else
        for (const BsdlRule *rule : all_rules())
            std::printf("%-*s %s\n", ID_COLUMNS, rule->id, about_level(*rule).c_str());
    return STATUS_CLEAN;
}

int explain_rule(const std::string &id)
{
    const BsdlRule *rule = bsdlFindRule(id.c_str());
    if (!rule) {
        std::vector<std::string> names;
        for (const BsdlRule *each : all_rules())
            names.emplace_back(each->id);
        const std::string near = did_you_mean(id, names);
        complain("there is no rule '" + escaped(id) + "'" +
                 (near.empty() ? "; 'tarnlet check --list-rules' names them all" : near));
        return STATUS_UNUSABLE;
    }
    std::printf("%s: %s\n", rule->id, about_level(*rule).c_str());
    if (*rule->forms)
        std::printf("\nMessage:\n%s", forms(*rule, "  ", "\n").c_str());
    std::printf("\nMeaning:\n%s\n", folded(rule->meaning, "  ").c_str());
    if (*rule->fix)
        std::printf("\nHow to fix:\n%s\n", folded(rule->fix, "  ").c_str());
    if (rule->clause)
        std::printf("\nSource:\n  %s\n", rule->clause);
    return STATUS_CLEAN;
}

std::function<int()> set_up_explain(CLI::App &app)
{
    auto rules = std::make_shared<std::vector<std::string>>();
    app.add_option("RULE", *rules, "Identifiers of rules, as findings end with them")->required();
    return [rules] {
        int status = STATUS_CLEAN;
        for (const std::string &rule : *rules) {
            if (&rule != &rules->front())
                std::putchar('\n');
            status = std::max(status, explain_rule(rule));
        }
        return status;
    };
}
