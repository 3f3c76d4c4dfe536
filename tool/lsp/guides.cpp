// What each statement is for, in the words of a person who writes one.

#include "lsp/features.h"

namespace lsp
{

static constexpr uint32_t ALL = BSDL_STANDARD_MASK_1149_1;
static constexpr uint32_t ONLY_1990 = BSDL_STANDARD_BIT_1990;
static constexpr uint32_t FROM_1994 = BSDL_STANDARD_BIT_1994 | BSDL_STANDARD_BIT_2001;
static constexpr uint32_t ISC = BSDL_STANDARD_MASK_1532;
static constexpr uint32_t AIO = BSDL_STANDARD_BIT_1149_6_2003;

const std::vector<StatementGuide> &statement_guides()
{
    // clang-format off
    static const std::vector<StatementGuide> GUIDES = {
        {"COMPONENT_CONFORMANCE", "The issue of the standard that the device follows.",
         "\"STD_1149_1_2001\"", "\"${1:STD_1149_1_2001}\"", FROM_1994},
        {"PIN_MAP", "Says that pin maps follow, one for each package of the device.",
         "PHYSICAL_PIN_MAP", "PHYSICAL_PIN_MAP", ALL},
        {"PORT_GROUPING", "Pairs of differential ports. The first port of a pair has the cells.",
         "\"Differential_Voltage ((P, N), ...)\"", "\"Differential_Voltage ((${1:P}, ${2:N}))\"", FROM_1994},
        {"TAP_SCAN_IN", "The port that is TDI.", "true", "true", ALL},
        {"TAP_SCAN_MODE", "The port that is TMS.", "true", "true", ALL},
        {"TAP_SCAN_OUT", "The port that is TDO.", "true", "true", ALL},
        {"TAP_SCAN_CLOCK", "The port that is TCK, its highest frequency in hertz, and where it may be halted.",
         "(20.0e6, BOTH)", "(${1:20.0e6}, ${2|BOTH,LOW|})", ALL},
        {"TAP_SCAN_RESET", "The port that is TRST. It is optional.", "true", "true", ALL},
        {"COMPLIANCE_PATTERNS", "Values that ports must have for the device to follow the standard.",
         "\"(PORT, ...) (01, ...)\"", "\"(${1:PORT}) (${2:0})\"", FROM_1994},
        {"INSTRUCTION_LENGTH", "Number of bits of the instruction register.", "8", "${1:8}", ALL},
        {"INSTRUCTION_OPCODE", "The instructions with their opcodes.",
         "\"BYPASS (1111), EXTEST (0000), ...\"", "\n\t\"BYPASS (${1:1111}), \" &\n\t\"EXTEST (${2:0000}), \" &\n\t\"SAMPLE (${3:0001})\"", ALL},
        {"INSTRUCTION_CAPTURE", "What the instruction register captures. It ends with 01.",
         "\"XX01\"", "\"${1:XX01}\"", ALL},
        {"INSTRUCTION_DISABLE", "The instruction that makes the outputs inactive.", "\"NAME\"", "\"${1:NAME}\"", ONLY_1990},
        {"INSTRUCTION_GUARD", "The instruction that guards the outputs.", "\"NAME\"", "\"${1:NAME}\"", ONLY_1990},
        {"INSTRUCTION_PRIVATE", "Instructions that are not for users of the device.", "\"NAME, ...\"", "\"${1:NAME}\"", ALL},
        {"IDCODE_REGISTER", "The identification: version, part number, manufacturer and a 1, 32 bits.",
         "\"0000\" & \"0000000000000000\" & \"00000000000\" & \"1\"",
         "\n\t\"${1:0000}\" &             -- version\n\t\"${2:0000000000000000}\" & -- part number\n\t\"${3:00000000000}\" &      -- manufacturer\n\t\"1\"", ALL},
        {"USERCODE_REGISTER", "The value of the user's identification, 32 bits.",
         "\"XX...X\"", "\"${1:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX}\"", ALL},
        {"REGISTER_ACCESS", "The data register that each instruction selects.",
         "\"BYPASS (CLAMP), REG[8] (INSTRUCTION CAPTURES 0101), ...\"", "\"${1:BYPASS} (${2:CLAMP})\"", ALL},
        {"BOUNDARY_CELLS", "The cell descriptions that the boundary register uses.", "\"BC_1, ...\"", "\"${1:BC_1}\"", ONLY_1990},
        {"BOUNDARY_LENGTH", "Number of cells of the boundary register.", "100", "${1:1}", ALL},
        {"BOUNDARY_REGISTER", "The boundary register: a row for each cell. Cell 0 is next to TDO.",
         "\"number (cell, port, function, safe [, control cell, disable value, result]), ...\"",
         "\n\t\"0 (${1:BC_1}, ${2:PORT}, ${3:input}, ${4:X})\"", ALL},
        {"RUNBIST_EXECUTION", "How RUNBIST is run and what it gives.",
         "\"Wait_Duration (1.0e-3), Observing HIGHZ At_Pins, Expect_Data 01\"",
         "\"Wait_Duration (${1:1.0e-3}), Observing ${2|HIGHZ,BOUNDARY|} At_Pins, Expect_Data ${3:0}\"", FROM_1994},
        {"INTEST_EXECUTION", "How INTEST is run.", "\"Wait_Duration (1.0e-3), Observing HIGHZ At_Pins\"",
         "\"Wait_Duration (${1:1.0e-3}), Observing ${2|HIGHZ,BOUNDARY|} At_Pins\"", FROM_1994},
        {"ISC_CONFORMANCE", "The issue of IEEE 1532 that the device follows.", "\"STD_1532_2002\"", "\"${1:STD_1532_2002}\"", ISC},
        {"ISC_PIN_BEHAVIOR", "What the system pins do while the device is being configured.", "\"HIGHZ\" or \"CLAMP\"", "\"${1|HIGHZ,CLAMP|}\"", ISC},
        {"ISC_FIXED_SYSTEM_PINS", "System pins that the pin behavior does not reach.", "\"PORT, ...\"", "\"${1:PORT}\"", ISC},
        {"ISC_STATUS", "Whether captures of the instruction register carry a status.", "\"IMPLEMENTED\" or \"NOT IMPLEMENTED\"", "\"${1|IMPLEMENTED,NOT IMPLEMENTED|}\"", ISC},
        {"ISC_BLANK_USERCODE", "USERCODE of a blank device, 32 bits.", "\"11...1\"", "\"${1:11111111111111111111111111111111}\"", ISC},
        {"ISC_SECURITY", "Bits of ISC_PDATA that disable reading, programming and erasing.",
         "\"ISC_DISABLE_READ 0, ISC_DISABLE_PROGRAM 1, ISC_DISABLE_ERASE 2, ISC_DISABLE_KEY 15-8\"",
         "\"ISC_DISABLE_READ ${1:0}, ISC_DISABLE_PROGRAM ${2:1}, ISC_DISABLE_ERASE ${3:2}, ISC_DISABLE_KEY ${4:*}\"", ISC},
        {"ISC_FLOW", "Sequences of register loads, waits and captures.",
         "\"NAME [(data)] INITIALIZE (INSTRUCTION width:data WAIT TCK 1 width:expected), ...\"",
         "\"${1:FLOW_ENABLE} INITIALIZE (${2:ISC_ENABLE} WAIT TCK ${3:1})\"", ISC},
        {"ISC_PROCEDURE", "Procedures: flows in their order.", "\"NAME [(data)] = (FLOW [(data)], ...), ...\"", "\"${1:PROC_ENABLE} = (${2:FLOW_ENABLE})\"", ISC},
        {"ISC_ACTION", "Actions for the user of the device: procedures in their order.", "\"NAME [(data)] = (PROCEDURE [OPTIONAL | RECOMMENDED], ...), ...\"", "\"${1:PROGRAM} = (${2:PROC_ENABLE})\"", ISC},
        {"ISC_ILLEGAL_EXIT", "Instructions that may not follow ISC_DISABLE.", "\"INSTRUCTION, ...\"", "\"${1:EXTEST}\"", ISC},
        {"ISC_DESIGN_WARNING", "Free text for those who program the device.", "\"text\"", "\"${1:text}\"", ISC},
        {"AIO_COMPONENT_CONFORMANCE", "The issue of IEEE 1149.6 that the device follows.", "\"STD_1149_6_2003\"", "\"${1:STD_1149_6_2003}\"", AIO},
        {"AIO_EXTEST_PULSE_EXECUTION", "How long EXTEST_PULSE waits.", "\"Wait_Duration TCK 15\"", "\"Wait_Duration ${1:TCK 15}\"", AIO},
        {"AIO_EXTEST_TRAIN_EXECUTION", "How many pulses EXTEST_TRAIN sends.", "\"train 30, maximum_time 120.0e-6\"", "\"train ${1:30}, maximum_time ${2:120.0e-6}\"", AIO},
        {"AIO_PIN_BEHAVIOR", "The AC pins: their cells, what selects AC mode, and time constants.",
         "\"PORT [cell] : AC_Select=cell LP_time=5.0e-9 HP_time=5.0e-9 On_Chip; ...\"", "\"${1:PORT} : LP_time=${2:5.0e-9} HP_time=${3:5.0e-9}\"", AIO},
        {"DESIGN_WARNING", "Free text for the user of the device.", "\"text\"", "\"${1:text}\"", ALL},
    };
    // clang-format on
    return GUIDES;
}

const StatementGuide *statement_guide(std::string_view name)
{
    for (const StatementGuide &guide : statement_guides())
        if (same_name(guide.name, name))
            return &guide;
    return nullptr;
}

} // namespace lsp
