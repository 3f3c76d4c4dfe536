#include "prg/data_file.h"

#include "frame/model.h"
#include "prg/prg.h"

using namespace prg;

namespace
{

using support::Reading;

// The statements of the file itself and the errors, in order: "Revision" and so on for those that
// passed.
using Lines = std::vector<std::string>;

const std::string PASSED = " statement passed";
const std::string PART_A = "\tPPC/PRG ISC Component 'TYPE_A' passed";
const std::string SYNTAX_OK = "PPC/PRG syntax ok";
const std::string SYNTAX_FAILED = "PPC/PRG syntax failed "; /* as is */

Lines lines_of(const Messages &messages)
{
    Lines lines;
    for (const Message &message : messages) {
        const std::string &text = message.text;
        const size_t passed = text.find(PASSED);
        if (message.level == ERROR) {
            EXPECT_EQ(message.verbosity, 1U) << text;
            lines.push_back(text);
        } else if (text.find("PPC/PRG") != std::string::npos) {
            EXPECT_EQ(message.verbosity, 2U) << text;
            lines.push_back(text);
        } else if (text.find("\tNo serial") == 0) {
            EXPECT_EQ(message.verbosity, 4U) << text;
            lines.push_back(text);
        } else if (passed != std::string::npos && text.find("\tISC") && text.find("\tStandard")) {
            EXPECT_EQ(message.verbosity, 3U) << text;
            lines.push_back(text.substr(1, passed - 1));
        }
    }
    return lines;
}

struct StatementCase {
    const char *name;
    DataFile file;
    Lines lines;
};

// clang-format off
const StatementCase statement_cases[] = {
    {"good", {},
     {"Design revision", "Frequency", "Serial channels", "Program reference", PART_A, SYNTAX_OK}},
    {"no channels, no family", {.channels = "", .families = ""},
     {"Design revision", "Frequency", "\tNo serial channels statement", "Program reference",
      SYNTAX_OK}},
    {"names in another case and others",
     {.frequency = of("board", "PRG_FREQUENCY", "1"),
      .channels = of("CARD", "PRG_SERIAL_CHANNELS", "TAP1"),
      .end = "end CARD;"},
     {"Design revision", "Frequency", "Design name 'CARD' not consistent", "Serial channels",
      "Program reference", PART_A, "Design name 'CARD' not consistent", SYNTAX_OK}},
    {"revision given up",
     {.revision = "attribute PRG_DESIGN_REVISION of BOARD : entity is \"A\";\n"},
     {"parse error, expecting `error' or `IDENTIFIER', found '\"A\"' on line 3\n",
      "Skipping design_revision due to errors", "Frequency", "Serial channels",
      "Program reference", PART_A, SYNTAX_FAILED}},
    {"channels given up",
     {.channels = "attribute PRG_SERIAL_CHANNELS of BOARD : entity is 5;\n"},
     {"Design revision", "Frequency",
      "parse error, expecting `error' or `QUOTED_STRING', found '5' on line 5\n",
      "Skipping serial channels due to errors", "Program reference", PART_A, SYNTAX_FAILED}},
};
// clang-format on

TEST(PrgStatements, Messages)
{
    for (const StatementCase &row : statement_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(row.file.text(), options());
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(lines_of(reading.messages()), row.lines);
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
        {"blanks part file names", {.programs = programs("PROGRAM_SVF U1 T a b::c")}},
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
        Lines lines;
    } rows[] = {
        {"two parts",
         family("TYPE_A") + family("TYPE_B"),
         {PART_A, "\tPPC/PRG ISC Component 'TYPE_B' passed", SYNTAX_OK}},
        {"another case", family("TYPE_A", status_of("type_a")), {PART_A, SYNTAX_OK}},
        {"another name",
         family("TYPE_A", status_of("TYPE_B")),
         {"Component name 'TYPE_B' not consistent"}},
        {"the name before",
         family("TYPE_A") + family("TYPE_B", status_of("TYPE_A")),
         {PART_A, "Component name 'TYPE_A' not consistent"}},
        {"the action renames the part",
         family("TYPE_A",
                {{"ISC_ACTION", of("TYPE_B", "ISC_ACTION", "FINISH = (PROC_PROGRAM_DONE)")}}),
         {"\tPPC/PRG ISC Component 'TYPE_B' passed", SYNTAX_OK}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(DataFile{.families = row.families}.text(), options());
        Lines lines = lines_of(reading.messages());
        lines.erase(lines.begin(), lines.begin() + 4); // the statements before
        EXPECT_EQ(lines, row.lines);
    }
}

} // namespace
