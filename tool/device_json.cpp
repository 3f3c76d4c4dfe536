#include "device_json.h"

#include "code_words.h"
#include "command.h"
#include "console.h"
#include "diagnosed_file.h"
#include "idcode.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>
#include <strings.h>
#include <unordered_map>
#include <unordered_set>
#include <utility>

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

// The same for all references to a port bit; empty for none.
static std::string port_key(const PortId *port)
{
    if (!port || !port->name)
        return {};
    std::string key = folded(port->name);
    if (port->subscripted)
        key += "(" + std::to_string(port->subscript) + ")";
    return key;
}

static void each_pin(Bsdl *bsdl, const TakeRow &take)
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

static void each_cell(Bsdl *bsdl, const TakeRow &take)
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

// Without the rows of pins and cells, which may be very many.
static Json device_without_rows(Bsdl *bsdl)
{
    Json json;
    json["packages"] = {
        {"names", texts_of(bsdl, bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec)},
        {"files", texts_of(bsdl, bsdlGetFirstDotALLFileSpec, bsdlGetNextDotALLFileSpec)}};
    json["pin_map"] = text_value(bsdlGetDefaultDevicePackage(bsdl));
    json["pin_maps"] = pin_maps_of(bsdl);
    json["pins"] = nullptr;
    json["port_groups"] = port_groups_of(bsdl);
    json["tap"] = tap_of(bsdl);
    json["compliance"] = compliance_of(bsdl);
    json["instruction_register"] = {{"length", number_value(bsdlGetInstructionLength(bsdl), 1)},
                                    {"captures", texts_of(bsdl, bsdlGetFirstInstructionCapture,
                                                          bsdlGetNextInstructionCapture)}};
    json["instructions"] = instructions_of(bsdl);
    json["registers"] = registers_of(json["instructions"]);
    json["idcodes"] = idcodes_of(bsdl);
    json["usercodes"] = texts_of(bsdl, bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern);
    json["boundary"] = {{"length", number_value(bsdlGetBSRLength(bsdl), 1)}, {"cells", nullptr}};
    json["cell_descriptions"] = cell_descriptions_of(bsdl);
    json["design_warning"] = text_value(bsdlDesignWarning(bsdl));
    json["isc"] = bsdlIs1532(bsdl) ? isc_of(bsdl) : Json();
    json["aio"] = aio_of(bsdl);
    json["analog"] = analog_of(bsdl);
    return json;
}

// ------------------------------------------------------------------------- rows, counted

namespace
{

// References to a port bit, equal whatever the case of their letters.
struct PortBit {
    const PortId *port;

    bool operator==(const PortBit &other) const
    {
        return port->subscripted == other.port->subscripted &&
               (!port->subscripted || port->subscript == other.port->subscript) &&
               (port->name == other.port->name || strcasecmp(port->name, other.port->name) == 0);
    }
};

struct HashPortBit {
    size_t operator()(const PortBit &bit) const
    {
        size_t hash = bit.port->subscripted ? static_cast<size_t>(bit.port->subscript) + 1 : 0;
        for (const char *c = bit.port->name; *c; c++)
            hash = hash * 31 + (static_cast<unsigned char>(*c) | 0x20);
        return hash;
    }
};

} // namespace

size_t WordCounts::place_of(const char *word)
{
    const auto [found, is_new] = places_.try_emplace(word ? word : "", counts.size());
    if (is_new)
        counts.emplace_back(text_value(word), 0);
    return found->second;
}

void WordCounts::add(const char *word)
{
    const auto [found, is_new] = known_.try_emplace(word);
    if (is_new)
        found->second = place_of(word);
    counts[found->second].second++;
}

static void count_rows(Bsdl *bsdl, RowCounts &rows)
{
    std::unordered_set<PortBit, HashPortBit> observed;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        rows.cells++;
        rows.cell_functions.add(cell_function_word(bsdlGetCellFunction(cell)));
        rows.cell_names.add(bsdlGetCellName(cell));
        if (const PortId *port = bsdlGetCellPort(cell); port && port->name)
            observed.insert(PortBit{port});
    }
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        rows.pins++;
        rows.pin_types.add(pin_type_word(bsdlGetPinType(pin)));
        rows.pin_functions.add(pin_function_word(bsdlGetPinFunction(pin)));
        const PortId *port = bsdlGetPinPortID(pin);
        rows.pins_with_cells += port && port->name ? observed.count(PortBit{port}) : 0;
        rows.pins_without_number += !bsdlGetPinPhysicalName(pin);
    }
}

// ------------------------------------------------------------------------------ from the file

