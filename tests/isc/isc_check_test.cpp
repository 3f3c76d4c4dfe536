#include "isc/isc.h"

#include "isc_family.h"

#include "registers/registers.h"

using namespace support;
using namespace isc_family;

namespace
{

using Check = int32_t (*)(Bsdl *);

// One check after the general ones have passed, compared with all that it says.
struct Row {
    const char *name;
    Family family;
    int32_t result;
    ExpectedMessages messages = {};
    unsigned flags = 0;
};

void expect_rows(Check check, const std::vector<Row> &rows)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(row.family.description(), {.flags = row.flags});
        EXPECT_EQ(bsdl_check(reading), 0);
        EXPECT_EQ(reading.check(check), row.result);
        expect_messages(reading.messages(), row.messages);
    }
}

// The registers and opcodes of the description replaced.
struct RegisterRow {
    const char *name;
    std::string opcodes;
    std::string registers;
    ExpectedMessages messages = {};
};

Description with_registers(const Family &family, const std::string &opcodes,
                           const std::string &registers)
{
    return family.description()
        .with(INSTRUCTION_OPCODE, attribute("INSTRUCTION_OPCODE", opcodes))
        .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", registers));
}

std::string replaced(std::string text, const std::string &part, const std::string &by)
{
    size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

// -------------------------------------------------------------------------------- the driver

const ExpectedMessages ISC_PASSED = {{INFORMATION, "\tInstruction register description passed", 3},
                                     {INFORMATION, "\tInstruction register description passed", 3},
                                     {INFORMATION, "\tISC pin behaviour description passed", 3},
                                     {INFORMATION, "\tISC fixed pins description passed", 3},
                                     {INFORMATION, "\tISC blank usercode description passed", 3},
                                     {INFORMATION, "\tISC security description passed", 3},
                                     {INFORMATION, "\tISC flow description passed", 3},
                                     {INFORMATION, "\tISC procedure description passed", 3},
                                     {INFORMATION, "\tISC action description passed", 3},
                                     {INFORMATION, "\tISC illegal exit description passed", 3},
                                     {INFORMATION, "\tISC design warning passed", 3}};

const char *const GENERAL[] = {"Generic parameter",
                               "Logical port identification",
                               "Package in use statement",
                               "Device package pin mappings description",
                               "Grouped Port identification",
                               "Scan port identification description",
                               "Compliance enable description",
                               "Instruction register description",
                               "Optional register description",
                               "Register access description",
                               "Boundary scan register description",
                               "Runbist description",
                               "Intest description",
                               "Extensions description"};

// The driver's own lines: those of the checks it runs that begin with a tab, and its frame.
Messages driver_lines(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        bool of_check = message.level != PROGRESS && message.text[0] == '\t' &&
                        message.text.find("added") == std::string::npos;
        return of_check || message.text.compare(0, 4, "    ") == 0;
    });
}

TEST(IscCheck, RunsGeneralChecksFirst)
{
    Reading reading(Family().description());
    EXPECT_EQ(reading.check(bsdl_check_isc), 0);
    ExpectedMessages expected = {{PROGRESS, "    BSDL ISC semantic checks", 2}};
    for (const char *general : GENERAL)
        expected.push_back({INFORMATION, std::string("\t") + general + " passed", 3});
    expected.insert(expected.end(), ISC_PASSED.begin(), ISC_PASSED.end());
    expected.push_back({INFORMATION, "    BSDL ISC semantic checks passed", 2});
    expect_messages(driver_lines(reading.messages()), expected);
    EXPECT_EQ(reading.handle()->data->check_state, 9u);
    EXPECT_EQ(reading.handle()->data->check_passed, 0x10u);

    // They are not repeated, and bsdl_check() takes them as done.
    EXPECT_EQ(reading.check(bsdl_check_isc), 0);
    expected.erase(expected.begin() + 1, expected.begin() + 1 + 14);
    expect_messages(reading.messages(), expected);
    EXPECT_EQ(reading.check(bsdl_check), 0);
    expect_messages(reading.messages(), {});
}

