#include "registers/registers.h"

#include "cases.h"
#include "frame/lookup.h"
#include "frame/reader_state.h"

#include <random>

using namespace support;

namespace
{

using support::Reading; // not the library's record of that name

// -------------------------------------------------------------------------------------- the rules

const CheckCase CASES[] = {
    {"valid of 2001"},
    {"valid of 1994", Issue::BSDL_1994},
    {"valid of 1990", Issue::BSDL_1990},

    {"two bits are enough, whatever the message of the length says",
     Issue::BSDL_2001,
     {{INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 2;"},
      {INSTRUCTION_OPCODE, opcodes("BYPASS (11), EXTEST (00), SAMPLE (01), PRELOAD (01)")},
      {INSTRUCTION_CAPTURE, captures("01")}}},
    {"one bit is not enough, and a capture of one bit cannot end in 01",
     Issue::BSDL_2001,
     {{INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 1;"},
      {INSTRUCTION_OPCODE, opcodes("BYPASS (1), EXTEST (0), SAMPLE (0), PRELOAD (0)")},
      {INSTRUCTION_CAPTURE, captures("1")}},
     100,
     {{ERROR, "INSTRUCTION_LENGTH (1) should be greater than 2", 2},
      {WARNING, "duplicate opcodes in instruction opcode table:", 2},
      {WARNING, "'EXTEST' (0)", 2},
      {WARNING, "'SAMPLE' (0)", 2},
      {WARNING, "'PRELOAD' (0)", 2},
      {ERROR, "instruction capture pattern (1) must end in 01", 2}}},

    {"opcodes and captures of a wrong length go through the other rules as well",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0010), MINE (111, 01010)")},
      {INSTRUCTION_CAPTURE, captures("xx01, 110, 11101, x1")}},
     100,
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
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE,
       opcodes("EXTEST (0000), SAMPLE (0001), PRELOAD (0010), MINE (1x11), BYPASS (1111)")}},
     100,
     {{ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 1X11", 2},
      {WARNING, "ambiguous opcodes in instruction opcode table", 2}}},
    {"of 2001 all zeros are free",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0110), SAMPLE (0001), PRELOAD (0010), MINE (0000)")}}},
    {"before 2001 all zeros, X counting as 0, belong to EXTEST",
     Issue::BSDL_1994,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), MINE (00X0)")}},
     100,
     {{ERROR, "opcode all 0's must be EXTEST, opcode: 'MINE' cannot use opcode 00X0", 2}}},
    {"nothing but X is all ones and all zeros",
     Issue::BSDL_1994,
     {{INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 2;"},
      {INSTRUCTION_OPCODE, opcodes("BYPASS (11), EXTEST (00), SAMPLE (01), MINE (xx)")},
      {INSTRUCTION_CAPTURE, captures("01")}},
     100,
     {{ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode XX", 2},
      {ERROR, "opcode all 0's must be EXTEST, opcode: 'MINE' cannot use opcode XX", 2}}},

    {"an opcode of two instructions is worth a warning, at the first of them",
     Issue::BSDL_1994,
     {{INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 2;"},
      {INSTRUCTION_OPCODE, opcodes("BYPASS (11), EXTEST (00), SAMPLE (01), MINE (11, 10, 11), "
                                   "YOURS (10)")},
      {INSTRUCTION_CAPTURE, captures("01")}},
     100,
     {{WARNING, "duplicate opcodes in instruction opcode table:", 2},
      {WARNING, "'BYPASS' (11)", 2},
      {WARNING, "'MINE' (11)", 2},
      {WARNING, "'MINE' (11)", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 11", 2},
      {WARNING, "duplicate opcodes in instruction opcode table:", 2},
      {WARNING, "'MINE' (10)", 2},
      {WARNING, "'YOURS' (10)", 2},
      {ERROR, "opcode all 1's must be BYPASS, opcode: 'MINE' cannot use opcode 11", 2}}},
    {"SAMPLE and PRELOAD share their opcode of 2001",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), PRELOAD (0001)")}}},
    {"before 2001 they do not",
     Issue::BSDL_1994,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), MINE (0001)")}},
     0,
     {{WARNING, "duplicate opcodes in instruction opcode table:", 2},
      {WARNING, "'SAMPLE' (0001)", 2},
      {WARNING, "'MINE' (0001)", 2}}},

    {"an opcode with X that covers later ones",
     Issue::BSDL_1994,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), A (01X0, 01X1), "
                                   "B (0100), C (0110, 0x11)")}},
     100,
     {{ERROR, "ambiguous opcodes in instruction opcode table:", 2},
      {ERROR, "'A' (01X0)", 2},
      {ERROR, "'B' (0100)", 2},
      {ERROR, "'C' (0110)", 2},
      {ERROR, "ambiguous opcodes in instruction opcode table:", 2},
      {ERROR, "'A' (01X1)", 2},
      {ERROR, "'C' (0X11)", 2}}},
    {"an opcode that a later one with X covers passes",
     Issue::BSDL_1994,
     {{INSTRUCTION_OPCODE,
       opcodes("BYPASS (1111), EXTEST (0000), SAMPLE (0001), B (0100), A (01X0)")}}},

    {"missing instructions of 2001",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1110), IDCODE (0100)")}},
     100,
     {{INFORMATION, "\tmandatory BYPASS instruction opcode (1111) added", 4},
      {ERROR, "EXTEST instruction opcode mandatory for STD_1149_1_2001", 2},
      {ERROR, "no SAMPLE instruction specified", 2},
      {ERROR, "no PRELOAD instruction specified", 2}}},
    {"before 2001 EXTEST is added, also beside one of another opcode",
     Issue::BSDL_1994,
     {{INSTRUCTION_OPCODE, opcodes("BYPASS (1111), EXTEST (0010), IDCODE (0100)")}},
     100,
     {{INFORMATION, "\tmandatory EXTEST instruction opcode (0000) added", 4},
      {ERROR, "no SAMPLE instruction specified", 2}}},
    {"without a table nothing is looked at",
     Issue::BSDL_2001,
     {{INSTRUCTION_OPCODE, "attribute INSTRUCTION_OPCODE of DEV : entity is 7;"},
      {INSTRUCTION_CAPTURE, captures("1")}}},
};

