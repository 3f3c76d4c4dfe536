#include "diagnosis/near_words.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

namespace
{

constexpr size_t LONGEST = 64; // no word of the language is longer

} // namespace

static char folded(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

int slips_allowed(size_t length) { return length < 5 ? 1 : 2; }

int slips_between(std::string_view a, std::string_view b, int most)
{
    const auto difference =
        static_cast<std::ptrdiff_t>(a.size()) - static_cast<std::ptrdiff_t>(b.size());
    if (a.size() > LONGEST || b.size() > LONGEST ||
        std::abs(difference) > static_cast<std::ptrdiff_t>(most))
        return most + 1;
    std::array<std::array<int, LONGEST + 1>, 3> rows{}; // of the word's last letters
    for (size_t j = 0; j <= b.size(); j++)
        rows[0][j] = static_cast<int>(j);
    for (size_t i = 1; i <= a.size(); i++) {
        auto &row = rows[i % 3];
        const auto &before = rows[(i + 2) % 3];
        const auto &twice_before = rows[(i + 1) % 3];
        row[0] = static_cast<int>(i);
        for (size_t j = 1; j <= b.size(); j++) {
            const char x = folded(a[i - 1]);
            const char y = folded(b[j - 1]);
            row[j] = std::min({before[j] + 1, row[j - 1] + 1, before[j - 1] + (x != y)});
            if (i > 1 && j > 1 && x == folded(b[j - 2]) && y == folded(a[i - 2]))
                row[j] = std::min(row[j], twice_before[j - 2] + 1);
        }
    }
    return std::min(rows[a.size() % 3][b.size()], most + 1);
}

static bool is_small(char c) { return c >= 'a' && c <= 'z'; }

static bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }

std::string in_case_of(std::string_view like, std::string_view word)
{
    std::string result;
    while (result.size() < word.size()) {
        const std::string_view part = word.substr(result.size());
        const std::string_view like_part = like.substr(0, like.find('_'));
        const size_t length = std::min(part.find('_'), part.size() - 1) + 1;
        const bool small = std::any_of(like_part.begin(), like_part.end(), is_small);
        const bool capitals = std::any_of(like_part.begin(), like_part.end(), is_capital);
        for (size_t i = 0; i < length; i++) {
            const bool lower = small && (i > 0 || !capitals) && is_capital(part[i]);
            result += lower ? static_cast<char>(part[i] + 32) : part[i];
        }
        if (like_part.size() < like.size())
            like.remove_prefix(like_part.size() + 1);
    }
    return result;
}
