// The cells that each issue of the standard brings along, and the rules about what a cell may
// capture.

#include "boundary/standard_cells.h"

#include "frame/messages.h"
#include "frame/texts.h"
#include "header/header.h"

#include <cstring>

namespace
{

constexpr int CONTEXTS = CELL_FUNCTION_OBSERVE_ONLY + 1;
constexpr int INSTRUCTIONS = CAPTURE_INSTRUCTION_RUNBIST + 1;

// Sources of one context under the three instructions that built-in cells know; 0: not described.
struct StandardContext {
    int32_t context;
    int32_t extest;
    int32_t sample;
    int32_t intest;
};

struct StandardCell {
    const char *name;
    bool only_2001;
    StandardContext contexts[9];
};

constexpr int32_t INPUT = CELL_FUNCTION_INPUT;
constexpr int32_t OUTPUT2 = CELL_FUNCTION_OUTPUT2;
constexpr int32_t OUTPUT3 = CELL_FUNCTION_OUTPUT3;
constexpr int32_t CONTROL = CELL_FUNCTION_CONTROL;
constexpr int32_t CONTROLR = CELL_FUNCTION_CONTROLR;
constexpr int32_t INTERNAL = CELL_FUNCTION_INTERNAL;
constexpr int32_t CLOCK = CELL_FUNCTION_CLOCK;
constexpr int32_t BIDIR_IN = CELL_FUNCTION_BIDIR_IN;
constexpr int32_t BIDIR_OUT = CELL_FUNCTION_BIDIR_OUT;
constexpr int32_t OBSERVE_ONLY = CELL_FUNCTION_OBSERVE_ONLY;
constexpr int32_t PI = CAPTURE_SOURCE_PI;
constexpr int32_t PO = CAPTURE_SOURCE_PO;
constexpr int32_t UPD = CAPTURE_SOURCE_UPD;
constexpr int32_t X = CAPTURE_SOURCE_X;

// clang-format off
// BC_1 to BC_4 also have contexts that makers use although the standard does not mention them:
// these come last.
constexpr StandardCell STANDARD_CELLS[] = {
    {"BC_8", true,   {{BIDIR_IN, PI, PI, 0}, {BIDIR_OUT, PO, PO, 0}}},
    {"BC_9", true,   {{OUTPUT2, PO, PI, PI}, {OUTPUT3, PO, PI, PI}}},
    {"BC_10", true,  {{OUTPUT2, PO, PO, 0}, {OUTPUT3, PO, PO, 0}}},
    {"BC_0", false,  {{INPUT, PI, PI, X}, {OUTPUT2, X, PI, PI}, {OUTPUT3, X, PI, PI},
                      {INTERNAL, X, X, X}, {CONTROL, X, PI, PI}, {CONTROLR, X, PI, PI},
                      {BIDIR_IN, PI, PI, X}, {BIDIR_OUT, X, PI, PI}, {OBSERVE_ONLY, PI, PI, 0}}},
    {"BC_1", false,  {{OUTPUT2, PI, PI, PI}, {OUTPUT3, PI, PI, PI}, {INTERNAL, PI, PI, PI},
                      {INPUT, PI, PI, PI}, {CONTROL, PI, PI, PI}, {CONTROLR, PI, PI, PI}}},
    {"BC_2", false,  {{OUTPUT2, UPD, PI, 0}, {OUTPUT3, UPD, PI, PI}, {INTERNAL, PI, PI, UPD},
                      {CONTROL, UPD, PI, PI}, {CONTROLR, UPD, PI, PI},
                      {INPUT, PI, PI, UPD}}},
    {"BC_3", false,  {{INTERNAL, PI, PI, PI},
                      {INPUT, PI, PI, PI}}},
    {"BC_4", false,  {{OBSERVE_ONLY, 0, PI, 0}, {CLOCK, PI, PI, PI}, {INTERNAL, PI, PI, PI},
                      {INPUT, PI, PI, 0}}},
    {"BC_5", false,  {{INPUT, PI, PI, UPD}, {CONTROL, PI, PI, UPD}}},
    {"BC_6", false,  {{BIDIR_IN, PI, PI, UPD}, {BIDIR_OUT, UPD, PI, PI}}},
    {"BC_7", false,  {{BIDIR_IN, PI, PI, UPD}, {BIDIR_OUT, PO, PI, PI}}},
};
// clang-format on

} // namespace

