#include "scan/scanner.h"

#include "base/memory.h"
#include "frame/reader_state.h"
#include "grammar.h"
#include "scan/keywords.h"
#include "scan/scan_state.h"
#include "support/catalogue.h"
#include "support/description.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <unistd.h>

using namespace support;

namespace
{

struct TokenCase {
    int line;
    int mode;
    std::string rules;
    std::string flags;
    std::string input;
    std::string tokens;
    std::string messages;
};

std::string trimmed(const std::string &text)
{
    size_t from = text.find_first_not_of(' ');
    size_t to = text.find_last_not_of(' ');
    return from == std::string::npos ? "" : text.substr(from, to - from + 1);
}

std::string unescaped(const std::string &text)
{
    static const std::pair<const char *, char> ESCAPES[] = {
        {"\\n", '\n'}, {"\\r", '\r'}, {"\\t", '\t'}, {"\\0", '\0'}, {"\\x1A", '\x1A'}};
    std::string result;
    for (size_t at = 0; at < text.size();) {
        bool found = false;
        for (const auto &[escape, character] : ESCAPES) {
            if (text.compare(at, std::strlen(escape), escape) == 0) {
                result += character;
                at += std::strlen(escape);
                found = true;
                break;
            }
        }
        if (!found)
            result += text[at++];
    }
    return result;
}

std::vector<TokenCase> token_cases()
{
    std::ifstream file(TARNLET_SOURCE_DIR "/tests/scan/tokens.txt");
    EXPECT_TRUE(file.good());
    std::vector<TokenCase> cases;
    std::string text;
    for (int line = 1; std::getline(file, text); line++) {
        if (text.empty() || text[0] == '#')
            continue;
        size_t first = text.find('|');
        size_t second = text.find(" |", first + 1);
        size_t third = text.find(" |", second + 2);
        TokenCase row = {.line = line};
        std::istringstream(text.substr(0, first)) >> row.mode >> row.rules >> row.flags;
        row.input = unescaped(trimmed(text.substr(first + 1, second - first - 1)));
        row.tokens = trimmed(text.substr(second + 2, third - second - 2));
        row.messages = trimmed(text.substr(third + 2));
        cases.push_back(row);
    }
    return cases;
}

uint32_t rule_set(const std::string &name)
{
    static const std::map<std::string, uint32_t> SETS = {{"1990", RULES_1990}, {"1994", RULES_1994},
                                                         {"2001", RULES_2001}, {"ISC", RULES_ISC},
                                                         {"AIO", RULES_AIO},   {"PRG", RULES_PRG}};
    return SETS.at(name);
}

std::string value_text(int token, const BSDL_YYSTYPE &value)
{
    std::ostringstream text;
    switch (token) {
    case INTEGER:
    case TAPXXX:
    case JCSXX:
    case ISCXXXX:
        text << '(' << value.integer << ')';
        break;
    case REAL:
        text << '(' << value.real << ')';
        break;
    case QUOTED_STRING:
        text << '('
             << (value.quoted.text ? std::string(value.quoted.text, value.quoted.length) : "none")
             << ')';
        break;
    case IDENTIFIER:
    case BIN_X_PATTERN:
    case BIN_PATTERN:
    case HEX_PATTERN:
    case VARIABLE:
    case FILE_NAME:
    case USE_IDENT:
    case PART_NAME:
    case DATE_STRING:
    case Y_STD_1532_2001:
    case Y_STD_1532_2002:
    case Y_STD_1149_6_2003:
        text << '(' << value.string << ')';
        break;
    default:
        break;
    }
    return text.str();
}

// A handle with nothing but a scanner.
class Scanning
{
  public:
    // Messages are also written to `log` when that is no -1.
    explicit Scanning(const std::string &input, int log = -1)
        : path_(new_folder() + "/input"), log_(log)
    {
        reset_reader_state();
        reader_state.context = &context_;
        write_text(path_, input);
        bsdl_.file_name = path_.c_str();
        EXPECT_TRUE(arena_start(&bsdl_.arena));
        EXPECT_TRUE(names_start(&bsdl_.names, &bsdl_.arena));
        EXPECT_TRUE(reading_start(&bsdl_, &reading_));
        bsdl_.reading = &reading_;
    }
    ~Scanning()
    {
        reading_end(&reading_);
        names_release(&bsdl_.names);
        arena_release(&bsdl_.arena);
        reset_reader_state();
    }
    int next() { return scan_token(&value, &place, &bsdl_); }
    Bsdl *handle() { return &bsdl_; }
    const std::string &messages() const { return messages_; }

    BSDL_YYSTYPE value = {};
    Place place = {};

  private:
    static void sink(void *data, BsdlMessage *message)
    {
        auto *scanning = static_cast<Scanning *>(data);
        std::string &all = scanning->messages_;
        all += (all.empty() ? "" : " / ") + std::to_string(message->level) + " " + message->text;
        if (scanning->log_ >= 0)
            dprintf(scanning->log_, "%i %s", message->level, message->text);
        const char *rule = bsdlMessageRule();
        expect_in_catalogue(
            {.level = message->level, .text = message->text, .rule = rule ? rule : ""});
    }

