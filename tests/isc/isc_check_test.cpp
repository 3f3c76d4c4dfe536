#include "isc/isc.h"

#include "isc_family.h"

#include "registers/registers.h"

using namespace support;
using namespace isc_family;

namespace
{

// -------------------------------------------------------------------------------- the driver

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
    const Messages lines = driver_lines(reading.messages());
    ASSERT_EQ(lines.size(), 27u) << "a frame, 14 general checks, 11 of the family";
    expect_messages({lines[0], lines[14], lines[15], lines[16], lines[17], lines[26]},
                    {{PROGRESS, "    BSDL ISC semantic checks", 2},
                     {INFORMATION, "\tExtensions description passed", 3},
                     {INFORMATION, "\tInstruction register description passed", 3},
                     {INFORMATION, "\tInstruction register description passed", 3},
                     {INFORMATION, "\tISC pin behaviour description passed", 3},
                     {INFORMATION, "    BSDL ISC semantic checks passed", 2}});

    // They are not repeated, and bsdl_check() takes them as done.
    EXPECT_EQ(reading.check(bsdl_check_isc), 0);
    EXPECT_EQ(driver_lines(reading.messages()).size(), 13u);
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

    // After a failed bsdl_check() nothing runs, and there is nothing to count.
    Reading checked(bad);
    EXPECT_EQ(bsdl_check(checked), 100);
    EXPECT_EQ(checked.check(bsdl_check_isc), 0);
    expect_messages(checked.messages(), {{PROGRESS, "    BSDL ISC semantic checks", 2}});
}

TEST(IscCheck, CountsEachFailure)
{
    Family family =
        Family().with(ILLEGAL_EXIT, "NO").with(BLANK_USERCODE, "101").with(FIXED_PINS, "A");
    Reading reading(family.description());
    EXPECT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_isc), 300);
    Messages errors = errors_and_warnings(reading.messages());
    expect_messages(errors, {{ERROR, "port_id 'A' not found", 2},
                             {ERROR, "\tISC fixed pins description has errors", 1},
                             {ERROR, "blank_usercode has incorrect string length", 2},
                             {ERROR, "\tISC blank usercode description has errors", 1},
                             {ERROR, "illegal exit instruction 'NO' does not exist", 2},
                             {ERROR, "\tISC illegal exit description has errors", 1},
                             {ERROR, "    BSDL ISC semantic checks failed", 1}});
    EXPECT_EQ(errors.at(4).rule, "isc-illegal-exit-unknown");
    EXPECT_EQ(errors.at(4).line, family.line(ILLEGAL_EXIT));
}

TEST(IscCheck, WithoutFamily)
{
    Reading plain((Description()));
    EXPECT_EQ(bsdl_check(plain), 0);
    // All but the first two need it; 4 reaches every threshold.
    EXPECT_EQ(plain.check(bsdl_check_isc), 1000);
    ExpectedMessages expected = {{WARNING, "BSDL ISC Extension not defined", 3},
                                 {ERROR, "mandatory ISC register ISC_DEFAULT not available", 2},
                                 {ERROR, "mandatory ISC instruction ISC_ENABLE not available", 2},
                                 {ERROR, "mandatory ISC instruction ISC_DISABLE not available", 2},
                                 {ERROR, "mandatory ISC instruction ISC_PROGRAM not available", 2},
                                 {ERROR, "mandatory ISC instruction ISC_NOOP not available", 2},
                                 {ERROR, "\tISC Instruction registers has errors", 1}};
    const Messages errors = errors_and_warnings(plain.messages());
    expect_messages({errors.begin(), errors.begin() + 7}, expected);
    EXPECT_EQ(errors.size(), 7u + 9 + 1) << "the other checks of the family and the verdict";

    Reading strict(Description(), {.flags = STRICT});
    EXPECT_EQ(strict.check(bsdl_check_isc), 4);
    expect_messages(strict.messages(), {{PROGRESS, "    BSDL ISC semantic checks", 2},
                                        {ERROR, "BSDL ISC Extension not defined", 1}});
}

