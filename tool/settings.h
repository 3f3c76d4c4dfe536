#pragma once

#include "reading.h"

#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

enum class Severity : uint8_t { OFF, NOTE, WARNING, ERROR };

// What a file .tarnlet.toml says about the files in its folder and below:
//
//     package-dirs = ["packages"]      # searched first, from the folder of the settings
//     package = "BGA49"                # device package, where the command line names none
//     strict = true
//     exclude = ["old/*"]              # patterns of paths from that folder
//
//     [rules]
//     pin-without-cell = "off"         # or "warning" or "error"
struct Settings {
    std::string path; // of the settings; empty: there are none
    std::vector<std::string> package_dirs;
    std::optional<std::string> package;
    std::optional<bool> strict;
    std::vector<std::string> exclude;
    std::map<std::string, Severity> rules;

    // Whether a file in the folder of the settings or below is to be left out.
    bool excludes(const std::string &file) const;
};

// Reads one file of settings. NULL when something is wrong with it; `problem` says what and where.
std::unique_ptr<Settings> read_settings(const std::string &path, std::string &problem);

// How a file is read: what the user has said counts, and the settings where nothing was said.
ReadOptions with_settings(ReadOptions said, const Settings &settings);

// What files were like when they were noted.
class FileStamps
{
  public:
    void note(const std::string &path);
    bool have_changed() const;

  private:
    struct Stamp {
        int64_t size = -1; // of a file that is not there
        timespec time = {};
        uint64_t number = 0;
    };
    static Stamp stamp_of(const std::string &path);

    std::map<std::string, Stamp> stamps;
};

// Finds the settings of files, in their folder or in the nearest above it, and reads each once.
class SettingsFinder
{
  public:
    // NULL, and `problem` set, when the settings cannot be used; without settings all is empty.
    const Settings *settings_of(const std::string &file, std::string &problem);
    // Whether a file of settings came, went or was written since it was looked for.
    bool have_changed() const { return stamps.have_changed(); }

  private:
    struct Known {
        std::unique_ptr<Settings> settings;
        std::string problem;
    };
    const Known &in_folder(const std::string &folder);

    std::map<std::string, Known> folders;
    FileStamps stamps;
};

// Completes what the command line says by the settings of a file. Empty, or why they cannot be
// used. Any thread may call it.
std::string add_settings(const std::string &file, ReadOptions &options);

// What --rule and the settings say: "off", "warning" or "error"; nothing for another word.
std::optional<Severity> severity_word(std::string_view word);

// Why a rule may not have that level; empty when it may.
std::string rule_level_problem(const std::string &rule, std::optional<Severity> level);

// The settings as a file would say them, headed by a comment that names the file.
std::string settings_text(const Settings &settings);
