#include "source_lines.h"

#include "input_files.h"
#include "rule_table.h"

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
        const std::string path = file == "<stdin>" ? "/dev/stdin" : file;
        std::ifstream stream;
        if (is_file(path))
            stream.open(path, std::ios::binary);
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

namespace
{

// What stands in a message for a conversion of its form.
struct Argument {
    std::string_view text;
    bool quoted;
};

} // namespace

// False when the message has another form.
static bool take_arguments(std::string_view form, std::string_view message,
                           std::vector<Argument> &arguments)
{
    const size_t percent = form.find('%');
    if (percent == std::string_view::npos)
        return message == form;
    if (!message.starts_with(form.substr(0, percent)))
        return false;
    const bool quoted = percent > 0 && form[percent - 1] == '\'';
    message.remove_prefix(percent);
    form.remove_prefix(percent);
    form.remove_prefix(form.find_first_of("cdefisu") + 1);
    const size_t next = form.find('%');
    const std::string_view behind = form.substr(0, next);
    const size_t end = next == std::string_view::npos ? message.rfind(behind)
                       : behind.empty()               ? message.size()
                                                      : message.find(behind);
    if (end == std::string_view::npos)
        return false;
    arguments.push_back({message.substr(0, end), quoted});
    return take_arguments(form, message.substr(end), arguments);
}

// Those in quotes, which the message is about, first.
static std::vector<Argument> arguments_of(const Finding &finding)
{
    std::vector<Argument> arguments;
    const RuleEntry *rule = find_rule(finding.rule);
    if (!rule)
        return arguments;
    std::string_view message = finding.text;
    message.remove_suffix(message.ends_with('\n'));
    for (std::string_view forms = rule->text; !forms.empty();) {
        const std::string_view form = forms.substr(0, forms.find('\n'));
        if (take_arguments(form, message, arguments))
            break;
        arguments.clear();
        forms.remove_prefix(std::min(forms.size(), form.size() + 1));
    }
    std::stable_partition(arguments.begin(), arguments.end(),
                          [](const Argument &each) { return each.quoted; });
    return arguments;
}

static bool is_number(std::string_view text)
{
    return text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Most numbers are lengths, counts and the like; that of a cell is the first word of its row.
static size_t find_cell_number(std::string_view line, std::string_view number)
{
    const size_t first = std::min(line.find_first_not_of(" \t\""), line.size());
    return find_word(line.substr(first), number) == 0 ? first : line.npos;
}

Mark find_mark(std::string_view line, const Finding &finding)
{
    for (const auto &[text, quoted] : arguments_of(finding))
        // A subscript says which bit of a vector; the line may name the vector alone.
        for (const std::string_view form : {text, text.substr(0, text.find('('))}) {
            if (form.empty())
                continue;
            const size_t at =
                !quoted && is_number(form) ? find_cell_number(line, form) : find_word(line, form);
            if (at != line.npos)
                return {at, form.size()};
        }
    const size_t comment = line.find("--");
    if (comment != std::string_view::npos && comment > 0)
        line = line.substr(0, comment);
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {0, 0};
    return {first, line.find_last_not_of(" \t") - first + 1};
}
