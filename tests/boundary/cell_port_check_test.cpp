#include "cells.h"

#include "frame/lookup.h"
#include "ports/ports.h"

#include <algorithm>
#include <ostream>

using namespace support;

namespace
{

// Stands for the statements of IEEE 1149.6; the rules only ask whether there are any.
int32_t aio_statements;

struct Case {
    const char *name;
    std::vector<std::string> ports;
    std::vector<std::string> rows;
    ExpectedMessages messages; // all errors and warnings of the check
    int32_t result = 100;
    unsigned flags = 0;
    std::string pairs = {};
    bool aio = false;
    long length = 0; // of the register, when it is not the number of rows
};

std::ostream &operator<<(std::ostream &out, const Case &row) { return out << row.name; }

const char *const CONTROL = "0 (BC_0, *, control, 0)";

const Case RESOLVING[] = {
    {.name = "unknown ports leave the type rules out",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, NO, output2, X)", "2 (BC_0, NO(2), input, X)"},
     .messages = {{0, "<cell number> 1 with <port id> 'NO' is not defined in <logical pin map>", 2},
                  {0, "<cell number> 2 with <port id> 'NO(2)' is not defined in <logical pin map>",
                   2}}},
    {.name = "the vector as a whole, then its type",
     .ports = {"D:in(0 to 1)"},
     .rows = {"0 (BC_0, d, output2, X)", "1 (BC_0, D(1), input, X)", "2 (BC_0, D(0), input, X)"},
     .messages = {{0, "<cell number> 0 with <port id> 'd' is defined as BIT_VECTOR in <logical pin "
                      "map>"},
                  {0, "<cell type> IN in <logical pin map> means that <cell number> 0 with <port "
                      "id> d must have function INPUT, CLOCK or OBSERVE_ONLY"}}},
    {.name = "a bit with a subscript, then its type",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A(3), output2, X)", "1 (BC_0, A, input, X)"},
     .messages = {{0, "<cell number> 0 with <port id> 'A(3)' is defined as single BIT in <logical "
                      "pin map>"},
                  {0, "<cell type> IN in <logical pin map> means that <cell number> 0 with <port "
                      "id> A(3) must have function INPUT, CLOCK or OBSERVE_ONLY"}}},
    {.name = "subscripts outside of rising and falling ranges",
     .ports = {"U:in(2 to 3)", "D:in(3 downto 2)", "S:in(5 to 5)"},
     .rows = {"0 (BC_0, U(1), input, X)", "1 (BC_0, U(4), input, X)", "2 (BC_0, D(1), input, X)",
              "3 (BC_0, D(4), input, X)", "4 (BC_0, U(2), input, X)", "5 (BC_0, U(3), input, X)",
              "6 (BC_0, D(2), input, X)", "7 (BC_0, D(3), input, X)", "8 (BC_0, S(5), input, X)",
              "9 (BC_0, S(6), input, X)"},
     .messages = {{0, "<subscript> of <cell number> 0 with <port id> 'U(1)' Must be within range "
                      "[2-3]"},
                  {0, "<subscript> of <cell number> 1 with <port id> 'U(4)' Must be within range "
                      "[2-3]"},
                  {0, "<subscript> of <cell number> 2 with <port id> 'D(1)' must Be within range "
                      "[2-3]"},
                  {0, "<subscript> of <cell number> 3 with <port id> 'D(4)' must Be within range "
                      "[2-3]"},
                  {0, "<subscript> of <cell number> 9 with <port id> 'S(6)' must Be within range "
                      "[5-5]"}}},
    {.name = "linkage ports take no cell",
     .ports = {"G:linkage", "P:linkage(0 to 1)"},
     .rows = {"0 (BC_0, G, input, X)", "1 (BC_0, P(1), output2, X)"},
     .messages = {{0, "<cell number> 0 with <port id> 'G' cannot have <pin type> LINKAGE in "
                      "<logical pin map>"},
                  {0, "<cell number> 1 with <port id> 'P(1)' cannot have <pin type> LINKAGE in "
                      "<logical pin map>"}}},
    {.name = "in ports",
     .ports = {"A:in", "B:in", "C:in", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_4, B, clock, X)", "2 (BC_0, C, observe_only, X)",
              "3 (BC_0, D(0), input, X)", "4 (BC_0, D(1), output2, X)"},
     .messages = {{0, "<cell type> IN in <logical pin map> means that <cell number> 4 with <port "
                      "id> D(1) must have function INPUT, CLOCK or OBSERVE_ONLY"}}},
};