static void append_capture(Bsdl *bsdl, List *capts, int32_t context, int32_t instruction,
                           int32_t source)
{
    if (source)
        *capts = model_append(bsdl, *capts, capt_desc_new(bsdl, context, instruction, source, {}));
}

static List standard_captures(Bsdl *bsdl, const StandardCell &cell)
{
    List capts = {};
    for (const StandardContext &row : cell.contexts) {
        // BC_0 has its observing captures the other way round.
        const bool sample_first = row.context == OBSERVE_ONLY;
        if (!sample_first)
            append_capture(bsdl, &capts, row.context, CAPTURE_INSTRUCTION_EXTEST, row.extest);
        append_capture(bsdl, &capts, row.context, CAPTURE_INSTRUCTION_SAMPLE, row.sample);
        if (sample_first)
            append_capture(bsdl, &capts, row.context, CAPTURE_INSTRUCTION_EXTEST, row.extest);
        append_capture(bsdl, &capts, row.context, CAPTURE_INSTRUCTION_INTEST, row.intest);
    }
    return capts;
}

void create_standard_cells(Bsdl *bsdl, uint32_t standard_bit)
{
    BsdlData *data = bsdl->data;
    data->cell_desc_cursor = 0;
    data->cell_descs = nullptr;
    data->cell_descs_tail = nullptr;
    list_changed(&data->cell_desc_walk);
    lookups_drop(bsdl);
    for (const StandardCell &cell : STANDARD_CELLS)
        if (!cell.only_2001 || standard_bit == BSDL_STANDARD_BIT_2001)
            cell_desc_enter(bsdl, cell_desc_new(bsdl, model_name(bsdl, cell.name),
                                                standard_captures(bsdl, cell), {}));
}

// ----------------------------------------------------------------------------------- capture rules

static bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A cell whose captures the standard prescribes.
static bool is_mandated(const char *name, int32_t conformance)
{
    if (!text_starts_with(name, "BC_"))
        return false;
    const size_t length = std::strlen(name);
    if (length == 5)
        return conformance == CONFORMANCE_2001 && is_digit(name[3]) && is_digit(name[4]);
    if (length != 4)
        return false;
    if (name[3] >= '0' && name[3] <= '6')
        return true;
    if (name[3] == '7')
        return conformance == CONFORMANCE_1993;
    return conformance == CONFORMANCE_2001 && is_digit(name[3]);
}

// Of ( context , instruction , source ). A built-in cell stands nowhere; whether it may be used is
// a matter of the conformance.
static Place source_place(const Bsdl *bsdl, const CaptDesc *capt)
{
    return place_or(token_place(capt->place.begin, 5), bsdl->data->conformance_place);
}

static int32_t illegal_source(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    return rule_message(BSDL_LEVEL_ERROR, 1, {"capture-source-illegal", source_place(bsdl, capt)},
                        "Illegal capture source '%s' for instruction '%s' of context '%s' for "
                        "cell '%s'",
                        capture_source_name(capt->data_source),
                        capture_instruction_name(capt->capt_instr),
                        cell_function_name(capt->cell_context), desc->name);
}

static int32_t check_input(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    const bool prescribed = capt->capt_instr == CAPTURE_INSTRUCTION_EXTEST ||
                            capt->capt_instr == CAPTURE_INSTRUCTION_SAMPLE;
    return prescribed && capt->data_source != PI ? illegal_source(bsdl, desc, capt)
                                                 : BSDL_RESULT_OK;
}

