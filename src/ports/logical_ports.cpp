#include "frame/check.h"
#include "ports/ports.h"
#include "scan/scanner.h"

#include <cstdlib>

// ----------------------------------------------------------------------------------- while parsing

PortId *port_id_whole(Bsdl *bsdl, const char *name)
{
    return model_new(bsdl, PortId{.name = name});
}

PortId *port_id_bit(Bsdl *bsdl, const char *name, int32_t subscript)
{
    return model_new(bsdl, PortId{.name = name, .subscripted = 1, .subscript = subscript});
}

PinSpec *pin_spec_new(Bsdl *bsdl, List names, int32_t pin_type, PortRange range, Place place)
{
    bsdl->scan_mode = SCAN_MODE_NONE;
    return model_new(bsdl, PinSpec{.names = names.head,
                                   .pin_type = pin_type,
                                   .range_start = range.start,
                                   .range_direction = range.direction,
                                   .range_end = range.end,
                                   .place = place});
}

void logical_ports_passed(Bsdl *bsdl, List pin_specs)
{
    bsdl->data->logical_ports = pin_specs.head;
    statement_passed(bsdl, "\tLogical port description passed");
}

void logical_ports_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping logical port due to errors");
}

// --------------------------------------------------------------------------------------- look-ups

// A bit of a port that is declared once is found by its distance from the first one; only ports
// that are declared several times need their bits in an index.
static void index_pins(Bsdl *bsdl, Lookups *lookups)
{
    Arena *arena = &lookups->arena;
    uint32_t count = list_count(&bsdl->data->pin_walk, bsdl->data->pins);
    uint32_t names = bsdl->names.folds + 1;
    lookups->pin_of_name = arena_array<uint32_t>(arena, names);
    if (!lookups->pin_of_name)
        return;
    lookups->pin_names = names;

    auto *pins = static_cast<PinEntry *>(bsdl->data->pins->data);
    uint32_t repeated = 0;
    for (uint32_t i = 0; i < count; i += pins[i].port_bits) {
        uint32_t *first = &lookups->pin_of_name[name_fold(pins[i].port_id->name)];
        if (!*first) {
            *first = i + 1;
            continue;
        }
        if (*first != PIN_NAME_REPEATED)
            repeated += pins[*first - 1].port_bits;
        repeated += pins[i].port_bits;
        *first = PIN_NAME_REPEATED;
    }
    if (!repeated)
        return;
    index_start(&lookups->repeated_pins, arena, repeated);
    for (uint32_t i = 0; i < count; i++)
        if (lookups->pin_of_name[name_fold(pins[i].port_id->name)] == PIN_NAME_REPEATED)
            index_first(&lookups->repeated_pins, port_key(pins[i].port_id), i);
}

PinEntry *find_pin_entry(Bsdl *bsdl, const PortId *port)
{
    if (!bsdl->data->pins || !port)
        return nullptr;
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->pin_of_name)
        index_pins(bsdl, lookups);
    uint32_t fold = name_fold(port->name);
    if (fold >= lookups->pin_names || !lookups->pin_of_name[fold])
        return nullptr;

    auto *pins = static_cast<PinEntry *>(bsdl->data->pins->data);
    uint32_t place = lookups->pin_of_name[fold];
    if (place == PIN_NAME_REPEATED) {
        uint32_t found = index_find(&lookups->repeated_pins, port_key(port));
        return found == INDEX_NONE ? nullptr : &pins[found];
    }
    PinEntry *first = &pins[place - 1];
    if (first->port_id->subscripted != port->subscripted)
        return nullptr;
    int64_t distance = std::llabs(int64_t{port->subscript} - first->port_id->subscript);
    if (distance >= first->port_bits || first[distance].port_id->subscript != port->subscript)
        return nullptr;
    return &first[distance];
}

PinSpec *find_port_name(Bsdl *bsdl, const char *name)
{
    if (!bsdl->data->logical_ports || !name)
        return nullptr;
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->spec_of_name) {
        uint32_t names = bsdl->names.folds + 1;
        lookups->spec_of_name = arena_array<PinSpec *>(&lookups->arena, names);
        if (!lookups->spec_of_name)
            return nullptr;
        lookups->spec_names = names;
        for (PinSpec *spec : items<PinSpec>(bsdl->data->logical_ports)) {
            for (const char *each : items<char>(spec->names)) {
                PinSpec **first = &lookups->spec_of_name[name_fold(each)];
                if (!*first)
                    *first = spec;
            }
        }
    }
    uint32_t fold = name_fold(name);
    return fold < lookups->spec_names ? lookups->spec_of_name[fold] : nullptr;
}

