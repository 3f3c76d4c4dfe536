#include "prg/data_file.h"

#include "frame/model.h"

using namespace prg;

namespace
{

using support::Reading;

using Lines = std::vector<std::string>;

std::string text_of(const char *text) { return text ? text : "-"; }

std::string shown(const PrgComponentSetting *setting)
{
    return setting ? text_of(setting->part_name) + " " + text_of(setting->instruction_name) + " " +
                         text_of(setting->register_values)
                   : "none";
}

std::string shown(const PrgProgramSpec *program)
{
    return program ? std::to_string(program->program_type) + " " + text_of(program->part_name) +
                         " " + text_of(program->part_type) + " " + text_of(program->in_file) + " " +
                         text_of(program->out_file)
                   : "none";
}

// The current program by the queries on its parts.
std::string current_program(Bsdl *handle)
{
    const std::string line =
        std::to_string(bsdlPrgProgProgType(handle)) + " " + text_of(bsdlPrgProgPartName(handle)) +
        " " + text_of(bsdlPrgProgPartType(handle)) + " " + text_of(bsdlPrgProgInFile(handle)) +
        " " + text_of(bsdlPrgProgOutFile(handle));
    return line == "-1 - - - -" ? "none" : line;
}

DataFile two_families(const std::string &program_text)
{
    return {.programs = programs(program_text),
            .families = family("TYPE_A") +
                        family("TYPE_B",
                               {{"ISC_PIN_BEHAVIOR", of("TYPE_B", "ISC_PIN_BEHAVIOR", "CLAMP")}})};
}

// ---------------------------------------------------------------------------- channels, settings

TEST(PrgQueries, DesignAndTaps)
{
    Reading reading(
        DataFile{.channels = channels("TAP7 , TAP1 U1 BYPASS (0) , tap99999999999 , TAP1")}.text(),
        options());
    EXPECT_STREQ(bsdlPrgDesignName(reading), "BOARD");
    EXPECT_STREQ(bsdlPrgRevision(reading), "REV_A");
    EXPECT_EQ(bsdlPrgFrequency(reading), 1000000);
    EXPECT_EQ(bsdlPrgNbrOfTaps(reading), 4);
    EXPECT_EQ(bsdlPrgCurrTap(reading), 7);
    EXPECT_EQ(bsdlPrgNextTap(reading), 1);
    EXPECT_EQ(bsdlPrgNextTap(reading), INT32_MAX);
    EXPECT_EQ(bsdlPrgSelectTap(reading, 5), -1);
    EXPECT_EQ(bsdlPrgCurrTap(reading), INT32_MAX);
    EXPECT_EQ(bsdlPrgSelectTap(reading, 1), 1); // the first of them
    EXPECT_EQ(bsdlPrgCurrTap(reading), 1);
    EXPECT_EQ(bsdlPrgNbrOfComponents(reading), 1);
    EXPECT_EQ(bsdlPrgFirstTap(reading), 7);
    for (int32_t tap : {1, INT32_MAX, 1, -1, -1})
        EXPECT_EQ(bsdlPrgNextTap(reading), tap);
    EXPECT_EQ(bsdlPrgCurrTap(reading), -1);
    EXPECT_EQ(bsdlPrgNbrOfComponents(reading), -1);
    EXPECT_EQ(bsdlPrgFirstComponent(reading), nullptr);
    EXPECT_EQ(bsdlPrgSelectTap(reading, 7), 0);
}

TEST(PrgQueries, SettingsOfEachTap)
{
    Reading reading(
        DataFile{.channels = channels("TAP1 U1 BYPASS (1) u2 idcode (0101 1010 X), TAP2 "
                                      "U/9-A(b):c Other (111) U1 sample (0) U1 bypass (1) , TAP3")}
            .text(),
        options());
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdlPrgNbrOfComponents(reading), 2);
    EXPECT_EQ(shown(bsdlPrgFirstComponent(reading)), "U1 BYPASS 1");
    EXPECT_EQ(shown(bsdlPrgNextComponent(reading)), "u2 IDCODE 01011010X");
    EXPECT_STREQ(bsdlPrgComponentName(reading), "u2");
    EXPECT_STREQ(bsdlPrgComponentInstr(reading), "IDCODE");
    EXPECT_EQ(bsdlPrgNextComponent(reading), nullptr);
    EXPECT_EQ(bsdlPrgNextComponent(reading), nullptr);
    EXPECT_EQ(bsdlPrgComponentName(reading), nullptr);
    EXPECT_EQ(bsdlPrgComponentInstr(reading), nullptr);
    // Each channel remembers where it stands.
    EXPECT_EQ(bsdlPrgNextTap(reading), 2);
    EXPECT_EQ(shown(bsdlPrgSelectComponent(reading, "u1")), "U1 SAMPLE 0");
    EXPECT_EQ(bsdlPrgSelectComponent(reading, "U2"), nullptr);
    EXPECT_EQ(bsdlPrgSelectComponent(reading, "no such part"), nullptr);
    EXPECT_EQ(bsdlPrgSelectComponent(reading, nullptr), nullptr);
    EXPECT_EQ(shown(bsdlPrgNextComponent(reading)), "U1 BYPASS 1");
    EXPECT_EQ(bsdlPrgFirstTap(reading), 1);
    EXPECT_EQ(bsdlPrgComponentName(reading), nullptr);
    EXPECT_EQ(bsdlPrgNextTap(reading), 2);
    EXPECT_STREQ(bsdlPrgComponentInstr(reading), "BYPASS");
    EXPECT_EQ(shown(bsdlPrgFirstComponent(reading)), "U/9-A(b):c OTHER 111");
    EXPECT_EQ(bsdlPrgNextTap(reading), 3);
    EXPECT_EQ(bsdlPrgNbrOfComponents(reading), -1);
    EXPECT_EQ(bsdlPrgFirstComponent(reading), nullptr);
    EXPECT_EQ(bsdlPrgNextComponent(reading), nullptr);
}

