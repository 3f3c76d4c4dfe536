// Columns of pin maps, opcode and cell tables lined up; nothing else moves.

#include "lsp/features.h"

#include <algorithm>
#include <map>
#include <set>

namespace lsp
{

namespace
{

// A line that holds exactly one row of a table, in one string. The row is cut into fields; each
// field but the last is filled up to the width of its column.
struct Line {
    uint32_t begin; // after the opening quotation mark
    uint32_t end;   // of the last field
    std::vector<std::string> fields;
};

} // namespace

static bool is_blank(char c) { return c == ' ' || c == '\t'; }

static std::string trimmed(std::string_view text)
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

// The text without blanks that are not between two words.
static std::string tight(std::string_view text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); i++) {
        if (!is_blank(text[i])) {
            result += text[i];
            continue;
        }
        size_t next = i;
        while (next < text.size() && is_blank(text[next]))
            next++;
        const auto in_word = [](char c) { return g_ascii_isalnum(c) || c == '_'; };
        if (!result.empty() && next < text.size() && in_word(result.back()) && in_word(text[next]))
            result += ' ';
        i = next - 1;
    }
    return result;
}

// "17", "(BC_1,", "A(3),", "output3,", "X)": what is in the parentheses, comma by comma.
static bool cut_cell(std::string_view row, std::vector<std::string> &fields)
{
    const size_t open = row.find('(');
    const size_t close = row.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return false;
    fields.push_back(trimmed(row.substr(0, open)));
    std::string field = "(";
    int depth = 0;
    for (const char c : row.substr(open + 1, close - open - 1)) {
        depth += (c == '(') - (c == ')');
        field += c;
        if (c == ',' && depth == 0) {
            fields.push_back(tight(field));
            field.clear();
        }
    }
    fields.push_back(tight(field) + tight(row.substr(close)));
    return depth == 0;
}

static bool cut_at(std::string_view row, char sign, std::vector<std::string> &fields)
{
    const size_t at = row.find(sign);
    if (at == std::string_view::npos)
        return false;
    fields.push_back(trimmed(row.substr(0, at)));
    fields.push_back(sign + std::string(sign == ':' ? " " : "") +
                     trimmed(row.substr(at + (sign == ':'))).substr(sign == '('));
    return true;
}

// The way a row is cut, by its statement; nothing for statements that are not lined up.
using Cut = bool (*)(std::string_view row, std::vector<std::string> &fields);

static Cut cut_of(const Document &document, const BsdlStatement &statement)
{
    if (statement.kind == BSDL_STATEMENT_CONSTANT && statement.rows)
        return [](std::string_view row, std::vector<std::string> &fields) {
            return cut_at(row, ':', fields);
        };
    const std::string name = document.statement_name(statement);
    if (name == "INSTRUCTION_OPCODE")
        return [](std::string_view row, std::vector<std::string> &fields) {
            return cut_at(row, '(', fields);
        };
    if (name == "BOUNDARY_REGISTER")
        return cut_cell;
    return nullptr;
}

// Where the string of a line with one string begins and ends, without its quotation marks.
static bool only_string(const Document &document, uint32_t line, uint32_t &begin, uint32_t &end)
{
    int quotes = 0;
    const std::string &text = document.text();
    for (uint32_t i = document.line_begin(line); i < document.line_end(line); i++) {
        if (quotes != 1 && text.compare(i, 2, "--") == 0)
            break;
        if (text[i] != '"')
            continue;
        quotes++;
        (quotes == 1 ? begin : end) = quotes == 1 ? i + 1 : i;
    }
    return quotes == 2;
}

// Whether the words of the line are exactly the words of one row.
static bool is_whole_row(const Document &document, uint32_t begin, uint32_t end)
{
    const std::span<const BsdlSymbol> symbols = document.symbols();
    auto first = std::lower_bound(
        symbols.begin(), symbols.end(), begin,
        [](const BsdlSymbol &symbol, uint32_t offset) { return symbol.begin < offset; });
    if (first == symbols.end() || first->begin >= end)
        return false;
    const auto [from, to] = row_of(document, static_cast<uint32_t>(first - symbols.begin()));
    for (uint32_t i = from; i < to; i++)
        if (symbols[i].kind != BSDL_SYMBOL_COMMENT &&
            (symbols[i].begin < begin || symbols[i].end > end))
            return false;
    // The next row begins elsewhere.
    return to >= symbols.size() || symbols[to].begin >= end;
}

