#include "header/header.h"
#include "support/description.h"
#include "support/package_file.h"

#include <gtest/gtest.h>

using namespace support;

namespace
{

const char *USE_1994 = "use STD_1149_1_1994.all;\n";
const char *USE_2001 = "use STD_1149_1_2001.all;\n";
const char *CAPTURES = "(INPUT, EXTEST, PI), (INPUT, SAMPLE, PI)";

Reading read_with(const std::string &package, Issue issue = Issue::BSDL_2001,
                  const std::string &uses = "use own.all;")
{
    return Reading(Description(issue).with(USES, uses), {.files = {{"own.all", package}}});
}

std::vector<std::string> cell_names(Bsdl *bsdl)
{
    std::vector<std::string> names;
    for (GSList *cell = bsdlGetFirstCellDesc(bsdl); cell; cell = bsdlGetNextCellDesc(bsdl))
        names.emplace_back(bsdlGetCellDescName(cell));
    return names;
}

TEST(Packages, RefusedAndFrownedUpon)
{
    const struct {
        const char *name;
        PackageFile package;
        int errors;
        ExpectedMessages messages;
    } cases[] = {
        {"names in any case",
         {.end_name = "OWN", .body_name = "Own", .body_end_name = "oWN"},
         0,
         {}},
        {"end of the header",
         {.end_name = "other"},
         1,
         {{ERROR, "User package name is not consistent: own, other", 1}}},
        {"end of the body",
         {.body_end_name = "other"},
         1,
         {{ERROR, "\tUser package name is not consistent: own, other", 1}}},
        {"header and body",
         {.body_name = "other"},
         1,
         {{ERROR, "User package name is not consistent: own, other", 1}}},
        {"standards differ",
         {.use = USE_1994, .body_use = USE_2001},
         1,
         {{ERROR,
           "Standard use package is not consistent between user package and user package body",
           1}}},
        {"older standard",
         {.use = USE_1994},
         0,
         {{WARNING, "User package '1994' is different from BSDL file package '2001'", 2}}},
        {"older standard in the body alone",
         {.use = "", .body_use = "use STD_1149_1_1990.all;\n"},
         0,
         {{WARNING, "User package '1990' is different from BSDL file package '2001'", 2}}},
        {"older standard in the header alone",
         {.use = USE_1994, .body_use = ""},
         0,
         {{WARNING, "User package '1994' is different from BSDL file package '2001'", 2}}},
        {"the file's standard", {.use = USE_2001}, 0, {}},
        {"1993 is no package",
         {.use = "use STD_1149_1_1993.all;\n"},
         1,
         {{ERROR,
           "parse error, expecting `Y_STD_1149_1_1990' or `Y_STD_1149_1_1994' or "
           "`Y_STD_1149_1_2001', found 'STD_1149_1_1993' on line 2\n",
           1}}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading = read_with(row.package.text());
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        EXPECT_EQ(bsdlGetNumErrors(reading), row.errors);
        EXPECT_EQ(bsdlGetFirstDotALLFileSpec(reading) != nullptr, row.errors == 0);
        EXPECT_STREQ(bsdlGetFirstDotALLSpec(reading), "own.all");
    }
}

TEST(Packages, MessagesWhileReading)
{
    Reading reading = read_with(PackageFile().text());
    const Messages messages = picked(reading.messages(), [](const Message &message) {
        return message.text.find("ackage") != std::string::npos &&
               message.text.find("Trying") == std::string::npos &&
               message.text.find("pin map") == std::string::npos;
    });
    expect_messages(messages,
                    {{INFORMATION, "\tUser package: 'own.all'", 2},
                     {INFORMATION, "\tUser package file: " + reading.folder() + "/own.all", 3},
                     {PROGRESS, "\tReading package: own", 3}});
    EXPECT_EQ(messages[2].file, reading.folder() + "/own.all");
}

// In a package the attributes of the extensions are declared, so they are names there.
TEST(Packages, AttributesOfExtensionsAreDeclared)
{
    for (const char *use : {"", USE_2001}) {
        SCOPED_TRACE(use);
        PackageFile package = {.use = use,
                               .header = "attribute ISC_Conformance : BSDL_EXTENSION;\n"
                                         "attribute OWN : BSDL_EXTENSION;\n" +
                                         announced("C1"),
                               .body = described("C1", CAPTURES)};
        Reading reading(
            Description().with(USES, "use own.all;").with(EXTENSIONS, attribute("OWN", "any text")),
            {.files = {{"own.all", package.text()}}});
        expect_messages(errors_and_warnings(reading.messages()), {});
        EXPECT_EQ(bsdl_check_extensions(reading), 0);
    }
}

// What follows the package in its file belongs to the description: here the end of the use
// statement and a statement more.
TEST(Packages, TextBehindThePackage)
{
    Reading reading(
        Description().with(USES, "use first.all"),
        {.files = {{"first.all", PackageFile{.name = "first"}.text() + ";\nuse second.all;"},
                   {"second.all", PackageFile{.name = "second"}.text()}}});
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(all_of(reading.handle(), bsdlGetFirstDotALLSpec, bsdlGetNextDotALLSpec).size(), 2U);
}

TEST(Packages, InPlace)
{
    // A package that stands in the description itself: nothing was found to read it from.
    Reading reading(Description().with(
        USES, "use STD_1532_2001_own.all\n" + PackageFile{.name = "STD_1532_2001"}.text() + ";"));
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "Cannot find file 'STD_1532_2001_own.all'", 1}});
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdlGetFirstDotALLFileSpec(reading), nullptr);
}

