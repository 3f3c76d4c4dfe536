// Which registers and instructions an IEEE 1532 device must have, and which register each of its
// instructions may select.

#include "frame/check.h"
#include "isc/isc.h"
#include "registers/registers.h"

namespace
{

struct IscInstruction {
    const char *name;
    const char *registers[3]; // that it may select
};

// The first four are mandatory.
constexpr IscInstruction INSTRUCTIONS[] = {
    {"ISC_ENABLE", {"ISC_DEFAULT", "ISC_CONFIG"}},
    {"ISC_DISABLE", {"ISC_DEFAULT", "ISC_CONFIG"}},
    {"ISC_PROGRAM", {"ISC_DEFAULT", "ISC_PDATA"}},
    {"ISC_NOOP", {"ISC_DEFAULT"}},
    {"ISC_PROGRAM_DONE", {"ISC_DEFAULT", "ISC_PDATA"}},
    {"ISC_ERASE_DONE", {"ISC_DEFAULT", "ISC_PDATA"}},
    {"ISC_PROGRAM_USERCODE", {"DEVICE_ID"}},
    {"ISC_SETUP", {"ISC_CONFIG"}},
    {"ISC_READ", {"ISC_PDATA", "ISC_RDATA"}},
    {"ISC_ERASE", {"ISC_DEFAULT", "ISC_SECTOR"}},
    {"ISC_DISCHARGE", {"ISC_DEFAULT", "ISC_SECTOR"}},
    {"ISC_PROGRAM_SECURITY", {"ISC_DEFAULT", "ISC_PDATA", "ISC_SECTOR"}},
    {"ISC_READ_INFO", {"ISC_INFO"}},
    {"ISC_DATA_SHIFT", {"ISC_DATA"}},
    {"ISC_ADDRESS_SHIFT", {"ISC_ADDRESS", "ISC_INC"}},
    {"ISC_INCREMENT", {"ISC_DEFAULT", "ISC_INC"}},
};
constexpr uint32_t INSTRUCTION_COUNT = sizeof INSTRUCTIONS / sizeof *INSTRUCTIONS;
constexpr uint32_t MANDATORY_INSTRUCTIONS = 4;

} // namespace

// Other registers may have any name, also one that begins with ISC_.
static int32_t check_registers(Bsdl *bsdl)
{
    const char *default_name = model_name(bsdl, "ISC_DEFAULT");
    const char *id_name = model_name(bsdl, "DEVICE_ID");
    bool has_default = false;
    bool has_id = false;
    for (const RegisterEntry *entry : items<RegisterEntry>(bsdl->data->register_access)) {
        if (!entry || !entry->name)
            break;
        has_default |= same_name(entry->name, default_name);
        has_id |= same_name(entry->name, id_name);
    }
    int32_t result = 0;
    if (!has_default)
        result |= rule_error({"isc-register-default-missing", bsdl->data->isc_use_place},
                             "mandatory ISC register ISC_DEFAULT not available");
    if (!has_id)
        result |= rule_error({"isc-register-id-missing", bsdl->data->isc_use_place},
                             "mandatory ISC register DEVICE_ID not available");
    return result;
}

static bool may_select(const IscInstruction *instruction, const char *register_name)
{
    for (const char *allowed : instruction->registers)
        if (allowed && same_text(register_name, allowed))
            return true;
    return false;
}

static uint32_t find_row(const char *name)
{
    if (!text_starts_with(name, "ISC_")) // as most names of a description do not
        return INSTRUCTION_COUNT;
    uint32_t row = 0;
    while (row < INSTRUCTION_COUNT && !same_text(name, INSTRUCTIONS[row].name))
        row++;
    return row;
}

bool isc_is_instruction(const char *name) { return find_row(name) != INSTRUCTION_COUNT; }

// Only public instructions are seen, so a private ISC_ENABLE counts as missing.
static int32_t check_instructions(const Bsdl *bsdl)
{
    bool seen[INSTRUCTION_COUNT] = {};
    int32_t result = 0;
    const GSList *instructions = bsdl->data->instruction_register->opcode_table;
    for (const InstructionEntry *entry : items<InstructionEntry>(instructions)) {
        if (entry->type != INSTRUCTION_TYPE_PUBLIC)
            continue;
        uint32_t row = find_row(entry->name);
        if (row == INSTRUCTION_COUNT)
            continue;
        seen[row] = true;
        const RegisterEntry *target = entry->data_register;
        if (target && target->name && !may_select(&INSTRUCTIONS[row], target->name))
            result |= rule_error({"isc-instruction-target", register_choice_place(entry)},
                                 "ISC instruction %s has incorrect target register %s",
                                 shown(entry->name), target->name);
    }
    for (uint32_t row = 0; row < MANDATORY_INSTRUCTIONS; row++)
        if (!seen[row])
            result |= rule_error(
                {"isc-instruction-missing", bsdl->data->instruction_register->opcode_place},
                "mandatory ISC instruction %s not available", INSTRUCTIONS[row].name);
    return result;
}

// Needs the classes that bsdl_check_instr_reg() gives to the instructions. The one check of the
// family that does not ask whether there are statements of IEEE 1532.
int32_t bsdl_check_isc_instr_reg(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    if (!h->data->register_access || !h->data->instruction_register ||
        !h->data->instruction_register->opcode_table)
        return BSDL_RESULT_MISSING;
    int32_t result = check_registers(h);
    result |= check_instructions(h);
    return check_end(h, result);
}
