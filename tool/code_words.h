#pragma once

#include <cstdint>

// The words of the language for the codes of the library; NULL for a code that stands for nothing.
const char *standard_word(int32_t standard);
const char *conformance_word(int32_t conformance);
const char *pin_type_word(int32_t type);
const char *pin_function_word(int32_t function);
const char *twin_type_word(int32_t type);
const char *halt_state_word(int32_t state);
const char *cell_function_word(int32_t function);
const char *capture_instruction_word(int32_t instruction);
const char *capture_source_word(int32_t source);
const char *safe_bit_word(int32_t safe);
const char *disable_value_word(int32_t value);
const char *disable_result_word(int32_t result);
const char *instruction_type_word(int32_t type);
const char *isc_conformance_word(int32_t conformance);
const char *isc_pin_behavior_word(int32_t behavior);
const char *isc_status_word(int32_t status);
const char *isc_operation_word(int32_t operation);
const char *isc_tag_word(int32_t tag);
const char *program_type_word(int32_t type);
