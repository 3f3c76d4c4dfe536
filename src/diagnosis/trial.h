#pragma once

#include "diagnosis/checked_text.h"
#include "diagnosis/source_text.h"

#include <cstddef>
#include <string_view>
#include <vector>

// Reading a text just to see how far it reads.

// The work of one diagnosis, in bytes read, so that a result does not depend on the machine.
struct Work {
    size_t bytes_left;
    int32_t (*cancelled)(void *data);
    void *cancel_data;
    bool was_cancelled = false;

    // Counts bytes that were read, and asks whether the caller has cancelled.
    void spend(size_t bytes);
};

// Reading and checking a text costs as much as reading it so many times.
constexpr size_t READ_AND_CHECKED = 2;

constexpr size_t READS_TO_THE_END = SIZE_MAX;

struct Trial {
    size_t far = READS_TO_THE_END; // where the first mistake of syntax is told, in bytes
    size_t far_end = 0;            // and where what it names ends
    Said first{};                  // what is said of it
};

// Reads up to the first mistake of syntax that lies in none of the ranges, which have been set
// aside. Mistakes in package files do not count: they are no mistakes of the text.
Trial read_to_first_mistake(std::string_view text, const ReadingOptions &options,
                            const std::vector<TextRange> &aside, Work *work);

// Whether a message tells a mistake that keeps a statement from being read.
bool is_syntax_mistake(const char *rule);
