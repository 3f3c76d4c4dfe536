#pragma once

#include <string>
#include <string_view>

// How many slips part two words: a letter too many, too few, wrong, or two in each other's place.
// Letter case does not count. Gives `most` + 1 for anything beyond `most`.
int slips_between(std::string_view a, std::string_view b, int most);

// The slips that a word of this length may hold and still be told.
int slips_allowed(size_t length);

// A word in the small letters and capitals of another, part by part between the underscores.
std::string in_case_of(std::string_view like, std::string_view word);
