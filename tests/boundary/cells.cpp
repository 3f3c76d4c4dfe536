#include "cells.h"

using namespace support;

static std::string joined(const std::vector<std::string> &parts, const char *between)
{
    std::string text;
    for (const std::string &part : parts)
        text += (text.empty() ? "" : between) + part;
    return text;
}

// The bits of "in(3 downto 0)"; 0 for a port that is no vector.
static int bits_of(const std::string &mode)
{
    size_t open = mode.find('(');
    if (open == std::string::npos)
        return 0;
    int from = std::stoi(mode.substr(open + 1));
    int to = std::stoi(mode.substr(mode.rfind(' ')));
    return std::abs(from - to) + 1;
}

Description with_cells(Issue issue, const std::vector<std::string> &ports,
                       const std::vector<std::string> &rows, long length)
{
    std::vector<std::string> declared = {"TCK : in bit", "TMS : in bit", "TDI : in bit",
                                         "TDO : out bit"};
    std::vector<std::string> mapped = {"TCK:1", "TMS:2", "TDI:3", "TDO:4"};
    int pin = 5;
    for (const std::string &port : ports) {
        size_t colon = port.find(':');
        std::string name = port.substr(0, colon);
        std::string mode = port.substr(colon + 1);
        int bits = bits_of(mode);
        declared.push_back(name + " : " + mode.substr(0, mode.find('(')) +
                           (bits ? " bit_vector" + mode.substr(mode.find('(')) : " bit"));
        std::vector<std::string> pins;
        for (int i = 0; i < std::max(bits, 1); i++)
            pins.push_back(std::to_string(pin++));
        mapped.push_back(name + ":" + (bits ? "(" + joined(pins, ",") + ")" : pins.front()));
    }
    Description description(issue);
    description.with(PORT_CLAUSE, "port (" + joined(declared, "; ") + ");")
        .with(PIN_MAPS, "constant PKG : PIN_MAP_STRING := \"" + joined(mapped, ", ") + "\";")
        .with(BOUNDARY_LENGTH,
              "attribute BOUNDARY_LENGTH of DEV : entity is " + std::to_string(length) + ";")
        .with(BOUNDARY_REGISTER, attribute("BOUNDARY_REGISTER", joined(rows, ", ")));
    return description;
}

Description with_cells(const std::vector<std::string> &ports, const std::vector<std::string> &rows)
{
    return with_cells(Issue::BSDL_2001, ports, rows, static_cast<long>(rows.size()));
}

void check_up_to_cells(Reading &reading)
{
    for (auto *check :
         {bsdl_check_generic, bsdl_check_logical_port, bsdl_check_packages, bsdl_check_all_pin_maps,
          bsdl_check_grouped_port, bsdl_check_scan_port, bsdl_check_compliance,
          bsdl_check_instr_reg, bsdl_check_optional_reg, bsdl_check_reg_access})
        reading.check(check);
    reading.clear();
}

// ------------------------------------------------------------------------------------- findings

static std::vector<std::string> ports_of(const std::vector<std::string> &rows)
{
    static const std::map<char, std::string> modes = {
        {'A', ":in"},  {'C', ":in"},    {'Y', ":out"},    {'W', ":out"},   {'V', ":out"},
        {'U', ":out"}, {'B', ":inout"}, {'Q', ":buffer"}, {'R', ":buffer"}};
    std::vector<std::string> ports;
    for (const std::string &row : rows) {
        char name = row[row.find(", ") + 2];
        if (name == '*')
            continue;
        std::string port = name + modes.at(name);
        if (std::find(ports.begin(), ports.end(), port) == ports.end())
            ports.push_back(port);
    }
    return ports;
}

