#include "support/description.h"

#include "support/catalogue.h"

#include "frame/reader_state.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <unistd.h>

namespace support
{

std::string attribute(const std::string &name, const std::string &value)
{
    return "attribute " + name + " of DEV : entity is \"" + value + "\";";
}

Description::Description(Issue issue)
{
    const bool is_2001 = issue == Issue::BSDL_2001;
    const std::string year = issue == Issue::BSDL_1990 ? "1990" : is_2001 ? "2001" : "1994";
    texts_[ENTITY_LINE] = "entity DEV is";
    texts_[GENERIC_PARAMETER] = "generic (PHYSICAL_PIN_MAP : string := \"PKG\");";
    texts_[PORT_CLAUSE] =
        "port (TCK : in bit; TMS : in bit; TDI : in bit; TDO : out bit; A : in bit; Y : out bit; "
        "B : inout bit; D : in bit_vector(0 to 1); GND, VCC : linkage bit);";
    texts_[STANDARD_USE] = "use STD_1149_1_" + year + ".all;";
    if (issue != Issue::BSDL_1990)
        texts_[CONFORMANCE] =
            attribute("COMPONENT_CONFORMANCE", is_2001 ? "STD_1149_1_2001" : "STD_1149_1_1993");
    texts_[PIN_MAP_LINE] = "attribute PIN_MAP of DEV : entity is PHYSICAL_PIN_MAP;";
    texts_[PIN_MAPS] =
        "constant PKG : PIN_MAP_STRING := \"TCK:1, TMS:2, TDI:3, TDO:4, A:5, Y:6, B:7, \" & "
        "\"D:(8,9), GND:10, VCC:11\";";
    texts_[SCAN_CLOCK] = "attribute TAP_SCAN_CLOCK of TCK : signal is (10.0e6, BOTH);";
    texts_[support::SCAN_MODE] = "attribute TAP_SCAN_MODE of TMS : signal is true;";
    texts_[SCAN_IN] = "attribute TAP_SCAN_IN of TDI : signal is true;";
    texts_[SCAN_OUT] = "attribute TAP_SCAN_OUT of TDO : signal is true;";
    texts_[INSTRUCTION_LENGTH] = "attribute INSTRUCTION_LENGTH of DEV : entity is 4;";
    texts_[INSTRUCTION_OPCODE] =
        attribute("INSTRUCTION_OPCODE", "BYPASS (1111), EXTEST (0000), SAMPLE (0001)" +
                                            std::string(is_2001 ? ", PRELOAD (0010)" : "") +
                                            ", IDCODE (0100)");
    texts_[INSTRUCTION_CAPTURE] = attribute("INSTRUCTION_CAPTURE", "0101");
    texts_[IDCODE_REGISTER] =
        attribute("IDCODE_REGISTER", "0001\" & \"0010001000100010\" & \"00100010001\" & \"1");
    texts_[BOUNDARY_LENGTH] = "attribute BOUNDARY_LENGTH of DEV : entity is 8;";
    texts_[BOUNDARY_REGISTER] =
        attribute("BOUNDARY_REGISTER", "0 (BC_0, *, control, 0), \" & "
                                       "\"1 (BC_1, Y, output3, X, 0, 0, Z), \" & "
                                       "\"2 (BC_0, B, output3, X, 3, 0, Z), \" & "
                                       "\"3 (BC_0, *, control, 0), \" & "
                                       "\"4 (BC_0, B, input, X), \" & "
                                       "\"5 (BC_0, D(0), input, X), \" & "
                                       "\"6 (BC_0, D(1), input, X), \" & "
                                       "\"7 (BC_0, A, input, X)");
    texts_[END_LINE] = "end DEV;";
}

Description &Description::with(Statement statement, const std::string &text)
{
    texts_[statement] = text;
    return *this;
}

Description &Description::replace(Statement statement, const std::string &part,
                                  const std::string &by)
{
    size_t at = texts_[statement].find(part);
    EXPECT_NE(at, std::string::npos) << "no '" << part << "' in: " << texts_[statement];
    if (at != std::string::npos)
        texts_[statement].replace(at, part.size(), by);
    return *this;
}

std::string Description::text() const
{
    std::string text;
    for (const std::string &statement : texts_)
        if (!statement.empty())
            text += statement + "\n";
    return text;
}

int Description::line(Statement statement) const
{
    int line = 1;
    for (int i = 0; i < statement; i++)
        if (!texts_[i].empty())
            line += 1 + static_cast<int>(std::count(texts_[i].begin(), texts_[i].end(), '\n'));
    return line;
}

std::ostream &operator<<(std::ostream &out, const Message &message)
{
    return out << "{" << message.level << ", \"" << message.text << "\", " << message.verbosity
               << "}";
}

std::ostream &operator<<(std::ostream &out, const Expected &expected)
{
    return out << "{" << expected.level << ", \"" << expected.text << "\", " << expected.verbosity
               << "}";
}

static bool agrees(const Message &got, const Expected &want)
{
    return got.level == want.level && got.text == want.text &&
           (want.verbosity < 0 || got.verbosity == static_cast<unsigned>(want.verbosity));
}

void expect_messages(const Messages &got, const ExpectedMessages &want)
{
    for (size_t i = 0; i < std::max(got.size(), want.size()); i++) {
        if (i < got.size() && i < want.size() && agrees(got[i], want[i]))
            continue;
        std::ostringstream all;
        for (const Message &message : got)
            all << "\n    " << message;
        ADD_FAILURE() << "message " << i << ": got "
                      << (i < got.size() ? ::testing::PrintToString(got[i]) : "none") << ", want "
                      << (i < want.size() ? ::testing::PrintToString(want[i]) : "none")
                      << "\n  all that came:" << all.str();
        return;
    }
}

int32_t result_of(const ExpectedMessages &messages)
{
    for (const Expected &message : messages)
        if (message.level == ERROR)
            return BSDL_RESULT_FAILED;
    return BSDL_RESULT_OK;
}

ExpectedMessages joined(const std::vector<ExpectedMessages> &parts)
{
    ExpectedMessages all;
    for (const ExpectedMessages &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

Messages picked(const Messages &messages, const std::function<bool(const Message &)> &predicate)
{
    Messages some;
    for (const Message &message : messages)
        if (predicate(message))
            some.push_back(message);
    return some;
}

Messages errors_and_warnings(const Messages &messages)
{
    return picked(messages, [](const Message &message) { return message.level <= WARNING; });
}

Reading::Reading(const std::string &text, const Options &options) : folder_(new_folder())
{
    path_ = options.from_memory ? options.name : folder_ + "/" + options.name;
    context_ = {sink, this, options.verbosity};
    GSList *dirs = nullptr;
    for (const std::string &dir : options.package_dirs)
        dirs = g_slist_append(dirs, const_cast<char *>(dir.c_str()));
    if (options.from_memory) {
        std::vector<BsdlPackageText> packages;
        for (const auto &[name, content] : options.files)
            packages.push_back({name.c_str(), nullptr, content.data(), content.size()});
        handle_ = readBsdlText(text.data(), text.size(), path_.c_str(), options.package, dirs,
                               options.flags, &context_, packages.data(), packages.size());
    } else {
        write_text(path_, text);
        for (const auto &[name, content] : options.files)
            write_text(folder_ + "/" + name, content);
        handle_ = readBsdl(path_.c_str(), options.package, dirs, options.flags, &context_);
    }
    g_slist_free(dirs);
}

Reading::Reading(const Description &description, const Options &options)
    : Reading(description.text(), options)
{
}

Reading::~Reading()
{
    bsdlRelease(handle_);
    if (reader_state.context == &context_)
        reader_state.context = nullptr;
    std::filesystem::remove_all(folder_);
}

void Reading::sink(void *data, BsdlMessage *message)
{
    const char *rule = bsdlMessageRule();
    const char *file = bsdlMessageFile();
    Messages &messages = static_cast<Reading *>(data)->messages_;
    messages.push_back({message->level, message->verbosity, message->text, bsdlMessageLine(),
                        rule ? rule : "", file ? file : "", bsdlMessageColumn(),
                        bsdlMessageEndLine(), bsdlMessageEndColumn()});
    expect_in_catalogue(messages.back());
}

bool Reading::has(const std::string &text) const
{
    for (const Message &message : messages_)
        if (message.text == text)
            return true;
    return false;
}

int32_t Reading::check(int32_t (*check)(Bsdl *))
{
    clear();
    reader_state.context = &context_;
    return check(handle_);
}

void expect_clean(Reading &reading)
{
    ASSERT_NE(reading.handle(), nullptr);
    EXPECT_EQ(bsdlGetNumErrors(reading), 0);
    expect_messages(errors_and_warnings(reading.messages()), {});
    EXPECT_EQ(reading.check(bsdl_check), 0);
    expect_messages(errors_and_warnings(reading.messages()), {});
}

void reset_reader_state() { reader_state = {}; }

std::string replaced(std::string text, std::string_view part, std::string_view by)
{
    const size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    EXPECT_EQ(text.find(part, at + 1), std::string::npos) << part << " stands twice";
    return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

std::string read_text(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.good()) << path;
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write_text(const std::string &path, const std::string &text)
{
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    EXPECT_TRUE(stream.good()) << path;
}

namespace
{

// A process that was forked off, as death tests are, leaves those of its parent.
struct Folders {
    std::vector<std::pair<std::string, pid_t>> made;
    ~Folders()
    {
        std::error_code ignored;
        for (const auto &[name, maker] : made)
            if (maker == getpid())
                std::filesystem::remove_all(name, ignored);
    }
};

} // namespace

std::string new_folder()
{
    static Folders folders;
    std::string name = (std::filesystem::temp_directory_path() / "tarnlet_test_XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    folders.made.emplace_back(name, getpid());
    return name;
}

void expect_golden(const std::string &name, const std::string &text)
{
    const std::string path = TARNLET_SOURCE_DIR "/tests/" + name;
    if (const char *update = std::getenv("TARNLET_UPDATE"); update && *update == '1')
        write_text(path, text);
    EXPECT_EQ(text, read_text(path)) << name;
}

std::string example(const std::string &name) { return TARNLET_SOURCE_DIR "/examples/" + name; }

} // namespace support
