#include "ports/pins.h"

#include "ports/ports.h"

using namespace pins;

namespace
{

using support::Reading;

const char *const PORTS = "P1, N1, P2, N2 : in bit; Q : out bit; L : linkage bit; "
                          "V, W : in bit_vector(0 to 1); U : out bit_vector(0 to 1)";
const char *const PINS = "P1:20, N1:21, P2:22, N2:23, Q:24, V:(25, 26), W:(27, 28), U:(29, 30)";

Description grouped(const std::string &groups, const std::vector<std::string> &cells = {})
{
    Description text = pins::description(PORTS, PINS);
    with_cells(text, cells.empty() ? std::vector<std::string>{"*, internal, X"} : cells);
    return text.with(PORT_GROUPING, attribute("PORT_GROUPING", groups));
}

TEST(GroupedPorts, Rules)
{
    const PortCase cases[] = {
        {"good pairs",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, n1), (V(1), W(0)))"),
         {},
         "P1=6 N1=7 V(1)=6 W(0)=7"},
        {"absent ports: the associated one first, then the cell of the missing representative",
         grouped("DIFFERENTIAL_VOLTAGE ((NONE, P1(0)), (V, W(2)))"),
         {{ERROR, "<associated port> P1(0) does not exist in <logical portmap>", 2},
          {ERROR, "<representative port> NONE does not exist in <logical portmap>", 2},
          {ERROR, "<representative port> 'NONE' must appear in <boundary-scan register>", 2},
          {ERROR, "<associated port> W(2) does not exist in <logical portmap>", 2},
          {ERROR, "<representative port> V does not exist in <logical portmap>", 2},
          {ERROR, "<representative port> 'V' must appear in <boundary-scan register>", 2}},
         "",
         STRICT},
        {"LINKAGE is as good as absent, but has a type",
         grouped("DIFFERENTIAL_CURRENT ((P1, L), (L, N1), (L, GND))"),
         {{ERROR, "<associated port> L does not exist in <logical portmap>", 2},
          {ERROR, "Pin types of <twin group> (P1, L) must match", 2},
          {ERROR, "<representative port> L does not exist in <logical portmap>", 2},
          {ERROR, "Pin types of <twin group> (L, N1) must match", 2},
          {ERROR, "<associated port> GND does not exist in <logical portmap>", 2},
          {ERROR, "<representative port> L does not exist in <logical portmap>", 2}},
         "P1=6 N1=7"},
        {"types, in the form of the representative",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, Q), (V(1), U(0)), (V(0), Q), (P2, U(1)))"),
         {{ERROR, "Pin types of <twin group> (P1, Q) must match", 2},
          {ERROR, "Pin types of <twin group> (V(1), U(0)) must match", 2},
          {ERROR, "Pin types of <twin group> (V(0), Q(0)) must match", 2},
          {ERROR, "Pin types of <twin group> (P2, U) must match", 2}},
         "P1=6 P2=6 Q=7 V(0)=6 V(1)=6 U(0)=7 U(1)=7"},
        {"cell of the representative, strict",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (P2, N2), (V(0), W(0)), (V(1), W(1)))",
                 {"p1, input, X", "V(1), input, X"}),
         {{ERROR, "<representative port> 'P2' must appear in <boundary-scan register>", 2},
          {ERROR, "<representative port> 'V(0)' must appear in <boundary-scan register>", 2}},
         "P1=6 N1=7 P2=6 N2=7 V(0)=6 V(1)=6 W(0)=7 W(1)=7",
         STRICT},
        {"cells of the associated port",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (P2, N2), (V(0), W(1)), (Q, U(1)), (V(1), N2))",
                 {"N1, observe_only, X", "N2, input, X", "N2, observe_only, X", "W(1), clock, X",
                  "W(1), input, X", "U(1), output2, X"}),
         {{ERROR, "<associated port> 'N2' cannot appear in <boundary-scan register>", 2},
          {ERROR, "<associated port> 'W(1)' cannot appear in <boundary-scan register>", 2},
          {ERROR, "<associated port> 'U' cannot appear in <boundary-scan register>", 2},
          {ERROR, "<associated port> 'N2(0)' cannot appear in <boundary-scan register>", 2}},
         "P1=6 N1=9 P2=6 N2=7 Q=6 V(0)=6 V(1)=6 W(1)=9 U(1)=7"},
        {"a cell of bit 0 stands for a scalar too",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, N1))", {"N1(0), input, X"}),
         {{ERROR, "<associated port> 'N1' cannot appear in <boundary-scan register>", 2}},
         "P1=6 N1=7"},
        {"the later pair wins",
         grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (N1, P2))"),
         {},
         "P1=6 N1=6 P2=7"},
    };
    for (const PortCase &row : cases)
        expect_case(row, bsdl_check_grouped_port);
}

TEST(GroupedPorts, HeadingOfEachEntry)
{
    Reading reading(grouped("Differential_Current ((P1, N1), (P2, N2)), DIFFERENTIAL_VOLTAGE "
                            "((V(0), W(0)))"));
    build(reading);
    EXPECT_EQ(reading.check(bsdl_check_grouped_port), 0);
    expect_messages(reading.messages(),
                    {{INFORMATION, "\t\tDifferential_Current (2 twin_groups)", 4},
                     {INFORMATION, "\t\tDifferential_Voltage (1 twin_groups)", 4}});
}

