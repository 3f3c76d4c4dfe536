#pragma once

#include "frame/places.h"
#include "tarnlet/bsdl.h"

#include <cstdint>

struct Bsdl;

// The tokens that could have stood where another was found. Their texts are found when asked for.
struct ExpectedTokens {
    static constexpr int32_t MOST = 256;
    int32_t count;
    BsdlExpected tokens[MOST];
};

// What a message is about, for hosts that point at the place: the rule's stable identifier (small
// letters with dashes), and the place of the name, number, row or statement that it is about.
struct Rule {
    const char *id = nullptr;
    Place place = {};
    ExpectedTokens *expected = nullptr; // of a syntax error
    bool sums_up = false;               // the verdict on all checks of a family
};

// Tokens of a statement, counted from its ATTRIBUTE: the name after OF, and the first token of the
// value after ENTITY IS.
constexpr uint32_t NAME_TOKEN = 2;
constexpr uint32_t VALUE_TOKEN = 6;

// The token that begins at an offset in the texts of the current reading or check, or the n-th one
// after it (`behind`).
Place token_place(uint32_t offset, uint32_t behind = 0);
// From that token to a later one of them.
Place tokens_place(uint32_t offset, uint32_t first, uint32_t last);

// Goes along a row of tokens, so that rules about many of them do not count from the first each
// time.
struct TokenCursor {
    uint32_t at;     // of a token
    uint32_t behind; // how many tokens the current one stands after it
};
Place cursor_place(TokenCursor *cursor);

// The entity's name, for what is missing altogether. A rule of a check without a place gets it.
Place entity_place();

// An error of a check: level 0, verbosity 2. Gives 100, for the caller to combine with its result
// by `|=`.
int32_t rule_error(Rule rule, const char *format, ...) TARNLET_PRINTF(2, 3);
// Warnings of a check: level 1, verbosity 2. Gives 0.
int32_t rule_warning(Rule rule, const char *format, ...) TARNLET_PRINTF(2, 3);
// An error under `strict` (gives 100), else a warning (gives 0); verbosity 2 in both forms.
int32_t rule_strict(const Bsdl *bsdl, Rule rule, const char *format, ...) TARNLET_PRINTF(3, 4);
// A rule at a level and verbosity of its own. Gives 100 at level 0, else 0.
int32_t rule_message(int32_t level, uint32_t verbosity, Rule rule, const char *format, ...)
    TARNLET_PRINTF(4, 5);

// While parsing. The place is that of the token or, in an action, of what its grammar rule has
// read.
void statement_passed(Bsdl *bsdl, const char *text); // level 2, verbosity 3; strings released
void statement_absent(Bsdl *bsdl, const char *text); // level 2, verbosity 4
void statement_skipped(Bsdl *bsdl,
                       const char *text); // level 0, verbosity 1; strings dropped, mode 0
// Level 0, verbosity 1, and one more syntax error. For `{ if (...) RECOVER; }` in the grammar:
// false.
bool parse_refused(Bsdl *bsdl, const char *rule, const char *format, ...) TARNLET_PRINTF(3, 4);
// A syntax error with a place of its own.
void syntax_error(Bsdl *bsdl, const Rule &rule, const char *format, ...) TARNLET_PRINTF(3, 4);
// A message of the parser or an action at the current line. It does not count as a syntax error.
void parse_message(Bsdl *bsdl, int32_t level, uint32_t verbosity, const char *rule,
                   const char *format, ...) TARNLET_PRINTF(5, 6);

// True when a message of this verbosity would reach the host, for loops with much output.
bool message_wanted(uint32_t verbosity);

// "(null)" for NULL, so that no NULL reaches a printf.
inline const char *shown(const char *text) { return text ? text : "(null)"; }
