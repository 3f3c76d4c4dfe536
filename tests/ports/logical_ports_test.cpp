#include "ports/pins.h"

#include "ports/ports.h"

using namespace pins;

namespace
{

using support::Reading;

struct PinCase {
    const char *name;
    const char *ports;
    const char *mapping;
    const char *pins;
};

const PinCase pin_cases[] = {
    {"upward", "V : in bit_vector(3 to 5)", "V:(20, 21, 22)", "V(3)=20 V(4)=21 V(5)=22"},
    {"downward: first pin is the left bound", "V : in bit_vector(7 downto 5)", "V:(20, 21, 22)",
     "V(7)=20 V(6)=21 V(5)=22"},
    {"equal bounds", "V : in bit_vector(3 to 3); W : in bit_vector(3 downto 3)", "V:(20), W:(21)",
     "V(3)=20 W(3)=21"},
    {"unmapped", "L : linkage bit; V : linkage bit_vector(1 downto 0)", "", "L=- V(1)=- V(0)=-"},
    {"names keep their case, integers lose zeros", "Ab, aC_1 : in bit", "AB:007, ac_1:A07",
     "Ab=7 aC_1=A07"},
    {"one name twice in a list", "P, p : in bit", "p:20", "P=20 p=20"},
    {"both forms of one name", "P : in bit; P : in bit_vector(0 to 1)", "P:(20, 21), P:22",
     "P=22 P(0)=20 P(1)=21"},
    {"the first port map of a name and form", "P : in bit; V : in bit_vector(0 to 0)",
     "P:20, P:21, V:(22), V:(23, 24)", "P=20 V(0)=22"},
};

TEST(LogicalPorts, PinsInTheOrderOfThePortClause)
{
    for (const PinCase &row : pin_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(pins::description(row.ports, row.mapping));
        build(reading);
        EXPECT_EQ(physical(reading, OWN_PINS), row.pins);
    }
}

TEST(LogicalPorts, TypesAreThoseOfTheDeclarations)
{
    Reading reading(
        pins::description("E : buffer bit_vector(0 to 1); F : linkage bit", "E:(20, 21)"));
    build(reading);
    std::string types;
    for (PinEntry *pin : all_of(reading.handle(), bsdlGetFirstPin, bsdlGetNextPin))
        types += std::to_string(bsdlGetPinType(pin));
    EXPECT_EQ(types, "11121231155445");
}

struct FailureCase {
    const char *name;
    const char *ports;
    const char *mapping;
    ExpectedMessages messages; // after the heading of the mapping
};

const FailureCase failure_cases[] = {
    {"reversed to",
     "V : in bit_vector(3 to 0); W : in bit_vector(9 to 8)",
     "V:(20, 21, 22, 23), W:(24, 25)",
     {{ERROR, "<port> 'V': end value (0) of port range must be greater than start (3)", 2}}},
    {"reversed downto, in the words and order of to",
     "V : in bit_vector(0 downto 3)",
     "V:(20, 21, 22, 23)",
     {{ERROR, "<port> 'V': end value (0) of port range must be greater than start (3)", 2}}},
    {"pin count",
     "V, W : in bit_vector(4 downto 2)",
     "V:(20, 21, 22), W:(23, 24)",
     {{ERROR,
       "<pin map> 'PKG': number of pins of <bit vector> W is not equal in <pin mapping> (2) and "
       "<logical port map> (3)",
       2}}},
    {"pin count of the widest range",
     "V : in bit_vector(0 to 2147483647)",
     "V:(20)",
     {{ERROR,
       "<pin map> 'PKG': number of pins of <bit vector> V is not equal in <pin mapping> (1) and "
       "<logical port map> (-2147483648)",
       2}}},
    {"more pins than any device",
     "V : linkage bit_vector(0 to 2147483647)",
     "",
     {{ERROR, "Memory error", 0}}},
    {"too many in all",
     "V, W : linkage bit_vector(2100000 downto 0)",
     "",
     {{ERROR, "Memory error", 0}}},
    {"an error ahead of too many",
     "R : linkage bit_vector(1 to 0); V : linkage bit_vector(0 to 2147483647)",
     "",
     {{ERROR, "<port> 'R': end value (0) of port range must be greater than start (1)", 2}}},
};

TEST(LogicalPorts, NoPinListAfterAnError)
{
    for (const FailureCase &row : failure_cases) {
        SCOPED_TRACE(row.name);
        Reading reading(pins::description(row.ports, row.mapping));
        EXPECT_EQ(build(reading), 100);
        ExpectedMessages want = row.messages;
        want.insert(want.begin(), {PROGRESS, "\tChecking pin_map 'PKG'", 3});
        expect_messages(reading.messages(), want);
        EXPECT_EQ(bsdlGetNbrOfPins(reading), -1);
        EXPECT_EQ(bsdlGetFirstPin(reading), nullptr);
    }
}

// ------------------------------------------------------------------------------------ unique names

struct UniqueCase {
    const char *ports;
    ExpectedMessages messages;
};

const UniqueCase unique_cases[] = {
    {"P, p : in bit", {}},
    {"P : in bit; p : out bit", {{ERROR, "<port name> 'P' is not unique", 2}}},
    {"p : in bit; Q, P : in bit; P : in bit_vector(0 to 1)",
     {{ERROR, "<port name> 'p' is not unique", 2}, {ERROR, "<port name> 'P' is not unique", 2}}},
    {"P, p : in bit; Q : in bit; P : out bit",
     {{ERROR, "<port name> 'P' is not unique", 2}, {ERROR, "<port name> 'p' is not unique", 2}}},
    {"a : in bit", {{ERROR, "<port name> 'A' is not unique", 2}}},
};

TEST(LogicalPorts, NamesAreUnique)
{
    for (const UniqueCase &row : unique_cases) {
        SCOPED_TRACE(row.ports);
        Reading reading(pins::description(row.ports, ""));
        EXPECT_EQ(reading.check(bsdl_check_logical_port), row.messages.empty() ? 0 : 100);
        expect_messages(reading.messages(), row.messages);
    }
    Description text = pins::description("\nP,\nQ : in bit;\nR, p : in bit", "");
    Reading reading(text);
    reading.check(bsdl_check_logical_port);
    ASSERT_EQ(reading.messages().size(), 1u);
    EXPECT_EQ(reading.messages()[0].line, text.line(PORT_CLAUSE) + 1);
}

TEST(LogicalPorts, ClauseWithAnErrorIsSkipped)
{
    Reading reading(Description().with(PORT_CLAUSE, "port (TCK : in bit; TMS in bit);"));
    EXPECT_EQ(bsdlGetNumErrors(reading), 1);
    EXPECT_TRUE(reading.has("Skipping logical port due to errors"));
    EXPECT_FALSE(reading.has("\tLogical port description passed"));
    EXPECT_EQ(reading.check(bsdl_check_logical_port), 5);
    EXPECT_EQ(reading.check(bsdl_check_all_pin_maps), 5);
    expect_messages(reading.messages(), {});
}

// --------------------------------------------------------------------------------------- look-ups

// The first of a name and form, in any case; a name by itself gives its declaration in any form.
TEST(LogicalPorts, LookUps)
{
    Reading reading(pins::description("P : linkage bit; p, Q : linkage bit_vector(2 downto 1); "
                                      "q, P : linkage bit; R : linkage bit_vector(0 to 0)",
                                      ""));
    ASSERT_EQ(build(reading), 0);
    Bsdl *bsdl = reading;
    const std::vector<PinEntry *> all = all_of(bsdl, bsdlGetFirstPin, bsdlGetNextPin);
    const struct {
        const char *name;
        int32_t subscript; // -1: none
        int place;         // among the pins, -1: none
    } rows[] = {{"p", -1, 0},  {"P", 2, 1},          {"p", 1, 2},      {"P", 0, -1},  {"P", 3, -1},
                {"Q", -1, 5},  {"q", 2, 3},          {"Q", 1, 4},      {"R", -1, -1}, {"r", 0, 7},
                {"R", -2, -1}, {"Q", INT32_MAX, -1}, {"LATER", -1, -1}};
    for (const auto &[name, subscript, place] : rows) {
        const char *known = model_name(bsdl, name);
        const PortId *port =
            subscript == -1 ? port_id_whole(bsdl, known) : port_id_bit(bsdl, known, subscript);
        EXPECT_EQ(find_pin_entry(bsdl, port), place < 0 ? nullptr : all[OWN_PINS + place])
            << name << " " << subscript;
    }
    const GSList *declared = g_slist_nth(bsdl->data->logical_ports, OWN_DECLARATIONS);
    for (const auto &[name, place] : {std::pair{"P", 0}, {"q", 1}, {"R", 3}})
        EXPECT_EQ(find_port_name(bsdl, model_name(bsdl, name)),
                  g_slist_nth_data(const_cast<GSList *>(declared), place))
            << name;
    EXPECT_EQ(find_port_name(bsdl, model_name(bsdl, "NONE")), nullptr);
}

// ----------------------------------------------------------------------------------------- queries

TEST(LogicalPorts, Queries)
{
    Reading reading{Description()};
    Bsdl *bsdl = reading;
    EXPECT_EQ(bsdlGetNbrOfPins(bsdl), -1);
    build(reading);
    EXPECT_EQ(bsdlGetNbrOfPins(bsdl), 11);
    expect_iteration(bsdl, bsdlGetFirstPin, bsdlGetNextPin,
                     {"TCK", "TMS", "TDI", "TDO", "A", "Y", "B", "D(0)", "D(1)", "GND", "VCC"});
    EXPECT_EQ(find_pin_entry(bsdl, nullptr), nullptr);
    EXPECT_EQ(bsdlGetPinType(nullptr), 0);
    EXPECT_EQ(bsdlGetPinFunction(nullptr), 0);
    EXPECT_STREQ(bsdlGetPinPhysicalName(nullptr), "");
}

TEST(LogicalPorts, NextMovesOnAMissingListAndFirstDoesNot)
{
    Reading reading{Description()};
    EXPECT_EQ(bsdlGetNextPin(reading), nullptr);
    EXPECT_EQ(bsdlGetFirstPin(reading), nullptr);
    build(reading);
    EXPECT_EQ(text_of(bsdlGetNextPin(reading)), "TDI");
}

} // namespace
