#pragma once

#include "support/description.h"

#include <string>
#include <vector>

// A valid description but for its ports and cells: the test access port, the ports named as in
// "A:in" or "D:in(0 to 1)", and the rows of the boundary register.
support::Description with_cells(support::Issue issue, const std::vector<std::string> &ports,
                                const std::vector<std::string> &rows, long length);

// As many cells as there are rows.
support::Description with_cells(const std::vector<std::string> &ports,
                                const std::vector<std::string> &rows);

// The checks that come before that of the boundary register, whose messages are dropped.
void check_up_to_cells(support::Reading &reading);
