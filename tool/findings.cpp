#include "findings.h"

#include "console.h"
#include "fingerprint.h"

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

std::string place_text(const BsdlPlace &place)
{
    std::string text = escaped(place.file);
    if (place.line > 0)
        text += ":" + std::to_string(place.line);
    if (place.line > 0 && place.column > 0)
        text += ":" + std::to_string(place.column);
    return text;
}

std::string message_text(const BsdlFinding &found)
{
    std::string_view text = found.text;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    text = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
    return std::string(text) + (found.hint ? " (" + std::string(found.hint) + ")" : "");
}

// ------------------------------------------------------------------------------------- selection

bool is_always_on(const char *rule)
{
    const BsdlRule *known = bsdlFindRule(rule);
    return known && known->always_on;
}

static Severity severity_of(const BsdlFinding &found, const Selection &selection)
{
    const auto chosen = selection.rules.find(found.rule);
    if (chosen != selection.rules.end())
        return chosen->second;
    if (found.severity == BSDL_SEVERITY_NOTE)
        return Severity::NOTE;
    if (found.severity == BSDL_SEVERITY_ERROR || selection.warnings_are_errors)
        return Severity::ERROR;
    return Severity::WARNING;
}

namespace
{

class Selecting
{
  public:
    Selecting(const DiagnosedFile &file, const Selection &how)
        : all(file.findings), selection(how), sources(file), result{.file = file}
    {
    }
    FileFindings run();

  private:
    void judge_by_itself(size_t index);
    void accept(Finding &finding);
    void count(Finding &finding);
    bool is_shown(size_t index) const;

    const std::vector<const BsdlFinding *> &all;
    const Selection &selection;
    Sources sources;
    FileFindings result;
    std::vector<Finding> judged;        // severity OFF: not to be shown
    std::map<std::string, size_t> seen; // fingerprints
};

} // namespace

void Selecting::accept(Finding &finding)
{
    const BsdlFinding &found = *finding.found;
    if (found.suppressed)
        finding.accepted = Accepted::BY_COMMENT;
    else if (selection.baseline && !is_always_on(found.rule) &&
             seen[finding.fingerprint]++ <
                 selection.baseline->count(result.file.path, finding.fingerprint))
        finding.accepted = Accepted::BY_BASELINE;
}

// Follow-ups never count, even when their cause is not shown.
void Selecting::count(Finding &finding)
{
    if (finding.accepted != Accepted::NO) {
        result.accepted++;
        return;
    }
    result.warnings += finding.severity == Severity::WARNING;
    result.errors += finding.severity == Severity::ERROR;
    if (finding.severity == Severity::ERROR && selection.error_limit &&
        result.errors > selection.error_limit) {
        result.withheld++;
        finding.severity = Severity::OFF;
    }
}

void Selecting::judge_by_itself(size_t index)
{
    const BsdlFinding &found = *all[index];
    Finding finding = {.found = &found, .severity = severity_of(found, selection)};
    if (finding.severity != Severity::OFF && *found.rule) {
        if (selection.fingerprints)
            finding.fingerprint = fingerprint_of(found, sources);
        accept(finding);
        if (found.because < 0)
            count(finding);
    }
    judged.push_back(std::move(finding));
}

// The first cause of a finding, which follows from no other. The way to it has no more steps than
// there are findings.
static size_t root_of(const FileFindings &file, int32_t from)
{
    for (size_t steps = 0; steps < file.findings.size(); steps++) {
        const int32_t because = file.findings[static_cast<size_t>(from)].because;
        if (because < 0)
            break;
        from = because;
    }
    return static_cast<size_t>(from);
}

// What follows from a finding that is not shown is not shown either.
bool Selecting::is_shown(size_t index) const
{
    for (size_t steps = 0; steps < all.size(); steps++) {
        if (judged[index].severity == Severity::OFF)
            return false;
        const int32_t because = all[index]->because;
        if (because < 0 || static_cast<size_t>(because) >= all.size())
            return true;
        index = static_cast<size_t>(because);
    }
    return true;
}

FileFindings Selecting::run()
{
    for (size_t i = 0; i < all.size(); i++)
        judge_by_itself(i);
    std::vector<int32_t> place(all.size(), -1); // among those that are shown
    for (size_t i = 0; i < all.size(); i++)
        if (is_shown(i)) {
            place[i] = static_cast<int32_t>(result.findings.size());
            result.findings.push_back(judged[i]);
        }
    for (Finding &finding : result.findings)
        if (const int32_t because = finding.found->because; because >= 0) {
            finding.because = place[static_cast<size_t>(because)];
            result.follow_ups++;
        }
    for (Finding &finding : result.findings)
        if (finding.because >= 0)
            finding.accepted = result.findings[root_of(result, finding.because)].accepted;
    return std::move(result);
}

FileFindings select_findings(const DiagnosedFile &file, const Selection &selection)
{
    return Selecting(file, selection).run();
}

size_t follow_ups_of(const FileFindings &file, size_t index)
{
    size_t count = 0;
    for (size_t i = 0; i < file.findings.size(); i++)
        count += i != index && root_of(file, static_cast<int32_t>(i)) == index;
    return count;
}

// ---------------------------------------------------------------------------------------- totals

void add_to_totals(Totals &totals, const FileFindings &file)
{
    totals.files++;
    totals.errors += file.errors;
    totals.warnings += file.warnings;
    totals.files_with_findings += file.errors + file.warnings > 0;
    totals.not_read += file.file.state != FileState::READ;
    totals.packages += file.file.is_package;
    const uint32_t checked = file.file.is_package ? 0 : file.file.checked();
    totals.with_isc += (checked & BSDL_CHECKED_ISC) != 0;
    totals.with_aio += (checked & BSDL_CHECKED_AIO) != 0;
    totals.accepted += file.accepted;
    totals.prg += (checked & BSDL_CHECKED_PRG) != 0;
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
    add_kind(totals.packages, "read as a package");
    if (!kinds.empty())
        line += " (" + kinds + ")";
    line += ": " + counted_or_no(totals.errors, "error") + ", " +
            counted_or_no(totals.warnings, "warning");
    if (totals.files > 1 && totals.files_with_findings)
        line += " in " + counted(totals.files_with_findings, "file");
    if (totals.accepted)
        line += "; " + std::to_string(totals.accepted) + " accepted";
    if (totals.excluded)
        line += "; " + counted(totals.excluded, "file") + " left out by the settings";
    if (totals.not_read)
        line += "; " + counted(totals.not_read, "file") + " could not be read";
    return line;
}
