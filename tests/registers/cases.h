#pragma once

#include "support/description.h"
#include "support/iteration.h"

#include <string>
#include <utility>
#include <vector>

using Replacement = std::pair<support::Statement, std::string>;

// A valid description with some statements replaced, and all that a check says of it.
struct CheckCase {
    std::string name;
    std::vector<Replacement> statements = {};
    support::ExpectedMessages messages = {};
    support::Issue issue = support::Issue::BSDL_2001;
};

inline support::Description described(const CheckCase &row)
{
    support::Description description(row.issue);
    for (const auto &[statement, text] : row.statements)
        description.with(statement, text);
    return description;
}

// That an instruction has its register already is an error by its level alone.
inline int32_t expected_result(const support::ExpectedMessages &messages)
{
    for (const support::Expected &message : messages)
        if (message.level == support::ERROR &&
            message.text.find("is already associated") == std::string::npos)
            return 100;
    return 0;
}

// `before` completes the model for the check.
template <size_t n>
void expect_cases(const CheckCase (&rows)[n], int32_t (*check)(Bsdl *),
                  int32_t (*before)(Bsdl *) = nullptr)
{
    for (const CheckCase &row : rows) {
        SCOPED_TRACE(row.name);
        support::Reading reading(described(row));
        ASSERT_NE(reading.handle(), nullptr);
        if (before)
            before(reading);
        EXPECT_EQ(reading.check(check), expected_result(row.messages));
        support::expect_messages(reading.messages(), row.messages);
    }
}

inline Replacement opcodes(const std::string &table)
{
    return {support::INSTRUCTION_OPCODE, support::attribute("INSTRUCTION_OPCODE", table)};
}

inline Replacement captures(const std::string &patterns)
{
    return {support::INSTRUCTION_CAPTURE, support::attribute("INSTRUCTION_CAPTURE", patterns)};
}

inline Replacement privates(const std::string &names)
{
    return {support::INSTRUCTION_PRIVATE, support::attribute("INSTRUCTION_PRIVATE", names)};
}

inline Replacement idcode(const std::string &patterns)
{
    return {support::IDCODE_REGISTER, support::attribute("IDCODE_REGISTER", patterns)};
}

inline Replacement usercode(const std::string &patterns)
{
    return {support::USERCODE_REGISTER, support::attribute("USERCODE_REGISTER", patterns)};
}

inline Replacement access(const std::string &registers)
{
    return {support::REGISTER_ACCESS, support::attribute("REGISTER_ACCESS", registers)};
}

// A statement whose value is no string.
inline Replacement unread(support::Statement statement, const std::string &attribute)
{
    return {statement, "attribute " + attribute + " of DEV : entity is BAD;"};
}

// The instructions that every description has, of four bits.
inline const std::string BASE = "BYPASS (1111), EXTEST (0000), SAMPLE (0001)";
inline const std::string BASE_2001 = BASE + ", PRELOAD (0010)";
