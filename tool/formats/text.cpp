// For people: grouped by file, with the source line and the place in it.

#include "console.h"
#include "formats/reporter.h"
#include "source_lines.h"

#include <algorithm>
#include <cstdio>

namespace
{

constexpr size_t WIDEST_LINE = 120;

constexpr const char *BOLD = "\033[1m";
constexpr const char *RED = "\033[1;31m";
constexpr const char *YELLOW = "\033[1;33m";
constexpr const char *GREEN = "\033[1;32m";
constexpr const char *CYAN = "\033[36m";
constexpr const char *DIM = "\033[2m";

class TextReporter : public Reporter
{
  public:
    explicit TextReporter(const TextStyle &wanted) : style(wanted) {}

    void file(const FileFindings &file) override;
    void end(const Totals &totals) override;

  private:
    std::string painted(const char *colour, const std::string &text) const
    {
        return style.colour ? colour + text + "\033[0m" : text;
    }
    const char *colour_of(Severity severity) const
    {
        return severity == Severity::ERROR ? RED : severity == Severity::WARNING ? YELLOW : CYAN;
    }
    void heading(const FileFindings &file) const;
    void finding(const FileFindings &file, const Finding &finding);
    void source_line(const Finding &finding);

    TextStyle style;
    SourceLines sources;
    bool first = true;
};

} // namespace

void TextReporter::heading(const FileFindings &file) const
{
    std::printf("%s", painted(BOLD, escaped(file.file)).c_str());
    std::string kinds;
    for (const auto &[bit, name] : {std::pair{CHECKED_ISC, "IEEE 1532"},
                                    {CHECKED_AIO, "IEEE 1149.6"},
                                    {CHECKED_PRG, "PPC/PRG"}})
        if (file.checks & bit)
            kinds += (kinds.empty() ? "" : ", ") + std::string(name);
    if (!kinds.empty())
        std::printf(" %s", painted(DIM, "(" + kinds + ")").c_str());
    std::putchar('\n');
}

// A blank for a tab, so that the mark stands below what it marks.
static std::string character(std::string_view text) { return text == "\t" ? " " : escaped(text); }

// The start of a text that takes no more than so many columns.
static std::string first_columns(std::string_view text, size_t columns)
{
    std::string start;
    while (!text.empty()) {
        const size_t length = std::max<size_t>(utf8_length(text), 1);
        const std::string next = character(text.substr(0, length));
        if (columns_of(start) + columns_of(next) > columns)
            break;
        start += next;
        text.remove_prefix(length);
    }
    return start;
}

// Its end.
static std::string last_columns(std::string_view text, size_t columns)
{
    std::string end;
    while (!text.empty()) {
        size_t length = std::min<size_t>(text.size(), 4);
        while (length > 1 && utf8_length(text.substr(text.size() - length)) != length)
            length--;
        const std::string next = character(text.substr(text.size() - length));
        if (columns_of(next) + columns_of(end) > columns)
            break;
        end.insert(0, next);
        text.remove_suffix(length);
    }
    return end;
}

// A window of a long line, with the mark in it.
void TextReporter::source_line(const Finding &finding)
{
    const std::string_view line = sources.line(finding.file, finding.line);
    const Mark mark = find_mark(line, finding);
    if (mark.length == 0)
        return;
    const std::string_view left = line.substr(0, mark.at);
    size_t room = WIDEST_LINE - columns_of(last_columns(left, WIDEST_LINE / 2));
    const std::string marked = first_columns(line.substr(mark.at, mark.length), room);
    room -= columns_of(marked);
    const std::string behind = first_columns(line.substr(mark.at + mark.length), room);
    // What they leave is for more of the left.
    const std::string before =
        last_columns(left, WIDEST_LINE - columns_of(marked) - columns_of(behind));
    const std::string margin = "        " + painted(DIM, "|") + " ";
    const std::string under = "^" + std::string(columns_of(marked) - 1, '~');
    std::printf("%s%s%s%s\n", margin.c_str(), before.c_str(), marked.c_str(), behind.c_str());
    std::printf("%s%*s%s\n", margin.c_str(), static_cast<int>(columns_of(before)), "",
                painted(colour_of(finding.severity), under).c_str());
}

void TextReporter::finding(const FileFindings &file, const Finding &finding)
{
    std::string place;
    if (finding.file != file.file)
        place = escaped(finding.file) + " ";
    if (finding.line > 0)
        place += "line " + std::to_string(finding.line);
    if (!place.empty())
        place += ": ";
    const std::string rule =
        finding.rule.empty() ? "" : " " + painted(DIM, "[" + finding.rule + "]");
    std::printf(
        "  %s%s %s%s\n", place.c_str(),
        painted(colour_of(finding.severity), severity_name(finding.severity) + std::string(":"))
            .c_str(),
        escaped_line(finding.text).c_str(), rule.c_str());
    if (finding.line > 0 && finding.severity != Severity::NOTE)
        source_line(finding);
    for (const std::string &folder : finding.searched)
        std::printf("        searched in %s\n", escaped(folder).c_str());
}

void TextReporter::file(const FileFindings &file)
{
    if (file.findings.empty() && !file.withheld && !style.clean_files)
        return;
    if (!first)
        std::putchar('\n');
    first = false;
    heading(file);
    for (const Finding &each : file.findings)
        finding(file, each);
    if (file.withheld)
        std::printf("  %s not shown\n", counted(file.withheld, "more error").c_str());
    sources.forget();
}

void TextReporter::end(const Totals &totals)
{
    if (!style.closing_line)
        return;
    if (!first)
        std::putchar('\n');
    const char *colour = totals.errors || totals.not_read ? RED : totals.warnings ? YELLOW : GREEN;
    std::printf("%s\n", painted(colour, closing_line(totals)).c_str());
}

std::unique_ptr<Reporter> text_reporter(const TextStyle &style)
{
    return std::make_unique<TextReporter>(style);
}