TEST(InstructionCheck, Rules)
{
    for (const CheckCase &row : CASES) {
        SCOPED_TRACE(row.name);
        Reading reading(described(row));
        ASSERT_NE(reading.handle(), nullptr);
        EXPECT_EQ(reading.check(bsdl_check_instr_reg), row.result);
        expect_messages(reading.messages(), row.messages);
    }
}

TEST(InstructionCheck, WithoutDescription) { EXPECT_EQ(bsdl_check_instr_reg(nullptr), 2); }

// ------------------------------------------------------------------------ what the check writes

struct Seen {
    std::string name;
    int32_t type;
    int32_t preload;
    bool operator==(const Seen &) const = default;
};

std::vector<Seen> instructions_of(Bsdl *handle)
{
    std::vector<Seen> seen;
    for (InstructionEntry *entry :
         all_of<InstructionEntry *>(handle, bsdlGetFirstInstruction, bsdlGetNextInstruction))
        seen.push_back({bsdlGetInstructionName(entry), bsdlGetInstructionType(entry),
                        bsdlIsInstrPreload(entry)});
    return seen;
}

std::ostream &operator<<(std::ostream &out, const Seen &seen)
{
    return out << seen.name << " " << seen.type << " " << seen.preload;
}

TEST(InstructionCheck, TypesAndOrder)
{
    struct {
        const char *name;
        Issue issue;
        const char *table;
        const char *privates;
        std::vector<Seen> seen;
    } const rows[] = {
        {"2001: the last PRELOAD leads; a mandatory name stays so in the private list",
         Issue::BSDL_2001,
         "BYPASS (1111), preload (0010), EXTEST (0000), SAMPLE (0001), PRELOAD (0011), Mine "
         "(0101), RUNBIST (0110), HIGHZ (0111)",
         "mine, HIGHZ",
         {{"PRELOAD", 2, 1},
          {"PRELOAD", 2, 1},
          {"BYPASS", 2, 0},
          {"EXTEST", 2, 0},
          {"SAMPLE", 2, 0},
          {"MINE", 3, 0},
          {"RUNBIST", 1, 0},
          {"HIGHZ", 2, 0}}},
        {"1994: SAMPLE leads, what is missing comes last",
         Issue::BSDL_1994,
         "MINE (0101), SAMPLE (0001)",
         "OTHER",
         {{"SAMPLE", 2, 1}, {"MINE", 1, 0}, {"BYPASS", 2, 0}, {"EXTEST", 2, 0}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(Description(row.issue)
                            .with(INSTRUCTION_OPCODE, opcodes(row.table))
                            .with(INSTRUCTION_PRIVATE, privates(row.privates)));
        ASSERT_NE(reading.handle(), nullptr);
        InstructionEntry *first = bsdlGetFirstInstruction(reading);
        EXPECT_EQ(bsdlGetInstructionType(first), 0);
        EXPECT_EQ(reading.check(bsdl_check_instr_reg), 0);
        EXPECT_EQ(instructions_of(reading), row.seen);
        EXPECT_EQ(bsdlGetNbrOfInstructions(reading), static_cast<int32_t>(row.seen.size()));
    }
}

TEST(InstructionCheck, OpcodesAreInCapitalsAfterwards)
{
    Reading reading(
        Description(Issue::BSDL_1994)
            .with(INSTRUCTION_OPCODE, opcodes("SAMPLE (0x01), BYPASS (1111), EXTEST (0000)")));
    reading.check(bsdl_check_instr_reg);
    EXPECT_STREQ(bsdlGetFirstInstrPattern(bsdlGetFirstInstruction(reading)), "0X01");
}

TEST(InstructionCheck, AddedOpcodeOfAbsurdLengthIsCapped)
{
    Reading reading(
        Description(Issue::BSDL_1994)
            .with(INSTRUCTION_LENGTH, "attribute INSTRUCTION_LENGTH of DEV : entity is 2147483647;")
            .with(INSTRUCTION_OPCODE, opcodes("SAMPLE (01)")));
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(reading.check(bsdl_check_instr_reg), 100);
    ASSERT_EQ(bsdlGetNbrOfInstructions(reading), 3);
    bsdlGetFirstInstruction(reading);
    EXPECT_EQ(strlen(bsdlGetFirstInstrPattern(bsdlGetNextInstruction(reading))), 1048576u);
}

// ------------------------------------------------- the two searches against walks as they are told

struct Entry {
    std::string name;
    std::vector<std::string> opcodes;
};

struct Table {
    bool is_2001;
    std::vector<Entry> entries;
};

std::string line(const std::string &name, const std::string &opcode)
{
    return "'" + name + "' (" + opcode + ")";
}

// Walks over all that follows, opcode by opcode and bit by bit.
class Walks
{
  public:
    explicit Walks(const Table &table) : table_(table) {}

    Messages messages()
    {
        for (size_t i = 0; i < table_.entries.size(); i++)
            for (const std::string &opcode : table_.entries[i].opcodes)
                opcode.find('X') == std::string::npos ? duplicates(i, opcode)
                                                      : ambiguities(i, opcode);
        return messages_;
    }

  private:
    bool is_load(size_t entry) const
    {
        const std::string &name = table_.entries[entry].name;
        return table_.is_2001 && (name == "SAMPLE" || name == "PRELOAD");
    }

    static bool conflict(const std::string &earlier, const std::string &later)
    {
        for (size_t at = 0; at < later.size(); at++) {
            char a = at < earlier.size() ? earlier[at] : '\0';
            if (a != later[at] && a != 'X' && later[at] != 'X')
                return true;
        }
        return false;
    }

    void report(int level, const std::string &heading, size_t entry, const std::string &opcode,
                const std::vector<std::string> &found)
    {
        if (found.empty())
            return;
        messages_.push_back({level, 2, heading});
        if (level == WARNING && heading.find("ambiguous") == 0)
            return;
        messages_.push_back({level, 2, line(table_.entries[entry].name, opcode)});
        for (const std::string &text : found)
            messages_.push_back({level, 2, text});
    }

    void duplicates(size_t entry, const std::string &opcode)
    {
        std::vector<std::string> found;
        for (size_t i = entry; i < table_.entries.size(); i++) {
            const Entry &other = table_.entries[i];
            if ((is_load(entry) && is_load(i)) || other.name == table_.entries[entry].name)
                continue;
            for (const std::string &its : other.opcodes)
                if (its == opcode)
                    found.push_back(line(other.name, opcode));
        }
        report(WARNING, "duplicate opcodes in instruction opcode table:", entry, opcode, found);
    }

    void ambiguities(size_t entry, const std::string &opcode)
    {
        std::vector<std::string> found;
        for (size_t i = entry + 1; i < table_.entries.size(); i++) {
            if (is_load(entry) && is_load(i))
                continue;
            for (const std::string &its : table_.entries[i].opcodes)
                if (!conflict(opcode, its))
                    found.push_back(line(table_.entries[i].name, its));
        }
        if (table_.is_2001)
            report(WARNING, "ambiguous opcodes in instruction opcode table", entry, opcode, found);
        else
            report(ERROR, "ambiguous opcodes in instruction opcode table:", entry, opcode, found);
    }

    const Table &table_;
    Messages messages_;
};

// A handle that holds an opcode table and nothing else.
class Handle
{
  public:
    explicit Handle(const Table &table)
    {
        arena_start(&bsdl_.arena, 4096);
        names_start(&bsdl_.names, &bsdl_.arena);
        bsdl_.data = model_new<BsdlData>(&bsdl_);
        bsdl_.data->conformance = table.is_2001 ? CONFORMANCE_2001 : CONFORMANCE_1993;
        auto *instructions = model_new<InstructionRegister>(&bsdl_);
        bsdl_.data->instruction_register = instructions;
        instructions->length = 3;
        List entries = {};
        for (const Entry &entry : table.entries) {
            List patterns = {};
            for (const std::string &opcode : entry.opcodes)
                patterns = model_append(&bsdl_, patterns, model_text(&bsdl_, opcode));
            auto *record = model_new<InstructionEntry>(&bsdl_);
            record->name = model_name(&bsdl_, entry.name);
            record->patterns = patterns.head;
            entries = model_append(&bsdl_, entries, record);
        }
        instructions->opcode_table = entries.head;
    }
    ~Handle()
    {
        lookups_drop(&bsdl_);
        names_release(&bsdl_.names);
        arena_release(&bsdl_.arena);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    // The result; the messages of the two searches are left in `messages`.
    int32_t check(uint32_t verbosity)
    {
        BsdlContext context = {sink, this, verbosity};
        reader_state.context = &context;
        int32_t result = bsdl_check_instr_reg(&bsdl_);
        reader_state.context = nullptr;
        return result;
    }

    Messages messages;

  private:
    static void sink(void *data, BsdlMessage *message)
    {
        std::string text = message->text;
        if (text[0] == '\'' || text.starts_with("duplicate") || text.starts_with("ambiguous"))
            static_cast<Handle *>(data)->messages.push_back(
                {message->level, message->verbosity, text});
    }

    Bsdl bsdl_ = {};
};

class Tables
{
  public:
    Table next()
    {
        static const char *const names[] = {"SAMPLE", "PRELOAD", "EXTEST", "BYPASS", "A", "B"};
        Table table = {pick(2) == 1, {}};
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
            table.entries.push_back(entry);
        }
        return table;
    }

  private:
    size_t pick(size_t below) { return random_() % below; }

    std::minstd_rand random_{1};
};

std::string shown_table(const Table &table)
{
    std::string text = table.is_2001 ? "2001:" : "1993:";
    for (const Entry &entry : table.entries) {
        text += " " + entry.name + " (";
        for (const std::string &opcode : entry.opcodes)
            text += opcode + " ";
        text += ")";
    }
    return text;
}

TEST(InstructionCheck, SearchesGiveWhatWalksGive)
{
    Tables tables;
    for (int i = 0; i < 100000 && !HasFailure(); i++) {
        Table table = tables.next();
        Messages walked = Walks(table).messages();
        Handle handle(table);
        int32_t result = handle.check(2);
        bool same = handle.messages.size() == walked.size();
        for (size_t j = 0; same && j < walked.size(); j++)
            same = handle.messages[j].text == walked[j].text &&
                   handle.messages[j].level == walked[j].level;
        EXPECT_TRUE(same) << shown_table(table) << "\ngot "
                          << ::testing::PrintToString(handle.messages) << "\nwant "
                          << ::testing::PrintToString(walked);
        // Who does not listen gets the same result.
        if (i % 8 == 0) {
            EXPECT_EQ(Handle(table).check(1), result) << shown_table(table);
        }
    }
}

} // namespace
