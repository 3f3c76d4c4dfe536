// tarnlet pins, cells, instructions, registers: one list of a device as a table.

#include "command.h"
#include "console.h"
#include "formats/table.h"
#include "model.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace
{

struct TableJob {
    std::string path;
    ReadOptions read;
    TableForm form = TableForm::TEXT;
    std::string sort; // a column; empty: as the rows are
};

struct DeviceTable {
    const char *noun;
    Json (*rows)(Bsdl *bsdl);
    std::vector<std::string> columns;
    std::vector<std::string> sort; // columns by which the rows may be sorted
};

} // namespace

// The letters of a name, then its subscript as the number that it is: "D(2)" before "D(10)".
static std::pair<std::string, long> port_order(const Json &port)
{
    if (port.is_null())
        return {"", 0};
    const std::string name = folded(port.get<std::string>());
    const size_t open = name.find('(');
    return {name.substr(0, open),
            open == name.npos ? -1 : std::strtol(name.c_str() + open + 1, nullptr, 10)};
}

static void sort_rows(Json &rows, const std::string &column)
{
    const auto comes_first = [&](const Json &a, const Json &b) {
        return column == "port" ? port_order(a[column]) < port_order(b[column])
                                : a[column] < b[column];
    };
    std::stable_sort(rows.begin(), rows.end(), comes_first);
}

static int run(const TableJob &job, const DeviceTable &table)
{
    Model model;
    if (!read_model(job.path, job.read, table.rows, model))
        return STATUS_UNUSABLE;
    if (model.is_prg) {
        complain(escaped(job.path) + ": a PPC/PRG file has no " + table.noun);
        return STATUS_UNUSABLE;
    }
    note_syntax_errors(job.path, model);
    if (!job.sort.empty())
        sort_rows(model.json, job.sort);
    print_table(model.json, table.columns, job.form);
    return model.syntax_errors ? STATUS_FINDINGS : STATUS_CLEAN;
}

static std::function<int()> set_up_table(CLI::App &app, DeviceTable table)
{
    auto job = std::make_shared<TableJob>();
    app.add_option("FILE", job->path, "Description to read; - is standard input")->required();
    add_read_options(app, job->read);
    add_table_options(app, job->form);
    if (!table.sort.empty())
        app.add_option("--sort", job->sort, "Sort the rows; by default they are as in the file")
            ->check(CLI::IsMember(table.sort))
            ->type_name("COLUMN");
    return [job, table = std::move(table)] { return run(*job, table); };
}

std::function<int()> set_up_pins(CLI::App &app)
{
    return set_up_table(app, {.noun = "pins",
                              .rows = pins_of,
                              .columns = {"port", "number", "type", "function", "cells"},
                              .sort = {}});
}

std::function<int()> set_up_cells(CLI::App &app)
{
    return set_up_table(app, {.noun = "cells",
                              .rows = cells_of,
                              .columns = {"number", "cell", "port", "function", "safe", "control",
                                          "disable_value", "disable_result"},
                              .sort = {"number", "port"}});
}

std::function<int()> set_up_instructions(CLI::App &app)
{
    return set_up_table(
        app, {.noun = "instructions",
              .rows = instructions_of,
              .columns = {"name", "opcodes", "class", "preload", "register", "length", "capture"},
              .sort = {}});
}

std::function<int()> set_up_registers(CLI::App &app)
{
    return set_up_table(app,
                        {.noun = "registers",
                         .rows = [](Bsdl *bsdl) { return registers_of(instructions_of(bsdl)); },
                         .columns = {"name", "length", "instructions"},
                         .sort = {}});
}
