#include "frame/reader_state.h"

#include "scan/keywords.h"

static_assert(ReaderState{}.rule_set == RULES_INITIAL);

constinit thread_local ReaderState reader_state;

constinit ReleasedHandles released_handles;