const Case OUT_PORTS[] = {
    {.name = "other functions",
     .ports = {"Y:out", "V:out(0 to 1)"},
     .rows = {"0 (BC_0, Y, input, X)", "1 (BC_0, V(0), input, X)", "2 (BC_0, V(1), output2, X)"},
     .messages = {{0, "<cell type> OUT in <logical pin map> means that <cell number> 0 with <port "
                      "id> Y must have function OUTPUT2 or OUTPUT3"},
                  {0, "<cell type> OUT in <logical pin map> means that <cell number> 1 with <port "
                      "id> V(0) must have function OUTPUT2 or OUTPUT3"}}},
    {.name = "two drivers are reported at the earlier one",
     .ports = {"Y:out", "V:out(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, Y, output3, X, 0, 0, Z)", "2 (BC_0, V(1), output2, X)",
              "3 (BC_0, V(0), output2, X)", "4 (BC_0, y, observe_only, X)",
              "5 (BC_0, y, output3, X, 0, 0, Z)", "6 (BC_0, v(1), output2, X)"},
     .messages = {{0, "<cell number> 1 with <function> OUTPUT3 and <cell number> 5 with <function> "
                      "OUTPUT3, both <port id> Y cannot both have an OUTPUT function"},
                  {0, "<cell number> 2 with <function> OUTPUT2 and <cell number> 6 with <function> "
                      "OUTPUT2, both <port id> V(1) cannot both have an OUTPUT function"}}},
    {.name = "an observed port without a driver",
     .ports = {"Y:out", "V:out(0 to 1)", "A:in"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, V(0), observe_only, X)",
              "2 (BC_0, V(1), output2, X)", "3 (BC_0, A, input, X)"},
     .messages = {{0, "<port id> Y must have a cell with an OUTPUT function"},
                  {0, "<port id> V(0) must have a cell with an OUTPUT function"}}},
    {.name = "the last row backs an observer ahead of it",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, Y, observe_only, X)"},
     .messages = {{0, "<port id> Y must have a cell with an OUTPUT function"}}},
    {.name = "a driver behind another observer",
     .ports = {"Y:out", "A:in"},
     .rows = {"0 (BC_0, Y, observe_only, X)", "1 (BC_0, Y, observe_only, X)",
              "2 (BC_0, Y, output2, X)", "3 (BC_0, A, input, X)"},
     .messages = {},
     .result = 0},
    {.name = "the driver of the representative",
     .ports = {"A:in", "Y:out", "N:out", "V:out(0 to 1)"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)",
              "3 (BC_0, V(0), output2, X)", "4 (BC_0, V(1), observe_only, X)"},
     .messages = {{1, "'observe only' cell 2 connected to associated output port 'n'", 2},
                  {1, "'observe only' cell 4 connected to associated output port 'V(1)'", 2}},
     .result = 0,
     .pairs = "(Y, n), (V(0), V(1))"},
    {.name = "the driver of the representative under IEEE 1149 6",
     .ports = {"A:in", "Y:out", "N:out"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)"},
     .messages = {},
     .result = 0,
     .flags = STRICT,
     .pairs = "(Y, N)",
     .aio = true},
    {.name = "pairs do not count when strict",
     .ports = {"A:in", "Y:out", "N:out"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Y, output2, X)", "2 (BC_0, N, observe_only, X)"},
     .messages = {{0, "<port id> N must have a cell with an OUTPUT function"}},
     .flags = STRICT,
     .pairs = "(Y, N)"},
    {.name = "a representative at the head of the table is not found",
     .ports = {"Y:out", "N:out", "A:in"},
     .rows = {"0 (BC_0, Y, output2, X)", "1 (BC_0, N, observe_only, X)", "2 (BC_0, A, input, X)"},
     .messages = {{0, "<port id> N must have a cell with an OUTPUT function"}},
     .pairs = "(Y, N)"},
};

