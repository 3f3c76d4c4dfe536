#pragma once

#include "frame/model.h"

// The parser that Bison makes: 0 accepted, 1 given up, 2 stack exhausted.
int bsdl_yyparse(Bsdl *bsdl);

// What freeBsdl() or bsdlRelease() was asked to do while a call on the handle ran.
void give_back_if_asked(Bsdl *bsdl);