TEST(GroupedPorts, MessagesPointAtThePair)
{
    Description text = grouped("DIFFERENTIAL_VOLTAGE (\n(P1, N1),\n(P2, Q))");
    Reading reading(text);
    build(reading);
    reading.check(bsdl_check_grouped_port);
    Messages got = errors_and_warnings(reading.messages());
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].line, text.line(PORT_GROUPING) + 2);
    EXPECT_EQ(got[0].rule, "twin-pin-types-differ");
}

TEST(GroupedPorts, TwinsAreLinkedEvenAfterErrors)
{
    Reading reading(grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (P1, L), (NONE, N2))"));
    build(reading);
    EXPECT_EQ(reading.check(bsdl_check_grouped_port), 100);
    Bsdl *bsdl = reading;
    auto pin = [bsdl](const char *name) {
        return find_pin_entry(bsdl, port_id_whole(bsdl, model_name(bsdl, name)));
    };
    EXPECT_EQ(pin("P1")->twin, pin("L")) << "the last pair";
    EXPECT_EQ(pin("L")->twin, pin("P1"));
    EXPECT_EQ(pin("N1")->twin, pin("P1"));
    EXPECT_EQ(pin("N2")->twin, nullptr);
}

TEST(GroupedPorts, ResultsWithoutWhatTheCheckNeeds)
{
    Reading absent{Description()};
    EXPECT_EQ(bsdlGetNbrOfPortGroups(absent), -1);
    EXPECT_EQ(bsdlGetFirstPortGroup(absent), nullptr);
    EXPECT_EQ(bsdlGetNextPortGroup(absent), nullptr);
    build(absent);
    EXPECT_EQ(absent.check(bsdl_check_grouped_port), 1);
    expect_messages(absent.messages(), {});

    Reading no_pins(grouped("DIFFERENTIAL_VOLTAGE ((P1, N1))"));
    EXPECT_EQ(no_pins.check(bsdl_check_grouped_port), 5);
    expect_messages(no_pins.messages(), {});
}

TEST(GroupedPorts, StatementWithAnErrorIsSkipped)
{
    Reading reading(grouped("DIFFERENTIAL_VOLTAGE ((P1, N1)), DIFFERENTIAL_VOLTAGE (P2, N2)"));
    // What is thrown away goes on to the ';' of the clock after it, which is then missed.
    EXPECT_EQ(bsdlGetNumErrors(reading), 2);
    EXPECT_TRUE(reading.has("Skipping grouped_port due to errors"));
    EXPECT_EQ(bsdlGetNbrOfPortGroups(reading), -1);
}

// ------------------------------------------------------------------------------ look-ups, queries

TEST(GroupedPorts, MembershipAndGroupsOfAnAssociatedPort)
{
    Reading reading(grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (V(0), W(1)), (P2, n1)), "
                            "DIFFERENTIAL_CURRENT ((N1, Q), (N2, N1))"));
    Bsdl *bsdl = reading;
    auto whole = [bsdl](const char *name) { return port_id_whole(bsdl, model_name(bsdl, name)); };
    auto bit = [bsdl](const char *name, int32_t subscript) {
        return port_id_bit(bsdl, model_name(bsdl, name), subscript);
    };
    EXPECT_TRUE(port_in_groups(bsdl, whole("q")));
    EXPECT_TRUE(port_in_groups(bsdl, bit("W", 1)));
    EXPECT_FALSE(port_in_groups(bsdl, bit("W", 0)));
    EXPECT_FALSE(port_in_groups(bsdl, whole("V")));
    EXPECT_FALSE(port_in_groups(bsdl, bit("P1", 0)));

    std::string representatives;
    for (TwinGroup *group = first_group_of_associated(bsdl, whole("N1")); group;
         group = next_group_of_associated(group))
        representatives += text_of(group->representative) + " ";
    EXPECT_EQ(representatives, "P1 P2 N2 ");
    EXPECT_EQ(first_group_of_associated(bsdl, whole("P1")), nullptr);
}

std::string text_of(const PortGroup *group)
{
    return group ? std::to_string(group->type) + support::text_of(group->representative) +
                       support::text_of(group->associated)
                 : "none";
}

TEST(GroupedPorts, IterationGoesThroughAllEntries)
{
    Reading reading(grouped("DIFFERENTIAL_VOLTAGE ((P1, N1), (P2, N2)), DIFFERENTIAL_CURRENT "
                            "((V(0), W(0)), (V(1), W(1)))"));
    EXPECT_EQ(bsdlGetNbrOfPortGroups(reading), 4);
    EXPECT_EQ(text_of(bsdlGetNextPortGroup(reading)), "0P1N1") << "without First it begins here";
    for (int round = 0; round < 2; round++) {
        PortGroup *first = bsdlGetFirstPortGroup(reading);
        EXPECT_EQ(text_of(first), "0P1N1");
        EXPECT_EQ(bsdlGetNextPortGroup(reading), first) << "one record for all";
        EXPECT_EQ(text_of(first), "0P2N2");
        EXPECT_EQ(text_of(bsdlGetNextPortGroup(reading)), "1V(0)W(0)");
        EXPECT_EQ(text_of(bsdlGetNextPortGroup(reading)), "1V(1)W(1)");
        EXPECT_EQ(bsdlGetNextPortGroup(reading), nullptr);
        EXPECT_EQ(bsdlGetNextPortGroup(reading), nullptr);
    }
}

} // namespace
