#pragma once

#include "base/index.h"
#include "frame/model.h"

struct CellDesc;
struct CellEntry;
struct CellSearch;
struct InstructionEntry;
struct PinEntry;
struct PinSpec;
struct RegisterEntry;
struct TwinGroup;

// The value of Lookups.pin_of_name for a name that several declarations hold.
constexpr uint32_t PIN_NAME_REPEATED = UINT32_MAX;

// Indexes over the model, each made when it is first asked for and kept until the list under it
// changes. They give what a walk over the list gives: the first match, letters folded the same way.
struct Lookups {
    Arena arena;
    uint32_t *pin_of_name;  // fold -> place of the port's first pin, counted from 1
    uint32_t pin_names;     // length of the table; names that came later are in no pin
    Index repeated_pins;    // port_key -> place from 0, for ports declared several times
    PinSpec **spec_of_name; // fold -> the first declaration
    uint32_t spec_names;
    Index instructions; // fold -> position in instruction_table
    InstructionEntry **instruction_table;
    Index registers; // fold -> position in register_table
    RegisterEntry **register_table;
    Index cell_numbers;      // cell_number -> position in cell_table
    Index cell_bits;         // port_bit_key -> position in cell_table
    uint32_t *cell_bit_next; // position -> next position of the same bit, INDEX_NONE at the end
    // Position of the first cell of a bit -> that of the first cell that names the same bit in the
    // other form, with or without subscript.
    uint32_t *cell_other_form;
    CellEntry **cell_table;
    uint32_t cell_count;
    CellSearch *cell_search; // see boundary/cell_port_check.cpp
    Index cell_descs;        // fold -> position in cell_desc_table
    CellDesc **cell_desc_table;
    Index group_members;    // port_key of both members of each twin group
    Index associated_ports; // port_key of an associated port -> place of its first group
    TwinGroup **group_table;
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

// Keys of a port bit. Two references that agree in name (any case), in being subscripted and in the
// subscript have one port_key(); port_bit_key() leaves out whether they are subscripted.
uint64_t port_key(const PortId *port);
uint64_t port_bit_key(const PortId *port);
