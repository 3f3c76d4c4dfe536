#pragma once

#include "frame/model.h"

// Replaces the cell descriptions by those that the standard of this bit brings along.
void create_standard_cells(Bsdl *bsdl, uint32_t standard_bit);

// What the cell descriptions may capture: 0 or 100. Also notes which cells know INTEST.
int32_t check_capture_rules(Bsdl *bsdl);
