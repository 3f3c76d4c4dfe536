#pragma once

#include "command.h"

#include <string>
#include <vector>

// An option or argument of a command, as the command itself has set it up: what the help, the
// manual pages and the completions are made from.
struct OptionEntry {
    std::vector<std::string> names; // "-j", "--jobs"; the name alone for an argument
    std::string value;              // "N"; empty for a flag
    std::vector<std::string> choices;
    std::string description;
    std::string default_value; // where the help shows it
    bool is_argument = false;
    bool repeats = false;
    bool required = false;
};

std::vector<OptionEntry> options_of(const Command &command);

// The arguments of a command as its use shows them: "[FILE...]".
std::string arguments_of(const std::vector<OptionEntry> &options);

// The description with the choices or the default after it.
std::string full_description(const OptionEntry &option);

// What `tarnlet COMMAND --help` prints.
void print_command_help(const Command &command);
