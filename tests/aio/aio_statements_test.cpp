#include "aio/aio_description.h"

#include "frame/model.h"

using namespace aio;

namespace
{

using support::Reading;

struct StatementCase {
    const char *name;
    std::string text;
    std::vector<std::string> lines; // names of statements that passed, and errors
};

const std::string UNQUOTED = " of DEV : entity is STD;";
const char *const NO_STRING =
    "parse error, expecting `error' or `QUOTED_STRING', found 'STD' on line 19\n";

// clang-format off
const StatementCase statement_cases[] = {
    {"all of them",
     CONFORMANCE_1149_6 + pulse("WAIT_DURATION 1.0e-6") + train("TRAIN 2") + pins("A"),
     {"AIO_Component_Conformance", "AIO_EXTEST_Pulse_Execution", "AIO_EXTEST_Train_Execution",
      "AIO_Pin_Behavior"}},
    {"the train first, without a word",
     CONFORMANCE_1149_6 + train("TRAIN 2") + pulse("WAIT_DURATION TCK 4"),
     {"AIO_Component_Conformance", "AIO_EXTEST_Train_Execution", "AIO_EXTEST_Pulse_Execution"}},
    {"conformance given up", "attribute AIO_COMPONENT_CONFORMANCE" + UNQUOTED + train("TRAIN 2"),
     {NO_STRING, "Skipping AIO_Component_Conformance due to errors", "AIO_EXTEST_Train_Execution"}},
    {"pulse given up",
     CONFORMANCE_1149_6 + ("attribute AIO_EXTEST_PULSE_EXECUTION" + UNQUOTED) + train("TRAIN 2"),
     {"AIO_Component_Conformance", NO_STRING, "Skipping AIO_EXTEST_Pulse_Execution due to errors",
      "AIO_EXTEST_Train_Execution"}},
    {"train given up",
     CONFORMANCE_1149_6 + ("attribute AIO_EXTEST_TRAIN_EXECUTION" + UNQUOTED) + pins("A"),
     {"AIO_Component_Conformance", NO_STRING, "Skipping AIO_EXTEST_Train_Execution due to errors",
      "AIO_Pin_Behavior"}},
};
// clang-format on

TEST(AioStatements, Messages)
{
    for (const StatementCase &row : statement_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(statements(row.text));
        ASSERT_NE(reading.handle(), nullptr);
        ExpectedMessages expected;
        for (const std::string &line : row.lines)
            expected.push_back(line.find("AIO") == 0
                                   ? Expected{INFORMATION, "\t" + line + " statement passed", 3}
                                   : Expected{ERROR, line, 1});
        expected.push_back({INFORMATION, "\tBSDL AIO extensions found", 2});
        expect_messages(picked(reading.messages(),
                               [](const Message &message) {
                                   return message.level <= WARNING ||
                                          message.text.find("\tAIO") == 0 ||
                                          message.text.find("\tBSDL AIO") == 0;
                               }),
                        expected);
    }
}

TEST(AioStatements, TextsThatTheGrammarRefuses)
{
    const std::string refused[] = {
        pulse("WAIT_DURATION TCK 4"),                                // no conformance
        CONFORMANCE_1149_6 + pins("A") + pulse("WAIT_DURATION 1.0"), // order
        CONFORMANCE_1149_6 + train("TRAIN 2") + train("TRAIN 2"),    // twice
        CONFORMANCE_1149_6 + train("TRAIN 2.5"),
        CONFORMANCE_1149_6 + train("TRAIN 2 MAXIMUM_TIME 1.0"),
        CONFORMANCE_1149_6 + pins("A[]"),
        CONFORMANCE_1149_6 + pins("A[1 2]"),
        CONFORMANCE_1149_6 + pins("A : HP_TIME=1.0 LP_TIME=1.0"),
        CONFORMANCE_1149_6 + pins("A : ON_CHIP"),
        CONFORMANCE_1149_6 + pins("A : LP_TIME=1.0;"),
        CONFORMANCE_1149_6 + pins("A, : LP_TIME=1.0"),
        CONFORMANCE_1149_6 + pins("A : AC_SELECT=8 AC_SELECT=8"),
    };
    for (const std::string &text : refused) {
        SCOPED_TRACE(text);
        Reading reading(statements(text));
        EXPECT_GE(bsdlGetNumErrors(reading), 1);
    }
}

TEST(AioStatements, NamesStandInTheListOfExtensions)
{
    // The package declares them; without it each is reported where the others are.
    Options bare;
    bare.files["std_1149_6_2003.all"] = "package STD_1149_6_2003 is end STD_1149_6_2003; "
                                        "package body STD_1149_6_2003 is end STD_1149_6_2003;";
    Reading reading(
        statements(CONFORMANCE_1149_6 + pulse("WAIT_DURATION 1.0") + train("TRAIN 1") + pins("A")),
        bare);
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_extensions), 100);
    ExpectedMessages expected;
    for (const char *name : {"AIO_Component_Conformance", "AIO_EXTEST_Pulse_Execution",
                             "AIO_EXTEST_Train_Execution", "AIO_Pin_Behavior"})
        expected.push_back(
            {ERROR, std::string("Extension '") + name + "' in 'DEV' is defined but not declared",
             1});
    expect_messages(reading.messages(), expected);
}

// The words of the family are in force inside of it alone, whichever family comes first.
TEST(AioStatements, BesideThoseOfIeee1532)
{
    const std::string isc =
        attribute("ISC_CONFORMANCE", "STD_1532_2002") + attribute("ISC_PIN_BEHAVIOR", "HIGHZ") +
        attribute("ISC_STATUS", "IMPLEMENTED") +
        attribute("ISC_BLANK_USERCODE", "11111111111111111111111111111111") +
        attribute("ISC_FLOW", "F INITIALIZE (BYPASS WAIT TCK 1)") +
        attribute("ISC_PROCEDURE", "P = (F)") + attribute("ISC_ACTION", "A = (P)");
    const std::string all_aio = CONFORMANCE_1149_6 + train("TRAIN 1, MAXIMUM_TIME 1.0") +
                                pins("A[7] : AC_SELECT=8 LP_TIME=1.0 HP_TIME=1.0 ON_CHIP");
    for (const std::string &text : {isc + all_aio, all_aio + isc}) {
        Description description = statements(text);
        description.with(USES, "use STD_1532_2002.all; use STD_1149_6_2003.all;");
        Reading reading(description);
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(bsdlGetNumErrors(reading), 0);
        EXPECT_TRUE(reading.has("\tBSDL ISC extensions found"));
        EXPECT_TRUE(reading.has("\tBSDL AIO extensions found"));
        EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(reading), 1);
        EXPECT_EQ(reading.handle()->standards_filter, 0U);
    }
}

} // namespace
