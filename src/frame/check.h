#pragma once

#include "frame/call.h"
#include "frame/messages.h"
#include "frame/model.h"

// The end of each bsdl_check_*, which begins with a Call. Gives the result of the check. Gives 100
// when memory has run out, since some rule may not have been tried.
int32_t check_end(Bsdl *bsdl, int32_t result, const Arena *scratch = nullptr);

// A row of a driver's table.
struct CheckStep {
    int32_t (*check)(Bsdl *bsdl);
    int32_t fails_from; // results from here on count as failed
    const char *passed;
    const char *failed;
};

// Runs one step and sends its line; true when it failed.
bool check_step(Bsdl *bsdl, const CheckStep &step);

// Ends a driver and releases the look-ups of its checks. False when memory has run out: some rule
// may not have been tried, so the checks have not passed.
bool checks_end(Bsdl *bsdl);

// BsdlData.check_state: the outcome of the general checks, and which extensions have passed.
constexpr uint32_t CHECK_STATE_GENERAL = 7;
constexpr uint32_t CHECK_STATE_GENERAL_PASSED = 1;
constexpr uint32_t CHECK_STATE_GENERAL_FAILED = 2;
constexpr uint32_t CHECK_STATE_ISC_PASSED = 8;
constexpr uint32_t CHECK_STATE_AIO_PASSED = 0x10;

// BsdlData.check_passed.
constexpr uint32_t CHECK_PASSED_ISC = 0x10; // of a description or of the parts of a data file
constexpr uint32_t CHECK_PASSED_AIO = 0x40;

// For the drivers of the ISC and AIO checks: runs the fourteen general checks unless there is an
// outcome of them. They differ from bsdl_check() in two thresholds and count 100 for each failure,
// which is added to the result. True when the outcome is a pass.
bool general_checks_passed(Bsdl *bsdl, int32_t *result);
