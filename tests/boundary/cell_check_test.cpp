#include "cells.h"

using namespace support;

namespace
{

using support::Reading;

struct Case {
    const char *name;
    std::vector<std::string> ports;
    std::vector<std::string> rows;
    long length = -1; // -1: as many as there are rows
    int32_t result = 0;
    ExpectedMessages messages = {};
    // Under `strict` the warnings above are errors.
    bool strict_fails = false;
    Issue issue = Issue::BSDL_2001;
    const char *more_opcodes = "";
};

std::string self_disable(const char *function, const char *value, const char *weak,
                         const char *pull, const char *result)
{
    return std::string("cell_number 0 with function '") + function + "' and disable_value '" +
           value + "' must have disable_result '" + weak + "' or '" + pull + "' instead of '" +
           result + "'";
}

const char MERGED_0[] = "\t\tCell_number 0 is a merged cell";

const Case cases[] = {
    // Length and numbers.
    {.name = "length 0",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, A, input, X)"},
     .length = 0,
     .result = 100,
     .messages = {{ERROR, "BOUNDARY_LENGTH must be greater than zero", 2},
                  {ERROR, "cell_number (0) cannot be equal to or larger than 0", 2},
                  {ERROR, "cell_number (1) cannot be equal to or larger than 0", 2}}},
    {.name = "number equal to the length",
     .ports = {"A:in"},
     .rows = {"3 (BC_0, A, input, X)"},
     .length = 3,
     .result = 100,
     .messages = {{ERROR, "cell_number (0) does not exist", 2},
                  {ERROR, "cell_number (1) does not exist", 2},
                  {ERROR, "cell_number (2) does not exist", 2},
                  {ERROR, "cell_number (3) cannot be equal to or larger than 3", 2}}},
    {.name = "gaps in a table of no order",
     .ports = {"A:in"},
     .rows = {"3 (BC_0, A, input, X)", "1 (BC_0, A, input, X)", "6 (BC_0, A, input, X)",
              "2147483647 (BC_0, A, input, X)"},
     .length = 6,
     .result = 100,
     .messages = {{ERROR, "cell_number (0) does not exist", 2},
                  {ERROR, "cell_number (2) does not exist", 2},
                  {ERROR, "cell_number (4) does not exist", 2},
                  {ERROR, "cell_number (5) does not exist", 2},
                  {ERROR, "cell_number (6) cannot be equal to or larger than 6", 2},
                  {ERROR, "cell_number (2147483647) cannot be equal to or larger than 6", 2}}},

