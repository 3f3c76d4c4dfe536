#include "isc/isc.h"

#include "isc_family.h"

#include <cstdlib>
#include <functional>

using namespace support;
using namespace isc_family;

namespace
{

// A golden file beside this one; rewritten when TARNLET_UPDATE=1 stands in the environment, to be
// reviewed then.
void expect_golden(const std::string &name, const std::string &text)
{
    std::string path = std::string(TARNLET_SOURCE_DIR) + "/tests/isc/" + name;
    if (const char *update = std::getenv("TARNLET_UPDATE"); update && *update == '1')
        write_text(path, text);
    if (read_text(path) == text)
        return;
    write_text(path + ".got", text);
    ADD_FAILURE() << "not as in " << name << ": compare it with " << path
                  << ".got; it is rewritten when TARNLET_UPDATE=1 stands in the environment";
}

TEST(IscQueries, WholeTreeOf2002)
{
    Reading reading(read_text(example("isc_2002.bsd")));
    expect_passed(reading);
    expect_golden("isc_2002.golden", tree_text(reading));
    // A second walk finds every cursor where it was.
    expect_golden("isc_2002.golden", tree_text(reading));
}

TEST(IscQueries, WholeTreeOf2001)
{
    Reading reading(read_text(example("isc_2001.bsd")));
    expect_clean(reading);
    EXPECT_EQ(reading.check(bsdl_check_isc), 100);
    expect_messages(errors_and_warnings(reading.messages()),
                    {{ERROR, "port_id 'I' not found"},
                     {ERROR, "\tISC fixed pins description has errors"},
                     {ERROR, "    BSDL ISC semantic checks failed"}});
    // The fixed pins stand in the way of the queries, but not of this test.
    reading.handle()->data->check_passed |= 0x10;
    expect_golden("isc_2001.golden", tree_text(reading));
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

std::string name_of(const IscAction *action) { return action ? action->action_name : "-"; }
std::string name_of(const IscActionSpec *spec) { return spec ? spec->procedure_name : "-"; }
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

TEST(IscQueries, LastActionStaysCurrentAtTheEndOnly)
{
    Reading reading(family().description());
    expect_passed(reading);
    bsdlIscFirstAction(reading);
    bsdlIscNextAction(reading);
    EXPECT_EQ(name_of(bsdlIscNextAction(reading)), "LAST");
    // At the end the cursor stands behind the last action, which is still the current one ...
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 1);
    EXPECT_EQ(name_of(bsdlIscFirstProc(reading)), "PROC_PROGRAM_DONE");
    // ... and asking took the cursor back.
    EXPECT_EQ(reading.handle()->data->isc->action_cursor, 2);
    // One step further there is none.
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(bsdlIscNextAction(reading), nullptr);
    EXPECT_EQ(reading.handle()->data->isc->action_cursor, 4);
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), -1);
    EXPECT_EQ(bsdlIscFirstProc(reading), nullptr);
    EXPECT_EQ(bsdlIscNbrOfFlows(reading), -1);
    EXPECT_EQ(name_of(bsdlIscFirstAction(reading)), "PROGRAM");
}

TEST(IscQueries, LastProcedureStaysCurrent)
{
    Reading reading(family().description());
    expect_passed(reading);
    bsdlIscFirstAction(reading);
    bsdlIscFirstProc(reading);
    EXPECT_EQ(name_of(bsdlIscNextProc(reading)), "PROC_PROGRAM");
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(bsdlIscNextProc(reading), nullptr);
        EXPECT_EQ(bsdlIscNbrOfFlows(reading), 3);
    }
}

