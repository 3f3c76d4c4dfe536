#include "support/description.h"
#include "support/package_file.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

using namespace support;

namespace
{

// The current directory and the environment of a search, put back after it.
class PackageSearch : public testing::Test
{
  protected:
    void SetUp() override
    {
        before_ = std::filesystem::current_path();
        current_ = new_folder();
        std::filesystem::current_path(current_);
        unsetenv("BST64");
    }
    void TearDown() override
    {
        std::filesystem::current_path(before_);
        unsetenv("BST64");
    }

    static std::vector<std::string> tries(const Reading &reading)
    {
        const std::string start = "\tTrying '";
        std::vector<std::string> paths;
        for (const Message &message : reading.messages()) {
            if (message.text.rfind(start, 0) != 0)
                continue;
            EXPECT_EQ(message.level, INFORMATION);
            EXPECT_EQ(message.verbosity, 4U);
            paths.push_back(
                message.text.substr(start.size(), message.text.size() - start.size() - 1));
        }
        return paths;
    }

    static std::string used_file(const Reading &reading)
    {
        const char *path = bsdlGetFirstDotALLFileSpec(reading);
        return path ? path : "(none)";
    }

    std::filesystem::path before_;
    std::string current_;
};

const std::string OWN = PackageFile().text();
const Description USES_OWN = Description().with(USES, "use own.all;");

TEST_F(PackageSearch, OrderOfThePlaces)
{
    const std::string environment = new_folder();
    setenv("BST64", environment.c_str(), 1);
    const std::string first = new_folder();
    const std::string second = new_folder();
    Reading reading(USES_OWN, {.package_dirs = {first, second + "/"}});
    const std::vector<std::string> paths = tries(reading);
    ASSERT_EQ(paths.size(), 6U);
    EXPECT_EQ(paths[0], first + "/own.all");
    EXPECT_EQ(paths[1], second + "/own.all");
    EXPECT_EQ(paths[2], "./own.all");
    EXPECT_EQ(paths[3], reading.folder() + "/own.all");
    EXPECT_EQ(paths[4], environment + "/own.all");
    EXPECT_EQ(paths[5], TARNLET_BUILD_DIR "/tests/own.all") << "the module";
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "Cannot find file 'own.all'", 1}, {ERROR, "\tError in user .all", 1}});
}

TEST_F(PackageSearch, TheFirstPlaceWins)
{
    const std::string environment = new_folder();
    setenv("BST64", environment.c_str(), 1);
    const std::string dir = new_folder();
    for (const std::string &folder : {dir, current_, environment})
        write_text(folder + "/own.all", OWN);
    size_t tried = 2;
    for (const std::string &folder : {dir, current_, environment}) {
        Reading reading(USES_OWN, {.package_dirs = {new_folder(), dir}});
        EXPECT_EQ(used_file(reading), folder + "/own.all");
        EXPECT_EQ(tries(reading).size(), tried);
        std::filesystem::remove(folder + "/own.all");
        tried += folder == dir ? 1 : 2; // that of the description stands between
    }
}

TEST_F(PackageSearch, FormsOfDirectories)
{
    const std::string dir = new_folder();
    write_text(dir + "/own.all", OWN);
    std::string with_backslashes = dir;
    for (char &c : with_backslashes)
        c = c == '/' ? '\\' : c;
    const struct {
        std::string dir;
        std::string tried;
    } cases[] = {
        {dir + "/", dir + "/own.all"},
        {dir + "\\", dir + "\\own.all"},
        {with_backslashes, with_backslashes + "/own.all"},
        {dir + "/./", dir + "/./own.all"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.dir);
        Reading reading(USES_OWN, {.package_dirs = {row.dir}});
        EXPECT_EQ(tries(reading), std::vector<std::string>{row.tried});
        EXPECT_EQ(used_file(reading), dir + "/own.all");
    }
}

// A directory of the package's name is passed over; an empty directory name is the root.
TEST_F(PackageSearch, WhatIsNoPackageFile)
{
    const std::string dir = new_folder();
    std::filesystem::create_directory(dir + "/own.all");
    Reading reading(USES_OWN, {.package_dirs = {dir, ""}, .files = {{"own.all", OWN}}});
    const std::vector<std::string> paths = tries(reading);
    ASSERT_EQ(paths.size(), 4U);
    EXPECT_EQ(paths[1], "/own.all");
    EXPECT_EQ(used_file(reading), reading.folder() + "/own.all");
}

TEST_F(PackageSearch, DescriptionWithoutADirectory)
{
    write_text("device.bsd", USES_OWN.text());
    std::vector<std::string> paths;
    BsdlContext context = {[](void *data, BsdlMessage *message) {
                               const std::string text = message->text;
                               if (text.rfind("\tTrying", 0) == 0)
                                   static_cast<std::vector<std::string> *>(data)->push_back(text);
                           },
                           &paths, 4};
    GSList no_directory = {nullptr, nullptr};
    bsdlRelease(readBsdl("device.bsd", nullptr, &no_directory, 0, &context));
    ASSERT_GE(paths.size(), 2U);
    EXPECT_EQ(paths[0], "\tTrying './own.all'");
    EXPECT_EQ(paths[1], "\tTrying './own.all'");
}

