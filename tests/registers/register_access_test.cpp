#include "cases.h"

using namespace support;

namespace
{

// ------------------------------------------------------------------------------------------- check

// With an instruction of the user's in the table.
const std::string MINE_TABLE = opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD "
                                       "(0010), CLAMP (0011), IDCODE (0100), MINE (0101)");
const std::string MINE_TABLE_1990 = opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), CLAMP "
                                            "(0011), IDCODE (0100), MINE (0101)");

const Expected BYPASS_ADDED = {INFORMATION, "\tRegister 'BYPASS' added", 4};
const Expected BOUNDARY_ADDED = {INFORMATION, "\tRegister 'BOUNDARY' added", 4};
const Expected DEVICE_ID_ADDED = {INFORMATION, "\tRegister 'DEVICE_ID' added", 4};

// All standard registers named by the file, so that none is added.
std::string all_registers(const std::string &more)
{
    return access("BYPASS (BYPASS), BOUNDARY (SAMPLE), DEVICE_ID (IDCODE)" + more);
}

const CheckCase CASES[] = {
    {"no statement: two boundary registers where there is PRELOAD",
     Issue::BSDL_2001,
     {},
     0,
     {BYPASS_ADDED, BOUNDARY_ADDED, BOUNDARY_ADDED, DEVICE_ID_ADDED}},
    {"no statement of 1990",
     Issue::BSDL_1990,
     {},
     0,
     {BYPASS_ADDED, BOUNDARY_ADDED, {INFORMATION, "\tRegister 'IDCODE' added", 4}}},
    {"no IDCODE, no identification register",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0010)")},
      {IDCODE_REGISTER, ""}},
     0,
     {BYPASS_ADDED, BOUNDARY_ADDED, BOUNDARY_ADDED}},
    {"1532 has one for USERCODE; IDCODE finds it",
     Issue::BSDL_2001,
     {{USES, "use STD_1532_2002.all;"}},
     100,
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "instruction 'USERCODE' not found", 2},
      DEVICE_ID_ADDED}},
    {"all named by the file, lengths of standard registers do not matter",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS, access("BYPASS[3] (BYPASS), BOUNDARY[12] (SAMPLE), DEVICE_ID[7] (IDCODE), "
                               "MINE[2] (MINE captures 0x)")}}},
    {"a register of 1990",
     Issue::BSDL_1990,
     {{INSTRUCTION_OPCODE, MINE_TABLE_1990},
      {REGISTER_ACCESS,
       access("BYPASS (BYPASS), BOUNDARY (SAMPLE), IDCODE (IDCODE), mine[2] (MINE)")}}},
    {"PRELOAD that no register of the file lists takes the boundary register",
     Issue::BSDL_2001,
     {{REGISTER_ACCESS, all_registers("")}}},

    {"lengths",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS, all_registers(", UNSIZED (MINE captures 1), EMPTY[0] (CLAMP)")}},
     100,
     {{ERROR, "public register 'UNSIZED' length not specified", 2},
      {ERROR, "instruction 'MINE' associated with register 'UNSIZED' captures 1 bits, should be -1",
       2},
      {ERROR, "public register 'EMPTY' length cannot be 0", 2}}},
    {"captures of a wrong length",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS, all_registers(", BOUNDARY (MINE captures 010)")}},
     100,
     {{ERROR, "instruction 'MINE' associated with register 'BOUNDARY' captures 3 bits, should be 8",
       2}}},
    {"a mandatory instruction may not say what it captures",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS,
       all_registers(", MINE[2] (MINE captures 01, CLAMP, clamp captures 10, CLAMP captures 11)")}},
     100,
     {{ERROR, "instruction 'CLAMP' is already associated with register 'MINE'", 2},
      {ERROR, "instruction 'CLAMP' is already associated with register 'MINE'", 2},
      {ERROR, "MANDATORY instruction 'CLAMP' captures '10'", 2},
      {ERROR, "MANDATORY instruction 'CLAMP' captures '11'", 2}}},

    {"a public instruction needs a register",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE}, {REGISTER_ACCESS, all_registers("")}},
     100,
     {{ERROR, "public instruction 'MINE' has no associated register", 2}}},
    {"a private one does not",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {INSTRUCTION_PRIVATE, privates("MINE")},
      {REGISTER_ACCESS, all_registers("")}}},
    {"an instruction that is not in the table",
     Issue::BSDL_2001,
     {{REGISTER_ACCESS, all_registers(", OTHER[2] (NOBODY)")}},
     100,
     {{ERROR,
       "instruction 'NOBODY' in register access table is not found in instruction opcode table",
       2}}},
    {"two registers list one instruction: said, but no failure",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS, all_registers(", FIRST[2] (MINE), SECOND[3] (MINE)")}},
     0,
     {{ERROR, "instruction 'MINE' is already associated with register 'FIRST'", 2}}},
    {"an added register takes its instruction before the file's does",
     Issue::BSDL_2001,
     {{REGISTER_ACCESS, access("BYPASS (BYPASS), MINE[2] (SAMPLE), DEVICE_ID (IDCODE)")}},
     0,
     {BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "instruction 'SAMPLE' is already associated with register 'BOUNDARY'", 2}}},
    {"BYPASS has the bypass register, CLAMP any",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, MINE_TABLE},
      {REGISTER_ACCESS, access("BYPASS (MINE), BOUNDARY (BYPASS, CLAMP), DEVICE_ID (IDCODE)")}},
     100,
     {{ERROR, "MANDATORY instruction 'BYPASS' uses invalid register BOUNDARY", 2}}},
    {"identification instruction of a description without the register",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0010), USERCODE (0100)")},
      {IDCODE_REGISTER, ""}},
     100,
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "DEVICE_ID register not found while USERCODE instruction is used", 2}}},
    {"the same of 1990",
     Issue::BSDL_1990,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), USERCODE (0100)")},
      {IDCODE_REGISTER, ""}},
     100,
     {BYPASS_ADDED,
      BOUNDARY_ADDED,
      {ERROR, "IDCODE register not found while USERCODE instruction is used", 2}}},
    {"PRELOAD by the conformance statement alone has no implied register",
     Issue::BSDL_1994,
     {{CONFORMANCE, attribute("COMPONENT_CONFORMANCE", "STD_1149_1_2001")},
      {INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0010), IDCODE (0100)")},
      {REGISTER_ACCESS, all_registers("")}},
     100,
     {{ERROR, "MANDATORY instruction PRELOAD has no associated register", 2}}},
};

