// What a message sink may call: everything, on the handle whose check runs as on any other.

#include "base/memory.h"
#include "frame/reader_state.h"
#include "fuzz/ask.h"
#include "support/description.h"

#include <functional>
#include <gtest/gtest.h>
#include <regex>
#include <set>

using namespace support;

namespace
{

constexpr const char *FILES[] = {"examples/demo.bsd",      "examples/demo_1990.bsd",
                                 "examples/isc_2001.bsd",  "examples/aio_2003.bsd",
                                 "examples/two_taps.prg",  "examples/demo_mistakes.bsd",
                                 "tests/tool/mistakes.bsd"};

struct Export {
    const char *name;
    int32_t (*call)(Bsdl *h);
};

#define PLAIN(name)                                                                                \
    {                                                                                              \
#name, name                                                                                \
    }
// Each export that may send messages about a handle, but for readBsdl().
constexpr Export EXPORTS[] = {
    PLAIN(bsdl_check),
    PLAIN(bsdl_check_aio),
    PLAIN(bsdl_check_aio_conformance),
    PLAIN(bsdl_check_aio_extest_pulse),
    PLAIN(bsdl_check_aio_extest_train),
    PLAIN(bsdl_check_aio_pin_behavior),
    PLAIN(bsdl_check_all_pin_maps),
    PLAIN(bsdl_check_bsr),
    PLAIN(bsdl_check_compliance),
    PLAIN(bsdl_check_extensions),
    PLAIN(bsdl_check_generic),
    PLAIN(bsdl_check_grouped_port),
    PLAIN(bsdl_check_instr_reg),
    PLAIN(bsdl_check_intest),
    PLAIN(bsdl_check_isc),
    PLAIN(bsdl_check_isc_actions),
    PLAIN(bsdl_check_isc_blank_usercode),
    PLAIN(bsdl_check_isc_design_warning),
    PLAIN(bsdl_check_isc_fixed_system_pins),
    {"bsdl_check_isc_flow", [](Bsdl *h) { return bsdl_check_isc_flow(h, bsdlIsPrg(h)); }},
    PLAIN(bsdl_check_isc_illegal_exit),
    PLAIN(bsdl_check_isc_instr_reg),
    PLAIN(bsdl_check_isc_pin_behaviour),
    PLAIN(bsdl_check_isc_procedures),
    PLAIN(bsdl_check_isc_security),
    PLAIN(bsdl_check_isc_status),
    PLAIN(bsdl_check_logical_port),
    PLAIN(bsdl_check_optional_reg),
    PLAIN(bsdl_check_packages),
    {"bsdl_check_pin_map",
     [](Bsdl *h) {
         const char *name = bsdlGetFirstPinMap(h);
         return bsdl_check_pin_map(h, name ? name : "NONE");
     }},
    PLAIN(bsdl_check_prg),
    PLAIN(bsdl_check_prg_prog_ref),
    PLAIN(bsdl_check_reg_access),
    PLAIN(bsdl_check_runbist),
    PLAIN(bsdl_check_scan_port),
    PLAIN(bsdlCreateEbst),
    PLAIN(bsdlGenEbst),
    {"bsdlSetEbstFile", [](Bsdl *h) { return bsdlSetEbstFile(h, "other.dsh"); }},
};
#undef PLAIN

// One call on a handle of its own, with a sink that does something at each message.
class Outer
{
  public:
    using InSink = std::function<void(Bsdl *)>;

    Outer(const char *file, const Export &row, const InSink &in_sink = {})
    {
        handle = readBsdl((std::string(TARNLET_SOURCE_DIR "/") + file).c_str(), nullptr, nullptr, 0,
                          &context_);
        bsdlSetEbstFile(handle, "/dev/null");
        if (row.call == bsdlCreateEbst) {
            bsdl_check(handle);
            bsdlGenEbst(handle);
        }
        seen.clear();
        in_sink_ = in_sink;
        result = row.call(handle);
        in_sink_ = {};
    }

