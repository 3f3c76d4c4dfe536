// The rules that compare a cell with the logical port that it names. Then what the cells say about
// the pins: which pins have no cell, and which can be disabled.
//
// Two cells of one number are one stage of the register (a merged cell), so "another cell" is
// always one of another number here. The rules look for other cells of a port in five ways, which
// come first. A pass over the table keeps a few positions for each port, and these answer all five.

#include "boundary/boundary.h"
#include "frame/check.h"
#include "frame/texts.h"
#include "ports/ports.h"

#include <cstring>

namespace
{

constexpr uint32_t NO_CELL = UINT32_MAX;

// Two positions of a set of cells: of its first cell, and of the first cell that has another number
// than that. For any n, the first cell whose number is not n is one of the two.
struct FirstCells {
    uint32_t first;
    uint32_t other;
};

// What the searches need to know of the cells of one port.
struct PortCells {
    FirstCells all;
    FirstCells inputs; // INPUT, OBSERVE_ONLY
    // The searches for a driver of an observed output start after the head of the table.
    FirstCells outputs;           // OUTPUT2, OUTPUT3
    FirstCells drivers;           // BIDIR, OUTPUT2, OUTPUT3
    uint32_t first_not_observing; // any function but OBSERVE_ONLY
};

// The search for a driver at the representatives of a port, which is the associated port of one or
// more differential pairs.
struct TwinSearch {
    bool made;
    uint32_t last_found;  // by the search made last
    const TwinGroup *hit; // whose representative has an OUTPUT2 or OUTPUT3 cell
};

} // namespace

struct CellSearch {
    CellEntry *const *table;
    uint32_t count;
    uint32_t *place;   // of the port's first cell: where its PortCells are, NO_CELL for a lone cell
    PortCells *ports;  // of the ports with several cells
    TwinSearch *twins; // at the position of the port's first cell; NULL without port groups
    uint32_t *later_driver; // for each cell; see later_driver_of()
};

// ------------------------------------------------------------------------------------ the searches

static bool is_output(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    return function == CELL_FUNCTION_OUTPUT2 || function == CELL_FUNCTION_OUTPUT3;
}

static bool is_input_or_observer(const CellEntry *cell)
{
    int32_t function = cell->cell_spec->function;
    return function == CELL_FUNCTION_INPUT || function == CELL_FUNCTION_OBSERVE_ONLY;
}

static const CellEntry *cell_at(const CellSearch *search, uint32_t position)
{
    return position == NO_CELL ? nullptr : search->table[position];
}

// The first cell of the set that is another one than the given cell.
static const CellEntry *other_cell(const CellSearch *search, const FirstCells &set,
                                   const CellEntry *cell)
{
    const CellEntry *first = cell_at(search, set.first);
    return first && first->cell_number == cell->cell_number ? cell_at(search, set.other) : first;
}

static void put_ahead(const CellSearch *search, FirstCells *set, const CellEntry *cell)
{
    const CellEntry *first = cell_at(search, set->first);
    if (first && first->cell_number != cell->cell_number)
        set->other = set->first;
    set->first = cell->position;
}

// Called for the cells of a port from the last to the first, so that the sets hold what comes
// later.
static void put_cell_ahead(const CellSearch *search, PortCells *port, const CellEntry *cell)
{
    put_ahead(search, &port->all, cell);
    if (is_input_or_observer(cell))
        put_ahead(search, &port->inputs, cell);
    if (cell->position == 0)
        return;
    if (is_output(cell))
        put_ahead(search, &port->outputs, cell);
    if (is_output(cell) || cell->cell_spec->function == CELL_FUNCTION_BIDIR)
        put_ahead(search, &port->drivers, cell);
    if (cell->cell_spec->function != CELL_FUNCTION_OBSERVE_ONLY)
        port->first_not_observing = cell->position;
}

// `first` is the first cell of the port. Most ports have only one cell, which needs no record.
static PortCells cells_from(const CellSearch *search, const CellEntry *first)
{
    if (search->place[first->position] != NO_CELL)
        return search->ports[search->place[first->position]];
    PortCells lone;
    std::memset(&lone, 0xFF, sizeof lone);
    put_cell_ahead(search, &lone, first);
    return lone;
}

static PortCells cells_of_port(const CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    return cells_from(search, first_cell_of_port(bsdl, cell->cell_spec->port));
}

