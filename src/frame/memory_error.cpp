#include "frame/memory_error.h"

#include "base/arena.h"
#include "frame/messages.h"

#include <cstdlib>

void end_on_memory_error()
{
    rule_message(BSDL_LEVEL_ERROR, 0, {"memory-error"}, "Memory error");
    std::exit(-1);
}

void arena_exhausted() { end_on_memory_error(); }
