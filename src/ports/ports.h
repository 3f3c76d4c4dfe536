#pragma once

#include "frame/lookup.h"
#include "frame/messages.h"
#include "frame/model.h"

#include <cstddef>

// ---------------------------------------------------------------------------------- logical ports

enum RangeDirection : int32_t {
    RANGE_NONE = 0, // a single bit
    RANGE_TO = 1,
    RANGE_DOWNTO = 2,
};

// As written: a reversed range is found when the pins are built.
struct PortRange {
    int32_t start;
    int32_t direction;
    int32_t end;
};

// One declaration of the port clause.
struct PinSpec {
    GSList *names;
    int32_t pin_type;
    int32_t range_start;
    int32_t range_direction;
    int32_t range_end;
    Place place;
};

// One port bit of the device. The pins of a port stand side by side in one array, in the order of
// its range.
struct PinEntry {
    PortId *port_id;
    int32_t has_disable;
    int32_t pin_type;
    int32_t pin_function;
    uint32_t port_bits; // of the port that begins with this pin; fills a gap of the layout
    PinEntry *twin;
    const char *physical_name; // NULL when the mapping leaves the port out
};
static_assert(offsetof(PinEntry, has_disable) == 8 && offsetof(PinEntry, pin_type) == 12 &&
              offsetof(PinEntry, pin_function) == 16 && offsetof(PinEntry, twin) == 24 &&
              offsetof(PinEntry, physical_name) == 32);

// How many tokens a reference takes: name ( subscript ).
inline uint32_t port_tokens(const PortId *port) { return port && port->subscripted ? 4 : 1; }
// The place of a reference whose first token is so many after an offset.
Place port_place(const PortId *port, uint32_t offset, uint32_t behind);

PortId *port_id_whole(Bsdl *bsdl, const char *name);
PortId *port_id_bit(Bsdl *bsdl, const char *name, int32_t subscript);

PinSpec *pin_spec_new(Bsdl *bsdl, List names, int32_t pin_type, PortRange range, Place place);
void logical_ports_passed(Bsdl *bsdl, List pin_specs);
void logical_ports_skipped(Bsdl *bsdl);

// The first pin that agrees with the port in its name, in having a subscript, and in the subscript.
// NULL without one, without a pin list or for NULL.
PinEntry *find_pin_entry(Bsdl *bsdl, const PortId *port);

// The first declaration that holds the name, whatever its range; NULL without one or for NULL.
PinSpec *find_port_name(Bsdl *bsdl, const char *name);

// The place of a name in its declaration. The search goes on from the name before, since names
// mostly come in order. Starts as {}.
struct PortNameCursor {
    const PinSpec *spec;
    const GSList *name;
    TokenCursor token;
};
Place port_name_place(PortNameCursor *cursor, const PinSpec *spec, const char *name);

// The words for a PinEntry's pin_function.
const char *pin_function_name(int32_t function);

// ----------------------------------------------------------------------------------- pin mappings

// The pins of one port in a mapping.
struct PortMap {
    const char *port_name;
    int32_t vector; // 1 for a list in brackets, of however many pins
    uint32_t at;    // place of the port's name
    GSList *pin_ids;
};

struct PinMapEntry {
    const char *name;
    GSList *port_maps; // PortMap; NULL when the string was not read
    Place place;
};

PortMap *port_map_new(Bsdl *bsdl, bool vector, List pin_ids);
PortMap *port_map_named(Bsdl *bsdl, const char *port_name, PortMap *port_map, uint32_t at);
PinMapEntry *pin_map_passed(Bsdl *bsdl, const char *name, List port_maps, Place place);
PinMapEntry *pin_map_skipped(Bsdl *bsdl); // NULL: the place in the list stays empty
void pin_maps_skipped(Bsdl *bsdl);

// The port maps of one mapping by name and form.
struct PortMapIndex {
    PortMap **bits;    // fold number -> first port map without brackets
    PortMap **vectors; // fold number -> first port map with brackets
};

// In the given arena, which is marked as failed when it cannot be had.
PortMapIndex port_map_index(Bsdl *bsdl, Arena *arena, const PinMapEntry *pin_map);

// The pin identifiers of the first port map of that name and form; NULL without one or for NULL.
GSList *find_port_map(const PortMapIndex *index, const char *name, bool vector);

// Expands the port clause with the pins of the mapping into `pins`. False (and no list) after an
// error that has been reported.
bool build_pin_list(Bsdl *bsdl, const PinMapEntry *pin_map);

// ------------------------------------------------------------------------------------ port groups

struct TwinGroup {
    PortId *representative;
    PortId *associated;
    TwinGroup *next_of_associated; // see first_group_of_associated()
    Place place;
};

struct TwinGroupEntry {
    int32_t type;
    GSList *twin_groups;
    uint32_t group_cursor;
    Place place;
    ListWalk group_walk;
};

TwinGroup *twin_group_new(Bsdl *bsdl, PortId *representative, PortId *associated, Place place);
TwinGroupEntry *twin_group_entry_new(Bsdl *bsdl, int32_t type, List twin_groups, Place place);
List grouped_ports_append(Bsdl *bsdl, List entries, TwinGroupEntry *entry);
void grouped_ports_absent(Bsdl *bsdl);
void grouped_ports_passed(Bsdl *bsdl);
void grouped_ports_skipped(Bsdl *bsdl);

// Whether the port is a member of some group.
bool port_in_groups(Bsdl *bsdl, const PortId *port);

// The groups in which the port is the associated one, in file order.
TwinGroup *first_group_of_associated(Bsdl *bsdl, const PortId *port);
inline TwinGroup *next_group_of_associated(const TwinGroup *group)
{
    return group->next_of_associated;
}

// ------------------------------------------------------------------------------- test access port

struct ClockRecord {
    double frequency;
    int32_t halt_state;
};

struct ScanPorts {
    PortId *tck;
    PortId *tdi;
    PortId *tms;
    PortId *tdo;
    PortId *trst;
    ClockRecord *clock;
    Place tck_place;
    Place tdi_place;
    Place tms_place;
    Place tdo_place;
    Place trst_place;
};

// In the order in which the statements are checked.
enum TapPort { TAP_TDI, TAP_TDO, TAP_TRST, TAP_TMS, TAP_TCK };

ClockRecord *clock_record_new(Bsdl *bsdl, double frequency, int32_t halt_state);
void tap_clock_passed(Bsdl *bsdl, PortId *port, ClockRecord *clock, Place place);
void tap_port_passed(Bsdl *bsdl, TapPort which, PortId *port, Place place);

// --------------------------------------------------------------------------------- compliance

struct ComplianceRecord {
    GSList *patterns;
    uint32_t pattern_cursor;
    GSList *ports; // PortId
    uint32_t port_cursor;
    Place place;
    ListWalk pattern_walk;
    ListWalk port_walk;
};

ComplianceRecord *compliance_new(Bsdl *bsdl, List ports, List patterns);
void compliance_absent(Bsdl *bsdl);
void compliance_passed(Bsdl *bsdl, ComplianceRecord *record, Place place);
void compliance_skipped(Bsdl *bsdl);
