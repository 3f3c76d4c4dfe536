// file:line:column: error: text [rule], as editors and build logs know it.

#include "console.h"
#include "formats/reporter.h"

#include <cstdio>

namespace
{

class GccReporter : public Reporter
{
  public:
    GccReporter(const TextStyle &wanted, Writer to) : style(wanted), write(std::move(to)) {}

    void file(const FileFindings &file) override
    {
        for (const Finding &finding : file.findings)
            if (finding.accepted == Accepted::NO && (finding.because < 0 || style.follow_ups))
                show(finding, file.file);
        const BsdlPlace whole = {.file = file.file.name.c_str()};
        if (file.withheld)
            line(whole, "note", counted(file.withheld, "more error") + " not shown");
        if (const std::string unchecked = file.file.unchecked(); !unchecked.empty())
            line(whole, "note", unchecked);
    }

    void end(const Totals &totals) override
    {
        if (style.closing_line)
            std::fprintf(stderr, "%s\n", closing_line(totals).c_str());
    }

  private:
    void show(const Finding &finding, const DiagnosedFile &file)
    {
        const BsdlFinding &found = *finding.found;
        BsdlPlace place = found.place;
        place.file = file.file_of(place);
        line(place, severity_name(finding.severity), found.text, found.rule);
        if (found.hint)
            line(place, "note", found.hint);
        if (found.fix)
            line(place, "note",
                 std::string(found.fix_sure ? "fix: " : "possible fix: ") + found.fix);
        for (uint32_t i = 0; i < found.related_count; i++)
            line(found.related[i].place, "note", found.related[i].text);
    }

    void line(const BsdlPlace &place, const char *kind, const std::string &text,
              const std::string &rule = {})
    {
        write(place_text(place) + ": " + kind + ": " + escaped_line(text) +
              (rule.empty() ? "" : " [" + rule + "]") + "\n");
    }

    TextStyle style;
    Writer write;
};

} // namespace

std::unique_ptr<Reporter> gcc_reporter(const TextStyle &style, Writer write)
{
    return std::make_unique<GccReporter>(style, std::move(write));
}
