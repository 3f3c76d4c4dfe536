// The use statements that follow the standard's own.

#include "frame/messages.h"
#include "header/header.h"
#include "scan/package_search.h"
#include "scan/scanner.h"

void use_package(Bsdl *bsdl, const char *name, Place place)
{
    BsdlData *data = bsdl->data;
    auto *spec = model_new<PackageSpec>(bsdl, {.name = name, .place = place});
    model_append_to(bsdl, &data->package_specs, &data->package_specs_tail, spec);
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tUser package: '%s'", name);
    read_package(bsdl, name, name);
}

static void add_standard(Bsdl *bsdl, uint32_t bit)
{
    scan_standards(bsdl, bsdl->standards | bit, bsdl->standards_filter);
}

// The package files of the extensions have names in small letters, in whatever case a description
// writes them. 1532-2001 is refused in a 1990 file. 1532-2002 is refused in a 1990 file and gets a
// warning in a 1994 file. 1149.6 is refused in both.

bool use_std_1532_2001(Bsdl *bsdl, const char *token)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tUser package: std_1532_2001.all");
    if (bsdlIs1990(bsdl))
        return parse_refused(bsdl, "package-needs-1994",
                             "BSDL version must be STD_1149_1_1994 or higher");
    bsdl->data->isc_use_place = scan_place(bsdl);
    add_standard(bsdl, BSDL_STANDARD_BIT_1532_2001);
    read_package(bsdl, "std_1532_2001.all", token);
    return true;
}

bool use_std_1532_2002(Bsdl *bsdl, const char *token)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tUser package: std_1532_2002.all");
    if (bsdlIs1990(bsdl))
        return parse_refused(bsdl, "package-needs-2001",
                             "BSDL version must be STD_1149_1_2001 or higher");
    if (bsdlIs1994(bsdl))
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "package-wants-2001",
                      "BSDL version must be STD_1149_1_2001 or higher");
    bsdl->data->isc_use_place = scan_place(bsdl);
    add_standard(bsdl, BSDL_STANDARD_BIT_1532_2002);
    read_package(bsdl, "std_1532_2002.all", token);
    return true;
}

void use_std_prg_2001(Bsdl *bsdl, const char *token)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tUser package: '%s'", token);
    if (!bsdlIsPrg(bsdl))
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "package-wants-prg",
                      "%s included in a non-PPC/PRG file", token);
    read_package(bsdl, token, token);
}

bool use_std_1149_6_2003(Bsdl *bsdl, const char *token)
{
    parse_message(bsdl, BSDL_LEVEL_INFO, 2, nullptr, "\tUser package: std_1149_6_2003.all");
    if (bsdlIs1990(bsdl) || bsdlIs1994(bsdl))
        return parse_refused(bsdl, "package-needs-2001",
                             "BSDL version must be STD_1149_1_2001 or higher");
    bsdl->data->aio_use_place = scan_place(bsdl);
    add_standard(bsdl, BSDL_STANDARD_BIT_1149_6_2003);
    read_package(bsdl, "std_1149_6_2003.all", token);
    return true;
}

bool package_absent(Bsdl *bsdl, Place package)
{
    if (!bsdl->fast_read) {
        syntax_error(bsdl, {"package-missing", package}, "\tError in user .all");
        return false;
    }
    statement_absent(bsdl, "\tSkip user .all");
    return true;
}
