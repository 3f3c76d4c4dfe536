// The text of a package file, read in the middle of the use statement that names it, and the check
// of all packages.

#include "base/arena.h"
#include "base/index.h"
#include "boundary/standard_cells.h"
#include "frame/check.h"
#include "frame/messages.h"
#include "header/header.h"
#include "scan/scanner.h"

PackageName *package_name(Bsdl *bsdl, const char *text, int32_t standard_bit)
{
    return model_new<PackageName>(
        bsdl, {.text = text, .standard_bit = standard_bit, .place = scan_place(bsdl)});
}

void package_header_begun(Bsdl *bsdl, const PackageName *name)
{
    // Without a use statement the attributes of the extensions may follow at once: here they are
    // declared, so their names are no keywords.
    bsdl->scan_mode = SCAN_MODE_PACKAGE;
    bsdl->data->current_package_body = name->text;
}

bool package_header_ends(Bsdl *bsdl, const PackageName *name, const PackageName *end_name)
{
    if (same_name(name->text, end_name->text))
        return true;
    syntax_error(bsdl, {"package-end-mismatch", end_name->place},
                 "User package name is not consistent: %s, %s", name->text, end_name->text);
    return false;
}

DeferredConstant *deferred_constant(Bsdl *bsdl, const char *name, Place place)
{
    return model_new<DeferredConstant>(bsdl, {.name = name, .place = place});
}

UserPackage *package_body_read(Bsdl *bsdl, const PackageName *name, const PackageName *end_name,
                               PackageStandard standard, List cells)
{
    parse_message(bsdl, BSDL_LEVEL_PROGRESS, 3, nullptr, "\tReading package: %s", name->text);
    if (!same_name(name->text, end_name->text)) {
        syntax_error(bsdl, {"package-body-end-mismatch", end_name->place},
                     "\tUser package name is not consistent: %s, %s", /* as is */
                     name->text, end_name->text);
        return nullptr;
    }
    return model_new<UserPackage>(bsdl, {.standard = standard,
                                         .name = name->text,
                                         .file_name = bsdl->data->current_package,
                                         .body_cells = cells.head,
                                         .place = name->place});
}

static const char *issue_text(uint32_t bits)
{
    if (bits & BSDL_STANDARD_BIT_2001)
        return "2001";
    return bits & BSDL_STANDARD_BIT_1994 ? "1994" : "1990";
}

// Header and body name the same standard, if both name one.
static void package_issue_compared(const Bsdl *bsdl, PackageStandard standard)
{
    const uint32_t named = static_cast<uint32_t>(standard.bit);
    const uint32_t in_force = bsdl->standards & BSDL_STANDARD_MASK_1149_1;
    if (named && named != in_force)
        rule_message(BSDL_LEVEL_WARNING, 2, {"package-standard-differs", standard.place},
                     "User package '%s' is different from BSDL file package '%s'",
                     issue_text(named), issue_text(in_force));
}

bool package_read(Bsdl *bsdl, const PackageName *name, PackageStandard standard,
                  List deferred_constants, UserPackage *body, Place use_place)
{
    BsdlData *data = bsdl->data;
    if (!same_name(name->text, body->name)) {
        syntax_error(bsdl, {"package-body-mismatch", body->place},
                     "User package name is not consistent: %s, %s", name->text, body->name);
        return false;
    }
    if (standard.bit && body->standard.bit && standard.bit != body->standard.bit) {
        syntax_error(
            bsdl, {"package-standard-mismatch", body->standard.place},
            "Standard use package is not consistent between user package and user package body");
        return false;
    }
    package_issue_compared(bsdl, standard.bit ? standard : body->standard);

    body->deferred_constants = deferred_constants.head;
    body->file_path = data->package_file;
    body->use_place = use_place;
    body->standard_file = name->standard_bit;
    model_append_to(bsdl, &data->user_packages, &data->user_packages_tail, body);
    data->current_package = nullptr;
    data->current_package_body = nullptr;
    data->package_file = nullptr;
    return true;
}

