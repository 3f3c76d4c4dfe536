#include "isc/isc.h"

#include "isc_family.h"

using namespace support;
using namespace isc_family;

namespace
{

// The first flow of a family of one, read and not checked.
struct FlowReading {
    explicit FlowReading(const std::string &flow)
        : family(Family().with_flow(flow)), reading(family.description())
    {
        const IscData *isc = reading.handle() ? reading.handle()->data->isc : nullptr;
        if (isc && isc->flows)
            this->flow = static_cast<IscFlow *>(isc->flows->data);
    }

    const IscActivity *activity(unsigned position = 0) const
    {
        if (!flow || !flow->blocks)
            return nullptr;
        auto *block = static_cast<IscBlock *>(flow->blocks->data);
        return static_cast<IscActivity *>(g_slist_nth_data(block->activities, position));
    }
    Messages complaints() const { return errors_and_warnings(reading.messages()); }
    std::string line() const { return std::to_string(family.line(FLOW)); }

    Family family;
    Reading reading;
    IscFlow *flow = nullptr;
};

std::string in_activity(const std::string &text)
{
    return "F(ARRAY) INITIALIZE (MINE " + text + ")";
}

std::string updates_of(const IscActivity *activity)
{
    std::string text;
    for (const GSList *link = activity->update_fields; link; link = link->next) {
        const auto *field = static_cast<const IscUpdateField *>(link->data);
        text += (text.empty() ? "" : " ") + std::to_string(field->field_width) + ":" +
                expression_text(field->expression);
    }
    return text;
}

std::string captures_of(const IscActivity *activity)
{
    std::string text;
    for (const GSList *link = activity->capture_fields; link; link = link->next) {
        const auto *field = static_cast<const IscCaptureField *>(link->data);
        text += (text.empty() ? "" : " ") + std::to_string(field->field_width) + ":" +
                std::to_string(field->expected_output) + expression_text(field->expected) + "*" +
                std::to_string(field->mask_output) + expression_text(field->mask) + ":" +
                std::to_string(field->tag);
    }
    return text;
}

std::string duration_text(const IscDuration *duration)
{
    if (!duration)
        return "-";
    std::string text;
    if (duration->clock_cycles) {
        text = duration->clock_cycles->port->name;
        if (duration->clock_cycles->port->subscripted)
            text += "(" + std::to_string(duration->clock_cycles->port->subscript) + ")";
        text += " " + std::to_string(duration->clock_cycles->cycle_count);
    }
    return text + "/" + std::to_string(duration->time);
}

struct Row {
    const char *text;
    const char *want;
};

TEST(IscFlow, UpdateExpressions)
{
    const Row rows[] = {
        {"8:5A", "8:1/-1/0/5A/0"},
        {"8:00ff", "8:1/-1/0/00ff/0"},
        {"8:10", "8:1/-1/0/10/0"},
        {"8", "8:-"},
        {"8:?", "8:4/-1/0/-/0"},
        {"8:?!", "8:12/-1/0/-/0"},
        {"8:$a=3C", "8:3/0/0/3C/1"},
        {"8:$a?", "8:6/0/0/-/1"},
        {"8:$a ?!", "8:14/0/0/-/1"},
        {"8:$a=0,8:$a", "8:3/0/0/0/1 8:2/0/0/-/0"},
        {"8:$a=0,8:$a+10,8:AB", "8:3/0/0/0/1 8:18/0/10/-/0 8:1/-1/0/AB/0"},
        {"8:$a=0,8:$a - 3", "8:3/0/0/0/1 8:34/0/3/-/0"},
        {"8:$a=0,8:$a<<2", "8:3/0/0/0/1 8:50/0/2/-/0"},
        {"8:$a=0,8:$a >> 2", "8:3/0/0/0/1 8:66/0/2/-/0"},
        {"8:$a=0,8:$a~", "8:3/0/0/0/1 8:82/0/0/-/0"},
        // Names that differ in case are two variables; one given twice stays one.
        {"8:$a=1,8:$A=2,8:$a=3", "8:3/0/0/1/1 8:3/1/0/2/1 8:3/0/0/3/1"},
    };
    for (const Row &row : rows) {
        FlowReading flow(in_activity(std::string(row.text) + " WAIT TCK 1"));
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), {});
        ASSERT_NE(flow.activity(), nullptr);
        EXPECT_EQ(updates_of(flow.activity()), row.want);
    }
}

