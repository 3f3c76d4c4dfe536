#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Edits that may mend a mistake of syntax, near the place where the reader stumbled.

struct TextEdit {
    size_t begin;
    size_t end;
    std::string text;
};

struct Candidate {
    std::vector<TextEdit> edits; // in the order of the text
    int cost;                    // the less, the likelier the slip
    bool certain_words;          // changes only marks, look-alikes and words of the language
    std::string hint;            // "a comma is missing after 17"
    std::string fix;             // "insert ','"
};

// The likeliest first. `place` is where the mistake was told.
std::vector<Candidate> mend_candidates(std::string_view text, size_t place,
                                       std::string_view component);

// No candidate changes anything in front of it.
size_t begin_of_window(std::string_view text, size_t place);

std::string apply_edits(std::string_view text, const std::vector<TextEdit> &edits);
