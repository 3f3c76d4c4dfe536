#pragma once

#include "device_json.h"
#include "reading.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// How many rows have each word, in the order in which the words come up; null for none.
struct WordCounts {
    void add(const char *word); // stays where it is as long as words are added
    std::vector<std::pair<Json, size_t>> counts;

  private:
    size_t place_of(const char *word);
    std::unordered_map<std::string, size_t> places_;
    std::unordered_map<const char *, size_t> known_; // the same by address
};

// What a summary says of the rows of a device.
struct RowCounts {
    size_t pins = 0;
    size_t pins_with_cells = 0;
    size_t pins_without_number = 0;
    size_t cells = 0;
    WordCounts pin_types;
    WordCounts pin_functions;
    WordCounts cell_functions;
    WordCounts cell_names;
};

// One file, read and checked, with what has to be said about it.
// NOLINTNEXTLINE(bugprone-exception-escape): making a null value of Json throws nothing.
struct Model {
    bool is_prg = false;
    int syntax_errors = 0;
    int errors = 0; // of rules
    int warnings = 0;
    std::string first_error; // its text, with its line
    Json component;          // its name
    Json json;               // what was asked for
    RowCounts rows;          // of a summary
};

// Prints the document of `tarnlet info --json`, row by row; pins and cells are not kept.
bool print_model(const std::string &path, const ReadOptions &options, Model &model);
// The same document; in a summary without pins and cells, which are counted.
bool read_summary(const std::string &path, const ReadOptions &options, Model &model);
bool read_model(const std::string &path, const ReadOptions &options, Model &model);
// Of a description only what `part` takes from it, of a data file nothing. Both give false when the
// file cannot be read, which has been said then.
bool read_model(const std::string &path, const ReadOptions &options, Json (*part)(Bsdl *bsdl),
                Model &model);

// Says that what is shown is not the whole, when there are syntax errors.
void note_syntax_errors(const std::string &path, const Model &model);
