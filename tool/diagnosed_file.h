#pragma once

#include "file_report.h"
#include "tarnlet/diagnosis.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// How files are diagnosed.
struct DiagnosisChoice {
    ReadOptions read;
    bool as_read = false;
    uint32_t verbosity = 0;               // as for the library
    bool comments = false;                // obeyed also as_read
    std::function<bool()> cancelled = {}; // asked now and then
};

struct ReleaseDiagnosis {
    void operator()(BsdlDiagnosis *diagnosis) const { bsdlDiagnosisRelease(diagnosis); }
};
using DiagnosisHandle = std::unique_ptr<BsdlDiagnosis, ReleaseDiagnosis>;

// One file with what the library finds in it.
class DiagnosedFile
{
  public:
    DiagnosedFile(const std::string &given, const DiagnosisChoice &choice);
    // Bytes that count in place of those of the file, and outlive this. When the diagnosis was
    // cancelled, the state is not READ.
    DiagnosedFile(const std::string &given, std::string_view bytes, const DiagnosisChoice &choice,
                  const std::vector<BsdlPackageText> &packages);
    DiagnosedFile(const DiagnosedFile &) = delete; // what it finds points into it
    DiagnosedFile &operator=(const DiagnosedFile &) = delete;

    const std::string path; // as on the command line
    const std::string name; // for people: the path, or <stdin>
    FileState state = FileState::READ;
    std::string_view text; // the bytes of the file
    bool is_package = false;
    DiagnosisHandle diagnosis;
    std::vector<const BsdlFinding *> findings;

    std::string device() const;
    uint32_t checked() const { return bsdlDiagnosisChecked(diagnosis.get()); } // BsdlChecked bits
    std::string unchecked() const; // what was not looked at, in words
    // The file of a place: this one where none is named.
    const char *file_of(const BsdlPlace &place) const
    {
        return place.file && *place.file ? place.file : name.c_str();
    }

  private:
    void diagnose(const DiagnosisChoice &choice, const std::vector<BsdlPackageText> &packages);
    void diagnose_package(const std::string &package, const DiagnosisChoice &choice,
                          std::vector<BsdlPackageText> packages);
    void cannot_read(FileState why, const char *rule, std::string reason);

    std::string own_text; // where it was read from the file
    std::string problem_text;
    BsdlFinding problem = {};
};

// Diagnoses a text that is to take the place of that of the file.
DiagnosisHandle diagnose_text(std::string_view text, const std::string &name,
                              const DiagnosisChoice &choice,
                              const std::vector<BsdlPackageText> &packages = {});
