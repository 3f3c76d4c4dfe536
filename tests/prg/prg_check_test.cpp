#include "prg/data_file.h"

using namespace prg;

namespace
{

using support::Reading;

const Expected REFERENCE_PASSED = {INFORMATION, "\tPPC/PRG program reference passed", 3};
const Expected REFERENCE_FAILED = {ERROR, "\tPPC/PRG program reference has errors", 1};
const Expected EXTENSIONS_PASSED = {INFORMATION, "\tPPC/PRG extensions passed", 3};
const Expected EXTENSIONS_FAILED = {ERROR, "\tPPC/PRG extensions has errors", 1};
const Expected PASS = {INFORMATION, "\tISC tests done PASS", 3};
const Expected FAIL = {INFORMATION, "\tISC tests done FAIL", 3};

// The lines about one part, but for those of checks that passed.
ExpectedMessages part_lines(const std::string &part, const std::string &wrong = "",
                            const std::vector<std::string> &errors = {})
{
    ExpectedMessages lines = {{PROGRESS, "Checking ISC part type '" + part + "'", 2}};
    for (const std::string &text : errors)
        lines.push_back({ERROR, text, 2});
    if (!wrong.empty())
        lines.push_back({ERROR, "\tISC " + wrong + " has errors", 1});
    return lines;
}

Messages told(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        return !message.text.starts_with("\tISC ") || !message.text.ends_with(" passed");
    });
}

TEST(PrgCheck, PartAfterPart)
{
    Reading reading(DataFile{.families = family("TYPE_A") + family("Type_B")}.text(), options());
    EXPECT_EQ(reading.check(bsdl_check_prg), 0);
    expect_messages(told(reading.messages()), joined({{REFERENCE_PASSED, EXTENSIONS_PASSED},
                                                      part_lines("TYPE_A"),
                                                      part_lines("Type_B"),
                                                      {PASS}}));
    EXPECT_EQ(reading.messages().at(3).text, "\tISC pin behaviour description passed");
}

TEST(PrgCheck, ReferencesToTypes)
{
    Reading reading(DataFile{.programs = programs("PROGRAM_ISC U1 type_a PROGRAM_SVF U2 TYPE_A "
                                                  "PROGRAM_JAM U3 TYPE_C PROGRAM_ISC U4 TYPE_D")}
                        .text(),
                    options());
    const ExpectedMessages missing = {{ERROR, "type 'TYPE_C' not specified", 2},
                                      {ERROR, "type 'TYPE_D' not specified", 2}};
    EXPECT_EQ(reading.check(bsdl_check_prg_prog_ref), 100);
    expect_messages(reading.messages(), missing);
    EXPECT_EQ(reading.check(bsdl_check_prg), 100);
    expect_messages(
        told(reading.messages()),
        joined({missing, {REFERENCE_FAILED, EXTENSIONS_PASSED}, part_lines("TYPE_A"), {FAIL}}));
}

TEST(PrgCheck, WithoutParts)
{
    Reading bare(DataFile{.families = ""}.text(), options());
    EXPECT_EQ(bare.check(bsdl_check_prg), 100);
    expect_messages(
        bare.messages(),
        {{ERROR, "type 'TYPE_A' not specified", 2}, REFERENCE_FAILED, EXTENSIONS_PASSED, FAIL});

    // A description has no references, and keeps its family.
    Reading description{Description()};
    EXPECT_EQ(description.check(bsdl_check_prg), 0);
    expect_messages(description.messages(), {REFERENCE_PASSED, EXTENSIONS_PASSED, PASS});

    EXPECT_EQ(bsdl_check_prg(nullptr), 2);
    EXPECT_EQ(bsdl_check_prg_prog_ref(nullptr), 0);
    Reading released(DataFile{}.text(), options());
    freeBsdl(released);
    EXPECT_EQ(bsdl_check_prg(released), 0);
    EXPECT_EQ(bsdl_check_prg_prog_ref(released), 0);
}

// The list of extensions is settled by the first check, so that a second one finds definitions
// without their declarations, and a third one nothing at all.
TEST(PrgCheck, ExtensionsOfASecondCheck)
{
    Reading reading(DataFile{}.text(), options());
    EXPECT_EQ(reading.check(bsdl_check_prg), 0);
    EXPECT_EQ(reading.check(bsdl_check_prg), 100);
    EXPECT_TRUE(reading.has("\tPPC/PRG extensions has errors"));
    EXPECT_EQ(reading.check(bsdl_check_prg), 0);

    // Without the package nothing declares them.
    Reading undeclared(DataFile{.uses = ""}.text(), options());
    EXPECT_EQ(undeclared.check(bsdl_check_extensions), 100);
    EXPECT_EQ(undeclared.messages()[0].text,
              "Extension 'ISC_Conformance' in '(null)' is defined but not declared");
}

struct PartCase {
    const char *statement;
    std::string text;
    const char *wrong; // what then fails, "" for nothing
    std::vector<std::string> errors = {};
};

const auto unreadable = [](const std::string &statement) {
    return "attribute " + statement + " of TYPE_A : entity is wrong;";
};

// clang-format off
const PartCase part_cases[] = {
    {"ISC_FIXED_SYSTEM_PINS", of("TYPE_A", "ISC_FIXED_SYSTEM_PINS", "A"), "fixed pins description"},
    {"ISC_STATUS", unreadable("ISC_STATUS"), "status description"},
    {"ISC_BLANK_USERCODE", unreadable("ISC_BLANK_USERCODE"), "blank usercode description"},
    {"ISC_SECURITY",
     of("TYPE_A", "ISC_SECURITY",
        "ISC_DISABLE_READ 0, ISC_DISABLE_PROGRAM 1, ISC_DISABLE_ERASE 2, ISC_DISABLE_KEY 3-7"),
     "security description",
     {"the numerical value of ISC_DISABLE_KEY msb must be greater or equal to the value of lsb"}},
    {"ISC_PROCEDURE", of("TYPE_A", "ISC_PROCEDURE", "PROC_PROGRAM_DONE = (F_ON)"),
     "procedure description", {"mandatory procedure PROC_ERROR_EXIT not found"}},
    {"ISC_ACTION", of("TYPE_A", "ISC_ACTION", "FINISH = (NONE)"),
     "action description", {"procedure name: \"NONE\" does not exist in procedure_list"}},
    // A data file has no instructions, so this statement cannot pass.
    {"ISC_ILLEGAL_EXIT", of("TYPE_A", "ISC_ILLEGAL_EXIT", "BYPASS"), "illegal exit description"},
    {"ISC_DESIGN_WARNING", of("TYPE_A", "ISC_DESIGN_WARNING", "hot"), ""},
};
// clang-format on

TEST(PrgCheck, EachStatementOfAPart)
{
    for (const PartCase &row : part_cases) {
        SCOPED_TRACE(row.statement);
        Reading reading(
            DataFile{.families = family("TYPE_A", {{row.statement, row.text}}) + family("TYPE_B")}
                .text(),
            options());
        const bool fails = *row.wrong;
        EXPECT_EQ(reading.check(bsdl_check_prg), fails ? 100 : 0);
        expect_messages(told(reading.messages()),
                        joined({{REFERENCE_PASSED, EXTENSIONS_PASSED},
                                part_lines("TYPE_A", row.wrong, row.errors),
                                part_lines("TYPE_B"),
                                {fails ? FAIL : PASS}}));
    }
}

} // namespace
