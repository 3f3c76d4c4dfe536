// REGISTER_ACCESS. Its check stands in register_check.cpp.

#include "frame/messages.h"
#include "registers/registers.h"
#include "scan/scanner.h"

namespace
{

constexpr uint32_t FIRST_CAPACITY = 16;

} // namespace

// ------------------------------------------------------------------------------------- the grammar

RegisterEntry *register_named(Bsdl *bsdl, int32_t kind, const char *name, Place place)
{
    return model_new(bsdl, RegisterEntry{.kind = kind,
                                         .name = name_upper(&bsdl->names, model_name(bsdl, name)),
                                         .length = -1,
                                         .place = place});
}

RegisterEntry *register_sized(Bsdl *bsdl, RegisterEntry *entry, int32_t length)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    entry->length = length;
    return entry;
}

RegisterEntry *register_idcode(Bsdl *bsdl, Place place)
{
    if (bsdlIs1990(bsdl))
        return register_named(bsdl, REGISTER_KIND_IDENTIFICATION, "IDCODE", place);
    parse_refused(bsdl, "register-idcode", "illegal device ID register name IDCODE, use DEVICE_ID");
    return nullptr;
}

RegisterEntry *register_association(RegisterEntry *entry, List captures)
{
    entry->captures = captures.head;
    entry->captures_tail = captures.tail;
    return entry;
}

InstructionCapture *instruction_capture(Bsdl *bsdl, const char *name, const char *capture,
                                        Place place)
{
    return model_new(bsdl, InstructionCapture{.name = name, .capture = capture, .place = place});
}

const char *capture_pattern(Bsdl *bsdl, const char *pattern)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    return pattern;
}

// The first register stays outside the index: a repetition of it is a register of its own.
RegisterList *register_list_start(Bsdl *bsdl, RegisterEntry *entry)
{
    return model_new(bsdl, RegisterList{.registers = model_list(bsdl, entry)});
}

static void register_list_grow(Bsdl *bsdl, RegisterList *list)
{
    uint32_t capacity = list->capacity ? list->capacity * 2 : FIRST_CAPACITY;
    auto **table = arena_array<RegisterEntry *>(&bsdl->arena, capacity);
    if (!table)
        return;
    index_start(&list->by_name, &bsdl->arena, capacity);
    for (uint32_t i = 0; i < list->count; i++) {
        table[i] = list->table[i];
        index_first(&list->by_name, name_fold(table[i]->name), i);
    }
    list->table = table;
    list->capacity = capacity;
}

static bool register_merge(Bsdl *bsdl, RegisterEntry *earlier, const RegisterEntry *entry)
{
    List captures = list_join({earlier->captures, earlier->captures_tail},
                              {entry->captures, entry->captures_tail});
    earlier->captures = captures.head;
    earlier->captures_tail = captures.tail;
    if (entry->length == -1 || entry->length == earlier->length)
        return true;
    // Not as urgent as other refusals, yet it counts as a syntax error like them.
    rule_message(BSDL_LEVEL_ERROR, 2,
                 {"register-lengths-differ", token_place(entry->place.begin, 2)},
                 "register lengths: %i, %i not equal", entry->length, earlier->length);
    bsdl->error_count++;
    return false;
}

bool register_list_append(Bsdl *bsdl, RegisterList *list, RegisterEntry *entry)
{
    if (list->count == list->capacity)
        register_list_grow(bsdl, list);
    if (list->count == list->capacity)
        return true; // out of memory: the reading is given up
    uint32_t at = index_first(&list->by_name, name_fold(entry->name), list->count);
    if (at != INDEX_NONE)
        return register_merge(bsdl, list->table[at], entry);
    list->table[list->count++] = entry;
    list->registers = model_append(bsdl, list->registers, entry);
    return true;
}

bool register_access_passed(Bsdl *bsdl, RegisterList *list)
{
    bsdl->data->register_access = list->registers.head;
    statement_passed(bsdl, "\tRegister access statement passed");
    return bsdl->fast_read != 0;
}

void register_access_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping register_access due to errors");
}

void register_access_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo register access statement");
}

// ---------------------------------------------------------------------------------------- look-ups

static void index_registers(Lookups *lookups, const GSList *registers)
{
    uint32_t count;
    lookups->register_table = list_table_of<RegisterEntry>(&lookups->arena, registers, &count);
    index_start(&lookups->registers, &lookups->arena, count);
    for (uint32_t i = 0; lookups->register_table && i < count; i++)
        index_first(&lookups->registers, name_fold(lookups->register_table[i]->name), i);
}

RegisterEntry *find_register(Bsdl *bsdl, const char *name)
{
    if (!name)
        return nullptr;
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->registers.built)
        index_registers(lookups, bsdl->data->register_access);
    uint32_t at = index_find(&lookups->registers, name_fold(name));
    return at == INDEX_NONE ? nullptr : lookups->register_table[at];
}
