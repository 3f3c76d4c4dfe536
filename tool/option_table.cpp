#include "option_table.h"

#include <CLI/CLI.hpp>

// A choice stands behind the name of the value, as in WHEN:{auto,always,never}.
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
    entry.repeats = option.get_items_expected_max() > 1;
    if (!entry.is_argument && option.get_type_size() > 0)
        split_type(option.get_type_name(), entry);
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
