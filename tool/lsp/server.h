#pragma once

#include <cstdio>

namespace lsp
{

// Serves one client until it says goodbye or its end of the input is reached; the exit status.
int serve(FILE *from, FILE *to);

} // namespace lsp
