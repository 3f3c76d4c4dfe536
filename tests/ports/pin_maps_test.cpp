#include "ports/pins.h"

using namespace pins;

namespace
{

using support::Reading;

const char *const OWN = "TCK:1, TMS:2, TDI:3, TDO:4, A:5, Y:6, B:7, D:(8,9), GND:10, VCC:11";

std::string mapping(const std::string &name, const std::string &pins)
{
    return "constant " + name + " : PIN_MAP_STRING := \"" + pins + "\";\n";
}

std::string good(const std::string &name) { return mapping(name, OWN); }

std::string other(const std::string &name)
{
    return mapping(name, "TCK:1, TMS:2, TDI:3, TDO:4, A:25, Y:6, B:7, D:(8,9)");
}

// ---------------------------------------------------------------------------------- the selection

struct SelectionCase {
    const char *name;
    const char *package; // NULL: none, and none in the description
    std::string maps;
    ExpectedMessages generic;
    const char *pins;          // from A on; none when the check of the mappings fails
    ExpectedMessages all = {}; // of levels 0 and 1
    unsigned flags = 0;
};

const char *const UNSPECIFIED = "No default_device_package and no <pin mapping> name are specified";
const char *const PINS_OF_GOOD = "A=5 Y=6 B=7 D(0)=8 D(1)=9 GND=10 VCC=11";
const Expected FIRST_USED = {WARNING,
                             "Using first available <pin_map> 'PKG' because none was specified", 2};

const SelectionCase selection_cases[] = {
    {"by name, letters folded",
     "alt",
     good("PKG") + other("ALT"),
     {},
     "A=25 Y=6 B=7 D(0)=8 D(1)=9 GND=- VCC=-"},
    {"none given: the first",
     nullptr,
     good("PKG") + other("ALT"),
     {{WARNING, UNSPECIFIED, 2}},
     PINS_OF_GOOD},
    {"none given, strict", nullptr, good("PKG"), {{ERROR, UNSPECIFIED, 1}}, "", {}, STRICT},
    {"another name, one mapping",
     "NOPE",
     good("PKG"),
     {{WARNING, "pin_mapping 'NOPE' does not exist", 2}},
     PINS_OF_GOOD,
     {FIRST_USED}},
    {"an empty name is a name",
     "",
     good("PKG"),
     {{WARNING, "pin_mapping '' does not exist", 2}},
     PINS_OF_GOOD,
     {FIRST_USED}},
    {"another name, two mappings",
     "NOPE",
     good("PKG") + other("ALT"),
     {{ERROR, "pin_mapping 'NOPE' does not exist and multiple pinmaps defined", 1}},
     ""},
    {"another name, strict",
     "NOPE",
     good("PKG"),
     {{ERROR, "pin_mapping 'NOPE' does not exist", 1}},
     "",
     {},
     STRICT},
    {"another name, two mappings, strict",
     "NOPE",
     good("PKG") + other("ALT"),
     {{ERROR, "pin_mapping 'NOPE' does not exist", 1}},
     "",
     {},
     STRICT},
};

TEST(PinMaps, Selection)
{
    for (const SelectionCase &row : selection_cases) {
        SCOPED_TRACE(row.name);
        Description text;
        text.with(PIN_MAPS, row.maps)
            .with(GENERIC_PARAMETER, "generic (PHYSICAL_PIN_MAP : string);");
        Reading reading(text, {.package = row.package, .flags = row.flags});
        bool fails = !row.generic.empty() && row.generic[0].level == ERROR;
        EXPECT_EQ(reading.check(bsdl_check_generic), fails ? 100 : 0);
        expect_messages(reading.messages(), row.generic);
        EXPECT_EQ(reading.check(bsdl_check_all_pin_maps), fails ? 100 : 0);
        expect_messages(errors_and_warnings(reading.messages()), row.all);
        EXPECT_EQ(bsdlGetNbrOfPins(reading), fails ? -1 : 11);
        EXPECT_EQ(physical(reading, 4), row.pins);
    }
}

// ------------------------------------------------------------------------------------------- rules

struct MappingCase {
    const char *name;
    const char *ports;
    std::string maps; // "": the valid mapping with `pins` after it
    const char *pins;
    ExpectedMessages messages; // of levels 0 and 1
};

const MappingCase mapping_cases[] = {
    {"pin identifiers, each further use",
     "P, Q : in bit; V : in bit_vector(0 to 2)",
     "",
     "P:n7, Q:N7, V:(N7, 05, 30)",
     {{ERROR, "<pin id> 'N7' is not unique (<port name> 'Q')", 2},
      {ERROR, "<pin id> 'N7' is not unique (<port name> 'V')", 2},
      {ERROR, "<pin id> '5' is not unique (<port name> 'V')", 2}}},
    {"one port map: its pins ahead of its port, missing ports last",
     "P : in bit",
     "",
     "R:(5, 30), Q:6",
     {{ERROR, "<pin id> '5' is not unique (<port name> 'R')", 2},
      {ERROR, "<port name> R (bit vector) not found in <logical port description>", 2},
      {ERROR, "<pin id> '6' is not unique (<port name> 'Q')", 2},
      {ERROR, "<port name> Q (bit) not found in <logical port description>", 2},
      {ERROR, "<port name> P (bit) not found in <pin mapping> PKG", 2}}},
    {"wrong forms count twice",
     "P : in bit; V : inout bit_vector(0 to 1)",
     "",
     "P:(30), V:31",
     {{ERROR, "<port name> P (bit vector) not found in <logical port description>", 2},
      {ERROR, "<port name> V (bit) not found in <logical port description>", 2},
      {ERROR, "<port name> P (bit) not found in <pin mapping> PKG", 2},
      {ERROR, "<port name> V (bit vector) not found in <pin mapping> PKG", 2}}},
    {"LINKAGE may be left out or mapped", "L : linkage bit; M : linkage bit", "", "M:30", {}},
    {"names of mappings: all but the last",
     "",
     good("PKG") + good("pkg") + good("PKG"),
     "",
     {{ERROR, "<pin_map_name> PKG is not unique", 2},
      {ERROR, "<pin_map_name> pkg is not unique", 2}}},
    {"a mapping that is not used counts too",
     "",
     good("PKG") + mapping("ALT", "TCK:1, TMS:1, TDI:3, TDO:4, A:5, Y:6, B:7"),
     "",
     {{ERROR, "<pin id> '1' is not unique (<port name> 'TMS')", 2},
      {ERROR, "<port name> D (bit vector) not found in <pin mapping> ALT", 2}}},
    {"pins are unique within one mapping alone", "", good("PKG") + good("ALT"), "", {}},
};

TEST(PinMaps, Rules)
{
    for (const MappingCase &row : mapping_cases) {
        SCOPED_TRACE(row.name);
        Description text = pins::description(row.ports, row.pins);
        if (!row.maps.empty())
            text.with(PIN_MAPS, row.maps);
        Reading reading(text);
        EXPECT_EQ(build(reading), row.messages.empty() ? 0 : 100);
        expect_messages(errors_and_warnings(reading.messages()), row.messages);
        EXPECT_GT(bsdlGetNbrOfPins(reading), 0) << "these errors do not stop the pin list";
    }
}

TEST(PinMaps, ResultDoesNotHangOnTheVerbosity)
{
    Reading reading(pins::description("P, Q : in bit", ""), {.verbosity = 0});
    EXPECT_EQ(build(reading), 100);
    expect_messages(reading.messages(), {});
}

TEST(PinMaps, MessagesPointIntoTheString)
{
    Description text;
    text.replace(PIN_MAPS, "TDO:4,", "TDO:4,\n P:20, \"&\n\"Q:\n21,");
    Reading reading(text);
    build(reading);
    Messages got = errors_and_warnings(reading.messages());
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0].line, text.line(PIN_MAPS) + 1);
    EXPECT_EQ(got[1].line, text.line(PIN_MAPS) + 2);
    EXPECT_EQ(got[0].rule, "mapped-port-undeclared");
}

