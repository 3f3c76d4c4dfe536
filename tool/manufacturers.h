#pragma once

// By the bank, counted from 1, and the number in it, without parity; NULL for one that is not
// known here.
const char *manufacturer_name(unsigned bank, unsigned number);
