#pragma once

#include "diagnosed_file.h"

#include <string>
#include <vector>

// How far --fix goes.
enum class FixChoice : uint8_t { NONE, SURE, ALL };

// A text with findings fixed.
struct FixedText {
    std::string text;
    size_t mended = 0;  // findings
    size_t refused = 0; // findings whose edits were tried, but what came of them was not better
};

// Applies the edits that `fix` allows. What comes of them is diagnosed again: the text has to have
// no finding that was not there before. Where all of them together fail, they are tried one by one.
FixedText fix_text(const DiagnosedFile &file, const DiagnosisChoice &choice, FixChoice fix);

// Puts the text in the place of the file; false, and said on standard error, when that failed or
// the file is no longer what was diagnosed: it is left as it is then.
bool replace_file(const DiagnosedFile &file, const std::string &text);

// What `patch` takes: the lines that differ with three lines around them.
std::string unified_diff(const std::string &name, std::string_view before,
                         const std::string &after);
