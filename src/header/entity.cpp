// The ENTITY line, the generic parameter, component conformance and what hosts ask about them.

#include "frame/messages.h"
#include "header/header.h"
#include "prg/prg.h"
#include "scan/scanner.h"

void component_declared(Bsdl *bsdl, const char *name)
{
    bsdl->data->component_name = name;
    bsdl->sources.entity = scan_place(bsdl);
}

bool component_name_matches(Bsdl *bsdl, const char *name)
{
    // Between parts any name will do: there is none to be consistent with.
    const char *expected =
        in_prg_file(bsdl) ? bsdl->prg->component_name : bsdl->data->component_name;
    if (!expected || same_name(name, expected))
        return true;
    return parse_refused(bsdl, "component-name-mismatch", "Component name '%s' not consistent",
                         name);
}

bool component_name_opens_part(Bsdl *bsdl, const char *name)
{
    if (!in_prg_file(bsdl))
        return component_name_matches(bsdl, name);
    bsdl->prg->component_name = name;
    return true;
}

void generic_passed(Bsdl *bsdl, const char *package, Place place)
{
    // What the host asked for wins.
    if (!bsdl->default_package) {
        bsdl->default_package = package;
        bsdl->data->default_package_place = place;
    }
    statement_passed(bsdl, "\tGeneric parameter passed");
}

void conformance_absent(Bsdl *bsdl)
{
    statement_absent(bsdl, "\tNo component conformance statement");
    bsdl->data->conformance = CONFORMANCE_NONE;
}

void conformance_passed(Bsdl *bsdl, int32_t conformance, Place place)
{
    bsdl->data->conformance = conformance;
    bsdl->data->conformance_place = place;
    statement_passed(bsdl, "\tComponent conformance statement passed");
}

// The statement itself passes all the same, with no conformance.
int32_t conformance_skipped(Bsdl *bsdl)
{
    statement_skipped(bsdl, "\tskipping component_conformance due to errors"); /* as is */
    return CONFORMANCE_NONE;
}

// ----------------------------------------------------------------------------------------- queries

const char *bsdlFileName(Bsdl *h) { return h ? h->file_name : nullptr; }

const char *bsdlComponentName(Bsdl *h) { return h && h->data ? h->data->component_name : nullptr; }

int32_t bsdlConformance(Bsdl *h) { return h && h->data ? h->data->conformance : CONFORMANCE_NONE; }
