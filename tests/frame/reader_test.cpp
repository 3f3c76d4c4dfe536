#include "frame/reader.h"

#include "frame/reader_state.h"
#include "support/catalogue.h"
#include "support/description.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

using namespace support;

namespace
{

// A host with nothing of its own: where the messages of one context go.
struct Host {
    Messages messages;
    BsdlContext context = {sink, this, 4};

    static void sink(void *data, BsdlMessage *message)
    {
        EXPECT_EQ(message->code, 0);
        EXPECT_EQ(message->formatted, 1);
        const char *rule = bsdlMessageRule();
        const Message taken = {.level = message->level,
                               .verbosity = message->verbosity,
                               .text = message->text,
                               .rule = rule ? rule : ""};
        if (rule) // texts of the host have none
            expect_in_catalogue(taken);
        static_cast<Host *>(data)->messages.push_back(taken);
    }
    Bsdl *read(const char *name, uint32_t flags = 0, GSList *dirs = nullptr)
    {
        return readBsdl(name, nullptr, dirs, flags, &context);
    }
};

class Reader : public testing::Test
{
  protected:
    void SetUp() override { reset_reader_state(); }
    void TearDown() override
    {
        reset_reader_state();
        std::filesystem::remove_all(folder_);
    }
    std::string file(const std::string &text, const std::string &name = "file.bsd") const
    {
        write_text(folder_ + "/" + name, text);
        return folder_ + "/" + name;
    }

