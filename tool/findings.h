#pragma once

#include "baseline.h"
#include "diagnosed_file.h"
#include "settings.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

const char *severity_name(Severity severity);

// Syntax errors and the reasons why a file could not be read: nobody turns them off.
bool is_always_on(const char *rule);

// A rule that the tool adds to those of the library.
constexpr const char *RULE_PROCESS_ENDED = "process-ended";

// What the user wants to see, and as what.
struct Selection {
    std::map<std::string, Severity> rules;
    bool warnings_are_errors = false;
    size_t error_limit = 0; // 0: none
    const Baseline *baseline = nullptr;
    bool fingerprints = true; // nobody asks for them in an editor
};

// Whether somebody has said that a finding may stay. One that follows from it may stay too.
enum class Accepted : uint8_t { NO, BY_COMMENT, BY_BASELINE };

// A finding of the library as it is shown.
struct Finding {
    const BsdlFinding *found;
    Severity severity;
    int32_t because = -1; // index among those that are shown; -1: it stands for itself
    Accepted accepted = Accepted::NO;
    std::string fingerprint = {}; // the same whatever is edited elsewhere in the file
};

struct FileFindings {
    const DiagnosedFile &file;
    std::vector<Finding> findings;
    // Errors and warnings that stand for themselves and are not accepted.
    size_t errors = 0; // those beyond the limit too
    size_t warnings = 0;
    size_t withheld = 0; // errors beyond the limit
    size_t follow_ups = 0;
    size_t accepted = 0; // those that stand for themselves
};

// "parts/x.bsd:110:26", fit for a terminal; less where a place is not so exact.
std::string place_text(const BsdlPlace &place);

// The text of the library on one line, the hint after it.
std::string message_text(const BsdlFinding &found);

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
    size_t packages = 0;
    size_t accepted = 0;
    size_t excluded = 0; // files
};

void add_to_totals(Totals &totals, const FileFindings &file);

// "3 files checked, 1 by IEEE 1532 too: 2 errors, no warnings".
std::string closing_line(const Totals &totals);
