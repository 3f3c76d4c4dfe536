#include "table.h"

#include "output.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>

void add_table_options(CLI::App &app, TableForm &form)
{
    CLI::Option *csv = app.add_flag_function(
        "--csv", [&form](int64_t) { form = TableForm::CSV; }, "Print comma-separated values");
    CLI::Option *json = app.add_flag_function(
        "--json", [&form](int64_t) { form = TableForm::JSON; }, "Print JSON");
    csv->excludes(json);
}

std::string value_text(const Json &value, std::string_view nothing, std::string_view joint)
{
    if (value.is_null())
        return std::string(nothing);
    if (value.is_string())
        return escaped(value.get_ref<const std::string &>());
    if (value.is_boolean())
        return value ? "yes" : "no";
    if (value.is_number_float()) {
        char text[40];
        std::snprintf(text, sizeof text, "%.10g", value.get<double>());
        return text;
    }
    if (!value.is_array())
        return value.dump();
    if (value.empty())
        return std::string(nothing);
    std::string text;
    for (const Json &element : value) {
        if (!text.empty())
            text += joint;
        text += value_text(element, nothing, joint);
    }
    return text;
}

// Width on a terminal, for a character a column: continuation bytes take none.
static size_t width_of(const std::string &text)
{
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

static void add_padded(std::string &line, const std::string &text, size_t width, bool right)
{
    const size_t used = width_of(text);
    const std::string blanks(width > used ? width - used : 0, ' ');
    line += right ? blanks + text : text + blanks;
}

static void end_line(std::string &text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
}

std::string table_text(const Json &rows, const std::vector<std::string> &columns,
                       std::string_view margin)
{
    const size_t count = columns.size();
    std::vector<std::string> heads;
    std::vector<size_t> widths;
    std::vector<bool> numbers(count, true);
    for (const std::string &column : columns) {
        std::string head = column;
        for (char &c : head)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        widths.push_back(head.size());
        heads.push_back(std::move(head));
    }
    std::vector<std::vector<std::string>> lines;
    for (const Json &row : rows) {
        std::vector<std::string> line;
        for (size_t i = 0; i < count; i++) {
            const Json &value = row[columns[i]];
            numbers[i] = numbers[i] && (value.is_number() || value.is_null());
            line.push_back(value_text(value, "-", ","));
            widths[i] = std::max(widths[i], width_of(line[i]));
        }
        lines.push_back(std::move(line));
    }
    std::string text;
    const auto add_line = [&](const std::vector<std::string> &line) {
        text += margin;
        for (size_t i = 0; i < count; i++) {
            text += i > 0 ? "  " : "";
            add_padded(text, line[i], widths[i], numbers[i]);
        }
        end_line(text);
    };
    add_line(heads);
    for (const std::vector<std::string> &line : lines)
        add_line(line);
    return text;
}

static std::string csv_field(const Json &value)
{
    std::string field = value_text(value, "", " ");
    if (field.find_first_of("\",") == std::string::npos)
        return field;
    std::string quoted = "\"";
    for (char c : field)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

static std::string csv_text(const Json &rows, const std::vector<std::string> &columns)
{
    std::string text;
    for (size_t i = 0; i < columns.size(); i++)
        text += (i > 0 ? "," : "") + csv_field(columns[i]);
    text += "\r\n";
    for (const Json &row : rows) {
        for (size_t i = 0; i < columns.size(); i++)
            text += (i > 0 ? "," : "") + csv_field(row[columns[i]]);
        text += "\r\n";
    }
    return text;
}

void print_table(const Json &rows, const std::vector<std::string> &columns, TableForm form)
{
    if (form == TableForm::JSON) {
        print_json(rows);
        return;
    }
    const std::string text =
        form == TableForm::CSV ? csv_text(rows, columns) : table_text(rows, columns, "");
    std::fwrite(text.data(), 1, text.size(), stdout);
}
