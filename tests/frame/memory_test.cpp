// What happens when memory runs out: each request in turn is refused, and all that follow it.

#include "base/memory.h"
#include "frame/lookup.h"
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
    LEFT_SOMETHING = 20, // some memory was not released
    CHECK_PASSED = 21,   // although memory ran out
    ENDED = 255,         // "Memory error", while text was scanned or a package searched for
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

// No other check is there to fail in its place.
TEST(MemoryRunsOut, InASingleCheck)
{
    int32_t (*const checks[])(Bsdl *) = {
        bsdl_check_generic,      bsdl_check_logical_port, bsdl_check_packages,
        bsdl_check_all_pin_maps, bsdl_check_scan_port,    bsdl_check_instr_reg,
        bsdl_check_optional_reg, bsdl_check_reg_access,   bsdl_check_bsr};
    // Enough of cells for memory of their own.
    constexpr int CELLS = 5000;
    std::string cells = "0 (BC_0, *, internal, X)";
    for (int i = 1; i < CELLS; i++)
        cells += (i % 100 ? ", " : ",\" &\n\"") + std::to_string(i) + " (BC_0, *, internal, X)";
    support::Description description;
    description.with(support::BOUNDARY_REGISTER, support::attribute("BOUNDARY_REGISTER", cells))
        .replace(support::BOUNDARY_LENGTH, "8", std::to_string(CELLS));
    for (const auto *tested = std::begin(checks); tested != std::end(checks); tested++) {
        bool refused = true;
        for (long requests = 0; refused && requests < 100; requests++) {
            support::Reading reading(description);
            for (const auto *before = std::begin(checks); before != tested; before++)
                (*before)(reading);
            lookups_drop(reading);
            memory_fail_after(requests);
            const int32_t result = (*tested)(reading);
            refused = memory_was_refused();
            memory_fail_after(-1);
            EXPECT_EQ(result, refused ? 100 : 0)
                << "check " << tested - checks << ", request " << requests;
        }
        EXPECT_FALSE(refused);
    }
}

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
