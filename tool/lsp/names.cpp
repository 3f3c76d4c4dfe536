// Where names are introduced and used, and giving them other ones.

#include "lsp/features.h"

#include <set>

namespace lsp
{

static uint32_t name_at(const Document &document, uint32_t offset)
{
    const std::optional<uint32_t> symbol = document.symbol_at(offset);
    if (!symbol || document.symbols()[*symbol].kind < BSDL_SYMBOL_COMPONENT)
        throw RequestError(REQUEST_FAILED, "There is no name here");
    return *symbol;
}

static json location(const Document &document, const BsdlSymbol &symbol)
{
    return {{"uri", document.uri()}, {"range", document.range(symbol.begin, symbol.end)}};
}

json definition(Workspace &workspace, const Document &document, uint32_t offset)
{
    const std::optional<uint32_t> symbol = document.symbol_at(offset);
    if (!symbol)
        return nullptr;
    const Introduced at = introduced(workspace, document, *symbol);
    if (!at.document)
        return nullptr;
    if (at.document->symbols().empty())
        return {{"uri", at.document->uri()}, {"range", at.document->range(0, 0)}};
    return location(*at.document, at.document->symbols()[at.symbol]);
}

namespace
{

// All symbols of one text for the same thing.
struct Uses {
    const Document *document;
    std::vector<uint32_t> symbols;
};

} // namespace

static bool is_shared(uint8_t kind)
{
    return kind == BSDL_SYMBOL_CELL_NAME || kind == BSDL_SYMBOL_EXTENSION ||
           kind == BSDL_SYMBOL_PACKAGE;
}

static std::vector<uint32_t> uses_in(const Document &document, uint32_t of)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    const BsdlSymbol &symbol = symbols[of];
    std::vector<uint32_t> uses;
    if (symbol.refers_to < 0) {
        const std::string word = document.word(symbol);
        for (uint32_t i = 0; i < symbols.size(); i++)
            if (symbols[i].kind == symbol.kind && symbols[i].refers_to < 0 &&
                same_name(document.word(symbols[i]), word))
                uses.push_back(i);
        return uses;
    }
    for (uint32_t i = 0; i < symbols.size(); i++)
        if (symbols[i].kind == symbol.kind && symbols[i].refers_to == symbol.refers_to)
            uses.push_back(i);
    return uses;
}

// Names of a package file are used in all texts that are open and use the package.
static std::vector<Uses> all_uses(Workspace &workspace, const Document &document, uint32_t index)
{
    const BsdlSymbol &symbol = document.symbols()[index];
    std::vector<Uses> uses = {{&document, uses_in(document, index)}};
    if (!is_shared(symbol.kind))
        return uses;
    const Introduced at = introduced(workspace, document, index);
    const std::string word = document.word(symbol);
    if (at.document && at.document != &document && symbol.kind != BSDL_SYMBOL_PACKAGE)
        uses.push_back({at.document, uses_in(*at.document, at.symbol)});
    for (const auto &[uri, other] : workspace.open_documents()) {
        if (&other == &document || &other == at.document)
            continue;
        for (uint32_t i = 0; i < other.symbols().size(); i++) {
            const BsdlSymbol &there = other.symbols()[i];
            if (there.kind != symbol.kind || !same_name(other.word(there), word))
                continue;
            if (introduced(workspace, other, i).document == (at.document ? at.document : &document))
                uses.push_back({&other, uses_in(other, i)});
            break;
        }
    }
    return uses;
}

json references(Workspace &workspace, const Document &document, uint32_t offset, bool declaration)
{
    const std::optional<uint32_t> symbol = document.symbol_at(offset);
    json list = json::array();
    if (!symbol || document.symbols()[*symbol].kind < BSDL_SYMBOL_COMPONENT)
        return list;
    for (const Uses &uses : all_uses(workspace, document, *symbol))
        for (const uint32_t i : uses.symbols) {
            const BsdlSymbol &each = uses.document->symbols()[i];
            if (declaration || !(each.flags & BSDL_SYMBOL_DEFINES))
                list.push_back(location(*uses.document, each));
        }
    return list;
}

json highlights(const Document &document, uint32_t offset)
{
    json list = json::array();
    const std::optional<uint32_t> symbol = document.symbol_at(offset);
    if (!symbol || document.symbols()[*symbol].kind < BSDL_SYMBOL_COMPONENT)
        return list;
    for (const uint32_t i : uses_in(document, *symbol)) {
        const BsdlSymbol &each = document.symbols()[i];
        list.push_back({{"range", document.range(each.begin, each.end)},
                        {"kind", each.flags & BSDL_SYMBOL_DEFINES ? 3 : 2}}); // written, read
    }
    return list;
}