const char *pin_function_name(int32_t function)
{
    switch (function) {
    case PIN_FUNCTION_TDI:
        return "tap scan TDI";
    case PIN_FUNCTION_TDO:
        return "tap scan TDO";
    case PIN_FUNCTION_TCK:
        return "tap scan TCK";
    case PIN_FUNCTION_TMS:
        return "tap scan TMS";
    case PIN_FUNCTION_TRST:
        return "tap scan TRST";
    case PIN_FUNCTION_REPRESENTATIVE:
        return "representative differential port";
    case PIN_FUNCTION_ASSOCIATED:
    case PIN_FUNCTION_ASSOCIATED_WITH_CELL:
        return "associated differential port";
    case PIN_FUNCTION_COMPLIANCE:
        return "compliance enable";
    default:
        return "none";
    }
}

// ----------------------------------------------------------------------------------- the pin list

namespace
{

// A longer list is not built: a range of a few characters may ask for billions of pins.
constexpr int64_t MOST_PINS = 4'000'000;

struct PinArrays {
    PinEntry *pins; // NULL while the list is only judged
    PortId *ports;
    GList *links;
    int64_t count;
};

} // namespace

Place port_place(const PortId *port, uint32_t offset, uint32_t behind)
{
    return tokens_place(offset, behind, behind + port_tokens(port) - 1);
}

static bool seek_name(PortNameCursor *cursor, const char *name)
{
    for (; cursor->name; cursor->name = cursor->name->next, cursor->token.behind += 2)
        if (same_name(static_cast<const char *>(cursor->name->data), name))
            return true;
    return false;
}

Place port_name_place(PortNameCursor *cursor, const PinSpec *spec, const char *name)
{
    if (spec && spec == cursor->spec && seek_name(cursor, name))
        return cursor_place(&cursor->token);
    *cursor = {spec, spec ? spec->names : nullptr, {spec ? spec->place.begin : 0, 0}};
    return seek_name(cursor, name) ? cursor_place(&cursor->token) : Place{};
}

// Of `names : type BIT_VECTOR ( start TO end )` the range.
static Place range_place(const PinSpec *spec)
{
    const uint32_t range = 2 * list_length(spec->names) + 3;
    return tokens_place(spec->place.begin, range, range + 2);
}

static int64_t range_width(const PinSpec *spec)
{
    return std::llabs(int64_t{spec->range_end} - spec->range_start) + 1;
}

static int64_t pins_declared(const BsdlData *data)
{
    int64_t count = 0;
    for (const PinSpec *spec : items<PinSpec>(data->logical_ports)) {
        for (const GSList *name = spec->names; name && count <= MOST_PINS; name = name->next)
            count += range_width(spec);
    }
    return count;
}

static bool range_in_order(const char *name, const PinSpec *spec)
{
    // The bounds of a reversed `downto` are exchanged under the words that fit `to`.
    bool down = spec->range_direction == RANGE_DOWNTO;
    int32_t low = down ? spec->range_end : spec->range_start;
    int32_t high = down ? spec->range_start : spec->range_end;
    if (low <= high)
        return true;
    rule_error({"port-range-reversed", range_place(spec)},
               "<port> '%s': end value (%i) of port range must be greater than start (%i)", name,
               high, low);
    return false;
}

// The name of the port in a mapping.
static Place mapped_place(const PinMapEntry *pin_map, const char *name)
{
    for (const PortMap *port_map : items<PortMap>(pin_map->port_maps))
        if (port_map->vector && same_name(port_map->port_name, name))
            return token_place(port_map->at);
    return {};
}

static bool pin_count_matches(const PinMapEntry *pin_map, const char *name, const PinSpec *spec,
                              const GSList *pin_ids)
{
    if (!pin_ids)
        return true;
    int64_t mapped = list_length(pin_ids);
    if (mapped == range_width(spec))
        return true;
    rule_error(
        {"pin-count-mismatch", mapped_place(pin_map, name)},
        "<pin map> '%s': number of pins of <bit vector> %s is not equal in <pin mapping> (%i) "
        "and <logical port map> (%i)",
        pin_map->name, name, static_cast<int32_t>(mapped), static_cast<int32_t>(range_width(spec)));
    return false;
}

static void append_pin(PinArrays *arrays, const char *name, const PinSpec *spec, int32_t subscript,
                       const char *physical_name)
{
    int64_t at = arrays->count++;
    if (!arrays->pins)
        return;
    PinEntry *pin = &arrays->pins[at];
    pin->port_id = &arrays->ports[at];
    *pin->port_id = {
        .name = name, .subscripted = spec->range_direction != RANGE_NONE, .subscript = subscript};
    pin->pin_type = spec->pin_type;
    pin->physical_name = physical_name;
    GList *link = &arrays->links[at];
    link->data = pin;
    if (at > 0) {
        link->prev = link - 1;
        link[-1].next = link;
    }
}

