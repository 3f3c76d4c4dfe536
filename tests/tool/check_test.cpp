// tarnlet check and ebst, as a user runs them.

#include "run_tool.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace support;
namespace fs = std::filesystem;

namespace
{

constexpr const char *MISTAKES = "tests/tool/mistakes.bsd";
constexpr const char *DEMO = "examples/demo.bsd";

std::vector<std::string> lines_of(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string last_line(const std::string &text)
{
    const std::vector<std::string> lines = lines_of(text);
    return lines.empty() ? "" : lines.back();
}

} // namespace

// Each comment of mistakes.bsd stands above the line that its mistake is reported on.
TEST(ToolCheck, LinesPointAtTheMistakes)
{
    const std::vector<std::string> source = lines_of(read_text(MISTAKES));
    std::vector<int> expected;
    for (size_t i = 0; i < source.size(); i++)
        if (contains(source[i], "-- Mistake:"))
            expected.push_back(static_cast<int>(i) + 2);
    ASSERT_EQ(expected.size(), 12u);

    std::vector<int> reported;
    const std::string before = std::string(MISTAKES) + ":";
    for (const std::string &line : lines_of(run_tool({"check", "--format", "gcc", MISTAKES}).out))
        if (contains(line, ": error: ") && !contains(line, "[statement-skipped]"))
            reported.push_back(std::atoi(line.c_str() + before.size()));
    std::sort(reported.begin(), reported.end());
    // A mistake may stand some lines below the first of its statement.
    ASSERT_EQ(reported.size(), expected.size());
    for (size_t i = 0; i < reported.size(); i++) {
        EXPECT_GE(reported[i], expected[i]);
        EXPECT_LE(reported[i], expected[i] + 3);
    }
}

namespace
{

struct MarkCase {
    const char *name;
    std::string text;
    std::string line; // with its mark below
    std::string mark;
};

class CheckMark : public testing::TestWithParam<MarkCase>
{
};

} // namespace

TEST_P(CheckMark, StandsBelowThePlace)
{
    const MarkCase &row = GetParam();
    const std::vector<std::string> lines =
        lines_of(run_tool({"check", "--as-read", scratch_file("mark.bsd", row.text)}).out);
    for (size_t i = 0; i + 2 < lines.size(); i++)
        if (contains(lines[i], "[syntax-error]")) {
            const std::string number = lines[i + 1].substr(0, lines[i + 1].find('|'));
            EXPECT_EQ(lines[i + 1], number + "| " + row.line);
            EXPECT_EQ(lines[i + 2], std::string(number.size(), ' ') + "| " + row.mark);
            return;
        }
    ADD_FAILURE() << "no syntax error";
}

INSTANTIATE_TEST_SUITE_P(
    Tool, CheckMark,
    testing::Values(MarkCase{"carriage_returns", "-- x\rentity A is\r p q;\r", " p q;", " ^"},
                    MarkCase{"both_line_ends", "-- x\r\nentity A is\r\n p q;\r\n", " p q;", " ^"},
                    MarkCase{"tabs", "entity A is\n\t\"a\tb\" c;\n", " \"a b\" c;", " ^~~~~"},
                    MarkCase{"beyond_ascii", "entity A is\n\"\xC3\xA9\xFF\"; -- \xC3\xA9\n",
                             "\"\xC3\xA9\\xFF\"; -- \xC3\xA9", "^~~~~~~"},
                    MarkCase{"long_line",
                             "entity A is\n" + std::string(200, '\t') + "x \xC3\xA9" +
                                 std::string(200, '!'),
                             std::string(60, ' ') + "x \xC3\xA9" + std::string(57, '!'),
                             std::string(60, ' ') + "^"}),
    [](const auto &param) { return std::string(param.param.name); });

// --------------------------------------------------------------------- status, what is counted

namespace
{

struct StatusCase {
    const char *name;
    const char *arguments; // with a blank between them
    int status;
    const char *last_line; // of standard output; of standard error when there is none
};

// clang-format off
const StatusCase status_cases[] = {
    {"errors", "check tests/tool/mistakes.bsd", 1, "1 file checked: 12 errors, 3 warnings"},
    {"werror", "check --werror tests/tool/mistakes.bsd", 1,
     "1 file checked: 15 errors, no warnings"},
    {"rule_of_a_warning", "check --rule pin-without-cell=error tests/tool/mistakes.bsd", 1,
     "1 file checked: 15 errors, no warnings"},
    {"explicit_warning_under_werror",
     "check --werror --rule pin-without-cell=warning tests/tool/mistakes.bsd", 1,
     "1 file checked: 12 errors, 3 warnings"},
    {"only_error_off", "check --rule isc-fixed-pin-unknown=off tests/isc/fixed_pins.bsd", 0,
     "1 file checked (with IEEE 1532): no errors, no warnings"},
    {"only_error_a_warning", "check --rule isc-fixed-pin-unknown=warning tests/isc/fixed_pins.bsd", 0,
     "1 file checked (with IEEE 1532): no errors, 1 warning"},
    {"error_limit", "check --quiet --error-limit 2 tests/tool/mistakes.bsd", 1,
     "tests/tool/mistakes.bsd: 10 more errors not shown"},
    {"examples",
     "check --werror examples/demo.bsd examples/demo_1994.bsd examples/demo_1990.bsd "
     "examples/isc_2001.bsd examples/isc_2002.bsd examples/aio_2003.bsd examples/two_taps.prg", 0,
     "7 files checked (2 with IEEE 1532, 1 with IEEE 1149.6, 1 PPC/PRG): no errors, no warnings"},
    {"examples_strict", "check --werror --strict examples/demo.bsd examples/aio_2003.bsd", 0,
     "2 files checked (1 with IEEE 1149.6): no errors, no warnings"},
    {"missing_file", "check missing.bsd", 2,
     "0 files checked: 1 error, no warnings; 1 file could not be read"},
    {"one_of_two_missing", "check examples/demo.bsd missing.bsd", 2,
     "1 file checked: 1 error, no warnings in 1 file; 1 file could not be read"},
    {"fast_reading", "check --fast-read examples/isc_2001.bsd", 0,
     "1 file checked: no errors, no warnings"},
    {"other_package", "check --package BGA49 examples/demo.bsd", 0,
     "1 file checked: no errors, no warnings"},
    {"no_files", "check", 2, "tarnlet: no files are given; see 'tarnlet check --help'"},
    {"unknown_option", "check --sctrict examples/demo.bsd", 2,
     "Run with --help for more information."},
    {"unknown_format", "check --format xml examples/demo.bsd", 2,
     "Run with --help for more information."},
    {"negative_limit", "check --error-limit -1 examples/demo.bsd", 2,
     "Run with --help for more information."},
    {"no_file_in_the_folder", "check --quiet tests/tool/golden", 2,
     "tarnlet: there are no .bsd, .bsdl, .bsm, .ppc or .prg files in tests/tool/golden"},
    {"format_of_another_use", "check --format markdown examples/demo.bsd", 2,
     "tarnlet: the format markdown is for --list-rules"},
    {"unknown_rule", "check --rule pin-missing=off examples/demo.bsd", 2,
     "tarnlet: --rule pin-missing=off: there is no rule 'pin-missing'; did you mean 'aio-missing'?"},
    {"rule_without_level", "check --rule pin-without-cell examples/demo.bsd", 2,
     "tarnlet: --rule pin-without-cell: ID=off, ID=warning or ID=error is expected"},
    {"explain_unknown", "check --explain \x1B[31m", 2,
     "tarnlet: there is no rule '\\x1B[31m'; 'tarnlet check --list-rules' names them all"},
    {"unknown_command",
     "chekc examples/demo.bsd", 2,
     "'tarnlet COMMAND --help' has the options of a command; 'tarnlet --version' gives the "
     "version."},
};
// clang-format on

class CheckStatus : public testing::TestWithParam<StatusCase>
{
};

} // namespace

TEST_P(CheckStatus, Status)
{
    const StatusCase &row = GetParam();
    const ToolRun run = run_line(row.arguments);
    EXPECT_EQ(run.status, row.status);
    EXPECT_EQ(last_line(run.out.empty() ? run.err : run.out), row.last_line);
}

INSTANTIATE_TEST_SUITE_P(Tool, CheckStatus, testing::ValuesIn(status_cases),
                         [](const auto &param) { return std::string(param.param.name); });

TEST(ToolCheck, QuietLeavesTheMessages)
{
    EXPECT_EQ(run_tool({"check", "--quiet", DEMO}).out, "");
    const ToolRun run = run_tool({"check", "--quiet", MISTAKES});
    EXPECT_TRUE(contains(run.out, "[pin-id-not-unique]"));
    EXPECT_FALSE(contains(run.out, "checked"));
}

// ------------------------------------------------------------------------------------------ input

TEST(ToolCheck, StandardInput)
{
    const ToolRun run = run_tool({"check", "-"}, read_text(MISTAKES));
    EXPECT_EQ(run.status, 1);
    std::string expected = run_tool({"check", MISTAKES}).out;
    for (size_t at; (at = expected.find(MISTAKES)) != std::string::npos;)
        expected.replace(at, std::string(MISTAKES).size(), "<stdin>");
    EXPECT_EQ(run.out, expected);

    const ToolRun both = run_tool({"check", "--format", "gcc", DEMO, "-"}, read_text(MISTAKES));
    EXPECT_TRUE(contains(both.out, "<stdin>:48"));
}

// It is not read again for its lines, which would wait for ever.
TEST(ToolCheck, Pipe)
{
    const std::string pipe = scratch_file("pipe", "") + ".bsd";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(pipe) << read_text(MISTAKES); });
    const ToolRun run = run_tool({"check", pipe});
    writer.join();
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.out, "<pin id> '26' is not unique"));
    EXPECT_TRUE(contains(run.out, "  48 |         \"RDY     : 26, \" &"));
}

