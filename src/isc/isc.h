#pragma once

#include "boundary/boundary.h"
#include "frame/call.h"
#include "frame/lookup.h"
#include "frame/model.h"

// ------------------------------------------------------------- records

// Names a flow, in ISC_Flow where it is defined and in ISC_Procedure where it is used.
struct IscFlowDescriptor {
    const char *flow_name;
    const char *data_name; // NULL when none is given
    int32_t unprocessed;
    int32_t exit_on_error;
    Place place;
};

struct IscProcedure {
    const char *procedure_name;
    const char *data_name; // NULL when none is given
    GSList *flows;         // IscFlowDescriptor
    int32_t flow_cursor;
    Place place;
};

// The record that callers see, and what only the library knows of it.
struct IscActionEntry {
    IscAction action;
    Place place;
};

struct IscActionSpecEntry {
    IscActionSpec spec;
    Place place;
};

using IscClockCycles = ClockCycles;

struct IscDuration {
    IscClockCycles *clock_cycles; // NULL when only a time is given
    float time;                   // seconds; 0 when absent
};

struct IscWait {
    IscDuration *min_duration; // NULL after an error in it
    IscDuration *max_duration; // NULL without one
};

// Places of the activity or loop, and of its fields.
struct IscActivityPlaces {
    Place all;
    Place updates;
    Place captures;
};

// One activity of a block, or one end of a loop: the list of a block is flat, a loop is its start,
// its activities and its end.
struct IscActivity {
    const char *instruction_name; // NULL for the ends of a loop
    GSList *update_fields;        // IscUpdateField
    uint32_t update_cursor;
    IscWait *wait;          // NULL after an error in it
    GSList *capture_fields; // IscCaptureField
    uint32_t capture_cursor;
    int32_t kind;     // IscActivityKind
    int32_t max_loop; // of the start of a loop
    int32_t min_loop; // of the start of a loop
    IscActivityPlaces places;
};

enum IscBlockType : int32_t {
    ISC_BLOCK_TYPE_INITIALIZE = 0,
    ISC_BLOCK_TYPE_REPEAT = 1,
    ISC_BLOCK_TYPE_TERMINATE = 2,
};

struct IscBlock {
    int32_t block_type; // IscBlockType
    int32_t repeat_count;
    GSList *activities; // IscActivity
    int32_t activity_cursor;
    IscActivity *current_activity;
    Place place;
};

struct IscVariable {
    const char *name;  // with its '$'
    const char *value; // the hexadecimal text first assigned, "?" or "?!"
    int32_t length;    // bits; known only while the flow is read
};

struct IscFlow {
    IscFlowDescriptor *descriptor;
    GSList *blocks;          // IscBlock: initialize, repeat blocks in their order, terminate
    int32_t block_cursor;    // the block that the queries for activities see
    IscVariable **variables; // ends in NULL; NULL for a flow without variables
    int32_t variable_count;
};

struct IscTables;

// One family of statements: of a description, or of one part in a PPC/PRG file.
struct IscData {
    int32_t conformance;  // IscConformance
    int32_t pin_behavior; // IscPinBehavior
    GSList *fixed_pins;   // PortId
    uint32_t fixed_pin_cursor = 0;
    int32_t status; // IscStatus
    const char *blank_usercode;
    IscSecurity *security;
    GSList *flows; // IscFlow
    int32_t flow_cursor = 0;
    GSList *procedures;           // IscProcedure
    int32_t procedure_cursor = 0; // 0: none selected; else its index plus one
    GSList *actions;              // IscAction, each in an IscActionEntry
    int32_t action_cursor = 0;
    GSList *illegal_exits; // names
    uint32_t illegal_exit_cursor = 0;
    const char *design_warning;

    Place fixed_pins_place;
    Place blank_usercode_place;
    Place security_place;
    Place procedures_place;
    Place illegal_exits_place;
    IscTables *tables = nullptr; // made when first asked for

