#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "ports/ports.h"

// ----------------------------------------------------------------------------------- while parsing

TwinGroup *twin_group_new(Bsdl *bsdl, PortId *representative, PortId *associated, Place place)
{
    return model_new(
        bsdl,
        TwinGroup{.representative = representative, .associated = associated, .place = place});
}

TwinGroupEntry *twin_group_entry_new(Bsdl *bsdl, int32_t type, List twin_groups, Place place)
{
    return model_new(bsdl,
                     TwinGroupEntry{.type = type, .twin_groups = twin_groups.head, .place = place});
}

// The list is in place from its first entry on: a file that ends inside the statement keeps what
// was read of it.
List grouped_ports_append(Bsdl *bsdl, List entries, TwinGroupEntry *entry)
{
    List longer = model_append(bsdl, entries, entry);
    bsdl->data->grouped_ports = longer.head;
    return longer;
}

void grouped_ports_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo Grouped port identification statement");
}

void grouped_ports_passed(Bsdl *bsdl)
{
    statement_passed(bsdl, "\tGrouped port identification statement passed");
}

void grouped_ports_skipped(Bsdl *bsdl)
{
    bsdl->data->grouped_ports = nullptr;
    statement_skipped(bsdl, "Skipping grouped_port due to errors");
}

// --------------------------------------------------------------------------------------- look-ups

static uint32_t count_groups(const BsdlData *data)
{
    uint32_t count = 0;
    for (const TwinGroupEntry *entry : items<TwinGroupEntry>(data->grouped_ports))
        count += list_length(entry->twin_groups);
    return count;
}

static Lookups *group_lookups(Bsdl *bsdl)
{
    Lookups *lookups = lookups_of(bsdl);
    if (lookups->group_members.built)
        return lookups;
    Arena *arena = &lookups->arena;
    uint32_t count = count_groups(bsdl->data);
    index_start(&lookups->group_members, arena, size_t{2} * count);
    index_start(&lookups->associated_ports, arena, count);
    lookups->group_table = arena_array<TwinGroup *>(arena, count);
    if (!lookups->group_table)
        return lookups;
    uint32_t filled = 0;
    for (const TwinGroupEntry *entry : items<TwinGroupEntry>(bsdl->data->grouped_ports))
        for (TwinGroup *group : items<TwinGroup>(entry->twin_groups))
            lookups->group_table[filled++] = group;
    // From the end, so that each group finds the next one of its associated port in place.
    while (filled-- > 0) {
        TwinGroup *group = lookups->group_table[filled];
        index_first(&lookups->group_members, port_key(group->representative), filled);
        index_first(&lookups->group_members, port_key(group->associated), filled);
        uint32_t next = index_last(&lookups->associated_ports, port_key(group->associated), filled);
        group->next_of_associated = next == INDEX_NONE ? nullptr : lookups->group_table[next];
    }
    return lookups;
}

bool port_in_groups(Bsdl *bsdl, const PortId *port)
{
    if (!bsdl->data->grouped_ports || !port)
        return false;
    return index_find(&group_lookups(bsdl)->group_members, port_key(port)) != INDEX_NONE;
}

TwinGroup *first_group_of_associated(Bsdl *bsdl, const PortId *port)
{
    if (!bsdl->data->grouped_ports || !port)
        return nullptr;
    Lookups *lookups = group_lookups(bsdl);
    uint32_t first = index_find(&lookups->associated_ports, port_key(port));
    return first == INDEX_NONE ? nullptr : lookups->group_table[first];
}

// ------------------------------------------------------------------------------------------- check

namespace
{

// What the cells of a bit say about its being an associated port.
enum : uint32_t {
    CELL_ALLOWED = 1, // one that may stand there comes before the first that may not
    CELL_FORBIDDEN = 2,
};

} // namespace

static uint32_t judge_cells(Bsdl *bsdl, const PortId *port)
{
    uint32_t verdict = 0;
    for (const CellEntry *cell = first_cell_of_bit(bsdl, port); cell;
         cell = next_cell_of_bit(bsdl, cell)) {
        int32_t function = cell->cell_spec->function;
        if (function != CELL_FUNCTION_CLOCK && function != CELL_FUNCTION_OBSERVE_ONLY)
            return verdict | CELL_FORBIDDEN;
        verdict |= CELL_ALLOWED;
    }
    return verdict;
}

// Judged once per bit: a port may be the associated one of many groups and have many cells.
static uint32_t cells_of_associated(Bsdl *bsdl, Index *verdicts, const PortId *port)
{
    uint32_t known = index_find(verdicts, port_bit_key(port));
    if (known != INDEX_NONE)
        return known;
    uint32_t verdict = judge_cells(bsdl, port);
    index_first(verdicts, port_bit_key(port), verdict);
    return verdict;
}

static bool is_usable(const PinEntry *pin) { return pin && pin->pin_type != PIN_TYPE_LINKAGE; }

static Place representative_place(const TwinGroup *group)
{
    return port_place(group->representative, group->place.begin, 1);
}

static Place associated_place(const TwinGroup *group)
{
    return port_place(group->associated, group->place.begin,
                      port_tokens(group->representative) + 2);
}