static void expect_findings(const CellCase &row, bool strict)
{
    SCOPED_TRACE(std::string(row.name) + (strict ? ", strict" : ""));
    Description description =
        with_cells(row.issue, row.ports.empty() ? ports_of(row.rows) : row.ports, row.rows,
                   row.length < 0 ? static_cast<long>(row.rows.size()) : row.length);
    description.replace(INSTRUCTION_OPCODE, "IDCODE (0100)", "IDCODE (0100)" + row.more_opcodes);
    if (!row.pairs.empty())
        description.with(PORT_GROUPING,
                         attribute("PORT_GROUPING", "Differential_Voltage (" + row.pairs + ")"));
    Reading reading(description, {.flags = strict ? STRICT : 0});
    ASSERT_TRUE(reading.handle());
    ASSERT_EQ(0, bsdlGetNumErrors(reading));
    check_up_to_cells(reading);

    ExpectedMessages messages = row.messages;
    for (Expected &message : messages)
        if (strict && message.level == WARNING)
            message = {ERROR, message.text, 2};
    int32_t statements; // the rules only ask whether there are any
    if (row.aio)
        reading.handle()->data->aio = reinterpret_cast<AioData *>(&statements);
    EXPECT_EQ(result_of(messages), reading.check(bsdl_check_bsr));
    expect_messages(reading.messages(), messages);
    reading.handle()->data->aio = nullptr;
}

void expect_findings(const CellCase &row)
{
    if (row.lenient)
        expect_findings(row, false);
    if (row.strict)
        expect_findings(row, true);
}

RowsOfCells::RowsOfCells(uint32_t rows) : count(rows)
{
    for (uint32_t i = 0; i < count; i++) {
        entries[i].cell_spec = &specs[i];
        entries[i].position = i;
        links[i] = {&entries[i], i + 1 < count ? &links[i + 1] : nullptr};
    }
    record.cell_table = links;
}

// ----------------------------------------------------------------------------------- messages

static std::string cell(uint32_t number) { return "<cell number> " + std::to_string(number); }

static std::string rule_on(uint32_t number, const std::string &function)
{
    return "cell_number " + std::to_string(number) + " with function '" + function + "' ";
}

const char IN_FUNCTIONS[] = "must have function INPUT, CLOCK or OBSERVE_ONLY";

Expected type_rule(const std::string &type, uint32_t number, const std::string &port,
                   const std::string &rule)
{
    return {ERROR,
            "<cell type> " + type + " in <logical pin map> means that " + cell(number) +
                " with <port id> " + port + " " + rule,
            2};
}

Expected two_drivers(uint32_t number, const char *function, uint32_t other,
                     const char *other_function, const std::string &port, const std::string &ending)
{
    return {ERROR,
            cell(number) + " with <function> " + function + " and " + cell(other) +
                " with <function> " + other_function + ", both <port id> " + port +
                " cannot both have " + ending + " function",
            2};
}

Expected no_driver(const std::string &port, const std::string &function)
{
    return {ERROR, "<port id> " + port + " must have a cell with an " + function + " function", 2};
}

Expected backed_by_pair(uint32_t number, const std::string &port)
{
    return {WARNING,
            "'observe only' cell " + std::to_string(number) +
                " connected to associated output port '" + port + "'",
            2};
}

Expected no_input(Level level, uint32_t number, const std::string &function,
                  const std::string &port)
{
    return {level,
            cell(number) + " <function> " + function +
                ": at least one other <cell entry> with <port id> " + port +
                " must have function INPUT or OBSERVE_ONLY but a different <cell number>",
            2};
}

Expected wrong_disable_value(const std::string &value, uint32_t number, const std::string &function,
                             const std::string &safe_bit, uint32_t control,
                             const std::string &control_function)
{
    return {ERROR,
            "The <disable value> (" + value + ") of " + cell(number) + " with <function> '" +
                function + "' must be equal to the <safe bit> (" + safe_bit + ") of " +
                cell(control) + " with <function> '" + control_function + "'",
            2};
}

Expected controls_nothing(uint32_t number, const std::string &function)
{
    return {ERROR, rule_on(number, function) + "does not control any cell", 2};
}

Expected not_control(uint32_t number, const std::string &function, int32_t ccell)
{
    return {WARNING,
            rule_on(number, function) + "uses cell " + std::to_string(ccell) +
                " as control_cell but this is not a control_cell",
            2};
}
