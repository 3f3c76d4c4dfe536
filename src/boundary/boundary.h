#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

struct CellDesc;

// ------------------------------------------------------------- the boundary register

struct CellSpec {
    const char *cell_name;
    const char *ebst_name; // set when the EBST data is made
    PortId *port;          // NULL for '*'
    int32_t function;      // CellFunction
    int32_t safe_bit;      // SafeBit; 0 after a refused value
};

struct DisableSpec {
    int32_t ccell;          // as written; compared without its sign
    int32_t disable_value;  // DisableValue; 0 after a refused value
    int32_t disable_result; // DisableResult
    int32_t control_seen;   // set by the check: the cell named is a control cell
};

// One row of the table. A register stage that two rows describe is a merged cell: two entries of
// one number. Up to the check only the later one is linked, to the first entry of its number.
struct CellEntry {
    uint32_t cell_number;
    CellEntry *merged_with;
    CellSpec *cell_spec; // always present
    DisableSpec *disable_spec;
    CellDesc *cell_desc; // set by the check
    uint32_t at;         // place of its number
    uint32_t position;   // in the table
};

struct BoundaryRegister {
    uint32_t boundary_length;
    GSList *cell_table; // CellEntry, in file order
    uint32_t cell_cursor;
    ListWalk walk;
    Place length_place;
    Place place;
};

// What stands in a row, for messages.
enum CellPart : uint32_t {
    CELL_NUMBER,
    CELL_NAME,
    CELL_PORT,
    CELL_SUBSCRIPT,
    CELL_FUNCTION,
    CELL_SAFE_BIT,
    CELL_CONTROL,
    CELL_DISABLE_VALUE,
    CELL_DISABLE_RESULT,
    CELL_DISABLE_SPEC,
};
Place cell_place(const CellEntry *cell, CellPart part);

void boundary_cells_passed(Bsdl *bsdl);
void boundary_cells_absent(Bsdl *bsdl);
void boundary_cells_skipped(Bsdl *bsdl);
void boundary_length_passed(Bsdl *bsdl);
void boundary_register_passed(Bsdl *bsdl, GSList *table);
void boundary_register_skipped(Bsdl *bsdl);
// The places are those of BOUNDARY_LENGTH and BOUNDARY_REGISTER.
void boundary_register_made(Bsdl *bsdl, int32_t length, List table, Place length_place,
                            Place place);

// A cell entry begins with its specification; number and disable specification come later.
CellEntry *cell_entry_new(Bsdl *bsdl, const char *name, PortId *port, int32_t function,
                          int32_t safe_bit);
CellEntry *cell_entry_numbered(CellEntry *entry, int32_t number, uint32_t at);
List cell_table_append(List table, CellEntry *entry);
DisableSpec *disable_spec_new(Bsdl *bsdl, int32_t ccell, int32_t value, int32_t result);

// Report a value that is not allowed; the table goes on.
int32_t safe_bit_from(Bsdl *bsdl, int32_t value);
int32_t control_cell_from(Bsdl *bsdl, int32_t number);
int32_t disable_value_from(Bsdl *bsdl, int32_t value);
int32_t disable_result_keeper(Bsdl *bsdl);

// The look-ups with `cell_table`, the entries as an array; NULL without a table.
Lookups *cell_lookups(Bsdl *bsdl);

// Entries in table order; NULL without one or without a boundary register. All compare names
// without regard to case.
CellEntry *find_cell(Bsdl *bsdl, uint32_t number);
// The port as the entry writes it: name, whether subscripted, subscript.
CellEntry *first_cell_of_port(Bsdl *bsdl, const PortId *port);
// Name and subscript alone, so that a scalar also finds the entries of its bit 0.
CellEntry *first_cell_of_bit(Bsdl *bsdl, const PortId *port);
CellEntry *next_cell_of_bit(Bsdl *bsdl, const CellEntry *cell);

// ------------------------------------------------------------- cells and their ports

// The rules that compare a cell with the logical port that it names: 0 or 100.
int32_t check_cell_port(Bsdl *bsdl, CellEntry *cell);
// Pins that no cell serves: 0 or 100.
int32_t check_missing_cells(Bsdl *bsdl);
// Marks the pins whose first cell can be disabled.
void note_disabled_pins(Bsdl *bsdl);

// ------------------------------------------------------------- RUNBIST, INTEST, durations

// Also used by the ISC flows and the AIO statements.
struct ClockCycles {
    PortId *port;
    int32_t cycle_count;
    Place place; // of the port
};

struct WaitSpec {
    float wait_time;      // seconds; 0 without a time
    GSList *clock_cycles; // ClockCycles
};

enum RunCondition : int32_t {
    RUN_CONDITION_HIGHZ = 1,
    RUN_CONDITION_BOUNDARY = 3,
};

struct RunbistSpec {
    WaitSpec *wait;
    int32_t condition; // RunCondition
    const char *signature;
    Place signature_place;
    Place place;
};

struct IntestSpec {
    WaitSpec *wait;
    int32_t condition; // RunCondition
    Place place;
};

void runbist_absent(Bsdl *bsdl);
void runbist_passed(Bsdl *bsdl, RunbistSpec *spec, Place place);
void runbist_skipped(Bsdl *bsdl);
RunbistSpec *runbist_spec_new(Bsdl *bsdl, WaitSpec *wait, int32_t condition, const char *signature,
                              Place signature_place);
void intest_absent(Bsdl *bsdl);
void intest_passed(Bsdl *bsdl, IntestSpec *spec, Place place);
void intest_skipped(Bsdl *bsdl);
IntestSpec *intest_spec_new(Bsdl *bsdl, WaitSpec *wait, int32_t condition);
WaitSpec *wait_spec_new(Bsdl *bsdl, double time, List clock_cycles);
ClockCycles *clock_cycles_new(Bsdl *bsdl, PortId *port, int32_t count, Place place);

// Report a value that is not above zero, and keep it.
int32_t cycle_count_from(Bsdl *bsdl, int32_t count);
double duration_from(Bsdl *bsdl, double time);

// Seconds as records keep them: beyond the range of a float the value is infinite.
float seconds_from(double time);

// ------------------------------------------------------------- extensions, design warning

struct ExtensionEntry {
    const char *name;
    int32_t declared;    // 1 a declaration, 0 a definition
    const char *package; // in a package file: the name asked for
    const char *source;  // component name when the statement was read; in a package file its body
    Place place;         // of the name
};

struct CorvaneClassEntry {
    const char *key;
    const char *value;
};

// One entry in the list of extensions. The IEEE 1532 and 1149.6 statements enter the name of their
// attribute as a definition; `name` need not come from the name table.
void extension_declared(Bsdl *bsdl, const char *name, Place place);
void extension_defined(Bsdl *bsdl, const char *name, Place place);
// A declaration in the current package file.
void extension_declared_in_package(Bsdl *bsdl, const char *name);

void extension_declaration_passed(Bsdl *bsdl, const char *name, Place place);
void extension_definition_passed(Bsdl *bsdl, const char *name, Place place);
void extension_definition_skipped(Bsdl *bsdl);
void extensions_found(Bsdl *bsdl, const char *text);
void design_warning_misplaced(Bsdl *bsdl, Place place);
void corvane_class_begun(Bsdl *bsdl, Place place);
void corvane_class_passed(Bsdl *bsdl);
void corvane_class_skipped(Bsdl *bsdl);
void corvane_class_append(Bsdl *bsdl, const char *key, const char *value);
void design_warning_absent(Bsdl *bsdl);
void design_warning_passed(Bsdl *bsdl);
void design_warning_skipped(Bsdl *bsdl);