TEST(RegisterAccess, Rules)
{
    for (const CheckCase &row : CASES) {
        SCOPED_TRACE(row.name);
        Reading reading(described(row));
        ASSERT_NE(reading.handle(), nullptr);
        reading.check(bsdl_check_instr_reg);
        EXPECT_EQ(reading.check(bsdl_check_reg_access), row.result);
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(RegisterAccess, ResultsWithoutWhatTheCheckNeeds)
{
    EXPECT_EQ(bsdl_check_reg_access(nullptr), 2);
    Reading no_table(Description().with(INSTRUCTION_OPCODE,
                                        "attribute INSTRUCTION_OPCODE of DEV : entity is 7;"));
    ASSERT_NE(no_table.handle(), nullptr);
    EXPECT_EQ(no_table.check(bsdl_check_reg_access), 5);
}

// ---------------------------------------------------------------------------- what the check
// writes

struct Linked {
    std::string instruction;
    std::string data_register;
    int32_t length;
    std::string captured;
    bool operator==(const Linked &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Linked &linked)
{
    return out << linked.instruction << " " << linked.data_register << " " << linked.length << " "
               << linked.captured;
}

std::vector<Linked> links_of(Bsdl *handle)
{
    std::vector<Linked> links;
    auto text = [](const char *text) { return std::string(text ? text : "-"); };
    for (InstructionEntry *entry :
         all_of<InstructionEntry *>(handle, bsdlGetFirstInstruction, bsdlGetNextInstruction))
        links.push_back({bsdlGetInstructionName(entry), text(bsdlGetInstrRegisterName(entry)),
                         bsdlGetInstrRegisterLength(entry), text(bsdlGetInstrCaptureValue(entry))});
    return links;
}

TEST(RegisterAccess, Links)
{
    struct {
        const char *name;
        std::string registers;
        std::vector<Linked> links;
    } const rows[] = {
        {"implied registers",
         "",
         {{"PRELOAD", "BOUNDARY", 8, "-"},
          {"BYPASS", "BYPASS", 1, "-"},
          {"EXTEST", "BOUNDARY", 8, "-"},
          {"SAMPLE", "BOUNDARY", 8, "-"},
          {"CLAMP", "BYPASS", 1, "-"},
          {"IDCODE", "DEVICE_ID", 32, "-"},
          {"MINE", "-", 0, "-"}}},
        {"registers of the file; bypass captures 0",
         access("MINE[3] (EXTEST, EXTEST captures 111, MINE captures 1x0, MINE captures 111), "
                "BYPASS[9] (BYPASS), BYPASS (CLAMP), BOUNDARY[2] (SAMPLE), DEVICE_ID (IDCODE)"),
         {{"PRELOAD", "BOUNDARY", 8, "-"},
          {"BYPASS", "BYPASS", 1, "0"},
          {"EXTEST", "MINE", 3, "-"},
          {"SAMPLE", "BOUNDARY", 8, "-"},
          {"CLAMP", "BYPASS", 1, "0"},
          {"IDCODE", "DEVICE_ID", 32, "-"},
          {"MINE", "MINE", 3, "1x0"}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(Description()
                            .with(INSTRUCTION_OPCODE, MINE_TABLE)
                            .with(REGISTER_ACCESS, row.registers));
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(bsdlGetNumErrors(reading), 0);
        reading.check(bsdl_check_instr_reg);
        reading.check(bsdl_check_reg_access);
        EXPECT_EQ(links_of(reading), row.links);
    }
}

// ------------------------------------------------------------------------------------ while
// reading

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
    const Expected passed = {INFORMATION, "\tRegister access statement passed", 3};
    const Expected skipped = {ERROR, "Skipping register_access due to errors", 1};
    struct {
        const char *name;
        Issue issue;
        std::string registers;
        int errors;
        ExpectedMessages messages;
    } const rows[] = {
        {"absent", Issue::BSDL_2001, "", 0, {{INFORMATION, "\tNo register access statement", 4}}},
        {"lengths for all",
         Issue::BSDL_2001,
         access("BOUNDARY[1] (A), BYPASS[2] (B), DEVICE_ID[3] (C), D[4] (D captures x, E)"),
         0,
         {passed}},
        {"no string",
         Issue::BSDL_2001,
         "attribute REGISTER_ACCESS of DEV : entity is 7;",
         1,
         {skipped}},
        {"IDCODE of 1990", Issue::BSDL_1990, access("IDCODE (IDCODE)"), 0, {passed}},
        {"IDCODE of 1994",
         Issue::BSDL_1994,
         access("BYPASS (BYPASS), IDCODE (IDCODE)"),
         1,
         {{ERROR, "illegal device ID register name IDCODE, use DEVICE_ID", 1}, skipped}},
        {"a repeated register of equal or no length",
         Issue::BSDL_2001,
         access("A[1] (A), B[2] (B), C (C), b (D), B[2] (E), C (F)"),
         0,
         {passed}},
        {"a repeated register of another length",
         Issue::BSDL_2001,
         access("A[1] (A), B[2] (B), C[4] (D), b[3] (E)"),
         1,
         {{ERROR, "register lengths: 3, 2 not equal", 2}, skipped}},
        {"a length after none",
         Issue::BSDL_2001,
         access("A[1] (A), B (B), B[3] (C)"),
         1,
         {{ERROR, "register lengths: 3, -1 not equal", 2}, skipped}},
        {"the first register is never joined, its first repetition is",
         Issue::BSDL_2001,
         access("A[1] (A), A[2] (B), A (C), A[3] (D)"),
         1,
         {{ERROR, "register lengths: 3, 2 not equal", 2}, skipped}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(Description(row.issue).with(REGISTER_ACCESS, row.registers));
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(bsdlGetNumErrors(reading), row.errors);
        expect_messages(of_registers(reading.messages()), row.messages);
    }
}

// Which of equal names stay registers of their own shows in the lengths that the check misses.
TEST(RegisterAccess, ManyRegistersJoin)
{
    std::string registers = "FIRST (I0)";
    ExpectedMessages missing = {{ERROR, "public register 'FIRST' length not specified"}};
    for (int round = 0; round < 2; round++)
        for (int i = 1; i < 100; i++)
            registers += ", R" + std::to_string(i) + " (I" + std::to_string(i) + ")";
    for (int i = 1; i < 100; i++)
        missing.push_back(
            {ERROR, "public register 'R" + std::to_string(i) + "' length not specified"});
    registers += ", FIRST (I0)";
    missing.push_back({ERROR, "public register 'FIRST' length not specified"});
    Reading reading(Description().with(REGISTER_ACCESS, access(registers)));
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(reading.check(bsdl_check_reg_access), 100);
    expect_messages(
        picked(reading.messages(),
               [](const Message &message) { return message.text.find("public register") == 0; }),
        missing);
}

TEST(RegisterAccess, FastReadWithoutIdcodeEndsHere)
{
    Reading reading(
        Description().without(IDCODE_REGISTER).with(REGISTER_ACCESS, access("BYPASS (BYPASS)")),
        {.flags = FAST_READ});
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_TRUE(reading.has("\tRegister access statement passed"));
    EXPECT_EQ(bsdlGetBSRLength(reading), 0);
}

} // namespace
