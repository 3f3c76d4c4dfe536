#include "boundary/boundary.h"

#include "support/description.h"

using namespace support;

namespace
{

using support::Reading;

const std::string DECLARED = "attribute MY_EXT : BSDL_EXTENSION;\n";
const std::string DEFINED = attribute("MY_EXT", "anything (at all") + "\n";

Messages of_extensions(const Messages &messages)
{
    return picked(messages, [](const Message &message) {
        for (const char *word : {"xtension", "Corvane", "esign", "DESIGN"})
            if (message.text.find(word) != std::string::npos)
                return true;
        return false;
    });
}

Expected declaration(const std::string &name)
{
    return {INFORMATION, "\tBSDL extension declaration '" + name + "' passed", 4};
}

Expected definition(const std::string &name)
{
    return {INFORMATION, "\tBSDL extension definition '" + name + "' passed", 4};
}

Expected undeclared(const std::string &name)
{
    return {ERROR, "Extension '" + name + "' in 'DEV' is defined but not declared", 1};
}

const Expected NO_WARNING = {INFORMATION, "\tNo design warning statement", 4};
const Expected WARNING_PASSED = {INFORMATION, "\tDesign warning statement passed", 3};
const Expected CLASSES = {INFORMATION, "\tBSDL Corvane extensions found", 2};

Expected misplaced(Level level)
{
    return {level, "Wrong ordening of statements \"DESIGN_WARNING\" and BSDL Extensions ", 2};
}

struct Case {
    const char *name;
    std::string text;
    ExpectedMessages messages;
    ExpectedMessages check = {};
    std::vector<std::string> kept = {}; // extensions, by the check
    const char *warning = nullptr;
    unsigned flags = 0;
};

const Case cases[] = {
    {.name = "declared and defined",
     .text = DECLARED + DEFINED,
     .messages = {declaration("MY_EXT"), definition("MY_EXT"), NO_WARNING},
     .kept = {"MY_EXT"}},
    {.name = "declared behind its definition, in another case",
     .text = DEFINED + "attribute my_ext : bsdl_extension;",
     .messages = {definition("MY_EXT"), declaration("my_ext"), NO_WARNING},
     .kept = {"MY_EXT"}},
    {.name = "declared alone", .text = DECLARED, .messages = {declaration("MY_EXT"), NO_WARNING}},
    {.name = "two definitions of one name, the first remains; one that is not declared",
     .text = attribute("my_ext", "1") + DECLARED + DEFINED + attribute("OTHER", "x"),
     .messages = {definition("my_ext"), declaration("MY_EXT"), definition("MY_EXT"),
                  definition("OTHER"), NO_WARNING},
     .check = {undeclared("OTHER")},
     .kept = {"my_ext"}},
    {.name = "definition with an error leaves no entry",
     .text = DECLARED + "attribute MY_EXT of DEV : entity is 5;",
     .messages = {declaration("MY_EXT"),
                  {ERROR, "Skipping extension_definition due to errors", 1},
                  NO_WARNING}},
    {.name = "classes",
     .text =
         "attribute CORVANE_CLASS : BSDL_EXTENSION;" + attribute("CORVANE_CLASS", "kind : Flash"),
     .messages = {CLASSES, NO_WARNING},
     .kept = {"CORVANE_CLASS"}},
    {.name = "classes that are not declared",
     .text = attribute("CORVANE_CLASS", "kind : Flash"),
     .messages = {CLASSES, NO_WARNING},
     .check = {undeclared("CORVANE_CLASS")}},
    {.name = "classes with an error",
     .text = "attribute CORVANE_CLASS of DEV : entity is 5;",
     .messages = {{ERROR, "Skipping Corvane_Class due to errors", 1}, CLASSES, NO_WARNING}},
    {.name = "warning in parts, behind the extensions",
     .text = DECLARED +
             "attribute DESIGN_WARNING of DEV : entity is \"Keep RESET low;\" & \" or else\";",
     .messages = {declaration("MY_EXT"), WARNING_PASSED},
     .warning = "Keep RESET low;\n or else"},
    {.name = "warning with an error",
     .text = "attribute DESIGN_WARNING of DEV : entity is 5;",
     .messages = {{ERROR, "Skipping design_warning due to errors", 1}}},
    {.name = "warning ahead of the extensions",
     .text = attribute("DESIGN_WARNING", "careful") + DECLARED,
     .messages = {WARNING_PASSED, declaration("MY_EXT"), misplaced(WARNING)},
     .warning = "careful"},
    {.name = "warning ahead of the extensions, strict",
     .text = attribute("DESIGN_WARNING", "careful") + DECLARED,
     .messages = {WARNING_PASSED, declaration("MY_EXT"), misplaced(ERROR)},
     .warning = "careful",
     .flags = STRICT},
};

TEST(Extensions, ReadAndChecked)
{
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(Description().with(EXTENSIONS, row.text), {.flags = row.flags});
        ASSERT_TRUE(reading.handle());
        expect_messages(of_extensions(reading.messages()), row.messages);
        EXPECT_STREQ(row.warning, bsdlDesignWarning(reading));
        EXPECT_EQ(row.check.empty() ? 0 : 100, reading.check(bsdl_check_extensions));
        expect_messages(reading.messages(), row.check);
        std::vector<std::string> kept;
        for (const GList *link = reading.handle()->data->extensions; link; link = link->next)
            kept.push_back(static_cast<const ExtensionEntry *>(link->data)->name);
        EXPECT_EQ(row.kept, kept);
    }
}

// The declarations are gone by then.
TEST(Extensions, SecondCheckFindsDefinitionsUndeclared)
{
    Reading reading(Description().with(EXTENSIONS, DECLARED + DEFINED));
    EXPECT_EQ(0, reading.check(bsdl_check_extensions));
    EXPECT_EQ(100, reading.check(bsdl_check_extensions));
    EXPECT_EQ(0, reading.check(bsdl_check_extensions));
    EXPECT_EQ(2, bsdl_check_extensions(nullptr));
    EXPECT_EQ(nullptr, bsdlDesignWarning(nullptr));
}

TEST(Extensions, ClassesByKeyInAnyCase)
{
    Reading reading(Description().with(
        EXTENSIONS, attribute("CORVANE_CLASS", "Kind : Flash, size : K64, KIND : Ram") + "\n" +
                        attribute("CORVANE_CLASS", "More : Yes")));
    EXPECT_STREQ("Flash", bsdlGetCorvaneClass(reading, "KIND"));
    EXPECT_STREQ("K64", bsdlGetCorvaneClass(reading, "Size"));
    EXPECT_STREQ("Yes", bsdlGetCorvaneClass(reading, "more"));
    EXPECT_EQ(nullptr, bsdlGetCorvaneClass(reading, "Flash"));
    EXPECT_EQ(nullptr, bsdlGetCorvaneClass(reading, "nothing"));
    EXPECT_EQ(nullptr, bsdlGetCorvaneClass(reading, nullptr));
    EXPECT_EQ(nullptr, bsdlGetCorvaneClass(nullptr, "kind"));
}

} // namespace
