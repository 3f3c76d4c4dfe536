#pragma once

#include "tarnlet/bsdl.h"

#include <cstdint>

// Words for stored codes, for messages and the EBST file. Any other number gives the text that says
// so. The strings are constant.
const char *cell_function_name(int32_t code); // cell contexts too
const char *capture_instruction_name(int32_t code);
const char *instruction_class_name(int32_t code);
const char *capture_source_name(int32_t code);
const char *safe_bit_name(int32_t code);
const char *disable_result_name(int32_t code);
const char *disable_value_name(int32_t code);
const char *port_type_name(int32_t code);
const char *ebst_type_name(int32_t code);

// A number as "%f", "%e" and the like write it, whatever the locale of the host is.
struct NumberText {
    char text[336]; // of the largest with six digits after the point
};
NumberText fixed_text(double value, int precision = 6);
NumberText scientific_text(double value, int precision = 6);

// "A" or "A(3)", so that a rule needs one format for a port with and without subscript. The text
// stays good for the next few calls: enough for all ports of one message.
const char *port_text(const PortId *port);
// The same for a port bit whose parts stand apart.
const char *port_text(const char *name, bool subscripted, int32_t subscript);
// "A" or "A[3]", as some rules write it.
const char *port_text_square(const PortId *port);