TEST(IscQueries, SelectingByName)
{
    Reading reading(family().description());
    expect_passed(reading);
    EXPECT_EQ(name_of(bsdlIscSelectAction(reading, "erase", nullptr)), "ERASE");
    // Misses leave everything.
    EXPECT_EQ(bsdlIscSelectAction(reading, "PROGRAM", nullptr), nullptr);
    EXPECT_EQ(bsdlIscSelectAction(reading, "ERASE", "ARRAY"), nullptr);
    EXPECT_EQ(bsdlIscSelectAction(reading, "NEVER_HEARD", nullptr), nullptr);
    EXPECT_EQ(bsdlIscSelectAction(reading, "PROGRAM", "NEVER_HEARD"), nullptr);
    EXPECT_EQ(bsdlIscSelectAction(reading, nullptr, "ARRAY"), nullptr);
    EXPECT_EQ(name_of(bsdlIscSelectProc(reading, "Proc_Enable", nullptr)), "PROC_ENABLE");
    EXPECT_EQ(bsdlIscSelectProc(reading, "PROC_PROGRAM", nullptr), nullptr) << "of another action";
    EXPECT_EQ(taken(bsdlIscFirstFlow(reading)), "EN");
    EXPECT_EQ(bsdlIscNextProc(reading), nullptr);
    EXPECT_EQ(name_of(bsdlIscNextAction(reading)), "LAST");
    EXPECT_EQ(name_of(bsdlIscSelectAction(reading, "program", "array")), "PROGRAM");
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

struct WaitRow {
    const char *wait;
    std::array<int32_t, 4> values; // shortest: cycles, microseconds; longest likewise
};

const WaitRow waits[] = {
    {"TCK 10", {10, 0, 0, 0}},
    {"1.5e-6", {0, 2, 0, 0}},
    {"1.5e-6 MIN, 1.5e-6 MAX", {0, 2, 0, 1}},
    {"2.0e-6 MIN, 2.0e-6 MAX", {0, 2, 0, 2}},
    {"5.0e-6 MIN, 5.0e-6 MAX", {0, 5, 0, 5}},
    {"TCK 3, 1.0e-6 MIN, TCK 9, 1 MAX", {3, 1, 9, 1000000}},
    {"1.0e9 MIN, 1.0e300 MAX", {0, 2147483647, 0, 2147483647}},
    {"1.0e-12", {0, 1, 0, 0}},
};

TEST(IscQueries, TimesInMicroseconds)
{
    std::string flow = "F INITIALIZE";
    for (const WaitRow &row : waits)
        flow += std::string(" (ISC_NOOP WAIT ") + row.wait + ")";
    Reading reading(Family().with_flow(flow).description());
    expect_passed(reading);
    open_flow(reading, "PROC_ERROR_EXIT");
    IscActivityInfo *info = bsdlIscFirstActivity(reading);
    for (const WaitRow &row : waits) {
        ASSERT_NE(info, nullptr) << row.wait;
        for (int i = 0; i < 4; i++)
            EXPECT_EQ(info->v[i], row.values[i]) << row.wait << ", value " << i;
        EXPECT_EQ(info->reserved[0], 0);
        EXPECT_EQ(info->reserved[1], 0);
        bsdlIscFreeActivity(info);
        info = bsdlIscNextActivity(reading);
    }
    EXPECT_EQ(info, nullptr);
}

TEST(IscQueries, ActivityWithoutWaitIsCurrentAllTheSame)
{
    Reading reading(
        Family().with_flow("F INITIALIZE (MINE 8:1 1) (ISC_ENABLE WAIT TCK 4)").description());
    EXPECT_EQ(bsdl_check(reading), 0);
    EXPECT_EQ(bsdl_check_isc(reading), 0);
    open_flow(reading, "PROC_ERROR_EXIT");
    EXPECT_EQ(taken(bsdlIscFirstActivity(reading)), "-");
    EXPECT_EQ(bsdlIscNbrOfUpdateStreams(reading), 1);
    EXPECT_EQ(taken(bsdlIscNextActivity(reading)), "ISC_ENABLE");
}

// Every query, as text: "0" and "-" stand for nothing.
struct Query {
    const char *name;
    std::function<std::string(Bsdl *)> ask;
    const char *nothing;
};

std::string number(int32_t value) { return std::to_string(value); }
std::string given(const void *record) { return record ? "something" : "-"; }

const Query queries[] = {
    {"Conformance", [](Bsdl *h) { return number(bsdlIscConformance(h)); }, "0"},
    {"PinBehavior", [](Bsdl *h) { return number(bsdlIscPinBehavior(h)); }, "0"},
    {"Status", [](Bsdl *h) { return number(bsdlIscStatus(h)); }, "0"},
    {"BlankUserStream", [](Bsdl *h) { return given(bsdlIscBlankUserStream(h)); }, "-"},
    {"Security", [](Bsdl *h) { return given(bsdlIscSecurity(h)); }, "-"},
    {"DesignWarning", [](Bsdl *h) { return given(bsdlIscDesignWarning(h)); }, "-"},
    {"FirstFixedPin", [](Bsdl *h) { return given(bsdlIscFirstFixedPin(h)); }, "-"},
    {"NextFixedPin", [](Bsdl *h) { return given(bsdlIscNextFixedPin(h)); }, "-"},
    {"FirstIllegalExit", [](Bsdl *h) { return given(bsdlIscFirstIllegalExit(h)); }, "-"},
    {"NextIllegalExit", [](Bsdl *h) { return given(bsdlIscNextIllegalExit(h)); }, "-"},
    {"NbrOfActions", [](Bsdl *h) { return number(bsdlIscNbrOfActions(h)); }, "-1"},
    {"FirstAction", [](Bsdl *h) { return given(bsdlIscFirstAction(h)); }, "-"},
    {"NextAction", [](Bsdl *h) { return given(bsdlIscNextAction(h)); }, "-"},
    {"SelectAction", [](Bsdl *h) { return given(bsdlIscSelectAction(h, "PROGRAM", nullptr)); },
     "-"},
    {"NbrOfProcedures", [](Bsdl *h) { return number(bsdlIscNbrOfProcedures(h)); }, "-1"},
    {"FirstProc", [](Bsdl *h) { return given(bsdlIscFirstProc(h)); }, "-"},
    {"NextProc", [](Bsdl *h) { return given(bsdlIscNextProc(h)); }, "-"},
    {"SelectProc", [](Bsdl *h) { return given(bsdlIscSelectProc(h, "PROC_ENABLE", nullptr)); },
     "-"},
    {"GetProc", [](Bsdl *h) { return taken(bsdlIscGetProc(h, "PROC_ENABLE", nullptr)); }, "-"},
    {"NbrOfFlows", [](Bsdl *h) { return number(bsdlIscNbrOfFlows(h)); }, "-1"},
    {"FirstFlow", [](Bsdl *h) { return taken(bsdlIscFirstFlow(h)); }, "-"},
    {"NextFlow", [](Bsdl *h) { return taken(bsdlIscNextFlow(h)); }, "-"},
    {"NbrOfFlowBlocks", [](Bsdl *h) { return number(bsdlIscNbrOfFlowBlocks(h)); }, "-1"},
    {"FirstFlowBlock", [](Bsdl *h) { return number(bsdlIscFirstFlowBlock(h)); }, "0"},
    {"NextFlowBlock", [](Bsdl *h) { return number(bsdlIscNextFlowBlock(h)); }, "0"},
    {"NbrOfActivities", [](Bsdl *h) { return number(bsdlIscNbrOfActivities(h)); }, "-1"},
    {"FirstActivity", [](Bsdl *h) { return taken(bsdlIscFirstActivity(h)); }, "-"},
    {"NextActivity", [](Bsdl *h) { return taken(bsdlIscNextActivity(h)); }, "-"},
    {"NbrOfUpdateStreams", [](Bsdl *h) { return number(bsdlIscNbrOfUpdateStreams(h)); }, "-1"},
    {"FirstUpdateStream", [](Bsdl *h) { return given(bsdlIscFirstUpdateStream(h)); }, "-"},
    {"NextUpdateStream", [](Bsdl *h) { return given(bsdlIscNextUpdateStream(h)); }, "-"},
    {"NbrOfCaptureStreams", [](Bsdl *h) { return number(bsdlIscNbrOfCaptureStreams(h)); }, "-1"},
    {"FirstCaptureStream", [](Bsdl *h) { return given(bsdlIscFirstCaptureStream(h)); }, "-"},
    {"NextCaptureStream", [](Bsdl *h) { return given(bsdlIscNextCaptureStream(h)); }, "-"},
};

void expect_nothing(Bsdl *handle)
{
    for (const Query &query : queries)
        EXPECT_EQ(query.ask(handle), query.nothing) << query.name;
}

TEST(IscQueries, NothingBeforeTheCheckHasPassed)
{
    expect_nothing(nullptr);
    Reading reading(family().description());
    EXPECT_EQ(bsdl_check(reading), 0);
    expect_nothing(reading);
    for (auto *single : {bsdl_check_isc_pin_behaviour, bsdl_check_isc_procedures})
        EXPECT_EQ(single(reading), 0);
    expect_nothing(reading);
}

TEST(IscQueries, NothingAfterAFailedCheck)
{
    Reading reading(family().with(ILLEGAL_EXIT, "NO_SUCH").description());
    EXPECT_EQ(bsdl_check_isc(reading), 100);
    expect_nothing(reading);
    Reading plain((Description()));
    EXPECT_EQ(bsdl_check_isc(plain) >= 100, true);
    expect_nothing(plain);
}

// A level taken away under queries that have passed the check: nothing below it is found.
TEST(IscQueries, NothingBelowAMissingLevel)
{
    struct Level {
        const char *name;
        void (*take)(IscData *);
        const char *first; // of the queries that find nothing, and the last
        const char *last;
    };
    const Level levels[] = {
        {"actions", [](IscData *isc) { isc->actions = nullptr; }, "NbrOfProcedures", "SelectProc"},
        {"procedures", [](IscData *isc) { isc->procedures = nullptr; }, "GetProc", "NextFlow"},
        {"flows", [](IscData *isc) { isc->flows = nullptr; }, "FirstFlow", "NextCaptureStream"},
        {"current flow", [](IscData *isc) { isc->flow_cursor = 77; }, "NbrOfFlowBlocks",
         "NextCaptureStream"},
        {"current action", [](IscData *isc) { isc->action_cursor = 77; }, "NbrOfProcedures",
         "SelectProc"},
    };
    for (const Level &level : levels) {
        SCOPED_TRACE(level.name);
        Reading reading(family().description());
        expect_passed(reading);
        IscData *isc = reading.handle()->data->isc;
        isc->tables = nullptr;
        level.take(isc);
        int asked = 0;
        for (const Query &query : queries) {
            if (!asked && query.name != std::string(level.first))
                continue;
            asked++;
            EXPECT_EQ(query.ask(reading), query.nothing) << query.name;
            if (query.name == std::string(level.last))
                break;
        }
        EXPECT_GT(asked, 1);
    }
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
    EXPECT_EQ(name_of(bsdlIscFirstAction(reading)), "PROGRAM");
    EXPECT_EQ(bsdlIscNbrOfProcedures(reading), 3);
    bsdlPrgSelectProgPart(reading, "U2");
    EXPECT_EQ(bsdlIscPinBehavior(reading), ISC_PIN_BEHAVIOR_CLAMP);
    EXPECT_EQ(name_of(bsdlIscFirstAction(reading)), "FINISH");
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
