#include "base/arena.h"
#include "frame/model.h"
#include "support/description.h"

#include <clocale>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

using namespace support;
namespace fs = std::filesystem;

namespace
{

const fs::path GOLDEN = fs::path(TARNLET_SOURCE_DIR) / "tests/ebst/golden";

// The text of the file with the time of its making and the maker's folder masked.
std::string masked(std::string text)
{
    text = std::regex_replace(text, std::regex(R"("\d{4}-\d\d-\d\d \d\d:\d\d:\d\d GMT0")"),
                              "\"<time> GMT0\"");
    return std::regex_replace(text, std::regex(R"("BSDL [^"]*/)"), "\"BSDL <folder>/");
}

// What a file has beside those of plain.dsh: runs of lines that stand there too are counted only.
std::string beside_plain(const std::string &text)
{
    std::istringstream plain(read_text(GOLDEN / "plain.dsh"));
    std::set<std::string> known;
    for (std::string line; std::getline(plain, line);)
        known.insert(line);
    std::istringstream lines(text);
    std::string result;
    int run = 0;
    const auto end_run = [&] {
        if (run > 0)
            result += "(" + std::to_string(run) + " as in plain.dsh)\n";
        run = 0;
    };
    for (std::string line; std::getline(lines, line);) {
        if (known.contains(line)) {
            run++;
            continue;
        }
        end_run();
        result += line + "\n";
    }
    end_run();
    return result;
}

std::string written(Reading &reading, const std::string &name = "out.dsh")
{
    std::string path = reading.folder() + "/" + name;
    EXPECT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
    EXPECT_EQ(bsdlGenEbst(reading), 0);
    EXPECT_EQ(bsdlCreateEbst(reading), 0);
    return read_text(path);
}

class Golden : public testing::TestWithParam<std::string>
{
};

std::vector<std::string> golden_names()
{
    std::vector<std::string> names;
    for (const auto &file : fs::directory_iterator(GOLDEN))
        if (file.path().extension() == ".bsd")
            names.push_back(file.path().stem());
    return names;
}

} // namespace

TEST_P(Golden, File)
{
    std::string name = GetParam();
    Reading reading(
        read_text(GOLDEN / (name + ".bsd")),
        {.files = {{"UCELLS.all", read_text(GOLDEN / "UCELLS.all")}}, .name = name + ".bsd"});
    ASSERT_NE(reading.handle(), nullptr);
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(reading.check(bsdl_check), name == "faulty" ? 100 : 0)
        << testing::PrintToString(errors_and_warnings(reading.messages()));
    const std::string text = masked(written(reading, name + ".dsh"));
    expect_golden("ebst/golden/" + name + ".dsh", name == "plain" ? text : beside_plain(text));
}

INSTANTIATE_TEST_SUITE_P(Ebst, Golden, testing::ValuesIn(golden_names()),
                         [](const testing::TestParamInfo<std::string> &info) {
                             return info.param;
                         });

// ------------------------------------------------------------------------------------- the exports

TEST(EbstFile, OrderOfTheCalls)
{
    EXPECT_EQ(bsdlSetEbstFile(nullptr, "x"), 2);
    EXPECT_EQ(bsdlGenEbst(nullptr), 2);
    EXPECT_EQ(bsdlCreateEbst(nullptr), 2);
    Reading reading{Description()};
    expect_clean(reading);
    EXPECT_EQ(bsdlSetEbstFile(reading, nullptr), 6);
    EXPECT_EQ(bsdlCreateEbst(reading), 5);
    EXPECT_EQ(bsdlGetNrOfEbstPins(reading), -1);
    EXPECT_EQ(bsdlGetNextEbstPin(reading), nullptr);

    EXPECT_EQ(reading.check(bsdlGenEbst), 0);
    expect_messages(reading.messages(), {{HEADING, "Generating EBST datasheet 'DEV'", 1},
                                         {HEADING, "EBST datasheet 'DEV' done\n", 1}});
    std::string path = reading.folder() + "/x.dsh";
    EXPECT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
    EXPECT_EQ(reading.check(bsdlCreateEbst), 0);
    expect_messages(reading.messages(), {{HEADING, "Generating EBST file '" + path + "'", 1},
                                         {HEADING, "EBST file '" + path + "' done\n", 1}});
    EXPECT_EQ(freeBsdl(reading), 0);
    EXPECT_EQ(bsdlSetEbstFile(reading, "x"), 3);
    EXPECT_EQ(bsdlGenEbst(reading), 3);
    EXPECT_EQ(bsdlCreateEbst(reading), 3);
}

TEST(EbstFile, MemoryRunsOut)
{
    int32_t result = 100;
    for (long requests = 0; result && requests < 100; requests++) {
        Reading reading{Description()};
        expect_clean(reading);
        memory_fail_after(requests);
        result = bsdlGenEbst(reading);
        memory_fail_after(-1);
        EXPECT_TRUE(result == 0 || result == 100) << requests;
        EXPECT_EQ(bsdlGetNrOfEbstPins(reading), result ? -1 : 11) << requests;
    }
    EXPECT_EQ(result, 0);
}

TEST(EbstFile, UncheckedDescriptionGivesAFile)
{
    Reading reading{Description()};
    std::string text = written(reading);
    EXPECT_NE(text.find("\n  IDCODE             \"0100\"     IDENT        SAMPLE   IDENT     \n"),
              std::string::npos);
    EXPECT_NE(text.find("\n  BYPASS             \"1111\"     -            SAMPLE   -         \n"),
              std::string::npos);
    EXPECT_NE(
        text.find("\n  7     BC_0_INPUT      (null)          -        -        -     -     -\n"),
        std::string::npos);
}

TEST(EbstFile, SecondFileHasNoDataRegisters)
{
    Description description;
    description.replace(INSTRUCTION_OPCODE, "IDCODE (0100)", "IDCODE (0100), I1 (1000)")
        .with(REGISTER_ACCESS, attribute("REGISTER_ACCESS", "R1[3] (I1)"));
    Reading reading(description);
    expect_clean(reading);
    EXPECT_NE(written(reading).find("\nDATA_REGISTER R1\n"), std::string::npos);
    EXPECT_EQ(written(reading).find("DATA_REGISTER"), std::string::npos);
}

TEST(EbstFile, NameFromTheDescription)
{
    const struct {
        const char *description, *file;
    } CASES[] = {
        {"a.b.bsd", "a.b.dsh"}, {"plain", "plain.dsh"}, {"win\\dir.x\\name.bsd", "name.dsh"}};
    fs::path before = fs::current_path();
    for (const auto &row : CASES) {
        Reading reading(Description(), {.name = row.description});
        expect_clean(reading);
        fs::current_path(reading.folder());
        EXPECT_EQ(bsdlGenEbst(reading), 0);
        EXPECT_EQ(bsdlCreateEbst(reading), 0);
        std::string maker =
            std::string("\n  \"") + row.file + " created by tarnlet32.dll 1.7.2.6 - ";
        EXPECT_NE(read_text(row.file).find(maker), std::string::npos) << row.description;
        fs::current_path(before);
    }
}

TEST(EbstFile, BackReferenceOfACheckedDescription)
{
    const fs::path before = fs::current_path();
    const fs::path folder = new_folder();
    fs::create_directory(folder / "dir");
    fs::current_path(folder);
    const std::pair<std::string, std::string> names[] = {
        {"a\\b.bsd", folder.string() + "/a\\\\b.bsd"},
        {folder / "x.bsd", folder / "x.bsd"},
        {"\\\\host\\x.bsd", "\\\\\\\\host\\\\x.bsd"},
        {"C:\\x.bsd", "C:\\\\x.bsd"},
        {"dir/x.bsd", folder / "dir/x.bsd"}};
    GSList *dirs = g_slist_prepend(nullptr, const_cast<char *>(TARNLET_SOURCE_DIR "/packages"));
    for (const auto &[name, shown] : names) {
        write_text(name, read_text(example("isc_2002.bsd")));
        BsdlContext context = {};
        Bsdl *bsdl = readBsdl(name.c_str(), nullptr, dirs, 0, &context);
        EXPECT_EQ(bsdl_check_isc(bsdl), 0) << name;
        EXPECT_EQ(bsdlSetEbstFile(bsdl, "out.dsh"), 0);
        EXPECT_EQ(bsdlGenEbst(bsdl), 0);
        EXPECT_EQ(bsdlCreateEbst(bsdl), 0);
        EXPECT_NE(
            read_text("out.dsh").find("\n  \"BSDL " + shown + "\"  ** 1532 back reference **\n"),
            std::string::npos)
            << name;
        bsdlRelease(bsdl);
    }
    g_slist_free(dirs);
    fs::current_path(before);
    reset_reader_state(); // the context is gone
}

// -------------------------------------------------------------------------------------- bad places

namespace
{

// What the folder holds beside the description.
std::vector<std::string> others_in(const Reading &reading)
{
    std::vector<std::string> names;
    for (const auto &file : fs::directory_iterator(reading.folder()))
        if (file.path() != reading.path())
            names.push_back(file.path().filename());
    return names;
}

struct Output : testing::Test {
    Reading reading{Description()};

