#pragma once

#include "frame/places.h"
#include "scan/scanner.h"

#include <cstdint>
#include <span>
#include <string_view>

// A file being read: the whole of it in one buffer of ours, with a line end after the last
// character and room beyond that for loads of eight bytes.
struct InputFile {
    char *text;
    size_t size; // of the buffer
    char *at;    // where reading goes on
    char *end;
    const char *path;
    SourceBase base;
};

// A piece of an attribute's value. The pieces lie one after the other where the first of them
// stood in the file: what was between them is not needed any more.
struct StringPiece {
    uint32_t end;   // offset of its end from the first piece's begin
    uint32_t place; // of its first byte in the file
    int32_t line;   // on which the piece ended, as messages count
};

struct StringStore {
    char *begin;
    StringPiece *pieces;
    uint32_t count;
    uint32_t capacity;
    uint32_t current;    // the piece being read
    bool active;         // the scanner reads here and not from the file
    int32_t line_behind; // the line to go back to
};

// What a reading from memory takes in place of files.
struct SourceTexts {
    std::string_view text;
    std::span<const BsdlPackageText> packages;
    const bool *over = nullptr; // once true, the reading stops after the next syntax error
};

// The state of the scanner while one file is read.
struct ScanState {
    const char *at; // next character
    const char *end;
    const char *piece_end; // of the piece being read; above all addresses outside of strings
    const char *token;
    uint32_t token_length;
    bool looked_ahead; // only the character after it showed its end
    int32_t line;      // as messages count
    uint32_t origin;   // the low half of an address less this is its place
    SourceBase base;
    Place place;             // of the token or, in an action, of what its grammar rule has read
    uint32_t strings_behind; // after the ';' of the statement whose strings were read last
    BSDL_YYSTYPE *value;     // of the token
    uint32_t rules;          // the keyword set in force, a bit of RuleSet; 0 before the first token
    bool ready;              // false: it is to be picked anew, or the reading has stopped

    StringStore strings;
    InputFile files[INCLUDE_DEPTH + 1];
    int depth;
    int32_t include_saved_line; // one for all depths

    bool complete; // the description or data file has been read to its end
    bool stopped;
    const char *fatal;         // the text of a failure that cannot be gone on from
    const SourceTexts *source; // of a reading from memory
};

inline uint32_t low_half(const char *address)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(address));
}

// Brings the line counters up to the piece in which `at` lies.
void input_pass_pieces(ScanState *reading, const char *at);
void input_leave_strings(ScanState *reading);
// At the end of the current text: goes on in the file after the strings, or in the file that
// included this one. False at the end of all files.
bool input_next(ScanState *reading);

void input_count_line_end(ScanState *reading, const char *at);
void input_count_line_ends(ScanState *reading, const char *at, const char *end);
// The line count is that of the last character looked at. A token whose end shows only at the next
// character may thus name the line of the next piece, or that of the file.
void input_line_of_last_looked_at(ScanState *reading, const char *last);

// The place of text that ends in the current piece or file or, in strings, in a later piece.
Place input_place(const ScanState *reading, const char *start, const char *end);

bool reading_start(Bsdl *bsdl, ScanState *reading);
void reading_end(ScanState *reading);
