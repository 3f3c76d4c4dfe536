#include "frame/check.h"
#include "ports/ports.h"
#include "scan/scanner.h"

// ----------------------------------------------------------------------------------- while parsing

PortMap *port_map_new(Bsdl *bsdl, bool vector, List pin_ids)
{
    return model_new(bsdl, PortMap{.vector = vector, .pin_ids = pin_ids.head});
}

PortMap *port_map_named(Bsdl *bsdl, const char *port_name, PortMap *port_map, uint32_t at)
{
    port_map->port_name = port_name;
    port_map->at = at;
    bsdl->scan_mode = SCAN_MODE_NONE;
    return port_map;
}

PinMapEntry *pin_map_passed(Bsdl *bsdl, const char *name, List port_maps, Place place)
{
    statement_passed(bsdl, "\tDevice package pin mappings statement passed");
    return model_new(bsdl, PinMapEntry{.name = name, .port_maps = port_maps.head, .place = place});
}

PinMapEntry *pin_map_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping port_mapping due to errors");
    return nullptr;
}

void pin_maps_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "skipping pin_mappings due to errors");
}

// --------------------------------------------------------------------------------------- look-ups

PortMapIndex port_map_index(Bsdl *bsdl, Arena *arena, const PinMapEntry *pin_map)
{
    PortMapIndex index = {};
    for (PortMap *port_map : items<PortMap>(pin_map->port_maps)) {
        if (arena->failed)
            break;
        PortMap ***table = port_map->vector ? &index.vectors : &index.bits;
        if (!*table)
            *table = arena_array<PortMap *>(arena, bsdl->names.folds + size_t{1});
        if (!*table)
            break;
        PortMap **first = &(*table)[name_fold(port_map->port_name)];
        if (!*first)
            *first = port_map;
    }
    return index;
}

GSList *find_port_map(const PortMapIndex *index, const char *name, bool vector)
{
    PortMap **table = vector ? index->vectors : index->bits;
    const PortMap *port_map = table && name ? table[name_fold(name)] : nullptr;
    return port_map ? port_map->pin_ids : nullptr;
}

// ---------------------------------------------------------------------------------- the selection

int32_t bsdl_check_generic(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    BsdlData *data = bsdl->data;
    if (!data->pin_maps)
        return BSDL_RESULT_MISSING;

    const char *package = bsdl->default_package;
    const Place place = place_or(data->default_package_place, entity_place());
    if (!package) {
        int32_t result =
            rule_message(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, bsdl->strict ? 1 : 2,
                         {"pin-mapping-unspecified", place},
                         "No default_device_package and no <pin mapping> name are specified");
        if (bsdl->strict)
            return result;
    }
    data->selected_pin_map = nullptr;
    for (PinMapEntry *pin_map : items<PinMapEntry>(data->pin_maps)) {
        // Without a package any name will do.
        if (pin_map && pin_map->name && (!package || same_text(pin_map->name, package))) {
            data->selected_pin_map = pin_map;
            return BSDL_RESULT_OK;
        }
    }

    bool multiple = data->pin_maps->next;
    bool warn = !bsdl->strict && !multiple;
    return rule_message(warn ? BSDL_LEVEL_WARNING : BSDL_LEVEL_ERROR, warn ? 2 : 1,
                        {"pin-mapping-missing", place}, "pin_mapping '%s' does not exist%s",
                        shown(package),
                        multiple && !bsdl->strict ? " and multiple pinmaps defined" : "");
}

// -------------------------------------------------------------------------------- one pin mapping

namespace
{

// What is known of a name, by its fold number.
enum : uint8_t {
    DECLARED_BIT = 1,
    DECLARED_VECTOR = 2,
    MAPPED_BIT = 4,
    MAPPED_VECTOR = 8,
    SEEN_PIN = 16,
};

// Shared by the checks of all mappings of a description.
struct MappingNames {
    uint8_t *known;
    const PinSpec **demanded; // the declarations that each mapping must cover: all but LINKAGE
    size_t demanded_count;
};

} // namespace