    void SetUp() override
    {
        expect_clean(reading);
        ASSERT_EQ(bsdlGenEbst(reading), 0);
    }

    void expect_failure(const std::string &path, const ExpectedMessages &messages)
    {
        EXPECT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
        EXPECT_EQ(reading.check(bsdlCreateEbst), 100) << path;
        expect_messages(reading.messages(), messages);
    }
};

} // namespace

TEST_F(Output, CannotBeOpened)
{
    std::string folder = reading.folder();
    for (const std::string &path :
         {folder, folder + "/", folder + "/none/x.dsh", folder + "/" + std::string(300, 'x'),
          std::string(5000, 'x'), std::string()})
        expect_failure(path, {{ERROR, "Cannot open file '" + path + "'", 1}});
    EXPECT_EQ(others_in(reading), std::vector<std::string>());
}

TEST_F(Output, FullDevice)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    expect_failure("/dev/full", {{HEADING, "Generating EBST file '/dev/full'", 1},
                                 {ERROR, "Cannot write file '/dev/full'", 1}});
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(Output, ReadOnlyFolder)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may write anywhere";
    std::string path = reading.folder() + "/x.dsh";
    chmod(reading.folder().c_str(), 0500);
    expect_failure(path, {{ERROR, "Cannot open file '" + path + "'", 1}});
    chmod(reading.folder().c_str(), 0700);
}

