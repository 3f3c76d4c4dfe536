#pragma once

#include "device_json.h"

#include <pybind11/pybind11.h>

// A part of the document as Python has it: dicts, lists and plain values.
pybind11::object tree_of(const Json &json);
