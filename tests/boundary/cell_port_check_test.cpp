#include "cells.h"

#include "ports/ports.h"

using namespace support;

namespace
{

Expected unresolved(int number, const std::string &port, const std::string &ending)
{
    return {ERROR,
            "<cell number> " + std::to_string(number) + " with <port id> '" + port + "' " + ending,
            2};
}

Expected out_of_range(int number, const std::string &port, const std::string &must_be)
{
    return {ERROR,
            "<subscript> of <cell number> " + std::to_string(number) + " with <port id> '" + port +
                "' " + must_be + " within range [2-3]",
            2};
}

Expected no_cell(Level level, const std::string &port, const std::string &type)
{
    return {level,
            "<port name> '" + port + "' with <pin type> " + type +
                " does not exist in <boundary register statement>",
            level == ERROR ? 2 : 3};
}

const char IS_UNDEFINED[] = "is not defined in <logical pin map>";
const char IS_VECTOR[] = "is defined as BIT_VECTOR in <logical pin map>";
const char IS_BIT[] = "is defined as single BIT in <logical pin map>";
const char IS_LINKAGE[] = "cannot have <pin type> LINKAGE in <logical pin map>";
const char OUT_FUNCTIONS[] = "must have function OUTPUT2 or OUTPUT3";
const char INOUT_FUNCTIONS[] = "must have function BIDIR, OUTPUT2, OUTPUT3 INPUT or OBSERVE_ONLY";
const char BUFFER_FUNCTIONS[] = "must have function OUTPUT2";
const char NO_DISABLE[] = "cannot contain a <disable spec>";
const char CONTROL[] = "0 (BC_0, *, control, 0)";

// What the searches for other cells find is compared with walks over random tables elsewhere.
const CellCase CASES[] = {
    {.name = "unknown ports leave the type rules out",
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, NO, output2, X)", "2 (BC_0, NO(2), input, X)"},
     .messages = {unresolved(1, "NO", IS_UNDEFINED), unresolved(2, "NO(2)", IS_UNDEFINED)},
     .ports = {"A:in"}},
    {.name = "the vector as a whole and a bit with a subscript, then their types",
     .rows = {"0 (BC_0, d, output2, X)", "1 (BC_0, D(1), input, X)", "2 (BC_0, D(0), input, X)",
              "3 (BC_0, A(3), output2, X)", "4 (BC_0, A, input, X)"},
     .messages = {unresolved(0, "d", IS_VECTOR), type_rule("IN", 0, "d", IN_FUNCTIONS),
                  unresolved(3, "A(3)", IS_BIT), type_rule("IN", 3, "A(3)", IN_FUNCTIONS)},
     .ports = {"A:in", "D:in(0 to 1)"}},
    {.name = "subscripts outside of rising and falling ranges",
     .rows = {"0 (BC_0, U(1), input, X)", "1 (BC_0, U(4), input, X)", "2 (BC_0, D(1), input, X)",
              "3 (BC_0, D(4), input, X)", "4 (BC_0, U(2), input, X)", "5 (BC_0, U(3), input, X)",
              "6 (BC_0, D(2), input, X)", "7 (BC_0, D(3), input, X)"},
     .messages = {out_of_range(0, "U(1)", "Must be"), out_of_range(1, "U(4)", "Must be"),
                  out_of_range(2, "D(1)", "must Be"), out_of_range(3, "D(4)", "must Be")},
     .ports = {"U:in(2 to 3)", "D:in(3 downto 2)"}},
    {.name = "functions that the port's type takes",
     .rows = {CONTROL, "1 (BC_4, A, clock, X)", "2 (BC_0, C, observe_only, X)",
              "3 (BC_0, Y, output3, X, 0, 0, Z)", "4 (BC_0, B, observe_only, X)",
              "5 (BC_0, B, input, X)", "6 (BC_0, Q, output2, X)"}},
    {.name = "other functions",
     .rows = {CONTROL, "1 (BC_0, A, output2, X)", "2 (BC_0, Y, input, X)", "3 (BC_4, B, clock, X)",
              "4 (BC_0, Q, output3, X, 0, 0, Z)", "5 (BC_0, G, input, X)"},
     .messages = {type_rule("IN", 1, "A", IN_FUNCTIONS), type_rule("OUT", 2, "Y", OUT_FUNCTIONS),
                  type_rule("INOUT", 3, "B", INOUT_FUNCTIONS),
                  type_rule("BUFFER", 4, "Q", BUFFER_FUNCTIONS), unresolved(5, "G", IS_LINKAGE)},
     .ports = {"A:in", "Y:out", "B:inout", "Q:buffer", "G:linkage"}},
    {.name = "other functions on bits of vectors",
     .rows = {"0 (BC_0, A(0), output2, X)", "1 (BC_0, Y(0), input, X)", "2 (BC_4, B(0), clock, X)",
              "3 (BC_0, Q(0), input, X)", "4 (BC_0, L(0), input, X)"},
     .messages = {type_rule("IN", 0, "A(0)", IN_FUNCTIONS),
                  type_rule("OUT", 1, "Y(0)", OUT_FUNCTIONS),
                  type_rule("INOUT", 2, "B(0)", INOUT_FUNCTIONS),
                  type_rule("BUFFER", 3, "Q(0)", BUFFER_FUNCTIONS),
                  unresolved(4, "L(0)", IS_LINKAGE)},
     .ports = {"A:in(0 to 0)", "Y:out(0 to 0)", "B:inout(0 to 0)", "Q:buffer(0 to 0)",
               "L:linkage(0 to 0)"}},
    {.name = "drivers of buffer ports that can be disabled",
     .rows = {"0 (BC_0, Q, output2, X, 0, 0, WEAK0)", "1 (BC_0, V(1), output2, X, 1, 1, WEAK1)"},
     .messages = {type_rule("BUFFER", 0, "Q", NO_DISABLE),
                  type_rule("BUFFER", 1, "V(1)", NO_DISABLE)},
     .ports = {"Q:buffer", "V:buffer(1 to 1)"}},
    {.name = "two drivers, reported at the earlier one and for buffer ports from both",
     .rows = {CONTROL, "1 (BC_0, Y, output3, X, 0, 0, Z)", "2 (BC_0, V(1), output2, X)",
              "3 (BC_0, y, output3, X, 0, 0, Z)", "4 (BC_0, v(1), output2, X)",
              "5 (BC_7, B, bidir, X, 5, 0, WEAK0)", "6 (BC_0, B, output2, X)",
              "7 (BC_0, B, output2, X)", "8 (BC_0, B, input, X)", "9 (BC_0, Q, output2, X)",
              "10 (BC_0, Q, output2, X)"},
     .messages = {two_drivers(1, "OUTPUT3", 3, "OUTPUT3", "Y", "an OUTPUT"),
                  two_drivers(2, "OUTPUT2", 4, "OUTPUT2", "V(1)", "an OUTPUT"),
                  two_drivers(5, "BIDIR", 6, "OUTPUT2", "B", "a BIDIR/OUTPUT2/OUTPUT3"),
                  two_drivers(6, "OUTPUT2", 7, "OUTPUT2", "B", "an OUTPUT2/OUTPUT3"),
                  two_drivers(9, "OUTPUT2", 10, "OUTPUT2", "Q", "an OUTPUT2"),
                  two_drivers(10, "OUTPUT2", 9, "OUTPUT2", "Q", "an OUTPUT2")},
     .ports = {"Y:out", "V:out(1 to 1)", "B:inout", "Q:buffer"}},
    {.name = "observed ports without a driver, buffers by name alone",
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, V(0), observe_only, X)",
              "2 (BC_0, Q, observe_only, X)", "3 (BC_0, R(0), observe_only, X)",
              "4 (BC_0, A, input, X)"},
     .messages = {no_driver("Y", "OUTPUT"), no_driver("V(0)", "OUTPUT"), no_driver("Q", "OUTPUT2"),
                  no_driver("R", "OUTPUT2")},
     .ports = {"Y:out", "V:out(0 to 0)", "Q:buffer", "R:buffer(0 to 0)", "A:in"}},
    {.name = "the driver of the representative",
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)",
              "3 (BC_0, V(0), output2, X)", "4 (BC_0, V(1), observe_only, X)",
              "5 (BC_0, R, observe_only, X)", "6 (BC_0, A, input, X)"},
     .messages = {backed_by_pair(2, "n"), backed_by_pair(4, "V(1)"), backed_by_pair(5, "R")},
     .ports = {"Y:out", "N:out", "V:out(0 to 1)", "Q:buffer", "R:buffer", "A:in"},
     .pairs = "(Y, n), (V(0), V(1)), (Q, R)",
     .strict = false},
    {.name = "pairs do not count when strict",
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, W, observe_only, X)"},
     .messages = {no_driver("W", "OUTPUT")},
     .pairs = "(Y, W)",
     .lenient = false},
    {.name = "the driver of the representative under IEEE 1149.6",
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, W, observe_only, X)"},
     .pairs = "(Y, W)",
     .aio = true},
    {.name = "outputs without an input beside them, a merged one included",
     .rows = {"0 (BC_0, B, output2, X)", "1 (BC_0, V(1), output2, X)", "1 (BC_0, V(1), input, X)"},
     .messages = {no_input(WARNING, 0, "OUTPUT2", "B"),
                  no_input(WARNING, 1, "OUTPUT2", "V(1)"),
                  {INFORMATION, "\t\tCell_number 1 is a merged cell", 4}},
     .ports = {"B:inout", "V:inout(1 to 1)"},
     .length = 2},
    {.name = "pins without a cell, after the control rules",
     .rows = {"0 (BC_0, Y, output3, X, 0, 0, Z)", "1 (BC_0, D(0), input, X)"},
     .messages = {not_control(0, "OUTPUT3", 0), no_cell(WARNING, "A", "IN"),
                  no_cell(WARNING, "W", "OUT"), no_cell(WARNING, "B", "INOUT"),
                  no_cell(WARNING, "Q", "BUFFER"), no_cell(WARNING, "D(1)", "IN")},
     .ports = {"A:in", "Y:out", "W:out", "B:inout", "Q:buffer", "D:in(0 to 1)", "G:linkage"}},
    {.name = "a cell of bit 0 serves the scalar and one of the vector its bit 0",
     .rows = {"0 (BC_0, A(0), input, X)", "1 (BC_0, D, input, X)"},
     .messages = {unresolved(0, "A(0)", IS_BIT), unresolved(1, "D", IS_VECTOR),
                  no_cell(WARNING, "D(1)", "IN")},
     .ports = {"A:in", "D:in(0 to 1)"}},
};

} // namespace

