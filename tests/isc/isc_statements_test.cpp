#include "isc/isc.h"

#include "isc_family.h"

using namespace support;
using namespace isc_family;

namespace
{

const char FOUND[] = "\tBSDL ISC extensions found";
const char SYNTAX_OK[] = "BSDL syntax ok";

Expected passed(Part part)
{
    if (part == ISC_WARNING)
        return {INFORMATION, "\tISC_Design warning statement passed", 3};
    return {INFORMATION, std::string("\t") + NAMES[part] + " statement passed", 3};
}

// From the family's first message to the reading's last.
Messages from_family(const Messages &messages)
{
    size_t begin = 0;
    while (begin < messages.size() && messages[begin].text.find("ISC_") == std::string::npos)
        begin++;
    return {messages.begin() + static_cast<long>(begin), messages.end()};
}

Family full()
{
    return Family()
        .with(FIXED_PINS, "A, D(1)")
        .with(SECURITY, "ISC_DISABLE_READ 0, ISC_DISABLE_PROGRAM 1, ISC_DISABLE_ERASE *, "
                        "ISC_DISABLE_KEY 15-8")
        .with(ILLEGAL_EXIT, "Bypass, sample, Mine")
        .with_text(ISC_WARNING, "attribute ISC_Design_Warning of DEV : entity is \"take; \" & "
                                "\"care\";");
}

TEST(IscStatements, WholeFamily)
{
    Reading reading(full().description());
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    ExpectedMessages expected = {{INFORMATION, "\tISC_Conformance: 'STD_1532_2002'", 3}};
    for (int part = 0; part < PART_COUNT; part++)
        expected.push_back(passed(static_cast<Part>(part)));
    expected.push_back({INFORMATION, FOUND, 2});
    expected.push_back({INFORMATION, "\tNo design warning statement", 4});
    expected.push_back({INFORMATION, SYNTAX_OK, 2});
    expect_messages(from_family(reading.messages()), expected);

    const IscData *isc = reading.handle()->data->isc;
    ASSERT_NE(isc, nullptr);
    EXPECT_STREQ(isc->design_warning, "take; \ncare");
    ASSERT_EQ(g_slist_length(isc->fixed_pins), 2u);
    const auto *pin = static_cast<const PortId *>(isc->fixed_pins->next->data);
    EXPECT_STREQ(pin->name, "D");
    EXPECT_EQ(pin->subscript, 1);
    std::string exits;
    for (const GSList *link = isc->illegal_exits; link; link = link->next)
        exits += static_cast<const char *>(link->data) + std::string(" ");
    EXPECT_EQ(exits, "BYPASS SAMPLE MINE ");
    EXPECT_EQ(reading.handle()->standards_filter, 0u);
}

TEST(IscStatements, AbsentOnes)
{
    Reading reading(Family().without(ISC_CONFORMANCE).description());
    expect_messages(from_family(reading.messages()),
                    {{WARNING, "ISC_Conformance statement required for Std_1532_2002", 2},
                     passed(PIN_BEHAVIOR),
                     passed(STATUS),
                     {INFORMATION, "\tNo ISC_Fixed_System_Pins statement", 4},
                     passed(BLANK_USERCODE),
                     {INFORMATION, "\tNo ISC_Security statement", 4},
                     passed(FLOW),
                     passed(PROCEDURE),
                     passed(ACTION),
                     {INFORMATION, "\tNo ISC_Illegal_Exit statement", 4},
                     {INFORMATION, "\tNo ISC_Design warning statement", 4},
                     {INFORMATION, FOUND, 2},
                     {INFORMATION, "\tNo design warning statement", 4},
                     {INFORMATION, SYNTAX_OK, 2}});
    EXPECT_EQ(reading.handle()->data->isc->conformance, 0);

    // The older package does not ask for it.
    Description old = Family().without(ISC_CONFORMANCE).description();
    Reading silent(old.with(USES, "use STD_1532_2001.all;"));
    expect_messages(errors_and_warnings(silent.messages()), {});
}

// What is said about every order that is read, with and without `strict`.
const char OF_TWO[] = "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and \"STATUS\"";
const char OF_THREE[] = "Wrong ordening of ISC ATTRIBUTES \"PIN_BEHAVIOR\" and "
                        "\"FIXED_SYSTEM_PINS\" and \"STATUS\"";

struct Order {
    std::vector<Part> parts;
    const char *warning;
    const char *error;
    bool no_fixed_pins;
};

const Order orders[] = {
    {{PIN_BEHAVIOR, FIXED_PINS, STATUS}, nullptr, nullptr, false},
    {{PIN_BEHAVIOR, STATUS}, nullptr, nullptr, true},
    {{STATUS, PIN_BEHAVIOR}, OF_TWO, OF_TWO, true},
    {{STATUS, FIXED_PINS, PIN_BEHAVIOR}, OF_TWO, OF_TWO, true},
    {{STATUS, PIN_BEHAVIOR, FIXED_PINS}, OF_TWO, OF_THREE, true},
    {{FIXED_PINS, PIN_BEHAVIOR, STATUS}, OF_THREE, OF_THREE, false},
    {{FIXED_PINS, STATUS, PIN_BEHAVIOR}, OF_THREE, OF_THREE, false},
};

Family in_order(const std::vector<Part> &parts)
{
    std::vector<Part> order = {ISC_CONFORMANCE};
    order.insert(order.end(), parts.begin(), parts.end());
    for (int part = BLANK_USERCODE; part < PART_COUNT; part++)
        order.push_back(static_cast<Part>(part));
    return Family()
        .with(PIN_BEHAVIOR, "CLAMP")
        .with(FIXED_PINS, "A")
        .with(STATUS, "NOT IMPLEMENTED")
        .in_order(order);
}

TEST(IscStatements, Orders)
{
    for (const Order &order : orders) {
        SCOPED_TRACE(testing::PrintToString(order.parts));
        Reading reading(in_order(order.parts).description());
        ExpectedMessages expected = {{INFORMATION, "\tISC_Conformance: 'STD_1532_2002'", 3},
                                     passed(ISC_CONFORMANCE)};
        for (Part part : order.parts)
            expected.push_back(passed(part));
        ExpectedMessages expected_strict = expected;
        if (order.warning)
            expected.push_back({WARNING, order.warning, 2});
        if (order.no_fixed_pins)
            expected.push_back({INFORMATION, "\tNo ISC_Fixed_System_Pins statement", 4});
        expected.push_back(passed(BLANK_USERCODE));
        Messages got = from_family(reading.messages());
        got.resize(std::min(got.size(), expected.size()));
        expect_messages(got, expected);
        EXPECT_EQ(bsdlGetNumErrors(reading), 0);

        const IscData *isc = reading.handle()->data->isc;
        ASSERT_NE(isc, nullptr);
        EXPECT_EQ(isc->pin_behavior, ISC_PIN_BEHAVIOR_CLAMP);
        EXPECT_EQ(isc->status, ISC_STATUS_NOT_IMPLEMENTED);
        EXPECT_EQ(isc->fixed_pins != nullptr, order.parts.size() == 3);

        Reading strict(in_order(order.parts).description(), {.flags = STRICT});
        EXPECT_EQ(bsdlGetNumErrors(strict), order.error ? 1 : 0);
        EXPECT_EQ(strict.handle()->data->isc == nullptr, order.error != nullptr);
        if (!order.error)
            continue;
        expected_strict.push_back({ERROR, order.error, 1});
        got = from_family(strict.messages());
        got.resize(std::min(got.size(), expected_strict.size()));
        expect_messages(got, expected_strict);
    }
}

TEST(IscStatements, BlankUsercodeOfOtherLengthIsKept)
{
    Family family = Family().with(BLANK_USERCODE, "1111000011110000111100001111000");
    Reading reading(family.description());
    expect_messages(
        errors_and_warnings(reading.messages()),
        {{ERROR,
          "32 bit pattern length required on line " + std::to_string(family.line(BLANK_USERCODE)),
          1}});
    EXPECT_EQ(std::string(reading.handle()->data->isc->blank_usercode).size(), 31u);
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
}

// Those of the standard in capitals, others as they are first written.
TEST(IscStatements, DataNames)
{
    Reading reading(
        Family()
            .with(FLOW, "F(array), F(usercode), F(security), F(Idcode), F(preload), F(My_Data)")
            .with(PROCEDURE, "PROC_ERROR_EXIT = (f(My_data)), PROC_PROGRAM_DONE = (F(ARRAY))")
            .with(ACTION, "A PROPRIETARY = (PROC_ERROR_EXIT PROPRIETARY OPTIONAL)")
            .description());
    expect_passed(reading);
    const IscData *isc = reading.handle()->data->isc;
    std::string text;
    for (const GSList *link = isc->flows; link; link = link->next)
        text += static_cast<const IscFlow *>(link->data)->descriptor->data_name + std::string(" ");
    EXPECT_EQ(text, "ARRAY USERCODE SECURITY IDCODE PRELOAD My_Data ");
    EXPECT_EQ(bsdlIscFirstProc(reading)->attributes, 0x11);
}

// ------------------------------------------------------------------------------------ mistakes

// What stands in the place of a statement's string, and what comes of it.
TEST(IscStatements, Mistakes)
{
    const struct {
        Part part;
        const char *skipped; // NULL where an error ends the family
    } rows[] = {
        {ISC_CONFORMANCE, nullptr},
        {PIN_BEHAVIOR, nullptr},
        {FIXED_PINS, "Skipping isc_fixed_system_pins due to errors"},
        {STATUS, "Skipping isc_status due to errors"},
        {BLANK_USERCODE, "Skipping isc_blank_usercode due to errors"},
        {SECURITY, "Skipping isc_security due to errors"},
        {FLOW, "Skipping isc_flow due to errors"},
        {PROCEDURE, "Skipping isc_procedure due to errors"},
        {ACTION, nullptr},
        {ILLEGAL_EXIT, "Skipping isc_illegal_exit due to errors"},
        {ISC_WARNING, "Skipping isc_design_warning due to errors"},
    };
    for (const auto &row : rows) {
        std::string name = NAMES[row.part];
        SCOPED_TRACE(name);
        Family family =
            full().with_text(row.part, "attribute " + name + " of DEV : entity is bad;");
        Reading reading(family.description());
        ExpectedMessages expected = {{ERROR,
                                      std::string("parse error, expecting ") +
                                          (row.skipped ? "`error' or " : "") +
                                          "`QUOTED_STRING', found 'bad' on line " +
                                          std::to_string(family.line(row.part)) + "\n",
                                      1}};
        if (row.skipped)
            expected.push_back({ERROR, row.skipped, 1});
        expect_messages(errors_and_warnings(reading.messages()), expected);
        EXPECT_EQ(bsdlGetNumErrors(reading), 1);
        EXPECT_EQ(reading.handle()->data->isc != nullptr, row.skipped != nullptr);
        EXPECT_EQ(reading.has(FOUND), row.skipped != nullptr);

        // Its entity has to be that of the description.
        name += " of ";
        Reading same(full().description().replace(EXTENSIONS, name + "DEV", name + "Dev"));
        EXPECT_EQ(bsdlGetNumErrors(same), 0);
        Reading other(full().description().replace(EXTENSIONS, name + "DEV", name + "OTHER"));
        Messages errors = errors_and_warnings(other.messages());
        errors.resize(std::min<size_t>(errors.size(), 1));
        expect_messages(errors, {{ERROR, "Component name 'OTHER' not consistent", 1}});
        EXPECT_EQ(other.handle()->data->isc, nullptr);
    }
    for (Part part : {PIN_BEHAVIOR, STATUS, BLANK_USERCODE, FLOW, PROCEDURE, ACTION}) {
        Reading reading(full().without(part).description());
        EXPECT_EQ(bsdlGetNumErrors(reading), 1) << NAMES[part];
        EXPECT_EQ(reading.handle()->data->isc, nullptr) << NAMES[part];
    }
}

// ---------------------------------------------------------------------------------- extensions

TEST(IscStatements, EnterTheirAttributes)
{
    Reading reading(full().description());
    std::vector<std::string> names;
    for (const GList *link = reading.handle()->data->extensions; link; link = link->next) {
        const auto *entry = static_cast<const ExtensionEntry *>(link->data);
        if (!entry->declared)
            names.push_back(std::string(entry->name) + " of " + entry->source);
    }
    std::vector<std::string> expected;
    for (const char *name : NAMES)
        expected.push_back(std::string(name) + " of DEV");
    // ISC_Design_Warning goes under the name of the statement before it.
    expected.back() = expected[ILLEGAL_EXIT];
    EXPECT_EQ(names, expected);
}

TEST(IscStatements, LastOfSeveralFamiliesCounts)
{
    Family second = Family().with(PIN_BEHAVIOR, "CLAMP");
    Reading reading(
        Family().description().with(EXTENSIONS, Family().text() + "\n" + second.text()));
    // Its flows are none of the first one's.
    expect_messages(errors_and_warnings(reading.messages()), {});
    EXPECT_EQ(reading.handle()->data->isc->pin_behavior, ISC_PIN_BEHAVIOR_CLAMP);
}

} // namespace