    // Merged cells.
    {.name = "input and output, values that agree by X",
     .ports = {"A:in", "Y:out"},
     .rows = {"0 (BC_0, A, input, X)", "0 (bc_0, Y, output2, 0)"},
     .length = 1,
     .messages = {{INFORMATION, MERGED_0, 4}}},
    {.name = "two inputs",
     .ports = {"A:in", "C:in"},
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, C, input, X)"},
     .length = 1,
     .result = 100,
     .messages = {{INFORMATION, MERGED_0, 4},
                  {ERROR, "Only one of merged cells (cell_number 0) can have function 'INPUT'",
                   2}}},
    {.name = "input behind a cell that observes",
     .ports = {"A:in", "C:in"},
     .rows = {"0 (BC_0, A, observe_only, X)", "0 (BC_0, C, input, X)"},
     .length = 1,
     .result = 100,
     .messages = {{INFORMATION, MERGED_0, 4},
                  {ERROR,
                   "Merged cell (cell_number 0) must have function OUTPUT2, OUTPUT3, CONTROL or "
                   "CONTROLR (now 'OBSERVE_ONLY')",
                   2}}},
    {.name = "input ahead of a clock",
     .ports = {"A:in", "C:in"},
     .rows = {"0 (BC_4, A, input, X)", "0 (BC_4, C, clock, X)"},
     .length = 1,
     .result = 100,
     .messages = {{INFORMATION, MERGED_0, 4},
                  {ERROR,
                   "Merged cell (cell_number 0) must have function OUTPUT2, OUTPUT3, CONTROL or "
                   "CONTROLR (now 'CLOCK')",
                   2}}},
    {.name = "names, functions and values differ; the later entry comes first",
     .ports = {"Y:out", "W:out"},
     .rows = {"0 (BC_0, Y, output2, 0)", "0 (BC_1, W, output2, 1)"},
     .length = 1,
     .result = 100,
     .messages =
         {{INFORMATION, MERGED_0, 4},
          {ERROR, "Cell_names of merged cells must be equal (now 'BC_1' and 'BC_0')", 2},
          {ERROR, "One of merged cells (cell_number 0) must have function 'INPUT'", 2},
          {ERROR,
           "Merged cells (cell_number 0) must have equal safe_bit values, unless one value is 'X' "
           "(now '1' and '0')",
           2}}},
    {.name = "three entries, each later one against the first",
     .ports = {"A:in", "Y:out", "W:out"},
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, Y, output2, 0)", "0 (BC_0, W, output2, 1)"},
     .length = 1,
     .messages = {{INFORMATION, MERGED_0, 4}, {INFORMATION, MERGED_0, 4}}},

    // Cell descriptions.
    {.name = "unknown name, later rules still run",
     .ports = {"Y:out"},
     .rows = {"0 (NOPE, Y, output3, X)"},
     .result = 100,
     .messages = {{ERROR, "Cell_name 'NOPE' is not a defined cell", 2},
                  {ERROR, "cell_number 0 with function 'OUTPUT3' must contain a disable_spec", 2}}},
    {.name = "no context, named as described",
     .ports = {"Y:out"},
     .rows = {"0 (bc_4, Y, output2, X)"},
     .result = 100,
     .messages = {{ERROR,
                   "Cell_type 'BC_4' has no cell_context 'OUTPUT2' as required by cell_number 0",
                   2}}},
    {.name = "context of one direction serves both",
     .ports = {"B:inout"},
     .rows = {"0 (BC_7, B, bidir, X, 0, 0, WEAK0)"}},
    {.name = "bidirectional cell without either context",
     .ports = {"B:inout"},
     .rows = {"0 (BC_1, B, bidir, X, 0, 0, WEAK0)"},
     .result = 100,
     .messages = {{ERROR,
                   "Cell_type 'BC_1' has no cell_context 'BIDIR' as required by cell_number 0",
                   2}}},
    {.name = "INTEST and a cell without it",
     .ports = {"Y:out", "W:out"},
     .rows = {"0 (bc_10, Y, output2, X)", "1 (BC_1, W, output2, X)"},
     .result = 100,
     .messages = {{ERROR,
                   "INTEST is specified in <opcode description> and <cell name> 'BC_10' does not "
                   "possess INTEST support capability",
                   2}},
     .more_opcodes = ", INTEST (1001)"},

    // Disable specifications.
    {.name = "control cell out of range",
     .ports = {"Y:out", "W:out"},
     .rows = {"0 (BC_0, Y, output3, X, 2, 0, Z)", "1 (BC_0, W, output3, X, -1, 0, Z)"},
     .result = 100,
     .messages =
         {{ERROR, "cell_number 0 uses cell 2 as control_cell this cell number is out of range", 2},
          {ERROR, "cell_number 1 uses cell -1 as control_cell this cell number is out of range", 2},
          not_control(0, "OUTPUT3", 2),
          not_control(1, "OUTPUT3", -1)},
     .strict_fails = true},
    {.name = "disable part on an input, which counts as controlled",
     .ports = {"A:in"},
     .rows = {"0 (BC_0, A, input, X, 1, 0, Z)", "1 (BC_0, *, control, 0)"},
     .result = 100,
     .messages = {{ERROR, "cell_number 0 with function 'INPUT' cannot contain a disable_spec", 2}}},
    {.name = "no disable part",
     .ports = {"Y:out", "B:inout"},
     .rows = {"0 (BC_0, Y, output3, X)", "1 (BC_7, B, bidir, X)"},
     .result = 100,
     .messages = {{ERROR, "cell_number 0 with function 'OUTPUT3' must contain a disable_spec", 2},
                  {ERROR, "cell_number 1 with function 'BIDIR' must contain a disable_spec", 2}}},
    {.name = "two-state output that names another cell: no rule on its result",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, output2, X, 1, 0, Z)", "1 (BC_0, *, control, 0)"},
     .messages = {{WARNING,
                   "cell_number 0 with function 'OUTPUT2' and a disable_spec must control itself, "
                   "ccell (1) must be equal to 0",
                   2}},
     .strict_fails = true},
    {.name = "open output, low",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, Z)"},
     .messages = {{WARNING, self_disable("OUTPUT2", "0", "WEAK0", "PULL0", "Z"), 2}},
     .strict_fails = true},
    {.name = "open output, high",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, output2, X, 0, 1, KEEPER)"},
     .messages = {{WARNING, self_disable("OUTPUT2", "1", "WEAK1", "PULL1", "KEEPER"), 2}},
     .strict_fails = true},
    {.name = "open bidirectional",
     .ports = {"B:inout"},
     .rows = {"0 (BC_7, B, bidir, X, 0, 1, WEAK0)"},
     .result = 100,
     .messages = {{ERROR, self_disable("BIDIR", "1", "WEAK1", "PULL1", "WEAK0"), 2}}},
    {.name = "open drivers that pull away from their value",
     .ports = {"Y:out", "B:inout"},
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, PULL0)", "1 (BC_7, B, bidir, X, 1, 1, WEAK1)"}},
    {.name = "open drivers before 2001",
     .ports = {"Y:out", "B:inout"},
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, Z)", "1 (BC_6, B, bidir, X, 1, 0, Z)"},
     .issue = Issue::BSDL_1994},
    {.name = "open drivers with a refused value",
     .ports = {"Y:out", "B:inout"},
     .rows = {"0 (BC_0, Y, output2, X, 0, 7, Z)", "1 (BC_7, B, bidir, X, 1, 7, Z)"}},

    // Control cells.
    {.name = "values that differ from the safe one, in table order",
     .ports = {"Y:out", "W:out", "V:out", "U:out"},
     .rows = {"1 (BC_0, Y, output3, X, 0, 1, Z)", "2 (BC_0, W, output3, X, 0, 3, Z)",
              "3 (BC_0, V, output3, X, 0, 0, Z)", "0 (BC_0, *, control, 0)",
              "4 (BC_0, U, output3, X, 0, 1, Z)"},
     .result = 100,
     .messages = {wrong_disable_value("1", 1, "OUTPUT3", "0"),
                  wrong_disable_value("ERROR IN DISABLE_VALUE NAME", 2, "OUTPUT3", "0"),
                  wrong_disable_value("1", 4, "OUTPUT3", "0")}},
    {.name = "refused safe value",
     .ports = {"Y:out", "W:out"},
     .rows = {"0 (BC_0, *, control, 5)", "1 (BC_0, Y, output3, X, 0, 1, Z)",
              "2 (BC_0, W, output3, X, 0, 5, Z)"},
     .result = 100,
     .messages = {wrong_disable_value("1", 1, "OUTPUT3", "ERROR IN SAFE_BIT NAME")}},
    {.name = "safe value X takes any",
     .ports = {"Y:out", "W:out"},
     .rows = {"0 (BC_0, *, control, X)", "1 (BC_0, Y, output3, X, 0, 1, Z)",
              "2 (BC_0, W, output3, X, 0, 0, Z)"}},
    {.name = "controls nothing",
     .rows = {"0 (BC_0, *, control, 0)", "1 (BC_0, *, controlr, X)"},
     .result = 100,
     .messages = {controls_nothing(0, "CONTROL"), controls_nothing(1, "CONTROLR")}},
    {.name = "merged control cell reports at its entry alone",
     .ports = {"A:in", "Y:out"},
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, *, control, 0)",
              "1 (BC_0, Y, output3, X, 0, 1, Z)"},
     .length = 2,
     .result = 100,
     .messages = {{INFORMATION, MERGED_0, 4}, wrong_disable_value("1", 1, "OUTPUT3", "0")}},
    {.name = "three-state output that names itself",
     .ports = {"Y:out"},
     .rows = {"0 (BC_0, Y, output3, X, 0, 0, Z)"},
     .messages = {not_control(0, "OUTPUT3", 0)},
     .strict_fails = true},
    {.name = "control by an output, told after the walk over the cells",
     .ports = {"Y:out", "W:out", "V:out"},
     .rows = {"0 (BC_0, Y, output3, X, 1, 0, Z)", "1 (BC_0, W, output2, X)",
              "2 (BC_0, V, output3, X)"},
     .result = 100,
     .messages = {{ERROR, "cell_number 2 with function 'OUTPUT3' must contain a disable_spec", 2},
                  not_control(0, "OUTPUT3", 1)},
     .strict_fails = true},
};

