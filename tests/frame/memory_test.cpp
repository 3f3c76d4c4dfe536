// What happens when memory runs out: each request in turn is refused, and all that follow it.

#include "frame/memory.h"
#include "support/description.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// How a run ended, as the status of the process that it ran in.
enum Outcome {
    WHOLE = 10,     // no request was refused
    NO_HANDLE = 11, // readBsdl() gave NULL
    CHECK_FAILED = 12,
    AFTER_CHECK = 13,
    LEFT_SOMETHING = 20, // not all memory was given back
    CHECK_PASSED = 21,   // although memory ran out
    ENDED = 255,         // "Memory error", while text was scanned or a package sought
};

void sink(void *, BsdlMessage *) {}

Outcome read_check_and_ask(const std::string &path, const std::string &ebst, long requests)
{
    static BsdlContext context = {sink, nullptr, 4};
    const long before = memory_held();
    memory_fail_after(requests);
    Outcome outcome = NO_HANDLE;
    if (Bsdl *h = readBsdl(path.c_str(), nullptr, nullptr, 0, &context)) {
        int32_t result = bsdlIsPrg(h) ? bsdl_check_prg(h) : bsdl_check(h);
        if (bsdlIs1532(h))
            result |= bsdl_check_isc(h);
        if (bsdlIsAio(h))
            result |= bsdl_check_aio(h);
        const bool failed = memory_was_refused();
        bsdlSetEbstFile(h, ebst.c_str());
        bsdlGenEbst(h);
        bsdlCreateEbst(h);
        for (CellEntry *e = bsdlGetFirstCellEntry(h); e; e = bsdlGetNextCellEntry(h))
            bsdlGetCellEbstName(e);
        for (EbstPin *pin = bsdlGetFirstEbstPin(h); pin; pin = bsdlGetNextEbstPin(h))
            bsdlGetEbstPinName(pin);
        outcome = failed ? CHECK_FAILED : memory_was_refused() ? AFTER_CHECK : WHOLE;
        if (failed && result == BSDL_RESULT_OK)
            outcome = CHECK_PASSED;
        freeBsdl(h);
        bsdlRelease(h);
    }
    memory_fail_after(-1);
    return memory_held() == before ? outcome : LEFT_SOMETHING;
}

class MemoryRunsOut : public testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(MemoryRunsOut, AtEachRequest)
{
    const std::string path = support::example(GetParam());
    const std::string ebst = support::new_folder() + "/out.dsh";
    int counts[256] = {};
    for (long requests = 0; !counts[WHOLE]; requests++) {
        ASSERT_LT(requests, 2000) << "no end of requests";
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const Outcome outcome = read_check_and_ask(path, ebst, requests);
            // The next reading finds nothing of the failed one.
            const Outcome next = read_check_and_ask(path, ebst, -1);
            _exit(next == WHOLE ? outcome : next);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status)) << "request " << requests << " ended by a signal";
        const int outcome = WEXITSTATUS(status);
        ASSERT_TRUE((outcome >= WHOLE && outcome <= AFTER_CHECK) || outcome == ENDED)
            << "request " << requests << ": " << outcome;
        counts[outcome]++;
    }
    EXPECT_GT(counts[NO_HANDLE], 0);
    EXPECT_GT(counts[CHECK_FAILED] + counts[AFTER_CHECK], 0);
}

INSTANTIATE_TEST_SUITE_P(examples, MemoryRunsOut,
                         testing::Values("demo.bsd", "demo_1990.bsd", "demo_1994.bsd",
                                         "isc_2001.bsd", "isc_2002.bsd", "aio_2003.bsd",
                                         "two_taps.prg"),
                         [](const testing::TestParamInfo<const char *> &info) {
                             std::string name = info.param;
                             name.resize(name.find('.'));
                             return name;
                         });

static void read_refused(const std::string &path, long requests)
{
    static BsdlContext context = {sink, nullptr, 0};
    memory_fail_after(requests);
    Bsdl *h = readBsdl(path.c_str(), nullptr, nullptr, 0, &context);
    std::_Exit(h ? 1 : 255);
}

// Names of a caller's have no greatest length, so that not even the reserve may hold them.
TEST(MemoryRunsOutDeathTest, LongPath)
{
    const std::string path(size_t{300} << 10, 'x');
    for (long requests = 0; requests < 6; requests++)
        EXPECT_EXIT(read_refused(path, requests), testing::ExitedWithCode(255), "");
}

TEST(Memory, HeldBlocksAreCounted)
{
    const long before = memory_held();
    void *memory = memory_request(100);
    EXPECT_EQ(memory_held(), before + 1);
    memory_return(memory);
    memory_return(nullptr);
    EXPECT_EQ(memory_held(), before);
}
