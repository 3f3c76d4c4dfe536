#pragma once

#include <cstdio>

// The one way to open a file for reading, in binary: line ends are the scanner's business. A
// directory is not openable. A path that cannot be opened as it stands is tried once more with its
// backslashes turned into the system's own separator. NULL on failure.
std::FILE *open_to_read(const char *path);

// Whether open_to_read() would succeed.
bool can_open(const char *path);

// What stands between folders in the paths that the library forms.
constexpr char PATH_SEPARATOR = '/';
// Any character that ends the folder part of a path, whatever system it was written for.
bool is_path_separator(char c);
