#include "cases.h"

using namespace support;

namespace
{

const std::string ID = "00010010001000100010001000100011";

std::string idcode(const std::string &patterns) { return attribute("IDCODE_REGISTER", patterns); }

std::string usercode(const std::string &patterns)
{
    return attribute("USERCODE_REGISTER", patterns);
}

const std::string BOTH_CODES = opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD "
                                       "(0010), IDCODE (0100), USERCODE (0101)");
const std::string NO_CODES = opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0010)");

const CheckCase CASES[] = {
    {"valid"},
    {"neither statement nor instruction",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, NO_CODES}, {IDCODE_REGISTER, ""}}},
    {"both",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, BOTH_CODES}, {USERCODE_REGISTER, usercode(ID)}}},
    {"instructions without statements",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, BOTH_CODES}, {IDCODE_REGISTER, ""}},
     100,
     {{ERROR, "no idcode statement found while IDCODE instruction is defined", 2},
      {ERROR, "no usercode statement found while USERCODE instruction is defined", 2}}},
    {"statements without instructions",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, NO_CODES},
      {IDCODE_REGISTER, idcode(ID + ", " + ID)},
      {USERCODE_REGISTER, usercode(ID)}},
     100,
     {{ERROR, "no idcode instruction found in opcode list", 2},
      {ERROR, "no idcode instruction found in opcode list", 2},
      {ERROR, "no idcode instruction found in opcode list", 2}}},
    {"usercode statement without its instruction",
     Issue::BSDL_2001,
     {{USERCODE_REGISTER, usercode(ID + ", 1")}},
     100,
     {{ERROR, "no usercode instruction found in opcode list", 2},
      {ERROR, "usercode register must be 32-bits", 2}}},
    {"last bit",
     Issue::BSDL_2001,
     {{IDCODE_REGISTER, idcode("0001001000100010001000100010001X")}},
     100,
     {{ERROR, "least significant bit of idcode: (0001001000100010001000100010001X) must be 1", 2}}},
    {"wrong lengths: the reserved manufacturer is seen from 31 bits on",
     Issue::BSDL_2001,
     {{IDCODE_REGISTER, idcode("10101010101010101010000011111111, 1010101010101010101000001111111, "
                               "101010101010101010100000111111, 1")}},
     100,
     {{ERROR, "manufacturer part of idcode cannot be (00001111111)", 2},
      {ERROR, "idcode register must be 32-bits", 2},
      {ERROR, "manufacturer part of idcode cannot be (00001111111)", 2},
      {ERROR, "idcode register must be 32-bits", 2},
      {ERROR, "idcode register must be 32-bits", 2}}},
    {"1532 wants both, and the idcode is looked at all the same",
     Issue::BSDL_2001,
     {{USES, "use STD_1532_2002.all;"}, {IDCODE_REGISTER, idcode("0")}},
     100,
     {{ERROR, "idcode & usercode register are mandatory for ISC1532", 2},
      {ERROR, "idcode register must be 32-bits", 2}}},
};

TEST(IdRegisters, Rules)
{
    for (const CheckCase &row : CASES) {
        SCOPED_TRACE(row.name);
        Reading reading(described(row));
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(reading.check(bsdl_check_optional_reg), row.result);
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(IdRegisters, NoHandleIsNoFault) { EXPECT_EQ(bsdl_check_optional_reg(nullptr), 0); }

// The question whether there is an instruction speaks up once the instruction has its register.
TEST(IdRegisters, CheckedAgainAfterTheRegistersAreLinked)
{
    Reading reading{Description()};
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(reading.check(bsdl_check), 0);
    EXPECT_EQ(reading.check(bsdl_check_optional_reg), 0);
    expect_messages(
        reading.messages(),
        {{ERROR, "instruction 'IDCODE' is already associated with register 'DEVICE_ID'", 2}});
}

TEST(IdRegisters, WhileReading)
{
    struct {
        const char *name;
        std::string first;
        std::string second;
        int errors;
        ExpectedMessages messages;
    } const rows[] = {
        {"idcode alone",
         idcode(ID),
         "",
         0,
         {{INFORMATION, "\tIdcode register statement passed", 3}}},
        {"usercode first",
         usercode(ID),
         idcode(ID),
         0,
         {{INFORMATION, "\tUsercode register statement passed", 3},
          {INFORMATION, "\tIdcode register statement passed", 3}}},
        {"a pattern of 31 bits is no syntax error",
         idcode(ID.substr(1)),
         "",
         0,
         {{ERROR, "32 bit pattern length required on line 15", 1},
          {INFORMATION, "\tIdcode register statement passed", 3}}},
        {"idcode that is no string",
         "attribute IDCODE_REGISTER of DEV : entity is 7;",
         usercode(ID),
         1,
         {{ERROR, "Skipping idcode due to errors", 1},
          {INFORMATION, "\tUsercode register statement passed", 3}}},
        {"usercode that is no string",
         idcode(ID),
         "attribute USERCODE_REGISTER of DEV : entity is 7;",
         1,
         {{INFORMATION, "\tIdcode register statement passed", 3},
          {ERROR, "Skipping usercode due to errors", 1}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(
            Description().with(IDCODE_REGISTER, row.first).with(USERCODE_REGISTER, row.second));
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(bsdlGetNumErrors(reading), row.errors);
        expect_messages(picked(reading.messages(),
                               [](const Message &message) {
                                   return message.text.find("code register") != std::string::npos ||
                                          message.text.find("code due") != std::string::npos ||
                                          message.text.find("32 bit") != std::string::npos;
                               }),
                        row.messages);
    }
}

TEST(IdRegisters, UsercodeAloneIsASyntaxError)
{
    Reading reading(Description().with(IDCODE_REGISTER, usercode(ID)));
    EXPECT_TRUE(!reading.handle() || bsdlGetNumErrors(reading) > 0);
}

TEST(IdRegisters, Queries)
{
    Reading reading(Description()
                        .with(IDCODE_REGISTER, idcode(ID + ", 1"))
                        .with(USERCODE_REGISTER, usercode("x" + ID.substr(1))));
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(bsdlGetNbrOfIdcodePatterns(reading), 2);
    EXPECT_EQ(bsdlGetFirstIdcodePattern(reading), ID);
    EXPECT_STREQ(bsdlGetNextIdcodePattern(reading), "1");
    EXPECT_EQ(bsdlGetNextIdcodePattern(reading), nullptr);
    EXPECT_EQ(bsdlGetNbrOfUsercodePatterns(reading), 1);
    EXPECT_NE(bsdlGetFirstUsercodePattern(reading), nullptr);
    EXPECT_EQ(bsdlGetNextUsercodePattern(reading), nullptr);

    Reading without(Description().without(IDCODE_REGISTER));
    ASSERT_NE(without.handle(), nullptr);
    EXPECT_EQ(bsdlGetNbrOfIdcodePatterns(without), 0);
    EXPECT_EQ(bsdlGetFirstIdcodePattern(without), nullptr);
    EXPECT_EQ(bsdlGetNextIdcodePattern(without), nullptr);
}

TEST(IdRegisters, FastReadEndsBehindTheIdcode)
{
    Reading reading(Description().with(USERCODE_REGISTER, usercode(ID)), {.flags = FAST_READ});
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(bsdlGetNbrOfIdcodePatterns(reading), 1);
    EXPECT_EQ(bsdlGetNbrOfUsercodePatterns(reading), 0);
    EXPECT_EQ(bsdlGetBSRLength(reading), 0);
    EXPECT_FALSE(reading.has("\tUsercode register statement passed"));
}

} // namespace
