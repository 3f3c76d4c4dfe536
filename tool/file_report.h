#pragma once

#include "reading.h"

#include <cstdint>
#include <string>
#include <vector>

// A place where the file of a package was looked for.
constexpr const char *RULE_PACKAGE_FILE_TRIED = "package-file-tried";

// Which checks a file went through.
enum CheckBit : uint32_t { CHECKED_BSDL = 1, CHECKED_ISC = 2, CHECKED_AIO = 4, CHECKED_PRG = 8 };

enum class FileState : uint8_t {
    READ,
    NOT_OPENED, // there is no such file, or it may not be read
    ENDED       // the process that read it came to an end
};

// What came of one file, as the library said it.
struct FileReport {
    std::string path; // as on the command line
    std::string device;
    uint32_t checks = 0;
    FileState state = FileState::ENDED;
    int32_t syntax_errors = 0;
    bool passed = false;
    std::vector<Message> messages;
    std::string extract; // what the job has taken from the file
};

struct CheckJob {
    ReadOptions read;
    bool checks = true;
    // Messages of level 0 and 1 up to `finding_verbosity`, the others up to `note_verbosity`.
    uint32_t finding_verbosity = 3;
    uint32_t note_verbosity = 0;
    // Called with a file that could be read; messages of what it does join the others.
    std::function<void(Reading &reading, FileReport &report)> afterwards;
};

// Reads and checks a file.
void check_file(const std::string &path, const CheckJob &job, FileReport &report);

// The package folder that is installed with the library, empty when it is not known.
std::string installed_package_folder();
