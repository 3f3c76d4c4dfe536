#pragma once

#include "command.h"

#include <string>
#include <vector>

// An option or argument of a command, as the command itself has set it up: what the manual pages
// and the completions are made from.
struct OptionEntry {
    std::vector<std::string> names; // "-j", "--jobs"; the name alone for an argument
    std::string value;              // "N"; empty for a flag
    std::vector<std::string> choices;
    std::string description;
    bool is_argument = false;
    bool repeats = false;
};

std::vector<OptionEntry> options_of(const Command &command);
