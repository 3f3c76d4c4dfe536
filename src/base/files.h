#pragma once

#include <cstddef>
#include <cstdio>

// Paths and opens: the one place that knows the separator of the system. Templates of paths use
// PATH_SEPARATOR. A path that a caller or a description wrote with backslashes is tried as it
// stands, then with this system's separator in their place.
constexpr char PATH_SEPARATOR = '/';
constexpr size_t LONGEST_PATH = 4096;

// Whether a character separates the parts of a path, in any form that hosts use.
bool is_path_separator(char c);

// NULL for what cannot be opened and for a directory.
FILE *open_to_read(const char *path);

// Whether open_to_read() would open the file; `found` receives the form of the path that did.
bool find_to_read(const char *path, char (&found)[LONGEST_PATH]);

// The absolute form without "." and "..". A path that cannot be made absolute stays as it is.
void absolute_path(const char *path, char (&absolute)[LONGEST_PATH]);
