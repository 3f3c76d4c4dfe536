#pragma once

#include "diagnosis/repair.h"

// Findings that say again what another has said, or fail only because of it, get their `because`.
// `broken` stands for the first statement that could not be read; NULL when all were.
void find_follow_ups(Drafts &drafts, Draft *broken);

// Several findings of one rule about one name, or about one place, become one with a count.
void fold_alike(std::string_view text, Drafts &drafts);
