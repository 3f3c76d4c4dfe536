#include "boundary/boundary.h"

#include "support/description.h"

#include <cmath>

using namespace support;

namespace
{

using support::Reading;

struct Duration {
    std::string wait;
    float time;
    std::vector<std::string> cycles;
    ExpectedMessages messages = {};
};

const Duration durations[] = {
    {"1.0e-3", 1.0e-3f, {}},
    {"2", 2.0f, {}},
    {"TCK 100", 0, {"TCK 100"}},
    {"TCK 100, D(1) 12, A 3", 0, {"TCK 100", "D(1) 12", "A 3"}},
    {".5, TCK 16", 0.5f, {"TCK 16"}},
    {"1.0e400", INFINITY, {}},
    {"TCK 0",
     0,
     {"TCK 0"},
     {{ERROR, "Value of cycle_count in duration spec should be greater than 0 (now 0)", 1}}},
    {"0.0, TCK 1",
     0,
     {"TCK 1"},
     {{ERROR, "Value of time in duration spec should be greater than 0 (now 0.000000)", 1}}},
    {"-2.5",
     -2.5f,
     {},
     {{ERROR, "Value of time in duration spec should be greater than 0 (now -2.500000)", 1}}},
};

std::vector<std::string> cycles_of(const WaitSpec *wait)
{
    std::vector<std::string> texts;
    for (const GSList *link = wait->clock_cycles; link; link = link->next) {
        const auto *cycles = static_cast<const ClockCycles *>(link->data);
        std::string port = cycles->port->name;
        if (cycles->port->subscripted)
            port += "(" + std::to_string(cycles->port->subscript) + ")";
        texts.push_back(port + " " + std::to_string(cycles->cycle_count));
    }
    return texts;
}

TEST(Runbist, StoresDuration)
{
    for (const Duration &row : durations) {
        SCOPED_TRACE(row.wait);
        Description description;
        description.with(RUNBIST_EXECUTION,
                         attribute("RUNBIST_EXECUTION", "WAIT_DURATION (" + row.wait +
                                                            "), OBSERVING HIGHZ AT_PINS, "
                                                            "EXPECT_DATA 0101"));
        Reading reading(description);
        ASSERT_TRUE(reading.handle());
        EXPECT_EQ(0, bsdlGetNumErrors(reading));
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        const RunbistSpec *spec = reading.handle()->data->runbist;
        ASSERT_TRUE(spec);
        EXPECT_EQ(row.time, spec->wait->wait_time);
        EXPECT_EQ(row.cycles, cycles_of(spec->wait));
        EXPECT_EQ(RUN_CONDITION_HIGHZ, spec->condition);
        EXPECT_STREQ("0101", spec->signature);
        EXPECT_EQ(description.line(RUNBIST_EXECUTION), spec->line);
    }
}

TEST(Intest, StoresConditionAndDuration)
{
    Reading reading(Description().with(
        INTEST_EXECUTION,
        attribute("INTEST_EXECUTION", "Wait_Duration (TCK 7), observing boundary at_pins")));
    const IntestSpec *spec = reading.handle()->data->intest;
    ASSERT_TRUE(spec);
    EXPECT_EQ(RUN_CONDITION_BOUNDARY, spec->condition);
    EXPECT_EQ(std::vector<std::string>{"TCK 7"}, cycles_of(spec->wait));
}

TEST(RunbistIntest, StatementMessages)
{
    auto told = [](const Description &description) {
        Reading reading(description);
        return picked(reading.messages(), [](const Message &message) {
            return message.text.find("unbist") != std::string::npos ||
                   message.text.find("ntest") != std::string::npos;
        });
    };
    expect_messages(told(Description()), {{INFORMATION, "\tNo runbist description statement", 4},
                                          {INFORMATION, "\tNo intest description statement", 4}});
    Description both;
    both.with(RUNBIST_EXECUTION,
              attribute("RUNBIST_EXECUTION",
                        "WAIT_DURATION (TCK 1), OBSERVING BOUNDARY AT_PINS, EXPECT_DATA 1"))
        .with(INTEST_EXECUTION,
              attribute("INTEST_EXECUTION", "WAIT_DURATION (TCK 1), OBSERVING HIGHZ AT_PINS"));
    expect_messages(told(both), {{INFORMATION, "\tRunbist description statement passed", 3},
                                 {INFORMATION, "\tIntest description statement passed", 3}});
    both.with(RUNBIST_EXECUTION, "attribute RUNBIST_EXECUTION of DEV : entity is 1;")
        .with(INTEST_EXECUTION, "attribute INTEST_EXECUTION of DEV : entity is 1;");
    expect_messages(told(both), {{ERROR, "Skipping runbist_description due to errors", 1},
                                 {ERROR, "Skipping intest_description due to errors", 1}});
}

// ------------------------------------------------------------------------------------------ checks

ExpectedMessages no_clock(const std::string &port)
{
    return {{ERROR, "Port '" + port + "' is not a clock port", 2}};
}

struct Case {
    const char *name;
    const char *wait;
    const char *signature = "0101";
    const char *opcodes = "RUNBIST (1000), INTEST (1001)";
    const char *access = "BIST[4] (RUNBIST)";
    int32_t result = 0;
    ExpectedMessages messages = {};
};

const Case cases[] = {
    {.name = "clock of the test access port", .wait = "tck 10"},
    {.name = "time alone", .wait = "1.0e-3"},
    {.name = "port with a CLOCK cell", .wait = "A 10, TCK 5"},
    {.name = "port without", .wait = "Y 10", .result = 100, .messages = no_clock("Y")},
    {.name = "bit of a vector", .wait = "D(1) 10", .result = 100, .messages = no_clock("D(1)")},
    {.name = "clock with a subscript",
     .wait = "TCK(0) 10",
     .result = 100,
     .messages = no_clock("TCK(0)")},
    {.name = "three-fold port",
     .wait = "TCK 1, tck 2, A 4, TCK 3",
     .result = 100,
     .messages = {{ERROR, "Port 'TCK' is not unique", 2}, {ERROR, "Port 'tck' is not unique", 2}}},
    {.name = "repeated port that is no clock",
     .wait = "D(0) 1, D(0) 2",
     .result = 100,
     .messages = {{ERROR, "Port 'D(0)' is not a clock port", 2},
                  {ERROR, "Port 'D(0)' is not unique", 2},
                  {ERROR, "Port 'D(0)' is not a clock port", 2}}},
    {.name = "no instruction, other rules still run",
     .wait = "Y 10",
     .opcodes = "USER (1000)",
     .access = "BIST[4] (USER)",
     .result = 100,
     .messages = {{ERROR, "%s used, but %S instruction does not exist", 2},
                  {ERROR, "Port 'Y' is not a clock port", 2}}},
};

Description described(const Case &row)
{
    Description description;
    description
        .replace(INSTRUCTION_OPCODE, "IDCODE (0100)", "IDCODE (0100), " + std::string(row.opcodes))
        .replace(BOUNDARY_REGISTER, "7 (BC_0, A, input, X)", "7 (BC_4, A, clock, X)")
        .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", row.access))
        .with(RUNBIST_EXECUTION,
              attribute("RUNBIST_EXECUTION", "WAIT_DURATION (" + std::string(row.wait) +
                                                 "), OBSERVING HIGHZ AT_PINS, EXPECT_DATA " +
                                                 row.signature))
        .with(INTEST_EXECUTION,
              attribute("INTEST_EXECUTION",
                        "WAIT_DURATION (" + std::string(row.wait) + "), OBSERVING HIGHZ AT_PINS"));
    return description;
}

ExpectedMessages worded(ExpectedMessages messages, const char *statement, const char *instruction)
{
    for (Expected &message : messages) {
        if (message.text.starts_with("%s"))
            message.text.replace(0, 2, statement);
        if (size_t at = message.text.find("%S"); at != std::string::npos)
            message.text.replace(at, 2, instruction);
    }
    return messages;
}

TEST(RunbistIntest, Check)
{
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(described(row));
        ASSERT_TRUE(reading.handle());
        ASSERT_EQ(0, bsdlGetNumErrors(reading));
        EXPECT_EQ(row.result, reading.check(bsdl_check_runbist));
        expect_messages(reading.messages(), worded(row.messages, "Runbist", "RUNBIST"));
        EXPECT_EQ(row.result, reading.check(bsdl_check_intest));
        expect_messages(reading.messages(), worded(row.messages, "Intest", "INTEST"));
    }
}

