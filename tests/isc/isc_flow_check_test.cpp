#include "isc/isc.h"

#include "isc_family.h"

#include "ports/ports.h"
#include "registers/registers.h"

using namespace support;
using namespace isc_family;

namespace
{

struct Row {
    const char *name;
    std::string flow;
    int32_t result;
    ExpectedMessages messages = {};
};

int32_t check_flow(Bsdl *handle) { return bsdl_check_isc_flow(handle, 0); }
int32_t check_part(Bsdl *handle) { return bsdl_check_isc_flow(handle, 1); }

void expect_rows(const std::vector<Row> &rows)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(Family().with_flow(row.flow).description());
        EXPECT_EQ(bsdlGetNumErrors(reading), 0);
        EXPECT_EQ(bsdl_check(reading), 0);
        EXPECT_EQ(reading.check(check_flow), row.result);
        expect_messages(reading.messages(), row.messages);
    }
}

std::string updates(const std::string &fields)
{
    return "F INITIALIZE (MINE " + fields + " WAIT TCK 1)";
}

TEST(IscFlowCheck, HexStringsFitTheirFields)
{
    auto too_long = [](int bits, int width) {
        return Expected{ERROR,
                        "hex_string [" + std::to_string(bits) + "] must fit in field_width [" +
                            std::to_string(width) + "]",
                        2};
    };
    expect_rows({
        {"as long as the field", updates("8:FF"), 0},
        {"zeros do not count", updates("8:00FF"), 0},
        {"nothing but zeros", updates("7:1,1:000"), 0},
        {"one digit too many", updates("8:1FF"), 100, {too_long(9, 8)}},
        {"7 takes three bits", updates("7:7F,1:1"), 0},
        {"8 takes four", updates("7:8F,1:1"), 100, {too_long(8, 7)}},
        {"4 takes three", updates("6:4F,2:3"), 100, {too_long(7, 6)}},
        {"3 takes two", updates("6:3F,2:2"), 0},
        {"2 takes two", updates("5:2F,3:7"), 100, {too_long(6, 5)}},
        {"1 takes one", updates("5:1F,3:4"), 0},
        {"letters take four", updates("3:a,5:0"), 100, {too_long(4, 3)}},
        {"assigned ones are not looked at", updates("8:$v=FFFF"), 0},
        {"captured ones neither", "F INITIALIZE (MINE WAIT TCK 1 8:FFFF)", 0},
    });
}

TEST(IscFlowCheck, OperandsFitTheirFields)
{
    const std::string define = "F INITIALIZE (MINE 8:$v=0 WAIT TCK 1) (MINE ";
    for (const char *operation : {"+", "-", "<<", ">>"}) {
        SCOPED_TRACE(operation);
        expect_rows({
            {"255", define + "8:$v" + operation + "255 WAIT TCK 1)", 0},
            {"0", define + "8:$v" + operation + "0 WAIT TCK 1)", 0},
            {"256",
             define + "8:$v" + operation + "256 WAIT TCK 1)",
             100,
             {{ERROR, "operand [9] must fit in field_width [8]", 2}}},
            {"2147483647",
             define + "8:$v" + operation + "2147483647 WAIT TCK 1)",
             100,
             {{ERROR, "operand [31] must fit in field_width [8]", 2}}},
        });
    }
}

TEST(IscFlowCheck, SumsOfWidths)
{
    const char UPDATE[] = "the sum of update field widths (9) in flow 'F' activity 'MINE' must be "
                          "equal to the length of associated register 'MINE[8]'";
    const char UPDATE_DATA[] = "the sum of update field widths (7) in flow 'F(ARRAY)' activity "
                               "'MINE' must be equal to the length of associated register "
                               "'MINE[8]'";
    const char CAPTURE[] = "The sum of capture field widths (9) in flow 'F' activity 'MINE' must "
                           "be equal to the length of associated register 'MINE[8]'";
    const char CAPTURE_DATA[] = "The sum of capture field widths (7) in flow 'F (ARRAY)' activity "
                                "'MINE' must be equal to the length of associated register "
                                "'MINE[8]'";
    expect_rows({
        {"no fields", "F INITIALIZE (MINE WAIT TCK 1)", 0},
        {"equal", "F INITIALIZE (MINE 4:0,4 WAIT TCK 1 7:,1:!)", 0},
        {"both longer",
         "F INITIALIZE (MINE 4:0,5 WAIT TCK 1 9:)",
         100,
         {{ERROR, UPDATE, 2}, {ERROR, CAPTURE, 2}}},
        {"both shorter, with data",
         "F(ARRAY) TERMINATE (MINE 7 WAIT TCK 1 1:,6:)",
         100,
         {{ERROR, UPDATE_DATA, 2}, {ERROR, CAPTURE_DATA, 2}}},
        // Sums beyond 32 bits are no small numbers.
        {"very wide",
         "F INITIALIZE (MINE 2147483647,2147483647,10 WAIT TCK 1)",
         100,
         {{ERROR,
           "the sum of update field widths (8) in flow 'F' activity 'MINE' must be equal to the "
           "length of associated register 'MINE[8]'",
           2}}},
    });
}

