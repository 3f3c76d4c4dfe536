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
