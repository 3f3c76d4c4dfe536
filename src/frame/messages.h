#pragma once

#include "tarnlet/bsdl.h"

#include <cstdint>

struct Bsdl;

// What a message is about, for hosts that point at the place: the rule's stable identifier (small
// letters with dashes), the source line on which the record began (0: none), and the file when it
// is not that of the reading or check at hand.
struct Rule {
    const char *id = nullptr;
    int32_t line = 0;
    const char *file = nullptr;
    bool sums_up = false; // the verdict on all checks of a family
};

// Errors of a check: level 0, verbosity 2. The result to or into the check's own, 100.
int32_t rule_error(Rule rule, const char *format, ...) TARNLET_PRINTF(2, 3);
// Warnings of a check: level 1, verbosity 2. Gives 0.
int32_t rule_warning(Rule rule, const char *format, ...) TARNLET_PRINTF(2, 3);
// An error under `strict` (gives 100), else a warning (gives 0); verbosity 2 in both forms.
int32_t rule_strict(const Bsdl *bsdl, Rule rule, const char *format, ...) TARNLET_PRINTF(3, 4);
// A rule at a level and verbosity of its own. Gives 100 at level 0, else 0.
int32_t rule_message(int32_t level, uint32_t verbosity, Rule rule, const char *format, ...)
    TARNLET_PRINTF(4, 5);

// While parsing. The line is that of the text at hand.
void statement_passed(Bsdl *bsdl, const char *text); // level 2, verbosity 3; strings released
void statement_absent(Bsdl *bsdl, const char *text); // level 2, verbosity 4
void statement_skipped(Bsdl *bsdl,
                       const char *text); // level 0, verbosity 1; strings dropped, mode 0
// Level 0, verbosity 1, and one more syntax error. For `{ if (...) RECOVER; }` in the grammar:
// false.
bool parse_refused(Bsdl *bsdl, const char *rule, const char *format, ...) TARNLET_PRINTF(3, 4);
// A message of the parser or an action at the line at hand, not counted.
void parse_message(Bsdl *bsdl, int32_t level, uint32_t verbosity, const char *rule,
                   const char *format, ...) TARNLET_PRINTF(5, 6);

// True when a message of this verbosity would reach the host, for loops with much output.
bool message_wanted(uint32_t verbosity);

// "(null)" for NULL, so that no NULL reaches a printf.
inline const char *shown(const char *text) { return text ? text : "(null)"; }
