// tarnlet find: the descriptions of an IDCODE.

#include "command.h"
#include "console.h"
#include "formats/table.h"
#include "idcode.h"
#include "input_files.h"
#include "model.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace
{

struct FindJob {
    std::string idcode;
    std::vector<std::string> paths;
    ReadOptions read;
    TableForm form = TableForm::TEXT;
};

} // namespace

// Two patterns of 32 bits agree where both are known.
static bool agree(std::string_view a, std::string_view b)
{
    for (size_t i = 0; i < a.size() && i < b.size(); i++)
        if (a[i] != b[i] && a[i] != 'X' && b[i] != 'X')
            return false;
    return a.size() == b.size();
}

static int run(const FindJob &job)
{
    const std::string wanted = *idcode_pattern(job.idcode);
    bool all_read;
    Json rows = Json::array();
    FindJob reading = job;
    reading.read.fast_read = true; // IDCODE_REGISTER is near the start
    for (const std::string &path : collect_files(job.paths, &all_read)) {
        Model model;
        if (!read_model(path, reading.read, idcodes_of, model)) {
            all_read = false;
            continue;
        }
        if (model.is_prg)
            continue;
        for (const Json &idcode : model.json)
            if (agree(wanted, idcode["pattern"].get<std::string>())) {
                rows.push_back({{"file", text_value(path.c_str())},
                                {"component", model.component},
                                {"idcode", idcode["hex"]}});
                break;
            }
    }
    if (!rows.empty() || job.form != TableForm::TEXT)
        print_table(rows, {"file", "component", "idcode"}, job.form);
    if (!all_read)
        return STATUS_UNUSABLE;
    return rows.empty() ? STATUS_FINDINGS : STATUS_CLEAN;
}

std::function<int()> set_up_find(CLI::App &app)
{
    auto job = std::make_shared<FindJob>();
    app.add_option("IDCODE", job->idcode,
                   "As eight hexadecimal digits (0x06415041) or 32 bits; X stands for any")
        ->required()
        ->check([](const std::string &text) {
            return idcode_pattern(text) ? std::string()
                                        : "'" + escaped(text) +
                                              "' is no IDCODE: eight hexadecimal digits or 32 "
                                              "bits are expected, X for what is not known";
        });
    app.add_option("FILE", job->paths, "Descriptions, and folders of them")->required();
    add_read_options(app, job->read);
    add_table_options(app, job->form);
    return [job] { return run(*job); };
}
