#pragma once

#include "base/arena.h"
#include "registers/registers.h"

#include <cstdint>

// The opcodes of all instructions in one row, made for the searches of bsdl_check_instr_reg(): each
// opcode is to be compared with all that follow it.
struct Opcode {
    const char *text; // in capitals
    uint32_t length;
    uint32_t entry; // whose opcode it is, as position in OpcodeTable::entries
    bool has_zero;
    bool has_one;
    bool has_x;
    uint32_t care_end; // position after the last bit that is not X

    // Plain opcodes: the next one of the same text, and the next such of another owner.
    uint32_t next_equal;
    uint32_t next_foreign;

    // Pairs of words, value and care, over the bits in which opcodes of the table differ.
    const uint64_t *bits;
    uint32_t words;
};

struct OpcodeTable {
    InstructionEntry **entries;
    uint32_t *owners;       // of each entry: entries with one owner never count as duplicates
    uint32_t *first_opcode; // of each entry, and the end after the last
    Opcode *opcodes;
    uint32_t entry_count;
    uint32_t opcode_count;
    bool has_x;
};

constexpr uint32_t OPCODE_NONE = UINT32_MAX;
constexpr uint32_t OPCODE_OWNER_LOADS = UINT32_MAX; // SAMPLE and PRELOAD, where they may share

// Puts the texts of the opcodes into capitals. With `loads_shared` SAMPLE and PRELOAD count as one
// owner. False when memory has run out.
bool opcode_table_start(OpcodeTable *table, Arena *arena, const InstructionRegister *instructions,
                        bool loads_shared);

// The plain opcodes after a given one that have its text and another owner, in order.
uint32_t opcode_next_duplicate(const OpcodeTable *table, uint32_t opcode, uint32_t after);

// True when some bits fit both. Compared as far as the later one goes: its bits beyond the end of
// the earlier fit only where they are X.
bool opcodes_overlap(const Opcode *earlier, const Opcode *later);
