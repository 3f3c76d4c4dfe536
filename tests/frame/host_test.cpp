// What a host does beside one reading: many in one process, one from inside a message sink, several
// in threads.

#include "base/arena.h"
#include "frame/reader_state.h"
#include "support/description.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace
{

// With and without errors, of their syntax too.
constexpr const char *FILES[] = {
    "examples/demo.bsd",     "examples/demo_1990.bsd",     "examples/demo_1994.bsd",
    "examples/isc_2001.bsd", "examples/isc_2002.bsd",      "examples/aio_2003.bsd",
    "examples/two_taps.prg", "examples/demo_mistakes.bsd", "tests/tool/mistakes.bsd"};

std::string in_source(const std::string &file) { return TARNLET_SOURCE_DIR "/" + file; }

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
    // The latest reading takes the messages of all handles, also when it was one inside a sink;
    // here they go on to whom they are about.
    void forward_to(Record *other) { forward_ = other; }

  private:
    static void sink(void *data, BsdlMessage *message);
    std::string path_;
    std::string text_;
    BsdlContext context_ = {sink, this, 4};
    Record *inner_ = nullptr;
    Record *forward_ = nullptr;
    int after_ = -1;
    int messages_ = 0;
};

} // namespace

void Record::sink(void *data, BsdlMessage *message)
{
    auto *record = static_cast<Record *>(data);
    if (record->forward_)
        record = record->forward_;
    const std::string text = message->text;
    const auto place = [] {
        const char *file = bsdlMessageFile();
        const char *rule = bsdlMessageRule();
        return std::to_string(bsdlMessageLine()) + " " + (file ? file : "-") + " " +
               (rule ? rule : "-");
    };
    const std::string before = place();
    if (record->messages_++ == record->after_ && record->inner_) {
        record->inner_->run();
        record->inner_->forward_to(record);
    }
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
    text_ += std::to_string(bsdlPrgNbrOfComponents(h));
    text_ += bsdlPrgFirstProgPart(h) && bsdlIscFirstAction(h) ? "+" : "-";
    text_ += bsdlAioFirstPinBehavior(h) ? "+" : "-";
    bsdlRelease(h);
}

static std::string alone(const std::string &path)
{
    Record record(path);
    record.run();
    return record.text();
}

class EachFile : public testing::TestWithParam<const char *>
{
  protected:
    void TearDown() override { support::reset_reader_state(); }

    const std::string path_ = in_source(GetParam());
    const std::string alone_ = alone(path_);
};

TEST_P(EachFile, ReadingInsideTheSinkChangesNeither)
{
    Record counted(path_);
    counted.run();
    ASSERT_GT(counted.messages(), 10);
    for (int after = 0; after < counted.messages(); after++) {
        const std::string other = in_source(FILES[after % std::size(FILES)]);
        Record outer(path_);
        Record inner(other);
        outer.nest(&inner, after);
        outer.run();
        ASSERT_EQ(outer.text(), alone_) << other << " inside, at message " << after;
        ASSERT_EQ(inner.text(), alone(other)) << other << " inside, at message " << after;
    }
}

// Whatever remains of a file can be checked and asked, and leaves nothing behind.
TEST_P(EachFile, MayEndEarly)
{
    const std::string text = support::read_text(path_);
    const std::string path = support::new_folder() + "/cut";
    for (size_t end = 0; end < text.size(); end++) {
        if (!std::strchr(";,:\n", text[end]))
            continue;
        support::write_text(path, text.substr(0, end + 1));
        Record(path).run();
    }
    EXPECT_EQ(alone(path_), alone_);
}

INSTANTIATE_TEST_SUITE_P(files, EachFile, testing::ValuesIn(FILES),
                         [](const testing::TestParamInfo<const char *> &info) {
                             return std::filesystem::path(info.param).stem().string();
                         });

static std::string all_alone()
{
    std::string text;
    for (const char *file : FILES)
        text += alone(in_source(file));
    return text;
}

TEST(Threads, EightAtOnceReadAlike)
{
    const std::string single = all_alone();
    std::vector<std::thread> threads;
    std::atomic<int> alike = 0;
    for (int i = 0; i < 8; i++)
        threads.emplace_back([&] {
            for (int round = 0; round < 5; round++)
                alike += all_alone() == single;
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(alike, 40);
    support::reset_reader_state();
}

// A thread that reads nothing itself: calls on a handle send to the context of its reading, others
// are silent. Handles are given back in whichever thread.
TEST(Threads, AHandleMayGoOnInAnother)
{
    std::vector<std::string> texts;
    BsdlContext context = {[](void *data, BsdlMessage *message) {
                               static_cast<std::vector<std::string> *>(data)->emplace_back(
                                   message->text);
                           },
                           &texts, 4};
    const std::string path = in_source(FILES[0]);
    std::vector<Bsdl *> handles;
    for (int i = 0; i < 3; i++)
        handles.push_back(readBsdl(path.c_str(), nullptr, nullptr, 0, &context));
    EXPECT_EQ(bsdl_check(handles[0]), 0);
    texts.clear();
    EXPECT_EQ(bsdl_check(handles[1]), 0);
    const std::vector<std::string> here = texts;
    std::thread([&] {
        texts.clear();
        bsdl_msg(0, 0, "of nobody");
        EXPECT_EQ(bsdl_check_aio(nullptr), 2);
        EXPECT_TRUE(texts.empty());
        EXPECT_EQ(bsdl_check(handles[2]), 0);
        EXPECT_EQ(texts, here);
        freeBsdl(handles[0]);
        freeBsdl(handles[1]);
        bsdlRelease(handles[1]);
        bsdlRelease(handles[2]);
    }).join();
    bsdlRelease(handles[0]);
    EXPECT_EQ(released_handles.first, nullptr);
    support::reset_reader_state();
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
    for (const char *file : FILES) {
        files.push_back(in_source(file));
        const std::string text = support::read_text(files.back());
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
    EXPECT_EQ(released_handles.first, nullptr);
    support::reset_reader_state();
}