static bool mapping_names_start(Bsdl *bsdl, Arena *arena, MappingNames *names)
{
    *names = {};
    names->known = arena_array<uint8_t>(arena, bsdl->names.folds + size_t{1});
    names->demanded = arena_array<const PinSpec *>(arena, list_length(bsdl->data->logical_ports));
    if (!names->known || !names->demanded)
        return false;
    for (const PinSpec *spec : items<PinSpec>(bsdl->data->logical_ports)) {
        if (spec->pin_type != PIN_TYPE_LINKAGE)
            names->demanded[names->demanded_count++] = spec;
        uint8_t form = spec->range_direction == RANGE_NONE ? DECLARED_BIT : DECLARED_VECTOR;
        for (const char *name : items<char>(spec->names))
            names->known[name_fold(name)] |= form;
    }
    return true;
}

static int32_t check_port_map(MappingNames *names, const PortMap *port_map)
{
    int32_t result = BSDL_RESULT_OK;
    // After the name, a colon and a bracket.
    TokenCursor token = {port_map->at, port_map->vector ? 3U : 2U};
    for (const char *pin_id : items<char>(port_map->pin_ids)) {
        uint8_t *known = &names->known[name_fold(pin_id)];
        if (*known & SEEN_PIN)
            result |= rule_error({"pin-id-not-unique", cursor_place(&token)},
                                 "<pin id> '%s' is not unique (<port name> '%s')", pin_id,
                                 port_map->port_name);
        *known |= SEEN_PIN;
        token.behind += 2;
    }
    uint8_t *known = &names->known[name_fold(port_map->port_name)];
    if (!(*known & (port_map->vector ? DECLARED_VECTOR : DECLARED_BIT)))
        result |= rule_error({"mapped-port-undeclared", token_place(port_map->at)},
                             "<port name> %s (%s) not found in <logical port description>",
                             port_map->port_name, port_map->vector ? "bit vector" : "bit");
    *known |= port_map->vector ? MAPPED_VECTOR : MAPPED_BIT;
    return result;
}

static int32_t check_ports_mapped(const MappingNames *names, const PinMapEntry *pin_map)
{
    int32_t result = BSDL_RESULT_OK;
    for (size_t i = 0; i < names->demanded_count; i++) {
        const PinSpec *spec = names->demanded[i];
        bool bit = spec->range_direction == RANGE_NONE;
        PortNameCursor cursor = {};
        for (const char *name : items<char>(spec->names)) {
            if (names->known[name_fold(name)] & (bit ? MAPPED_BIT : MAPPED_VECTOR))
                continue;
            result |= rule_error({"port-not-mapped", port_name_place(&cursor, spec, name)},
                                 "<port name> %s (%s) not found in <pin mapping> %s", name,
                                 bit ? "bit" : "bit vector", pin_map->name);
            // Every mapping may lack every port. Without a reader for the messages, one is enough.
            if (!message_wanted(2))
                return result;
        }
    }
    return result;
}

static int32_t check_pin_map(MappingNames *names, const PinMapEntry *pin_map)
{
    rule_message(BSDL_LEVEL_PROGRESS, 3,
                 {"pin-mapping-checked", token_place(pin_map->place.begin, 1)},
                 "\tChecking pin_map '%s'", pin_map->name);
    int32_t result = BSDL_RESULT_OK;
    for (const PortMap *port_map : items<PortMap>(pin_map->port_maps))
        result |= check_port_map(names, port_map);
    result |= check_ports_mapped(names, pin_map);

    // Reset name by name: with many small mappings, clearing the whole table each time would be
    // slow.
    constexpr uint8_t of_mapping = MAPPED_BIT | MAPPED_VECTOR | SEEN_PIN;
    for (const PortMap *port_map : items<PortMap>(pin_map->port_maps)) {
        names->known[name_fold(port_map->port_name)] &= static_cast<uint8_t>(~of_mapping);
        for (const char *pin_id : items<char>(port_map->pin_ids))
            names->known[name_fold(pin_id)] &= static_cast<uint8_t>(~of_mapping);
    }
    return result;
}

