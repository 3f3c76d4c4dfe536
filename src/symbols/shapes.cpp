// The tables of a description, as far as it takes to tell what a word in them is: a row for each
// place that has words of a kind. What such a table means is a matter of the grammar.

#include "symbols/shapes.h"

#include "base/names.h"

#include <array>
#include <iterator>
#include <span>

namespace
{

constexpr int ANY = -1;
constexpr int DEEP = -2;       // in any parentheses
constexpr char ANY_SIGN = 'a'; // no letter is a sign
constexpr bool DEFINES = true;

// The first rule that fits a word names its kind.
struct Rule {
    Shape shape;
    int depth;
    int column;
    char mark;
    char before;
    uint8_t previous; // BSDL_SYMBOL_NONE: any
    bool digits;      // the word has to begin with a digit
    uint8_t kind;
    bool defines = false;
};

constexpr char ALL_BEFORE = ANY_SIGN;
constexpr uint8_t WHATEVER = BSDL_SYMBOL_NONE;

// clang-format off
constexpr Rule RULES[] = {
    {Shape::PIN_MAP_NAME, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PIN_MAP},

    {Shape::PIN_MAP, 0, ANY, 0, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},
    {Shape::PIN_MAP, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PIN, DEFINES},

    {Shape::PORT_PAIRS, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},

    {Shape::COMPLIANCE, DEEP, ANY, 0, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},
    {Shape::COMPLIANCE, DEEP, ANY, ')', ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PATTERN},

    {Shape::OPCODES, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_INSTRUCTION, DEFINES},
    {Shape::OPCODES, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PATTERN},

    {Shape::PATTERNS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PATTERN},
    {Shape::INSTRUCTIONS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_INSTRUCTION},
    {Shape::CELL_NAMES, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_CELL_NAME},
    {Shape::PORTS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},
    {Shape::WORDS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, true, BSDL_SYMBOL_NUMBER},
    {Shape::WORDS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_KEYWORD},

    {Shape::REGISTERS, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_REGISTER, DEFINES},
    {Shape::REGISTERS, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_INSTRUCTION},

    {Shape::CELLS, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_CELL_NUMBER, DEFINES},
    {Shape::CELLS, 1, 0, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_CELL_NAME},
    {Shape::CELLS, 1, 1, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},
    {Shape::CELLS, 1, 2, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_FUNCTION},
    {Shape::CELLS, 1, 3, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_VALUE},
    {Shape::CELLS, 1, 4, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_CELL_NUMBER},
    {Shape::CELLS, 1, 5, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_VALUE},
    {Shape::CELLS, 1, 6, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_VALUE},

    {Shape::EXECUTION, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, true, BSDL_SYMBOL_NUMBER},
    {Shape::EXECUTION, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},

    {Shape::AC_PINS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, true, BSDL_SYMBOL_NUMBER},
    {Shape::AC_PINS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},

    {Shape::FLOWS, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, true, BSDL_SYMBOL_NUMBER},
    {Shape::FLOWS, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_FLOW, DEFINES},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, '(', WHATEVER, false, BSDL_SYMBOL_INSTRUCTION},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, ':', WHATEVER, false, BSDL_SYMBOL_PATTERN},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, '=', WHATEVER, false, BSDL_SYMBOL_PATTERN},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, '*', WHATEVER, false, BSDL_SYMBOL_PATTERN},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, '!', WHATEVER, false, BSDL_SYMBOL_PATTERN},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, true, BSDL_SYMBOL_NUMBER},
    {Shape::FLOWS, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PORT},

    {Shape::PROCEDURES, 0, ANY, 0, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PROCEDURE, DEFINES},
    {Shape::PROCEDURES, DEEP, ANY, '=', ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_FLOW},

    {Shape::ACTIONS, 0, ANY, 0, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_ACTION, DEFINES},
    {Shape::ACTIONS, DEEP, ANY, '=', ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PROCEDURE},

    {Shape::CHANNELS, 0, ANY, ANY_SIGN, ')', WHATEVER, false, BSDL_SYMBOL_PART},
    {Shape::CHANNELS, 0, ANY, ANY_SIGN, ALL_BEFORE, BSDL_SYMBOL_KEYWORD, false, BSDL_SYMBOL_PART},
    {Shape::CHANNELS, 0, ANY, ANY_SIGN, ALL_BEFORE, BSDL_SYMBOL_PART, false, BSDL_SYMBOL_INSTRUCTION},
    {Shape::CHANNELS, 0, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_KEYWORD},
    {Shape::CHANNELS, DEEP, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_PATTERN},

    {Shape::PROGRAMS, ANY, ANY, ANY_SIGN, ALL_BEFORE, BSDL_SYMBOL_KEYWORD, false, BSDL_SYMBOL_PART},
    {Shape::PROGRAMS, ANY, ANY, ANY_SIGN, ALL_BEFORE, WHATEVER, false, BSDL_SYMBOL_VALUE},
};

