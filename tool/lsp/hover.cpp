// What is known about a word, for the person who points at it.

#include "console.h"
#include "idcode.h"
#include "lsp/features.h"

#include <algorithm>

namespace lsp
{

static std::string lower(std::string text)
{
    for (char &c : text)
        c = static_cast<char>(g_ascii_tolower(c));
    return text;
}

static std::string port_text(const std::string &port, const std::string &subscript)
{
    return subscript.empty() ? port : port + "(" + subscript + ")";
}

// "output3 of D(3), enabled when cell 17 is 1, else Z; safe value X"
static std::string cell_in_words(const CellRow &row)
{
    std::string text = lower(row.function);
    if (!row.port.empty())
        text += " of " + port_text(row.port, row.subscript);
    if (!row.control.empty()) {
        const std::string enable = row.disable == "0" ? "1" : row.disable == "1" ? "0" : "";
        text += row.control == row.number ? ", enabled when it is itself "
                                          : ", enabled when cell " + row.control + " is ";
        text += enable.empty() ? "not " + row.disable : enable;
        if (!row.result.empty())
            text += ", else " + upper(row.result);
    }
    if (!row.safe.empty())
        text += "; safe value " + upper(row.safe);
    return text;
}

// ------------------------------------------------------------------------------------------ ports

// "in bit", "inout bit_vector(7 downto 0)": what stands after the colon.
static std::string declaration_of(const Document &document, uint32_t port)
{
    const BsdlSymbol &symbol = document.symbols()[port];
    const std::string &text = document.text();
    const size_t colon = text.find(':', symbol.end);
    const BsdlStatement &statement = document.statement_of(symbol);
    if (colon == std::string::npos || colon > statement.end)
        return {};
    int depth = 0;
    size_t end = colon + 1;
    for (; end < statement.end && text[end] != ';' && depth >= 0; end++)
        depth += (text[end] == '(') - (text[end] == ')');
    std::string declared;
    for (const char c : text.substr(colon + 1, end - colon - (depth < 0 ? 2 : 1)))
        if (!g_ascii_isspace(c) || (!declared.empty() && declared.back() != ' '))
            declared += g_ascii_isspace(c) ? ' ' : c;
    while (!declared.empty() && declared.back() == ' ')
        declared.pop_back();
    const size_t comment = declared.find("--");
    return declared.substr(0, comment);
}

static std::string role_of(const std::string &statement)
{
    static constexpr std::pair<const char *, const char *> ROLES[] = {{"TAP_SCAN_IN", "TDI"},
                                                                      {"TAP_SCAN_OUT", "TDO"},
                                                                      {"TAP_SCAN_MODE", "TMS"},
                                                                      {"TAP_SCAN_CLOCK", "TCK"},
                                                                      {"TAP_SCAN_RESET", "TRST"}};
    for (const auto &[name, role] : ROLES)
        if (statement == name)
            return std::string("is ") + role + " of the test access port";
    return statement == "COMPLIANCE_PATTERNS" ? "compliance enable port" : "";
}

static constexpr size_t MANY = 12; // lines of one kind

static std::string about_port(const Document &document, uint32_t port)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    std::string text = "**" + document.word(symbols[port]) + "** port";
    if (const std::string declared = declaration_of(document, port); !declared.empty())
        text += ", `" + declared + "`";
    std::string cells;
    size_t cell_count = 0;
    for (uint32_t i = 0; i < symbols.size(); i++) {
        const BsdlSymbol &symbol = symbols[i];
        if (symbol.kind != BSDL_SYMBOL_PORT || symbol.refers_to != static_cast<int32_t>(port) ||
            i == port)
            continue;
        const BsdlStatement &statement = document.statement_of(symbol);
        const std::string name = document.statement_name(statement);
        if (name == "BOUNDARY_REGISTER") {
            if (++cell_count > MANY)
                continue;
            const CellRow row = cell_row(document, i);
            cells += "\n- cell " + row.number + ": " + cell_in_words(row);
        } else if (statement.kind == BSDL_STATEMENT_CONSTANT) {
            text +=
                "\n\nPins in " + document.word(symbols[static_cast<size_t>(statement.name)]) + ": ";
            const auto [begin, end] = row_of(document, i);
            std::string pins;
            for (uint32_t pin = begin; pin < end; pin++)
                if (symbols[pin].kind == BSDL_SYMBOL_PIN)
                    pins += (pins.empty() ? "" : ", ") + document.word(symbols[pin]);
            text += pins.size() > 200 ? pins.substr(0, 200) + " ..." : pins;
        } else if (name == "PORT_GROUPING") {
            text += "\n\nOne port of a differential pair (PORT_GROUPING)";
        } else if (const std::string role = role_of(name); !role.empty()) {
            text += "\n\n" + role;
        }
    }
    if (cell_count)
        text += "\n" + cells;
    if (cell_count > MANY)
        text += "\n- and " + counted(cell_count - MANY, "cell") + " more";
    return text;
}

