#include "registers/opcode_table.h"

#include "base/index.h"
#include "base/names.h"
#include "frame/lookup.h"

#include <algorithm>
#include <cstring>

static void opcode_read(Opcode *opcode, char *text)
{
    uint32_t length = 0;
    for (; text[length]; length++) {
        char bit = text[length];
        if (bit == 'x') // a constant text is in capitals already and not written to
            bit = text[length] = 'X';
        opcode->has_zero |= bit == '0';
        opcode->has_one |= bit == '1';
        opcode->has_x |= bit == 'X';
        if (bit != 'X')
            opcode->care_end = length + 1;
    }
    opcode->text = text;
    opcode->length = length;
}

static bool collect_opcodes(OpcodeTable *table, Arena *arena)
{
    uint32_t count = 0;
    for (uint32_t i = 0; i < table->entry_count; i++)
        count += list_length(table->entries[i]->patterns);
    table->opcodes = arena_array<Opcode>(arena, count);
    if (!table->opcodes)
        return false;
    for (uint32_t i = 0; i < table->entry_count; i++) {
        table->first_opcode[i] = table->opcode_count;
        for (char *pattern : items<char>(table->entries[i]->patterns)) {
            Opcode *opcode = &table->opcodes[table->opcode_count++];
            opcode->entry = i;
            opcode_read(opcode, pattern);
            table->has_x |= opcode->has_x;
        }
    }
    table->first_opcode[table->entry_count] = table->opcode_count;
    return true;
}

// --------------------------------------------------------------------------------- equal opcodes

// Gives each opcode the first one of its text: `first[i]`.
static bool group_equal(const OpcodeTable *table, Arena *arena, uint32_t *first)
{
    auto *same_hash = arena_array<uint32_t>(arena, table->opcode_count);
    Index by_hash;
    index_start(&by_hash, arena, table->opcode_count);
    if (!same_hash || !by_hash.values)
        return false;
    for (uint32_t i = 0; i < table->opcode_count; i++) {
        const Opcode *opcode = &table->opcodes[i];
        same_hash[i] = OPCODE_NONE;
        first[i] = i;
        uint32_t other = index_first(&by_hash, text_hash(opcode->text, opcode->length), i);
        for (; other != OPCODE_NONE; other = same_hash[other]) {
            if (opcode->length == table->opcodes[other].length &&
                std::memcmp(opcode->text, table->opcodes[other].text, opcode->length) == 0) {
                first[i] = other;
                break;
            }
            if (same_hash[other] == OPCODE_NONE) {
                same_hash[other] = i;
                break;
            }
        }
    }
    return true;
}

static bool link_equal(OpcodeTable *table, Arena *arena)
{
    auto *first = arena_array<uint32_t>(arena, table->opcode_count);
    auto *nearest = arena_array<uint32_t>(arena, table->opcode_count);
    if (!first || !nearest || !group_equal(table, arena, first))
        return false;
    std::fill_n(nearest, table->opcode_count, OPCODE_NONE);
    for (uint32_t i = table->opcode_count; i-- > 0;) {
        Opcode *opcode = &table->opcodes[i];
        uint32_t next = nearest[first[i]];
        nearest[first[i]] = i;
        opcode->next_equal = next;
        opcode->next_foreign = next;
        if (next != OPCODE_NONE &&
            table->owners[opcode->entry] == table->owners[table->opcodes[next].entry])
            opcode->next_foreign = table->opcodes[next].next_foreign;
    }
    return true;
}

uint32_t opcode_next_duplicate(const OpcodeTable *table, uint32_t opcode, uint32_t after)
{
    const Opcode *opcodes = table->opcodes;
    uint32_t owner = table->owners[opcodes[opcode].entry];
    uint32_t at = after == opcode ? opcodes[after].next_foreign : opcodes[after].next_equal;
    if (at != OPCODE_NONE && table->owners[opcodes[at].entry] == owner)
        at = opcodes[at].next_foreign;
    return at;
}

// --------------------------------------------------------------------------- opcodes with X bits

// Marks the bits that are 0 in one opcode and 1 in another: no other bit can tell two apart.
static uint32_t *telling_bits(const OpcodeTable *table, Arena *arena, uint32_t *longest)
{
    for (uint32_t i = 0; i < table->opcode_count; i++)
        *longest = std::max(*longest, table->opcodes[i].length);
    auto *seen = arena_array<uint8_t>(arena, *longest + size_t{1});
    auto *telling = arena_array<uint32_t>(arena, *longest + size_t{1});
    if (!seen || !telling)
        return nullptr;
    for (uint32_t i = 0; i < table->opcode_count; i++) {
        const Opcode *opcode = &table->opcodes[i];
        for (uint32_t at = 0; at < opcode->length; at++)
            seen[at] |= opcode->text[at] == '0' ? 1 : opcode->text[at] == '1' ? 2 : 0;
    }
    // How many there are before each position.
    for (uint32_t at = 0; at < *longest; at++)
        telling[at + 1] = telling[at] + (seen[at] == 3);
    return telling;
}

static bool pack(OpcodeTable *table, Arena *arena)
{
    uint32_t longest = 0;
    const uint32_t *telling = telling_bits(table, arena, &longest);
    if (!telling)
        return false;
    for (uint32_t i = 0; i < table->opcode_count; i++) {
        Opcode *opcode = &table->opcodes[i];
        opcode->words = (telling[opcode->length] + 63) / 64;
        auto *bits = arena_array<uint64_t>(arena, size_t{2} * opcode->words);
        if (!bits)
            return false;
        for (uint32_t at = 0; at < opcode->care_end; at++) {
            if (telling[at] == telling[at + 1] || opcode->text[at] == 'X')
                continue;
            uint64_t bit = uint64_t{1} << telling[at] % 64;
            uint64_t *pair = &bits[size_t{telling[at] / 64} * 2];
            pair[0] |= opcode->text[at] == '1' ? bit : 0;
            pair[1] |= bit;
        }
        opcode->bits = bits;
    }
    return true;
}

bool opcodes_overlap(const Opcode *earlier, const Opcode *later)
{
    if (later->care_end > earlier->length)
        return false;
    uint32_t words = std::min(earlier->words, later->words);
    for (uint32_t i = 0; i < words; i++) {
        const uint64_t *a = &earlier->bits[size_t{2} * i];
        const uint64_t *b = &later->bits[size_t{2} * i];
        if ((a[0] ^ b[0]) & a[1] & b[1])
            return false;
    }
    return true;
}

bool opcode_table_start(OpcodeTable *table, Arena *arena, const InstructionRegister *instructions,
                        bool loads_shared)
{
    *table = OpcodeTable{};
    table->entries =
        list_table_of<InstructionEntry>(arena, instructions->opcode_table, &table->entry_count);
    table->owners = arena_array<uint32_t>(arena, table->entry_count);
    table->first_opcode = arena_array<uint32_t>(arena, table->entry_count + size_t{1});
    if (!table->entries || !table->owners || !table->first_opcode)
        return false;
    for (uint32_t i = 0; i < table->entry_count; i++) {
        const char *name = table->entries[i]->name;
        bool load = same_text(name, "SAMPLE") || same_text(name, "PRELOAD");
        table->owners[i] = load && loads_shared ? OPCODE_OWNER_LOADS : name_fold(name);
    }
    return collect_opcodes(table, arena) && link_equal(table, arena) &&
           (!table->has_x || pack(table, arena));
}