TEST(CellPortCheck, Rules)
{
    for (const CellCase &row : CASES)
        expect_findings(row);
}

TEST(CellPortPins, SecondRunFailsAtPinsThatAreMarked)
{
    Reading reading(with_cells({"A:in", "Y:out"}, {"0 (BC_0, Y, output2, X)"}));
    check_up_to_cells(reading);
    EXPECT_EQ(reading.check(bsdl_check_bsr), 0);
    EXPECT_EQ(reading.check(bsdl_check_bsr), 100);
    expect_messages(errors_and_warnings(reading.messages()), {no_cell(ERROR, "A", "IN")});
}

TEST(CellPortPins, FirstCellTellsWhetherThePinCanBeDisabled)
{
    Reading reading(with_cells({"Y:out", "N:out", "B:inout"},
                               {CONTROL, "1 (BC_0, Y, output3, X, 0, 0, Z)",
                                "2 (BC_0, N, observe_only, X)", "3 (BC_0, N, output3, X, 0, 0, Z)",
                                "4 (BC_0, B, output3, X, 0, 0, Z)", "5 (BC_0, B, input, X)"}));
    check_up_to_cells(reading);
    reading.check(bsdl_check_bsr);
    std::vector<int32_t> disabled;
    for (const PinEntry *pin : all_of(reading.handle(), bsdlGetFirstPin, bsdlGetNextPin))
        disabled.push_back(pin->has_disable);
    EXPECT_EQ(disabled, (std::vector<int32_t>{0, 0, 0, 0, 1, 0, 1}));
}
