// Rows of tables, and the place where a name is introduced: what several answers need.

#include "lsp/features.h"

namespace lsp
{

std::pair<uint32_t, uint32_t> row_of(const Document &document, uint32_t symbol)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    const BsdlSymbol &of = symbols[symbol];
    const auto same = [&](const BsdlSymbol &other) {
        return other.statement == of.statement && other.row == of.row &&
               (other.flags & BSDL_SYMBOL_IN_STRING);
    };
    // Comments between the pieces belong to no row.
    const auto passed = [&](const BsdlSymbol &other) {
        return other.kind == BSDL_SYMBOL_COMMENT && other.statement == of.statement;
    };
    uint32_t begin = symbol;
    while (begin > 0 && (same(symbols[begin - 1]) || passed(symbols[begin - 1])))
        begin--;
    uint32_t end = symbol + 1;
    while (end < symbols.size() && (same(symbols[end]) || passed(symbols[end])))
        end++;
    return {begin, end};
}

CellRow cell_row(const Document &document, uint32_t symbol)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    CellRow row;
    const auto [begin, end] = row_of(document, symbol);
    for (uint32_t i = begin; i < end; i++) {
        const BsdlSymbol &each = symbols[i];
        std::string word = document.word(each);
        switch (each.kind) {
        case BSDL_SYMBOL_CELL_NUMBER:
            (each.column == 0 ? row.number : row.control) = std::move(word);
            break;
        case BSDL_SYMBOL_CELL_NAME:
            row.name = std::move(word);
            break;
        case BSDL_SYMBOL_PORT:
            row.port = std::move(word);
            break;
        case BSDL_SYMBOL_SUBSCRIPT:
            row.subscript = std::move(word);
            break;
        case BSDL_SYMBOL_FUNCTION:
            row.function = std::move(word);
            break;
        case BSDL_SYMBOL_VALUE:
            (each.column == 3   ? row.safe
             : each.column == 5 ? row.disable
                                : row.result) = std::move(word);
            break;
        default:
            break;
        }
    }
    return row;
}

Introduced introduced(Workspace &workspace, const Document &document, uint32_t index)
{
    const BsdlSymbol &symbol = document.symbols()[index];
    if (symbol.kind < BSDL_SYMBOL_COMPONENT)
        return {};
    if (symbol.refers_to >= 0)
        return {&document, static_cast<uint32_t>(symbol.refers_to)};
    const std::string word = document.word(symbol);
    if (symbol.kind == BSDL_SYMBOL_PACKAGE) {
        const Document *package = workspace.package(document, word);
        if (!package)
            return {};
        for (uint32_t i = 0; i < package->symbols().size(); i++)
            if (package->symbols()[i].kind == BSDL_SYMBOL_PACKAGE)
                return {package, i};
        return {package, 0};
    }
    if (symbol.kind != BSDL_SYMBOL_CELL_NAME && symbol.kind != BSDL_SYMBOL_EXTENSION &&
        symbol.kind != BSDL_SYMBOL_ATTRIBUTE)
        return {};
    for (const Document *package : workspace.packages_of(document))
        for (uint32_t i = 0; i < package->symbols().size(); i++) {
            const BsdlSymbol &there = package->symbols()[i];
            const bool declares =
                (there.flags & BSDL_SYMBOL_DEFINES) != 0 || there.kind == BSDL_SYMBOL_ATTRIBUTE;
            if (declares && there.kind == symbol.kind && same_name(package->word(there), word))
                return {package, i};
        }
    return {};
}

} // namespace lsp
