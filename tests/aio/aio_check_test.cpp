#include "aio/aio_description.h"

#include <sstream>

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

TEST(AioDriver, GeneralChecksRunFirstAndOnce)
{
    Reading reading(whole());
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
    expect_messages(reading.messages(), joined({{AIO_HEADING}, aio_lines(AIO_DONE)}));
}

TEST(AioDriver, AFailedCheckOfTheFamily)
{
    Description text = whole();
    text.replace(EXTENSIONS, "TRAIN 30", "TRAIN 0");
    Reading reading(text);
    ASSERT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_aio), 100);
    ExpectedMessages lines = aio_lines(AIO_FAILED, "AIO EXTEST Train Execution");
    lines.insert(lines.begin() + 2, {ERROR, "pulse count must be greater than 0", 2});
    expect_messages(reading.messages(), joined({{AIO_HEADING}, lines}));
}

TEST(AioDriver, AFailedGeneralCheckEndsIt)
{
    Description text = whole();
    text.with(INSTRUCTION_CAPTURE, attribute("INSTRUCTION_CAPTURE", "0110"))
        .replace(BOUNDARY_LENGTH, "8", "9");
    Reading reading(text);
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
    Reading with_package(whole().without(EXTENSIONS));
    ASSERT_EQ(bsdl_check(with_package), 0);
    EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(with_package), -1);
    EXPECT_EQ(with_package.check(bsdl_check_aio), 0);
    ExpectedMessages lines = aio_lines(AIO_DONE);
    lines.insert(lines.begin() + 3, no_pins);
    expect_messages(with_package.messages(), joined({{AIO_HEADING, missing}, lines}));
    EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(with_package), 0);

    Reading strict(whole().without(EXTENSIONS), {.flags = STRICT});
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
        Reading reading(row.text);
        EXPECT_EQ(bsdl_check_aio_conformance(reading), row.conformance);
        EXPECT_EQ(bsdl_check_aio_extest_pulse(reading), row.pulse);
        EXPECT_EQ(bsdl_check_aio_extest_train(reading), row.train);
        EXPECT_EQ(bsdl_check_aio_pin_behavior(reading), row.pins);
    }
}

// -------------------------------------------------------------------------------------- the rules

// By the rule's identifier; `$` is what a row gives after it, word by word.
// clang-format off
const std::map<std::string, std::string> TEXTS = {
    {"extest-pulse-missing", "Instruction opcode must have EXTEST_PULSE instruction"},
    {"extest-train-missing", "Instruction opcode must have EXTEST_TRAIN instruction"},
    {"pulse-clock-not-tck", "port_id '$' is not a TCK pin"},
    {"train-without-pulses", "pulse count must be greater than 0"},
    {"port-unknown", "<port id> '$' does not exist in <logical pin map>"},
    {"compliance-port", "port_id '$' is compliance pin"},
    {"test-access-port", "port_id '$' is $ port pin"},
    {"port-linkage", "<port id> '$' cannot have <pin type> LINKAGE in <logical pin map>"},
    {"port-repeated", "<port id> '$' is already used in <AC pin info list>"},
    {"select-pin-type", "<port id> '$' has <pin type> '$', this must be 'OUT', 'INOUT' or 'BUFFER'"},
    {"select-with-times", "<port id> '$' has has both a <AC/DC select cell> and a <time constants> "
                          "element, <pin type> '$' must be 'INOUT'"},
    {"select-cell-unknown", "<cell number> '$' is referenced, but does not exist in the "
                            "<boundary scan statement>"},
    {"select-cell-function", "<cell number> $ is used as <AC/DC select cell>, but this cell's "
                             "<function> value is '$', and should be 'INTERNAL'"},
    {"select-cell-safe-bit", "<cell number> $ is used as <AC/DC select cell>, but this cell's "
                             "<safe_bit> value is '$', and should be '0'"},
    {"times-not-allowed", "<port id> '$' has <pin type> '$', no <time constants> allowed "
                          "(only for 'IN' and 'INOUT')"},
    {"times-missing", "<port id> '$' has <pin type> '$', at least one <time constants> must be "
                      "specified"},
    {"lp-time-negative", "<LP_time> '$' should be > 0.0"},
    {"hp-time-negative", "<HP_time> '$' should be > 0.0"},
    {"input-cells-of-bit", "<port id> '$' is a single bit, thus <input cell list> can have only one "
                           "element"},
    {"input-cells-of-vector", "<port id> '$' is a bit array of size $, but <input cell list> has $ "
                              "elements"},
    {"input-cell-unknown", "<cell number> $ is used as <input cell>, but this cell does not exist in "
                           "<boundary register statement>"},
    {"input-cell-function", "<cell number> $ is used as <input cell>, but this cell's <function> "
                            "value is '$', and should be 'INPUT' or 'OBSERVE_ONLY'"},
    {"associated-port", "<associated port> '$' in <grouped port identification> cannot appear in "
                        "<AC pin info>"},
};
// clang-format on

using Findings = std::vector<std::string>; // "port-repeated A" and so on

