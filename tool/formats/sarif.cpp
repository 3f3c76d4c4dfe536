// SARIF 2.1.0, the exchange format of static analysis results: one run.

#include "formats/reporter.h"
#include "tarnlet/diagnosis.h"

#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

using nlohmann::ordered_json;

// A path as the URI reference that it is: relative when the path is.
static std::string uri_of(std::string_view path)
{
    constexpr std::string_view PLAIN = "-._~/!$&'()*+,;=@";
    std::string uri = path.starts_with('/') ? "file://" : "";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x80 && std::isalnum(byte)) || PLAIN.find(c) != std::string_view::npos) {
            uri += c;
        } else {
            char code[4];
            std::snprintf(code, sizeof code, "%%%02X", byte);
            uri += code;
        }
    }
    return uri;
}

static ordered_json described(const std::string &id)
{
    ordered_json rule = {{"id", id}};
    if (const BsdlRule *entry = bsdlFindRule(id.c_str())) {
        const bool error = entry->level == BSDL_RULE_ERROR || entry->level == BSDL_RULE_EITHER;
        rule["shortDescription"] = {{"text", entry->meaning}};
        if (entry->clause)
            rule["fullDescription"] = {
                {"text", std::string(entry->meaning) + " (" + entry->clause + ")"}};
        if (*entry->mend)
            rule["help"] = {{"text", entry->mend}};
        rule["defaultConfiguration"] = {{"level", error                            ? "error"
                                                  : entry->level == BSDL_RULE_NOTE ? "note"
                                                                                   : "warning"}};
    }
    return rule;
}

namespace
{

class SarifReporter : public Reporter
{
  public:
    explicit SarifReporter(Writer to) : write(std::move(to)) {}

    void file(const FileFindings &file) override
    {
        for (const Finding &finding : file.findings)
            if (*finding.found->rule && finding.because < 0)
                results.push_back(result_of(finding, file.file));
        if (file.file.state != FileState::READ)
            all_read = false;
    }

    void end(const Totals &totals) override;

  private:
    size_t index_of(const std::string &rule)
    {
        const auto [at, added] = indexes.try_emplace(rule, rules.size());
        if (added)
            rules.push_back(described(rule));
        return at->second;
    }
    ordered_json result_of(const Finding &finding, const DiagnosedFile &file);

    Writer write;
    ordered_json rules = ordered_json::array();
    ordered_json results = ordered_json::array();
    std::map<std::string, size_t> indexes;
    bool all_read = true;
};

} // namespace

ordered_json SarifReporter::result_of(const Finding &finding, const DiagnosedFile &file)
{
    const BsdlFinding &found = *finding.found;
    ordered_json place = {{"artifactLocation", {{"uri", uri_of(file.file_of(found.place))}}}};
    if (found.place.line > 0)
        place["region"] = {{"startLine", found.place.line}};
    return {{"ruleId", found.rule},
            {"ruleIndex", index_of(found.rule)},
            {"level", severity_name(finding.severity)},
            {"message", {{"text", found.text}}},
            {"locations", ordered_json::array({{{"physicalLocation", std::move(place)}}})}};
}

void SarifReporter::end(const Totals &)
{
    ordered_json driver = {
        {"name", "tarnlet"}, {"version", TARNLET_VERSION}, {"rules", std::move(rules)}};
    ordered_json run = {{"tool", {{"driver", std::move(driver)}}},
                        {"invocations", ordered_json::array({{{"executionSuccessful", all_read}}})},
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
