#include "boundary/boundary.h"

#include "frame/check.h"
#include "frame/messages.h"
#include "scan/scanner.h"

#include <string_view>

// ------------------------------------------------------------------------------------- extensions

static void append_extension(Bsdl *bsdl, const char *name, int32_t declared, const char *package,
                             const char *source, Place place)
{
    auto *entry = model_new<ExtensionEntry>(bsdl);
    entry->name = model_name(bsdl, name);
    entry->declared = declared;
    entry->package = package;
    entry->source = source;
    entry->place = place;
    BsdlData *data = bsdl->data;
    model_append_linked(bsdl, &data->extensions, &data->extensions_tail, entry);
}

void extension_declared(Bsdl *bsdl, const char *name, Place place)
{
    append_extension(bsdl, name, 1, nullptr, bsdl->data->component_name, place);
}

void extension_defined(Bsdl *bsdl, const char *name, Place place)
{
    append_extension(bsdl, name, 0, nullptr, bsdl->data->component_name, place);
}

void extension_declared_in_package(Bsdl *bsdl, const char *name)
{
    const BsdlData *data = bsdl->data;
    append_extension(bsdl, name, 1, data->current_package, data->current_package_body,
                     scan_place(bsdl));
}

void extension_declaration_passed(Bsdl *bsdl, const char *name, Place place)
{
    extension_declared(bsdl, name, place);
    parse_message(bsdl, BSDL_LEVEL_INFO, 4, nullptr, "\tBSDL extension declaration '%s' passed",
                  name);
}

void extension_definition_passed(Bsdl *bsdl, const char *name, Place place)
{
    extension_defined(bsdl, name, place);
    parse_message(bsdl, BSDL_LEVEL_INFO, 4, nullptr, "\tBSDL extension definition '%s' passed",
                  name);
    release_strings(bsdl);
}

void extension_definition_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping extension_definition due to errors");
}

void extensions_found(Bsdl *bsdl, const char *text)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "%s", text);
}

void design_warning_misplaced(Bsdl *bsdl, Place place)
{
    rule_strict(bsdl, {"design-warning-order", place},
                "Wrong ordening of statements \"DESIGN_WARNING\" and BSDL Extensions "); /* as is */
}

// The name of the attribute counts as defined before its value is read.
void corvane_class_begun(Bsdl *bsdl, Place place)
{
    extension_defined(bsdl, "CORVANE_CLASS", place);
    rescan_strings(bsdl);
}

// The one statement that does not say that it passed.
void corvane_class_passed(Bsdl *bsdl) { release_strings(bsdl); }

void corvane_class_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "Skipping Corvane_Class due to errors");
}

void corvane_class_append(Bsdl *bsdl, const char *key, const char *value)
{
    auto *entry = model_new<CorvaneClassEntry>(bsdl);
    *entry = {.key = key, .value = value};
    BsdlData *data = bsdl->data;
    List list = model_append(bsdl, {data->corvane_class, data->corvane_class_tail}, entry);
    data->corvane_class = list.head;
    data->corvane_class_tail = list.tail;
}

// --------------------------------------------------------------------------------- design warning

void design_warning_absent(Bsdl *bsdl)
{
    bsdl->data->design_warning = nullptr;
    statement_absent(bsdl, "\tNo design warning statement");
}

void design_warning_passed(Bsdl *bsdl)
{
    bsdl->data->design_warning = join_strings(bsdl);
    statement_passed(bsdl, "\tDesign warning statement passed");
}

void design_warning_skipped(Bsdl *bsdl)
{
    bsdl->data->design_warning = nullptr;
    statement_skipped(bsdl, "Skipping design_warning due to errors");
}

// ------------------------------------------------------------------------------------------ check

// Keeps one definition of each name that is declared. Drops everything else, the declarations too,
// so a second run over the list finds every definition undeclared.
static int32_t keep_declared(Bsdl *bsdl, Arena *scratch)
{
    BsdlData *data = bsdl->data;
    uint32_t count;
    auto **entries = list_table_of<ExtensionEntry>(scratch, data->extensions, &count);
    Index declared;
    Index kept;
    index_start(&declared, scratch, count);
    index_start(&kept, scratch, count);
    if (scratch->failed)
        return BSDL_RESULT_FAILED;
    for (uint32_t i = 0; i < count; i++)
        if (entries[i]->declared)
            index_first(&declared, name_fold(entries[i]->name), i);

    data->extensions = nullptr;
    data->extensions_tail = nullptr;
    int32_t result = BSDL_RESULT_OK;
    for (uint32_t i = 0; i < count; i++) {
        ExtensionEntry *entry = entries[i];
        if (entry->declared)
            continue;
        if (index_find(&declared, name_fold(entry->name)) == INDEX_NONE)
            result |= rule_message(BSDL_LEVEL_ERROR, 1, {"extension-undeclared", entry->place},
                                   "Extension '%s' in '%s' is defined but not declared",
                                   entry->name, shown(entry->source));
        else if (index_first(&kept, name_fold(entry->name), i) == INDEX_NONE)
            model_append_linked(bsdl, &data->extensions, &data->extensions_tail, entry);
    }
    return result;
}

int32_t bsdl_check_extensions(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    Scratch scratch;
    if (scratch.failed)
        return BSDL_RESULT_FAILED;
    int32_t result = keep_declared(h, &scratch);
    return check_end(h, result, &scratch);
}

// ---------------------------------------------------------------------------------------- queries

const char *bsdlGetCorvaneClass(Bsdl *h, const char *key)
{
    if (!h || !h->data || !key)
        return nullptr;
    const char *name = name_find(&h->names, key);
    if (!name)
        return nullptr;
    for (const CorvaneClassEntry *entry : items<CorvaneClassEntry>(h->data->corvane_class)) {
        if (same_name(entry->key, name))
            return entry->value;
    }
    return nullptr;
}

const char *bsdlDesignWarning(Bsdl *h) { return h && h->data ? h->data->design_warning : nullptr; }
