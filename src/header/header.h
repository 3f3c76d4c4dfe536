#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

// ------------------------------------------------------------- use statements and packages

// One name of a use statement.
struct PackageSpec {
    const char *name; // as written
    Place place;
};

// What a use statement in a package or its body names.
struct PackageStandard {
    int32_t bit; // of 1149.1; 0 without a statement
    Place place;
};

// One package file.
struct UserPackage {
    PackageStandard standard; // of the body
    const char *name;
    const char *file_name;      // that was searched for
    const char *file_path;      // which the search found
    int32_t standard_file;      // bit of the standard that the package belongs to, 0 for others
    GSList *deferred_constants; // DeferredConstant
    GSList *body_cells;         // CellDesc
    Place place;                // of the name of the body
    Place use_place;            // of the name in the use statement
};

// A cell that a package header announces.
struct DeferredConstant {
    const char *name;
    Place place;
};

// ------------------------------------------------------------- cell descriptions

// What one context of a cell captures under one instruction.
struct CaptDesc {
    int32_t cell_context; // CellFunction
    int32_t capt_instr;   // CaptureInstruction
    int32_t data_source;  // CaptureSource
    Place place;
};

struct CellDesc {
    const char *name;
    UserPackage *package; // set by bsdl_check_packages(); NULL in a built-in cell
    GSList *capt_descs;   // CaptDesc
    uint32_t capt_cursor;
    int32_t has_intest; // set by the capture rules
    Place place;
    uint32_t contexts; // bit n: has a descriptor of context n
    ListWalk capt_walk;
};

inline bool has_context(const CellDesc *desc, int32_t context)
{
    return (desc->contexts >> context & 1) != 0;
}

CaptDesc *capt_desc_new(Bsdl *bsdl, int32_t context, int32_t instruction, int32_t source,
                        Place place);
CellDesc *cell_desc_new(Bsdl *bsdl, const char *name, List capt_descs, Place place);

// Adds a cell to those that boundary register tables may name.
void cell_desc_enter(Bsdl *bsdl, CellDesc *desc);

// The first of that name, in any case; built-in cells come before those of packages.
CellDesc *find_cell_desc(Bsdl *bsdl, const char *name);

// ------------------------------------------------------------- called by the grammar

void component_declared(Bsdl *bsdl, const char *name);
// Whether a statement names the entity, or in a PPC/PRG file the current part.
bool component_name_matches(Bsdl *bsdl, const char *name);
// The same for the statements with which the family of a part begins in a PPC/PRG file.
bool component_name_opens_part(Bsdl *bsdl, const char *name);

// The generic parameter, and the pin mapping that it names; NULL without one.
void generic_passed(Bsdl *bsdl, const char *package, Place place);

void standard_1149_1(Bsdl *bsdl, uint32_t bit, const char *name);
void standard_prg(Bsdl *bsdl);
bool standard_unknown(Bsdl *bsdl);
void standard_use_passed(Bsdl *bsdl);

void use_package(Bsdl *bsdl, const char *name, Place place);
bool use_std_1532_2001(Bsdl *bsdl, const char *token);
bool use_std_1532_2002(Bsdl *bsdl, const char *token);
void use_std_prg_2001(Bsdl *bsdl, const char *token);
bool use_std_1149_6_2003(Bsdl *bsdl, const char *token);
bool package_absent(Bsdl *bsdl, Place package);

void conformance_absent(Bsdl *bsdl);
void conformance_passed(Bsdl *bsdl, int32_t conformance, Place place);
int32_t conformance_skipped(Bsdl *bsdl);

// A name after PACKAGE, PACKAGE BODY or END.
struct PackageName {
    const char *text;
    int32_t standard_bit; // of the names that have a token of their own, else 0
    Place place;
};

PackageName *package_name(Bsdl *bsdl, const char *text, int32_t standard_bit);
void package_header_begun(Bsdl *bsdl, const PackageName *name);
bool package_header_ends(Bsdl *bsdl, const PackageName *name, const PackageName *end_name);
UserPackage *package_body_read(Bsdl *bsdl, const PackageName *name, const PackageName *end_name,
                               PackageStandard standard, List cells);
bool package_read(Bsdl *bsdl, const PackageName *name, PackageStandard standard,
                  List deferred_constants, UserPackage *body, Place use_place);
DeferredConstant *deferred_constant(Bsdl *bsdl, const char *name, Place place);
int32_t capture_keeper(Bsdl *bsdl);
int32_t capture_runbist(Bsdl *bsdl);
