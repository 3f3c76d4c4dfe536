#include "cases.h"

using namespace support;

namespace
{

// What a statement says when it is read and when it cannot be read.
struct StatementCase {
    Statement statement;
    Issue issue;
    const char *attribute;
    const char *value;
    const char *word; // of its lines
};

const StatementCase STATEMENTS[] = {
    {INSTRUCTION_OPCODE, Issue::BSDL_2001, "INSTRUCTION_OPCODE", "BYPASS (11, x), mine (0)",
     "opcode"},
    {INSTRUCTION_CAPTURE, Issue::BSDL_2001, "INSTRUCTION_CAPTURE", "x, 01", "capture"},
    {INSTRUCTION_DISABLE, Issue::BSDL_1990, "INSTRUCTION_DISABLE", "HIGHZ", "disable"},
    {INSTRUCTION_GUARD, Issue::BSDL_1990, "INSTRUCTION_GUARD", "mine", "guard"},
    {INSTRUCTION_PRIVATE, Issue::BSDL_2001, "INSTRUCTION_PRIVATE", "mine, RUNBIST", "private"},
};

TEST(Instructions, EachStatementReports)
{
    for (const StatementCase &row : STATEMENTS) {
        SCOPED_TRACE(row.attribute);
        std::string word = row.word;
        auto expect = [&](const std::string &text, const Expected &message) {
            Reading reading(Description(row.issue).with(row.statement, text));
            expect_messages(picked(reading.messages(),
                                   [&](const Message &each) {
                                       return each.text.find("nstruction " + word) !=
                                                  std::string::npos ||
                                              each.text.find("tion_" + word) != std::string::npos;
                                   }),
                            {message});
        };
        expect(attribute(row.attribute, row.value),
               {INFORMATION, "\tInstruction " + word + " statement passed", 3});
        expect(unread(row.statement, row.attribute).second,
               {ERROR, "Skipping instruction_" + word + " due to errors", 1});
    }
}

TEST(Instructions, DisableStandsBeforeGuard)
{
    Reading reading(Description(Issue::BSDL_1990)
                        .with(INSTRUCTION_DISABLE, attribute("INSTRUCTION_GUARD", "CLAMP"))
                        .with(INSTRUCTION_GUARD, attribute("INSTRUCTION_DISABLE", "HIGHZ")));
    EXPECT_GT(bsdlGetNumErrors(reading), 0);
}

TEST(Instructions, Queries)
{
    Reading reading(described({"", {opcodes("BYPASS (11, x1), mine (0)"), captures("x, 01, 1X")}}));
    EXPECT_EQ(bsdlGetInstructionLength(reading), 4);
    EXPECT_EQ(bsdlGetNbrOfInstructions(reading), 2);
    EXPECT_EQ(bsdlGetNbrOfInstructionCaptures(reading), 3);
    expect_iteration(reading.handle(), bsdlGetFirstInstruction, bsdlGetNextInstruction,
                     {"BYPASS", "MINE"});
    expect_iteration(reading.handle(), bsdlGetFirstInstructionCapture,
                     bsdlGetNextInstructionCapture, {"X", "01", "1X"});
    InstructionEntry *first = bsdlGetFirstInstruction(reading);
    EXPECT_EQ(bsdlGetNbrOfInstrPatterns(first), 2);
    expect_iteration(first, bsdlGetFirstInstrPattern, bsdlGetNextInstrPattern, {"11", "x1"});
    EXPECT_EQ(bsdlGetInstrRegisterName(first), nullptr);
    EXPECT_EQ(bsdlGetInstrRegisterLength(first), 0);
    EXPECT_EQ(bsdlGetInstrCaptureValue(first), nullptr);
}

TEST(Instructions, SkippedStatementsLeaveNothing)
{
    Reading reading(described({"",
                               {unread(INSTRUCTION_OPCODE, "INSTRUCTION_OPCODE"),
                                unread(INSTRUCTION_CAPTURE, "INSTRUCTION_CAPTURE")}}));
    EXPECT_EQ(bsdlGetNbrOfInstructions(reading), 0);
    EXPECT_EQ(bsdlGetNbrOfInstructionCaptures(reading), 0);
    expect_iteration(reading.handle(), bsdlGetFirstInstruction, bsdlGetNextInstruction, {});
    expect_iteration(reading.handle(), bsdlGetFirstInstructionCapture,
                     bsdlGetNextInstructionCapture, {});
}

} // namespace
