// info, the tables, diff and list, as a user runs them.

#include "run_tool.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace support;

namespace
{

} // namespace

TEST(ToolInfo, DescriptionFromStandardInput)
{
    const ToolRun from_file = run_tool({"cells", "examples/demo.bsd"});
    const ToolRun from_input = run_tool({"cells", "-"}, read_text("examples/demo.bsd"));
    EXPECT_EQ(from_input.status, 0);
    EXPECT_EQ(from_input.out, from_file.out);
}

TEST(ToolInfo, SyntaxErrorsLeaveTheRest)
{
    const std::string text = read_text("examples/demo.bsd");
    const std::string path =
        scratch_file("broken.bsd", replaced(text, "attribute RUNBIST_EXECUTION of",
                                            "attribute RUNBIST_EXECUTION to"));
    for (const char *command : {"info", "cells"}) {
        const ToolRun run = run_tool({command, path});
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_NE(run.err.find("1 syntax error, so what is shown may not be all; the first: "),
                  std::string::npos)
            << run.err;
        EXPECT_NE(run.err.find("found 'to' on line"), std::string::npos) << run.err;
        EXPECT_NE(run.out.find(command == std::string("info") ? "26 cells in 27 rows" : "ADDR(3)"),
                  std::string::npos);
    }
    const ToolRun list = run_tool({"list", "--fields", "component,syntax-errors", path});
    EXPECT_EQ(list.status, 1);
    EXPECT_EQ(list.out, "COMPONENT  SYNTAX-ERRORS\ntarn_demo              1\n");
}

TEST(ToolInfo, PackagesBesideDescriptionsHaveNoRow)
{
    const ToolRun list = run_tool(
        {"list", "--fields", "component", "packages/std_1532_2001.all", "examples/demo.bsd"});
    EXPECT_EQ(list.status, 0) << list.err;
    EXPECT_EQ(list.out, "COMPONENT\ntarn_demo\n");
}

TEST(ToolInfo, FilesThatCannotBeRead)
{
    struct {
        const char *name;
        std::vector<std::string> arguments;
        const char *says;
    } const cases[] = {
        {"missing", {"info", "no/such.bsd"}, "no/such.bsd: Could not open file"},
        {"folder", {"info", "examples"}, "examples: Could not open file"},
        {"empty", {"cells", "/dev/null"}, "/dev/null: "},
        {"data file", {"pins", "examples/two_taps.prg"}, "a PPC/PRG file has no pins"},
        {"package",
         {"pins", "packages/std_1532_2001.all"},
         "packages/std_1532_2001.all: a package, which describes no device"},
        {"package to write",
         {"ebst", "-o", "-", "packages/std_1532_2001.all"},
         "a package describes no device and has no EBST file"},
        {"one of two", {"diff", "examples/demo.bsd", "no/such.bsd"}, "no/such.bsd: "},
    };
    for (const auto &c : cases) {
        const ToolRun run = run_tool(c.arguments);
        EXPECT_EQ(run.status, 2) << c.name;
        EXPECT_EQ(run.out, "") << c.name;
        EXPECT_NE(run.err.find(c.says), std::string::npos) << c.name << ": " << run.err;
    }
    // The others of a list are shown.
    const ToolRun list =
        run_tool({"list", "--csv", "--fields", "component", "no/such.bsd", "examples/demo.bsd"});
    EXPECT_EQ(list.status, 2);
    EXPECT_EQ(list.out, "component\r\ntarn_demo\r\n");
    EXPECT_EQ(run_tool({"list", "docs"}).status, 2);
    // Standard input is there for all of them.
    const ToolRun twice = run_tool({"list", "--csv", "--fields", "component", "-", "-"},
                                   read_text("examples/demo.bsd"));
    EXPECT_EQ(twice.out, "component\r\ntarn_demo\r\ntarn_demo\r\n");
}

TEST(ToolInfo, FileThatEndsItsProcess)
{
    const std::string path = description_that_ends_its_process();
    const ToolRun info = run_tool({"info", path});
    EXPECT_EQ(info.status, 2);
    EXPECT_EQ(info.out, "");
    EXPECT_EQ(info.err, "tarnlet: " + path + ": line 6: Includes nested too deep\n");

    const ToolRun list = run_tool({"list", "--csv", "--fields", "component,pins", path,
                                   "examples/demo.bsd", path, "examples/demo_1990.bsd"});
    EXPECT_EQ(list.status, 2);
    EXPECT_EQ(list.out, "component,pins\r\ntarn_demo,41\r\ntarn_demo_1990,15\r\n");
    const std::string said = "tarnlet: " + path + ": Includes nested too deep\n";
    EXPECT_EQ(list.err, said); // one file, however often it is named
}

