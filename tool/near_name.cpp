#include "near_name.h"

#include <algorithm>
#include <cctype>

// The letters to add, to drop, to change or to swap with the next one that make one name the other.
// Letter case does not count.
static size_t slips_between(std::string_view a, std::string_view b)
{
    const auto same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    };
    std::vector<size_t> before;
    std::vector<size_t> last(b.size() + 1);
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); j++)
        row[j] = j;
    for (size_t i = 1; i <= a.size(); i++) {
        before = std::move(last);
        last = row;
        row[0] = i;
        for (size_t j = 1; j <= b.size(); j++) {
            const bool equal = same(a[i - 1], b[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + !equal});
            if (i > 1 && j > 1 && same(a[i - 1], b[j - 2]) && same(a[i - 2], b[j - 1]))
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[b.size()];
}

std::string did_you_mean(std::string_view name, const std::vector<std::string> &known)
{
    constexpr size_t LONGEST = 100; // nobody meant a name that is longer
    if (name.size() > LONGEST)
        return {};
    size_t least = name.size() / 3 + 1;
    const std::string *nearest = nullptr;
    for (const std::string &each : known)
        if (const size_t slips = slips_between(name, each); slips < least + !nearest) {
            least = slips;
            nearest = &each;
        }
    // A part that stands at the start is near too: "sarif" for "sarif-report".
    if (!nearest && name.size() >= 3)
        for (const std::string &each : known)
            if (!nearest && each.find(name) != std::string::npos)
                nearest = &each;
    return nearest ? "; did you mean '" + *nearest + "'?" : std::string();
}
