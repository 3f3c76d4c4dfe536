// file:line: error: text [rule], as editors and build logs know it.

#include "console.h"
#include "formats/reporter.h"

#include <cstdio>

namespace
{

class GccReporter : public Reporter
{
  public:
    explicit GccReporter(bool with_closing_line) : closing(with_closing_line) {}

    void file(const FileFindings &file) override
    {
        for (const Finding &finding : file.findings) {
            line(finding, severity_name(finding.severity), finding.text, finding.rule);
            for (const std::string &folder : finding.searched)
                line(finding, "note", "searched in " + folder, {});
        }
        if (file.withheld)
            std::printf("%s: note: %s not shown\n", escaped(file.file).c_str(),
                        counted(file.withheld, "more error").c_str());
    }

    void end(const Totals &totals) override
    {
        if (closing)
            std::fprintf(stderr, "%s\n", closing_line(totals).c_str());
    }

  private:
    static void line(const Finding &finding, const char *kind, const std::string &text,
                     const std::string &rule)
    {
        std::string place = escaped(finding.file);
        if (finding.line > 0)
            place += ":" + std::to_string(finding.line);
        std::printf("%s: %s: %s", place.c_str(), kind, escaped_line(text).c_str());
        if (!rule.empty())
            std::printf(" [%s]", rule.c_str());
        std::putchar('\n');
    }

    bool closing;
};

} // namespace

std::unique_ptr<Reporter> gcc_reporter(bool with_closing_line)
{
    return std::make_unique<GccReporter>(with_closing_line);
}