TEST(IscFlow, CaptureFields)
{
    const Row rows[] = {
        {"8:5A", "8:01/-1/0/5A/0*0-:0"},
        {"8:", "8:0-*0-:0"},
        {"8:!", "8:5-*0-:0"},
        {"8:!5A*FF", "8:51/-1/0/5A/0*01/-1/0/FF/0:0"},
        {"8:*!", "8:0-*5-:0"},
        {"8:*!0F:CRC", "8:0-*51/-1/0/0F/0:1"},
        {"8:?:OST,4:A", "8:04/-1/0/-/0*0-:2 4:01/-1/0/A/0*0-:0"},
        {"8:$a=1*$b?:CRC:OST", "8:03/0/0/1/1*06/1/0/-/1:3"},
        {"8:$a=1,8:$a+1*$a~", "8:03/0/0/1/1*0-:0 8:018/0/1/-/0*082/0/0/-/0:0"},
    };
    for (const Row &row : rows) {
        FlowReading flow(in_activity(std::string("WAIT 1.0e-3 ") + row.text));
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), {});
        ASSERT_NE(flow.activity(), nullptr);
        EXPECT_EQ(captures_of(flow.activity()), row.want);
    }
    FlowReading turned(in_activity("WAIT TCK 1 8:5A:OST:CRC"));
    expect_messages(turned.complaints(),
                    {{WARNING, "Capture field tags order should be :CRC:OST", 2}});
    EXPECT_EQ(captures_of(turned.activity()), "8:01/-1/0/5A/0*0-:3");
}

TEST(IscFlow, Durations)
{
    const Row rows[] = {
        {"TCK 10", "TCK 10/0.000000 -"},
        {"D(1) 10", "D(1) 10/0.000000 -"},
        {"1.5", "/1.500000 -"},
        {"7", "/7.000000 -"},
        {".5e1 MIN", "/5.000000 -"},
        {"TCK 3, 0.25", "TCK 3/0.250000 -"},
        {"TCK 3 MIN, TCK 4 MAX", "TCK 3/0.000000 TCK 4/0.000000"},
        {"0.25 MIN, 0.5 MAX", "/0.250000 /0.500000"},
        {"0.25 MIN, TCK 4, 1.0E0 MAX", "/0.250000 TCK 4/1.000000"},
        {"D(0) 3, 2 MIN, D(1) 4, 3 MAX", "D(0) 3/2.000000 D(1) 4/3.000000"},
    };
    for (const Row &row : rows) {
        // Each also has to leave the scanner ready for the width behind it.
        FlowReading flow(in_activity(std::string("WAIT ") + row.text + " 8:5A"));
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), {});
        ASSERT_NE(flow.activity(), nullptr);
        const IscWait *wait = flow.activity()->wait;
        ASSERT_NE(wait, nullptr);
        EXPECT_EQ(duration_text(wait->min_duration) + " " + duration_text(wait->max_duration),
                  row.want);
        EXPECT_EQ(captures_of(flow.activity()), "8:01/-1/0/5A/0*0-:0");
    }
}

TEST(IscFlow, BlocksAndLoops)
{
    FlowReading reading("F INITIALIZE (MINE WAIT 1) LOOP MIN 2 MAX 5 ((ADD WAIT 1) (FACE WAIT 1)) "
                        "(MINE WAIT 1) REPEAT 3 (MINE WAIT 1) REPEAT 4 LOOP MAX 6 ((MINE WAIT 1)) "
                        "TERMINATE (MINE WAIT 1)");
    expect_messages(reading.complaints(), {});
    ASSERT_NE(reading.flow, nullptr);
    std::string text;
    for (const GSList *link = reading.flow->blocks; link; link = link->next) {
        const auto *block = static_cast<const IscBlock *>(link->data);
        text += std::to_string(block->block_type) + "*" + std::to_string(block->repeat_count) + ":";
        for (const GSList *each = block->activities; each; each = each->next) {
            const auto *activity = static_cast<const IscActivity *>(each->data);
            text += std::string(" ") +
                    (activity->instruction_name ? activity->instruction_name : "") + "/" +
                    std::to_string(activity->kind) + std::to_string(activity->max_loop) +
                    std::to_string(activity->min_loop);
        }
        text += "\n";
    }
    EXPECT_EQ(text, "0*1: MINE/000 /152 ADD/000 FACE/000 /200 MINE/000\n"
                    "1*3: MINE/000\n"
                    "1*4: /160 MINE/000 /200\n"
                    "2*1: MINE/000\n");
    FlowReading nothing("F");
    expect_messages(nothing.complaints(), {});
    ASSERT_NE(nothing.flow, nullptr);
    EXPECT_EQ(nothing.flow->blocks, nullptr);
}

// -------------------------------------------------------------------------- what is complained of

struct Complaint {
    const char *text;
    ExpectedMessages messages;
};

