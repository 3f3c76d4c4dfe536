// tarnlet info: what a file holds, to read or as one JSON document.

#include "command.h"
#include "console.h"
#include "formats/table.h"
#include "idcode.h"
#include "model.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <utility>

namespace
{

struct InfoJob {
    std::string path;
    ReadOptions read;
    bool json = false;
};

// Lines of a label and a text, the texts below each other.
class Summary
{
  public:
    void add(std::string_view label, std::string_view line)
    {
        constexpr size_t LABEL = 14;
        text += label;
        text.append(label.size() < LABEL ? LABEL - label.size() : 1, ' ');
        text += line;
        text += '\n';
    }
    void add_block(const std::string &block) { text += block; }
    void print() const { std::fwrite(text.data(), 1, text.size(), stdout); }

  private:
    std::string text;
};

} // namespace

static std::string in_line(const Json &value) { return value_text(value, "-", ", "); }

// "12 in, 3 out", rows without a word under `nothing`, or left out.
static std::string tally(const WordCounts &words, const char *nothing)
{
    std::string text;
    for (const auto &[word, count] : words.counts)
        if (!word.is_null() || nothing)
            text += (text.empty() ? "" : ", ") + std::to_string(count) + " " +
                    value_text(word, nothing ? nothing : "", " ");
    return text;
}

static std::string frequency_text(double hertz)
{
    const char *unit = "Hz";
    for (const char *larger : {"kHz", "MHz", "GHz"}) {
        if (hertz < 1000)
            break;
        hertz /= 1000;
        unit = larger;
    }
    char text[40];
    std::snprintf(text, sizeof text, "%.6g %s", hertz, unit);
    return text;
}

static void add_standards(Summary &summary, const Json &json)
{
    const Json &standards = json["standards"];
    std::string line = in_line(standards["uses"]);
    if (!standards["conformance"].is_null())
        line += ", conforms to " + in_line(standards["conformance"]);
    summary.add("Standards", line);
}

static void add_check(Summary &summary, const Json &json)
{
    const Json &check = json["check"];
    std::string line = check["passed"] ? "passed" : "failed";
    if (check["errors"] != 0 || check["warnings"] != 0)
        line +=
            ", " + counted(check["errors"], "error") + ", " + counted(check["warnings"], "warning");
    if (json["syntax_errors"] != 0)
        line += ", " + counted(json["syntax_errors"], "syntax error");
    summary.add("Check", line);
}

static void add_pins(Summary &summary, const Json &json, const RowCounts &rows)
{
    if (!json["pin_map"].is_null() || !json["pin_maps"].empty())
        summary.add("Pin map",
                    in_line(json["pin_map"]) + " (there are: " + in_line(json["pin_maps"]) + ")");
    const std::string types = tally(rows.pin_types, "of unknown type");
    summary.add("Pins", std::to_string(rows.pins) + (types.empty() ? "" : ": " + types));
    if (const std::string functions = tally(rows.pin_functions, nullptr); !functions.empty())
        summary.add("", functions);
    summary.add(
        "", std::to_string(rows.pins_with_cells) + " with boundary cells" +
                (rows.pins_without_number
                     ? ", " + std::to_string(rows.pins_without_number) + " without a physical pin"
                     : ""));
    WordCounts pairs;
    for (const Json &group : json["port_groups"])
        pairs.add(group["type"].is_null() ? nullptr
                                          : group["type"].get_ref<const std::string &>().c_str());
    if (const size_t count = json["port_groups"].size())
        summary.add("Differential", counted(count, "pair") + ": " + tally(pairs, "-"));
}

static void add_tap(Summary &summary, const Json &json)
{
    const Json &tap = json["tap"];
    std::string ports;
    for (const auto &[name, key] : {std::pair{"TDI", "tdi"},
                                    {"TDO", "tdo"},
                                    {"TMS", "tms"},
                                    {"TCK", "tck"},
                                    {"TRST", "trst"}})
        if (!tap[key].is_null())
            ports += (ports.empty() ? "" : ", ") + std::string(name) + " " + in_line(tap[key]);
    summary.add("TAP", ports.empty() ? "-" : ports);
    if (!tap["tck_frequency"].is_null())
        summary.add("", "TCK up to " + frequency_text(tap["tck_frequency"]) +
                            ", may be halted: " + in_line(tap["tck_halt"]));
    if (const Json &compliance = json["compliance"]; !compliance.is_null())
        summary.add("Compliance", "(" + in_line(compliance["ports"]) + ") (" +
                                      in_line(compliance["patterns"]) + ")");
}

static void add_idcodes(Summary &summary, const Json &json)
{
    for (const Json &idcode : json["idcodes"]) {
        summary.add("IDCODE", in_line(idcode["hex"]) + " = " + in_line(idcode["pattern"]));
        const Json &manufacturer = idcode["manufacturer"];
        std::string parts;
        if (!idcode["version"].is_null())
            parts += "version " + in_line(idcode["version"]);
        if (!idcode["part"].is_null()) {
            char line[20];
            std::snprintf(line, sizeof line, "part 0x%04X", idcode["part"].get<unsigned>());
            parts += (parts.empty() ? "" : ", ") + std::string(line);
        }
        if (!manufacturer.is_null()) {
            const std::string code = jedec_text(manufacturer["bank"], manufacturer["number"]);
            parts += (parts.empty() ? "manufacturer " : ", manufacturer ") +
                     (manufacturer["name"].is_null()
                          ? "JEDEC " + code
                          : in_line(manufacturer["name"]) + " (JEDEC " + code + ")");
        }
        if (!parts.empty())
            summary.add("", parts);
    }
    for (const Json &usercode : json["usercodes"])
        summary.add("USERCODE", in_line(usercode));
}

