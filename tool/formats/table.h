#pragma once

#include "device_json.h"

#include <string>
#include <string_view>
#include <vector>

enum class TableForm { TEXT, CSV, JSON };

// Adds --csv and --json; the options set the form.
void add_table_options(CLI::App &app, TableForm &form);

// Prints the rows, an array of objects that have a value for each column. As text: columns under a
// head, "-" for null, several values joined by commas, so that each column is one word. As CSV
// (RFC 4180): null is empty, several values are joined by blanks. As JSON: the rows themselves.
void print_table(const Json &rows, const std::vector<std::string> &columns, TableForm form);

// The text form, each line after `margin`.
std::string table_text(const Json &rows, const std::vector<std::string> &columns,
                       std::string_view margin);

// A value in one line of text: null is `nothing`, the elements of a list are joined.
std::string value_text(const Json &value, std::string_view nothing, std::string_view joint);

// JSON for a file or a pipe: in ASCII, so that no character of a name reaches a terminal as such.
void print_json(const Json &json);