TEST(ToolCheck, Folders)
{
    const fs::path folder = new_folder();
    fs::create_directories(folder / "b" / "c");
    const std::string broken = "entity x\n";
    for (const char *name : {"b/c/3.BSM", "b/2.bsdl", "1.Bsd", "4.prg", "5.txt", "b/bsd"})
        std::ofstream(folder / name) << broken;
    fs::create_directory_symlink("..", folder / "b/loop");
    std::string files;
    std::string latest;
    for (const std::string &line : lines_of(run_tool({"check", "-q", folder.string()}).out)) {
        if (!line.starts_with("/"))
            continue;
        const std::string file =
            line.substr(folder.string().size(), line.find(':') - folder.string().size()) + " ";
        files += file == latest ? "" : file;
        latest = file;
    }
    EXPECT_EQ(files, "/1.Bsd /4.prg /b/2.bsdl /b/c/3.BSM ");

    if (geteuid() == 0)
        GTEST_SKIP() << "nothing is unreadable for root";
    chmod((folder / "b").c_str(), 0);
    const ToolRun run = run_tool({"check", folder.string()});
    chmod((folder / "b").c_str(), 0755);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(contains(run.err, "cannot read folder"));
}

namespace
{

struct BadText {
    const char *name;
    std::string text;
    int status;
    const char *first_rule;
};

class CheckBadText : public testing::TestWithParam<BadText>
{
};

} // namespace