const Case INOUT_PORTS[] = {
    {.name = "other functions",
     .ports = {"B:inout", "V:inout(0 to 1)"},
     .rows = {"0 (BC_4, B, clock, X)", "1 (BC_0, V(0), input, X)", "2 (BC_4, V(1), clock, X)"},
     .messages = {{0, "<cell type> INOUT in <logical pin map> means that <cell number> 0 with "
                      "<port id> B must have function BIDIR, OUTPUT2, OUTPUT3 INPUT or "
                      "OBSERVE_ONLY"},
                  {0, "<cell type> INOUT in <logical pin map> means that <cell number> 2 with "
                      "<port id> V(1) must have function BIDIR, OUTPUT2, OUTPUT3 INPUT or "
                      "OBSERVE_ONLY"}}},
    {.name = "outputs without an input beside them, a merged one included",
     .ports = {"B:inout", "V:inout(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, B, output3, X, 0, 0, Z)", "2 (BC_0, V(0), output2, X)",
              "3 (BC_0, V(1), output2, X)", "3 (BC_0, V(1), input, X)"},
     .messages = {{1,
                   "<cell number> 1 <function> OUTPUT3: at least one other <cell entry> with "
                   "<port id> B must have function INPUT or OBSERVE_ONLY but a different <cell "
                   "number>",
                   2},
                  {1,
                   "<cell number> 2 <function> OUTPUT2: at least one other <cell entry> with "
                   "<port id> V(0) must have function INPUT or OBSERVE_ONLY but a different "
                   "<cell number>",
                   2},
                  {1,
                   "<cell number> 3 <function> OUTPUT2: at least one other <cell entry> with "
                   "<port id> V(1) must have function INPUT or OBSERVE_ONLY but a different "
                   "<cell number>",
                   2}},
     .result = 0,
     .length = 4},
    {.name = "an output without an input beside it, strict",
     .ports = {"B:inout"},
     .rows = {"0 (BC_0, B, output2, X)"},
     .messages = {{0,
                   "<cell number> 0 <function> OUTPUT2: at least one other <cell entry> with "
                   "<port id> B must have function INPUT or OBSERVE_ONLY but a different <cell "
                   "number>",
                   2}},
     .flags = STRICT},
    {.name = "a bidir cell rivals a later output, an output no later bidir cell",
     .ports = {"B:inout", "C:inout"},
     .rows = {"0 (BC_7, B, bidir, X, 0, 0, WEAK0)", "1 (BC_0, B, output2, X)",
              "2 (BC_0, C, output2, X)", "3 (BC_7, C, bidir, X, 3, 0, WEAK0)",
              "4 (BC_0, C, observe_only, X)", "5 (BC_0, B, input, X)"},
     .messages = {{0, "<cell number> 0 with <function> BIDIR and <cell number> 1 with <function> "
                      "OUTPUT2, both <port id> B cannot both have a BIDIR/OUTPUT2/OUTPUT3 "
                      "function"}}},
    {.name = "two outputs and no input",
     .ports = {"V:inout(0 to 1)"},
     .rows = {"0 (BC_0, V(0), output2, X)", "1 (BC_0, V(0), output2, X)",
              "2 (BC_0, V(1), input, X)"},
     .messages = {{0, "<cell number> 0 with <function> OUTPUT2 and <cell number> 1 with <function> "
                      "OUTPUT2, both <port id> V(0) cannot both have an OUTPUT2/OUTPUT3 function"},
                  {1, "<cell number> 0 <function> OUTPUT2: at least one other <cell entry> with "
                      "<port id> V(0) must have function INPUT or OBSERVE_ONLY but a different "
                      "<cell number>"},
                  {1, "<cell number> 1 <function> OUTPUT2: at least one other <cell entry> with "
                      "<port id> V(0) must have function INPUT or OBSERVE_ONLY but a different "
                      "<cell number>"}}},
};

