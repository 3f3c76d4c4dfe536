#include "header/header.h"
#include "support/description.h"

#include <gtest/gtest.h>

using namespace support;

namespace
{

TEST(Entity, NamesAreComparedWithoutCaseAndKeptAsWritten)
{
    Reading reading(Description().with(ENTITY_LINE, "entity Dev is").with(END_LINE, "end dEV;"));
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_STREQ(bsdlComponentName(reading), "Dev");
    EXPECT_EQ(bsdlFileName(reading), reading.path());
}

TEST(Entity, AnotherNameEndsTheReadingWhereNoStatementRecovers)
{
    Reading reading(Description().with(INSTRUCTION_LENGTH,
                                       "attribute INSTRUCTION_LENGTH of Other : entity is 4;"));
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "Component name 'Other' not consistent", 1}});
    EXPECT_EQ(bsdlGetNumErrors(reading), 1);
    EXPECT_EQ(bsdlGetInstructionLength(reading), 0);
    EXPECT_TRUE(reading.has("File '" + reading.path() + "' contains 1 syntax error"));
}

TEST(Entity, GenericParameter)
{
    const ExpectedMessages passed = {{INFORMATION, "\tGeneric parameter passed", 3}};
    const struct {
        const char *name;
        const char *value;
        const char *asked;
        const char *package;
        ExpectedMessages messages;
    } cases[] = {
        {"default", " := \"DIP\"", nullptr, "DIP", passed},
        {"the host wins", " := \"DIP\"", "PKG", "PKG", passed},
        {"an empty name is a name", " := \"DIP\"", "", "", passed},
        {"no default", "", nullptr, nullptr, passed},
        {"no string",
         " := DIP",
         nullptr,
         nullptr,
         {{ERROR, "parse error, expecting `error' or `QUOTED_STRING', found 'DIP' on line 2\n", 1},
          {ERROR, "skipping generic_parameter due to errors", 1}}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(Description().with(GENERIC_PARAMETER, "generic (PHYSICAL_PIN_MAP : string" +
                                                                  std::string(row.value) + ");"),
                        {.package = row.asked});
        Messages messages = reading.messages();
        messages.erase(messages.begin(), messages.begin() + 2);
        messages.resize(std::min(messages.size(), row.messages.size()));
        expect_messages(messages, row.messages);
        EXPECT_STREQ(bsdlGetDefaultDevicePackage(reading), row.package);
    }
}

TEST(Entity, ComponentConformance)
{
    const Expected passed = {INFORMATION, "\tComponent conformance statement passed", 3};
    const struct {
        const char *name;
        std::string statement;
        int conformance;
        ExpectedMessages messages;
    } cases[] = {
        {"1990", attribute("COMPONENT_CONFORMANCE", "STD_1149_1_1990"), 1, {passed}},
        {"1993 in two pieces",
         attribute("COMPONENT_CONFORMANCE", "STD_1149\" &\n\"_1_1993"),
         3,
         {passed}},
        {"2001", attribute("COMPONENT_CONFORMANCE", "std_1149_1_2001"), 4, {passed}},
        {"1994 is the year of the package",
         attribute("COMPONENT_CONFORMANCE", "STD_1149_1_1994"),
         0,
         {{ERROR,
           "parse error, expecting `error' or `Y_STD_1149_1_1990' or `Y_STD_1149_1_1993' or "
           "`Y_STD_1149_1_2001', found 'STD_1149_1_1994' on line 5\n",
           1},
          {ERROR, "\tskipping component_conformance due to errors", 1},
          passed}},
        {"no string",
         "attribute COMPONENT_CONFORMANCE of DEV : entity is STD_1149_1_2001;",
         0,
         {{ERROR,
           "parse error, expecting `error' or `QUOTED_STRING', found 'STD_1149_1_2001' on line 5\n",
           1},
          {ERROR, "skipping component_conformance due to errors", 1}}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(Description().with(CONFORMANCE, row.statement));
        size_t from = 0;
        while (from < reading.messages().size() &&
               reading.messages()[from].text != "\tNo use statements")
            from++;
        ASSERT_LT(from + row.messages.size(), reading.messages().size());
        const auto first = reading.messages().begin() + static_cast<std::ptrdiff_t>(from) + 1;
        expect_messages({first, first + static_cast<std::ptrdiff_t>(row.messages.size())},
                        row.messages);
        EXPECT_EQ(bsdlConformance(reading), row.conformance);
    }
}

} // namespace
