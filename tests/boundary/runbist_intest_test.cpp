#include "boundary/boundary.h"

#include "frame/texts.h"
#include "support/description.h"

#include <cmath>

using namespace support;

namespace
{

using support::Reading;

std::string runbist(const std::string &wait)
{
    return attribute("RUNBIST_EXECUTION",
                     "WAIT_DURATION (" + wait + "), OBSERVING HIGHZ AT_PINS, EXPECT_DATA 0101");
}

std::string intest(const std::string &wait)
{
    return attribute("INTEST_EXECUTION",
                     "Wait_Duration (" + wait + "), observing boundary at_pins");
}

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
        texts.push_back(std::string(port_text(cycles->port)) + " " +
                        std::to_string(cycles->cycle_count));
    }
    return texts;
}

TEST(RunbistIntest, StoreTheirParts)
{
    for (const Duration &row : durations) {
        SCOPED_TRACE(row.wait);
        Description description;
        description.with(RUNBIST_EXECUTION, runbist(row.wait))
            .with(INTEST_EXECUTION, intest(row.wait));
        Reading reading(description);
        ASSERT_TRUE(reading.handle());
        EXPECT_EQ(0, bsdlGetNumErrors(reading));
        ExpectedMessages messages = row.messages;
        messages.insert(messages.end(), row.messages.begin(), row.messages.end());
        expect_messages(errors_and_warnings(reading.messages()), messages);
        const RunbistSpec *runbist = reading.handle()->data->runbist;
        const IntestSpec *intest = reading.handle()->data->intest;
        ASSERT_TRUE(runbist && intest);
        for (const WaitSpec *wait : {runbist->wait, intest->wait}) {
            EXPECT_EQ(row.time, wait->wait_time);
            EXPECT_EQ(row.cycles, cycles_of(wait));
        }
        EXPECT_EQ(RUN_CONDITION_HIGHZ, runbist->condition);
        EXPECT_EQ(RUN_CONDITION_BOUNDARY, intest->condition);
        EXPECT_STREQ("0101", runbist->signature);
    }
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
    Description both;
    both.with(RUNBIST_EXECUTION, runbist("TCK 1")).with(INTEST_EXECUTION, intest("TCK 1"));
    expect_messages(told(both), {{INFORMATION, "\tRunbist description statement passed", 3},
                                 {INFORMATION, "\tIntest description statement passed", 3}});
    const std::vector<Expected> skipped = {{ERROR, "Skipping runbist_description due to errors", 1},
                                           {ERROR, "Skipping intest_description due to errors", 1}};
    both.with(RUNBIST_EXECUTION, "attribute RUNBIST_EXECUTION of DEV : entity is 1;")
        .with(INTEST_EXECUTION, "attribute INTEST_EXECUTION of DEV : entity is 1;");
    expect_messages(told(both), skipped);
    // Digits alone are a time and no port, so no count may follow.
    expect_messages(told(Description().with(RUNBIST_EXECUTION, runbist("7 100"))),
                    {skipped[0], {INFORMATION, "\tNo intest description statement", 4}});
}

// ------------------------------------------------------------------------------------------ checks

Expected no_clock(const std::string &port)
{
    return {ERROR, "Port '" + port + "' is not a clock port", 2};
}

Expected not_unique(const std::string &port)
{
    return {ERROR, "Port '" + port + "' is not unique", 2};
}

struct Case {
    const char *name;
    const char *wait = "TCK 1";
    ExpectedMessages clocks = {};
    const char *access = "BIST[4] (RUNBIST)";
    int wrong_length = 0; // of the register that RUNBIST selects
    bool has_instructions = true;
};

const Case cases[] = {
    {.name = "clock of the test access port", .wait = "tck 10"},
    {.name = "time alone", .wait = "1.0e-3"},
    {.name = "port with a CLOCK cell", .wait = "A 10, TCK 5"},
    {.name = "port without", .wait = "Y 10", .clocks = {no_clock("Y")}},
    {.name = "bit of a vector", .wait = "D(1) 10", .clocks = {no_clock("D(1)")}},
    {.name = "clock with a subscript", .wait = "TCK(0) 10", .clocks = {no_clock("TCK(0)")}},
    {.name = "three-fold port",
     .wait = "TCK 1, tck 2, A 4, TCK 3",
     .clocks = {not_unique("TCK"), not_unique("tck")}},
    {.name = "repeated port that is no clock",
     .wait = "D(0) 1, D(0) 2",
     .clocks = {no_clock("D(0)"), not_unique("D(0)"), no_clock("D(0)")}},
    {.name = "no instruction, other rules still run",
     .wait = "Y 10",
     .clocks = {no_clock("Y")},
     .access = "BIST[4] (USER)",
     .has_instructions = false},
    {.name = "register of another length",
     .wait = "Y 1",
     .clocks = {no_clock("Y")},
     .access = "BIST[5] (RUNBIST)",
     .wrong_length = 5},
    {.name = "register of the signature's length", .access = "BIST[4] (runbist), OTHER[9] (USER)"},
    {.name = "the first register of another length ends the search",
     .access = "FIRST[4] (USER, RUNBIST), SECOND[6] (RUNBIST), THIRD[7] (RUNBIST)",
     .wrong_length = 6},
};

Description described(const Case &row)
{
    Description description;
    description
        .replace(INSTRUCTION_OPCODE, "IDCODE (0100)",
                 row.has_instructions ? "IDCODE (0100), RUNBIST (1000), INTEST (1001)"
                                      : "IDCODE (0100), USER (1000)")
        .replace(BOUNDARY_REGISTER, "7 (BC_0, A, input, X)", "7 (BC_4, A, clock, X)")
        .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", row.access))
        .with(RUNBIST_EXECUTION, runbist(row.wait))
        .with(INTEST_EXECUTION, intest(row.wait));
    return description;
}

TEST(RunbistIntest, Check)
{
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(described(row));
        ASSERT_TRUE(reading.handle());
        ASSERT_EQ(0, bsdlGetNumErrors(reading));
        ExpectedMessages messages = row.clocks;
        if (!row.has_instructions)
            messages.insert(messages.begin(),
                            {ERROR, "Intest used, but INTEST instruction does not exist", 2});
        EXPECT_EQ(messages.empty() ? 0 : 100, reading.check(bsdl_check_intest));
        expect_messages(reading.messages(), messages);

        if (!row.has_instructions)
            messages[0].text = "Runbist used, but RUNBIST instruction does not exist";
        if (row.wrong_length)
            messages.push_back({ERROR,
                                "Incorrect expect data pattern length 4, should be " +
                                    std::to_string(row.wrong_length),
                                2});
        EXPECT_EQ(messages.empty() ? 0 : 100, reading.check(bsdl_check_runbist));
        expect_messages(reading.messages(), messages);
    }
}

TEST(RunbistIntest, ResultsForWhatIsAbsent)
{
    EXPECT_EQ(2, bsdl_check_runbist(nullptr));
    EXPECT_EQ(2, bsdl_check_intest(nullptr));

    Reading none{Description()};
    EXPECT_EQ(1, none.check(bsdl_check_runbist));
    EXPECT_EQ(1, none.check(bsdl_check_intest));

    Case plain = {.name = ""};
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
    expect_messages(no_cells.messages(), {no_clock("Y")});
}

} // namespace
