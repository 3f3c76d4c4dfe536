#include "values.h"

#include <cstring>
#include <string>

static py::object stolen(PyObject *object)
{
    if (!object)
        throw py::error_already_set();
    return py::reinterpret_steal<py::object>(object);
}

// The bytes that are no UTF-8 come as U+DC80 to U+DCFF.
static py::object latin_1_escapes(const py::object &decoded)
{
    const Py_ssize_t length = PyUnicode_GET_LENGTH(decoded.ptr());
    std::vector<Py_UCS4> characters(static_cast<size_t>(length));
    for (Py_ssize_t i = 0; i < length; i++) {
        const Py_UCS4 character = PyUnicode_READ_CHAR(decoded.ptr(), i);
        const bool is_escape = character >= 0xDC80 && character <= 0xDCFF;
        characters[static_cast<size_t>(i)] = is_escape ? character - 0xDC00 : character;
    }
    return stolen(PyUnicode_FromKindAndData(PyUnicode_4BYTE_KIND, characters.data(), length));
}

py::object text(const char *text)
{
    if (!text)
        return py::none();
    const auto length = static_cast<Py_ssize_t>(std::strlen(text));
    py::object decoded = stolen(PyUnicode_DecodeUTF8(text, length, "surrogateescape"));
    return PyUnicode_KIND(decoded.ptr()) == PyUnicode_1BYTE_KIND ? decoded
                                                                 : latin_1_escapes(decoded);
}

py::object port_bit(const PortId *port)
{
    static PyObject *const type =
        py::module_::import("tarnlet.records").attr("PortBit").cast<py::object>().release().ptr();
    if (!port || !port->name)
        return py::none();
    py::object name = text(port->name);
    if (port->subscripted)
        name =
            stolen(PyUnicode_FromFormat("%U(%d)", name.ptr(), static_cast<int>(port->subscript)));
    return stolen(PyObject_CallOneArg(type, name.ptr()));
}

Codes::Codes(const char *name, const char *(*word_of)(int32_t))
{
    const py::object enumeration = py::module_::import("tarnlet.codes").attr(name);
    for (int32_t code = 0; code < 256; code++)
        if (const char *word = word_of(code))
            members[code] = enumeration(word).release().ptr();
}

py::object Codes::operator[](int32_t code) const
{
    const auto found = members.find(code);
    return found == members.end() ? py::none() : py::reinterpret_borrow<py::object>(found->second);
}

RecordType::RecordType(const char *name, size_t field_count)
{
    const py::object found = py::module_::import("tarnlet.records").attr(name);
    if (py::len(found.attr("_fields")) != field_count)
        throw py::type_error(std::string(name) + " has other fields than are given to it");
    type = reinterpret_cast<PyTypeObject *>(py::object(found).release().ptr());
}

py::object Rows::tuple()
{
    py::tuple tuple(rows.size());
    for (size_t i = 0; i < rows.size(); i++)
        PyTuple_SET_ITEM(tuple.ptr(), static_cast<Py_ssize_t>(i), rows[i].release().ptr());
    rows.clear();
    return tuple;
}
