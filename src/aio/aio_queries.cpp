// Queries on the statements of IEEE 1149.6. All of them hand out records of the handle's one
// AioQueryState, which the next query overwrites.

#include "aio/aio.h"
#include "boundary/boundary.h"
#include "ports/ports.h"

static AioData *aio_of(Bsdl *h) { return h && h->data && bsdlIsAio(h) ? h->data->aio : nullptr; }

// Made by the first query that needs it; NULL without the statements.
static AioQueryState *state_of(Bsdl *h)
{
    AioData *aio = aio_of(h);
    if (aio && !aio->query_state)
        aio->query_state = model_new<AioQueryState>(h);
    return aio ? aio->query_state : nullptr;
}

int32_t bsdlAioConformance(Bsdl *h)
{
    const AioData *aio = aio_of(h);
    return aio ? aio->conformance : AIO_CONFORMANCE_NONE;
}

AioPulseResult *bsdlAioExtestPulse(Bsdl *h)
{
    const AioData *aio = aio_of(h);
    if (!aio || !aio->extest || !aio->extest->pulse)
        return nullptr;
    const AioPulse *pulse = aio->extest->pulse;
    AioPulseResult *result = &state_of(h)->pulse;
    result->cycle_count = pulse->clock_cycles ? pulse->clock_cycles->cycle_count : 0;
    result->time = pulse->time;
    return result;
}

AioTrainResult *bsdlAioExtestTrain(Bsdl *h)
{
    const AioData *aio = aio_of(h);
    if (!aio || !aio->extest || !aio->extest->train)
        return nullptr;
    const AioTrain *train = aio->extest->train;
    AioTrainResult *result = &state_of(h)->train;
    result->pulse_count = train->pulse_count;
    result->max_time = train->max_time;
    return result;
}

// ------------------------------------------------------------------------- the walk over the pins

static void set_input_cell(AioPinResult *result, const GSList *cell)
{
    if (cell) {
        result->flags |= AIO_FLAG_INPUT_CELL;
        result->input_cell = GPOINTER_TO_INT(cell->data);
    } else {
        result->flags &= ~uint32_t{AIO_FLAG_INPUT_CELL};
        result->input_cell = 0;
    }
}

// Fields whose bit stays clear are left as they were.
static void add_time_constants(AioPinResult *result, const AioTimeConstants *constants,
                               bool has_lp_time)
{
    if (!constants)
        return;
    if (constants->select_cell != AIO_NO_SELECT_CELL) {
        result->flags |= AIO_FLAG_SELECT_CELL;
        result->select_cell = constants->select_cell;
    }
    if (constants->hp) {
        result->flags |= AIO_FLAG_HP_TIME;
        result->hp_time = constants->hp->hp_time;
        if (constants->hp->on_chip)
            result->flags |= AIO_FLAG_ON_CHIP;
    }
    if (has_lp_time) {
        result->flags |= AIO_FLAG_LP_TIME;
        result->lp_time = constants->lp_time;
    }
}

static bool is_vector(const AioPort *port)
{
    return port->pin_spec && port->pin_spec->range_direction != RANGE_NONE;
}

// Goes to the port under port_cursor: its first bit, its first cell.
static void enter_port(AioQueryState *state)
{
    const auto *port = static_cast<const AioPort *>(state->port_cursor->data);
    state->cell_cursor = port->input_cells;
    set_input_cell(&state->pin, state->cell_cursor);
    state->port = *port->port_id;
    if (!port->port_id->subscripted && is_vector(port)) {
        state->port.subscripted = 1;
        state->port.subscript = port->pin_spec->range_start;
    }
    state->pin.port = &state->port;
}

static AioPinResult *enter_description(AioQueryState *state)
{
    if (!state->pin_cursor)
        return nullptr;
    const auto *info = static_cast<const AioPinInfo *>(state->pin_cursor->data);
    state->port_cursor = info->ports;
    state->pin.flags = 0;
    enter_port(state);
    const AioTimeConstants *constants = info->time_constants;
    add_time_constants(&state->pin, constants, constants && constants->lp_time > 0.0F);
    return &state->pin;
}

int32_t bsdlAioNbrOfPinBehaviorDescriptions(Bsdl *h)
{
    AioData *aio = aio_of(h);
    return aio ? static_cast<int32_t>(list_count(&aio->pin_behavior_walk, aio->pin_behaviors)) : -1;
}

AioPinResult *bsdlAioFirstPinBehavior(Bsdl *h)
{
    AioQueryState *state = state_of(h);
    if (!state)
        return nullptr;
    state->pin_cursor = h->data->aio->pin_behaviors;
    return enter_description(state);
}

AioPinResult *bsdlAioNextPinBehavior(Bsdl *h)
{
    AioQueryState *state = state_of(h);
    if (!state)
        return nullptr;
    if (state->pin_cursor)
        state->pin_cursor = state->pin_cursor->next;
    return enter_description(state);
}

AioPinResult *bsdlAioNextACPort(Bsdl *h)
{
    AioQueryState *state = state_of(h);
    if (state && state->port_cursor)
        state->port_cursor = state->port_cursor->next;
    if (!state || !state->port_cursor)
        return nullptr;
    enter_port(state);
    return &state->pin;
}

