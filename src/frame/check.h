#pragma once

#include "frame/messages.h"
#include "frame/model.h"

// What the checks share. Each bsdl_check_* begins with check_begin(): 2 for a NULL handle, 3 for
// one without data, else 0; messages then name the handle's file.
int32_t check_begin(const Bsdl *bsdl);

// A row of a driver's table.
struct CheckStep {
    int32_t (*check)(Bsdl *bsdl);
    int32_t fails_from; // results from here on count as failed
    const char *passed;
    const char *failed;
};

// Runs one step and sends its line; true when it failed.
bool check_step(Bsdl *bsdl, const CheckStep &step);

// The fourteen general checks, for the drivers of the ISC and AIO checks: those differ from
// bsdl_check() in two thresholds, and count 100 for each failure. Sets `check_state`.
int32_t check_general(Bsdl *bsdl);
