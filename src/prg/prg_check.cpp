// The check of PPC/PRG data files.

#include "frame/check.h"
#include "isc/isc.h"
#include "prg/prg.h"

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
// clang-format on

} // namespace

int32_t bsdl_check_prg_prog_ref(Bsdl *h)
{
    const Call call(h);
    if (call.refused())
        return call.code;
    if (call.code || !h->prg)
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    for (const PrgProgram *program : items<PrgProgram>(h->prg->program_references)) {
        if (!find_part_type(h, program->spec.part_type))
            result |= rule_error({"program-type-unknown", program->place},
                                 "type '%s' not specified", shown(program->spec.part_type));
    }
    return result;
}

int32_t bsdl_check_prg(Bsdl *h)
{
    const Call call(h);
    if (!h || call.refused())
        return call.code;
    if (call.code || !h->prg)
        return BSDL_RESULT_OK;
    int32_t result = BSDL_RESULT_OK;
    for (const CheckStep &step : FILE_STEPS)
        if (check_step(h, step))
            result = BSDL_RESULT_FAILED;
    for (const PrgPart *part : items<PrgPart>(h->prg->isc_components)) {
        bsdl_msg(BSDL_LEVEL_PROGRESS, 2, "Checking ISC part type '%s'", shown(part->part_name));
        h->data->isc = part->isc;
        if (!isc_check_part(h))
            result = BSDL_RESULT_FAILED;
    }
    // A description keeps its own family.
    if (bsdlIsPrg(h))
        h->data->isc = nullptr;
    if (!checks_end(h))
        result = BSDL_RESULT_FAILED;
    bool passed = result == BSDL_RESULT_OK;
    if (passed)
        h->data->check_passed |= CHECK_PASSED_ISC;
    bsdl_msg(BSDL_LEVEL_INFO, 3, "\tISC tests done %s", passed ? "PASS" : "FAIL");
    return result;
}
