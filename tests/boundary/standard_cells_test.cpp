#include "boundary/standard_cells.h"
#include "header/header.h"
#include "support/description.h"
#include "support/package_file.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace support;

namespace
{

// "context instruction source" of each.
std::string captures_of(Bsdl *bsdl, const char *name)
{
    std::string captures;
    for (const GSList *link = find_cell_desc(bsdl, model_name(bsdl, name))->capt_descs; link;
         link = link->next) {
        const auto *capt = static_cast<const CaptDesc *>(link->data);
        captures += std::to_string(capt->cell_context) + " " + std::to_string(capt->capt_instr) +
                    " " + std::to_string(capt->data_source) + ", ";
    }
    return captures;
}

TEST(StandardCells, ByIssue)
{
    const struct {
        Issue issue;
        const char *names;
    } cases[] = {
        {Issue::BSDL_1990, "BC_0 BC_1 BC_2 BC_3 BC_4 BC_5 BC_6 BC_7 "},
        {Issue::BSDL_1994, "BC_0 BC_1 BC_2 BC_3 BC_4 BC_5 BC_6 BC_7 "},
        {Issue::BSDL_2001, "BC_8 BC_9 BC_10 BC_0 BC_1 BC_2 BC_3 BC_4 BC_5 BC_6 BC_7 "},
    };
    for (const auto &row : cases) {
        Reading reading{Description(row.issue)};
        std::string names;
        for (GSList *cell = bsdlGetFirstCellDesc(reading); cell;
             cell = bsdlGetNextCellDesc(reading))
            names += std::string(bsdlGetCellDescName(cell)) + " ";
        EXPECT_EQ(names, row.names);
        EXPECT_EQ(reading.check(bsdl_check_packages), 0);
        expect_messages(reading.messages(), {});
    }
}

TEST(StandardCells, OrderOfCaptures)
{
    Reading reading{Description()};
    const std::string zero = captures_of(reading, "BC_0");
    EXPECT_EQ(std::count(zero.begin(), zero.end(), ','), 26);
    EXPECT_TRUE(zero.starts_with("1 1 1, 1 2 1, 1 3 7, ")) << zero;
    EXPECT_TRUE(zero.ends_with("11 2 1, 11 1 1, ")) << zero;
    EXPECT_EQ(captures_of(reading, "BC_2"),
              "2 1 4, 2 2 1, 3 1 4, 3 2 1, 3 3 1, 6 1 1, 6 2 1, 6 3 4, 4 1 4, 4 2 1, 4 3 1, "
              "5 1 4, 5 2 1, 5 3 1, 1 1 1, 1 2 1, 1 3 4, ");
    EXPECT_EQ(captures_of(reading, "BC_4"),
              "11 2 1, 7 1 1, 7 2 1, 7 3 1, 6 1 1, 6 2 1, 6 3 1, 1 1 1, 1 2 1, ");
}

TEST(CaptureRules, NoteTheCellsThatKnowIntest)
{
    Reading reading{Description()};
    Bsdl *bsdl = reading;
    for (const char *name : {"BC_0", "BC_8", "BC_10", "BC_7"})
        EXPECT_EQ(find_cell_desc(bsdl, model_name(bsdl, name))->has_intest, 0) << name;
    check_capture_rules(bsdl);
    for (const char *name : {"BC_0", "BC_9", "BC_4", "BC_7"})
        EXPECT_EQ(find_cell_desc(bsdl, model_name(bsdl, name))->has_intest, 1) << name;
    for (const char *name : {"BC_8", "BC_10"})
        EXPECT_EQ(find_cell_desc(bsdl, model_name(bsdl, name))->has_intest, 0) << name;
}

std::string illegal(const std::string &source, const std::string &instruction,
                    const std::string &context, const std::string &end)
{
    return "Illegal capture source '" + source + "' for instruction '" + instruction +
           "' of context '" + context + "' for " + end;
}

const char HINT[] = " (Maybe you want to set 2001 Conformance)";

// What is said of a capture; a warning is an error under `strict`.
enum Verdict { FINE, WARNED, HINTED, REFUSED, MANDATED };

const struct {
    Verdict verdict;
    int conformance;
    const char *cell;
    const char *context;
    const char *instruction;
    const char *source;
} sources[] = {
    {REFUSED, 2001, "C1", "INPUT", "EXTEST", "PO"},
    {REFUSED, 2001, "C1", "CLOCK", "SAMPLE", "X"},
    {REFUSED, 2001, "C1", "BIDIR_IN", "SAMPLE", "UPD"},
    {FINE, 2001, "C1", "INPUT", "INTEST", "ZERO"},
    {FINE, 2001, "C1", "OUTPUT2", "EXTEST", "CAP"},
    {FINE, 2001, "C1", "OUTPUT2", "SAMPLE", "PO"},
    {HINTED, 1993, "C1", "OUTPUT2", "SAMPLE", "PO"},
    {WARNED, 2001, "C1", "OUTPUT3", "SAMPLE", "UPD"},
    {WARNED, 2001, "C1", "BIDIR_OUT", "INTEST", "PO"},
    {REFUSED, 2001, "C1", "CONTROL", "SAMPLE", "UPD"},
    {REFUSED, 2001, "C1", "CONTROLR", "INTEST", "X"},
    {FINE, 2001, "C1", "CONTROL", "INTEST", "UPD"},
    {FINE, 2001, "C1", "CONTROL", "EXTEST", "X"},
    {REFUSED, 2001, "C1", "OBSERVE_ONLY", "KEEPER", "X"},
    {FINE, 2001, "C1", "OBSERVE_ONLY", "INTEST", "PI"},
    {FINE, 2001, "C1", "INTERNAL", "SAMPLE", "ONE"},
    // Cells that the standard prescribes may not observe in INTEST.
    {MANDATED, 1993, "bc_4", "OBSERVE_ONLY", "INTEST", "PI"},
    {MANDATED, 1993, "BC_7", "OBSERVE_ONLY", "INTEST", "PI"},
    {FINE, 2001, "BC_7", "OBSERVE_ONLY", "INTEST", "PI"},
    {FINE, 1993, "BC_8", "OBSERVE_ONLY", "INTEST", "PI"},
    {MANDATED, 2001, "BC_8", "OBSERVE_ONLY", "INTEST", "PI"},
    {MANDATED, 2001, "BC_42", "OBSERVE_ONLY", "INTEST", "PI"},
    {FINE, 2001, "BC_4A", "OBSERVE_ONLY", "INTEST", "PI"},
    {FINE, 2001, "BC_123", "OBSERVE_ONLY", "INTEST", "PI"},
};

TEST(CaptureRules, Sources)
{
    for (const auto &row : sources) {
        const std::string capture =
            std::string("(") + row.context + ", " + row.instruction + ", " + row.source + ")";
        const std::string cell =
            std::string(row.verdict == MANDATED ? "mandated cell '" : "cell '") + row.cell + "'" +
            (row.verdict == HINTED ? HINT : "");
        const PackageFile package = {.header = announced(row.cell),
                                     .body = described(row.cell, capture)};
        for (unsigned flags : {0U, STRICT}) {
            SCOPED_TRACE(cell + " " + capture + " " + std::to_string(row.conformance) +
                         (flags ? ", strict" : ""));
            const bool warns = !flags && (row.verdict == WARNED || row.verdict == HINTED);
            ExpectedMessages messages;
            if (row.verdict != FINE)
                messages.push_back({warns ? WARNING : ERROR,
                                    illegal(row.source, row.instruction, row.context, cell),
                                    warns ? 2 : 1});
            Reading reading(
                Description(row.conformance == 1993 ? Issue::BSDL_1994 : Issue::BSDL_2001)
                    .with(USES, "use own.all;"),
                {.flags = flags, .files = {{"own.all", package.text()}}});
            EXPECT_EQ(reading.check(bsdl_check_packages), messages.empty() || warns ? 0 : 100);
            expect_messages(errors_and_warnings(reading.messages()), messages);
        }
    }
}

// Without a statement of conformance BC_8 and BC_10 capture what only 2001 allows.
TEST(CaptureRules, StandardCellsWithoutConformance)
{
    Reading reading(Description().without(CONFORMANCE));
    EXPECT_EQ(reading.check(bsdl_check_packages), 0);
    expect_messages(reading.messages(),
                    {{WARNING, illegal("PO", "SAMPLE", "BIDIR_OUT", "cell 'BC_8'") + HINT, 2},
                     {WARNING, illegal("PO", "SAMPLE", "OUTPUT2", "cell 'BC_10'") + HINT, 2},
                     {WARNING, illegal("PO", "SAMPLE", "OUTPUT3", "cell 'BC_10'") + HINT, 2}});
}

TEST(CaptureRules, DescribedAgain)
{
    // The source does not make them differ; all but the last are reported.
    Reading reading(
        Description().with(USES, "use own.all;"),
        {.files = {{"own.all",
                    PackageFile{.header = announced("C1"),
                                .body = described("C1", "(INPUT, EXTEST, PI), (CLOCK, EXTEST, PI), "
                                                        "(INPUT, EXTEST, X), (INPUT, EXTEST, PI)")}
                        .text()}}});
    EXPECT_EQ(reading.check(bsdl_check_packages), 100);
    expect_messages(
        errors_and_warnings(reading.messages()),
        {{ERROR, "Capture descriptor (INPUT, EXTEST, PI) for cell 'C1' already defined", 1},
         {ERROR, "Capture descriptor (INPUT, EXTEST, X) for cell 'C1' already defined", 1},
         {ERROR, illegal("X", "EXTEST", "INPUT", "cell 'C1'"), 1}});
}

} // namespace
