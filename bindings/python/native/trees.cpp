#include "trees.h"

namespace py = pybind11;

static py::object list_of(const Json &json)
{
    py::list list(json.size());
    Py_ssize_t at = 0;
    for (const Json &each : json)
        PyList_SET_ITEM(list.ptr(), at++, tree_of(each).release().ptr());
    return list;
}

static py::object dict_of(const Json &json)
{
    py::dict dict;
    for (const auto &[name, value] : json.items())
        dict[py::str(name)] = tree_of(value);
    return dict;
}

py::object tree_of(const Json &json)
{
    switch (json.type()) {
    case Json::value_t::boolean:
        return py::bool_(json.get<bool>());
    case Json::value_t::number_integer:
        return py::int_(json.get<int64_t>());
    case Json::value_t::number_unsigned:
        return py::int_(json.get<uint64_t>());
    case Json::value_t::number_float:
        return py::float_(json.get<double>());
    case Json::value_t::string:
        return py::str(json.get_ref<const std::string &>());
    case Json::value_t::array:
        return list_of(json);
    case Json::value_t::object:
        return dict_of(json);
    default:
        return py::none();
    }
}
