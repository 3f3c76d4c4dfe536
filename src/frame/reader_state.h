#pragma once

#include "frame/messages.h"

#include <cstdint>
#include <mutex>

struct Bsdl;
struct Call;

// What the current message is about.
struct CurrentMessage {
    const char *rule = nullptr;
    const char *file = nullptr;
    SourcePosition begin = {};
    SourcePosition end = {};
    ExpectedTokens *expected = nullptr;
    bool sums_up = false;
};

// All values of the library that belong to a thread and not to a handle. No thread changes those of
// another.
struct ReaderState {
    // Where messages go: the context of the thread's latest reading. Each reading binds its own.
    BsdlContext *context = nullptr;
    // Until then a call on a handle sends to the context of the handle's own reading.
    bool has_read = false;
    // The call that runs; NULL between the calls of a host, so also while a sink runs.
    Call *call = nullptr;
    // The keyword set that the next reading starts in: it is picked anew at a token only while
    // `standards` is not 0. A bit of RuleSet (scan/keywords.h).
    uint32_t rule_set = 1;

    // While the sink runs.
    CurrentMessage message = {};

    // The built-in table of mixed-signal devices: row searched once for the thread (-2 not yet, -1
    // no row) and the two iterations over it.
    int32_t d4_device = -2;
    uint32_t d4_abm_cursor = 0;
    uint32_t d4_partition_cursor = 0;

    // Bound on the parser's stack, lowered by a test.
    int32_t parser_depth = 10000;
};

extern constinit thread_local ReaderState reader_state;

// Handles that were given back by freeBsdl() keep their outer record; this list keeps them
// reachable. A handle may be given back in another thread than it was read in.
struct ReleasedHandles {
    std::mutex lock;
    Bsdl *first = nullptr;
};

extern ReleasedHandles released_handles;
