#pragma once

#include "tarnlet/bsdl.h"

#include <pybind11/pybind11.h>

#include <unordered_map>
#include <utility>
#include <vector>

namespace py = pybind11;

// From values of the C interface to Python objects. Whoever calls holds the interpreter's lock.
// Nothing here runs code that is written in Python, so that nothing gets between two steps of a
// walk over a handle.

// Words of a description; None for NULL. Bytes that are no UTF-8 are taken as Latin-1, which is
// what older descriptions are written in.
py::object text(const char *text);
py::object port_bit(const PortId *port);

inline py::object number(int64_t value) { return py::int_(value); }
// A number that says "none" by a value below `least`.
inline py::object number_from(int32_t least, int32_t value)
{
    return value < least ? py::none() : number(value);
}
inline py::object truth(bool value) { return py::bool_(value); }

// An enumeration of tarnlet.codes: gives the member for a code of the C interface.
class Codes
{
  public:
    // All codes are below 256.
    Codes(const char *name, const char *(*word_of)(int32_t));
    // None for a code that has no word.
    py::object operator[](int32_t code) const;

  private:
    std::unordered_map<int32_t, PyObject *> members;
};

// A named tuple of tarnlet.records.
class RecordType
{
  public:
    RecordType(const char *name, size_t field_count);

  protected:
    PyTypeObject *type;
};

template <size_t FIELD_COUNT> class Record : RecordType
{
  public:
    explicit Record(const char *name) : RecordType(name, FIELD_COUNT) {}

    template <class... Values> py::object operator()(Values &&...values) const
    {
        static_assert(sizeof...(Values) == FIELD_COUNT);
        // What the constructor of a tuple does, without the tuple that it would take.
        py::object record =
            py::reinterpret_steal<py::object>(type->tp_alloc(type, Py_ssize_t{FIELD_COUNT}));
        if (!record)
            throw py::error_already_set();
        Py_ssize_t at = 0;
        (PyTuple_SET_ITEM(record.ptr(), at++,
                          py::object(std::forward<Values>(values)).release().ptr()),
         ...);
        return record;
    }
};

// A tuple that grows.
class Rows
{
  public:
    void add(py::object row) { rows.push_back(std::move(row)); }
    py::object tuple();

  private:
    std::vector<py::object> rows;
};
