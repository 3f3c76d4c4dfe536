#include "support/description.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <regex>

using namespace support;
namespace fs = std::filesystem;

namespace
{

std::vector<fs::path> descriptions_in(const fs::path &folder)
{
    std::vector<fs::path> files;
    for (const auto &file : fs::directory_iterator(folder)) {
        std::string suffix = file.path().extension();
        std::transform(suffix.begin(), suffix.end(), suffix.begin(), ::tolower);
        if (suffix.starts_with(".bs") || suffix == ".prg")
            files.push_back(file.path());
    }
    std::sort(files.begin(), files.end());
    EXPECT_FALSE(files.empty()) << folder;
    return files;
}

std::string shown(const BsdlMessage *message)
{
    std::ostringstream text;
    int32_t expected = 0;
    bsdlMessageExpected(&expected);
    const char *rule = bsdlMessageRule();
    const char *file = bsdlMessageFile();
    text << message->level << " " << message->verbosity << " " << (file ? file : "") << ":"
         << bsdlMessageLine() << ":" << bsdlMessageColumn() << "-" << bsdlMessageEndLine() << ":"
         << bsdlMessageEndColumn() << " [" << (rule ? rule : "") << "] " << expected << " "
         << message->text;
    return text.str();
}

// All that is said of a file, read and checked.
struct Said {
    std::vector<std::string> messages;
    BsdlContext context = {[](void *self, BsdlMessage *message) {
                               static_cast<Said *>(self)->messages.push_back(shown(message));
                           },
                           this, 100};

    void finish(Bsdl *bsdl)
    {
        for (auto *check : {bsdl_check, bsdl_check_isc, bsdl_check_aio, bsdl_check_prg})
            if (bsdl)
                check(bsdl);
        bsdlRelease(bsdl);
        reset_reader_state();
    }
};

void expect_same_from_memory(const fs::path &file)
{
    SCOPED_TRACE(file);
    const std::string text = read_text(file);
    Said of_file;
    of_file.finish(readBsdl(file.c_str(), nullptr, nullptr, 0, &of_file.context));
    Said of_text;
    of_text.finish(readBsdlText(text.data(), text.size(), file.c_str(), nullptr, nullptr, 0,
                                &of_text.context, nullptr, 0));
    EXPECT_FALSE(of_file.messages.empty());
    EXPECT_EQ(of_text.messages, of_file.messages);
}

size_t offset_of(const std::string &text, int line, int column)
{
    size_t at = 0;
    for (; line > 1 && at < text.size(); at++)
        line -= text[at] == '\n' || (text[at] == '\r' && text[at + 1] != '\n');
    return at + static_cast<size_t>(column) - 1;
}

bool in_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// A whole word, number, mark or quoted value, which may go on in the next piece of a value; nothing
// where the text ends.
bool is_token(const std::string &text, size_t begin, size_t end)
{
    static const std::regex SEAM("\"\\s*(--[^\\r\\n]*\\s*)*&\\s*(--[^\\r\\n]*\\s*)*\"");
    static const std::regex TOKEN("[$+-]?[\\w.]+([eE][+-]\\d+)?|[^\\w\\s\"]|:=|<>|<<|>>|\\?!|"
                                  "[Aa][Tt]{2}[Rr][Ii][Bb][Uu][Tt][Ee]\\s*\\w+|\"[^\"]*\"");
    if (begin >= text.size())
        return begin == end;
    if (begin >= end || (in_word(text[begin]) && begin > 0 && in_word(text[begin - 1])) ||
        (in_word(text[end - 1]) && end < text.size() && in_word(text[end])))
        return false;
    const std::string token = text.substr(begin, end - begin);
    return std::regex_match(token, TOKEN) ||
           std::regex_match(std::regex_replace(token, SEAM, ""), TOKEN);
}

} // namespace

TEST(FrameCorpus, ATextSaysWhatItsFileSays)
{
    for (const fs::path &file : descriptions_in(TARNLET_SOURCE_DIR "/examples"))
        expect_same_from_memory(file);
    if (!*TARNLET_CORPUS)
        GTEST_SKIP() << "TARNLET_CORPUS names no folder: only the examples were read";
    for (const fs::path &file : descriptions_in(TARNLET_CORPUS))
        expect_same_from_memory(file);
}

// One character less, of those that hold statements and tables together, or of a word.
TEST(FrameCorpus, ASyntaxErrorIsPlacedAtAToken)
{
    if (!*TARNLET_CORPUS)
        GTEST_SKIP() << "TARNLET_CORPUS names no folder";
    constexpr size_t LARGEST = 60000;
    constexpr int MISTAKES = 2;
    std::minstd_rand random(1);
    int seen = 0;
    for (const fs::path &file : descriptions_in(TARNLET_CORPUS)) {
        const std::string text = read_text(file);
        for (int i = 0; i < MISTAKES && text.size() < LARGEST; i++) {
            std::string broken = text;
            size_t at = random() % text.size();
            if (i % 2)
                at = std::min(text.find_first_of(",;:()&\"", at), text.size() - 1);
            broken.erase(at, 1);
            const Reading reading(broken, {.name = file.filename()});
            for (const Message &message : reading.messages()) {
                if (message.rule != "syntax-error" || message.file != reading.path())
                    continue;
                seen++;
                const size_t begin = offset_of(broken, message.line, message.column);
                const size_t end = offset_of(broken, message.end_line, message.end_column);
                EXPECT_TRUE(is_token(broken, begin, end))
                    << file << " without " << at << ": " << message.text << "'"
                    << broken.substr(begin, end - begin) << "' at " << message.line << ":"
                    << message.column << "-" << message.end_line << ":" << message.end_column;
            }
        }
    }
    EXPECT_GT(seen, 20);
}
