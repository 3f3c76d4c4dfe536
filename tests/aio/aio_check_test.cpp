#include "aio/aio_description.h"

#include <algorithm>
#include <cstring>

using namespace aio;

namespace
{

using support::Reading;

// ------------------------------------------------------------------------------------ the driver

const Expected AIO_HEADING = {PROGRESS, "    BSDL AIO semantic checks", 2};
const Expected AIO_DONE = {INFORMATION, "    BSDL AIO semantic checks passed\n", 2};
const Expected AIO_FAILED = {ERROR, "    BSDL AIO semantic checks failed\n", 1};

ExpectedMessages aio_lines(const Expected &last, const char *wrong = nullptr)
{
    ExpectedMessages lines;
    for (const char *word : {"AIO Component Conformance", "AIO EXTEST Pulse Execution",
                             "AIO EXTEST Train Execution", "AIO Pin Behavior"}) {
        if (wrong && std::string(word) == wrong)
            lines.push_back({ERROR, std::string("\t") + word + " has errors", 1});
        else
            lines.push_back({INFORMATION, std::string("\t") + word + " passed", 3});
    }
    lines.push_back(last);
    return lines;
}

ExpectedMessages joined(ExpectedMessages front, const ExpectedMessages &back)
{
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

TEST(AioDriver, GeneralChecksRunFirstAndOnce)
{
    Reading reading(whole(), options());
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_aio), 0);
    Messages lines = picked(reading.messages(), [](const Message &message) {
        return message.level == INFORMATION && message.verbosity == 3;
    });
    ASSERT_EQ(lines.size(), 14U + 4);
    EXPECT_EQ(reading.messages()[0].text, AIO_HEADING.text);
    EXPECT_EQ(lines[0].text, "\tGeneric parameter passed");
    EXPECT_EQ(lines[13].text, "\tExtensions description passed");
    EXPECT_EQ(lines[14].text, "\tAIO Component Conformance passed");
    EXPECT_EQ(reading.check(bsdl_check), 0);
    expect_messages(reading.messages(), {});
    EXPECT_EQ(reading.check(bsdl_check_aio), 0);
    expect_messages(reading.messages(), joined({AIO_HEADING}, aio_lines(AIO_DONE)));
}

TEST(AioDriver, TheExample)
{
    Reading reading(read_text(example("aio_2003.bsd")), options(STRICT));
    expect_clean(reading);
    EXPECT_EQ(reading.check(bsdl_check_aio), 0);
    expect_messages(errors_and_warnings(reading.messages()), {});
}

TEST(AioDriver, AFailedCheckOfTheFamily)
{
    Description text = whole();
    text.replace(EXTENSIONS, "TRAIN 30", "TRAIN 0");
    Reading reading(text, options());
    ASSERT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_aio), 100);
    ExpectedMessages lines = aio_lines(AIO_FAILED, "AIO EXTEST Train Execution");
    lines.insert(lines.begin() + 2, {ERROR, "pulse count must be greater than 0", 2});
    expect_messages(reading.messages(), joined({AIO_HEADING}, lines));
}

TEST(AioDriver, AFailedGeneralCheckEndsIt)
{
    Description text = whole();
    text.with(INSTRUCTION_CAPTURE, attribute("INSTRUCTION_CAPTURE", "0110"))
        .replace(BOUNDARY_LENGTH, "8", "9");
    Reading reading(text, options());
    // One hundred for each general check that failed, and no summary.
    EXPECT_EQ(reading.check(bsdl_check_aio), 200);
    EXPECT_EQ(reading.messages().back().text, "\tExtensions description passed");
    EXPECT_EQ(reading.check(bsdl_check_aio), 0);
    expect_messages(reading.messages(), {AIO_HEADING});
}

