// The rules of the instruction register.

#include "frame/check.h"
#include "frame/lookup.h"
#include "frame/messages.h"
#include "isc/isc.h"
#include "registers/opcode_table.h"
#include "registers/registers.h"

#include <cstring>

namespace
{

// An opcode that the check adds is as long as the file says, but no longer than any file could
// write it.
constexpr uint32_t MOST_ADDED_BITS = 1048576;

struct InstructionCheck {
    Bsdl *bsdl;
    InstructionRegister *instructions;
    Scratch scratch;
    OpcodeTable table;
    Index privates;
    bool is_2001;          // by the conformance statement, not by the package in use
    bool all_ones_allowed; // for other instructions than BYPASS
    bool found_bypass;
    bool found_extest;
    bool found_sample;
    bool found_preload;
    int32_t result;
};

} // namespace

// ------------------------------------------------------------------------------ instruction types

static bool is_mandatory_instruction(const char *name, bool is_2001)
{
    static const char *const names[] = {"BYPASS", "EXTEST", "SAMPLE", "CLAMP",
                                        "HIGHZ",  "IDCODE", "INTEST", "USERCODE"};
    for (const char *mandatory : names)
        if (same_text(name, mandatory))
            return true;
    return is_2001 && std::strcmp(name, "PRELOAD") == 0;
}

static void index_privates(InstructionCheck *check)
{
    const GSList *names = check->instructions->private_instructions;
    index_start(&check->privates, &check->scratch, list_length(names));
    for (const char *name : items<char>(names)) {
        if (!name)
            break;
        index_first(&check->privates, name_fold(name), 0);
    }
}

// The instruction that loads the boundary register is SAMPLE until the issue of 2001 made PRELOAD
// an instruction of its own.
static void classify(InstructionCheck *check, InstructionEntry *entry)
{
    if (is_mandatory_instruction(entry->name, check->is_2001))
        entry->type = INSTRUCTION_TYPE_MANDATORY;
    else if (index_find(&check->privates, name_fold(entry->name)) != INDEX_NONE)
        entry->type = INSTRUCTION_TYPE_PRIVATE;
    else
        entry->type = INSTRUCTION_TYPE_PUBLIC;

    bool is_sample = same_text(entry->name, "SAMPLE");
    bool is_preload = same_text(entry->name, "PRELOAD");
    check->found_sample |= is_sample;
    check->found_preload |= is_preload;
    if (check->is_2001 ? is_preload : is_sample)
        entry->flags |= INSTRUCTION_PRELOADS;
}

// ----------------------------------------------------------------------------- rules of an opcode

// A row is: name ( opcode , opcode ... )
static Place opcode_place(const OpcodeTable *table, uint32_t at)
{
    const uint32_t entry = table->opcodes[at].entry;
    return token_place(table->entries[entry]->place.begin,
                       2 + 2 * (at - table->first_opcode[entry]));
}

static void check_reserved(InstructionCheck *check, const InstructionEntry *entry, uint32_t at)
{
    const Opcode *opcode = &check->table.opcodes[at];
    if (!opcode->has_zero) { // X counts as 1 here, and as 0 below
        if (same_text(entry->name, "BYPASS"))
            check->found_bypass = true;
        else if (!check->all_ones_allowed)
            check->result |= rule_error({"opcode-all-ones", opcode_place(&check->table, at)},
                                        "opcode all 1's must be BYPASS, opcode: '%s' cannot use "
                                        "opcode %s",
                                        entry->name, opcode->text);
    }
    bool is_extest = same_text(entry->name, "EXTEST");
    if (check->is_2001) {
        // The issue of 2001 no longer fixes the opcode of EXTEST.
        check->found_extest |= is_extest;
    } else if (!opcode->has_one) {
        if (is_extest)
            check->found_extest = true;
        else
            check->result |= rule_error({"opcode-all-zeros", opcode_place(&check->table, at)},
                                        "opcode all 0's must be EXTEST, opcode: '%s' cannot use "
                                        "opcode %s",
                                        entry->name, opcode->text);
    }
}