// Whatever stands in a file and its name, no format hands control characters to the terminal.
TEST_P(CheckBadText, IsReportedAndEscaped)
{
    const BadText &row = GetParam();
    const std::string path = scratch_file("a\n\x1B[31m\xFF.bsd", row.text);
    for (const char *format : {"text", "gcc", "json", "sarif"}) {
        SCOPED_TRACE(format);
        const ToolRun run = run_tool({"check", "--verbose", "--format", format, path});
        EXPECT_EQ(run.status, row.status);
        EXPECT_TRUE(contains(run.out, row.first_rule));
        for (unsigned char c = 0; c < 0x20; c++)
            EXPECT_TRUE(c == '\n' || run.out.find(static_cast<char>(c)) == std::string::npos)
                << static_cast<int>(c);
        EXPECT_FALSE(contains(run.out, "\x7F"));
        EXPECT_FALSE(contains(run.out, "\xFF"));
        EXPECT_FALSE(contains(run.out, "\xC2\x9B"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Tool, CheckBadText,
    testing::Values(
        BadText{"empty", "", 1, "syntax-error"},
        BadText{"binary",
                std::string("\x7F"
                            "ELF\x01\0\0\x02",
                            8),
                1, "error"},
        BadText{"escape_in_name", "entity A\x1B[31mB is\nend A;\n", 1, "error"},
        BadText{"delete_in_string",
                "entity A is\ngeneric (PHYSICAL_PIN_MAP : string := \"\x7F\xC2\x9B\xFF\");\n", 1,
                "syntax-error"}),
    [](const auto &param) { return std::string(param.param.name); });

TEST(ToolCheck, TextsWithoutAStatementAreNamed)
{
    const auto said_of = [](const std::string &text) {
        return run_tool({"check", scratch_file("nothing.bsd", text)}).out;
    };
    const std::string empty = said_of("");
    EXPECT_TRUE(contains(empty, "nothing.bsd:1:1: error: ")) << empty;
    EXPECT_TRUE(contains(empty, "the file is empty")) << empty;
    EXPECT_FALSE(contains(empty, "line 2")) << empty;
    EXPECT_TRUE(contains(said_of(" \n\t\r\n"), "nothing but white space"));
    EXPECT_TRUE(contains(said_of(std::string("\xFF\xFE"
                                             "e\0n\0",
                                             6)),
                         "UTF-16"));
}

// --------------------------------------------------------------------------------------- packages

TEST(ToolCheck, MissingPackageIsReportedWithAllFolders)
{
    const std::string path = demo_using("MISSING_PKG");
    const ToolRun run =
        run_tool({"check", "--format", "gcc", "-I", "examples", "-I", "tests/tool/", path});
    EXPECT_EQ(run.status, 1);
    const std::vector<std::string> lines = lines_of(run.out);
    ASSERT_GE(lines.size(), 7u);
    EXPECT_TRUE(contains(lines[0], "Cannot find file 'MISSING_PKG"));
    EXPECT_TRUE(contains(lines[0], "[package-not-found]"));
    std::vector<std::string> folders;
    for (const std::string &line : lines)
        if (const size_t at = line.find(": note: searched in this folder"); at != line.npos)
            folders.push_back(line.substr(0, at));
    const std::vector<std::string> expected = {
        "examples",
        "tests/tool",
        ".",
        fs::path(path).parent_path(),
        fs::path(TARNLET_LIBRARY).parent_path(),
        fs::canonical(fs::path(TARNLET_BUILD_DIR) / "share/tarnlet/packages")};
    ASSERT_EQ(folders.size(), expected.size());
    for (size_t i = 0; i < folders.size(); i++)
        EXPECT_TRUE(folders[i] == expected[i] || fs::equivalent(folders[i], expected[i]))
            << folders[i];
    EXPECT_TRUE(contains(run_tool({"check", path}).out, "  .: searched in this folder"));
}

// ------------------------------------------------------------------------------ many files

TEST(ToolCheck, OutputDoesNotDependOnTheNumberOfThreads)
{
    const ToolRun one = run_tool({"check", "--verbose", "-j", "1", "examples", "tests/tool"});
    const ToolRun four = run_tool({"check", "--verbose", "-j", "4", "examples", "tests/tool"});
    EXPECT_EQ(one.out, four.out);
    EXPECT_EQ(one.status, four.status);
    EXPECT_GT(lines_of(one.out).size(), 100u);
}

TEST(ToolCheck, FileThatCannotBeReadToItsEndDoesNotEndTheRun)
{
    const std::string nested = description_that_ends_its_process();
    const ToolRun alone = run_tool({"check", "--format", "gcc", nested});
    EXPECT_EQ(alone.status, 1);
    EXPECT_TRUE(contains(alone.out, "Includes nested too deep [package-nested-too-deep]"));
    for (const char *jobs : {"1", "3"}) {
        const ToolRun run =
            run_tool({"check", "--format", "gcc", "-j", jobs, nested, MISTAKES, DEMO});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, alone.out + run_tool({"check", "--format", "gcc", MISTAKES}).out);
    }
    EXPECT_EQ(run_tool({"ebst", nested, "-o", "-"}).status, 2);
}

// A file is checked once, whatever it is called.
TEST(ToolCheck, FileUnderTwoPathsCountsOnce)
{
    const std::string path = scratch_file("once.bsd", read_text(DEMO));
    const std::string folder = fs::path(path).parent_path();
    const std::string link = folder + "/link.bsd";
    fs::remove(link);
    fs::create_symlink(path, link);
    EXPECT_EQ(last_line(run_tool({"check", path, folder + "/./once.bsd", link}).out),
              "1 file checked: no errors, no warnings");
}

TEST(ToolCheck, PackageFile)
{
    const char *const package = "packages/std_1532_2002.all";
    EXPECT_EQ(last_line(run_tool({"check", package}).out),
              "1 file checked (read as a package): no errors, no warnings");
    std::string text = read_text(package);
    const std::string body = "end STD_1532_2002;";
    text.replace(text.find(body), body.size(), "end;");
    const std::string path = scratch_file("std_1532_2002.all", text);
    const ToolRun run = run_tool({"check", "--format", "gcc", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.out.starts_with(path + ":"));
}

TEST(ToolCheck, Colour)
{
    const std::string colour = "\033[";
    setenv("CLICOLOR_FORCE", "1", 1);
    EXPECT_TRUE(contains(run_tool({"check", DEMO}).out, colour));
    EXPECT_FALSE(contains(run_tool({"check", "--color", "never", DEMO}).out, colour));
    setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(contains(run_tool({"check", DEMO}).out, colour));
    EXPECT_TRUE(contains(run_tool({"check", "--color", "always", DEMO}).out, colour));
    unsetenv("CLICOLOR_FORCE");
    unsetenv("NO_COLOR");
    EXPECT_FALSE(contains(run_tool({"check", DEMO}).out, colour));
}

// ------------------------------------------------------------------------------------------- ebst

TEST(ToolEbst, FileAndStandardOutput)
{
    const std::string path = scratch_file("out.dsh", "old");
    const ToolRun run = run_tool({"ebst", DEMO, "-o", path});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
    const std::string written = read_text(path);
    EXPECT_TRUE(written.starts_with("EBST\n"));

    const ToolRun printed = run_tool({"ebst", DEMO, "-o", "-"});
    EXPECT_NE(printed.out.find("\"demo.dsh created by"), std::string::npos);
    EXPECT_EQ(printed.status, 0);
    // The time stamp may differ.
    EXPECT_EQ(lines_of(printed.out).size(), lines_of(written).size());
    EXPECT_EQ(last_line(printed.out), last_line(written));
}

TEST(ToolEbst, Refusals)
{
    const std::string path = scratch_file("refused.dsh", "old");
    const ToolRun failed = run_tool({"ebst", MISTAKES, "-o", path});
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(contains(failed.out, "[pin-id-not-unique]"));
    EXPECT_TRUE(contains(failed.err, "--force"));
    EXPECT_EQ(read_text(path), "old");
    EXPECT_EQ(run_tool({"ebst", "--force", MISTAKES, "-o", path}).status, 1);
    EXPECT_TRUE(read_text(path).starts_with("EBST\n"));

    const std::string input = scratch_file("input.bsd", read_text(DEMO));
    EXPECT_EQ(run_tool({"ebst", input, "-o", input}).status, 2);
    EXPECT_EQ(run_tool({"ebst", input, "-o", fs::path(input).parent_path() / "./input.bsd"}).status,
              2);
    EXPECT_EQ(read_text(input), read_text(DEMO));
    EXPECT_EQ(run_tool({"ebst", "examples/two_taps.prg", "-o", path}).status, 2);
    EXPECT_EQ(run_tool({"ebst", "missing.bsd", "-o", path}).status, 2);
    EXPECT_EQ(run_tool({"ebst", DEMO, "-o", "/dev/full"}).status, 2);
    EXPECT_EQ(run_tool({"ebst", DEMO, "-o", "/"}).status, 2);
    // Messages do not get between the lines of a file that goes to standard output.
    const ToolRun printed = run_tool({"ebst", "--force", MISTAKES, "-o", "-"});
    EXPECT_TRUE(printed.out.starts_with("EBST\n"));
    EXPECT_TRUE(contains(printed.err, "[pin-id-not-unique]"));
}
