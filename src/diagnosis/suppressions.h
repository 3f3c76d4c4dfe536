#pragma once

#include "diagnosis/finding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Comments that turn a rule off where they stand:
//
//     "PA3 : 17, " &   -- tarnlet: off pin-id-not-unique: bonded together
//     -- tarnlet: off pin-id-not-unique, port-not-mapped
//     -- tarnlet: off-file pin-without-cell
//
// After code a comment is for the findings that begin on its line, alone on a line for those of
// the next line with code, "off-file" for the whole file. A syntax error is never turned off, nor
// is what keeps a file from being read.
class Suppressions
{
  public:
    explicit Suppressions(std::string_view text);

    // Whether a finding is turned off that begins on this line; 0 for the file as a whole.
    // `reason` gets what the comment says behind its colon.
    bool covers(int32_t line, std::string_view rule, std::string *reason = nullptr);

    // What is wrong with the comments themselves.
    struct Remark {
        const char *rule;
        int32_t line;
        int32_t column;
        int32_t end_column;
        std::string text;
        std::string hint; // may be empty
    };
    // To be asked last. `all_looked_at` is false when the rules have not been checked on the whole
    // text, so that nobody can know what a comment is good for.
    std::vector<Remark> remarks(bool all_looked_at) const;

  private:
    struct Entry {
        std::string rule;
        int32_t line; // of the comment
        int32_t column;
        std::string reason;
        bool used;
    };

    void read_comment(std::string_view line, size_t at, int32_t number, bool alone);
    void read_rules(std::string_view line, size_t at, int32_t number, int32_t covered);

    std::vector<Entry> entries;
    std::unordered_map<int32_t, std::vector<size_t>> by_line;
    std::unordered_map<std::string, size_t> by_file_rule;
    std::vector<size_t> waiting; // alone on their lines, for the next line with code
    std::vector<Remark> not_understood;
};

// Marks the findings that comments of the text turn off, and adds what is wrong with the comments.
void suppress(std::string_view text, const std::string &file, bool all_looked_at,
              std::vector<Finding> *findings);
