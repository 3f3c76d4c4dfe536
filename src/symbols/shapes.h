#pragma once

#include "tarnlet/symbols.h"

#include <cstdint>
#include <string_view>

// What the text in the quotes of a statement looks like.
enum class Shape : uint8_t {
    OPAQUE, // kept as it stands, no table
    PIN_MAP_NAME,
    PIN_MAP,
    PORT_PAIRS,
    COMPLIANCE,
    OPCODES,
    PATTERNS,
    INSTRUCTIONS,
    REGISTERS,
    CELL_NAMES,
    CELLS,
    EXECUTION,
    WORDS,
    AC_PINS,
    PORTS,
    FLOWS,
    PROCEDURES,
    ACTIONS,
    CHANNELS,
    PROGRAMS,
};

// Where a word of a table stands.
struct PlaceInTable {
    Shape shape;
    int depth;        // in parentheses, those of a subscript or a data name not counted
    int column;       // commas since the innermost parenthesis has been opened
    char mark;        // the last ':', '=' or closed outer parenthesis of the row; 0 without one
    char before;      // the sign before the word; 0 after a word or at the start of a row
    uint8_t previous; // kind of the word before, in the same row
};

struct WordRole {
    uint8_t kind;
    bool defines;
};

WordRole role_of(const PlaceInTable &place, std::string_view word);

// The kind of the word after a word that announces it ("CAPTURES 01"), BSDL_SYMBOL_NONE otherwise.
uint8_t announced_by(Shape shape, std::string_view word);

// The kind of what stands between an opening sign right after a word and its closing one, and
// stands for itself ("A(3)", "REG[8]"); BSDL_SYMBOL_NONE where the sign opens a list.
uint8_t kind_in_brackets(Shape shape, char opened, uint8_t owner);

// The sign between two rows.
char row_separator(Shape shape);

// An attribute of a standard; NULL for a word that is none.
struct AttributeShape {
    const char *word;
    Shape shape;
    bool of_port = false; // and not of the component
};
const AttributeShape *find_attribute_shape(std::string_view word);

bool same_word(std::string_view a, std::string_view b);