// The next cell after the given one that also drives its port. For a BIDIR cell a BIDIR cell
// counts as well, for an output cell it does not.
static const CellEntry *later_driver_of(const CellSearch *search, const CellEntry *cell)
{
    return cell_at(search, search->later_driver[cell->position]);
}

// Whether the last row of the table is another cell of the port.
static bool other_cell_ends_table(const CellSearch *search, const CellEntry *cell)
{
    const CellEntry *last = search->table[search->count - 1];
    return last->cell_spec->port && last->cell_number != cell->cell_number &&
           port_key(last->cell_spec->port) == port_key(cell->cell_spec->port);
}

// The first cell of a representative port that does more than observe. For an OUT port the search
// starts at the second row of the table, for a BUFFER port at the first.
static uint32_t find_representative_driver(const CellSearch *search, Bsdl *bsdl,
                                           const PortId *representative, int32_t pin_type)
{
    const CellEntry *first = first_cell_of_port(bsdl, representative);
    if (!first)
        return NO_CELL;
    if (pin_type == PIN_TYPE_BUFFER && first->position == 0 &&
        first->cell_spec->function != CELL_FUNCTION_OBSERVE_ONLY)
        return 0;
    return cells_from(search, first).first_not_observing;
}

// Depends on the port alone and is kept, since a port may have many pairs and many cells.
static const TwinSearch *search_twins(CellSearch *search, Bsdl *bsdl, const PortId *port,
                                      int32_t pin_type)
{
    TwinSearch *twins = &search->twins[first_cell_of_port(bsdl, port)->position];
    if (twins->made)
        return twins;
    *twins = {.made = true, .last_found = NO_CELL, .hit = nullptr};
    // A BUFFER port of an IEEE 1149.6 description is judged by its last pair.
    bool first_hit_decides = pin_type != PIN_TYPE_BUFFER || !bsdl->data->aio;
    for (const TwinGroup *group = first_group_of_associated(bsdl, port); group;
         group = next_group_of_associated(group)) {
        twins->last_found =
            find_representative_driver(search, bsdl, group->representative, pin_type);
        const CellEntry *found = cell_at(search, twins->last_found);
        if (found && is_output(found)) {
            twins->hit = group;
            if (first_hit_decides)
                break;
        }
    }
    return twins;
}

// --------------------------------------------------------------------------- making what they need

// The cells are entered from the last to the first, so the port holds what comes later.
static void enter_cell(CellSearch *search, PortCells *port, const CellEntry *cell)
{
    const bool bidir = cell->cell_spec->function == CELL_FUNCTION_BIDIR;
    const CellEntry *later = other_cell(search, bidir ? port->drivers : port->outputs, cell);
    search->later_driver[cell->position] = later ? later->position : NO_CELL;
    put_cell_ahead(search, port, cell);
}

// The number of ports with several cells; a cell that names the bit in another form counts with
// them.
static uint32_t give_places(CellSearch *search, Bsdl *bsdl)
{
    uint32_t places = 0;
    for (uint32_t position = 0; position < search->count; position++) {
        const CellEntry *cell = search->table[position];
        search->place[position] = NO_CELL;
        search->later_driver[position] = NO_CELL;
        if (cell->cell_spec->port && first_cell_of_port(bsdl, cell->cell_spec->port) == cell &&
            next_cell_of_bit(bsdl, cell))
            search->place[position] = places++;
    }
    return places;
}

// NULL when memory runs out.
static CellSearch *cell_search_of(Bsdl *bsdl)
{
    Lookups *lookups = cell_lookups(bsdl);
    if (!lookups || lookups->cell_search)
        return lookups ? lookups->cell_search : nullptr;
    auto *search = arena_new<CellSearch>(&lookups->arena);
    search->table = lookups->cell_table;
    search->count = lookups->cell_count;
    search->place = arena_array<uint32_t>(&lookups->arena, search->count);
    search->later_driver = arena_array<uint32_t>(&lookups->arena, search->count);
    if (bsdl->data->grouped_ports)
        search->twins = arena_array<TwinSearch>(&lookups->arena, search->count);
    if (lookups->arena.failed)
        return nullptr;
    const uint32_t places = give_places(search, bsdl);
    search->ports = arena_array<PortCells>(&lookups->arena, places);
    if (lookups->arena.failed)
        return nullptr;
    std::memset(search->ports, 0xFF, places * sizeof *search->ports);
    for (uint32_t position = places ? search->count : 0; position-- > 0;) {
        const CellEntry *cell = search->table[position];
        if (!cell->cell_spec->port)
            continue;
        const uint32_t place =
            search->place[first_cell_of_port(bsdl, cell->cell_spec->port)->position];
        if (place != NO_CELL)
            enter_cell(search, &search->ports[place], cell);
    }
    lookups->cell_search = search;
    return search;
}