// SAMPLE may capture the output itself from 2001 on, and a description that does so without saying
// which issue it conforms to gets a hint.
static int32_t check_output(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    const bool conforms_2001 = bsdl->data->conformance == CONFORMANCE_2001;
    const bool sample = capt->capt_instr == CAPTURE_INSTRUCTION_SAMPLE;
    if (!sample && capt->capt_instr != CAPTURE_INSTRUCTION_INTEST)
        return BSDL_RESULT_OK;
    if (capt->data_source == PI || (sample && conforms_2001 && capt->data_source == PO))
        return BSDL_RESULT_OK;
    return rule_message(bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING, bsdl->strict ? 1 : 2,
                        {"capture-source-of-output", source_place(bsdl, capt)},
                        "Illegal capture source '%s' for instruction '%s' of context '%s' for "
                        "cell '%s'%s",
                        capture_source_name(capt->data_source),
                        capture_instruction_name(capt->capt_instr),
                        cell_function_name(capt->cell_context), desc->name,
                        conforms_2001 ? "" : " (Maybe you want to set 2001 Conformance)");
}

static int32_t check_control(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    const int32_t source = capt->data_source;
    const bool illegal =
        (capt->capt_instr == CAPTURE_INSTRUCTION_SAMPLE && source != PI) ||
        (capt->capt_instr == CAPTURE_INSTRUCTION_INTEST && source != PI && source != UPD);
    return illegal ? illegal_source(bsdl, desc, capt) : BSDL_RESULT_OK;
}

static int32_t check_observe_only(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    if (capt->data_source != PI)
        return illegal_source(bsdl, desc, capt);
    if (capt->capt_instr != CAPTURE_INSTRUCTION_INTEST ||
        !is_mandated(desc->name, bsdl->data->conformance))
        return BSDL_RESULT_OK;
    return rule_message(BSDL_LEVEL_ERROR, 1,
                        {"capture-source-of-mandated-cell", source_place(bsdl, capt)},
                        "Illegal capture source 'PI' for instruction '%s' of context '%s' for "
                        "mandated cell '%s'",
                        capture_instruction_name(capt->capt_instr),
                        cell_function_name(capt->cell_context), desc->name);
}

static int32_t check_source(const Bsdl *bsdl, const CellDesc *desc, const CaptDesc *capt)
{
    switch (capt->cell_context) {
    case INPUT:
    case CLOCK:
    case BIDIR_IN:
        return check_input(bsdl, desc, capt);
    case OUTPUT2:
    case OUTPUT3:
    case BIDIR_OUT:
        return check_output(bsdl, desc, capt);
    case CONTROL:
    case CONTROLR:
        return check_control(bsdl, desc, capt);
    case OBSERVE_ONLY:
        return check_observe_only(bsdl, desc, capt);
    default:
        return BSDL_RESULT_OK;
    }
}

static int32_t check_captures(const Bsdl *bsdl, CellDesc *desc)
{
    int32_t result = BSDL_RESULT_OK;
    const CaptDesc *last[CONTEXTS][INSTRUCTIONS] = {};
    for (const CaptDesc *capt : items<CaptDesc>(desc->capt_descs)) {
        last[capt->cell_context][capt->capt_instr] = capt;
    }
    for (const CaptDesc *capt : items<CaptDesc>(desc->capt_descs)) {
        if (capt->capt_instr == CAPTURE_INSTRUCTION_INTEST)
            desc->has_intest = 1;
        // All but the last of those that describe the same are reported.
        if (last[capt->cell_context][capt->capt_instr] != capt)
            result |= rule_message(BSDL_LEVEL_ERROR, 1, {"capture-described-twice", capt->place},
                                   "Capture descriptor (%s, %s, %s) for cell '%s' already defined",
                                   cell_function_name(capt->cell_context),
                                   capture_instruction_name(capt->capt_instr),
                                   capture_source_name(capt->data_source), desc->name);
        result |= check_source(bsdl, desc, capt);
    }
    return result;
}

int32_t check_capture_rules(Bsdl *bsdl)
{
    int32_t result = BSDL_RESULT_OK;
    for (CellDesc *desc : items<CellDesc>(bsdl->data->cell_descs))
        result |= check_captures(bsdl, desc);
    return result;
}
