#pragma once

#include "tarnlet/bsdl.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

// What the tests of all families share: a valid description whose statements can be replaced one by
// one, a reading of it, and the messages that came.

namespace support
{

// The statements in the order in which they have to stand.
enum Statement {
    ENTITY_LINE,
    GENERIC_PARAMETER,
    PORT_CLAUSE,
    STANDARD_USE,
    USES,
    CONFORMANCE,
    PIN_MAP_LINE,
    PIN_MAPS,
    PORT_GROUPING,
    SCAN_CLOCK,
    SCAN_MODE,
    SCAN_IN,
    SCAN_OUT,
    SCAN_RESET,
    COMPLIANCE,
    INSTRUCTION_LENGTH,
    INSTRUCTION_OPCODE,
    INSTRUCTION_CAPTURE,
    INSTRUCTION_DISABLE,
    INSTRUCTION_GUARD,
    INSTRUCTION_PRIVATE,
    IDCODE_REGISTER,
    USERCODE_REGISTER,
    REGISTER_ACCESS,
    BOUNDARY_CELLS,
    BOUNDARY_LENGTH,
    BOUNDARY_REGISTER,
    RUNBIST_EXECUTION,
    INTEST_EXECUTION,
    EXTENSIONS,
    DESIGN_WARNING,
    END_LINE,
    STATEMENT_COUNT,
};

enum class Issue { BSDL_1990, BSDL_1994, BSDL_2001 };

// `attribute NAME of DEV : entity is "value";` for the entity of the valid description, DEV.
std::string attribute(const std::string &name, const std::string &value);

// A valid description, which passes bsdl_check with no error and no warning: ports TCK, TMS, TDI
// (in), TDO (out), A (in), Y (out), B (inout), D (in, vector 0 to 1), GND, VCC (linkage); a 4-bit
// instruction register; eight boundary cells.
class Description
{
  public:
    explicit Description(Issue issue = Issue::BSDL_2001);

    // "" leaves the statement out.
    Description &with(Statement statement, const std::string &text);
    Description &without(Statement statement) { return with(statement, ""); }
    // Replaces a part of a statement; the test fails when it does not hold that part.
    Description &replace(Statement statement, const std::string &part, const std::string &by);

    const std::string &statement(Statement statement) const { return texts_[statement]; }
    std::string text() const; // a statement a line
    // The line on which a statement begins.
    int line(Statement statement) const;

  private:
    std::array<std::string, STATEMENT_COUNT> texts_;
};

enum Level { ERROR, WARNING, INFORMATION, HEADING, PROGRESS };

struct Message {
    int level = 0;
    unsigned verbosity = 0;
    std::string text;
    // As the host sees them while the message is delivered.
    int line = 0;
    std::string rule;
    std::string file;
    int column = 0;
    int end_line = 0;
    int end_column = 0;
};

// Rows of expected messages: level and text; the verbosity is compared when it is given.
struct Expected {
    int level;
    std::string text;
    int verbosity = -1;
};

std::ostream &operator<<(std::ostream &out, const Message &message);
std::ostream &operator<<(std::ostream &out, const Expected &expected);

using Messages = std::vector<Message>;
using ExpectedMessages = std::vector<Expected>;

// All messages, compared whole and in order.
void expect_messages(const Messages &got, const ExpectedMessages &want);
// What a check that sends these gives: 100 with an error among them.
int32_t result_of(const ExpectedMessages &messages);
ExpectedMessages joined(const std::vector<ExpectedMessages> &parts);
// Those of level 0 and 1 alone.
Messages errors_and_warnings(const Messages &messages);
Messages picked(const Messages &messages, const std::function<bool(const Message &)> &predicate);

struct Options {
    const char *package = nullptr;
    unsigned flags = 0;
    unsigned verbosity = 4;
    std::vector<std::string> package_dirs = {};
    // Files put beside the description: name and text.
    std::map<std::string, std::string> files = {};
    std::string name = "test.bsd";
    bool from_memory = false; // the files are texts, and messages call them by these names
};

constexpr unsigned STRICT = 1u << 3;
constexpr unsigned FAST_READ = 1u << 15;

// One reading of a text from a file of its own in a folder of its own, both gone with the object.
// The handle is released with bsdlRelease.
class Reading
{
  public:
    explicit Reading(const std::string &text, const Options &options = {});
    explicit Reading(const Description &description, const Options &options = {});
    ~Reading();
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    Bsdl *handle() const { return handle_; }
    operator Bsdl *() const { return handle_; }
    const std::string &path() const { return path_; }
    const std::string &folder() const { return folder_; }

    // All messages since the reading began or clear() was called.
    const Messages &messages() const { return messages_; }
    void clear() { messages_.clear(); }
    bool has(const std::string &text) const;

    // Runs a check; its messages alone stay in messages().
    int32_t check(int32_t (*check)(Bsdl *));

  private:
    static void sink(void *data, BsdlMessage *message);

    std::string folder_;
    std::string path_;
    BsdlContext context_ = {};
    Messages messages_;
    Bsdl *handle_ = nullptr;
};

// The reading and the whole of bsdl_check without a syntax error, an error or a warning.
void expect_clean(Reading &reading);

// What a First/Next pair gives, as strings or records.
template <class T> std::vector<T> all_of(Bsdl *handle, T (*first)(Bsdl *), T (*next)(Bsdl *))
{
    std::vector<T> all;
    for (T item = first(handle); item && all.size() < 1000000; item = next(handle))
        all.push_back(item);
    return all;
}

// The values of the thread as they stand at its start.
void reset_reader_state();

// The text with `by` in place of a part that stands there once.
std::string replaced(std::string text, std::string_view part, std::string_view by);
std::string read_text(const std::string &path);
void write_text(const std::string &path, const std::string &text);
// A new empty folder, gone at the end of the process.
std::string new_folder();
// Holds a text to the golden file tests/NAME, which it becomes when TARNLET_UPDATE=1 stands in the
// environment, to be reviewed then.
void expect_golden(const std::string &name, const std::string &text);
// examples/NAME of the source tree.
std::string example(const std::string &name);

} // namespace support
