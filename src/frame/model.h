#pragma once

#include "base/arena.h"
#include "base/list.h"
#include "base/names.h"
#include "frame/places.h"
#include "tarnlet/bsdl.h"

#include <cstdint>
#include <string_view>

struct AioData;
struct BoundaryRegister;
struct ComplianceRecord;
struct Ebst;
struct InstructionRegister;
struct IntestSpec;
struct IscData;
struct IscFlowReading;
struct Lookups;
struct OptionalRegisters;
struct PinMapEntry;
struct PrgPart;
struct ScanState;
struct RunbistSpec;
struct ScanPorts;

// The contents of one BSDL description. Lists are in file order; the records under them stand in
// the headers of their families.
struct BsdlData {
    const char *component_name; // a PPC/PRG file: the design's name
    GSList *logical_ports;      // PinSpec
    const char *standard_name;  // "STD_1149_1_1990" and so on
    GSList *user_packages;      // UserPackage
    uint32_t dot_all_file_cursor;
    GSList *package_specs; // PackageSpec
    uint32_t dot_all_spec_cursor;
    // The use statements of IEEE 1532 and 1149.6: what demands the statements of the extensions.
    Place isc_use_place;
    Place aio_use_place;
    int32_t conformance;     // 0, 1 (1990), 3 (1993), 4 (2001)
    Place conformance_place; // of its value; without the statement, of the standard that is used
    GSList *pin_maps;        // PinMapEntry; an element is NULL after an error
    Place default_package_place; // in the generic parameter; none when the host names it
    uint32_t pin_map_cursor;
    GSList *grouped_ports; // TwinGroupEntry
    uint32_t port_group_cursor;
    PortGroup port_group_current; // what the port group iteration returns
    ScanPorts *scan_port;         // always present
    ComplianceRecord *compliance;
    InstructionRegister *instruction_register; // always present
    OptionalRegisters *id_registers;           // always present
    GSList *register_access;                   // RegisterEntry
    BoundaryRegister *boundary_register;
    RunbistSpec *runbist;
    IntestSpec *intest;
    GList *extensions; // ExtensionEntry
    const char *design_warning;
    uint32_t check_state;  // CHECK_STATE_..., see frame/check.h
    uint32_t check_passed; // CHECK_PASSED_..., see frame/check.h
    IscData *isc;
    AioData *aio;
    GSList *corvane_class;            // CorvaneClassEntry
    const char *current_package;      // while a package file is read
    const char *current_package_body; // while a package file is read
    const char *package_file;         // full path of the current package file
    PinMapEntry *selected_pin_map;
    GList *pins; // PinEntry; built by bsdl_check_all_pin_maps()
    uint32_t pin_cursor;
    GSList *cell_descs; // CellDesc
    uint32_t cell_desc_cursor;

    // Where the iterations stand; tails of the lists that grow statement by statement.
    ListWalk package_spec_walk;
    ListWalk user_package_walk;
    ListWalk pin_map_walk;
    ListWalk pin_walk;
    ListWalk cell_desc_walk;
    ListWalk grouped_port_walk;
    GSList *package_specs_tail;
    GSList *user_packages_tail;
    GList *extensions_tail;
    GSList *cell_descs_tail;
    GSList *corvane_class_tail;

    IscFlowReading *isc_flow_reading; // what reading ISC_Flow keeps; made at its first need
};

// The contents of one PPC/PRG data file; empty in a BSDL reading.
struct PrgData;

// What to do with a handle when the running call on it has ended.
enum GiveBack : uint8_t { KEEP, FREE, RELEASE };

// One reading of one file.
struct Bsdl {
    const char *file_name;
    GSList *package_dirs; // links ours, strings the caller's: used during the reading alone
    const char *default_package;
    const char *ebst_file_name;
    uint32_t standards; // bits of BSDL_STANDARD_BIT_*
    int32_t strict;
    int32_t fast_read;         // 2 once the parser skips quoted strings
    uint64_t standards_filter; // bits of `standards` that the scanner ignores
    int32_t scan_mode;         // ScanMode
    int32_t error_count;
    BsdlContext *context;
    BsdlData *data;
    PrgData *prg;
    Ebst *ebst;

    Arena arena;        // everything under this record
    NameTable names;    // of the whole reading
    SourceMap sources;  // where the texts' lines begin
    ScanState *reading; // scanner and string store, while readBsdl runs
    Lookups *lookups;   // indexes over the model, made when first asked for
    Bsdl *released;     // the next handle that was given back
    bool in_call;       // see frame/call.h
    GiveBack give_back;
    char *kept_texts; // what outlives freeBsdl, in one block
};

template <class T> T *model_new(Bsdl *bsdl) { return arena_new<T>(&bsdl->arena); }

template <class T> T *model_new(Bsdl *bsdl, const T &fields)
{
    T *record = model_new<T>(bsdl);
    *record = fields;
    return record;
}

inline const char *model_text(Bsdl *bsdl, std::string_view text)
{
    return arena_text(&bsdl->arena, text.data(), text.size());
}

inline const char *model_name(Bsdl *bsdl, std::string_view name)
{
    return name_intern(&bsdl->names, name);
}

inline List model_list(Bsdl *bsdl, const void *data) { return list_start(&bsdl->arena, data); }

inline List model_append(Bsdl *bsdl, List list, const void *data)
{
    return list_append(&bsdl->arena, list, data);
}

// Appends to a list that grows statement by statement, so that its tail is kept in a record.
void model_append_to(Bsdl *bsdl, GSList **head, GSList **tail, const void *data);

// The same for the two lists that are doubly linked.
void model_append_linked(Bsdl *bsdl, GList **head, GList **tail, const void *data);
