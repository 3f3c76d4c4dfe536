#include "cases.h"

using namespace support;

namespace
{

// ------------------------------------------------------------------------------------------- check

const Replacement NO_IDCODE = {IDCODE_REGISTER, ""};
// With an instruction of the user's in the table.
const Replacement MINE = opcodes(BASE_2001 + ", CLAMP (0011), IDCODE (0100), MINE (0101)");
const Replacement MINE_1990 = opcodes(BASE + ", CLAMP (0011), IDCODE (0100), MINE (0101)");

const Expected BYPASS_ADDED = {INFORMATION, "\tRegister 'BYPASS' added", 4};
const Expected BOUNDARY_ADDED = {INFORMATION, "\tRegister 'BOUNDARY' added", 4};
const Expected DEVICE_ID_ADDED = {INFORMATION, "\tRegister 'DEVICE_ID' added", 4};

// All standard registers named by the file, so that none is added.
Replacement registers(const std::string &more = "")
{
    return access("BYPASS (BYPASS), BOUNDARY (SAMPLE), DEVICE_ID (IDCODE)" + more);
}

const CheckCase CASES[] = {
    {"no statement: two boundary registers where there is PRELOAD",
     {},
     {BYPASS_ADDED, BOUNDARY_ADDED, BOUNDARY_ADDED, DEVICE_ID_ADDED}},
    {"no statement of 1990",
     {},
     {BYPASS_ADDED, BOUNDARY_ADDED, {INFORMATION, "\tRegister 'IDCODE' added", 4}},
     Issue::BSDL_1990},
    {"no IDCODE, no identification register",
     {opcodes(BASE_2001), NO_IDCODE},
     {BYPASS_ADDED, BOUNDARY_ADDED, BOUNDARY_ADDED}},
    {"1532 has one for USERCODE; IDCODE finds it",
     {{USES, "use STD_1532_2002.all;"}},
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "instruction 'USERCODE' not found", 2},
      DEVICE_ID_ADDED}},
    {"all named by the file, lengths of standard registers do not matter",
     {MINE, access("BYPASS[3] (BYPASS), BOUNDARY[12] (SAMPLE), DEVICE_ID[7] (IDCODE), "
                   "MINE[2] (MINE captures 0x)")}},
    {"a register of 1990",
     {MINE_1990, access("BYPASS (BYPASS), BOUNDARY (SAMPLE), IDCODE (IDCODE), mine[2] (MINE)")},
     {},
     Issue::BSDL_1990},
    {"PRELOAD that no register of the file lists takes the boundary register", {registers()}},

    {"lengths",
     {MINE, registers(", UNSIZED (MINE captures 1), EMPTY[0] (CLAMP)")},
     {{ERROR, "public register 'UNSIZED' length not specified", 2},
      {ERROR, "instruction 'MINE' associated with register 'UNSIZED' captures 1 bits, should be -1",
       2},
      {ERROR, "public register 'EMPTY' length cannot be 0", 2}}},
    {"captures of a wrong length",
     {MINE, registers(", BOUNDARY (MINE captures 010)")},
     {{ERROR, "instruction 'MINE' associated with register 'BOUNDARY' captures 3 bits, should be 8",
       2}}},
    {"a mandatory instruction may not say what it captures",
     {MINE, registers(", MINE[2] (MINE captures 01, CLAMP, clamp captures 10, CLAMP captures 11)")},
     {{ERROR, "instruction 'CLAMP' is already associated with register 'MINE'", 2},
      {ERROR, "instruction 'CLAMP' is already associated with register 'MINE'", 2},
      {ERROR, "MANDATORY instruction 'CLAMP' captures '10'", 2},
      {ERROR, "MANDATORY instruction 'CLAMP' captures '11'", 2}}},

    {"a public instruction needs a register",
     {MINE, registers()},
     {{ERROR, "public instruction 'MINE' has no associated register", 2}}},
    {"a private one does not", {MINE, privates("MINE"), registers()}},
    {"an instruction that is not in the table",
     {registers(", OTHER[2] (NOBODY)")},
     {{ERROR,
       "instruction 'NOBODY' in register access table is not found in instruction opcode table",
       2}}},
    {"two registers list one instruction: said, but no failure",
     {MINE, registers(", FIRST[2] (MINE), SECOND[3] (MINE)")},
     {{ERROR, "instruction 'MINE' is already associated with register 'FIRST'", 2}}},
    {"an added register takes its instruction before the file's does",
     {access("BYPASS (BYPASS), MINE[2] (SAMPLE), DEVICE_ID (IDCODE)")},
     {BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "instruction 'SAMPLE' is already associated with register 'BOUNDARY'", 2}}},
    {"BYPASS has the bypass register, CLAMP any",
     {MINE, access("BYPASS (MINE), BOUNDARY (BYPASS, CLAMP), DEVICE_ID (IDCODE)")},
     {{ERROR, "MANDATORY instruction 'BYPASS' uses invalid register BOUNDARY", 2}}},
    {"identification instruction of a description without the register",
     {opcodes(BASE_2001 + ", USERCODE (0100)"), NO_IDCODE},
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "DEVICE_ID register not found while USERCODE instruction is used", 2}}},
    {"the same of 1990",
     {opcodes(BASE + ", USERCODE (0100)"), NO_IDCODE},
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "IDCODE register not found while USERCODE instruction is used", 2}},
     Issue::BSDL_1990},
    {"PRELOAD by the conformance statement alone has no implied register",
     {{CONFORMANCE, attribute("COMPONENT_CONFORMANCE", "STD_1149_1_2001")},
      opcodes(BASE_2001 + ", IDCODE (0100)"),
      registers()},
     {{ERROR, "MANDATORY instruction PRELOAD has no associated register", 2}},
     Issue::BSDL_1994},
};