TEST(IscFlowCheck, Instructions)
{
    expect_rows({
        {"unknown",
         "F INITIALIZE (NO 3:FF WAIT TCK 1 5:)",
         100,
         {{ERROR, "flow activity instruction: 'NO' not found", 2},
          {ERROR, "hex_string [8] must fit in field_width [3]", 2}}},
        {"of any block",
         "F INITIALIZE (MINE WAIT TCK 1) REPEAT 2 (NO WAIT TCK 1) TERMINATE LOOP MAX 2 ((NONE WAIT "
         "TCK 1))",
         100,
         {{ERROR, "flow activity instruction: 'NO' not found", 2},
          {ERROR, "flow activity instruction: 'NONE' not found", 2}}},
        {"in small letters", "F INITIALIZE (mine 8:FF WAIT TCK 1)", 0},
    });
    // Before the check of the registers no instruction has one; sums are not compared then.
    Reading reading(Family().with_flow("F INITIALIZE (MINE 5 WAIT TCK 1)").description());
    EXPECT_EQ(reading.check(check_flow), 100);
    expect_messages(reading.messages(),
                    {{ERROR, "instruction 'MINE' has no associated register", 2}});
}

TEST(IscFlowCheck, ClocksOfWaits)
{
    const Expected wrong = {ERROR,
                            "tck port name 'A' differs from tck_stmt port_id 'TCK' in flow 'F'", 2};
    auto wait = [](const std::string &text) { return "F INITIALIZE (MINE WAIT " + text + ")"; };
    expect_rows({
        {"TCK in any case", wait("tck 5, 1 MIN, Tck 6 MAX"), 0},
        {"another port", wait("A 5"), 100, {wrong}},
        {"of the maximum, behind a time", wait("1 MIN, A 5 MAX"), 100, {wrong}},
        {"of the maximum, behind a right one", wait("TCK 1 MIN, A 5 MAX"), 0},
        {"of both", wait("A 1 MIN, B 5 MAX"), 100, {wrong}},
        {"times alone", wait("1 MIN, 2 MAX"), 0},
        {"with data",
         "F(ARRAY) INITIALIZE (MINE WAIT B 1)",
         100,
         {{ERROR, "tck port name 'B' differs from tck_stmt port_id 'TCK' in flow 'F (ARRAY)'", 2}}},
    });
}

TEST(IscFlowCheck, LoopsAreReportedAndPass)
{
    expect_rows({
        {"equal limits", "F INITIALIZE LOOP MIN 3 MAX 3 ((MINE WAIT TCK 1))", 0},
        {"turned limits",
         "F INITIALIZE LOOP MIN 5 MAX 3 ((MINE WAIT TCK 1))",
         0,
         {{ERROR, "loop count (3) must be greater than or equal to min loop count (5) in flow 'F'",
           2}}},
        {"turned limits, with data",
         "F(ARRAY) INITIALIZE LOOP MIN 5 MAX 3 ((MINE WAIT TCK 1))",
         0,
         {{ERROR,
           "loop count (3) must be greater than or equal to min loop count (5) in flow 'F (ARRAY)'",
           2}}},
    });
}

TEST(IscFlowCheck, VariablesSetByTheHost)
{
    const Expected missing = {ERROR,
                              "an input or IO operator exists without associated flow_name in "
                              "flow_descriptor 'F'",
                              2};
    const std::string fields = " INITIALIZE (MINE 2:$a?,2:$b=3,2:$c?!,2:$a WAIT TCK 1)";
    expect_rows({
        {"without data name", "F" + fields, 100, {missing, missing}},
        {"with data name", "F(ARRAY)" + fields, 0},
        {"input without variable", updates("8:?"), 0},
        // What the variable was given first counts.
        {"given by the host later", updates("8:$a=1") + " TERMINATE (MINE 8:$a? WAIT TCK 1)", 0},
    });

    // In a part of a PPC/PRG file nothing else is looked at.
    Reading part(Family().with_flow("F INITIALIZE (NO 3:$a? WAIT A 1)").description());
    part.handle()->data->scan_port->tck = nullptr;
    EXPECT_EQ(part.check(check_part), 100);
    expect_messages(part.messages(), {missing});
    EXPECT_EQ(part.check(check_flow), 5);
}

} // namespace
