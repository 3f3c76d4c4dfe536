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
