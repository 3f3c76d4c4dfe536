// Cell descriptions, built in or from a package, and what hosts ask about them.

#include "base/index.h"
#include "frame/messages.h"
#include "header/header.h"

CaptDesc *capt_desc_new(Bsdl *bsdl, int32_t context, int32_t instruction, int32_t source,
                        Place place)
{
    return model_new<CaptDesc>(bsdl, {.cell_context = context,
                                      .capt_instr = instruction,
                                      .data_source = source,
                                      .place = place});
}

CellDesc *cell_desc_new(Bsdl *bsdl, const char *name, List capt_descs, Place place)
{
    auto *desc =
        model_new<CellDesc>(bsdl, {.name = name, .capt_descs = capt_descs.head, .place = place});
    for (const CaptDesc *capt : items<CaptDesc>(capt_descs.head))
        desc->contexts |= 1U << capt->cell_context;
    return desc;
}

void cell_desc_enter(Bsdl *bsdl, CellDesc *desc)
{
    BsdlData *data = bsdl->data;
    model_append_to(bsdl, &data->cell_descs, &data->cell_descs_tail, desc);
}

// Both are kept whatever the standard.
int32_t capture_keeper(Bsdl *bsdl)
{
    if (!bsdlIs2001(bsdl))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "capture-keeper-needs-2001",
                      "\t<capture instruction> KEEPER is only allowed in BSDL2001");
    return CAPTURE_INSTRUCTION_KEEPER;
}

int32_t capture_runbist(Bsdl *bsdl)
{
    if (!bsdlIs1990(bsdl))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "capture-runbist-needs-1990",
                      "\t<capture instruction> RUNBIST is only allowed in BSDL90");
    return CAPTURE_INSTRUCTION_RUNBIST;
}

CellDesc *find_cell_desc(Bsdl *bsdl, const char *name)
{
    Lookups *lookups = lookups_of(bsdl);
    if (!lookups->cell_descs.built) {
        uint32_t count = 0;
        lookups->cell_desc_table =
            list_table_of<CellDesc>(&lookups->arena, bsdl->data->cell_descs, &count);
        index_start(&lookups->cell_descs, &lookups->arena, count);
        for (uint32_t i = 0; i < count; i++)
            index_first(&lookups->cell_descs, name_fold(lookups->cell_desc_table[i]->name), i);
    }
    const uint32_t at = index_find(&lookups->cell_descs, name_fold(name));
    return at == INDEX_NONE ? nullptr : lookups->cell_desc_table[at];
}

// ----------------------------------------------------------------------------------------- queries

// Hosts get the links themselves. These iterations have no bound, so the position stops at the end
// of its range.
static GSList *next_link(ListWalk *walk, GSList *list, uint32_t *cursor)
{
    if (!list)
        return nullptr;
    if (*cursor < UINT32_MAX)
        ++*cursor;
    return const_cast<GSList *>(list_link_at(walk, list, *cursor));
}

GSList *bsdlGetFirstCellDesc(Bsdl *h)
{
    if (!h || !h->data)
        return nullptr;
    h->data->cell_desc_cursor = 0;
    return h->data->cell_descs;
}

GSList *bsdlGetNextCellDesc(Bsdl *h)
{
    if (!h || !h->data)
        return nullptr;
    return next_link(&h->data->cell_desc_walk, h->data->cell_descs, &h->data->cell_desc_cursor);
}

static CellDesc *desc_in(const GSList *cell)
{
    return cell ? static_cast<CellDesc *>(cell->data) : nullptr;
}

const char *bsdlGetCellDescName(GSList *cell)
{
    const CellDesc *desc = desc_in(cell);
    return desc ? desc->name : nullptr;
}

const char *bsdlGetCellDescPackage(GSList *cell)
{
    const CellDesc *desc = desc_in(cell);
    return desc && desc->package ? desc->package->name : nullptr;
}

GSList *bsdlGetCellFirstCaptDesc(GSList *cell)
{
    CellDesc *desc = desc_in(cell);
    if (!desc)
        return nullptr;
    desc->capt_cursor = 0;
    return desc->capt_descs;
}

GSList *bsdlGetCellNextCaptDesc(GSList *cell)
{
    CellDesc *desc = desc_in(cell);
    return desc ? next_link(&desc->capt_walk, desc->capt_descs, &desc->capt_cursor) : nullptr;
}

static const CaptDesc *capt_in(const GSList *capt)
{
    return capt ? static_cast<const CaptDesc *>(capt->data) : nullptr;
}

int32_t bsdlGetCellCaptContext(GSList *capt)
{
    const CaptDesc *desc = capt_in(capt);
    return desc ? desc->cell_context : 0;
}

int32_t bsdlGetCellCaptInstr(GSList *capt)
{
    const CaptDesc *desc = capt_in(capt);
    return desc ? desc->capt_instr : 0;
}

int32_t bsdlGetCellCaptSource(GSList *capt)
{
    const CaptDesc *desc = capt_in(capt);
    return desc ? desc->data_source : 0;
}
