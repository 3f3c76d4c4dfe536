// For people: grouped by file, with the source line and the place in it.

#include "output.h"
#include "reporter.h"
#include "source_lines.h"

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

// A window of a long line, with the mark in it.
void TextReporter::source_line(const Finding &finding)
{
    std::string_view line = sources.line(finding.file, finding.line);
    Mark mark = find_mark(line, finding.text);
    if (mark.length == 0)
        return;
    if (line.size() > WIDEST_LINE) {
        const size_t from = mark.at > WIDEST_LINE / 2 ? mark.at - WIDEST_LINE / 2 : 0;
        line = line.substr(from, WIDEST_LINE);
        mark.at -= from;
        mark.length = std::min(mark.length, line.size() - mark.at);
    }
    // Blanks for tabs, so that the mark stands below what it marks.
    std::string before(line.substr(0, mark.at));
    std::string behind(line.substr(mark.at + mark.length));
    for (std::string *part : {&before, &behind})
        for (char &c : *part)
            c = c == '\t' ? ' ' : c;
    before = escaped(before);
    const std::string marked = escaped(line.substr(mark.at, mark.length));
    std::printf("        %s %s%s%s\n", painted(DIM, "|").c_str(), before.c_str(), marked.c_str(),
                escaped(behind).c_str());
    size_t columns = 0;
    for (char c : before)
        columns += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    std::printf("        %s %*s%s\n", painted(DIM, "|").c_str(), static_cast<int>(columns), "",
                painted(colour_of(finding.severity),
                        "^" + std::string(marked.size() > 1 ? marked.size() - 1 : 0, '~'))
                    .c_str());
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
