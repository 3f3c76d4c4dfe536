// The shipped examples and packages, read from the source tree through the exported functions.

#include "tarnlet/bsdl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using Lines = std::vector<std::string>;

struct Verdict {
    bool was_read = false;
    int32_t syntax_errors = -1;
    int32_t check = -1;
    Lines findings; ///< errors and warnings, in order
};

constexpr uint32_t ALL = 9;

void keep_finding(void *lines, BsdlMessage *message)
{
    if (message->level == BSDL_LEVEL_ERROR)
        static_cast<Lines *>(lines)->push_back(std::string("error: ") + message->text);
    if (message->level == BSDL_LEVEL_WARNING)
        static_cast<Lines *>(lines)->push_back(std::string("warning: ") + message->text);
}

Verdict check_file(const std::string &path, uint32_t flags, int32_t (*check)(Bsdl *) = bsdl_check)
{
    Verdict verdict;
    BsdlContext context{
        .message_sink = keep_finding, .sink_data = &verdict.findings, .verbosity = ALL};
    std::string packages = TARNLET_SOURCE_DIR "/packages";
    GSList *folders = g_slist_append(nullptr, packages.data());
    Bsdl *h = readBsdl(path.c_str(), nullptr, folders, flags, &context);
    if (h) {
        verdict.was_read = true;
        verdict.syntax_errors = bsdlGetNumErrors(h);
        verdict.check = check(h);
        bsdlRelease(h);
    }
    g_slist_free(folders);
    return verdict;
}

struct Clean {
    const char *file;
    uint32_t flags = 0;
    int32_t (*check)(Bsdl *) = bsdl_check;
};

class CleanExample : public testing::TestWithParam<Clean>
{
};

TEST_P(CleanExample, has_no_finding)
{
    const Verdict verdict =
        check_file(std::string(TARNLET_SOURCE_DIR "/examples/") + GetParam().file, GetParam().flags,
                   GetParam().check);
    EXPECT_TRUE(verdict.was_read);
    EXPECT_EQ(verdict.syntax_errors, 0);
    EXPECT_EQ(verdict.check, BSDL_RESULT_OK);
    EXPECT_EQ(verdict.findings, Lines());
}

INSTANTIATE_TEST_SUITE_P(examples, CleanExample,
                         testing::Values(Clean{"demo.bsd"}, Clean{"demo.bsd", BSDL_FLAG_STRICT},
                                         Clean{"demo_1994.bsd"}, Clean{"demo_1990.bsd"},
                                         Clean{"isc_2002.bsd", 0, bsdl_check_isc},
                                         Clean{"aio_2003.bsd", BSDL_FLAG_STRICT, bsdl_check_aio},
                                         Clean{"two_taps.prg", 0, bsdl_check_prg}));

// Each mistake that the file marks is reported, and nothing else is.
TEST(Examples, mistakes_are_all_found)
{
    const Lines expected = {
        "error: <pin id> '26' is not unique (<port name> 'RDY')",
        "error: \tDevice package pin mappings description has errors",
        "error: <compliance port> <pattern> '0' has incorrect length 1, should be 2",
        "error: \tCompliance enable description has errors",
        "error: incorrect instruction capture length, opcode: HIGHZ (00101) should have length 6",
        "error: instruction capture pattern (XXXX10) must end in 01",
        "error: \tInstruction register description has errors",
        "error: least significant bit of idcode: (00110110100100101101010100101100) must be 1",
        "error: \tOptional register description has errors",
        "error: cell_number (4) does not exist",
        "error: <cell number> 8 with <function> OUTPUT3 and <cell number> 9 with <function> "
        "OUTPUT3, both <port id> Q(1) cannot both have an OUTPUT function",
        "error: The <disable value> (1) of <cell number> 18 with <function> 'BIDIR' must be equal "
        "to the <safe bit> (0) of <cell number> 10 with <function> 'CONTROLR'",
        "error: <cell number> 22 with <port id> 'READY' is not defined in <logical pin map>",
        "error: Cell_name 'BC_11' is not a defined cell",
        "warning: <port name> 'ADDR(3)' with <pin type> IN does not exist in <boundary register "
        "statement>",
        "warning: <port name> 'Q(0)' with <pin type> OUT does not exist in <boundary register "
        "statement>",
        "warning: <port name> 'RDY' with <pin type> BUFFER does not exist in <boundary register "
        "statement>",
        "error: \tBoundary scan register description has errors",
        "error: Incorrect expect data pattern length 12, should be 16",
        "error: \tRunbist description has errors",
        "error: Extension 'TARN_SPEED_GRADE' in 'tarn_demo_mistakes' is defined but not declared",
        "error: \tExtensions description has errors",
    };
    const Verdict verdict = check_file(TARNLET_SOURCE_DIR "/examples/demo_mistakes.bsd", 0);
    EXPECT_EQ(verdict.syntax_errors, 0);
    EXPECT_EQ(verdict.check, BSDL_RESULT_FAILED);
    EXPECT_EQ(verdict.findings, expected);
}

} // namespace
