#pragma once

#include <optional>
#include <string>
#include <string_view>

// The fields of an IDCODE pattern, most significant first. A field has no value when a bit of it
// is not known.
struct Idcode {
    std::string version_bits;      // 4 characters of "01X"
    std::string part_bits;         // 16
    std::string manufacturer_bits; // 11
    std::optional<unsigned> version;
    std::optional<unsigned> part;
    std::optional<unsigned> bank;   // of the manufacturer, counted from 1
    std::optional<unsigned> number; // in its bank, without parity
    const char *manufacturer;       // NULL when this tool has no name for it
};

// Nothing for a pattern that has not 32 bits.
std::optional<Idcode> decode_idcode(std::string_view pattern);

// The 32 bits that somebody asks for: "0x06415041", "06415041" or the bits themselves, X for what
// is not known, "_" between digits as one likes. Nothing for another text.
std::optional<std::string> idcode_pattern(std::string_view text);

// "bank 1, number 0x49": how every output names a manufacturer by its JEDEC code.
std::string jedec_text(unsigned bank, unsigned number);

// "0x369252D": every group of four bits as a hexadecimal digit, "X" where one is not known.
std::string pattern_hex(std::string_view pattern);
