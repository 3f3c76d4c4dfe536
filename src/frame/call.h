#pragma once

#include "tarnlet/bsdl.h"

#include <cstdint>

struct Bsdl;

// A call on a handle that may send messages: each check and each call for the EBST file begins with
// one. While it runs a sink may call anything. A further call of this kind on the same handle is
// refused then, and giving the handle back waits for the end of the outermost. All messages of a
// call go to one context, whatever a sink reads in the meantime.
struct Call {
    explicit Call(Bsdl *handle);
    ~Call();
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;

    Bsdl *const bsdl;
    // What the export gives at once: 2 without a handle, 3 for one without data, 100 from a sink of
    // a call on the same handle. Else 0.
    const int32_t code;
    bool refused() const { return code == BSDL_RESULT_FAILED; }
    // False for the steps of a driver, which are part of its call.
    const bool outermost;
    BsdlContext *context = nullptr;
    Call *around = nullptr;
};
