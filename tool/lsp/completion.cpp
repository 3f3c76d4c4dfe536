// What may come next, by the statement and the place in it.

#include "lsp/features.h"

#include <algorithm>
#include <set>

namespace lsp
{

enum ItemKind {
    ITEM_FUNCTION = 3,
    ITEM_FIELD = 5,
    ITEM_CLASS = 7,
    ITEM_MODULE = 9,
    ITEM_VALUE = 12,
    ITEM_ENUM = 13,
    ITEM_KEYWORD = 14,
    ITEM_SNIPPET = 15,
    ITEM_CONSTANT = 21,
    ITEM_STRUCT = 22
};

// Nobody reads on; the client asks again when more has been typed.
static constexpr size_t MOST_ITEMS = 300;

namespace
{

class Completing
{
  public:
    Completing(Workspace &in, const Document &of, uint32_t at, bool with_snippets);
    json run();
    bool is_incomplete() const { return more; }

  private:
    void add(std::string label, int kind, std::string detail = {}, int rank = 5);
    void add_words(std::initializer_list<const char *> words, int kind);
    void add_names(uint8_t kind, int item, const char *detail);
    void statements();
    void attributes(bool with_keyword);
    void of_place(const Document &part, const BsdlSymbol &symbol, const std::string &statement);
    void ports(const std::string &statement);
    void cell_numbers(bool of_control);
    void of_cell(const BsdlSymbol &symbol);
    void outside(const BsdlStatement &statement, const Document &part, const BsdlSymbol &symbol);
    std::string component() const;
    const BsdlStatement *statement_here() const;
    std::string up_to_word(const BsdlStatement &statement) const;

