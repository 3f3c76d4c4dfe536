// What the commands print for people and tables, whole; json_golden.py has the JSON outputs.

#include "run_tool.h"

#include <gtest/gtest.h>

namespace
{

struct GoldenCase {
    const char *name;
    const char *arguments; // with a blank between them
    int status = 0;
};

// clang-format off
const GoldenCase cases[] = {
    {"check_mistakes.txt", "check tests/tool/mistakes.bsd", 1},
    {"check_mistakes.gcc", "check --format gcc tests/tool/mistakes.bsd", 1},
    // Each mistake that the file marks is reported, and nothing else is.
    {"check_example.gcc", "check --format gcc examples/demo_mistakes.bsd", 1},
    {"check_colour.txt", "check --color always --strict tests/tool/mistakes.bsd", 1},
    {"check_verbose_isc.txt", "check --verbose tests/isc/fixed_pins.bsd", 1},
    {"check_results.txt", "check -v 1 examples/aio_2003.bsd"},
    {"explain.txt", "explain pin-without-cell"},
    // Of three findings one is turned off by a comment, one stands in the baseline.
    {"accepted.txt", "check --baseline tests/tool/baseline.json tests/tool/accepted.bsd", 1},
    {"accepted.gcc",
     "check --baseline tests/tool/baseline.json --format gcc tests/tool/accepted.bsd", 1},
    {"accepted.json",
     "check --baseline tests/tool/baseline.json --format json tests/tool/accepted.bsd", 1},
    {"accepted.sarif",
     "check --baseline tests/tool/baseline.json --format sarif tests/tool/accepted.bsd", 1},
    {"accepted.xml",
     "check --baseline tests/tool/baseline.json --format junit tests/tool/accepted.bsd", 1},
    {"accepted_gitlab.json",
     "check --baseline tests/tool/baseline.json --format gitlab tests/tool/accepted.bsd", 1},
    {"find.txt", "find 0xX692XXXX examples"},
    {"cells_sorted.txt", "cells --sort port examples/demo.bsd"},
    {"info_demo.txt", "info examples/demo.bsd"},
    {"info_demo_1990.txt", "info examples/demo_1990.bsd"},
    {"info_mistakes.txt", "info examples/demo_mistakes.bsd"},
    {"info_isc.txt", "info examples/isc_2002.bsd"},
    {"info_aio.txt", "info examples/aio_2003.bsd"},
    {"info_prg.txt", "info examples/two_taps.prg"},
    {"pins_bga.txt", "pins --package BGA49 examples/demo.bsd"},
    {"cells.csv", "cells --csv examples/demo.bsd"},
    {"instructions.csv", "instructions --csv examples/demo.bsd"},
    {"diff.txt", "diff examples/demo.bsd examples/demo_mistakes.bsd", 1},
    {"diff_issues.txt", "diff examples/demo_1994.bsd examples/demo_1990.bsd", 1},
    {"diff_isc.txt",
     "diff --ignore device,pins,cells,instructions,registers tests/isc/fixed_pins.bsd "
     "examples/isc_2002.bsd", 1},
    {"list.txt", "list examples"},
    {"list.csv",
     "list --csv --fields file,version,part,manufacturer,pin-maps,opcode:extest,passed,standards "
     "examples"},
};
// clang-format on

class ToolGolden : public testing::TestWithParam<GoldenCase>
{
};

} // namespace

// The suite runs in the source folder, so that paths in the output are the same everywhere.
TEST_P(ToolGolden, Output)
{
    const std::string arguments = GetParam().arguments;
    const ToolRun run = run_line(arguments);
    EXPECT_EQ(run.status, GetParam().status);
    // The count of what was checked stands there for formats that others read.
    if (!arguments.starts_with("check")) {
        EXPECT_EQ(run.err, "");
    }
    expect_golden_output(run.out, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Tool, ToolGolden, testing::ValuesIn(cases),
                         [](const testing::TestParamInfo<GoldenCase> &info) {
                             std::string name = info.param.name;
                             name[name.find('.')] = '_';
                             return name;
                         });
