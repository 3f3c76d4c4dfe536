#pragma once

#include "values.h"

// Pins and cells, of which there may be very many: their records are made at once, without the
// document that the other parts are taken from.

// Loads the classes of the records, so that no code in Python runs once a walk has begun.
void load_row_types();

py::object pin_rows(Bsdl *bsdl);
py::object cell_rows(Bsdl *bsdl);