TEST(IscCheck, FailedGeneralChecksEndIt)
{
    Description bad =
        Family().description().with(INSTRUCTION_CAPTURE, attribute("INSTRUCTION_CAPTURE", "XXX10"));
    Reading fresh(bad);
    EXPECT_EQ(fresh.check(bsdl_check_isc), 100);
    Messages lines = driver_lines(fresh.messages());
    ASSERT_EQ(lines.size(), 15u) << "heading and general checks, nothing more";
    EXPECT_EQ(lines[8].text, "\tInstruction register description has errors");
    EXPECT_EQ(fresh.handle()->data->check_passed, 0u);

    // After a failed bsdl_check() nothing runs, and there is nothing to count.
    Reading checked(bad);
    EXPECT_EQ(bsdl_check(checked), 100);
    EXPECT_EQ(checked.check(bsdl_check_isc), 0);
    expect_messages(checked.messages(), {{PROGRESS, "    BSDL ISC semantic checks", 2}});
    EXPECT_EQ(checked.handle()->data->check_passed, 0u);
}

TEST(IscCheck, CountsEachFailure)
{
    Reading reading(Family()
                        .with(ILLEGAL_EXIT, "NO_SUCH")
                        .with(BLANK_USERCODE, "101")
                        .with(FIXED_PINS, "A")
                        .description());
    EXPECT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_isc), 300);
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "port_id 'A' not found", 2},
                     {ERROR, "\tISC fixed pins description has errors", 1},
                     {ERROR, "blank_usercode has incorrect string length", 2},
                     {ERROR, "\tISC blank usercode description has errors", 1},
                     {ERROR, "illegal exit instruction 'NO_SUCH' does not exist", 2},
                     {ERROR, "\tISC illegal exit description has errors", 1},
                     {ERROR, "    BSDL ISC semantic checks failed", 1}});
    EXPECT_EQ(reading.handle()->data->check_state & 8, 0u);
}

TEST(IscCheck, WithoutFamily)
{
    EXPECT_EQ(bsdl_check_isc(nullptr), 2);
    Reading plain((Description()));
    EXPECT_EQ(bsdl_check(plain), 0);
    // All but the first two need it; 4 reaches every threshold.
    EXPECT_EQ(plain.check(bsdl_check_isc), 1000);
    expect_messages(errors_and_warnings(plain.messages()),
                    {{WARNING, "BSDL ISC Extension not defined", 3},
                     {ERROR, "mandatory ISC register ISC_DEFAULT not available", 2},
                     {ERROR, "mandatory ISC instruction ISC_ENABLE not available", 2},
                     {ERROR, "mandatory ISC instruction ISC_DISABLE not available", 2},
                     {ERROR, "mandatory ISC instruction ISC_PROGRAM not available", 2},
                     {ERROR, "mandatory ISC instruction ISC_NOOP not available", 2},
                     {ERROR, "\tISC Instruction registers has errors", 1},
                     {ERROR, "\tISC pin behaviour description has errors", 1},
                     {ERROR, "\tISC fixed pins description has errors", 1},
                     {ERROR, "\tISC blank usercode description has errors", 1},
                     {ERROR, "\tISC security description has errors", 1},
                     {ERROR, "\tISC flow description has errors", 1},
                     {ERROR, "\tISC procedure description has errors", 1},
                     {ERROR, "\tISC action description has errors", 1},
                     {ERROR, "\tISC illegal exit description has errors", 1},
                     {ERROR, "\tISC design warning has errors", 1},
                     {ERROR, "    BSDL ISC semantic checks failed", 1}});

    Reading strict(Description(), {.flags = STRICT});
    EXPECT_EQ(strict.check(bsdl_check_isc), 4);
    expect_messages(strict.messages(), {{PROGRESS, "    BSDL ISC semantic checks", 2},
                                        {ERROR, "BSDL ISC Extension not defined", 1}});
    EXPECT_EQ(strict.handle()->data->check_state, 0u);
}

