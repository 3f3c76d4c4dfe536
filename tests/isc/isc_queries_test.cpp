#include "isc/isc.h"

#include "isc_family.h"

#include <functional>

using namespace support;
using namespace isc_family;

namespace
{

TEST(IscQueries, WholeTree)
{
    Reading reading(read_text(example("isc_2002.bsd")));
    expect_passed(reading);
    expect_golden("isc/isc_2002.golden", tree_text(reading));
    // A second walk finds every cursor where it was.
    expect_golden("isc/isc_2002.golden", tree_text(reading));
}

const char FLOWS[] =
    "EN INITIALIZE (ISC_ENABLE WAIT TCK 3) (ISC_NOOP WAIT 1.5e-6 MIN, 1.5e-6 MAX), "
    "RUN(ARRAY) UNPROCESSED EXIT_ON_ERROR INITIALIZE (ISC_ENABLE WAIT TCK 1) "
    "REPEAT 1 (ISC_PROGRAM 16:$d=00FF WAIT TCK 7 16:$d) "
    "REPEAT 25 LOOP MIN 2 MAX 9 ((ISC_READ 16 WAIT TCK 1)) TERMINATE (ISC_DISABLE WAIT TCK 1), "
    "OFF TERMINATE (ISC_DISABLE WAIT TCK 2), NIL";
const char PROCEDURES[] =
    "PROC_ENABLE = (EN), PROC_PROGRAM(ARRAY) = (en, RUN(array), OFF UNPROCESSED), "
    "PROC_PROGRAM = (OFF), PROC_ERROR_EXIT = (OFF), PROC_PROGRAM_DONE = (OFF, NIL)";
const char ACTIONS[] =
    "PROGRAM(ARRAY) = (PROC_ENABLE, PROC_PROGRAM(ARRAY) OPTIONAL), "
    "ERASE PROPRIETARY = (PROC_ERROR_EXIT, PROC_ENABLE), LAST = (PROC_PROGRAM_DONE)";

Family family()
{
    return Family().with(FLOW, FLOWS).with(PROCEDURE, PROCEDURES).with(ACTION, ACTIONS);
}

// What a query gives, as text; "-" for nothing.
std::string taken(int32_t value) { return std::to_string(value); }
std::string taken(const void *record) { return record ? "something" : "-"; }
std::string taken(const IscAction *action) { return action ? action->action_name : "-"; }
std::string taken(const IscActionSpec *spec) { return spec ? spec->procedure_name : "-"; }
std::string taken(IscFlowInfo *info)
{
    std::string text = info ? info->flow_name : "-";
    bsdlIscFreeFlow(info);
    return text;
}
std::string taken(IscActivityInfo *info)
{
    std::string text = !info                    ? "-"
                       : info->instruction_name ? info->instruction_name
                                                : "loop " + std::to_string(info->v[0]);
    bsdlIscFreeActivity(info);
    return text;
}

TEST(IscQueries, EndsOfActionsAndProcedures)
{
    Reading reading(family().description());
    expect_passed(reading);
    bsdlIscFirstAction(reading);
    bsdlIscFirstProc(reading);
    EXPECT_EQ(taken(bsdlIscNextProc(reading)), "PROC_PROGRAM");
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(bsdlIscNextProc(reading), nullptr);
        EXPECT_EQ(bsdlIscNbrOfFlows(reading), 3) << "the last procedure stays the current one";
    }
    bsdlIscNextAction(reading);
    EXPECT_EQ(taken(bsdlIscNextAction(reading)), "LAST");
    // At the end the cursor stands after the last action, which is still the current one ...
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 1);
    EXPECT_EQ(taken(bsdlIscFirstProc(reading)), "PROC_PROGRAM_DONE");
    // ... and asking took the cursor back, so it can go to the end again. One step further there is
    // none.
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 1);
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), -1);
    EXPECT_EQ(bsdlIscFirstProc(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), -1);
    EXPECT_EQ(taken(bsdlIscFirstAction(reading)), "PROGRAM");
}

