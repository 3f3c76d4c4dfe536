#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Text that may hold anything, fit for a terminal or a line of a log: control characters and
// bytes that are not UTF-8 stand as \n, \t or \xHH.
std::string escaped(std::string_view text);

// Length of the well-formed UTF-8 sequence of more than one byte at the start, 0 without one. C1
// controls, which terminals may obey, do not count as such, nor do U+FFFE and U+FFFF, which XML
// does not have.
size_t utf8_length(std::string_view text);

// As escaped(), without the white space at both ends. Messages of the library bring tabs and line
// ends for a plain listing along.
std::string escaped_line(std::string_view text);

// Width on a terminal, for a character a column: continuation bytes of UTF-8 take none.
size_t columns_of(std::string_view text);

// "1 file", "2 files".
std::string counted(size_t count, const char *noun);

// A complaint of the tool itself, on standard error: "tarnlet: ...".
void complain(const std::string &text);

// Flushes standard output; false, and said so, when something could not be written. A reader that
// has closed the pipe is no reason to say anything.
bool close_output();

// True once a write to standard output has failed: the rest of the work is in vain.
bool output_failed();

// For --color auto|always|never: what the user asked for, the environment (NO_COLOR,
// CLICOLOR_FORCE) and standard output together.
bool colour_wanted(const std::string &choice);
