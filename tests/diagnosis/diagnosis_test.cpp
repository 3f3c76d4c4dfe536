// One mistake in a clean description is one finding, at its place, with the edit that fixes it.

#include "support/description.h"
#include "tarnlet/diagnosis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

using support::replaced;

namespace
{

struct Release {
    void operator()(BsdlDiagnosis *diagnosis) const { bsdlDiagnosisRelease(diagnosis); }
};
using Diagnosis = std::unique_ptr<BsdlDiagnosis, Release>;

enum Fix { NONE, GUESS, SURE };

struct MistakeCase {
    const char *name;
    const char *right; // stands once in the example
    const char *wrong;
    const char *rule;
    Fix fix;
    const char *hint; // a part of it
};

class Mistake : public testing::TestWithParam<MistakeCase>
{
};

std::string example() { return support::read_text(support::example("demo.bsd")); }

Diagnosis diagnose(const std::string &text)
{
    return Diagnosis(bsdlDiagnose(text.data(), text.size(), "demo.bsd", nullptr));
}

std::vector<const BsdlFinding *> findings(const Diagnosis &diagnosis)
{
    std::vector<const BsdlFinding *> all;
    for (uint32_t i = 0; i < bsdlFindingCount(diagnosis.get()); i++)
        all.push_back(bsdlFindingAt(diagnosis.get(), i));
    return all;
}

std::vector<const BsdlFinding *> standing(const Diagnosis &diagnosis)
{
    std::vector<const BsdlFinding *> all = findings(diagnosis);
    std::erase_if(all, [](const BsdlFinding *finding) {
        return finding->because >= 0 || finding->severity == BSDL_SEVERITY_NOTE;
    });
    return all;
}

size_t offset_of(const std::string &text, int32_t line, int32_t column)
{
    size_t at = 0;
    while (--line > 0)
        at = text.find('\n', at) + 1;
    return at + static_cast<size_t>(column) - 1;
}

std::string text_at(const std::string &text, const BsdlPlace &place)
{
    const size_t begin = offset_of(text, place.line, place.column);
    return text.substr(begin, offset_of(text, place.end_line, place.end_column) - begin);
}

std::string with_edits(std::string text, const BsdlFinding *finding)
{
    for (uint32_t i = finding->edit_count; i-- > 0;) {
        const BsdlPlace &place = finding->edits[i].place;
        const size_t begin = offset_of(text, place.line, place.column);
        const size_t end = offset_of(text, place.end_line, place.end_column);
        text.replace(begin, end - begin, finding->edits[i].text);
    }
    return text;
}

// Neither blanks nor letter case count, nor the way in which a value is split into strings.
std::string without_blanks(std::string text)
{
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    for (size_t at = text.find("\"&\""); at != std::string::npos; at = text.find("\"&\"", at))
        text.erase(at, 3);
    for (char &c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string listed(const Diagnosis &diagnosis)
{
    std::ostringstream list;
    for (const BsdlFinding *finding : findings(diagnosis))
        list << finding->place.line << ':' << finding->place.column << ' ' << finding->rule << ' '
             << finding->because << ' ' << finding->text << " | "
             << (finding->hint ? finding->hint : "") << '\n';
    return list.str();
}

// The one finding that stands for itself, which has to be of that rule; NULL for any other number.
const BsdlFinding *the_one(const Diagnosis &diagnosis, const char *rule)
{
    const auto found = standing(diagnosis);
    EXPECT_EQ(found.size(), 1u) << listed(diagnosis);
    if (found.size() != 1)
        return nullptr;
    EXPECT_STREQ(found[0]->rule, rule);
    return found[0];
}

} // namespace

TEST_P(Mistake, IsOneFinding)
{
    const std::string right = example();
    const std::string wrong = replaced(right, GetParam().right, GetParam().wrong);
    const Diagnosis diagnosis = diagnose(wrong);
    const auto found = standing(diagnosis);
    ASSERT_EQ(found.size(), 1u) << listed(diagnosis);
    EXPECT_STREQ(found[0]->rule, GetParam().rule);
    ASSERT_TRUE(found[0]->hint) << listed(diagnosis);
    EXPECT_NE(std::string(found[0]->hint).find(GetParam().hint), std::string::npos)
        << found[0]->hint;
    const size_t first = right.find(GetParam().right);
    const size_t place = offset_of(wrong, found[0]->place.line, found[0]->place.column);
    EXPECT_LE(first, place + 1) << listed(diagnosis);
    EXPECT_LE(place, first + std::string_view(GetParam().wrong).size()) << listed(diagnosis);
    ASSERT_EQ(found[0]->edit_count > 0, GetParam().fix != NONE) << listed(diagnosis);
    if (GetParam().fix == NONE)
        return;
    EXPECT_EQ(found[0]->fix_sure != 0, GetParam().fix == SURE);
    EXPECT_EQ(without_blanks(with_edits(wrong, found[0])), without_blanks(right));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Diagnosis, Mistake, testing::Values(
    MistakeCase{"comma_between_pins", "\"SDA     : 18, \" &", "\"SDA     : 18\" &", "syntax-error", SURE, "a comma is missing after 18"},
    MistakeCase{"comma_between_cells", "CLK,      CLOCK,        X                  ), \" &", "CLK,      CLOCK,        X                  ) \" &", "syntax-error", SURE, "a comma is missing"},
    MistakeCase{"comma_twice", "\"TCK     : 38, \"", "\"TCK     : 38,, \"", "syntax-error", SURE, "comma does not belong here"},
    MistakeCase{"ampersand", "\"TDI     : 39, \" &", "\"TDI     : 39, \"", "syntax-error", SURE, "'&' is missing"},
    MistakeCase{"closing_quotation_mark", "\"TDO     : 40, \" &", "\"TDO     : 40,  &", "syntax-error", SURE, "a quotation mark is missing"},
    MistakeCase{"semicolon", "INSTRUCTION_LENGTH of tarn_demo : entity is 6;", "INSTRUCTION_LENGTH of tarn_demo : entity is 6", "syntax-error", SURE, "a semicolon is missing after 6"},
    MistakeCase{"colon", "TAP_SCAN_MODE  of TMS    : signal", "TAP_SCAN_MODE  of TMS     signal", "syntax-error", SURE, "a colon is missing after TMS"},
    MistakeCase{"parenthesis", "\"EXTEST    (000000), \"", "\"EXTEST    000000), \"", "syntax-error", SURE, "parenthesis is missing"},
    MistakeCase{"keyword", "attribute TAP_SCAN_OUT ", "atribute TAP_SCAN_OUT ", "syntax-error", SURE, "attribute?"},
    MistakeCase{"attribute_name", "attribute INSTRUCTION_OPCODE of", "attribute INSTRUCTION_OPCOD of", "syntax-error", SURE, "INSTRUCTION_OPCODE?"},
    MistakeCase{"letters_of_the_text", "attribute BOUNDARY_LENGTH of", "attribute Boundary_Lenght of", "syntax-error", SURE, "Boundary_Length?"},
    MistakeCase{"letter_for_digit", "\"CLAMP     (000100), \"", "\"CLAMP     (00O100), \"", "syntax-error", SURE, "letters stand among the digits"},
    MistakeCase{"typographic_quotes", "\"FACTORY\";", "\xE2\x80\x9C" "FACTORY\xE2\x80\x9D;", "syntax-error", SURE, "typographic quotation marks"},
    MistakeCase{"run_together", "SDA      : inout   bit;", "SDA      : inoutbit;", "syntax-error", SURE, "a blank is missing"},
    MistakeCase{"subscript", "BC_1, ADDR(2),  INPUT", "BC_1, ADDR2),  INPUT", "syntax-error", SURE, "an opening parenthesis is missing after ADDR"},
    MistakeCase{"numbers_run_together", "BC_1, Q(3),     OUTPUT3,      X,    5,    1,     Z", "BC_1, Q(3),     OUTPUT3,      X,    51,     Z", "syntax-error", GUESS, "a comma is missing after 5"},
    MistakeCase{"entity_name", "attribute BOUNDARY_LENGTH of tarn_demo", "attribute BOUNDARY_LENGTH of tarn_dmo", "component-name-mismatch", GUESS, "the entity is called tarn_demo"},
    MistakeCase{"end", "\nend tarn_demo;", "\n", "syntax-error", SURE, "the end of the description is missing"},
    MistakeCase{"mapped_port", "\"RDY     : 27, \"", "\"RYD     : 27, \"", "mapped-port-undeclared", GUESS, "there is no port RYD; RDY?"},
    MistakeCase{"register_instruction", "TRIM_READ CAPTURES", "TRIM_RAED CAPTURES", "register-instruction-unknown", GUESS, "TRIM_READ?"},
    MistakeCase{"boundary_length", "BOUNDARY_LENGTH of tarn_demo : entity is 26", "BOUNDARY_LENGTH of tarn_demo : entity is 27", "cell-number-missing", GUESS, "the table ends with row 25"},
    MistakeCase{"port_of_a_cell", "\"  5  (  BC_1, OE_N, ", "\"  5  (  BC_1, OEN_, ", "cell-port-undefined", GUESS, "OE_N?"},
    MistakeCase{"port_with_subscript", "BC_1, ADDR(2), ", "BC_1, ADRD(2), ", "cell-port-undefined", GUESS, "ADDR?"},
    MistakeCase{"extension", "attribute TARN_SPEED_GRADE of", "attribute TARN_SPEED_GRAED of", "extension-undeclared", GUESS, "TARN_SPEED_GRADE?"},
    MistakeCase{"pins_run_together", "(11, 23, 35, 47)", "(11, 2335, 47)", "pin-count-mismatch", GUESS, "a comma is missing after 23"},
    MistakeCase{"pins_of_two_lines", "(12, 24, 36, 48)", "(12, 24\" & \"36, 48)", "pin-count-mismatch", GUESS, "a comma is missing after 24"},
    MistakeCase{"opcodes_run_together", "(100000, 100001)", "(100000100001)", "opcode-length", GUESS, "a comma is missing after 100000"}),
    [](const auto &param) { return std::string(param.param.name); });
// clang-format on

TEST(Diagnosis, TwoMistakesAreTwoFindings)
{
    struct Change {
        const char *right;
        const char *wrong;
    };
    constexpr Change PAIRS[][2] = {
        {{"\"SDA     : 18, \" &", "\"SDA     : 18 \" &"}, {"entity is 6;", "entity is 6"}},
        // A string is read to its end before what is in it.
        {{"OE_N,     INPUT,", "OE_N,     INUPT,"},
         {"21,    1,     PULL1), \" &", "21,    1,     PULL1), \""}},
        // A quotation mark less would hide the second one in a string.
        {{"\"TQFP48\");", "\"TQFP48\")"}, {"TMS      : in", "TMS      in"}},
        {{"\"  2  (  BC_1,", "  2  (  BC_1,"},
         {"\" 25  (  BC_1, *,        INTERNAL,     X                  )\"",
          "\x93 25  (  BC_1, *,        INTERNAL,     X                  )\x94"}}};
    for (const auto &pair : PAIRS) {
        std::string text = replaced(example(), pair[0].right, pair[0].wrong);
        text = replaced(text, pair[1].right, pair[1].wrong);
        const Diagnosis diagnosis = diagnose(text);
        EXPECT_EQ(standing(diagnosis).size(), 2u) << listed(diagnosis);
        EXPECT_EQ(without_blanks(bsdlDiagnosisText(diagnosis.get(), nullptr)),
                  without_blanks(example()));
    }
}

TEST(Diagnosis, EntityThatAllAttributesCallOtherwise)
{
    std::string text = replaced(example(), "entity tarn_demo is", "entity tarn_dmeo is");
    text = replaced(text, "end tarn_demo;", "end tarn_dmeo;");
    const Diagnosis diagnosis = diagnose(text);
    const BsdlFinding *found = the_one(diagnosis, "component-name-mismatch");
    ASSERT_TRUE(found);
    EXPECT_EQ(without_blanks(bsdlDiagnosisText(diagnosis.get(), nullptr)),
              without_blanks(example()));
}

TEST(Diagnosis, InstructionListedTwice)
{
    const std::string wrong =
        replaced(example(), "\"FACTORY   (", "\"TRIM_LOAD (010000), \" & \"FACTORY   (");
    const Diagnosis diagnosis = diagnose(wrong);
    const BsdlFinding *found = the_one(diagnosis, "instruction-listed-twice");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->related_count, 1u);
    EXPECT_EQ(bsdlFindingCount(diagnose(with_edits(wrong, found)).get()), 0u);
}

TEST(Diagnosis, OptionsOfAnOlderHeaderAreShorter)
{
    const BsdlDiagnosisOptions options = {.size = offsetof(BsdlDiagnosisOptions, cancelled),
                                          .cancelled = [](void *) -> int32_t { return 1; }};
    const std::string text = example();
    EXPECT_TRUE(Diagnosis(bsdlDiagnose(text.data(), text.size(), "x", &options)));
}

TEST(Diagnosis, MisspeltRegisterOfTheStandard)
{
    const std::string wrong = replaced(example(), "\"SIGNATURE[16] (RUNBIST)\";",
                                       "\"BYPSAS (CLAMP), \" & \"SIGNATURE[16] (RUNBIST)\";");
    const Diagnosis diagnosis = diagnose(wrong);
    const BsdlFinding *found = the_one(diagnosis, "register-length-missing");
    ASSERT_TRUE(found);
    EXPECT_EQ(bsdlFindingCount(diagnose(with_edits(wrong, found)).get()), 0u);
}

TEST(Diagnosis, CleanTextHasNoFinding)
{
    const Diagnosis diagnosis = diagnose(example());
    EXPECT_EQ(bsdlFindingCount(diagnosis.get()), 0u) << listed(diagnosis);
    EXPECT_EQ(bsdlDiagnosisChecked(diagnosis.get()), uint32_t{BSDL_CHECKED_GENERAL});
    EXPECT_STREQ(bsdlComponentName(bsdlDiagnosisBsdl(diagnosis.get())), "tarn_demo");
}

TEST(Diagnosis, StatementThatNothingMendsIsSetAside)
{
    const std::string text =
        replaced(example(), "\"(TEST_EN, FUSE_EN) (10, 00)\"", "\"#1 @2 !3 %4 {5} =6\"");
    const Diagnosis diagnosis = diagnose(text);
    const auto found = standing(diagnosis);
    ASSERT_EQ(found.size(), 1u) << listed(diagnosis);
    EXPECT_EQ(text_at(text, found[0]->place), "1");
    EXPECT_NE(std::string(found[0]->hint).find("set aside"), std::string::npos);
    EXPECT_EQ(found[0]->edit_count, 0u);
    EXPECT_EQ(bsdlGetBSRLength(bsdlDiagnosisBsdl(diagnosis.get())), 26);
}

TEST(Diagnosis, PackageThatIsMissingHidesNothing)
{
    const Diagnosis diagnosis = diagnose(replaced(example(), "use STD_1149_1_2001.all;",
                                                  "use STD_1149_1_2001.all; use NOT_THERE.all;"));
    const BsdlFinding *found = the_one(diagnosis, "package-not-found");
    ASSERT_TRUE(found);
    EXPECT_GT(found->related_count, 0u);
}

TEST(Diagnosis, LaterStandardIsReadAsTheNewestKnown)
{
    const Diagnosis diagnosis = diagnose(
        replaced(replaced(example(), "use STD_1149_1_2001.all;", "use STD_1149_1_2013.all;"),
                 "\"STD_1149_1_2001\"", "\"STD_1149_1_2013\""));
    for (const BsdlFinding *finding : findings(diagnosis))
        EXPECT_FALSE(finding->fix_sure) << listed(diagnosis);
    const BsdlFinding *found = the_one(diagnosis, "standard-unknown");
    ASSERT_TRUE(found);
}

TEST(Diagnosis, OpenPackageIsANoteAndAllPinMapsAreChecked)
{
    std::string text = replaced(example(), ":= \"TQFP48\"", ":= \"UNDEFINED\"");
    text = replaced(text, "\"IRQ_N   : D1, \"", "\"IRQ_N   : D2, \"");
    const Diagnosis diagnosis = diagnose(text);
    const BsdlFinding *found = the_one(diagnosis, "pin-id-not-unique");
    ASSERT_TRUE(found);
}

TEST(Diagnosis, MisspeltPackageOfTheGenericParameter)
{
    const std::string text = replaced(example(), ":= \"TQFP48\"", ":= \"TQFP84\"");
    const Diagnosis diagnosis = diagnose(text);
    const auto found = findings(diagnosis);
    ASSERT_EQ(found.size(), 1u) << listed(diagnosis);
    EXPECT_EQ(text_at(text, found[0]->place), "TQFP84");
    EXPECT_STREQ(found[0]->hint, "there is no pin map TQFP84; TQFP48? (the description leaves the "
                                 "package open; checked with TQFP48, BGA49)");
}

TEST(Diagnosis, WorkIsBoundedWhateverTheText)
{
    std::string mistakes = "entity x is\n";
    for (int i = 0; i < 10000; i++)
        mistakes += "attribute , of : \"" + std::to_string(i) + ";\n";
    for (const std::string &text :
         {std::string(), std::string(1, '\0'), std::string(5000, '"'), std::string(20000, '('),
          mistakes, example().substr(0, 1000), std::string(100000, 'a')}) {
        const Diagnosis diagnosis = diagnose(text);
        EXPECT_TRUE(diagnosis);
    }
    EXPECT_EQ(bsdlDiagnose(nullptr, 1, "x", nullptr), nullptr);
    EXPECT_EQ(bsdlDiagnose("", 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(bsdlFindingAt(nullptr, 0), nullptr);
}

TEST(Diagnosis, CallerMayCancel)
{
    const std::string text = replaced(example(), "entity is 6;", "entity is 6");
    const BsdlDiagnosisOptions options = {.size = sizeof options,
                                          .cancelled = [](void *) -> int32_t { return 1; }};
    EXPECT_EQ(bsdlDiagnose(text.data(), text.size(), "x", &options), nullptr);
}
