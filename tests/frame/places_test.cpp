#include "support/description.h"
#include "tarnlet/diagnosis.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>

using namespace support;

namespace
{

constexpr std::string_view OPENING = "‹";
constexpr std::string_view CLOSING = "›";

// Rules without a row: their messages have no place, or no text brings them.
constexpr std::string_view WITHOUT_ROW[] = {
    // They are about the file as a whole.
    "check-failed",
    // There is no text to point at.
    "no-file",
    "file-not-opened",
    "memory-error",
    "process-ended",
    "ebst-file-open",
    "ebst-file-write",
    // The file of the package would have to go while it is being opened.
    "package-not-opened",
    // The registers are added where they are missing.
    "implied-register-missing",
};

struct Position {
    int line = 1;
    int column = 1;
};

struct File {
    std::string name;
    std::string text;
};

// A row of places.txt.
struct PlaceCase {
    int line = 0;
    std::string rule;
    std::vector<File> files; // the description, then package files; one has the marks
    std::optional<std::string> package;
    unsigned flags = 0;

    void replace(const std::string &part, const std::string &by)
    {
        for (File &file : files) {
            const size_t at = file.text.find(part);
            if (at == std::string::npos)
                continue;
            file.text.replace(at, part.size(), by);
            return;
        }
        ADD_FAILURE() << "places.txt:" << line << " nothing holds '" << part << "'";
    }
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
    if (fields.size() % 2 == 0)
        fields.emplace_back();
    return fields;
}

// What the line after '=' names, for the rows below it.
PlaceCase base_of(const std::string &line)
{
    PlaceCase base;
    std::istringstream words(line);
    std::string word;
    words >> word;
    base.files = {{word, read_text(example(word))}};
    while (words >> word) {
        if (word == "strict")
            base.flags = STRICT;
        else
            base.package = word;
    }
    return base;
}

std::vector<PlaceCase> read_cases()
{
    std::vector<PlaceCase> cases;
    std::ifstream file(TARNLET_SOURCE_DIR "/tests/frame/places.txt");
    PlaceCase base;
    std::string line;
    for (int number = 1; std::getline(file, line); number++) {
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] == '+') {
            base.files.push_back({line.substr(2), ""});
            continue;
        }
        if (line[0] == ' ') {
            base.files.back().text += line + "\n";
            continue;
        }
        const std::vector<std::string> fields = fields_of(line);
        PlaceCase row = line[0] == '=' ? base_of(fields[0].substr(1)) : base;
        row.line = number;
        row.rule = fields[0];
        for (size_t i = 1; i + 1 < fields.size(); i += 2)
            row.replace(fields[i], fields[i + 1]);
        if (line[0] == '=')
            base = row;
        else
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

// Takes the marks out of the file that has them.
std::string take_place(std::vector<File> &files)
{
    for (File &file : files) {
        if (file.text.find(OPENING) == std::string::npos)
            continue;
        const Position begin = take_mark(file.text, OPENING);
        return file.name + ":" + shown(begin, take_mark(file.text, CLOSING));
    }
    ADD_FAILURE() << "no mark";
    return "";
}

// All messages of the reading and of the checks that are for the file.
Messages messages_of(const PlaceCase &row)
{
    Options options;
    options.flags = row.flags;
    options.name = row.files[0].name;
    options.package = row.package ? row.package->c_str() : nullptr;
    options.from_memory = true;
    for (size_t i = 1; i < row.files.size(); i++)
        options.files[row.files[i].name] = row.files[i].text;
    Reading reading(row.files[0].text, options);
    Messages messages = reading.messages();
    const auto check = [&](int32_t (*run)(Bsdl *)) {
        reading.check(run);
        messages.insert(messages.end(), reading.messages().begin(), reading.messages().end());
    };
    if (!reading.handle())
        return messages;
    if (bsdlIsPrg(reading)) {
        check(bsdl_check_prg);
        return messages;
    }
    // What a host gets that calls a check before those that it needs, or for a name of its own.
    check(bsdl_check_isc_instr_reg);
    check([](Bsdl *bsdl) { return bsdl_check_pin_map(bsdl, "no such"); });
    check(bsdl_check);
    if (bsdlIs1532(reading))
        check(bsdl_check_isc);
    if (bsdlIsAio(reading))
        check(bsdl_check_aio);
    return messages;
}

// Some rules are of the diagnosis alone.
std::vector<std::string> places_of_findings(const PlaceCase &row)
{
    const std::string &text = row.files[0].text;
    std::vector<std::string> places;
    BsdlDiagnosis *diagnosis =
        bsdlDiagnose(text.data(), text.size(), row.files[0].name.c_str(), nullptr);
    for (uint32_t i = 0; i < bsdlFindingCount(diagnosis); i++) {
        const BsdlFinding *finding = bsdlFindingAt(diagnosis, i);
        const BsdlPlace &place = finding->place;
        if (finding->rule && finding->rule == row.rule)
            places.push_back(place.file + (":" + shown({place.line, place.column},
                                                       {place.end_line, place.end_column})));
    }
    bsdlDiagnosisRelease(diagnosis);
    return places;
}

std::vector<std::string> places_of(const PlaceCase &row)
{
    std::vector<std::string> places;
    for (const Message &message : messages_of(row))
        if (message.rule == row.rule)
            places.push_back(message.file + ":" + place_of(message));
    return places.empty() ? places_of_findings(row) : places;
}

} // namespace

TEST(Places, Rules)
{
    for (PlaceCase &row : read_cases()) {
        SCOPED_TRACE("places.txt:" + std::to_string(row.line) + " " + row.rule);
        const std::string wanted = take_place(row.files);
        const std::vector<std::string> places = places_of(row);
        EXPECT_TRUE(std::count(places.begin(), places.end(), wanted))
            << "wanted " << wanted << ", got " << testing::PrintToString(places);
    }
}

TEST(Places, EveryRuleHasARow)
{
    std::set<std::string> rules;
    for (const PlaceCase &row : read_cases())
        rules.insert(row.rule);
    for (std::string_view rule : WITHOUT_ROW)
        EXPECT_TRUE(rules.emplace(rule).second) << rule << " has a row";
    for (uint32_t i = 0; i < bsdlRuleCount(); i++)
        EXPECT_EQ(rules.erase(bsdlRuleAt(i)->id), 1U) << bsdlRuleAt(i)->id << " has no row";
    EXPECT_EQ(rules, std::set<std::string>()) << "no such rules";
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