    const std::string folder_ = new_folder();
};

using Channel = Reader;
using Driver = Reader;

const char *BAD_GENERIC = "generic (PHYSICAL_PIN_MAP : string := is);";

// -------------------------------------------------------------------------------- one reading

TEST_F(Reader, AllMessagesInOrder)
{
    for (Issue issue : {Issue::BSDL_1990, Issue::BSDL_1994, Issue::BSDL_2001}) {
        const bool is_1990 = issue == Issue::BSDL_1990;
        const std::string name = is_1990                     ? "STD_1149_1_1990"
                                 : issue == Issue::BSDL_1994 ? "STD_1149_1_1994"
                                                             : "STD_1149_1_2001";
        SCOPED_TRACE(name);
        Reading reading{Description(issue)};
        ExpectedMessages want = {
            {PROGRESS, "Reading BSDL file '" + reading.path() + "'", 1},
            {HEADING, "BSDL syntax checks", 2},
            {INFORMATION, "\tGeneric parameter passed", 3},
            {INFORMATION, "\tLogical port description passed", 3},
            {PROGRESS, "\tCreating BC cells: " + name, is_1990 ? 3 : 2},
            {INFORMATION, "\tStandard use statement passed", 3},
            {INFORMATION, "\tBSDL version: " + name, 3},
            {INFORMATION, "\tNo use statements", 4},
            is_1990 ? Expected{INFORMATION, "\tNo component conformance statement", 4}
                    : Expected{INFORMATION, "\tComponent conformance statement passed", 3},
            {INFORMATION, "\tDevice package pin mappings statement passed", 3},
            {INFORMATION, "\tNo Grouped port identification statement", 4},
            {INFORMATION, "\tScan port clock statement passed", 3},
            {INFORMATION, "\tScan port mode statement passed", 3},
            {INFORMATION, "\tScan port tdi statement passed", 3},
            {INFORMATION, "\tScan port tdo statement passed", 3},
            {INFORMATION, "\tNo compliance enable statement", 4},
            {INFORMATION, "\tInstruction length statement passed", 3},
            {INFORMATION, "\tInstruction opcode statement passed", 3},
            {INFORMATION, "\tInstruction capture statement passed", 3},
            {INFORMATION, "\tNo instruction disable statement", 4},
        };
        if (is_1990)
            want.push_back({INFORMATION, "\tNo instruction guard statement in this version", 4});
        want.insert(want.end(), {{INFORMATION, "\tNo instruction private statement", 4},
                                 {INFORMATION, "\tIdcode register statement passed", 3},
                                 {INFORMATION, "\tNo register access statement", 4}});
        if (is_1990)
            want.push_back({INFORMATION, "\tBoundary cells statement passed", 4});
        want.insert(want.end(),
                    {{INFORMATION, "\tBoundary scan register length statement passed", 3},
                     {INFORMATION, "\tBoundary scan register statement passed", 3},
                     {INFORMATION, "\tNo runbist description statement", 4},
                     {INFORMATION, "\tNo intest description statement", 4},
                     {INFORMATION, "\tNo design warning statement", 4},
                     {INFORMATION, "BSDL syntax ok", 2}});
        expect_messages(reading.messages(), want);
    }
}

// What a text comes to: whether there is a handle, its errors, and the messages from the first
// error on. After each a whole description is read as if nothing had been before it.
TEST_F(Reader, Outcomes)
{
    const std::string path = folder_ + "/file.bsd";
    const Expected headings[] = {{PROGRESS, "Reading BSDL file '" + path + "'", 1},
                                 {HEADING, "BSDL syntax checks", 2}};
    const auto total = [&](const char *count) {
        return Expected{INFORMATION, "File '" + path + "' contains " + count, 1};
    };
    const auto error = [](const char *text) { return Expected{ERROR, text, 1}; };
    const struct {
        const char *name;
        std::string text;
        int errors; // -1: no handle
        ExpectedMessages messages;
        uint32_t flags = 0;
    } cases[] = {
        {"empty",
         "",
         -1,
         {error("parse error, expecting `ENTITY' or `PRG_DATA', found '' on line 2\n"),
          total("1 syntax error")}},
        {"first token",
         "architecture_x",
         -1,
         {error("parse error, expecting `ENTITY' or `PRG_DATA', found 'architecture_x' on line "
                "1\n"),
          total("1 syntax error")}},
        {"end behind the name",
         "entity DEV\nis",
         1,
         {error("parse error, expecting `GENERIC', found '' on line 3\n"),
          total("1 syntax error")}},
        {"all errors recovered from",
         Description().with(GENERIC_PARAMETER, BAD_GENERIC).text(),
         1,
         {error("parse error, expecting `error' or `QUOTED_STRING', found 'is' on line 2\n"),
          error("skipping generic_parameter due to errors"),
          {INFORMATION, "BSDL syntax failed", 2}}},
        {"the last not recovered from",
         Description().with(GENERIC_PARAMETER, BAD_GENERIC).with(END_LINE, "end other;").text(),
         2,
         {error("parse error, expecting `error' or `QUOTED_STRING', found 'is' on line 2\n"),
          error("skipping generic_parameter due to errors"),
          error("Component name 'other' not consistent"), total("2 syntax errors")}},
        {"text behind the end",
         Description().text() + "end",
         1,
         {{INFORMATION, "BSDL syntax ok", 2},
          error("parse error, expecting `$', found 'end' on line 19\n"),
          total("1 syntax error")}},
        {"string without an end",
         "entity DEV is generic (PHYSICAL_PIN_MAP : string := \"\n",
         1,
         {{WARNING, "Incomplete quoted string on line 1", 2},
          error("parse error, expecting `error' or `QUOTED_STRING', found '' on line 1\n"),
          total("1 syntax error")}},
        {"control character",
         "entity DEV is\n\x08",
         -1,
         {error("Bsdl reader fatal error: non printable")}},
        {"token too long",
         "entity " + std::string(16384, 'a'),
         -1,
         {error("Bsdl reader fatal error: token too large, exceeds YYLMAX")}},
        {"control character where a string is read again",
         Description().with(INSTRUCTION_CAPTURE, attribute("INSTRUCTION_CAPTURE", "0\x07")).text(),
         -1,
         {error("Bsdl reader fatal error: non printable")}},
        {"illegal character",
         "entity ~ DEV",
         1,
         {{WARNING, "Ignoring illegal character '~' on line 1", 2},
          error("parse error, expecting `IS', found '' on line 2\n"),
          total("1 syntax error")}},
        {"illegal character, strict",
         "entity ~ DEV",
         -1,
         {{ERROR, "Illegal character '~' on line 1", 2},
          error("parse error, expecting `IDENTIFIER', found '' on line 1\n"),
          total("1 syntax error")},
         STRICT},
        // After the statement one token is looked at: it might have gone on.
        {"fast", Description().with(REGISTER_ACCESS, "; \x08").text(), 0, {}, FAST_READ},
        {"fast, without IDCODE",
         Description()
             .without(IDCODE_REGISTER)
             .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", "BYPASS (SAMPLE)"))
             .with(BOUNDARY_LENGTH, "; \x08")
             .text(),
         0,
         {},
         FAST_READ},
        {"fast, with neither",
         Description().without(IDCODE_REGISTER).text(),
         0,
         {{INFORMATION, "BSDL syntax ok", 2}},
         FAST_READ},
        {"fast, errors ahead of its end",
         Description().with(GENERIC_PARAMETER, BAD_GENERIC).text(),
         1,
         {error("parse error, expecting `error' or `QUOTED_STRING', found 'is' on line 2\n"),
          error("skipping generic_parameter due to errors")},
         FAST_READ},
    };
    const std::string good = file(Description().text(), "good.bsd");
    const size_t whole = Reading{Description()}.messages().size();
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        reset_reader_state();
        Host host;
        Bsdl *bsdl = host.read(file(row.text).c_str(), row.flags);
        EXPECT_EQ(bsdlGetNumErrors(bsdl), row.errors);
        EXPECT_EQ(bsdl != nullptr, row.errors >= 0);
        Messages messages = host.messages;
        ASSERT_GE(messages.size(), 2U);
        expect_messages({messages.begin(), messages.begin() + 2}, {headings[0], headings[1]});
        messages.erase(messages.begin(), messages.begin() + 2);
        expect_messages(picked(messages,
                               [](const Message &message) {
                                   return message.level <= WARNING || message.text[0] != '\t';
                               }),
                        row.messages);
        bsdlRelease(bsdl);

        host.messages.clear();
        bsdl = host.read(good.c_str());
        EXPECT_EQ(bsdlGetNumErrors(bsdl), 0);
        EXPECT_EQ(host.messages.size(), whole);
        EXPECT_EQ(bsdl_check(bsdl), 0);
        bsdlRelease(bsdl);
    }
}

