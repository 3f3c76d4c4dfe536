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

    const IscActivity *activity() const
    {
        if (!flow || !flow->blocks)
            return nullptr;
        return static_cast<IscActivity *>(
            static_cast<IscBlock *>(flow->blocks->data)->activities->data);
    }
    Messages complaints() const { return errors_and_warnings(reading.messages()); }

    Family family;
    Reading reading;
    IscFlow *flow = nullptr;
};

std::string in_activity(const std::string &text)
{
    return "F(ARRAY) INITIALIZE (MINE " + text + ")";
}

template <class T> std::string list_text(const GSList *link, std::string (*text_of)(const T *))
{
    std::string text;
    for (; link; link = link->next)
        text += (text.empty() ? "" : " ") + text_of(static_cast<const T *>(link->data));
    return text;
}

std::string updates_of(const IscActivity *activity)
{
    return list_text(activity->update_fields, update_text);
}

std::string captures_of(const IscActivity *activity)
{
    return list_text(activity->capture_fields, capture_text);
}

std::string duration_text(const IscDuration *duration)
{
    if (!duration)
        return "-";
    std::string text;
    if (const ClockCycles *cycles = duration->clock_cycles)
        text =
            cycles->port->name +
            (cycles->port->subscripted ? "(" + std::to_string(cycles->port->subscript) + ")" : "") +
            " " + std::to_string(cycles->cycle_count);
    return text + "/" + std::to_string(duration->time);
}

// The wait, and what stands after it: each wait has to leave the scanner ready for a width.
std::string wait_of(const IscActivity *activity)
{
    if (!activity->wait)
        return "-";
    return duration_text(activity->wait->min_duration) + " " +
           duration_text(activity->wait->max_duration) + " " + captures_of(activity);
}

struct Form {
    const char *text;
    const char *want;
};

void expect_forms(const std::string &before, const std::vector<Form> &forms,
                  const std::string &behind, std::string (*text_of)(const IscActivity *))
{
    for (const Form &form : forms) {
        FlowReading flow(in_activity(before + form.text + behind));
        SCOPED_TRACE(form.text);
        expect_messages(flow.complaints(), {});
        ASSERT_NE(flow.activity(), nullptr);
        EXPECT_EQ(text_of(flow.activity()), form.want);
    }
}

TEST(IscFlow, FormsOfExpressionsAndWaits)
{
    expect_forms("",
                 {{"8:5A", "8:1/-1/0/5A/0"},
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
                  {"8:$a=1,8:$A=2,8:$a=3", "8:3/0/0/1/1 8:3/1/0/2/1 8:3/0/0/3/1"}},
                 " WAIT TCK 1", updates_of);
    expect_forms("WAIT 1.0e-3 ",
                 {{"8:5A", "8:01/-1/0/5A/0*0-:0"},
                  {"8:", "8:0-*0-:0"},
                  {"8:!", "8:5-*0-:0"},
                  {"8:!5A*FF", "8:51/-1/0/5A/0*01/-1/0/FF/0:0"},
                  {"8:*!", "8:0-*5-:0"},
                  {"8:*!0F:CRC", "8:0-*51/-1/0/0F/0:1"},
                  {"8:?:OST,4:A", "8:04/-1/0/-/0*0-:2 4:01/-1/0/A/0*0-:0"},
                  {"8:$a=1*$b?:CRC:OST", "8:03/0/0/1/1*06/1/0/-/1:3"},
                  {"8:$a=1,8:$a+1*$a~", "8:03/0/0/1/1*0-:0 8:018/0/1/-/0*082/0/0/-/0:0"}},
                 "", captures_of);
    expect_forms(
        "WAIT ",
        {{"TCK 10", "TCK 10/0.000000 - 8:0-*0-:0"},
         {"D(1) 10", "D(1) 10/0.000000 - 8:0-*0-:0"},
         {"1.5", "/1.500000 - 8:0-*0-:0"},
         // Digits alone are a time and no port, so the 8 after them is a width and no count.
         {"7", "/7.000000 - 8:0-*0-:0"},
         {".5e1 MIN", "/5.000000 - 8:0-*0-:0"},
         {"TCK 3, 0.25", "TCK 3/0.250000 - 8:0-*0-:0"},
         {"TCK 3 MIN, TCK 4 MAX", "TCK 3/0.000000 TCK 4/0.000000 8:0-*0-:0"},
         {"0.25 MIN, 0.5 MAX", "/0.250000 /0.500000 8:0-*0-:0"},
         {"0.25 MIN, TCK 4, 1.0E0 MAX", "/0.250000 TCK 4/1.000000 8:0-*0-:0"},
         {"D(0) 3, 2 MIN, D(1) 4, 3 MAX", "D(0) 3/2.000000 D(1) 4/3.000000 8:0-*0-:0"}},
        " 8:", wait_of);
}

// -------------------------------------------------------------------------- what is complained of

// A line each: level, verbosity, text.
std::string said(const Messages &messages)
{
    std::string text;
    for (const Message &message : messages)
        text += std::to_string(message.level) + "," + std::to_string(message.verbosity) + " " +
                message.text + "\n";
    return text;
}

