#include "generate.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace
{

// A driven port has six tokens more than an input; with one in eight of them a cell costs
// about 24 tokens and 87 bytes over the whole description, as in the makers' large files.
constexpr uint32_t DRIVEN_EVERY = 8;

// No row comes near 16 KB, the longest string that a reader has to take.
constexpr uint32_t PINS_A_ROW = 8;
constexpr uint32_t NAMES_A_ROW = 8;

/** The string pieces of one attribute or constant: `"row, " &` and at last `"row";`. */
struct Rows {
    std::string &text;
    const char *separator = ", ";
    bool empty = true;

    void add(const std::string &row)
    {
        if (!empty) {
            text += separator;
            text += "\" &\n";
        }
        text += "      \"" + row;
        empty = false;
    }

    void close() { text += "\";\n\n"; }
};

std::string number(uint32_t value) { return std::to_string(value); }

void attribute_head(std::string &text, const std::string &entity, const char *name)
{
    text += "    attribute ";
    text += name;
    text += " of " + entity + " : entity is\n";
}

struct Description {
    std::string entity = {};
    std::string ports = {};     ///< rows of the port clause, each ended by ";\n"
    std::string groups = {};    ///< the whole PORT_GROUPING statement, or empty
    std::string pin_map = {};   ///< the pieces of the pin map, closed
    std::string registers = {}; ///< the pieces of REGISTER_ACCESS, closed, or empty
    std::string opcodes = {};   ///< the pieces of INSTRUCTION_OPCODE, closed
    std::string cells = {};     ///< the pieces of BOUNDARY_REGISTER, closed
    uint32_t opcode_length = 4;
    uint32_t cell_count = 0;
};

std::string opcode(uint32_t value, uint32_t length)
{
    std::string bits(length, '0');
    for (uint32_t i = 0; i < length && value != 0; i++, value >>= 1)
        bits[length - 1 - i] = static_cast<char>('0' + (value & 1));
    return bits;
}

/** The instructions that each description has; the value after the last one is free. */
uint32_t add_standard_opcodes(Rows &rows, uint32_t length)
{
    rows.add("BYPASS (" + std::string(length, '1') + ")");
    rows.add("EXTEST (" + std::string(length, '0') + ")");
    rows.add("SAMPLE (" + opcode(1, length) + ")");
    rows.add("PRELOAD (" + opcode(1, length) + ")");
    rows.add("IDCODE (" + opcode(2, length) + ")");
    return 3;
}

void add_tap_pins(Rows &rows)
{
    rows.add("TCK : TAP_1");
    rows.add("TDI : TAP_2");
    rows.add("TDO : TAP_3");
    rows.add("TMS : TAP_4");
}

std::string assemble(const Description &d)
{
    std::string text;
    text.reserve(d.ports.size() + d.pin_map.size() + d.opcodes.size() + d.registers.size() +
                 d.cells.size() + d.groups.size() + 4096);
    text += "-- A generated description: valid, but of no real device.\n\n";
    text += "entity " + d.entity + " is\n\n";
    text += "    generic (PHYSICAL_PIN_MAP : string := \"GENERATED\");\n\n";
    text += "    port (\n" + d.ports;
    text += "        TCK, TDI, TMS : in bit;\n        TDO : out bit\n    );\n\n";
    text += "    use STD_1149_1_2001.all;\n\n";
    attribute_head(text, d.entity, "COMPONENT_CONFORMANCE");
    text += "        \"STD_1149_1_2001\";\n\n";
    text += "    attribute PIN_MAP of " + d.entity + " : entity is PHYSICAL_PIN_MAP;\n\n";
    text += "    constant GENERATED : PIN_MAP_STRING :=\n" + d.pin_map;
    text += d.groups;
    text += "    attribute TAP_SCAN_IN of TDI : signal is true;\n"
            "    attribute TAP_SCAN_MODE of TMS : signal is true;\n"
            "    attribute TAP_SCAN_OUT of TDO : signal is true;\n"
            "    attribute TAP_SCAN_CLOCK of TCK : signal is (20.0e6, BOTH);\n\n";
    text += "    attribute INSTRUCTION_LENGTH of " + d.entity + " : entity is " +
            number(d.opcode_length) + ";\n\n";
    attribute_head(text, d.entity, "INSTRUCTION_OPCODE");
    text += d.opcodes;
    attribute_head(text, d.entity, "INSTRUCTION_CAPTURE");
    text += "        \"" + opcode(1, d.opcode_length) + "\";\n\n";
    attribute_head(text, d.entity, "IDCODE_REGISTER");
    text += "        \"0001\" & \"0110100100101101\" & \"01010010110\" & \"1\";\n\n";
    if (!d.registers.empty()) {
        attribute_head(text, d.entity, "REGISTER_ACCESS");
        text += d.registers;
    }
    text += "    attribute BOUNDARY_LENGTH of " + d.entity + " : entity is " +
            number(d.cell_count) + ";\n\n";
    attribute_head(text, d.entity, "BOUNDARY_REGISTER");
    text += d.cells;
    text += "end " + d.entity + ";\n";
    return text;
}

void add_names(std::string &ports, const char *prefix, uint32_t first, uint32_t last,
               const char *mode)
{
    ports += "        ";
    for (uint32_t i = first; i < last; i++) {
        if (i != first)
            ports += ", ";
        ports += prefix + number(i);
    }
    ports += std::string(" : ") + mode + " bit;\n";
}

// Every eighth port is a three-state output. Each 64 cells one more is a control cell, which
// the outputs that follow it share.
void fill_scalar_ports(Description &d, uint32_t size)
{
    constexpr uint32_t CONTROL_EVERY = 64;
    auto is_control = [](uint32_t cell) { return cell % CONTROL_EVERY == 0; };
    auto is_driven = [](uint32_t cell) { return cell % DRIVEN_EVERY == DRIVEN_EVERY - 1; };

    // A control cell needs an output to control, so a tail without one is left plain.
    auto has_outputs = [&](uint32_t cell) { return cell + DRIVEN_EVERY <= size; };

    Rows pins{.text = d.pin_map};
    Rows cells{.text = d.cells};
    uint32_t control = 0;
    std::string inputs;
    std::string outputs;
    uint32_t input_count = 0;
    uint32_t output_count = 0;
    auto add_port = [](std::string &row, uint32_t &count, const std::string &name,
                       std::string &ports, const char *mode) {
        row += (count == 0 ? "        " : ", ") + name;
        if (++count == NAMES_A_ROW) {
            ports += row + mode;
            row.clear();
            count = 0;
        }
    };
    constexpr const char *IN_BIT = " : in bit;\n";
    constexpr const char *OUT_BIT = " : out bit;\n";

    for (uint32_t i = 0; i < size; i++) {
        const std::string name = "IO_" + number(i);
        if (is_control(i) && has_outputs(i)) {
            control = i;
            cells.add(number(i) + " (BC_1, *, CONTROL, 1)");
            continue;
        }
        pins.add(name + " : " + number(i + 1));
        if (is_driven(i)) {
            cells.add(number(i) + " (BC_1, " + name + ", OUTPUT3, X, " + number(control) +
                      ", 1, Z)");
            add_port(outputs, output_count, name, d.ports, OUT_BIT);
        } else {
            cells.add(number(i) + " (BC_1, " + name + ", INPUT, X)");
            add_port(inputs, input_count, name, d.ports, IN_BIT);
        }
    }
    if (input_count != 0)
        d.ports += inputs + IN_BIT;
    if (output_count != 0)
        d.ports += outputs + OUT_BIT;
    add_tap_pins(pins);
    pins.close();
    cells.close();
    d.cell_count = size;
}

void fill_one_vector(Description &d, uint32_t size)
{
    d.ports = "        DATA : in bit_vector(0 to " + number(size - 1) + ");\n";
    Rows pins{.text = d.pin_map};
    add_tap_pins(pins);
    for (uint32_t i = 0; i < size; i += PINS_A_ROW) {
        std::string row = i == 0 ? "DATA : (" : "";
        const uint32_t end = std::min(i + PINS_A_ROW, size);
        for (uint32_t pin = i; pin < end; pin++)
            row += (pin == i ? "" : ", ") + number(pin + 1);
        if (end == size)
            row += ")";
        pins.add(row);
    }
    pins.close();

    Rows cells{.text = d.cells};
    for (uint32_t i = 0; i < size; i++)
        cells.add(number(i) + " (BC_1, DATA(" + number(i) + "), INPUT, X)");
    cells.close();
    d.cell_count = size;
}

void fill_instructions(Description &d, uint32_t size)
{
    constexpr uint32_t PORTS = 8;
    add_names(d.ports, "IN_", 0, PORTS, "in");
    Rows pins{.text = d.pin_map};
    Rows cells{.text = d.cells};
    for (uint32_t i = 0; i < PORTS; i++) {
        pins.add("IN_" + number(i) + " : " + number(i + 1));
        cells.add(number(i) + " (BC_1, IN_" + number(i) + ", INPUT, X)");
    }
    add_tap_pins(pins);
    pins.close();
    cells.close();
    d.cell_count = PORTS;

    // One bit more than the numbers need keeps the opcodes away from all ones.
    while ((uint64_t{1} << (d.opcode_length - 1)) < uint64_t{size} + 8)
        d.opcode_length++;
    Rows opcodes{.text = d.opcodes};
    const uint32_t first = add_standard_opcodes(opcodes, d.opcode_length);
    for (uint32_t i = 0; i < size; i++)
        opcodes.add("INSTR_" + number(i) + " (" + opcode(first + i, d.opcode_length) + ")");
    opcodes.close();

    constexpr uint32_t INSTRUCTIONS_A_REGISTER = 10;
    Rows registers{.text = d.registers};
    for (uint32_t i = 0; i < size; i += INSTRUCTIONS_A_REGISTER) {
        std::string row = "REG_" + number(i / INSTRUCTIONS_A_REGISTER) + "[8] (";
        for (uint32_t j = i; j < std::min(i + INSTRUCTIONS_A_REGISTER, size); j++) {
            row += (j == i ? "INSTR_" : ", INSTR_") + number(j);
            if (j == i)
                row += " CAPTURES 0101XXXX";
        }
        registers.add(row + ")");
    }
    registers.close();
}

void fill_differential_pairs(Description &d, uint32_t size)
{
    attribute_head(d.groups, d.entity, "PORT_GROUPING");
    Rows groups{.text = d.groups};
    Rows pins{.text = d.pin_map};
    Rows cells{.text = d.cells};
    for (uint32_t i = 0; i < size; i++) {
        const std::string p = "RXP_" + number(i);
        const std::string n = "RXN_" + number(i);
        d.ports += "        " + p + ", " + n + " : in bit;\n";
        pins.add(p + " : " + number(2 * i + 1) + ", " + n + " : " + number(2 * i + 2));
        groups.add((i == 0 ? "DIFFERENTIAL_VOLTAGE ((" : "(") + p + ", " + n +
                   (i + 1 == size ? "))" : ")"));
        cells.add(number(i) + " (BC_1, " + p + ", INPUT, X)");
    }
    add_tap_pins(pins);
    pins.close();
    groups.close();
    cells.close();
    d.cell_count = size;
}

} // namespace

