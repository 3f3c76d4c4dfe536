#include "boundary/standard_cells.h"
#include "header/header.h"
#include "support/description.h"
#include "support/package_file.h"

#include <gtest/gtest.h>

using namespace support;

namespace
{

using Captures = std::vector<std::array<int32_t, 3>>;

Captures captures_of(Bsdl *bsdl, const char *name)
{
    Captures captures;
    const CellDesc *desc = find_cell_desc(bsdl, model_name(bsdl, name));
    if (!desc)
        return captures;
    for (const GSList *link = desc->capt_descs; link; link = link->next) {
        const auto *capt = static_cast<const CaptDesc *>(link->data);
        captures.push_back({capt->cell_context, capt->capt_instr, capt->data_source});
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
    const Captures zero = captures_of(reading, "BC_0");
    ASSERT_EQ(zero.size(), 26U);
    EXPECT_EQ((Captures{zero.end() - 2, zero.end()}), (Captures{{11, 2, 1}, {11, 1, 1}}));
    EXPECT_EQ((Captures{zero.begin(), zero.begin() + 3}),
              (Captures{{1, 1, 1}, {1, 2, 1}, {1, 3, 7}}));
    EXPECT_EQ(captures_of(reading, "BC_2"), (Captures{{2, 1, 4},
                                                      {2, 2, 1},
                                                      {3, 1, 4},
                                                      {3, 2, 1},
                                                      {3, 3, 1},
                                                      {6, 1, 1},
                                                      {6, 2, 1},
                                                      {6, 3, 4},
                                                      {4, 1, 4},
                                                      {4, 2, 1},
                                                      {4, 3, 1},
                                                      {5, 1, 4},
                                                      {5, 2, 1},
                                                      {5, 3, 1},
                                                      {1, 1, 1},
                                                      {1, 2, 1},
                                                      {1, 3, 4}}));
    EXPECT_EQ(captures_of(reading, "BC_4"), (Captures{{11, 2, 1},
                                                      {7, 1, 1},
                                                      {7, 2, 1},
                                                      {7, 3, 1},
                                                      {6, 1, 1},
                                                      {6, 2, 1},
                                                      {6, 3, 1},
                                                      {1, 1, 1},
                                                      {1, 2, 1}}));
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

TEST(CaptureRules, Sources)
{
    const char *conforms_1993 = "STD_1149_1_1993";
    const char *conforms_2001 = "STD_1149_1_2001";
    const std::string hint = " (Maybe you want to set 2001 Conformance)";
    const struct {
        const char *cell;
        std::string capture;
        const char *conformance;
        ExpectedMessages messages; // those of a lax check; error and warning tell the strict result
        bool strict_fails;
    } cases[] = {
        {"C1",
         "INPUT, EXTEST, PO",
         conforms_2001,
         {{ERROR, illegal("PO", "EXTEST", "INPUT", "cell 'C1'"), 1}},
         true},
        {"C1",
         "CLOCK, SAMPLE, X",
         conforms_2001,
         {{ERROR, illegal("X", "SAMPLE", "CLOCK", "cell 'C1'"), 1}},
         true},
        {"C1",
         "BIDIR_IN, SAMPLE, UPD",
         conforms_2001,
         {{ERROR, illegal("UPD", "SAMPLE", "BIDIR_IN", "cell 'C1'"), 1}},
         true},
        {"C1", "INPUT, INTEST, ZERO", conforms_2001, {}, false},
        {"C1", "OUTPUT2, EXTEST, CAP", conforms_2001, {}, false},
        {"C1", "OUTPUT2, SAMPLE, PO", conforms_2001, {}, false},
        {"C1",
         "OUTPUT2, SAMPLE, PO",
         conforms_1993,
         {{WARNING, illegal("PO", "SAMPLE", "OUTPUT2", "cell 'C1'") + hint, 2}},
         true},
        {"C1",
         "OUTPUT3, SAMPLE, UPD",
         conforms_2001,
         {{WARNING, illegal("UPD", "SAMPLE", "OUTPUT3", "cell 'C1'"), 2}},
         true},
        {"C1",
         "BIDIR_OUT, INTEST, PO",
         conforms_2001,
         {{WARNING, illegal("PO", "INTEST", "BIDIR_OUT", "cell 'C1'"), 2}},
         true},
        {"C1",
         "CONTROL, SAMPLE, UPD",
         conforms_2001,
         {{ERROR, illegal("UPD", "SAMPLE", "CONTROL", "cell 'C1'"), 1}},
         true},
        {"C1",
         "CONTROLR, INTEST, X",
         conforms_2001,
         {{ERROR, illegal("X", "INTEST", "CONTROLR", "cell 'C1'"), 1}},
         true},
        {"C1", "CONTROL, INTEST, UPD", conforms_2001, {}, false},
        {"C1", "CONTROL, EXTEST, X", conforms_2001, {}, false},
        {"C1",
         "OBSERVE_ONLY, KEEPER, X",
         conforms_2001,
         {{ERROR, illegal("X", "KEEPER", "OBSERVE_ONLY", "cell 'C1'"), 1}},
         true},
        {"C1", "OBSERVE_ONLY, INTEST, PI", conforms_2001, {}, false},
        {"C1", "INTERNAL, SAMPLE, ONE", conforms_2001, {}, false},
        // Cells that the standard prescribes may not observe in INTEST.
        {"bc_4",
         "OBSERVE_ONLY, INTEST, PI",
         conforms_1993,
         {{ERROR, illegal("PI", "INTEST", "OBSERVE_ONLY", "mandated cell 'bc_4'"), 1}},
         true},
        {"BC_7",
         "OBSERVE_ONLY, INTEST, PI",
         conforms_1993,
         {{ERROR, illegal("PI", "INTEST", "OBSERVE_ONLY", "mandated cell 'BC_7'"), 1}},
         true},
        {"BC_7", "OBSERVE_ONLY, INTEST, PI", conforms_2001, {}, false},
        {"BC_8", "OBSERVE_ONLY, INTEST, PI", conforms_1993, {}, false},
        {"BC_8",
         "OBSERVE_ONLY, INTEST, PI",
         conforms_2001,
         {{ERROR, illegal("PI", "INTEST", "OBSERVE_ONLY", "mandated cell 'BC_8'"), 1}},
         true},
        {"BC_42",
         "OBSERVE_ONLY, INTEST, PI",
         conforms_2001,
         {{ERROR, illegal("PI", "INTEST", "OBSERVE_ONLY", "mandated cell 'BC_42'"), 1}},
         true},
        {"BC_4A", "OBSERVE_ONLY, INTEST, PI", conforms_2001, {}, false},
        {"BC_123", "OBSERVE_ONLY, INTEST, PI", conforms_2001, {}, false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(std::string(row.cell) + " " + row.capture + " " + row.conformance);
        Description description =
            Description(row.conformance == conforms_1993 ? Issue::BSDL_1994 : Issue::BSDL_2001)
                .with(USES, "use own.all;");
        const std::string package =
            PackageFile{.header = announced(row.cell),
                        .body = described(row.cell, "(" + row.capture + ")")}
                .text();
        Reading reading(description, {.files = {{"own.all", package}}});
        const bool fails = !row.messages.empty() && row.messages[0].level == ERROR;
        EXPECT_EQ(reading.check(bsdl_check_packages), fails ? 100 : 0);
        expect_messages(errors_and_warnings(reading.messages()), row.messages);

        Reading strict(description, {.flags = STRICT, .files = {{"own.all", package}}});
        EXPECT_EQ(strict.check(bsdl_check_packages), row.strict_fails ? 100 : 0);
        ExpectedMessages errors = row.messages;
        for (Expected &message : errors)
            message = {ERROR, message.text, 1};
        expect_messages(errors_and_warnings(strict.messages()), errors);
    }
}

// Without a statement of conformance BC_8 and BC_10 capture what only 2001 allows.
TEST(CaptureRules, StandardCellsWithoutConformance)
{
    Reading reading(Description().without(CONFORMANCE));
    EXPECT_EQ(reading.check(bsdl_check_packages), 0);
    const std::string hint = " (Maybe you want to set 2001 Conformance)";
    expect_messages(reading.messages(),
                    {{WARNING, illegal("PO", "SAMPLE", "BIDIR_OUT", "cell 'BC_8'") + hint, 2},
                     {WARNING, illegal("PO", "SAMPLE", "OUTPUT2", "cell 'BC_10'") + hint, 2},
                     {WARNING, illegal("PO", "SAMPLE", "OUTPUT3", "cell 'BC_10'") + hint, 2}});
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