TEST(IscQueries, SelectingByName)
{
    Reading reading(family().description());
    expect_passed(reading);
    EXPECT_EQ(taken(bsdlIscSelectAction(reading, "erase", nullptr)), "ERASE");
    // Misses leave everything.
    const std::pair<const char *, const char *> misses[] = {{"PROGRAM", nullptr},
                                                            {"ERASE", "ARRAY"},
                                                            {"NEVER_HEARD", nullptr},
                                                            {"PROGRAM", "NEVER_HEARD"},
                                                            {nullptr, "ARRAY"}};
    for (const auto &[name, data_name] : misses)
        EXPECT_EQ(bsdlIscSelectAction(reading, name, data_name), nullptr);
    EXPECT_EQ(taken(bsdlIscSelectProc(reading, "Proc_Enable", nullptr)), "PROC_ENABLE");
    EXPECT_EQ(bsdlIscSelectProc(reading, "PROC_PROGRAM", nullptr), nullptr) << "of another action";
    EXPECT_EQ(taken(bsdlIscFirstFlow(reading)), "EN");
    EXPECT_EQ(bsdlIscNextProc(reading), nullptr);
    EXPECT_EQ(taken(bsdlIscNextAction(reading)), "LAST");
    EXPECT_EQ(taken(bsdlIscSelectAction(reading, "program", "array")), "PROGRAM");
}

TEST(IscQueries, ProcedureTakenDirectly)
{
    Reading reading(family().description());
    expect_passed(reading);
    bsdlIscSelectAction(reading, "ERASE", nullptr);
    bsdlIscFirstProc(reading);
    EXPECT_EQ(taken(bsdlIscGetProc(reading, "proc_program", "Array")), "PROC_PROGRAM");
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), 3);
    // Without a name nothing changes, also not for the calls that give the word back.
    EXPECT_EQ(bsdlIscGetProc(reading, nullptr, nullptr), nullptr);
    EXPECT_EQ(bsdlIscSelectProc(reading, nullptr, nullptr), nullptr);
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), 3);
    // A name that is missed gives it back.
    EXPECT_EQ(bsdlIscSelectProc(reading, "NO_SUCH", nullptr), nullptr);
    EXPECT_EQ(taken(bsdlIscFirstFlow(reading)), "OFF");
    bsdlIscFreeFlow(bsdlIscGetProc(reading, "PROC_PROGRAM_DONE", nullptr));
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), 2);
    EXPECT_EQ(bsdlIscGetProc(reading, "PROC_PROGRAM_DONE", "ARRAY"), nullptr);
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), 1);
}

TEST(IscQueries, FlowsBlocksAndActivities)
{
    Reading reading(family().description());
    expect_passed(reading);
    bsdlIscFreeFlow(bsdlIscGetProc(reading, "PROC_PROGRAM", "ARRAY"));
    IscFlowInfo *info = bsdlIscFirstFlow(reading);
    ASSERT_NE(info, nullptr);
    EXPECT_STREQ(info->flow_name, "en") << "as the procedure writes it";
    bsdlIscFreeFlow(info);
    info = bsdlIscNextFlow(reading);
    ASSERT_NE(info, nullptr);
    EXPECT_STREQ(info->data_name, "ARRAY");
    EXPECT_EQ(info->flags, 0x60u) << "as the flow has them";
    EXPECT_EQ(info->variable_count, 1);
    bsdlIscFreeFlow(info);

    EXPECT_EQ(bsdlIscNbrOfFlowBlocks(reading), 4);
    EXPECT_EQ(bsdlIscFirstFlowBlock(reading), -1);
    EXPECT_EQ(bsdlIscNextFlowBlock(reading), 1);
    EXPECT_EQ(bsdlIscNbrOfUpdateStreams(reading), -1) << "no activity has been asked for";
    EXPECT_EQ(taken(bsdlIscFirstActivity(reading)), "ISC_PROGRAM");
    EXPECT_EQ(bsdlIscNbrOfUpdateStreams(reading), 1);
    EXPECT_EQ(bsdlIscNextFlowBlock(reading), 25);
    EXPECT_EQ(taken(bsdlIscFirstActivity(reading)), "loop 1");
    EXPECT_EQ(bsdlIscNbrOfUpdateStreams(reading), 0);
    EXPECT_EQ(taken(bsdlIscNextActivity(reading)), "ISC_READ");
    EXPECT_EQ(bsdlIscFirstUpdateStream(reading)->field_width, 16);
    EXPECT_EQ(bsdlIscNextUpdateStream(reading), nullptr);
    EXPECT_EQ(taken(bsdlIscNextActivity(reading)), "loop 2");
    EXPECT_EQ(taken(bsdlIscNextActivity(reading)), "-");
    EXPECT_EQ(bsdlIscNbrOfCaptureStreams(reading), -1) << "behind the last activity";
    EXPECT_EQ(bsdlIscNextFlowBlock(reading), -2);
    EXPECT_EQ(bsdlIscNextFlowBlock(reading), 0);
    EXPECT_EQ(bsdlIscNbrOfActivities(reading), -1);
    EXPECT_EQ(bsdlIscNextFlowBlock(reading), 0);
    EXPECT_EQ(bsdlIscFirstFlowBlock(reading), -1);

    // A flow without blocks has a count, and nothing in it.
    open_flow(reading, "PROC_PROGRAM_DONE");
    bsdlIscFreeFlow(bsdlIscNextFlow(reading));
    EXPECT_EQ(bsdlIscNbrOfFlowBlocks(reading), 0);
    EXPECT_EQ(bsdlIscFirstFlowBlock(reading), 0);
    EXPECT_EQ(taken(bsdlIscFirstActivity(reading)), "-");
}

