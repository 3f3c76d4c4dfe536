#pragma once

#include "diagnosis/candidates.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A text with the edits made so far, and the way from its bytes back to those of the original.
class EditedText
{
  public:
    explicit EditedText(std::string_view from) : original_text(from), current(from) {}

    std::string_view original() const { return original_text; }
    const std::string &text() const { return current; }
    std::string take_text() { return std::move(current); } // the last thing asked of it

    // The edits in bytes of the original; nothing when one touches what an earlier edit has put in.
    std::optional<std::vector<TextEdit>> in_original(const std::vector<TextEdit> &edits) const;

    // Makes edits that are given in bytes of the original.
    void apply(const std::vector<TextEdit> &edits);

    // Where a byte stands in the original; what was put in stands where it went in.
    size_t to_original(size_t offset) const;
    size_t from_original(size_t offset) const;

  private:
    std::string_view original_text;
    std::string current;
    std::vector<TextEdit> made; // in the order of the original
};
