#include "device_json.h"

#include "code_words.h"
#include "console.h"
#include "idcode.h"

#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

// ------------------------------------------------------------------------------------ values

Json text_value(const char *text)
{
    if (!text)
        return nullptr;
    std::string result;
    for (std::string_view rest = text; !rest.empty();) {
        const auto byte = static_cast<unsigned char>(rest[0]);
        const size_t length = byte < 0x80 ? 1 : utf8_length(rest);
        if (length > 0) {
            result.append(rest.substr(0, length));
        } else {
            result += static_cast<char>(0xC0 | (byte >> 6));
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
        rest.remove_prefix(length > 0 ? length : 1);
    }
    return result;
}

Json port_value(const PortId *port)
{
    if (!port || !port->name)
        return nullptr;
    Json value = text_value(port->name);
    if (port->subscripted)
        value.get_ref<std::string &>() += "(" + std::to_string(port->subscript) + ")";
    return value;
}

Json word_value(const char *word) { return word ? Json(word) : Json(); }

// A number that says "none" by a value below `least`.
static Json number_value(int32_t number, int32_t least)
{
    return number < least ? Json() : Json(number);
}

// All that a First and a Next function give, as texts.
template <class Owner, class First, class Next>
static Json texts_of(Owner *owner, First first, Next next)
{
    Json texts = Json::array();
    for (const char *text = first(owner); text; text = next(owner))
        texts.push_back(text_value(text));
    return texts;
}

std::string folded(std::string name)
{
    for (char &c : name)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return name;
}

// ---------------------------------------------------------------------------- ports and pins

std::string port_key(const PortId *port)
{
    if (!port || !port->name)
        return {};
    std::string key = folded(port->name);
    if (port->subscripted)
        key += "(" + std::to_string(port->subscript) + ")";
    return key;
}

void each_pin(Bsdl *bsdl, const TakeRow &take)
{
    std::unordered_map<std::string, std::vector<int32_t>> cells_of_port;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl))
        cells_of_port[port_key(bsdlGetCellPort(cell))].push_back(bsdlGetCellNumber(cell));
    cells_of_port.erase("");
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        const PortId *port = bsdlGetPinPortID(pin);
        const auto cells = cells_of_port.find(port_key(port));
        take({{"port", port_value(port)},
              {"number", text_value(bsdlGetPinPhysicalName(pin))},
              {"type", word_value(pin_type_word(bsdlGetPinType(pin)))},
              {"function", word_value(pin_function_word(bsdlGetPinFunction(pin)))},
              {"cells", cells == cells_of_port.end() ? Json::array() : Json(cells->second)}});
    }
}

static Json all_rows(Bsdl *bsdl, void (*each_row)(Bsdl *bsdl, const TakeRow &take))
{
    Json rows = Json::array();
    each_row(bsdl, [&](Json row) { rows.push_back(std::move(row)); });
    return rows;
}

Json pins_of(Bsdl *bsdl) { return all_rows(bsdl, each_pin); }

static Json pin_maps_of(Bsdl *bsdl)
{
    // A mapping with a syntax error has no name, but others may follow.
    Json maps = Json::array();
    const int32_t count = bsdlGetNbrOfPinMaps(bsdl);
    for (int32_t i = 0; i < count; i++)
        maps.push_back(text_value(i == 0 ? bsdlGetFirstPinMap(bsdl) : bsdlGetNextPinMap(bsdl)));
    return maps;
}

static Json port_groups_of(Bsdl *bsdl)
{
    Json groups = Json::array();
    for (const PortGroup *group = bsdlGetFirstPortGroup(bsdl); group;
         group = bsdlGetNextPortGroup(bsdl))
        groups.push_back({{"type", word_value(twin_type_word(group->type))},
                          {"representative", port_value(group->representative)},
                          {"associated", port_value(group->associated)}});
    return groups;
}

static Json tap_of(Bsdl *bsdl)
{
    const double frequency = bsdlGetTckFrequency(bsdl);
    return {{"tdi", port_value(bsdlGetTdiPortId(bsdl))},
            {"tdo", port_value(bsdlGetTdoPortId(bsdl))},
            {"tms", port_value(bsdlGetTmsPortId(bsdl))},
            {"tck", port_value(bsdlGetTckPortId(bsdl))},
            {"trst", port_value(bsdlGetTrstPortId(bsdl))},
            {"tck_frequency", frequency == 0 ? Json() : Json(frequency)},
            {"tck_halt", word_value(halt_state_word(bsdlGetTckHaltState(bsdl)))}};
}