    Bsdl *handle;
    int32_t result;
    std::vector<std::string> seen;

  private:
    static void sink(void *data, BsdlMessage *message)
    {
        auto *outer = static_cast<Outer *>(data);
        outer->seen.emplace_back(message->text);
        if (outer->in_sink_)
            outer->in_sink_(outer->handle);
    }
    BsdlContext context_ = {sink, this, 4};
    InSink in_sink_;
};

class FromSinks : public testing::TestWithParam<const char *>
{
  protected:
    void TearDown() override { reset_reader_state(); }

    void each_call(const Outer::InSink &in_sink,
                   const std::function<void(Outer &with)> &after_it) const
    {
        for (const Export &row : EXPORTS) {
            SCOPED_TRACE(row.name);
            Outer without(GetParam(), row);
            bsdlRelease(without.handle);
            Outer with(GetParam(), row, in_sink);
            EXPECT_EQ(with.result, without.result);
            EXPECT_EQ(with.seen, without.seen);
            if (!with.seen.empty())
                after_it(with);
            else
                bsdlRelease(with.handle);
        }
    }
};

} // namespace

TEST(Sinks, TheTableHasEachExport)
{
    std::set<std::string> wanted = {"bsdlSetEbstFile"};
    const std::string header = read_text(TARNLET_SOURCE_DIR "/include/tarnlet/bsdl.h");
    const std::regex calls("TARNLET_API int32_t (bsdl_check\\w*|bsdlGenEbst|bsdlCreateEbst)\\(");
    for (std::sregex_iterator call(header.begin(), header.end(), calls), end; call != end; ++call)
        wanted.insert((*call)[1]);
    std::set<std::string> rows;
    for (const Export &row : EXPORTS)
        rows.insert(row.name);
    EXPECT_EQ(rows, wanted);
}

TEST_P(FromSinks, CallsOnTheSameHandleDoNothing)
{
    each_call(
        [](Bsdl *h) {
            for (const Export &row : EXPORTS)
                EXPECT_EQ(row.call(h), 100) << row.name;
        },
        [](Outer &with) { bsdlRelease(with.handle); });
}

TEST_P(FromSinks, QueriesDoNotDisturb)
{
    each_call(ask_everything, [](Outer &with) {
        ask_everything(with.handle);
        bsdlRelease(with.handle);
    });
}

TEST_P(FromSinks, GivingBackWaits)
{
    const long held = memory_held();
    bool first = true;
    each_call(
        [&](Bsdl *h) {
            EXPECT_EQ(freeBsdl(h), first && bsdlGetNrOfEbstPins(h) >= 0 ? 0 : 1);
            first = false;
            EXPECT_EQ(bsdl_check(h), 100);
        },
        [&](Outer &with) {
            first = true;
            EXPECT_EQ(bsdl_check(with.handle), 3);
            EXPECT_EQ(bsdlComponentName(with.handle), nullptr);
            bsdlRelease(with.handle);
        });
    each_call([](Bsdl *h) { bsdlRelease(h); }, [](Outer &) {});
    EXPECT_EQ(memory_held(), held);
}

INSTANTIATE_TEST_SUITE_P(files, FromSinks, testing::ValuesIn(FILES));

// The queries on a data file check it first where nobody has.
TEST(Sinks, AQueryThatChecksMayLoseItsHandle)
{
    const long held = memory_held();
    Bsdl *lost = nullptr;
    BsdlContext context = {
        [](void *data, BsdlMessage *) { bsdlRelease(*static_cast<Bsdl **>(data)); }, &lost, 4};
    Bsdl *h = readBsdl(TARNLET_SOURCE_DIR "/examples/two_taps.prg", nullptr, nullptr, 0, &context);
    EXPECT_NE(bsdlPrgFirstProgPart(h), nullptr);
    lost = h;
    EXPECT_EQ(bsdlIscFirstAction(h), nullptr);
    EXPECT_EQ(memory_held(), held);
    reset_reader_state();
}
