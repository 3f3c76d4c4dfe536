// tarnlet list: chosen fields of many files, a row for each.

#include "code_words.h"
#include "command.h"
#include "console.h"
#include "file_report.h"
#include "formats/table.h"
#include "idcode.h"
#include "in_order.h"
#include "input_files.h"
#include "near_name.h"
#include "package_file.h"
#include "settings.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <strings.h>
#include <utility>

namespace
{

// What a value needs: the statements up to IDCODE_REGISTER, the whole file, or the checks, which
// complete the lists.
enum class Depth { START, FILE, CHECKS };

struct Field {
    const char *name;
    Depth depth;
    Json (*value)(Bsdl *bsdl);
    const char *meaning;
};

struct ListJob {
    std::vector<std::string> paths;
    std::vector<std::string> fields = {"file",   "component", "standard",
                                       "idcode", "ir-length", "bsr-length"};
    ReadOptions read;
    TableForm form = TableForm::TEXT;
    bool list_fields = false;
};

constexpr std::string_view OPCODE_OF = "opcode:";

} // namespace

template <const char *(*first)(Bsdl *), const char *(*next)(Bsdl *)>
static Json all_texts(Bsdl *bsdl)
{
    Json texts = Json::array();
    for (const char *text = first(bsdl); text; text = next(bsdl))
        texts.push_back(text_value(text));
    return texts;
}

// One field of each IDCODE pattern.
static Json of_idcodes(Bsdl *bsdl, const char *field)
{
    Json values = Json::array();
    for (const Json &idcode : idcodes_of(bsdl))
        values.push_back(idcode[field]);
    return values;
}

static Json manufacturers(Bsdl *bsdl)
{
    Json values = Json::array();
    for (const Json &idcode : idcodes_of(bsdl)) {
        const Json &code = idcode["manufacturer"];
        if (code.is_null())
            values.push_back(nullptr);
        else if (!code["name"].is_null())
            values.push_back(code["name"]);
        else
            values.push_back("JEDEC " + jedec_text(code["bank"], code["number"]));
    }
    return values;
}

static Json names_of(const Json &rows)
{
    Json names = Json::array();
    for (const Json &row : rows)
        names.push_back(row["name"]);
    return names;
}

static Json number_or_null(int32_t number) { return number > 0 ? Json(number) : Json(); }

