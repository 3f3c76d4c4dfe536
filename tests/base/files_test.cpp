#include "base/files.h"

#include "support/description.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace
{

std::string first_line(FILE *file)
{
    if (!file)
        return "(none)";
    char line[100] = "";
    if (!std::fgets(line, sizeof line, file))
        line[0] = '\0';
    std::fclose(file);
    return line;
}

TEST(Files, ABackslashIsTriedAsItStandsFirst)
{
    const std::string folder = support::new_folder();
    std::filesystem::create_directory(folder + "/sub");
    support::write_text(folder + "/sub/both", "in the folder");
    EXPECT_EQ(first_line(open_to_read((folder + "\\sub\\both").c_str())), "in the folder");
    support::write_text(folder + "/sub\\both", "as written");
    EXPECT_EQ(first_line(open_to_read((folder + "/sub\\both").c_str())), "as written");

    char found[LONGEST_PATH];
    ASSERT_TRUE(find_to_read((folder + "\\sub\\both").c_str(), found));
    EXPECT_EQ(found, folder + "/sub/both");
}

TEST(Files, WhatIsNoFileIsNotOpened)
{
    const std::string folder = support::new_folder();
    std::filesystem::create_directory(folder + "/sub");
    EXPECT_EQ(open_to_read((folder + "/sub").c_str()), nullptr);
    EXPECT_EQ(open_to_read((folder + "\\sub").c_str()), nullptr);
    EXPECT_EQ(open_to_read((folder + "/absent").c_str()), nullptr);
    EXPECT_EQ(open_to_read(""), nullptr);
    EXPECT_EQ(open_to_read(std::string(2 * LONGEST_PATH, 'a').c_str()), nullptr);
}

TEST(Files, AbsolutePaths)
{
    const std::string folder = support::new_folder();
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    std::filesystem::create_directories("a/b");
    std::filesystem::create_directory_symlink("a/b", "link");
    support::write_text("a/file", "");
    const struct {
        std::string path;
        std::string absolute;
    } cases[] = {
        {"name", folder + "/name"},
        {"./name", folder + "/name"},
        {"././a//b/./name", folder + "/a/b/name"},
        {"/x/./y//z", "/x/y/z"},
        {"/name", "/name"},
        {"..name/x..", folder + "/..name/x.."},
        // What is above a link is above where it leads.
        {"link/../file", folder + "/a/file"},
    };
    for (const auto &row : cases) {
        char absolute[LONGEST_PATH];
        absolute_path(row.path.c_str(), absolute);
        EXPECT_EQ(absolute, row.absolute) << row.path;
    }
    std::filesystem::current_path(before);
}

} // namespace
