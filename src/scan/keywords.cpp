#include "scan/keywords.h"

#include "base/names.h"
#include "grammar.h"
#include "scan/scanner.h"

#include <cstring>
#include <iterator>

namespace
{

// An attribute's name with, before it, the word that is one token with it.
constexpr size_t ATTRIBUTE_LENGTH = std::size("ATTRIBUTE ") - 1;
#define NAMED(name) (&"ATTRIBUTE " name[ATTRIBUTE_LENGTH])

struct Sign {
    int token;
    const char *text;
};

// clang-format off
constexpr Sign SIGNS[] = {
    {';', ";"}, {'(', "("}, {':', ":"}, {')', ")"}, {',', ","}, {'.', "."}, {'[', "["}, {']', "]"},
    {'*', "*"}, {'-', "-"}, {'=', "="}, {'+', "+"}, {'~', "~"}, {'?', "?"}, {'!', "!"}, {'&', "&"},
    {COL_EQ, ":="}, {BOX, "<>"}, {QUOTE, "'"}, {D_COLON, "::"}, {SH_R, ">>"}, {SH_L, "<<"},
    {IO_OP, "?!"},
};

constexpr Keyword KEYWORDS[] = {
    {"AT_PINS", AT_PINS, RULES_ALL},
    {"BIDIR", Y_BIDIR, RULES_ALL},
    {"BIDIR_IN", Y_BIDIR_IN, RULES_ALL},
    {"BIDIR_OUT", Y_BIDIR_OUT, RULES_ALL},
    {"BOTH", BOTH, RULES_ALL},
    {"BOUNDARY", Y_BOUNDARY, RULES_ALL},
    {"BYPASS", Y_BYPASS, RULES_ALL},
    {"CAP", Y_CAP, RULES_ALL},
    {"CAPTURES", CAPTURES, RULES_ALL},
    {"CLAMP", Y_CLAMP, RULES_ALL},
    {"CLOCK", Y_CLOCK, RULES_ALL},
    {"CONTROL", Y_CONTROL, RULES_ALL},
    {"CONTROLR", Y_CONTROLR, RULES_ALL},
    {"DEVICE_ID", Y_DEVICE_ID, RULES_FROM_1994},
    {"EXPECT_DATA", EXPECT_DATA, RULES_ALL},
    {"EXTEST", Y_EXTEST, RULES_ALL},
    {"HIGHZ", Y_HIGHZ, RULES_ALL},
    {"IDCODE", Y_IDCODE, RULES_ALL},
    {"INPUT", Y_INPUT, RULES_ALL},
    {"INTERNAL", Y_INTERNAL, RULES_ALL},
    {"INTEST", Y_INTEST, RULES_ALL},
    {"KEEPER", Y_KEEPER, RULES_ALL},
    {"LOW", LOW, RULES_ALL},
    {"OBSERVE_ONLY", Y_OBSERVE_ONLY, RULES_FROM_1994, REFUSED_IN_1990},
    {"OBSERVING", OBSERVING, RULES_ALL},
    {"ONE", Y_ONE, RULES_ALL},
    {"OUTPUT2", Y_OUTPUT2, RULES_ALL},
    {"OUTPUT3", Y_OUTPUT3, RULES_ALL},
    {"PHYSICAL_PIN_MAP", PHYSICAL_PIN_MAP, RULES_ALL},
    {"PI", Y_PI, RULES_ALL},
    {"PIN_MAP_STRING", PIN_MAP_STRING, RULES_ALL},
    {"PO", Y_PO, RULES_ALL},
    {"PRELOAD", Y_PRELOAD, RULES_2001 | RULES_ISC | RULES_PRG},
    {"PULL0", Y_PULL0, RULES_ALL},
    {"PULL1", Y_PULL1, RULES_ALL},
    {"RUNBIST", Y_RUNBIST, RULES_ALL},
    {"SAMPLE", Y_SAMPLE, RULES_ALL},
    {"STD_1149_1_1990", Y_STD_1149_1_1990, RULES_ALL},
    {"STD_1149_1_1993", Y_STD_1149_1_1993, RULES_ALL},
    {"STD_1149_1_1994", Y_STD_1149_1_1994, RULES_ALL},
    {"STD_1149_1_2001", Y_STD_1149_1_2001, RULES_ALL},
    {"STD_1_90", Y_STD_1149_1_1990, RULES_ALL},
    {"STD_1_93", Y_STD_1149_1_1993, RULES_ALL},
    {"STD_1_94", Y_STD_1149_1_1994, RULES_ALL},
    {"STD_1532_2001", Y_STD_1532_2001, RULES_ALL, 0, Y_STD_1532_2001},
    {"STD_1532_2002", Y_STD_1532_2002, RULES_ALL, 0, Y_STD_1532_2002},
    {"STD_1149_6_2003", Y_STD_1149_6_2003, RULES_FROM_1994, 0, Y_STD_1149_6_2003},
    {"STD_1149", Y_STD_1149, RULES_2001},
    {"STD_PRG_2001", Y_STD_PRG_2001, RULES_ALL},
    {"PRG_VERSION_2_0_20010201", Y_STD_PRG_2001, RULES_ALL},
    {"UPD", Y_UPD, RULES_ALL},
    {"USERCODE", USERCODE, RULES_ALL},
    {"WAIT_DURATION", WAIT_DURATION, RULES_ALL},
    {"WEAK0", Y_WEAK0, RULES_ALL},
    {"WEAK1", Y_WEAK1, RULES_ALL},
    {"X", Y_X, RULES_ALL},
    {"Z", Y_Z, RULES_ALL},
    {"ZERO", Y_ZERO, RULES_ALL},
    {"ALL", ALL, RULES_ALL},
    {"ARRAY", ARRAY, RULES_ALL},
    {"ATTRIBUTE", ATTRIBUTE, RULES_ALL},
    {"BIT", BIT, RULES_ALL},
    {"BIT_VECTOR", BIT_VECTOR, RULES_ALL},
    {"BODY", BODY, RULES_ALL},
    {"BUFFER", BUFFER, RULES_ALL},
    {"CELL_INFO", CELL_INFO, RULES_ALL},
    {"CONSTANT", CONSTANT, RULES_ALL},
    {"DOWNTO", DOWNTO, RULES_ALL},
    {"END", END, RULES_ALL},
    {"ENTITY", ENTITY, RULES_ALL},
    {"GENERIC", GENERIC, RULES_ALL},
    {"IN", Y_IN, RULES_ALL},
    {"INOUT", INOUT, RULES_ALL},
    {"IS", IS, RULES_ALL},
    {"LINKAGE", LINKAGE, RULES_ALL},
    {"OF", OF, RULES_ALL},
    {"OUT", Y_OUT, RULES_ALL},
    {"PACKAGE", PACKAGE, RULES_ALL},
    {"PORT", PORT, RULES_ALL},
    {"POSITIVE", POSITIVE, RULES_ALL},
    {"RANGE", RANGE, RULES_ALL},
    {"RECORD", RECORD, RULES_ALL},
    {"SIGNAL", SIGNAL, RULES_ALL},
    {"STRING", STRING, RULES_ALL},
    {"SUBTYPE", SUBTYPE, RULES_ALL},
    {"TO", TO, RULES_ALL},
    {"TRUE", Y_TRUE, RULES_ALL},
    {"TYPE", TYPE, RULES_ALL},
    {"USE", USE, RULES_ALL},
    {"BSDL_EXTENSION", BSDL_EXTENSION, RULES_1994 | RULES_2001 | RULES_ISC | RULES_AIO | RULES_PRG},
    {"DIFFERENTIAL_CURRENT", DIFFERENTIAL_CURRENT, RULES_FROM_1994},
    {"DIFFERENTIAL_VOLTAGE", DIFFERENTIAL_VOLTAGE, RULES_FROM_1994},
    {"AC_SELECT", AIO_AC_SELECT, RULES_AIO},
    {"HP_TIME", AIO_HP_TIME, RULES_AIO},
    {"LP_TIME", AIO_LP_TIME, RULES_AIO},
    {"MAXIMUM_TIME", AIO_MAXIMUM_TIME, RULES_AIO},
    {"ON_CHIP", AIO_ON_CHIP, RULES_AIO},
    {"TRAIN", AIO_TRAIN, RULES_AIO},
    {"OPTIONAL", Y_OPTIONAL, RULES_ISC | RULES_PRG},
    {"RECOMMENDED", RECOMMENDED, RULES_ISC | RULES_PRG},
    {"EXIT_ON_ERROR", EXIT_ON_ERROR, RULES_ISC | RULES_PRG},
    {"ISC_DISABLE_READ", ISC_DISABLE_READ, RULES_ISC | RULES_PRG},
    {"ISC_DISABLE_PROGRAM", ISC_DISABLE_PROGRAM, RULES_ISC | RULES_PRG},
    {"ISC_DISABLE_ERASE", ISC_DISABLE_ERASE, RULES_ISC | RULES_PRG},
    {"ISC_DISABLE_KEY", ISC_DISABLE_KEY, RULES_ISC | RULES_PRG},
    {"INITIALIZE", INITIALIZE, RULES_ISC | RULES_PRG},
    {"REPEAT", REPEAT, RULES_ISC | RULES_PRG},
    {"LOOP", LOOP, RULES_ISC | RULES_PRG, VHDL_WORD},
    {"OST", OST, RULES_ISC | RULES_PRG},
    {"TERMINATE", TERMINATE, RULES_ISC | RULES_PRG},
    {"CRC", bsdl_CRC, RULES_ISC | RULES_PRG},
    {"WAIT", Y_ISC_WAIT, RULES_ISC | RULES_PRG, VHDL_WORD},
    {"MIN", Y_ISC_MIN, RULES_ISC | RULES_PRG},
    {"MAX", Y_ISC_MAX, RULES_ISC | RULES_PRG},
    {"UNPROCESSED", UNPROCESSED, RULES_ISC | RULES_PRG},
    {"NOT", NOT, RULES_ISC | RULES_PRG},
    {"IMPLEMENTED", Y_IMPLEMENTED, RULES_ISC | RULES_PRG},
    {"PROPRIETARY", PROPRIETARY, RULES_ISC | RULES_PRG},
    {"PRG_DATA", PRG_DATA, RULES_ALL},
    {"PROGRAM_ISC", PROGRAM_ISC, RULES_PRG},
    {"PROGRAM_SVF", PROGRAM_SVF, RULES_PRG},
    {"PROGRAM_STAPL", PROGRAM_STAPL, RULES_PRG},
    {"PROGRAM_JAM", PROGRAM_JAM, RULES_PRG},
    {"STD_1532_2000", 0, 0, 0, Y_STD_1532_2001},
    {"ABS", 0, 0, VHDL_WORD},
    {"ACCES", 0, 0, VHDL_WORD},
    {"AFTER", 0, 0, VHDL_WORD},
    {"ALIAS", 0, 0, VHDL_WORD},
    {"AND", 0, 0, VHDL_WORD},
    {"ARCHITECTURE", 0, 0, VHDL_WORD},
    {"ASSERT", 0, 0, VHDL_WORD},
    {"BEGIN", 0, 0, VHDL_WORD},
    {"BLOCK", 0, 0, VHDL_WORD},
    {"BUS", 0, 0, VHDL_WORD},
    {"CASE", 0, 0, VHDL_WORD},
    {"COMPONENT", 0, 0, VHDL_WORD},
    {"CONFIGURATION", 0, 0, VHDL_WORD},
    {"DISCONNECT", 0, 0, VHDL_WORD},
    {"ELSE", 0, 0, VHDL_WORD},
    {"ELSEIF", 0, 0, VHDL_WORD},
    {"EXIT", 0, 0, VHDL_WORD},
    {"FALSE", 0, 0, VHDL_WORD},
    {"FILE", 0, 0, VHDL_WORD},
    {"FOR", 0, 0, VHDL_WORD},
    {"FUNCTION", 0, 0, VHDL_WORD},
    {"GENERATE", 0, 0, VHDL_WORD},
    {"GUARDED", 0, 0, VHDL_WORD},
    {"IF", 0, 0, VHDL_WORD},
    {"IMPURE", 0, 0, VHDL_WORD},
    {"INERTIAL", 0, 0, VHDL_WORD},
    {"LABEL", 0, 0, VHDL_WORD},
    {"LIBRARY", 0, 0, VHDL_WORD},
    {"LITERAL", 0, 0, VHDL_WORD},
    {"MAP", 0, 0, VHDL_WORD},
    {"MOD", 0, 0, VHDL_WORD},
    {"NAND", 0, 0, VHDL_WORD},
    {"NEW", 0, 0, VHDL_WORD},
    {"NEXT", 0, 0, VHDL_WORD},
    {"NOR", 0, 0, VHDL_WORD},
    {"NULL", 0, 0, VHDL_WORD},
    {"ON", 0, 0, VHDL_WORD},
    {"OPEN", 0, 0, VHDL_WORD},
    {"OR", 0, 0, VHDL_WORD},
    {"OTHERS", 0, 0, VHDL_WORD},
    {"POSTPONED", 0, 0, VHDL_WORD},
    {"PROCEDURE", 0, 0, VHDL_WORD},
    {"PROCESS", 0, 0, VHDL_WORD},
    {"PURE", 0, 0, VHDL_WORD},
    {"REGISTER", 0, 0, VHDL_WORD},
    {"REJECT", 0, 0, VHDL_WORD},
    {"REM", 0, 0, VHDL_WORD},
    {"REPORT", 0, 0, VHDL_WORD},
    {"RETURN", 0, 0, VHDL_WORD},
    {"ROL", 0, 0, VHDL_WORD},
    {"ROR", 0, 0, VHDL_WORD},
    {"SELECT", 0, 0, VHDL_WORD},
    {"SEVERITY", 0, 0, VHDL_WORD},
    {"SHARED", 0, 0, VHDL_WORD},
    {"SLA", 0, 0, VHDL_WORD},
    {"SLL", 0, 0, VHDL_WORD},
    {"SRA", 0, 0, VHDL_WORD},
    {"SRL", 0, 0, VHDL_WORD},
    {"THEN", 0, 0, VHDL_WORD},
    {"TRANSPORT", 0, 0, VHDL_WORD},
    {"UNAFFECTED", 0, 0, VHDL_WORD},
    {"UNITS", 0, 0, VHDL_WORD},
    {"UNTIL", 0, 0, VHDL_WORD},
    {"VARIABLE", 0, 0, VHDL_WORD},
    {"WHEN", 0, 0, VHDL_WORD},
    {"WHILE", 0, 0, VHDL_WORD},
    {"WITH", 0, 0, VHDL_WORD},
    {"XNOR", 0, 0, VHDL_WORD},
    {"XOR", 0, 0, VHDL_WORD},
};

constexpr Keyword ATTRIBUTES[] = {
    {NAMED("BOUNDARY_LENGTH"), ATTRIBUTE_BOUNDARY_LENGTH, RULES_ALL},
    {NAMED("BOUNDARY_REGISTER"), ATTRIBUTE_BOUNDARY_REGISTER, RULES_ALL},
    {NAMED("DESIGN_WARNING"), ATTRIBUTE_DESIGN_WARNING, RULES_ALL},
    {NAMED("IDCODE_REGISTER"), ATTRIBUTE_IDCODE_REGISTER, RULES_ALL},
    {NAMED("INSTRUCTION_CAPTURE"), ATTRIBUTE_INSTRUCTION_CAPTURE, RULES_ALL},
    {NAMED("INSTRUCTION_LENGTH"), ATTRIBUTE_INSTRUCTION_LENGTH, RULES_ALL},
    {NAMED("INSTRUCTION_OPCODE"), ATTRIBUTE_INSTRUCTION_OPCODE, RULES_ALL},
    {NAMED("INSTRUCTION_PRIVATE"), ATTRIBUTE_INSTRUCTION_PRIVATE, RULES_ALL},
    {NAMED("PIN_MAP"), ATTRIBUTE_PIN_MAP, RULES_ALL},
    {NAMED("REGISTER_ACCESS"), ATTRIBUTE_REGISTER_ACCESS, RULES_ALL},
    {NAMED("TAP_SCAN_CLOCK"), ATTRIBUTE_TAP_SCAN_CLOCK, RULES_ALL},
    {NAMED("TAP_SCAN_IN"), ATTRIBUTE_TAP_SCAN_IN, RULES_ALL},
    {NAMED("TAP_SCAN_MODE"), ATTRIBUTE_TAP_SCAN_MODE, RULES_ALL},
    {NAMED("TAP_SCAN_OUT"), ATTRIBUTE_TAP_SCAN_OUT, RULES_ALL},
    {NAMED("TAP_SCAN_RESET"), ATTRIBUTE_TAP_SCAN_RESET, RULES_ALL},
    {NAMED("USERCODE_REGISTER"), ATTRIBUTE_USERCODE_REGISTER, RULES_ALL},
    {NAMED("CORVANE_CLASS"), ATTRIBUTE_CORVANE_CLASS, RULES_ALL, NOT_IN_PACKAGE},
    {NAMED("INSTRUCTION_DISABLE"), ATTRIBUTE_INSTRUCTION_DISABLE, RULES_1990},
    {NAMED("INSTRUCTION_GUARD"), ATTRIBUTE_INSTRUCTION_GUARD, RULES_1990},
    {NAMED("BOUNDARY_CELLS"), ATTRIBUTE_BOUNDARY_CELLS, RULES_1990},
    {NAMED("COMPLIANCE_PATTERNS"), ATTRIBUTE_COMPLIANCE_PATTERNS, RULES_FROM_1994},
    {NAMED("COMPLIANCE_ENABLE"), ATTRIBUTE_COMPLIANCE_ENABLE, RULES_FROM_1994},
    {NAMED("COMPONENT_CONFORMANCE"), ATTRIBUTE_COMPONENT_CONFORMANCE, RULES_BSDL},
    {NAMED("INTEST_EXECUTION"), ATTRIBUTE_INTEST_EXECUTION, RULES_FROM_1994},
    {NAMED("PORT_GROUPING"), ATTRIBUTE_PORT_GROUPING, RULES_FROM_1994},
    {NAMED("RUNBIST_EXECUTION"), ATTRIBUTE_RUNBIST_EXECUTION, RULES_FROM_1994},
    {NAMED("ISC_CONFORMANCE"), ATTRIBUTE_ISC_CONFORMANCE, RULES_BSDL | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_PIN_BEHAVIOR"), ATTRIBUTE_ISC_PIN_BEHAVIOR, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_FIXED_SYSTEM_PINS"), ATTRIBUTE_ISC_FIXED_SYSTEM_PINS, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_STATUS"), ATTRIBUTE_ISC_STATUS, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_BLANK_USERCODE"), ATTRIBUTE_ISC_BLANK_USERCODE, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_SECURITY"), ATTRIBUTE_ISC_SECURITY, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_FLOW"), ATTRIBUTE_ISC_FLOW, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_PROCEDURE"), ATTRIBUTE_ISC_PROCEDURE, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_ACTION"), ATTRIBUTE_ISC_ACTION, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_ILLEGAL_EXIT"), ATTRIBUTE_ISC_ILLEGAL_EXIT, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("ISC_DESIGN_WARNING"), ATTRIBUTE_ISC_DESIGN_WARNING, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("AIO_COMPONENT_CONFORMANCE"), ATTRIBUTE_AIO_COMPONENT_CONFORMANCE, RULES_BSDL, NOT_IN_PACKAGE},
    {NAMED("AIO_EXTEST_PULSE_EXECUTION"), ATTRIBUTE_AIO_EXTEST_PULSE_EXECUTION, RULES_AIO, NOT_IN_PACKAGE},
    {NAMED("AIO_EXTEST_TRAIN_EXECUTION"), ATTRIBUTE_AIO_EXTEST_TRAIN_EXECUTION, RULES_AIO, NOT_IN_PACKAGE},
    {NAMED("AIO_PIN_BEHAVIOR"), ATTRIBUTE_AIO_PIN_BEHAVIOR, RULES_AIO, NOT_IN_PACKAGE},
    {NAMED("PRG_DESIGN_REVISION"), ATTRIBUTE_DESIGN_REVISION, RULES_ISC | RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("PRG_FREQUENCY"), ATTRIBUTE_FREQUENCY, RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("PRG_SERIAL_CHANNELS"), ATTRIBUTE_SERIAL_CHANNELS, RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("PRG_PROGRAM_REFERENCE"), ATTRIBUTE_PROGRAM_REFERENCE, RULES_PRG, NOT_IN_PACKAGE},
    {NAMED("INSTRUCTION_SEQUENCE"), ATTRIBUTE_INSTRUCTION_SEQUENCE, RULES_1990, OBSOLETE},
    {NAMED("INSTRUCTION_USAGE"), ATTRIBUTE_INSTRUCTION_USAGE, RULES_1990, OBSOLETE},
};
// clang-format on

