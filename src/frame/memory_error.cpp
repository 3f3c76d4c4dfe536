#include "frame/memory_error.h"

#include "base/arena.h"
#include "frame/messages.h"
#include "scan/scanner.h"

#include <cstdlib>

static void say_memory_error()
{
    rule_message(BSDL_LEVEL_ERROR, 0, {"memory-error"}, "Memory error");
}

void memory_ran_out(Bsdl *bsdl)
{
    say_memory_error();
    end_reading(bsdl, -1);
}

void arena_exhausted()
{
    say_memory_error();
    std::exit(-1);
}
