#pragma once

#include "frame/model.h"

#include <cstdint>

union BSDL_YYSTYPE;

// How the scanner reads the next text, set by the parser's actions.
enum ScanMode : int32_t {
    SCAN_MODE_NONE = 0,
    SCAN_MODE_INTEGER = 1,
    SCAN_MODE_BIN_X = 2,
    SCAN_MODE_BIN = 3,
    SCAN_MODE_HEX = 4,
    SCAN_MODE_REAL = 5,
    SCAN_MODE_DATE = 8,
    SCAN_MODE_FILE_NAME = 9,
    SCAN_MODE_USE = 10, // one package name; the name sets SCAN_MODE_INTEGER
    SCAN_MODE_PACKAGE = 11,
    SCAN_MODE_PART_NAME = 12,
    SCAN_MODE_SIGNED = 13,
};

// A quoted string with its quotes, where it lies in the input; NULL for one that is not to be read.
struct QuotedText {
    char *text;
    uint32_t length;
};

// The text of the current token, not terminated; empty at the end of input.
struct TokenText {
    const char *text;
    int length;
};

int scan_token(BSDL_YYSTYPE *value, Place *place, Bsdl *bsdl);
// The standards from now on, and those of them whose words are not to be known: from the next token
// on other words are keywords.
void scan_standards(Bsdl *bsdl, uint32_t standards, uint64_t filter);
TokenText scan_token_text(const Bsdl *bsdl);
// The name that messages give a token.
const char *token_name(int token);

// The line count as messages name it: inside a string it is the line on which the piece ended.
int32_t scan_line(const Bsdl *bsdl);
// The place of the current token; in an action that of the text that its grammar rule has read.
Place scan_place(const Bsdl *bsdl);
// The same, of a statement that is given up: behind its ';' more may have been passed over.
Place scan_place_of_statement(const Bsdl *bsdl);
// Called by the parser before each action.
void scan_place_set(Bsdl *bsdl, Place place);

// True after a failure that ends the reading; the parser gives up at once.
bool scan_stopped(const Bsdl *bsdl);
// A failure after which a reading of a file ends the process with this status. A reading from
// memory comes back and stops at its next token.
void end_reading(Bsdl *bsdl, int status);
// Whether the caller of a reading from memory wants no more of it.
bool reading_is_over(const Bsdl *bsdl);

// ------------------------------------------------------------------------------ the string store

// Puts one piece of an attribute's value behind those before it.
void store_string(Bsdl *bsdl, QuotedText piece);
// From the next token on the stored pieces are read, then the file again.
void rescan_strings(Bsdl *bsdl);
// Called when a statement is done: what is left of its strings is dropped.
void release_strings(Bsdl *bsdl);
// Called when a statement is given up: pieces that were never begun are dropped.
void drop_unread_strings(Bsdl *bsdl);
// All stored pieces joined by "\n", in the arena.
const char *join_strings(Bsdl *bsdl);

// ------------------------------------------------------------------------------- the input stack

// Reads on in another file, or in a text that stands for it, until its end, then here again. False
// when it cannot be opened.
bool include_file(Bsdl *bsdl, const char *path, const BsdlPackageText *text);
// What the host handed in for a package file; NULL when the file is to be searched.
const BsdlPackageText *find_package_text(const Bsdl *bsdl, const char *name);
constexpr int INCLUDE_DEPTH = 10;
int include_depth(const Bsdl *bsdl);

// Texts for integers where a name or a pattern may stand.
const char *integer_text(Bsdl *bsdl, int32_t value);
const char *integer_name(Bsdl *bsdl, int32_t value);

// Actions of the frame.
void description_read(Bsdl *bsdl);
void prg_data_read(Bsdl *bsdl);
const char *pattern_of_32_bits(Bsdl *bsdl, const char *pattern);

inline bool in_prg_file(const Bsdl *bsdl)
{
    return (bsdl->standards & BSDL_STANDARD_MASK_PRG) != 0;
}