static Json compliance_of(Bsdl *bsdl)
{
    if (bsdlGetNbrOfComplPorts(bsdl) < 0)
        return nullptr;
    Json ports = Json::array();
    for (const PortId *port = bsdlGetFirstComplPort(bsdl); port; port = bsdlGetNextComplPort(bsdl))
        ports.push_back(port_value(port));
    return {{"ports", ports},
            {"patterns", texts_of(bsdl, bsdlGetFirstComplPattern, bsdlGetNextComplPattern)}};
}

// ---------------------------------------------------------------------- instructions, registers

// The bypass register captures 0, whether the file says so or leaves it to the standard.
static Json capture_of(InstructionEntry *entry, const Json &reg)
{
    const Json capture = text_value(bsdlGetInstrCaptureValue(entry));
    const bool bypass = reg.is_string() && folded(reg) == "bypass";
    return capture.is_null() && bypass ? Json("0") : capture;
}

Json instructions_of(Bsdl *bsdl)
{
    Json instructions = Json::array();
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl)) {
        const char *name = bsdlGetInstrRegisterName(entry);
        instructions.push_back(
            {{"name", text_value(bsdlGetInstructionName(entry))},
             {"opcodes", texts_of(entry, bsdlGetFirstInstrPattern, bsdlGetNextInstrPattern)},
             {"class", word_value(instruction_type_word(bsdlGetInstructionType(entry)))},
             {"preload", bsdlIsInstrPreload(entry) != 0},
             {"register", text_value(name)},
             {"length", name ? number_value(bsdlGetInstrRegisterLength(entry), 0) : Json()},
             {"capture", capture_of(entry, text_value(name))}});
    }
    return instructions;
}

Json registers_of(const Json &instructions)
{
    Json registers = Json::array();
    std::unordered_map<std::string, size_t> place;
    for (const Json &instruction : instructions) {
        const Json &name = instruction["register"];
        if (name.is_null())
            continue;
        const auto [found, is_new] = place.try_emplace(name, registers.size());
        if (is_new)
            registers.push_back({{"name", name},
                                 {"length", instruction["length"]},
                                 {"instructions", Json::array()}});
        registers[found->second]["instructions"].push_back(instruction["name"]);
    }
    return registers;
}

static Json idcode_value(const char *pattern)
{
    Json value = {{"pattern", text_value(pattern)}, {"hex", pattern_hex(pattern)}};
    const std::optional<Idcode> idcode = decode_idcode(pattern);
    const auto number = [](std::optional<unsigned> n) { return n ? Json(*n) : Json(); };
    value["version"] = idcode ? number(idcode->version) : Json();
    value["part"] = idcode ? number(idcode->part) : Json();
    value["manufacturer"] = idcode && idcode->bank
                                ? Json{{"bank", *idcode->bank},
                                       {"number", *idcode->number},
                                       {"name", word_value(idcode->manufacturer)}}
                                : Json();
    return value;
}

Json idcodes_of(Bsdl *bsdl)
{
    Json idcodes = Json::array();
    for (const char *pattern = bsdlGetFirstIdcodePattern(bsdl); pattern;
         pattern = bsdlGetNextIdcodePattern(bsdl))
        idcodes.push_back(idcode_value(pattern));
    return idcodes;
}

// -------------------------------------------------------------------------- boundary register

void each_cell(Bsdl *bsdl, const TakeRow &take)
{
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        const int32_t result = bsdlGetCellDisableResult(cell);
        take({{"number", bsdlGetCellNumber(cell)},
              {"cell", text_value(bsdlGetCellName(cell))},
              {"port", port_value(bsdlGetCellPort(cell))},
              {"function", word_value(cell_function_word(bsdlGetCellFunction(cell)))},
              {"safe", word_value(safe_bit_word(bsdlGetCellSafeBit(cell)))},
              {"control", number_value(bsdlGetCellControlCell(cell), 0)},
              {"disable_value", word_value(disable_value_word(bsdlGetCellDisableValue(cell)))},
              {"disable_result", word_value(disable_result_word(result))}});
    }
}

Json cells_of(Bsdl *bsdl) { return all_rows(bsdl, each_cell); }

static Json cell_descriptions_of(Bsdl *bsdl)
{
    Json descriptions = Json::array();
    for (GSList *cell = bsdlGetFirstCellDesc(bsdl); cell; cell = bsdlGetNextCellDesc(bsdl)) {
        Json captures = Json::array();
        for (GSList *capture = bsdlGetCellFirstCaptDesc(cell); capture;
             capture = bsdlGetCellNextCaptDesc(cell)) {
            const int32_t instruction = bsdlGetCellCaptInstr(capture);
            captures.push_back(
                {{"function", word_value(cell_function_word(bsdlGetCellCaptContext(capture)))},
                 {"instruction", word_value(capture_instruction_word(instruction))},
                 {"source", word_value(capture_source_word(bsdlGetCellCaptSource(capture)))}});
        }
        descriptions.push_back({{"name", text_value(bsdlGetCellDescName(cell))},
                                {"package", text_value(bsdlGetCellDescPackage(cell))},
                                {"captures", std::move(captures)}});
    }
    return descriptions;
}

