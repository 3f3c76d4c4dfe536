// What a host does beside one reading: many in one process, one from inside a message sink, several
// processes at once.

#include "frame/arena.h"
#include "frame/reader_state.h"
#include "support/description.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr const char *EXAMPLES[] = {"demo.bsd",     "demo_1990.bsd",    "demo_1994.bsd",
                                    "isc_2001.bsd", "isc_2002.bsd",     "aio_2003.bsd",
                                    "two_taps.prg", "demo_mistakes.bsd"};

// All that a host sees of one file: results, and messages with where they belong.
class Record
{
  public:
    explicit Record(const std::string &path) : path_(path) {}
    void run();
    const std::string &text() const { return text_; }

    // Another file is read from inside the sink when this many messages have come.
    void nest(Record *inner, int after)
    {
        inner_ = inner;
        after_ = after;
    }
    int messages() const { return messages_; }

  private:
    static void sink(void *data, BsdlMessage *message);
    std::string path_;
    std::string text_;
    BsdlContext context_ = {sink, this, 4};
    Record *inner_ = nullptr;
    int after_ = -1;
    int messages_ = 0;
};

} // namespace

void Record::sink(void *data, BsdlMessage *message)
{
    auto *record = static_cast<Record *>(data);
    const std::string text = message->text;
    const auto place = [] {
        const char *file = bsdlMessageFile();
        const char *rule = bsdlMessageRule();
        return std::to_string(bsdlMessageLine()) + " " + (file ? file : "-") + " " +
               (rule ? rule : "-");
    };
    const std::string before = place();
    if (record->messages_++ == record->after_ && record->inner_)
        record->inner_->run();
    // The message is still what it was, and so is what it is about.
    EXPECT_EQ(text, message->text);
    EXPECT_EQ(before, place());
    record->text_ += std::to_string(message->level) + " " + before + " " + text + "\n";
}

void Record::run()
{
    Bsdl *h = readBsdl(path_.c_str(), nullptr, nullptr, 0, &context_);
    if (!h) {
        text_ += "no handle\n";
        return;
    }
    const int32_t results[] = {bsdlGetNumErrors(h),
                               bsdlIsPrg(h) ? bsdl_check_prg(h) : 0,
                               bsdlIsPrg(h) ? 0 : bsdl_check(h),
                               bsdlIs1532(h) && !bsdlIsPrg(h) ? bsdl_check_isc(h) : 0,
                               bsdlIsAio(h) ? bsdl_check_aio(h) : 0,
                               bsdlGenEbst(h)};
    for (int32_t result : results)
        text_ += std::to_string(result) + " ";
    for (PinEntry *pin = bsdlGetFirstPin(h); pin; pin = bsdlGetNextPin(h))
        text_ += std::string(bsdlGetPinPortID(pin)->name) + ":" +
                 std::to_string(bsdlGetPinType(pin)) + " ";
    for (CellEntry *cell = bsdlGetFirstCellEntry(h); cell; cell = bsdlGetNextCellEntry(h)) {
        const char *name = bsdlGetCellEbstName(cell);
        text_ += std::string(name ? name : "-") + " ";
    }
    bsdlRelease(h);
}

static std::string alone(const char *example)
{
    Record record(support::example(example));
    record.run();
    return record.text();
}

class ReadingInsideSink : public testing::TestWithParam<const char *>
{
    void TearDown() override { support::reset_reader_state(); }
};

TEST_P(ReadingInsideSink, ChangesNeither)
{
    const std::string outer_alone = alone(GetParam());
    Record counted(support::example(GetParam()));
    counted.run();
    ASSERT_GT(counted.messages(), 10);
    for (int after = 0; after < counted.messages(); after++) {
        const char *example = EXAMPLES[after % std::size(EXAMPLES)];
        Record outer(support::example(GetParam()));
        Record inner(support::example(example));
        outer.nest(&inner, after);
        outer.run();
        ASSERT_EQ(outer.text(), outer_alone) << example << " inside, at message " << after;
        ASSERT_EQ(inner.text(), alone(example)) << example << " inside, at message " << after;
    }
}

INSTANTIATE_TEST_SUITE_P(examples, ReadingInsideSink, testing::ValuesIn(EXAMPLES),
                         [](const testing::TestParamInfo<const char *> &info) {
                             std::string name = info.param;
                             name.resize(name.find('.'));
                             return name;
                         });

TEST(Processes, SeveralAtOnceReadAlike)
{
    std::string single;
    for (const char *example : EXAMPLES)
        single += alone(example);
    support::reset_reader_state();
    pid_t children[3];
    for (pid_t &child : children) {
        child = fork();
        ASSERT_GE(child, 0);
        if (child != 0)
            continue;
        for (int round = 0; round < 20; round++) {
            std::string mine;
            for (const char *example : EXAMPLES)
                mine += alone(example);
            if (mine != single)
                _exit(1);
        }
        _exit(0);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
}

static long resident_kib()
{
    long pages = 0;
    long resident = 0;
    if (FILE *file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// TARNLET_READINGS sets the number for a long run by hand.
TEST(ManyReadings, DoNotGrow)
{
    const char *wanted = std::getenv("TARNLET_READINGS");
    const int readings = wanted ? std::atoi(wanted) : 2000;
    const std::string folder = support::new_folder();
    std::vector<std::string> files;
    for (const char *example : EXAMPLES) {
        const std::string text = support::read_text(support::example(example));
        files.push_back(support::example(example));
        // Cut inside a statement, inside a string, and with a line that no statement begins with.
        for (size_t part = 1; part < 4; part++) {
            files.push_back(folder + "/" + std::to_string(files.size()));
            support::write_text(files.back(), text.substr(0, text.size() * part / 4) +
                                                  (part == 2 ? "\nfoo bar;\n" : ""));
        }
    }
    files.push_back(folder + "/absent");
    files.push_back(folder);

    BsdlContext context = {[](void *, BsdlMessage *) {}, nullptr, 4};
    long held = 0;
    long resident = 0;
    for (int i = 0; i < readings; i++) {
        if (i == readings / 2) {
            held = memory_held();
            resident = resident_kib();
        }
        Bsdl *h = readBsdl(files[static_cast<size_t>(i) % files.size()].c_str(), nullptr, nullptr,
                           i % 3 ? 0 : BSDL_FLAG_STRICT, &context);
        bsdl_check(h);
        bsdl_check_isc(h);
        bsdl_check_aio(h);
        bsdlGenEbst(h);
        if (i % 2)
            freeBsdl(h);
        bsdlRelease(h);
    }
    EXPECT_EQ(memory_held(), held);
    // A sanitizer keeps what was given back for a while.
    const long most = ARENA_GUARD ? 1 << 20 : 1024;
    EXPECT_LT(resident_kib() - resident, most);
    EXPECT_EQ(reader_state.released, nullptr);
    support::reset_reader_state();
}