// ---------------------------------------------------------------------- instructions and patterns

static std::string about_instruction(const Document &document, const BsdlSymbol &symbol,
                                     const DeviceFacts *facts)
{
    const std::string name = upper(document.word(symbol));
    std::string text = "**" + name + "** instruction";
    if (!facts)
        return text;
    const auto at = std::find_if(facts->instructions.begin(), facts->instructions.end(),
                                 [&](const InstructionFacts &each) { return each.name == name; });
    if (at == facts->instructions.end())
        return text + "\n\nIt has no opcode.";
    text += "\n\nOpcode";
    text += at->patterns.size() > 1 ? "s: " : ": ";
    for (const std::string &pattern : at->patterns)
        text += (&pattern == &at->patterns.front() ? "`" : ", `") + pattern + "`";
    if (!at->register_name.empty()) {
        text += "\n\nRegister: " + at->register_name;
        if (at->register_length > 0)
            text += ", " + counted(static_cast<size_t>(at->register_length), "bit");
    }
    if (!at->capture.empty())
        text += "\n\nCaptures `" + at->capture + "`";
    return text;
}

static std::string about_idcode(const std::string &pattern)
{
    const std::optional<Idcode> code = decode_idcode(pattern);
    if (!code)
        return {};
    std::string text =
        "\n\n- version " + (code->version ? std::to_string(*code->version) : code->version_bits);
    text += "\n- part number " + (code->part ? pattern_hex(code->part_bits) : code->part_bits);
    text += "\n- manufacturer ";
    if (code->bank && code->number)
        text += (code->manufacturer ? std::string(code->manufacturer) + ", " : "") + "bank " +
                std::to_string(*code->bank) + ", number " + std::to_string(*code->number);
    else
        text += code->manufacturer_bits;
    return text;
}

static std::string about_pattern(const Document &document, const BsdlSymbol &symbol)
{
    const std::string pattern = upper(document.word(symbol));
    const bool bits = pattern.find_first_not_of("01X") == std::string::npos;
    if (!bits)
        return "hexadecimal data, " + counted(pattern.size() * 4, "bit") + " at most";
    std::string text = counted(pattern.size(), "bit") + ", `" + pattern_hex(pattern) + "`";
    const std::string statement = document.statement_name(document.statement_of(symbol));
    if (statement == "IDCODE_REGISTER")
        text += about_idcode(pattern);
    return text;
}

static std::string about_attribute(const std::string &name)
{
    const StatementGuide *guide = statement_guide(name);
    if (!guide)
        return {};
    return "**" + std::string(guide->name) + "**\n\n" + guide->meaning + "\n\n```bsdl\nattribute " +
           guide->name + " of " +
           (std::string_view(guide->name).starts_with("TAP_SCAN") ? "PORT : signal"
                                                                  : "DEVICE : entity") +
           " is " + guide->form + ";\n```";
}

