#include "aio/aio_description.h"

using namespace aio;

namespace
{

using support::Reading;

// "Q(2) 10/4 12" and so on: port, flags in hexadecimal, select cell, times and input cell of those
// flags that are set.
std::string shown(const AioPinResult *result)
{
    if (!result)
        return "none";
    char text[200];
    std::string port = result->port->name;
    if (result->port->subscripted)
        port += "(" + std::to_string(result->port->subscript) + ")";
    std::snprintf(text, sizeof text, "%s %x", port.c_str(), result->flags);
    std::string line = text;
    if (result->flags & AIO_FLAG_SELECT_CELL)
        line += " select " + std::to_string(result->select_cell);
    if (result->flags & AIO_FLAG_LP_TIME)
        line += " lp " + std::to_string(result->lp_time);
    if (result->flags & AIO_FLAG_HP_TIME)
        line += " hp " + std::to_string(result->hp_time);
    return result->flags & AIO_FLAG_INPUT_CELL
               ? line + " cell " + std::to_string(result->input_cell)
               : line + (result->input_cell ? " stale cell" : "");
}

using Lines = std::vector<std::string>;

// Every description, its ports, their bits.
Lines walk(Bsdl *handle)
{
    Lines lines;
    for (const AioPinResult *pin = bsdlAioFirstPinBehavior(handle); pin;
         pin = bsdlAioNextPinBehavior(handle))
        for (const AioPinResult *port = pin; port; port = bsdlAioNextACPort(handle))
            for (const AioPinResult *bit = port; bit; bit = bsdlAioNextInputCell(handle))
                lines.push_back(shown(bit));
    return lines;
}

const char *const PINS =
    "A[7], B : LP_TIME=0.5 HP_TIME=0.25; D[5,6], Q[4,10] : LP_TIME=0.0; D(1)[6], Y; "
    "U : AC_SELECT=8 LP_TIME=1.0 HP_TIME=0.5 ON_CHIP; P[4,5]";

TEST(AioQueries, PulseAndTrain)
{
    const struct {
        std::string text;
        int cycles;
        float time;
        int pulses;
        float max_time;
    } rows[] = {
        {pulse("WAIT_DURATION TCK 15") + train("TRAIN 30, MAXIMUM_TIME 0.5"), 15, 0, 30, 0.5F},
        {train("TRAIN 7") + pulse("WAIT_DURATION 35.0e-6"), 0, 35.0e-6F, 7, 0},
        // Digits alone are a time and no port; what follows is dropped.
        {pulse("WAIT_DURATION 2 100") + train("TRAIN 99999999999"), 0, 2, INT32_MAX, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.text);
        Reading reading(statements(CONFORMANCE_1149_6 + row.text));
        EXPECT_EQ(bsdlAioConformance(reading), 1);
        ASSERT_NE(bsdlAioExtestPulse(reading), nullptr);
        EXPECT_EQ(bsdlAioExtestPulse(reading)->cycle_count, row.cycles);
        EXPECT_EQ(bsdlAioExtestPulse(reading)->time, row.time);
        ASSERT_NE(bsdlAioExtestTrain(reading), nullptr);
        EXPECT_EQ(bsdlAioExtestTrain(reading)->pulse_count, row.pulses);
        EXPECT_EQ(bsdlAioExtestTrain(reading)->max_time, row.max_time);
    }
}

TEST(AioQueries, WalkOverAll)
{
    Reading reading(with_pins(PINS));
    EXPECT_EQ(bsdlAioNextPinBehavior(reading), nullptr);
    EXPECT_EQ(bsdlAioNextACPort(reading), nullptr);
    EXPECT_EQ(bsdlAioNextInputCell(reading), nullptr);
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(reading), 5);
    // Before the check a vector is not known as one.
    EXPECT_EQ(walk(reading),
              (Lines{"A 16 lp 0.500000 hp 0.250000 cell 7", "B 6 lp 0.500000 hp 0.250000",
                     "D 10 cell 5", "Q 10 cell 4", "D(1) 10 cell 6", "Y 0",
                     "U f select 8 lp 1.000000 hp 0.500000", "P 10 cell 4"}));
    bsdl_check_aio_pin_behavior(reading);
    const Lines after = {"A 16 lp 0.500000 hp 0.250000 cell 7",
                         "B 6 lp 0.500000 hp 0.250000",
                         "D(0) 10 cell 5",
                         "D(1) 10 cell 6",
                         "Q(2) 10 cell 4",
                         "Q(1) 10 cell 10",
                         "Q(0) 0",
                         "D(1) 10 cell 6",
                         "Y 0",
                         "U f select 8 lp 1.000000 hp 0.500000",
                         "P(0) 10 cell 4"};
    EXPECT_EQ(walk(reading), after);
    EXPECT_EQ(walk(reading), after);
    EXPECT_EQ(bsdlAioNextPinBehavior(reading), nullptr);
    EXPECT_EQ(bsdlAioNextACPort(reading), nullptr);
    EXPECT_EQ(bsdlAioNextInputCell(reading), nullptr);
}