// -------------------------------------------------------------------------------- the whole

Json standards_of(Bsdl *bsdl)
{
    Json uses = Json::array();
    for (const auto standard : {bsdlStandard1149_1, bsdlStandard1532, bsdlStandard1149_4,
                                bsdlStandard1149_6, bsdlStandardPrg})
        if (const char *name = standard(bsdl))
            uses.push_back(name);
    return {{"governing", word_value(standard_word(bsdlStandard(bsdl)))},
            {"uses", uses},
            {"conformance", word_value(conformance_word(bsdlConformance(bsdl)))}};
}

static Json packages_of(Bsdl *bsdl)
{
    return {{"names", texts_of(bsdl, bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec)},
            {"files", texts_of(bsdl, bsdlGetFirstDotALLFileSpec, bsdlGetNextDotALLFileSpec)}};
}

static Json instruction_register_of(Bsdl *bsdl)
{
    return {{"length", number_value(bsdlGetInstructionLength(bsdl), 1)},
            {"captures",
             texts_of(bsdl, bsdlGetFirstInstructionCapture, bsdlGetNextInstructionCapture)}};
}

namespace
{

struct Part {
    std::string_view name;
    Json (*of)(Bsdl *bsdl);
};

// In the order of the document.
constexpr Part DEVICE_PARTS[] = {
    {"packages", packages_of},
    {"pin_map", [](Bsdl *h) { return text_value(bsdlGetDefaultDevicePackage(h)); }},
    {"pin_maps", pin_maps_of},
    {"pins", [](Bsdl *) { return Json(); }},
    {"port_groups", port_groups_of},
    {"tap", tap_of},
    {"compliance", compliance_of},
    {"instruction_register", instruction_register_of},
    {"instructions", instructions_of},
    {"registers", [](Bsdl *h) { return registers_of(instructions_of(h)); }},
    {"idcodes", idcodes_of},
    {"usercodes",
     [](Bsdl *h) { return texts_of(h, bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern); }},
    {"boundary",
     [](Bsdl *h) {
         return Json{{"length", number_value(bsdlGetBSRLength(h), 1)}, {"cells", nullptr}};
     }},
    {"cell_descriptions", cell_descriptions_of},
    {"design_warning", [](Bsdl *h) { return text_value(bsdlDesignWarning(h)); }},
    {"isc", [](Bsdl *h) { return bsdlIs1532(h) ? isc_of(h) : Json(); }},
    {"aio", aio_of},
    {"analog", analog_of},
};

constexpr Part FILE_PARTS[] = {
    {"kind", [](Bsdl *h) { return Json(bsdlIsPrg(h) ? "prg" : "bsdl"); }},
    {"component", [](Bsdl *h) { return text_value(bsdlComponentName(h)); }},
    {"standards", standards_of},
    {"prg", [](Bsdl *h) { return bsdlIsPrg(h) ? prg_of(h) : Json(); }},
};

} // namespace

Json part_of(Bsdl *bsdl, std::string_view name)
{
    for (const std::span<const Part> parts :
         {std::span<const Part>(FILE_PARTS), std::span<const Part>(DEVICE_PARTS)})
        for (const Part &part : parts)
            if (part.name == name)
                return part.of(bsdl);
    return {};
}

Json document_without_rows(Bsdl *bsdl, const std::string &path)
{
    Json json = {{"schema", "tarnlet-info-1"},
                 {"kind", part_of(bsdl, "kind")},
                 {"file", text_value(path.c_str())},
                 {"component", part_of(bsdl, "component")},
                 {"standards", standards_of(bsdl)},
                 {"syntax_errors", nullptr},
                 {"check", nullptr}};
    if (bsdlIsPrg(bsdl))
        json["prg"] = prg_of(bsdl);
    else
        for (const Part &part : DEVICE_PARTS)
            json[std::string(part.name)] = part.of(bsdl);
    return json;
}

void add_rows(Bsdl *bsdl, Json &json)
{
    json["pins"] = pins_of(bsdl);
    json["boundary"]["cells"] = cells_of(bsdl);
}

Json document_of(Bsdl *bsdl, const std::string &path)
{
    Json json = document_without_rows(bsdl, path);
    if (!bsdlIsPrg(bsdl))
        add_rows(bsdl, json);
    return json;
}