TEST(Packages, CodesOfDescriptors)
{
    const std::string captures =
        "(INPUT, EXTEST, PI), (OUTPUT2, SAMPLE, PO), (OUTPUT3, INTEST, CAP), "
        "(CONTROL, EXTEST, UPD), (CONTROLR, EXTEST, ZERO), (INTERNAL, EXTEST, ONE), "
        "(CLOCK, EXTEST, X), (BIDIR_IN, RUNBIST, PI), (BIDIR_OUT, KEEPER, PI), "
        "(OBSERVE_ONLY, SAMPLE, PI)";
    const std::vector<std::array<int32_t, 3>> codes = {{1, 1, 1},  {2, 2, 2}, {3, 3, 3}, {4, 1, 4},
                                                       {5, 1, 5},  {6, 1, 6}, {7, 1, 7}, {9, 5, 1},
                                                       {10, 4, 1}, {11, 2, 1}};
    Reading reading = read_with(
        PackageFile{.header = announced("Mixed"), .body = described("Mixed", captures)}.text());
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "\t<capture instruction> RUNBIST is only allowed in BSDL90", 1}});
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    bsdl_check_packages(reading);

    GSList *cell = bsdlGetFirstCellDesc(reading);
    while (cell && std::string(bsdlGetCellDescName(cell)) != "Mixed")
        cell = bsdlGetNextCellDesc(reading);
    ASSERT_NE(cell, nullptr);
    EXPECT_STREQ(bsdlGetCellDescPackage(cell), "own");
    std::vector<std::array<int32_t, 3>> got;
    for (GSList *capt = bsdlGetCellFirstCaptDesc(cell); capt; capt = bsdlGetCellNextCaptDesc(cell))
        got.push_back({bsdlGetCellCaptContext(capt), bsdlGetCellCaptInstr(capt),
                       bsdlGetCellCaptSource(capt)});
    EXPECT_EQ(got, codes);
    EXPECT_EQ(bsdlGetCellNextCaptDesc(cell), nullptr);
    EXPECT_EQ(bsdlGetCellNextCaptDesc(nullptr), nullptr);
    EXPECT_EQ(bsdlGetCellCaptContext(nullptr), 0);
}

TEST(Packages, KeeperAndRunbistByIssue)
{
    const std::string package =
        PackageFile{.header = announced("C1"),
                    .body = described("C1", "(INTERNAL, KEEPER, X), (INTERNAL, RUNBIST, ONE)")}
            .text();
    const Expected keeper = {ERROR, "\t<capture instruction> KEEPER is only allowed in BSDL2001",
                             1};
    const Expected runbist = {ERROR, "\t<capture instruction> RUNBIST is only allowed in BSDL90",
                              1};
    expect_messages(errors_and_warnings(read_with(package, Issue::BSDL_1990).messages()), {keeper});
    expect_messages(errors_and_warnings(read_with(package, Issue::BSDL_1994).messages()),
                    {keeper, runbist});
    expect_messages(errors_and_warnings(read_with(package, Issue::BSDL_2001).messages()),
                    {runbist});
}

