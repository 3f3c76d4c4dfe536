#pragma once

#include "diagnosis/edited_text.h"
#include "diagnosis/trial.h"

#include <string_view>
#include <vector>

// A mistake of syntax, and what was done about it.
struct Mend {
    Said said;                   // what the library says of it
    TextRange told_of;           // where, in the original
    std::vector<TextEdit> edits; // what mends it, in bytes of the original; none when nothing did
    bool sure;
    std::string hint;
    std::string fix;
};

struct MendedText {
    EditedText edited;
    std::vector<Mend> mends;
    std::vector<TextRange> aside; // statements set aside, in bytes of the edited text
    bool gave_up = false;         // mistakes remain that are not among the mends
    std::vector<Said> packages_missing;
    bool standard_unknown = false; // read as the newest that is known
};

// Mends the mistakes of syntax one after the other, by trying edits near each and reading again.
// Packages that are not found get a text that stands for them in the options.
MendedText mend_text(std::string_view text, ReadingOptions *options, Work *work);
