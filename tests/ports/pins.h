#pragma once

#include "support/description.h"
#include "support/iteration.h"

#include <string>
#include <vector>

// The valid description with more ports, and what its pins have become.

namespace pins
{

using namespace support;
using support::Reading; // not the scanner's record of that name

// `ports` goes after the ports of the valid description, `mapping` after its pins.
inline Description description(const std::string &ports, const std::string &mapping)
{
    Description text;
    if (!ports.empty())
        text.replace(PORT_CLAUSE, "VCC : linkage bit", "VCC : linkage bit; " + ports);
    if (!mapping.empty())
        text.replace(PIN_MAPS, "VCC:11", "VCC:11, " + mapping);
    return text;
}

// A boundary register of these cells alone: what stands after the cell's name.
inline Description &with_cells(Description &text, const std::vector<std::string> &cells)
{
    std::string table;
    for (size_t i = 0; i < cells.size(); i++)
        table += (i ? ", " : "") + std::to_string(i) + " (BC_0, " + cells[i] + ")";
    return text
        .with(BOUNDARY_LENGTH,
              "attribute BOUNDARY_LENGTH of DEV : entity is " + std::to_string(cells.size()) + ";")
        .with(BOUNDARY_REGISTER, attribute("BOUNDARY_REGISTER", table));
}

// Chooses the mapping and builds the pins; result of the second.
inline int32_t build(Reading &reading)
{
    reading.check(bsdl_check_generic);
    return reading.check(bsdl_check_all_pin_maps);
}

// "A=5 V(0)=- ..." of the pins from the given place on.
inline std::string physical(Bsdl *bsdl, size_t from)
{
    std::string text;
    std::vector<PinEntry *> all = all_of(bsdl, bsdlGetFirstPin, bsdlGetNextPin);
    for (size_t i = from; i < all.size(); i++) {
        const char *name = bsdlGetPinPhysicalName(all[i]);
        text += (text.empty() ? "" : " ") + text_of(all[i]) + "=" + (name ? name : "-");
    }
    return text;
}

// "TDI=1 TDO=2 ..." of the pins with a function.
inline std::string functions(Bsdl *bsdl)
{
    std::string text;
    for (PinEntry *pin : all_of(bsdl, bsdlGetFirstPin, bsdlGetNextPin))
        if (int32_t function = bsdlGetPinFunction(pin))
            text += (text.empty() ? "" : " ") + text_of(pin) + "=" + std::to_string(function);
    return text;
}

// The pins of the valid description come first.
constexpr size_t OWN_PINS = 11;
constexpr unsigned OWN_DECLARATIONS = 9;

// What a check of the ports says, and the functions that the pins have after it.
struct PortCase {
    const char *name;
    Description text;
    ExpectedMessages messages;
    std::string functions;
    unsigned flags = 0;
};

inline void expect_case(const PortCase &row, int32_t (*check)(Bsdl *))
{
    SCOPED_TRACE(row.name);
    Reading reading(row.text, {.flags = row.flags});
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    ASSERT_EQ(build(reading), 0);
    EXPECT_EQ(reading.check(check), result_of(row.messages));
    expect_messages(errors_and_warnings(reading.messages()), row.messages);
    EXPECT_EQ(functions(reading), row.functions);
}

} // namespace pins