// Shortest: cycles, microseconds; longest likewise.
const std::pair<const char *, std::array<int32_t, 4>> waits[] = {
    {"TCK 10", {10, 0, 0, 0}},
    {"1.5e-6", {0, 2, 0, 0}},
    {"1.5e-6 MIN, 1.5e-6 MAX", {0, 2, 0, 1}},
    {"2.0e-6 MIN, 2.0e-6 MAX", {0, 2, 0, 2}},
    {"5.0e-6 MIN, 5.0e-6 MAX", {0, 5, 0, 5}},
    {"TCK 3, 1.0e-6 MIN, TCK 9, 1 MAX", {3, 1, 9, 1000000}},
    {"1.0e9 MIN, 1.0e300 MAX", {0, 2147483647, 0, 2147483647}},
    {"1.0e-12", {0, 1, 0, 0}},
};

TEST(IscQueries, Waits)
{
    std::string flow = "F INITIALIZE (MINE 8:1 1)";
    for (const auto &[wait, values] : waits)
        flow += std::string(" (ISC_NOOP WAIT ") + wait + ")";
    Reading reading(Family().with_flow(flow).description());
    EXPECT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(bsdl_check_isc(reading), 0);
    open_flow(reading, "PROC_ERROR_EXIT");
    // An activity whose wait is in error has no record and is the current one all the same.
    EXPECT_EQ(taken(bsdlIscFirstActivity(reading)), "-");
    EXPECT_EQ(bsdlIscNbrOfUpdateStreams(reading), 1);
    for (const auto &[wait, values] : waits) {
        IscActivityInfo *info = bsdlIscNextActivity(reading);
        ASSERT_NE(info, nullptr) << wait;
        EXPECT_EQ(std::to_array(info->v), values) << wait;
        EXPECT_EQ(info->reserved[0] | info->reserved[1], 0);
        bsdlIscFreeActivity(info);
    }
    EXPECT_EQ(bsdlIscNextActivity(reading), nullptr);
}

template <class T> std::function<std::string(Bsdl *)> of(T (*query)(Bsdl *))
{
    return [query](Bsdl *handle) { return taken(query(handle)) + " "; };
}

