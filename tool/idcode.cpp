#include "idcode.h"

#include <cstdint>

namespace
{

struct Manufacturer {
    uint8_t bank;
    uint8_t number;
    const char *name;
};

// Of the JEDEC list of manufacturers (JEP106) those whose devices come with descriptions most.
constexpr Manufacturer MANUFACTURERS[] = {
    {1, 0x01, "AMD"},
    {1, 0x04, "Fujitsu"},
    {1, 0x07, "Hitachi"},
    {1, 0x09, "Intel"},
    {1, 0x0E, "Freescale (Motorola)"},
    {1, 0x0F, "National"},
    {1, 0x10, "NEC"},
    {1, 0x15, "NXP (Philips)"},
    {1, 0x17, "Texas Instruments"},
    {1, 0x18, "Toshiba"},
    {1, 0x1A, "Zilog"},
    {1, 0x1C, "Mitsubishi"},
    {1, 0x1F, "Atmel"},
    {1, 0x20, "STMicroelectronics"},
    {1, 0x21, "Lattice"},
    {1, 0x24, "IBM"},
    {1, 0x29, "Microchip"},
    {1, 0x2C, "Micron"},
    {1, 0x2F, "Actel"},
    {1, 0x33, "IDT"},
    {1, 0x34, "Cypress"},
    {1, 0x36, "LSI Logic"},
    {1, 0x41, "Infineon (Siemens)"},
    {1, 0x49, "Xilinx"},
    {1, 0x4E, "Samsung"},
    {1, 0x65, "Analog Devices"},
    {1, 0x66, "PMC-Sierra"},
    {1, 0x6E, "Altera"},
    {1, 0x70, "Qualcomm"},
    {1, 0x71, "Sony"},
    {5, 0x3B, "ARM"},
};

} // namespace

static const char *manufacturer_name(unsigned bank, unsigned number)
{
    for (const Manufacturer &manufacturer : MANUFACTURERS)
        if (manufacturer.bank == bank && manufacturer.number == number)
            return manufacturer.name;
    return nullptr;
}

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
    // The bank is sent as the number of continuation codes ahead of the manufacturer's.
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
