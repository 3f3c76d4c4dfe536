// tarnlet pins, cells, instructions, registers: one list of a device as a table.

#include "command.h"
#include "console.h"
#include "formats/table.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace
{

struct TableJob {
    std::string path;
    ReadOptions read;
    TableForm form = TableForm::TEXT;
};

struct DeviceTable {
    const char *noun;
    Json (*rows)(Bsdl *bsdl);
    std::vector<std::string> columns;
};

} // namespace

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
    print_table(model.json, table.columns, job.form);
    return model.syntax_errors ? STATUS_FINDINGS : STATUS_CLEAN;
}

static std::function<int()> set_up_table(CLI::App &app, DeviceTable table)
{
    auto job = std::make_shared<TableJob>();
    app.add_option("FILE", job->path, "Description to read; - is standard input")->required();
    add_read_options(app, job->read);
    add_table_options(app, job->form);
    return [job, table = std::move(table)] { return run(*job, table); };
}

std::function<int()> set_up_pins(CLI::App &app)
{
    return set_up_table(app, {.noun = "pins",
                              .rows = pins_of,
                              .columns = {"port", "number", "type", "function", "cells"}});
}

std::function<int()> set_up_cells(CLI::App &app)
{
    return set_up_table(app, {.noun = "cells",
                              .rows = cells_of,
                              .columns = {"number", "cell", "port", "function", "safe", "control",
                                          "disable_value", "disable_result"}});
}

std::function<int()> set_up_instructions(CLI::App &app)
{
    return set_up_table(
        app, {.noun = "instructions",
              .rows = instructions_of,
              .columns = {"name", "opcodes", "class", "preload", "register", "length", "capture"}});
}

std::function<int()> set_up_registers(CLI::App &app)
{
    return set_up_table(app,
                        {.noun = "registers",
                         .rows = [](Bsdl *bsdl) { return registers_of(instructions_of(bsdl)); },
                         .columns = {"name", "length", "instructions"}});
}
