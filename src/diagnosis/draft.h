#pragma once

#include "diagnosis/candidates.h"
#include "diagnosis/checked_text.h"
#include "diagnosis/source_text.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A finding of a rule while it is worked on: places and edits are bytes of the mended text.
struct Draft {
    static constexpr size_t NOWHERE = SIZE_MAX;

    Said said;
    size_t begin = NOWHERE; // of its place; NOWHERE for none, or one in another file
    size_t end = NOWHERE;
    std::string hint;
    std::string fix;
    std::vector<TextEdit> edits;
    bool sure = false;
    std::vector<std::pair<TextRange, std::string>> related;
    Draft *because = nullptr;
    uint32_t count = 1;
    std::vector<TextRange> alike; // the places of those folded into this one
    bool is_note = false;
    bool name_is_declared = false; // the rule could not find what the text declares

    bool has_place() const { return begin != NOWHERE; }
    std::string_view name_in(std::string_view text) const
    {
        return has_place() ? text.substr(begin, end - begin) : std::string_view{};
    }
};