TEST(RegisterAccess, Rules) { expect_cases(CASES, bsdl_check_reg_access, bsdl_check_instr_reg); }

TEST(RegisterAccess, ResultsWithoutWhatTheCheckNeeds)
{
    EXPECT_EQ(bsdl_check_reg_access(nullptr), 2);
    Reading no_table(described({"", {unread(INSTRUCTION_OPCODE, "INSTRUCTION_OPCODE")}}));
    EXPECT_EQ(no_table.check(bsdl_check_reg_access), 5);
}

// ---------------------------------------------------------------------- what the check writes

// "INSTRUCTION=REGISTER[length]capture" of each instruction.
std::string links_of(Bsdl *handle)
{
    std::string text;
    for (InstructionEntry *entry :
         all_of<InstructionEntry *>(handle, bsdlGetFirstInstruction, bsdlGetNextInstruction))
        text += text_of(entry) + "=" + text_of(bsdlGetInstrRegisterName(entry)) + "[" +
                std::to_string(bsdlGetInstrRegisterLength(entry)) + "]" +
                text_of(bsdlGetInstrCaptureValue(entry)) + " ";
    return text;
}

TEST(RegisterAccess, Links)
{
    struct {
        const char *name;
        Replacement statement;
        const char *links;
    } const rows[] = {
        {"implied registers",
         {REGISTER_ACCESS, ""},
         "PRELOAD=BOUNDARY[8]none BYPASS=BYPASS[1]none EXTEST=BOUNDARY[8]none "
         "SAMPLE=BOUNDARY[8]none CLAMP=BYPASS[1]none IDCODE=DEVICE_ID[32]none MINE=none[0]none "},
        {"registers of the file; bypass captures 0",
         access("MINE[3] (EXTEST, EXTEST captures 111, MINE captures 1x0, MINE captures 111), "
                "BYPASS[9] (BYPASS), BYPASS (CLAMP), BOUNDARY[2] (SAMPLE), DEVICE_ID (IDCODE)"),
         "PRELOAD=BOUNDARY[8]none BYPASS=BYPASS[1]0 EXTEST=MINE[3]none SAMPLE=BOUNDARY[8]none "
         "CLAMP=BYPASS[1]0 IDCODE=DEVICE_ID[32]none MINE=MINE[3]1x0 "},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(described({"", {MINE, row.statement}}));
        reading.check(bsdl_check_instr_reg);
        reading.check(bsdl_check_reg_access);
        EXPECT_EQ(links_of(reading), row.links);
    }
}

// ------------------------------------------------------------------------------ while reading

Messages of_registers(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        return message.text.find("egister access") != std::string::npos ||
               message.text.find("register_access") != std::string::npos ||
               message.text.find("register") == 0 || message.text.find("illegal") == 0;
    });
}

TEST(RegisterAccess, WhileReading)
{
    struct {
        const char *name;
        Replacement statement;
        ExpectedMessages messages; // before the line that it passed, or with the error was skipped
        bool passes = true;
        Issue issue = Issue::BSDL_2001;
    } const rows[] = {
        {"lengths for all",
         access("BOUNDARY[1] (A), BYPASS[2] (B), DEVICE_ID[3] (C), D[4] (D captures x, E)"),
         {}},
        {"no string", unread(REGISTER_ACCESS, "REGISTER_ACCESS"), {}, false},
        {"IDCODE of 1990", access("IDCODE (IDCODE)"), {}, true, Issue::BSDL_1990},
        {"IDCODE of 1994",
         access("BYPASS (BYPASS), IDCODE (IDCODE)"),
         {{ERROR, "illegal device ID register name IDCODE, use DEVICE_ID", 1}},
         false,
         Issue::BSDL_1994},
        {"a repeated register of equal or no length",
         access("A[1] (A), B[2] (B), C (C), b (D), B[2] (E), C (F)"),
         {}},
        {"a repeated register of another length",
         access("A[1] (A), B[2] (B), C[4] (D), b[3] (E)"),
         {{ERROR, "register lengths: 3, 2 not equal", 2}},
         false},
        {"a length after none",
         access("A[1] (A), B (B), B[3] (C)"),
         {{ERROR, "register lengths: 3, -1 not equal", 2}},
         false},
        {"the first register is never joined, its first repetition is",
         access("A[1] (A), A[2] (B), A (C), A[3] (D)"),
         {{ERROR, "register lengths: 3, 2 not equal", 2}},
         false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(described({"", {row.statement}, {}, row.issue}));
        EXPECT_EQ(bsdlGetNumErrors(reading), row.passes ? 0 : 1);
        ExpectedMessages want = row.messages;
        if (row.passes)
            want.push_back({INFORMATION, "\tRegister access statement passed", 3});
        else
            want.push_back({ERROR, "Skipping register_access due to errors", 1});
        expect_messages(of_registers(reading.messages()), want);
    }
}

// Which of equal names stay registers of their own shows in the lengths that the check misses.
TEST(RegisterAccess, ManyRegistersJoin)
{
    std::string all = "FIRST (I0)";
    ExpectedMessages missing = {{ERROR, "public register 'FIRST' length not specified"}};
    for (int i = 0; i < 198; i++)
        all += ", R" + std::to_string(i % 99) + " (I0)";
    for (int i = 0; i < 99; i++)
        missing.push_back(
            {ERROR, "public register 'R" + std::to_string(i) + "' length not specified"});
    missing.push_back(missing.front());
    Reading reading(described({"", {access(all + ", FIRST (I0)")}}));
    reading.check(bsdl_check_reg_access);
    expect_messages(
        picked(reading.messages(),
               [](const Message &message) { return message.text.find("public register") == 0; }),
        missing);
}

} // namespace
