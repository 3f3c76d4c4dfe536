// tarnlet._native: readings of the library as objects of Python.

#include "findings.h"
#include "reading.h"
#include "rows.h"

#include <pybind11/stl.h>

PYBIND11_MODULE(_native, module)
{
    module.doc() = "Readings of libtarnlet; the package tarnlet is the way to use them.";
    load_row_types();
    load_finding_types();

    const char *name;
    const char *version;
    bsdlLibVersion(&name, &version);
    module.attr("library_version") = version;

    py::class_<Reading>(module, "Reading", "One text, read and checked.", py::is_final(),
                        py::metaclass(reinterpret_cast<PyObject *>(&PyType_Type)))
        .def(py::init([](const py::bytes &text, std::string file_name,
                         std::optional<std::string> package, std::vector<std::string> include,
                         bool strict) {
                 return std::make_unique<Reading>(
                     text, std::move(file_name),
                     ReadOptions{std::move(package), std::move(include), strict});
             }),
             py::arg("text"), py::arg("name"), py::arg("package"), py::arg("include"),
             py::arg("strict"))
        .def("close", &Reading::close, "Give the memory back.")
        .def_property_readonly("is_closed", &Reading::is_closed)
        .def("part", &Reading::part, py::arg("name"),
             "What the document of `tarnlet info --json` has under this name, without rows.")
        .def("pin_rows", &Reading::pin_rows)
        .def("cell_rows", &Reading::cell_rows)
        .def("findings", &Reading::findings)
        .def("unchecked", &Reading::unchecked, "What was not looked at, in words.")
        .def("corvane_class", &Reading::corvane_class, py::arg("key"))
        .def("fixed_text", &Reading::fixed_text, "The text with the mistakes of syntax fixed.")
        .def("write_ebst", &Reading::write_ebst, py::arg("path"));

    module.def("read_idcodes", read_idcodes, py::arg("text"), py::arg("name"),
               "The IDCODE patterns of a text. Reading stops after the identification registers.");
}
