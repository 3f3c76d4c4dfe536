#include "ports/pins.h"

#include <algorithm>

using namespace pins;

namespace
{

using support::Reading;

const Statement TAP[] = {SCAN_CLOCK, support::SCAN_MODE, SCAN_IN, SCAN_OUT, SCAN_RESET};
const char *const PASSED[] = {
    "\tScan port clock statement passed", "\tScan port mode statement passed",
    "\tScan port tdi statement passed", "\tScan port tdo statement passed",
    "\tScan port reset statement passed"};

Description with_reset(const std::string &type = "in bit")
{
    return pins::description("TRST : " + type, "TRST:20")
        .with(SCAN_RESET, "attribute TAP_SCAN_RESET of TRST : signal is true;");
}

Expected refused(const std::string &role, const std::string &port, const std::string &why)
{
    return {ERROR, "<scan port> TAP_SCAN_" + role + " <port id> '" + port + "' " + why, 2};
}

// The valid description with the statements of the test access port in this order.
std::string ordered(const Description &from, const std::vector<int> &order)
{
    Description text = from;
    std::string statements;
    for (int i : order)
        statements += from.statement(TAP[i]) + "\n";
    for (Statement statement : TAP)
        text.without(statement);
    return text.with(SCAN_CLOCK, statements).text();
}

TEST(ScanPorts, AnyOrderIsAccepted)
{
    for (int count : {4, 5}) {
        std::vector<int> order = {0, 1, 2, 3, 4};
        order.resize(static_cast<size_t>(count));
        do {
            Reading reading(ordered(with_reset(), order));
            EXPECT_EQ(bsdlGetNumErrors(reading), 0);
            ExpectedMessages want;
            for (int i : order)
                want.push_back({INFORMATION, PASSED[i], 3});
            expect_messages(picked(reading.messages(),
                                   [](const Message &message) {
                                       return message.text.starts_with("\tScan port");
                                   }),
                            want);
        } while (std::next_permutation(order.begin(), order.end()));
    }
}

TEST(ScanPorts, EachStatementStandsOnce)
{
    for (const std::vector<int> &order : std::vector<std::vector<int>>{
             {0, 1, 2}, {0, 1, 2, 4}, {0, 1, 2, 3, 3}, {0, 0, 1, 2, 3}, {4, 0, 1, 2, 3, 4}}) {
        Reading reading(ordered(with_reset(), order));
        EXPECT_GT(bsdlGetNumErrors(reading), 0);
    }
}

std::vector<PortCase> scan_cases()
{
    Description reused = with_reset();
    reused.replace(SCAN_CLOCK, "TCK", "tms").replace(SCAN_OUT, "TDO", "D(1)");
    reused.replace(SCAN_RESET, "TRST", "D(1)");
    Description types = with_reset("out bit");
    types.replace(PORT_CLAUSE, "TDI : in", "TDI : inout")
        .replace(PORT_CLAUSE, "TDO : out", "TDO : buffer");
    Description missing;
    missing.replace(SCAN_IN, "TDI", "NONE").replace(SCAN_OUT, "TDO", "GND");
    missing.replace(SCAN_CLOCK, "TCK", "D(7)").replace(support::SCAN_MODE, "TMS", "TMS(0)");
    Description elsewhere;
    elsewhere.replace(SCAN_OUT, "TDO", "D(0)")
        .replace(BOUNDARY_REGISTER, "A, input", "tck, input")
        .with(PORT_GROUPING,
              attribute("PORT_GROUPING", "DIFFERENTIAL_VOLTAGE ((A, tms), (D(0), NONE))"));
    // A port that is not there can still be a member and have a cell.
    elsewhere.replace(SCAN_IN, "TDI", "NONE");
    return {
        {"good", with_reset(), {}, "TCK=3 TMS=4 TDI=1 TDO=2 TRST=5"},
        {"used twice, the first in the order of the check keeps it",
         reused,
         {refused("OUT", "D(1)", "must be <pin type> 'OUT'"),
          refused("OUT", "D(1)", "cannot appear in <boundary-scan register>"),
          refused("RESET", "D(1)", "is already used as tap scan TDO"),
          refused("RESET", "D(1)", "cannot appear in <boundary-scan register>"),
          refused("CLOCK", "tms", "is already used as tap scan TMS")},
         "TMS=4 TDI=1 D(1)=2"},
        {"types; the function is given all the same",
         types,
         {refused("IN", "TDI", "must be <pin type> 'IN'"),
          refused("OUT", "TDO", "must be <pin type> 'OUT'"),
          refused("RESET", "TRST", "must be <pin type> 'IN'")},
         "TCK=3 TMS=4 TDI=1 TDO=2 TRST=5"},
        {"missing, LINKAGE, wrong form: without a subscript in the text",
         missing,
         {refused("IN", "NONE", "not found in <logical port>"),
          refused("OUT", "GND", "not found in <logical port>"),
          refused("MODE", "TMS", "not found in <logical port>"),
          refused("CLOCK", "D", "not found in <logical port>")},
         ""},
        {"members of groups, ports with cells",
         elsewhere,
         {refused("IN", "NONE", "not found in <logical port>"),
          refused("IN", "NONE", "cannot appear in <grouped port>"),
          refused("OUT", "D(0)", "must be <pin type> 'OUT'"),
          refused("OUT", "D(0)", "cannot appear in <grouped port>"),
          refused("OUT", "D(0)", "cannot appear in <boundary-scan register>"),
          refused("MODE", "TMS", "cannot appear in <grouped port>"),
          refused("CLOCK", "TCK", "cannot appear in <boundary-scan register>")},
         "TCK=3 TMS=4 D(0)=2"},
    };
}

TEST(ScanPorts, Rules)
{
    for (const PortCase &row : scan_cases())
        expect_case(row, bsdl_check_scan_port);
}

TEST(ScanPorts, WithoutPinsNoPortIsFound)
{
    Description text = with_reset().replace(SCAN_RESET, "TRST", "NONE");
    Reading reading(text);
    EXPECT_EQ(reading.check(bsdl_check_scan_port), 100);
    expect_messages(reading.messages(), {refused("IN", "TDI", "not found in <logical port>"),
                                         refused("OUT", "TDO", "not found in <logical port>"),
                                         refused("RESET", "NONE", "not found in <logical port>"),
                                         refused("MODE", "TMS", "not found in <logical port>"),
                                         refused("CLOCK", "TCK", "not found in <logical port>")});
    EXPECT_EQ(reading.messages()[2].line, text.line(SCAN_RESET));
    EXPECT_EQ(reading.messages()[4].line, text.line(SCAN_CLOCK));
}

TEST(ScanPorts, WithoutABoundaryRegisterNothingIsGiven)
{
    // An error that no statement catches ends the reading before the register.
    Reading reading(Description().with(INSTRUCTION_LENGTH,
                                       "attribute INSTRUCTION_LENGTH of DEV : entity is many;"));
    ASSERT_EQ(build(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_scan_port), 5);
    expect_messages(reading.messages(), {});
    EXPECT_EQ(functions(reading), "");
}

TEST(ScanPorts, Queries)
{
    struct {
        const char *clock;
        double frequency;
        int32_t halt_state;
    } const clocks[] = {
        {"(20.0e6, BOTH)", 20e6, 1}, {"(500, LOW)", 500, 0}, {"(.5E3, low)", 500, 0}};
    for (const auto &row : clocks) {
        SCOPED_TRACE(row.clock);
        Reading reading(with_reset().replace(SCAN_CLOCK, "(10.0e6, BOTH)", row.clock));
        EXPECT_EQ(bsdlGetTckFrequency(reading), row.frequency);
        EXPECT_EQ(bsdlGetTckHaltState(reading), row.halt_state);
    }
    Reading reading(with_reset().replace(SCAN_OUT, "TDO", "D(1)"));
    EXPECT_EQ(text_of(bsdlGetTckPortId(reading)), "TCK");
    EXPECT_EQ(text_of(bsdlGetTdiPortId(reading)), "TDI");
    EXPECT_EQ(text_of(bsdlGetTmsPortId(reading)), "TMS");
    EXPECT_EQ(text_of(bsdlGetTdoPortId(reading)), "D(1)");
    EXPECT_EQ(text_of(bsdlGetTrstPortId(reading)), "TRST");
    EXPECT_EQ(bsdlGetTrstPortId(Reading(Description())), nullptr);
    // The clock's own statement is the first to fail.
    Reading no_clock(Description().replace(SCAN_CLOCK, "BOTH", "HIGH"));
    EXPECT_EQ(bsdlGetTckPortId(no_clock), nullptr);
    EXPECT_EQ(bsdlGetTckFrequency(no_clock), 0.0);
    EXPECT_EQ(bsdlGetTckHaltState(no_clock), -1);
}

} // namespace