TEST(IscFlow, ValuesThatAreTooSmallAreKept)
{
    const Complaint rows[] = {
        {"0:5A WAIT TCK 1", {{ERROR, "field_width must be > 0", 2}}},
        {"WAIT TCK 1 0:5A", {{ERROR, "field_width must be > 0", 2}}},
        {"WAIT TCK 0",
         {{ERROR, "Value of cycle_count in duration spec should be greater than 0 (now 0)", 1}}},
        {"WAIT 0.0",
         {{ERROR, "Value of time in duration spec should be greater than 0 (now 0.000000)", 1}}},
        {"WAIT TCK 1) LOOP MIN 0 MAX 0 ((MINE WAIT TCK 1)",
         {{ERROR, "loop_count must be > 0", 2}, {ERROR, "loop_count must be > 0", 2}}},
        {"WAIT TCK 1) LOOP MIN 5 MAX 3 ((MINE WAIT TCK 1)", {}},
        {"WAIT TCK 1) REPEAT 0 (MINE WAIT TCK 1", {{ERROR, "repeat_count must be > 0", 2}}},
    };
    for (const Complaint &row : rows) {
        FlowReading flow(in_activity(row.text));
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), row.messages);
        EXPECT_EQ(bsdlGetNumErrors(flow.reading), 0);
        EXPECT_NE(flow.flow, nullptr);
    }
}

TEST(IscFlow, WidthsOfVariables)
{
    const Complaint rows[] = {
        {"8:$v=5A WAIT TCK 1 16:$v",
         {{ERROR, "ISC variable '$v[8]' incorrect length, should be 16", 2}}},
        {"8:$v=5A,4:$v+1,8:$v,5:$v~ WAIT TCK 1",
         {{ERROR, "ISC variable '$v[8]' incorrect length, should be 4", 2},
          {ERROR, "ISC variable '$v[8]' incorrect length, should be 5", 2}}},
        // The expected data come before the mask; a new definition gives a new length.
        {"8:$v=5A,6:$w? WAIT TCK 1 7:$v*$w,9:$v=1*$v",
         {{ERROR, "ISC variable '$v[8]' incorrect length, should be 7", 2},
          {ERROR, "ISC variable '$w[6]' incorrect length, should be 7", 2}}},
    };
    for (const Complaint &row : rows) {
        FlowReading flow(in_activity(row.text));
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), row.messages);
        EXPECT_EQ(bsdlGetNumErrors(flow.reading), 0);
    }
}

std::string assignments(int first, int last)
{
    std::string text;
    for (int i = first; i <= last; i++)
        text += (i == first ? "1:$v" : ",1:$v") + std::to_string(i) + "=1";
    return text;
}

TEST(IscFlow, TableOfVariables)
{
    const char TOO_MANY[] = "Too many variables in this flow definition";
    FlowReading full(in_activity(assignments(1, 51) + ",1:$v51 WAIT TCK 1"));
    expect_messages(full.complaints(), {});
    ASSERT_NE(full.flow, nullptr);
    EXPECT_EQ(full.flow->variable_count, 51);
    EXPECT_STREQ(full.flow->variables[50]->name, "$v51");
    EXPECT_STREQ(full.flow->variables[50]->value, "1");
    EXPECT_EQ(full.flow->variables[50]->length, 0);
    EXPECT_EQ(full.flow->variables[51], nullptr);

    // One more has no place; nor has one that is there, once the table is full. Neither is held to
    // a length.
    FlowReading over(in_activity(assignments(1, 52) + ",1:$v1=1 WAIT TCK 1"));
    expect_messages(over.complaints(), {{ERROR, TOO_MANY, 2}, {ERROR, TOO_MANY, 2}});
    EXPECT_EQ(bsdlGetNumErrors(over.reading), 0);
    EXPECT_EQ(over.flow->variable_count, 51);

    // Each flow begins with an empty table, also behind one that was ignored.
    FlowReading next("F " + in_activity(assignments(1, 51) + " WAIT TCK 1").substr(9) + ", F " +
                     in_activity(assignments(1, 51) + " WAIT TCK 1").substr(9) +
                     ", G INITIALIZE (MINE 8:$v1? WAIT TCK 1)");
    expect_messages(next.complaints(), {{WARNING, "flow descriptor F exists, ignored", 2}});
    const auto *last =
        static_cast<IscFlow *>(g_slist_last(next.reading.handle()->data->isc->flows)->data);
    EXPECT_EQ(last->variable_count, 1);
    EXPECT_STREQ(last->variables[0]->value, "?");
}

