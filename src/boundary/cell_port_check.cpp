#include "boundary/boundary.h"

int32_t check_cell_port([[maybe_unused]] Bsdl *bsdl, [[maybe_unused]] CellEntry *cell)
{
    return BSDL_RESULT_OK;
}

int32_t check_missing_cells([[maybe_unused]] Bsdl *bsdl) { return BSDL_RESULT_OK; }

void note_disabled_pins([[maybe_unused]] Bsdl *bsdl) {}
