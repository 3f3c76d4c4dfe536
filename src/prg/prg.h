#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

// The ISC family of one part type.
struct PrgPart {
    const char *part_name; // NULL when the family names none
    IscData *isc;
};

struct PrgData {
    const char *design_name;
    const char *revision;
    int32_t frequency;
    GSList *serial_channels; // PrgChannel
    int32_t tap_cursor;
    GSList *program_references; // PrgProgramSpec
    int32_t prog_part_cursor;
    GSList *isc_components;   // PrgPart, one for each ISC family
    GSList *other_components; // where part types are sought next; nothing is entered here
    PrgPart *selected_isc_component;
    void *selected_other_component;
    GSList *component_names;    // PrgComponentSetting: the first of each part name
    const char *component_name; // the pending part name of the family being read
};