int32_t check_flow(Bsdl *handle) { return bsdl_check_isc_flow(handle, 0); }

// What each check gives for: no handle, no data, no family, an empty family.
TEST(IscCheck, EntryCodes)
{
    struct Entry {
        Check check;
        int32_t no_family;
        int32_t empty;
    };
    const Entry entries[] = {
        {bsdl_check_isc_pin_behaviour, 4, 5},     {bsdl_check_isc_status, 4, 5},
        {bsdl_check_isc_blank_usercode, 4, 5},    {bsdl_check_isc_design_warning, 4, 1},
        {bsdl_check_isc_fixed_system_pins, 4, 1}, {bsdl_check_isc_security, 4, 1},
        {bsdl_check_isc_procedures, 4, 5},        {bsdl_check_isc_actions, 4, 5},
        {bsdl_check_isc_illegal_exit, 4, 1},      {check_flow, 4, 5},
        {bsdl_check_isc_instr_reg, 5, 5},
    };
    int row = 0;
    for (const Entry &entry : entries) {
        SCOPED_TRACE(row++);
        EXPECT_EQ(entry.check(nullptr), 2);
        Bsdl empty = {};
        EXPECT_EQ(entry.check(&empty), 3);
        Reading reading((Description().without(REGISTER_ACCESS)));
        EXPECT_EQ(reading.check(entry.check), entry.no_family);
        IscData nothing = {};
        reading.handle()->data->isc = &nothing;
        EXPECT_EQ(reading.check(entry.check), entry.empty);
        expect_messages(reading.messages(), {});
    }
    // The exits need instructions once there are some.
    Reading reading(Family().with(ILLEGAL_EXIT, "BYPASS").description());
    reading.handle()->data->instruction_register->opcode_table = nullptr;
    EXPECT_EQ(bsdl_check_isc_illegal_exit(reading), 5);
    EXPECT_EQ(bsdl_check_isc_instr_reg(reading), 5);
    EXPECT_EQ(bsdl_check_isc_flow(reading, 0), 5);
    EXPECT_EQ(bsdl_check_isc_flow(reading, 1), 0);
}

// --------------------------------------------------------------------- instructions, registers

TEST(IscCheck, MandatoryInstructionsAndRegisters)
{
    const std::string opcodes = OPCODES;
    const std::string registers = REGISTERS;
    const RegisterRow rows[] = {
        {"as it should be", opcodes, registers},
        {"ISC_ENABLE",
         replaced(opcodes, "ISC_ENABLE", "MY_ENABLE"),
         replaced(registers, "ISC_ENABLE", "MY_ENABLE"),
         {{ERROR, "mandatory ISC instruction ISC_ENABLE not available", 2}}},
        {"three of them",
         replaced(replaced(replaced(opcodes, "ISC_DISABLE", "A1"), "ISC_PROGRAM", "A2"), "ISC_NOOP",
                  "A3"),
         replaced(replaced(replaced(registers, "ISC_DISABLE", "A1"), "ISC_PROGRAM", "A2"),
                  "ISC_NOOP", "A3"),
         {{ERROR, "mandatory ISC instruction ISC_DISABLE not available", 2},
          {ERROR, "mandatory ISC instruction ISC_PROGRAM not available", 2},
          {ERROR, "mandatory ISC instruction ISC_NOOP not available", 2}}},
        {"ISC_DEFAULT",
         opcodes,
         replaced(registers, "ISC_DEFAULT", "ISC_OTHER"),
         {{ERROR, "mandatory ISC register ISC_DEFAULT not available", 2},
          {ERROR, "ISC instruction ISC_ENABLE has incorrect target register ISC_OTHER", 2},
          {ERROR, "ISC instruction ISC_DISABLE has incorrect target register ISC_OTHER", 2},
          {ERROR, "ISC instruction ISC_NOOP has incorrect target register ISC_OTHER", 2}}},
    };
    for (const RegisterRow &row : rows) {
        SCOPED_TRACE(row.name);
        Family family = Family().with_flow("F");
        Reading reading(with_registers(family, row.opcodes, row.registers));
        EXPECT_EQ(bsdl_check(reading), 0);
        EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), row.messages.empty() ? 0 : 100);
        expect_messages(reading.messages(), row.messages);
    }

    Reading private_one(Family().description().with(
        INSTRUCTION_PRIVATE, attribute("INSTRUCTION_PRIVATE", "ISC_ENABLE")));
    EXPECT_EQ(bsdl_check(private_one), 0);
    EXPECT_EQ(private_one.check(bsdl_check_isc_instr_reg), 100);
    expect_messages(private_one.messages(),
                    {{ERROR, "mandatory ISC instruction ISC_ENABLE not available", 2}});

    // The register of the first entry without a name ends the search.
    Reading nameless(Family().description());
    EXPECT_EQ(bsdl_check(nameless), 0);
    auto *first = static_cast<RegisterEntry *>(nameless.handle()->data->register_access->data);
    first->name = nullptr;
    EXPECT_EQ(nameless.check(bsdl_check_isc_instr_reg), 100);
    expect_messages(nameless.messages(),
                    {{ERROR, "mandatory ISC register ISC_DEFAULT not available", 2},
                     {ERROR, "mandatory ISC register DEVICE_ID not available", 2}});
}

