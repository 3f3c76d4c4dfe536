#include "diagnosis/source_text.h"

#include <algorithm>

// ------------------------------------------------------------------------------------------- lines

Lines::Lines(std::string_view text) : size(text.size())
{
    starts.push_back(0);
    for (size_t at = 0; at < size; at++)
        if (text[at] == '\n' || (text[at] == '\r' && text.substr(at + 1, 1) != "\n"))
            starts.push_back(at + 1);
}

int32_t Lines::line_of(size_t offset) const
{
    return static_cast<int32_t>(std::upper_bound(starts.begin(), starts.end(), offset) -
                                starts.begin());
}

int32_t Lines::column_of(size_t offset) const
{
    return static_cast<int32_t>(std::min(offset, size) -
                                starts[static_cast<size_t>(line_of(offset)) - 1] + 1);
}

size_t Lines::offset_of(int32_t line, int32_t column) const
{
    if (line < 1)
        return 0;
    if (static_cast<size_t>(line) > starts.size())
        return size;
    const size_t start = starts[static_cast<size_t>(line) - 1];
    return std::min(size, start + static_cast<size_t>(std::max(column, 1) - 1));
}

// ------------------------------------------------------------------------------------------ tokens

static bool in_word(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '.';
}

static bool is_blank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

static bool is_line_end(char c) { return c == '\n' || c == '\r'; }

static bool is_mark(char c) { return c > ' ' && c < 0x7F && !in_word(c); }

// Lines are looked at that far back; nobody writes longer ones.
constexpr size_t LONGEST_LINE = 8192;
constexpr size_t LONGEST_LOOK_BACK = 4 * LONGEST_LINE;

// Whether two dashes here begin a comment: they do outside of quotes, and the quotes of one line
// tell that more reliably than those of a text in which one may be missing.
static bool is_comment(std::string_view text, size_t at)
{
    if (text.substr(at, 2) != "--")
        return false;
    bool quoted = false;
    const size_t limit = at > LONGEST_LINE ? at - LONGEST_LINE : 0;
    for (size_t i = at; i > limit && !is_line_end(text[i - 1]); i--)
        quoted ^= text[i - 1] == '"';
    return !quoted;
}

bool next_raw_token(std::string_view text, size_t offset, RawToken *token)
{
    for (size_t at = offset; at < text.size();) {
        if (is_blank(text[at])) {
            at++;
            continue;
        }
        if (is_comment(text, at)) {
            at = std::min(text.find_first_of("\r\n", at), text.size());
            continue;
        }
        size_t end = at + 1;
        RawKind kind = RawKind::MARK;
        if (in_word(text[at])) {
            kind = RawKind::WORD;
            while (end < text.size() && in_word(text[end]))
                end++;
        } else if (!is_mark(text[at])) {
            kind = RawKind::OTHER;
            while (end < text.size() && !in_word(text[end]) && !is_mark(text[end]) &&
                   !is_blank(text[end]))
                end++;
        }
        *token = {at, end, kind};
        return true;
    }
    return false;
}

static size_t line_start(std::string_view text, size_t at)
{
    const size_t limit = at > LONGEST_LINE ? at - LONGEST_LINE : 0;
    while (at > limit && !is_line_end(text[at - 1]))
        at--;
    return at;
}

std::vector<RawToken> raw_tokens_around(std::string_view text, size_t place, size_t before,
                                        size_t behind)
{
    place = std::min(place, text.size());
    // Backwards line by line, for only from a line's start on is it known what is a comment.
    std::vector<RawToken> tokens;
    size_t from = line_start(text, place);
    for (;;) {
        std::vector<RawToken> line;
        RawToken token;
        const size_t to = tokens.empty() ? place : std::min(tokens.front().begin, place);
        for (size_t at = from; next_raw_token(text, at, &token) && token.begin < to; at = token.end)
            line.push_back(token);
        tokens.insert(tokens.begin(), line.begin(), line.end());
        if (tokens.size() >= before || from == 0 || place - from > LONGEST_LOOK_BACK)
            break;
        from = line_start(
            text, from - (from > 1 && text[from - 1] == '\n' && text[from - 2] == '\r' ? 2 : 1));
    }
    if (tokens.size() > before)
        tokens.erase(tokens.begin(), tokens.end() - static_cast<ptrdiff_t>(before));
    RawToken token;
    for (size_t at = tokens.empty() ? place : tokens.back().end;
         behind > 0 && next_raw_token(text, at, &token); at = token.end, behind--)
        tokens.push_back(token);
    return tokens;
}

// -------------------------------------------------------------------------------------- statements

TextRange statement_around(std::string_view text, size_t place)
{
    size_t begin = 0;
    for (size_t at = 0; at < text.size();) {
        RawToken token;
        if (!next_raw_token(text, at, &token))
            break;
        at = token.end;
        const char mark = text[token.begin];
        if (mark == '"') {
            const size_t close = text.find('"', token.end);
            at = close == std::string_view::npos ? text.size() : close + 1;
        } else if (mark == ';') {
            if (token.end > place)
                return {begin, token.end};
            begin = token.end;
        }
    }
    return {begin, text.size()};
}

bool strings_end_on_their_lines(std::string_view text, TextRange range)
{
    size_t at = line_start(text, range.begin);
    if (at > 0 && !is_line_end(text[at - 1]))
        return true; // too long a line to tell
    bool in_string = false;
    const size_t end = std::min(text.size(), range.end + LONGEST_LINE);
    for (; at < end; at++) {
        if (!in_string && text.substr(at, 2) == "--")
            at = text.find_first_of("\r\n", at);
        if (at == std::string_view::npos)
            return true;
        if (text[at] == '"')
            in_string = !in_string;
        if (!is_line_end(text[at]))
            continue;
        if (in_string)
            return false;
        if (at >= range.end)
            return true;
    }
    return !in_string || end < text.size();
}
