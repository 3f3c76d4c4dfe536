#include "model.h"

#include "code_words.h"
#include "idcode.h"

#include <optional>
#include <string>

namespace
{

struct DeviceRecords {
    Codes standard{"Standard", standard_word};
    Codes conformance{"Conformance", conformance_word};
    Codes pin_type{"PinType", pin_type_word};
    Codes pin_function{"PinFunction", pin_function_word};
    Codes pair_type{"PairType", twin_type_word};
    Codes halt_state{"HaltState", halt_state_word};
    Codes cell_function{"CellFunction", cell_function_word};
    Codes capture_instruction{"CaptureInstruction", capture_instruction_word};
    Codes capture_source{"CaptureSource", capture_source_word};
    Codes safe_bit{"SafeBit", safe_bit_word};
    Codes disable_value{"DisableValue", disable_value_word};
    Codes disable_result{"DisableResult", disable_result_word};
    Codes instruction_type{"InstructionType", instruction_type_word};

    Record<3> standards{"Standards"};
    Record<2> packages{"Packages"};
    Record<5> pin{"Pin"};
    Record<3> port_group{"PortGroup"};
    Record<7> tap{"Tap"};
    Record<2> compliance{"Compliance"};
    Record<7> instruction{"Instruction"};
    Record<3> register_{"Register"};
    Record<2> instruction_register{"InstructionRegister"};
    Record<5> idcode{"Idcode"};
    Record<3> manufacturer{"Manufacturer"};
    Record<8> cell_row{"CellRow"};
    Record<2> cell{"Cell"};
    Record<3> capture{"Capture"};
    Record<3> cell_description{"CellDescription"};
};

} // namespace

static const DeviceRecords &records()
{
    static const DeviceRecords instance;
    return instance;
}

// ---------------------------------------------------------------------------- ports and pins

// A port bit as a key: names of the language are the same whatever the case of their letters.
static std::string port_key(const PortId &port)
{
    std::string key = port.name;
    for (char &c : key)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return port.subscripted ? key + "(" + std::to_string(port.subscript) + ")" : key;
}

static py::object pins_of(Bsdl *bsdl)
{
    std::unordered_map<std::string, Rows> cells_of_port;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl))
        if (const PortId *port = bsdlGetCellPort(cell); port && port->name)
            cells_of_port[port_key(*port)].add(number(bsdlGetCellNumber(cell)));

    Rows pins;
    const py::object no_cells = py::tuple();
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        const PortId *port = bsdlGetPinPortID(pin);
        const auto cells =
            port && port->name ? cells_of_port.find(port_key(*port)) : cells_of_port.end();
        pins.add(records().pin(port_bit(port), text(bsdlGetPinPhysicalName(pin)),
                               records().pin_type[bsdlGetPinType(pin)],
                               records().pin_function[bsdlGetPinFunction(pin)],
                               cells == cells_of_port.end() ? no_cells : cells->second.tuple()));
    }
    return pins.tuple();
}

static py::object pin_maps_of(Bsdl *bsdl)
{
    // A mapping with a syntax error has no name, but others may follow.
    Rows maps;
    const int32_t count = bsdlGetNbrOfPinMaps(bsdl);
    for (int32_t i = 0; i < count; i++)
        maps.add(text(i == 0 ? bsdlGetFirstPinMap(bsdl) : bsdlGetNextPinMap(bsdl)));
    return maps.tuple();
}

static py::object port_groups_of(Bsdl *bsdl)
{
    Rows groups;
    for (const PortGroup *group = bsdlGetFirstPortGroup(bsdl); group;
         group = bsdlGetNextPortGroup(bsdl))
        groups.add(records().port_group(records().pair_type[group->type],
                                        port_bit(group->representative),
                                        port_bit(group->associated)));
    return groups.tuple();
}