// ------------------------------------------------------------------------------------- programs

TEST(PrgQueries, ProgramTypesAndFiles)
{
    Reading reading(
        two_families(
            "PROGRAM_ISC U1 TYPE_A in.isc PROGRAM_SVF U2 TYPE_A PROGRAM_STAPL U3(a):b TYPE_B "
            ":: ../out-3.stp PROGRAM_JAM U4 type_a c:/dir/in_4.jam :: out4 PROGRAM_JCS12 U5 T6 "
            "x.dat PROGRAM_JCS99999999999 U6 T6 PROGRAM_ISC2002 U7 TYPE_B b::c")
            .text(),
        options());
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdlPrgNbrOfProgParts(reading), 7);
    Lines lines;
    for (const PrgProgramSpec *program = bsdlPrgFirstProgPart(reading); program;
         program = bsdlPrgNextProgPart(reading)) {
        lines.push_back(shown(program));
        EXPECT_EQ(current_program(reading), lines.back());
        EXPECT_EQ(bsdlPrgCurrProgPart(reading), program);
    }
    EXPECT_EQ(lines, (Lines{"1 U1 TYPE_A in.isc -", "2 U2 TYPE_A - -",
                            "3 U3(a):b TYPE_B - ../out-3.stp", "4 U4 type_a c:/dir/in_4.jam out4",
                            "32780 U5 T6 x.dat -", "-2147450881 U6 T6 - -", "1 U7 TYPE_B b::c -"}));
    for (int i = 0; i < 3; i++)
        EXPECT_EQ(bsdlPrgNextProgPart(reading), nullptr);
    EXPECT_EQ(current_program(reading), "none");
    EXPECT_EQ(bsdlPrgCurrProgPart(reading), nullptr);
    EXPECT_EQ(shown(bsdlPrgSelectProgPart(reading, "u3(A):b")), lines[2]);
    EXPECT_EQ(bsdlPrgSelectProgPart(reading, "U8"), nullptr);
    EXPECT_EQ(bsdlPrgSelectProgPart(reading, nullptr), nullptr);
    EXPECT_EQ(current_program(reading), lines[2]);
    EXPECT_EQ(shown(bsdlPrgNextProgPart(reading)), lines[3]);
    EXPECT_EQ(shown(bsdlPrgFirstProgPart(reading)), lines[0]);
}