// ------------------------------------------------------------------------------ resolving the port

static int32_t check_subscript(const CellEntry *cell, const PinSpec *pin_spec)
{
    const PortId *port = cell->cell_spec->port;
    bool has_range = pin_spec->range_direction != RANGE_NONE;
    if (!port->subscripted) {
        if (has_range)
            return rule_error({"cell-port-is-vector", cell_place(cell, CELL_PORT)},
                              "<cell number> %i with <port id> '%s' is defined as BIT_VECTOR in "
                              "<logical pin map>",
                              cell->cell_number, shown(port->name));
        return 0;
    }
    if (!has_range)
        return rule_error({"cell-port-is-bit", cell_place(cell, CELL_PORT)},
                          "<cell number> %i with <port id> '%s' is defined as single BIT in "
                          "<logical pin map>",
                          cell->cell_number, port_text(port));
    int32_t start = pin_spec->range_start, end = pin_spec->range_end;
    if (start < end && (port->subscript < start || port->subscript > end))
        return rule_error({"cell-port-subscript-range", cell_place(cell, CELL_SUBSCRIPT)},
                          "<subscript> of <cell number> %i with <port id> '%s' Must be within "
                          "range [%i-%i]", /* as is */
                          cell->cell_number, port_text(port), start, end);
    if (start >= end && (port->subscript < end || port->subscript > start))
        return rule_error({"cell-port-subscript-range", cell_place(cell, CELL_SUBSCRIPT)},
                          "<subscript> of <cell number> %i with <port id> '%s' must Be within "
                          "range [%i-%i]", /* as is */
                          cell->cell_number, port_text(port), end, start);
    return 0;
}

// -------------------------------------------------------------------------- rules of several types

static int32_t two_drivers(Rule rule, const CellEntry *cell, const CellEntry *other,
                           const char *functions)
{
    return rule_error(rule,
                      "<cell number> %i with <function> %s and <cell number> %i with <function> "
                      "%s, both <port id> %s cannot both have %s function",
                      cell->cell_number, cell_function_name(cell->cell_spec->function),
                      other->cell_number, cell_function_name(other->cell_spec->function),
                      port_text(cell->cell_spec->port), functions);
}

// Another cell of the port has to drive an output that is only observed. For the associated port of
// a differential pair, a cell of the representative port may drive it. When no driver is found the
// last row of the table decides: there a search to the end of the table stops.
static bool is_observed_output_driven(CellSearch *search, Bsdl *bsdl, const CellEntry *cell,
                                      int32_t pin_type)
{
    const PortId *port = cell->cell_spec->port;
    const PortCells &cells = cells_of_port(search, bsdl, cell);
    const CellEntry *first = other_cell(search, cells.all, cell);
    if (first && is_output(first))
        return true;

    bool has_aio = bsdl->data->aio != nullptr;
    if (search->twins && (!bsdl->strict || has_aio)) {
        const TwinSearch *twins = search_twins(search, bsdl, port, pin_type);
        if (twins->hit && !has_aio)
            rule_warning({"observe-only-cell-of-associated-port", cell_place(cell, CELL_FUNCTION)},
                         "'observe only' cell %i connected to associated output port '%s'",
                         cell->cell_number, port_text(twins->hit->associated));
        if (twins->hit && pin_type == PIN_TYPE_BUFFER && has_aio)
            return twins->last_found != NO_CELL;
        if (twins->hit)
            return true;
    }
    return other_cell(search, cells.outputs, cell) || other_cell_ends_table(search, cell);
}

// ------------------------------------------------------------------------------ rules by port type

