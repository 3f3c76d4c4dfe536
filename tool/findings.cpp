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

std::string place_text(const BsdlPlace &place)
{
    std::string text = escaped(place.file);
    if (place.line > 0)
        text += ":" + std::to_string(place.line);
    if (place.line > 0 && place.column > 0)
        text += ":" + std::to_string(place.column);
    return text;
}

// ------------------------------------------------------------------------------------- selection

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
        : all(file.findings), selection(how), result{.file = file}
    {
    }
    FileFindings run();

  private:
    void judge_by_itself(size_t index);
    bool is_shown(size_t index) const;

    const std::vector<const BsdlFinding *> &all;
    const Selection &selection;
    FileFindings result;
    std::vector<Finding> judged; // those that are not to be shown are off
};

} // namespace

void Selecting::judge_by_itself(size_t index)
{
    Finding finding = {.found = all[index], .severity = severity_of(*all[index], selection)};
    if (finding.found->because < 0) {
        result.warnings += finding.severity == Severity::WARNING;
        if (finding.severity == Severity::ERROR && ++result.errors > selection.error_limit &&
            selection.error_limit) {
            result.withheld++;
            finding.severity = Severity::OFF;
        }
    }
    judged.push_back(finding);
}

// What follows from a finding that is not shown is not shown either. The way to the cause has no
// more steps than there are findings.
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
    return std::move(result);
}

FileFindings select_findings(const DiagnosedFile &file, const Selection &selection)
{
    return Selecting(file, selection).run();
}

size_t follow_ups_of(const FileFindings &file, size_t index)
{
    const auto root_of = [&](size_t from) {
        for (size_t steps = 0; steps < file.findings.size() && file.findings[from].because >= 0;
             steps++)
            from = static_cast<size_t>(file.findings[from].because);
        return from;
    };
    size_t count = 0;
    for (size_t i = 0; i < file.findings.size(); i++)
        count += i != index && root_of(i) == index;
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
    const uint32_t checked = file.file.checked();
    totals.with_isc += (checked & BSDL_CHECKED_ISC) != 0;
    totals.with_aio += (checked & BSDL_CHECKED_AIO) != 0;
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
