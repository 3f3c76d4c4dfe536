#pragma once

#include "base/files.h"

struct Bsdl;

// Searches for the file of a package and reads on in it. `token` is what the use statement says.
// When no file is found the reading goes on where it is.
void read_package(Bsdl *bsdl, const char *name, const char *token);

// The folder of packages that is installed with the library; false when there is none.
bool installed_package_folder(char (&folder)[LONGEST_PATH]);