Expected expected(const std::string &finding, unsigned flags)
{
    std::istringstream words(finding);
    std::string word;
    words >> word;
    const bool warns = word == "times-missing" && !(flags & STRICT);
    std::string text = TEXTS.at(word);
    while (words >> word)
        text.replace(text.find('$'), 1, word);
    return {warns ? WARNING : ERROR, text, warns ? 3 : 2};
}

struct RuleCase {
    const char *name;
    std::string value; // of the statement
    Findings findings;
    unsigned flags = 0;
    Statement other = STATEMENT_COUNT; // another statement that is replaced, by this text
    std::string other_text = "";
};

template <size_t N>
void expect_findings(int32_t (*check)(Bsdl *), std::string (*statement)(const std::string &),
                     const RuleCase (&rows)[N])
{
    for (const RuleCase &row : rows) {
        SCOPED_TRACE(row.name);
        Description text = statements(CONFORMANCE_1149_6 + statement(row.value));
        if (row.other != STATEMENT_COUNT)
            text.with(row.other, row.other_text);
        Reading reading(text, {.flags = row.flags});
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        ExpectedMessages messages;
        for (const std::string &finding : row.findings)
            messages.push_back(expected(finding, row.flags));
        EXPECT_EQ(reading.check(check), result_of(messages));
        expect_messages(reading.messages(), messages);
        for (size_t i = 0; i < messages.size() && i < reading.messages().size(); i++)
            EXPECT_EQ(reading.messages()[i].rule,
                      "aio-" + row.findings[i].substr(0, row.findings[i].find(' ')));
    }
}

std::string opcodes(const std::string &instructions)
{
    return attribute("INSTRUCTION_OPCODE", "BYPASS (1111), " + instructions);
}

std::string scan_clock(const std::string &port)
{
    return "attribute TAP_SCAN_CLOCK of " + port + " : signal is (1.0e6, BOTH);";
}

// clang-format off
const RuleCase pulse_cases[] = {
    {"a time", "WAIT_DURATION 1.0e-6", {}},
    {"TCK in small letters", "WAIT_DURATION tck 4", {}},
    {"another port", "WAIT_DURATION A 4", {"pulse-clock-not-tck A"}},
    {"a bit of it", "WAIT_DURATION TCK(1) 4", {"pulse-clock-not-tck TCK[1]"}},
    {"bit 0 for a scalar", "WAIT_DURATION TCK(0) 4", {}},
    {"a scalar for a bit", "WAIT_DURATION D 4", {"pulse-clock-not-tck D"},
     0, SCAN_CLOCK, scan_clock("D(1)")},
    {"no instruction, another port", "WAIT_DURATION D(1) 4",
     {"extest-pulse-missing", "pulse-clock-not-tck D[1]"},
     0, INSTRUCTION_OPCODE, opcodes("EXTEST_TRAIN (0110)")},
};

const RuleCase train_cases[] = {
    {"some", "TRAIN 1", {}},
    {"none", "TRAIN 0", {"extest-train-missing", "train-without-pulses"},
     0, INSTRUCTION_OPCODE, opcodes("EXTEST_PULSE (0110)")},
};