TEST(AioQueries, WithoutData)
{
    Reading plain{Description()};
    Reading package(statements(""));
    Reading conformance(statements(CONFORMANCE_1149_6));
    const PortId port = {"A", 0, 0};
    for (Bsdl *handle :
         {static_cast<Bsdl *>(nullptr), plain.handle(), package.handle(), conformance.handle()}) {
        const bool has_data = handle && handle == conformance.handle();
        EXPECT_EQ(bsdlAioConformance(handle), has_data ? 1 : 0);
        EXPECT_EQ(bsdlAioNbrOfPinBehaviorDescriptions(handle), has_data ? 0 : -1);
        EXPECT_EQ(bsdlAioExtestPulse(handle), nullptr);
        EXPECT_EQ(bsdlAioExtestTrain(handle), nullptr);
        EXPECT_EQ(bsdlAioFirstPinBehavior(handle), nullptr);
        EXPECT_EQ(bsdlAioNextPinBehavior(handle), nullptr);
        EXPECT_EQ(bsdlAioNextACPort(handle), nullptr);
        EXPECT_EQ(bsdlAioNextInputCell(handle), nullptr);
        EXPECT_EQ(bsdlAioThisPinBehavior(handle, &port), nullptr);
    }
}

// ------------------------------------------------------------------------------- a port by name

struct Wanted {
    const char *name;
    int32_t subscript; // WHOLE: without one
    const char *result;
};

constexpr int32_t WHOLE = -1;

struct ThisPinCase {
    const char *name;
    const char *pins;
    bool checked;
    std::vector<Wanted> wanted; // one after the other, on one handle
};

// clang-format off
const ThisPinCase this_pin_cases[] = {
    {"ports without cells stand for as long as one asks",
     "A, B : LP_TIME=0.5; Y : AC_SELECT=8", true,
     {{"a", WHOLE, "a 2 lp 0.500000"}, {"Y", WHOLE, "Y 1 select 8"},
      {"B", WHOLE, "B 2 lp 0.500000"}, {"A", WHOLE, "A 2 lp 0.500000"},
      {"A", 0, "none"}, {"NONE", WHOLE, "none"}}},
    // The cells begin with the range again, whichever are left.
    {"each bit that is passed costs a cell", "Q[4,7,10], D[5,6]", true,
     {{"Q", 2, "Q(2) 10 cell 4"}, {"Q", 2, "Q(2) 10 cell 4"}, {"Q", 1, "Q(1) 10 cell 7"},
      {"Q", 1, "Q(1) 10 cell 10"}, {"Q", 1, "none"}, {"Q", 2, "Q(2) 0"}, {"D", 0, "D(0) 0"},
      {"D", 1, "none"}}},
    {"the way to a port uses up those before it", "A[7], Q[4,7,10], D[5,6]", true,
     {{"D", 1, "D(1) 10 cell 6"}, {"A", WHOLE, "A 0"}, {"Q", 2, "Q(2) 0"}, {"Q", 1, "none"},
      {"Q", WHOLE, "Q 0"}}},
    // The counter stands at the range, not at the subscript.
    {"a bit of its own and the vector's first", "D(1)[6], D(0)", true,
     {{"D", 0, "D(0) 10 cell 6"}, {"D", 1, "D(1) 10 cell 6"}, {"NONE", WHOLE, "none"},
      {"D", 0, "D(0) 0"}, {"D", 1, "D(1) 0"}}},
    {"before the check only the reference itself", "Q[4,7,10], D(1)[6]", false,
     {{"Q", 2, "none"}, {"D", 1, "D(1) 0"}, {"Q", WHOLE, "Q 0"}}},
    {"a low-pass time below zero is one here", "A : LP_TIME=-0.5", false,
     {{"A", WHOLE, "A 2 lp -0.500000"}}},
    {"the first of two descriptions", "A[7] : LP_TIME=0.5; a[4] : LP_TIME=0.25", true,
     {{"A", WHOLE, "A 12 lp 0.500000 cell 7"}, {"A", WHOLE, "A 12 lp 0.500000 cell 7"}}},
};
// clang-format on

