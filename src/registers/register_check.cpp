// The rules of the data registers: REGISTER_ACCESS, the registers that the standard implies, and
// the register of each instruction.

#include "base/index.h"
#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/lookup.h"
#include "frame/messages.h"
#include "registers/registers.h"

#include <cstring>

namespace
{

constexpr int32_t BYPASS_LENGTH = 1;
constexpr int32_t IDENTIFICATION_LENGTH = 32;

struct RegisterCheck {
    Bsdl *bsdl;
    List registers;
    int32_t boundary_length;
    bool is_1990;
    bool found_bypass;
    bool found_boundary;
    bool found_id;
    int32_t result;

    // What the registers capture: records by register and instruction, and from each record the
    // next one of the same register and name.
    Scratch scratch;
    Index captures;
    InstructionCapture **records;
    uint32_t *next_same;
};

} // namespace

// ------------------------------------------------------------------------------ implied registers

static void normalize_registers(RegisterCheck *check)
{
    check->registers.head = check->bsdl->data->register_access;
    for (GSList *link = check->registers.head; link; link = link->next) {
        auto *entry = static_cast<RegisterEntry *>(link->data);
        check->registers.tail = link;
        if (same_text(entry->name, "BYPASS")) {
            entry->kind = REGISTER_KIND_BYPASS;
            check->found_bypass = true;
        } else if (same_text(entry->name, "BOUNDARY")) {
            entry->kind = REGISTER_KIND_BOUNDARY;
            check->found_boundary = true;
        } else if (same_text(entry->name, "DEVICE_ID") ||
                   (check->is_1990 && same_text(entry->name, "IDCODE"))) {
            entry->kind = REGISTER_KIND_IDENTIFICATION;
            check->found_id = true;
        }
    }
}

static void add_register(RegisterCheck *check, const char *name, const char *instruction,
                         int32_t length, int32_t kind)
{
    Bsdl *bsdl = check->bsdl;
    auto *entry = model_new(
        bsdl, RegisterEntry{.kind = kind, .name = model_name(bsdl, name), .length = length});
    if (!associate_instruction(bsdl, model_name(bsdl, instruction), entry))
        check->result |= rule_error(
            {"register-instruction-missing", bsdl->data->instruction_register->opcode_place},
            "instruction '%s' not found", instruction);
    check->registers = model_append(bsdl, check->registers, entry);
    rule_message(BSDL_LEVEL_INFO, 4,
                 {"register-added", bsdl->data->instruction_register->opcode_place},
                 "\tRegister '%s' added", name);
}

static bool has_instruction(RegisterCheck *check, const char *name)
{
    return find_instruction(check->bsdl, model_name(check->bsdl, name)) != nullptr;
}

static void add_implied_registers(RegisterCheck *check)
{
    if (!check->found_bypass)
        add_register(check, "BYPASS", "BYPASS", BYPASS_LENGTH, REGISTER_KIND_BYPASS);
    if (!check->found_boundary) {
        add_register(check, "BOUNDARY", "SAMPLE", check->boundary_length, REGISTER_KIND_BOUNDARY);
        // A register of its own, since an added register is made for one instruction.
        if (has_instruction(check, "PRELOAD"))
            add_register(check, "BOUNDARY", "PRELOAD", check->boundary_length,
                         REGISTER_KIND_BOUNDARY);
    }
    if (!check->found_id && bsdlIs1532(check->bsdl)) {
        add_register(check, "DEVICE_ID", "USERCODE", IDENTIFICATION_LENGTH,
                     REGISTER_KIND_DEVICE_ID);
        check->found_id = true;
    }
    if (!check->found_id && has_instruction(check, "IDCODE"))
        add_register(check, check->is_1990 ? "IDCODE" : "DEVICE_ID", "IDCODE",
                     IDENTIFICATION_LENGTH, REGISTER_KIND_IDENTIFICATION);
    check->bsdl->data->register_access = check->registers.head;
}

// --------------------------------------------------------------------------------------- captures

static uint64_t capture_key(const RegisterEntry *entry, const char *name)
{
    return uint64_t{entry->position} << 32 | name_fold(name);
}

static uint32_t count_captures(const RegisterCheck *check)
{
    uint32_t count = 0;
    for (const RegisterEntry *entry : items<RegisterEntry>(check->registers.head))
        count += list_length(entry->captures);
    return count;
}

static bool index_captures(RegisterCheck *check)
{
    uint32_t count = count_captures(check);
    check->records = arena_array<InstructionCapture *>(&check->scratch, count + size_t{1});
    check->next_same = arena_array<uint32_t>(&check->scratch, count + size_t{1});
    auto *latest = arena_array<uint32_t>(&check->scratch, count + size_t{1});
    index_start(&check->captures, &check->scratch, count);
    if (!check->records || !check->next_same || !latest)
        return false;
    uint32_t records = 0;
    uint32_t position = 0;
    for (RegisterEntry *entry : items<RegisterEntry>(check->registers.head)) {
        entry->position = position++;
        for (InstructionCapture *record : items<InstructionCapture>(entry->captures)) {
            check->records[records] = record;
            check->next_same[records] = INDEX_NONE;
            latest[records] = records;
            uint32_t first =
                index_first(&check->captures, capture_key(entry, record->name), records);
            if (first != INDEX_NONE) {
                check->next_same[latest[first]] = records;
                latest[first] = records;
            }
            records++;
        }
    }
    return true;
}