const RuleCase pin_cases[] = {
    {"good",
     "A[7], D[5,6], D(0)[5] : LP_TIME=1.0 HP_TIME=1.0 ON_CHIP; Y, U : AC_SELECT=8; "
     "B[10] : AC_SELECT=8 HP_TIME=1.0; Q(1) : LP_TIME=0.0; P(0), P : HP_TIME=0.0", {}},
    {"no instructions", "NONE :",
     {"extest-pulse-missing", "extest-train-missing", "port-unknown NONE"},
     0, INSTRUCTION_OPCODE, opcodes("OTHER (0110)")},
    // ports
    {"unknown ports", "NONE, NONE(3), NONE :",
     {"port-unknown NONE", "port-repeated NONE", "port-unknown NONE(3)", "port-unknown NONE"}},
    {"linkage", "GND, VCC(2)", {"port-linkage GND", "port-linkage VCC(2)"}},
    {"each use that has a later one", "A, D(0) :; a, D(1), D :; D(0), A :",
     {"port-repeated A", "port-repeated D(0)", "port-repeated a"}},
    {"test access port", "TCK, TMS, TDI, TDO",
     {"test-access-port TCK TCK", "test-access-port TMS TMS", "test-access-port TDI TDI",
      "test-access-port TDO TDO", "times-missing TCK IN", "times-missing TMS IN",
      "times-missing TDI IN"}},
    {"in another case it is not seen", "tck, Tdo, TDI(4) :", {"test-access-port TDI TDI"}},
    {"a bit as TCK", "D(1), D(0), D :", {"test-access-port D[1] TCK", "test-access-port D TCK"},
     0, SCAN_CLOCK, scan_clock("D(1)")},
    // compliance ports
    {"the name decides where one has no subscript", "A(3), q, Q :",
     {"compliance-port A", "port-repeated q", "compliance-port Q"},
     0, COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(A, Q(1)) (00)")},
    {"two bits", "D(0), Q(2), d(1) :", {"compliance-port Q[2]"},
     0, COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(D(1), Q(0), Q(2)) (000)")},
    {"the first of them gives the form", "Q(1), D(1), D(0) :",
     {"compliance-port Q", "compliance-port D[1]", "compliance-port D"},
     0, COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(Q, Q(1), D(1), D) (0000)")},
    {"before the test access port", "TDI :", {"compliance-port TDI"},
     0, COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(TDI) (0)")},
    {"in another case", "TDI :", {"test-access-port TDI TDI"},
     0, COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(tdi) (0)")},
    // select cells
    {"types that no cell selects for", "A, NONE, B, Y, U, D(1) : AC_SELECT=8",
     {"port-unknown NONE", "select-pin-type A IN", "select-pin-type D(1) IN"}},
    {"select cell and times", "Y, U, D(0), B : AC_SELECT=8 LP_TIME=1.0",
     {"select-with-times Y OUT", "select-with-times U BUFFER", "select-pin-type D(0) IN",
      "select-with-times D(0) IN", "times-not-allowed Y OUT", "times-not-allowed U BUFFER"}},
    {"a high-pass time of zero is a time here", "Y : AC_SELECT=8 HP_TIME=0.0",
     {"select-with-times Y OUT", "times-not-allowed Y OUT"}},
    {"a low-pass time of zero is none", "Y : AC_SELECT=8 LP_TIME=0.0", {}},
    {"no such select cell", "Y : AC_SELECT=99", {"select-cell-unknown 99"}},
    {"a select cell of another kind", "Y : AC_SELECT=7",
     {"select-cell-function 7 INPUT", "select-cell-safe-bit 7 X"}},
    {"a select cell that is safe at 1", "Y : AC_SELECT=9", {"select-cell-safe-bit 9 1"}},
    // times
    {"no times", "A, B, Y, D(1), NONE",
     {"port-unknown NONE", "times-missing A IN", "times-missing B INOUT", "times-missing D(1) IN"}},
    {"no times, strict", "A, B, Y", {"times-missing A IN", "times-missing B INOUT"}, STRICT},
    {"times where none belong", "Y, U, GND : HP_TIME=1.0",
     {"port-linkage GND", "times-not-allowed Y OUT", "times-not-allowed U BUFFER",
      "times-not-allowed GND LINKAGE"}},
    {"times below zero", "A : LP_TIME=-5.0e-9 HP_TIME=-0.25",
     {"lp-time-negative -5.000000e-09", "hp-time-negative -2.500000e-01"}},
    // input cells
    {"cells of bits", "A[7,4], Q(1)[7,10] :", {"input-cells-of-bit A", "input-cells-of-bit Q(1)"}},
    {"cells of vectors", "D[5], Q[5,6,7,4], P[7] :",
     {"input-cells-of-vector D 2 1", "input-cells-of-vector Q 3 4"}},
    {"cells of other kinds, also of unknown ports", "A[8], NONE[99,1] :",
     {"port-unknown NONE", "input-cell-function 8 INTERNAL", "input-cell-unknown 99",
      "input-cell-function 1 OUTPUT3"}},
    {"rule by rule, description by description",
     "A[99], NONE[7] : AC_SELECT=99 LP_TIME=-1.0; GND[7,8] : HP_TIME=1.0",
     {"port-unknown NONE", "select-pin-type A IN", "select-cell-unknown 99",
      "lp-time-negative -1.000000e+00", "input-cell-unknown 99", "port-linkage GND",
      "times-not-allowed GND LINKAGE", "input-cells-of-bit GND", "input-cell-function 8 INTERNAL"}},
    {"associated ports", "A, D(1) :; D :; b :", {"associated-port D(1)", "associated-port B"},
     0, PORT_GROUPING,
     attribute("PORT_GROUPING", "DIFFERENTIAL_VOLTAGE ((A, Y), (D(0), D(1))), "
                                "DIFFERENTIAL_CURRENT ((U, B), (Q(0), D(0)))")},
};
// clang-format on

TEST(AioChecks, Pulse) { expect_findings(bsdl_check_aio_extest_pulse, pulse, pulse_cases); }

TEST(AioChecks, Train) { expect_findings(bsdl_check_aio_extest_train, train, train_cases); }

TEST(AioChecks, Pins) { expect_findings(bsdl_check_aio_pin_behavior, pins, pin_cases); }

TEST(AioChecks, WhereMessagesPoint)
{
    Reading reading(with_pins("A : LP_TIME=1.0; \" &\n\"NONE : LP_TIME=1.0;\" &\n \"A :\" & \n"
                              "\"LP_TIME=-1.0"));
    EXPECT_EQ(reading.check(bsdl_check_aio_pin_behavior), 100);
    const int first = with_pins("").line(EXTENSIONS);
    ASSERT_EQ(reading.messages().size(), 3U);
    EXPECT_EQ(reading.messages()[0].line, first);
    EXPECT_EQ(reading.messages()[1].line, first + 1);
    EXPECT_EQ(reading.messages()[2].line, first + 3);
}

} // namespace