// The queries of each level, and what they give when there is nothing.
const struct {
    std::vector<std::function<std::string(Bsdl *)>> queries;
    std::string nothing;
} levels[] = {
    {{of(bsdlIscConformance), of(bsdlIscPinBehavior), of(bsdlIscStatus), of(bsdlIscBlankUserStream),
      of(bsdlIscSecurity), of(bsdlIscDesignWarning), of(bsdlIscFirstFixedPin),
      of(bsdlIscNextFixedPin), of(bsdlIscFirstIllegalExit), of(bsdlIscNextIllegalExit)},
     "0 0 0 - - - - - - - "},
    {{of(bsdlIscNbrOfActions), of(bsdlIscFirstAction), of(bsdlIscNextAction),
      [](Bsdl *h) { return taken(bsdlIscSelectAction(h, "PROGRAM", nullptr)); }},
     "-1 - - -"},
    {{of(bsdlIscNbrOfProcedures), of(bsdlIscFirstProc), of(bsdlIscNextProc),
      [](Bsdl *h) { return taken(bsdlIscSelectProc(h, "PROC_ENABLE", nullptr)); }},
     "-1 - - -"},
    {{[](Bsdl *h) { return taken(bsdlIscGetProc(h, "PROC_ENABLE", nullptr)); },
      of(bsdlIscNbrOfFlows)},
     "--1 "},
    {{of(bsdlIscFirstFlow), of(bsdlIscNextFlow)}, "- - "},
    {{of(bsdlIscNbrOfFlowBlocks), of(bsdlIscFirstFlowBlock), of(bsdlIscNextFlowBlock)}, "-1 0 0 "},
    {{of(bsdlIscNbrOfActivities), of(bsdlIscFirstActivity), of(bsdlIscNextActivity)}, "-1 - - "},
    {{of(bsdlIscNbrOfUpdateStreams), of(bsdlIscFirstUpdateStream), of(bsdlIscNextUpdateStream)},
     "-1 - - "},
    {{of(bsdlIscNbrOfCaptureStreams), of(bsdlIscFirstCaptureStream), of(bsdlIscNextCaptureStream)},
     "-1 - - "},
};

void expect_nothing(Bsdl *handle)
{
    for (const auto &level : levels) {
        std::string given;
        for (const auto &query : level.queries)
            given += query(handle);
        EXPECT_EQ(given, level.nothing) << &level - levels;
    }
}

TEST(IscQueries, NothingUnlessTheCheckHasPassed)
{
    expect_nothing(nullptr);
    Reading reading(family().description());
    EXPECT_EQ(bsdl_check(reading), 0);
    expect_nothing(reading);
    EXPECT_EQ(bsdl_check_isc_procedures(reading), 0);
    expect_nothing(reading);
    Reading failed(family().with(ILLEGAL_EXIT, "NO_SUCH").description());
    EXPECT_EQ(bsdl_check_isc(failed), 100);
    expect_nothing(failed);
}

// ------------------------------------------------------------------------------- PPC/PRG files

TEST(IscQueries, PartsOfADataFile)
{
    Reading reading(read_text(example("two_taps.prg")));
    reading.clear();
    EXPECT_EQ(bsdlIscConformance(reading), 0) << "no part is selected";
    EXPECT_TRUE(reading.has("\tISC tests done PASS")) << "the first query makes up for the check";
    reading.clear();
    bsdlPrgSelectProgPart(reading, "U1");
    EXPECT_EQ(bsdlIscPinBehavior(reading), ISC_PIN_BEHAVIOR_HIGHZ);
    EXPECT_EQ(taken(bsdlIscFirstAction(reading)), "PROGRAM");
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 3);
    bsdlPrgSelectProgPart(reading, "U2");
    EXPECT_EQ(bsdlIscPinBehavior(reading), ISC_PIN_BEHAVIOR_CLAMP);
    EXPECT_EQ(taken(bsdlIscFirstAction(reading)), "FINISH");
    EXPECT_STREQ(bsdlIscDesignWarning(reading), "The write protect switch must be open.");
    bsdlPrgSelectProgPart(reading, "U1");
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 3);
    bsdlPrgSelectProgPart(reading, "U3");
    expect_nothing(reading);
    expect_messages(reading.messages(), {});
}

TEST(IscQueries, DataFileThatFailsItsCheck)
{
    std::string text = read_text(example("two_taps.prg"));
    size_t at = text.find("(FLOW_ENABLE, FLOW_PROGRAM(ARRAY))");
    ASSERT_NE(at, std::string::npos);
    Reading reading(text.replace(at, 12, "(NO_SUCH_ONE"));
    bsdlPrgSelectProgPart(reading, "U1");
    reading.clear();
    EXPECT_EQ(bsdlIscPinBehavior(reading), 0);
    EXPECT_TRUE(reading.has("flow NO_SUCH_ONE does not exist in flow_description_list"));
}

} // namespace