    // Positions in the lists that the queries go through. A walk starts anew when it gets another
    // list.
    ListWalk fixed_pin_walk = {};
    ListWalk action_walk = {};
    ListWalk spec_walk = {};
    ListWalk procedure_flow_walk = {};
    ListWalk block_walk = {};
    ListWalk activity_walk = {};
    ListWalk update_walk = {};
    ListWalk capture_walk = {};
    ListWalk illegal_exit_walk = {};
};

// Flows and procedures by position and by their two names. The lists of a family do not change once
// it has been read, so the tables live as long as it does.
struct IscTables {
    IscFlow **flows;
    uint32_t flow_count;
    Index flows_by_name; // isc_name_key -> position
    IscProcedure **procedures;
    uint32_t procedure_count;
    Index procedures_by_name; // isc_name_key -> position
};

IscTables *isc_tables(Bsdl *bsdl, IscData *isc);

// Two references agree when their names do and their data names are both absent or equal.
inline uint64_t isc_name_key(const char *name, const char *data_name)
{
    return uint64_t{name_fold(name)} << 32 | name_fold(data_name);
}

// Begins a check of this family. Gives the code that the check returns at once, 4 without
// statements of IEEE 1532; 0 to go on.
int32_t isc_check_begin(const Call &call);
// The checks of a part of a PPC/PRG file, whose statements stand in the model. True when all
// passed.
bool isc_check_part(Bsdl *bsdl);
// Whether the standard defines an instruction of this name.
bool isc_is_instruction(const char *name);

// ------------------------------------------------- statements other than ISC_Flow (isc_statements)

// What ISC_Pin_Behavior, ISC_Fixed_System_Pins and ISC_Status give together.
struct IscPinBehaviorSet {
    int32_t pin_behavior;
    GSList *fixed_pins;
    int32_t status;
    Place fixed_pins_place;
};

// The orders of these three statements that are read; the first is the standard's.
enum IscPinOrder : int32_t {
    ISC_ORDER_PIN_FIXED_STATUS,
    ISC_ORDER_PIN_STATUS,
    ISC_ORDER_STATUS_PIN,
    ISC_ORDER_STATUS_FIXED_PIN,
    ISC_ORDER_STATUS_PIN_FIXED,
    ISC_ORDER_FIXED_PIN_STATUS,
    ISC_ORDER_FIXED_STATUS_PIN,
};

enum IscStatement : int32_t {
    ISC_STATEMENT_CONFORMANCE,
    ISC_STATEMENT_PIN_BEHAVIOR,
    ISC_STATEMENT_FIXED_PINS,
    ISC_STATEMENT_STATUS,
    ISC_STATEMENT_BLANK_USERCODE,
    ISC_STATEMENT_SECURITY,
    ISC_STATEMENT_FLOW,
    ISC_STATEMENT_PROCEDURE,
    ISC_STATEMENT_ACTION,
    ISC_STATEMENT_ILLEGAL_EXIT,
    ISC_STATEMENT_DESIGN_WARNING,
};

// A statement's string becomes the text to read, and its attribute a defined extension.
void isc_string_begins(Bsdl *bsdl, IscStatement statement, Place name);
// The line for a statement that has been read, is not there, or is left out after an error in it.
void isc_passed(Bsdl *bsdl, IscStatement statement);
void isc_absent(Bsdl *bsdl, IscStatement statement);
void isc_skipped(Bsdl *bsdl, IscStatement statement);
// From here on the words of IEEE 1532 are in force, whatever other packages are used.
void isc_family_begins(Bsdl *bsdl);

int32_t isc_conformance_missing(Bsdl *bsdl);
int32_t isc_conformance_option(Bsdl *bsdl, int32_t conformance);
// NULL for an order that is refused; the error has been reported and counted.
IscPinBehaviorSet *isc_pin_set(Bsdl *bsdl, IscPinOrder order, int32_t pin_behavior, List fixed_pins,
                               int32_t status, Place first, Place fixed_pins_place);
IscSecurity *isc_security_new(Bsdl *bsdl, int32_t read, int32_t program, int32_t erase,
                              IscSecurity *key);
