#include "idcode.h"

#include "manufacturers.h"

#include <cctype>
#include <cstdint>
#include <cstdio>

static std::optional<unsigned> bits_value(std::string_view bits)
{
    unsigned value = 0;
    for (char bit : bits) {
        if (bit != '0' && bit != '1')
            return {};
        value = value * 2 + (bit == '1');
    }
    return value;
}

std::optional<Idcode> decode_idcode(std::string_view pattern)
{
    if (pattern.size() != 32)
        return {};
    Idcode idcode = {};
    idcode.version_bits = pattern.substr(0, 4);
    idcode.part_bits = pattern.substr(4, 16);
    idcode.manufacturer_bits = pattern.substr(20, 11);
    idcode.version = bits_value(idcode.version_bits);
    idcode.part = bits_value(idcode.part_bits);
    // The bank is sent as the number of continuation codes before the manufacturer's.
    if (const auto manufacturer = bits_value(idcode.manufacturer_bits)) {
        idcode.bank = *manufacturer / 128 + 1;
        idcode.number = *manufacturer % 128;
        idcode.manufacturer = manufacturer_name(*idcode.bank, *idcode.number);
    }
    return idcode;
}

std::string pattern_hex(std::string_view pattern)
{
    std::string hex = "0x";
    for (size_t from = 0, length = (pattern.size() - 1) % 4 + 1; from < pattern.size();
         from += length, length = 4) {
        const auto digit = bits_value(pattern.substr(from, length));
        hex += digit ? "0123456789ABCDEF"[*digit] : 'X';
    }
    return hex;
}

std::optional<std::string> idcode_pattern(std::string_view text)
{
    constexpr size_t BITS = 32;
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    std::string digits;
    for (const char c : text)
        if (c != '_')
            digits += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (digits.size() == BITS)
        return digits.find_first_not_of("01X") == digits.npos ? std::optional(digits)
                                                              : std::nullopt;
    if (digits.size() != BITS / 4 || digits.find_first_not_of("0123456789ABCDEFX") != digits.npos)
        return {};
    std::string pattern;
    for (const char digit : digits) {
        const unsigned value = digit <= '9' ? digit - '0' : digit - 'A' + 10;
        for (unsigned bit = 8; bit; bit /= 2)
            pattern += digit == 'X' ? 'X' : value & bit ? '1' : '0';
    }
    return pattern;
}

std::string jedec_text(unsigned bank, unsigned number)
{
    char text[40];
    std::snprintf(text, sizeof text, "bank %u, number 0x%02X", bank, number);
    return text;
}
