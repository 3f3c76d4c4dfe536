#include "code_words.h"

#include "tarnlet/bsdl.h"

#include <cstddef>

namespace
{

struct Word {
    int32_t code;
    const char *word;
};

} // namespace

template <size_t N> static const char *word_of(const Word (&words)[N], int32_t code)
{
    for (const Word &word : words)
        if (word.code == code)
            return word.word;
    return nullptr;
}

const char *standard_word(int32_t standard)
{
    static constexpr Word WORDS[] = {
        {BSDL_STANDARD_1149_1_1990, "STD_1149_1_1990"},
        {BSDL_STANDARD_1149_1_1994, "STD_1149_1_1994"},
        {BSDL_STANDARD_1149_1_2001, "STD_1149_1_2001"},
        {BSDL_STANDARD_1532_2001, "STD_1532_2001"},
        {BSDL_STANDARD_1532_2002, "STD_1532_2002"},
        {BSDL_STANDARD_PRG_2001, "STD_PRG_2001"},
        {BSDL_STANDARD_1149_6_2003, "STD_1149_6_2003"},
    };
    return word_of(WORDS, standard);
}

const char *conformance_word(int32_t conformance)
{
    static constexpr Word WORDS[] = {
        {CONFORMANCE_1990, "STD_1149_1_1990"},
        {CONFORMANCE_1993, "STD_1149_1_1993"},
        {CONFORMANCE_2001, "STD_1149_1_2001"},
    };
    return word_of(WORDS, conformance);
}

// Whether a bit has a cell is told by its cells, so the codes for bits without one need no words.
const char *pin_type_word(int32_t type)
{
    static constexpr Word WORDS[] = {
        {PIN_TYPE_IN, "in"},
        {PIN_TYPE_OUT, "out"},
        {PIN_TYPE_INOUT, "inout"},
        {PIN_TYPE_BUFFER, "buffer"},
        {PIN_TYPE_LINKAGE, "linkage"},
        {PIN_TYPE_IN_NO_CELL, "in"},
        {PIN_TYPE_OUT_NO_CELL, "out"},
        {PIN_TYPE_INOUT_NO_CELL, "inout"},
        {PIN_TYPE_BUFFER_NO_CELL, "buffer"},
    };
    return word_of(WORDS, type);
}

const char *pin_function_word(int32_t function)
{
    static constexpr Word WORDS[] = {
        {PIN_FUNCTION_TDI, "TDI"},
        {PIN_FUNCTION_TDO, "TDO"},
        {PIN_FUNCTION_TCK, "TCK"},
        {PIN_FUNCTION_TMS, "TMS"},
        {PIN_FUNCTION_TRST, "TRST"},
        {PIN_FUNCTION_REPRESENTATIVE, "representative"},
        {PIN_FUNCTION_ASSOCIATED, "associated"},
        {PIN_FUNCTION_COMPLIANCE, "compliance"},
        {PIN_FUNCTION_ASSOCIATED_WITH_CELL, "associated"},
    };
    return word_of(WORDS, function);
}

const char *twin_type_word(int32_t type)
{
    static constexpr Word WORDS[] = {{TWIN_TYPE_VOLTAGE, "voltage"},
                                     {TWIN_TYPE_CURRENT, "current"}};
    return word_of(WORDS, type);
}

const char *halt_state_word(int32_t state)
{
    static constexpr Word WORDS[] = {{HALT_STATE_LOW, "LOW"}, {HALT_STATE_BOTH, "BOTH"}};
    return word_of(WORDS, state);
}

const char *cell_function_word(int32_t function)
{
    static constexpr Word WORDS[] = {
        {CELL_FUNCTION_INPUT, "INPUT"},
        {CELL_FUNCTION_OUTPUT2, "OUTPUT2"},
        {CELL_FUNCTION_OUTPUT3, "OUTPUT3"},
        {CELL_FUNCTION_CONTROL, "CONTROL"},
        {CELL_FUNCTION_CONTROLR, "CONTROLR"},
        {CELL_FUNCTION_INTERNAL, "INTERNAL"},
        {CELL_FUNCTION_CLOCK, "CLOCK"},
        {CELL_FUNCTION_BIDIR, "BIDIR"},
        {CELL_FUNCTION_BIDIR_IN, "BIDIR_IN"},
        {CELL_FUNCTION_BIDIR_OUT, "BIDIR_OUT"},
        {CELL_FUNCTION_OBSERVE_ONLY, "OBSERVE_ONLY"},
    };
    return word_of(WORDS, function);
}

const char *capture_instruction_word(int32_t instruction)
{
    static constexpr Word WORDS[] = {
        {CAPTURE_INSTRUCTION_EXTEST, "EXTEST"},   {CAPTURE_INSTRUCTION_SAMPLE, "SAMPLE"},
        {CAPTURE_INSTRUCTION_INTEST, "INTEST"},   {CAPTURE_INSTRUCTION_KEEPER, "KEEPER"},
        {CAPTURE_INSTRUCTION_RUNBIST, "RUNBIST"},
    };
    return word_of(WORDS, instruction);
}