TEST_F(Reader, NoHandleWithoutAReading)
{
    const std::string good = file(Description().text());
    const std::string absent = folder_ + "/absent.bsd";
    Host host;
    EXPECT_EQ(readBsdl(good.c_str(), nullptr, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(readBsdl(nullptr, nullptr, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(host.read(nullptr), nullptr);
    EXPECT_EQ(host.read(absent.c_str()), nullptr);
    EXPECT_EQ(host.read(folder_.c_str()), nullptr);
    EXPECT_EQ(host.read(""), nullptr);
    expect_messages(host.messages, {{ERROR, "No files specified", 1},
                                    {ERROR, "Could not open file '" + absent + "'", 1},
                                    {ERROR, "Could not open file '" + folder_ + "'", 1},
                                    {ERROR, "Could not open file ''", 1}});
}

TEST_F(Reader, ArgumentsAreCopied)
{
    std::string name = file(Description().text());
    std::string package = "PKG";
    const std::string before = name;
    Host host;
    Bsdl *bsdl = readBsdl(name.c_str(), package.c_str(), nullptr, 0, &host.context);
    name.assign(name.size(), '?');
    package.assign(package.size(), '?');
    EXPECT_EQ(bsdlFileName(bsdl), before);
    EXPECT_STREQ(bsdlGetDefaultDevicePackage(bsdl), "PKG");
    EXPECT_EQ(bsdl_check(bsdl), 0);
    bsdlRelease(bsdl);
}

// With this flag there need not be a list, and all others that have no effect may stand beside it.
TEST_F(Reader, PackageDirsThatAreNoList)
{
    const std::string path = file(Description().text());
    auto *dirs = reinterpret_cast<GSList *>(uintptr_t{1});
    for (uint32_t flags : {1U << 14, 0xFFFFFFFF}) {
        Host host;
        Bsdl *bsdl = host.read(path.c_str(), flags, dirs);
        EXPECT_EQ(bsdlGetNumErrors(bsdl), 0);
        bsdlRelease(bsdl);
    }
}

// The stack of the parser is bounded; here a bound that a chain of rules reaches.
TEST_F(Reader, StackOverflow)
{
    reader_state.parser_depth = 20;
    Host host;
    const std::string path = file(Description().text());
    Bsdl *bsdl = host.read(path.c_str());
    const Messages end = picked(host.messages, [](const Message &message) {
        return message.level == ERROR || message.text.rfind("File", 0) == 0;
    });
    ASSERT_EQ(end.size(), 2U);
    EXPECT_EQ(end[0].text.rfind("parser stack overflow, found '", 0), 0U) << end[0];
    EXPECT_EQ(end[1].text, "File '" + path + "' contains 1 syntax error");
    bsdlRelease(bsdl);
}

// ------------------------------------------------------------------------- from one to the next

// The words known before the standard use statement are those of the reading before.
TEST_F(Reader, TheNextReadingBeginsWithTheWordsOfTheLast)
{
    const struct {
        Issue issue;
        const char *uses;
        const char *name;
        ExpectedMessages messages;
    } cases[] = {
        {Issue::BSDL_1990, "", "device_id", {}},
        {Issue::BSDL_1990,
         "",
         "observe_only",
         {{WARNING, "Keyword 'observe_only' is not supported in BSDL90", 2},
          {ERROR, "parse error, expecting `IDENTIFIER', found 'is' on line 1\n", 1}}},
        {Issue::BSDL_1994,
         "",
         "device_id",
         {{ERROR, "parse error, expecting `IDENTIFIER', found 'device_id' on line 1\n", 1}}},
        {Issue::BSDL_2001, "", "train", {}},
        {Issue::BSDL_2001,
         "use STD_1149_6_2003.all;",
         "train",
         {{ERROR, "parse error, expecting `IDENTIFIER', found 'train' on line 1\n", 1}}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        reset_reader_state();
        Reading before(Description(row.issue).with(USES, row.uses));
        EXPECT_EQ(bsdlGetNumErrors(before), 0);
        Reading reading(Description()
                            .with(ENTITY_LINE, "entity " + std::string(row.name) + " is")
                            .with(STANDARD_USE, ""));
        Messages messages = errors_and_warnings(reading.messages());
        if (row.messages.empty())
            EXPECT_STREQ(bsdlComponentName(reading), row.name);
        else
            expect_messages(messages, row.messages);
    }
}

TEST_F(Reader, FreedAndReleased)
{
    EXPECT_EQ(freeBsdl(nullptr), 1);
    bsdlRelease(nullptr);
    const std::string path = file(Description().text());
    Host host;
    for (bool with_ebst : {false, true}) {
        Bsdl *bsdl = host.read(path.c_str());
        ASSERT_EQ(bsdl_check(bsdl), 0);
        if (with_ebst) {
            EXPECT_EQ(bsdlGenEbst(bsdl), 0);
        }
        EXPECT_EQ(freeBsdl(bsdl), with_ebst ? 0 : 1);
        EXPECT_EQ(bsdlFileName(bsdl), path);
        EXPECT_STREQ(bsdlGetDefaultDevicePackage(bsdl), "PKG");
        EXPECT_EQ(bsdlComponentName(bsdl), nullptr);
        EXPECT_EQ(bsdlGetNbrOfPins(bsdl), -1);
        EXPECT_EQ(bsdl_check(bsdl), 3);
        EXPECT_EQ(freeBsdl(bsdl), 1);
        EXPECT_EQ(released_handles.first, bsdl);
        bsdlRelease(bsdl);
        EXPECT_EQ(released_handles.first, nullptr);
    }
}

// ------------------------------------------------------------------------------------- messages

TEST_F(Channel, NothingIsSentWithoutAContext)
{
    bsdl_msg(0, 0, "nobody hears");
    Host host;
    EXPECT_EQ(host.read(nullptr), nullptr);
    host.messages.clear();
    EXPECT_EQ(readBsdl("x", nullptr, nullptr, 0, nullptr), nullptr);
    bsdl_msg(0, 0, "the context is that of the latest reading, which had none");
    host.context.message_sink = nullptr;
    Bsdl *bsdl = host.read(file(Description().text()).c_str());
    EXPECT_EQ(bsdl_check(bsdl), 0);
    EXPECT_TRUE(host.messages.empty());
    bsdlRelease(bsdl);
}

TEST_F(Channel, Filter)
{
    Host host;
    EXPECT_EQ(host.read(nullptr), nullptr);
    const struct {
        uint32_t context;
        std::vector<uint32_t> sent; // of 0, 2, 4 and the largest number
    } cases[] = {
        {0, {0}}, {1, {0}}, {2, {0, 2}}, {5, {0, 2, 4}}, {UINT32_MAX, {0, 2, 4, UINT32_MAX}}};
    for (const auto &row : cases) {
        host.context.verbosity = row.context; // hosts may change it between calls
        host.messages.clear();
        for (uint32_t verbosity : {0U, 2U, 4U, UINT32_MAX})
            bsdl_msg(7, verbosity, "%s of %i", "one", 4);
        std::vector<uint32_t> sent;
        for (const Message &message : host.messages) {
            EXPECT_EQ(message.level, 7);
            EXPECT_EQ(message.text, "one of 4");
            sent.push_back(message.verbosity);
        }
        EXPECT_EQ(sent, row.sent) << row.context;
    }
    host.messages.clear();
    bsdl_msg(0, 0, nullptr);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(Channel, LongTextsAreCut)
{
    Host host;
    EXPECT_EQ(host.read(nullptr), nullptr);
    for (size_t length : {9999U, 10000U, 10001U, 30000U}) {
        host.messages.clear();
        bsdl_msg(0, 0, "%s", std::string(length, 'x').c_str());
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].text, std::string(std::min<size_t>(length, 10000), 'x'));
    }
}

TEST_F(Channel, TheLatestReadingTakesTheMessagesOfAllHandles)
{
    const std::string path = file(Description().text());
    Host first;
    Host second;
    Bsdl *a = first.read(path.c_str());
    Bsdl *b = second.read(path.c_str());
    first.messages.clear();
    second.messages.clear();
    EXPECT_EQ(bsdl_check(a), 0);
    EXPECT_TRUE(first.messages.empty());
    EXPECT_FALSE(second.messages.empty());
    bsdlRelease(a);
    bsdlRelease(b);
}

// --------------------------------------------------------------------------------- the driver

const char *STEPS[] = {"Generic parameter",
                       "Logical port identification",
                       "Package in use statement",
                       "Device package pin mappings description",
                       "Grouped Port identification",
                       "Scan port identification description",
                       "Compliance enable description",
                       "Instruction register description",
                       "Optional register description",
                       "Register access description",
                       "Boundary scan register description",
                       "Runbist description",
                       "Intest description",
                       "Extensions description"};

// The line of each step; the failed ones by number from 0.
ExpectedMessages driver_lines(const std::vector<size_t> &failed)
{
    ExpectedMessages lines;
    for (size_t i = 0; i < std::size(STEPS); i++) {
        const bool has_errors = std::find(failed.begin(), failed.end(), i) != failed.end();
        const std::string step = std::string("\t") + STEPS[i];
        lines.push_back(has_errors ? Expected{ERROR, step + " has errors", 1}
                                   : Expected{INFORMATION, step + " passed", 3});
    }
    return lines;
}

// The lines of steps alone.
Messages of_driver(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        return std::any_of(std::begin(STEPS), std::end(STEPS), [&](const std::string &step) {
            return message.text == "\t" + step + " passed" ||
                   message.text == "\t" + step + " has errors";
        });
    });
}

TEST_F(Driver, Steps)
{
    const struct {
        const char *name;
        Description description;
        const char *package;
        std::vector<size_t> failed;
    } cases[] = {
        {"none", Description(), nullptr, {}},
        {"syntax errors are the host's affair",
         Description().with(GENERIC_PARAMETER, BAD_GENERIC),
         "PKG",
         {}},
        {"the first does not stop the others",
         Description().with(PIN_MAPS, Description().statement(PIN_MAPS) +
                                          "constant B : PIN_MAP_STRING := \"TCK:1, TMS:2, TDI:3, "
                                          "TDO:4, A:5, Y:6, B:7, D:(8,9)\";"),
         "NOPE",
         {0, 3, 5, 10}},
        {"several statements",
         Description()
             .replace(INSTRUCTION_CAPTURE, "0101", "01010")
             .with(COMPLIANCE, attribute("COMPLIANCE_PATTERNS", "(A) (11)"))
             .with(EXTENSIONS, attribute("OWN", "x")),
         nullptr,
         {6, 7, 13}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(row.description, {.package = row.package});
        const int32_t result = row.failed.empty() ? 0 : 100;
        EXPECT_EQ(reading.check(bsdl_check), result);
        expect_messages(of_driver(reading.messages()), driver_lines(row.failed));
        EXPECT_EQ(reading.check(bsdl_check), result) << "the verdict stays";
        EXPECT_TRUE(reading.messages().empty());
    }
}

TEST_F(Driver, ResultsWithoutAllChecks)
{
    EXPECT_EQ(bsdl_check(nullptr), 2);
    Bsdl empty = {};
    EXPECT_EQ(bsdl_check(&empty), 3);

    Reading reading{Description()};
    EXPECT_EQ(reading.check(bsdl_check_generic), 0);
    EXPECT_TRUE(reading.messages().empty()) << "a check by itself has no line";
}

TEST_F(Driver, AFastReadingHasItsGenericParameterCheckedAlone)
{
    for (const char *package : {"PKG", "NOPE"}) {
        SCOPED_TRACE(package);
        Reading reading(Description().with(PIN_MAPS, Description().statement(PIN_MAPS) +
                                                         "constant B : PIN_MAP_STRING := \"A:1\";"),
                        {.package = package, .flags = FAST_READ});
        for (int round = 0; round < 2; round++) {
            EXPECT_EQ(reading.check(bsdl_check), 0) << "whatever was found";
            ASSERT_FALSE(reading.messages().empty());
            EXPECT_EQ(reading.messages().back().text,
                      std::string("\tGeneric parameter ") +
                          (std::string(package) == "PKG" ? "passed" : "has errors"));
        }
    }
}

} // namespace
