// Comments that turn a rule off where they stand.

#include "diagnosis/suppressions.h"

#include <gtest/gtest.h>

namespace
{

constexpr const char *RULE = "pin-without-cell";

struct CoverCase {
    const char *name;
    const char *text;
    int32_t line;
    bool covered;
};

class Suppression : public testing::TestWithParam<CoverCase>
{
};

} // namespace

TEST_P(Suppression, Covers)
{
    Suppressions suppressions(GetParam().text);
    EXPECT_EQ(suppressions.covers(GetParam().line, RULE), GetParam().covered);
    EXPECT_FALSE(suppressions.covers(GetParam().line, "pin-id-not-unique"));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Diagnosis, Suppression, testing::Values(
    CoverCase{"behind_code", "x\na -- tarnlet: off pin-without-cell\nb", 2, true},
    CoverCase{"behind_code_is_for_its_line", "x\na -- tarnlet: off pin-without-cell\nb", 3, false},
    CoverCase{"alone_is_for_the_next", "-- tarnlet: off pin-without-cell\na", 2, true},
    CoverCase{"alone_ahead_of_comments", "--tarnlet:off pin-without-cell\n\n -- more\n b", 4, true},
    CoverCase{"alone_is_for_one_line", "-- tarnlet: off pin-without-cell\na\nb", 3, false},
    CoverCase{"one_of_several", "a -- tarnlet: off x-y ,  pin-without-cell: a reason, or two", 1, true},
    CoverCase{"reason_is_no_rule", "a -- tarnlet: off x-y: because, pin-without-cell", 1, false},
    CoverCase{"whole_file", "a\nb -- tarnlet: off-file pin-without-cell", 1, true},
    CoverCase{"whole_file_without_a_place", "-- tarnlet: off-file pin-without-cell", 0, true},
    CoverCase{"in_a_string", "\"-- tarnlet: off pin-without-cell\"", 1, false},
    CoverCase{"in_a_string_over_lines", "\"a\n-- tarnlet: off pin-without-cell\n\" b", 3, false},
    CoverCase{"behind_a_string", "\"a\" -- tarnlet: off pin-without-cell: \"", 1, true},
    CoverCase{"within_a_comment", "a -- b -- tarnlet: off pin-without-cell", 1, false},
    CoverCase{"carriage_returns", "x\ra -- tarnlet: off pin-without-cell\rb", 2, true},
    CoverCase{"both_line_ends", "x\r\n-- tarnlet: off pin-without-cell\r\nb", 3, true}),
    [](const auto &param) { return std::string(param.param.name); });
// clang-format on

TEST(Suppressions, ReadingCannotBeTurnedOff)
{
    Suppressions suppressions("a -- tarnlet: off syntax-error\n");
    EXPECT_FALSE(suppressions.covers(1, "syntax-error"));
    const auto remarks = suppressions.remarks(true);
    ASSERT_EQ(remarks.size(), 1u);
    EXPECT_EQ(remarks[0].text, "'syntax-error' cannot be turned off");
}

TEST(Suppressions, RemarksTellWhatIsWrongWithAComment)
{
    Suppressions suppressions("a -- tarnlet: off pin-without-cell, nonsense\n"
                              "b -- tarnlet: of pin-without-cell\n"
                              "c -- tarnlet: off pin-without-cell\n");
    EXPECT_TRUE(suppressions.covers(3, RULE));
    const auto remarks = suppressions.remarks(true);
    ASSERT_EQ(remarks.size(), 3u);
    EXPECT_STREQ(remarks[0].rule, "suppression-unknown");
    EXPECT_EQ(remarks[0].line, 2);
    EXPECT_STREQ(remarks[1].rule, "suppression-unused");
    EXPECT_EQ(remarks[1].column, 19);
    EXPECT_EQ(remarks[1].end_column, 35);
    EXPECT_STREQ(remarks[2].rule, "suppression-unknown");
    EXPECT_EQ(remarks[2].text, "There is no rule 'nonsense' to be turned off");
    // Where the rules have not been checked nobody knows what a comment is good for.
    EXPECT_EQ(suppressions.remarks(false).size(), 2u);
}

TEST(Suppressions, ReasonsAreKept)
{
    Suppressions suppressions("a -- tarnlet: off pin-without-cell : strap: to VCC \n"
                              "b -- tarnlet: off pin-without-cell\n");
    std::string reason;
    EXPECT_TRUE(suppressions.covers(1, RULE, &reason));
    EXPECT_EQ(reason, "strap: to VCC");
    EXPECT_TRUE(suppressions.covers(2, RULE, &reason));
    EXPECT_EQ(reason, "");
}

TEST(Suppressions, ManyAreFoundAtOnce)
{
    constexpr int32_t COUNT = 100'000;
    std::string text;
    for (int32_t i = 0; i < COUNT; i++)
        text += "a -- tarnlet: off pin-without-cell\n";
    Suppressions suppressions(text);
    for (int32_t line = 1; line <= COUNT; line++)
        ASSERT_TRUE(suppressions.covers(line, RULE));
    EXPECT_TRUE(suppressions.remarks(true).empty());
}
