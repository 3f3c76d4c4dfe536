#include "targets.h"

#include "tarnlet/symbols.h"

#include <cstdlib>

// The words of any text: each lies within its statement and within the text, in order, and refers
// to a word that introduces the name.

static void expect(bool holds)
{
    if (!holds)
        std::abort();
}

static void look_at_symbols(const BsdlSymbols *symbols, size_t size)
{
    uint32_t last = 0;
    for (uint32_t i = 0; i < bsdlSymbolCount(symbols); i++) {
        const BsdlSymbol *symbol = bsdlSymbolAt(symbols, i);
        const BsdlStatement *statement = bsdlStatementAt(symbols, symbol->statement);
        expect(symbol->begin < symbol->end && symbol->end <= size);
        // A statement without its ';' may have comments after its last word.
        expect(statement && symbol->begin >= statement->begin &&
               (symbol->end <= statement->end || symbol->kind == BSDL_SYMBOL_COMMENT));
        expect(i >= statement->first_symbol &&
               i - statement->first_symbol < statement->symbol_count);
        // A comment may lie between the two ends of a split word.
        if (symbol->kind != BSDL_SYMBOL_COMMENT) {
            expect(symbol->begin >= last);
            last = symbol->end;
        }
        if (symbol->refers_to == BSDL_SYMBOL_ELSEWHERE)
            continue;
        const BsdlSymbol *first = bsdlSymbolAt(symbols, static_cast<uint32_t>(symbol->refers_to));
        expect(first && (first->flags & BSDL_SYMBOL_DEFINES));
    }
}

static void look_at_statements(const BsdlSymbols *symbols, size_t size)
{
    uint32_t last = 0;
    for (uint32_t i = 0; i < bsdlStatementCount(symbols); i++) {
        const BsdlStatement *statement = bsdlStatementAt(symbols, i);
        expect(statement->begin >= last && statement->begin < statement->end &&
               statement->end <= size);
        last = statement->end;
        if (statement->name >= 0)
            expect(static_cast<uint32_t>(statement->name) - statement->first_symbol <
                   statement->symbol_count);
    }
}

void fuzz_symbols(const uint8_t *data, size_t size)
{
    BsdlSymbols *symbols = bsdlSymbolsOf(reinterpret_cast<const char *>(data), size);
    expect(symbols != nullptr);
    look_at_symbols(symbols, size);
    look_at_statements(symbols, size);
    bsdlSymbolsRelease(symbols);
}
