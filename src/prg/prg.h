#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

// A list of a data file with what its queries need to go anywhere in it in one step: the records as
// an array and the place of each key. Made at the first query.
struct PrgTable {
    void **items;
    uint32_t count;
    Index by_key;
};

// The part types of a data file: one for each family of IEEE 1532 statements.
struct PrgPart {
    const char *part_name; // NULL when no statement of the family names it
    IscData *isc;
    Place place;
};

// A program reference, which begins with what callers see of it.
struct PrgProgram {
    PrgProgramSpec spec;
    Place place; // of its part type
};

struct PrgChannel {
    int32_t channel_id; // the number after TAP
    uint32_t component_cursor;
    GSList *settings; // PrgComponentSetting
    Place place;
    PrgTable setting_table; // by part name
};

struct PrgData {
    const char *design_name;
    const char *revision;
    int32_t frequency;
    GSList *serial_channels; // PrgChannel
    uint32_t tap_cursor;
    GSList *program_references; // PrgProgramSpec of PrgProgram
    uint32_t prog_part_cursor;
    GSList *isc_components; // PrgPart, in file order
    PrgPart *selected_isc_component;
    const char *component_name; // of the family that is being read; NULL until it names its part

    List isc_component_list; // isc_components with its end
    PrgTable channel_table;  // by channel_id
    PrgTable program_table;  // by part name
    PrgTable type_table;     // isc_components by part name
};

// The files of one program; NULL for one that is not given.
struct PrgFiles {
    const char *in_file;
    const char *out_file;
};

void design_declared(Bsdl *bsdl, const char *name);
// Another name than the declared one is reported; reading goes on.
void design_named(Bsdl *bsdl, const char *name);
void design_revision_passed(Bsdl *bsdl, const char *revision);
void design_revision_skipped(Bsdl *bsdl);
void frequency_passed(Bsdl *bsdl, int32_t frequency);

const char *register_values_join(Bsdl *bsdl, List patterns);
PrgComponentSetting *component_setting_new(Bsdl *bsdl, const char *part_name,
                                           const char *instruction_name, const char *values);
PrgChannel *channel_new(Bsdl *bsdl, int32_t channel_id, List settings, Place place);
void serial_channels_absent(Bsdl *bsdl);
void serial_channels_passed(Bsdl *bsdl, List channels);
void serial_channels_skipped(Bsdl *bsdl);

int32_t program_type_jcs(int32_t number);
PrgProgramSpec *program_new(Bsdl *bsdl, int32_t program_type, const char *part_name,
                            const char *part_type, PrgFiles files, Place place);
void program_reference_passed(Bsdl *bsdl, List programs);

// One more family of IEEE 1532 statements has been read. What stands in the model now belongs to
// the part.
void isc_component_passed(Bsdl *bsdl, Place place);

// The part type of that name; NULL without one or for NULL.
PrgPart *find_part_type(Bsdl *bsdl, const char *name);
