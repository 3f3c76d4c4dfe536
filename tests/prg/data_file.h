#pragma once

#include "support/description.h"

// A valid PPC/PRG data file whose statements can be replaced.
namespace prg
{

using namespace support;
using support::Message;

inline std::string of(const std::string &part, const std::string &name, const std::string &value)
{
    return "attribute " + name + " of " + part + " : entity is \"" + value + "\";\n";
}

// The statements of IEEE 1532 for a part; replaced ones as "NAME" -> whole statement.
inline std::string family(const std::string &part,
                          const std::map<std::string, std::string> &replaced = {})
{
    static const std::pair<const char *, const char *> statements[] = {
        {"ISC_CONFORMANCE", "STD_1532_2002"},
        {"ISC_PIN_BEHAVIOR", "HIGHZ"},
        {"ISC_FIXED_SYSTEM_PINS", nullptr},
        {"ISC_STATUS", "IMPLEMENTED"},
        {"ISC_BLANK_USERCODE", "11111111111111111111111111111111"},
        {"ISC_SECURITY", nullptr},
        {"ISC_FLOW",
         "F_ON INITIALIZE (ISC_ENABLE WAIT TCK 1), F_OFF TERMINATE (ISC_DISABLE WAIT TCK 2)"},
        {"ISC_PROCEDURE", "PROC_ERROR_EXIT = (F_OFF), PROC_PROGRAM_DONE = (F_ON, F_OFF)"},
        {"ISC_ACTION", "FINISH = (PROC_PROGRAM_DONE)"},
        {"ISC_ILLEGAL_EXIT", nullptr},
        {"ISC_DESIGN_WARNING", nullptr},
    };
    std::string text;
    for (const auto &[name, value] : statements) {
        auto found = replaced.find(name);
        if (found != replaced.end())
            text += found->second + "\n";
        else if (value)
            text += of(part, name, value);
    }
    return text;
}

struct DataFile {
    std::string revision = "attribute PRG_DESIGN_REVISION of BOARD : entity is REV_A;\n";
    std::string frequency = of("BOARD", "PRG_FREQUENCY", "1000000");
    std::string channels =
        of("BOARD", "PRG_SERIAL_CHANNELS", "TAP1 U1 BYPASS (0) U2 IDCODE (01 X)");
    std::string programs = of("BOARD", "PRG_PROGRAM_REFERENCE", "PROGRAM_ISC U1 TYPE_A");
    std::string families = family("TYPE_A");
    std::string uses = "use STD_1532_2002.all;\n";
    std::string end = "end BOARD;\n";

    std::string text() const
    {
        return "PRG_DATA entity BOARD is use STD_PRG_2001.all;\n" + uses + revision + frequency +
               channels + programs + families + end;
    }
};

inline Options options() { return {.name = "test.prg"}; }

inline std::string channels(const std::string &value)
{
    return of("BOARD", "PRG_SERIAL_CHANNELS", value);
}

inline std::string programs(const std::string &value)
{
    return of("BOARD", "PRG_PROGRAM_REFERENCE", value);
}

} // namespace prg
