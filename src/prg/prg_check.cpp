// The check of PPC/PRG data files.

#include "frame/check.h"
#include "prg/prg.h"

namespace
{

constexpr uint32_t PRG_PASSED = 0x10; // of `check_passed`

} // namespace

// A data file has no instructions, which the flow rules take into account.
static int32_t check_flow_of_part(Bsdl *bsdl) { return bsdl_check_isc_flow(bsdl, 1); }

namespace
{

// clang-format off
constexpr CheckStep FILE_STEPS[] = {
    {.check = bsdl_check_prg_prog_ref, .fails_from = 1,
     .passed = "\tPPC/PRG program reference passed",
     .failed = "\tPPC/PRG program reference has errors"},
    {.check = bsdl_check_extensions, .fails_from = 1,
     .passed = "\tPPC/PRG extensions passed",
     .failed = "\tPPC/PRG extensions has errors"},
};

constexpr CheckStep PART_STEPS[] = {
    {.check = bsdl_check_isc_pin_behaviour, .fails_from = 1,
     .passed = "\tISC pin behaviour description passed",
     .failed = "\tISC pin behaviour description has errors"},
    {.check = bsdl_check_isc_fixed_system_pins, .fails_from = 2,
     .passed = "\tISC fixed pins description passed",
     .failed = "\tISC fixed pins description has errors"},
    {.check = bsdl_check_isc_status, .fails_from = 1,
     .passed = "\tISC status description passed",
     .failed = "\tISC status description has errors"},
    {.check = bsdl_check_isc_blank_usercode, .fails_from = 1,
     .passed = "\tISC blank usercode description passed",
     .failed = "\tISC blank usercode description has errors"},
    {.check = bsdl_check_isc_security, .fails_from = 2,
     .passed = "\tISC security description passed",
     .failed = "\tISC security description has errors"},
    {.check = check_flow_of_part, .fails_from = 1,
     .passed = "\tISC flow description passed",
     .failed = "\tISC flow description has errors"},
    {.check = bsdl_check_isc_procedures, .fails_from = 1,
     .passed = "\tISC procedure description passed",
     .failed = "\tISC procedure description has errors"},
    {.check = bsdl_check_isc_actions, .fails_from = 1,
     .passed = "\tISC action description passed",
     .failed = "\tISC action description has errors"},
    // Without instructions in the file, a part that has the statement fails.
    {.check = bsdl_check_isc_illegal_exit, .fails_from = 2,
     .passed = "\tISC illegal exit description passed",
     .failed = "\tISC illegal exit description has errors"},
    {.check = bsdl_check_isc_design_warning, .fails_from = 2,
     .passed = "\tISC design warning passed",
     .failed = "\tISC design warning has errors"},
};
// clang-format on

} // namespace

int32_t bsdl_check_prg_prog_ref(Bsdl *h)
{
    if (check_begin(h) || !h->prg)
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    for (const GSList *link = h->prg->program_references; link; link = link->next) {
        const auto *program = static_cast<const PrgProgram *>(link->data);
        if (!find_part_type(h, program->spec.part_type))
            result |= rule_error({"program-type-unknown", program->line}, "type '%s' not specified",
                                 shown(program->spec.part_type));
    }
    return result;
}

static int32_t check_part(Bsdl *bsdl, const PrgPart *part)
{
    int32_t result = BSDL_RESULT_OK;
    bsdl_msg(BSDL_LEVEL_PROGRESS, 2, "Checking ISC part type '%s'", shown(part->part_name));
    bsdl->data->isc = part->isc;
    for (const CheckStep &step : PART_STEPS)
        if (check_step(bsdl, step))
            result = BSDL_RESULT_FAILED;
    return result;
}

int32_t bsdl_check_prg(Bsdl *h)
{
    if (!h)
        return BSDL_RESULT_NO_HANDLE;
    if (!h->prg || check_begin(h))
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    for (const CheckStep &step : FILE_STEPS)
        if (check_step(h, step))
            result = BSDL_RESULT_FAILED;
    for (const GSList *part = h->prg->isc_components; part; part = part->next)
        result |= check_part(h, static_cast<const PrgPart *>(part->data));
    // A description keeps its own family.
    if (bsdlIsPrg(h))
        h->data->isc = nullptr;
    lookups_drop(h);
    if (h->arena.failed)
        result = BSDL_RESULT_FAILED;
    if (result == BSDL_RESULT_OK)
        h->data->check_passed |= PRG_PASSED;
    bsdl_msg(BSDL_LEVEL_INFO, 3, "\tISC tests done %s", result == BSDL_RESULT_OK ? "PASS" : "FAIL");
    return result;
}
