// What teams have accepted and settled: comments, baselines, .tarnlet.toml.

#include "run_tool.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <sys/stat.h>

using namespace support;
namespace fs = std::filesystem;

namespace
{

constexpr const char *ACCEPTED = "tests/tool/accepted.bsd";
constexpr const char *DEMO = "examples/demo.bsd";

std::string write_in(const std::string &folder, const std::string &name, const std::string &text)
{
    const std::string path = folder + "/" + name;
    fs::create_directories(fs::path(path).parent_path());
    write_text(path, text);
    return path;
}

std::vector<std::string> fingerprints(const std::string &path)
{
    const std::string out = run_tool({"check", "--format", "sarif", path}).out;
    std::vector<std::string> all;
    const std::regex pattern("\"primaryLocationLineHash\": \"([0-9a-f]{16}:[0-9]+)\"");
    for (std::sregex_iterator at(out.begin(), out.end(), pattern), end; at != end; ++at)
        all.push_back((*at)[1]);
    return all;
}

} // namespace

TEST(ToolAccepting, FingerprintsSurviveEditsElsewhere)
{
    const std::string text = read_text("tests/tool/mistakes.bsd");
    const std::vector<std::string> before = fingerprints(scratch_file("a.bsd", text));
    EXPECT_EQ(before.size(), 15u);
    EXPECT_EQ(fingerprints(scratch_file("b.bsd", "-- a line\n\n" + text)), before);
}

TEST(ToolAccepting, BaselineShowsWhatIsNew)
{
    const std::string folder = new_folder();
    const std::string text = read_text(ACCEPTED);
    const std::string path = write_in(folder, "a.bsd", text);
    const std::string baseline = folder + "/baseline.json";
    EXPECT_EQ(run_tool({"check", "--write-baseline", baseline, path}).status, 1);
    const auto check = [&](const std::string &changed) {
        write_in(folder, "a.bsd", changed);
        return run_tool({"check", "--baseline", baseline, path});
    };
    ToolRun run = check("-- one line more\n" + text);
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(contains(run.out, "no errors, no warnings; 3 accepted"));
    // One more that is the same to the letter.
    run = check(replaced(text, "D:7", "D:7, X:7"));
    EXPECT_EQ(run.status, 1);
    // A syntax error is never accepted.
    const std::string broken = replaced(text, "TAP_SCAN_MODE of TMS : signal is true;",
                                        "TAP_SCAN_MODE of TMS : signal is true");
    write_in(folder, "a.bsd", broken);
    run_tool({"check", "--write-baseline", baseline, path});
    EXPECT_EQ(check(broken).status, 1);

    EXPECT_EQ(run_tool({"check", "--baseline", "missing.json", path}).status, 2);
    run = run_tool({"check", "--baseline", path, path});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(contains(run.err, "is no baseline"));
}

TEST(ToolAccepting, CommentsCannotTurnReadingOff)
{
    const std::string text =
        replaced(read_text(DEMO), "TMS    : signal is true;", "TMS    : signal is is true;");
    const std::string path = scratch_file("off.bsd", "-- tarnlet: off-file syntax-error\n" + text);
    EXPECT_EQ(run_tool({"check", path}).status, 1);
    for (const char *rule :
         {"syntax-error=off", "statement-skipped=off", "file-not-opened=warning"}) {
        const ToolRun run = run_tool({"check", "--rule", rule, path});
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(contains(run.err, "is always an error"));
    }
}

// -------------------------------------------------------------------------------------- settings

namespace
{

struct BadSettings {
    const char *name;
    const char *text;
    const char *problem; // after the path
};

class ToolSettings : public testing::TestWithParam<BadSettings>
{
};

} // namespace

TEST_P(ToolSettings, AreRefusedWithAPlace)
{
    const std::string folder = new_folder();
    const std::string settings = write_in(folder, ".tarnlet.toml", GetParam().text);
    const std::string path = write_in(folder, "parts/a.bsd", read_text(DEMO));
    const ToolRun run = run_tool({"check", path});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(contains(run.err, settings + GetParam().problem)) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Tool, ToolSettings,
    testing::Values(
        BadSettings{"unknown_key", "strict = true\npackge = \"P\"",
                    ":2:1: there is no setting 'packge'; did you mean 'package'?"},
        BadSettings{"unknown_rule", "[rules]\npin-without-cel = \"off\"",
                    ":2:1: there is no rule 'pin-without-cel'; did you mean 'pin-without-cell'?"},
        BadSettings{"level", "[rules]\npin-without-cell = 1",
                    ":2:1: a rule can be set to off, warning or error"},
        BadSettings{"syntax_error_off", "[rules]\nsyntax-error = \"off\"",
                    ":2:1: 'syntax-error' is always an error"},
        BadSettings{"missing_folder", "package-dirs = [\"nowhere\"]",
                    ":1:16: there is no folder 'nowhere'"},
        BadSettings{"type", "strict = 1", ":1:10: 'strict' is true or false"},
        BadSettings{"no_toml", "\x01\xFF", ":1:"},
        BadSettings{"nested", "exclude = [[[[1]]]]", ":1:12: 'exclude' is a list of texts"}),
    [](const auto &param) { return std::string(param.param.name); });