    std::string path_;
    int log_;
    std::string messages_;
    BsdlContext context_ = {sink, this, 4};
    Bsdl bsdl_ = {};
    ScanState reading_ = {};
};

} // namespace

TEST(Scanner, Tokens)
{
    const std::vector<TokenCase> cases = token_cases();
    ASSERT_GT(cases.size(), 60u);
    for (const TokenCase &row : cases) {
        SCOPED_TRACE("tokens.txt:" + std::to_string(row.line));
        Scanning scanning(row.input);
        reader_state.rule_set = rule_set(row.rules);
        scanning.handle()->scan_mode = row.mode;
        scanning.handle()->strict = row.flags == "s";
        scanning.handle()->fast_read = row.flags == "f" ? 2 : 0;
        scanning.handle()->reading->complete = row.flags == "c";
        std::string tokens;
        while (int token = scanning.next())
            tokens += (tokens.empty() ? "" : " ") + std::string(token_name(token)) +
                      value_text(token, scanning.value);
        EXPECT_EQ(tokens, row.tokens);
        EXPECT_EQ(scanning.messages(), row.messages);
        EXPECT_STREQ(scanning.handle()->reading->fatal, nullptr);
    }
}

TEST(Scanner, EndOfInputStaysTheEnd)
{
    Scanning scanning("A \"");
    scanning.handle()->scan_mode = SCAN_MODE_NONE;
    EXPECT_EQ(scanning.next(), IDENTIFIER);
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(scanning.next(), 0);
        EXPECT_EQ(scan_token_text(scanning.handle()).length, 0);
    }
}

// No room for the text of a token, or for one more piece of a string.
TEST(ScannerDeathTest, MemoryRunsOut)
{
    const auto read_all = [](const std::string &input, int32_t mode) {
        Scanning scanning(input, STDERR_FILENO);
        scanning.handle()->scan_mode = mode;
        memory_fail_after(0);
        while (int token = scanning.next())
            if (token == QUOTED_STRING)
                store_string(scanning.handle(), scanning.value.quoted);
    };
    const auto ended = testing::ExitedWithCode(255);
    EXPECT_EXIT(read_all(std::string(16000, 'A'), SCAN_MODE_NONE), ended, "^0 Memory error$");
    EXPECT_EXIT(read_all(std::string(16000, '1'), SCAN_MODE_BIN), ended, "^0 Memory error$");
    EXPECT_EXIT(read_all("\"a\"", SCAN_MODE_NONE), ended, "^0 Memory error$");
}

// The texts of the failures that end a reading.
TEST(Scanner, Fatal)
{
    static const struct {
        const char *name;
        std::string input;
        const char *fatal;
    } CASES[] = {
        {"control character", "A \x08", "non printable"},
        {"control-Z ahead of more", "\x1A A", "non printable"},
        {"longest name", std::string(16383, 'A'), nullptr},
        {"name too long", std::string(16384, 'A'), "token too large, exceeds YYLMAX"},
        {"longest string", "\"" + std::string(16381, 'a') + "\"", nullptr},
        {"string too long", "\"" + std::string(16382, 'a') + "\"",
         "token too large, exceeds YYLMAX"},
        {"string never closed", "\"" + std::string(20000, 'a'),
         "input buffer overflow, can't enlarge buffer because scanner uses REJECT"},
        {"longest comment", "--" + std::string(16379, 'a') + "\r\n", nullptr},
        {"comment too long by its line end", "--" + std::string(16380, 'a') + "\r\n",
         "token too large, exceeds YYLMAX"},
    };
    for (const auto &row : CASES) {
        SCOPED_TRACE(row.name);
        Scanning scanning(row.input);
        while (scanning.next())
            ;
        EXPECT_EQ(scan_stopped(scanning.handle()), row.fatal != nullptr);
        EXPECT_STREQ(scanning.handle()->reading->fatal, row.fatal);
    }
}

// ------------------------------------------------------------------ strings read again as tokens

namespace
{

struct Seen {
    std::string text;
    int line;          // as messages count
    std::string place; // from its first byte to after its last
};

void store_strings(Scanning &scanning)
{
    for (int token = scanning.next(); token && token != ';'; token = scanning.next())
        if (token == QUOTED_STRING)
            store_string(scanning.handle(), scanning.value.quoted);
}

// "line:column-column", with the second line before the second column where it is another one.
std::string place_text(const Bsdl *bsdl, Place place)
{
    const SourcePosition begin = source_position(&bsdl->sources, place.begin);
    const SourcePosition end = source_position(&bsdl->sources, place.end);
    return std::to_string(begin.line) + ":" + std::to_string(begin.column) + "-" +
           (end.line == begin.line ? "" : std::to_string(end.line) + ":") +
           std::to_string(end.column);
}

// Stores the strings of the input up to the ';', reads them again and goes on in the file.
std::vector<Seen> rescanned(Scanning &scanning)
{
    Bsdl *bsdl = scanning.handle();
    store_strings(scanning);
    rescan_strings(bsdl);
    std::vector<Seen> seen;
    while (scanning.next()) {
        const TokenText text = scan_token_text(bsdl);
        seen.push_back({{text.text, static_cast<size_t>(text.length)},
                        scan_line(bsdl),
                        place_text(bsdl, scanning.place)});
    }
    return seen;
}

} // namespace

