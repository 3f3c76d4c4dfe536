#include "cases.h"

using namespace support;

namespace
{

struct Case {
    const char *name;
    Issue issue;
    Statement statement;
    std::string text;
    ExpectedMessages messages; // those that speak of the statement
};

const Case CASES[] = {
    {"length",
     Issue::BSDL_2001,
     INSTRUCTION_LENGTH,
     "attribute INSTRUCTION_LENGTH of DEV : entity is 4;",
     {{INFORMATION, "\tInstruction length statement passed", 3}}},
    {"opcodes",
     Issue::BSDL_2001,
     INSTRUCTION_OPCODE,
     opcodes("BYPASS (11, x), mine (0)"),
     {{INFORMATION, "\tInstruction opcode statement passed", 3}}},
    {"opcodes that are no string",
     Issue::BSDL_2001,
     INSTRUCTION_OPCODE,
     "attribute INSTRUCTION_OPCODE of DEV : entity is BYPASS;",
     {{ERROR, "Skipping instruction_opcode due to errors", 1}}},
    {"captures that are no string",
     Issue::BSDL_2001,
     INSTRUCTION_CAPTURE,
     "attribute INSTRUCTION_CAPTURE of DEV : entity is BYPASS;",
     {{ERROR, "Skipping instruction_capture due to errors", 1}}},
    {"captures",
     Issue::BSDL_2001,
     INSTRUCTION_CAPTURE,
     captures("x, 01"),
     {{INFORMATION, "\tInstruction capture statement passed", 3}}},
    {"disabling instruction",
     Issue::BSDL_1990,
     INSTRUCTION_DISABLE,
     attribute("INSTRUCTION_DISABLE", "HIGHZ"),
     {{INFORMATION, "\tInstruction disable statement passed", 3}}},
    {"disabling instruction that is no string",
     Issue::BSDL_1990,
     INSTRUCTION_DISABLE,
     "attribute INSTRUCTION_DISABLE of DEV : entity is HIGHZ;",
     {{ERROR, "Skipping instruction_disable due to errors", 1}}},
    {"no disabling instruction",
     Issue::BSDL_1990,
     INSTRUCTION_DISABLE,
     "",
     {{INFORMATION, "\tNo instruction disable statement", 4}}},
    {"guarding instruction",
     Issue::BSDL_1990,
     INSTRUCTION_GUARD,
     attribute("INSTRUCTION_GUARD", "CLAMP"),
     {{INFORMATION, "\tInstruction guard statement passed", 3}}},
    {"guarding instruction that is no string",
     Issue::BSDL_1990,
     INSTRUCTION_GUARD,
     "attribute INSTRUCTION_GUARD of DEV : entity is CLAMP;",
     {{ERROR, "Skipping instruction_guard due to errors", 1}}},
    {"no guarding instruction of 1990",
     Issue::BSDL_1990,
     INSTRUCTION_GUARD,
     "",
     {{INFORMATION, "\tNo instruction guard statement in this version", 4}}},
    {"no guarding instruction of 2001", Issue::BSDL_2001, INSTRUCTION_GUARD, "", {}},
    {"private instructions",
     Issue::BSDL_2001,
     INSTRUCTION_PRIVATE,
     privates("mine, RUNBIST"),
     {{INFORMATION, "\tInstruction private statement passed", 3}}},
    {"private instructions that are no string",
     Issue::BSDL_2001,
     INSTRUCTION_PRIVATE,
     "attribute INSTRUCTION_PRIVATE of DEV : entity is MINE;",
     {{ERROR, "Skipping instruction_private due to errors", 1}}},
    {"no private instructions",
     Issue::BSDL_2001,
     INSTRUCTION_PRIVATE,
     "",
     {{INFORMATION, "\tNo instruction private statement", 4}}},
};

const char *word_of(Statement statement)
{
    switch (statement) {
    case INSTRUCTION_LENGTH:
        return "length";
    case INSTRUCTION_OPCODE:
        return "opcode";
    case INSTRUCTION_CAPTURE:
        return "capture";
    case INSTRUCTION_DISABLE:
        return "disable";
    case INSTRUCTION_GUARD:
        return "guard";
    default:
        return "private";
    }
}

TEST(Instructions, EachStatementReports)
{
    for (const Case &row : CASES) {
        SCOPED_TRACE(row.name);
        Reading reading(Description(row.issue).with(row.statement, row.text));
        ASSERT_NE(reading.handle(), nullptr);
        std::string words = std::string("nstruction ") + word_of(row.statement);
        std::string name = std::string("instruction_") + word_of(row.statement);
        expect_messages(picked(reading.messages(),
                               [&](const Message &message) {
                                   return message.text.find(words) != std::string::npos ||
                                          message.text.find(name) != std::string::npos;
                               }),
                        row.messages);
    }
}

TEST(Instructions, DisableStandsBeforeGuard)
{
    Description description(Issue::BSDL_1990);
    description.with(INSTRUCTION_DISABLE, attribute("INSTRUCTION_GUARD", "CLAMP"))
        .with(INSTRUCTION_GUARD, attribute("INSTRUCTION_DISABLE", "HIGHZ"));
    Reading reading(description);
    EXPECT_TRUE(!reading.handle() || bsdlGetNumErrors(reading) > 0);
}

TEST(Instructions, Queries)
{
    Reading reading(Description()
                        .with(INSTRUCTION_OPCODE, opcodes("BYPASS (11, x1), mine (0)"))
                        .with(INSTRUCTION_CAPTURE, captures("x, 01")));
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(bsdlGetInstructionLength(reading), 4);
    EXPECT_EQ(bsdlGetNbrOfInstructions(reading), 2);
    InstructionEntry *first = bsdlGetFirstInstruction(reading);
    EXPECT_STREQ(bsdlGetInstructionName(first), "BYPASS");
    EXPECT_EQ(bsdlGetNbrOfInstrPatterns(first), 2);
    EXPECT_STREQ(bsdlGetFirstInstrPattern(first), "11");
    EXPECT_STREQ(bsdlGetNextInstrPattern(first), "x1");
    EXPECT_EQ(bsdlGetNextInstrPattern(first), nullptr);
    EXPECT_EQ(bsdlGetNextInstrPattern(first), nullptr);
    EXPECT_STREQ(bsdlGetInstructionName(bsdlGetNextInstruction(reading)), "MINE");
    EXPECT_EQ(bsdlGetNextInstruction(reading), nullptr);
    EXPECT_EQ(bsdlGetInstrRegisterName(first), nullptr);
    EXPECT_EQ(bsdlGetInstrRegisterLength(first), 0);
    EXPECT_EQ(bsdlGetInstrCaptureValue(first), nullptr);
    EXPECT_EQ(bsdlGetNbrOfInstructionCaptures(reading), 2);
    EXPECT_STREQ(bsdlGetFirstInstructionCapture(reading), "X");
    EXPECT_STREQ(bsdlGetNextInstructionCapture(reading), "01");
    EXPECT_EQ(bsdlGetNextInstructionCapture(reading), nullptr);
}

TEST(Instructions, AnIterationGoesOnFromWhereItStands)
{
    Reading reading{Description()};
    ASSERT_NE(reading.handle(), nullptr);
    // Without First the second element comes first.
    EXPECT_STREQ(bsdlGetInstructionName(bsdlGetNextInstruction(reading)), "EXTEST");
    // The check puts PRELOAD ahead of both, and the cursor counts in the new order.
    reading.check(bsdl_check_instr_reg);
    EXPECT_STREQ(bsdlGetInstructionName(bsdlGetNextInstruction(reading)), "EXTEST");
    EXPECT_STREQ(bsdlGetInstructionName(bsdlGetNextInstruction(reading)), "SAMPLE");
}

TEST(Instructions, SkippedStatementsLeaveNothing)
{
    Reading reading(
        Description()
            .with(INSTRUCTION_OPCODE, "attribute INSTRUCTION_OPCODE of DEV : entity is BYPASS;")
            .with(INSTRUCTION_CAPTURE, "attribute INSTRUCTION_CAPTURE of DEV : entity is 01;"));
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(bsdlGetNbrOfInstructions(reading), 0);
    EXPECT_EQ(bsdlGetFirstInstruction(reading), nullptr);
    EXPECT_EQ(bsdlGetNextInstruction(reading), nullptr);
    EXPECT_EQ(bsdlGetNbrOfInstructionCaptures(reading), 0);
    EXPECT_EQ(bsdlGetFirstInstructionCapture(reading), nullptr);
}

} // namespace
