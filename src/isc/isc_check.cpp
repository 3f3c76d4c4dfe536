// The check of an IEEE 1532 description, and the rules of its smaller statements.

#include "frame/check.h"
#include "isc/isc.h"
#include "ports/ports.h"
#include "registers/registers.h"

#include <cstring>

int32_t isc_check_begin(const Call &call)
{
    if (call.code)
        return call.code;
    return call.bsdl->data->isc ? BSDL_RESULT_OK : BSDL_RESULT_NO_ISC;
}

// ---------------------------------------------------------------------------------- the driver

static int32_t check_flows(Bsdl *bsdl) { return bsdl_check_isc_flow(bsdl, 0); }

static int32_t check_flows_of_part(Bsdl *bsdl) { return bsdl_check_isc_flow(bsdl, 1); }

namespace
{

// Which of the two drivers runs a step.
enum IscDriver : uint8_t { OF_DESCRIPTION = 1, OF_PART = 2, OF_BOTH = OF_DESCRIPTION | OF_PART };

struct IscStep {
    IscDriver driver;
    CheckStep step;
};

// A part of a data file has no instructions. In a description the opcodes are checked a second
// time: their classes are what the next check goes by.
// clang-format off
constexpr IscStep ISC_STEPS[] = {
    {OF_DESCRIPTION, {
     .check = bsdl_check_instr_reg, .fails_from = 1,
     .passed = "\tInstruction register description passed",
     .failed = "\tInstruction register description has errors"}},
    {OF_DESCRIPTION, {
     .check = bsdl_check_isc_instr_reg, .fails_from = 1,
     .passed = "\tInstruction register description passed", /* as is */
     .failed = "\tISC Instruction registers has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_pin_behaviour, .fails_from = 1,
     .passed = "\tISC pin behaviour description passed",
     .failed = "\tISC pin behaviour description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_fixed_system_pins, .fails_from = 2,
     .passed = "\tISC fixed pins description passed",
     .failed = "\tISC fixed pins description has errors"}},
    {OF_PART, {
     .check = bsdl_check_isc_status, .fails_from = 1,
     .passed = "\tISC status description passed",
     .failed = "\tISC status description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_blank_usercode, .fails_from = 1,
     .passed = "\tISC blank usercode description passed",
     .failed = "\tISC blank usercode description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_security, .fails_from = 2,
     .passed = "\tISC security description passed",
     .failed = "\tISC security description has errors"}},
    {OF_DESCRIPTION, {
     .check = check_flows, .fails_from = 1,
     .passed = "\tISC flow description passed",
     .failed = "\tISC flow description has errors"}},
    {OF_PART, {
     .check = check_flows_of_part, .fails_from = 1,
     .passed = "\tISC flow description passed",
     .failed = "\tISC flow description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_procedures, .fails_from = 1,
     .passed = "\tISC procedure description passed",
     .failed = "\tISC procedure description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_actions, .fails_from = 1,
     .passed = "\tISC action description passed",
     .failed = "\tISC action description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_illegal_exit, .fails_from = 2,
     .passed = "\tISC illegal exit description passed",
     .failed = "\tISC illegal exit description has errors"}},
    {OF_BOTH, {
     .check = bsdl_check_isc_design_warning, .fails_from = 2,
     .passed = "\tISC design warning passed",
     .failed = "\tISC design warning has errors"}},
};
// clang-format on

} // namespace

// How many failed.
static int32_t run_steps(Bsdl *bsdl, IscDriver driver)
{
    int32_t failures = 0;
    for (const IscStep &row : ISC_STEPS)
        if (row.driver & driver)
            failures += check_step(bsdl, row.step);
    if (!checks_end(bsdl) && !failures)
        failures = 1;
    return failures;
}

bool isc_check_part(Bsdl *bsdl) { return run_steps(bsdl, OF_PART) == 0; }

