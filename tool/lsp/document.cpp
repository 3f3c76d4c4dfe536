#include "lsp/document.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace lsp
{

std::string upper(std::string_view text)
{
    std::string result(text);
    for (char &c : result)
        if (c >= 'a' && c <= 'z')
            c -= 32;
    return result;
}

bool same_name(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return g_ascii_tolower(x) == g_ascii_tolower(y); });
}

// ------------------------------------------------------------------------------- files and names

std::string path_of_uri(std::string_view uri)
{
    constexpr std::string_view SCHEME = "file://";
    if (!uri.starts_with(SCHEME))
        return std::string(uri);
    uri.remove_prefix(SCHEME.size());
    std::string path;
    for (size_t i = 0; i < uri.size(); i++) {
        if (uri[i] == '%' && i + 2 < uri.size() && g_ascii_isxdigit(uri[i + 1]) &&
            g_ascii_isxdigit(uri[i + 2])) {
            path += static_cast<char>(g_ascii_xdigit_value(uri[i + 1]) * 16 +
                                      g_ascii_xdigit_value(uri[i + 2]));
            i += 2;
        } else {
            path += uri[i];
        }
    }
    return path;
}

std::string uri_of_path(std::string_view path)
{
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char c : path) {
        if (g_ascii_isalnum(c) || std::string_view("/-._~").find(c) != std::string_view::npos) {
            uri += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        uri += {'%', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    return uri;
}

static std::string as_utf8(std::string bytes)
{
    if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr))
        return bytes;
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

std::optional<std::string> read_file(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (file.bad())
        return std::nullopt;
    return as_utf8(std::move(bytes));
}

// ----------------------------------------------------------------------------- text and positions

Document::Document(std::string uri, std::string text, int64_t version, Encoding counted)
    : name(std::move(uri)), file(path_of_uri(name)),
      content(std::make_shared<const std::string>(std::move(text))), number(version),
      encoding(counted)
{
    find_lines();
}

void Document::find_lines()
{
    lines.assign(1, 0);
    for (uint32_t i = 0; i < content->size(); i++) {
        const char c = (*content)[i];
        if (c == '\n' || (c == '\r' && (i + 1 == content->size() || (*content)[i + 1] != '\n')))
            lines.push_back(i + 1);
    }
    found.reset();
}

uint32_t Document::line_end(uint32_t line) const
{
    uint32_t end =
        line + 1 < lines.size() ? lines[line + 1] : static_cast<uint32_t>(content->size());
    while (end > lines[line] && ((*content)[end - 1] == '\n' || (*content)[end - 1] == '\r'))
        end--;
    return end;
}

uint32_t Document::line_of(uint32_t offset) const
{
    return static_cast<uint32_t>(std::upper_bound(lines.begin(), lines.end(), offset) -
                                 lines.begin() - 1);
}

static uint32_t units_of(unsigned char first, Encoding encoding)
{
    if (encoding == Encoding::UTF8)
        return 1;
    return (first & 0xC0) == 0x80 ? 0 : first >= 0xF0 ? 2 : 1;
}

Position Document::position(uint32_t offset) const
{
    offset = std::min(offset, static_cast<uint32_t>(content->size()));
    Position position = {line_of(offset), 0};
    for (uint32_t i = lines[position.line]; i < offset; i++)
        position.column += units_of(static_cast<unsigned char>((*content)[i]), encoding);
    return position;
}

uint32_t Document::offset(const json &position) const
{
    const auto line = position.at("line").get<int64_t>();
    auto column = position.at("character").get<int64_t>();
    if (line < 0 || line >= static_cast<int64_t>(lines.size()))
        return line < 0 ? 0 : static_cast<uint32_t>(content->size());
    uint32_t at = lines[static_cast<size_t>(line)];
    const uint32_t end = line_end(static_cast<uint32_t>(line));
    while (at < end && column > 0) {
        column -= units_of(static_cast<unsigned char>((*content)[at]), encoding);
        at++;
        // What follows the first byte of a character belongs to it.
        while (at < end && (static_cast<unsigned char>((*content)[at]) & 0xC0) == 0x80) {
            column -= encoding == Encoding::UTF8;
            at++;
        }
    }
    return at;
}

json Document::position_json(uint32_t offset) const
{
    const Position at = position(offset);
    return {{"line", at.line}, {"character", at.column}};
}

json Document::range(uint32_t begin, uint32_t end) const
{
    return {{"start", position_json(begin)}, {"end", position_json(end)}};
}

// Replaces parts of the text, the last one first.
void Document::replace(std::vector<Replaced> &from_the_end)
{
    std::string changed;
    uint32_t done = 0;
    for (auto part = from_the_end.rbegin(); part != from_the_end.rend(); ++part) {
        changed.append(*content, done, part->begin - done).append(part->text);
        done = part->end;
    }
    changed.append(*content, done);
    from_the_end.clear();
    content = std::make_shared<const std::string>(std::move(changed));
    find_lines();
}

// Changes from the end of the text to its beginning, as formatting gives thousands of, make the new
// text in one go: what is before a change is as it was.
void Document::change(const json &changes)
{
    std::vector<Replaced> parts;
    std::pair<int64_t, int64_t> first; // position of the change nearest to the beginning
    for (const json &change : changes) {
        const auto text = change.at("text").get<std::string>();
        if (!change.contains("range")) {
            parts.assign(1, {0, static_cast<uint32_t>(content->size()), text});
            replace(parts);
            continue;
        }
        const json &from = change["range"].at("start");
        const json &to = change["range"].at("end");
        const auto place_of = [](const json &position) {
            return std::pair(position.at("line").get<int64_t>(),
                             position.at("character").get<int64_t>());
        };
        if (!parts.empty() && std::max(place_of(from), place_of(to)) > first)
            replace(parts);
        const uint32_t begin = offset(from);
        first = place_of(from);
        parts.push_back({begin, std::max(begin, offset(to)), text});
    }
    if (!parts.empty())
        replace(parts);
}

// ---------------------------------------------------------------------------------------- symbols

BsdlSymbols *Document::found_symbols() const
{
    if (!found)
        found.reset(bsdlSymbolsOf(content->data(), content->size()));
    return found.get();
}

std::span<const BsdlSymbol> Document::symbols() const
{
    const BsdlSymbols *symbols = found_symbols();
    return {bsdlSymbolAt(symbols, 0), bsdlSymbolCount(symbols)};
}

std::span<const BsdlStatement> Document::statements() const
{
    const BsdlSymbols *symbols = found_symbols();
    return {bsdlStatementAt(symbols, 0), bsdlStatementCount(symbols)};
}

std::vector<std::pair<uint32_t, uint32_t>> Document::parts(const BsdlSymbol &symbol) const
{
    if (!(symbol.flags & BSDL_SYMBOL_SPLIT))
        return {{symbol.begin, symbol.end}};
    std::vector<std::pair<uint32_t, uint32_t>> parts;
    uint32_t begin = symbol.begin;
    bool inside = true;
    for (uint32_t i = symbol.begin; i < symbol.end; i++) {
        const char c = (*content)[i];
        if (c == '"') {
            if (inside)
                parts.emplace_back(begin, i);
            inside = !inside;
            begin = i + 1;
        } else if (!inside && c == '-') { // a comment, which may hold quotation marks
            i = line_end(line_of(i));
        }
    }
    parts.emplace_back(begin, symbol.end);
    return parts;
}

std::string Document::word(const BsdlSymbol &symbol) const
{
    std::string word;
    for (const auto &[begin, end] : parts(symbol))
        word += raw(begin, end);
    return word;
}

const BsdlStatement &Document::statement_of(const BsdlSymbol &symbol) const
{
    return statements()[symbol.statement];
}

std::string Document::statement_name(const BsdlStatement &statement) const
{
    return statement.name < 0 ? std::string()
                              : upper(word(symbols()[static_cast<size_t>(statement.name)]));
}

std::optional<uint32_t> Document::symbol_at(uint32_t offset) const
{
    const std::span<const BsdlSymbol> all = symbols();
    auto at = std::upper_bound(
        all.begin(), all.end(), offset,
        [](uint32_t position, const BsdlSymbol &symbol) { return position < symbol.begin; });
    // A comment may lie between the parts of the word before it.
    for (int tries = 0; at != all.begin() && tries < 4; tries++) {
        --at;
        if (at->begin <= offset && offset <= at->end)
            return static_cast<uint32_t>(at - all.begin());
    }
    return std::nullopt;
}

} // namespace lsp
