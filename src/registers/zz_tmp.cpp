#include "tarnlet/bsdl.h"
int32_t bsdl_check_instr_reg(Bsdl *) { return 0; }