// Sharing an opcode is worth a warning but no error.
static void check_duplicates(InstructionCheck *check, InstructionEntry *entry, uint32_t at)
{
    const OpcodeTable *table = &check->table;
    const char *text = table->opcodes[at].text;
    uint32_t found = opcode_next_duplicate(table, at, at);
    if (found == OPCODE_NONE)
        return;
    entry->merged_instructions = nullptr;
    if (!message_wanted(2))
        return;
    const Rule rule = {"opcode-duplicate", opcode_place(table, at)};
    rule_warning(rule, "duplicate opcodes in instruction opcode table:");
    rule_warning(rule, "'%s' (%s)", entry->name, text);
    for (; found != OPCODE_NONE; found = opcode_next_duplicate(table, at, found))
        rule_warning({rule.id, opcode_place(table, found)}, "'%s' (%s)",
                     table->entries[table->opcodes[found].entry]->name, text);
}

// The next opcode of a later instruction that overlaps the given one. SAMPLE and PRELOAD are not
// compared with each other where they may share an opcode.
static uint32_t next_ambiguous(const OpcodeTable *table, const Opcode *opcode, uint32_t from)
{
    bool is_load = table->owners[opcode->entry] == OPCODE_OWNER_LOADS;
    for (uint32_t at = from; at < table->opcode_count; at++) {
        const Opcode *later = &table->opcodes[at];
        if (is_load && table->owners[later->entry] == OPCODE_OWNER_LOADS)
            continue;
        if (opcodes_overlap(opcode, later))
            return at;
    }
    return OPCODE_NONE;
}

static void check_ambiguity(InstructionCheck *check, const InstructionEntry *entry, uint32_t at)
{
    const OpcodeTable *table = &check->table;
    const Opcode *opcode = &table->opcodes[at];
    // Skips a search whose messages nobody would get and which cannot change the result.
    if (!message_wanted(2) && (check->is_2001 || check->result))
        return;
    uint32_t found = next_ambiguous(table, opcode, table->first_opcode[opcode->entry + 1]);
    if (found == OPCODE_NONE)
        return;
    const Rule rule = {"opcode-ambiguous", opcode_place(table, at)};
    if (check->is_2001) {
        rule_warning(rule, "ambiguous opcodes in instruction opcode table");
        return;
    }
    check->result |= rule_error(rule, "ambiguous opcodes in instruction opcode table:");
    rule_error(rule, "'%s' (%s)", entry->name, opcode->text);
    while (found != OPCODE_NONE && message_wanted(2)) {
        const Opcode *later = &table->opcodes[found];
        rule_error({rule.id, opcode_place(table, found)}, "'%s' (%s)",
                   table->entries[later->entry]->name, later->text);
        found = next_ambiguous(table, opcode, found + 1);
    }
}

static void check_opcode(InstructionCheck *check, InstructionEntry *entry, uint32_t at)
{
    const Opcode *opcode = &check->table.opcodes[at];
    if (opcode->length != check->instructions->length)
        check->result |= rule_error({"opcode-length", opcode_place(&check->table, at)},
                                    "incorrect instruction capture length, " /* as is */
                                    "opcode: %s (%s) should have length %i",
                                    entry->name, opcode->text,
                                    static_cast<int32_t>(check->instructions->length));
    check_reserved(check, entry, at);
    // Only an opcode with X bits is tested for ambiguity, and only against those after it.
    if (opcode->has_x)
        check_ambiguity(check, entry, at);
    else
        check_duplicates(check, entry, at);
}

static void check_instructions(InstructionCheck *check)
{
    const OpcodeTable *table = &check->table;
    for (uint32_t i = 0; i < table->entry_count; i++) {
        classify(check, table->entries[i]);
        for (uint32_t at = table->first_opcode[i]; at < table->first_opcode[i + 1]; at++)
            check_opcode(check, table->entries[i], at);
    }
}

// --------------------------------------------------------------------------- completing the table

// The instruction that preloads comes to the head of the table; of several the last one does.
static void move_preload_first(InstructionCheck *check)
{
    const OpcodeTable *table = &check->table;
    GSList *link = check->instructions->opcode_table;
    for (uint32_t i = table->entry_count; i-- > 0;) {
        if (!(table->entries[i]->flags & INSTRUCTION_PRELOADS))
            continue;
        link->data = table->entries[i];
        link = link->next;
    }
    for (uint32_t i = 0; i < table->entry_count; i++) {
        if (table->entries[i]->flags & INSTRUCTION_PRELOADS)
            continue;
        link->data = table->entries[i];
        link = link->next;
    }
}

