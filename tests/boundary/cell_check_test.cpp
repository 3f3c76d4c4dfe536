#include "cells.h"

using namespace support;

namespace
{

using support::Reading;

Expected error(const std::string &text) { return {ERROR, text, 2}; }

Expected missing(const char *number)
{
    return error(std::string("cell_number (") + number + ") does not exist");
}

Expected too_large(const char *number, const char *length)
{
    return error(std::string("cell_number (") + number + ") cannot be equal to or larger than " +
                 length);
}

Expected self_disable(Level level, const std::string &function, const std::string &value,
                      const std::string &weak, const std::string &pull, const std::string &result)
{
    return {level,
            "cell_number 0 with function '" + function + "' and disable_value '" + value +
                "' must have disable_result '" + weak + "' or '" + pull + "' instead of '" +
                result + "'",
            2};
}

const Expected MERGED_0 = {INFORMATION, "\t\tCell_number 0 is a merged cell", 4};

const CellCase CASES[] = {
    // Length and numbers.
    {.name = "length 0",
     .rows = {"0 (BC_0, A, input, X)", "1 (BC_0, A, input, X)"},
     .messages = {error("BOUNDARY_LENGTH must be greater than zero"), too_large("0", "0"),
                  too_large("1", "0")},
     .length = 0},
    {.name = "number equal to the length",
     .rows = {"2 (BC_0, A, input, X)"},
     .messages = {missing("0"), missing("1"), too_large("2", "2")},
     .length = 2},
    {.name = "gaps in a table of no order",
     .rows = {"3 (BC_0, A, input, X)", "1 (BC_0, A, input, X)", "6 (BC_0, A, input, X)",
              "2147483647 (BC_0, A, input, X)"},
     .messages = {missing("0"), missing("2"), missing("4"), missing("5"), too_large("6", "6"),
                  too_large("2147483647", "6")},
     .length = 6},

    // Merged cells.
    {.name = "input and output, values that agree by X",
     .rows = {"0 (BC_0, A, input, X)", "0 (bc_0, Y, output2, 0)"},
     .messages = {MERGED_0},
     .length = 1},
    {.name = "two inputs",
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, C, input, X)"},
     .messages = {MERGED_0,
                  error("Only one of merged cells (cell_number 0) can have function 'INPUT'")},
     .length = 1},
    {.name = "input behind a cell that observes",
     .rows = {"0 (BC_0, A, observe_only, X)", "0 (BC_0, C, input, X)"},
     .messages = {MERGED_0, error("Merged cell (cell_number 0) must have function OUTPUT2, "
                                  "OUTPUT3, CONTROL or CONTROLR (now 'OBSERVE_ONLY')")},
     .length = 1},
    {.name = "input ahead of a clock",
     .rows = {"0 (BC_4, A, input, X)", "0 (BC_4, C, clock, X)"},
     .messages = {MERGED_0, error("Merged cell (cell_number 0) must have function OUTPUT2, "
                                  "OUTPUT3, CONTROL or CONTROLR (now 'CLOCK')")},
     .length = 1},
    {.name = "names, functions and values differ; the later entry comes first",
     .rows = {"0 (BC_0, Y, output2, 0)", "0 (BC_1, W, output2, 1)"},
     .messages = {MERGED_0,
                  error("Cell_names of merged cells must be equal (now 'BC_1' and 'BC_0')"),
                  error("One of merged cells (cell_number 0) must have function 'INPUT'"),
                  error("Merged cells (cell_number 0) must have equal safe_bit values, unless one "
                        "value is 'X' (now '1' and '0')")},
     .length = 1},
    {.name = "three entries, each later one against the first",
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, Y, output2, 0)", "0 (BC_0, W, output2, 1)"},
     .messages = {MERGED_0, MERGED_0},
     .length = 1},

    // Cell descriptions.
    {.name = "unknown name, later rules still run",
     .rows = {"0 (NOPE, Y, output3, X)"},
     .messages = {error("Cell_name 'NOPE' is not a defined cell"),
                  error("cell_number 0 with function 'OUTPUT3' must contain a disable_spec")}},
    {.name = "no context, named as described; that of one direction serves both",
     .rows = {"0 (bc_4, Y, output2, X)", "1 (BC_1, B, bidir, X, 1, 0, WEAK0)",
              "2 (BC_7, B, bidir, X, 2, 0, WEAK0)"},
     .messages =
         {error("Cell_type 'BC_4' has no cell_context 'OUTPUT2' as required by cell_number 0"),
          error("Cell_type 'BC_1' has no cell_context 'BIDIR' as required by cell_number 1"),
          two_drivers(1, "BIDIR", 2, "BIDIR", "B", "a BIDIR/OUTPUT2/OUTPUT3")}},
    {.name = "INTEST and a cell without it",
     .rows = {"0 (bc_10, Y, output2, X)", "1 (BC_1, W, output2, X)"},
     .messages = {error("INTEST is specified in <opcode description> and <cell name> 'BC_10' does "
                        "not possess INTEST support capability")},
     .more_opcodes = ", INTEST (1001)"},

    // Disable specifications.
    {.name = "control cell out of range",
     .rows = {"0 (BC_0, Y, output3, X, 2, 0, Z)", "1 (BC_0, W, output3, X, -1, 0, Z)"},
     .messages =
         {error("cell_number 0 uses cell 2 as control_cell this cell number is out of range"),
          error("cell_number 1 uses cell -1 as control_cell this cell number is out of range"),
          not_control(0, "OUTPUT3", 2), not_control(1, "OUTPUT3", -1)}},
    {.name = "disable part on an input, which counts as controlled",
     .rows = {"0 (BC_0, A, input, X, 1, 0, Z)", "1 (BC_0, *, control, 0)"},
     .messages = {error("cell_number 0 with function 'INPUT' cannot contain a disable_spec")}},
    {.name = "no disable part",
     .rows = {"0 (BC_0, Y, output3, X)", "1 (BC_7, B, bidir, X)"},
     .messages = {error("cell_number 0 with function 'OUTPUT3' must contain a disable_spec"),
                  error("cell_number 1 with function 'BIDIR' must contain a disable_spec")}},
    {.name = "functions without a port",
     .rows = {"0 (BC_0, A, internal, X)", "1 (BC_0, D(1), control, 0)",
              "2 (BC_0, D(2), controlr, 0)", "3 (BC_0, A, input, X)"},
     .messages =
         {type_rule("IN", 0, "A", IN_FUNCTIONS),
          error("cell_number 0 with function 'INTERNAL' must have port_id '*' instead of A"),
          type_rule("IN", 1, "D(1)", IN_FUNCTIONS),
          error("cell_number 1 with function 'CONTROL' must have port_id '*' instead of D(1)"),
          controls_nothing(1, "CONTROL"), type_rule("IN", 2, "D(2)", IN_FUNCTIONS),
          error("cell_number 2 with function 'CONTROLR' must have port_id '*' instead of D(2)"),
          controls_nothing(2, "CONTROLR")},
     .ports = {"A:in", "D:in(1 to 2)"}},
    {.name = "two-state output that names another cell: no rule on its result",
     .rows = {"0 (BC_0, Y, output2, X, 1, 0, Z)", "1 (BC_0, *, control, 0)"},
     .messages = {{WARNING,
                   "cell_number 0 with function 'OUTPUT2' and a disable_spec must control itself, "
                   "ccell (1) must be equal to 0",
                   2}}},
    {.name = "open output, low",
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, Z)"},
     .messages = {self_disable(WARNING, "OUTPUT2", "0", "WEAK0", "PULL0", "Z")}},
    {.name = "open output, high",
     .rows = {"0 (BC_0, Y, output2, X, 0, 1, KEEPER)"},
     .messages = {self_disable(WARNING, "OUTPUT2", "1", "WEAK1", "PULL1", "KEEPER")}},
    {.name = "open bidirectional",
     .rows = {"0 (BC_7, B, bidir, X, 0, 1, WEAK0)"},
     .messages = {self_disable(ERROR, "BIDIR", "1", "WEAK1", "PULL1", "WEAK0")}},
    {.name = "open drivers that pull away from their value, or whose value was refused",
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, PULL0)", "1 (BC_7, B, bidir, X, 1, 1, WEAK1)",
              "2 (BC_0, W, output2, X, 2, 7, Z)"}},
    {.name = "open drivers before 2001",
     .rows = {"0 (BC_0, Y, output2, X, 0, 0, Z)", "1 (BC_6, B, bidir, X, 1, 0, Z)"},
     .issue = Issue::BSDL_1994},

    // Control cells.
    {.name = "values that differ from the safe one, in table order",
     .rows = {"1 (BC_0, Y, output3, X, 0, 1, Z)", "2 (BC_0, W, output3, X, 0, 3, Z)",
              "3 (BC_0, V, output3, X, 0, 0, Z)", "0 (BC_0, *, control, 0)",
              "4 (BC_0, U, output3, X, 0, 1, Z)"},
     .messages = {wrong_disable_value("1", 1, "OUTPUT3", "0"),
                  wrong_disable_value("ERROR IN DISABLE_VALUE NAME", 2, "OUTPUT3", "0"),
                  wrong_disable_value("1", 4, "OUTPUT3", "0")}},
    {.name = "refused safe value",
     .rows = {"0 (BC_0, *, control, 5)", "1 (BC_0, Y, output3, X, 0, 1, Z)",
              "2 (BC_0, W, output3, X, 0, 5, Z)"},
     .messages = {wrong_disable_value("1", 1, "OUTPUT3", "ERROR IN SAFE_BIT NAME")}},
    {.name = "safe value X takes any",
     .rows = {"0 (BC_0, *, control, X)", "1 (BC_0, Y, output3, X, 0, 1, Z)",
              "2 (BC_0, W, output3, X, 0, 0, Z)"}},
    {.name = "merged control cell reports at its entry alone",
     .rows = {"0 (BC_0, A, input, X)", "0 (BC_0, *, control, 0)",
              "1 (BC_0, Y, output3, X, 0, 1, Z)"},
     .messages = {MERGED_0, wrong_disable_value("1", 1, "OUTPUT3", "0")},
     .length = 2},
    {.name = "control by an output, told after the walk over the cells",
     .rows = {"0 (BC_0, Y, output3, X, 1, 0, Z)", "1 (BC_0, W, output2, X)",
              "2 (BC_0, V, output3, X)"},
     .messages = {error("cell_number 2 with function 'OUTPUT3' must contain a disable_spec"),
                  not_control(0, "OUTPUT3", 1)}},
};

TEST(CellCheck, Rules)
{
    for (const CellCase &row : CASES)
        expect_findings(row);
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
                      return message.text == MERGED_0.text;
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
