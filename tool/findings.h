#pragma once

#include "file_report.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

enum class Severity : uint8_t { OFF, NOTE, WARNING, ERROR };

const char *severity_name(Severity severity);

// Rules that the tool adds to those of the library.
constexpr const char *RULE_CHECK_FAILED = "check-failed";
constexpr const char *RULE_PROCESS_ENDED = "process-ended";

// What the user wants to see, and as what.
struct Selection {
    std::map<std::string, Severity> rules;
    bool warnings_are_errors = false;
    bool notes = false;
    size_t error_limit = 0; // 0: none
};

struct Finding {
    Severity severity = Severity::NOTE;
    int32_t line = 0;
    std::string file;
    std::string rule;
    std::string text;
    std::vector<std::string> searched; // folders, of a package that was not found
};

struct FileFindings {
    std::string file; // for people: the path, or <stdin>
    std::string device;
    uint32_t checks = 0;
    FileState state = FileState::READ;
    std::vector<Finding> findings;
    size_t errors = 0; // all, those beyond the limit too
    size_t warnings = 0;
    size_t withheld = 0; // beyond the limit
};

FileFindings select_findings(const FileReport &report, const Selection &selection);

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