// ------------------------------------------------------------------------------------------- check

// Deferred constants without a cell, and those announced twice.
static int32_t check_constants(Arena *arena, const UserPackage *package)
{
    int32_t result = BSDL_RESULT_OK;
    uint32_t cell_count = 0;
    uint32_t count = 0;
    CellDesc **cells = list_table_of<CellDesc>(arena, package->body_cells, &cell_count);
    DeferredConstant **constants =
        list_table_of<DeferredConstant>(arena, package->deferred_constants, &count);
    Index described;
    Index last;
    index_start(&described, arena, cell_count);
    index_start(&last, arena, count);
    for (uint32_t i = 0; i < cell_count; i++)
        index_first(&described, name_fold(cells[i]->name), i);
    for (uint32_t i = 0; i < count; i++)
        index_last(&last, name_fold(constants[i]->name), i);

    for (uint32_t i = 0; i < count && !arena->failed; i++) {
        const char *name = constants[i]->name;
        const Place place = constants[i]->place;
        if (index_find(&described, name_fold(name)) == INDEX_NONE)
            rule_warning({"package-cell-missing", place}, "Cell '%s' not found in package body",
                         shown(name));
        if (index_find(&last, name_fold(name)) > i)
            result |= rule_message(BSDL_LEVEL_ERROR, 1, {"package-cell-announced-twice", place},
                                   "Cell '%s' already defined", name);
    }
    return result;
}

// Cells that the package header does not announce are taken all the same.
static void take_cells(Bsdl *bsdl, Arena *arena, UserPackage *package)
{
    uint32_t count = 0;
    DeferredConstant **constants =
        list_table_of<DeferredConstant>(arena, package->deferred_constants, &count);
    Index announced;
    index_start(&announced, arena, count);
    for (uint32_t i = 0; i < count; i++)
        index_first(&announced, name_fold(constants[i]->name), i);

    for (CellDesc *desc : items<CellDesc>(package->body_cells)) {
        if (arena->failed)
            break;
        // The name is not in the text, which says what it does not find. /* as is */
        if (index_find(&announced, name_fold(desc->name)) == INDEX_NONE)
            rule_warning({"package-cell-not-announced", desc->place},
                         "Cell description '%s' not found in", " deferred constants\n");
        desc->package = package;
        cell_desc_enter(bsdl, desc);
    }
}

static int32_t check_user_packages(Bsdl *bsdl, Arena *arena)
{
    int32_t result = BSDL_RESULT_OK;
    uint32_t count = 0;
    UserPackage **packages = list_table_of<UserPackage>(arena, bsdl->data->user_packages, &count);
    Index last;
    index_start(&last, arena, count);
    for (uint32_t i = 0; i < count; i++)
        index_last(&last, name_fold(packages[i]->name), i);

    for (uint32_t i = 0; i < count && !arena->failed; i++) {
        UserPackage *package = packages[i];
        bsdl_msg(BSDL_LEVEL_PROGRESS, 3, "\tChecking package '%s'", package->name);
        if (index_find(&last, name_fold(package->name)) > i)
            result |=
                rule_message(BSDL_LEVEL_ERROR, 1, {"package-included-twice", package->use_place},
                             "bsdl_package '%s' already included", package->name);
        result |= check_constants(arena, package);
        take_cells(bsdl, arena, package);
    }
    list_changed(&bsdl->data->cell_desc_walk);
    lookups_drop(bsdl);
    return result;
}

int32_t bsdl_check_packages(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    int32_t result = BSDL_RESULT_OK;
    if (h->data->user_packages) {
        Scratch scratch;
        if (scratch.failed)
            return BSDL_RESULT_FAILED;
        result = check_end(h, check_user_packages(h, &scratch), &scratch);
    }
    result |= check_capture_rules(h);
    return check_end(h, result);
}