// Each instruction with each register of the standard.
TEST(IscCheck, TargetsOfInstructions)
{
    const char *const registers[] = {"DEVICE_ID",   "ISC_DEFAULT", "ISC_PDATA", "ISC_CONFIG",
                                     "ISC_RDATA",   "ISC_SECTOR",  "ISC_INFO",  "ISC_DATA",
                                     "ISC_ADDRESS", "ISC_INC",     "ISC_MINE"};
    const std::pair<const char *, const char *> allowed[] = {
        {"ISC_ENABLE", "ISC_DEFAULT ISC_CONFIG"},
        {"ISC_DISABLE", "ISC_DEFAULT ISC_CONFIG"},
        {"ISC_PROGRAM", "ISC_DEFAULT ISC_PDATA"},
        {"ISC_PROGRAM_DONE", "ISC_DEFAULT ISC_PDATA"},
        {"ISC_ERASE_DONE", "ISC_DEFAULT ISC_PDATA"},
        {"ISC_NOOP", "ISC_DEFAULT"},
        {"ISC_PROGRAM_USERCODE", "DEVICE_ID"},
        {"ISC_SETUP", "ISC_CONFIG"},
        {"ISC_READ", "ISC_PDATA ISC_RDATA"},
        {"ISC_ERASE", "ISC_DEFAULT ISC_SECTOR"},
        {"ISC_DISCHARGE", "ISC_DEFAULT ISC_SECTOR"},
        {"ISC_PROGRAM_SECURITY", "ISC_DEFAULT ISC_PDATA ISC_SECTOR"},
        {"ISC_READ_INFO", "ISC_INFO"},
        {"ISC_DATA_SHIFT", "ISC_DATA"},
        {"ISC_ADDRESS_SHIFT", "ISC_ADDRESS ISC_INC"},
        {"ISC_INCREMENT", "ISC_DEFAULT ISC_INC"},
        {"ISC_MINE", "DEVICE_ID ISC_DEFAULT ISC_PDATA ISC_CONFIG ISC_RDATA ISC_SECTOR ISC_INFO "
                     "ISC_DATA ISC_ADDRESS ISC_INC ISC_MINE"},
    };
    Reading reading(Family().description());
    EXPECT_EQ(bsdl_check(reading), 0);
    auto *mine = static_cast<InstructionEntry *>(
        g_slist_last(reading.handle()->data->instruction_register->opcode_table)->data);
    ASSERT_STREQ(mine->name, "MINE");
    for (const auto &[instruction, targets] : allowed) {
        for (const char *target : registers) {
            SCOPED_TRACE(std::string(instruction) + " " + target);
            RegisterEntry entry = {};
            entry.name = model_name(reading, target);
            mine->name = model_name(reading, instruction);
            mine->data_register = &entry;
            bool fits = (" " + std::string(targets) + " ").find(" " + std::string(target) + " ") !=
                        std::string::npos;
            EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), fits ? 0 : 100);
            ExpectedMessages expected;
            if (!fits)
                expected.push_back({ERROR,
                                    std::string("ISC instruction ") + instruction +
                                        " has incorrect target register " + target,
                                    2});
            expect_messages(reading.messages(), expected);
        }
        // Without a register, or one without a name, there is nothing to compare.
        RegisterEntry nameless = {};
        mine->data_register = &nameless;
        EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), 0);
        mine->data_register = nullptr;
        EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), 0);
    }
}