const Case BUFFER_PORTS[] = {
    {.name = "other functions",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {CONTROL, "1 (BC_0, Q, output3, X, 0, 0, Z)", "2 (BC_0, V(0), input, X)",
              "3 (BC_0, V(1), output2, X)"},
     .messages = {{0, "<cell type> BUFFER in <logical pin map> means that <cell number> 1 with "
                      "<port id> Q must have function OUTPUT2"},
                  {0, "<cell type> BUFFER in <logical pin map> means that <cell number> 2 with "
                      "<port id> V(0) must have function OUTPUT2"}}},
    {.name = "drivers that can be disabled",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {"0 (BC_0, Q, output2, X, 0, 0, WEAK0)", "1 (BC_0, V(1), output2, X, 1, 1, WEAK1)",
              "2 (BC_0, V(0), output2, X)"},
     .messages = {{0, "<cell type> BUFFER in <logical pin map> means that <cell number> 0 with "
                      "<port id> Q cannot contain a <disable spec>"},
                  {0, "<cell type> BUFFER in <logical pin map> means that <cell number> 1 with "
                      "<port id> V(1) cannot contain a <disable spec>"}}},
    {.name = "two drivers are reported from both",
     .ports = {"Q:buffer", "V:buffer(0 to 1)"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, V(0), output2, X)", "2 (BC_0, Q, output2, X)",
              "3 (BC_0, V(1), output2, X)", "4 (BC_0, V(0), output2, X)"},
     .messages = {{0, "<cell number> 0 with <function> OUTPUT2 and <cell number> 2 with <function> "
                      "OUTPUT2, both <port id> Q cannot both have an OUTPUT2 function"},
                  {0, "<cell number> 1 with <function> OUTPUT2 and <cell number> 4 with <function> "
                      "OUTPUT2, both <port id> V(0) cannot both have an OUTPUT2 function"},
                  {0, "<cell number> 2 with <function> OUTPUT2 and <cell number> 0 with <function> "
                      "OUTPUT2, both <port id> Q cannot both have an OUTPUT2 function"},
                  {0, "<cell number> 4 with <function> OUTPUT2 and <cell number> 1 with <function> "
                      "OUTPUT2, both <port id> V(0) cannot both have an OUTPUT2 function"}}},
    {.name = "the first other cell alone is looked at",
     .ports = {"Q:buffer"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, Q, observe_only, X)", "2 (BC_0, Q, output2, X)"},
     .messages = {{0, "<cell number> 2 with <function> OUTPUT2 and <cell number> 0 with <function> "
                      "OUTPUT2, both <port id> Q cannot both have an OUTPUT2 function"}}},
    {.name = "an observed port without a driver, by name alone",
     .ports = {"Q:buffer", "V:buffer(0 to 1)", "A:in"},
     .rows = {"0 (BC_0, Q, observe_only, X)", "1 (BC_0, V(0), observe_only, X)",
              "2 (BC_0, V(1), output2, X)", "3 (BC_0, A, input, X)"},
     .messages = {{0, "<port id> Q must have a cell with an OUTPUT2 function"},
                  {0, "<port id> V must have a cell with an OUTPUT2 function"}}},
    {.name = "a representative at the head of the table",
     .ports = {"Q:buffer", "R:buffer", "A:in"},
     .rows = {"0 (BC_0, Q, output2, X)", "1 (BC_0, R, observe_only, X)", "2 (BC_0, A, input, X)"},
     .messages = {{1, "'observe only' cell 1 connected to associated output port 'R'", 2}},
     .result = 0,
     .pairs = "(Q, R)"},
    {.name = "the last pair judges under IEEE 1149 6",
     .ports = {"A:in", "Q:buffer", "R:buffer", "S:buffer"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, Q, output2, X)", "2 (BC_0, R, observe_only, X)"},
     .messages = {{0, "<port id> R must have a cell with an OUTPUT2 function"}},
     .pairs = "(Q, R), (S, R)",
     .aio = true},
};

