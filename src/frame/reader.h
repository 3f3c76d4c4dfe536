#pragma once

#include "frame/model.h"

struct SourceTexts;

// readBsdl() without a source, readBsdlText() with one.
Bsdl *read_source(const SourceTexts *source, const char *file_name, const char *package,
                  const GSList *package_dirs, uint32_t flags, BsdlContext *context);

// The parser that Bison makes: 0 accepted, 1 given up, 2 stack exhausted.
int bsdl_yyparse(Bsdl *bsdl);

// What freeBsdl() or bsdlRelease() was asked to do while a call on the handle ran.
void give_back_if_asked(Bsdl *bsdl);
