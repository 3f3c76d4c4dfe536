#pragma once

#include "tarnlet/bsdl.h"

#include <cstdint>

struct Bsdl;

// All values of the library that belong to the process and not to a handle.
struct ReaderState {
    // Where messages go: the context of the latest reading. Each reading binds its own.
    BsdlContext *context;
    // The keyword set in force, which the next reading starts in: it is picked anew at a token only
    // while `standards` is not 0. A bit of RuleSet (scan/keywords.h).
    uint32_t rule_set;
    // Handles that were given back keep their outer record; this list keeps them reachable.
    Bsdl *released;

    // What the message at hand is about; valid while the sink runs.
    const char *message_rule;
    const char *message_file;
    int32_t message_line;
    // The file of the reading or check at hand, for messages without a file of their own.
    const char *file;

    // The built-in table of mixed-signal devices: row sought once for the process (-2 not yet, -1
    // no row) and the two iterations over it.
    int32_t d4_device;
    uint32_t d4_abm_cursor;
    uint32_t d4_partition_cursor;

    // Bound on the parser's stack, lowered by a test.
    int32_t parser_depth;
};

extern ReaderState reader_state;

// Back to what was at hand before a sink ran; what the sink did for the process as a whole stays.
void reader_state_resume(const ReaderState &outer);
