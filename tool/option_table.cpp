// What the commands have set up, as tables and as help.

#include "option_table.h"
#include "console.h"

#include <CLI/CLI.hpp>

#include <cstdio>

// A choice stands after the name of the value, as in WHEN:{auto,always,never}.
static void split_type(const std::string &type, OptionEntry &entry)
{
    entry.value = type.substr(0, type.find(':'));
    const size_t open = type.find('{');
    const size_t close = type.find('}');
    if (open == std::string::npos || close == std::string::npos)
        return;
    for (size_t at = open + 1; at < close;) {
        const size_t end = std::min(type.find(',', at), close);
        entry.choices.push_back(type.substr(at, end - at));
        at = end + 1;
    }
}

static OptionEntry entry_of(const CLI::Option &option)
{
    OptionEntry entry;
    for (const std::string &name : option.get_snames())
        entry.names.push_back("-" + name);
    for (const std::string &name : option.get_lnames())
        entry.names.push_back("--" + name);
    entry.is_argument = entry.names.empty();
    if (entry.is_argument)
        entry.names.push_back(option.get_name(true));
    entry.description = option.get_description();
    entry.default_value = option.get_default_str();
    // A list stands in brackets.
    if (entry.default_value.starts_with('['))
        entry.default_value = entry.default_value.substr(1, entry.default_value.size() - 2);
    entry.repeats = option.get_items_expected_max() > 1;
    entry.required = option.get_required();
    if (option.get_type_size() > 0)
        split_type(option.get_type_name(), entry);
    if (entry.is_argument)
        entry.value.clear();
    return entry;
}

std::vector<OptionEntry> options_of(const Command &command)
{
    CLI::App app;
    const std::function<int()> action = command.set_up(app);
    std::vector<OptionEntry> entries;
    for (const CLI::Option *option : std::as_const(app).get_options())
        entries.push_back(entry_of(*option));
    return entries;
}

static std::string joined(const std::vector<std::string> &words)
{
    std::string result;
    for (const std::string &word : words)
        result += (result.empty() ? "" : ", ") + word;
    return result;
}

std::string arguments_of(const std::vector<OptionEntry> &options)
{
    std::string result;
    for (const OptionEntry &option : options) {
        if (!option.is_argument)
            continue;
        const std::string name = option.names[0] + (option.repeats ? "..." : "");
        result += option.required ? " " + name : " [" + name + "]";
    }
    return result;
}

std::string full_description(const OptionEntry &option)
{
    std::string result = option.description;
    if (!option.choices.empty())
        result += " (" + joined(option.choices) + ")";
    if (!option.default_value.empty())
        result += " (default: " + option.default_value + ")";
    return result;
}

// Prints text in lines of the usual width, all but the first indented.
static void print_wrapped(std::string_view text, size_t indent)
{
    constexpr size_t WIDTH = 80;
    size_t column = indent;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (column > indent && column + 1 + columns_of(word) > WIDTH) {
            std::printf("\n%*s", static_cast<int>(indent), "");
            column = indent;
        }
        const char *blank = column > indent ? " " : "";
        std::printf("%s%.*s", blank, static_cast<int>(word.size()), word.data());
        column += columns_of(word) + (*blank ? 1 : 0);
    }
    std::printf("\n");
}

static void print_entry(const OptionEntry &option)
{
    constexpr size_t INDENT = 22;
    std::string name = "  " + joined(option.names);
    if (!option.is_argument && !option.value.empty())
        name += " " + option.value;
    std::printf("%s%*s", name.c_str(),
                name.size() < INDENT ? static_cast<int>(INDENT - name.size()) : 0, "");
    if (name.size() >= INDENT)
        std::printf("\n%*s", static_cast<int>(INDENT), "");
    print_wrapped(full_description(option), INDENT);
}

void print_command_help(const Command &command)
{
    const std::vector<OptionEntry> options = options_of(command);
    std::printf("%s.\n\nUsage: tarnlet %s [OPTION...]%s\n\n", command.summary, command.name,
                arguments_of(options).c_str());
    for (const OptionEntry &option : options)
        if (option.is_argument)
            print_entry(option);
    std::printf("\nOptions:\n");
    for (const OptionEntry &option : options)
        if (!option.is_argument)
            print_entry(option);
    std::printf("\nExamples:\n");
    for (const Example &example : command.examples)
        if (example.line)
            std::printf("  %s\n      %s\n", example.line, example.meaning);
    std::printf("\n");
    print_wrapped(std::string("Exit status: ") + command.exit_status, 0);
}
