#pragma once

#include "tarnlet/bsdl.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

// A message of the library with what it says about its place.
struct Message {
    int32_t level = 0;
    uint32_t verbosity = 0;
    int32_t line = 0;
    std::string file;
    std::string rule; // empty: headings, verdicts and the like
    std::string text;
};

using MessageSink = std::function<void(const Message &message)>;

// How a file is read: the options that all commands share.
struct ReadOptions {
    bool strict = false;
    bool fast_read = false;
    std::string package; // empty: the default of the description
    std::vector<std::string> package_dirs;
};

void add_read_options(CLI::App &app, ReadOptions &options);

// One file, read on construction. One at a time may be alive in a thread, which has one context.
class Reading
{
  public:
    // The path "-" stands for standard input.
    Reading(const std::string &path, const ReadOptions &options, uint32_t verbosity,
            MessageSink sink);
    ~Reading();
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    // NULL when no handle came of it; the sink has been told why.
    Bsdl *handle() const { return bsdl; }

    // Runs the checks that are for such a file; true when all have passed. A file with syntax
    // errors does not pass.
    bool check();

    bool has_isc() const;
    bool has_aio();
    bool is_prg() const;

  private:
    static void take(void *self, BsdlMessage *message);

    MessageSink sink;
    BsdlContext context;
    bool fast_read;
    Bsdl *bsdl = nullptr;
};

// The bytes of a file; "-" is standard input, which can be read again. False with errno set.
bool read_bytes(const std::string &path, std::string &bytes);

// Makes standard input a file that can be read more than once, by the name it gives.
const char *standard_input_file();