// ----------------------------------------------------------------------------------------- rename

// Refuses names that cannot be changed: those that a standard or the package of the device gives.
static void require_own_name(Workspace &workspace, const Document &document, uint32_t index)
{
    const BsdlSymbol &symbol = document.symbols()[index];
    switch (symbol.kind) {
    case BSDL_SYMBOL_ATTRIBUTE:
    case BSDL_SYMBOL_PACKAGE:
    case BSDL_SYMBOL_DATA_NAME:
    case BSDL_SYMBOL_PART:
        throw RequestError(REQUEST_FAILED,
                           "Names of attributes, packages, data and parts cannot be renamed");
    case BSDL_SYMBOL_PIN:
        throw RequestError(REQUEST_FAILED, "A pin has the name of its package: edit the pin map");
    default:
        break;
    }
    if (!introduced(workspace, document, index).document)
        throw RequestError(REQUEST_FAILED,
                           "'" + document.word(symbol) +
                               "' is introduced nowhere in this text or its packages");
    static const std::set<std::string> OF_THE_STANDARD = {
        "BYPASS", "EXTEST", "SAMPLE",  "PRELOAD", "IDCODE",   "USERCODE",
        "INTEST", "CLAMP",  "RUNBIST", "HIGHZ",   "BOUNDARY", "DEVICE_ID"};
    if ((symbol.kind == BSDL_SYMBOL_INSTRUCTION || symbol.kind == BSDL_SYMBOL_REGISTER) &&
        OF_THE_STANDARD.contains(upper(document.word(symbol))))
        throw RequestError(REQUEST_FAILED,
                           "'" + document.word(symbol) + "' is a name of the standard");
}

json prepare_rename(Workspace &workspace, const Document &document, uint32_t offset)
{
    const uint32_t index = name_at(document, offset);
    require_own_name(workspace, document, index);
    require_readable(workspace, document, "renaming");
    const BsdlSymbol &symbol = document.symbols()[index];
    for (const auto &[begin, end] : document.parts(symbol))
        if (begin <= offset && offset <= end)
            return {{"range", document.range(begin, end)}, {"placeholder", document.word(symbol)}};
    return nullptr;
}

static void require_fit(const Document &document, const BsdlSymbol &symbol, const std::string &name)
{
    const bool number = symbol.kind == BSDL_SYMBOL_CELL_NUMBER;
    std::string_view rest = name;
    if (symbol.kind == BSDL_SYMBOL_VARIABLE && rest.starts_with('$'))
        rest.remove_prefix(1);
    bool fits = !rest.empty() && (number || g_ascii_isalpha(rest[0])) && rest.back() != '_' &&
                rest.find("__") == std::string_view::npos;
    for (const char c : rest)
        fits &= number ? g_ascii_isdigit(c) != 0 : g_ascii_isalnum(c) || c == '_';
    if (!fits)
        throw RequestError(INVALID_PARAMS,
                           number ? "'" + name + "' is not a cell number: use digits only"
                                  : "'" + name +
                                        "' is no name: a letter, then letters, digits and single "
                                        "underscores between them");
    for (const BsdlSymbol &other : document.symbols())
        if (other.kind == symbol.kind && (other.flags & BSDL_SYMBOL_DEFINES) &&
            other.refers_to != symbol.refers_to && symbol.kind < BSDL_SYMBOL_FLOW &&
            same_name(document.word(other), name))
            throw RequestError(REQUEST_FAILED,
                               "'" + name + "' is already a name in this text; choose another one");
}

json rename(Workspace &workspace, const Document &document, uint32_t offset,
            const std::string &new_name)
{
    const uint32_t index = name_at(document, offset);
    require_own_name(workspace, document, index);
    require_readable(workspace, document, "renaming");
    require_fit(document, document.symbols()[index], new_name);
    json changes = json::array();
    for (const Uses &uses : all_uses(workspace, document, index)) {
        json edits = json::array();
        for (const uint32_t i : uses.symbols) {
            // The whole name goes into the first part of a word that is split.
            std::string text = new_name;
            for (const auto &[begin, end] : uses.document->parts(uses.document->symbols()[i])) {
                edits.push_back({{"range", uses.document->range(begin, end)}, {"newText", text}});
                text.clear();
            }
        }
        if (edits.empty())
            continue;
        json version = uses.document->version() ? json(uses.document->version()) : json();
        changes.push_back(
            {{"textDocument", {{"uri", uses.document->uri()}, {"version", std::move(version)}}},
             {"edits", std::move(edits)}});
    }
    return {{"documentChanges", std::move(changes)}};
}

} // namespace lsp
