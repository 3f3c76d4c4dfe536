#include "support/description.h"

#include <algorithm>
#include <fstream>
#include <sstream>

using namespace support;

namespace
{

constexpr std::string_view OPENING = "‹";
constexpr std::string_view CLOSING = "›";

struct Position {
    int line = 1;
    int column = 1;
};

// A row of places.txt.
struct PlaceCase {
    int line = 0;
    std::string rule;
    std::string text; // with the marks
    std::string name; // of the file
    unsigned flags = 0;
};

std::string unescaped(std::string text)
{
    const std::pair<std::string_view, std::string_view> escapes[] = {
        {"\\n", "\n"}, {"\\r", "\r"}, {"\\x01", "\x01"}};
    for (const auto &[escape, character] : escapes)
        for (size_t at; (at = text.find(escape)) != std::string::npos;)
            text.replace(at, escape.size(), character);
    return text;
}

std::vector<std::string> fields_of(const std::string &line)
{
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, '|');) {
        field.erase(0, std::min(field.find_first_not_of(' '), field.size()));
        field.erase(field.find_last_not_of(' ') + 1);
        fields.push_back(unescaped(field));
    }
    return fields;
}

std::vector<PlaceCase> read_cases()
{
    std::vector<PlaceCase> cases;
    std::ifstream file(std::string(TARNLET_SOURCE_DIR) + "/tests/frame/places.txt");
    PlaceCase base;
    std::string line;
    for (int number = 1; std::getline(file, line); number++) {
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] == '=') {
            std::istringstream words(line.substr(1));
            std::string strict;
            words >> base.name >> strict;
            base.flags = strict == "strict" ? STRICT : 0;
            base.text = read_text(example(base.name));
            continue;
        }
        std::vector<std::string> fields = fields_of(line);
        if (fields.size() % 2 == 0)
            fields.emplace_back();
        PlaceCase row = base;
        row.line = number;
        row.rule = fields[0];
        for (size_t i = 1; i + 1 < fields.size(); i += 2) {
            const size_t at = row.text.find(fields[i]);
            EXPECT_NE(at, std::string::npos) << "places.txt:" << number << " " << fields[i];
            if (at != std::string::npos)
                row.text.replace(at, fields[i].size(), fields[i + 1]);
        }
        cases.push_back(row);
    }
    return cases;
}

// Takes a mark out of the text and gives where it stood.
Position take_mark(std::string &text, std::string_view mark)
{
    const size_t end = text.find(mark);
    EXPECT_NE(end, std::string::npos) << mark;
    text.erase(end, mark.size());
    Position position;
    for (size_t at = 0; at < end; at++) {
        const bool ends_line = text[at] == '\n' || (text[at] == '\r' && text[at + 1] != '\n');
        position = ends_line ? Position{position.line + 1, 1}
                             : Position{position.line, position.column + 1};
    }
    return position;
}

std::string shown(Position begin, Position end)
{
    std::ostringstream text;
    text << begin.line << ":" << begin.column << "-" << end.line << ":" << end.column;
    return text.str();
}

std::string place_of(const Message &message)
{
    return shown({message.line, message.column}, {message.end_line, message.end_column});
}

// The places of all messages of a rule, from the reading and the checks that are for the file.
std::vector<std::string> places_of(const PlaceCase &row)
{
    Options options;
    options.flags = row.flags;
    options.name = row.name;
    Reading reading(row.text, options);
    Messages messages = reading.messages();
    const auto check = [&](int32_t (*run)(Bsdl *)) {
        reading.check(run);
        messages.insert(messages.end(), reading.messages().begin(), reading.messages().end());
    };
    if (reading.handle() && bsdlIsPrg(reading)) {
        check(bsdl_check_prg);
    } else if (reading.handle()) {
        check(bsdl_check);
        if (bsdlIs1532(reading))
            check(bsdl_check_isc);
        if (bsdlIsAio(reading))
            check(bsdl_check_aio);
    }
    std::vector<std::string> places;
    for (const Message &message : messages)
        if (message.rule == row.rule)
            places.push_back(place_of(message));
    return places;
}

} // namespace