static uint32_t first_capture(const RegisterCheck *check, const InstructionEntry *instruction)
{
    return index_find(&check->captures, capture_key(instruction->data_register, instruction->name));
}

// ------------------------------------------------------------------------------------- the linking

static void link_instructions(RegisterCheck *check)
{
    for (RegisterEntry *entry : items<RegisterEntry>(check->registers.head)) {
        for (const InstructionCapture *record : items<InstructionCapture>(entry->captures)) {
            if (!associate_instruction(check->bsdl, record->name, entry, record))
                check->result |=
                    rule_error({"register-instruction-unknown", token_place(record->place.begin)},
                               "instruction '%s' in register access table is not "
                               "found in instruction opcode table",
                               record->name);
        }
    }
}

// The register that the standard implies for a mandatory instruction.
struct ImpliedRegister {
    const char *instruction;
    const char *name;
    const char *missing; // what is said without it; NULL: the text names the instruction
};

static const ImpliedRegister *implied_register(const RegisterCheck *check, const char *instruction)
{
    static const ImpliedRegister registers[] = {
        {"BYPASS", "BYPASS", "BYPASS register not found"},
        {"CLAMP", "BYPASS", "BYPASS register not found"},
        {"HIGHZ", "BYPASS", "BYPASS register not found"},
        {"SAMPLE", "BOUNDARY", "BOUNDARY register not found"},
        {"EXTEST", "BOUNDARY", "BOUNDARY register not found"},
        {"INTEST", "BOUNDARY", "BOUNDARY register not found"},
        {"PRELOAD", "BOUNDARY", "BOUNDARY register not found"},
        {"RUNBIST", "BOUNDARY", " register not found"}, /* as is */
    };
    static const ImpliedRegister device_id = {nullptr, "DEVICE_ID", nullptr};
    static const ImpliedRegister idcode = {nullptr, "IDCODE", nullptr};

    if (same_text(instruction, "USERCODE") || same_text(instruction, "IDCODE"))
        return check->is_1990 ? &idcode : &device_id;
    // PRELOAD is mandatory by the conformance statement, but has its register by the package.
    if (same_text(instruction, "PRELOAD") && !bsdlIs2001(check->bsdl))
        return nullptr;
    for (const ImpliedRegister &implied : registers)
        if (same_text(instruction, implied.instruction))
            return &implied;
    return nullptr;
}

static void take_implied_register(RegisterCheck *check, InstructionEntry *instruction)
{
    const ImpliedRegister *implied = implied_register(check, instruction->name);
    if (!implied) {
        check->result |= rule_error(
            {"mandatory-instruction-without-register", token_place(instruction->place.begin)},
            "MANDATORY instruction %s has no associated register", instruction->name);
        return;
    }
    instruction->data_register = find_register(check->bsdl, model_name(check->bsdl, implied->name));
    if (instruction->data_register)
        return;
    if (implied->missing)
        check->result |=
            rule_error({"implied-register-missing", token_place(instruction->place.begin)}, "%s",
                       implied->missing);
    else
        check->result |= rule_error(
            {"identification-register-missing", token_place(instruction->place.begin)},
            "%s register not found while %s instruction is used", implied->name, instruction->name);
}

static void check_mandatory(RegisterCheck *check, const InstructionEntry *instruction)
{
    const RegisterEntry *given = instruction->data_register;
    if (same_text(instruction->name, "BYPASS") && !same_text(given->name, "BYPASS"))
        check->result |= rule_error({"bypass-register", register_choice_place(instruction)},
                                    "MANDATORY instruction '%s' uses invalid register %s",
                                    instruction->name, given->name);
    // The standard says what a mandatory instruction captures.
    for (uint32_t at = first_capture(check, instruction); at != INDEX_NONE;
         at = check->next_same[at]) {
        const InstructionCapture *record = check->records[at];
        if (record->capture)
            check->result |= rule_error(
                {"mandatory-instruction-captures", token_place(record->place.begin, 2)},
                "MANDATORY instruction '%s' captures '%s'", instruction->name, record->capture);
    }
}