// Words of the language among the names of a table, and what they announce.
struct TableWord {
    Shape shape;
    const char *word;
    uint8_t announces = BSDL_SYMBOL_NONE;
};

constexpr TableWord TABLE_WORDS[] = {
    {Shape::PORT_PAIRS, "DIFFERENTIAL_VOLTAGE"},
    {Shape::PORT_PAIRS, "DIFFERENTIAL_CURRENT"},
    {Shape::REGISTERS, "CAPTURES", BSDL_SYMBOL_PATTERN},
    {Shape::EXECUTION, "WAIT_DURATION"},
    {Shape::EXECUTION, "OBSERVING"},
    {Shape::EXECUTION, "HIGHZ"},
    {Shape::EXECUTION, "BOUNDARY"},
    {Shape::EXECUTION, "AT_PINS"},
    {Shape::EXECUTION, "EXPECT_DATA", BSDL_SYMBOL_PATTERN},
    {Shape::EXECUTION, "TRAIN", BSDL_SYMBOL_NUMBER},
    {Shape::EXECUTION, "MAXIMUM_TIME", BSDL_SYMBOL_NUMBER},
    {Shape::AC_PINS, "AC_SELECT", BSDL_SYMBOL_CELL_NUMBER},
    {Shape::AC_PINS, "LP_TIME", BSDL_SYMBOL_NUMBER},
    {Shape::AC_PINS, "HP_TIME", BSDL_SYMBOL_NUMBER},
    {Shape::AC_PINS, "ON_CHIP"},
    {Shape::FLOWS, "UNPROCESSED"},
    {Shape::FLOWS, "EXIT_ON_ERROR"},
    {Shape::FLOWS, "INITIALIZE"},
    {Shape::FLOWS, "REPEAT", BSDL_SYMBOL_NUMBER},
    {Shape::FLOWS, "TERMINATE"},
    {Shape::FLOWS, "LOOP"},
    {Shape::FLOWS, "MIN"},
    {Shape::FLOWS, "MAX"},
    {Shape::FLOWS, "WAIT"},
    {Shape::FLOWS, "CRC"},
    {Shape::FLOWS, "OST"},
    {Shape::PROCEDURES, "UNPROCESSED"},
    {Shape::PROCEDURES, "EXIT_ON_ERROR"},
    {Shape::ACTIONS, "PROPRIETARY"},
    {Shape::ACTIONS, "OPTIONAL"},
    {Shape::ACTIONS, "RECOMMENDED"},
};

// Words between parentheses right after a word, which belong to it and open no list.
struct Bracket {
    Shape shape;
    char opened;
    uint8_t owner; // BSDL_SYMBOL_NONE: any
    uint8_t kind;
};

