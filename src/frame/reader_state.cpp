#include "frame/reader_state.h"

#include "scan/keywords.h"

ReaderState reader_state = {
    .context = nullptr,
    .rule_set = RULES_INITIAL,
    .released = nullptr,
    .message_rule = nullptr,
    .message_file = nullptr,
    .message_line = 0,
    .file = nullptr,
    .d4_device = -2,
    .d4_abm_cursor = 0,
    .d4_partition_cursor = 0,
    .parser_depth = 10000,
};

void reader_state_resume(const ReaderState &outer)
{
    const ReaderState inner = reader_state;
    reader_state = outer;
    reader_state.released = inner.released;
    reader_state.d4_device = inner.d4_device;
    reader_state.d4_abm_cursor = inner.d4_abm_cursor;
    reader_state.d4_partition_cursor = inner.d4_partition_cursor;
}
