#pragma once

#include "tarnlet/diagnosis.h"

#include <pybind11/pybind11.h>

// Loads the classes of findings, so that no code in Python runs once a walk has begun.
void load_finding_types();

pybind11::object findings_of(const BsdlDiagnosis *diagnosis);