TEST(IscFlow, VariablesNotDefined)
{
    // In a capture field the wait catches the error, in an update field the whole statement.
    FlowReading capture(in_activity("WAIT TCK 1 8:$u") + ", G INITIALIZE (MINE WAIT TCK 1)");
    expect_messages(capture.complaints(),
                    {{ERROR, "Variable '$u' not defined on line " + capture.line(), 2},
                     {ERROR, "wait_specification", 1}});
    EXPECT_EQ(bsdlGetNumErrors(capture.reading), 1);
    ASSERT_NE(capture.activity(), nullptr);
    EXPECT_EQ(capture.activity()->wait, nullptr);

    FlowReading update(in_activity("8:$u+1 WAIT TCK 1"));
    Messages complaints = update.complaints();
    ASSERT_EQ(complaints.size() >= 2, true);
    complaints.resize(1);
    expect_messages(complaints, {{ERROR, "Variable '$u' not defined on line " + update.line(), 2}});
    EXPECT_EQ(bsdlGetNumErrors(update.reading), 1);
    EXPECT_TRUE(update.reading.has("Skipping isc_flow due to errors"));
}

TEST(IscFlow, WaitsInError)
{
    // Once for every token that is dropped until the activity goes on.
    FlowReading missing(in_activity("8:5A 1 2"));
    expect_messages(missing.complaints(),
                    {{ERROR,
                      "parse error, expecting `error' or `Y_ISC_WAIT', found '1' on line " +
                          missing.line() + "\n",
                      1},
                     {ERROR, "wait_specification", 1},
                     {ERROR, "wait_specification", 1},
                     {ERROR, "wait_specification", 1}});
    ASSERT_NE(missing.activity(), nullptr);
    EXPECT_EQ(missing.activity()->wait, nullptr);

    FlowReading duration(in_activity("WAIT ! MIN 8:5A"));
    expect_messages(picked(duration.complaints(),
                           [](const Message &message) {
                               return message.text.compare(0, 11, "parse error") != 0;
                           }),
                    {{ERROR, "duration_specification", 1},
                     {ERROR, "wait_specification", 1},
                     {ERROR, "wait_specification", 1}});
    ASSERT_NE(duration.activity(), nullptr);
    EXPECT_EQ(duration.activity()->wait, nullptr);
    EXPECT_EQ(captures_of(duration.activity()), "8:01/-1/0/5A/0*0-:0");
}

TEST(IscFlow, FlowsOfOneName)
{
    const Complaint rows[] = {
        {"F, f", {{WARNING, "flow descriptor f exists, ignored", 2}}},
        {"F(ARRAY), F(array) UNPROCESSED, F(SECURITY), F, G(ARRAY)",
         {{WARNING, "flow descriptor F (ARRAY) exists, ignored", 2}}},
        {"F_Q, F(Q)", {{WARNING, "flow descriptor F (Q) exists, ignored", 2}}},
        {"F(q), f_Q", {{WARNING, "flow descriptor f_Q exists, ignored", 2}}},
        {"A_B(C), A(B_C)", {{WARNING, "flow descriptor A (B_C) exists, ignored", 2}}},
        {"F(Security), F(SECURITY)",
         {{WARNING, "flow descriptor F (SECURITY) exists, ignored", 2}}},
    };
    for (const Complaint &row : rows) {
        FlowReading flow(row.text);
        SCOPED_TRACE(row.text);
        expect_messages(flow.complaints(), row.messages);
        EXPECT_EQ(bsdlGetNumErrors(flow.reading), 0);
    }
    // A second statement does not know the first one's names.
    Reading two(Family().description().with(EXTENSIONS, Family().text() + "\n" + Family().text()));
    expect_messages(errors_and_warnings(two.messages()), {});
}

TEST(IscFlow, ManyFlowsAndActivities)
{
    std::string flows = "F";
    for (int i = 0; i < 10000; i++)
        flows += ",\" &\n\"F" + std::to_string(i) + " INITIALIZE (MINE 8:$a=1 WAIT TCK 1)";
    FlowReading many(flows);
    expect_messages(many.complaints(), {});
    EXPECT_EQ(g_slist_length(many.reading.handle()->data->isc->flows), 10001u);

    std::string activities = "F INITIALIZE";
    for (int i = 0; i < 100000; i++)
        activities += i % 100 ? " (MINE 8:FF WAIT TCK 1)" : "\" &\n\" (MINE 8:FF WAIT TCK 1)";
    Reading reading(Family().with_flow(activities).description());
    expect_passed(reading);
    open_flow(reading, "PROC_ERROR_EXIT");
    int count = 0;
    for (IscActivityInfo *info = bsdlIscFirstActivity(reading); info;
         info = bsdlIscNextActivity(reading)) {
        count += bsdlIscNbrOfUpdateStreams(reading);
        bsdlIscFreeActivity(info);
    }
    EXPECT_EQ(count, 100000);
}

} // namespace
