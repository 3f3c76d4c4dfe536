#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

// Findings that were there when it was written, by file and fingerprint. Files are named from the
// folder of the baseline, so that it holds wherever the tool is run.
class Baseline
{
  public:
    // For a file to be read or written.
    explicit Baseline(const std::string &path);

    // False, and said on standard error, when it is not one.
    bool read();
    bool write() const;

    void add(const std::string &file, const std::string &rule, const std::string &fingerprint);
    // How often a file had the finding.
    size_t count(const std::string &file, const std::string &fingerprint) const;

  private:
    struct Entry {
        std::string rule;
        size_t count = 0;
    };

    std::string name_of(const std::string &file) const;

    std::string path;
    std::map<std::pair<std::string, std::string>, Entry> entries;
};