static py::object tap_of(Bsdl *bsdl)
{
    const double frequency = bsdlGetTckFrequency(bsdl);
    return records().tap(port_bit(bsdlGetTdiPortId(bsdl)), port_bit(bsdlGetTdoPortId(bsdl)),
                         port_bit(bsdlGetTmsPortId(bsdl)), port_bit(bsdlGetTckPortId(bsdl)),
                         port_bit(bsdlGetTrstPortId(bsdl)),
                         frequency == 0 ? py::object(py::none()) : py::float_(frequency),
                         records().halt_state[bsdlGetTckHaltState(bsdl)]);
}

static py::object compliance_of(Bsdl *bsdl)
{
    if (bsdlGetNbrOfComplPorts(bsdl) < 0)
        return py::none();
    Rows ports;
    for (const PortId *port = bsdlGetFirstComplPort(bsdl); port; port = bsdlGetNextComplPort(bsdl))
        ports.add(port_bit(port));
    return records().compliance(ports.tuple(),
                                texts(bsdl, bsdlGetFirstComplPattern, bsdlGetNextComplPattern));
}

// ---------------------------------------------------------------------- instructions, registers

static py::object instruction_register_of(Bsdl *bsdl)
{
    return records().instruction_register(
        number_from(1, bsdlGetInstructionLength(bsdl)),
        texts(bsdl, bsdlGetFirstInstructionCapture, bsdlGetNextInstructionCapture));
}

static py::object instructions_of(Bsdl *bsdl)
{
    Rows instructions;
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl)) {
        const char *name = bsdlGetInstrRegisterName(entry);
        instructions.add(records().instruction(
            text(bsdlGetInstructionName(entry)),
            texts(entry, bsdlGetFirstInstrPattern, bsdlGetNextInstrPattern),
            records().instruction_type[bsdlGetInstructionType(entry)],
            truth(bsdlIsInstrPreload(entry) != 0), text(name),
            name ? number_from(0, bsdlGetInstrRegisterLength(entry)) : py::none(),
            text(bsdlGetInstrCaptureValue(entry))));
    }
    return instructions.tuple();
}

// Each with its instructions, in the order in which these select them.
static py::object registers_of(Bsdl *bsdl)
{
    struct Register {
        const char *name;
        int32_t length;
        Rows instructions;
    };
    std::vector<Register> registers;
    std::unordered_map<std::string_view, size_t> place;
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl)) {
        const char *name = bsdlGetInstrRegisterName(entry);
        if (!name)
            continue;
        const auto [found, is_new] = place.try_emplace(name, registers.size());
        if (is_new)
            registers.push_back({name, bsdlGetInstrRegisterLength(entry), {}});
        registers[found->second].instructions.add(text(bsdlGetInstructionName(entry)));
    }
    Rows rows;
    for (Register &each : registers)
        rows.add(records().register_(text(each.name), number_from(0, each.length),
                                     each.instructions.tuple()));
    return rows.tuple();
}

static py::object idcode_value(const char *pattern)
{
    const auto optional = [](std::optional<unsigned> value) {
        return value ? number(*value) : py::none();
    };
    const std::optional<Idcode> idcode = decode_idcode(pattern);
    return records().idcode(text(pattern), text(pattern_hex(pattern).c_str()),
                            idcode ? optional(idcode->version) : py::none(),
                            idcode ? optional(idcode->part) : py::none(),
                            idcode && idcode->bank
                                ? records().manufacturer(number(*idcode->bank),
                                                         number(*idcode->number),
                                                         text(idcode->manufacturer))
                                : py::none());
}

static py::object idcodes_of(Bsdl *bsdl)
{
    Rows idcodes;
    for (const char *pattern = bsdlGetFirstIdcodePattern(bsdl); pattern;
         pattern = bsdlGetNextIdcodePattern(bsdl))
        idcodes.add(idcode_value(pattern));
    return idcodes.tuple();
}

static py::object usercodes_of(Bsdl *bsdl)
{
    return texts(bsdl, bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern);
}

// -------------------------------------------------------------------------- boundary register