const char *capture_source_word(int32_t source)
{
    static constexpr Word WORDS[] = {
        {CAPTURE_SOURCE_PI, "PI"},   {CAPTURE_SOURCE_PO, "PO"},     {CAPTURE_SOURCE_CAP, "CAP"},
        {CAPTURE_SOURCE_UPD, "UPD"}, {CAPTURE_SOURCE_ZERO, "ZERO"}, {CAPTURE_SOURCE_ONE, "ONE"},
        {CAPTURE_SOURCE_X, "X"},
    };
    return word_of(WORDS, source);
}

const char *safe_bit_word(int32_t safe)
{
    static constexpr Word WORDS[] = {{SAFE_BIT_0, "0"}, {SAFE_BIT_1, "1"}, {SAFE_BIT_X, "X"}};
    return word_of(WORDS, safe);
}

const char *disable_value_word(int32_t value)
{
    static constexpr Word WORDS[] = {{DISABLE_VALUE_0, "0"}, {DISABLE_VALUE_1, "1"}};
    return word_of(WORDS, value);
}

const char *disable_result_word(int32_t result)
{
    static constexpr Word WORDS[] = {
        {DISABLE_RESULT_Z, "Z"},         {DISABLE_RESULT_WEAK0, "WEAK0"},
        {DISABLE_RESULT_WEAK1, "WEAK1"}, {DISABLE_RESULT_PULL0, "PULL0"},
        {DISABLE_RESULT_PULL1, "PULL1"}, {DISABLE_RESULT_KEEPER, "KEEPER"},
    };
    return word_of(WORDS, result);
}

const char *instruction_type_word(int32_t type)
{
    static constexpr Word WORDS[] = {
        {INSTRUCTION_TYPE_PUBLIC, "public"},
        {INSTRUCTION_TYPE_MANDATORY, "standard"},
        {INSTRUCTION_TYPE_PRIVATE, "private"},
    };
    return word_of(WORDS, type);
}

const char *isc_conformance_word(int32_t conformance)
{
    static constexpr Word WORDS[] = {
        {ISC_CONFORMANCE_1532_2001, "STD_1532_2001"},
        {ISC_CONFORMANCE_1532_2002, "STD_1532_2002"},
    };
    return word_of(WORDS, conformance);
}

const char *isc_pin_behavior_word(int32_t behavior)
{
    static constexpr Word WORDS[] = {{ISC_PIN_BEHAVIOR_HIGHZ, "HIGHZ"},
                                     {ISC_PIN_BEHAVIOR_CLAMP, "CLAMP"}};
    return word_of(WORDS, behavior);
}

const char *isc_status_word(int32_t status)
{
    static constexpr Word WORDS[] = {{ISC_STATUS_IMPLEMENTED, "implemented"},
                                     {ISC_STATUS_NOT_IMPLEMENTED, "not implemented"}};
    return word_of(WORDS, status);
}

const char *isc_operation_word(int32_t operation)
{
    static constexpr Word WORDS[] = {
        {ISC_OPERATION_HEX, "hex"},
        {ISC_OPERATION_VARIABLE, "variable"},
        {ISC_OPERATION_ASSIGN, "assign"},
        {ISC_OPERATION_INPUT, "input"},
        {ISC_OPERATION_VARIABLE_INPUT, "variable-input"},
        {ISC_OPERATION_IO, "io"},
        {ISC_OPERATION_VARIABLE_IO, "variable-io"},
        {ISC_OPERATION_ADD, "add"},
        {ISC_OPERATION_SUBTRACT, "subtract"},
        {ISC_OPERATION_SHIFT_LEFT, "shift-left"},
        {ISC_OPERATION_SHIFT_RIGHT, "shift-right"},
        {ISC_OPERATION_COMPLEMENT, "complement"},
    };
    return word_of(WORDS, operation);
}

const char *isc_tag_word(int32_t tag)
{
    static constexpr Word WORDS[] = {
        {ISC_TAG_CRC, "CRC"}, {ISC_TAG_OST, "OST"}, {ISC_TAG_CRC_OST, "CRC_OST"}};
    return word_of(WORDS, tag);
}

const char *program_type_word(int32_t type)
{
    static constexpr Word WORDS[] = {
        {PRG_PROGRAM_TYPE_ISC, "ISC"},
        {PRG_PROGRAM_TYPE_SVF, "SVF"},
        {PRG_PROGRAM_TYPE_STAPL, "STAPL"},
        {PRG_PROGRAM_TYPE_JAM, "JAM"},
    };
    return (type & PRG_PROGRAM_TYPE_JCS) ? "JCS" : word_of(WORDS, type);
}