    Workspace &workspace;
    const Document &document;
    const uint32_t offset;
    const bool snippets;
    uint32_t word_begin;
    uint32_t word_end;
    std::string typed; // of the word so far, in capitals
    json replaced;     // the range of the word
    json items = json::array();
    bool more = false; // than are given
    std::set<std::string> seen;
};

} // namespace

static bool in_word(char c) { return g_ascii_isalnum(c) || c == '_'; }

Completing::Completing(Workspace &in, const Document &of, uint32_t at, bool with_snippets)
    : workspace(in), document(of), offset(at), snippets(with_snippets), word_begin(at), word_end(at)
{
    const std::string &text = document.text();
    while (word_begin > 0 && in_word(text[word_begin - 1]))
        word_begin--;
    while (word_end < text.size() && in_word(text[word_end]))
        word_end++;
    typed = upper(document.raw(word_begin, offset));
    replaced = document.range(word_begin, word_end);
}

void Completing::add(std::string label, int kind, std::string detail, int rank)
{
    const std::string folded = upper(label);
    if (folded.find(typed) == std::string::npos || !seen.insert(folded).second)
        return;
    if (items.size() >= MOST_ITEMS) {
        more = true;
        return;
    }
    json item = {{"label", label},
                 {"kind", kind},
                 {"sortText", std::to_string(rank) + label},
                 {"textEdit", {{"range", replaced}, {"newText", label}}}};
    if (!detail.empty())
        item["detail"] = std::move(detail);
    items.push_back(std::move(item));
}

void Completing::add_words(std::initializer_list<const char *> words, int kind)
{
    for (const char *word : words)
        add(word, kind);
}

// All names of a kind that the text introduces.
void Completing::add_names(uint8_t kind, int item, const char *detail)
{
    for (const BsdlSymbol &symbol : document.symbols())
        if (symbol.kind == kind && (symbol.flags & BSDL_SYMBOL_DEFINES) &&
            !(symbol.begin <= offset && offset <= symbol.end))
            add(document.word(symbol), item, detail);
}

std::string Completing::component() const
{
    for (const BsdlStatement &statement : document.statements())
        if (statement.kind == BSDL_STATEMENT_ENTITY && statement.name >= 0)
            return document.word(document.symbols()[static_cast<size_t>(statement.name)]);
    return "DEVICE";
}

// ------------------------------------------------------------------------------------- statements

// Which standards the text takes in; all where it takes in none.
static uint32_t standards_of(const Document &document)
{
    static constexpr std::pair<const char *, uint32_t> USES[] = {
        {"STD_1149_1_1990", BSDL_STANDARD_BIT_1990},
        {"STD_1149_1_1994", BSDL_STANDARD_BIT_1994},
        {"STD_1149_1_2001", BSDL_STANDARD_BIT_2001},
        {"STD_1532_2001", BSDL_STANDARD_BIT_1532_2001},
        {"STD_1532_2002", BSDL_STANDARD_BIT_1532_2002},
        {"STD_1149_6_2003", BSDL_STANDARD_BIT_1149_6_2003}};
    uint32_t standards = 0;
    for (const BsdlStatement &statement : document.statements())
        if (statement.kind == BSDL_STATEMENT_USE)
            for (const auto &[name, bit] : USES)
                if (document.statement_name(statement) == name)
                    standards |= bit;
    return standards ? standards : ~0u;
}

// The attributes that may still be written here: not those that the text already has, and not those
// that belong in front of a statement before the cursor. The next ones come first.
void Completing::attributes(bool with_keyword)
{
    const uint32_t standards = standards_of(document);
    const std::vector<StatementGuide> &guides = statement_guides();
    std::set<std::string> written;
    size_t next = 0;
    for (const BsdlStatement &statement : document.statements()) {
        if (statement.kind != BSDL_STATEMENT_ATTRIBUTE || statement.name < 0 ||
            (statement.begin <= word_begin && word_begin <= statement.end && !statement.closed))
            continue;
        const std::string name = document.statement_name(statement);
        written.insert(name);
        for (size_t i = 0; i < guides.size() && statement.end <= offset; i++)
            if (name == guides[i].name)
                next = std::max(next, i + 1);
    }
    const std::string device = component();
    for (size_t i = 0; i < guides.size(); i++) {
        const StatementGuide &guide = guides[i];
        const bool tap = std::string_view(guide.name).starts_with("TAP_SCAN");
        if (written.contains(guide.name) || !(guide.standards & standards) || (i < next && !tap))
            continue;
        const std::string start = std::string(with_keyword ? "attribute " : "") + guide.name +
                                  " of " + (tap ? "" : device);
        json item = {{"label", guide.name},
                     {"kind", ITEM_SNIPPET},
                     {"detail", guide.meaning},
                     {"filterText", (with_keyword ? "attribute " : "") + std::string(guide.name)},
                     {"sortText", i < 10 ? "10" + std::to_string(i) : "1" + std::to_string(i)}};
        std::string text = start;
        if (snippets) {
            text += std::string(tap ? "${9:PORT} : signal is " : " : entity is ") + guide.skeleton +
                    ";$0";
            item["insertTextFormat"] = 2;
        }
        item["textEdit"] = {{"range", replaced}, {"newText", text}};
        items.push_back(std::move(item));
    }
}

void Completing::statements()
{
    bool entity = false;
    bool port = false;
    bool use = false;
    for (const BsdlStatement &statement : document.statements()) {
        entity |= statement.kind == BSDL_STATEMENT_ENTITY;
        port |= statement.kind == BSDL_STATEMENT_PORT;
        use |= statement.kind == BSDL_STATEMENT_USE;
    }
    if (!entity) {
        add_words({"entity", "package"}, ITEM_KEYWORD);
        return;
    }
    if (!port)
        add_words({"generic", "port"}, ITEM_KEYWORD);
    add("use", ITEM_KEYWORD, {}, use ? 5 : 0);
    add_words({"attribute", "constant", "end"}, ITEM_KEYWORD);
    if (use)
        attributes(true);
}

// ----------------------------------------------------------------------------------------- tables

// In a table of pins those without pins come first, in the table of cells those without a cell.
void Completing::ports(const std::string &statement)
{
    const BsdlStatement *here = statement_here();
    const std::span<const BsdlSymbol> symbols = document.symbols();
    std::vector<bool> taken(symbols.size());
    for (uint32_t i = 0; here && i < here->symbol_count; i++) {
        const BsdlSymbol &symbol = symbols[here->first_symbol + i];
        if (symbol.kind == BSDL_SYMBOL_PORT && symbol.refers_to >= 0 &&
            !(symbol.begin <= offset && offset <= symbol.end))
            taken[static_cast<size_t>(symbol.refers_to)] = true;
    }
    const char *missing = statement == "BOUNDARY_REGISTER"                ? "port without a cell"
                          : here && here->kind == BSDL_STATEMENT_CONSTANT ? "port without pins"
                                                                          : "port";
    for (const bool with_taken : {false, true})
        for (uint32_t i = 0; i < symbols.size() && !more; i++)
            if (symbols[i].kind == BSDL_SYMBOL_PORT && (symbols[i].flags & BSDL_SYMBOL_DEFINES) &&
                taken[i] == with_taken)
                add(document.word(symbols[i]), ITEM_FIELD, with_taken ? "port" : missing,
                    with_taken ? 6 : 1);
}

// The numbers of the cells that control others, and the number after the highest.
void Completing::cell_numbers(bool of_control)
{
    int64_t next = 0;
    std::string number;
    for (const BsdlSymbol &symbol : document.symbols()) {
        if (symbol.begin <= offset && offset <= symbol.end)
            continue;
        if (symbol.kind == BSDL_SYMBOL_CELL_NUMBER && symbol.column == 0) {
            number = document.word(symbol);
            next = std::max<int64_t>(next, std::strtoll(number.c_str(), nullptr, 10) + 1);
        } else if (of_control && symbol.kind == BSDL_SYMBOL_FUNCTION) {
            const std::string function = document.word(symbol);
            if (upper(function).starts_with("CONTROL"))
                add(number, ITEM_VALUE, function);
        }
    }
    if (!of_control)
        add(std::to_string(next), ITEM_VALUE, "next cell");
}

void Completing::of_cell(const BsdlSymbol &symbol)
{
    if (symbol.kind == BSDL_SYMBOL_FUNCTION) {
        add_words({"input", "output2", "output3", "control", "controlr", "internal", "clock",
                   "bidir", "observe_only"},
                  ITEM_ENUM);
    } else if (symbol.column == 3) {
        add_words({"X", "0", "1"}, ITEM_VALUE);
    } else if (symbol.column == 5) {
        add_words({"0", "1"}, ITEM_VALUE);
    } else if (symbol.column == 6) {
        add_words({"Z", "WEAK0", "WEAK1", "PULL0", "PULL1", "KEEPER"}, ITEM_VALUE);
    } else if (symbol.kind == BSDL_SYMBOL_CELL_NUMBER &&
               (symbol.column == 0 || symbol.column == 4)) {
        cell_numbers(symbol.column == 4);
    }
}

void Completing::of_place(const Document &part, const BsdlSymbol &symbol,
                          const std::string &statement)
{
    switch (symbol.kind) {
    case BSDL_SYMBOL_PORT:
        if (!(symbol.flags & BSDL_SYMBOL_DEFINES) || (symbol.flags & BSDL_SYMBOL_IN_STRING))
            ports(statement);
        break;
    case BSDL_SYMBOL_CELL_NAME:
        if (const DeviceFacts *facts = workspace.facts_of(document))
            for (const auto &[cell, package] : facts->cells)
                add(cell, ITEM_CLASS, package.empty() ? facts->standard : package);
        for (const Document *package : workspace.packages_of(document))
            for (const BsdlSymbol &cell : package->symbols())
                if (cell.kind == BSDL_SYMBOL_CELL_NAME && (cell.flags & BSDL_SYMBOL_DEFINES))
                    add(package->word(cell), ITEM_CLASS);
        break;
    case BSDL_SYMBOL_FUNCTION:
    case BSDL_SYMBOL_VALUE:
    case BSDL_SYMBOL_CELL_NUMBER:
        of_cell(symbol);
        break;
    case BSDL_SYMBOL_INSTRUCTION:
        if (statement == "INSTRUCTION_OPCODE") {
            for (const BsdlSymbol &other : document.symbols())
                if (other.kind == BSDL_SYMBOL_INSTRUCTION && (other.flags & BSDL_SYMBOL_DEFINES))
                    seen.insert(upper(document.word(other)));
            add_words({"BYPASS", "EXTEST", "SAMPLE", "PRELOAD", "INTEST", "RUNBIST", "CLAMP",
                       "HIGHZ", "IDCODE", "USERCODE"},
                      ITEM_FUNCTION);
        } else {
            add_names(BSDL_SYMBOL_INSTRUCTION, ITEM_FUNCTION, "instruction");
        }
        break;
    case BSDL_SYMBOL_REGISTER:
        add_words({"BYPASS", "BOUNDARY", "DEVICE_ID"}, ITEM_STRUCT);
        break;
    case BSDL_SYMBOL_PIN_MAP:
        add_names(BSDL_SYMBOL_PIN_MAP, ITEM_CONSTANT, "pin map");
        break;
    case BSDL_SYMBOL_FLOW:
        add_names(BSDL_SYMBOL_FLOW, ITEM_FUNCTION, "flow");
        break;
    case BSDL_SYMBOL_PROCEDURE:
        add_names(BSDL_SYMBOL_PROCEDURE, ITEM_FUNCTION, "procedure");
        break;
    case BSDL_SYMBOL_COMPONENT:
        add(component(), ITEM_MODULE);
        break;
    case BSDL_SYMBOL_PACKAGE:
        for (const std::string &name : workspace.package_names(document))
            add(name + ".all", ITEM_MODULE);
        break;
    default:
        outside(part.statement_of(symbol), part, symbol);
        break;
    }
}

void Completing::outside(const BsdlStatement &statement, const Document &part,
                         const BsdlSymbol &symbol)
{
    const auto place = static_cast<uint32_t>(&symbol - part.symbols().data()) -
                       statement.first_symbol; // words before it
    switch (statement.kind) {
    case BSDL_STATEMENT_ATTRIBUTE:
        if (place == 1)
            attributes(false);
        else if (place == 2)
            add("of", ITEM_KEYWORD);
        else if (place == 4)
            add_words({"entity", "signal"}, ITEM_KEYWORD);
        else if (place == 5)
            add("is", ITEM_KEYWORD);
        else if (place > 5)
            add_words({"true", "PHYSICAL_PIN_MAP"}, ITEM_KEYWORD);
        break;
    case BSDL_STATEMENT_PORT:
        add_words({"in", "out", "inout", "buffer", "linkage", "bit", "bit_vector", "to", "downto"},
                  ITEM_KEYWORD);
        break;
    case BSDL_STATEMENT_CONSTANT:
        add_words({"PIN_MAP_STRING", "CELL_INFO"}, ITEM_KEYWORD);
        break;
    case BSDL_STATEMENT_GENERIC:
        add_words({"PHYSICAL_PIN_MAP", "string"}, ITEM_KEYWORD);
        break;
    default:
        statements();
        break;
    }
}

const BsdlStatement *Completing::statement_here() const
{
    const BsdlStatement *here = nullptr;
    for (const BsdlStatement &statement : document.statements())
        if (statement.begin <= word_begin)
            here = &statement;
    if (!here || (here->closed && here->end <= word_begin))
        return nullptr;
    return here;
}

// The text of a statement before the word; of a table, which may be long, only what stands before
// its rows, and the row.
std::string Completing::up_to_word(const BsdlStatement &statement) const
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    const auto begin = symbols.begin() + statement.first_symbol;
    const auto end = begin + statement.symbol_count;
    const auto in_string = [](const BsdlSymbol &symbol) {
        return (symbol.flags & BSDL_SYMBOL_IN_STRING) != 0 && symbol.kind != BSDL_SYMBOL_COMMENT;
    };
    const auto first = std::find_if(begin, end, in_string);
    auto last =
        std::lower_bound(begin, end, word_begin, [](const BsdlSymbol &symbol, uint32_t position) {
            return symbol.begin < position;
        });
    while (last != begin && !in_string(*(last - 1)))
        --last;
    if (first >= last)
        return std::string(document.raw(statement.begin, word_begin));
    auto row = last - 1;
    while (row != first && ((row - 1)->row == (last - 1)->row || !in_string(*(row - 1))))
        --row;
    while (!in_string(*row))
        ++row;
    return std::string(document.raw(statement.begin, first->begin)) +
           std::string(document.raw(row->begin, word_begin));
}

// Puts a word at the cursor and looks up what kind of word it is there.
json Completing::run()
{
    const BsdlStatement *here = statement_here();
    const std::optional<uint32_t> at = document.symbol_at(offset);
    if (at && document.symbols()[*at].kind == BSDL_SYMBOL_COMMENT)
        return items;
    if (!here || here->kind == BSDL_STATEMENT_OTHER) {
        statements();
        return items;
    }
    constexpr const char *WORD = "W";
    std::string text = up_to_word(*here);
    const auto place = static_cast<uint32_t>(text.size());
    text += WORD;
    text += document.raw(word_end, std::max(document.line_end(document.line_of(offset)), word_end));
    const Document part("", std::move(text), 0, Encoding::UTF8);
    if (const std::optional<uint32_t> symbol = part.symbol_at(place)) {
        const BsdlSymbol &found = part.symbols()[*symbol];
        of_place(part, found, part.statement_name(part.statement_of(found)));
    }
    return items;
}

json completion(Workspace &workspace, const Document &document, uint32_t offset, bool snippets)
{
    Completing completing(workspace, document, offset, snippets);
    json items = completing.run();
    return {{"isIncomplete", completing.is_incomplete()}, {"items", std::move(items)}};
}

} // namespace lsp