static int32_t check_twin_group(Bsdl *bsdl, Index *verdicts, const TwinGroup *group)
{
    const PortId *representative = group->representative;
    const PortId *associated = group->associated;
    PinEntry *associated_pin = find_pin_entry(bsdl, associated);
    PinEntry *representative_pin = find_pin_entry(bsdl, representative);
    int32_t result = BSDL_RESULT_OK;

    if (is_usable(associated_pin))
        associated_pin->pin_function = PIN_FUNCTION_ASSOCIATED;
    else
        result |= rule_error({"associated-port-missing", associated_place(group)},
                             "<associated port> %s does not exist in <logical portmap>",
                             port_text(associated));

    if (is_usable(representative_pin))
        representative_pin->pin_function = PIN_FUNCTION_REPRESENTATIVE;
    else
        result |= rule_error({"representative-port-missing", representative_place(group)},
                             "<representative port> %s does not exist in <logical portmap>",
                             port_text(representative));

    // From here on texts about the associated port take their form from the representative.
    const char *associated_text =
        port_text(associated->name, representative->subscripted, associated->subscript);

    if (associated_pin && representative_pin &&
        associated_pin->pin_type != representative_pin->pin_type)
        result |= rule_error({"twin-pin-types-differ", group->place},
                             "Pin types of <twin group> (%s, %s) must match",
                             port_text(representative), associated_text);

    if (bsdl->strict && !first_cell_of_bit(bsdl, representative))
        result |= rule_error({"representative-port-without-cell", representative_place(group)},
                             "<representative port> '%s' must appear in <boundary-scan register>",
                             port_text(representative));

    uint32_t cells = cells_of_associated(bsdl, verdicts, associated);
    if (associated_pin && (cells & CELL_ALLOWED))
        associated_pin->pin_function = PIN_FUNCTION_ASSOCIATED_WITH_CELL;
    if (cells & CELL_FORBIDDEN)
        result |= rule_error({"associated-port-with-cell", associated_place(group)},
                             "<associated port> '%s' cannot appear in <boundary-scan register>",
                             associated_text);

    if (associated_pin)
        associated_pin->twin = representative_pin;
    if (representative_pin)
        representative_pin->twin = associated_pin;
    return result;
}

static int32_t check_twin_group_entry(Bsdl *bsdl, Index *verdicts, TwinGroupEntry *entry)
{
    int32_t count = static_cast<int32_t>(list_count(&entry->group_walk, entry->twin_groups));
    rule_message(BSDL_LEVEL_INFO, 4, {"twin-groups-checked", entry->place},
                 entry->type == TWIN_TYPE_CURRENT ? "\t\tDifferential_Current (%i twin_groups)"
                                                  : "\t\tDifferential_Voltage (%i twin_groups)",
                 count);
    int32_t result = BSDL_RESULT_OK;
    for (const TwinGroup *group : items<TwinGroup>(entry->twin_groups))
        result |= check_twin_group(bsdl, verdicts, group);
    return result;
}

int32_t bsdl_check_grouped_port(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    const BsdlData *data = bsdl->data;
    if (!data->grouped_ports)
        return BSDL_RESULT_ABSENT;
    if (!data->logical_ports || !data->pins || !data->boundary_register)
        return BSDL_RESULT_MISSING;

    Scratch scratch;
    if (scratch.failed)
        return BSDL_RESULT_FAILED;
    Index verdicts;
    index_start(&verdicts, &scratch, count_groups(data));
    int32_t result = BSDL_RESULT_OK;
    for (TwinGroupEntry *entry : items<TwinGroupEntry>(data->grouped_ports))
        result |= check_twin_group_entry(bsdl, &verdicts, entry);
    return check_end(bsdl, result, &scratch);
}

// ----------------------------------------------------------------------------------------- queries

static bool has_groups(const Bsdl *bsdl) { return bsdl && bsdl->data && bsdl->data->grouped_ports; }

static PortGroup *show_group(BsdlData *data, const TwinGroupEntry *entry, const TwinGroup *group)
{
    data->port_group_current = {.type = entry->type,
                                .representative = group->representative,
                                .associated = group->associated};
    return &data->port_group_current;
}

int32_t bsdlGetNbrOfPortGroups(Bsdl *bsdl)
{
    if (!has_groups(bsdl))
        return -1;
    uint32_t count = 0;
    for (TwinGroupEntry *entry : items<TwinGroupEntry>(bsdl->data->grouped_ports)) {
        count += list_count(&entry->group_walk, entry->twin_groups);
    }
    return static_cast<int32_t>(count);
}

PortGroup *bsdlGetFirstPortGroup(Bsdl *bsdl)
{
    if (!has_groups(bsdl))
        return nullptr;
    BsdlData *data = bsdl->data;
    auto *entry = static_cast<TwinGroupEntry *>(
        list_first(&data->grouped_port_walk, data->grouped_ports, &data->port_group_cursor));
    entry->group_cursor = 1;
    return show_group(data, entry, static_cast<TwinGroup *>(entry->twin_groups->data));
}

PortGroup *bsdlGetNextPortGroup(Bsdl *bsdl)
{
    if (!has_groups(bsdl))
        return nullptr;
    BsdlData *data = bsdl->data;
    ListWalk *walk = &data->grouped_port_walk;
    auto *entry =
        static_cast<TwinGroupEntry *>(list_at(walk, data->grouped_ports, data->port_group_cursor));
    if (entry && entry->group_cursor >= list_count(&entry->group_walk, entry->twin_groups)) {
        entry = static_cast<TwinGroupEntry *>(
            list_at(walk, data->grouped_ports, ++data->port_group_cursor));
        if (entry)
            entry->group_cursor = 0;
    }
    if (!entry)
        return nullptr;
    auto *group = static_cast<TwinGroup *>(
        list_at(&entry->group_walk, entry->twin_groups, entry->group_cursor++));
    return show_group(data, entry, group);
}