int32_t bsdl_check_pin_map(Bsdl *bsdl, const char *name)
{
    if (!name)
        return BSDL_RESULT_MISSING;
    const Call call(bsdl);
    if (call.code)
        return call.code;
    if (!bsdl->data->pin_maps)
        return BSDL_RESULT_MISSING;
    for (const PinMapEntry *pin_map : items<PinMapEntry>(bsdl->data->pin_maps)) {
        if (!pin_map || !pin_map->name || !same_text(pin_map->name, name))
            continue;
        if (!bsdl->data->logical_ports)
            return BSDL_RESULT_MISSING;
        Scratch scratch;
        if (scratch.failed)
            return BSDL_RESULT_FAILED;
        MappingNames names;
        bool ready = mapping_names_start(bsdl, &scratch, &names);
        int32_t result = ready ? check_pin_map(&names, pin_map) : BSDL_RESULT_FAILED;
        return check_end(bsdl, result, &scratch);
    }
    // It is the package of the handle that is named, whatever the caller asked for.
    return rule_message(BSDL_LEVEL_ERROR, 1, {"pin-mapping-unknown", entity_place()},
                        "pin_mapping '%s' does not exist", shown(bsdl->default_package));
}

// ------------------------------------------------------------------------------- all pin mappings

static int32_t check_each_pin_map(Bsdl *bsdl, Arena *scratch)
{
    MappingNames names;
    auto *last = arena_array<const PinMapEntry *>(scratch, bsdl->names.folds + size_t{1});
    if (!last || !mapping_names_start(bsdl, scratch, &names))
        return BSDL_RESULT_FAILED;
    for (const PinMapEntry *pin_map : items<PinMapEntry>(bsdl->data->pin_maps))
        if (pin_map)
            last[name_fold(pin_map->name)] = pin_map;

    int32_t result = BSDL_RESULT_OK;
    for (const PinMapEntry *pin_map : items<PinMapEntry>(bsdl->data->pin_maps)) {
        if (!pin_map)
            continue;
        if (last[name_fold(pin_map->name)] != pin_map)
            result |= rule_error({"pin-mapping-not-unique", token_place(pin_map->place.begin, 1)},
                                 "<pin_map_name> %s is not unique", pin_map->name);
        result |= check_pin_map(&names, pin_map);
    }
    return result;
}

int32_t bsdl_check_all_pin_maps(Bsdl *bsdl)
{
    const Call call(bsdl);
    if (call.code)
        return call.code;
    BsdlData *data = bsdl->data;
    if (!data->pin_maps || !data->logical_ports)
        return BSDL_RESULT_MISSING;

    Scratch scratch;
    if (scratch.failed)
        return BSDL_RESULT_FAILED;
    int32_t result = check_end(bsdl, check_each_pin_map(bsdl, &scratch), &scratch);

    const PinMapEntry *used = data->selected_pin_map;
    if (!used) {
        if (bsdl->strict || data->pin_maps->next)
            return BSDL_RESULT_FAILED;
        used = static_cast<const PinMapEntry *>(data->pin_maps->data);
        if (used)
            rule_warning({"pin-mapping-first-used", token_place(used->place.begin, 1)},
                         "Using first available <pin_map> '%s' because none was specified",
                         used->name);
    }
    if (!build_pin_list(bsdl, used))
        result = BSDL_RESULT_FAILED;
    return result;
}

// ----------------------------------------------------------------------------------------- queries

static Iteration pin_maps_of(const Bsdl *bsdl)
{
    BsdlData *data = bsdl ? bsdl->data : nullptr;
    return data ? Iteration{&data->pin_map_walk, data->pin_maps, &data->pin_map_cursor}
                : Iteration{};
}

static const char *name_of(const PinMapEntry *pin_map) { return pin_map ? pin_map->name : nullptr; }

int32_t bsdlGetNbrOfPinMaps(Bsdl *bsdl) { return iteration_count(pin_maps_of(bsdl)); }

const char *bsdlGetFirstPinMap(Bsdl *bsdl)
{
    return name_of(iteration_first<PinMapEntry>(pin_maps_of(bsdl)));
}

const char *bsdlGetNextPinMap(Bsdl *bsdl)
{
    return name_of(iteration_next<PinMapEntry>(pin_maps_of(bsdl)));
}

const char *bsdlGetDefaultDevicePackage(Bsdl *bsdl)
{
    return bsdl ? bsdl->default_package : nullptr;
}
