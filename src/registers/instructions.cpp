// INSTRUCTION_LENGTH, _OPCODE, _CAPTURE, _DISABLE, _GUARD and _PRIVATE. Their check stands in
// instruction_check.cpp.

#include "frame/messages.h"
#include "registers/registers.h"
#include "scan/scanner.h"

// ------------------------------------------------------------------------------------- the grammar

void instruction_length_set(Bsdl *bsdl, int32_t length, Place place)
{
    InstructionRegister *instructions = bsdl->data->instruction_register;
    instructions->length = static_cast<uint32_t>(length);
    instructions->length_place = place;
}

void instruction_length_passed(Bsdl *bsdl)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    statement_passed(bsdl, "\tInstruction length statement passed");
}

InstructionEntry *instruction_entry(Bsdl *bsdl, const char *name, List patterns, Place place)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    return model_new(bsdl,
                     InstructionEntry{.name = name, .patterns = patterns.head, .place = place});
}

void instruction_opcode_passed(Bsdl *bsdl, List table, Place place)
{
    bsdl->data->instruction_register->opcode_place = place;
    bsdl->data->instruction_register->opcode_table = table.head;
    statement_passed(bsdl, "\tInstruction opcode statement passed");
}

void instruction_opcode_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping instruction_opcode due to errors");
}

void instruction_capture_passed(Bsdl *bsdl, List patterns, Place place)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    bsdl->data->instruction_register->capture_patterns = patterns.head;
    bsdl->data->instruction_register->capture_place = place;
    statement_passed(bsdl, "\tInstruction capture statement passed");
}

void instruction_capture_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping instruction_capture due to errors");
}

void instruction_disable_passed(Bsdl *bsdl)
{
    statement_passed(bsdl, "\tInstruction disable statement passed");
}

void instruction_disable_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping instruction_disable due to errors");
}

void instruction_disable_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo instruction disable statement");
}

void instruction_guard_passed(Bsdl *bsdl)
{
    statement_passed(bsdl, "\tInstruction guard statement passed");
}

void instruction_guard_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping instruction_guard due to errors");
}

void instruction_guard_absent(Bsdl *bsdl)
{
    // The text says that this version has no such statement, yet only the issue of 1990, which has
    // it, gets the text.
    if (bsdlIs1990(bsdl))
        statement_absent(bsdl, "\tNo instruction guard statement in this version");
}

void instruction_private_passed(Bsdl *bsdl, List names)
{
    bsdl->data->instruction_register->private_instructions = names.head;
    statement_passed(bsdl, "\tInstruction private statement passed");
}

void instruction_private_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping instruction_private due to errors");
}

void instruction_private_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo instruction private statement");
}

// ---------------------------------------------------------------------------------------- look-ups

static void index_instructions(Lookups *lookups, const GSList *opcode_table)
{
    uint32_t count;
    lookups->instruction_table =
        list_table_of<InstructionEntry>(&lookups->arena, opcode_table, &count);
    index_start(&lookups->instructions, &lookups->arena, count);
    for (uint32_t i = 0; lookups->instruction_table && i < count; i++)
        index_first(&lookups->instructions, name_fold(lookups->instruction_table[i]->name), i);
}

InstructionEntry *find_instruction(Bsdl *bsdl, const char *name)
{
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->instructions.built)
        index_instructions(lookups, bsdl->data->instruction_register->opcode_table);
    uint32_t at = index_find(&lookups->instructions, name_fold(name));
    return at == INDEX_NONE ? nullptr : lookups->instruction_table[at];
}

bool associate_instruction(Bsdl *bsdl, const char *name, RegisterEntry *data_register,
                           const InstructionCapture *listed)
{
    InstructionEntry *entry = find_instruction(bsdl, name);
    if (!entry)
        return false;
    // The caller decides whether this makes its check fail; most do not.
    if (entry->data_register)
        rule_error({"instruction-already-associated",
                    token_place(listed ? listed->place.begin : entry->place.begin)},
                   "instruction '%s' is already associated with register '%s'", entry->name,
                   shown(entry->data_register->name));
    else
        entry->data_register = data_register;
    return true;
}

Place register_choice_place(const InstructionEntry *entry)
{
    return token_place(entry->capture ? entry->capture->place.begin : entry->place.begin);
}

// ----------------------------------------------------------------------------------------- queries

static InstructionRegister *register_of(const Bsdl *bsdl)
{
    return bsdl && bsdl->data ? bsdl->data->instruction_register : nullptr;
}

static Iteration instructions_of(const Bsdl *bsdl)
{
    InstructionRegister *record = register_of(bsdl);
    return record ? Iteration{&record->instruction_walk, record->opcode_table,
                              &record->instruction_iterator}
                  : Iteration{};
}

static Iteration captures_of(const Bsdl *bsdl)
{
    InstructionRegister *record = register_of(bsdl);
    return record ? Iteration{&record->capture_walk, record->capture_patterns,
                              &record->capture_iterator}
                  : Iteration{};
}

static Iteration patterns_of(InstructionEntry *e)
{
    return e ? Iteration{&e->pattern_walk, e->patterns, &e->pattern_iterator} : Iteration{};
}

int32_t bsdlGetInstructionLength(Bsdl *h)
{
    const InstructionRegister *record = register_of(h);
    return record ? static_cast<int32_t>(record->length) : 0;
}

int32_t bsdlGetNbrOfInstructions(Bsdl *h) { return iteration_count(instructions_of(h)); }

InstructionEntry *bsdlGetFirstInstruction(Bsdl *h)
{
    return iteration_first<InstructionEntry>(instructions_of(h));
}

InstructionEntry *bsdlGetNextInstruction(Bsdl *h)
{
    return iteration_next<InstructionEntry>(instructions_of(h));
}

const char *bsdlGetInstructionName(InstructionEntry *e) { return e ? e->name : nullptr; }

int32_t bsdlGetInstructionType(InstructionEntry *e) { return e ? e->type : 0; }

int32_t bsdlIsInstrPreload(InstructionEntry *e) { return e ? e->flags & INSTRUCTION_PRELOADS : 0; }

int32_t bsdlGetNbrOfInstrPatterns(InstructionEntry *e) { return iteration_count(patterns_of(e)); }

const char *bsdlGetFirstInstrPattern(InstructionEntry *e)
{
    return iteration_first<const char>(patterns_of(e));
}

const char *bsdlGetNextInstrPattern(InstructionEntry *e)
{
    return iteration_next<const char>(patterns_of(e));
}

int32_t bsdlGetNbrOfInstructionCaptures(Bsdl *h) { return iteration_count(captures_of(h)); }

const char *bsdlGetFirstInstructionCapture(Bsdl *h)
{
    return iteration_first<const char>(captures_of(h));
}

const char *bsdlGetNextInstructionCapture(Bsdl *h)
{
    return iteration_next<const char>(captures_of(h));
}

const char *bsdlGetInstrRegisterName(InstructionEntry *e)
{
    return e && e->data_register ? e->data_register->name : nullptr;
}

int32_t bsdlGetInstrRegisterLength(InstructionEntry *e)
{
    return e && e->data_register ? e->data_register->length : 0;
}

const char *bsdlGetInstrCaptureValue(InstructionEntry *e)
{
    if (!e || !e->data_register)
        return nullptr;
    // A register may have as many captures as there are instructions, so the check has noted which
    // is this one's.
    if (e->capture_register == e->data_register)
        return e->capture ? e->capture->capture : nullptr;
    for (const InstructionCapture *record : items<InstructionCapture>(e->data_register->captures)) {
        if (same_name(record->name, e->name))
            return record->capture;
    }
    return nullptr;
}
