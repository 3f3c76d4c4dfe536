#pragma once

#include "frame/lookup.h"
#include "frame/model.h"

PortId *port_id_whole(Bsdl *bsdl, const char *name);
PortId *port_id_bit(Bsdl *bsdl, const char *name, int32_t subscript);
