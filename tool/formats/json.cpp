// One JSON object for each file, each on a line of its own: docs/schemas/check.schema.json.

#include "formats/reporter.h"

#include <nlohmann/json.hpp>

using nlohmann::ordered_json;

static ordered_json checks_of(const DiagnosedFile &file)
{
    if (file.is_package)
        return ordered_json::array({"package"});
    const uint32_t checked = file.checked();
    ordered_json names = ordered_json::array();
    for (const auto &[bit, name] : {std::pair{BSDL_CHECKED_GENERAL, "bsdl"},
                                    {BSDL_CHECKED_ISC, "isc"},
                                    {BSDL_CHECKED_AIO, "aio"},
                                    {BSDL_CHECKED_PRG, "prg"}})
        if (checked & bit)
            names.push_back(name);
    return names;
}

const char *state_name(FileState state)
{
    return state == FileState::READ         ? "read"
           : state == FileState::NOT_OPENED ? "not-opened"
                                            : "ended";
}

static ordered_json text_or_null(const char *text) { return text ? ordered_json(text) : nullptr; }

static ordered_json number_or_null(int32_t number)
{
    return number > 0 ? ordered_json(number) : nullptr;
}

static void add_place(ordered_json &to, const BsdlPlace &place)
{
    to["line"] = number_or_null(place.line);
    to["column"] = number_or_null(place.column);
    to["end_line"] = number_or_null(place.end_line);
    to["end_column"] = number_or_null(place.end_column);
}

static ordered_json fix_of(const BsdlFinding &found)
{
    if (!found.edit_count)
        return nullptr;
    ordered_json edits = ordered_json::array();
    for (uint32_t i = 0; i < found.edit_count; i++) {
        const auto &[place, text] = found.edits[i];
        edits.push_back({{"from", {{"line", place.line}, {"column", place.column}}},
                         {"to", {{"line", place.end_line}, {"column", place.end_column}}},
                         {"text", text}});
    }
    return {{"description", text_or_null(found.fix)},
            {"sure", found.fix_sure != 0},
            {"edits", std::move(edits)}};
}

ordered_json message_of(const Finding &finding, const DiagnosedFile &file)
{
    const BsdlFinding &found = *finding.found;
    ordered_json message = {{"severity", severity_name(finding.severity)},
                            {"rule", *found.rule ? ordered_json(found.rule) : nullptr},
                            {"file", file.file_of(found.place)}};
    add_place(message, found.place);
    message["text"] = found.text;
    message["hint"] = text_or_null(found.hint);
    message["fix"] = fix_of(found);
    message["because"] = finding.because < 0 ? ordered_json() : ordered_json(finding.because);
    message["count"] = found.count;
    message["accepted"] = finding.accepted == Accepted::BY_COMMENT    ? ordered_json("comment")
                          : finding.accepted == Accepted::BY_BASELINE ? ordered_json("baseline")
                                                                      : ordered_json();
    ordered_json &related = message["related"] = ordered_json::array();
    for (uint32_t i = 0; i < found.related_count; i++) {
        ordered_json other = {{"file", file.file_of(found.related[i].place)}};
        add_place(other, found.related[i].place);
        other["text"] = found.related[i].text;
        related.push_back(std::move(other));
    }
    if (found.pin_map)
        message["pin_map"] = found.pin_map;
    if (found.reason)
        message["reason"] = found.reason;
    return message;
}

namespace
{

class JsonReporter : public Reporter
{
  public:
    explicit JsonReporter(Writer to) : write(std::move(to)) {}

    void file(const FileFindings &found) override
    {
        const DiagnosedFile &file = found.file;
        ordered_json messages = ordered_json::array();
        for (const Finding &finding : found.findings)
            messages.push_back(message_of(finding, file));
        const std::string device = file.device();
        const std::string unchecked = file.unchecked();
        const ordered_json object = {
            {"file", file.name},
            {"device", device.empty() ? ordered_json() : ordered_json(device)},
            {"state", state_name(file.state)},
            {"checks", checks_of(file)},
            {"unchecked", unchecked.empty() ? ordered_json() : ordered_json(unchecked)},
            {"errors", found.errors},
            {"warnings", found.warnings},
            {"follow_ups", found.follow_ups},
            {"accepted", found.accepted},
            {"withheld", found.withheld},
            {"messages", std::move(messages)}};
        write(object.dump(-1, ' ', true, ordered_json::error_handler_t::replace) + "\n");
    }

    void end(const Totals &) override {}

  private:
    Writer write;
};

} // namespace

std::unique_ptr<Reporter> json_reporter(Writer write)
{
    return std::make_unique<JsonReporter>(std::move(write));
}
