#pragma once

#include "frame/index.h"
#include "frame/model.h"

struct CellDesc;
struct CellEntry;
struct InstructionEntry;
struct PinEntry;
struct PinSpec;
struct RegisterEntry;

// Indexes over the model, each made when it is first asked for and kept until the list under it
// changes. They give what a walk over the list gives: the first match, letters folded the same way.
struct Lookups {
    Arena arena;
    Index pins; // port_key -> position in pin_table
    PinEntry **pin_table;
    Index port_names; // fold -> position in port_name_table
    PinSpec **port_name_table;
    Index instructions; // fold -> position in instruction_table
    InstructionEntry **instruction_table;
    Index registers; // fold -> position in register_table
    RegisterEntry **register_table;
    Index cell_numbers; // cell_number -> position in cell_table
    Index cell_ports;   // port_key -> position in cell_table
    Index cell_bits;    // port_bit_key -> position in cell_table
    CellEntry **cell_table;
    uint32_t cell_count;
    Index cell_descs; // fold -> position in cell_desc_table
    CellDesc **cell_desc_table;
    Index group_members; // port_key of both members of each twin group
};

// The handle's lookups; made at the first call. Never NULL once a reading has begun.
Lookups *lookups_of(Bsdl *bsdl);

// Gives back all indexes: at the end of the driver, and when a host changes lists in single checks.
void lookups_drop(Bsdl *bsdl);

// The elements of a list as an array in the lookups' arena; NULL when empty or out of memory.
void **list_table(Arena *arena, const void *head, uint32_t *count);

template <class T> T **list_table_of(Arena *arena, const void *head, uint32_t *count)
{
    return reinterpret_cast<T **>(list_table(arena, head, count));
}
