#pragma once

#include "symbols/shapes.h"

#include <string>
#include <string_view>
#include <vector>

// The symbols of a text while they are being found.
struct SymbolList {
    std::string_view text;
    std::vector<BsdlSymbol> symbols;
    std::vector<BsdlStatement> statements;
    // Names of the split symbols, in their order, without what lies between the pieces.
    std::vector<std::string> split_names;

    uint32_t add(uint32_t begin, uint32_t end, uint8_t kind, uint8_t flags = 0);
};

// Reads the pieces of a string value as they come, as the table that their statement calls for.
class TableReader
{
  public:
    TableReader(SymbolList &into, Shape of) : list(into), shape(of) {}

    // The inside of one piece.
    void piece(uint32_t begin, uint32_t end);
    void finish();
    uint32_t rows() const { return used ? row + 1 : 0; }

  private:
    struct Opened {
        uint8_t kind; // of the words in it; BSDL_SYMBOL_NONE: a list
        int column;   // outside
    };

    void sign(char c);
    void word();
    void opened(char c);
    void closed();

    SymbolList &list;
    Shape shape;
    std::vector<Opened> open;
    int depth = 0;
    int column = 0;
    uint32_t row = 0;
    char mark = 0;
    char before = 0;
    uint8_t previous = BSDL_SYMBOL_NONE; // kind of the last word of the row
    uint8_t owner = BSDL_SYMBOL_NONE;    // the same, where nothing but blanks is after it
    uint8_t announced = BSDL_SYMBOL_NONE;
    bool used = false;

    // A word that may go on in the next piece.
    uint32_t word_begin = 0;
    uint32_t word_end = 0;
    std::string joined; // of more than one piece
};