TEST(Places, Rules)
{
    for (PlaceCase &row : read_cases()) {
        SCOPED_TRACE("places.txt:" + std::to_string(row.line) + " " + row.rule);
        const Position begin = take_mark(row.text, OPENING);
        const Position end = take_mark(row.text, CLOSING);
        const std::vector<std::string> places = places_of(row);
        EXPECT_NE(std::find(places.begin(), places.end(), shown(begin, end)), places.end())
            << "wanted " << shown(begin, end) << ", got "
            << (places.empty() ? "no message" : places[0]);
    }
}

// Lines are kept in blocks, and lines may be longer than one.
TEST(Places, LinesOfAnyLengthAndNumber)
{
    for (const char *line_end : {"\n", "\r\n", "\r"}) {
        for (size_t length : {0, 1, 63, 100, 8190, 8191, 8192, 8193, 20000}) {
            SCOPED_TRACE(length);
            std::string before;
            int lines = 0;
            for (; lines < 4 || before.size() < 30000; lines++)
                // Blanks, since a comment may not be as long.
                before += std::string(length, ' ') + line_end;
            Reading reading(before + "  entity DEV 7");
            ASSERT_FALSE(reading.messages().empty());
            const Messages errors = errors_and_warnings(reading.messages());
            ASSERT_FALSE(errors.empty());
            EXPECT_EQ(place_of(errors[0]), shown({lines + 1, 14}, {lines + 1, 15}));
        }
    }
}

TEST(Places, OfAPackageFileAndOfNothing)
{
    Options options;
    options.files = {{"CELLS.all", "package CELLS is\nuse STD_1149_1_2001.all;\n"
                                   "constant NEW_1 : ;\nend CELLS;\n"}};
    Reading reading(Description().with(USES, "use CELLS.all;"), options);
    bool found = false;
    for (const Message &message : reading.messages()) {
        EXPECT_TRUE(message.line > 0 || place_of(message) == "0:0-0:0") << message;
        if (message.rule != "syntax-error" || found)
            continue;
        found = true;
        EXPECT_EQ(place_of(message), "3:18-3:19");
        EXPECT_NE(message.file.find("CELLS"), std::string::npos);
    }
    EXPECT_TRUE(found);
    EXPECT_EQ(bsdlMessageColumn(), 0);
    EXPECT_EQ(bsdlMessageEndLine(), 0);
    EXPECT_EQ(bsdlMessageEndColumn(), 0);
}

// -------------------------------------------------------------------------------- expected tokens

namespace
{

struct ExpectedText {
    std::string seen;
    BsdlContext context = {take, this, 1};

    static void take(void *self, BsdlMessage *message)
    {
        int32_t count = -1;
        const BsdlExpected *tokens = bsdlMessageExpected(&count);
        EXPECT_EQ(tokens != nullptr,
                  bsdlMessageRule() && std::string("syntax-error") == bsdlMessageRule())
            << message->text;
        std::string &seen = static_cast<ExpectedText *>(self)->seen;
        for (int32_t i = 0; i < count; i++)
            seen +=
                std::string(tokens[i].name) + "=" + (tokens[i].text ? tokens[i].text : "-") + " ";
    }
};

std::string expected_in(const std::string &text)
{
    ExpectedText expected;
    const std::string path = new_folder() + "/text.bsd";
    write_text(path, text);
    bsdlRelease(readBsdl(path.c_str(), nullptr, nullptr, 0, &expected.context));
    reset_reader_state();
    return expected.seen;
}

} // namespace

TEST(Places, ExpectedTokensAreComplete)
{
    EXPECT_EQ(expected_in("entity ;"), "IDENTIFIER=- ");
    EXPECT_EQ(expected_in("entity DEV is generic (PHYSICAL_PIN_MAP string"), "':'=: ");
    EXPECT_EQ(expected_in("entity DEV is generic (PHYSICAL_PIN_MAP : string); port (A : ;"),
              "Y_IN=IN Y_OUT=OUT BUFFER=BUFFER INOUT=INOUT LINKAGE=LINKAGE ");
    EXPECT_EQ(bsdlMessageExpected(nullptr), nullptr);
}
