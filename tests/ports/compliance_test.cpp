#include "ports/pins.h"

using namespace pins;

namespace
{

using support::Reading;

const char *const PORTS = "C1, C2 : in bit; CO : out bit; CL : linkage bit; "
                          "CV : in bit_vector(0 to 2); CW : buffer bit_vector(1 downto 0)";
const char *const PINS = "C1:20, C2:21, CO:22, CV:(23, 24, 25), CW:(26, 27)";

Description compliant(const std::string &value)
{
    return pins::description(PORTS, PINS).with(COMPLIANCE, attribute("COMPLIANCE_PATTERNS", value));
}

Description compliant(const std::string &value, const std::vector<std::string> &cells)
{
    Description text = compliant(value);
    return with_cells(text, cells);
}

const char *const NOT_IN = "<compliance port> CO <pin type> in <logical portmap> has to be type IN";
const char *const BIT_NOT_IN =
    "<compliance port> CW(1) <pin type> in <logical portmap> has to be type IN";
const char *const LINKAGE_NOT_IN =
    "<compliance port> CL <pin type> in <logical portmap> has to be type IN";

TEST(Compliance, Rules)
{
    const PortCase cases[] = {
        {"good", compliant("(c1, CV(1)) (0X, 11)"), {}, "C1=8 CV(1)=8"},
        {"missing: nothing else about that port",
         compliant("(NONE, CV(3), C1(0), CV) (0000)", {"NONE, input, X"}),
         {{ERROR, "<compliance port> NONE does not exist in <logical portmap>", 2},
          {ERROR, "<compliance port> CV(3) does not exist in <logical portmap>", 2},
          {ERROR, "<compliance port> C1(0) does not exist in <logical portmap>", 2},
          {ERROR, "<compliance port> CV does not exist in <logical portmap>", 2}},
         ""},
        {"other types are a warning",
         compliant("(CO, CW(1), CL) (000)"),
         {{WARNING, NOT_IN, 3}, {WARNING, BIT_NOT_IN, 3}, {WARNING, LINKAGE_NOT_IN, 3}},
         "CO=8 CL=8 CW(1)=8"},
        {"other types, strict",
         compliant("(CO, CW(1), CL) (000)"),
         {{ERROR, NOT_IN, 2}, {ERROR, BIT_NOT_IN, 2}, {ERROR, LINKAGE_NOT_IN, 2}},
         "CO=8 CL=8 CW(1)=8",
         STRICT},
        {"the same port twice",
         compliant("(C1, CV(0), c1, CV(0)) (0000)"),
         {{ERROR, "<compliance port> <port id> 'c1' is already used as compliance enable", 2},
          {ERROR, "<compliance port> <port id> 'CV(0)' is already used as compliance enable", 2}},
         "C1=8 CV(0)=8"},
        {"cells, a bit 0 for the scalar too",
         compliant("(C1, C2, CV(1), CV(2)) (0000)",
                   {"C1, input, X", "C2(0), input, X", "cv(1), input, X"}),
         {{ERROR, "<compliance port> <port id> 'C1' cannot appear in <boundary-scan register>", 2},
          {ERROR, "<compliance port> <port id> 'C2' cannot appear in <boundary-scan register>", 2},
          {ERROR, "<compliance port> <port id> 'CV(1)' cannot appear in <boundary-scan register>",
           2}},
         "C1=8 C2=8 CV(1)=8 CV(2)=8"},
        {"pattern lengths, behind the ports",
         compliant("(C1, NONE) (1, 01, 01X, X)"),
         {{ERROR, "<compliance port> NONE does not exist in <logical portmap>", 2},
          {ERROR, "<compliance port> <pattern> '1' has incorrect length 1, should be 2", 2},
          {ERROR, "<compliance port> <pattern> '01X' has incorrect length 3, should be 2", 2},
          {ERROR, "<compliance port> <pattern> 'X' has incorrect length 1, should be 2", 2}},
         "C1=8"},
    };
    for (const PortCase &row : cases)
        expect_case(row, bsdl_check_compliance);
}

TEST(Compliance, PortsOfOtherStatements)
{
    Description text = compliant("(TDI, TDO, C1, C2) (0000)");
    text.with(PORT_GROUPING, attribute("PORT_GROUPING", "DIFFERENTIAL_VOLTAGE ((C1, C2))"));
    Reading reading(text);
    ASSERT_EQ(build(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_grouped_port), 0);
    EXPECT_EQ(reading.check(bsdl_check_scan_port), 0);
    EXPECT_EQ(reading.check(bsdl_check_compliance), 100);
    expect_messages(
        reading.messages(),
        {{ERROR, "<compliance port> <port id> 'TDI' is already used as tap scan TDI", 2},
         {WARNING, "<compliance port> TDO <pin type> in <logical portmap> has to be type IN", 3},
         {ERROR, "<compliance port> <port id> 'TDO' is already used as tap scan TDO", 2},
         {ERROR,
          "<compliance port> <port id> 'C1' is already used as representative differential port",
          2},
         {ERROR, "<compliance port> <port id> 'C2' is already used as associated differential port",
          2}});
    EXPECT_EQ(functions(reading), "TCK=3 TMS=4 TDI=1 TDO=2 C1=6 C2=7");
}

TEST(Compliance, WithoutAStatementOrPins)
{
    Reading absent{Description()};
    EXPECT_EQ(bsdlGetNbrOfComplPorts(absent), -1);
    EXPECT_EQ(bsdlGetNbrOfComplPatterns(absent), -1);
    expect_iteration(absent.handle(), bsdlGetFirstComplPort, bsdlGetNextComplPort, {});
    expect_iteration(absent.handle(), bsdlGetFirstComplPattern, bsdlGetNextComplPattern, {});
    // Being absent comes before the missing pin list.
    EXPECT_EQ(absent.check(bsdl_check_compliance), 1);
    expect_messages(absent.messages(), {});

    Reading no_pins(compliant("(C1) (0)"));
    EXPECT_EQ(no_pins.check(bsdl_check_compliance), 5);
    expect_messages(no_pins.messages(), {});

    Reading skipped(compliant("(C1) (2)"));
    EXPECT_EQ(bsdlGetNumErrors(skipped), 1);
    EXPECT_TRUE(skipped.has("Skipping compliance_enable due to errors"));
    EXPECT_EQ(bsdlGetNbrOfComplPorts(skipped), -1);
}

TEST(Compliance, Queries)
{
    Reading reading(compliant("(c1, C2, CV(1)) (1X0, 000)"));
    EXPECT_TRUE(reading.has("\tCompliance enable statement passed"));
    EXPECT_EQ(bsdlGetNbrOfComplPorts(reading), 3);
    EXPECT_EQ(bsdlGetNbrOfComplPatterns(reading), 2);
    expect_iteration(reading.handle(), bsdlGetFirstComplPort, bsdlGetNextComplPort,
                     {"c1", "C2", "CV(1)"});
    expect_iteration(reading.handle(), bsdlGetFirstComplPattern, bsdlGetNextComplPattern,
                     {"1X0", "000"});
}

} // namespace