TEST(Runbist, SignatureHasTheLengthOfTheRegister)
{
    struct {
        const char *access;
        ExpectedMessages messages;
    } const lengths[] = {
        {"BIST[5] (RUNBIST)", {{ERROR, "Incorrect expect data pattern length 4, should be 5", 2}}},
        {"BIST[4] (runbist), OTHER[9] (USER)", {}},
        // The first register of another length ends the search.
        {"FIRST[4] (USER, RUNBIST), SECOND[6] (RUNBIST), THIRD[7] (RUNBIST)",
         {{ERROR, "Incorrect expect data pattern length 4, should be 6", 2}}},
    };
    for (const auto &row : lengths) {
        SCOPED_TRACE(row.access);
        Reading reading(described({.name = "", .wait = "TCK 1", .access = row.access}));
        EXPECT_EQ(row.messages.empty() ? 0 : 100, reading.check(bsdl_check_runbist));
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(RunbistIntest, ResultsForWhatIsAbsent)
{
    EXPECT_EQ(2, bsdl_check_runbist(nullptr));
    EXPECT_EQ(2, bsdl_check_intest(nullptr));

    Reading none{Description()};
    EXPECT_EQ(1, none.check(bsdl_check_runbist));
    EXPECT_EQ(1, none.check(bsdl_check_intest));

    Case plain = {.name = "", .wait = "TCK 1"};
    Reading no_access(described(plain).without(REGISTER_ACCESS));
    EXPECT_EQ(5, no_access.check(bsdl_check_runbist));
    EXPECT_EQ(0, no_access.check(bsdl_check_intest));

    Reading no_opcodes(described(plain).with(INSTRUCTION_OPCODE,
                                             "attribute INSTRUCTION_OPCODE of DEV : entity is 1;"));
    EXPECT_EQ(5, no_opcodes.check(bsdl_check_runbist));
    EXPECT_EQ(5, no_opcodes.check(bsdl_check_intest));

    Case user = {.name = "", .wait = "Y 1"};
    Reading no_cells(described(user).with(BOUNDARY_REGISTER,
                                          "attribute BOUNDARY_REGISTER of DEV : entity is 1;"));
    EXPECT_EQ(100, no_cells.check(bsdl_check_intest));
    expect_messages(no_cells.messages(), no_clock("Y"));
}

} // namespace
