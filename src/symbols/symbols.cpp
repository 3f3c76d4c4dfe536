// From a text to its symbols: statement by statement, then name by name.

#include "base/names.h"
#include "scan/keywords.h"
#include "symbols/table_reader.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

struct BsdlSymbols {
    SymbolList list;
};

namespace
{

class StatementReader
{
  public:
    explicit StatementReader(SymbolList &into) : list(into), text(into.text) {}
    void run();

  private:
    void open(uint32_t begin, int32_t kind);
    void close(uint32_t end, bool closed);
    bool begins_statement(std::string_view word, uint32_t begin) const;

    void comment(uint32_t *at);
    void string(uint32_t *at);
    void word(uint32_t *at);
    void sign(char c, uint32_t at);
    void of_header(uint32_t begin, uint32_t end, std::string_view word);
    void of_attribute(uint32_t begin, uint32_t end, std::string_view word);
    void of_constant(uint32_t begin, uint32_t end, std::string_view word);
    void of_port(uint32_t begin, uint32_t end, std::string_view word);
    uint32_t add_name(uint32_t begin, uint32_t end, uint8_t kind, bool defines);
    void name_is(uint8_t kind);
    uint32_t string_end(uint32_t begin) const;

    BsdlStatement &now() { return list.statements.back(); }

    SymbolList &list;
    const std::string_view text;
    bool in_statement = false;
    bool in_package = false;
    uint32_t line_start = 0;   // no word is before this one on its line
    uint32_t words = 0;        // of the statement so far
    uint32_t last_end = 0;     // after the last thing of the statement
    int depth = 0;             // of parentheses outside strings
    int columns = 0;           // commas within
    bool behind_colon = false; // in a port clause
    bool value = false;        // after IS or :=
    const AttributeShape *attribute = nullptr;
    std::optional<TableReader> table;
};

} // namespace

static bool is_digit(char c) { return c >= '0' && c <= '9'; }