static std::string about_cell_name(Workspace &workspace, const Document &document, uint32_t index)
{
    const std::string name = document.word(document.symbols()[index]);
    const Introduced at = introduced(workspace, document, index);
    if (at.document)
        return "**" + name + "** cell description, in " +
               std::filesystem::path(at.document->path()).filename().string();
    const DeviceFacts *facts = workspace.facts_of(document);
    if (facts)
        for (const auto &[cell, package] : facts->cells)
            if (same_name(cell, name))
                return "**" + name + "** cell description" +
                       (package.empty() ? " of " + facts->standard : ", in " + package);
    return "**" + name + "** cell description, found in no package that the text uses";
}

static std::string about_use(const Document &document, uint32_t index, const char *what)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    size_t uses = 0;
    for (const BsdlSymbol &other : symbols)
        uses += symbols[index].refers_to >= 0 && other.refers_to == symbols[index].refers_to &&
                other.kind == symbols[index].kind && !(other.flags & BSDL_SYMBOL_DEFINES);
    return "**" + document.word(symbols[index]) + "** " + what + ", used " + counted(uses, "time") +
           " in this text";
}

static std::string about(Workspace &workspace, const Document &document, uint32_t index)
{
    const BsdlSymbol &symbol = document.symbols()[index];
    const std::string statement = document.statement_name(document.statement_of(symbol));
    switch (symbol.kind) {
    case BSDL_SYMBOL_PORT:
        if (symbol.refers_to < 0)
            return "**" + document.word(symbol) + "** is no port of this device";
        return about_port(document, static_cast<uint32_t>(symbol.refers_to));
    case BSDL_SYMBOL_CELL_NUMBER: {
        const uint32_t row = symbol.refers_to < 0 ? index : static_cast<uint32_t>(symbol.refers_to);
        if (symbol.refers_to < 0)
            return "cell " + document.word(symbol) + " is not in the boundary register";
        return "cell **" + document.word(symbol) + "**: " + cell_in_words(cell_row(document, row));
    }
    case BSDL_SYMBOL_SUBSCRIPT:
    case BSDL_SYMBOL_FUNCTION:
    case BSDL_SYMBOL_VALUE:
        if (statement != "BOUNDARY_REGISTER")
            return {};
        return "cell **" + cell_row(document, index).number +
               "**: " + cell_in_words(cell_row(document, index));
    case BSDL_SYMBOL_INSTRUCTION:
        return about_instruction(document, symbol, workspace.facts_of(document));
    case BSDL_SYMBOL_PATTERN:
        return about_pattern(document, symbol);
    case BSDL_SYMBOL_ATTRIBUTE:
        return about_attribute(document.word(symbol));
    case BSDL_SYMBOL_CELL_NAME:
        return about_cell_name(workspace, document, index);
    case BSDL_SYMBOL_PIN: {
        const auto [begin, end] = row_of(document, index);
        for (uint32_t i = begin; i < end; i++)
            if (document.symbols()[i].kind == BSDL_SYMBOL_PORT)
                return "pin **" + document.word(symbol) + "** of port " +
                       document.word(document.symbols()[i]);
        return {};
    }
    case BSDL_SYMBOL_REGISTER:
        return about_use(document, index, "data register");
    case BSDL_SYMBOL_PIN_MAP:
        return about_use(document, index, "pin map");
    case BSDL_SYMBOL_FLOW:
        return about_use(document, index, "flow");
    case BSDL_SYMBOL_PROCEDURE:
        return about_use(document, index, "procedure");
    case BSDL_SYMBOL_VARIABLE:
        return about_use(document, index, "variable");
    case BSDL_SYMBOL_PACKAGE: {
        const Document *package = workspace.package(document, document.word(symbol));
        return "**" + document.word(symbol) + "** package" +
               (package ? ", " + package->path() : "");
    }
    default:
        return {};
    }
}

json hover(Workspace &workspace, const Document &document, uint32_t offset)
{
    const std::optional<uint32_t> symbol = document.symbol_at(offset);
    if (!symbol)
        return nullptr;
    const std::string text = about(workspace, document, *symbol);
    if (text.empty())
        return nullptr;
    const BsdlSymbol &at = document.symbols()[*symbol];
    return {{"contents", {{"kind", "markdown"}, {"value", text}}},
            {"range", document.range(at.begin, at.end)}};
}

} // namespace lsp
