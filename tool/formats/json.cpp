// One JSON object for each file, each on a line of its own: docs/schemas/check.schema.json.

#include "formats/reporter.h"

#include <cstdio>
#include <nlohmann/json.hpp>

using nlohmann::ordered_json;

static ordered_json checks_of(uint32_t checks)
{
    ordered_json names = ordered_json::array();
    for (const auto &[bit, name] : {std::pair{CHECKED_BSDL, "bsdl"},
                                    {CHECKED_ISC, "isc"},
                                    {CHECKED_AIO, "aio"},
                                    {CHECKED_PRG, "prg"}})
        if (checks & bit)
            names.push_back(name);
    return names;
}

static const char *state_name(FileState state)
{
    return state == FileState::READ         ? "read"
           : state == FileState::NOT_OPENED ? "not-opened"
                                            : "ended";
}

static ordered_json message_of(const Finding &finding)
{
    ordered_json message = {{"severity", severity_name(finding.severity)},
                            {"rule", nullptr},
                            {"file", finding.file},
                            {"line", nullptr},
                            {"text", finding.text}};
    if (!finding.rule.empty())
        message["rule"] = finding.rule;
    if (finding.line > 0)
        message["line"] = finding.line;
    if (!finding.searched.empty())
        message["searched"] = finding.searched;
    return message;
}

namespace
{

class JsonReporter : public Reporter
{
  public:
    void file(const FileFindings &file) override
    {
        ordered_json messages = ordered_json::array();
        for (const Finding &finding : file.findings)
            messages.push_back(message_of(finding));
        ordered_json object = {{"file", file.file},
                               {"device", nullptr},
                               {"state", state_name(file.state)},
                               {"checks", checks_of(file.checks)},
                               {"errors", file.errors},
                               {"warnings", file.warnings},
                               {"withheld", file.withheld},
                               {"messages", std::move(messages)}};
        if (!file.device.empty())
            object["device"] = file.device;
        const std::string text = object.dump(-1, ' ', true, ordered_json::error_handler_t::replace);
        std::printf("%s\n", text.c_str());
    }

    void end(const Totals &) override {}
};

} // namespace

std::unique_ptr<Reporter> json_reporter() { return std::make_unique<JsonReporter>(); }