static py::object cells_of(Bsdl *bsdl)
{
    Rows cells;
    // Most rows name the cell type of the row before, which then is the same object.
    std::string_view type_name;
    py::object type = py::none();
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        if (const char *name = bsdlGetCellName(cell); !name || name != type_name) {
            type_name = name ? name : "";
            type = text(name);
        }
        cells.add(records().cell_row(number(bsdlGetCellNumber(cell)), type,
                                     port_bit(bsdlGetCellPort(cell)),
                                     records().cell_function[bsdlGetCellFunction(cell)],
                                     records().safe_bit[bsdlGetCellSafeBit(cell)],
                                     number_from(0, bsdlGetCellControlCell(cell)),
                                     records().disable_value[bsdlGetCellDisableValue(cell)],
                                     records().disable_result[bsdlGetCellDisableResult(cell)]));
    }
    return cells.tuple();
}

static py::object cell_descriptions_of(Bsdl *bsdl)
{
    Rows descriptions;
    for (GSList *cell = bsdlGetFirstCellDesc(bsdl); cell; cell = bsdlGetNextCellDesc(bsdl)) {
        Rows captures;
        for (GSList *capture = bsdlGetCellFirstCaptDesc(cell); capture;
             capture = bsdlGetCellNextCaptDesc(cell))
            captures.add(
                records().capture(records().cell_function[bsdlGetCellCaptContext(capture)],
                                  records().capture_instruction[bsdlGetCellCaptInstr(capture)],
                                  records().capture_source[bsdlGetCellCaptSource(capture)]));
        descriptions.add(records().cell_description(
            text(bsdlGetCellDescName(cell)), text(bsdlGetCellDescPackage(cell)), captures.tuple()));
    }
    return descriptions.tuple();
}

// -------------------------------------------------------------------------------- the whole

static py::object standards_of(Bsdl *bsdl)
{
    Rows uses;
    for (const auto standard : {bsdlStandard1149_1, bsdlStandard1532, bsdlStandard1149_4,
                                bsdlStandard1149_6, bsdlStandardPrg})
        if (const char *name = standard(bsdl))
            uses.add(text(name));
    return records().standards(records().standard[bsdlStandard(bsdl)], uses.tuple(),
                               records().conformance[bsdlConformance(bsdl)]);
}

static py::object packages_of(Bsdl *bsdl)
{
    return records().packages(texts(bsdl, bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec),
                              texts(bsdl, bsdlGetFirstDotALLFileSpec, bsdlGetNextDotALLFileSpec));
}

void load_record_types()
{
    records();
    load_family_types();
}

PartOf find_part(std::string_view name)
{
    struct Part {
        std::string_view name;
        PartOf part_of;
    };
    static constexpr Part PARTS[] = {
        {"component", [](Bsdl *bsdl) { return text(bsdlComponentName(bsdl)); }},
        {"is_prg", [](Bsdl *bsdl) { return truth(bsdlIsPrg(bsdl) != 0); }},
        {"standards", standards_of},
        {"packages", packages_of},
        {"pin_map", [](Bsdl *bsdl) { return text(bsdlGetDefaultDevicePackage(bsdl)); }},
        {"pin_maps", pin_maps_of},
        {"pins", pins_of},
        {"port_groups", port_groups_of},
        {"tap", tap_of},
        {"compliance", compliance_of},
        {"instruction_register", instruction_register_of},
        {"instructions", instructions_of},
        {"registers", registers_of},
        {"idcodes", idcodes_of},
        {"usercodes", usercodes_of},
        {"boundary_length", [](Bsdl *bsdl) { return number_from(1, bsdlGetBSRLength(bsdl)); }},
        {"cells", cells_of},
        {"cell_descriptions", cell_descriptions_of},
        {"design_warning", [](Bsdl *bsdl) { return text(bsdlDesignWarning(bsdl)); }},
        {"isc", [](Bsdl *bsdl) { return bsdlIs1532(bsdl) ? isc_of(bsdl) : py::none(); }},
        {"aio", aio_of},
        {"analog", analog_of},
        {"prg", [](Bsdl *bsdl) { return bsdlIsPrg(bsdl) ? prg_of(bsdl) : py::none(); }},
    };
    for (const Part &part : PARTS)
        if (part.name == name)
            return part.part_of;
    return nullptr;
}