// What is selected is what the queries on IEEE 1532 statements see.
TEST(PrgQueries, SelectionOfPartTypes)
{
    Reading reading(
        two_families("PROGRAM_ISC U1 type_a PROGRAM_SVF U2 TYPE_B PROGRAM_ISC U3 TYPE_B").text(),
        options());
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    // Nothing is selected yet; the first query runs the check.
    reading.clear();
    EXPECT_EQ(bsdlIscPinBehavior(reading), 0);
    EXPECT_TRUE(reading.has("\tISC tests done PASS"));

    EXPECT_NE(bsdlPrgFirstProgPart(reading)->component, nullptr);
    EXPECT_EQ(bsdlIscPinBehavior(reading), 1);
    EXPECT_EQ(bsdlPrgNextProgPart(reading)->component, nullptr);
    EXPECT_EQ(bsdlIscPinBehavior(reading), 0);
    EXPECT_NE(bsdlPrgNextProgPart(reading)->component, nullptr);
    EXPECT_EQ(bsdlIscPinBehavior(reading), 2);
    EXPECT_EQ(bsdlPrgNextProgPart(reading), nullptr);
    EXPECT_EQ(bsdlIscPinBehavior(reading), 0);

    EXPECT_EQ(reading.handle()->data->isc, nullptr);
    bsdlPrgSelectProgPart(reading, "U3");
    EXPECT_EQ(bsdlIscPinBehavior(reading), 2);
    EXPECT_NE(reading.handle()->data->isc, nullptr);
    bsdlPrgSelectProgPart(reading, "U9");
    EXPECT_EQ(bsdlIscPinBehavior(reading), 2);
    bsdlPrgSelectProgPart(reading, "U2");
    EXPECT_EQ(bsdlIscPinBehavior(reading), 0);
    EXPECT_EQ(reading.handle()->data->isc, nullptr);
    // Single checks see the part that was selected by name.
    EXPECT_EQ(bsdl_check_isc_status(reading), 4);
    bsdlPrgSelectProgPart(reading, "U1");
    EXPECT_EQ(bsdl_check_isc_status(reading), 0);
}

TEST(PrgQueries, WithoutData)
{
    Reading description{Description()};
    Reading bare(DataFile{.channels = "", .families = ""}.text(), options());
    for (Bsdl *handle : {static_cast<Bsdl *>(nullptr), description.handle(), bare.handle()}) {
        EXPECT_EQ(bsdlPrgNbrOfTaps(handle), -1);
        EXPECT_EQ(bsdlPrgFirstTap(handle), -1);
        EXPECT_EQ(bsdlPrgNextTap(handle), -1);
        EXPECT_EQ(bsdlPrgSelectTap(handle, 0), -1);
        EXPECT_EQ(bsdlPrgCurrTap(handle), -1);
        EXPECT_EQ(bsdlPrgNbrOfComponents(handle), -1);
        EXPECT_EQ(bsdlPrgFirstComponent(handle), nullptr);
        EXPECT_EQ(bsdlPrgNextComponent(handle), nullptr);
        EXPECT_EQ(bsdlPrgSelectComponent(handle, "U1"), nullptr);
        EXPECT_EQ(bsdlPrgComponentName(handle), nullptr);
        EXPECT_EQ(bsdlPrgComponentInstr(handle), nullptr);
        if (handle == bare.handle())
            continue;
        EXPECT_EQ(bsdlPrgDesignName(handle), nullptr);
        EXPECT_EQ(bsdlPrgRevision(handle), nullptr);
        EXPECT_EQ(bsdlPrgFrequency(handle), 0);
        EXPECT_EQ(bsdlPrgNbrOfProgParts(handle), -1);
        EXPECT_EQ(bsdlPrgFirstProgPart(handle), nullptr);
        EXPECT_EQ(bsdlPrgNextProgPart(handle), nullptr);
        EXPECT_EQ(bsdlPrgSelectProgPart(handle, "U1"), nullptr);
        EXPECT_EQ(current_program(handle), "none");
    }
}

TEST(PrgQueries, ManyPartsAndSettings)
{
    constexpr int COUNT = 10000;
    std::string settings = "TAP1";
    std::string programs_text;
    std::string families;
    for (int i = 0; i < COUNT; i++) {
        const std::string number = std::to_string(i);
        const std::string cut = i % 200 ? "" : "\" & \"";
        settings += " U" + number + " BYPASS (0)" + cut;
        programs_text += "PROGRAM_ISC U" + number + " TYPE_" + std::to_string(i % 1000) + " " + cut;
    }
    for (int i = 0; i < 1000; i++)
        families += family("TYPE_" + std::to_string(i));
    Reading reading(DataFile{.channels = channels(settings),
                             .programs = programs(programs_text),
                             .families = families}
                        .text(),
                    options());
    ASSERT_EQ(bsdlGetNumErrors(reading), 0);
    EXPECT_EQ(bsdl_check_prg(reading), 0);
    for (int i = COUNT - 1; i >= 0; i--) {
        const std::string name = "U" + std::to_string(i);
        ASSERT_NE(bsdlPrgSelectComponent(reading, name.c_str()), nullptr);
        ASSERT_NE(bsdlPrgSelectProgPart(reading, name.c_str()), nullptr);
        ASSERT_EQ(bsdlIscPinBehavior(reading), 1);
    }
}

} // namespace
