#include "header/header.h"
#include "support/description.h"
#include "support/package_file.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace support;

namespace
{

const std::map<std::string, std::string> STANDARD_PACKAGES = {
    {"std_1532_2001.all", PackageFile{.name = "STD_1532_2001"}.text()},
    {"std_1532_2002.all", PackageFile{.name = "STD_1532_2002"}.text()},
    {"std_1149_6_2003.all", PackageFile{.name = "STD_1149_6_2003"}.text()},
};

Messages about_standards(const Reading &reading)
{
    return picked(reading.messages(), [](const Message &message) {
        for (const char *part :
             {"BC cells", "tandard use", "BSDL version", "se statements", "User package:"})
            if (message.text.find(part) != std::string::npos)
                return true;
        return message.level <= WARNING;
    });
}

TEST(Standard, Queries)
{
    const struct {
        const char *use;
        const char *uses;
        int32_t standard;
        std::vector<uint32_t> is; // 1990, 1994, 2001, 1532, PRG, AIO
        const char *name_1532 = nullptr;
        const char *name_1149_6 = nullptr;
    } cases[] = {
        {"STD_1149_1_1990.all", "", 1, {1, 0, 0, 0, 0, 0}},
        {"std_1_90 . all ", "", 1, {1, 0, 0, 0, 0, 0}},
        {"STD_1149_1_1994.all",
         "use STD_1532_2001.all;",
         3,
         {0, 2, 0, 0x40, 0, 0},
         "STD_1532_2001"},
        {"STD_1149_1_2001.all", "", 4, {0, 0, 4, 0, 0, 0}},
        {"STD_1149_1_2001.all",
         "use STD_1532_2002.all;\nuse STD_1532_2001;",
         4,
         {0, 0, 4, 0xC0, 0, 0},
         "STD_1532_2001"},
        {"STD_1149_1_2001.all",
         "use STD_1149_6_2003.all; use STD_1532_2002.all;",
         4,
         {0, 0, 4, 0x80, 0, 0x40000},
         "STD_1532_2002",
         "STD_1149_6_2003"},
    };
    const std::map<int32_t, const char *> names = {
        {1, "STD_1149_1_1990"}, {3, "STD_1149_1_1994"}, {4, "STD_1149_1_2001"}};
    for (const auto &row : cases) {
        SCOPED_TRACE(std::string(row.use) + row.uses);
        Reading reading(Description()
                            .with(STANDARD_USE, std::string("use ") + row.use + ";")
                            .with(USES, row.uses),
                        {.files = STANDARD_PACKAGES});
        EXPECT_EQ(bsdlStandard(reading), row.standard);
        EXPECT_EQ(
            (std::vector<uint32_t>{bsdlIs1990(reading), bsdlIs1994(reading), bsdlIs2001(reading),
                                   bsdlIs1532(reading), bsdlIsPrg(reading), bsdlIsAio(reading)}),
            row.is);
        EXPECT_STREQ(bsdlStandard1149_1(reading), names.at(row.standard));
        EXPECT_STREQ(bsdlStandard1532(reading), row.name_1532);
        EXPECT_STREQ(bsdlStandard1149_6(reading), row.name_1149_6);
        EXPECT_EQ(bsdlStandard1149_4(reading), nullptr);
        EXPECT_EQ(bsdlStandardPrg(reading), nullptr);
    }
}

// The packages of other standards ask for an issue of this one.
TEST(Standard, MessagesOfUseStatements)
{
    const struct {
        const char *year;
        const char *package;
        const char *needs = nullptr; // the issue that is missed
    } cases[] = {
        // The token is kept as written, the file is searched for in small letters.
        {"1994", "Std_1532_2002.ALL"},
        {"1990", "STD_1532_2001.all", "1994"},
        {"1990", "STD_1532_2002.all", "2001"},
        {"1994", "STD_1149_6_2003.all", "2001"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(std::string(row.year) + row.package);
        Reading reading(Description()
                            .with(STANDARD_USE, "use STD_1149_1_" + std::string(row.year) + ".all;")
                            .with(USES, "use " + std::string(row.package) + ";")
                            .without(CONFORMANCE)
                            .without(INSTRUCTION_OPCODE),
                        {.files = STANDARD_PACKAGES});
        std::string file = row.package;
        std::transform(file.begin(), file.end(), file.begin(), ::tolower);
        const std::string name = std::string("STD_1149_1_") + row.year;
        ExpectedMessages want = {
            {PROGRESS, "\tCreating BC cells: " + name, row.year == std::string("1990") ? 3 : 2},
            {INFORMATION, "\tStandard use statement passed", 3},
            {INFORMATION, "\tBSDL version: " + name, 3},
            {INFORMATION, "\tUser package: " + file, 2}};
        if (row.needs) {
            want.push_back(
                {ERROR, "BSDL version must be STD_1149_1_" + std::string(row.needs) + " or higher",
                 1});
            EXPECT_EQ(bsdlGetNumErrors(reading), 1);
        } else {
            want.push_back({WARNING, "BSDL version must be STD_1149_1_2001 or higher", 2});
            want.push_back({INFORMATION, "\tUse statements passed", 3});
        }
        Messages messages = about_standards(reading);
        messages.resize(std::min(messages.size(), want.size()));
        expect_messages(messages, want);
    }
}

// The issue of the conformance statement is no standard of a file, and `.` and ALL are tokens.
TEST(Standard, NamesThatAreNoStandardOfAFile)
{
    const std::pair<const char *, const char *> rows[] = {
        {"STD_1149_1_1993.all", "parse error"},
        {"STD_1532_2002.all", "parse error"},
        {"STD_1149_1_2001", "parse error"},
        {"Std_1149_1_1991.all", "Unknown standard 'Std_1149_1_1991'"}};
    for (const auto &[use, error] : rows) {
        SCOPED_TRACE(use);
        Reading reading(Description().with(STANDARD_USE, std::string("use ") + use + ";"));
        const Messages messages = errors_and_warnings(reading.messages());
        ASSERT_EQ(messages.size(), 1U);
        EXPECT_TRUE(messages[0].text.starts_with(error)) << messages[0];
        EXPECT_EQ(bsdlGetNumErrors(reading), 1);
    }
}

TEST(Standard, LibraryVersion)
{
    const char *name = nullptr;
    const char *version = nullptr;
    bsdlLibVersion(&name, nullptr);
    bsdlLibVersion(nullptr, &version);
    EXPECT_STREQ(name, "tarnlet");
    EXPECT_STREQ(version, "1.7.2.6");
}

TEST(Components, ListsOfHosts)
{
    int a = 0;
    int b = 0;
    GList *list = bsdlAddComponent(bsdlAddComponent(nullptr, &a), &b);
    EXPECT_EQ(bsdlGetNbrOfComponents(list), 2);
    EXPECT_EQ(bsdlGetFirstComponent(list), &a);
    EXPECT_EQ(bsdlGetNextComponent(list), &b);
    EXPECT_EQ(bsdlFindComponent(list, &b), list->next);
    EXPECT_EQ(bsdlGetNextComponent(list->next), nullptr);
    EXPECT_EQ(bsdlGetNextComponent(nullptr), nullptr);
    EXPECT_EQ(bsdlGetFirstComponent(nullptr), nullptr);
    EXPECT_EQ(bsdlGetNbrOfComponents(nullptr), 0);
    g_list_free(list);
}

} // namespace
