#include "cells.h"

#include "frame/lookup.h"
#include "ports/ports.h"

#include <algorithm>

using namespace support;

namespace
{

// Stands for the statements of IEEE 1149.6; the rules only ask whether there are any.
int32_t aio_statements;

struct Case {
    const char *name;
    std::vector<std::string> ports;
    std::vector<std::string> rows;
    ExpectedMessages messages = {}; // all errors and warnings of the check
    int32_t result = 100;
    unsigned flags = 0;
    std::string pairs = {};
    bool aio = false;
    long length = 0; // of the register, when it is not the number of rows
};

const char *const CONTROL = "0 (BC_0, *, control, 0)";

Expected error(const std::string &text) { return {ERROR, text, 2}; }

std::string cell(int number) { return "<cell number> " + std::to_string(number); }

Expected unresolved(int number, const char *port, const char *ending)
{
    return error(cell(number) + " with <port id> '" + port + "' " + ending);
}

Expected out_of_range(int number, const char *port, const char *must_be, const char *range)
{
    return error("<subscript> of " + cell(number) + " with <port id> '" + port + "' " + must_be +
                 " within range " + range);
}

// What the type of the port asks of its cell.
Expected type_rule(const char *type, int number, const char *port, const char *rule)
{
    return error(std::string("<cell type> ") + type + " in <logical pin map> means that " +
                 cell(number) + " with <port id> " + port + " " + rule);
}

Expected no_cell(Level level, const char *port, const char *type)
{
    return {level,
            std::string("<port name> '") + port + "' with <pin type> " + type +
                " does not exist in <boundary register statement>",
            level == ERROR ? 2 : 3};
}

const char IS_UNDEFINED[] = "is not defined in <logical pin map>";
const char IS_VECTOR[] = "is defined as BIT_VECTOR in <logical pin map>";
const char IS_BIT[] = "is defined as single BIT in <logical pin map>";
const char IS_LINKAGE[] = "cannot have <pin type> LINKAGE in <logical pin map>";
const char IN_FUNCTIONS[] = "must have function INPUT, CLOCK or OBSERVE_ONLY";
const char OUT_FUNCTIONS[] = "must have function OUTPUT2 or OUTPUT3";
const char INOUT_FUNCTIONS[] = "must have function BIDIR, OUTPUT2, OUTPUT3 INPUT or OBSERVE_ONLY";
const char BUFFER_FUNCTIONS[] = "must have function OUTPUT2";
const char NO_DISABLE[] = "cannot contain a <disable spec>";

const Case CASES[] = {
    // The port.
    {.name = "unknown ports leave the type rules out",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, NO, output2, X)", "2 (BC_0, NO(2), input, X)"},
     .messages = {unresolved(1, "NO", IS_UNDEFINED), unresolved(2, "NO(2)", IS_UNDEFINED)}},
    {.name = "the vector as a whole, then its type",
     .ports = {"D:in(0 to 1)"},
     .rows = {"0 (BC_0, d, output2, X)", "1 (BC_0, D(1), input, X)", "2 (BC_0, D(0), input, X)"},
     .messages = {unresolved(0, "d", IS_VECTOR), type_rule("IN", 0, "d", IN_FUNCTIONS)}},
    {.name = "a bit with a subscript, then its type",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A(3), output2, X)", "1 (BC_0, A, input, X)"},
     .messages = {unresolved(0, "A(3)", IS_BIT), type_rule("IN", 0, "A(3)", IN_FUNCTIONS)}},
    {.name = "subscripts outside of rising and falling ranges",
     .ports = {"U:in(2 to 3)", "D:in(3 downto 2)", "S:in(5 to 5)"},
     .rows = {"0 (BC_0, U(1), input, X)", "1 (BC_0, U(4), input, X)", "2 (BC_0, D(1), input, X)",
              "3 (BC_0, D(4), input, X)", "4 (BC_0, U(2), input, X)", "5 (BC_0, U(3), input, X)",
              "6 (BC_0, D(2), input, X)", "7 (BC_0, D(3), input, X)", "8 (BC_0, S(5), input, X)",
              "9 (BC_0, S(6), input, X)"},
     .messages = {out_of_range(0, "U(1)", "Must be", "[2-3]"),
                  out_of_range(1, "U(4)", "Must be", "[2-3]"),
                  out_of_range(2, "D(1)", "must Be", "[2-3]"),
                  out_of_range(3, "D(4)", "must Be", "[2-3]"),
                  out_of_range(9, "S(6)", "must Be", "[5-5]")}},
    {.name = "linkage ports take no cell",
     .ports = {"G:linkage", "P:linkage(0 to 1)"},
     .rows = {"0 (BC_0, G, input, X)", "1 (BC_0, P(1), output2, X)"},
     .messages = {unresolved(0, "G", IS_LINKAGE), unresolved(1, "P(1)", IS_LINKAGE)}},

    // IN.
    {.name = "in ports",
     .ports = {"A:in", "B:in", "C:in", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_4, B, clock, X)", "2 (BC_0, C, observe_only, X)",
              "3 (BC_0, D(0), input, X)", "4 (BC_0, D(1), output2, X)"},
     .messages = {type_rule("IN", 4, "D(1)", IN_FUNCTIONS)}},

    // OUT.
    {.name = "other functions on out ports",
     .ports = {"Y:out", "V:out(0 to 1)"},
     .rows = {"0 (BC_0, Y, input, X)", "1 (BC_0, V(0), input, X)", "2 (BC_0, V(1), output2, X)"},
     .messages = {type_rule("OUT", 0, "Y", OUT_FUNCTIONS),
                  type_rule("OUT", 1, "V(0)", OUT_FUNCTIONS)}},
    {.name = "two drivers of an out port are reported at the earlier one",
     .ports = {"Y:out", "V:out(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, Y, output3, X, 0, 0, Z)", "2 (BC_0, V(1), output2, X)",
              "3 (BC_0, V(0), output2, X)", "4 (BC_0, y, observe_only, X)",
              "5 (BC_0, y, output3, X, 0, 0, Z)", "6 (BC_0, v(1), output2, X)"},
     .messages = {two_drivers(1, "OUTPUT3", 5, "OUTPUT3", "Y", "an OUTPUT"),
                  two_drivers(2, "OUTPUT2", 6, "OUTPUT2", "V(1)", "an OUTPUT")}},
    {.name = "an observed out port without a driver",
     .ports = {"Y:out", "V:out(0 to 1)", "A:in"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, V(0), observe_only, X)",
              "2 (BC_0, V(1), output2, X)", "3 (BC_0, A, input, X)"},
     .messages = {no_driver("Y", "OUTPUT"), no_driver("V(0)", "OUTPUT")}},
    {.name = "the last row backs an observer ahead of it",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, Y, observe_only, X)"},
     .messages = {no_driver("Y", "OUTPUT")}},
    {.name = "a driver behind another observer",
     .ports = {"Y:out", "A:in"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, Y, observe_only, X)",
              "2 (BC_0, Y, output2, X)", "3 (BC_0, A, input, X)"},
     .result = 0},
    {.name = "the driver of the representative",
     .ports = {"A:in", "Y:out", "N:out", "V:out(0 to 1)"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)",
              "3 (BC_0, V(0), output2, X)", "4 (BC_0, V(1), observe_only, X)"},
     .messages = {backed_by_pair(2, "n"), backed_by_pair(4, "V(1)")},
     .result = 0,
     .pairs = "(Y, n), (V(0), V(1))"},
    {.name = "the driver of the representative under IEEE 1149.6",
     .ports = {"A:in", "Y:out", "N:out"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)"},
     .result = 0,
     .flags = STRICT,
     .pairs = "(Y, N)",
     .aio = true},
    {.name = "pairs do not count when strict",
     .ports = {"A:in", "Y:out", "N:out"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)"},
     .messages = {no_driver("N", "OUTPUT")},
     .flags = STRICT,
     .pairs = "(Y, N)"},
    {.name = "an out representative at the head of the table is not found",
     .ports = {"Y:out", "N:out", "A:in"},
     .rows = {"0 (BC_0, Y, output2, X)", "1 (BC_0, N, observe_only, X)", "2 (BC_0, A, input, X)"},
     .messages = {no_driver("N", "OUTPUT")},
     .pairs = "(Y, N)"},

    // INOUT.
    {.name = "other functions on inout ports",
     .ports = {"B:inout", "V:inout(0 to 1)"},
     .rows = {"0 (BC_4, B, clock, X)", "1 (BC_0, V(0), input, X)", "2 (BC_4, V(1), clock, X)"},
     .messages = {type_rule("INOUT", 0, "B", INOUT_FUNCTIONS),
                  type_rule("INOUT", 2, "V(1)", INOUT_FUNCTIONS)}},
    {.name = "outputs without an input beside them, a merged one included",
     .ports = {"B:inout", "V:inout(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, B, output3, X, 0, 0, Z)", "2 (BC_0, V(0), output2, X)",
              "3 (BC_0, V(1), output2, X)", "3 (BC_0, V(1), input, X)"},
     .messages = {no_input(WARNING, 1, "OUTPUT3", "B"), no_input(WARNING, 2, "OUTPUT2", "V(0)"),
                  no_input(WARNING, 3, "OUTPUT2", "V(1)")},
     .result = 0,
     .length = 4},
    {.name = "an output without an input beside it, strict",
     .ports = {"B:inout"},
     .rows = {"0 (BC_0, B, output2, X)"},
     .messages = {no_input(ERROR, 0, "OUTPUT2", "B")},
     .flags = STRICT},
    {.name = "a bidir cell rivals a later output, an output no later bidir cell",
     .ports = {"B:inout", "C:inout"},
     .rows = {"0 (BC_7, B, bidir, X, 0, 0, WEAK0)", "1 (BC_0, B, output2, X)",
              "2 (BC_0, C, output2, X)", "3 (BC_7, C, bidir, X, 3, 0, WEAK0)",
              "4 (BC_0, C, observe_only, X)", "5 (BC_0, B, input, X)"},
     .messages = {two_drivers(0, "BIDIR", 1, "OUTPUT2", "B", "a BIDIR/OUTPUT2/OUTPUT3")}},
    {.name = "two outputs and no input",
     .ports = {"V:inout(0 to 1)"},
     .rows = {"0 (BC_0, V(0), output2, X)", "1 (BC_0, V(0), output2, X)",
              "2 (BC_0, V(1), input, X)"},
     .messages = {two_drivers(0, "OUTPUT2", 1, "OUTPUT2", "V(0)", "an OUTPUT2/OUTPUT3"),
                  no_input(WARNING, 0, "OUTPUT2", "V(0)"),
                  no_input(WARNING, 1, "OUTPUT2", "V(0)")}},

    // BUFFER.
    {.name = "other functions on buffer ports",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, Q, output3, X, 0, 0, Z)", "2 (BC_0, V(0), input, X)",
              "3 (BC_0, V(1), output2, X)"},
     .messages = {type_rule("BUFFER", 1, "Q", BUFFER_FUNCTIONS),
                  type_rule("BUFFER", 2, "V(0)", BUFFER_FUNCTIONS)}},
    {.name = "drivers of buffer ports that can be disabled",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {"0 (BC_0, Q, output2, X, 0, 0, WEAK0)", "1 (BC_0, V(1), output2, X, 1, 1, WEAK1)",
              "2 (BC_0, V(0), output2, X)"},
     .messages = {type_rule("BUFFER", 0, "Q", NO_DISABLE),
                  type_rule("BUFFER", 1, "V(1)", NO_DISABLE)}},
    {.name = "two drivers of a buffer port are reported from both",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, V(0), output2, X)", "2 (BC_0, Q, output2, X)",
              "3 (BC_0, V(1), output2, X)", "4 (BC_0, V(0), output2, X)"},
     .messages = {two_drivers(0, "OUTPUT2", 2, "OUTPUT2", "Q", "an OUTPUT2"),
                  two_drivers(1, "OUTPUT2", 4, "OUTPUT2", "V(0)", "an OUTPUT2"),
                  two_drivers(2, "OUTPUT2", 0, "OUTPUT2", "Q", "an OUTPUT2"),
                  two_drivers(4, "OUTPUT2", 1, "OUTPUT2", "V(0)", "an OUTPUT2")}},
    {.name = "the first other cell alone is looked at",
     .ports = {"Q:buffer"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, Q, observe_only, X)", "2 (BC_0, Q, output2, X)"},
     .messages = {two_drivers(2, "OUTPUT2", 0, "OUTPUT2", "Q", "an OUTPUT2")}},
    {.name = "an observed buffer port without a driver, by name alone",
     .ports = {"Q:buffer", "V:buffer(0 to 1)", "A:in"},
     .rows = {"0 (BC_0, Q, observe_only, X)", "1 (BC_0, V(0), observe_only, X)",
              "2 (BC_0, V(1), output2, X)", "3 (BC_0, A, input, X)"},
     .messages = {no_driver("Q", "OUTPUT2"), no_driver("V", "OUTPUT2")}},
    {.name = "a buffer representative at the head of the table",
     .ports = {"Q:buffer", "R:buffer", "A:in"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, R, observe_only, X)", "2 (BC_0, A, input, X)"},
     .messages = {backed_by_pair(1, "R")},
     .result = 0,
     .pairs = "(Q, R)"},
    {.name = "the last pair judges under IEEE 1149.6",
     .ports = {"A:in", "Q:buffer", "R:buffer", "S:buffer"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Q, output2, X)", "2 (BC_0, R, observe_only, X)"},
     .messages = {no_driver("R", "OUTPUT2")},
     .pairs = "(Q, R), (S, R)",
     .aio = true},

    // The pins.
    {.name = "pins without a cell, after the control rules",
     .ports = {"A:in", "Y:out", "B:inout", "Q:buffer", "D:in(0 to 1)", "G:linkage"},
     .rows = {"0 (BC_0, Y, output3, X, 0, 0, Z)", "1 (BC_0, D(0), input, X)"},
     .messages = {not_control(0, "OUTPUT3", 0), no_cell(WARNING, "A", "IN"),
                  no_cell(WARNING, "B", "INOUT"), no_cell(WARNING, "Q", "BUFFER"),
                  no_cell(WARNING, "D(1)", "IN")},
     .result = 0},
    {.name = "pins without a cell, strict",
     .ports = {"Y:out", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, D(0), input, X)"},
     .messages = {no_cell(ERROR, "Y", "OUT"), no_cell(ERROR, "D(1)", "IN")},
     .flags = STRICT},
    {.name = "a cell of bit 0 serves the scalar and one of the vector its bit 0",
     .ports = {"A:in", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, A(0), input, X)", "1 (BC_0, D, input, X)"},
     .messages = {unresolved(0, "A(0)", IS_BIT), unresolved(1, "D", IS_VECTOR),
                  no_cell(WARNING, "D(1)", "IN")}},
};

} // namespace

