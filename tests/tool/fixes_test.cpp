// check --fix and --diff: what is changed in a file, and what stays.

#include "run_tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

using namespace support;

namespace
{

constexpr const char *DEMO = "examples/demo.bsd";

std::string demo_with(const std::string &part, const std::string &by)
{
    std::string text = read_text(DEMO);
    const size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

std::string demo_less_a_comma() { return demo_with("(000001), ", "(000001) "); }

std::string with_line_ends(std::string text, const std::string &line_end)
{
    for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += line_end.size())
        text.replace(at, 1, line_end);
    return text;
}

} // namespace

TEST(ToolFix, SureFixesAreMadeAndNothingElse)
{
    for (const std::string line_end : {"\n", "\r\n"}) {
        const std::string broken = with_line_ends(demo_less_a_comma(), line_end);
        const std::string path = scratch_file("fix.bsd", broken);
        const ToolRun diff = run_tool({"check", "--diff", path});
        EXPECT_TRUE(diff.out.starts_with("--- " + path + "\n+++ " + path + "\n@@ -")) << diff.out;
        EXPECT_EQ(std::count(diff.out.begin(), diff.out.end(), '\n'), 11) << diff.out;
        EXPECT_EQ(read_text(path), broken);

        const ToolRun fixed = run_tool({"check", "--fix", path});
        EXPECT_EQ(fixed.status, 0);
        EXPECT_NE(fixed.err.find("1 finding fixed"), std::string::npos) << fixed.err;
        const std::string text = read_text(path);
        EXPECT_EQ(text.size(), broken.size() + 1);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\r'),
                  std::count(broken.begin(), broken.end(), '\r'));
        EXPECT_EQ(run_tool({"check", "--diff", path}).out, "");
    }
}

TEST(ToolFix, GuessesAreMadeWhenAsked)
{
    const std::string broken = demo_with("\"RDY     : 27, \"", "\"RYD     : 27, \"");
    const std::string path = scratch_file("fix.bsd", broken);
    EXPECT_EQ(run_tool({"check", "--fix", path}).status, 1);
    EXPECT_EQ(read_text(path), broken);
    EXPECT_EQ(run_tool({"check", "--fix=all", path}).status, 0);
    EXPECT_EQ(read_text(path), read_text(DEMO));
}

TEST(ToolFix, WhatNothingMendsStays)
{
    const std::string broken = demo_with("\" 22  (  BC_1, RDY, ", "-- \" 22  (  BC_1, RDY, ");
    const std::string path = scratch_file("fix.bsd", broken);
    struct stat before;
    struct stat after;
    ASSERT_EQ(stat(path.c_str(), &before), 0);
    EXPECT_EQ(run_tool({"check", "--fix=all", path}).status, 1);
    EXPECT_EQ(read_text(path), broken);
    ASSERT_EQ(stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino) << "the file was written anew";
}

TEST(ToolFix, FilesThatCannotBeWrittenStay)
{
    EXPECT_EQ(run_tool({"check", "--fix", "-"}, demo_less_a_comma()).status, 2);
    if (geteuid() == 0)
        GTEST_SKIP() << "root may write everything";
    const std::string path = scratch_file("fix.bsd", demo_less_a_comma());
    chmod(path.c_str(), 0444);
    EXPECT_EQ(run_tool({"check", "--fix", path}).status, 2);
    EXPECT_EQ(read_text(path), demo_less_a_comma());
}