// Open addressing, laid out by the compiler: a word costs one probe as a rule.
template <size_t n, size_t slots> struct KeywordTable {
    static constexpr uint32_t MASK = slots - 1;
    const Keyword *rows;
    uint8_t row[slots] = {};    // 0: free; else the row's number plus one
    uint8_t length[slots] = {}; // of the row's word

    constexpr explicit KeywordTable(const Keyword (&keywords)[n]) : rows(keywords)
    {
        static_assert(n < 255 && slots >= 2 * n && (slots & MASK) == 0);
        for (size_t i = 0; i < n; i++) {
            size_t word_length = 0;
            while (keywords[i].word[word_length])
                word_length++;
            auto at = static_cast<uint32_t>(text_hash(keywords[i].word, word_length)) & MASK;
            while (row[at])
                at = (at + 1) & MASK;
            row[at] = static_cast<uint8_t>(i + 1);
            length[at] = static_cast<uint8_t>(word_length);
        }
    }

    const Keyword *find(const char *word, size_t word_length, uint64_t hash) const
    {
        for (auto at = static_cast<uint32_t>(hash) & MASK; row[at]; at = (at + 1) & MASK) {
            const Keyword *keyword = &rows[row[at] - 1];
            if (length[at] == word_length && equal_folded(keyword->word, word, word_length))
                return keyword;
        }
        return nullptr;
    }
};

