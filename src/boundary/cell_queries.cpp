#include "boundary/boundary.h"

// -------------------------------------------------------------------------------------- look-ups

Lookups *cell_lookups(Bsdl *bsdl)
{
    const BoundaryRegister *record = bsdl->data->boundary_register;
    if (!record || !record->cell_table)
        return nullptr;
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->cell_table)
        lookups->cell_table =
            list_table_of<CellEntry>(&lookups->arena, record->cell_table, &lookups->cell_count);
    return lookups->cell_table ? lookups : nullptr;
}

static CellEntry *cell_at(const Lookups *lookups, uint32_t position)
{
    return position == INDEX_NONE ? nullptr : lookups->cell_table[position];
}

CellEntry *find_cell(Bsdl *bsdl, uint32_t number)
{
    Lookups *lookups = cell_lookups(bsdl);
    if (!lookups)
        return nullptr;
    Index *index = &lookups->cell_numbers;
    if (!index->built) {
        index_start(index, &lookups->arena, lookups->cell_count);
        for (uint32_t i = 0; i < lookups->cell_count; i++)
            index_first(index, lookups->cell_table[i]->cell_number, i);
    }
    return cell_at(lookups, index_find(index, number));
}

CellEntry *first_cell_of_port(Bsdl *bsdl, const PortId *port)
{
    Lookups *lookups = cell_lookups(bsdl);
    if (!lookups)
        return nullptr;
    Index *index = &lookups->cell_ports;
    if (!index->built) {
        index_start(index, &lookups->arena, lookups->cell_count);
        for (uint32_t i = 0; i < lookups->cell_count; i++)
            if (const PortId *own = lookups->cell_table[i]->cell_spec->port)
                index_first(index, port_key(own), i);
    }
    return cell_at(lookups, index_find(index, port_key(port)));
}

// Made from the end of the table, so that each entry is chained to the one found before it.
static void index_bits(Lookups *lookups)
{
    Index *index = &lookups->cell_bits;
    index_start(index, &lookups->arena, lookups->cell_count);
    lookups->cell_bit_next = arena_array<uint32_t>(&lookups->arena, lookups->cell_count);
    if (!lookups->cell_bit_next)
        return;
    for (uint32_t i = lookups->cell_count; i-- > 0;)
        if (const PortId *own = lookups->cell_table[i]->cell_spec->port)
            lookups->cell_bit_next[i] = index_last(index, port_bit_key(own), i);
}

CellEntry *first_cell_of_bit(Bsdl *bsdl, const PortId *port)
{
    Lookups *lookups = cell_lookups(bsdl);
    if (!lookups)
        return nullptr;
    if (!lookups->cell_bits.built)
        index_bits(lookups);
    return cell_at(lookups, index_find(&lookups->cell_bits, port_bit_key(port)));
}

CellEntry *next_cell_of_bit(Bsdl *bsdl, const CellEntry *cell)
{
    const Lookups *lookups = lookups_of(bsdl);
    return cell_at(lookups, lookups->cell_bit_next[cell->position]);
}

// --------------------------------------------------------------------------------------- queries

static BoundaryRegister *boundary_register_of(const Bsdl *h)
{
    return h && h->data ? h->data->boundary_register : nullptr;
}

int32_t bsdlGetBSRLength(Bsdl *h)
{
    const BoundaryRegister *record = boundary_register_of(h);
    return record ? static_cast<int32_t>(record->boundary_length) : 0;
}

CellEntry *bsdlGetFirstCellEntry(Bsdl *h)
{
    BoundaryRegister *record = boundary_register_of(h);
    if (!record)
        return nullptr;
    return static_cast<CellEntry *>(
        list_first(&record->walk, record->cell_table, &record->cell_cursor));
}

CellEntry *bsdlGetNextCellEntry(Bsdl *h)
{
    BoundaryRegister *record = boundary_register_of(h);
    if (!record)
        return nullptr;
    return static_cast<CellEntry *>(
        list_next(&record->walk, record->cell_table, &record->cell_cursor));
}

int32_t bsdlGetCellNumber(CellEntry *e) { return e ? static_cast<int32_t>(e->cell_number) : -1; }

const char *bsdlGetCellName(CellEntry *e) { return e ? e->cell_spec->cell_name : nullptr; }

const char *bsdlGetCellEbstName(CellEntry *e) { return e ? e->cell_spec->ebst_name : nullptr; }

PortId *bsdlGetCellPort(CellEntry *e) { return e ? e->cell_spec->port : nullptr; }

int32_t bsdlGetCellFunction(CellEntry *e) { return e ? e->cell_spec->function : 0; }

int32_t bsdlGetCellSafeBit(CellEntry *e) { return e ? e->cell_spec->safe_bit : 0; }

int32_t bsdlGetCellControlCell(CellEntry *e)
{
    return e && e->disable_spec ? e->disable_spec->ccell : -1;
}

int32_t bsdlGetCellDisableValue(CellEntry *e)
{
    return e && e->disable_spec ? e->disable_spec->disable_value : 0;
}

int32_t bsdlGetCellDisableResult(CellEntry *e)
{
    return e && e->disable_spec ? e->disable_spec->disable_result : 0;
}