static bool in_word(char c)
{
    return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

// ------------------------------------------------------------------------------------- statements

struct StatementWord {
    const char *word;
    int32_t kind;
};

static constexpr StatementWord STATEMENT_WORDS[] = {
    {"ATTRIBUTE", BSDL_STATEMENT_ATTRIBUTE},
    {"CONSTANT", BSDL_STATEMENT_CONSTANT},
    {"USE", BSDL_STATEMENT_USE},
    {"END", BSDL_STATEMENT_END},
    {"PORT", BSDL_STATEMENT_PORT},
    {"GENERIC", BSDL_STATEMENT_GENERIC},
    {"ENTITY", BSDL_STATEMENT_ENTITY},
    {"PACKAGE", BSDL_STATEMENT_PACKAGE},
};

static int32_t statement_kind(std::string_view word)
{
    for (const StatementWord &row : STATEMENT_WORDS)
        if (same_word(row.word, word))
            return row.kind;
    return BSDL_STATEMENT_OTHER;
}

// Where a ';' is missing, the next statement begins all the same with its word on a new line.
// ENTITY stands within attributes, so it is no sign of it.
bool StatementReader::begins_statement(std::string_view word, uint32_t begin) const
{
    if (begin != line_start || words == 0)
        return false;
    const int32_t kind = statement_kind(word);
    return kind != BSDL_STATEMENT_OTHER && kind != BSDL_STATEMENT_ENTITY;
}

void StatementReader::open(uint32_t begin, int32_t kind)
{
    list.statements.push_back({.kind = kind,
                               .begin = begin,
                               .end = begin,
                               .first_symbol = static_cast<uint32_t>(list.symbols.size()),
                               .symbol_count = 0,
                               .name = -1,
                               .rows = 0,
                               .closed = 0});
    in_statement = true;
    words = 0;
    depth = 0;
    columns = 0;
    behind_colon = false;
    value = false;
    attribute = nullptr;
    table.reset();
}

void StatementReader::close(uint32_t end, bool closed)
{
    if (table) {
        table->finish();
        now().rows = table->rows();
        table.reset();
    }
    now().end = end;
    now().symbol_count = static_cast<uint32_t>(list.symbols.size()) - now().first_symbol;
    now().closed = closed;
    in_statement = false;
}

// ------------------------------------------------------------------------------------------ words

uint32_t StatementReader::add_name(uint32_t begin, uint32_t end, uint8_t kind, bool defines)
{
    const uint32_t index =
        list.add(begin, end, kind, defines ? uint8_t{BSDL_SYMBOL_DEFINES} : uint8_t{0});
    list.symbols[index].column = static_cast<int16_t>(std::min(columns, INT16_MAX));
    return index;
}

void StatementReader::name_is(uint8_t kind)
{
    if (now().name < 0)
        return;
    BsdlSymbol &name = list.symbols[static_cast<size_t>(now().name)];
    name.kind = kind;
    name.flags |= BSDL_SYMBOL_DEFINES;
}

void StatementReader::of_header(uint32_t begin, uint32_t end, std::string_view word)
{
    const int32_t kind = now().kind;
    if (kind == BSDL_STATEMENT_PACKAGE && words == 1 && same_word(word, "BODY")) {
        now().kind = BSDL_STATEMENT_PACKAGE_BODY;
        words--;
        add_name(begin, end, BSDL_SYMBOL_KEYWORD, false);
        return;
    }
    if (words == 1) {
        const bool package = kind == BSDL_STATEMENT_USE || kind == BSDL_STATEMENT_PACKAGE ||
                             kind == BSDL_STATEMENT_PACKAGE_BODY ||
                             (kind == BSDL_STATEMENT_END && in_package);
        const bool defines = kind == BSDL_STATEMENT_PACKAGE || kind == BSDL_STATEMENT_ENTITY;
        now().name = static_cast<int32_t>(
            add_name(begin, end, package ? BSDL_SYMBOL_PACKAGE : BSDL_SYMBOL_COMPONENT, defines));
        return;
    }
    add_name(begin, end, BSDL_SYMBOL_KEYWORD, false);
    if (kind != BSDL_STATEMENT_USE && kind != BSDL_STATEMENT_END && same_word(word, "IS")) {
        in_package |= kind != BSDL_STATEMENT_ENTITY;
        close(end, true);
    }
}

void StatementReader::of_attribute(uint32_t begin, uint32_t end, std::string_view word)
{
    if (words == 1) {
        attribute = find_attribute_shape(word);
        now().name = static_cast<int32_t>(
            add_name(begin, end, attribute ? BSDL_SYMBOL_ATTRIBUTE : BSDL_SYMBOL_EXTENSION, false));
    } else if (words == 2 && same_word(word, "BSDL_EXTENSION")) {
        if (!attribute)
            name_is(BSDL_SYMBOL_EXTENSION);
        add_name(begin, end, BSDL_SYMBOL_KEYWORD, false);
    } else if (words == 3) {
        const bool port = attribute && attribute->of_port;
        add_name(begin, end, port ? BSDL_SYMBOL_PORT : BSDL_SYMBOL_COMPONENT, false);
    } else if (!value) {
        value = same_word(word, "IS");
        const bool subscript = depth > 0 && is_digit(word[0]);
        add_name(begin, end, subscript ? BSDL_SYMBOL_SUBSCRIPT : BSDL_SYMBOL_KEYWORD, false);
    } else {
        add_name(begin, end, is_digit(word[0]) ? BSDL_SYMBOL_NUMBER : BSDL_SYMBOL_KEYWORD, false);
    }
}

void StatementReader::of_constant(uint32_t begin, uint32_t end, std::string_view word)
{
    if (words == 1) {
        now().name = static_cast<int32_t>(add_name(begin, end, BSDL_SYMBOL_NONE, false));
        return;
    }
    if (words == 2 && same_word(word, "PIN_MAP_STRING"))
        name_is(BSDL_SYMBOL_PIN_MAP);
    else if (words == 2 && same_word(word, "CELL_INFO"))
        name_is(BSDL_SYMBOL_CELL_NAME);
    add_name(begin, end, BSDL_SYMBOL_KEYWORD, false);
}

void StatementReader::of_port(uint32_t begin, uint32_t end, std::string_view word)
{
    if (words == 0 || depth == 0)
        add_name(begin, end, BSDL_SYMBOL_KEYWORD, false);
    else if (!behind_colon)
        add_name(begin, end, BSDL_SYMBOL_PORT, true);
    else
        add_name(begin, end, is_digit(word[0]) ? BSDL_SYMBOL_SUBSCRIPT : BSDL_SYMBOL_KEYWORD,
                 false);
}

void StatementReader::word(uint32_t *at)
{
    const uint32_t begin = *at;
    uint32_t end = begin;
    while (end < text.size() && in_word(text[end]))
        end++;
    // 20.0e6, 1.5e-3
    if (is_digit(text[begin]))
        while (end + 1 < text.size() &&
               ((text[end] == '.' && is_digit(text[end + 1])) ||
                ((text[end] == '-' || text[end] == '+') && (text[end - 1] | 0x20) == 'e' &&
                 is_digit(text[end + 1]))))
            for (end++; end < text.size() && in_word(text[end]);)
                end++;
    *at = end;

    const std::string_view word = text.substr(begin, end - begin);
    if (in_statement && begins_statement(word, begin))
        close(last_end, false);
    // The word of a data file stands before its entity.
    if (in_statement && now().kind == BSDL_STATEMENT_OTHER &&
        statement_kind(word) != BSDL_STATEMENT_OTHER) {
        now().kind = statement_kind(word);
        words = 0;
    }
    if (!in_statement)
        open(begin, statement_kind(word));
    last_end = end;
    if (table)
        table->finish();
    switch (words ? now().kind : BSDL_STATEMENT_OTHER) {
    case BSDL_STATEMENT_ENTITY:
    case BSDL_STATEMENT_PACKAGE:
    case BSDL_STATEMENT_PACKAGE_BODY:
    case BSDL_STATEMENT_USE:
    case BSDL_STATEMENT_END:
        of_header(begin, end, word);
        break;
    case BSDL_STATEMENT_ATTRIBUTE:
        of_attribute(begin, end, word);
        break;
    case BSDL_STATEMENT_CONSTANT:
        of_constant(begin, end, word);
        break;
    case BSDL_STATEMENT_PORT:
        of_port(begin, end, word);
        break;
    default: {
        const Keyword *row =
            find_keyword(word.data(), word.size(), text_hash(word.data(), word.size()));
        add_name(begin, end, row && row->token ? BSDL_SYMBOL_KEYWORD : BSDL_SYMBOL_NONE, false);
    }
    }
    words++;
}

// ---------------------------------------------------------------------------- signs and strings

void StatementReader::sign(char c, uint32_t at)
{
    if (!in_statement)
        open(at, BSDL_STATEMENT_OTHER);
    last_end = at + 1;
    if (table && c != '&')
        table->finish();
    if (c == '(') {
        depth++;
    } else if (c == ')') {
        depth -= depth > 0;
    } else if (c == ',') {
        columns++;
    } else if (c == ':') {
        behind_colon = true;
    } else if (c == ';') {
        if (now().kind == BSDL_STATEMENT_PORT && depth > 0) {
            behind_colon = false;
            columns = 0;
            return;
        }
        close(at + 1, true);
    }
}

// After the last quotation mark of a string. One that is not closed on its line goes on where the
// next line with quotation marks has an odd number of them; else its mark is missing, and it ends
// with its line.
uint32_t StatementReader::string_end(uint32_t begin) const
{
    const size_t close = text.find('"', begin + 1);
    const size_t line = text.substr(0, close).find_first_of("\n\r", begin);
    if (close == std::string_view::npos)
        return static_cast<uint32_t>(std::min(line, text.size()));
    if (line == std::string_view::npos)
        return static_cast<uint32_t>(close + 1);
    bool open = false;
    size_t at = text.find_last_of("\n\r", close);
    for (at = at == std::string_view::npos ? begin : at; at < text.size(); at++) {
        const char c = text[at];
        if (c == '"')
            open = !open;
        else if (at > close && (c == '\n' || c == '\r'))
            break;
        else if (!open && at > close && c == '-' && text.substr(at, 2) == "--")
            break;
    }
    return static_cast<uint32_t>(open ? close + 1 : line);
}

static Shape shape_of(const BsdlStatement &statement, const AttributeShape *attribute)
{
    switch (statement.kind) {
    case BSDL_STATEMENT_GENERIC:
        return Shape::PIN_MAP_NAME;
    case BSDL_STATEMENT_CONSTANT:
        return Shape::PIN_MAP;
    default:
        return attribute ? attribute->shape : Shape::OPAQUE;
    }
}

void StatementReader::string(uint32_t *at)
{
    const uint32_t begin = *at;
    const uint32_t end = string_end(begin);
    *at = end;
    if (!in_statement)
        open(begin, BSDL_STATEMENT_OTHER);
    if (!table)
        table.emplace(list, shape_of(now(), attribute));
    const bool closed = end > begin + 1 && text[end - 1] == '"';
    table->piece(begin + 1, closed ? end - 1 : end);
    last_end = end;
}

void StatementReader::comment(uint32_t *at)
{
    const uint32_t begin = *at;
    const auto end =
        static_cast<uint32_t>(std::min(text.find_first_of("\n\r", begin), text.size()));
    *at = end;
    const bool alone = !in_statement;
    if (alone)
        open(begin, BSDL_STATEMENT_OTHER);
    list.add(begin, end, BSDL_SYMBOL_COMMENT);
    if (alone)
        close(end, true);
}

void StatementReader::run()
{
    bool fresh = true; // no word yet on this line
    for (uint32_t at = 0; at < text.size();) {
        const char c = text[at];
        if (c == '\n' || c == '\r') {
            fresh = true;
            at++;
        } else if (in_word(c)) {
            if (fresh)
                line_start = at;
            fresh = false;
            word(&at);
        } else if (c == '"') {
            fresh = false;
            string(&at);
        } else if (c == '-' && at + 1 < text.size() && text[at + 1] == '-') {
            comment(&at);
        } else {
            if (c != ' ' && c != '\t' && c != '\v' && c != '\f') {
                fresh = false;
                sign(c, at);
            }
            at++;
        }
    }
    if (in_statement)
        close(last_end, false);
}

// -------------------------------------------------------------------------------------- references

namespace
{

// Finds the symbol that declares a name: the first one, as in the checks.
class Names
{
  public:
    explicit Names(SymbolList &of) : list(of) {}
    void run();

  private:
    struct Key {
        uint64_t hash;
        std::string_view name;
        std::string_view data; // of a flow, procedure or action
        uint64_t scope;
        uint8_t kind;
    };

    Key key_of(uint32_t index);
    uint32_t *slot_of(const Key &key);
    bool equal(const Key &a, const Key &b) const;

    SymbolList &list;
    std::vector<uint32_t> slots;
    std::vector<Key> keys; // of the definitions, in the order they were found
    std::vector<uint32_t> definitions;
    std::vector<uint32_t> split_indexes;
};

} // namespace

// Whether a symbol of this kind is a name: those kinds are the last of the enumeration.
static bool is_name(uint8_t kind) { return kind >= BSDL_SYMBOL_COMPONENT; }

// Flows and what is made of them belong to a component, of which a data file has several; variables
// belong to a flow.
static uint64_t scope_of(const SymbolList &list, const BsdlSymbol &symbol)
{
    if (symbol.kind == BSDL_SYMBOL_VARIABLE)
        return (uint64_t{symbol.statement} << 32) + symbol.row + 1;
    if (symbol.kind < BSDL_SYMBOL_FLOW || symbol.kind > BSDL_SYMBOL_ACTION)
        return 0;
    const BsdlStatement &statement = list.statements[symbol.statement];
    for (uint32_t i = statement.first_symbol; i < list.symbols.size(); i++)
        if (list.symbols[i].kind == BSDL_SYMBOL_COMPONENT) {
            const BsdlSymbol &component = list.symbols[i];
            return text_hash(list.text.data() + component.begin, component.end - component.begin);
        } else if (list.symbols[i].flags & BSDL_SYMBOL_IN_STRING) {
            break;
        }
    return 0;
}

Names::Key Names::key_of(uint32_t index)
{
    const BsdlSymbol &symbol = list.symbols[index];
    Key key = {.hash = 0,
               .name = list.text.substr(symbol.begin, symbol.end - symbol.begin),
               .data = {},
               .scope = scope_of(list, symbol),
               .kind = symbol.kind};
    if (symbol.flags & BSDL_SYMBOL_SPLIT) {
        const auto at = std::lower_bound(split_indexes.begin(), split_indexes.end(), index);
        key.name = list.split_names[static_cast<size_t>(at - split_indexes.begin())];
    }
    if (symbol.kind == BSDL_SYMBOL_CELL_NUMBER)
        while (key.name.size() > 1 && key.name[0] == '0')
            key.name.remove_prefix(1);
    if (symbol.kind >= BSDL_SYMBOL_FLOW && symbol.kind <= BSDL_SYMBOL_ACTION &&
        index + 1 < list.symbols.size()) {
        const BsdlSymbol &next = list.symbols[index + 1];
        if (next.kind == BSDL_SYMBOL_DATA_NAME)
            key.data = list.text.substr(next.begin, next.end - next.begin);
    }
    key.hash = (text_hash(key.name.data(), key.name.size()) +
                text_hash(key.data.data(), key.data.size()) * 31 + key.scope) *
                   0x9E3779B97F4A7C15 +
               key.kind * uint64_t{0xD1B54A32D192ED03};
    key.hash ^= key.hash >> 29;
    return key;
}

bool Names::equal(const Key &a, const Key &b) const
{
    return a.hash == b.hash && a.kind == b.kind && a.scope == b.scope &&
           same_word(a.name, b.name) && same_word(a.data, b.data);
}

// Holds the number of the definition plus one; 0 is free.
uint32_t *Names::slot_of(const Key &key)
{
    const size_t mask = slots.size() - 1;
    for (size_t at = key.hash & mask;; at = (at + 1) & mask)
        if (slots[at] == 0 || equal(keys[slots[at] - 1], key))
            return &slots[at];
}

void Names::run()
{
    size_t defining = 0;
    for (uint32_t i = 0; i < list.symbols.size(); i++) {
        defining += (list.symbols[i].flags & BSDL_SYMBOL_DEFINES) != 0;
        if (list.symbols[i].flags & BSDL_SYMBOL_SPLIT)
            split_indexes.push_back(i);
    }
    size_t size = 16;
    while (size < defining * 2)
        size *= 2;
    slots.assign(size, 0);

    for (uint32_t i = 0; i < list.symbols.size(); i++) {
        BsdlSymbol &symbol = list.symbols[i];
        if (!(symbol.flags & BSDL_SYMBOL_DEFINES))
            continue;
        symbol.refers_to = static_cast<int32_t>(i);
        if (symbol.kind == BSDL_SYMBOL_PIN)
            continue;
        const Key key = key_of(i);
        uint32_t *slot = slot_of(key);
        if (*slot) {
            symbol.refers_to = static_cast<int32_t>(definitions[*slot - 1]);
            symbol.flags &= static_cast<uint8_t>(~BSDL_SYMBOL_DEFINES);
            continue;
        }
        keys.push_back(key);
        definitions.push_back(i);
        *slot = static_cast<uint32_t>(keys.size());
    }
    for (uint32_t i = 0; i < list.symbols.size(); i++) {
        BsdlSymbol &symbol = list.symbols[i];
        if (!is_name(symbol.kind) || symbol.refers_to != BSDL_SYMBOL_ELSEWHERE)
            continue;
        if (const uint32_t slot = *slot_of(key_of(i)))
            symbol.refers_to = static_cast<int32_t>(definitions[slot - 1]);
    }
}

// ----------------------------------------------------------------------------------------- exports

BsdlSymbols *bsdlSymbolsOf(const char *text, size_t length)
{
    if ((!text && length) || length >= INT32_MAX)
        return nullptr;
    try {
        auto symbols = std::make_unique<BsdlSymbols>();
        symbols->list.text = {text ? text : "", length};
        StatementReader(symbols->list).run();
        Names(symbols->list).run();
        // The caller's text may go away now: nothing is kept that refers to it.
        symbols->list.text = {};
        symbols->list.split_names.clear();
        symbols->list.symbols.shrink_to_fit();
        return symbols.release();
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

void bsdlSymbolsRelease(BsdlSymbols *symbols) { delete symbols; }

uint32_t bsdlSymbolCount(const BsdlSymbols *symbols)
{
    return symbols ? static_cast<uint32_t>(symbols->list.symbols.size()) : 0;
}

const BsdlSymbol *bsdlSymbolAt(const BsdlSymbols *symbols, uint32_t index)
{
    return index < bsdlSymbolCount(symbols) ? &symbols->list.symbols[index] : nullptr;
}

uint32_t bsdlStatementCount(const BsdlSymbols *symbols)
{
    return symbols ? static_cast<uint32_t>(symbols->list.statements.size()) : 0;
}

const BsdlStatement *bsdlStatementAt(const BsdlSymbols *symbols, uint32_t index)
{
    return index < bsdlStatementCount(symbols) ? &symbols->list.statements[index] : nullptr;
}
