#include "symbols/table_reader.h"

#include <algorithm>

uint32_t SymbolList::add(uint32_t begin, uint32_t end, uint8_t kind, uint8_t flags)
{
    // A word that may go on after a comment comes before it.
    auto at = symbols.end();
    while (at != symbols.begin() && at[-1].begin > begin)
        --at;
    at = symbols.insert(at, {.begin = begin,
                             .end = end,
                             .statement = static_cast<uint32_t>(statements.size() - 1),
                             .row = 0,
                             .column = 0,
                             .kind = kind,
                             .flags = flags,
                             .refers_to = BSDL_SYMBOL_ELSEWHERE});
    return static_cast<uint32_t>(at - symbols.begin());
}

static bool is_digit(char c) { return c >= '0' && c <= '9'; }

static bool in_word(char c)
{
    return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

static bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

void TableReader::word()
{
    if (word_begin == word_end)
        return;
    std::string_view name = list.text.substr(word_begin, word_end - word_begin);
    uint8_t flags = BSDL_SYMBOL_IN_STRING;
    if (!joined.empty()) {
        name = joined;
        flags |= BSDL_SYMBOL_SPLIT;
    }
    WordRole role = role_of({shape, depth, column, mark, before, previous}, name);
    if (!open.empty() && open.back().kind != BSDL_SYMBOL_NONE)
        role = {open.back().kind, false};
    else if (announced != BSDL_SYMBOL_NONE)
        role = {announced, false};
    if (role.defines)
        flags |= BSDL_SYMBOL_DEFINES;
    BsdlSymbol &symbol = list.symbols[list.add(word_begin, word_end, role.kind, flags)];
    symbol.row = row;
    symbol.column = static_cast<int16_t>(std::min(column, INT16_MAX));
    if (!joined.empty())
        list.split_names.push_back(joined);
    announced =
        role.kind == BSDL_SYMBOL_KEYWORD ? announced_by(shape, name) : uint8_t{BSDL_SYMBOL_NONE};
    if (open.empty() || open.back().kind == BSDL_SYMBOL_NONE)
        owner = previous = role.kind;
    before = 0;
    used = true;
    word_begin = word_end = 0;
    joined.clear();
}

void TableReader::opened(char c)
{
    const uint8_t kind = kind_in_brackets(shape, c, owner);
    open.push_back({kind, column});
    if (kind == BSDL_SYMBOL_NONE)
        depth++;
    column = 0;
}

void TableReader::closed()
{
    if (open.empty())
        return;
    column = open.back().column;
    const bool list_ends = open.back().kind == BSDL_SYMBOL_NONE;
    open.pop_back();
    depth -= list_ends;
    if (list_ends && depth == 0)
        mark = ')';
}

void TableReader::sign(char c)
{
    if (c == '(' || c == '[') {
        opened(c);
    } else if (c == ')' || c == ']') {
        closed();
    } else if (c == row_separator(shape) && depth == 0 && open.empty()) {
        row++;
        column = 0;
        mark = 0;
        previous = BSDL_SYMBOL_NONE;
    } else if (c == ',') {
        column++;
    } else if (depth == 0 && (c == ':' || c == '=')) {
        mark = c;
    }
    before = row_separator(shape) == c ? 0 : c;
    owner = BSDL_SYMBOL_NONE;
    used = true;
}

// Digits with a point or an exponent among them are one number.
static uint32_t number_end(std::string_view text, uint32_t at, uint32_t end)
{
    const auto digits = [&] {
        while (at < end && is_digit(text[at]))
            at++;
    };
    digits();
    if (at + 1 < end && text[at] == '.' && is_digit(text[at + 1])) {
        at++;
        digits();
    }
    if (at + 2 < end && (text[at] == 'e' || text[at] == 'E') &&
        (text[at + 1] == '-' || text[at + 1] == '+') && is_digit(text[at + 2])) {
        at += 2;
        digits();
    }
    return at;
}

// What goes on in the next piece without a blank is one word, as it is to the scanner.
void TableReader::piece(uint32_t begin, uint32_t end)
{
    const std::string_view text = list.text;
    if (shape == Shape::OPAQUE) {
        if (begin < end)
            list.add(begin, end, BSDL_SYMBOL_TEXT, BSDL_SYMBOL_IN_STRING);
        return;
    }
    if (word_begin != word_end && begin < end && !in_word(text[begin]))
        word();
    // Where parts and files have their names, these reach from blank to blank.
    const auto in_name = [&](char at) {
        return in_word(at) ||
               (!is_blank(at) && at != '(' && at != ':' &&
                ((shape == Shape::CHANNELS && depth == 0) || shape == Shape::PROGRAMS));
    };
    for (uint32_t at = begin; at < end;) {
        const char c = text[at];
        const bool joins = at == begin && word_begin != word_end;
        if (in_word(c) || (c == '$' && at + 1 < end && in_word(text[at + 1]))) {
            const uint32_t from = at;
            if (is_digit(c) && !joins)
                at = number_end(text, at, end);
            else if (c == '$')
                at++;
            while (at < end && in_name(text[at]))
                at++;
            if (joins) {
                if (joined.empty())
                    joined = text.substr(word_begin, word_end - word_begin);
                joined += text.substr(from, at - from);
            } else {
                word_begin = from;
            }
            word_end = at;
            if (at < end)
                word();
            continue;
        }
        if (c == '-' && at + 1 < end && text[at + 1] == '-') {
            const uint32_t from = at;
            while (at < end && text[at] != '\n' && text[at] != '\r')
                at++;
            list.add(from, at, BSDL_SYMBOL_COMMENT, BSDL_SYMBOL_IN_STRING);
            continue;
        }
        if (!is_blank(c))
            sign(c);
        at++;
    }
}

void TableReader::finish() { word(); }
