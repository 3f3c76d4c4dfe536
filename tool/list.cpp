// tarnlet list: chosen fields of many files, a row for each.

#include "command.h"
#include "files.h"
#include "guarded.h"
#include "output.h"
#include "table.h"
#include "words.h"

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
            values.push_back("bank " + code["bank"].dump() + " number " + code["number"].dump());
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
    return is_opcode || find_field(name)
               ? std::string()
               : "there is no field '" + escaped(name) + "'; --list-fields shows all";
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

static Json row_of(Reading &reading, const std::string &path, const ListJob &job, bool passed)
{
    Json row;
    for (const std::string &name : job.fields) {
        const Field *field = find_field(name);
        if (!field)
            row[name] = opcodes_of(reading.handle(), name.c_str() + OPCODE_OF.size());
        else if (field->value)
            row[name] = field->value(reading.handle());
        else
            row[name] = name == "passed" ? Json(passed) : text_value(path.c_str());
    }
    return row;
}

// The row of a file, null for one that cannot be read, and the status that the file leads to.
static Json read_row(const std::string &path, const ListJob &job, Depth depth)
{
    std::string first_error;
    ReadOptions options = job.read;
    options.fast_read = depth == Depth::START;
    Reading reading(path, options, 2, [&](const Message &message) {
        if (message.level == BSDL_LEVEL_ERROR && first_error.empty())
            first_error = escaped_line(message.text);
    });
    if (!reading.handle()) {
        complain(escaped(path) + ": " + (first_error.empty() ? "cannot be read" : first_error));
        return {{"row", nullptr}, {"status", STATUS_UNUSABLE}};
    }
    const int32_t syntax_errors = bsdlGetNumErrors(reading.handle());
    if (syntax_errors > 0)
        complain(escaped(path) + ": " +
                 counted(static_cast<size_t>(syntax_errors), "syntax error"));
    const bool passed = depth == Depth::CHECKS && reading.check();
    return {{"row", row_of(reading, path, job, passed)},
            {"status", syntax_errors > 0 ? STATUS_FINDINGS : STATUS_CLEAN}};
}

static int read_rows(const std::vector<std::string> &files, const ListJob &job, Json &rows)
{
    int status = STATUS_CLEAN;
    const Depth depth = depth_of(job.fields);
    const auto done = [&](size_t, const std::string &line) {
        Json result = Json::parse(line);
        status = std::max(status, result["status"].get<int>());
        if (!result["row"].is_null())
            rows.push_back(std::move(result["row"]));
    };
    const auto lost = [&](size_t item) {
        complain(escaped(files[item]) + ": ended the process that read it");
        status = STATUS_UNUSABLE;
    };
    run_guarded(files.size(),
                {.work = [&](size_t item) { return read_row(files[item], job, depth).dump(); },
                 .done = done,
                 .lost = lost});
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
    int status = STATUS_CLEAN;
    std::vector<std::string> unreadable;
    const std::vector<std::string> files = collect_files(job.paths, unreadable);
    for (const std::string &folder : unreadable) {
        complain(escaped(folder));
        status = STATUS_UNUSABLE;
    }
    Json rows = Json::array();
    status = std::max(status, read_rows(files, job, rows));
    print_table(rows, job.fields, job.form);
    return status;
}

std::function<int()> set_up_list(CLI::App &app)
{
    auto job = std::make_shared<ListJob>();
    CLI::Option *paths =
        app.add_option("FILE", job->paths, "Descriptions, data files, and folders of them");
    CLI::Option *list_fields =
        app.add_flag("--list-fields", job->list_fields, "Print the names of the fields and stop");
    app.add_option("--fields", job->fields, "Fields of the row, in this order, set off by commas")
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