static void add_instructions(Summary &summary, const Json &json)
{
    const Json &instructions = json["instructions"];
    const Json &length = json["instruction_register"]["length"];
    const Json &captures = json["instruction_register"]["captures"];
    summary.add("Instructions", std::to_string(instructions.size()) +
                                    (length.is_null() ? "" : " of " + counted(length, "bit")) +
                                    (captures.empty() ? "" : ", captures " + in_line(captures)));
    if (!instructions.empty())
        summary.add_block(table_text(
            instructions, {"name", "opcodes", "class", "register", "length", "capture"}, "  "));
}

static void add_boundary(Summary &summary, const Json &json, const RowCounts &rows)
{
    const Json &length = json["boundary"]["length"];
    std::string line = length.is_null() ? "no length" : counted(length, "cell");
    line += " in " + counted(rows.cells, "row");
    summary.add("Boundary", line);
    if (rows.cells == 0)
        return;
    summary.add("", tally(rows.cell_functions, "of unknown function"));
    summary.add("", tally(rows.cell_names, "without a cell type"));
}

static void add_isc(Summary &summary, const Json &isc)
{
    summary.add("IEEE 1532", in_line(isc["conformance"]) + ", pins " +
                                 in_line(isc["pin_behavior"]) + ", status " +
                                 in_line(isc["status"]));
    const auto names = [](const Json &rows) {
        std::string text;
        for (const Json &row : rows)
            text += (text.empty() ? "" : ", ") + in_line(row["name"]) +
                    (row["data"].is_null() ? "" : "(" + in_line(row["data"]) + ")");
        return text;
    };
    if (!isc["actions"].empty())
        summary.add("", counted(isc["actions"].size(), "action") + ": " + names(isc["actions"]));
    if (!isc["procedures"].empty())
        summary.add("", counted(isc["procedures"].size(), "procedure") + ": " +
                            names(isc["procedures"]));
}

static void add_aio(Summary &summary, const Json &aio)
{
    summary.add("IEEE 1149.6", in_line(aio["conformance"]) + ", " +
                                   counted(aio["pins"].size(), "port bit") + " with AC behaviour");
}

// A long text in one line: its line ends and indentation say nothing here.
static std::string in_one_line(const std::string &text)
{
    std::string line;
    for (char c : text) {
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (!blank)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    return escaped_line(line);
}

static void add_device(Summary &summary, const Json &json, const RowCounts &rows)
{
    if (!json["packages"]["names"].empty())
        summary.add("Packages", in_line(json["packages"]["names"]));
    add_pins(summary, json, rows);
    add_tap(summary, json);
    add_idcodes(summary, json);
    add_instructions(summary, json);
    summary.add("Registers", std::to_string(json["registers"].size()));
    if (!json["registers"].empty())
        summary.add_block(table_text(json["registers"], {"name", "length", "instructions"}, "  "));
    add_boundary(summary, json, rows);
    if (!json["isc"].is_null())
        add_isc(summary, json["isc"]);
    if (!json["aio"].is_null())
        add_aio(summary, json["aio"]);
    if (const Json &analog = json["analog"]; !analog.is_null())
        summary.add("IEEE 1149.4", counted(analog["modules"].size(), "analog boundary module"));
    if (!json["design_warning"].is_null())
        summary.add("Warning", in_one_line(json["design_warning"]));
}

static void add_prg(Summary &summary, const Json &prg)
{
    summary.add("Revision", in_line(prg["revision"]));
    summary.add("Frequency", frequency_text(prg["frequency"]));
    for (const Json &channel : prg["channels"]) {
        summary.add("Channel", "tap " + in_line(channel["tap"]) + ": " +
                                   counted(channel["components"].size(), "component"));
        if (!channel["components"].empty())
            summary.add_block(table_text(channel["components"],
                                         {"part", "instruction", "register_values"}, "  "));
    }
    summary.add("Programs", std::to_string(prg["programs"].size()));
    if (!prg["programs"].empty())
        summary.add_block(table_text(prg["programs"],
                                     {"part", "part_type", "type", "in_file", "out_file"}, "  "));
    for (const Json &program : prg["programs"])
        if (!program["isc"].is_null())
            add_isc(summary, program["isc"]);
}

static int run(const InfoJob &job)
{
    Model model;
    if (!(job.json ? print_model : read_summary)(job.path, job.read, model))
        return STATUS_UNUSABLE;
    note_syntax_errors(job.path, model);
    if (!job.json) {
        Summary summary;
        summary.add(model.is_prg ? "Design" : "Component", in_line(model.json["component"]));
        summary.add("File", in_line(model.json["file"]));
        add_standards(summary, model.json);
        add_check(summary, model.json);
        if (model.is_prg)
            add_prg(summary, model.json["prg"]);
        else
            add_device(summary, model.json, model.rows);
        summary.print();
    }
    return model.syntax_errors ? STATUS_FINDINGS : STATUS_CLEAN;
}

std::function<int()> set_up_info(CLI::App &app)
{
    auto job = std::make_shared<InfoJob>();
    app.add_option("FILE", job->path, "Description or data file to read; - is standard input")
        ->required();
    add_read_options(app, job->read);
    app.add_flag("--json", job->json, "Print the whole model as JSON");
    return [job] { return run(*job); };
}
