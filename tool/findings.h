#pragma once

#include "diagnosed_file.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

enum class Severity : uint8_t { OFF, NOTE, WARNING, ERROR };

const char *severity_name(Severity severity);

// A rule that the tool adds to those of the library.
constexpr const char *RULE_PROCESS_ENDED = "process-ended";

// What the user wants to see, and as what.
struct Selection {
    std::map<std::string, Severity> rules;
    bool warnings_are_errors = false;
    size_t error_limit = 0; // 0: none
};

// A finding of the library as it is shown.
struct Finding {
    const BsdlFinding *found;
    Severity severity;
    int32_t because = -1; // index among those that are shown; -1: it stands for itself
};

struct FileFindings {
    const DiagnosedFile &file;
    std::vector<Finding> findings;
    // Errors and warnings that stand for themselves.
    size_t errors = 0; // those beyond the limit too
    size_t warnings = 0;
    size_t withheld = 0; // errors beyond the limit
    size_t follow_ups = 0;
};

// "parts/x.bsd:110:26", fit for a terminal; less where a place is not so exact.
std::string place_text(const BsdlPlace &place);

FileFindings select_findings(const DiagnosedFile &file, const Selection &selection);

// How many findings follow from that one, directly or not.
size_t follow_ups_of(const FileFindings &file, size_t index);

struct Totals {
    size_t files = 0;
    size_t errors = 0;
    size_t warnings = 0;
    size_t files_with_findings = 0;
    size_t not_read = 0;
    size_t with_isc = 0;
    size_t with_aio = 0;
    size_t prg = 0;
};

void add_to_totals(Totals &totals, const FileFindings &file);

// "3 files checked, 1 by IEEE 1532 too: 2 errors, no warnings".
std::string closing_line(const Totals &totals);