// Gives the opcode; NULL when memory has run out.
static const char *add_instruction(InstructionCheck *check, const char *name, char bit)
{
    Bsdl *bsdl = check->bsdl;
    InstructionRegister *instructions = check->instructions;
    size_t length = instructions->length < MOST_ADDED_BITS ? instructions->length : MOST_ADDED_BITS;
    auto *opcode = arena_array<char>(&bsdl->arena, length + 1);
    if (!opcode)
        return nullptr;
    std::memset(opcode, bit, length);

    auto *entry = model_new(bsdl, InstructionEntry{.name = model_name(bsdl, name),
                                                   .type = INSTRUCTION_TYPE_MANDATORY,
                                                   .patterns = model_list(bsdl, opcode).head});
    GSList *last = instructions->opcode_table;
    while (last->next)
        last = last->next;
    last->next = model_list(bsdl, entry).head;
    return opcode;
}

static void add_bypass(InstructionCheck *check)
{
    if (const char *opcode = add_instruction(check, "BYPASS", '1'))
        rule_message(BSDL_LEVEL_INFO, 4,
                     {"instruction-bypass-added", check->instructions->opcode_place},
                     "\tmandatory BYPASS instruction opcode (%s) added", opcode);
}

static void add_extest(InstructionCheck *check)
{
    if (const char *opcode = add_instruction(check, "EXTEST", '0'))
        rule_message(BSDL_LEVEL_INFO, 4,
                     {"instruction-extest-added", check->instructions->opcode_place},
                     "\tmandatory EXTEST instruction opcode (%s) added", opcode);
}

static void check_presence(InstructionCheck *check)
{
    if (!check->found_bypass)
        add_bypass(check);
    if (!check->found_extest && check->is_2001)
        check->result |=
            rule_error({"instruction-extest-missing", check->instructions->opcode_place},
                       "EXTEST instruction opcode mandatory for STD_1149_1_2001");
    else if (!check->found_extest)
        add_extest(check);
    if (!check->found_sample)
        check->result |=
            rule_error({"instruction-sample-missing", check->instructions->opcode_place},
                       "no SAMPLE instruction specified");
    if (check->is_2001 && !check->found_preload)
        check->result |=
            rule_error({"instruction-preload-missing", check->instructions->opcode_place},
                       "no PRELOAD instruction specified");
}

// --------------------------------------------------------------------------- the other statements

static void check_captures(InstructionCheck *check)
{
    const InstructionRegister *instructions = check->instructions;
    TokenCursor token = {instructions->capture_place.begin, VALUE_TOKEN};
    for (const char *pattern : items<char>(instructions->capture_patterns)) {
        const Place place = cursor_place(&token);
        token.behind += 2;
        size_t length = std::strlen(pattern);
        if (length != instructions->length)
            check->result |= rule_error(
                {"instruction-capture-length", place},
                "instruction capture pattern (%s) length (%i) must be equal to instruction length "
                "(%i)",
                pattern, static_cast<int32_t>(length), static_cast<int32_t>(instructions->length));
        if (length < 2 || std::strcmp(pattern + length - 2, "01") != 0)
            check->result |= rule_error({"instruction-capture-end", place},
                                        "instruction capture pattern (%s) must end in 01", pattern);
    }
}

static void check_length(InstructionCheck *check)
{
    const InstructionRegister *instructions = check->instructions;
    if (instructions->length < 2)
        check->result |= rule_error({"instruction-length", instructions->length_place},
                                    "INSTRUCTION_LENGTH (%u) should be greater than 2", /* as is */
                                    instructions->length);
}

static void run_rules(InstructionCheck *check)
{
    check_length(check);
    index_privates(check);
    if (!opcode_table_start(&check->table, &check->scratch, check->instructions, check->is_2001))
        return;
    check_instructions(check);
    move_preload_first(check);
    check_presence(check);
    check_captures(check);
    // Look-ups and iterations from before still have the old order of the table.
    list_changed(&check->instructions->instruction_walk);
    lookups_drop(check->bsdl);
}

int32_t bsdl_check_instr_reg(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    InstructionRegister *instructions = h->data->instruction_register;
    if (!instructions || !instructions->opcode_table)
        return BSDL_RESULT_OK;

    InstructionCheck check = {.bsdl = h, .instructions = instructions};
    check.is_2001 = h->data->conformance == CONFORMANCE_2001;
    check.all_ones_allowed = h->data->isc && h->data->isc->conformance == 0;
    if (check.scratch.failed)
        return BSDL_RESULT_FAILED;
    run_rules(&check);
    return check_end(h, check.result, &check.scratch);
}