// What each check gives for: no handle, no data, no family.
TEST(IscCheck, EntryCodes)
{
    const std::pair<int32_t (*)(Bsdl *), int32_t> entries[] = {
        {bsdl_check_isc_pin_behaviour, 4},
        {bsdl_check_isc_status, 4},
        {bsdl_check_isc_blank_usercode, 4},
        {bsdl_check_isc_design_warning, 4},
        {bsdl_check_isc_fixed_system_pins, 4},
        {bsdl_check_isc_security, 4},
        {bsdl_check_isc_procedures, 4},
        {bsdl_check_isc_actions, 4},
        {bsdl_check_isc_illegal_exit, 4},
        {[](Bsdl *handle) { return bsdl_check_isc_flow(handle, 0); }, 4},
        {bsdl_check_isc_instr_reg, 5},
    };
    EXPECT_EQ(bsdl_check_isc(nullptr), 2);
    Reading plain((Description().without(REGISTER_ACCESS)));
    Reading released((Description()));
    freeBsdl(released);
    for (const auto &[check, no_family] : entries) {
        SCOPED_TRACE(no_family);
        EXPECT_EQ(check(nullptr), 2);
        EXPECT_EQ(check(released), 3);
        EXPECT_EQ(plain.check(check), no_family);
        expect_messages(plain.messages(), {});
    }
}

// --------------------------------------------------------------------- instructions, registers

TEST(IscCheck, MandatoryInstructionsAndRegisters)
{
    Family family = Family().with_flow("F");
    expect_rows(bsdl_check_isc_instr_reg,
                {{"as it should be", family},
                 {"ISC_ENABLE", Family(family).renamed("ISC_ENABLE", "A1"),
                  "mandatory ISC instruction ISC_ENABLE not available"},
                 {"the others",
                  Family(family)
                      .renamed("ISC_DISABLE", "A1")
                      .renamed("ISC_PROGRAM", "A2")
                      .renamed("ISC_NOOP", "A3"),
                  "mandatory ISC instruction ISC_DISABLE not available\n"
                  "mandatory ISC instruction ISC_PROGRAM not available\n"
                  "mandatory ISC instruction ISC_NOOP not available"},
                 {"ISC_DEFAULT", Family(family).renamed("ISC_DEFAULT", "ISC_OTHER"),
                  "mandatory ISC register ISC_DEFAULT not available\n"
                  "ISC instruction ISC_ENABLE has incorrect target register ISC_OTHER\n"
                  "ISC instruction ISC_DISABLE has incorrect target register ISC_OTHER\n"
                  "ISC instruction ISC_NOOP has incorrect target register ISC_OTHER"}});

    // Before the check of the registers has added those that the standard implies.
    Reading early(Family().description());
    EXPECT_EQ(bsdl_check_instr_reg(early), 0);
    EXPECT_EQ(early.check(bsdl_check_isc_instr_reg), 100);
    expect_messages(early.messages(),
                    {{ERROR, "mandatory ISC register DEVICE_ID not available", 2}});

    Reading private_one(Family().description().with(
        INSTRUCTION_PRIVATE, attribute("INSTRUCTION_PRIVATE", "ISC_ENABLE")));
    EXPECT_EQ(bsdl_check(private_one), 0);
    EXPECT_EQ(private_one.check(bsdl_check_isc_instr_reg), 100);
    expect_messages(private_one.messages(),
                    {{ERROR, "mandatory ISC instruction ISC_ENABLE not available", 2}});
}

