#include "prg/data_file.h"

#include "frame/model.h"
#include "prg/prg.h"

using namespace prg;

namespace
{

using support::Reading;

const Expected REVISION = {INFORMATION, "\tDesign revision statement passed", 3};
const Expected FREQUENCY = {INFORMATION, "\tFrequency statement passed", 3};
const Expected CHANNELS = {INFORMATION, "\tSerial channels statement passed", 3};
const Expected PROGRAMS = {INFORMATION, "\tProgram reference statement passed", 3};
const Expected PART_A = {INFORMATION, "\tPPC/PRG ISC Component 'TYPE_A' passed", 2};
const Expected SYNTAX_OK = {INFORMATION, "PPC/PRG syntax ok", 2};
const Expected SYNTAX_FAILED = {INFORMATION, "PPC/PRG syntax failed ", 2};

Expected design_mismatch(const std::string &name)
{
    return {ERROR, "Design name '" + name + "' not consistent", 1};
}

// Without the lines of the statements of IEEE 1532.
Messages of_the_file(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        return message.level == ERROR || message.text.find("PPC/PRG") != std::string::npos ||
               message.text.find("\tDesign revision") == 0 ||
               message.text.find("\tFrequency") == 0 || message.text.find("erial channels") < 12 ||
               message.text.find("\tProgram reference") == 0;
    });
}

struct StatementCase {
    const char *name;
    DataFile file;
    int errors;
    ExpectedMessages messages;
};

const StatementCase statement_cases[] = {
    {"good", {}, 0, {REVISION, FREQUENCY, CHANNELS, PROGRAMS, PART_A, SYNTAX_OK}},
    {"no channels, no family",
     {.channels = "", .families = ""},
     0,
     {REVISION,
      FREQUENCY,
      {INFORMATION, "\tNo serial channels statement", 4},
      PROGRAMS,
      SYNTAX_OK}},
    {"names in another case and others",
     {.frequency = of("board", "PRG_FREQUENCY", "1"),
      .channels = of("CARD", "PRG_SERIAL_CHANNELS", "TAP1"),
      .end = "end CARD;"},
     0,
     {REVISION, FREQUENCY, design_mismatch("CARD"), CHANNELS, PROGRAMS, PART_A,
      design_mismatch("CARD"), SYNTAX_OK}},
    {"revision given up",
     {.revision = "attribute PRG_DESIGN_REVISION of BOARD : entity is \"A\";\n"},
     1,
     {{ERROR, "parse error, expecting `error' or `IDENTIFIER', found '\"A\"' on line 3\n", 1},
      {ERROR, "Skipping design_revision due to errors", 1},
      FREQUENCY,
      CHANNELS,
      PROGRAMS,
      PART_A,
      SYNTAX_FAILED}},
    {"channels given up",
     {.channels = "attribute PRG_SERIAL_CHANNELS of BOARD : entity is 5;\n"},
     1,
     {REVISION,
      FREQUENCY,
      {ERROR, "parse error, expecting `error' or `QUOTED_STRING', found '5' on line 5\n", 1},
      {ERROR, "Skipping serial channels due to errors", 1},
      PROGRAMS,
      PART_A,
      SYNTAX_FAILED}},
};

TEST(PrgStatements, Messages)
{
    for (const StatementCase &row : statement_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(row.file.text(), options());
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(bsdlGetNumErrors(reading), row.errors);
        expect_messages(of_the_file(reading.messages()), row.messages);
        EXPECT_STREQ(bsdlComponentName(reading), "BOARD");
    }
}

