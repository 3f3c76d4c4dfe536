// JUnit, the form in which build servers take results of tests: a file is a suite, a finding a
// case that fails; a warning does not fail.

#include "console.h"
#include "formats/reporter.h"
#include "report_paths.h"

namespace
{

class JunitReporter : public Reporter
{
  public:
    explicit JunitReporter(Writer to) : write(std::move(to)) {}

    void file(const FileFindings &file) override;
    void end(const Totals &) override;

  private:
    Writer write;
    std::string suites;
    size_t tests = 0;
    size_t failures = 0;
    size_t errors = 0;
    size_t skipped = 0;
};

} // namespace

// The text is fit for a terminal, so it holds nothing that XML cannot.
static std::string xml(const std::string &text)
{
    std::string result;
    for (const char c : escaped_line(text))
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    return result;
}

static std::string numbers(size_t tests, size_t failures, size_t errors, size_t skipped)
{
    return " tests=\"" + std::to_string(tests) + "\" failures=\"" + std::to_string(failures) +
           "\" errors=\"" + std::to_string(errors) + "\" skipped=\"" + std::to_string(skipped) +
           "\"";
}

// What stands within the case; empty when it passes.
static std::string outcome_of(const Finding &finding, const DiagnosedFile &file)
{
    const BsdlFinding &found = *finding.found;
    if (finding.accepted == Accepted::BY_COMMENT)
        return "<skipped message=\"accepted by a comment" +
               (found.reason ? ": " + xml(found.reason) : "") + "\"/>";
    if (finding.accepted == Accepted::BY_BASELINE)
        return "<skipped message=\"accepted by the baseline\"/>";
    BsdlPlace place = found.place;
    place.file = file.file_of(place);
    const std::string text = xml(message_text(found));
    const std::string where = xml(place_text(place));
    if (finding.severity != Severity::ERROR)
        return "<system-out>" + where + ": " + severity_name(finding.severity) + ": " + text +
               "</system-out>";
    const std::string kind = file.state == FileState::READ ? "failure" : "error";
    return "<" + kind + " type=\"" + xml(found.rule) + "\" message=\"" + text + "\">" + where +
           ": " + text + "</" + kind + ">";
}

void JunitReporter::file(const FileFindings &file)
{
    const std::string path = xml(report_path(file.file.name));
    std::string cases;
    size_t count = 0;
    size_t accepted = 0;
    const auto add = [&](const std::string &name, const std::string &outcome) {
        cases += "    <testcase classname=\"" + path + "\" name=\"" + name + "\"" +
                 (outcome.empty() ? "/>\n" : ">" + outcome + "</testcase>\n");
        count++;
    };
    size_t shown_errors = 0;
    for (const Finding &finding : file.findings) {
        if (!*finding.found->rule || finding.because >= 0)
            continue;
        const std::string line = std::to_string(finding.found->place.line);
        add(xml(finding.found->rule) + (line == "0" ? "" : " on line " + line),
            outcome_of(finding, file.file));
        accepted += finding.accepted != Accepted::NO;
        shown_errors += finding.accepted == Accepted::NO && finding.severity == Severity::ERROR;
    }
    if (!count)
        add("check", {});
    const bool was_read = file.file.state == FileState::READ;
    suites += "  <testsuite name=\"" + path + "\"" +
              numbers(count, was_read ? shown_errors : 0, was_read ? 0 : shown_errors, accepted) +
              ">\n" + cases + "  </testsuite>\n";
    tests += count;
    (was_read ? failures : errors) += shown_errors;
    skipped += accepted;
}

void JunitReporter::end(const Totals &)
{
    write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"tarnlet\"" +
          numbers(tests, failures, errors, skipped) + ">\n" + suites + "</testsuites>\n");
}

std::unique_ptr<Reporter> junit_reporter(Writer write)
{
    return std::make_unique<JunitReporter>(std::move(write));
}
