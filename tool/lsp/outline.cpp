// What a text consists of: the outline, what can be folded, and ever larger selections.

#include "lsp/features.h"

#include <algorithm>
#include <functional>

namespace lsp
{

enum OutlineKind {
    KIND_MODULE = 2,
    KIND_PACKAGE = 4,
    KIND_CLASS = 5,
    KIND_PROPERTY = 7,
    KIND_FIELD = 8,
    KIND_FUNCTION = 12,
    KIND_CONSTANT = 14,
    KIND_ARRAY = 18,
    KIND_STRUCT = 23
};

static constexpr uint32_t GROUP = 100; // cells below one entry

static json entry(const Document &document, std::string name, int kind, uint32_t begin,
                  uint32_t end, uint32_t name_begin, uint32_t name_end)
{
    return {{"name", std::move(name)},
            {"kind", kind},
            {"range", document.range(begin, end)},
            {"selectionRange", document.range(name_begin, name_end)},
            {"children", json::array()}};
}

static json entry_of(const Document &document, const BsdlSymbol &symbol, int kind)
{
    return entry(document, document.word(symbol), kind, symbol.begin, symbol.end, symbol.begin,
                 symbol.end);
}

static void for_each_in(const Document &document, const BsdlStatement &statement, uint8_t kind,
                        const std::function<void(const BsdlSymbol &)> &visit)
{
    for (uint32_t i = 0; i < statement.symbol_count; i++) {
        const BsdlSymbol &symbol = document.symbols()[statement.first_symbol + i];
        if (symbol.kind == kind)
            visit(symbol);
    }
}

// "0 to 99", "100 to 199" by the place in the table.
static json cell_groups(const Document &document, const BsdlStatement &statement)
{
    std::vector<const BsdlSymbol *> cells;
    for_each_in(document, statement, BSDL_SYMBOL_CELL_NUMBER, [&](const BsdlSymbol &symbol) {
        if (symbol.column == 0)
            cells.push_back(&symbol);
    });
    json groups = json::array();
    for (size_t first = 0; first < cells.size(); first += GROUP) {
        const size_t last = std::min<size_t>(first + GROUP, cells.size()) - 1;
        const uint32_t end = last + 1 < cells.size() ? cells[last + 1]->begin : statement.end;
        groups.push_back(
            entry(document,
                  "cells " + document.word(*cells[first]) + " to " + document.word(*cells[last]),
                  KIND_ARRAY, cells[first]->begin, end, cells[first]->begin, cells[first]->end));
    }
    return groups;
}

static json children_of(const Document &document, const BsdlStatement &statement,
                        const std::string &name)
{
    struct Row {
        const char *statement;
        uint8_t kind;
        int outline;
    };
    static constexpr Row ROWS[] = {
        {"INSTRUCTION_OPCODE", BSDL_SYMBOL_INSTRUCTION, KIND_FUNCTION},
        {"REGISTER_ACCESS", BSDL_SYMBOL_REGISTER, KIND_STRUCT},
        {"ISC_FLOW", BSDL_SYMBOL_FLOW, KIND_FUNCTION},
        {"ISC_PROCEDURE", BSDL_SYMBOL_PROCEDURE, KIND_FUNCTION},
        {"ISC_ACTION", BSDL_SYMBOL_ACTION, KIND_FUNCTION},
    };
    json children = json::array();
    if (name == "BOUNDARY_REGISTER")
        return cell_groups(document, statement);
    if (statement.kind == BSDL_STATEMENT_PORT)
        for_each_in(document, statement, BSDL_SYMBOL_PORT, [&](const BsdlSymbol &symbol) {
            children.push_back(entry_of(document, symbol, KIND_FIELD));
        });
    for (const Row &row : ROWS)
        if (name == row.statement)
            for_each_in(document, statement, row.kind, [&](const BsdlSymbol &symbol) {
                if (symbol.column == 0 && (symbol.flags & BSDL_SYMBOL_DEFINES))
                    children.push_back(entry_of(document, symbol, row.outline));
            });
    return children;
}

static int kind_of(const BsdlStatement &statement)
{
    switch (statement.kind) {
    case BSDL_STATEMENT_CONSTANT:
        return KIND_CONSTANT;
    case BSDL_STATEMENT_PORT:
        return KIND_CLASS;
    case BSDL_STATEMENT_USE:
        return KIND_PACKAGE;
    default:
        return KIND_PROPERTY;
    }
}

json document_symbols(const Document &document)
{
    json outline = json::array();
    json *within = nullptr; // entries of the current entity or package
    for (const BsdlStatement &statement : document.statements()) {
        if (statement.kind == BSDL_STATEMENT_OTHER || statement.kind == BSDL_STATEMENT_GENERIC)
            continue;
        if (statement.kind == BSDL_STATEMENT_END) {
            if (within)
                outline.back()["range"]["end"] = document.position_json(statement.end);
            within = nullptr;
            continue;
        }
        const bool outer = statement.kind == BSDL_STATEMENT_ENTITY ||
                           statement.kind == BSDL_STATEMENT_PACKAGE ||
                           statement.kind == BSDL_STATEMENT_PACKAGE_BODY;
        std::string name = "ports";
        uint32_t begin = statement.begin;
        uint32_t end = std::min(statement.end, begin + 4);
        if (statement.name >= 0) {
            const BsdlSymbol &symbol = document.symbols()[static_cast<size_t>(statement.name)];
            name = document.word(symbol);
            begin = symbol.begin;
            end = symbol.end;
        } else if (statement.kind != BSDL_STATEMENT_PORT) {
            continue; // its name is still to be written
        }
        json item = entry(document, name, outer ? KIND_MODULE : kind_of(statement), statement.begin,
                          statement.end, begin, end);
        item["children"] = children_of(document, statement, upper(name));
        if (outer || !within) {
            outline.push_back(std::move(item));
            within = outer ? &outline.back()["children"] : nullptr;
        } else {
            outline.back()["range"]["end"] = document.position_json(statement.end);
            within->push_back(std::move(item));
        }
    }
    return outline;
}

// --------------------------------------------------------------------------------------- folding

json folding_ranges(const Document &document)
{
    json ranges = json::array();
    const auto fold = [&](uint32_t begin, uint32_t end, const char *kind) {
        const uint32_t first = document.line_of(begin);
        const uint32_t last = document.line_of(end);
        if (last <= first)
            return;
        json range = {{"startLine", first}, {"endLine", last}};
        if (kind)
            range["kind"] = kind;
        ranges.push_back(std::move(range));
    };
    for (const BsdlStatement &statement : document.statements())
        if (statement.kind != BSDL_STATEMENT_OTHER && statement.end > statement.begin)
            fold(statement.begin, statement.end - 1, nullptr);
    // Comments on lines of their own, one below the other.
    const BsdlSymbol *first = nullptr;
    const BsdlSymbol *last = nullptr;
    const auto close = [&] {
        if (first)
            fold(first->begin, last->begin, "comment");
        first = nullptr;
    };
    for (const BsdlSymbol &symbol : document.symbols()) {
        if (symbol.kind != BSDL_SYMBOL_COMMENT)
            continue;
        const uint32_t line = document.line_of(symbol.begin);
        const std::string_view before = document.raw(document.line_begin(line), symbol.begin);
        if (before.find_first_not_of(" \t") != std::string_view::npos)
            continue;
        if (first && line != document.line_of(last->begin) + 1)
            close();
        if (!first)
            first = &symbol;
        last = &symbol;
    }
    close();
    return ranges;
}

// ------------------------------------------------------------------------------------- selection

// From the word to its row, the table, the statement and the text.
static json selection_range(const Document &document, uint32_t offset)
{
    std::vector<std::pair<uint32_t, uint32_t>> ranges;
    const auto add = [&](uint32_t begin, uint32_t end) {
        if (begin <= offset && offset <= end &&
            (ranges.empty() || begin < ranges.back().first || end > ranges.back().second))
            ranges.emplace_back(std::min(begin, ranges.empty() ? begin : ranges.back().first),
                                std::max(end, ranges.empty() ? end : ranges.back().second));
    };
    const std::span<const BsdlSymbol> symbols = document.symbols();
    if (const std::optional<uint32_t> symbol = document.symbol_at(offset)) {
        add(symbols[*symbol].begin, symbols[*symbol].end);
        if (symbols[*symbol].flags & BSDL_SYMBOL_IN_STRING) {
            const auto [begin, end] = row_of(document, *symbol);
            uint32_t row_end = symbols[end - 1].end;
            if (row_end < document.text().size() && document.text()[row_end] == ')')
                row_end++;
            add(symbols[begin].begin, row_end);
        }
    }
    for (const BsdlStatement &statement : document.statements())
        if (statement.begin <= offset && offset <= statement.end)
            add(statement.begin, statement.end);
    add(0, static_cast<uint32_t>(document.text().size()));
    json result;
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
        json outer = std::move(result);
        result = {{"range", document.range(range->first, range->second)}};
        if (!outer.is_null())
            result["parent"] = std::move(outer);
    }
    return result;
}

json selection_ranges(const Document &document, const json &positions)
{
    json list = json::array();
    for (const json &position : positions)
        list.push_back(selection_range(document, document.offset(position)));
    return list;
}

} // namespace lsp