IscSecurity *isc_security_key(Bsdl *bsdl, int32_t msb, int32_t lsb);
IscProcedure *isc_procedure_new(Bsdl *bsdl, const char *name, const char *data_name, List flows,
                                Place place);
IscAction *isc_action_new(Bsdl *bsdl, const char *name, const char *data_name, int32_t exclusivity,
                          List specs, Place place);
IscActionSpec *isc_action_spec_new(Bsdl *bsdl, const char *name, const char *data_name,
                                   int32_t attributes, Place place);
const char *isc_design_warning_passed(Bsdl *bsdl, Place name);

// The family is complete: its values become a record of the description.
void isc_family_passed(Bsdl *bsdl, const IscData &values);

// --------------------------------------------------------------------------- ISC_Flow (isc_flow)

constexpr int32_t ISC_VARIABLES = 51; // of one flow; any further one has no place

// What reading an ISC_Flow statement keeps: the variables of the current flow, and which flows the
// statement has already defined.
struct IscFlowReading {
    IscVariable variables[ISC_VARIABLES];
    int32_t variable_count;
    uint32_t *keys; // fold numbers of the flows' names, joined with the data name
    uint32_t key_count;
    uint32_t key_capacity;
    Index key_index;
};

// The expected data or the mask of a capture field.
struct IscFieldData {
    IscExpression *expression;
    int32_t output;
};

void isc_flow_statement_begins(Bsdl *bsdl, Place name);
void isc_flow_statement_passed(Bsdl *bsdl);
void isc_flow_statement_skipped(Bsdl *bsdl);

void isc_flow_begins(Bsdl *bsdl);
IscFlowDescriptor *isc_flow_descriptor_new(Bsdl *bsdl, const char *flow_name, const char *data_name,
                                           int32_t unprocessed, int32_t exit_on_error, Place place);
const char *isc_data_name(Bsdl *bsdl, const char *name);
// NULL for a flow that the statement has already defined; the warning has been sent.
IscFlow *isc_flow_new(Bsdl *bsdl, IscFlowDescriptor *descriptor, IscBlock *initialize, List repeats,
                      IscBlock *terminate);
List isc_flow_append(Bsdl *bsdl, List flows, IscFlow *flow);

IscBlock *isc_block_new(Bsdl *bsdl, int32_t block_type, int32_t repeat_count, List activities,
                        Place place);
List isc_loop(Bsdl *bsdl, int32_t min_loop, int32_t max_loop, List activities, Place place);
IscActivity *isc_activity_new(Bsdl *bsdl, const char *instruction_name, List update_fields,
                              IscWait *wait, List capture_fields, const IscActivityPlaces &places);

IscUpdateField *isc_update_field(Bsdl *bsdl, int32_t width, IscExpression *expression);
IscCaptureField *isc_capture_field(Bsdl *bsdl, int32_t width, IscFieldData expected,
                                   IscFieldData mask, int32_t tag);
int32_t isc_tags_turned(Bsdl *bsdl);

IscExpression *isc_literal(Bsdl *bsdl, const char *hex_string);
IscExpression *isc_input(Bsdl *bsdl, int32_t operation);
IscExpression *isc_variable_assigned(Bsdl *bsdl, const char *name, const char *hex_string);
IscExpression *isc_variable_set(Bsdl *bsdl, const char *name, int32_t input);
// NULL when the variable is not defined; the error has been reported and counted.
IscExpression *isc_variable_used(Bsdl *bsdl, const char *name, int32_t operation, int32_t operand);

IscWait *isc_wait_new(Bsdl *bsdl, IscDuration *min_duration, IscDuration *max_duration);
IscWait *isc_wait_refused(Bsdl *bsdl);
IscDuration *isc_duration_new(Bsdl *bsdl, IscClockCycles *clock_cycles, double time);
IscDuration *isc_duration_refused(Bsdl *bsdl);

int32_t isc_field_width(Bsdl *bsdl, int32_t width);
int32_t isc_repeat_count(Bsdl *bsdl, int32_t count);
int32_t isc_loop_count(Bsdl *bsdl, int32_t count);
