// For people: each finding with the source line and the place marked in it.

#include "console.h"
#include "formats/reporter.h"
#include "source_lines.h"

#include <algorithm>

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
    TextReporter(const TextStyle &wanted, Writer to) : style(wanted), write(std::move(to)) {}

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
    bool is_shown(const Finding &finding) const
    {
        return finding.accepted == Accepted::NO && (finding.because < 0 || style.follow_ups);
    }
    void heading(const FileFindings &file);
    void finding(const FileFindings &file, size_t index, Sources &sources);
    bool source_line(const Finding &finding, Sources &sources, const std::string &remark);

    TextStyle style;
    Writer write;
    bool first = true;
};

} // namespace

// For the messages that a user wants to see whatever they say.
void TextReporter::heading(const FileFindings &found)
{
    std::string kinds;
    for (const auto &[bit, name] : {std::pair{BSDL_CHECKED_ISC, "IEEE 1532"},
                                    {BSDL_CHECKED_AIO, "IEEE 1149.6"},
                                    {BSDL_CHECKED_PRG, "PPC/PRG"}})
        if (found.file.checked() & bit)
            kinds += (kinds.empty() ? "" : ", ") + std::string(name);
    write(painted(BOLD, escaped(found.file.name)) +
          (kinds.empty() ? "" : " " + painted(DIM, "(" + kinds + ")")) + "\n");
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

// A window of a long line, with the mark in it and the remark beside the mark. False when there is
// nothing to mark.
bool TextReporter::source_line(const Finding &finding, Sources &sources, const std::string &remark)
{
    const BsdlPlace &place = finding.found->place;
    const std::string_view line = sources.line_of(place);
    const Mark mark = mark_of(line, place);
    if (mark.length == 0)
        return false;
    const std::string_view left = line.substr(0, mark.at);
    size_t room = WIDEST_LINE - columns_of(last_columns(left, WIDEST_LINE / 2));
    // After the last character there is a blank.
    const std::string marked =
        mark.at < line.size() ? first_columns(line.substr(mark.at, mark.length), room) : " ";
    room -= columns_of(marked);
    const std::string behind =
        first_columns(line.substr(std::min(mark.at + mark.length, line.size())), room);
    // What they leave is for more of the left.
    const std::string before =
        last_columns(left, WIDEST_LINE - columns_of(marked) - columns_of(behind));
    const std::string number = std::to_string(place.line);
    const std::string bar = " " + painted(DIM, "|") + " ";
    const std::string text = before + marked + behind;
    const std::string under = "^" + std::string(columns_of(marked) - 1, '~');
    write(
        "  " + painted(DIM, number) + bar + text.substr(0, text.find_last_not_of(' ') + 1) + "\n" +
        "  " + std::string(number.size(), ' ') + bar + std::string(columns_of(before), ' ') +
        painted(colour_of(finding.severity), under + (remark.empty() ? "" : " " + remark)) + "\n");
    return true;
}

// What stands beside the mark or below the text.
static std::string remark_of(const BsdlFinding &found)
{
    std::string remark = found.hint ? escaped_line(found.hint) : "";
    if (found.count > 1)
        remark += (remark.empty() ? "" : "; ") + std::to_string(found.count) +
                  " alike, the first is here";
    return remark;
}

// Below the heading of its file.
static std::string listed_place(const BsdlPlace &place, const DiagnosedFile &file)
{
    std::string text = "  ";
    if (file.name != place.file)
        text += escaped(place.file) + " ";
    if (place.line > 0)
        text += "line " + std::to_string(place.line) + ": ";
    return text;
}

void TextReporter::finding(const FileFindings &file, size_t index, Sources &sources)
{
    const Finding &finding = file.findings[index];
    const BsdlFinding &found = *finding.found;
    BsdlPlace place = found.place;
    place.file = file.file.file_of(place);
    const bool is_listed = style.clean_files && finding.severity == Severity::NOTE;
    std::string line =
        is_listed ? listed_place(place, file.file) : painted(BOLD, place_text(place) + ":") + " ";
    line +=
        painted(colour_of(finding.severity), severity_name(finding.severity) + std::string(":"));
    line += " " + escaped_line(found.text);
    if (*found.rule)
        line += " " + painted(DIM, "[" + std::string(found.rule) + "]");
    if (found.pin_map)
        line += " (pin map " + escaped(found.pin_map) + ")";
    write(line + "\n");
    if (is_listed)
        return;

    const std::string remark = remark_of(found);
    if (!(found.place.line > 0 && source_line(finding, sources, remark)) && !remark.empty())
        write("  " + painted(DIM, "|") + " " + remark + "\n");
    if (found.fix)
        write((found.fix_sure ? "  fix: " : "  possible fix: ") + escaped_line(found.fix) + "\n");
    for (uint32_t i = 0; i < found.related_count; i++) {
        BsdlPlace other = found.related[i].place;
        other.file = file.file.file_of(other);
        write("  " + place_text(other) + ": " + escaped_line(found.related[i].text) + "\n");
    }
    if (finding.because >= 0) {
        const auto &cause = *file.findings[static_cast<size_t>(finding.because)].found;
        write("  follows from " +
              (cause.place.line > 0 ? "that on line " + std::to_string(cause.place.line)
                                    : "[" + std::string(cause.rule) + "]") +
              "\n");
    } else if (!style.follow_ups) {
        const size_t more = follow_ups_of(file, index);
        if (more)
            write("  " + std::to_string(more) + " more " + (more == 1 ? "follows" : "follow") +
                  " from this; --all shows " + (more == 1 ? "it" : "them") + "\n");
    }
}

void TextReporter::file(const FileFindings &file)
{
    if (style.clean_files) {
        if (!first)
            write("\n");
        heading(file);
    }
    Sources sources(file.file);
    for (size_t i = 0; i < file.findings.size(); i++)
        if (is_shown(file.findings[i])) {
            finding(file, i, sources);
            first = false;
        }
    if (file.withheld)
        write(escaped(file.file.name) + ": " + counted(file.withheld, "more error") +
              " not shown\n");
    if (const std::string unchecked = file.file.unchecked(); !unchecked.empty())
        write(escaped(file.file.name) + ": " + escaped_line(unchecked) + "\n");
    first &= !style.clean_files;
}

void TextReporter::end(const Totals &totals)
{
    if (!style.closing_line)
        return;
    const char *colour = totals.errors || totals.not_read ? RED : totals.warnings ? YELLOW : GREEN;
    write((first ? "" : "\n") + painted(colour, closing_line(totals)) + "\n");
}

std::unique_ptr<Reporter> text_reporter(const TextStyle &style, Writer write)
{
    return std::make_unique<TextReporter>(style, std::move(write));
}
