#include "findings.h"

#include "console.h"

#include <algorithm>
#include <utility>

const char *severity_name(Severity severity)
{
    switch (severity) {
    case Severity::ERROR:
        return "error";
    case Severity::WARNING:
        return "warning";
    case Severity::NOTE:
        return "note";
    case Severity::OFF:
        break;
    }
    return "off";
}

// ------------------------------------------------------------------------------------- selection

namespace
{

class Selecting
{
  public:
    Selecting(const FileReport &from, const Selection &how) : report(from), selection(how)
    {
        result.file = shown(report.path);
        result.device = report.device;
        result.checks = report.checks;
        result.state = report.state;
    }

    FileFindings run();

  private:
    static std::string shown(const std::string &path)
    {
        return path == "-" || path == "/dev/stdin" ? "<stdin>" : path;
    }

    void message(const Message &message);
    void verdict(const Message &message);
    void add(Finding finding);
    Finding finding_of(const Message &message) const;
    Severity severity_of(const Message &message) const;

    const FileReport &report;
    const Selection &selection;
    FileFindings result;
    std::vector<std::string> searched;
    bool said_in_step = false; // an error since the last verdict
    bool said_in_file = false;
    bool recovering = false; // from a syntax error
};

} // namespace

Severity Selecting::severity_of(const Message &message) const
{
    if (message.level > BSDL_LEVEL_WARNING)
        return selection.notes ? Severity::NOTE : Severity::OFF;
    const auto chosen = selection.rules.find(message.rule);
    if (chosen != selection.rules.end())
        return chosen->second;
    if (message.level == BSDL_LEVEL_ERROR || selection.warnings_are_errors)
        return Severity::ERROR;
    return Severity::WARNING;
}

Finding Selecting::finding_of(const Message &message) const
{
    return {.severity = severity_of(message),
            .line = message.line,
            .file = message.file.empty() ? result.file : shown(message.file),
            .rule = message.rule,
            .text = message.text,
            .searched = {}};
}

void Selecting::add(Finding finding)
{
    if (finding.severity == Severity::OFF)
        return;
    result.warnings += finding.severity == Severity::WARNING;
    if (finding.severity == Severity::ERROR) {
        result.errors++;
        if (selection.error_limit && result.errors > selection.error_limit) {
            result.withheld++;
            return;
        }
    }
    result.findings.push_back(std::move(finding));
}

// "... has errors" repeats what the errors before it have said, except where a check fails without
// a word, for want of a statement for example. Statements that a syntax error has swallowed are
// wanting too, but that has been said.
void Selecting::verdict(const Message &message)
{
    const bool of_step = message.text.starts_with('\t');
    Finding finding = finding_of(message);
    if (report.syntax_errors == 0 && (of_step ? !said_in_step : !said_in_file)) {
        finding.rule = RULE_CHECK_FAILED;
        const auto chosen = selection.rules.find(RULE_CHECK_FAILED);
        if (chosen != selection.rules.end())
            finding.severity = chosen->second;
        said_in_file = true;
    } else {
        finding.severity = selection.notes ? Severity::NOTE : Severity::OFF;
    }
    said_in_step = false;
    add(std::move(finding));
}

// The path of "\tTrying '%s'", less the name of the package file.
static bool tried_folder(const Message &message, std::string &folder)
{
    constexpr std::string_view BEFORE = "\tTrying '";
    if (!message.text.starts_with(BEFORE) || !message.text.ends_with('\''))
        return false;
    folder = message.text.substr(BEFORE.size(), message.text.size() - BEFORE.size() - 1);
    const size_t slash = folder.find_last_of('/');
    folder.erase(slash == std::string::npos ? 0 : std::max<size_t>(slash, 1));
    return true;
}

// Behind a missing quotation mark each number of a table is an illegal identifier, until the end of
// the statement is found: that has been said by the syntax error.
static bool is_of_words(std::string_view rule)
{
    return rule == "illegal-identifier" || rule == "illegal-character" || rule == "vhdl-keyword" ||
           rule == "incomplete-string";
}

void Selecting::message(const Message &message)
{
    if (message.level == BSDL_LEVEL_ERROR && message.rule.empty()) {
        verdict(message);
        return;
    }
    if (std::string folder; tried_folder(message, folder))
        searched.push_back(std::move(folder));
    said_in_step |= message.level == BSDL_LEVEL_ERROR;
    said_in_file |= message.level == BSDL_LEVEL_ERROR;

    if (message.rule == "syntax-error" || message.rule == "statement-skipped")
        recovering = message.rule == "syntax-error";
    Finding finding = finding_of(message);
    if (recovering && is_of_words(message.rule) && !selection.rules.contains(message.rule))
        finding.severity = selection.notes ? Severity::NOTE : Severity::OFF;
    if (message.rule == "package-not-found") {
        finding.searched = std::exchange(searched, {});
        if (std::string installed = installed_package_folder(); !installed.empty())
            finding.searched.push_back(std::move(installed));
        for (auto at = finding.searched.begin(); at != finding.searched.end();)
            at = std::find(finding.searched.begin(), at, *at) != at ? finding.searched.erase(at)
                                                                    : at + 1;
    } else if (!message.text.starts_with("\tTrying '")) {
        searched.clear();
    }
    add(std::move(finding));
}

FileFindings Selecting::run()
{
    for (const Message &each : report.messages)
        message(each);
    const Message end = {.rule = RULE_PROCESS_ENDED, .text = report.end_reason};
    if (report.state == FileState::ENDED)
        message(end);
    const Message failed = {.rule = RULE_CHECK_FAILED, .text = "The check failed"};
    if (!report.passed && !said_in_file)
        message(failed);
    return std::move(result);
}

FileFindings select_findings(const FileReport &report, const Selection &selection)
{
    return Selecting(report, selection).run();
}

// ---------------------------------------------------------------------------------------- totals

void add_to_totals(Totals &totals, const FileFindings &file)
{
    totals.files++;
    totals.errors += file.errors;
    totals.warnings += file.warnings;
    totals.files_with_findings += file.errors + file.warnings > 0;
    totals.not_read += file.state != FileState::READ;
    totals.with_isc += (file.checks & CHECKED_ISC) != 0;
    totals.with_aio += (file.checks & CHECKED_AIO) != 0;
    totals.prg += (file.checks & CHECKED_PRG) != 0;
}

static std::string counted_or_no(size_t count, const char *noun)
{
    return count ? counted(count, noun) : std::string("no ") + noun + "s";
}

std::string closing_line(const Totals &totals)
{
    std::string line = counted(totals.files - totals.not_read, "file") + " checked";
    std::string kinds;
    const auto add_kind = [&](size_t count, const char *what) {
        if (count)
            kinds += (kinds.empty() ? "" : ", ") +
                     (totals.files == 1 ? "" : std::to_string(count) + " ") + what;
    };
    add_kind(totals.with_isc, "with IEEE 1532");
    add_kind(totals.with_aio, "with IEEE 1149.6");
    add_kind(totals.prg, "PPC/PRG");
    if (!kinds.empty())
        line += " (" + kinds + ")";
    line += ": " + counted_or_no(totals.errors, "error") + ", " +
            counted_or_no(totals.warnings, "warning");
    if (totals.files > 1 && totals.files_with_findings)
        line += " in " + counted(totals.files_with_findings, "file");
    if (totals.not_read)
        line += "; " + counted(totals.not_read, "file") + " could not be read";
    return line;
}
