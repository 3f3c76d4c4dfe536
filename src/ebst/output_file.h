#pragma once

#include "frame/messages.h"

#include <climits>
#include <cstddef>
#include <cstdint>

// A text file that takes its name only when it is complete: it is written beside that name and
// renamed at the end, so that no failure leaves half a file. What exists under the name and is no
// regular file (a device, a pipe), or stands in a folder where it cannot be replaced, is written
// directly.
struct OutputFile {
    int handle;
    bool failed;
    char target[PATH_MAX];
    char beside[PATH_MAX]; // empty: written directly
    size_t used;
    char buffer[size_t{64} << 10];
};

// False when the file cannot be opened for writing.
bool output_open(OutputFile *file, const char *name);

void put(OutputFile *file, const char *text, size_t length);
void put(OutputFile *file, const char *text);
void put(OutputFile *file, char c);

// As "%-*s": padded on the right with blanks, never cut.
void put_padded(OutputFile *file, const char *text, size_t width);
void put_padded(OutputFile *file, int32_t number, size_t width);

// For lines that are no longer than a few texts of the description.
void put_line(OutputFile *file, const char *format, ...) TARNLET_PRINTF(2, 3);

// False when something could not be written; nothing is left behind then.
bool output_close(OutputFile *file);