// --------------------------------------------------------------------------- smaller statements

TEST(IscCheck, PresenceIsEnough)
{
    Reading reading(Family().with(ISC_WARNING, "careful").description());
    EXPECT_EQ(reading.check(bsdl_check_isc_pin_behaviour), 0);
    EXPECT_EQ(reading.check(bsdl_check_isc_status), 0);
    EXPECT_EQ(reading.check(bsdl_check_isc_design_warning), 0);
    expect_messages(reading.messages(), {});
}

TEST(IscCheck, BlankUsercode)
{
    expect_rows(bsdl_check_isc_blank_usercode,
                {{"32 characters", Family(), 0},
                 {"31 characters",
                  Family().with(BLANK_USERCODE, "1111000011110000111100001111000"),
                  100,
                  {{ERROR, "blank_usercode has incorrect string length", 2}}}});
}

TEST(IscCheck, FixedPinsNeverPass)
{
    expect_rows(bsdl_check_isc_fixed_system_pins, {{"none", Family(), 1},
                                                   {"a port of the device",
                                                    Family().with(FIXED_PINS, "A, Y"),
                                                    100,
                                                    {{ERROR, "port_id 'A' not found", 2}}},
                                                   {"a bit of a port",
                                                    Family().with(FIXED_PINS, "D(1), A"),
                                                    100,
                                                    {{ERROR, "port_id 'D[1]' not found", 2}}}});
    Reading reading(Family().with(FIXED_PINS, "A").description());
    reading.handle()->data->logical_ports = nullptr;
    EXPECT_EQ(reading.check(bsdl_check_isc_fixed_system_pins), 100);
    expect_messages(reading.messages(), {});
}

std::string security(const char *read, const char *program, const char *erase, const char *key)
{
    return std::string("ISC_DISABLE_READ ") + read + ", ISC_DISABLE_PROGRAM " + program +
           ", ISC_DISABLE_ERASE " + erase + ", ISC_DISABLE_KEY " + key;
}

TEST(IscCheck, Security)
{
    expect_rows(
        bsdl_check_isc_security,
        {{"none", Family(), 1},
         {"bits of ISC_PDATA[16]", Family().with(SECURITY, security("0", "1", "15", "15-0")), 0},
         {"one bit set is enough", Family().with(SECURITY, security("*", "*", "3", "*")), 0},
         {"no bits",
          Family().with(SECURITY, security("*", "*", "*", "*")),
          100,
          {{ERROR, "ISC_PROGRAM_SECURITY is implemented, but no security bits are set", 2}}},
         {"key in reverse",
          Family().with(SECURITY, security("0", "1", "2", "3-7")),
          100,
          {{ERROR,
            "the numerical value of ISC_DISABLE_KEY msb must be greater or equal to the value of "
            "lsb",
            2}}},
         {"beyond the register",
          Family().with(SECURITY, security("16", "17", "18", "20-19")),
          100,
          {{ERROR, "security bit disable_read (16) exceeds ISC_PDATA length 16", 2},
           {ERROR, "security bit disable_program (17) exceeds ISC_PDATA length 16", 2},
           {ERROR, "security bit disable_erase (18) exceeds ISC_PDATA length 16", 2},
           {ERROR, "security bit disable_key lsb (19) exceeds ISC_PDATA length 16", 2},
           {ERROR, "security bit disable_key msb (20) exceeds ISC_PDATA length 16", 2}}},
         {"reverse and beyond",
          Family().with(SECURITY, security("0", "1", "2", "3-16")),
          100,
          {{ERROR,
            "the numerical value of ISC_DISABLE_KEY msb must be greater or equal to the value of "
            "lsb",
            2},
           {ERROR, "security bit disable_key lsb (16) exceeds ISC_PDATA length 16", 2}}}});
}