TEST(ToolSettings, HoldForTheFilesBelow)
{
    const std::string folder = new_folder();
    write_in(folder, ".tarnlet.toml",
             "strict = true\nexclude = [\"old\", \"*_draft.bsd\"]\n"
             "[rules]\npin-id-not-unique = \"off\"\n");
    write_in(folder, "old/a.bsd", "nothing");
    write_in(folder, "new/a_draft.bsd", "nothing");
    const std::string path = write_in(folder, "new/a.bsd", read_text(ACCEPTED));
    EXPECT_TRUE(contains(run_tool({"check", folder}).out, "1 file checked: 1 error, no warnings"));
    EXPECT_TRUE(contains(run_tool({"check", folder}).out, "2 files left out by the settings"));
    // The command line wins, and the nearest settings do.
    EXPECT_EQ(run_tool({"check", "--rule", "pin-id-not-unique=error", path}).status, 1);
    write_in(folder, "new/.tarnlet.toml", "");
    EXPECT_EQ(run_tool({"check", path}).status, 1);
    const ToolRun shown = run_tool({"check", "--show-settings", folder + "/x.bsd"});
    EXPECT_TRUE(shown.out.starts_with("# " + folder + "/.tarnlet.toml\n"));
    EXPECT_TRUE(contains(shown.out, "pin-id-not-unique = "));

    // So they do for what other commands read.
    write_in(folder, "new/.tarnlet.toml", "package = \"NONE\"\n");
    const std::string page = folder + "/a.html";
    for (const std::vector<std::string> &line :
         {std::vector<std::string>{"info", path}, {"report", path, "-o", page}}) {
        const ToolRun other = run_tool(line);
        const std::string said = line[0] == "report" ? read_text(page) : other.out;
        EXPECT_TRUE(contains(said, "NONE")) << line[0];
    }

    fs::remove(folder + "/new/.tarnlet.toml");
    fs::create_symlink(".tarnlet.toml", folder + "/new/.tarnlet.toml");
    EXPECT_EQ(run_tool({"check", path}).status, 2);
}

TEST(ToolSettings, AnyBytesEndInAStatus)
{
    const std::string valid = "package-dirs = [\"parts\"]\npackage = \"P\"\nstrict = true\n"
                              "exclude = [\"old\", \"*_draft.bsd\"]\n"
                              "[rules]\npin-id-not-unique = \"off\" # why\n";
    constexpr char MARKS[] = "[]{}\"'=.,#\\\n\0\x1B\xC3\xFF-_19E";
    const std::string folder = new_folder();
    const std::string path = write_in(folder, "parts/a.bsd", read_text(ACCEPTED));
    std::mt19937 random(18);
    for (int i = 0; i < 100; i++) {
        std::string text = valid;
        for (size_t slips = 1 + random() % 4; slips > 0; slips--) {
            const size_t at = random() % text.size();
            text.replace(at, random() % 3, random() % 2, MARKS[random() % (sizeof MARKS - 1)]);
        }
        write_in(folder, ".tarnlet.toml", text);
        const ToolRun run = run_tool({"check", path});
        EXPECT_LE(run.status, 2) << text;
        EXPECT_EQ(run.status == 2, contains(run.err, ".tarnlet.toml:")) << text << run.err;
    }
}

// ----------------------------------------------------------------------------------- usage errors

TEST(ToolUse, NearNamesAreSuggested)
{
    const auto said = [](const std::string &line) { return run_line(line).err; };
    EXPECT_TRUE(contains(said("chekc x.bsd"), "did you mean 'check'?"));
    EXPECT_TRUE(contains(said("check --sctrict x.bsd"), "did you mean '--strict'?"));
    EXPECT_TRUE(contains(said("explain pin-without-cel"), "did you mean 'pin-without-cell'?"));
    EXPECT_TRUE(contains(said("list --fields idcod x.bsd"), "did you mean 'idcode'?"));
    EXPECT_TRUE(contains(said("diff --ignore pin a b"), "did you mean 'pins'?"));
    EXPECT_TRUE(contains(said("check -j -1 x.bsd"), "not in range"));
    EXPECT_TRUE(contains(said("find 0x123 x.bsd"), "is no IDCODE"));
}

TEST(ToolUse, FormatsGoToFilesSideBySide)
{
    const std::string folder = new_folder();
    const ToolRun run = run_tool({"check", "--format", "sarif", "--output", folder + "/a.sarif",
                                  "--format", "junit", "--output", folder + "/a.xml", ACCEPTED});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, run_tool({"check", ACCEPTED}).out);
    EXPECT_EQ(read_text(folder + "/a.sarif"),
              run_tool({"check", "--format", "sarif", ACCEPTED}).out);
    EXPECT_EQ(read_text(folder + "/a.xml"), run_tool({"check", "--format", "junit", ACCEPTED}).out);
    EXPECT_EQ(run_tool({"check", "--format", "json", "--format", "gcc", ACCEPTED}).status, 2);
    EXPECT_EQ(run_tool({"check", "--output", folder + "/b", ACCEPTED}).status, 2);
    EXPECT_EQ(run_tool({"check", "--format", "json", "--output", "/no/folder", DEMO}).status, 2);
}