Description described(const Case &row)
{
    long length = row.length < 0 ? static_cast<long>(row.rows.size()) : row.length;
    return with_cells(row.issue, row.ports, row.rows, length)
        .replace(INSTRUCTION_OPCODE, "IDCODE (0100)",
                 "IDCODE (0100)" + std::string(row.more_opcodes));
}

TEST(CellCheck, Rules)
{
    for (const Case &row : cases) {
        for (bool strict : {false, true}) {
            SCOPED_TRACE(std::string(row.name) + (strict ? ", strict" : ""));
            Reading reading(described(row), {.flags = strict ? STRICT : 0});
            ASSERT_TRUE(reading.handle());
            ASSERT_EQ(0, bsdlGetNumErrors(reading));
            check_up_to_cells(reading);
            ExpectedMessages messages = row.messages;
            for (Expected &message : messages)
                if (strict && message.level == WARNING)
                    message.level = ERROR;
            EXPECT_EQ(strict && row.strict_fails ? 100 : row.result, reading.check(bsdl_check_bsr));
            expect_messages(reading.messages(), messages);
        }
    }
}

// The port makes each of them break a rule on its type as well.
TEST(CellCheck, CellsWithoutAPort)
{
    Reading reading(with_cells({"A:in", "D:in(1 to 2)"},
                               {"0 (BC_0, A, internal, X)", "1 (BC_0, D(1), control, 0)",
                                "2 (BC_0, D(2), controlr, 0)", "3 (BC_0, A, input, X)"}));
    check_up_to_cells(reading);
    EXPECT_EQ(100, reading.check(bsdl_check_bsr));
    const std::string text =
        "cell_number 0 with function 'INTERNAL' must have port_id '*' instead of A";
    expect_messages(
        picked(reading.messages(),
               [](const Message &message) { return message.rule == "cell-port-forbidden"; }),
        {{ERROR, text, 2},
         {ERROR, "cell_number 1 with function 'CONTROL' must have port_id '*' instead of D(1)", 2},
         {ERROR, "cell_number 2 with function 'CONTROLR' must have port_id '*' instead of D(2)",
          2}});
}

