// SARIF 2.1.0, the exchange format of static analysis results, in the form that code hosts take.

#include "console.h"
#include "formats/reporter.h"
#include "report_paths.h"
#include "source_lines.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

using nlohmann::ordered_json;

// Where relative paths begin.
constexpr const char *ROOT = "%SRCROOT%";

static std::string help_uri(const std::string &rule) { return TARNLET_DOC_URL "/rules.md#" + rule; }

static ordered_json described(const std::string &id)
{
    ordered_json rule = {{"id", id}, {"helpUri", help_uri(id)}};
    const BsdlRule *entry = bsdlFindRule(id.c_str());
    if (!entry)
        return rule;
    const bool error = entry->level == BSDL_RULE_ERROR || entry->level == BSDL_RULE_EITHER;
    const std::string meaning = entry->meaning;
    const std::string source = entry->clause ? " (" + std::string(entry->clause) + ")" : "";
    rule["shortDescription"] = {{"text", meaning.substr(0, meaning.find(". ") + 1)}};
    if (meaning.find(". ") == meaning.npos)
        rule["shortDescription"]["text"] = meaning;
    rule["fullDescription"] = {{"text", meaning + source}};
    rule["help"] = {
        {"text", *entry->fix ? entry->fix : meaning},
        {"markdown", meaning + "\n\n**How to fix the file:** " +
                         (*entry->fix ? entry->fix : "nothing has to be done.") +
                         (entry->clause ? "\n\n*" + std::string(entry->clause) + "*" : "")}};
    rule["defaultConfiguration"] = {{"level", error                            ? "error"
                                              : entry->level == BSDL_RULE_NOTE ? "note"
                                                                               : "warning"}};
    return rule;
}

// Columns are code points there; a byte that is no part of one counts as one.
static size_t code_points(std::string_view line, int32_t column)
{
    line = line.substr(0, static_cast<size_t>(std::max(column, 1)) - 1);
    size_t count = 1;
    for (; !line.empty(); count++)
        line.remove_prefix(std::max<size_t>(utf8_length(line), 1));
    return count;
}

// All of the first line for a place in a file as a whole.
static ordered_json region_of(const BsdlPlace &place, const SourceLines &lines)
{
    ordered_json region = {{"startLine", std::max(place.line, 1)}};
    if (place.line <= 0 || place.column <= 0)
        return region;
    region["startColumn"] = code_points(lines.line(place.line), place.column);
    if (place.end_line >= place.line) {
        region["endLine"] = place.end_line;
        region["endColumn"] = code_points(lines.line(place.end_line), place.end_column);
    }
    return region;
}

static ordered_json artifact_of(const std::string &path)
{
    ordered_json artifact = {{"uri", report_uri(path)}};
    if (!report_path(path).starts_with('/'))
        artifact["uriBaseId"] = ROOT;
    return artifact;
}

static ordered_json location_of(const BsdlPlace &place, const DiagnosedFile &file, Sources &sources)
{
    return {{"physicalLocation",
             {{"artifactLocation", artifact_of(file.file_of(place))},
              {"region", region_of(place, sources.of(place))}}}};
}

static ordered_json fix_of(const BsdlFinding &found, const DiagnosedFile &file, Sources &sources)
{
    ordered_json replacements = ordered_json::array();
    for (uint32_t i = 0; i < found.edit_count; i++) {
        const auto &[place, text] = found.edits[i];
        replacements.push_back({{"deletedRegion", region_of(place, sources.of(place))},
                                {"insertedContent", {{"text", text}}}});
    }
    const std::string description = found.fix ? found.fix : "Fix the file";
    ordered_json change = {{"artifactLocation", artifact_of(file.name)},
                           {"replacements", std::move(replacements)}};
    return {{"description", {{"text", description}}},
            {"artifactChanges", ordered_json::array({std::move(change)})}};
}

namespace
{

class SarifReporter : public Reporter
{
  public:
    explicit SarifReporter(Writer to) : write(std::move(to)) {}

    void file(const FileFindings &file) override;
    void end(const Totals &totals) override;

  private:
    size_t index_of(const std::string &rule)
    {
        const auto [at, added] = indexes.try_emplace(rule, rules.size());
        if (added)
            rules.push_back(described(rule));
        return at->second;
    }
    ordered_json result_of(const Finding &finding, const DiagnosedFile &file, Sources &sources);

    Writer write;
    ordered_json rules = ordered_json::array();
    ordered_json results = ordered_json::array();
    std::map<std::string, size_t> indexes;
    bool all_read = true;
};

} // namespace

ordered_json SarifReporter::result_of(const Finding &finding, const DiagnosedFile &file,
                                      Sources &sources)
{
    const BsdlFinding &found = *finding.found;
    ordered_json result = {
        {"ruleId", found.rule},
        {"ruleIndex", index_of(found.rule)},
        {"level", severity_name(finding.severity)},
        {"message", {{"text", message_text(found)}}},
        {"locations", ordered_json::array({location_of(found.place, file, sources)})}};
    ordered_json related = ordered_json::array();
    for (uint32_t i = 0; i < found.related_count; i++)
        if (const BsdlRelated &other = found.related[i]; other.place.line > 0) {
            related.push_back(location_of(other.place, file, sources));
            related.back()["message"] = {{"text", other.text}};
        }
    if (!related.empty())
        result["relatedLocations"] = std::move(related);
    if (found.edit_count)
        result["fixes"] = ordered_json::array({fix_of(found, file, sources)});
    if (finding.accepted != Accepted::NO) {
        const bool by_comment = finding.accepted == Accepted::BY_COMMENT;
        ordered_json suppression = {{"kind", by_comment ? "inSource" : "external"}};
        if (by_comment && found.reason)
            suppression["justification"] = found.reason;
        result["suppressions"] = ordered_json::array({std::move(suppression)});
    }
    return result;
}

// What only follows from another finding would be noise beside the lines of a code host.
void SarifReporter::file(const FileFindings &file)
{
    Sources sources(file.file);
    std::map<std::string, int> seen;
    for (const Finding &finding : file.findings)
        if (*finding.found->rule && finding.because < 0) {
            ordered_json result = result_of(finding, file.file, sources);
            const int turn = ++seen[finding.fingerprint];
            result["partialFingerprints"] = {
                {"primaryLocationLineHash", finding.fingerprint + ":" + std::to_string(turn)}};
            results.push_back(std::move(result));
        }
    all_read &= file.file.state == FileState::READ;
}

void SarifReporter::end(const Totals &)
{
    ordered_json driver = {{"name", "tarnlet"},
                           {"version", TARNLET_VERSION},
                           {"semanticVersion", TARNLET_VERSION},
                           {"informationUri", TARNLET_DOC_URL "/README.md"},
                           {"rules", std::move(rules)}};
    const ordered_json base = {{"description", {{"text", "The folder in which tarnlet was run."}}}};
    ordered_json run = {{"tool", {{"driver", std::move(driver)}}},
                        {"invocations", ordered_json::array({{{"executionSuccessful", all_read}}})},
                        {"originalUriBaseIds", {{ROOT, base}}},
                        {"columnKind", "unicodeCodePoints"},
                        {"results", std::move(results)}};
    const ordered_json log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                              {"version", "2.1.0"},
                              {"runs", ordered_json::array({std::move(run)})}};
    write(log.dump(2, ' ', true, ordered_json::error_handler_t::replace) + "\n");
}

std::unique_ptr<Reporter> sarif_reporter(Writer write)
{
    return std::make_unique<SarifReporter>(std::move(write));
}