TEST(AioQueries, ThisPin)
{
    for (const ThisPinCase &row : this_pin_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(with_pins(row.pins));
        ASSERT_EQ(bsdlGetNumErrors(reading), 0);
        if (row.checked)
            bsdl_check_aio_pin_behavior(reading);
        for (const Wanted &wanted : row.wanted) {
            const PortId port = {wanted.name, wanted.subscript != WHOLE,
                                 wanted.subscript != WHOLE ? wanted.subscript : 0};
            EXPECT_EQ(shown(bsdlAioThisPinBehavior(reading, &port)), wanted.result)
                << wanted.name << " " << wanted.subscript;
        }
    }
}

TEST(AioQueries, ThisPinKeepsItsOwnName)
{
    Reading reading(with_pins("A; B"));
    std::string name = "A";
    const PortId port = {name.c_str(), 0, 0};
    const PortId unnamed = {nullptr, 0, 0};
    const AioPinResult *result = bsdlAioThisPinBehavior(reading, &port);
    name[0] = '?';
    EXPECT_STREQ(result->port->name, "A");
    EXPECT_EQ(bsdlAioThisPinBehavior(reading, nullptr), nullptr);
    EXPECT_EQ(bsdlAioThisPinBehavior(reading, &unnamed), nullptr);
    EXPECT_STREQ(result->port->name, "A");
}

// It leaves the walk where it is, whose cells stay good.
TEST(AioQueries, ThisPinAmidstAWalk)
{
    Reading reading(with_pins("D[5,6]; Q[4,7,10]"));
    bsdl_check_aio_pin_behavior(reading);
    bsdlAioFirstPinBehavior(reading);
    const PortId port = {"Q", 1, 1};
    EXPECT_EQ(shown(bsdlAioThisPinBehavior(reading, &port)), "Q(1) 10 cell 7");
    EXPECT_EQ(shown(bsdlAioNextInputCell(reading)), "none");
    EXPECT_EQ(shown(bsdlAioNextPinBehavior(reading)), "Q(2) 10 cell 7");
    EXPECT_EQ(shown(bsdlAioFirstPinBehavior(reading)), "D(0) 0");
}

// Searches that walked over all ports would take hours.
TEST(AioQueries, ManyPorts)
{
    constexpr int PORTS = 100000;
    std::string value;
    for (int i = 0; i < PORTS; i++)
        value += (i ? ", D(" : "D(") + std::to_string(i) + ")[7]" + (i % 500 ? "" : "\" & \"");
    Reading reading(with_pins(value + " : LP_TIME=0.5"));
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdl_check_aio_pin_behavior(reading), 0);
    EXPECT_EQ(walk(reading).size(), size_t{PORTS});
    int found = 0;
    for (int round = 0; round < 2; round++)
        for (int i = PORTS - 1; i > 0; i--) {
            const PortId port = {"D", 1, i};
            found += bsdlAioThisPinBehavior(reading, &port) != nullptr;
        }
    EXPECT_EQ(found, 2 * (PORTS - 1));
}

} // namespace