constexpr KeywordTable<std::size(KEYWORDS), 1024> KEYWORD_TABLE(KEYWORDS);
constexpr KeywordTable<std::size(ATTRIBUTES), 256> ATTRIBUTE_TABLE(ATTRIBUTES);

} // namespace

std::span<const Keyword> all_keywords() { return KEYWORDS; }

std::span<const Keyword> all_attributes() { return ATTRIBUTES; }

const Keyword *find_keyword(const char *word, size_t length, uint64_t hash)
{
    return KEYWORD_TABLE.find(word, length, hash);
}

const Keyword *find_attribute(const char *word, size_t length, uint64_t hash)
{
    return ATTRIBUTE_TABLE.find(word, length, hash);
}

const Keyword *find_attribute_start(const char *word, size_t length)
{
    for (const Keyword &row : ATTRIBUTES) {
        size_t row_length = std::strlen(row.word);
        if (row_length < length && equal_folded(row.word, word, row_length))
            return &row;
    }
    return nullptr;
}

const char *token_text(const char *name)
{
    for (const Sign &sign : SIGNS)
        if (token_name(sign.token) == name)
            return sign.text;
    for (const Keyword &row : KEYWORDS)
        if (row.token && token_name(row.token) == name)
            return row.word;
    for (const Keyword &row : ATTRIBUTES)
        if (token_name(row.token) == name)
            return row.word - ATTRIBUTE_LENGTH;
    return nullptr;
}