// Of a description without rows.
static Json document_without_rows(Bsdl *bsdl, const std::string &path)
{
    const bool is_prg = bsdlIsPrg(bsdl) != 0;
    Json json = {{"schema", "tarnlet-info-1"},
                 {"kind", is_prg ? "prg" : "bsdl"},
                 {"file", text_value(path.c_str())},
                 {"component", text_value(bsdlComponentName(bsdl))},
                 {"standards", standards_of(bsdl)},
                 {"syntax_errors", nullptr},
                 {"check", nullptr}};
    if (is_prg)
        json["prg"] = prg_of(bsdl);
    else
        json.update(device_without_rows(bsdl));
    return json;
}

static void add_rows(Bsdl *bsdl, Json &json)
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

static std::string with_line(const BsdlFinding &finding)
{
    const std::string text = escaped_line(finding.text);
    return finding.place.line > 0 ? "line " + std::to_string(finding.place.line) + ": " + text
                                  : text;
}

// What a person would count: what follows from another finding is none.
static void count_findings(const DiagnosedFile &file, Model &model)
{
    for (const BsdlFinding *finding : file.findings) {
        const bool is_error = finding->severity == BSDL_SEVERITY_ERROR;
        if (is_error && model.first_error.empty())
            model.first_error = with_line(*finding);
        if (finding->because >= 0 || finding->suppressed)
            continue;
        if (is_error && std::string_view(finding->rule) == "syntax-error")
            model.syntax_errors++;
        else if (is_error)
            model.errors++;
        else
            model.warnings += finding->severity == BSDL_SEVERITY_WARNING;
    }
}

static bool read_and_check(const std::string &path, const ReadOptions &options, Model &model,
                           const std::function<void(Bsdl *bsdl)> &describe)
{
    const DiagnosedFile file(path, {.read = options});
    Bsdl *bsdl = bsdlDiagnosisBsdl(file.diagnosis.get());
    count_findings(file, model);
    if (!bsdl) {
        complain(escaped(path) + ": " +
                 (model.first_error.empty() ? "cannot be read" : model.first_error));
        return false;
    }
    model.is_prg = bsdlIsPrg(bsdl) != 0;
    model.component = text_value(bsdlComponentName(bsdl));
    describe(bsdl);
    return true;
}

static void describe(Bsdl *bsdl, const std::string &path, Model &model)
{
    model.json = document_without_rows(bsdl, path);
    model.json["syntax_errors"] = model.syntax_errors;
    model.json["check"] = {{"passed", model.syntax_errors == 0 && model.errors == 0},
                           {"errors", model.errors},
                           {"warnings", model.warnings}};
}

static void print_with_rows(Bsdl *bsdl, const Json &json);

bool read_summary(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        count_rows(bsdl, model.rows);
    });
}

bool read_model(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        if (!model.is_prg)
            add_rows(bsdl, model.json);
    });
}

bool print_model(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        if (model.is_prg)
            print_json(model.json);
        else
            print_with_rows(bsdl, model.json);
    });
}

bool read_model(const std::string &path, const ReadOptions &options, Json (*part)(Bsdl *bsdl),
                Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        if (!model.is_prg)
            model.json = part(bsdl);
    });
}

void note_syntax_errors(const std::string &path, const Model &model)
{
    if (model.syntax_errors > 0)
        complain(escaped(path) + ": " +
                 counted(static_cast<size_t>(model.syntax_errors), "syntax error") +
                 ", so what is shown may not be all; the first: " + model.first_error);
}

// As a part of a larger document: each line but the first goes to the right.
static void print_indented(const Json &json, size_t blanks)
{
    const std::string text = json.dump(2, ' ', true);
    const std::string indentation(blanks, ' ');
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        std::fwrite(text.data() + at, 1, end - at, stdout);
        if (end < text.size())
            std::fwrite(indentation.data(), 1, blanks, stdout);
        at = end;
    }
}

// One row after the other, so that no more than one is held.
static void print_rows(Bsdl *bsdl, void (*each_row)(Bsdl *bsdl, const TakeRow &take), size_t blanks)
{
    const char *between = "[";
    each_row(bsdl, [&](const Json &row) {
        std::printf("%s\n%*s", between, static_cast<int>(blanks) + 2, "");
        print_indented(row, blanks + 2);
        between = ",";
    });
    if (*between == '[')
        std::fputs("[]", stdout);
    else
        std::printf("\n%*s]", static_cast<int>(blanks), "");
}

static void print_with_rows(Bsdl *bsdl, const Json &json)
{
    const char *between = "{";
    for (const auto &[key, value] : json.items()) {
        std::printf("%s\n  \"%s\": ", between, key.c_str());
        between = ",";
        if (key == "pins") {
            print_rows(bsdl, each_pin, 2);
        } else if (key == "boundary") {
            std::printf("{\n    \"length\": %s,\n    \"cells\": ", value["length"].dump().c_str());
            print_rows(bsdl, each_cell, 4);
            std::fputs("\n  }", stdout);
        } else {
            print_indented(value, 2);
        }
    }
    std::fputs("\n}\n", stdout);
}

void print_json(const Json &json)
{
    const std::string text = json.dump(2, ' ', true);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}