constexpr Bracket BRACKETS[] = {
    {Shape::PORT_PAIRS, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::COMPLIANCE, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::CELLS, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::EXECUTION, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::AC_PINS, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::AC_PINS, '[', BSDL_SYMBOL_NONE, BSDL_SYMBOL_CELL_NUMBER},
    {Shape::PORTS, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::REGISTERS, '[', BSDL_SYMBOL_NONE, BSDL_SYMBOL_NUMBER},
    {Shape::FLOWS, '(', BSDL_SYMBOL_PORT, BSDL_SYMBOL_SUBSCRIPT},
    {Shape::FLOWS, '(', BSDL_SYMBOL_FLOW, BSDL_SYMBOL_DATA_NAME},
    {Shape::PROCEDURES, '(', BSDL_SYMBOL_PROCEDURE, BSDL_SYMBOL_DATA_NAME},
    {Shape::PROCEDURES, '(', BSDL_SYMBOL_FLOW, BSDL_SYMBOL_DATA_NAME},
    {Shape::ACTIONS, '(', BSDL_SYMBOL_ACTION, BSDL_SYMBOL_DATA_NAME},
    {Shape::ACTIONS, '(', BSDL_SYMBOL_PROCEDURE, BSDL_SYMBOL_DATA_NAME},
};

constexpr bool OF_PORT = true;

// All attributes of the standards; a scalar value needs no shape.
constexpr AttributeShape ATTRIBUTES[] = {
    {"AIO_COMPONENT_CONFORMANCE", Shape::WORDS},
    {"AIO_EXTEST_PULSE_EXECUTION", Shape::EXECUTION},
    {"AIO_EXTEST_TRAIN_EXECUTION", Shape::EXECUTION},
    {"AIO_PIN_BEHAVIOR", Shape::AC_PINS},
    {"BOUNDARY_CELLS", Shape::CELL_NAMES},
    {"BOUNDARY_LENGTH", Shape::OPAQUE},
    {"BOUNDARY_REGISTER", Shape::CELLS},
    {"COMPLIANCE_PATTERNS", Shape::COMPLIANCE},
    {"COMPONENT_CONFORMANCE", Shape::WORDS},
    {"CORVANE_CLASS", Shape::WORDS},
    {"DESIGN_WARNING", Shape::OPAQUE},
    {"IDCODE_REGISTER", Shape::PATTERNS},
    {"INSTRUCTION_CAPTURE", Shape::PATTERNS},
    {"INSTRUCTION_DISABLE", Shape::INSTRUCTIONS},
    {"INSTRUCTION_GUARD", Shape::INSTRUCTIONS},
    {"INSTRUCTION_LENGTH", Shape::OPAQUE},
    {"INSTRUCTION_OPCODE", Shape::OPCODES},
    {"INSTRUCTION_PRIVATE", Shape::INSTRUCTIONS},
    {"INSTRUCTION_SEQUENCE", Shape::OPAQUE},
    {"INSTRUCTION_USAGE", Shape::OPAQUE},
    {"INTEST_EXECUTION", Shape::EXECUTION},
    {"ISC_ACTION", Shape::ACTIONS},
    {"ISC_BLANK_USERCODE", Shape::PATTERNS},
    {"ISC_CONFORMANCE", Shape::WORDS},
    {"ISC_DESIGN_WARNING", Shape::OPAQUE},
    {"ISC_FIXED_SYSTEM_PINS", Shape::PORTS},
    {"ISC_FLOW", Shape::FLOWS},
    {"ISC_ILLEGAL_EXIT", Shape::INSTRUCTIONS},
    {"ISC_PIN_BEHAVIOR", Shape::WORDS},
    {"ISC_PROCEDURE", Shape::PROCEDURES},
    {"ISC_SECURITY", Shape::WORDS},
    {"ISC_STATUS", Shape::WORDS},
    {"PIN_MAP", Shape::OPAQUE},
    {"PORT_GROUPING", Shape::PORT_PAIRS},
    {"PRG_DESIGN_REVISION", Shape::OPAQUE},
    {"PRG_FREQUENCY", Shape::WORDS},
    {"PRG_PROGRAM_REFERENCE", Shape::PROGRAMS},
    {"PRG_SERIAL_CHANNELS", Shape::CHANNELS},
    {"REGISTER_ACCESS", Shape::REGISTERS},
    {"RUNBIST_EXECUTION", Shape::EXECUTION},
    {"TAP_SCAN_CLOCK", Shape::OPAQUE, OF_PORT},
    {"TAP_SCAN_IN", Shape::OPAQUE, OF_PORT},
    {"TAP_SCAN_MODE", Shape::OPAQUE, OF_PORT},
    {"TAP_SCAN_OUT", Shape::OPAQUE, OF_PORT},
    {"TAP_SCAN_RESET", Shape::OPAQUE, OF_PORT},
    {"USERCODE_REGISTER", Shape::PATTERNS},
};
// clang-format on

} // namespace

