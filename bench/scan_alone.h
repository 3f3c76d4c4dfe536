#pragma once

#include <cstdint>

/**
 * The library's own scanner over a whole file, the contents of its strings included, without
 * the parser.
 * @return The number of tokens; 0 when the file cannot be read.
 */
uint64_t scan_alone(const char *path);