int32_t bsdl_check_isc(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    BsdlData *data = h->data;
    bsdl_msg(BSDL_LEVEL_PROGRESS, 2, "    BSDL ISC semantic checks");
    if (!data->isc) {
        rule_message(h->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, h->strict ? 1 : 3,
                     {"isc-missing", place_or(data->isc_use_place, entity_place())},
                     "BSDL ISC Extension not defined");
        if (h->strict)
            return BSDL_RESULT_NO_ISC;
    }

    int32_t result = 0;
    if (!general_checks_passed(h, &result))
        return result;
    // Each failure counts, so the result tells how many there were.
    if (int32_t failures = run_steps(h, OF_DESCRIPTION)) {
        rule_message(BSDL_LEVEL_ERROR, 1, {.id = nullptr, .sums_up = true},
                     "    BSDL ISC semantic checks failed");
        return failures * BSDL_RESULT_FAILED;
    }
    bsdl_msg(BSDL_LEVEL_INFO, 2, "    BSDL ISC semantic checks passed");
    data->check_passed |= CHECK_PASSED_ISC;
    data->check_state |= CHECK_STATE_ISC_PASSED;
    return BSDL_RESULT_OK;
}

// ------------------------------------------------------------ statements that need only be there

int32_t bsdl_check_isc_pin_behaviour(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    return h->data->isc->pin_behavior ? BSDL_RESULT_OK : BSDL_RESULT_MISSING;
}

int32_t bsdl_check_isc_status(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    return h->data->isc->status ? BSDL_RESULT_OK : BSDL_RESULT_MISSING;
}

int32_t bsdl_check_isc_design_warning(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    return h->data->isc->design_warning ? BSDL_RESULT_OK : BSDL_RESULT_ABSENT;
}

// ---------------------------------------------------------------------------- ISC_Blank_Usercode

int32_t bsdl_check_isc_blank_usercode(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    const IscData *isc = h->data->isc;
    if (!isc->blank_usercode)
        return BSDL_RESULT_MISSING;
    if (std::strlen(isc->blank_usercode) != 32)
        return rule_error({"isc-blank-usercode-length",
                           token_place(isc->blank_usercode_place.begin, VALUE_TOKEN)},
                          "blank_usercode has incorrect string length");
    return BSDL_RESULT_OK;
}

// ------------------------------------------------------------------------- ISC_Fixed_System_Pins

// No description with this statement passes: its first pin counts as not found, whatever the ports
// are. Hosts are used to that verdict.
int32_t bsdl_check_isc_fixed_system_pins(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    const IscData *isc = h->data->isc;
    if (!isc->fixed_pins)
        return BSDL_RESULT_ABSENT;
    const auto *pin = static_cast<const PortId *>(isc->fixed_pins->data);
    const GSList *ports = h->data->logical_ports;
    if (!ports || !ports->data || !pin)
        return BSDL_RESULT_FAILED;
    Rule rule = {"isc-fixed-pin-unknown",
                 port_place(pin, isc->fixed_pins_place.begin, VALUE_TOKEN)};
    if (pin->subscripted)
        return rule_error(rule, "port_id '%s[%i]' not found", pin->name, pin->subscript);
    return rule_error(rule, "port_id '%s' not found", pin->name);
}

// ------------------------------------------------------------------------------------ ISC_Security

static int32_t check_security_instruction(Bsdl *bsdl, Place place)
{
    const InstructionEntry *instruction =
        find_instruction(bsdl, model_name(bsdl, "ISC_PROGRAM_SECURITY"));
    if (!instruction)
        return rule_error({"isc-security-instruction-missing", place},
                          "no ISC_PROGRAM_SECURITY instruction in opcode list, while using "
                          "ISC_Security");
    const RegisterEntry *target = instruction->data_register;
    if (target && target->name && !same_text(target->name, "ISC_PDATA"))
        return rule_error({"isc-security-instruction-target", register_choice_place(instruction)},
                          "instruction ISC_PROGRAM_SECURITY does not target ISC_PDATA register");
    return 0;
}