TEST(PinMaps, OneByName)
{
    Description text;
    text.with(PIN_MAPS, good("PKG") + mapping("ALT", "TCK:1"));
    Reading reading(text);
    auto named = [&reading](const char *name) {
        reading.clear();
        return bsdl_check_pin_map(reading, name);
    };
    EXPECT_EQ(named("pkg"), 0);
    expect_messages(reading.messages(), {{PROGRESS, "\tChecking pin_map 'PKG'", 3}});
    EXPECT_EQ(named("ALT"), 100);
    EXPECT_EQ(reading.messages().size(), 8u);
    EXPECT_EQ(named("NOPE"), 100);
    // Not the name that was asked for.
    expect_messages(reading.messages(), {{ERROR, "pin_mapping 'PKG' does not exist", 1}});
    EXPECT_EQ(named(nullptr), 5);
    EXPECT_EQ(bsdl_check_pin_map(nullptr, nullptr), 5);
    EXPECT_EQ(bsdl_check_pin_map(nullptr, "PKG"), 2);
}

// ---------------------------------------------------------------------------------------- grammar

TEST(PinMaps, AFailedMappingKeepsItsPlace)
{
    const std::string bad = "constant BAD : PIN_MAP_STRING := is;\n";
    Reading reading(Description().with(PIN_MAPS, bad + good("PKG") + good("ALT")));
    EXPECT_EQ(bsdlGetNumErrors(reading), 1);
    const Expected passed = {INFORMATION, "\tDevice package pin mappings statement passed", 3};
    expect_messages(picked(reading.messages(),
                           [](const Message &message) {
                               return message.text.find("mapping") != std::string::npos;
                           }),
                    {{ERROR, "Skipping port_mapping due to errors", 1}, passed, passed});
    EXPECT_EQ(bsdlGetNbrOfPinMaps(reading), 3);
    EXPECT_EQ(bsdlGetFirstPinMap(reading), nullptr);
    EXPECT_STREQ(bsdlGetNextPinMap(reading), "PKG");
    EXPECT_EQ(build(reading), 0);
    EXPECT_EQ(bsdlGetNbrOfPins(reading), 11);

    Reading alone(Description().with(PIN_MAPS, bad));
    EXPECT_EQ(alone.check(bsdl_check_generic), 0);
    expect_messages(alone.messages(), {{WARNING, "pin_mapping 'PKG' does not exist", 2}});
    EXPECT_EQ(alone.check(bsdl_check_all_pin_maps), 100);
    expect_messages(alone.messages(), {});
    EXPECT_EQ(bsdlGetNbrOfPins(alone), -1);
}

TEST(PinMaps, NoMappingAtAll)
{
    Reading reading(Description().without(PIN_MAPS));
    EXPECT_EQ(bsdlGetNumErrors(reading), 1);
    EXPECT_TRUE(reading.has("skipping pin_mappings due to errors"));
    EXPECT_EQ(bsdlGetNbrOfPinMaps(reading), 0);
    expect_iteration(reading.handle(), bsdlGetFirstPinMap, bsdlGetNextPinMap, {});
    EXPECT_EQ(reading.check(bsdl_check_generic), 5);
    EXPECT_EQ(reading.check(bsdl_check_all_pin_maps), 5);
    EXPECT_EQ(bsdl_check_pin_map(reading, "PKG"), 5);
    expect_messages(reading.messages(), {});
}

TEST(PinMaps, Iteration)
{
    Reading reading(Description().with(PIN_MAPS, good("PKG") + good("ALT") + good("Third")));
    expect_iteration(reading.handle(), bsdlGetFirstPinMap, bsdlGetNextPinMap,
                     {"PKG", "ALT", "Third"});
}

} // namespace
