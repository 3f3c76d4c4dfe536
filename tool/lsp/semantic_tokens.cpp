// Every word in the colour of what it is, also within the quoted tables.

#include "lsp/features.h"

#include <algorithm>

namespace lsp
{

// Types of the protocol, so that any theme has a colour for them.
static constexpr const char *TYPES[] = {"keyword",  "number",    "comment",    "string",
                                        "variable", "property",  "enumMember", "function",
                                        "struct",   "type",      "namespace",  "decorator",
                                        "class",    "parameter", "method"};
static constexpr const char *MODIFIERS[] = {"declaration"};

// Index into the above; -1 for words that have no colour.
static int type_of(uint8_t kind)
{
    switch (kind) {
    case BSDL_SYMBOL_KEYWORD:
        return 0;
    case BSDL_SYMBOL_NUMBER:
    case BSDL_SYMBOL_PATTERN:
    case BSDL_SYMBOL_SUBSCRIPT:
    case BSDL_SYMBOL_CELL_NUMBER:
        return 1;
    case BSDL_SYMBOL_COMMENT:
        return 2;
    case BSDL_SYMBOL_TEXT:
        return 3;
    case BSDL_SYMBOL_PORT:
        return 4;
    case BSDL_SYMBOL_PIN:
        return 5;
    case BSDL_SYMBOL_VALUE:
    case BSDL_SYMBOL_FUNCTION:
        return 6;
    case BSDL_SYMBOL_INSTRUCTION:
        return 7;
    case BSDL_SYMBOL_REGISTER:
        return 8;
    case BSDL_SYMBOL_CELL_NAME:
        return 9;
    case BSDL_SYMBOL_PACKAGE:
    case BSDL_SYMBOL_PIN_MAP:
        return 10;
    case BSDL_SYMBOL_ATTRIBUTE:
    case BSDL_SYMBOL_EXTENSION:
        return 11;
    case BSDL_SYMBOL_COMPONENT:
    case BSDL_SYMBOL_PART:
        return 12;
    case BSDL_SYMBOL_DATA_NAME:
    case BSDL_SYMBOL_VARIABLE:
        return 13;
    case BSDL_SYMBOL_FLOW:
    case BSDL_SYMBOL_PROCEDURE:
    case BSDL_SYMBOL_ACTION:
        return 14;
    default:
        return -1;
    }
}

json semantic_tokens_legend() { return {{"tokenTypes", TYPES}, {"tokenModifiers", MODIFIERS}}; }

namespace
{

// Five numbers for a token, its place relative to the one before.
class Encoder
{
  public:
    explicit Encoder(const Document &of) : document(of) {}

    void token(uint32_t begin, uint32_t end, int type, bool declaration)
    {
        const Position from = document.position(begin);
        const Position to = document.position(end);
        if (to.line != from.line || to.column <= from.column)
            return;
        const bool same_line = from.line == last.line;
        data.insert(data.end(),
                    {from.line - last.line, same_line ? from.column - last.column : from.column,
                     to.column - from.column, static_cast<uint32_t>(type), declaration ? 1u : 0u});
        last = from;
    }

    std::vector<uint32_t> data;

  private:
    const Document &document;
    Position last;
};

struct Piece {
    uint32_t begin, end;
    int type;
    bool declaration;
};

} // namespace

json semantic_tokens(const Document &document, uint32_t begin, uint32_t end)
{
    std::vector<Piece> pieces;
    for (const BsdlSymbol &symbol : document.symbols()) {
        const int type = type_of(symbol.kind);
        if (type < 0 || symbol.end <= begin || symbol.begin >= end)
            continue;
        const bool declaration = symbol.flags & BSDL_SYMBOL_DEFINES;
        for (auto [from, to] : document.parts(symbol)) {
            // A text that goes on over lines is a token on each.
            while (from < to) {
                const uint32_t line_end = document.line_end(document.line_of(from));
                pieces.push_back({from, std::min(to, line_end), type, declaration});
                const uint32_t next = document.line_of(from) + 1;
                from = next < document.line_count() ? std::max(document.line_begin(next), from + 1)
                                                    : to;
            }
        }
    }
    // A comment may lie between the parts of a word.
    std::stable_sort(pieces.begin(), pieces.end(),
                     [](const Piece &a, const Piece &b) { return a.begin < b.begin; });
    Encoder encoder(document);
    for (const Piece &piece : pieces)
        encoder.token(piece.begin, piece.end, piece.type, piece.declaration);
    return {{"data", encoder.data}};
}

} // namespace lsp
