#pragma once

#include "values.h"

#include <string_view>

// Loads the classes of the records, so that no code in Python runs once a walk has begun.
void load_record_types();
void load_family_types(); // called by it

// A part of a device, such as "pins", after its checks: a record, a tuple of records or a value.
// The functions of the C interface go by one position in each list, so two walks over a handle must
// not mix.
using PartOf = py::object (*)(Bsdl *bsdl);
PartOf find_part(std::string_view name); // nullptr for an unknown name

// Families of their own; None when the file has nothing of the kind.
py::object isc_of(Bsdl *bsdl);
py::object aio_of(Bsdl *bsdl);
py::object analog_of(Bsdl *bsdl);
py::object prg_of(Bsdl *bsdl);