// Said while the flows are read, and neither counted nor in the way of reading on.
TEST(IscFlow, ComplaintsThatDoNotCount)
{
    const std::pair<std::string, std::string> rows[] = {
        {in_activity("0:5A WAIT TCK 1 0:5A"),
         "0,2 field_width must be > 0\n0,2 field_width must be > 0\n"},
        {in_activity("WAIT TCK 0, 0.0"),
         "0,1 Value of cycle_count in duration spec should be greater than 0 (now 0)\n"
         "0,1 Value of time in duration spec should be greater than 0 (now 0.000000)\n"},
        {"F INITIALIZE LOOP MIN 0 MAX 0 ((MINE WAIT TCK 1))",
         "0,2 loop_count must be > 0\n0,2 loop_count must be > 0\n"},
        {"F INITIALIZE LOOP MIN 5 MAX 3 ((MINE WAIT TCK 1))", ""},
        {"F REPEAT 0 (MINE WAIT TCK 1)", "0,2 repeat_count must be > 0\n"},
        {in_activity("WAIT TCK 1 8:5A:OST:CRC"),
         "1,2 Capture field tags order should be :CRC:OST\n"},
        // The width of the field that defines a variable is that of the variable.
        {in_activity("8:$v=5A WAIT TCK 1 16:$v"),
         "0,2 ISC variable '$v[8]' incorrect length, should be 16\n"},
        {in_activity("8:$v=5A,4:$v+1,8:$v,5:$v~ WAIT TCK 1"),
         "0,2 ISC variable '$v[8]' incorrect length, should be 4\n"
         "0,2 ISC variable '$v[8]' incorrect length, should be 5\n"},
        // The expected data come before the mask; a new definition gives a new length.
        {in_activity("8:$v=5A,6:$w? WAIT TCK 1 7:$v*$w,9:$v=1*$v"),
         "0,2 ISC variable '$v[8]' incorrect length, should be 7\n"
         "0,2 ISC variable '$w[6]' incorrect length, should be 7\n"},
        // Flows of one name.
        {"F, f", "1,2 flow descriptor f exists, ignored\n"},
        {"F(ARRAY), F(array) UNPROCESSED, F(SECURITY), F, G(ARRAY)",
         "1,2 flow descriptor F (ARRAY) exists, ignored\n"},
        {"F_Q, F(Q)", "1,2 flow descriptor F (Q) exists, ignored\n"},
        {"F(q), f_Q", "1,2 flow descriptor f_Q exists, ignored\n"},
        {"A_B(C), A(B_C)", "1,2 flow descriptor A (B_C) exists, ignored\n"},
        {"F(Security), F(SECURITY)", "1,2 flow descriptor F (SECURITY) exists, ignored\n"},
    };
    for (const auto &[flows, complaints] : rows) {
        FlowReading flow(flows);
        EXPECT_EQ(said(flow.complaints()), complaints) << flows;
        EXPECT_EQ(bsdlGetNumErrors(flow.reading), 0);
        EXPECT_NE(flow.flow, nullptr);
    }
}

TEST(IscFlow, MistakesInActivities)
{
    // A wait in error says so once for every token that is dropped until the activity goes on. It
    // catches an undefined variable after it too; one before it is caught by the whole statement.
    const struct {
        const char *activity;
        const char *complaints; // "%" for the line
        const char *captures;   // NULL when the statement is skipped
    } rows[] = {
        {"8:5A 1 2",
         "0,1 parse error, expecting `error' or `Y_ISC_WAIT', found '1' on line %\n\n"
         "0,1 wait_specification\n0,1 wait_specification\n0,1 wait_specification\n",
         ""},
        {"WAIT ! MIN 8:5A",
         "0,1 parse error, expecting `error' or `INTEGER' or `REAL' or `IDENTIFIER', found '!' on "
         "line %\n\n"
         "0,1 duration_specification\n0,1 wait_specification\n0,1 wait_specification\n",
         "8:01/-1/0/5A/0*0-:0"},
        {"WAIT TCK 1 8:$u", "0,2 Variable '$u' not defined on line %\n0,1 wait_specification\n",
         ""},
        {"8:$u+1 WAIT TCK 1",
         "0,2 Variable '$u' not defined on line %\n0,1 Skipping isc_flow due to errors\n", nullptr},
    };
    for (const auto &row : rows) {
        FlowReading flow(in_activity(row.activity) + ", G INITIALIZE (MINE WAIT TCK 1)");
        std::string expected = row.complaints;
        expected.replace(expected.find('%'), 1, std::to_string(flow.family.line(FLOW)));
        EXPECT_EQ(said(flow.complaints()), expected);
        EXPECT_EQ(bsdlGetNumErrors(flow.reading), 1);
        EXPECT_EQ(flow.activity() != nullptr, row.captures != nullptr);
        if (!flow.activity())
            continue;
        EXPECT_EQ(flow.activity()->wait, nullptr);
        EXPECT_EQ(captures_of(flow.activity()), row.captures);
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

    // Each flow begins with an empty table, also after one that was ignored.
    std::string many = " INITIALIZE (MINE " + assignments(1, 51) + " WAIT TCK 1)";
    FlowReading next("F" + many + ", F" + many + ", G INITIALIZE (MINE 8:$v1? WAIT TCK 1)");
    expect_messages(next.complaints(), {{WARNING, "flow descriptor F exists, ignored", 2}});
    const auto *last =
        static_cast<IscFlow *>(g_slist_last(next.reading.handle()->data->isc->flows)->data);
    EXPECT_EQ(last->variable_count, 1);
    EXPECT_STREQ(last->variables[0]->value, "?");
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