// The file and what came of reading it stand in the row from the start.
static constexpr Field FIELDS[] = {
    {"file", Depth::START, nullptr, "The file as it was found"},
    {"component", Depth::START, [](Bsdl *h) { return text_value(bsdlComponentName(h)); },
     "Name of the component, or of the design"},
    {"standard", Depth::START, [](Bsdl *h) { return word_value(standard_word(bsdlStandard(h))); },
     "The standard that governs the description"},
    {"standards", Depth::START, [](Bsdl *h) { return standards_of(h)["uses"]; },
     "All standards whose packages are in use"},
    {"conformance", Depth::START,
     [](Bsdl *h) { return word_value(conformance_word(bsdlConformance(h))); },
     "Value of COMPONENT_CONFORMANCE"},
    {"pin-map", Depth::START, [](Bsdl *h) { return text_value(bsdlGetDefaultDevicePackage(h)); },
     "Device package that is taken by default"},
    {"pin-maps", Depth::START, all_texts<bsdlGetFirstPinMap, bsdlGetNextPinMap>, "Device packages"},
    {"tck-frequency", Depth::START,
     [](Bsdl *h) {
         const double frequency = bsdlGetTckFrequency(h);
         return frequency == 0 ? Json() : Json(frequency);
     },
     "Highest frequency of TCK, in hertz"},
    {"tck-halt", Depth::START,
     [](Bsdl *h) { return word_value(halt_state_word(bsdlGetTckHaltState(h))); },
     "States in which TCK may be halted"},
    {"trst", Depth::START, [](Bsdl *h) { return port_value(bsdlGetTrstPortId(h)); },
     "Port of the test reset"},
    {"compliance-ports", Depth::START,
     [](Bsdl *h) {
         Json ports = Json::array();
         for (PortId *port = bsdlGetFirstComplPort(h); port; port = bsdlGetNextComplPort(h))
             ports.push_back(port_value(port));
         return ports;
     },
     "Ports of COMPLIANCE_PATTERNS"},
    {"compliance", Depth::START, all_texts<bsdlGetFirstComplPattern, bsdlGetNextComplPattern>,
     "Compliance patterns"},
    {"ir-length", Depth::START, [](Bsdl *h) { return number_or_null(bsdlGetInstructionLength(h)); },
     "Length of the instruction register"},
    {"ir-capture", Depth::START,
     all_texts<bsdlGetFirstInstructionCapture, bsdlGetNextInstructionCapture>,
     "What the instruction register captures"},
    {"idcode", Depth::START, all_texts<bsdlGetFirstIdcodePattern, bsdlGetNextIdcodePattern>,
     "IDCODE as 32 bits"},
    {"idcode-hex", Depth::START, [](Bsdl *h) { return of_idcodes(h, "hex"); },
     "IDCODE in hexadecimal digits"},
    {"version", Depth::START, [](Bsdl *h) { return of_idcodes(h, "version"); },
     "Version in the IDCODE"},
    {"part", Depth::START, [](Bsdl *h) { return of_idcodes(h, "part"); },
     "Part number in the IDCODE"},
    {"manufacturer", Depth::START, manufacturers, "Manufacturer in the IDCODE"},
    {"usercode", Depth::FILE, all_texts<bsdlGetFirstUsercodePattern, bsdlGetNextUsercodePattern>,
     "USERCODE as 32 bits"},
    {"bsr-length", Depth::FILE, [](Bsdl *h) { return number_or_null(bsdlGetBSRLength(h)); },
     "Length of the boundary register"},
    {"cells", Depth::FILE, [](Bsdl *h) { return Json(cells_of(h).size()); },
     "Number of rows of the boundary register"},
    {"design-warning", Depth::FILE, [](Bsdl *h) { return text_value(bsdlDesignWarning(h)); },
     "Text of DESIGN_WARNING"},
    {"syntax-errors", Depth::FILE, [](Bsdl *h) { return Json(bsdlGetNumErrors(h)); },
     "Number of syntax errors"},
    {"pins", Depth::CHECKS, [](Bsdl *h) { return Json(std::max(bsdlGetNbrOfPins(h), 0)); },
     "Number of port bits"},
    {"instructions", Depth::CHECKS, [](Bsdl *h) { return names_of(instructions_of(h)); },
     "Names of the instructions"},
    {"registers", Depth::CHECKS, [](Bsdl *h) { return names_of(registers_of(instructions_of(h))); },
     "Names of the data registers"},
    {"passed", Depth::CHECKS, nullptr, "Whether the file passes all checks"},
};

static const Field *find_field(std::string_view name)
{
    for (const Field &field : FIELDS)
        if (name == field.name)
            return &field;
    return nullptr;
}

static std::string known_field(const std::string &name)
{
    const bool is_opcode = name.size() > OPCODE_OF.size() && name.starts_with(OPCODE_OF);
    if (is_opcode || find_field(name))
        return {};
    std::vector<std::string> names;
    for (const Field &field : FIELDS)
        names.emplace_back(field.name);
    const std::string near = did_you_mean(name, names);
    return "there is no field '" + escaped(name) + "'" +
           (near.empty() ? "; --list-fields shows all" : near);
}

static Json opcodes_of(Bsdl *bsdl, const char *instruction)
{
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl)) {
        const char *name = bsdlGetInstructionName(entry);
        if (!name || strcasecmp(name, instruction) != 0)
            continue;
        Json opcodes = Json::array();
        for (const char *opcode = bsdlGetFirstInstrPattern(entry); opcode;
             opcode = bsdlGetNextInstrPattern(entry))
            opcodes.push_back(text_value(opcode));
        return opcodes;
    }
    return Json::array();
}

static Depth depth_of(const std::vector<std::string> &fields)
{
    Depth depth = Depth::START;
    for (const std::string &name : fields) {
        const Field *field = find_field(name);
        depth = std::max(depth, field ? field->depth : Depth::CHECKS);
    }
    return depth;
}

