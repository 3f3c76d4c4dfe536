#include "source_lines.h"

#include "input_files.h"

#include <algorithm>

static bool ends_line(std::string_view text, size_t at)
{
    return text[at] == '\n' || (text[at] == '\r' && !text.substr(at + 1).starts_with('\n'));
}

SourceLines::SourceLines(std::string_view given) : text(given), starts{0}
{
    for (size_t i = 0; i < text.size(); i++)
        if (ends_line(text, i))
            starts.push_back(i + 1);
}

std::string_view SourceLines::line(int32_t number) const
{
    if (number < 1 || static_cast<size_t>(number) > starts.size())
        return {};
    const std::string_view rest = text.substr(starts[static_cast<size_t>(number) - 1]);
    return rest.substr(0, rest.find_first_of("\r\n"));
}

size_t SourceLines::offset(int32_t line, int32_t column) const
{
    if (line < 1)
        return 0;
    if (static_cast<size_t>(line) > starts.size())
        return text.size();
    const size_t start = starts[static_cast<size_t>(line) - 1];
    return std::min(start + static_cast<size_t>(std::max(column, 1) - 1), text.size());
}

const SourceLines &Sources::of(const BsdlPlace &place)
{
    const std::string_view name = file.file_of(place);
    if (const auto found = sources.find(name); found != sources.end())
        return found->second.lines;
    Source &source = sources[std::string(name)];
    const bool is_package = file.name != name;
    // A pipe has been read.
    if (is_package && is_file(std::string(name)))
        read_bytes(std::string(name), source.text);
    return source.lines = SourceLines(is_package ? source.text : file.text);
}

Mark mark_of(std::string_view line, const BsdlPlace &place)
{
    if (place.column > 0) {
        const size_t at = std::min(static_cast<size_t>(place.column) - 1, line.size());
        const size_t end = place.end_line == place.line && place.end_column > place.column
                               ? static_cast<size_t>(place.end_column) - 1
                           : place.end_line > place.line ? line.size()
                                                         : at + 1;
        return {at, std::max<size_t>(end, at + 1) - at};
    }
    const size_t comment = line.find("--");
    if (comment != std::string_view::npos && comment > 0)
        line = line.substr(0, comment);
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {0, 0};
    return {first, line.find_last_not_of(" \t") - first + 1};
}