TEST(IscCheck, TargetsOfInstructions)
{
    const struct {
        const char *instruction;
        const char *target; // NULL: a register without a name
        bool fits;
    } rows[] = {
        {"ISC_NOOP", nullptr, true},
        {"ISC_NOOP", "ISC_DEFAULT", true},
        {"ISC_NOOP", "ISC_PDATA", false},
        {"ISC_SETUP", "ISC_CONFIG", true},
        {"ISC_SETUP", "ISC_DEFAULT", false},
        {"ISC_READ", "ISC_RDATA", true},
        {"ISC_READ", "ISC_DATA", false},
        {"ISC_ERASE_DONE", "ISC_PDATA", true},
        {"ISC_ERASE", "ISC_PDATA", false},
        {"ISC_INCREMENT", "ISC_INC", true},
        {"ISC_PROGRAM_USERCODE", "DEVICE_ID", true},
        {"ISC_PROGRAM_USERCODE", "ISC_MINE", false},
        {"ISC_PROGRAM_SECURITY", "ISC_SECTOR", true},
        {"ISC_MINE", "ISC_INFO", true},
    };
    Reading reading(Family().description());
    EXPECT_EQ(bsdl_check(reading), 0);
    auto *mine = static_cast<InstructionEntry *>(
        g_slist_last(reading.handle()->data->instruction_register->opcode_table)->data);
    ASSERT_STREQ(mine->name, "MINE");
    for (const auto &[instruction, target, fits] : rows) {
        SCOPED_TRACE(instruction);
        RegisterEntry entry = {};
        entry.name = target ? model_name(reading, target) : nullptr;
        mine->name = model_name(reading, instruction);
        mine->data_register = &entry;
        EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), fits ? 0 : 100);
        ExpectedMessages messages;
        if (!fits)
            messages.push_back({ERROR,
                                std::string("ISC instruction ") + instruction +
                                    " has incorrect target register " + target,
                                2});
        expect_messages(reading.messages(), messages);
        // Without a register there is nothing to compare.
        mine->data_register = nullptr;
        EXPECT_EQ(reading.check(bsdl_check_isc_instr_reg), 0);
    }
}

// --------------------------------------------------------------------------- smaller statements

TEST(IscCheck, BlankUsercodeAndFixedPins)
{
    expect_rows(bsdl_check_isc_blank_usercode,
                {{"32 characters", Family()},
                 {"31 characters", Family().with(BLANK_USERCODE, "1111000011110000111100001111000"),
                  "blank_usercode has incorrect string length"}});
    // Those never pass.
    expect_rows(
        bsdl_check_isc_fixed_system_pins,
        {{"ports of the device", Family().with(FIXED_PINS, "A, Y"), "port_id 'A' not found"},
         {"a bit of a port", Family().with(FIXED_PINS, "D(1), A"), "port_id 'D[1]' not found"}});
}

Family security(const char *read, const char *program, const char *erase, const char *key)
{
    return Family().with_flow("F").with(
        SECURITY, std::string("ISC_DISABLE_READ ") + read + ", ISC_DISABLE_PROGRAM " + program +
                      ", ISC_DISABLE_ERASE " + erase + ", ISC_DISABLE_KEY " + key);
}

TEST(IscCheck, Security)
{
    const std::string REVERSE =
        "the numerical value of ISC_DISABLE_KEY msb must be greater or equal to "
        "the value of lsb";
    const char NOT_PDATA[] = "instruction ISC_PROGRAM_SECURITY does not target ISC_PDATA register";
    expect_rows(
        bsdl_check_isc_security,
        {{"bits of ISC_PDATA[16]", security("0", "1", "15", "15-0")},
         {"one bit set is enough", security("*", "*", "3", "*")},
         {"no bits", security("*", "*", "*", "*"),
          "ISC_PROGRAM_SECURITY is implemented, but no security bits are set"},
         {"key in reverse", security("0", "1", "2", "3-7"), REVERSE},
         {"beyond the register", security("16", "17", "18", "20-19"),
          "security bit disable_read (16) exceeds ISC_PDATA length 16\n"
          "security bit disable_program (17) exceeds ISC_PDATA length 16\n"
          "security bit disable_erase (18) exceeds ISC_PDATA length 16\n"
          "security bit disable_key lsb (19) exceeds ISC_PDATA length 16\n"
          "security bit disable_key msb (20) exceeds ISC_PDATA length 16"},
         // A number that long does not become a '*'.
         {"beyond any register", security("4294967294", "1", "2", "9-9"),
          "security bit disable_read (2147483647) exceeds ISC_PDATA length 16"},
         {"reverse and beyond", security("0", "1", "2", "3-16"),
          REVERSE + "\n" + "security bit disable_key lsb (16) exceeds ISC_PDATA length 16"},
         {"no instruction", security("*", "16", "*", "*").renamed("ISC_PROGRAM_SECURITY", "OTHER"),
          "no ISC_PROGRAM_SECURITY instruction in opcode list, while using ISC_Security\n"
          "security bit disable_program (16) exceeds ISC_PDATA length 16"},
         // The general rule would allow this register.
         {"instruction of ISC_DEFAULT",
          security("7", "8", "9", "15-10")
              .renamed(", ISC_PROGRAM_SECURITY)", ")")
              .renamed("ISC_NOOP)", "ISC_NOOP, ISC_PROGRAM_SECURITY)"),
          NOT_PDATA},
         // Without the register no position is too large.
         {"no ISC_PDATA", security("7", "8", "9", "99-90").renamed("ISC_PDATA", "ISC_RDATA"),
          NOT_PDATA}});
    // An instruction without a register, as before the check of the registers, is accepted.
    Reading reading(security("7", "8", "9", "9-8").description());
    EXPECT_EQ(reading.check(bsdl_check_isc_security), 0);
    expect_messages(reading.messages(), {});
}