static Json row_of(const Reading &reading, const FileReport &report, const ListJob &job)
{
    Json row;
    for (const std::string &name : job.fields) {
        const Field *field = find_field(name);
        if (!field)
            row[name] = opcodes_of(reading.handle(), name.c_str() + OPCODE_OF.size());
        else if (field->value)
            row[name] = field->value(reading.handle());
        else
            row[name] = name == "passed" ? Json(report.passed) : text_value(report.path.c_str());
    }
    return row;
}

static void complain_of(const FileReport &report, const std::string &what)
{
    complain(escaped(report.path) + ": " + what);
}

// A package beside descriptions has no row, and nothing is wrong with that.
static bool is_package(const std::string &path)
{
    std::string text;
    return read_bytes(path, text) && !package_name(text).empty();
}

// Says what is wrong with a file and gives the status that it leads to.
static int status_of(const FileReport &report)
{
    if (report.extract.empty()) {
        if (is_package(report.path))
            return STATUS_CLEAN;
        const auto error =
            std::find_if(report.messages.begin(), report.messages.end(),
                         [](const Message &each) { return each.level == BSDL_LEVEL_ERROR; });
        complain_of(report,
                    error != report.messages.end() ? escaped_line(error->text) : "cannot be read");
        return STATUS_UNUSABLE;
    }
    if (report.syntax_errors == 0)
        return STATUS_CLEAN;
    complain_of(report, counted(static_cast<size_t>(report.syntax_errors), "syntax error"));
    return STATUS_FINDINGS;
}

static int read_rows(const std::vector<std::string> &files, const ListJob &job, Json &rows)
{
    int status = STATUS_CLEAN;
    const Depth depth = depth_of(job.fields);
    CheckJob reading = {.read = job.read, .checks = depth == Depth::CHECKS, .finding_verbosity = 2};
    reading.read.fast_read = depth == Depth::START;
    reading.afterwards = [&](Reading &file, FileReport &report) {
        report.extract = row_of(file, report, job).dump();
    };
    const auto check = [&](size_t i) {
        FileReport report = {.path = files[i]};
        CheckJob of_file = reading;
        if (const std::string problem = add_settings(files[i], of_file.read); !problem.empty())
            report.messages.push_back({.level = BSDL_LEVEL_ERROR, .text = problem});
        else
            check_file(files[i], of_file, report);
        return report;
    };
    const auto take = [&](size_t, const FileReport &report) {
        status = std::max(status, status_of(report));
        if (!report.extract.empty())
            rows.push_back(Json::parse(report.extract));
        return true;
    };
    do_in_order<FileReport>(files.size(), 0, check, take);
    return status;
}

static void print_fields()
{
    std::string text;
    const auto add = [&](std::string name, const char *meaning) {
        name.resize(std::max<size_t>(name.size() + 2, 18), ' ');
        text += name + meaning + '\n';
    };
    for (const Field &field : FIELDS)
        add(field.name, field.meaning);
    add("opcode:NAME", "Opcodes of the instruction of that name");
    std::fwrite(text.data(), 1, text.size(), stdout);
}

static int run(const ListJob &job)
{
    if (job.list_fields) {
        print_fields();
        return STATUS_CLEAN;
    }
    bool all_found;
    const std::vector<std::string> files = collect_files(job.paths, &all_found);
    Json rows = Json::array();
    const int status = read_rows(files, job, rows);
    print_table(rows, job.fields, job.form);
    return all_found ? status : STATUS_UNUSABLE;
}

std::function<int()> set_up_list(CLI::App &app)
{
    auto job = std::make_shared<ListJob>();
    CLI::Option *paths =
        app.add_option("FILE", job->paths, "Descriptions, data files, and folders of them");
    CLI::Option *list_fields =
        app.add_flag("--list-fields", job->list_fields, "Print the names of the fields and stop");
    app.add_option("--fields", job->fields, "Fields of the row, in this order, separated by commas")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->capture_default_str()
        ->check(known_field);
    add_read_options(app, job->read);
    add_table_options(app, job->form);
    app.callback([paths, list_fields] {
        if (paths->empty() && list_fields->empty())
            throw CLI::RequiredError("FILE");
    });
    return [job] { return run(*job); };
}
