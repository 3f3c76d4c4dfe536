#include "diagnosis/edited_text.h"

#include <algorithm>

std::optional<std::vector<TextEdit>>
EditedText::in_original(const std::vector<TextEdit> &edits) const
{
    std::vector<TextEdit> result;
    for (const TextEdit &edit : edits) {
        size_t shift_in = 0; // bytes that edits before it have put in and taken out
        size_t shift_out = 0;
        for (const TextEdit &other : made) {
            const size_t begin = other.begin + shift_in - shift_out; // in the current text
            const size_t end = begin + other.text.size();
            if (edit.begin <= end && begin <= edit.end)
                return std::nullopt;
            if (begin > edit.end)
                break;
            shift_in += other.text.size();
            shift_out += other.end - other.begin;
        }
        result.push_back(
            {edit.begin + shift_out - shift_in, edit.end + shift_out - shift_in, edit.text});
    }
    return result;
}

void EditedText::apply(const std::vector<TextEdit> &edits)
{
    const auto before = [](const TextEdit &a, const TextEdit &b) { return a.begin < b.begin; };
    for (const TextEdit &edit : edits)
        made.insert(std::upper_bound(made.begin(), made.end(), edit, before), edit);
    current = apply_edits(original_text, made);
}

size_t EditedText::to_original(size_t offset) const
{
    size_t shift_in = 0;
    size_t shift_out = 0;
    for (const TextEdit &edit : made) {
        const size_t begin = edit.begin + shift_in - shift_out;
        if (offset < begin)
            break;
        if (offset < begin + edit.text.size())
            return edit.begin;
        shift_in += edit.text.size();
        shift_out += edit.end - edit.begin;
    }
    return offset + shift_out - shift_in;
}

size_t EditedText::from_original(size_t offset) const
{
    size_t result = offset;
    for (const TextEdit &edit : made) {
        if (edit.begin > offset)
            break;
        result += edit.text.size();
        result -= std::min(edit.end, offset) - edit.begin;
    }
    return result;
}