static std::vector<Line> lines_of(const Document &document, const BsdlStatement &statement, Cut cut)
{
    std::vector<Line> lines;
    const uint32_t last = document.line_of(statement.end);
    for (uint32_t line = document.line_of(statement.begin); line <= last; line++) {
        uint32_t begin = 0;
        uint32_t end = 0;
        if (document.line_begin(line) < statement.begin ||
            !only_string(document, line, begin, end) || end > statement.end ||
            !is_whole_row(document, begin, end))
            continue;
        uint32_t text_end = end;
        while (text_end > begin && is_blank(document.text()[text_end - 1]))
            text_end--;
        Line row = {begin, text_end, {}};
        const std::string_view text = document.raw(begin, text_end);
        if (text.find("--") == std::string_view::npos && cut(text, row.fields))
            lines.push_back(std::move(row));
    }
    return lines;
}

// Whether the words of each column begin or end below each other already, in whatever way the
// author has chosen.
static bool is_lined_up(const Document &document, const std::vector<Line> &lines)
{
    struct Column {
        std::set<uint32_t> begins, ends;
    };
    std::map<std::pair<uint8_t, int16_t>, Column> columns; // by kind and place
    const std::span<const BsdlSymbol> symbols = document.symbols();
    for (const Line &line : lines) {
        auto symbol = std::lower_bound(
            symbols.begin(), symbols.end(), line.begin,
            [](const BsdlSymbol &each, uint32_t offset) { return each.begin < offset; });
        for (; symbol != symbols.end() && symbol->begin < line.end; ++symbol) {
            const bool in_list =
                (symbol->kind == BSDL_SYMBOL_PIN || symbol->kind == BSDL_SYMBOL_PATTERN) &&
                symbol->column > 0;
            if (symbol->kind == BSDL_SYMBOL_SUBSCRIPT || in_list)
                continue;
            Column &column = columns[{symbol->kind, symbol->column}];
            column.begins.insert(symbol->begin - line.begin);
            column.ends.insert(symbol->end - line.begin);
        }
    }
    return std::all_of(columns.begin(), columns.end(), [](const auto &column) {
        return column.second.begins.size() == 1 || column.second.ends.size() == 1;
    });
}

static void line_up(const Document &document, const std::vector<Line> &lines, uint32_t first_line,
                    uint32_t last_line, json &edits)
{
    std::vector<size_t> widths;
    for (const Line &line : lines)
        for (size_t i = 0; i + 1 < line.fields.size(); i++) {
            if (widths.size() <= i)
                widths.push_back(0);
            widths[i] = std::max(widths[i], line.fields[i].size());
        }
    for (const Line &line : lines) {
        const uint32_t number = document.line_of(line.begin);
        if (number < first_line || number > last_line)
            continue;
        std::string text;
        for (size_t i = 0; i < line.fields.size(); i++) {
            text += line.fields[i];
            if (i + 1 < line.fields.size())
                text.append(widths[i] - line.fields[i].size() + 1, ' ');
        }
        if (text != document.raw(line.begin, line.end))
            edits.push_back(
                {{"range", document.range(line.begin, line.end)}, {"newText", std::move(text)}});
    }
}

// The words and what is said about them have to be the same. Lines stay, so messages keep theirs.
static bool reads_the_same(const Workspace &workspace, const Document &before,
                           const Document &after)
{
    if (before.symbols().size() != after.symbols().size())
        return false;
    for (size_t i = 0; i < before.symbols().size(); i++)
        if (before.symbols()[i].kind != after.symbols()[i].kind ||
            before.word(before.symbols()[i]) != after.word(after.symbols()[i]))
            return false;
    const auto a = diagnose(workspace.job_for(before), true);
    const auto b = diagnose(workspace.job_for(after), true);
    if (!a || !b || a->all.size() != b->all.size())
        return false;
    for (size_t i = 0; i < a->all.size(); i++)
        if (a->all[i].text != b->all[i].text || a->all[i].place.line != b->all[i].place.line)
            return false;
    return true;
}

json formatting(const Workspace &workspace, const Document &document, uint32_t first_line,
                uint32_t last_line)
{
    require_readable(workspace, document, "formatting");
    json edits = json::array();
    for (const BsdlStatement &statement : document.statements()) {
        if (document.line_of(statement.begin) > last_line ||
            document.line_of(statement.end) < first_line)
            continue;
        const Cut cut = cut_of(document, statement);
        if (!cut)
            continue;
        const std::vector<Line> lines = lines_of(document, statement, cut);
        if (!is_lined_up(document, lines))
            line_up(document, lines, first_line, last_line, edits);
    }
    if (edits.empty())
        return edits;
    std::string text;
    uint32_t done = 0;
    for (const json &edit : edits) {
        text += document.raw(done, document.offset(edit["range"]["start"]));
        text += edit["newText"].get_ref<const std::string &>();
        done = document.offset(edit["range"]["end"]);
    }
    text += document.raw(done, static_cast<uint32_t>(document.text().size()));
    const Document after(document.uri(), std::move(text), document.version(), workspace.encoding);
    if (!reads_the_same(workspace, document, after))
        throw RequestError(REQUEST_FAILED, "Formatting would change what the text says; it is "
                                           "left as it is");
    return edits;
}

} // namespace lsp
