#include "isc/isc.h"

#include "isc_family.h"

#include "ports/ports.h"

using namespace support;
using namespace isc_family;

namespace
{

int32_t check_flow(Bsdl *handle) { return bsdl_check_isc_flow(handle, 0); }

Family flow(const std::string &text) { return Family().with_flow(text); }
Family updates(const std::string &fields)
{
    return flow("F INITIALIZE (MINE " + fields + " WAIT TCK 1)");
}
Family wait(const std::string &text) { return flow("F INITIALIZE (MINE WAIT " + text + ")"); }

TEST(IscFlowCheck, HexStringsFitTheirFields)
{
    expect_rows(
        check_flow,
        {{"as long as the field", updates("8:FF")},
         {"zeros do not count", updates("8:00FF")},
         {"nothing but zeros", updates("7:1,1:000")},
         {"one digit more", updates("8:1FF"), "hex_string [9] must fit in field_width [8]"},
         {"7 takes three bits", updates("7:7F,1:1")},
         {"8 takes four", updates("7:8F,1:1"), "hex_string [8] must fit in field_width [7]"},
         {"4 takes three", updates("6:4F,2:3"), "hex_string [7] must fit in field_width [6]"},
         {"3 takes two", updates("6:3F,2:2")},
         {"2 takes two, a four", updates("5:2F,3:a"),
          "hex_string [6] must fit in field_width [5]\n"
          "hex_string [4] must fit in field_width [3]"},
         {"1 takes one", updates("5:1F,3:4")},
         {"assigned ones are not looked at", updates("8:$v=FFFF")},
         {"captured ones neither", wait("TCK 1 8:FFFF")}});
}

TEST(IscFlowCheck, OperandsFitTheirFields)
{
    for (const std::string operation :
         {"8:$v=0,8:$v+", "8:$v=0,8:$v-", "8:$v=0,8:$v<<", "8:$v=0,8:$v>>"}) {
        SCOPED_TRACE(operation);
        auto operand = [&](const char *value) {
            return updates(operation + value).renamed("MINE[8]", "MINE[16]");
        };
        expect_rows(check_flow,
                    {{"nothing", operand("0")},
                     {"the most", operand("255")},
                     {"more", operand("256"), "operand [9] must fit in field_width [8]"},
                     {"all", operand("2147483647"), "operand [31] must fit in field_width [8]"}});
    }
}

TEST(IscFlowCheck, SumsOfWidths)
{
    auto update = [](const char *sum, const char *flow) {
        return std::string("the sum of update field widths (") + sum + ") in flow '" + flow +
               "' activity 'MINE' must be equal to the length of associated register 'MINE[8]'";
    };
    auto capture = [](const char *sum, const char *flow) {
        return std::string("The sum of capture field widths (") + sum + ") in flow '" + flow +
               "' activity 'MINE' must be equal to the length of associated register 'MINE[8]'";
    };
    expect_rows(check_flow,
                {{"no fields", wait("TCK 1")},
                 {"equal", flow("F INITIALIZE (MINE 4:0,4 WAIT TCK 1 7:,1:!)")},
                 {"both longer", flow("F INITIALIZE (MINE 4:0,5 WAIT TCK 1 9:)"),
                  update("9", "F") + "\n" + capture("9", "F")},
                 {"both shorter, with data", flow("F(ARRAY) TERMINATE (MINE 7 WAIT TCK 1 1:,6:)"),
                  update("7", "F(ARRAY)") + "\n" + capture("7", "F (ARRAY)")},
                 // Sums beyond 32 bits are no small numbers.
                 {"very wide", updates("2147483647,2147483647,10"), update("8", "F")}});
}

TEST(IscFlowCheck, InstructionsAndClocks)
{
    const char WRONG[] = "tck port name 'A' differs from tck_stmt port_id 'TCK' in flow 'F'";
    expect_rows(check_flow,
                {{"unknown instruction", flow("F INITIALIZE (NO 3:FF WAIT TCK 1 5:)"),
                  "flow activity instruction: 'NO' not found\n"
                  "hex_string [8] must fit in field_width [3]"},
                 {"unknown in any block",
                  flow("F INITIALIZE (MINE WAIT TCK 1) REPEAT 2 (NO WAIT TCK 1) "
                       "TERMINATE LOOP MAX 2 ((NONE WAIT TCK 1))"),
                  "flow activity instruction: 'NO' not found\n"
                  "flow activity instruction: 'NONE' not found"},
                 {"instruction in small letters", flow("F INITIALIZE (mine 8:FF WAIT TCK 1)")},
                 {"TCK in any case", wait("tck 5, 1 MIN, Tck 6 MAX")},
                 {"another port", wait("A 5"), WRONG},
                 {"of the maximum, behind a time", wait("1 MIN, A 5 MAX"), WRONG},
                 {"of the maximum, behind a right one", wait("TCK 1 MIN, A 5 MAX")},
                 {"of both", wait("A 1 MIN, B 5 MAX"), WRONG},
                 {"times alone", wait("1 MIN, 2 MAX")},
                 {"with data", flow("F(ARRAY) INITIALIZE (MINE WAIT B 1)"),
                  "tck port name 'B' differs from tck_stmt port_id 'TCK' in flow 'F (ARRAY)'"}});
    // Before the check of the registers no instruction has one; sums are not compared then.
    Reading reading(updates("5").description());
    EXPECT_EQ(reading.check(check_flow), 100);
    expect_messages(reading.messages(),
                    {{ERROR, "instruction 'MINE' has no associated register", 2}});
}

TEST(IscFlowCheck, LoopsAreReportedAndPass)
{
    for (const std::string name : {"F", "F(ARRAY)"}) {
        Reading reading(flow(name + " INITIALIZE LOOP MIN 3 MAX 3 ((MINE WAIT TCK 1)) "
                                    "LOOP MIN 5 MAX 3 ((MINE WAIT TCK 1))")
                            .description());
        EXPECT_EQ(bsdl_check(reading), 0);
        EXPECT_EQ(reading.check(check_flow), 0);
        expect_messages(
            reading.messages(),
            {{ERROR,
              "loop count (3) must be greater than or equal to min loop count (5) in flow '" +
                  std::string(name == "F" ? "F'" : "F (ARRAY)'"),
              2}});
    }
}

TEST(IscFlowCheck, VariablesSetByTheHost)
{
    const std::string MISSING = "an input or IO operator exists without associated flow_name in "
                                "flow_descriptor 'F'";
    const std::string fields = " INITIALIZE (MINE 2:$a?,2:$b=3,2:$c?!,2:$a WAIT TCK 1)";
    expect_rows(check_flow,
                {{"without data name", flow("F" + fields), MISSING + "\n" + MISSING},
                 {"with data name", flow("F(ARRAY)" + fields)},
                 {"input without variable", updates("8:?")},
                 // What the variable was given first counts.
                 {"given by the host later",
                  flow("F INITIALIZE (MINE 8:$a=1 WAIT 1) TERMINATE (MINE 8:$a? WAIT TCK 1)")}});

    // In a part of a PPC/PRG file nothing else is looked at.
    Reading part(flow("F INITIALIZE (NO 3:$a? WAIT A 1)").description());
    part.clear();
    EXPECT_EQ(bsdl_check_isc_flow(part, 1), 100);
    expect_messages(part.messages(), {{ERROR, MISSING, 2}});
}

} // namespace