std::string generate_description(Shape shape, uint32_t size, const std::string &entity)
{
    Description d{.entity = entity};
    switch (shape) {
    case Shape::SCALAR_PORTS:
        fill_scalar_ports(d, size);
        break;
    case Shape::ONE_VECTOR:
        fill_one_vector(d, size);
        break;
    case Shape::INSTRUCTIONS:
        fill_instructions(d, size);
        break;
    case Shape::DIFFERENTIAL_PAIRS:
        fill_differential_pairs(d, size);
        break;
    }
    if (d.opcodes.empty()) {
        Rows opcodes{.text = d.opcodes};
        add_standard_opcodes(opcodes, d.opcode_length);
        opcodes.close();
    }
    return assemble(d);
}

std::string generate_small_description(uint32_t index)
{
    constexpr uint32_t SHAPES = sizeof shape_names / sizeof shape_names[0];
    // A step that shares no factor with the range visits every size before one comes again.
    const uint32_t size = 50 + index * 37 % 400;
    return generate_description(shape_names[index % SHAPES].shape, size, "part_" + number(index));
}

bool write_text(const std::string &path, const std::string &text)
{
    FILE *file = fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool written = fwrite(text.data(), 1, text.size(), file) == text.size();
    return (fclose(file) == 0) && written;
}

bool generate_folder(const std::string &folder, uint32_t count)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return false;
    for (uint32_t i = 0; i < count; i++) {
        const std::string path = folder + "/part_" + number(i) + ".bsd";
        if (!write_text(path, generate_small_description(i)))
            return false;
    }
    return true;
}