TEST(CellPortCheck, Rules)
{
    for (const Case &row : CASES) {
        SCOPED_TRACE(row.name);
        long length = row.length ? row.length : static_cast<long>(row.rows.size());
        Description description = with_cells(Issue::BSDL_2001, row.ports, row.rows, length);
        if (!row.pairs.empty())
            description.with(PORT_GROUPING, attribute("PORT_GROUPING",
                                                      "Differential_Voltage (" + row.pairs + ")"));
        Reading reading(description, {.flags = row.flags});
        ASSERT_NE(reading.handle(), nullptr);
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        check_up_to_cells(reading);
        if (row.aio)
            reading.handle()->data->aio = reinterpret_cast<AioData *>(&aio_statements);
        EXPECT_EQ(reading.check(bsdl_check_bsr), row.result);
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        reading.handle()->data->aio = nullptr;
    }
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

TEST(CellPortPins, MemoryRunsOut)
{
    int32_t result = 100;
    for (long requests = 0; result && requests < 100; requests++) {
        Reading reading(
            with_cells({"Y:out", "B:inout"}, {CONTROL, "1 (BC_0, Y, output3, X, 0, 0, Z)",
                                              "2 (BC_0, B, output2, X)", "3 (BC_0, B, input, X)"}));
        check_up_to_cells(reading);
        lookups_drop(reading);
        memory_fail_after(requests);
        result = reading.check(bsdl_check_bsr);
        memory_fail_after(-1);
        EXPECT_TRUE(result == 0 || result == 100) << requests;
    }
    EXPECT_EQ(result, 0);
}
