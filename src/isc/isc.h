#pragma once

#include "frame/lookup.h"
#include "frame/model.h"
