#include "registers/registers.h"

#include "cases.h"

#include <cstring>
#include <random>

using namespace support;

namespace
{

using support::Reading; // not the library's record of that name

// -------------------------------------------------------------------------------------- the rules

Replacement length(const std::string &bits)
{
    return {INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is " + bits + ";"};
}

const std::string ONES(68, '1');
const Expected DUPLICATES = {WARNING, "duplicate opcodes in instruction opcode table:", 2};
const Expected AMBIGUOUS = {ERROR, "ambiguous opcodes in instruction opcode table:", 2};

const CheckCase CASES[] = {
    {"valid of 2001"},
    {"valid of 1994", {}, {}, Issue::BSDL_1994},
    {"valid of 1990", {}, {}, Issue::BSDL_1990},

    {"two bits are enough, whatever the message of the length says",
     {length("2"), opcodes("BYPASS (11), EXTEST (00), SAMPLE (01), PRELOAD (01)"), captures("01")}},
    {"one bit is not enough, and a capture of one bit cannot end in 01",
     {length("1"), opcodes("BYPASS (1), EXTEST (0), SAMPLE (0), PRELOAD (0)"), captures("1")},
     {{ERROR, "INSTRUCTION_LENGTH (1) should be greater than 2", 2},
      DUPLICATES,
      {WARNING, "'EXTEST' (0)", 2},
      {WARNING, "'SAMPLE' (0)", 2},
      {WARNING, "'PRELOAD' (0)", 2},
      {ERROR, "instruction capture pattern (1) must end in 01", 2}}},
    {"opcodes and captures of a wrong length go through the other rules as well",
     {opcodes(BASE_2001 + ", MINE (111, 01010)"), captures("xx01, 110, 11101, x1")},
     {{ERROR, "incorrect instruction capture length, opcode: MINE (111) should have length 4", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 111", 2},
      {ERROR, "incorrect instruction capture length, opcode: MINE (01010) should have length 4", 2},
      {ERROR,
       "instruction capture pattern (110) length (3) must be equal to instruction length (4)", 2},
      {ERROR, "instruction capture pattern (110) must end in 01", 2},
      {ERROR,
       "instruction capture pattern (11101) length (5) must be equal to instruction length (4)", 2},
      {ERROR, "instruction capture pattern (x1) length (2) must be equal to instruction length (4)",
       2},
      {ERROR, "instruction capture pattern (x1) must end in 01", 2}}},

    {"all ones, X counting as 1, belong to BYPASS",
     {opcodes("EXTEST (0000), SAMPLE (0001), PRELOAD (0010), MINE (1x11), BYPASS (1111)")},
     {{ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 1X11", 2},
      {WARNING, "ambiguous opcodes in instruction opcode table", 2}}},
    {"of 2001 all zeros are free",
     {opcodes("BYPASS (1111), EXTEST (0110), SAMPLE (0001), PRELOAD (0010), MINE (0000)")}},
    {"before 2001 all zeros, X counting as 0, belong to EXTEST; nothing but X is both",
     {opcodes(BASE + ", MINE (00X0, xxxx)")},
     {{ERROR, "opcode all 0's must be EXTEST, opcode: 'MINE' cannot use opcode 00X0", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode XXXX", 2},
      {ERROR, "opcode all 0's must be EXTEST, opcode: 'MINE' cannot use opcode XXXX", 2}},
     Issue::BSDL_1994},

    {"an opcode of two instructions is worth a warning, at the first of them",
     {opcodes(BASE + ", MINE (1111, 1010, 1111), YOURS (1010)")},
     {DUPLICATES,
      {WARNING, "'BYPASS' (1111)", 2},
      {WARNING, "'MINE' (1111)", 2},
      {WARNING, "'MINE' (1111)", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 1111", 2},
      DUPLICATES,
      {WARNING, "'MINE' (1010)", 2},
      {WARNING, "'YOURS' (1010)", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 1111", 2}},
     Issue::BSDL_1994},
    {"SAMPLE and PRELOAD share their opcode of 2001", {opcodes(BASE + ", PRELOAD (0001)")}},
    {"before 2001 they do not",
     {opcodes(BASE + ", PRELOAD (0001)")},
     {DUPLICATES, {WARNING, "'SAMPLE' (0001)", 2}, {WARNING, "'PRELOAD' (0001)", 2}},
     Issue::BSDL_1994},
    {"an opcode with X that covers later ones, not earlier ones",
     {opcodes(BASE + ", D (0100), A (01X0, 01X1), B (0100), C (0110, 0x11)")},
     {DUPLICATES,
      {WARNING, "'D' (0100)", 2},
      {WARNING, "'B' (0100)", 2},
      AMBIGUOUS,
      {ERROR, "'A' (01X0)", 2},
      {ERROR, "'B' (0100)", 2},
      {ERROR, "'C' (0110)", 2},
      AMBIGUOUS,
      {ERROR, "'A' (01X1)", 2},
      {ERROR, "'C' (0X11)", 2}},
     Issue::BSDL_1994},

    {"bits beyond those of a machine word, each of which tells opcodes apart",
     {length("70"),
      opcodes("BYPASS (" + ONES + "11), EXTEST (" + std::string(70, '0') + "), SAMPLE (" + ONES +
              "10), A (" + ONES + "0X), B (" + ONES + "01), C (" + ONES.substr(2) + "0110)"),
      captures(ONES + "01")},
     {AMBIGUOUS, {ERROR, "'A' (" + ONES + "0X)", 2}, {ERROR, "'B' (" + ONES + "01)", 2}},
     Issue::BSDL_1994},

    {"missing instructions of 2001",
     {opcodes("BYPASS (1110), IDCODE (0100)")},
     {{INFORMATION, "\tmandatory BYPASS instruction opcode (1111) added", 4},
      {ERROR, "EXTEST instruction opcode mandatory for STD_1149_1_2001", 2},
      {ERROR, "no SAMPLE instruction specified", 2},
      {ERROR, "no PRELOAD instruction specified", 2}}},
    {"before 2001 EXTEST is added, also beside one of another opcode",
     {opcodes("BYPASS (1111), EXTEST (0010), IDCODE (0100)")},
     {{INFORMATION, "\tmandatory EXTEST instruction opcode (0000) added", 4},
      {ERROR, "no SAMPLE instruction specified", 2}},
     Issue::BSDL_1994},
    {"without a table nothing is looked at",
     {unread(INSTRUCTION_OPCODE, "INSTRUCTION_OPCODE"), captures("1")}},
};

TEST(InstructionCheck, Rules)
{
    expect_cases(CASES, bsdl_check_instr_reg);
    EXPECT_EQ(bsdl_check_instr_reg(nullptr), 2);
}

// ------------------------------------------------------------------------ what the check writes

// "NAME type" of each instruction; + marks the one that preloads.
std::string instructions_of(Bsdl *handle)
{
    std::string text;
    for (InstructionEntry *entry :
         all_of<InstructionEntry *>(handle, bsdlGetFirstInstruction, bsdlGetNextInstruction))
        text += text_of(entry) + " " + std::to_string(bsdlGetInstructionType(entry)) +
                (bsdlIsInstrPreload(entry) ? "+ " : " ");
    return text;
}

TEST(InstructionCheck, TypesAndOrder)
{
    struct {
        const char *name;
        Issue issue;
        const char *table;
        const char *privates;
        const char *before;
        const char *after;
    } const rows[] = {
        {"2001: the last PRELOAD leads; a mandatory name stays so in the private list",
         Issue::BSDL_2001,
         "BYPASS (1111), preload (0010), EXTEST (0000), SAMPLE (0001), PRELOAD (0011), Mine "
         "(0101), RUNBIST (0110), HIGHZ (0111)",
         "mine, HIGHZ", "BYPASS 0 PRELOAD 0 EXTEST 0 SAMPLE 0 PRELOAD 0 MINE 0 RUNBIST 0 HIGHZ 0 ",
         "PRELOAD 2+ PRELOAD 2+ BYPASS 2 EXTEST 2 SAMPLE 2 MINE 3 RUNBIST 1 HIGHZ 2 "},
        {"1994: SAMPLE leads, what is missing comes last", Issue::BSDL_1994,
         "MINE (0101), SAMPLE (0001)", "OTHER", "MINE 0 SAMPLE 0 ",
         "SAMPLE 2+ MINE 1 BYPASS 2 EXTEST 2 "},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(
            described({"", {opcodes(row.table), privates(row.privates)}, {}, row.issue}));
        EXPECT_EQ(instructions_of(reading), row.before);
        EXPECT_EQ(reading.check(bsdl_check_instr_reg), 0);
        EXPECT_EQ(instructions_of(reading), row.after);
    }
}

TEST(InstructionCheck, AnIterationGoesOnFromWhereItStands)
{
    Reading reading{Description()};
    EXPECT_EQ(text_of(bsdlGetNextInstruction(reading)), "EXTEST");
    // PRELOAD comes before it, and the cursor counts in the new order.
    reading.check(bsdl_check_instr_reg);
    EXPECT_EQ(text_of(bsdlGetNextInstruction(reading)), "EXTEST");
}

TEST(InstructionCheck, OpcodesAreInCapitalsAndAddedOnesOfABearableLength)
{
    Reading reading(
        described({"", {length("2147483647"), opcodes("SAMPLE (0x01)")}, {}, Issue::BSDL_1994}));
    EXPECT_EQ(reading.check(bsdl_check_instr_reg), 100);
    EXPECT_STREQ(bsdlGetFirstInstrPattern(bsdlGetFirstInstruction(reading)), "0X01");
    EXPECT_EQ(strlen(bsdlGetFirstInstrPattern(bsdlGetNextInstruction(reading))), 1048576u);
}

// ------------------------------------------------- the two searches against walks as they are told

struct Entry {
    std::string name;
    std::vector<std::string> opcodes;
};

using Table = std::vector<Entry>;

std::string line(const std::string &name, const std::string &opcode)
{
    return "'" + name + "' (" + opcode + ")";
}

bool conflict(const std::string &earlier, const std::string &later)
{
    for (size_t at = 0; at < later.size(); at++) {
        char a = at < earlier.size() ? earlier[at] : '\0';
        if (a != later[at] && a != 'X' && later[at] != 'X')
            return true;
    }
    return false;
}

// Walks over all that follows, opcode by opcode and bit by bit.
std::vector<std::string> found_by_walk(const Table &table, bool is_2001, size_t at,
                                       const std::string &opcode, bool has_x)
{
    std::vector<std::string> found;
    auto is_load = [is_2001](const Entry &entry) {
        return is_2001 && (entry.name == "SAMPLE" || entry.name == "PRELOAD");
    };
    for (size_t i = at + 1; i < table.size(); i++) {
        if ((is_load(table[at]) && is_load(table[i])) ||
            (!has_x && table[i].name == table[at].name))
            continue;
        for (const std::string &its : table[i].opcodes)
            if (has_x ? !conflict(opcode, its) : its == opcode)
                found.push_back(line(table[i].name, its));
    }
    return found;
}

ExpectedMessages messages_of_walks(const Table &table, bool is_2001)
{
    ExpectedMessages messages;
    for (size_t i = 0; i < table.size(); i++)
        for (const std::string &opcode : table[i].opcodes) {
            bool has_x = opcode.find('X') != std::string::npos;
            std::vector<std::string> found = found_by_walk(table, is_2001, i, opcode, has_x);
            if (found.empty())
                continue;
            if (has_x && is_2001) {
                messages.push_back({WARNING, "ambiguous opcodes in instruction opcode table"});
                continue;
            }
            const Expected &heading = has_x ? AMBIGUOUS : DUPLICATES;
            found.insert(found.begin(), {heading.text, line(table[i].name, opcode)});
            for (const std::string &text : found)
                messages.push_back({heading.level, text});
        }
    return messages;
}

class Tables
{
  public:
    Table next()
    {
        static const char *const names[] = {"SAMPLE", "PRELOAD", "EXTEST", "BYPASS", "A", "B"};
        Table table;
        size_t bits = 2 + pick(2);
        size_t letters = 2 + pick(2); // without and with X
        for (size_t i = 1 + pick(6); i-- > 0;) {
            Entry entry = {names[pick(6)], {}};
            for (size_t j = 1 + pick(2); j-- > 0;) {
                std::string opcode;
                // Mostly of one length.
                for (size_t at = pick(5) ? bits : 1 + pick(4); at-- > 0;)
                    opcode += "01X"[pick(letters)];
                entry.opcodes.push_back(opcode);
            }
            table.push_back(entry);
        }
        return table;
    }

  private:
    size_t pick(size_t below) { return random_() % below; }

    std::minstd_rand random_{1};
};

void put_table(Bsdl *bsdl, const Table &table)
{
    List entries = {};
    for (const Entry &entry : table) {
        List patterns = {};
        for (const std::string &opcode : entry.opcodes)
            patterns = model_append(bsdl, patterns, model_text(bsdl, opcode));
        auto *record = model_new(bsdl, InstructionEntry{.name = model_name(bsdl, entry.name),
                                                        .patterns = patterns.head});
        entries = model_append(bsdl, entries, record);
    }
    bsdl->data->instruction_register->opcode_table = entries.head;
}

TEST(InstructionCheck, SearchesGiveWhatWalksGive)
{
    Tables tables;
    for (int handle = 0; handle < 20 && !HasFailure(); handle++) {
        bool is_2001 = handle % 2;
        Reading reading(Description(is_2001 ? Issue::BSDL_2001 : Issue::BSDL_1994));
        for (int i = 0; i < 150 && !HasFailure(); i++) {
            Table table = tables.next();
            put_table(reading, table);
            int32_t result = reading.check(bsdl_check_instr_reg);
            Messages got = picked(reading.messages(), [](const Message &message) {
                return message.text[0] == '\'' || message.text.starts_with("duplicate") ||
                       message.text.starts_with("ambiguous");
            });
            expect_messages(got, messages_of_walks(table, is_2001));
            // Who does not listen gets the same result.
            if (i % 8)
                continue;
            put_table(reading, table);
            reading.handle()->context->verbosity = 1;
            EXPECT_EQ(reading.check(bsdl_check_instr_reg), result);
            reading.handle()->context->verbosity = 4;
        }
    }
}

} // namespace
