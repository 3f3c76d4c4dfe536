#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The sets of words, one for each issue of a standard. One is in force at a time.
enum RuleSet : uint32_t {
    RULES_INITIAL = 0x01, // until the first standard use statement
    RULES_1990 = 0x02,
    RULES_1994 = 0x04,
    RULES_2001 = 0x08,
    RULES_ISC = 0x10,
    RULES_AIO = 0x20,
    RULES_PRG = 0x40,

    RULES_BSDL = RULES_1990 | RULES_1994 | RULES_2001 | RULES_ISC | RULES_AIO,
    RULES_FROM_1994 = RULES_1994 | RULES_2001 | RULES_ISC | RULES_AIO,
    RULES_ALL = 0x7F,
};

enum KeywordFlag : uint32_t {
    VHDL_WORD = 0x1,       // where it is no keyword: a name, with a warning
    REFUSED_IN_1990 = 0x2, // dropped there, with a warning
    NOT_IN_PACKAGE = 0x4,  // no keyword while a package's declarations are read
    OBSOLETE = 0x8,        // dropped, with a warning
};

struct Keyword {
    const char *word; // in capitals
    int token;        // in the rule sets named; 0: none
    uint32_t rules;
    uint32_t flags = 0;
    int with_all = 0; // in every rule set, the token of the word, any one character and ALL
};

// All rows, for those who look for a word that is meant.
std::span<const Keyword> all_keywords();
std::span<const Keyword> all_attributes();

// The row of a word, in any case; NULL when it is none. `hash` is its text_hash().
const Keyword *find_keyword(const char *word, size_t length, uint64_t hash);
// The same for the words after ATTRIBUTE, which form one token with it.
const Keyword *find_attribute(const char *word, size_t length, uint64_t hash);
// What to write for the token that messages give this name; NULL for names, numbers and the like.
const char *token_text(const char *name);
// The row of the attribute that a longer word begins with; NULL when there is none.
const Keyword *find_attribute_start(const char *word, size_t length);
