#pragma once

#include "diagnosis/checked_text.h"
#include "diagnosis/finding.h"
#include "diagnosis/trial.h"

#include <string>
#include <string_view>
#include <vector>

// What a diagnosis gives.
struct Found {
    std::string text;    // with the mistakes of syntax mended
    CheckedText checked; // that text
    std::vector<Finding> findings;
    std::string unchecked; // what was not looked at
};

// The way from a text to its findings: mend, check, repair, fold.
Found find(std::string_view text, ReadingOptions *options, Work *work);

// The library's messages as findings: those that tell of mistakes, or all up to a verbosity.
Found found_as_read(std::string_view text, const ReadingOptions &options, uint32_t verbosity);