const Case PINS[] = {
    {.name = "without a cell, after the control rules",
     .ports = {"A:in", "Y:out", "B:inout", "Q:buffer", "D:in(0 to 1)", "G:linkage"},
     .rows = {"0 (BC_0, Y, output3, X, 0, 0, Z)", "1 (BC_0, D(0), input, X)"},
     .messages = {{1,
                   "cell_number 0 with function 'OUTPUT3' uses cell 0 as control_cell but this "
                   "is not a control_cell",
                   2},
                  {1,
                   "<port name> 'A' with <pin type> IN does not exist in <boundary register "
                   "statement>",
                   3},
                  {1,
                   "<port name> 'B' with <pin type> INOUT does not exist in <boundary register "
                   "statement>",
                   3},
                  {1,
                   "<port name> 'Q' with <pin type> BUFFER does not exist in <boundary register "
                   "statement>",
                   3},
                  {1,
                   "<port name> 'D(1)' with <pin type> IN does not exist in <boundary register "
                   "statement>",
                   3}},
     .result = 0},
    {.name = "without a cell, strict",
     .ports = {"Y:out", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, D(0), input, X)"},
     .messages = {{0,
                   "<port name> 'Y' with <pin type> OUT does not exist in <boundary register "
                   "statement>",
                   2},
                  {0,
                   "<port name> 'D(1)' with <pin type> IN does not exist in <boundary register "
                   "statement>",
                   2}},
     .flags = STRICT},
    {.name = "a cell of bit 0 serves the scalar and one of the vector its bit 0",
     .ports = {"A:in", "D:in(0 to 1)"},
     .rows = {"0 (BC_0, A(0), input, X)", "1 (BC_0, D, input, X)"},
     .messages = {{0, "<cell number> 0 with <port id> 'A(0)' is defined as single BIT in <logical "
                      "pin map>"},
                  {0, "<cell number> 1 with <port id> 'D' is defined as BIT_VECTOR in <logical pin "
                      "map>"},
                  {1,
                   "<port name> 'D(1)' with <pin type> IN does not exist in <boundary register "
                   "statement>",
                   3}}},
};

class CellPortCheck : public testing::TestWithParam<Case>
{
};

std::string name_of(const testing::TestParamInfo<Case> &info)
{
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !isalnum(c); }, '_');
    return name;
}

} // namespace

TEST_P(CellPortCheck, Finds)
{
    const Case &row = GetParam();
    long length = row.length ? row.length : static_cast<long>(row.rows.size());
    Description description = with_cells(Issue::BSDL_2001, row.ports, row.rows, length);
    if (!row.pairs.empty())
        description.with(PORT_GROUPING,
                         attribute("PORT_GROUPING", "Differential_Voltage (" + row.pairs + ")"));
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

INSTANTIATE_TEST_SUITE_P(Resolving, CellPortCheck, testing::ValuesIn(RESOLVING), name_of);
INSTANTIATE_TEST_SUITE_P(Out, CellPortCheck, testing::ValuesIn(OUT_PORTS), name_of);
INSTANTIATE_TEST_SUITE_P(Inout, CellPortCheck, testing::ValuesIn(INOUT_PORTS), name_of);
INSTANTIATE_TEST_SUITE_P(Buffer, CellPortCheck, testing::ValuesIn(BUFFER_PORTS), name_of);
INSTANTIATE_TEST_SUITE_P(Pins, CellPortCheck, testing::ValuesIn(PINS), name_of);

TEST(CellPortPins, SecondRunFailsAtPinsThatAreMarked)
{
    Reading reading(with_cells({"A:in", "Y:out"}, {"0 (BC_0, Y, output2, X)"}));
    check_up_to_cells(reading);
    EXPECT_EQ(reading.check(bsdl_check_bsr), 0);
    EXPECT_EQ(reading.check(bsdl_check_bsr), 100);
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR,
                      "<port name> 'A' with <pin type> IN does not exist in <boundary register "
                      "statement>",
                      2}});
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