TEST(IscCheck, SecurityInstruction)
{
    const std::string opcodes = OPCODES;
    const std::string registers = REGISTERS;
    const RegisterRow rows[] = {
        {"missing",
         replaced(opcodes, "ISC_PROGRAM_SECURITY", "OTHER"),
         replaced(registers, "ISC_PROGRAM_SECURITY", "OTHER"),
         {{ERROR, "no ISC_PROGRAM_SECURITY instruction in opcode list, while using ISC_Security",
           2}}},
        // The general rule would allow this register.
        {"of ISC_DEFAULT",
         opcodes,
         replaced(replaced(registers, ", ISC_PROGRAM_SECURITY", ""), "ISC_NOOP",
                  "ISC_NOOP, ISC_PROGRAM_SECURITY"),
         {{ERROR, "instruction ISC_PROGRAM_SECURITY does not target ISC_PDATA register", 2}}},
        // Without the register no position is too large; with several the last one counts.
        {"no ISC_PDATA",
         opcodes,
         replaced(registers, "ISC_PDATA", "ISC_RDATA"),
         {{ERROR, "instruction ISC_PROGRAM_SECURITY does not target ISC_PDATA register", 2}}},
    };
    for (const RegisterRow &row : rows) {
        SCOPED_TRACE(row.name);
        Reading reading(
            with_registers(Family().with_flow("F").with(SECURITY, security("7", "8", "9", "99-90")),
                           row.opcodes, row.registers));
        bsdl_check(reading);
        EXPECT_EQ(reading.check(bsdl_check_isc_security), 100);
        Messages got = reading.messages();
        ASSERT_GE(got.size(), 1u);
        if (row.name != std::string("no ISC_PDATA"))
            got.resize(1);
        expect_messages(got, row.messages);
    }
    // No register at all is accepted.
    Reading reading(Family().with(SECURITY, security("7", "8", "9", "9-8")).description());
    EXPECT_EQ(reading.check(bsdl_check_isc_security), 0);
    expect_messages(reading.messages(), {});
}

TEST(IscCheck, Procedures)
{
    const std::string rest = ", PROC_ERROR_EXIT = (OFF), PROC_PROGRAM_DONE = (OFF)";
    const std::string all =
        "PROC_READ = (EN), PROC_VERIFY = (EN), PROC_PROGRAM = (EN), PROC_ERASE = (EN), "
        "PROC_BLANK_CHECK = (EN), PROC_ENABLE = (EN), proc_disable = (EN), PROC_PRELOAD = (EN), "
        "Proc_Error_Exit = (EN), PROC_PROGRAM_DONE = (EN), PROCEDURE_1 = (EN), PROC = (EN)";
    const char ILLEGAL[] =
        "illegal proc_name: 'Proc_Mine', the first five characters cannot be \"PROC_\"";
    expect_rows(bsdl_check_isc_procedures,
                {{"every reserved name", Family().with(PROCEDURE, all), 0},
                 {"a name like them",
                  Family().with(PROCEDURE, "Proc_Mine = (EN)" + rest),
                  0,
                  {{WARNING, ILLEGAL, 2}}},
                 {"a name like them, strict",
                  Family().with(PROCEDURE, "Proc_Mine = (EN)" + rest),
                  100,
                  {{ERROR, ILLEGAL, 2}},
                  STRICT},
                 {"flows that are not there",
                  Family().with(PROCEDURE, "P = (EN, NO, EN(ARRAY), off)" + rest),
                  100,
                  {{ERROR, "flow NO does not exist in flow_description_list", 2},
                   {ERROR, "flow EN(ARRAY) does not exist in flow_description_list", 2}}},
                 {"flow with data only",
                  Family()
                      .with(FLOW, "F(ARRAY)")
                      .with(PROCEDURE, "PROC_ERROR_EXIT = (F), "
                                       "PROC_PROGRAM_DONE = (F(array))"),
                  100,
                  {{ERROR, "flow F does not exist in flow_description_list", 2}}},
                 {"mandatory ones missing",
                  Family().with(PROCEDURE, "PROC_READ = (NO)"),
                  100,
                  {{ERROR, "flow NO does not exist in flow_description_list", 2},
                   {ERROR, "mandatory procedure PROC_ERROR_EXIT not found", 2},
                   {ERROR, "mandatory procedure PROC_PROGRAM_DONE not found", 2}}}});
}