// A host that has set the locale of a user who writes numbers with a comma.
TEST_F(Output, NumbersDoNotGoByTheLocale)
{
    const std::string locales = new_folder();
    const std::string make = "localedef -i de_DE -f UTF-8 " + locales + "/comma 2>&1 >/dev/null";
    setenv("LOCPATH", locales.c_str(), 1);
    if (std::system(make.c_str()) != 0 || !std::setlocale(LC_ALL, "comma"))
        GTEST_SKIP() << "no locale with a comma";
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    Reading german(Description().replace(SCAN_CLOCK, "10.0e6", "12.5e6"));
    EXPECT_EQ(bsdlGetTckFrequency(german), 12.5e6);
    const std::string text = written(german);
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    EXPECT_NE(text.find("TEST_FREQUENCY      : 0 1.25e+07 1.25e+07\n"), std::string::npos);
}

// Another user's file, in a folder where no file may be created or none of another's be replaced.
TEST_F(Output, AFileThatCannotBeReplacedIsWrittenDirectly)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser may act for another user";
    const std::string path = reading.folder() + "/x.dsh";
    std::error_code ignored;
    for (const mode_t folder : {0555U, 01777U}) {
        write_text(path, std::string(1000000, 'x'));
        chmod(path.c_str(), 0666);
        chmod(reading.folder().c_str(), folder);
        struct stat before;
        struct stat after;
        EXPECT_EQ(stat(path.c_str(), &before), 0);
        EXPECT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
        EXPECT_EQ(seteuid(65534), 0);
        // A root folder that is closed to all others hides the file from them.
        const bool seen = fs::exists(path, ignored);
        EXPECT_EQ(bsdlCreateEbst(reading), seen ? 0 : 100);
        EXPECT_EQ(seteuid(0), 0);
        if (!seen)
            GTEST_SKIP() << "other users cannot reach the folder of the test";
        EXPECT_EQ(stat(path.c_str(), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino) << std::oct << folder;
        EXPECT_TRUE(read_text(path).ends_with("END EBST\n"));
    }
}

TEST_F(Output, ReplacesAFileAndKeepsItsPermissions)
{
    std::string path = reading.folder() + "/x.dsh";
    write_text(path, std::string(1000000, 'x'));
    chmod(path.c_str(), 0640);
    fs::create_symlink("x.dsh", reading.folder() + "/link.dsh");
    EXPECT_EQ(bsdlSetEbstFile(reading, (reading.folder() + "/link.dsh").c_str()), 0);
    EXPECT_EQ(bsdlCreateEbst(reading), 0);
    EXPECT_TRUE(read_text(path).ends_with("END EBST\n"));
    EXPECT_TRUE(fs::is_symlink(reading.folder() + "/link.dsh"));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    EXPECT_EQ(others_in(reading).size(), 2u);
}

TEST_F(Output, GoesThroughADevice)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string path = "/proc/self/fd/" + std::to_string(ends[1]);
    EXPECT_EQ(bsdlSetEbstFile(reading, path.c_str()), 0);
    EXPECT_EQ(bsdlCreateEbst(reading), 0);
    char start[6] = {};
    EXPECT_EQ(read(ends[0], start, 5), 5);
    EXPECT_STREQ(start, "EBST\n");
    close(ends[0]);
    close(ends[1]);
}

// -------------------------------------------------------------------------------------------- pins

TEST(EbstPins, Queries)
{
    Reading reading{Description()};
    expect_clean(reading);
    ASSERT_EQ(bsdlGenEbst(reading), 0);
    std::vector<std::string> pins;
    for (EbstPin *pin : all_of(reading.handle(), bsdlGetFirstEbstPin, bsdlGetNextEbstPin))
        pins.push_back(std::string(bsdlGetEbstPinNumber(pin)) + " " + bsdlGetEbstPinName(pin) +
                       " " + std::to_string(bsdlGetEbstPinType(pin)));
    EXPECT_EQ(pins, (std::vector<std::string>{"1 \"TCK\" 12", "2 \"TMS\" 11", "3 \"TDI\" 9",
                                              "4 \"TDO\" 10", "5 \"A\" 1", "6 \"Y\" 3", "7 \"B\" 4",
                                              "8 \"D(0)\" 1", "9 \"D(1)\" 1", "10 \"GND\" 8",
                                              "11 \"VCC\" 7"}));
    EXPECT_EQ(bsdlGetNrOfEbstPins(reading), 11);
    EXPECT_EQ(bsdlGetNextEbstPin(reading), nullptr);
    EXPECT_EQ(bsdlGetEbstPinNumber(nullptr), nullptr);
    EXPECT_EQ(bsdlGetEbstPinName(nullptr), nullptr);
    EXPECT_EQ(bsdlGetEbstPinType(nullptr), 0);
}