TEST(PrgStatements, TextsThatTheGrammarRefuses)
{
    const struct {
        const char *name;
        DataFile file;
    } rows[] = {
        {"no revision", {.revision = ""}},
        {"no frequency", {.frequency = ""}},
        {"no programs", {.programs = ""}},
        {"frequency in hexadecimal", {.frequency = of("BOARD", "PRG_FREQUENCY", "1F")}},
        {"no tap", {.channels = channels("U1 BYPASS (0)")}},
        {"an empty value", {.channels = channels("TAP1 U1 BYPASS ()")}},
        {"a value of other digits", {.channels = channels("TAP1 U1 BYPASS (012)")}},
        {"a channel too few", {.channels = channels("TAP1 U1 BYPASS (0) ,")}},
        {"no type", {.programs = programs("PROGRAM_SVF U1")}},
        {"three files", {.programs = programs("PROGRAM_SVF U1 T a :: b :: c")}},
        {"colons alone", {.programs = programs("PROGRAM_SVF U1 T ::")}},
        {"an unknown program", {.programs = programs("PROGRAM_XYZ U1 T a")}},
        {"a family without flows", {.families = family("TYPE_A", {{"ISC_FLOW", ""}})}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(row.file.text(), options());
        EXPECT_GE(bsdlGetNumErrors(reading), 1);
        EXPECT_FALSE(reading.has("PPC/PRG syntax ok"));
    }
}

TEST(PrgStatements, PartsOfTwoChannels)
{
    Reading reading(
        DataFile{.channels = channels("TAP1 U1 BYPASS (0) U2 SAMPLE (1), TAP2 u1 IDCODE (X)")}
            .text(),
        options());
    // Channels keep all settings, the list of parts the first of each name.
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    const GSList *names = reading.handle()->prg->component_names;
    ASSERT_EQ(g_slist_length(const_cast<GSList *>(names)), 2U);
    EXPECT_STREQ(static_cast<PrgComponentSetting *>(names->data)->instruction_name, "BYPASS");
    EXPECT_STREQ(static_cast<PrgComponentSetting *>(names->next->data)->part_name, "U2");
}

// A family names its part where the first statement of it does, and all others must agree.
TEST(PrgStatements, NamesOfFamilies)
{
    const auto status_of = [](const char *part) {
        return std::map<std::string, std::string>{
            {"ISC_STATUS", of(part, "ISC_STATUS", "IMPLEMENTED")}};
    };
    const struct {
        const char *name;
        std::string families;
        int errors;
        ExpectedMessages messages;
    } rows[] = {
        {"two parts",
         family("TYPE_A") + family("TYPE_B"),
         0,
         {PART_A, {INFORMATION, "\tPPC/PRG ISC Component 'TYPE_B' passed", 2}, SYNTAX_OK}},
        {"another case", family("TYPE_A", status_of("type_a")), 0, {PART_A, SYNTAX_OK}},
        {"another name",
         family("TYPE_A", status_of("TYPE_B")),
         1,
         {{ERROR, "Component name 'TYPE_B' not consistent", 1}}},
        {"the name before",
         family("TYPE_A") + family("TYPE_B", status_of("TYPE_A")),
         1,
         {PART_A, {ERROR, "Component name 'TYPE_A' not consistent", 1}}},
        {"the action renames the part",
         family("TYPE_A",
                {{"ISC_ACTION", of("TYPE_B", "ISC_ACTION", "FINISH = (PROC_PROGRAM_DONE)")}}),
         0,
         {{INFORMATION, "\tPPC/PRG ISC Component 'TYPE_B' passed", 2}, SYNTAX_OK}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(DataFile{.families = row.families}.text(), options());
        EXPECT_EQ(bsdlGetNumErrors(reading), row.errors);
        expect_messages(picked(reading.messages(),
                               [](const Message &message) {
                                   return message.level == ERROR ||
                                          message.text.find("PPC/PRG") != std::string::npos;
                               }),
                        row.messages);
    }
}

TEST(PrgStatements, CutAfterEachToken)
{
    const std::string text = read_text(example("two_taps.prg"));
    for (size_t at = 0; at < text.size(); at++) {
        if (!std::isspace(static_cast<unsigned char>(text[at])) ||
            (at && std::isspace(text[at - 1])))
            continue;
        Reading reading(text.substr(0, at), options());
        reading.check(bsdl_check_prg);
        bsdlPrgFirstTap(reading);
        bsdlPrgFirstComponent(reading);
        bsdlPrgFirstProgPart(reading);
        bsdlIscFirstFixedPin(reading);
    }
    Reading after(text, options());
    EXPECT_EQ(bsdlGetNumErrors(after), 0);
}

} // namespace