TEST(AioDriver, WithoutStatements)
{
    const Expected missing = {WARNING, "    BSDL AIO extension not defined", 3};
    const Expected missing_strict = {ERROR, "    BSDL AIO extension not defined", 1};
    const Expected no_pins = {WARNING, "No AIO portlist specified", 2};

    // The package alone: an empty record, for which nothing is mandatory.
    Reading with_package(whole().without(EXTENSIONS), options());
    ASSERT_EQ(bsdl_check(with_package), 0);
    EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(with_package), -1);
    EXPECT_EQ(with_package.check(bsdl_check_aio), 0);
    ExpectedMessages lines = aio_lines(AIO_DONE);
    lines.insert(lines.begin() + 3, no_pins);
    expect_messages(with_package.messages(), joined({AIO_HEADING, missing}, lines));
    EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(with_package), 0);

    Reading strict(whole().without(EXTENSIONS), options(STRICT));
    EXPECT_EQ(strict.check(bsdl_check_aio), 7);
    expect_messages(strict.messages(), {AIO_HEADING, missing_strict});
    EXPECT_EQ(strict.check(bsdl_check_aio_conformance), 7);
    expect_messages(strict.messages(), {missing_strict});

    // Neither package nor statements: the checks that need the record fail.
    Reading plain{Description()};
    ASSERT_EQ(bsdl_check(plain), 0);
    EXPECT_EQ(plain.check(bsdl_check_aio), 100);
    expect_messages(plain.messages(), {AIO_HEADING,
                                       missing,
                                       missing,
                                       {INFORMATION, "\tAIO Component Conformance passed", 3},
                                       {ERROR, "\tAIO EXTEST Pulse Execution has errors", 1},
                                       {ERROR, "\tAIO EXTEST Train Execution has errors", 1},
                                       {ERROR, "\tAIO Pin Behavior has errors", 1},
                                       AIO_FAILED});
}

TEST(AioDriver, ResultsOfSingleChecks)
{
    const struct {
        const char *name;
        Description text;
        int32_t conformance, pulse, train, pins;
    } rows[] = {
        {"no package", Description(), 0, 7, 7, 7},
        {"package", statements(""), 5, 5, 5, 5},
        {"conformance", statements(CONFORMANCE_1149_6), 0, 5, 5, 5},
        {"pulse", statements(CONFORMANCE_1149_6 + pulse("WAIT_DURATION TCK 1")), 0, 0, 5, 5},
        {"train", statements(CONFORMANCE_1149_6 + train("TRAIN 1")), 0, 5, 0, 5},
        {"pins", with_pins("A : LP_TIME=1.0"), 0, 5, 5, 0},
        {"pins without a port clause", with_pins("A : LP_TIME=1.0").with(PORT_CLAUSE, "port (A);"),
         0, 5, 5, 5},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(row.text, options());
        EXPECT_EQ(bsdl_check_aio_conformance(reading), row.conformance);
        EXPECT_EQ(bsdl_check_aio_extest_pulse(reading), row.pulse);
        EXPECT_EQ(bsdl_check_aio_extest_train(reading), row.train);
        EXPECT_EQ(bsdl_check_aio_pin_behavior(reading), row.pins);
    }
}

// ------------------------------------------------------------------------------- pulse and train

const char *const NO_PULSE = "Instruction opcode must have EXTEST_PULSE instruction";
const char *const NO_TRAIN = "Instruction opcode must have EXTEST_TRAIN instruction";

