#include "cases.h"

using namespace support;

namespace
{

const std::string ID = "00010010001000100010001000100011";

const Replacement BOTH_CODES = opcodes(BASE_2001 + ", IDCODE (0100), USERCODE (0101)");
const Replacement NO_CODES = opcodes(BASE_2001);
const Replacement NO_IDCODE = {IDCODE_REGISTER, ""};

const Expected NO_INSTRUCTION = {ERROR, "no idcode instruction found in opcode list", 2};
const Expected NOT_32_BITS = {ERROR, "idcode register must be 32-bits", 2};
const Expected RESERVED = {ERROR, "manufacturer part of idcode cannot be (00001111111)", 2};

const CheckCase CASES[] = {
    {"valid"},
    {"neither statement nor instruction", {NO_CODES, NO_IDCODE}},
    {"both", {BOTH_CODES, usercode(ID)}},
    {"instructions without statements",
     {BOTH_CODES, NO_IDCODE},
     {{ERROR, "no idcode statement found while IDCODE instruction is defined", 2},
      {ERROR, "no usercode statement found while USERCODE instruction is defined", 2}}},
    {"statements without instructions: for each idcode, once for the usercodes",
     {NO_CODES, idcode(ID + ", " + ID), usercode(ID + ", " + ID)},
     {NO_INSTRUCTION, NO_INSTRUCTION, NO_INSTRUCTION}},
    {"usercode statement without its instruction",
     {usercode(ID + ", 1")},
     {{ERROR, "no usercode instruction found in opcode list", 2},
      {ERROR, "usercode register must be 32-bits", 2}}},
    {"last bit",
     {idcode("0001001000100010001000100010001X")},
     {{ERROR, "least significant bit of idcode: (0001001000100010001000100010001X) must be 1", 2}}},
    {"wrong lengths: the reserved manufacturer is seen from 31 bits on",
     {idcode("10101010101010101010000011111111, 1010101010101010101000001111111, "
             "101010101010101010100000111111, 1")},
     {RESERVED, NOT_32_BITS, RESERVED, NOT_32_BITS, NOT_32_BITS}},
    {"1532 wants both, and the idcode is looked at all the same",
     {{USES, "use STD_1532_2002.all;"}, idcode("0")},
     {{ERROR, "idcode & usercode register are mandatory for ISC1532", 2}, NOT_32_BITS}},
};

TEST(IdRegisters, Rules)
{
    expect_cases(CASES, bsdl_check_optional_reg);
    // Not 2, as the other checks.
    EXPECT_EQ(bsdl_check_optional_reg(nullptr), 0);
}

// The question whether there is an instruction speaks up once the instruction has its register.
TEST(IdRegisters, CheckedAgainAfterTheRegistersAreLinked)
{
    Reading reading{Description()};
    EXPECT_EQ(reading.check(bsdl_check), 0);
    EXPECT_EQ(reading.check(bsdl_check_optional_reg), 0);
    expect_messages(
        reading.messages(),
        {{ERROR, "instruction 'IDCODE' is already associated with register 'DEVICE_ID'", 2}});
}

TEST(IdRegisters, WhileReading)
{
    const Expected idcode_passed = {INFORMATION, "\tIdcode register statement passed", 3};
    const Expected usercode_passed = {INFORMATION, "\tUsercode register statement passed", 3};
    struct {
        const char *name;
        std::string first;
        std::string second;
        int errors;
        ExpectedMessages messages;
    } const rows[] = {
        {"idcode first",
         idcode(ID).second,
         usercode(ID).second,
         0,
         {idcode_passed, usercode_passed}},
        {"usercode first",
         usercode(ID).second,
         idcode(ID).second,
         0,
         {usercode_passed, idcode_passed}},
        {"usercode alone", usercode(ID).second, "", 1, {usercode_passed}},
        {"a pattern of 31 bits is no syntax error",
         idcode(ID.substr(1)).second,
         "",
         0,
         {{ERROR, "32 bit pattern length required on line 15", 1}, idcode_passed}},
        {"idcode that is no string",
         unread(IDCODE_REGISTER, "IDCODE_REGISTER").second,
         usercode(ID).second,
         1,
         {{ERROR, "Skipping idcode due to errors", 1}, usercode_passed}},
        {"usercode that is no string",
         idcode(ID).second,
         unread(USERCODE_REGISTER, "USERCODE_REGISTER").second,
         1,
         {idcode_passed, {ERROR, "Skipping usercode due to errors", 1}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(
            Description().with(IDCODE_REGISTER, row.first).with(USERCODE_REGISTER, row.second));
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

TEST(IdRegisters, Queries)
{
    Reading reading(described({"", {idcode(ID + ", 1"), usercode("x0, 0, 10")}}));
    EXPECT_EQ(bsdlGetNbrOfIdcodePatterns(reading), 2);
    EXPECT_EQ(bsdlGetNbrOfUsercodePatterns(reading), 3);
    expect_iteration(reading.handle(), bsdlGetFirstIdcodePattern, bsdlGetNextIdcodePattern,
                     {ID, "1"});
    expect_iteration(reading.handle(), bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern,
                     {"x0", "0", "10"});
    Reading without(Description().without(IDCODE_REGISTER));
    EXPECT_EQ(bsdlGetNbrOfIdcodePatterns(without), 0);
    expect_iteration(without.handle(), bsdlGetFirstIdcodePattern, bsdlGetNextIdcodePattern, {});
}

} // namespace
