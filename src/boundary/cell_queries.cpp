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

static bool same_form(const Lookups *lookups, uint32_t cell, uint32_t other)
{
    return lookups->cell_table[cell]->cell_spec->port->subscripted ==
           lookups->cell_table[other]->cell_spec->port->subscripted;
}

// Made from the end of the table, so that each entry is chained to the one found before it.
static const Index *cell_bits_of(Lookups *lookups)
{
    Index *index = &lookups->cell_bits;
    if (index->built)
        return index;
    index_start(index, &lookups->arena, lookups->cell_count);
    auto *next = arena_array<uint32_t>(&lookups->arena, lookups->cell_count);
    auto *other_form = arena_array<uint32_t>(&lookups->arena, lookups->cell_count);
    if (!next || !other_form) {
        *index = Index{.built = true};
        return index;
    }
    lookups->cell_bit_next = next;
    lookups->cell_other_form = other_form;
    for (uint32_t i = lookups->cell_count; i-- > 0;) {
        const PortId *own = lookups->cell_table[i]->cell_spec->port;
        if (!own)
            continue;
        const uint32_t later = index_last(index, port_bit_key(own), i);
        next[i] = later;
        if (later == INDEX_NONE)
            other_form[i] = INDEX_NONE;
        else
            other_form[i] = same_form(lookups, i, later) ? other_form[later] : later;
    }
    return index;
}

CellEntry *first_cell_of_bit(Bsdl *bsdl, const PortId *port)
{
    Lookups *lookups = cell_lookups(bsdl);
    if (!lookups)
        return nullptr;
    return cell_at(lookups, index_find(cell_bits_of(lookups), port_bit_key(port)));
}

CellEntry *first_cell_of_port(Bsdl *bsdl, const PortId *port)
{
    CellEntry *first = first_cell_of_bit(bsdl, port);
    if (!first || first->cell_spec->port->subscripted == port->subscripted)
        return first;
    const Lookups *lookups = lookups_of(bsdl);
    return cell_at(lookups, lookups->cell_other_form[first->position]);
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