TEST(IscCheck, Actions)
{
    expect_rows(
        bsdl_check_isc_actions,
        {{"as it should be", Family().with(ACTION, "A = (proc_enable, PROC_ERROR_EXIT)"), 0},
         {"procedures that are not there",
          Family().with(ACTION, "A = (NO, PROC_ENABLE(ARRAY)), B(X1) = (PROC_ENABLE, NO)"),
          100,
          {{ERROR, "procedure name: \"NO\" does not exist in procedure_list", 2},
           {ERROR, "procedure spec: \"PROC_ENABLE(ARRAY)\" does not exist in procedure_list", 2},
           {ERROR, "procedure name: \"NO\" does not exist in procedure_list", 2}}}});
}

TEST(IscCheck, IllegalExits)
{
    expect_rows(bsdl_check_isc_illegal_exit,
                {{"none", Family(), 1},
                 {"instructions of 1149.1 and of the maker",
                  Family().with(ILLEGAL_EXIT, "Bypass, mine"), 0},
                 {"of IEEE 1532, unknown, twice",
                  Family().with(ILLEGAL_EXIT, "isc_noop, NO, ISC_ERASE, NO"),
                  100,
                  {{ERROR, "illegal exit instruction 'ISC_NOOP' is an ISC instruction", 2},
                   {ERROR, "illegal exit instruction 'NO' does not exist", 2},
                   {ERROR, "illegal exit instruction 'ISC_ERASE' does not exist", 2},
                   {ERROR, "illegal exit instruction 'NO' does not exist", 2}}}});

    // Other names that begin like them are no ISC instructions.
    Reading reading(with_registers(Family().with(ILLEGAL_EXIT, "ISC_MINE"),
                                   replaced(OPCODES, "MINE", "ISC_MINE"),
                                   replaced(REGISTERS, "(MINE)", "(ISC_MINE)")));
    EXPECT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(bsdl_check_isc_illegal_exit(reading), 0);
}

TEST(IscCheck, MessagesTellRuleAndLine)
{
    Family family = Family().with(ILLEGAL_EXIT, "NO").with(SECURITY, security("99", "*", "*", "*"));
    Reading reading(family.description());
    reading.check(bsdl_check_isc_illegal_exit);
    ASSERT_EQ(reading.messages().size(), 1u);
    EXPECT_EQ(reading.messages()[0].rule, "isc-illegal-exit-unknown");
    EXPECT_EQ(reading.messages()[0].line, family.line(ILLEGAL_EXIT));
    bsdl_check(reading);
    reading.check(bsdl_check_isc_security);
    ASSERT_EQ(reading.messages().size(), 1u);
    EXPECT_EQ(reading.messages()[0].rule, "isc-security-read-range");
    EXPECT_EQ(reading.messages()[0].line, family.line(SECURITY));
}

} // namespace