TEST(Rescan, TokensAndPlaces)
{
    static const struct {
        const char *name;
        const char *input;
        std::vector<Seen> seen;
    } CASES[] = {
        {"one piece, then the file",
         "\"A,B\";\nC",
         {{"A", 1, "1:2-3"}, {",", 1, "1:3-4"}, {"B", 1, "1:4-5"}, {"C", 2, "2:1-2"}}},
        {"a token over the join",
         "\"A EXT\" &\n\"EST,\" &\n\"B\"\n; C",
         {{"A", 1, "1:2-3"},
          {"EXTEST", 2, "1:4-2:5"},
          {",", 2, "2:5-6"},
          {"B", 4, "3:2-3"},
          {"C", 4, "4:3-4"}}},
        {"a token over three pieces",
         "\"EX\" & \"T\"\n& \"EST,\";",
         {{"EXTEST", 2, "1:2-2:7"}, {",", 2, "2:7-8"}}},
        {"a name that ends its piece is over by the next one",
         "\"A\" &\n\",B,\" &\n\"C\";",
         {{"A", 2, "1:2-3"},
          {",", 2, "2:2-3"},
          {"B", 2, "2:3-4"},
          {",", 2, "2:4-5"},
          {"C", 3, "3:2-3"}}},
        {"line ends inside a piece",
         "\"A\nB,\r\n\rC,\";\nD",
         {{"A", 4, "1:2-3"},
          {"B", 4, "2:1-2"},
          {",", 4, "2:2-3"},
          {"C", 4, "4:1-2"},
          {",", 4, "4:2-3"},
          {"D", 5, "5:1-2"}}},
        {"line ends of the next piece",
         "\"A,\n\" & \"\nB,\";\nD",
         {{"A", 2, "1:2-3"},
          {",", 2, "1:3-4"},
          {"B", 3, "3:1-2"},
          {",", 3, "3:2-3"},
          {"D", 4, "4:1-2"}}},
        {"empty pieces are dropped",
         "\"A\" & \"\" & \"E\" & \"B,\";",
         {{"AB", 1, "1:2-20"}, {",", 1, "1:20-21"}}},
        {"an empty first piece",
         "\"\" & \"A,\";\nB",
         {{"A", 1, "1:7-8"}, {",", 1, "1:8-9"}, {"B", 2, "2:1-2"}}},
        {"nothing but an empty piece", "\"\";\nB", {{"B", 2, "2:1-2"}}},
        {"a comment goes on into the file",
         "\"A, -- x\" & \"B\"; C\nD",
         {{"A", 1, "1:2-3"}, {",", 1, "1:3-4"}, {"D", 2, "2:1-2"}}},
        {"a comment with a line end",
         "\"A -- x\nB,\";",
         {{"A", 2, "1:2-3"}, {"B", 2, "2:1-2"}, {",", 2, "2:2-3"}}},
    };
    for (const auto &row : CASES) {
        SCOPED_TRACE(row.name);
        Scanning scanning(row.input);
        std::vector<Seen> seen = rescanned(scanning);
        ASSERT_EQ(seen.size(), row.seen.size());
        for (size_t i = 0; i < seen.size(); i++) {
            EXPECT_EQ(seen[i].text, row.seen[i].text) << i;
            EXPECT_EQ(seen[i].line, row.seen[i].line) << seen[i].text;
            EXPECT_EQ(seen[i].place, row.seen[i].place) << seen[i].text;
        }
    }
}

// What ended the last token is read all the same, so that it is not passed over in silence.
TEST(Rescan, ReleaseKeepsTheCharacterThatWasLookedAt)
{
    Scanning scanning("\"A, rest\"; C");
    Bsdl *bsdl = scanning.handle();
    store_strings(scanning);
    rescan_strings(bsdl);
    EXPECT_EQ(scanning.next(), IDENTIFIER);
    release_strings(bsdl);
    EXPECT_EQ(scanning.next(), ',');
    EXPECT_EQ(scanning.next(), IDENTIFIER);
    EXPECT_STREQ(scanning.value.string, "C");
    EXPECT_EQ(scanning.next(), 0);
}

TEST(Rescan, ReleaseBeforeTheEndGoesBackToTheFile)
{
    Scanning scanning("\"A (1) rest\" &\n\"more\"\n; C");
    Bsdl *bsdl = scanning.handle();
    store_strings(scanning);
    EXPECT_STREQ(join_strings(bsdl), "A (1) rest\nmore");
    rescan_strings(bsdl);
    for (int i = 0; i < 4; i++)
        scanning.next();
    release_strings(bsdl);
    EXPECT_EQ(scan_line(bsdl), 3);
    EXPECT_EQ(scanning.next(), IDENTIFIER);
    EXPECT_STREQ(scanning.value.string, "C");
    EXPECT_EQ(scanning.next(), 0);
}
