#pragma once

#include "support/description.h"

#include <string>
#include <utility>
#include <vector>

// A valid description with some statements replaced, what a check of it gives and all that it says.
struct CheckCase {
    std::string name;
    support::Issue issue = support::Issue::BSDL_2001;
    std::vector<std::pair<support::Statement, std::string>> statements;
    int32_t result = 0;
    support::ExpectedMessages messages = {};
};

inline support::Description described(const CheckCase &row)
{
    support::Description description(row.issue);
    for (const auto &[statement, text] : row.statements)
        description.with(statement, text);
    return description;
}

inline std::string opcodes(const std::string &table)
{
    return support::attribute("INSTRUCTION_OPCODE", table);
}

inline std::string captures(const std::string &patterns)
{
    return support::attribute("INSTRUCTION_CAPTURE", patterns);
}

inline std::string privates(const std::string &names)
{
    return support::attribute("INSTRUCTION_PRIVATE", names);
}

inline std::string access(const std::string &registers)
{
    return support::attribute("REGISTER_ACCESS", registers);
}