TEST(CellCheck, Results)
{
    EXPECT_EQ(2, bsdl_check_bsr(nullptr));

    Reading before_pins{Description()};
    EXPECT_EQ(5, before_pins.check(bsdl_check_bsr));
    expect_messages(before_pins.messages(), {});

    Reading no_table(Description().with(BOUNDARY_REGISTER,
                                        "attribute BOUNDARY_REGISTER of DEV : entity is BAD;"));
    check_up_to_cells(no_table);
    EXPECT_EQ(5, no_table.check(bsdl_check_bsr));

    Reading fast(Description(), {.flags = FAST_READ});
    EXPECT_EQ(5, fast.check(bsdl_check_bsr));
}

TEST(CellCheck, LinksAndMarks)
{
    Reading reading(with_cells(Issue::BSDL_2001, {"A:in", "Y:out"},
                               {"0 (bc_0, A, input, X)", "0 (BC_0, Y, output3, X, 1, 0, Z)",
                                "1 (BC_0, *, control, 0)", "2 (NOPE, *, internal, X)"},
                               3));
    auto entries = all_of(reading.handle(), bsdlGetFirstCellEntry, bsdlGetNextCellEntry);
    ASSERT_EQ(4u, entries.size());
    EXPECT_EQ(nullptr, entries[0]->merged_with);
    check_up_to_cells(reading);
    EXPECT_EQ(100, reading.check(bsdl_check_bsr));
    EXPECT_EQ(entries[1], entries[0]->merged_with);
    EXPECT_EQ(entries[0], entries[1]->merged_with);
    EXPECT_EQ(1, entries[1]->disable_spec->control_seen);
    EXPECT_TRUE(entries[0]->cell_desc);
    EXPECT_EQ(entries[0]->cell_desc, entries[1]->cell_desc);
    EXPECT_EQ(nullptr, entries[3]->cell_desc);

    // Once linked, a pair is reported from both sides.
    reading.check(bsdl_check_bsr);
    EXPECT_EQ(2u, picked(reading.messages(), [](const Message &message) {
                      return message.text == MERGED_0;
                  }).size());
}

// A wrong length must not flood the host; the result does not depend on what is heard.
TEST(CellCheck, LongestListOfMissingNumbers)
{
    for (unsigned verbosity : {2u, 1u}) {
        Reading reading(
            with_cells(Issue::BSDL_2001, {"A:in"}, {"100000 (BC_0, A, input, X)"}, 2147483647),
            {.verbosity = verbosity});
        check_up_to_cells(reading);
        EXPECT_EQ(100, reading.check(bsdl_check_bsr));
        EXPECT_EQ(verbosity < 2 ? 0u : 65536u, reading.messages().size());
    }
}

} // namespace