static bool append_port(PinArrays *arrays, const PinMapEntry *pin_map, const PortMapIndex *index,
                        const char *name, const PinSpec *spec)
{
    bool vector = spec->range_direction != RANGE_NONE;
    if (vector && !range_in_order(name, spec))
        return false;
    const GSList *pin_id = find_port_map(index, name, vector);
    if (vector && !pin_count_matches(pin_map, name, spec, pin_id))
        return false;
    int64_t width = range_width(spec);
    if (arrays->count + width > MOST_PINS) {
        rule_message(BSDL_LEVEL_ERROR, 0, {"pin-list-too-long", range_place(spec)}, "Memory error");
        return false;
    }
    if (!arrays->pins) {
        arrays->count += width;
        return true;
    }
    arrays->pins[arrays->count].port_bits = static_cast<uint32_t>(width);
    int32_t step = spec->range_direction == RANGE_DOWNTO ? -1 : 1;
    for (int64_t i = 0; i < width; i++) {
        append_pin(arrays, name, spec, static_cast<int32_t>(spec->range_start + step * i),
                   pin_id ? static_cast<const char *>(pin_id->data) : nullptr);
        pin_id = pin_id ? pin_id->next : nullptr;
    }
    return true;
}

static bool append_ports(Bsdl *bsdl, PinArrays *arrays, const PinMapEntry *pin_map,
                         const PortMapIndex *index)
{
    for (const PinSpec *spec : items<PinSpec>(bsdl->data->logical_ports)) {
        for (const char *name : items<char>(spec->names))
            if (!append_port(arrays, pin_map, index, name, spec))
                return false;
    }
    return true;
}

bool build_pin_list(Bsdl *bsdl, const PinMapEntry *pin_map)
{
    BsdlData *data = bsdl->data;
    data->pins = nullptr;
    list_changed(&data->pin_walk);
    lookups_drop(bsdl);
    if (!data->pin_maps || !data->logical_ports || !pin_map)
        return false;

    Scratch scratch;
    if (scratch.failed)
        return false;
    PinArrays arrays = {};
    int64_t count = pins_declared(data);
    if (count <= MOST_PINS) {
        // Side by side, so that a port's pins are found by their distance from its first.
        auto length = static_cast<size_t>(count);
        arrays.pins = arena_array<PinEntry>(&bsdl->arena, length);
        arrays.ports = arena_array<PortId>(&bsdl->arena, length);
        arrays.links = arena_array<GList>(&bsdl->arena, length);
    }
    PortMapIndex index = port_map_index(bsdl, &scratch, pin_map);
    bool built = !bsdl->arena.failed && !scratch.failed &&
                 append_ports(bsdl, &arrays, pin_map, &index) && arrays.pins;
    if (built)
        data->pins = arrays.links;
    return built;
}

// ------------------------------------------------------------------------------------------- check

// Equal names in one declaration are not compared with each other.
static int32_t check_names_unique(const Bsdl *bsdl, Arena *scratch)
{
    auto *last = arena_array<const PinSpec *>(scratch, bsdl->names.folds + size_t{1});
    if (!last)
        return BSDL_RESULT_FAILED;
    for (const PinSpec *spec : items<PinSpec>(bsdl->data->logical_ports)) {
        for (const char *name : items<char>(spec->names))
            last[name_fold(name)] = spec;
    }
    int32_t result = BSDL_RESULT_OK;
    for (const PinSpec *spec : items<PinSpec>(bsdl->data->logical_ports)) {
        TokenCursor token = {spec->place.begin, 0};
        for (const char *name : items<char>(spec->names)) {
            if (last[name_fold(name)] != spec)
                result |= rule_error({"port-name-not-unique", cursor_place(&token)},
                                     "<port name> '%s' is not unique", name);
            token.behind += 2;
        }
    }
    return result;
}

int32_t bsdl_check_logical_port(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    if (!bsdl->data->logical_ports)
        return BSDL_RESULT_MISSING;
    Scratch scratch;
    if (scratch.failed)
        return BSDL_RESULT_FAILED;
    return check_end(bsdl, check_names_unique(bsdl, &scratch), &scratch);
}

// ----------------------------------------------------------------------------------------- queries

static Iteration pins_of(const Bsdl *bsdl)
{
    BsdlData *data = bsdl ? bsdl->data : nullptr;
    return data ? Iteration{&data->pin_walk, data->pins, &data->pin_cursor} : Iteration{};
}

int32_t bsdlGetNbrOfPins(Bsdl *bsdl)
{
    Iteration pins = pins_of(bsdl);
    return pins.head ? iteration_count(pins) : -1;
}

PinEntry *bsdlGetFirstPin(Bsdl *bsdl)
{
    // Without a list the cursor stays, unlike in the other iterations.
    Iteration pins = pins_of(bsdl);
    return pins.head ? iteration_first<PinEntry>(pins) : nullptr;
}

PinEntry *bsdlGetNextPin(Bsdl *bsdl) { return iteration_next<PinEntry>(pins_of(bsdl)); }

PortId *bsdlGetPinPortID(PinEntry *pin) { return pin ? pin->port_id : nullptr; }

int32_t bsdlGetPinType(PinEntry *pin) { return pin ? pin->pin_type : PIN_TYPE_NONE; }

int32_t bsdlGetPinFunction(PinEntry *pin) { return pin ? pin->pin_function : PIN_FUNCTION_NONE; }

const char *bsdlGetPinPhysicalName(PinEntry *pin) { return pin ? pin->physical_name : ""; }
