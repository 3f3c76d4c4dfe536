#include "source_lines.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>

// As the library counts them: a lone carriage return ends a line too.
static bool ends_line(std::string_view text, size_t at)
{
    return text[at] == '\n' || (text[at] == '\r' && !text.substr(at + 1).starts_with('\n'));
}

std::string_view SourceLines::line(const std::string &file, int32_t number)
{
    auto [at, added] = files.try_emplace(file);
    Source &source = at->second;
    if (added) {
        std::ifstream stream(file == "<stdin>" ? "/dev/stdin" : file, std::ios::binary);
        source.text.assign(std::istreambuf_iterator<char>(stream), {});
        source.starts.push_back(0);
        for (size_t i = 0; i < source.text.size(); i++)
            if (ends_line(source.text, i))
                source.starts.push_back(i + 1);
    }
    if (number < 1 || static_cast<size_t>(number) > source.starts.size())
        return {};
    std::string_view rest = source.text;
    rest.remove_prefix(source.starts[static_cast<size_t>(number) - 1]);
    return rest.substr(0, rest.find_first_of("\r\n"));
}

static bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

static bool same_letter(char a, char b)
{
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

// Where a word stands by itself, in either case.
static size_t find_word(std::string_view line, std::string_view word)
{
    for (auto from = line.begin();;) {
        from = std::search(from, line.end(), word.begin(), word.end(), same_letter);
        if (from == line.end())
            return std::string_view::npos;
        const auto behind = from + static_cast<std::ptrdiff_t>(word.size());
        const bool open_left = is_word(word.front()) && from != line.begin() && is_word(from[-1]);
        const bool open_right = is_word(word.back()) && behind != line.end() && is_word(*behind);
        if (!open_left && !open_right)
            return static_cast<size_t>(from - line.begin());
        ++from;
    }
}

// The words of a message that stand in quotes; `EXPECTED' words of syntax errors, which do not
// stand in the line, are passed over.
static std::vector<std::string_view> quoted_words(std::string_view message)
{
    std::vector<std::string_view> words;
    for (size_t at = 0; (at = message.find_first_of("'`", at)) != std::string_view::npos; at++) {
        const size_t close = message.find('\'', at + 1);
        if (close == std::string_view::npos)
            break;
        if (message[at] == '\'' && close > at + 1)
            words.push_back(message.substr(at + 1, close - at - 1));
        at = close;
    }
    return words;
}

Mark find_mark(std::string_view line, std::string_view message)
{
    // A subscript says which bit of a vector; the line may name the vector alone.
    for (const std::string_view word : quoted_words(message))
        for (const std::string_view form : {word, word.substr(0, word.find('('))})
            if (const size_t at = form.empty() ? form.npos : find_word(line, form); at != form.npos)
                return {at, form.size()};
    const size_t comment = line.find("--");
    if (comment != std::string_view::npos && comment > 0)
        line = line.substr(0, comment);
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {0, 0};
    return {first, line.find_last_not_of(" \t") - first + 1};
}