TEST(AioPulse, Rules)
{
    const struct {
        const char *name;
        const char *value;
        bool instruction;
        const char *clock; // another port for TAP_SCAN_CLOCK
        ExpectedMessages messages;
    } rows[] = {
        {"a time", "WAIT_DURATION 1.0e-6", true, nullptr, {}},
        {"TCK in small letters", "WAIT_DURATION tck 4", true, nullptr, {}},
        {"another port",
         "WAIT_DURATION A 4",
         true,
         nullptr,
         {{ERROR, "port_id 'A' is not a TCK pin", 2}}},
        {"a bit of it",
         "WAIT_DURATION TCK(1) 4",
         true,
         nullptr,
         {{ERROR, "port_id 'TCK[1]' is not a TCK pin", 2}}},
        {"bit 0 for a scalar", "WAIT_DURATION TCK(0) 4", true, nullptr, {}},
        {"a scalar for a bit",
         "WAIT_DURATION D 4",
         true,
         "D(1)",
         {{ERROR, "port_id 'D' is not a TCK pin", 2}}},
        {"no instruction, another port",
         "WAIT_DURATION D(1) 4",
         false,
         nullptr,
         {{ERROR, NO_PULSE, 2}, {ERROR, "port_id 'D[1]' is not a TCK pin", 2}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Description text = statements(CONFORMANCE_1149_6 + pulse(row.value));
        if (!row.instruction)
            text.replace(INSTRUCTION_OPCODE, "EXTEST_PULSE", "OTHER");
        if (row.clock)
            text.replace(SCAN_CLOCK, "TCK", row.clock);
        Reading reading(text, options());
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        EXPECT_EQ(reading.check(bsdl_check_aio_extest_pulse), row.messages.empty() ? 0 : 100);
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(AioTrain, Rules)
{
    Description text = statements(CONFORMANCE_1149_6 + train("TRAIN 0"));
    text.replace(INSTRUCTION_OPCODE, "EXTEST_TRAIN", "OTHER");
    Reading reading(text, options());
    EXPECT_EQ(reading.check(bsdl_check_aio_extest_train), 100);
    expect_messages(reading.messages(),
                    {{ERROR, NO_TRAIN, 2}, {ERROR, "pulse count must be greater than 0", 2}});
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 5);
}

// -------------------------------------------------------------------------------------- the pins

std::string quoted_port(const std::string &port) { return "<port id> '" + port + "'"; }

Expected missing_port(const std::string &port)
{
    return {ERROR, quoted_port(port) + " does not exist in <logical pin map>", 2};
}

Expected linkage(const std::string &port)
{
    return {ERROR, quoted_port(port) + " cannot have <pin type> LINKAGE in <logical pin map>", 2};
}

Expected repeated(const std::string &port)
{
    return {ERROR, quoted_port(port) + " is already used in <AC pin info list>", 2};
}

Expected select_type(const std::string &port, const std::string &type)
{
    return {ERROR,
            quoted_port(port) + " has <pin type> '" + type +
                "', this must be 'OUT', 'INOUT' or 'BUFFER'",
            2};
}

Expected select_with_times(const std::string &port, const std::string &type)
{
    return {ERROR,
            quoted_port(port) +
                " has has both a <AC/DC select cell> and a <time constants> element, <pin type> '" +
                type + "' must be 'INOUT'",
            2};
}

Expected no_times(const std::string &port, const std::string &type)
{
    return {ERROR,
            quoted_port(port) + " has <pin type> '" + type +
                "', no <time constants> allowed (only for 'IN' and 'INOUT')",
            2};
}

Expected times_missing(const std::string &port, const std::string &type, bool strict)
{
    return {strict ? ERROR : WARNING,
            quoted_port(port) + " has <pin type> '" + type +
                "', at least one <time constants> must be specified",
            strict ? 2 : 3};
}

Expected single_bit(const std::string &port)
{
    return {ERROR,
            quoted_port(port) +
                " is a single bit, thus <input cell list> can have only one element",
            2};
}

Expected bit_array(const std::string &port, const std::string &size, const std::string &cells)
{
    return {ERROR,
            quoted_port(port) + " is a bit array of size " + size + ", but <input cell list> has " +
                cells + " elements",
            2};
}

Expected input_cell(const std::string &cell, const std::string &function)
{
    return {ERROR,
            "<cell number> " + cell +
                " is used as <input cell>, but this cell's <function> value "
                "is '" +
                function + "', and should be 'INPUT' or 'OBSERVE_ONLY'",
            2};
}

Expected input_cell_missing(const std::string &cell)
{
    return {ERROR,
            "<cell number> " + cell +
                " is used as <input cell>, but this cell does not exist in "
                "<boundary register statement>",
            2};
}

Expected select_cell(const std::string &cell, const std::string &what)
{
    return {ERROR,
            "<cell number> " + cell + " is used as <AC/DC select cell>, but this cell's " + what,
            2};
}

const Expected SELECT_MISSING = {ERROR,
                                 "<cell number> '99' is referenced, but does not exist in the "
                                 "<boundary scan statement>",
                                 2};
const std::string NOT_INTERNAL = "<function> value is 'INPUT', and should be 'INTERNAL'";

struct PinCase {
    const char *name;
    const char *value;
    ExpectedMessages messages;
    unsigned flags = 0;
};

const PinCase pin_cases[] = {
    {"good",
     "A[7], D[5,6], D(0)[5] : LP_TIME=1.0 HP_TIME=1.0 ON_CHIP; Y, U : AC_SELECT=8; "
     "B[10] : AC_SELECT=8 HP_TIME=1.0; Q(1) : LP_TIME=0.0; P(0), P : HP_TIME=0.0",
     {}},
    // ports
    {"unknown ports",
     "NONE, NONE(3), NONE : LP_TIME=1.0",
     {missing_port("NONE"), repeated("NONE"), missing_port("NONE(3)"), missing_port("NONE")}},
    {"linkage", "GND, VCC(2)", {linkage("GND"), linkage("VCC(2)")}},
    {"each use that has a later one",
     "A, D(0) : LP_TIME=1.0; a, D(1), D : LP_TIME=1.0; D(0), A : "
     "LP_TIME=1.0",
     {repeated("A"), repeated("D(0)"), repeated("a")}},
    {"fixed ports",
     "TCK, TMS, TDI, TDO",
     {{ERROR, "port_id 'TCK' is TCK port pin", 2},
      {ERROR, "port_id 'TMS' is TMS port pin", 2},
      {ERROR, "port_id 'TDI' is TDI port pin", 2},
      {ERROR, "port_id 'TDO' is TDO port pin", 2},
      times_missing("TCK", "IN", false),
      times_missing("TMS", "IN", false),
      times_missing("TDI", "IN", false)}},
    {"fixed ports in another case are not seen",
     "tck, Tdo, TDI(4) : AC_SELECT=8",
     {{ERROR, "port_id 'TDI' is TDI port pin", 2},
      select_type("tck", "IN"),
      select_type("TDI(4)", "IN")}},
    // select cells
    {"types that no cell selects for",
     "A, NONE, B, Y, U, D(1) : AC_SELECT=8",
     {missing_port("NONE"), select_type("A", "IN"), select_type("D(1)", "IN")}},
    {"select cell and times",
     "Y, U, D(0), B : AC_SELECT=8 LP_TIME=1.0",
     {select_with_times("Y", "OUT"), select_with_times("U", "BUFFER"), select_type("D(0)", "IN"),
      select_with_times("D(0)", "IN"), no_times("Y", "OUT"), no_times("U", "BUFFER")}},
    {"a high-pass time of zero is a time here",
     "Y : AC_SELECT=8 HP_TIME=0.0",
     {select_with_times("Y", "OUT"), no_times("Y", "OUT")}},
    {"a low-pass time of zero is none", "Y : AC_SELECT=8 LP_TIME=0.0", {}},
    {"no such select cell", "Y : AC_SELECT=99", {SELECT_MISSING}},
    {"a select cell of another kind",
     "Y : AC_SELECT=7",
     {select_cell("7", NOT_INTERNAL),
      select_cell("7", "<safe_bit> value is 'X', and should be '0'")}},
    {"a select cell that is safe at 1",
     "Y : AC_SELECT=9",
     {select_cell("9", "<safe_bit> value is '1', and should be '0'")}},
    // times
    {"no times",
     "A, B, Y, D(1), NONE",
     {missing_port("NONE"), times_missing("A", "IN", false), times_missing("B", "INOUT", false),
      times_missing("D(1)", "IN", false)}},
    {"no times, strict",
     "A, B, Y",
     {times_missing("A", "IN", true), times_missing("B", "INOUT", true)},
     STRICT},
    {"times where none belong",
     "Y, U, GND : HP_TIME=1.0",
     {linkage("GND"), no_times("Y", "OUT"), no_times("U", "BUFFER"), no_times("GND", "LINKAGE")}},
    {"times below zero",
     "A : LP_TIME=-5.0e-9 HP_TIME=-0.25",
     {{ERROR, "<LP_time> '-5.000000e-09' should be > 0.0", 2},
      {ERROR, "<HP_time> '-2.500000e-01' should be > 0.0", 2}}},
    {"a colon alone is a description of times", "A :", {}},
    // input cells
    {"cells of bits", "A[7,4], Q(1)[7,10] : LP_TIME=1.0", {single_bit("A"), single_bit("Q(1)")}},
    {"cells of vectors",
     "D[5], Q[5,6,7,4], P[7] : LP_TIME=1.0",
     {bit_array("D", "2", "1"), bit_array("Q", "3", "4")}},
    {"cells of other kinds, also of unknown ports",
     "A[8], NONE[99,1] : LP_TIME=1.0",
     {missing_port("NONE"), input_cell("8", "INTERNAL"), input_cell_missing("99"),
      input_cell("1", "OUTPUT3")}},
    {"rule by rule, description by description",
     "A[99], NONE[7] : AC_SELECT=99 LP_TIME=-1.0; GND[7,8] : HP_TIME=1.0",
     {missing_port("NONE"),
      select_type("A", "IN"),
      SELECT_MISSING,
      {ERROR, "<LP_time> '-1.000000e+00' should be > 0.0", 2},
      input_cell_missing("99"),
      linkage("GND"),
      no_times("GND", "LINKAGE"),
      single_bit("GND"),
      input_cell("8", "INTERNAL")}},
};

bool has_error(const ExpectedMessages &messages)
{
    for (const Expected &message : messages)
        if (message.level == ERROR)
            return true;
    return false;
}

TEST(AioPins, Rules)
{
    for (const PinCase &row : pin_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(with_pins(row.value), options(row.flags));
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), has_error(row.messages) ? 100 : 0);
        expect_messages(reading.messages(), row.messages);
        // Which messages the host wants does not change the result.
        Options quiet = options(row.flags);
        quiet.verbosity = 1;
        Reading silent(with_pins(row.value), quiet);
        EXPECT_EQ(silent.check(bsdl_check_aio_pin_behavior), has_error(row.messages) ? 100 : 0);
    }
}

TEST(AioPins, Instructions)
{
    Description text = with_pins("NONE : LP_TIME=1.0");
    text.replace(INSTRUCTION_OPCODE, "EXTEST_PULSE", "OTHER")
        .replace(INSTRUCTION_OPCODE, "EXTEST_TRAIN", "ANOTHER");
    Reading reading(text, options());
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
    expect_messages(reading.messages(),
                    {{ERROR, NO_PULSE, 2}, {ERROR, NO_TRAIN, 2}, missing_port("NONE")});
}

TEST(AioPins, CompliancePorts)
{
    const auto pin = [](const std::string &port) {
        return Expected{ERROR, "port_id '" + port + "' is compliance pin", 2};
    };
    const struct {
        const char *name;
        const char *ports;
        const char *pins;
        ExpectedMessages messages;
    } rows[] = {
        {"the name decides where one has no subscript",
         "(A, Q(1))",
         "A(3), q, Q : HP_TIME=1.0",
         {pin("A"), {ERROR, "<port id> 'q' is already used in <AC pin info list>", 2}, pin("Q")}},
        {"two bits", "(D(1), Q(0), Q(2))", "D(0), Q(2), d(1) : HP_TIME=1.0", {pin("Q[2]")}},
        {"the first of them gives the form",
         "(Q, Q(1), D(1), D)",
         "Q(1), D(1), D(0) : HP_TIME=1.0",
         {pin("Q"), pin("D[1]"), pin("D")}},
        {"before the test access port", "(TDI)", "TDI : HP_TIME=1.0", {pin("TDI")}},
        {"in another case",
         "(tdi)",
         "TDI : HP_TIME=1.0",
         {{ERROR, "port_id 'TDI' is TDI port pin", 2}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Description text = with_pins(row.pins);
        std::string pattern(std::count(row.ports, row.ports + strlen(row.ports), ',') + 1, '0');
        text.with(COMPLIANCE,
                  attribute("COMPLIANCE_PATTERNS", std::string(row.ports) + " (" + pattern + ")"));
        Reading reading(text, options());
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(AioPins, TestAccessPortOfVectors)
{
    Description text = with_pins("D(1), D(0), D : HP_TIME=1.0");
    text.replace(SCAN_CLOCK, "TCK", "D(1)");
    Reading reading(text, options());
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
    expect_messages(reading.messages(), {{ERROR, "port_id 'D[1]' is TCK port pin", 2},
                                         {ERROR, "port_id 'D' is TCK port pin", 2}});
}

TEST(AioPins, AssociatedPorts)
{
    const auto associated = [](const std::string &port) {
        return Expected{ERROR,
                        "<associated port> '" + port +
                            "' in <grouped port identification> cannot appear in <AC pin info>",
                        2};
    };
    Description text = with_pins("A, D(1) : LP_TIME=1.0; D : LP_TIME=1.0; b : LP_TIME=1.0");
    text.with(PORT_GROUPING,
              attribute("PORT_GROUPING", "DIFFERENTIAL_VOLTAGE ((A, Y), (D(0), D(1))), "
                                         "DIFFERENTIAL_CURRENT ((U, B), (Q(0), D(0)))"));
    Reading reading(text, options());
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
    expect_messages(reading.messages(), {associated("D(1)"), associated("B")});
}

TEST(AioPins, WhereMessagesPoint)
{
    Reading reading(with_pins("A : LP_TIME=1.0; \" &\n\"NONE : LP_TIME=1.0;\" &\n \"A :\" & \n"
                              "\"LP_TIME=-1.0"),
                    options());
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
    const int first = with_pins("").line(EXTENSIONS);
    ASSERT_EQ(reading.messages().size(), 3U);
    EXPECT_EQ(reading.messages()[0].line, first);
    EXPECT_EQ(reading.messages()[1].line, first + 1);
    EXPECT_EQ(reading.messages()[2].line, first + 2);
    EXPECT_EQ(reading.messages()[2].rule, "aio-lp-time-negative");
}

} // namespace
