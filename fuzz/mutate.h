#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Changes to a text at the level of the language. Noise at the level of bytes ends in the scanner;
// these changes keep most of a description whole and so reach the parser's actions and the checks.

// A small generator, the same on every machine.
class Random
{
  public:
    explicit Random(uint64_t seed) : state_(seed * 2862933555777941757u + 3037000493u) {}
    uint32_t next();
    // 0 up to, but not, `limit`; 0 for a limit of 0.
    size_t below(size_t limit);
    bool one_in(uint32_t n) { return below(n) == 0; }

  private:
    uint64_t state_;
};

// One to a few changes. `other` is a text to take statements, list elements and tokens from; it may
// be the text itself. The result is at most `limit` long.
std::string mutated(std::string_view text, std::string_view other, size_t limit, Random *random);
