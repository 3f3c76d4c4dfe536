#include "formats/table.h"

#include "console.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <functional>
#include <utility>

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

static void add_padded(std::string &line, const std::string &text, size_t width, bool right)
{
    const size_t used = columns_of(text);
    const std::string blanks(width > used ? width - used : 0, ' ');
    line += right ? blanks + text : text + blanks;
}

namespace
{

// How wide the columns of the text form are, and which of them hold numbers only.
struct Layout {
    std::vector<std::string> heads;
    std::vector<size_t> widths;
    std::vector<bool> numbers;
};

} // namespace

static std::string word_of(const Json &value) { return value_text(value, "-", ","); }

static Layout lay_out(const Json &rows, const std::vector<std::string> &columns)
{
    Layout layout;
    for (const std::string &column : columns) {
        std::string head = column;
        for (char &c : head)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        size_t width = head.size();
        bool numbers = true;
        for (const Json &row : rows) {
            const Json &value = row[column];
            numbers = numbers && (value.is_number() || value.is_null());
            width = std::max(width, columns_of(word_of(value)));
        }
        layout.heads.push_back(std::move(head));
        layout.widths.push_back(width);
        layout.numbers.push_back(numbers);
    }
    return layout;
}

// Long tables go out line by line: texts of all rows would take far more room than the rows.
static void write_table(const Json &rows, const std::vector<std::string> &columns,
                        const std::function<void(const std::string &line)> &write)
{
    const Layout layout = lay_out(rows, columns);
    const auto write_line = [&](const auto &word) {
        std::string line;
        for (size_t i = 0; i < columns.size(); i++) {
            line += i > 0 ? "  " : "";
            add_padded(line, word(i), layout.widths[i], layout.numbers[i]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        write(line + '\n');
    };
    write_line([&](size_t i) { return layout.heads[i]; });
    for (const Json &row : rows)
        write_line([&](size_t i) { return word_of(row[columns[i]]); });
}

std::string table_text(const Json &rows, const std::vector<std::string> &columns,
                       std::string_view margin)
{
    std::string text;
    write_table(rows, columns, [&](const std::string &line) { text.append(margin).append(line); });
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

static void write_csv(const Json &rows, const std::vector<std::string> &columns,
                      const std::function<void(const std::string &line)> &write)
{
    const auto write_line = [&](const auto &value) {
        std::string line;
        for (size_t i = 0; i < columns.size(); i++)
            line.append(i > 0 ? "," : "").append(csv_field(value(i)));
        write(line + "\r\n");
    };
    write_line([&](size_t i) { return Json(columns[i]); });
    for (const Json &row : rows)
        write_line([&](size_t i) -> const Json & { return row[columns[i]]; });
}

void print_table(const Json &rows, const std::vector<std::string> &columns, TableForm form)
{
    const auto print = [](const std::string &line) {
        std::fwrite(line.data(), 1, line.size(), stdout);
    };
    if (form == TableForm::JSON)
        print_json(rows);
    else if (form == TableForm::CSV)
        write_csv(rows, columns, print);
    else
        write_table(rows, columns, print);
}

void print_json(const Json &json)
{
    const std::string text = json.dump(2, ' ', true);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}