static int32_t check_cell_of_in_port(const CellEntry *cell)
{
    if (is_input_or_observer(cell) || cell->cell_spec->function == CELL_FUNCTION_CLOCK)
        return 0;
    return rule_error({"in-port-cell-function", cell_place(cell, CELL_FUNCTION)},
                      "<cell type> IN in <logical pin map> means that <cell number> %i with <port "
                      "id> %s must have function INPUT, CLOCK or OBSERVE_ONLY",
                      cell->cell_number, port_text(cell->cell_spec->port));
}

static int32_t check_cell_of_out_port(CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    const PortId *port = cell->cell_spec->port;
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_OUTPUT2:
    case CELL_FUNCTION_OUTPUT3:
        if (const CellEntry *other = later_driver_of(search, cell))
            return two_drivers({"out-port-two-drivers", cell_place(cell, CELL_FUNCTION)}, cell,
                               other, "an OUTPUT");
        return 0;
    case CELL_FUNCTION_OBSERVE_ONLY:
        if (!is_observed_output_driven(search, bsdl, cell, PIN_TYPE_OUT))
            return rule_error({"out-port-without-driver", cell_place(cell, CELL_PORT)},
                              "<port id> %s must have a cell with an OUTPUT function",
                              port_text(port));
        return 0;
    default:
        return rule_error({"out-port-cell-function", cell_place(cell, CELL_FUNCTION)},
                          "<cell type> OUT in <logical pin map> means that <cell number> %i with "
                          "<port id> %s must have function OUTPUT2 or OUTPUT3",
                          cell->cell_number, port_text(port));
    }
}

static int32_t check_cell_of_inout_port(CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    const PortId *port = cell->cell_spec->port;
    int32_t result = 0;
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_BIDIR:
        if (const CellEntry *other = later_driver_of(search, cell))
            result |= two_drivers({"inout-port-two-drivers", cell_place(cell, CELL_FUNCTION)}, cell,
                                  other, "a BIDIR/OUTPUT2/OUTPUT3");
        return result;
    case CELL_FUNCTION_OUTPUT2:
    case CELL_FUNCTION_OUTPUT3:
        if (const CellEntry *other = later_driver_of(search, cell))
            result |= two_drivers({"inout-port-two-drivers", cell_place(cell, CELL_FUNCTION)}, cell,
                                  other, "an OUTPUT2/OUTPUT3");
        if (!other_cell(search, cells_of_port(search, bsdl, cell).inputs, cell))
            result |= rule_strict(
                bsdl, {"inout-port-without-input", cell_place(cell, CELL_PORT)},
                "<cell number> %i <function> %s: at least one other <cell entry> with <port id> %s "
                "must have function INPUT or OBSERVE_ONLY but a different <cell number>",
                cell->cell_number, cell_function_name(cell->cell_spec->function), port_text(port));
        return result;
    case CELL_FUNCTION_INPUT:
    case CELL_FUNCTION_OBSERVE_ONLY:
        return 0;
    default:
        return rule_error({"inout-port-cell-function", cell_place(cell, CELL_FUNCTION)},
                          "<cell type> INOUT in <logical pin map> means that <cell number> %i with "
                          "<port id> %s must have function BIDIR, OUTPUT2, OUTPUT3 INPUT or "
                          "OBSERVE_ONLY", /* as is: no comma after OUTPUT3 */
                          cell->cell_number, port_text(port));
    }
}

static int32_t check_output_of_buffer_port(CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    int32_t result = 0;
    if (cell->disable_spec)
        result |= rule_error({"buffer-port-disable-spec", cell_place(cell, CELL_DISABLE_SPEC)},
                             "<cell type> BUFFER in <logical pin map> means that <cell number> %i "
                             "with <port id> %s cannot contain a <disable spec>",
                             cell->cell_number, port_text(cell->cell_spec->port));
    // Unlike for the other port types the first other cell alone counts, wherever it stands, so two
    // drivers are reported from both sides.
    const CellEntry *other = other_cell(search, cells_of_port(search, bsdl, cell).all, cell);
    if (other && other->cell_spec->function == CELL_FUNCTION_OUTPUT2)
        result |= two_drivers({"buffer-port-two-drivers", cell_place(cell, CELL_FUNCTION)}, cell,
                              other, "an OUTPUT2");
    return result;
}

