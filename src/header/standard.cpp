// The standard use statement, which decides the words and the cells that a description knows, and
// the queries on standards.

#include "boundary/standard_cells.h"
#include "frame/messages.h"
#include "header/header.h"
#include "scan/scanner.h"

static void standard_chosen(Bsdl *bsdl, uint32_t bits, const char *name)
{
    scan_standards(bsdl, bits, bsdl->standards_filter);
    bsdl->data->standard_name = name;
}

void standard_1149_1(Bsdl *bsdl, uint32_t bit, const char *name)
{
    standard_chosen(bsdl, bit, name);
    bsdl->data->conformance_place = scan_place(bsdl);
    parse_message(bsdl, BSDL_LEVEL_PROGRESS, bit == BSDL_STANDARD_BIT_1990 ? 3 : 2, nullptr,
                  "\tCreating BC cells: %s", name);
    create_standard_cells(bsdl, bit);
}

void standard_prg(Bsdl *bsdl) { standard_chosen(bsdl, BSDL_STANDARD_BIT_PRG_2001, "STD_PRG_2001"); }

bool standard_unknown(Bsdl *bsdl)
{
    const TokenText token = scan_token_text(bsdl);
    standard_chosen(bsdl, 0, "STD_1149_1_1990");
    return parse_refused(bsdl, "standard-unknown", "Unknown standard '%.*s'", token.length,
                         token.text);
}

void standard_use_passed(Bsdl *bsdl)
{
    static constexpr const char *VERSIONS[] = {
        nullptr,
        "\tBSDL version: STD_1149_1_1990",
        nullptr,
        "\tBSDL version: STD_1149_1_1994",
        "\tBSDL version: STD_1149_1_2001",
        "\tBSDL version: STD_1532_2001",
        "\tBSDL version: STD_1532_2002",
        "\tBSDL version: STD_PRG_2001",
        "\tBSDL version: STD_1149_6_2003",
    };
    statement_passed(bsdl, "\tStandard use statement passed");
    if (const char *version = VERSIONS[bsdlStandard(bsdl)])
        parse_message(bsdl, BSDL_LEVEL_INFO, 3, nullptr, "%s", version);
}

// ----------------------------------------------------------------------------------------- queries

void bsdlLibVersion(const char **name, const char **version)
{
    if (name)
        *name = "tarnlet";
    if (version)
        *version = "1.7.2.6";
}

static uint32_t standards_of(const Bsdl *bsdl) { return bsdl ? bsdl->standards : 0; }

// The issue of 1149.1 comes before the extensions that are used beside it.
int32_t bsdlStandard(Bsdl *h)
{
    const uint32_t standards = standards_of(h);
    const bool prg = (standards & BSDL_STANDARD_MASK_PRG) != 0;
    if (standards & BSDL_STANDARD_BIT_PRG_2001)
        return BSDL_STANDARD_PRG_2001;
    if (standards & BSDL_STANDARD_BIT_1990)
        return BSDL_STANDARD_1149_1_1990;
    if (standards & BSDL_STANDARD_BIT_1994)
        return BSDL_STANDARD_1149_1_1994;
    if (standards & BSDL_STANDARD_BIT_2001)
        return BSDL_STANDARD_1149_1_2001;
    if ((standards & BSDL_STANDARD_BIT_1532_2001) && !prg)
        return BSDL_STANDARD_1532_2001;
    if ((standards & BSDL_STANDARD_BIT_1532_2002) && !prg)
        return BSDL_STANDARD_1532_2002;
    if (standards & BSDL_STANDARD_BIT_1149_6_2003)
        return BSDL_STANDARD_1149_6_2003;
    return BSDL_STANDARD_NONE;
}

const char *bsdlStandard1149_1(Bsdl *h)
{
    if (!(standards_of(h) & BSDL_STANDARD_MASK_1149_1) || !h->data)
        return nullptr;
    return h->data->standard_name;
}

const char *bsdlStandard1532(Bsdl *h)
{
    if (standards_of(h) & BSDL_STANDARD_BIT_1532_2001)
        return "STD_1532_2001";
    return standards_of(h) & BSDL_STANDARD_BIT_1532_2002 ? "STD_1532_2002" : nullptr;
}

const char *bsdlStandard1149_4(Bsdl *h)
{
    return standards_of(h) & BSDL_STANDARD_BIT_1149_4_2005 ? "STD_1149_4_2005" : nullptr;
}

const char *bsdlStandard1149_6(Bsdl *h)
{
    return standards_of(h) & BSDL_STANDARD_BIT_1149_6_2003 ? "STD_1149_6_2003" : nullptr;
}

const char *bsdlStandardPrg(Bsdl *h)
{
    return standards_of(h) & BSDL_STANDARD_BIT_PRG_2001 ? "STD_PRG_2001" : nullptr;
}

uint32_t bsdlIs1990(Bsdl *h) { return standards_of(h) & BSDL_STANDARD_BIT_1990; }

uint32_t bsdlIs1994(Bsdl *h) { return standards_of(h) & BSDL_STANDARD_BIT_1994; }

uint32_t bsdlIs2001(Bsdl *h) { return standards_of(h) & BSDL_STANDARD_BIT_2001; }

uint32_t bsdlIs1532(Bsdl *h)
{
    if ((standards_of(h) & BSDL_STANDARD_MASK_PRG) || !h || !h->data)
        return 0;
    return h->standards & BSDL_STANDARD_MASK_1532;
}

uint32_t bsdlIsPrg(Bsdl *h) { return standards_of(h) & BSDL_STANDARD_MASK_PRG; }

uint32_t bsdlIsAio(Bsdl *h) { return standards_of(h) & BSDL_STANDARD_BIT_1149_6_2003; }
