#pragma once

#include <cstdint>
#include <string_view>

enum class RuleLevel : uint8_t {
    ERROR,
    WARNING,
    EITHER,    // the meaning says when
    BY_STRICT, // a warning, an error under --strict
    NOTE
};

// A rule of the library, or one that the tool adds, as people read about it.
struct RuleEntry {
    const char *id;
    RuleLevel level;
    const char *clause;  // NULL when there is none
    const char *text;    // forms of the message, one a line
    const char *meaning; // what it says about the file
    const char *mend;    // what to do about it
};

// In the order in which statements stand in a description.
const RuleEntry *rule_table_begin();
const RuleEntry *rule_table_end();

const RuleEntry *find_rule(std::string_view id); // NULL for an unknown one

const char *level_text(RuleLevel level);