// The rows of a shape stand together. A table of a million words asks for them at each.
template <const auto &table> static auto rows_of(Shape shape)
{
    struct Range {
        size_t begin, end;
    };
    static constexpr auto RANGES = [] {
        std::array<Range, static_cast<size_t>(Shape::PROGRAMS) + 1> ranges = {};
        for (size_t i = 0; i < std::size(table); i++) {
            Range &range = ranges[static_cast<size_t>(table[i].shape)];
            if (!range.end)
                range.begin = i;
            range.end = i + 1;
        }
        return ranges;
    }();
    const Range range = RANGES[static_cast<size_t>(shape)];
    return std::span(std::begin(table) + range.begin, std::begin(table) + range.end);
}

bool same_word(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && equal_folded(a.data(), b.data(), a.size());
}

static const TableWord *find_table_word(Shape shape, std::string_view word)
{
    for (const TableWord &row : rows_of<TABLE_WORDS>(shape))
        if (same_word(row.word, word))
            return &row;
    return nullptr;
}

// Programs are told by a word that a number may follow.
static bool is_program_type(Shape shape, std::string_view word)
{
    constexpr std::string_view START = "PROGRAM_";
    return shape == Shape::PROGRAMS && same_word(word.substr(0, START.size()), START);
}

static bool fits(const Rule &rule, const PlaceInTable &place, std::string_view word)
{
    return (rule.depth == place.depth || rule.depth == ANY ||
            (rule.depth == DEEP && place.depth > 0)) &&
           (rule.column == ANY || rule.column == place.column) &&
           (rule.mark == ANY_SIGN || rule.mark == place.mark) &&
           (rule.before == ALL_BEFORE || rule.before == place.before) &&
           (rule.previous == WHATEVER || rule.previous == place.previous) &&
           (!rule.digits || (word[0] >= '0' && word[0] <= '9'));
}

WordRole role_of(const PlaceInTable &place, std::string_view word)
{
    if (word[0] == '$')
        return {BSDL_SYMBOL_VARIABLE, true};
    if (find_table_word(place.shape, word) || is_program_type(place.shape, word))
        return {BSDL_SYMBOL_KEYWORD, false};
    for (const Rule &rule : rows_of<RULES>(place.shape))
        if (fits(rule, place, word))
            return {rule.kind, rule.defines};
    return {BSDL_SYMBOL_NONE, false};
}

uint8_t announced_by(Shape shape, std::string_view word)
{
    const TableWord *row = find_table_word(shape, word);
    return row ? row->announces : uint8_t{BSDL_SYMBOL_NONE};
}

uint8_t kind_in_brackets(Shape shape, char opened, uint8_t owner)
{
    for (const Bracket &row : BRACKETS)
        if (row.shape == shape && row.opened == opened &&
            (row.owner == BSDL_SYMBOL_NONE || row.owner == owner))
            return row.kind;
    return BSDL_SYMBOL_NONE;
}

char row_separator(Shape shape) { return shape == Shape::AC_PINS ? ';' : ','; }

const AttributeShape *find_attribute_shape(std::string_view word)
{
    for (const AttributeShape &row : ATTRIBUTES)
        if (same_word(row.word, word))
            return &row;
    return nullptr;
}
