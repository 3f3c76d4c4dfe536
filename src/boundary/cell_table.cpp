#include "boundary/boundary.h"

#include "frame/messages.h"
#include "ports/ports.h"
#include "scan/scanner.h"

#include <type_traits>

namespace
{

// What every row of the table has, in one piece: tables reach a million rows.
struct CellRow {
    CellEntry entry;
    CellSpec spec;
    GSList link;
};
static_assert(std::is_standard_layout_v<CellRow>); // a pointer to the entry is one to the row

} // namespace

// -------------------------------------------------------------------------------------- statements

// Mandatory in the 1990 issue, where its absence passes all the same.
void boundary_cells_absent(Bsdl *bsdl)
{
    if (bsdl->standards == BSDL_STANDARD_BIT_1990)
        statement_absent(bsdl, "\tBoundary cells statement passed"); /* as is */
}

void boundary_cells_passed(Bsdl *bsdl)
{
    statement_passed(bsdl, "\tBoundary cells statement passed");
}

void boundary_cells_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping boundary_cells due to errors");
}

void boundary_length_passed(Bsdl *bsdl)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    statement_passed(bsdl, "\tBoundary scan register length statement passed");
}

// Most tables are in rising or falling order, so the entries of one number are neighbours. Gives
// false for a table in another order; the links do not count then.
static bool merge_neighbours(GSList *table)
{
    auto *before = static_cast<CellEntry *>(table->data);
    int direction = 0;
    for (CellEntry *entry : items<CellEntry>(table->next)) {
        if (entry->cell_number == before->cell_number) {
            entry->merged_with = before->merged_with ? before->merged_with : before;
        } else {
            int step = entry->cell_number > before->cell_number ? 1 : -1;
            if (direction == -step)
                return false;
            direction = step;
        }
        before = entry;
    }
    return true;
}

static void merge_by_number(Bsdl *bsdl, GSList *table)
{
    Scratch scratch;
    if (scratch.failed) {
        bsdl->arena.failed = true;
        return;
    }
    uint32_t count;
    auto **entries = list_table_of<CellEntry>(&scratch, table, &count);
    Index numbers;
    index_start(&numbers, &scratch, count);
    for (uint32_t position = 0; position < count; position++) {
        CellEntry *entry = entries[position];
        uint32_t first = index_first(&numbers, entry->cell_number, position);
        entry->merged_with = first == INDEX_NONE ? nullptr : entries[first];
    }
    bsdl->arena.failed |= scratch.failed;
}

void boundary_register_passed(Bsdl *bsdl, GSList *table)
{
    if (!merge_neighbours(table))
        merge_by_number(bsdl, table);
    statement_passed(bsdl, "\tBoundary scan register statement passed");
}

void boundary_register_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping boundary_register due to errors");
}

void boundary_register_made(Bsdl *bsdl, int32_t length, List table, Place length_place, Place place)
{
    auto *record = model_new<BoundaryRegister>(bsdl);
    record->boundary_length = static_cast<uint32_t>(length);
    record->cell_table = table.head;
    record->length_place = length_place;
    record->place = place;
    bsdl->data->boundary_register = record;
}

// -------------------------------------------------------------------------------------- the table

CellEntry *cell_entry_new(Bsdl *bsdl, const char *name, PortId *port, int32_t function,
                          int32_t safe_bit)
{
    auto *row = model_new<CellRow>(bsdl);
    row->entry.cell_spec = &row->spec;
    row->spec.cell_name = name;
    row->spec.port = port;
    row->spec.function = function;
    row->spec.safe_bit = safe_bit;
    return &row->entry;
}

CellEntry *cell_entry_numbered(CellEntry *entry, int32_t number, uint32_t at)
{
    entry->cell_number = static_cast<uint32_t>(number);
    entry->at = at;
    return entry;
}

// number ( name , port , function , safe bit [, control cell , value , result] )
Place cell_place(const CellEntry *cell, CellPart part)
{
    constexpr uint32_t PORT = 4;
    const uint32_t function = PORT + port_tokens(cell->cell_spec->port) + 1;
    switch (part) {
    case CELL_NUMBER:
        return token_place(cell->at);
    case CELL_NAME:
        return token_place(cell->at, 2);
    case CELL_PORT:
        return tokens_place(cell->at, PORT, function - 2);
    case CELL_SUBSCRIPT:
        return token_place(cell->at, PORT + 2);
    case CELL_DISABLE_SPEC:
        return tokens_place(cell->at, function + 4, function + 8);
    default:
        return token_place(cell->at, function + 2 * (part - CELL_FUNCTION));
    }
}

List cell_table_append(List table, CellEntry *entry)
{
    if (table.tail)
        entry->position = static_cast<const CellEntry *>(table.tail->data)->position + 1;
    GSList *link = &reinterpret_cast<CellRow *>(entry)->link;
    link->data = entry;
    return list_join(table, {link, link});
}

DisableSpec *disable_spec_new(Bsdl *bsdl, int32_t ccell, int32_t value, int32_t result)
{
    auto *spec = model_new<DisableSpec>(bsdl);
    *spec = {.ccell = ccell, .disable_value = value, .disable_result = result, .control_seen = 0};
    return spec;
}

int32_t safe_bit_from(Bsdl *bsdl, int32_t value)
{
    if (value == 0 || value == 1)
        return value == 0 ? SAFE_BIT_0 : SAFE_BIT_1;
    parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "cell-safe-bit-value", "safe_bit must be X, 0, 1");
    return SAFE_BIT_NONE;
}

int32_t control_cell_from(Bsdl *bsdl, int32_t number)
{
    if (number < 0)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "cell-control-number-negative",
                      "cell number must be positive");
    return number;
}

int32_t disable_value_from(Bsdl *bsdl, int32_t value)
{
    if (value == 0 || value == 1)
        return value == 0 ? DISABLE_VALUE_0 : DISABLE_VALUE_1;
    parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "cell-disable-value",
                  "disable_value must be X, 0, 1"); /* as is: X is no disable value */
    return DISABLE_VALUE_NONE;
}

int32_t disable_result_keeper(Bsdl *bsdl)
{
    if (!bsdlIs2001(bsdl))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "cell-disable-result-keeper",
                      "\t<disable result> KEEPER is only allowed in BSDL2001");
    return DISABLE_RESULT_KEEPER;
}
