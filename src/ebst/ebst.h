#pragma once

#include "base/list.h"
#include "frame/model.h"

struct CaptDesc;

// What the EBST file tells beside the model: pins, cells and the chain in the words of the file.

struct EbstPin {
    const char *number; // physical pin; NULL when the mapping leaves the port out
    const char *name;   // port in double quotes, "D(3)" for a bit of a vector
    int32_t type;       // EbstType
};

// A CELL block: one for each distinct name, which the first cell of that name makes.
struct EbstCell {
    const char *name;
    int32_t function;          // CellFunction; BIDIR_IN or BIDIR_OUT for BIDIR cells
    int32_t init_update;       // '0', '1' or 0 for none
    const CaptDesc **captures; // ends with NULL
};

// A row of the CHAIN_LIST. What is NULL stands as "-" in the file, but for the pin name.
struct EbstChainEntry {
    int32_t position;
    const char *cell_name;
    const char *pin_name;    // in double quotes; "-" without a port, NULL for a port no pin has
    const char *data_input;  // physical pin
    const char *data_output; // physical pin
    const int32_t *select_position;
    const int32_t *control_position;
    const char *disable_value;
};

struct Ebst {
    const char *component_name;
    const char *ebst_file_name; // when the data were made; the file goes by the handle's name
    int32_t boundary_length;
    GSList *pins; // EbstPin
    uint32_t pin_cursor;
    GSList *cells; // EbstCell
    GSList *chain; // EbstChainEntry
    ListWalk pin_walk;
};