static void check_instructions(RegisterCheck *check)
{
    const GSList *instructions = check->bsdl->data->instruction_register->opcode_table;
    for (InstructionEntry *instruction : items<InstructionEntry>(instructions)) {
        const bool mandatory = instruction->type == INSTRUCTION_TYPE_MANDATORY;
        if (instruction->type == INSTRUCTION_TYPE_PUBLIC && !instruction->data_register)
            check->result |= rule_error(
                {"public-instruction-without-register", token_place(instruction->place.begin)},
                "public instruction '%s' has no associated register", instruction->name);
        if (mandatory && !instruction->data_register)
            take_implied_register(check, instruction);
        if (!instruction->data_register)
            continue;
        const uint32_t first = first_capture(check, instruction);
        instruction->capture_register = instruction->data_register;
        instruction->capture = first == INDEX_NONE ? nullptr : check->records[first];
        if (mandatory)
            check_mandatory(check, instruction);
    }
}

// ----------------------------------------------------------------------------------------- lengths

static void check_length(RegisterCheck *check, RegisterEntry *entry)
{
    // What the file says of the length of a standard register does not matter.
    switch (entry->kind) {
    case REGISTER_KIND_BYPASS:
        entry->length = BYPASS_LENGTH;
        return;
    case REGISTER_KIND_BOUNDARY:
        entry->length = check->boundary_length;
        return;
    case REGISTER_KIND_IDENTIFICATION:
        entry->length = IDENTIFICATION_LENGTH;
        return;
    default:
        break;
    }
    if (entry->length == -1)
        check->result |= rule_error({"register-length-missing", token_place(entry->place.begin)},
                                    "public register '%s' length not specified", entry->name);
    else if (entry->length == 0)
        check->result |= rule_error({"register-length-zero", token_place(entry->place.begin, 2)},
                                    "public register '%s' length cannot be 0", entry->name);
}

static void check_lengths(RegisterCheck *check)
{
    for (RegisterEntry *entry : items<RegisterEntry>(check->registers.head)) {
        check_length(check, entry);
        for (const InstructionCapture *record : items<InstructionCapture>(entry->captures)) {
            if (!record->capture)
                continue;
            // No capture has the length of a register whose length is not known.
            size_t length = std::strlen(record->capture);
            if (length != static_cast<uint32_t>(entry->length))
                check->result |= rule_error(
                    {"register-capture-length", token_place(record->place.begin, 2)},
                    "instruction '%s' associated with register '%s' "
                    "captures %i bits, should be %i",
                    record->name, entry->name, static_cast<int32_t>(length), entry->length);
        }
    }
}

// --------------------------------------------------------------------------------- shared opcodes

static void check_merged(RegisterCheck *check, InstructionEntry *instruction)
{
    bool length_differs = false;
    int32_t length = bsdlGetInstrRegisterLength(instruction);
    for (InstructionEntry *merged : items<InstructionEntry>(instruction->merged_instructions)) {
        if (!merged->data_register) {
            rule_error({"merged-instruction-without-register", token_place(merged->place.begin)},
                       "'%s' has no associated register, this instruction cannot share opcodes "
                       "with '%s'\n",
                       merged->name, instruction->name);
        } else if (merged->data_register->length != length) {
            length_differs = true;
            check->result |=
                rule_error({"merged-instruction-length", token_place(merged->place.begin)},
                           "'%s' register lenght [%i] is different from %s[%i], "
                           "these instructions cannot share opcodes\n", /* as is */
                           merged->name, merged->data_register->length, instruction->name, length);
        }
    }
    if (instruction->merged_instructions && !length_differs)
        rule_warning({"merged-instruction-unchecked", token_place(instruction->place.begin)},
                     "Cannot completely check merged instruction %s", instruction->name);
}

static void default_bypass_captures(const RegisterCheck *check)
{
    for (const RegisterEntry *entry : items<RegisterEntry>(check->registers.head)) {
        if (entry->kind != REGISTER_KIND_BYPASS)
            continue;
        for (InstructionCapture *record : items<InstructionCapture>(entry->captures)) {
            if (!record->capture)
                record->capture = "0";
        }
    }
}

static void run_rules(RegisterCheck *check)
{
    normalize_registers(check);
    // The registers that are added take their instructions before those of the file do.
    add_implied_registers(check);
    lookups_drop(check->bsdl);
    link_instructions(check);
    if (!index_captures(check))
        return;
    check_instructions(check);
    check_lengths(check);
    const GSList *instructions = check->bsdl->data->instruction_register->opcode_table;
    for (InstructionEntry *instruction : items<InstructionEntry>(instructions))
        check_merged(check, instruction);
    default_bypass_captures(check);
}

int32_t bsdl_check_reg_access(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    const BsdlData *data = h->data;
    if (!data->instruction_register || !data->boundary_register ||
        !data->instruction_register->opcode_table)
        return BSDL_RESULT_MISSING;

    RegisterCheck check = {.bsdl = h};
    check.boundary_length = static_cast<int32_t>(data->boundary_register->boundary_length);
    check.is_1990 = bsdlIs1990(h) != 0;
    if (check.scratch.failed)
        return BSDL_RESULT_FAILED;
    run_rules(&check);
    return check_end(h, check.result, &check.scratch);
}
