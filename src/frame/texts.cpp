#include "frame/texts.h"

#include "frame/messages.h"

#include <charconv>
#include <cstddef>
#include <cstdio>
#include <iterator>

namespace
{

// Longer than any token, so that only the limit of the whole message cuts a name.
constexpr size_t PORT_TEXT_SIZE = 16384 + 16;
constexpr int PORT_TEXTS = 4;

// Words for the codes from 1 on, and the text for any other number.
template <size_t n> struct Words {
    const char *words[n];
    const char *other;

    const char *operator[](int32_t code) const
    {
        return code >= 1 && code <= static_cast<int32_t>(n) ? words[code - 1] : other;
    }
};

// clang-format off
constexpr Words<11> CELL_FUNCTIONS = {
    {"INPUT", "OUTPUT2", "OUTPUT3", "CONTROL", "CONTROLR", "INTERNAL", "CLOCK", "BIDIR", "BIDIR_IN",
     "BIDIR_OUT", "OBSERVE_ONLY"}, "ERROR IN CELL CONTEXT"};
constexpr Words<5> CAPTURE_INSTRUCTIONS = {
    {"EXTEST", "SAMPLE", "INTEST", "KEEPER", "RUNBIST"}, "ERROR IN INSTRUCTION NAME"};
constexpr Words<3> INSTRUCTION_CLASSES = {{"EXTERNAL", "SAMPLE", "INTERNAL"}, "PRIVATE"};
constexpr Words<7> CAPTURE_SOURCES = {
    {"PI", "PO", "CAP", "UPD", "ZERO", "ONE", "X"}, "ERROR IN CAPTURE SOURCE"};
constexpr Words<3> SAFE_BITS = {{"0", "1", "X"}, "ERROR IN SAFE_BIT NAME"};
constexpr Words<6> DISABLE_RESULTS = {
    {"Z", "WEAK0", "WEAK1", "PULL0", "PULL1", "KEEPER"}, "ERROR IN DISABLE_VALUE"}; /* as is */
constexpr Words<2> DISABLE_VALUES = {{"0", "1"}, "ERROR IN DISABLE_VALUE NAME"};
// The codes from 6 on are those of ports without a boundary cell.
constexpr Words<9> PIN_TYPES = {
    {"IN", "OUT", "INOUT", "BUFFER", "LINKAGE", "IN", "OUT", "INOUT", "BUFFER"},
    "ERROR IN PIN_TYPE NAME"};
constexpr Words<13> EBST_TYPES = {
    {"IN", "OUT", "OUTZ", "IO", "IOZ", "NC", "PWR", "GND", "TDI", "TDO", "TMS", "TCK", "TRST"},
    "ERROR IN EBST_TYPE NAME"};
// clang-format on

} // namespace

const char *cell_function_name(int32_t code) { return CELL_FUNCTIONS[code]; }

const char *capture_instruction_name(int32_t code) { return CAPTURE_INSTRUCTIONS[code]; }

const char *instruction_class_name(int32_t code) { return INSTRUCTION_CLASSES[code]; }

const char *capture_source_name(int32_t code) { return CAPTURE_SOURCES[code]; }

const char *safe_bit_name(int32_t code) { return SAFE_BITS[code]; }

const char *disable_result_name(int32_t code) { return DISABLE_RESULTS[code]; }

const char *disable_value_name(int32_t code) { return DISABLE_VALUES[code]; }

const char *port_type_name(int32_t code) { return PIN_TYPES[code]; }

const char *ebst_type_name(int32_t code) { return EBST_TYPES[code]; }

static NumberText number_text(double value, std::chars_format format, int precision)
{
    NumberText number;
    *std::to_chars(number.text, std::end(number.text) - 1, value, format, precision).ptr = '\0';
    return number;
}

NumberText fixed_text(double value, int precision)
{
    return number_text(value, std::chars_format::fixed, precision);
}

NumberText scientific_text(double value, int precision)
{
    return number_text(value, std::chars_format::scientific, precision);
}

static const char *with_subscript(const char *format, const char *name, int32_t subscript)
{
    // The scratch of one message; it carries nothing from call to call.
    static thread_local char texts[PORT_TEXTS][PORT_TEXT_SIZE];
    static thread_local unsigned turn;
    char *text = texts[turn++ % PORT_TEXTS];
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral): one of two literals of this file
    std::snprintf(text, PORT_TEXT_SIZE, format, name, subscript);
    return text;
}

const char *port_text(const char *name, bool subscripted, int32_t subscript)
{
    return subscripted ? with_subscript("%s(%i)", shown(name), subscript) : shown(name);
}

const char *port_text(const PortId *port)
{
    return port_text(port->name, port->subscripted != 0, port->subscript);
}

const char *port_text_square(const PortId *port)
{
    return port->subscripted ? with_subscript("%s[%i]", shown(port->name), port->subscript)
                             : shown(port->name);
}