// Of several registers of the name the last counts; -1 without one.
static int32_t pdata_length(Bsdl *bsdl)
{
    const char *name = model_name(bsdl, "ISC_PDATA");
    int32_t length = -1;
    for (const RegisterEntry *entry : items<RegisterEntry>(bsdl->data->register_access)) {
        if (entry && same_name(entry->name, name))
            length = entry->length;
    }
    return length;
}

// Compared without sign: where the register is missing no position exceeds it.
static bool exceeds(int32_t position, int32_t length)
{
    return position != ISC_SECURITY_ANY &&
           static_cast<uint32_t>(position) > static_cast<uint32_t>(length) - 1;
}

static int32_t check_security_positions(const IscSecurity *security, int32_t length, Place place)
{
    static constexpr struct {
        const char *rule;
        const char *bit;
        int32_t IscSecurity::*position;
        uint32_t token; // of the statement
    } BITS[] = {
        {"isc-security-read-range", "disable_read", &IscSecurity::disable_read, 7},
        {"isc-security-program-range", "disable_program", &IscSecurity::disable_program, 10},
        {"isc-security-erase-range", "disable_erase", &IscSecurity::disable_erase, 13},
        {"isc-security-key-lsb-range", "disable_key lsb", &IscSecurity::disable_key_lsb, 18},
        {"isc-security-key-msb-range", "disable_key msb", &IscSecurity::disable_key_msb, 16},
    };
    int32_t result = 0;
    for (const auto &bit : BITS)
        if (int32_t position = security->*bit.position; exceeds(position, length))
            result |= rule_error({bit.rule, token_place(place.begin, bit.token)},
                                 "security bit %s (%i) exceeds ISC_PDATA length %i", bit.bit,
                                 position, length);
    return result;
}

int32_t bsdl_check_isc_security(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    const IscData *isc = h->data->isc;
    const IscSecurity *security = isc->security;
    if (!security)
        return BSDL_RESULT_ABSENT;

    int32_t result = 0;
    // A part of a PPC/PRG file has no instructions.
    if (!bsdlIsPrg(h))
        result |= check_security_instruction(h, isc->security_place);
    if (security->disable_read == ISC_SECURITY_ANY &&
        security->disable_program == ISC_SECURITY_ANY &&
        security->disable_erase == ISC_SECURITY_ANY &&
        security->disable_key_lsb == ISC_SECURITY_ANY &&
        security->disable_key_msb == ISC_SECURITY_ANY)
        result |= rule_error({"isc-security-no-bits", isc->security_place},
                             "ISC_PROGRAM_SECURITY is implemented, but no security bits are set");
    if (security->disable_key_msb < security->disable_key_lsb)
        result |=
            rule_error({"isc-security-key-order", tokens_place(isc->security_place.begin, 16, 18)},
                       "the numerical value of ISC_DISABLE_KEY msb must be greater or equal "
                       "to the value of lsb");
    result |= check_security_positions(security, pdata_length(h), isc->security_place);
    return check_end(h, result);
}

// -------------------------------------------------------------------------------- ISC_Illegal_Exit

int32_t bsdl_check_isc_illegal_exit(Bsdl *h)
{
    const Call call(h);
    if (int32_t code = isc_check_begin(call))
        return code;
    const IscData *isc = h->data->isc;
    if (!isc->illegal_exits)
        return BSDL_RESULT_ABSENT;
    if (!h->data->instruction_register || !h->data->instruction_register->opcode_table)
        return BSDL_RESULT_MISSING;

    int32_t result = 0;
    TokenCursor token = {isc->illegal_exits_place.begin, VALUE_TOKEN};
    for (const char *name : items<char>(isc->illegal_exits)) {
        const Place place = cursor_place(&token);
        token.behind += 2;
        if (!find_instruction(h, name))
            result |= rule_error({"isc-illegal-exit-unknown", place},
                                 "illegal exit instruction '%s' does not exist", name);
        else if (isc_is_instruction(name))
            result |= rule_error({"isc-illegal-exit-isc", place},
                                 "illegal exit instruction '%s' is an ISC instruction", name);
    }
    return check_end(h, result);
}
