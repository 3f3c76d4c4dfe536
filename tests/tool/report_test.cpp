// report: which files it writes, and that none is written by halves. What the pages show is tested
// in a browser.

#include "run_tool.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sys/resource.h>
#include <unistd.h>

using namespace support;
namespace fs = std::filesystem;

namespace
{

// A folder with a folder in it, and descriptions in both.
std::string folder_of_parts()
{
    const std::string folder = new_folder();
    fs::create_directory(folder + "/more");
    fs::copy_file(example("demo.bsd"), folder + "/demo.bsd");
    fs::copy_file(example("two_taps.prg"), folder + "/two_taps.prg");
    fs::copy_file(example("isc_2002.bsd"), folder + "/more/demo.bsd");
    return folder;
}

std::map<std::string, std::string> texts_below(const std::string &folder)
{
    std::map<std::string, std::string> texts;
    for (const auto &entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            texts[fs::relative(entry.path(), folder)] = read_text(entry.path());
    return texts;
}

std::vector<std::string> names_below(const std::string &folder)
{
    std::vector<std::string> names;
    for (const auto &[name, text] : texts_below(folder))
        names.push_back(name);
    return names;
}

std::string data_of(const std::string &page)
{
    const std::string begin = "id=\"data\">";
    const size_t at = page.find(begin) + begin.size();
    return page.substr(at, page.find("</script>", at) - at);
}

using Names = std::vector<std::string>;

} // namespace

TEST(ToolReport, FolderHasAPageForEachFileAndAnIndex)
{
    const std::string folder = folder_of_parts();
    const std::string out = folder + ".html/of/parts";
    ToolRun run = run_tool({"report", folder + "/", "-o", out});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "3 pages, 3 written: " + out + "/index.html\n");
    EXPECT_EQ(names_below(out),
              (Names{"demo.bsd.html", "index.html", "more/demo.bsd.html", "two_taps.prg.html"}));
    const std::string index = data_of(read_text(out + "/index.html"));
    EXPECT_NE(index.find("\"page\":\"more/demo.bsd.html\""), std::string::npos) << index;
    EXPECT_NE(index.find("\"component\":\"tarn_flash\""), std::string::npos) << index;

    // What is as it was is not written; the number of threads makes no difference.
    const auto before = texts_below(out);
    const auto kept = fs::last_write_time(out + "/demo.bsd.html");
    write_text(folder + "/more/demo.bsd", read_text(example("isc_2001.bsd")));
    run = run_tool({"report", folder, "-o", out + "/", "-j", "1"});
    EXPECT_EQ(run.out, "3 pages, 1 written: " + out + "/index.html\n");
    EXPECT_EQ(fs::last_write_time(out + "/demo.bsd.html"), kept);
    fs::copy_file(example("isc_2002.bsd"), folder + "/more/demo.bsd",
                  fs::copy_options::overwrite_existing);
    run_tool({"report", folder, "-o", out, "-j", "3"});
    EXPECT_TRUE(texts_below(out) == before);
}

TEST(ToolReport, PagesAreReplacedWholeOrNotAtAll)
{
    const std::string folder = new_folder();
    const std::string page = folder + "/page.html";
    write_text(page, "as it was");
    const auto unchanged = [&](const char *when) {
        EXPECT_EQ(read_text(page), "as it was") << when;
        EXPECT_EQ(names_below(folder), Names{"page.html"}) << when;
    };

    // A disk with no room: what may be written is less than a page.
    rlimit usual;
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit little = {16384, usual.rlim_max};
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &little);
    ToolRun run = run_tool({"report", example("demo.bsd"), "-o", page});
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "tarnlet: cannot write " + page + ": File too large\n");
    unchanged("no room");

    if (geteuid() != 0) {
        fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
        EXPECT_EQ(run_tool({"report", example("demo.bsd"), "-o", page}).status, 2);
        fs::permissions(folder, fs::perms::owner_all);
        unchanged("folder that may not be written");
    }
    EXPECT_EQ(run_tool({"report", "no/such.bsd", "-o", page}).status, 2);
    unchanged("no description");

    // A link stays, and so do permissions.
    fs::create_symlink("page.html", folder + "/link.html");
    fs::permissions(page, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(run_tool({"report", example("demo.bsd"), "-o", folder + "/link.html"}).status, 0);
    EXPECT_TRUE(fs::is_symlink(folder + "/link.html"));
    EXPECT_EQ(fs::status(page).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(read_text(page), run_tool({"report", example("demo.bsd"), "-o", "-"}).out);
}

TEST(ToolReport, WhatStandsInAFileEndsNoElement)
{
    const std::string bad = "</script><!--<script>'\"&amp;";
    std::string text = read_text(example("demo.bsd"));
    text.insert(text.find("entity"), "-- " + bad + "\n");
    const std::string page = run_tool({"report", scratch_file("a<b>&.bsd", text), "-o", "-"}).out;
    EXPECT_EQ(page.find(bad), std::string::npos);
    EXPECT_NE(data_of(page).find("\\u003c/script>\\u003c!--\\u003cscript>'\\\"&amp;"),
              std::string::npos);
    // All of it is ASCII, and three elements hold what is not markup.
    EXPECT_EQ(std::count_if(page.begin(), page.end(), [](char c) { return c < 0; }), 0);
    const std::regex element("<(script|style)[ >]");
    EXPECT_EQ(std::distance(std::sregex_iterator(page.begin(), page.end(), element), {}), 3);
}

TEST(ToolReport, WrongUse)
{
    const std::string demo = example("demo.bsd");
    const std::string copy = scratch_file("copy.bsd", read_text(demo));
    const std::string folder = folder_of_parts();
    struct {
        const char *name;
        std::vector<std::string> arguments;
        const char *says;
    } const cases[] = {
        {"folder without a place", {"report", folder}, "-o DIR is needed"},
        {"several on standard output", {"report", demo, copy, "-o", "-"}, "-o DIR is needed"},
        {"page over its description", {"report", copy, "-o", copy}, "would overwrite"},
        {"three to compare", {"report", "--diff", demo, copy, copy}, "--diff takes two files"},
        {"missing", {"report", "no/such.bsd"}, "no/such.bsd: Could not open file"},
    };
    for (const auto &c : cases) {
        const ToolRun run = run_tool(c.arguments);
        EXPECT_EQ(run.status, 2) << c.name;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << c.name << ": " << run.err;
    }
    EXPECT_EQ(read_text(copy), read_text(demo));
}

TEST(ToolReport, ColumnsCountCharacters)
{
    // Two bytes of UTF-8, and one of Latin-1, before what is wrong in the line.
    const std::string text = read_text(example("demo.bsd"));
    const std::string warning = "\"apply VDD before running EXTEST.\";";
    const size_t at = text.find(warning);
    ASSERT_NE(at, std::string::npos);
    const auto columns = [&](const std::string &ahead) {
        std::string changed = text;
        changed.replace(at, warning.size(), "\"" + ahead + "\" oops;");
        const std::string data =
            data_of(run_tool({"report", scratch_file("columns.bsd", changed), "-o", "-"}).out);
        const std::regex column("column\":([0-9]+)");
        Names found;
        for (std::sregex_iterator each(data.begin(), data.end(), column); each != decltype(each)();
             ++each)
            found.push_back((*each)[1]);
        return found;
    };
    const Names plain = columns("ab");
    EXPECT_FALSE(plain.empty());
    EXPECT_EQ(columns("\xC3\xA4\xE4"), plain);
}