TEST_F(PackageSearch, EnvironmentIsLeftOutWhenEmptyAndCutWhenLong)
{
    const size_t without = tries(Reading(USES_OWN)).size();
    setenv("BST64", "", 1);
    EXPECT_EQ(tries(Reading(USES_OWN)).size(), without);
    setenv("BST64", std::string(3000, 'x').c_str(), 1);
    const std::vector<std::string> paths = tries(Reading(USES_OWN));
    ASSERT_EQ(paths.size(), without + 1);
    EXPECT_EQ(paths[2], std::string(1000, 'x') + "/own.all");
}

// The packages that come with the library are found without any folder given, last of all: here the
// module is this program, in a folder that stands beside theirs.
TEST_F(PackageSearch, InstalledPackages)
{
    for (const char *name : {"STD_1532_2001", "STD_1532_2002", "STD_1149_6_2003"}) {
        SCOPED_TRACE(name);
        Reading reading(Description().with(USES, "use " + std::string(name) + ".all;"));
        expect_messages(errors_and_warnings(reading.messages()), {});
        EXPECT_EQ(used_file(reading), "(none)") << "it is no package of a user";
        const std::vector<std::string> paths = tries(reading);
        ASSERT_EQ(paths.size(), 4U);
        EXPECT_EQ(paths[3].rfind(TARNLET_BUILD_DIR "/share/tarnlet/packages/std_", 0), 0U)
            << paths[3];
    }
}

TEST_F(PackageSearch, PackagesOfStandardsInFilesOfOtherNames)
{
    Reading reading(
        Description().with(USES, "use STD_1532_2002.all; use other.all; use std_1149_6_2003.all; "
                                 "use own.all;"),
        {.files = {{"std_1532_2002.all", PackageFile{.name = "STD_1532_2002"}.text()},
                   {"other.all", PackageFile{.name = "STD_1532_2002"}.text()},
                   {"std_1149_6_2003.all", PackageFile{.name = "STD_1149_6_2003"}.text()},
                   {"own.all", OWN}}});
    const std::vector<std::string> files = {reading.folder() + "/other.all",
                                            reading.folder() + "/own.all"};
    for (int round = 0; round < 2; round++) {
        const std::vector<const char *> got =
            all_of(reading.handle(), bsdlGetFirstDotALLFileSpec, bsdlGetNextDotALLFileSpec);
        EXPECT_EQ(std::vector<std::string>(got.begin(), got.end()), files);
        EXPECT_EQ(bsdlGetNextDotALLFileSpec(reading), nullptr);
        EXPECT_EQ(bsdlGetNextDotALLFileSpec(reading), nullptr);
    }
    const std::vector<const char *> names =
        all_of(reading.handle(), bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.end()),
              (std::vector<std::string>{"other.all", "own.all"}));
}

TEST_F(PackageSearch, FastReadingGoesOnWithoutThePackage)
{
    Reading reading(USES_OWN, {.flags = FAST_READ});
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "Cannot find file 'own.all'", 1}});
    EXPECT_TRUE(reading.has("\tSkip user .all"));
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
}

TEST_F(PackageSearch, NestedTooDeepEndsTheProcess)
{
    // Each file goes on with the use statement of the next. Ten are allowed.
    std::map<std::string, std::string> files;
    for (int i = 1; i <= 11; i++)
        files["p" + std::to_string(i) + ".all"] =
            PackageFile{.name = "p" + std::to_string(i)}.text() + ";\nuse p" +
            std::to_string(i + 1) + ".all\n";
    const Description description = Description().with(USES, "use p1.all;");
    files["p10.all"] = PackageFile{.name = "p10"}.text();
    {
        Reading reading(description, {.files = files});
        EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    }
    files["p10.all"] += ";\nuse p11.all\n";
    EXPECT_EXIT(Reading(description, {.files = files}), testing::ExitedWithCode(1), "");
}

TEST_F(PackageSearch, ListsOfDirectories)
{
    const char *names[] = {"a", "b", "c", "d"};
    EXPECT_EQ(bsdlUsrPackDirs(nullptr, nullptr), nullptr);
    GSList *list = bsdlUsrPackDirs(names[0], names[1], names[2], names[3], nullptr);
    ASSERT_EQ(g_slist_length(list), 4U);
    for (guint i = 0; i < 4; i++)
        EXPECT_EQ(g_slist_nth_data(list, i), names[i]) << "the very pointers";
    g_slist_free(list);
    bsdlFreeUsrPackDirs(bsdlUsrPackDirs(g_strdup("a"), g_strdup("b"), nullptr));
    bsdlFreeUsrPackDirs(nullptr);
}

} // namespace