TEST(Packages, Check)
{
    const struct {
        const char *name;
        std::string header;
        std::string body;
        int32_t result;
        ExpectedMessages messages;
        size_t added;
    } cases[] = {
        {"announced and described", announced("C1"), described("c1", CAPTURES), 0, {}, 1},
        {"not described",
         announced("C1") + announced("C2"),
         described("C1", CAPTURES),
         0,
         {{WARNING, "Cell 'C2' not found in package body", 2}},
         1},
        {"announced three times",
         announced("C1") + announced("c1") + announced("C1"),
         described("C1", CAPTURES),
         100,
         {{ERROR, "Cell 'C1' already defined", 1}, {ERROR, "Cell 'c1' already defined", 1}},
         1},
        {"announced twice and not described",
         announced("C1") + announced("C1"),
         "",
         100,
         {{WARNING, "Cell 'C1' not found in package body", 2},
          {ERROR, "Cell 'C1' already defined", 1},
          {WARNING, "Cell 'C1' not found in package body", 2}},
         0},
        {"not announced",
         "",
         described("C1", CAPTURES) + described("C2", CAPTURES),
         0,
         {{WARNING, "Cell description ' deferred constants\n' not found in", 2},
          {WARNING, "Cell description ' deferred constants\n' not found in", 2}},
         2},
        // The constants of a package come before its cells, the captures after all packages.
        {"all at once",
         announced("C1"),
         described("C2", "(INPUT, EXTEST, PO), (INPUT, EXTEST, PI)"),
         100,
         {{WARNING, "Cell 'C1' not found in package body", 2},
          {WARNING, "Cell description ' deferred constants\n' not found in", 2},
          {ERROR, "Capture descriptor (INPUT, EXTEST, PO) for cell 'C2' already defined", 1},
          {ERROR,
           "Illegal capture source 'PO' for instruction 'EXTEST' of context 'INPUT' for cell 'C2'",
           1}},
         1},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading = read_with(PackageFile{.header = row.header, .body = row.body}.text());
        const size_t built_in = cell_names(reading).size();
        EXPECT_EQ(reading.check(bsdl_check_packages), row.result);
        ASSERT_FALSE(reading.messages().empty());
        EXPECT_EQ(reading.messages()[0].text, "\tChecking package 'own'");
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        EXPECT_EQ(cell_names(reading).size(), built_in + row.added);
        for (const Message &message : errors_and_warnings(reading.messages())) {
            EXPECT_EQ(message.file, reading.folder() + "/own.all") << message;
            EXPECT_GE(message.line, 2) << message;
        }
    }
}

TEST(Packages, IncludedAgain)
{
    Reading reading(Description().with(USES, "use own.all; use two.all; use own.all; use own.all;"),
                    {.files = {{"own.all", PackageFile().text()},
                               {"two.all", PackageFile{.name = "two"}.text()}}});
    EXPECT_EQ(reading.check(bsdl_check_packages), 100);
    expect_messages(reading.messages(), {{PROGRESS, "\tChecking package 'own'", 3},
                                         {ERROR, "bsdl_package 'own' already included", 1},
                                         {PROGRESS, "\tChecking package 'two'", 3},
                                         {PROGRESS, "\tChecking package 'own'", 3},
                                         {ERROR, "bsdl_package 'own' already included", 1},
                                         {PROGRESS, "\tChecking package 'own'", 3}});
}

TEST(Packages, PackageOfAStandardIncludedAgain)
{
    Reading reading(Description().with(USES, "use STD_1532_2002.all; use Std_1532_2002.ALL;"));
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check_packages), 100);
    expect_messages(reading.messages(),
                    {{PROGRESS, "\tChecking package 'STD_1532_2002'", 3},
                     {ERROR, "bsdl_package 'STD_1532_2002' already included", 1},
                     {PROGRESS, "\tChecking package 'STD_1532_2002'", 3}});
}

TEST(Packages, CheckWithoutHandleOrData)
{
    EXPECT_EQ(bsdl_check_packages(nullptr), 2);
    Bsdl empty = {};
    EXPECT_EQ(bsdl_check_packages(&empty), 3);
}

TEST(CellDescs, TheFirstOfANameIsFound)
{
    Reading reading =
        read_with(PackageFile{.header = announced("bc_1") + announced("C1"),
                              .body = described("bc_1", CAPTURES) + described("C1", CAPTURES)}
                      .text());
    Bsdl *bsdl = reading;
    EXPECT_EQ(find_cell_desc(bsdl, model_name(bsdl, "C1")), nullptr);
    bsdl_check_packages(bsdl);
    const CellDesc *built_in = find_cell_desc(bsdl, model_name(bsdl, "Bc_1"));
    ASSERT_NE(built_in, nullptr);
    EXPECT_EQ(built_in->package, nullptr);
    const CellDesc *own = find_cell_desc(bsdl, model_name(bsdl, "c1"));
    ASSERT_NE(own, nullptr);
    EXPECT_TRUE(has_context(own, CELL_FUNCTION_INPUT));
    EXPECT_FALSE(has_context(own, CELL_FUNCTION_OUTPUT3));
    EXPECT_EQ(find_cell_desc(bsdl, model_name(bsdl, "absent")), nullptr);
}

TEST(CellDescs, NextBeforeFirstAndBeyondTheEnd)
{
    Reading reading(Description(Issue::BSDL_1990).text());
    Bsdl *bsdl = reading;
    EXPECT_STREQ(bsdlGetCellDescName(bsdlGetNextCellDesc(bsdl)), "BC_1") << "next before first";
    for (int i = 0; i < 20; i++)
        bsdlGetNextCellDesc(bsdl);
    EXPECT_EQ(bsdlGetNextCellDesc(bsdl), nullptr);

    GSList *cell = bsdlGetFirstCellDesc(bsdl);
    EXPECT_STREQ(bsdlGetCellDescName(cell), "BC_0");
    EXPECT_EQ(bsdlGetCellDescPackage(cell), nullptr);
}

} // namespace
