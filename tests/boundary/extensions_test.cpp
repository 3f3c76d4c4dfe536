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

struct Case {
    const char *name;
    std::string text;
    int errors = 0;
    ExpectedMessages messages = {};
    int32_t result = 0;
    ExpectedMessages check = {};
    std::vector<std::string> kept = {};
};

const char NO_WARNING[] = "\tNo design warning statement";

const Case cases[] = {
    {.name = "declared and defined",
     .text = DECLARED + DEFINED,
     .messages = {{INFORMATION, "\tBSDL extension declaration 'MY_EXT' passed", 4},
                  {INFORMATION, "\tBSDL extension definition 'MY_EXT' passed", 4},
                  {INFORMATION, NO_WARNING, 4}},
     .kept = {"MY_EXT"}},
    {.name = "declared behind its definition, in another case",
     .text = DEFINED + "attribute my_ext : bsdl_extension;",
     .messages = {{INFORMATION, "\tBSDL extension definition 'MY_EXT' passed", 4},
                  {INFORMATION, "\tBSDL extension declaration 'my_ext' passed", 4},
                  {INFORMATION, NO_WARNING, 4}},
     .kept = {"MY_EXT"}},
    {.name = "declared alone",
     .text = DECLARED,
     .messages = {{INFORMATION, "\tBSDL extension declaration 'MY_EXT' passed", 4},
                  {INFORMATION, NO_WARNING, 4}}},
    {.name = "defined alone",
     .text = DEFINED,
     .messages = {{INFORMATION, "\tBSDL extension definition 'MY_EXT' passed", 4},
                  {INFORMATION, NO_WARNING, 4}},
     .result = 100,
     .check = {{ERROR, "Extension 'MY_EXT' in 'DEV' is defined but not declared", 1}}},
    {.name = "two definitions of one name, the first remains",
     .text = attribute("my_ext", "1") + DECLARED + DEFINED + attribute("OTHER", "x"),
     .messages = {{INFORMATION, "\tBSDL extension definition 'my_ext' passed", 4},
                  {INFORMATION, "\tBSDL extension declaration 'MY_EXT' passed", 4},
                  {INFORMATION, "\tBSDL extension definition 'MY_EXT' passed", 4},
                  {INFORMATION, "\tBSDL extension definition 'OTHER' passed", 4},
                  {INFORMATION, NO_WARNING, 4}},
     .result = 100,
     .check = {{ERROR, "Extension 'OTHER' in 'DEV' is defined but not declared", 1}},
     .kept = {"my_ext"}},
    {.name = "definition with an error leaves no entry",
     .text = DECLARED + "attribute MY_EXT of DEV : entity is 5;",
     .errors = 1,
     .messages = {{INFORMATION, "\tBSDL extension declaration 'MY_EXT' passed", 4},
                  {ERROR, "Skipping extension_definition due to errors", 1},
                  {INFORMATION, NO_WARNING, 4}}},
    {.name = "classes",
     .text =
         "attribute CORVANE_CLASS : BSDL_EXTENSION;" + attribute("CORVANE_CLASS", "kind : Flash"),
     .messages = {{INFORMATION, "\tBSDL Corvane extensions found", 2},
                  {INFORMATION, NO_WARNING, 4}},
     .kept = {"CORVANE_CLASS"}},
    {.name = "classes that are not declared",
     .text = attribute("CORVANE_CLASS", "kind : Flash"),
     .messages = {{INFORMATION, "\tBSDL Corvane extensions found", 2},
                  {INFORMATION, NO_WARNING, 4}},
     .result = 100,
     .check = {{ERROR, "Extension 'CORVANE_CLASS' in 'DEV' is defined but not declared", 1}}},
    {.name = "classes with an error",
     .text = "attribute CORVANE_CLASS of DEV : entity is 5;",
     .errors = 1,
     .messages = {{ERROR, "Skipping Corvane_Class due to errors", 1},
                  {INFORMATION, "\tBSDL Corvane extensions found", 2},
                  {INFORMATION, NO_WARNING, 4}}},
};

TEST(Extensions, ReadAndChecked)
{
    for (const Case &row : cases) {
        SCOPED_TRACE(row.name);
        Reading reading(Description().with(EXTENSIONS, row.text));
        ASSERT_TRUE(reading.handle());
        EXPECT_EQ(row.errors, bsdlGetNumErrors(reading));
        expect_messages(of_extensions(reading.messages()), row.messages);
        EXPECT_EQ(row.result, reading.check(bsdl_check_extensions));
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

TEST(DesignWarning, PartsAreJoinedByLineEnds)
{
    Reading reading(Description().with(
        DESIGN_WARNING,
        "attribute DESIGN_WARNING of DEV : entity is \"Keep RESET low;\" & \" or else\";"));
    EXPECT_STREQ("Keep RESET low;\n or else", bsdlDesignWarning(reading));
    expect_messages(of_extensions(reading.messages()),
                    {{INFORMATION, "\tDesign warning statement passed", 3}});
    EXPECT_EQ(nullptr, bsdlDesignWarning(nullptr));
}

TEST(DesignWarning, Skipped)
{
    Reading reading(
        Description().with(DESIGN_WARNING, "attribute DESIGN_WARNING of DEV : entity is 5;"));
    EXPECT_EQ(nullptr, bsdlDesignWarning(reading));
    EXPECT_EQ(1, bsdlGetNumErrors(reading));
    expect_messages(of_extensions(reading.messages()),
                    {{ERROR, "Skipping design_warning due to errors", 1}});
}

TEST(DesignWarning, AheadOfExtensions)
{
    for (bool strict : {false, true}) {
        Description description;
        description.with(EXTENSIONS, attribute("DESIGN_WARNING", "careful") + "\n" + DECLARED);
        Reading reading(description, {.flags = strict ? STRICT : 0});
        EXPECT_EQ(0, bsdlGetNumErrors(reading));
        EXPECT_STREQ("careful", bsdlDesignWarning(reading));
        expect_messages(
            of_extensions(reading.messages()),
            {{INFORMATION, "\tDesign warning statement passed", 3},
             {INFORMATION, "\tBSDL extension declaration 'MY_EXT' passed", 4},
             {strict ? ERROR : WARNING,
              "Wrong ordening of statements \"DESIGN_WARNING\" and BSDL Extensions ", 2}});
    }
}

} // namespace
