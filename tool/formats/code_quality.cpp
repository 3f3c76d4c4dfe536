// The code quality report of GitLab: one array of findings.

#include "formats/reporter.h"
#include "report_paths.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

using nlohmann::ordered_json;

namespace
{

class CodeQualityReporter : public Reporter
{
  public:
    explicit CodeQualityReporter(Writer to) : write(std::move(to)) {}

    void file(const FileFindings &file) override;
    void end(const Totals &) override
    {
        write(issues.dump(2, ' ', true, ordered_json::error_handler_t::replace) + "\n");
    }

  private:
    Writer write;
    ordered_json issues = ordered_json::array();
    std::map<std::string, int> seen; // fingerprints
};

} // namespace

static const char *weight_of(const Finding &finding)
{
    return is_always_on(finding.found->rule)       ? "critical"
           : finding.severity == Severity::ERROR   ? "major"
           : finding.severity == Severity::WARNING ? "minor"
                                                   : "info";
}

// Fingerprints are to be unique in the whole report, in which several files may use one package.
void CodeQualityReporter::file(const FileFindings &file)
{
    for (const Finding &finding : file.findings) {
        const BsdlFinding &found = *finding.found;
        if (!*found.rule || finding.because >= 0 || finding.accepted != Accepted::NO)
            continue;
        const std::string path = report_path(file.file.file_of(found.place));
        const std::string key = path + ":" + finding.fingerprint;
        issues.push_back(
            {{"description", message_text(found)},
             {"check_name", found.rule},
             {"fingerprint", key + ":" + std::to_string(++seen[key])},
             {"severity", weight_of(finding)},
             {"location",
              {{"path", path}, {"lines", {{"begin", std::max(found.place.line, 1)}}}}}});
    }
}

std::unique_ptr<Reporter> code_quality_reporter(Writer write)
{
    return std::make_unique<CodeQualityReporter>(std::move(write));
}