TEST(ToolInfo, WrongUse)
{
    const std::vector<std::string> cases[] = {
        {"info"},
        {"info", "--jsn", "examples/demo.bsd"},
        {"pins", "--csv", "--json", "examples/demo.bsd"},
        {"diff", "examples/demo.bsd"},
        {"diff", "--ignore", "pins.nubmer", "examples/demo.bsd", "examples/demo.bsd"},
        {"list"},
        {"list", "--fields", "idcode,irlength", "examples"},
        {"list", "--fields", "opcode:", "examples"},
        {"list", "--csvv\x1B[31m", "examples"},
    };
    for (const auto &arguments : cases) {
        const ToolRun run = run_tool(arguments);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(run.out, "") << testing::PrintToString(arguments);
        EXPECT_EQ(run.err.find("tarnlet: "), 0u) << testing::PrintToString(arguments);
        EXPECT_EQ(run.err.find('\x1B'), std::string::npos) << testing::PrintToString(arguments);
    }
}

TEST(ToolInfo, EveryFieldOfAListIsKnown)
{
    std::string names;
    std::istringstream lines(run_tool({"list", "--list-fields"}).out);
    for (std::string line; std::getline(lines, line);)
        names += (names.empty() ? "" : ",") + line.substr(0, line.find(' '));
    const ToolRun run = run_tool({"list", "--csv", "--fields", names, "examples/demo.bsd"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.substr(0, run.out.find('\r')), names);
}

// A reading that stops early for such fields gives what a whole one gives.
TEST(ToolInfo, FieldsOfTheStartDoNotDependOnTheRest)
{
    const std::string fields =
        "component,standard,standards,conformance,pin-map,pin-maps,tck-frequency,tck-halt,trst,"
        "compliance-ports,compliance,ir-length,ir-capture,idcode,idcode-hex,version,part,"
        "manufacturer";
    const ToolRun start = run_tool({"list", "--csv", "--fields", fields, "examples"});
    const ToolRun whole = run_tool({"list", "--csv", "--fields", fields + ",passed", "examples"});
    std::istringstream start_lines(start.out);
    std::istringstream whole_lines(whole.out);
    std::string row;
    for (std::string line; std::getline(start_lines, line);) {
        ASSERT_TRUE(std::getline(whole_lines, row));
        EXPECT_EQ(line.substr(0, line.size() - 1), row.substr(0, row.rfind(',')));
    }
    EXPECT_FALSE(std::getline(whole_lines, row));
}

TEST(ToolInfo, LettersBeyondAsciiAndControlCharacters)
{
    const std::string text = replaced(read_text("examples/demo.bsd"), "DATA is driven",
                                      "5\xB0 \x1B[31m\x01\x7F is driven");
    const std::string path = scratch_file("latin\n1.bsd", text);
    for (const std::vector<std::string> &form :
         {std::vector<std::string>{"info"},
          {"info", "--json"},
          {"list", "--fields", "file,design-warning"},
          {"list", "--csv", "--fields", "file,design-warning"}}) {
        std::vector<std::string> arguments = form;
        arguments.push_back(path);
        const ToolRun run = run_tool(arguments);
        SCOPED_TRACE(testing::PrintToString(form));
        EXPECT_NE(run.out.find("driven"), std::string::npos);
        for (const char control : {'\x1B', '\x01', '\x7F'})
            EXPECT_EQ(run.out.find(control), std::string::npos);
        EXPECT_EQ(run.out.find("latin\n"), std::string::npos);
        EXPECT_NE(run.out.find(form.back() == "--json" ? "5\\u00b0" : "5\xC2\xB0"),
                  std::string::npos);
    }
}

TEST(ToolInfo, NamesAreComparedWithoutCaseAndOrder)
{
    std::string text = read_text("examples/demo.bsd");
    text = replaced(text, "\"EXTEST    (000000), \" &\n        \"SAMPLE    (000001), \"",
                    "\"Sample    (000001), \" &\n        \"extest    (000000), \"");
    text = replaced(text, "BC_4, CLK,", "bc_4, clk,");
    const ToolRun run = run_tool({"diff", "examples/demo.bsd", scratch_file("other.bsd", text)});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}
