#pragma once

#include "tarnlet/diagnosis.h"

#include <pybind11/pybind11.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace py = pybind11;

struct ReadOptions {
    std::optional<std::string> package;
    std::vector<std::string> include;
    bool strict = false;
};

// One text, read and checked: what a tarnlet.Device asks. Any thread may call it; one after the
// other has its turn. While a text is read and checked, other threads of Python run.
class Reading
{
  public:
    Reading(const py::bytes &text, std::string name, ReadOptions options);
    ~Reading();
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    // Gives the memory back. All but is_closed() raise ValueError from then on.
    void close();
    bool is_closed() const { return diagnosis == nullptr; }

    // What the document of `tarnlet info --json` has under this name, without rows.
    py::object part(std::string_view name);
    py::object pin_rows();
    py::object cell_rows();
    py::object findings();
    py::object unchecked();
    py::object corvane_class(const std::string &key);
    py::bytes fixed_text();
    // From a reading of its own, since a handle writes its registers once.
    void write_ebst(const std::string &path);

  private:
    class Turn;
    py::object rows_of(py::object (*rows)(Bsdl *bsdl));
    using Diagnosis = std::unique_ptr<BsdlDiagnosis, void (*)(BsdlDiagnosis *)>;

    std::string name;
    ReadOptions options;
    std::mutex turn;
    Diagnosis diagnosis{nullptr, bsdlDiagnosisRelease};
};

// The IDCODE patterns of a text, of which no more is read than it takes to know them.
py::object read_idcodes(const py::bytes &text, const std::string &name);