TEST(IscCheck, Procedures)
{
    const std::string rest = ", PROC_ERROR_EXIT = (OFF), PROC_PROGRAM_DONE = (OFF)";
    const char all[] =
        "PROC_READ = (EN), PROC_VERIFY = (EN), PROC_PROGRAM = (EN), PROC_ERASE = (EN), "
        "PROC_BLANK_CHECK = (EN), PROC_ENABLE = (EN), proc_disable = (EN), PROC_PRELOAD = (EN), "
        "Proc_Error_Exit = (EN), PROC_PROGRAM_DONE = (EN), PROCEDURE_1 = (EN), PROC = (EN)";
    expect_rows(bsdl_check_isc_procedures,
                {{"every reserved name", Family().with(PROCEDURE, all)},
                 {"flows that are not there",
                  Family().with(PROCEDURE, "P = (EN, NO, EN(ARRAY), off)" + rest),
                  "flow NO does not exist in flow_description_list\n"
                  "flow EN(ARRAY) does not exist in flow_description_list"},
                 {"flow with data only",
                  Family()
                      .with(FLOW, "F(ARRAY)")
                      .with(PROCEDURE, "PROC_ERROR_EXIT = (F), PROC_PROGRAM_DONE = (F(array))"),
                  "flow F does not exist in flow_description_list"},
                 {"mandatory ones missing", Family().with(PROCEDURE, "PROC_READ = (NO)"),
                  "flow NO does not exist in flow_description_list\n"
                  "mandatory procedure PROC_ERROR_EXIT not found\n"
                  "mandatory procedure PROC_PROGRAM_DONE not found"}});
    for (unsigned flags : {0u, STRICT}) {
        Reading reading(Family().with(PROCEDURE, "Proc_Mine = (EN)" + rest).description(),
                        {.flags = flags});
        EXPECT_EQ(reading.check(bsdl_check_isc_procedures), flags ? 100 : 0);
        expect_messages(
            reading.messages(),
            {{flags ? ERROR : WARNING,
              "illegal proc_name: 'Proc_Mine', the first five characters cannot be \"PROC_\"", 2}});
    }
}

TEST(IscCheck, ActionsAndIllegalExits)
{
    expect_rows(bsdl_check_isc_actions,
                {{"as it should be", Family().with(ACTION, "A = (proc_enable, PROC_ERROR_EXIT)")},
                 {"procedures that are not there",
                  Family().with(ACTION, "A = (NO, PROC_ENABLE(ARRAY)), B(X1) = (PROC_ENABLE, NO)"),
                  "procedure name: \"NO\" does not exist in procedure_list\n"
                  "procedure spec: \"PROC_ENABLE(ARRAY)\" does not exist in procedure_list\n"
                  "procedure name: \"NO\" does not exist in procedure_list"}});
    expect_rows(
        bsdl_check_isc_illegal_exit,
        {{"instructions of 1149.1 and of the maker", Family().with(ILLEGAL_EXIT, "Bypass, mine")},
         // Other names that begin like them are no ISC instructions.
         {"named like one of IEEE 1532", Family()
                                             .renamed("MINE", "ISC_MINE")
                                             .renamed("(MINE)", "(ISC_MINE)")
                                             .with(ILLEGAL_EXIT, "ISC_MINE")},
         {"of IEEE 1532, unknown, twice",
          Family().with(ILLEGAL_EXIT, "isc_noop, NO, ISC_ERASE, NO"),
          "illegal exit instruction 'ISC_NOOP' is an ISC instruction\n"
          "illegal exit instruction 'NO' does not exist\n"
          "illegal exit instruction 'ISC_ERASE' does not exist\n"
          "illegal exit instruction 'NO' does not exist"}});
}

} // namespace
