#pragma once

#include <cstddef>
#include <cstdint>

/**
 * Counts the tokens of a description in one table-driven pass that does nothing else: the
 * floor under any reader. Quotes count as punctuation, so the text inside strings is counted
 * token by token, as it is read in the end.
 * @param text `size` bytes and two zero bytes after them; it is written to during the pass
 *        and is as before when it ends.
 */
uint64_t floor_count_tokens(char *text, size_t size);
