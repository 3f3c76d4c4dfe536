// tarnlet check: reads files, runs the checks that are for them and reports what they say.

#include "command.h"
#include "commands/rule_listing.h"
#include "console.h"
#include "formats/reporter.h"
#include "input_files.h"
#include "tarnlet/diagnosis.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace
{

constexpr uint32_t ALL_MESSAGES = 4;

struct CheckOptions {
    std::vector<std::string> paths;
    ReadOptions read;
    std::string format = "text";
    std::string colour = "auto";
    std::vector<std::string> rules;
    std::string explain;
    bool list_rules = false;
    int verbosity = 0;
    bool verbose = false;
    bool as_read = false;
    bool all = false;
    bool quiet = false;
    bool werror = false;
    unsigned error_limit = 0;
    unsigned jobs = 0;
};

// What is written on the terminal while many files are read.
class Progress
{
  public:
    Progress(size_t all, bool wanted)
        : files(all), active(wanted && all > 1 && isatty(STDERR_FILENO) == 1)
    {
    }
    void show(size_t done, const std::string &path)
    {
        using namespace std::chrono;
        const auto now = steady_clock::now();
        if (!active || (shown && now - last < milliseconds(50)))
            return;
        last = now;
        shown = true;
        std::fprintf(stderr, "\r\033[K[%zu/%zu] %.60s", done, files, escaped(path).c_str());
    }
    // Ahead of lines that may go to the same terminal.
    void clear()
    {
        if (!shown)
            return;
        std::fputs("\r\033[K", stderr);
        shown = false;
    }

  private:
    size_t files;
    bool active;
    bool shown = false;
    std::chrono::steady_clock::time_point last;
};

class CheckRun
{
  public:
    explicit CheckRun(const CheckOptions &given) : options(given) {}
    int run();

  private:
    bool set_rules();
    void set_choice();
    void make_reporter();
    bool take(const DiagnosedFile &file);
    int status() const;

    const CheckOptions &options;
    DiagnosisChoice choice;
    Selection selection;
    std::unique_ptr<Reporter> reporter;
    Totals totals;
    bool all_found = true;
};

} // namespace

// --------------------------------------------------------------------------------------- options

bool CheckRun::set_rules()
{
    for (const std::string &rule : options.rules) {
        const size_t equals = rule.find('=');
        const std::string value = equals == std::string::npos ? "" : rule.substr(equals + 1);
        if (value != "off" && value != "warning" && value != "error") {
            complain("--rule " + escaped(rule) + ": ID=off, ID=warning or ID=error is expected");
            return false;
        }
        const std::string id = rule.substr(0, equals);
        if (!bsdlFindRule(id.c_str())) {
            complain("--rule: there is no rule '" + escaped(id) + "'; --list-rules names them all");
            return false;
        }
        selection.rules[id] = value == "off"       ? Severity::OFF
                              : value == "warning" ? Severity::WARNING
                                                   : Severity::ERROR;
    }
    selection.warnings_are_errors = options.werror;
    selection.error_limit = options.error_limit;
    return true;
}

void CheckRun::set_choice()
{
    choice.read = options.read;
    const bool listing = options.verbose || options.verbosity > 0;
    choice.as_read = options.as_read || listing;
    if (listing)
        choice.verbosity =
            options.verbosity > 0 ? static_cast<uint32_t>(options.verbosity) : ALL_MESSAGES;
}

void CheckRun::make_reporter()
{
    const bool to_terminal = options.format == "text";
    const TextStyle style = {.colour = to_terminal && colour_wanted(options.colour),
                             .closing_line = !options.quiet,
                             .clean_files = choice.verbosity > 0,
                             .follow_ups = options.all};
    const Writer write = standard_writer();
    if (options.format == "gcc")
        reporter = gcc_reporter(style, write);
    else if (options.format == "json")
        reporter = json_reporter(write);
    else if (options.format == "sarif")
        reporter = sarif_reporter(write);
    else
        reporter = text_reporter(style, write);
}

// ------------------------------------------------------------------------------------------- run

bool CheckRun::take(const DiagnosedFile &file)
{
    const FileFindings findings = select_findings(file, selection);
    add_to_totals(totals, findings);
    reporter->file(findings);
    return !output_failed();
}

int CheckRun::status() const
{
    if (totals.not_read || !all_found)
        return STATUS_UNUSABLE;
    return totals.errors ? STATUS_FINDINGS : STATUS_CLEAN;
}

int CheckRun::run()
{
    if (options.list_rules)
        return list_rules(options.format);
    if (!options.explain.empty())
        return explain_rule(options.explain);
    if (options.format == "markdown") {
        complain("the format markdown is for --list-rules");
        return STATUS_UNUSABLE;
    }
    if (options.paths.empty()) {
        complain("no files are given; 'tarnlet check --help' has the use");
        return STATUS_UNUSABLE;
    }
    if (!set_rules())
        return STATUS_UNUSABLE;
    set_choice();
    make_reporter();

    const std::vector<std::string> files = collect_files(options.paths, &all_found);

    Progress progress(files.size(), !options.quiet);
    size_t done = 0;
    for (const std::string &path : files) {
        progress.show(done++, path);
        const DiagnosedFile file(path, choice);
        progress.clear();
        if (!take(file))
            break;
    }
    reporter->end(totals);
    return status();
}

std::function<int()> set_up_check(CLI::App &app)
{
    auto options = std::make_shared<CheckOptions>();
    app.add_option("FILE", options->paths,
                   "Files, folders of .bsd, .bsdl, .bsm, .ppc and .prg files, or - for standard "
                   "input");
    app.add_option("--format", options->format,
                   "How messages are written; markdown is for --list-rules alone")
        ->check(CLI::IsMember({"text", "gcc", "json", "sarif", "markdown"}))
        ->type_name("FORMAT");
    add_read_options(app, options->read);
    app.add_flag("--fast-read", options->read.fast_read,
                 "Stop reading behind the identification and instruction registers");
    app.add_option("--rule", options->rules, "Set a rule to off, warning or error; may be repeated")
        ->type_name("ID=LEVEL")
        ->allow_extra_args(false);
    app.add_flag("--list-rules", options->list_rules, "List all rules instead");
    app.add_option("--explain", options->explain,
                   "Tell instead what a rule means and how to mend a file")
        ->type_name("ID");
    app.add_flag("--werror", options->werror, "Take warnings as errors");
    app.add_flag("--all", options->all, "Show also what only follows from another finding");
    app.add_flag("--as-read", options->as_read,
                 "Show the messages of the reading and nothing else: no hints, no fixes");
    app.add_option("--error-limit", options->error_limit,
                   "Show at most so many errors of a file; 0 shows all")
        ->type_name("N");
    app.add_flag("--quiet,-q", options->quiet, "Leave out the progress and the closing line");
    app.add_flag("--verbose", options->verbose, "Show all messages, also of what passed");
    app.add_option("-v", options->verbosity,
                   "Show messages up to this verbosity: 1 results, 2 checks, 3 passed, 4 all")
        ->check(CLI::Range(1, 9))
        ->type_name("LEVEL");
    app.add_option("-j,--jobs", options->jobs,
                   "Read so many files at a time; by default one for each processor")
        ->type_name("N");
    app.add_option("--color", options->colour, "Whether to colour the text format")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->type_name("WHEN");
    return [options] { return CheckRun(*options).run(); };
}