// False past the last bit.
static bool next_bit(PortId *bit, const PinSpec *range)
{
    if (range->range_direction == RANGE_TO) {
        if (bit->subscript >= range->range_end)
            return false;
        bit->subscript++;
    } else {
        if (bit->subscript <= range->range_end)
            return false;
        bit->subscript--;
    }
    return true;
}

AioPinResult *bsdlAioNextInputCell(Bsdl *h)
{
    AioQueryState *state = state_of(h);
    if (!state || !state->port_cursor)
        return nullptr;
    // The cells move on even where no bit follows.
    if (state->cell_cursor)
        state->cell_cursor = state->cell_cursor->next;
    const auto *port = static_cast<const AioPort *>(state->port_cursor->data);
    if (port->port_id->subscripted || !is_vector(port) || !next_bit(&state->port, port->pin_spec))
        return nullptr;
    set_input_cell(&state->pin, state->cell_cursor);
    return &state->pin;
}

// ---------------------------------------------------------------------------- the search for a pin

// A port with n input cells left stands for n bits, from the first bit of its range on. The search
// tries the ports in order and takes one cell from a port for each bit that it passes. So all ports
// before the one that it finds are left without cells, and `begun` keeps the next search from
// walking over them again.

static void build_table(Bsdl *bsdl, AioPortTable *table)
{
    const AioData *aio = bsdl->data->aio;
    table->built = true;
    for (const AioPinInfo *info : items<AioPinInfo>(aio->pin_behaviors))
        table->count += list_length(info->ports);
    Arena *arena = &bsdl->arena;
    table->ports = arena_array<AioPort *>(arena, table->count);
    table->infos = arena_array<const AioPinInfo *>(arena, table->count);
    if (!table->ports || !table->infos) {
        table->count = 0;
        return;
    }
    index_start(&table->by_name, arena, table->count);
    index_start(&table->by_port, arena, table->count);
    uint32_t at = 0;
    for (const AioPinInfo *info : items<AioPinInfo>(aio->pin_behaviors)) {
        for (AioPort *port : items<AioPort>(info->ports)) {
            table->ports[at] = port;
            table->infos[at] = info;
            index_first(&table->by_name, name_fold(port->port_id->name), at);
            index_first(&table->by_port, port_key(port->port_id), at);
            at++;
        }
    }
}

static bool is_bit(const AioPort *port, const PortId *wanted, int64_t bit)
{
    if (!same_name(port->port_id->name, wanted->name))
        return false;
    if (port_key(port->port_id) == port_key(wanted))
        return true;
    return wanted->subscripted && is_vector(port) && wanted->subscript == bit;
}

// Among the ports without cells: each stands for itself and for the first bit of its range. All
// ports of one name have one range.
static uint32_t find_begun(const AioPortTable *table, const PortId *wanted)
{
    uint32_t named = index_find(&table->by_name, name_fold(wanted->name));
    if (named >= table->begun)
        return INDEX_NONE;
    const AioPort *port = table->ports[named];
    if (is_vector(port) && is_bit(port, wanted, port->pin_spec->range_start))
        return named;
    uint32_t itself = index_find(&table->by_port, port_key(wanted));
    return itself < table->begun ? itself : INDEX_NONE;
}

// Uses up the cells of a port up to the wanted bit; false when they end before it.
static bool find_in_cells(AioPort *port, const PortId *wanted)
{
    int64_t bit = port->pin_spec ? port->pin_spec->range_start : 0;
    int step = port->pin_spec && port->pin_spec->range_direction == RANGE_TO ? 1 : -1;
    for (;; bit += step) {
        if (is_bit(port, wanted, bit))
            return true;
        if (port->input_cells)
            port->input_cells = port->input_cells->next;
        if (!port->input_cells)
            return false;
    }
}

static uint32_t find_port(AioPortTable *table, const PortId *wanted)
{
    uint32_t found = find_begun(table, wanted);
    if (found != INDEX_NONE)
        return found;
    for (; table->begun < table->count; table->begun++)
        if (find_in_cells(table->ports[table->begun], wanted))
            return table->begun;
    return INDEX_NONE;
}

AioPinResult *bsdlAioThisPinBehavior(Bsdl *h, const PortId *port)
{
    AioQueryState *state = state_of(h);
    if (!state || !port || !port->name)
        return nullptr;
    if (!state->table.built)
        build_table(h, &state->table);
    PortId wanted = *port;
    wanted.name = model_name(h, port->name);
    uint32_t at = find_port(&state->table, &wanted);
    if (at == INDEX_NONE)
        return nullptr;
    state->port = wanted;
    state->pin.port = &state->port;
    state->pin.flags = 0;
    set_input_cell(&state->pin, state->table.ports[at]->input_cells);
    const AioTimeConstants *constants = state->table.infos[at]->time_constants;
    add_time_constants(&state->pin, constants, constants && constants->lp_time != 0.0F);
    return &state->pin;
}
