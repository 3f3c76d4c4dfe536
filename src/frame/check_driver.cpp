// Which checks run, in which order, and from which result on one counts as failed.

#include "frame/check.h"
#include "frame/lookup.h"

namespace
{

// A general check. The drivers of the ISC and AIO checks have thresholds of their own.
struct GeneralStep {
    CheckStep step;
    int32_t extension_fails_from;
};

// clang-format off
constexpr GeneralStep GENERAL[] = {
    {{.check = bsdl_check_generic, .fails_from = 1,
      .passed = "\tGeneric parameter passed",
      .failed = "\tGeneric parameter has errors"}, 1},
    {{.check = bsdl_check_logical_port, .fails_from = 1,
      .passed = "\tLogical port identification passed",
      .failed = "\tLogical port identification has errors"}, 1},
    {{.check = bsdl_check_packages, .fails_from = 6,
      .passed = "\tPackage in use statement passed",
      .failed = "\tPackage in use statement has errors"}, 6},
    {{.check = bsdl_check_all_pin_maps, .fails_from = 1,
      .passed = "\tDevice package pin mappings description passed",
      .failed = "\tDevice package pin mappings description has errors"}, 1},
    {{.check = bsdl_check_grouped_port, .fails_from = 2,
      .passed = "\tGrouped Port identification passed",
      .failed = "\tGrouped Port identification has errors"}, 2},
    {{.check = bsdl_check_scan_port, .fails_from = 1,
      .passed = "\tScan port identification description passed",
      .failed = "\tScan port identification description has errors"}, 1},
    {{.check = bsdl_check_compliance, .fails_from = 2,
      .passed = "\tCompliance enable description passed",
      .failed = "\tCompliance enable description has errors"}, 2},
    {{.check = bsdl_check_instr_reg, .fails_from = 1,
      .passed = "\tInstruction register description passed",
      .failed = "\tInstruction register description has errors"}, 1},
    {{.check = bsdl_check_optional_reg, .fails_from = 2,
      .passed = "\tOptional register description passed",
      .failed = "\tOptional register description has errors"}, 1},
    {{.check = bsdl_check_reg_access, .fails_from = 2,
      .passed = "\tRegister access description passed",
      .failed = "\tRegister access description has errors"}, 1},
    {{.check = bsdl_check_bsr, .fails_from = 1,
      .passed = "\tBoundary scan register description passed",
      .failed = "\tBoundary scan register description has errors"}, 1},
    {{.check = bsdl_check_runbist, .fails_from = 2,
      .passed = "\tRunbist description passed",
      .failed = "\tRunbist description has errors"}, 2},
    {{.check = bsdl_check_intest, .fails_from = 2,
      .passed = "\tIntest description passed",
      .failed = "\tIntest description has errors"}, 2},
    {{.check = bsdl_check_extensions, .fails_from = 2,
      .passed = "\tExtensions description passed",
      .failed = "\tExtensions description has errors"}, 2},
};
// clang-format on

} // namespace

int32_t check_end(Bsdl *bsdl, int32_t result, const Arena *scratch)
{
    const bool failed = bsdl->arena.failed || (bsdl->lookups && bsdl->lookups->arena.failed) ||
                        (scratch && scratch->failed);
    return failed ? BSDL_RESULT_FAILED : result;
}

bool check_step(Bsdl *bsdl, const CheckStep &step)
{
    bool failed = step.check(bsdl) >= step.fails_from;
    if (failed)
        bsdl_msg(BSDL_LEVEL_ERROR, 1, "%s", step.failed);
    else
        bsdl_msg(BSDL_LEVEL_INFO, 3, "%s", step.passed);
    return failed;
}

static uint32_t outcome(const Bsdl *bsdl) { return bsdl->data->check_state & CHECK_STATE_GENERAL; }

static void note_outcome(Bsdl *bsdl, bool failed)
{
    uint32_t *state = &bsdl->data->check_state;
    *state &= ~CHECK_STATE_GENERAL;
    *state |= failed ? CHECK_STATE_GENERAL_FAILED : CHECK_STATE_GENERAL_PASSED;
}

bool checks_end(Bsdl *bsdl)
{
    lookups_drop(bsdl);
    return !bsdl->arena.failed;
}

int32_t bsdl_check(Bsdl *h)
{
    const Call call(h);
    if (call.code)
        return call.code;
    if (outcome(h))
        return outcome(h) == CHECK_STATE_GENERAL_PASSED ? BSDL_RESULT_OK : BSDL_RESULT_FAILED;

    bool failed = false;
    for (const GeneralStep &row : GENERAL) {
        failed |= check_step(h, row.step);
        // A host that reads fast asks for the package alone. The result of its check does not
        // count.
        if (h->fast_read)
            return checks_end(h) ? BSDL_RESULT_OK : BSDL_RESULT_FAILED;
    }
    failed |= !checks_end(h);
    note_outcome(h, failed);
    return failed ? BSDL_RESULT_FAILED : BSDL_RESULT_OK;
}

static int32_t check_general(Bsdl *bsdl)
{
    int32_t result = 0;
    for (const GeneralStep &row : GENERAL) {
        CheckStep step = row.step;
        step.fails_from = row.extension_fails_from;
        result += check_step(bsdl, step) ? BSDL_RESULT_FAILED : 0;
    }
    if (!checks_end(bsdl) && !result)
        result = BSDL_RESULT_FAILED;
    note_outcome(bsdl, result != 0);
    return result;
}

bool general_checks_passed(Bsdl *bsdl, int32_t *result)
{
    if (!outcome(bsdl))
        *result += check_general(bsdl);
    return outcome(bsdl) == CHECK_STATE_GENERAL_PASSED;
}