static int32_t check_observer_of_buffer_port(CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    // A driver anywhere after the first row is enough, and so is another cell of the port in the
    // last row. In both cases the pairs are not searched, so their warning is not sent.
    if (other_cell(search, cells_of_port(search, bsdl, cell).outputs, cell) ||
        other_cell_ends_table(search, cell) ||
        is_observed_output_driven(search, bsdl, cell, PIN_TYPE_BUFFER))
        return 0;
    // The name alone, also for one bit of a vector.
    return rule_error({"buffer-port-without-driver", cell_place(cell, CELL_PORT)},
                      "<port id> %s must have a cell with an OUTPUT2 function",
                      shown(cell->cell_spec->port->name));
}

static int32_t check_cell_of_buffer_port(CellSearch *search, Bsdl *bsdl, const CellEntry *cell)
{
    switch (cell->cell_spec->function) {
    case CELL_FUNCTION_OUTPUT2:
        return check_output_of_buffer_port(search, bsdl, cell);
    case CELL_FUNCTION_OBSERVE_ONLY:
        return check_observer_of_buffer_port(search, bsdl, cell);
    default:
        return rule_error({"buffer-port-cell-function", cell_place(cell, CELL_FUNCTION)},
                          "<cell type> BUFFER in <logical pin map> means that <cell number> %i "
                          "with <port id> %s must have function OUTPUT2",
                          cell->cell_number, port_text(cell->cell_spec->port));
    }
}

int32_t check_cell_port(Bsdl *bsdl, CellEntry *cell)
{
    const PortId *port = cell->cell_spec->port;
    CellSearch *search = cell_search_of(bsdl);
    if (!search)
        return BSDL_RESULT_FAILED;
    const PinSpec *pin_spec = find_port_name(bsdl, port->name);
    if (!pin_spec)
        return rule_error(
            {"cell-port-undefined", cell_place(cell, CELL_PORT)},
            "<cell number> %i with <port id> '%s' is not defined in <logical pin map>",
            cell->cell_number, port_text(port));

    // A reference that does not fit the declaration is still held to the rules of the port's type.
    int32_t result = check_subscript(cell, pin_spec);
    switch (pin_spec->pin_type) {
    case PIN_TYPE_IN:
        return result | check_cell_of_in_port(cell);
    case PIN_TYPE_OUT:
        return result | check_cell_of_out_port(search, bsdl, cell);
    case PIN_TYPE_INOUT:
        return result | check_cell_of_inout_port(search, bsdl, cell);
    case PIN_TYPE_BUFFER:
        return result | check_cell_of_buffer_port(search, bsdl, cell);
    default:
        return result | rule_error({"linkage-port-cell", cell_place(cell, CELL_PORT)},
                                   "<cell number> %i with <port id> '%s' cannot have <pin type> "
                                   "LINKAGE in <logical pin map>",
                                   cell->cell_number, port_text(port));
    }
}

// ---------------------------------------------------------------------------------------- the pins

int32_t check_missing_cells(Bsdl *bsdl)
{
    bool failed = false;
    PortNameCursor names = {};
    for (PinEntry *pin : items<PinEntry>(bsdl->data->pins)) {
        if (pin->pin_type == PIN_TYPE_LINKAGE || pin->pin_function != PIN_FUNCTION_NONE ||
            first_cell_of_bit(bsdl, pin->port_id))
            continue;
        if (!bsdl->strict && pin->pin_type >= PIN_TYPE_IN && pin->pin_type <= PIN_TYPE_BUFFER)
            pin->pin_type += PIN_TYPE_IN_NO_CELL - PIN_TYPE_IN;
        else
            failed = true;
        const PinSpec *declaration = find_port_name(bsdl, pin->port_id->name);
        // After the first pin that fails, all messages that follow are errors.
        rule_message(failed ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, failed ? 2 : 3,
                     {"pin-without-cell", port_name_place(&names, declaration, pin->port_id->name)},
                     "<port name> '%s' with <pin type> %s does not exist in <boundary register "
                     "statement>",
                     port_text(pin->port_id), port_type_name(pin->pin_type));
    }
    // Without memory for the look-ups every pin seemed to have no cell.
    failed |= lookups_of(bsdl)->arena.failed;
    return failed ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

void note_disabled_pins(Bsdl *bsdl)
{
    // The first cell decides, so for a merged or an observed port the order of the table matters.
    for (PinEntry *pin : items<PinEntry>(bsdl->data->pins)) {
        const CellEntry *cell = first_cell_of_port(bsdl, pin->port_id);
        pin->has_disable = cell && cell->disable_spec;
    }
}
