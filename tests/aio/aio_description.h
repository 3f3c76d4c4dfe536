#pragma once

#include "support/description.h"

// The valid description with the statements of IEEE 1149.6, for the tests of their family.
namespace aio
{

using namespace support;
using support::Message;

const char *const CONFORMANCE_1149_6 =
    "attribute AIO_COMPONENT_CONFORMANCE of DEV : entity is \"STD_1149_6_2003\";";

inline std::string pulse(const std::string &value)
{
    return attribute("AIO_EXTEST_PULSE_EXECUTION", value);
}

inline std::string train(const std::string &value)
{
    return attribute("AIO_EXTEST_TRAIN_EXECUTION", value);
}

inline std::string pins(const std::string &value) { return attribute("AIO_PIN_BEHAVIOR", value); }

// A description that uses the package of IEEE 1149.6 and has these statements. Further ports: U
// (buffer), Q (in, vector 2 down to 0), P (in, vector 0 to 0); further cells: 8 internal, safe 0;
// 9 internal, safe 1; 10 observe_only. The further ports are in no pin mapping: it reads well, and
// the single checks of IEEE 1149.6 do.
inline Description statements(const std::string &text)
{
    return Description()
        .replace(PORT_CLAUSE, "GND,",
                 "U : buffer bit; Q : in bit_vector(2 downto 0); P : in bit_vector(0 to 0); GND,")
        .with(USES, "use STD_1149_6_2003.all;")
        .replace(INSTRUCTION_OPCODE, "IDCODE", "EXTEST_PULSE (0101), EXTEST_TRAIN (0110), IDCODE")
        .replace(BOUNDARY_LENGTH, "8", "11")
        .replace(BOUNDARY_REGISTER, "7 (BC_0, A, input, X)",
                 "7 (BC_0, A, input, X), 8 (BC_0, *, internal, 0), 9 (BC_0, *, internal, 1), "
                 "10 (BC_0, B, observe_only, X)")
        .with(EXTENSIONS, text);
}

inline Description with_pins(const std::string &value)
{
    return statements(CONFORMANCE_1149_6 + pins(value));
}

// The same with all that bsdl_check_aio asks for, so that it passes.
inline Description whole()
{
    return Description()
        .with(USES, "use STD_1149_6_2003.all;")
        .replace(INSTRUCTION_OPCODE, "IDCODE", "EXTEST_PULSE (0101), EXTEST_TRAIN (0110), IDCODE")
        .with(REGISTER_ACCESS,
              attribute("REGISTER_ACCESS", "BOUNDARY (EXTEST_PULSE, EXTEST_TRAIN)"))
        .with(EXTENSIONS, CONFORMANCE_1149_6 + pulse("WAIT_DURATION TCK 15") +
                              train("TRAIN 30, MAXIMUM_TIME 120.0e-6") +
                              pins("A[7], D[5,6] : LP_TIME=5.0e-9"));
}

} // namespace aio
