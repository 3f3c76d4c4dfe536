// What each rule means and how to fix a file that breaks it. The messages stand as the library
// formats them, several forms one below the other. What the walks over merged opcodes and over
// shared control cells would say is not here: no file comes that far.

#include "tarnlet/diagnosis.h"

#include <cstring>
#include <iterator>

namespace
{

constexpr int32_t ERROR = BSDL_RULE_ERROR;
constexpr int32_t WARNING = BSDL_RULE_WARNING;
constexpr int32_t EITHER = BSDL_RULE_EITHER;
constexpr int32_t BY_STRICT = BSDL_RULE_BY_STRICT;
constexpr int32_t NOTE = BSDL_RULE_NOTE;
constexpr int32_t ALWAYS_ON = 1;

#define MAIN "IEEE Std 1149.1-2001, clause "
#define ANNEX MAIN "B."
constexpr const char *IEEE_1149_1_1990 = "IEEE Std 1149.1-1990";
constexpr const char *IEEE_1532 = "IEEE Std 1532-2002";
constexpr const char *IEEE_1149_6 = "IEEE Std 1149.6-2003";

// clang-format off
constexpr BsdlRule RULES[] = {
    // Files and packages
    {"no-file", ERROR, nullptr,
     "No files specified",
     "No file name was given to the library.",
     "Give the name of a file.", ALWAYS_ON},
    {"file-not-opened", ERROR, nullptr,
     "Could not open file '%s'",
     "The file does not exist, is a folder, or may not be read.",
     "Check the name and the permissions of the file.", ALWAYS_ON},
    {"unreadable-input", ERROR, nullptr,
     "Bsdl reader fatal error: non printable\n"
     "Bsdl reader fatal error: token too large, exceeds YYLMAX\n"
     "Bsdl reader fatal error: input buffer overflow, can't enlarge buffer because scanner uses "
     "REJECT",
     "Nothing is checked, because the reading had to stop. 'non printable' stands for a control "
     "character outside comments and free texts, the other texts for a word, comment or string of "
     "16384 characters or more; a missing quotation mark makes such a string.",
     "Remove the control character on the line that is named, close the string, or break up the "
     "comment.", ALWAYS_ON},
    {"memory-error", ERROR, nullptr,
     "Memory error",
     "The memory of the process is used up; the process ends.",
     "Give the process more memory, or look for a range or length in the file that cannot be "
     "meant.", ALWAYS_ON},
    {"package-not-found", ERROR, ANNEX "10",
     "Cannot find file '%s'",
     "The file of a package that a use statement names is in none of the folders that were "
     "searched. Unless --fast-read is given, the reading ends here.",
     "Put the package file beside the description, or name its folder with -I."},
    {"package-file-tried", NOTE, ANNEX "10",
     "Trying '%s'",
     "One of the places where the file of a package is looked for.",
     ""},
    {"package-not-opened", ERROR, nullptr,
     "Cannot open file %s",
     "The file of a package was found but cannot be opened. Unless --fast-read is given, the "
     "reading ends here.",
     "Check the permissions of the package file."},
    {"package-nested-too-deep", ERROR, nullptr,
     "Includes nested too deep",
     "Package files name each other more than ten files deep, most likely in a circle. The "
     "process that reads the file ends.",
     "Remove the use statement that leads back to a package that is being read."},
    {"package-included-twice", ERROR, ANNEX "10",
     "bsdl_package '%s' already included",
     "Two packages of the same name were read, mostly because two use statements name the same "
     "file.",
     "Remove one of the use statements."},
    {"package-missing", ERROR, ANNEX "8.5",
     "Error in user .all",
     "A use statement has brought no package. Its file was not found or not opened, as the "
     "message before this one says, or does not begin with 'package'. The reading ends here.",
     "Fix the cause of that message, or write package and package body into the file."},
    {"package-needs-1994", ERROR, nullptr,
     "BSDL version must be STD_1149_1_1994 or higher",
     "The package of IEEE 1532-2001 is used, and the standard use statement names the issue of "
     "1990. The reading ends here.",
     "Name STD_1149_1_1994 or STD_1149_1_2001 in the standard use statement."},
    {"package-needs-2001", ERROR, nullptr,
     "BSDL version must be STD_1149_1_2001 or higher",
     "The package of IEEE 1532-2002 is used in a description by the issue of 1990, or that of "
     "IEEE 1149.6 in one by 1990 or 1994. The reading ends here.",
     "Name STD_1149_1_2001 in the standard use statement."},
    {"package-wants-2001", WARNING, IEEE_1532,
     "BSDL version must be STD_1149_1_2001 or higher",
     "The package of IEEE 1532-2002 is used, and the standard use statement names the issue of "
     "1994. The package is read all the same.",
     "Name STD_1149_1_2001 in the standard use statement."},
    {"package-wants-prg", WARNING, nullptr,
     "%s included in a non-PPC/PRG file",
     "The package is meant for PPC/PRG files, and this is a description.",
     "Remove the use statement."},
    {"package-standard-differs", WARNING, ANNEX "10",
     "User package '%s' is different from BSDL file package '%s'",
     "The package names another issue of the standard than the description that uses it. The "
     "first text is the issue of the package, the second that of the description.",
     "Use a package for the issue that the description names, or correct the one that is wrong."},
    {"package-standard-mismatch", ERROR, ANNEX "10",
     "Standard use package is not consistent between user package and user package body",
     "The package and its package body name different standard packages.",
     "Name the same standard package in both."},
    {"package-end-mismatch", ERROR, ANNEX "10",
     "User package name is not consistent: %s, %s",
     "The name after 'end' is not the name of the package.",
     "Write the name of the package after 'end'."},
    {"package-body-mismatch", ERROR, ANNEX "10",
     "User package name is not consistent: %s, %s",
     "The package body that follows has another name than the package.",
     "Give package and package body the same name."},
    {"package-body-end-mismatch", ERROR, ANNEX "10",
     "User package name is not consistent: %s, %s",
     "The name after 'end' is not the name of the package body.",
     "Write the name of the package body after 'end'."},
    {"package-cell-announced-twice", ERROR, ANNEX "10",
     "Cell '%s' already defined",
     "A package announces the same cell in two deferred constants.",
     "Remove one of the constants."},
    {"package-cell-missing", WARNING, ANNEX "10",
     "Cell '%s' not found in package body",
     "A package announces a cell that its body does not define.",
     "Add the cell to the package body, or remove the deferred constant."},
    {"package-cell-not-announced", WARNING, ANNEX "10",
     "Cell description '%s' not found in",
     "A package body defines a cell that the package does not announce as a deferred constant. "
     "The cell can be used all the same. The text does not name it.",
     "Add 'constant NAME : CELL_INFO;' to the package."},

    // Language
    {"syntax-error", ERROR, "IEEE Std 1149.1-2001, annex B",
     "parse error, expecting %s, found '%s' on line %i\n"
     "parse error, found '%s' on line %i\n"
     "parser stack overflow, found '%s' on line %i",
     "What was found is none of what the grammar allows at this place; an empty text stands for "
     "the end of the file or a zero character. The statement is left out up to its semicolon "
     "(statement-skipped); one that cannot be left out ends the reading. What is wrong with the "
     "words up to there is told with --verbose only.",
     "Compare the statement with the form that the standard gives; the order of the statements "
     "counts too. The cause may stand just before the word that is named: a comma, an ampersand, "
     "a quotation mark or a closing parenthesis that is missing.", ALWAYS_ON},
    {"statement-skipped", ERROR, nullptr,
     "Skipping %s due to errors\n"
     "skipping %s due to errors",
     "A statement was left out because of the errors that were reported for it. Rules that need "
     "the statement may report more.",
     "Fix the errors that stand before this message.", ALWAYS_ON},
    {"illegal-character", BY_STRICT, ANNEX "5",
     "Illegal character '%c' on line %i\n"
     "Ignoring illegal character '%c' on line %i",
     "A character that the language does not know stands outside comments and free texts. It is "
     "passed over; under --strict the reading ends there.",
     "Remove the character, such as an underscore before a name."},
    {"illegal-identifier", BY_STRICT, ANNEX "5",
     "Illegal identifier '%.*s' on line %i",
     "A name does not follow the rules of VHDL: it begins with a digit, ends with an underscore, "
     "or holds two of them side by side. Under --strict the word is passed over, so that a syntax "
     "error may follow.",
     "Rename the port, pin, register or package."},
    {"vhdl-keyword", BY_STRICT, ANNEX "5",
     "VHDL keyword '%.*s' is not allowed!",
     "A reserved word of VHDL is used as a name. Under --strict the word is passed over, so that "
     "a syntax error may follow.",
     "Choose another name; tools that are built on VHDL refuse this one."},
    {"keyword-not-in-1990", WARNING, ANNEX "5",
     "Keyword '%.*s' is not supported in BSDL90",
     "OBSERVE_ONLY is known since 1994, and the file names the issue of 1990. The word is passed "
     "over, so that a syntax error follows.",
     "Name STD_1149_1_1994 or STD_1149_1_2001 in the standard use statement, or choose another "
     "function."},
    {"incomplete-string", WARNING, ANNEX "5",
     "Incomplete quoted string on line %i",
     "A string is still open at the end of the file, which ends the reading. Since a string runs "
     "to the next quotation mark, the one that is missing may stand far above the line that is "
     "named, where the first syntax error is.",
     "Close the string with a quotation mark and go on with '&' on the next line."},
    {"obsolete-attribute", WARNING, nullptr,
     "%s is VERY obsolete!",
     "INSTRUCTION_SEQUENCE and INSTRUCTION_USAGE have no meaning any more. The message comes only "
     "in files that name the issue of 1990. The name is passed over, so that a syntax error "
     "follows.",
     "Remove the statement."},
    {"component-name-mismatch", ERROR, ANNEX "8.1",
     "Component name '%s' not consistent",
     "A statement names another entity than the one that is described.",
     "Write the name of the entity after 'of' and after 'end'."},
    {"standard-unknown", ERROR, ANNEX "8.4",
     "Unknown standard '%.*s'",
     "The standard use statement names a package that is no issue of the standard, or one later "
     "than 2001. The reading ends here.",
     "Name STD_1149_1_1990, STD_1149_1_1994 or STD_1149_1_2001."},
    {"pattern-not-32-bits", ERROR, ANNEX "8.12",
     "32 bit pattern length required on line %d",
     "The pattern of an identification register or of ISC_Blank_Usercode does not have 32 bits.",
     "Write 32 characters of 0, 1 and X in all, over as many joined strings as you like."},

    // Ports and pin mappings
    {"pin-mapping-checked", NOTE, ANNEX "8.7",
     "Checking pin_map '%s'",
     "Names the pin mapping whose pins are compared with the ports.",
     ""},
    {"pin-mapping-unspecified", BY_STRICT, ANNEX "8.2",
     "No default_device_package and no <pin mapping> name are specified",
     "Neither the generic parameter nor the caller (--package) says which pin mapping is meant. "
     "The first one is used; under --strict none is.",
     "Give the generic parameter a default, or name a mapping with --package."},
    {"pin-mapping-first-used", WARNING, ANNEX "8.7",
     "Using first available <pin_map> '%s' because none was specified",
     "The pin mapping that was asked for does not exist (pin-mapping-missing), so the only one of "
     "the file is used.",
     "Correct the default of the generic parameter, or name the mapping with --package."},
    {"pin-mapping-missing", EITHER, ANNEX "8.7",
     "pin_mapping '%s' does not exist\n"
     "pin_mapping '%s' does not exist and multiple pinmaps defined",
     "The file has no pin mapping of the name that the generic parameter or the caller "
     "(--package) gives. It is a warning where the file has one mapping alone, which is used "
     "then, and an error where it has several or --strict is given.",
     "Write a mapping of this name, or ask for one that is there."},
    {"pin-mapping-unknown", ERROR, ANNEX "8.7",
     "pin_mapping '%s' does not exist",
     "A program has asked the library to check a pin mapping that the file does not have. The "
     "text names the mapping in use, not the one that was asked for.",
     "Ask for one of the mappings of the file."},
    {"pin-mapping-not-unique", ERROR, ANNEX "8.7",
     "<pin_map_name> %s is not unique",
     "Two pin mappings have the same name.",
     "Rename one of them."},
    {"pin-id-not-unique", ERROR, ANNEX "8.7",
     "<pin id> '%s' is not unique (<port name> '%s')",
     "A pin belongs to two ports, or twice to one.",
     "Look the pin up in the data sheet and correct one of the entries."},
    {"pin-count-mismatch", ERROR, ANNEX "8.7",
     "<pin map> '%s': number of pins of <bit vector> %s is not equal in <pin mapping> (%i) and "
     "<logical port map> (%i)",
     "The mapping in use gives a vector more or fewer pins than the vector has bits. No pins are "
     "known then, so that other rules may fail.",
     "Give one pin for each bit of the port."},
    {"pin-list-too-long", ERROR, nullptr,
     "Memory error",
     "The ports together have more than four million pins.",
     "Correct the range of the port."},
    {"mapped-port-undeclared", ERROR, ANNEX "8.7",
     "<port name> %s (%s) not found in <logical port description>",
     "The mapping gives pins to a port that the port statement does not declare, or declares in "
     "the other form (bit or bit vector).",
     "Correct the name, or give a single pin to a bit and a list in parentheses to a vector."},
    {"port-not-mapped", ERROR, ANNEX "8.7",
     "<port name> %s (%s) not found in <pin mapping> %s",
     "A port that is no linkage port has no pins in the mapping, or is mapped in the other form "
     "(bit or bit vector).",
     "Add the port to the mapping, or declare it as linkage."},
    {"port-name-not-unique", ERROR, ANNEX "8.3",
     "<port name> '%s' is not unique",
     "The same name stands in two declarations of the port statement.",
     "Rename or remove one of them."},
    {"port-range-reversed", ERROR, ANNEX "8.3",
     "<port> '%s': end value (%i) of port range must be greater than start (%i)",
     "The range of a vector runs the wrong way: 'to' needs a rising range, 'downto' a falling "
     "one. The text speaks of a rising range in either case.",
     "Swap the bounds, or write the other word."},

    // Grouped, scan and compliance ports
    {"representative-port-missing", ERROR, ANNEX "8.8",
     "<representative port> %s does not exist in <logical portmap>",
     "The first port of a pair is not declared, or is a linkage port.",
     "Correct the name or the mode of the port; a port of a vector needs its subscript."},
    {"associated-port-missing", ERROR, ANNEX "8.8",
     "<associated port> %s does not exist in <logical portmap>",
     "The second port of a pair is not declared, or is a linkage port.",
     "Correct the name or the mode of the port; a port of a vector needs its subscript."},
    {"twin-pin-types-differ", ERROR, ANNEX "8.8",
     "Pin types of <twin group> (%s, %s) must match",
     "The two ports of a differential pair have different modes.",
     "Declare both with the same mode."},
    {"twin-groups-checked", NOTE, ANNEX "8.8",
     "Differential_Current (%i twin_groups)\nDifferential_Voltage (%i twin_groups)",
     "Tells how many differential pairs were looked at.",
     ""},
    {"representative-port-without-cell", ERROR, ANNEX "8.8",
     "<representative port> '%s' must appear in <boundary-scan register>",
     "The first port of a pair has no cell in the boundary register. Reported under --strict only.",
     "Add the cell, or exchange the ports of the pair."},
    {"associated-port-with-cell", ERROR, ANNEX "8.8",
     "<associated port> '%s' cannot appear in <boundary-scan register>",
     "The second port of a pair has a cell other than CLOCK and OBSERVE_ONLY, where the cell of "
     "the first port serves both.",
     "Remove the cell, or exchange the ports of the pair."},
    {"scan-port-missing", ERROR, ANNEX "8.9",
     "<scan port> %s <port id> '%s' not found in <logical port>",
     "A TAP_SCAN attribute names a port that is not declared, or is a linkage port.",
     "Correct the name or the mode of the port."},
    {"scan-port-pin-type", ERROR, ANNEX "8.9",
     "<scan port> %s <port id> '%s' must be <pin type> '%s'",
     "A port of the test access port has the wrong mode: TDI, TMS, TCK and TRST* are inputs, TDO "
     "is an output.",
     "Declare the port as in, TDO as out."},
    {"scan-port-already-used", ERROR, ANNEX "8.9",
     "<scan port> %s <port id> '%s' is already used as %s",
     "A port has two roles, as two ports of the test access port or as one of them and something "
     "else.",
     "Name another port in one of the statements."},
    {"scan-port-in-group", ERROR, ANNEX "8.8",
     "<scan port> %s <port id> '%s' cannot appear in <grouped port>",
     "A port of the test access port is a member of a differential pair.",
     "Remove the pair from PORT_GROUPING."},
    {"scan-port-with-cell", ERROR, ANNEX "8.14",
     "<scan port> %s <port id> '%s' cannot appear in <boundary-scan register>",
     "A port of the test access port has a cell in the boundary register.",
     "Remove the cell: the register does not reach the pins of the test access port."},
    {"compliance-port-missing", ERROR, ANNEX "8.10",
     "<compliance port> %s does not exist in <logical portmap>",
     "COMPLIANCE_PATTERNS names a port that is not declared.",
     "Correct the name; a port of a vector needs its subscript."},
    {"compliance-port-pin-type", BY_STRICT, ANNEX "8.10",
     "<compliance port> %s <pin type> in <logical portmap> has to be type IN",
     "A compliance-enable port is not an input.",
     "Declare the port as in."},
    {"compliance-port-already-used", ERROR, ANNEX "8.10",
     "<compliance port> <port id> '%s' is already used as %s",
     "A compliance-enable port has another role as well, such as TMS or a port of a pair, or is "
     "named twice.",
     "Remove it from one of the places."},
    {"compliance-port-with-cell", ERROR, ANNEX "8.10",
     "<compliance port> <port id> '%s' cannot appear in <boundary-scan register>",
     "A compliance-enable port has a cell in the boundary register, although its value is fixed "
     "while the register is used.",
     "Remove the cell, or the port from COMPLIANCE_PATTERNS."},
    {"compliance-pattern-length", ERROR, ANNEX "8.10",
     "<compliance port> <pattern> '%s' has incorrect length %i, should be %i",
     "A compliance pattern does not have one bit for each of the ports.",
     "Write one 0, 1 or X for each port, in their order."},

    // Instructions
    {"instruction-length", ERROR, MAIN "7.1",
     "INSTRUCTION_LENGTH (%u) should be greater than 2",
     "The instruction register is shorter than the two bits that the standard asks for.",
     "Correct INSTRUCTION_LENGTH."},
    {"instruction-capture-length", ERROR, ANNEX "8.11",
     "instruction capture pattern (%s) length (%i) must be equal to instruction length (%i)",
     "The pattern of INSTRUCTION_CAPTURE does not have one bit for each bit of the instruction "
     "register.",
     "Write as many bits as INSTRUCTION_LENGTH says."},
    {"instruction-capture-end", ERROR, MAIN "7.1",
     "instruction capture pattern (%s) must end in 01",
     "The two least significant bits that the instruction register captures have to be 01, by "
     "which a tester finds faults of the scan path.",
     "Correct the pattern; if the device really captures something else, it breaks the standard."},
    {"instruction-bypass-added", NOTE, MAIN "8.4",
     "mandatory BYPASS instruction opcode (%s) added",
     "BYPASS is not given the opcode of all ones that the standard prescribes, so it is added "
     "with this opcode.",
     ""},
    {"instruction-extest-added", NOTE, IEEE_1149_1_1990,
     "mandatory EXTEST instruction opcode (%s) added",
     "EXTEST is not given the opcode of all zeros, so it is added with this opcode. The opcode is "
     "prescribed unless COMPONENT_CONFORMANCE names STD_1149_1_2001.",
     ""},
    {"instruction-extest-missing", ERROR, MAIN "8.8",
     "EXTEST instruction opcode mandatory for STD_1149_1_2001",
     "EXTEST has no opcode, and COMPONENT_CONFORMANCE names STD_1149_1_2001, which does not "
     "prescribe one.",
     "Add EXTEST to INSTRUCTION_OPCODE."},
    {"instruction-sample-missing", ERROR, MAIN "8.6",
     "no SAMPLE instruction specified",
     "SAMPLE has no opcode.",
     "Add SAMPLE to INSTRUCTION_OPCODE."},
    {"instruction-preload-missing", ERROR, MAIN "8.7",
     "no PRELOAD instruction specified",
     "PRELOAD has no opcode, and COMPONENT_CONFORMANCE names STD_1149_1_2001, by which it is an "
     "instruction beside SAMPLE. Both may have the same opcode.",
     "Add PRELOAD to INSTRUCTION_OPCODE."},
    {"opcode-length", ERROR, ANNEX "8.11",
     "incorrect instruction capture length, opcode: %s (%s) should have length %i",
     "An opcode does not have as many bits as the instruction register.",
     "Write as many bits as INSTRUCTION_LENGTH says."},
    {"opcode-all-ones", ERROR, MAIN "8.4",
     "opcode all 1's must be BYPASS, opcode: '%s' cannot use opcode %s",
     "The opcode of all ones belongs to BYPASS, and another instruction has it; an X counts as a "
     "one. IEEE 1532 descriptions without ISC_Conformance are excepted.",
     "Correct the opcode."},
    {"opcode-all-zeros", ERROR, IEEE_1149_1_1990,
     "opcode all 0's must be EXTEST, opcode: '%s' cannot use opcode %s",
     "The opcode of all zeros belongs to EXTEST, and another instruction has it; an X counts as a "
     "zero. The rule does not hold where COMPONENT_CONFORMANCE names STD_1149_1_2001.",
     "Correct the opcode, or name STD_1149_1_2001 in COMPONENT_CONFORMANCE if the device follows "
     "that issue."},
    {"opcode-ambiguous", EITHER, ANNEX "8.11",
     "ambiguous opcodes in instruction opcode table:\n"
     "ambiguous opcodes in instruction opcode table\n"
     "'%s' (%s)",
     "A bit pattern stands for two instructions: an opcode with X in it fits one of an "
     "instruction after it in the table. It is a warning where COMPONENT_CONFORMANCE names "
     "STD_1149_1_2001 and an error otherwise, with a line for each of the opcodes.",
     "Replace X where it makes the opcodes overlap."},
    {"opcode-duplicate", WARNING, ANNEX "8.11",
     "duplicate opcodes in instruction opcode table:\n"
     "'%s' (%s)",
     "Several instructions have the same opcode; there is a line for each of them. SAMPLE and "
     "PRELOAD may share one where COMPONENT_CONFORMANCE names STD_1149_1_2001.",
     "Correct the opcodes unless the names stand for one instruction."},

    // Identification and data registers
    {"idcode-length", ERROR, MAIN "12.1",
     "idcode register must be 32-bits",
     "The pattern of IDCODE_REGISTER does not have 32 bits.",
     "Write 32 bits."},
    {"idcode-last-bit", ERROR, MAIN "12.1",
     "least significant bit of idcode: (%s) must be 1",
     "The last bit of the identification code has to be 1, by which a tester tells it from a "
     "bypass register.",
     "Correct the pattern: 4 bits of version, 16 of part number, 11 of manufacturer, and 1."},
    {"idcode-manufacturer", ERROR, MAIN "12.2",
     "manufacturer part of idcode cannot be (00001111111)",
     "The manufacturer field holds 00001111111, which no manufacturer has, so that a tester can "
     "use it as an end mark.",
     "Correct the manufacturer field."},
    {"idcode-statement-missing", ERROR, ANNEX "8.12",
     "no idcode statement found while IDCODE instruction is defined",
     "There is an IDCODE instruction, but no IDCODE_REGISTER statement.",
     "Add the statement, or remove the instruction."},
    {"idcode-without-instruction", ERROR, ANNEX "8.12",
     "no idcode instruction found in opcode list",
     "There is an IDCODE_REGISTER statement, but no IDCODE instruction.",
     "Add IDCODE to INSTRUCTION_OPCODE."},
    {"identification-register-missing", ERROR, ANNEX "8.13",
     "%s register not found while %s instruction is used",
     "IDCODE or USERCODE has no register: DEVICE_ID (IDCODE by the issue of 1990) is not in "
     "REGISTER_ACCESS, and without an IDCODE instruction it is not added.",
     "Add IDCODE to INSTRUCTION_OPCODE, or the register to REGISTER_ACCESS."},
    {"usercode-length", ERROR, MAIN "12.1",
     "usercode register must be 32-bits",
     "The pattern of USERCODE_REGISTER does not have 32 bits.",
     "Write 32 bits."},
    {"usercode-statement-missing", ERROR, ANNEX "8.12",
     "no usercode statement found while USERCODE instruction is defined",
     "There is a USERCODE instruction, but no USERCODE_REGISTER statement.",
     "Add the statement, or remove the instruction."},
    {"usercode-without-instruction", ERROR, ANNEX "8.12",
     "no usercode instruction found in opcode list",
     "There is a USERCODE_REGISTER statement, but no USERCODE instruction.",
     "Add USERCODE to INSTRUCTION_OPCODE."},
    {"usercode-without-idcode-instruction", ERROR, MAIN "12.1",
     "no idcode instruction found in opcode list",
     "A device with USERCODE has to have IDCODE too.",
     "Add IDCODE to INSTRUCTION_OPCODE and the IDCODE_REGISTER statement."},
    {"isc-identification-missing", ERROR, IEEE_1532,
     "idcode & usercode register are mandatory for ISC1532",
     "A device of IEEE 1532 needs both an identification code and a user code.",
     "Add the IDCODE_REGISTER and USERCODE_REGISTER statements."},
    {"register-added", NOTE, ANNEX "8.13",
     "Register '%s' added",
     "A register that the standard implies and REGISTER_ACCESS does not name was added to the "
     "model.",
     ""},
    {"register-idcode", ERROR, ANNEX "8.13",
     "illegal device ID register name IDCODE, use DEVICE_ID",
     "REGISTER_ACCESS calls the identification register IDCODE, which is its name in the issue of "
     "1990 only.",
     "Write DEVICE_ID."},
    {"register-instruction-unknown", ERROR, ANNEX "8.13",
     "instruction '%s' in register access table is not found in instruction opcode table",
     "REGISTER_ACCESS names an instruction that has no opcode.",
     "Correct the name, or add the instruction to INSTRUCTION_OPCODE."},
    {"register-instruction-missing", ERROR, ANNEX "8.13",
     "instruction '%s' not found",
     "A register that was added to the model (register-added) belongs to an instruction that has "
     "no opcode, SAMPLE or USERCODE for example.",
     "Add the instruction to INSTRUCTION_OPCODE."},
    {"register-length-missing", ERROR, ANNEX "8.13",
     "public register '%s' length not specified",
     "A register other than BYPASS, BOUNDARY and DEVICE_ID is named without its length. (IDCODE "
     "stands for DEVICE_ID by the issue of 1990.)",
     "Write the length after the name: NAME[12]."},
    {"register-length-zero", ERROR, ANNEX "8.13",
     "public register '%s' length cannot be 0",
     "A register other than those of the standard has the length 0.",
     "Correct the length."},
    {"register-lengths-differ", ERROR, ANNEX "8.13",
     "register lengths: %i, %i not equal",
     "The same register is given with two lengths.",
     "Correct the length that is wrong. It need not be repeated."},
    {"register-capture-length", ERROR, ANNEX "8.13",
     "instruction '%s' associated with register '%s' captures %i bits, should be %i",
     "The pattern after CAPTURES does not have one bit for each bit of the register.",
     "Write as many bits as the register has."},
    {"instruction-already-associated", ERROR, ANNEX "8.13",
     "instruction '%s' is already associated with register '%s'",
     "An instruction is listed under two registers, or twice under one. The first counts, where "
     "registers that were added (register-added) come before those of the file. The check does "
     "not fail because of it.",
     "Remove one of the entries."},
    {"bypass-register", ERROR, ANNEX "8.13",
     "MANDATORY instruction '%s' uses invalid register %s",
     "BYPASS is listed under another register than BYPASS.",
     "Move it to BYPASS, or remove it from REGISTER_ACCESS."},
    {"mandatory-instruction-captures", ERROR, ANNEX "8.13",
     "MANDATORY instruction '%s' captures '%s'",
     "CAPTURES is given for an instruction whose captured values the standard fixes: BYPASS, "
     "CLAMP, EXTEST, HIGHZ, IDCODE, INTEST, SAMPLE, USERCODE and, where COMPONENT_CONFORMANCE "
     "names STD_1149_1_2001, PRELOAD.",
     "Remove CAPTURES from this instruction."},
    {"mandatory-instruction-without-register", ERROR, ANNEX "8.13",
     "MANDATORY instruction %s has no associated register",
     "PRELOAD is in no register. COMPONENT_CONFORMANCE names STD_1149_1_2001, but the standard "
     "use statement an older issue, by which PRELOAD has no register of itself.",
     "List PRELOAD under BOUNDARY in REGISTER_ACCESS, or name STD_1149_1_2001 in the standard use "
     "statement."},
    {"public-instruction-without-register", ERROR, ANNEX "8.13",
     "public instruction '%s' has no associated register",
     "An instruction that is neither private nor one of the standard has no register, so a tester "
     "does not know what is between TDI and TDO.",
     "List it in REGISTER_ACCESS, or in INSTRUCTION_PRIVATE."},
    {"implied-register-missing", ERROR, ANNEX "8.13",
     "BYPASS register not found\n"
     "BOUNDARY register not found",
     "The register that an instruction of the standard selects is not there. No file brings this "
     "message, because BYPASS and BOUNDARY are added where they are not described "
     "(register-added).",
     "Report the file as a fault of tarnlet."},

    // Cells of the boundary register
    {"boundary-length-zero", ERROR, ANNEX "8.14",
     "BOUNDARY_LENGTH must be greater than zero",
     "BOUNDARY_LENGTH is 0.",
     "Give the number of cells."},
    {"cell-number-missing", ERROR, ANNEX "8.14",
     "cell_number (%i) does not exist",
     "A number below BOUNDARY_LENGTH has no cell. No more than 65536 such numbers are listed.",
     "Add the cell, or correct BOUNDARY_LENGTH and the numbers."},
    {"cell-number-range", ERROR, ANNEX "8.14",
     "cell_number (%i) cannot be equal to or larger than %i",
     "A cell has a number that is not below BOUNDARY_LENGTH.",
     "Correct the number or BOUNDARY_LENGTH."},
    {"cell-control-number-negative", ERROR, ANNEX "8.14",
     "cell number must be positive",
     "A negative number is given for a control cell.",
     "Give the number of a cell of the register."},
    {"cell-name-unknown", ERROR, ANNEX "8.14",
     "Cell_name '%s' is not a defined cell",
     "Neither the standard nor a package that the file uses defines a cell of this name. BC_8, "
     "BC_9 and BC_10 belong to the issue of 2001.",
     "Correct the name, use the package that defines the cell, or name STD_1149_1_2001 in the "
     "standard use statement."},
    {"cell-context", ERROR, ANNEX "8.14",
     "Cell_type '%s' has no cell_context '%s' as required by cell_number %i",
     "The definition of the cell that is named has no entry for the function that this row gives "
     "it.",
     "Use a cell that is defined for this function, or correct the function."},
    {"cell-no-intest", ERROR, ANNEX "8.14",
     "INTEST is specified in <opcode description> and <cell name> '%s' does not possess INTEST "
     "support capability",
     "The device has INTEST, but the definition of this cell does not say what it captures under "
     "INTEST.",
     "Use a cell that is defined for INTEST, or remove INTEST from INSTRUCTION_OPCODE."},
    {"cell-safe-bit-value", ERROR, ANNEX "8.14",
     "safe_bit must be X, 0, 1",
     "The safe bit is not 0, 1 or X.",
     "Write 0, 1 or X."},
    {"cell-disable-value", ERROR, ANNEX "8.14",
     "disable_value must be X, 0, 1",
     "The disable value is not 0 or 1; X is not allowed, although the text says so.",
     "Write 0 or 1."},
    {"cell-disable-result-keeper", ERROR, ANNEX "8.14",
     "<disable result> KEEPER is only allowed in BSDL2001",
     "KEEPER is a disable result since 2001 only, and the file names an older issue.",
     "Name STD_1149_1_2001, or write Z."},
    {"cell-disable-spec-missing", ERROR, ANNEX "8.14",
     "cell_number %i with function '%s' must contain a disable_spec",
     "An OUTPUT3 or BIDIR cell does not say how its driver is turned off.",
     "Add the number of the control cell, the disable value and the disable result."},
    {"cell-disable-spec-forbidden", ERROR, ANNEX "8.14",
     "cell_number %i with function '%s' cannot contain a disable_spec",
     "A cell that drives no pin (INPUT, CLOCK, OBSERVE_ONLY, CONTROL, CONTROLR or INTERNAL) says "
     "how a driver is turned off.",
     "Remove the control cell, disable value and disable result from the row."},
    {"cell-port-forbidden", ERROR, ANNEX "8.14",
     "cell_number %i with function '%s' must have port_id '*' instead of %s",
     "A CONTROL, CONTROLR or INTERNAL cell names a port.",
     "Write * for the port."},
    {"cell-port-undefined", ERROR, ANNEX "8.14",
     "<cell number> %i with <port id> '%s' is not defined in <logical pin map>",
     "The cell belongs to a port that is not declared.",
     "Correct the name of the port."},
    {"cell-port-is-bit", ERROR, ANNEX "8.14",
     "<cell number> %i with <port id> '%s' is defined as single BIT in <logical pin map>",
     "The cell names a bit of a vector, but the port is a single bit.",
     "Remove the subscript."},
    {"cell-port-is-vector", ERROR, ANNEX "8.14",
     "<cell number> %i with <port id> '%s' is defined as BIT_VECTOR in <logical pin map>",
     "The cell names a vector without saying which bit.",
     "Add the subscript."},
    {"cell-port-subscript-range", ERROR, ANNEX "8.14",
     "<subscript> of <cell number> %i with <port id> '%s' Must be within range "
     "[%i-%i]\n<subscript> of <cell number> %i with <port id> '%s' must Be within range [%i-%i]",
     "The subscript is outside the range of the vector.",
     "Correct the subscript or the range."},
    {"cell-open-output-control", BY_STRICT, ANNEX "8.14",
     "cell_number %i with function '%s' and a disable_spec must control itself, ccell (%i) must "
     "be equal to %i",
     "A driver with one open state (OUTPUT2 with a disable part) is controlled by another cell, "
     "while it has to be controlled by its own value.",
     "Name the cell's own number as its control cell, or make it OUTPUT3."},
    {"cell-self-disable-result", EITHER, ANNEX "8.14",
     "cell_number %i with function '%s' and disable_value '%s' must have disable_result '%s' or "
     "'%s' instead of '%s'",
     "A driver that is turned off by its own value can leave the pin only at that value: WEAK0 or "
     "PULL0 when turned off by 0, WEAK1 or PULL1 by 1. It is an error for BIDIR; for OUTPUT2 it "
     "is a warning, an error under --strict. The rule holds for files that name STD_1149_1_2001.",
     "Correct the disable value or the disable result."},
    {"control-cell-function", BY_STRICT, ANNEX "8.14",
     "cell_number %i with function '%s' uses cell %i as control_cell but this is not a "
     "control_cell",
     "The cell that is named as control cell has neither of the functions CONTROL and CONTROLR. "
     "This holds for an OUTPUT3 cell that names itself, too.",
     "Name the control cell, correct the function of that cell, or make a driver that controls "
     "itself OUTPUT2."},
    {"control-cell-range", ERROR, ANNEX "8.14",
     "cell_number %i uses cell %i as control_cell this cell number is out of range",
     "The number of the control cell is not below BOUNDARY_LENGTH.",
     "Correct the number."},
    {"control-cell-safe-bit", ERROR, ANNEX "8.14",
     "The <disable value> (%s) of <cell number> %i with <function> '%s' must be equal to the "
     "<safe bit> (%s) of <cell number> %i with <function> '%s'",
     "The safe bit of a control cell is neither X nor the value that turns off a driver of this "
     "cell.",
     "Give the control cell the disable value of its drivers as safe bit, or correct the disable "
     "value."},
    {"control-cell-unused", ERROR, ANNEX "8.14",
     "cell_number %i with function '%s' does not control any cell",
     "No cell names this control cell.",
     "Correct the numbers of the control cells, or make the cell INTERNAL."},
    {"merged-cell-function", ERROR, ANNEX "8.14",
     "Merged cell (cell_number %i) must have function OUTPUT2, OUTPUT3, CONTROL or CONTROLR (now "
     "'%s')",
     "Of two rows for one cell, one describes the input side; the other has to be OUTPUT2, "
     "OUTPUT3, CONTROL or CONTROLR.",
     "Correct the function, or the number if two cells are meant."},
    {"merged-cell-name", ERROR, ANNEX "8.14",
     "Cell_names of merged cells must be equal (now '%s' and '%s')",
     "The two rows of one cell name different cells.",
     "Write the same cell name in both."},
    {"merged-cell-no-input", ERROR, ANNEX "8.14",
     "One of merged cells (cell_number %i) must have function '%s'",
     "Neither of the two rows of one cell describes the input side.",
     "Make one of them INPUT, or correct the number if two cells are meant."},
    {"merged-cell-two-inputs", ERROR, ANNEX "8.14",
     "Only one of merged cells (cell_number %i) can have function '%s'",
     "Both rows of one cell describe an input side.",
     "Correct one of the functions, or the number if two cells are meant."},
    {"merged-cell-safe-bit", ERROR, ANNEX "8.14",
     "Merged cells (cell_number %i) must have equal safe_bit values, unless one value is 'X' "
     "(now '%s' and '%s')",
     "The two rows of one cell have different safe bits.",
     "Give both the same safe bit, or X to one of them."},
    {"capture-described-twice", ERROR, ANNEX "10",
     "Capture descriptor (%s, %s, %s) for cell '%s' already defined",
     "A cell description says twice what the cell captures for the same function and instruction.",
     "Remove one of the entries."},
    {"capture-keeper-needs-2001", ERROR, ANNEX "10",
     "<capture instruction> KEEPER is only allowed in BSDL2001",
     "KEEPER is known since 2001 only, and the file names an older issue.",
     "Name STD_1149_1_2001."},
    {"capture-runbist-needs-1990", ERROR, ANNEX "10",
     "<capture instruction> RUNBIST is only allowed in BSDL90",
     "RUNBIST stands in a cell description of the issue of 1990 only.",
     "Remove the entry."},
    {"capture-source-illegal", ERROR, ANNEX "10",
     "Illegal capture source '%s' for instruction '%s' of context '%s' for cell '%s'",
     "A cell definition captures what it must not. INPUT, CLOCK and BIDIR_IN capture PI under "
     "EXTEST and SAMPLE; CONTROL and CONTROLR capture PI under SAMPLE and PI or UPD under INTEST; "
     "OBSERVE_ONLY captures PI.",
     "Correct the source in the package body."},
    {"capture-source-of-mandated-cell", ERROR, ANNEX "10",
     "Illegal capture source 'PI' for instruction '%s' of context '%s' for mandated cell '%s'",
     "A cell with a name of the standard, BC_0 to BC_6 for example, is defined to capture PI "
     "under INTEST as OBSERVE_ONLY.",
     "Remove the entry, or give the cell a name of your own."},
    {"capture-source-of-output", BY_STRICT, ANNEX "10",
     "Illegal capture source '%s' for instruction '%s' of context '%s' for cell '%s'\n"
     "Illegal capture source '%s' for instruction '%s' of context '%s' for cell '%s' (Maybe you "
     "want to set 2001 Conformance)",
     "An output (OUTPUT2, OUTPUT3 or BIDIR_OUT) is defined to capture something else than PI "
     "under SAMPLE or INTEST. PO is allowed under SAMPLE where COMPONENT_CONFORMANCE names "
     "STD_1149_1_2001. Without that the message comes also for BC_8 and BC_10, the cells of the "
     "standard itself, in every file that uses STD_1149_1_2001.",
     "Name STD_1149_1_2001 in COMPONENT_CONFORMANCE if the device follows that issue, or correct "
     "the source in the package body."},

    // Cells against ports
    {"pin-without-cell", BY_STRICT, ANNEX "8.14",
     "<port name> '%s' with <pin type> %s does not exist in <boundary register statement>",
     "A port bit has no cell in the boundary register, so that nothing can be tested at this pin. "
     "Linkage ports and those of the test access port, of differential pairs and of "
     "COMPLIANCE_PATTERNS need none.",
     "Add the cell, or declare the port as linkage."},
    {"linkage-port-cell", ERROR, ANNEX "8.14",
     "<cell number> %i with <port id> '%s' cannot have <pin type> LINKAGE in <logical pin map>",
     "A cell belongs to a linkage port.",
     "Give the port its mode, or remove the cell."},
    {"in-port-cell-function", ERROR, ANNEX "8.14",
     "<cell type> IN in <logical pin map> means that <cell number> %i with <port id> %s must "
     "have function INPUT, CLOCK or OBSERVE_ONLY",
     "The cell of an input has the function of a driver.",
     "Make it INPUT, CLOCK or OBSERVE_ONLY, or correct the mode of the port."},
    {"out-port-cell-function", ERROR, ANNEX "8.14",
     "<cell type> OUT in <logical pin map> means that <cell number> %i with <port id> %s must "
     "have function OUTPUT2 or OUTPUT3",
     "The cell of an output neither drives nor only observes it.",
     "Make it OUTPUT2 or OUTPUT3, or OBSERVE_ONLY beside a cell that drives; or correct the mode "
     "of the port."},
    {"out-port-two-drivers", ERROR, ANNEX "8.14",
     "<cell number> %i with <function> %s and <cell number> %i with <function> %s, both <port id> "
     "%s cannot both have an OUTPUT function",
     "Two cells drive the same output.",
     "Correct the port of one of the cells."},
    {"out-port-without-driver", ERROR, ANNEX "8.14",
     "<port id> %s must have a cell with an OUTPUT function",
     "An output has a cell that observes it, but none that drives it. For the second port of a "
     "differential pair the driver of the first is enough, under --strict only in descriptions of "
     "IEEE 1149.6.",
     "Add the driving cell."},
    {"inout-port-cell-function", ERROR, ANNEX "8.14",
     "<cell type> INOUT in <logical pin map> means that <cell number> %i with <port id> %s must "
     "have function BIDIR, OUTPUT2, OUTPUT3 INPUT or OBSERVE_ONLY",
     "A cell of a bidirectional port has a function that such a port cannot have.",
     "Make it BIDIR, OUTPUT2, OUTPUT3, INPUT or OBSERVE_ONLY."},
    {"inout-port-two-drivers", ERROR, ANNEX "8.14",
     "<cell number> %i with <function> %s and <cell number> %i with <function> %s, both <port id> "
     "%s cannot both have a BIDIR/OUTPUT2/OUTPUT3 function\n"
     "<cell number> %i with <function> %s and <cell number> %i with <function> %s, both <port id> "
     "%s cannot both have an OUTPUT2/OUTPUT3 function",
     "Two cells drive the same bidirectional port.",
     "Correct the port or the function of one of the cells."},
    {"inout-port-without-input", BY_STRICT, ANNEX "8.14",
     "<cell number> %i <function> %s: at least one other <cell entry> with <port id> %s must have "
     "function INPUT or OBSERVE_ONLY but a different <cell number>",
     "A bidirectional port has an OUTPUT2 or OUTPUT3 cell, but no cell of another number that "
     "receives.",
     "Add an INPUT or OBSERVE_ONLY cell, use a BIDIR cell, or declare the port as out."},
    {"buffer-port-cell-function", ERROR, ANNEX "8.14",
     "<cell type> BUFFER in <logical pin map> means that <cell number> %i with <port id> %s must "
     "have function OUTPUT2",
     "The cell of a buffer port is neither OUTPUT2, the function of an output that cannot be "
     "turned off, nor OBSERVE_ONLY.",
     "Make it OUTPUT2, or declare the port as out."},
    {"buffer-port-disable-spec", ERROR, ANNEX "8.14",
     "<cell type> BUFFER in <logical pin map> means that <cell number> %i with <port id> %s "
     "cannot contain a <disable spec>",
     "The cell of a buffer port says how the driver is turned off, while a buffer always drives.",
     "Remove the disable part, or declare the port as out."},
    {"buffer-port-two-drivers", ERROR, ANNEX "8.14",
     "<cell number> %i with <function> %s and <cell number> %i with <function> %s, both <port id> "
     "%s cannot both have an OUTPUT2 function",
     "Two cells drive the same buffer port.",
     "Correct the port of one of the cells."},
    {"buffer-port-without-driver", ERROR, ANNEX "8.14",
     "<port id> %s must have a cell with an OUTPUT2 function",
     "A buffer port has a cell that observes it, but none that drives it. For the second port of "
     "a differential pair the driver of the first is enough, under --strict only in descriptions "
     "of IEEE 1149.6.",
     "Add an OUTPUT2 cell."},
    {"observe-only-cell-of-associated-port", WARNING, ANNEX "8.14",
     "'observe only' cell %i connected to associated output port '%s'",
     "A cell only observes the second output of a differential pair, whose value follows from the "
     "first. Not reported under --strict, nor in descriptions of IEEE 1149.6.",
     "Nothing has to be done if the device has such a cell."},

    // RUNBIST, INTEST and extensions
    {"runbist-no-instruction", ERROR, ANNEX "8.15",
     "Runbist used, but RUNBIST instruction does not exist",
     "There is a RUNBIST_EXECUTION statement, but no RUNBIST instruction.",
     "Add RUNBIST to INSTRUCTION_OPCODE, or remove the statement."},
    {"runbist-signature-length", ERROR, ANNEX "8.15",
     "Incorrect expect data pattern length %i, should be %i",
     "The expected data do not have one bit for each bit of the register that RUNBIST selects.",
     "Write as many bits as the register has."},
    {"intest-no-instruction", ERROR, ANNEX "8.16",
     "Intest used, but INTEST instruction does not exist",
     "There is an INTEST_EXECUTION statement, but no INTEST instruction.",
     "Add INTEST to INSTRUCTION_OPCODE, or remove the statement."},
    {"duration-port-no-clock", ERROR, ANNEX "8.15",
     "Port '%s' is not a clock port",
     "Clock cycles are counted on a port that is no clock: neither TCK nor a port with a CLOCK "
     "cell.",
     "Name TCK or a port with a CLOCK cell."},
    {"duration-port-repeated", ERROR, ANNEX "8.15",
     "Port '%s' is not unique",
     "Clock cycles are given twice for the same port.",
     "Remove one of them."},
    {"duration-cycle-count", ERROR, ANNEX "8.15",
     "Value of cycle_count in duration spec should be greater than 0 (now %i)",
     "A number of clock cycles is not above 0.",
     "Correct the number."},
    {"duration-time", ERROR, ANNEX "8.15",
     "Value of time in duration spec should be greater than 0 (now %f)",
     "A time is not above 0.",
     "Correct the time, which is in seconds."},
    {"extension-undeclared", ERROR, ANNEX "8.17",
     "Extension '%s' in '%s' is defined but not declared",
     "An attribute that the standard does not know is used without being declared.",
     "Add 'attribute NAME : BSDL_EXTENSION;', or use the package that declares it."},
    {"design-warning-order", BY_STRICT, ANNEX "8.1",
     "Wrong ordening of statements \"DESIGN_WARNING\" and BSDL Extensions",
     "DESIGN_WARNING has to be the last statement, after the extensions.",
     "Move the statement to the end."},

    // IEEE 1532
    {"isc-missing", BY_STRICT, IEEE_1532,
     "BSDL ISC Extension not defined",
     "The file uses a package of IEEE 1532, but has none of its statements, or they were left out "
     "because of errors.",
     "Add the statements, fix the errors before this message, or remove the use statement."},
    {"isc-conformance-missing", WARNING, IEEE_1532,
     "ISC_Conformance statement required for Std_1532_2002",
     "A description by the issue of 2002 has to have an ISC_Conformance statement.",
     "Add the statement."},
    {"isc-statement-order", BY_STRICT, IEEE_1532,
     "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and \"STATUS\"\n"
     "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and \"FIXED_SYSTEM_PINS\" and \"STATUS\"",
     "ISC_Pin_Behavior, ISC_Fixed_System_Pins and ISC_Status do not stand in this order. The text "
     "does not always name all that are out of place.",
     "Put the three into this order."},
    {"isc-fixed-pin-unknown", ERROR, IEEE_1532,
     "port_id '%s' not found\n"
     "port_id '%s[%i]' not found",
     "The file has ISC_Fixed_System_Pins. The check names the first port of the statement, "
     "whether it is declared or not, and looks at no other: no description with this statement "
     "passes.",
     "See that all ports of the statement are declared; --rule isc-fixed-pin-unknown=off then "
     "leaves the message out."},
    {"isc-blank-usercode-length", ERROR, IEEE_1532,
     "blank_usercode has incorrect string length",
     "ISC_Blank_Usercode does not have 32 bits.",
     "Write 32 bits."},
    {"isc-instruction-missing", ERROR, IEEE_1532,
     "mandatory ISC instruction %s not available",
     "ISC_ENABLE, ISC_DISABLE, ISC_PROGRAM or ISC_NOOP, which IEEE 1532 mandates, has no opcode "
     "or is private.",
     "Add it to INSTRUCTION_OPCODE, or remove it from INSTRUCTION_PRIVATE."},
    {"isc-instruction-target", ERROR, IEEE_1532,
     "ISC instruction %s has incorrect target register %s",
     "An instruction of IEEE 1532 selects a register that it must not select.",
     "List it under its register in REGISTER_ACCESS."},
    {"isc-register-default-missing", ERROR, IEEE_1532,
     "mandatory ISC register ISC_DEFAULT not available",
     "The register ISC_DEFAULT is not described.",
     "Add ISC_DEFAULT to REGISTER_ACCESS."},
    {"isc-register-id-missing", ERROR, IEEE_1532,
     "mandatory ISC register DEVICE_ID not available",
     "The register DEVICE_ID is not described.",
     "Add DEVICE_ID to REGISTER_ACCESS, or use the package of IEEE 1532, by which it is added."},
    {"isc-illegal-exit-unknown", ERROR, IEEE_1532,
     "illegal exit instruction '%s' does not exist",
     "ISC_Illegal_Exit names an instruction that has no opcode.",
     "Correct the name."},
    {"isc-illegal-exit-isc", ERROR, IEEE_1532,
     "illegal exit instruction '%s' is an ISC instruction",
     "ISC_Illegal_Exit names an instruction of IEEE 1532 itself, which cannot be an illegal way "
     "out.",
     "Remove it from the list."},
    {"isc-security-instruction-missing", ERROR, IEEE_1532,
     "no ISC_PROGRAM_SECURITY instruction in opcode list, while using ISC_Security",
     "There is an ISC_Security statement, but no ISC_PROGRAM_SECURITY instruction.",
     "Add the instruction, or remove the statement."},
    {"isc-security-instruction-target", ERROR, IEEE_1532,
     "instruction ISC_PROGRAM_SECURITY does not target ISC_PDATA register",
     "ISC_PROGRAM_SECURITY does not select the register ISC_PDATA.",
     "List it under ISC_PDATA in REGISTER_ACCESS."},
    {"isc-security-no-bits", ERROR, IEEE_1532,
     "ISC_PROGRAM_SECURITY is implemented, but no security bits are set",
     "There is an ISC_Security statement, but it has * for every bit.",
     "Give the bits in ISC_Security."},
    {"isc-security-read-range", ERROR, IEEE_1532,
     "security bit disable_read (%i) exceeds ISC_PDATA length %i",
     "The bit that disables reading is outside ISC_PDATA.",
     "Correct the number of the bit."},
    {"isc-security-program-range", ERROR, IEEE_1532,
     "security bit disable_program (%i) exceeds ISC_PDATA length %i",
     "The bit that disables programming is outside ISC_PDATA.",
     "Correct the number of the bit."},
    {"isc-security-erase-range", ERROR, IEEE_1532,
     "security bit disable_erase (%i) exceeds ISC_PDATA length %i",
     "The bit that disables erasing is outside ISC_PDATA.",
     "Correct the number of the bit."},
    {"isc-security-key-lsb-range", ERROR, IEEE_1532,
     "security bit disable_key lsb (%i) exceeds ISC_PDATA length %i",
     "The lowest bit of the key is outside ISC_PDATA.",
     "Correct the number of the bit."},
    {"isc-security-key-msb-range", ERROR, IEEE_1532,
     "security bit disable_key msb (%i) exceeds ISC_PDATA length %i",
     "The highest bit of the key is outside ISC_PDATA.",
     "Correct the number of the bit."},
    {"isc-security-key-order", ERROR, IEEE_1532,
     "the numerical value of ISC_DISABLE_KEY msb must be greater or equal to the value of lsb",
     "The highest bit of the key is below the lowest.",
     "Swap the numbers."},
    {"isc-flow-duplicate", WARNING, IEEE_1532,
     "flow descriptor %s (%s) exists, ignored\n"
     "flow descriptor %s exists, ignored",
     "A flow of this name (and data name) was described before; this one is left out. A flow F_X "
     "counts as the same as a flow F(X).",
     "Rename or remove one of them."},
    {"isc-flow-data-name-missing", ERROR, IEEE_1532,
     "an input or IO operator exists without associated flow_name in flow_descriptor '%s'",
     "A flow sets a variable from input (? or ?!), but has no data name that says what data it "
     "moves.",
     "Add the data name in parentheses after the name of the flow."},
    {"isc-activity-instruction-unknown", ERROR, IEEE_1532,
     "flow activity instruction: '%s' not found",
     "A flow loads an instruction that has no opcode.",
     "Correct the name."},
    {"isc-activity-register-missing", ERROR, IEEE_1532,
     "instruction '%s' has no associated register",
     "A flow shifts data through an instruction that has no register.",
     "List the instruction in REGISTER_ACCESS."},
    {"isc-field-width", ERROR, IEEE_1532,
     "field_width must be > 0",
     "A field of an activity has no width above 0.",
     "Correct the width."},
    {"isc-field-hex-too-long", ERROR, IEEE_1532,
     "hex_string [%i] must fit in field_width [%i]",
     "A hexadecimal number has more bits than its field; leading zeros do not count.",
     "Widen the field, or shorten the number."},
    {"isc-field-operand-too-long", ERROR, IEEE_1532,
     "operand [%i] must fit in field_width [%i]",
     "An operand has more bits than its field.",
     "Widen the field, or correct the operand."},
    {"isc-update-widths", ERROR, IEEE_1532,
     "the sum of update field widths (%i) in flow '%s' activity '%s' must be equal to the length "
     "of associated register '%s[%i]'\n"
     "the sum of update field widths (%i) in flow '%s(%s)' activity '%s' must be equal to the "
     "length of associated register '%s[%i]'",
     "The update fields of an activity do not make up the register that it shifts.",
     "Correct the widths; their sum has to be the length of the register."},
    {"isc-capture-widths", ERROR, IEEE_1532,
     "The sum of capture field widths (%i) in flow '%s' activity '%s' must be equal to the length "
     "of associated register '%s[%i]'\n"
     "The sum of capture field widths (%i) in flow '%s (%s)' activity '%s' must be equal to the "
     "length of associated register '%s[%i]'",
     "The capture fields of an activity do not make up the register that it shifts.",
     "Correct the widths; their sum has to be the length of the register."},
    {"isc-wait-clock", ERROR, IEEE_1532,
     "tck port name '%s' differs from tck_stmt port_id '%s' in flow '%s'\n"
     "tck port name '%s' differs from tck_stmt port_id '%s' in flow '%s (%s)'",
     "A wait counts cycles of a port that is not TCK.",
     "Name the port of TAP_SCAN_CLOCK."},
    {"isc-wait", ERROR, IEEE_1532,
     "wait_specification",
     "A wait in a flow is not written as the standard asks for. The message comes once for each "
     "word that is passed over.",
     "Write 'WAIT D', 'WAIT D MIN' or 'WAIT D MIN, E MAX' for durations D and E."},
    {"isc-duration", ERROR, IEEE_1532,
     "duration_specification",
     "A duration in a flow is not written as the standard asks for. The message comes once for "
     "each word that is passed over.",
     "Give cycles of TCK, a time, or both in this order with a comma between them."},
    {"isc-loop-count", ERROR, IEEE_1532,
     "loop_count must be > 0",
     "A loop has a count that is not above 0.",
     "Give a number above 0."},
    {"isc-loop-limits", ERROR, IEEE_1532,
     "loop count (%i) must be greater than or equal to min loop count (%i) in flow '%s'\n"
     "loop count (%i) must be greater than or equal to min loop count (%i) in flow '%s (%s)'",
     "A loop is to run fewer times at most than at least. The check does not fail because of it.",
     "Swap the numbers."},
    {"isc-repeat-count", ERROR, IEEE_1532,
     "repeat_count must be > 0",
     "A repeat block has a count that is not above 0.",
     "Give a number above 0."},
    {"isc-tag-order", WARNING, IEEE_1532,
     "Capture field tags order should be :CRC:OST",
     "A capture field has both tags, in the wrong order.",
     "Write :CRC:OST."},
    {"isc-variable-length", ERROR, IEEE_1532,
     "ISC variable '%s[%i]' incorrect length, should be %i",
     "A variable is used with another width than the one it was set with.",
     "Use one width for a variable in a flow."},
    {"isc-variable-undefined", ERROR, IEEE_1532,
     "Variable '%s' not defined on line %i",
     "A variable is used before it was set in the flow. Capital and small letters make different "
     "variables.",
     "Set the variable in an activity before."},
    {"isc-variables-too-many", ERROR, nullptr,
     "Too many variables in this flow definition",
     "A flow has more than 51 variables.",
     "Split the flow, or use a variable twice."},
    {"isc-procedure-name", BY_STRICT, IEEE_1532,
     "illegal proc_name: '%s', the first five characters cannot be \"PROC_\"",
     "A name that begins with PROC_ is reserved, and this is none of the reserved ones.",
     "Rename the procedure."},
    {"isc-procedure-flow-unknown", ERROR, IEEE_1532,
     "flow %s does not exist in flow_description_list\nflow %s(%s) does not exist in "
     "flow_description_list",
     "A procedure names a flow that is not described.",
     "Correct the name or the data name of the flow."},
    {"isc-procedure-error-exit-missing", ERROR, IEEE_1532,
     "mandatory procedure PROC_ERROR_EXIT not found",
     "The mandatory procedure PROC_ERROR_EXIT is missing.",
     "Add it to ISC_Procedure."},
    {"isc-procedure-program-done-missing", ERROR, IEEE_1532,
     "mandatory procedure PROC_PROGRAM_DONE not found",
     "The mandatory procedure PROC_PROGRAM_DONE is missing.",
     "Add it to ISC_Procedure."},
    {"isc-action-procedure-unknown", ERROR, IEEE_1532,
     "procedure name: \"%s\" does not exist in procedure_list\nprocedure spec: \"%s(%s)\" does "
     "not exist in procedure_list",
     "An action names a procedure that is not described.",
     "Correct the name or the data name of the procedure."},

    // IEEE 1149.6
    {"aio-missing", BY_STRICT, IEEE_1149_6,
     "BSDL AIO extension not defined",
     "The file uses the package of IEEE 1149.6, but has none of its statements.",
     "Add the statements, or remove the use statement."},
    {"aio-pins-missing", WARNING, IEEE_1149_6,
     "No AIO portlist specified",
     "There is no AIO_Pin_Behavior statement that names ports.",
     "Describe the AC pins, if the device has any."},
    {"aio-extest-pulse-missing", ERROR, IEEE_1149_6,
     "Instruction opcode must have EXTEST_PULSE instruction",
     "The instruction EXTEST_PULSE has no opcode.",
     "Add it to INSTRUCTION_OPCODE."},
    {"aio-extest-train-missing", ERROR, IEEE_1149_6,
     "Instruction opcode must have EXTEST_TRAIN instruction",
     "The instruction EXTEST_TRAIN has no opcode.",
     "Add it to INSTRUCTION_OPCODE."},
    {"aio-pulse-clock-not-tck", ERROR, IEEE_1149_6,
     "port_id '%s' is not a TCK pin",
     "The clock of the pulse is not the port of TAP_SCAN_CLOCK.",
     "Name that port."},
    {"aio-train-without-pulses", ERROR, IEEE_1149_6,
     "pulse count must be greater than 0",
     "A train has no pulses.",
     "Give a number above 0."},
    {"aio-port-unknown", ERROR, IEEE_1149_6,
     "<port id> '%s' does not exist in <logical pin map>",
     "A port that is described as AC pin is not declared.",
     "Correct the name."},
    {"aio-port-repeated", ERROR, IEEE_1149_6,
     "<port id> '%s' is already used in <AC pin info list>",
     "A port is described twice as AC pin.",
     "Remove one of the descriptions."},
    {"aio-port-linkage", ERROR, IEEE_1149_6,
     "<port id> '%s' cannot have <pin type> LINKAGE in <logical pin map>",
     "An AC pin is a linkage port.",
     "Give the port its mode, or remove it from the statement."},
    {"aio-associated-port", ERROR, IEEE_1149_6,
     "<associated port> '%s' in <grouped port identification> cannot appear in <AC pin info>",
     "The second port of a differential pair is described as AC pin; the first one stands for "
     "both.",
     "Describe the first port of the pair."},
    {"aio-test-access-port", ERROR, IEEE_1149_6,
     "port_id '%s' is %s port pin",
     "A port of the test access port is described as AC pin.",
     "Remove it from the statement."},
    {"aio-compliance-port", ERROR, IEEE_1149_6,
     "port_id '%s' is compliance pin",
     "A compliance-enable port is described as AC pin.",
     "Remove it from the statement."},
    {"aio-select-cell-unknown", ERROR, IEEE_1149_6,
     "<cell number> '%i' is referenced, but does not exist in the <boundary scan statement>",
     "The cell that switches a pin between AC and DC does not exist.",
     "Correct the number of the cell."},
    {"aio-select-cell-function", ERROR, IEEE_1149_6,
     "<cell number> %i is used as <AC/DC select cell>, but this cell's <function> value is '%s', "
     "and should be 'INTERNAL'",
     "The cell that switches a pin between AC and DC is not an INTERNAL cell.",
     "Correct the number, or the function of the cell."},
    {"aio-select-cell-safe-bit", ERROR, IEEE_1149_6,
     "<cell number> %i is used as <AC/DC select cell>, but this cell's <safe_bit> value is '%s', "
     "and should be '0'",
     "The cell that switches a pin between AC and DC has another safe bit than 0.",
     "Give the cell the safe bit 0."},
    {"aio-select-pin-type", ERROR, IEEE_1149_6,
     "<port id> '%s' has <pin type> '%s', this must be 'OUT', 'INOUT' or 'BUFFER'",
     "A pin that cannot drive has a cell that switches its driver between AC and DC.",
     "Remove the cell, or correct the mode of the port."},
    {"aio-select-with-times", ERROR, IEEE_1149_6,
     "<port id> '%s' has has both a <AC/DC select cell> and a <time constants> element, <pin "
     "type> '%s' must be 'INOUT'",
     "A pin has both a switching cell, which is for drivers, and time constants, which are for "
     "receivers, but is not bidirectional.",
     "Remove the one that does not fit the mode of the port."},
    {"aio-times-missing", BY_STRICT, IEEE_1149_6,
     "<port id> '%s' has <pin type> '%s', at least one <time constants> must be specified",
     "A pin that receives has no time constant.",
     "Give LP_TIME or HP_TIME."},
    {"aio-times-not-allowed", ERROR, IEEE_1149_6,
     "<port id> '%s' has <pin type> '%s', no <time constants> allowed (only for 'IN' and 'INOUT')",
     "A pin that does not receive has time constants.",
     "Remove them."},
    {"aio-lp-time-negative", ERROR, IEEE_1149_6,
     "<LP_time> '%e' should be > 0.0",
     "The time constant of the low-pass filter is below 0.",
     "Give the time in seconds."},
    {"aio-hp-time-negative", ERROR, IEEE_1149_6,
     "<HP_time> '%e' should be > 0.0",
     "The time constant of the high-pass filter is below 0.",
     "Give the time in seconds."},
    {"aio-input-cell-unknown", ERROR, IEEE_1149_6,
     "<cell number> %i is used as <input cell>, but this cell does not exist in <boundary "
     "register statement>",
     "The cell of a test receiver does not exist.",
     "Correct the number of the cell."},
    {"aio-input-cell-function", ERROR, IEEE_1149_6,
     "<cell number> %i is used as <input cell>, but this cell's <function> value is '%s', and "
     "should be 'INPUT' or 'OBSERVE_ONLY'",
     "The cell of a test receiver is neither INPUT nor OBSERVE_ONLY.",
     "Correct the number, or the function of the cell."},
    {"aio-input-cells-of-bit", ERROR, IEEE_1149_6,
     "<port id> '%s' is a single bit, thus <input cell list> can have only one element",
     "A single bit has more than one input cell.",
     "Give one cell."},
    {"aio-input-cells-of-vector", ERROR, IEEE_1149_6,
     "<port id> '%s' is a bit array of size %i, but <input cell list> has %i elements",
     "A vector does not have one input cell for each of its bits.",
     "Give one cell for each bit."},

    // PPC/PRG files
    {"design-name-mismatch", ERROR, nullptr,
     "Design name '%s' not consistent",
     "A statement, or the end of the file, names another design than the one that is described.",
     "Write the name of the design after 'of' and after 'end'."},
    {"program-type-unknown", ERROR, nullptr,
     "type '%s' not specified",
     "A program is for a part type that the file does not describe.",
     "Correct the part type, or add its description."},

    // EBST files
    {"ebst-file-open", ERROR, nullptr,
     "Cannot open file '%s'",
     "The EBST file cannot be created, or the file of that name cannot be written.",
     "Check the folder and its permissions."},
    {"ebst-file-write", ERROR, nullptr,
     "Cannot write file '%s'",
     "The EBST file could not be written to its end. A file that was there before stays as it was.",
     "Make room on the disk."},

    // Findings that no message brings
    {"check-failed", ERROR, nullptr,
     "",
     "A check did not pass and gave no rule as its reason, mostly because a statement that it "
     "needs is missing. The text names the check.",
     "Look for the statement in the description."},
    {"instruction-listed-twice", ERROR, ANNEX "8.11",
     "Instruction %s is listed twice in INSTRUCTION_OPCODE",
     "Two entries of the table have the same name. Only one of them gets the register that "
     "REGISTER_ACCESS gives to the instruction.",
     "Delete one of the entries. If they have different opcodes, list both in one entry."},
    {"suppression-unknown", WARNING, nullptr,
     "There is no rule '%s' to be turned off\n"
     "This comment for tarnlet is not understood",
     "A comment '-- tarnlet: ...' names a rule that does not exist, or is not written as "
     "'tarnlet: off RULE' or 'tarnlet: off-file RULE'.",
     "Correct the name; 'tarnlet check --list-rules' has them all. Part rules by commas, and write "
     "the reason after a colon."},
    {"suppression-unused", WARNING, nullptr,
     "'%s' is turned off here, but there is nothing of it\n"
     "'%s' cannot be turned off",
     "A comment '-- tarnlet: off ...' turns off a rule that finds nothing there, or one that tells "
     "why the file could not be read.",
     "Remove the comment, or move it to the line of the finding or above it."},
    {"process-ended", ERROR, nullptr,
     "Memory ran out while it was read",
     "There was not enough memory to read and check the file.",
     "Give the process more memory, or check fewer files at once (-j).", ALWAYS_ON},
};
// clang-format on

} // namespace

uint32_t bsdlRuleCount(void) { return std::size(RULES); }

const BsdlRule *bsdlRuleAt(uint32_t index)
{
    return index < std::size(RULES) ? &RULES[index] : nullptr;
}

const BsdlRule *bsdlFindRule(const char *id)
{
    for (const BsdlRule &rule : RULES)
        if (id && !std::strcmp(id, rule.id))
            return &rule;
    return nullptr;
}
