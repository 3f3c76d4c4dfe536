#include "report/device.h"

#include "findings.h"
#include "formats/reporter.h"
#include "source_lines.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

// Each of them takes a reading of its own.
constexpr size_t MOST_PIN_MAPS = 32;

// What ends a text of C is a character like others here.
static std::string source_of(const std::string &text)
{
    std::string value;
    for (size_t at = 0; at <= text.size(); at += std::strlen(text.c_str() + at) + 1) {
        value.append(at > 0 ? 1 : 0, '\0');
        value += text_value(text.c_str() + at).get_ref<const std::string &>();
    }
    return value;
}

// ------------------------------------------------------------------------------------- findings

static bool is_ascii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// How many characters of a script, two for those beyond 16 bits, the source has for these bytes.
static size_t characters_of(std::string_view bytes)
{
    size_t count = 0;
    for (const char c : source_of(std::string(bytes))) {
        const auto byte = static_cast<unsigned char>(c);
        count += (byte & 0xC0) != 0x80;
        count += byte >= 0xF0;
    }
    return count;
}

static void count_characters(Json &value, const SourceLines &lines)
{
    if (value.is_object())
        for (const auto &[line, column] : {std::pair{"line", "column"}, {"end_line", "end_column"}})
            if (value.contains(column) && value[column].is_number()) {
                const std::string_view text = lines.line(value[line]);
                const size_t before = value[column].get<size_t>() - 1;
                value[column] = 1 + characters_of(text.substr(0, before));
            }
    for (Json &member : value)
        if (member.is_structured())
            count_characters(member, lines);
}

static Json findings_of(const FileFindings &found)
{
    Json list = Json::array();
    const bool plain = is_ascii(found.file.text);
    const SourceLines lines(found.file.text);
    for (const Finding &finding : found.findings) {
        list.push_back(message_of(finding, found.file));
        if (!plain && list.back()["file"] == found.file.name)
            count_characters(list.back(), lines);
    }
    return list;
}

// -------------------------------------------------------------------------------------- the model

// The pins by each of the pin maps, the one of the model among them.
static Json pin_maps_of(const DiagnosedFile &file, const DiagnosisChoice &choice, const Json &model)
{
    Json maps = Json::array();
    if (!model.contains("pin_maps"))
        return maps;
    size_t length = 0;
    const char *text = bsdlDiagnosisText(file.diagnosis.get(), &length);
    DiagnosisChoice other = choice;
    other.as_read = true;
    for (const Json &name : model["pin_maps"]) {
        if (name.is_null() || maps.size() == MOST_PIN_MAPS)
            continue;
        if (name == model["pin_map"]) {
            maps.push_back({{"name", name}, {"pins", model["pins"]}});
            continue;
        }
        other.read.package = name;
        const DiagnosisHandle read = diagnose_text(std::string(text, length), file.path, other);
        if (Bsdl *bsdl = bsdlDiagnosisBsdl(read.get()))
            maps.push_back({{"name", name}, {"pins", pins_of(bsdl)}});
    }
    return maps;
}

Json shown_device(const DiagnosedFile &file, const DiagnosisChoice &choice)
{
    const FileFindings found = select_findings(file, {});
    Json model; // null for a package too: it was read through a description that stands for none
    Bsdl *bsdl = file.is_package ? nullptr : bsdlDiagnosisBsdl(file.diagnosis.get());
    if (bsdl) {
        model = document_of(bsdl, file.path);
        model["syntax_errors"] =
            std::count_if(found.findings.begin(), found.findings.end(), [](const Finding &each) {
                return each.because < 0 && std::string_view(each.found->rule) == "syntax-error";
            });
        model["check"] = {
            {"passed", found.errors == 0}, {"errors", found.errors}, {"warnings", found.warnings}};
    }
    Json maps = pin_maps_of(file, choice, model);
    const std::string unchecked = file.unchecked();
    return {{"file", text_value(file.name.c_str())},
            {"state", state_name(file.state)},
            {"errors", found.errors},
            {"warnings", found.warnings},
            {"unchecked", unchecked.empty() ? Json() : text_value(unchecked.c_str())},
            {"model", std::move(model)},
            {"pin_maps", std::move(maps)},
            {"findings", findings_of(found)},
            {"source", source_of(std::string(file.text))}};
}
