#pragma once

#include "tarnlet/bsdl.h"

// All queries of a handle, each list to its end and twice beyond it. Texts are read to their end.
void ask_everything(Bsdl *h);
