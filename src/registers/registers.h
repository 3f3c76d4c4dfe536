#pragma once

#include "base/index.h"
#include "frame/lookup.h"
#include "frame/model.h"

// One data register. BYPASS, BOUNDARY and the identification register are there from the file or
// added by bsdl_check_reg_access(), which may add BOUNDARY twice: for SAMPLE and for PRELOAD.
struct RegisterEntry {
    int32_t kind;     // RegisterKind
    const char *name; // in capitals
    int32_t length;   // -1 while not known
    GSList *captures; // InstructionCapture
    int32_t written;  // set by the EBST writer
    Place place;
    GSList *captures_tail;
    uint32_t position; // in the list, while bsdl_check_reg_access() runs
};

// An instruction that selects a register, and what the register captures then.
struct InstructionCapture {
    const char *name;    // in capitals
    const char *capture; // NULL when none is given
    Place place;
};

struct InstructionEntry {
    const char *name; // in capitals
    int32_t type;     // InstructionType
    RegisterEntry *data_register;
    GSList *patterns; // opcodes, at least one
    uint32_t pattern_iterator;
    GSList *merged_instructions; // InstructionEntry
    int32_t flags;               // INSTRUCTION_PRELOADS
    Place place;
    ListWalk pattern_walk;
    // The first record of this name in capture_register: what bsdlGetInstrCaptureValue() finds.
    const InstructionCapture *capture;
    const RegisterEntry *capture_register;
};

constexpr int32_t INSTRUCTION_PRELOADS = 1;

struct InstructionRegister {
    uint32_t length;
    GSList *opcode_table; // InstructionEntry
    uint32_t instruction_iterator;
    GSList *capture_patterns; // texts
    uint32_t capture_iterator;
    GSList *private_instructions; // names in capitals
    Place length_place;           // of the number
    Place opcode_place;
    Place capture_place;
    ListWalk instruction_walk;
    ListWalk capture_walk;
};

struct OptionalRegisters {
    GSList *idcode_patterns; // texts
    uint32_t idcode_cursor;
    GSList *usercode_patterns; // texts
    uint32_t usercode_cursor;
    Place idcode_place;
    Place usercode_place;
    ListWalk idcode_walk;
    ListWalk usercode_walk;
};

// The registers of REGISTER_ACCESS while the statement is read.
struct RegisterList {
    List registers; // RegisterEntry
    // Those from the second on, by name: a repeated name joins the first of them.
    Index by_name;
    RegisterEntry **table;
    uint32_t count;
    uint32_t capacity;
};

// Look-ups. Names must come from the reading's name table.

InstructionEntry *find_instruction(Bsdl *bsdl, const char *name);
RegisterEntry *find_register(Bsdl *bsdl, const char *name); // NULL for a NULL name

// False when no instruction has the name. An instruction without a register gets the given one. For
// one that has a register the error is sent, for where the file lists it (`listed`, may be NULL).
// With a NULL register the call is a mere test.
bool associate_instruction(Bsdl *bsdl, const char *name, RegisterEntry *data_register,
                           const InstructionCapture *listed = nullptr);

// Where REGISTER_ACCESS lists the instruction, or else its name in the opcode table.
Place register_choice_place(const InstructionEntry *entry);

// Actions of the grammar.

void instruction_length_set(Bsdl *bsdl, int32_t length, Place place);
void instruction_length_passed(Bsdl *bsdl);
InstructionEntry *instruction_entry(Bsdl *bsdl, const char *name, List patterns, Place place);
void instruction_opcode_passed(Bsdl *bsdl, List table, Place place);
void instruction_opcode_skipped(Bsdl *bsdl);
void instruction_capture_passed(Bsdl *bsdl, List patterns, Place place);
void instruction_capture_skipped(Bsdl *bsdl);
void instruction_disable_passed(Bsdl *bsdl);
void instruction_disable_skipped(Bsdl *bsdl);
void instruction_disable_absent(Bsdl *bsdl);
void instruction_guard_passed(Bsdl *bsdl);
void instruction_guard_skipped(Bsdl *bsdl);
void instruction_guard_absent(Bsdl *bsdl);
void instruction_private_passed(Bsdl *bsdl, List names);
void instruction_private_skipped(Bsdl *bsdl);
void instruction_private_absent(Bsdl *bsdl);

// The strings of a statement that may end a fast read are its last: those after it are skipped.
void rescan_last_when_fast(Bsdl *bsdl);

// The last text of a fast read gives true.
bool idcode_passed(Bsdl *bsdl, List patterns, Place place);
void idcode_skipped(Bsdl *bsdl);
void usercode_passed(Bsdl *bsdl, List patterns, Place place);
void usercode_skipped(Bsdl *bsdl);

RegisterEntry *register_named(Bsdl *bsdl, int32_t kind, const char *name, Place place);
RegisterEntry *register_sized(Bsdl *bsdl, RegisterEntry *entry, int32_t length);
RegisterEntry *register_idcode(Bsdl *bsdl, Place place); // NULL when refused
RegisterEntry *register_association(RegisterEntry *entry, List captures);
InstructionCapture *instruction_capture(Bsdl *bsdl, const char *name, const char *capture,
                                        Place place);
const char *capture_pattern(Bsdl *bsdl, const char *pattern);
RegisterList *register_list_start(Bsdl *bsdl, RegisterEntry *entry);
bool register_list_append(Bsdl *bsdl, RegisterList *list, RegisterEntry *entry);
bool register_access_passed(Bsdl *bsdl, RegisterList *list); // true ends a fast read
void register_access_skipped(Bsdl *bsdl);
void register_access_absent(Bsdl *bsdl);
