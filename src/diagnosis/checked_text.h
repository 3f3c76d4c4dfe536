#pragma once

#include "scan/scan_state.h"
#include "tarnlet/diagnosis.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One reading of one text with the checks that are for it, and all that was said meanwhile.

struct Said {
    int32_t level;
    uint32_t verbosity;
    std::string rule; // empty: headings, verdicts and the like
    std::string file;
    int32_t line; // 0: no place
    int32_t column;
    int32_t end_line;
    int32_t end_column;
    std::string text;
    bool sums_up = false;              // the verdict on all checks of a family
    std::vector<std::string> searched; // folders, for a package that was not found
    std::string pin_map;               // that it is about, where several were checked
};

struct ReleaseBsdl {
    void operator()(Bsdl *bsdl) const { bsdlRelease(bsdl); }
};

struct CheckedText {
    std::unique_ptr<Bsdl, ReleaseBsdl> bsdl; // NULL when no handle came of the text
    std::vector<Said> messages;
    uint32_t checked = 0; // BsdlChecked bits
    bool passed = false;  // all of them, and the text has no syntax error
};

// How the texts of one diagnosis are read.
struct ReadingOptions {
    // Texts that stand for packages that were not found, so that the reading goes on.
    std::deque<std::string> stand_ins;
    std::string file_name;
    const char *package; // NULL for the default of the description
    std::vector<std::string> package_dirs;
    std::vector<BsdlPackageText> packages;
    uint32_t flags;
};

CheckedText check_text(std::string_view text, const ReadingOptions &options);

// Reads a text without its checks; NULL as readBsdlText().
Bsdl *read_with(const SourceTexts &source, const ReadingOptions &options, BsdlContext *context);
// For a message sink: the current message with its place.
Said said_now(const BsdlMessage *message);
