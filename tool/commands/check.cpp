// tarnlet check: diagnoses files and reports what is found, in one format or several at once.

#include "command.h"
#include "commands/rule_listing.h"
#include "console.h"
#include "fixes.h"
#include "formats/reporter.h"
#include "in_order.h"
#include "input_files.h"
#include "new_file.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace
{

constexpr uint32_t ALL_MESSAGES = 4;
constexpr int MOST_JOBS = 1024;

// A format and where it goes.
struct Output {
    std::string format;
    std::string path; // empty: standard output
};

struct CheckOptions {
    std::vector<std::string> paths;
    ReadOptions read;
    std::vector<std::string> formats;
    std::vector<std::string> output_paths;
    std::vector<Output> outputs; // of both, as they stood on the command line
    std::string colour = "auto";
    std::vector<std::string> rules;
    std::string explain;
    std::string fix; // "", "sure", "all"
    std::string baseline;
    std::string new_baseline;
    std::string settings_of;
    bool diff = false;
    bool list_rules = false;
    int verbosity = 0;
    bool verbose = false;
    bool as_read = false;
    bool all = false;
    bool quiet = false;
    bool werror = false;
    unsigned error_limit = 0;
    int jobs = 0;
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
    // Before lines that may go to the same terminal.
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

// A file on its way through the check.
struct Work {
    std::string path;
    DiagnosisChoice choice;
    const Settings *settings;
};

struct Done {
    std::unique_ptr<DiagnosedFile> file;
    FixedText fixed;
};

class CheckRun
{
  public:
    explicit CheckRun(const CheckOptions &given) : options(given) {}
    int run();

  private:
    bool set_rules();
    void set_choice();
    bool make_reporters();
    bool collect_work();
    Done check(const Work &work) const;
    bool take(const Work &work, Done done);
    void take_fixed(const Work &work, Done &done);
    int show_settings() const;
    bool close();
    int status() const;

    const CheckOptions &options;
    DiagnosisChoice choice;
    FixChoice fix = FixChoice::NONE;
    Selection selection;
    std::unique_ptr<Baseline> baseline;
    std::unique_ptr<Baseline> new_baseline;
    SettingsFinder settings;
    std::vector<Work> work;
    std::vector<std::unique_ptr<NewFile>> output_files;
    std::vector<std::unique_ptr<Reporter>> reporters;
    Totals totals;
    bool all_found = true;
    bool all_written = true;
};

} // namespace

// --------------------------------------------------------------------------------------- options

bool CheckRun::set_rules()
{
    for (const std::string &rule : options.rules) {
        const size_t equals = rule.find('=');
        if (equals == std::string::npos) {
            complain("--rule " + escaped(rule) + ": ID=off, ID=warning or ID=error is expected");
            return false;
        }
        const std::string id = rule.substr(0, equals);
        const std::optional<Severity> level = severity_word(rule.substr(equals + 1));
        if (const std::string wrong = rule_level_problem(id, level); !wrong.empty()) {
            complain("--rule " + escaped(rule) + ": " + escaped(wrong));
            return false;
        }
        selection.rules[id] = *level;
    }
    selection.warnings_are_errors = options.werror;
    selection.error_limit = options.error_limit;
    if (!options.baseline.empty()) {
        baseline = std::make_unique<Baseline>(options.baseline);
        selection.baseline = baseline.get();
        if (!baseline->read())
            return false;
    }
    if (!options.new_baseline.empty())
        new_baseline = std::make_unique<Baseline>(options.new_baseline);
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
    if (options.fix == "all")
        fix = FixChoice::ALL;
    else if (!options.fix.empty() || options.diff)
        fix = FixChoice::SURE;
}

static std::unique_ptr<Reporter> reporter_of(const std::string &format, const TextStyle &style,
                                             Writer write)
{
    if (format == "gcc")
        return gcc_reporter(style, std::move(write));
    if (format == "json")
        return json_reporter(std::move(write));
    if (format == "sarif")
        return sarif_reporter(std::move(write));
    if (format == "junit")
        return junit_reporter(std::move(write));
    if (format == "gitlab")
        return code_quality_reporter(std::move(write));
    return text_reporter(style, std::move(write));
}

// Each --output is for the --format before it; what goes to no file goes to standard output, and
// text does when all others go to files.
bool CheckRun::make_reporters()
{
    std::vector<Output> outputs = options.outputs;
    const auto to_standard_output = [](const Output &each) { return each.path.empty(); };
    const auto count = std::count_if(outputs.begin(), outputs.end(), to_standard_output);
    if (count > 1) {
        complain("one format goes to standard output; give the others a file with --output");
        return false;
    }
    if (count == 0)
        outputs.insert(outputs.begin(), {"text", ""});
    for (const Output &output : outputs) {
        const bool here = output.path.empty();
        const bool patch_here = here && options.diff; // a diff is all that is to be read there
        TextStyle style = {.colour = here && output.format == "text" && !options.diff &&
                                     colour_wanted(options.colour),
                           .closing_line = here && !options.quiet && !options.diff,
                           .clean_files = choice.verbosity > 0,
                           .follow_ups = options.all};
        if (patch_here)
            continue;
        Writer write = standard_writer();
        if (!here) {
            NewFile *file = output_files.emplace_back(std::make_unique<NewFile>(output.path)).get();
            write = [file](std::string_view text) { file->write(text); };
        }
        reporters.push_back(reporter_of(output.format, style, std::move(write)));
    }
    return true;
}

// ------------------------------------------------------------------------------------------- run

bool CheckRun::collect_work()
{
    for (const std::string &path : collect_files(options.paths, &all_found)) {
        std::string problem;
        const Settings *found = settings.settings_of(path, problem);
        if (!found) {
            complain(escaped(problem));
            return false;
        }
        if (found->excludes(path)) {
            totals.excluded++;
            continue;
        }
        DiagnosisChoice chosen = choice;
        chosen.read = with_settings(choice.read, *found);
        work.push_back({path, chosen, found});
    }
    return true;
}

Done CheckRun::check(const Work &each) const
{
    Done done = {std::make_unique<DiagnosedFile>(each.path, each.choice), {}};
    if (fix != FixChoice::NONE && done.file->state == FileState::READ)
        done.fixed = fix_text(*done.file, each.choice, fix);
    return done;
}

// Writes the fixed text to the file and diagnoses the file again, so that the report shows what is
// left. With --diff the edits are printed and nothing else.
void CheckRun::take_fixed(const Work &each, Done &done)
{
    const FixedText &fixed = done.fixed;
    if (options.diff) {
        const std::string diff = unified_diff(done.file->name, done.file->text, fixed.text);
        std::fwrite(diff.data(), 1, diff.size(), stdout);
        return;
    }
    if (fixed.refused)
        complain(escaped(done.file->name) + ": " + counted(fixed.refused, "fix") +
                 " left out: what came of it was not better");
    if (!fixed.mended)
        return;
    if (!replace_file(*done.file, fixed.text)) {
        all_written = false;
        return;
    }
    if (!options.quiet)
        std::fprintf(stderr, "%s: %s fixed\n", escaped(done.file->name).c_str(),
                     counted(fixed.mended, "finding").c_str());
    done.file = std::make_unique<DiagnosedFile>(each.path, each.choice);
}

bool CheckRun::take(const Work &each, Done done)
{
    if (fix != FixChoice::NONE && done.file->state == FileState::READ)
        take_fixed(each, done);
    Selection chosen = selection;
    chosen.rules.insert(each.settings->rules.begin(), each.settings->rules.end());
    const FileFindings findings = select_findings(*done.file, chosen);
    add_to_totals(totals, findings);
    for (const auto &reporter : reporters)
        reporter->file(findings);
    if (new_baseline)
        for (const Finding &finding : findings.findings)
            if (*finding.found->rule && finding.because < 0 && !is_always_on(finding.found->rule) &&
                finding.accepted != Accepted::BY_COMMENT)
                new_baseline->add(each.path, finding.found->rule, finding.fingerprint);
    return !output_failed();
}

bool CheckRun::close()
{
    for (const auto &reporter : reporters)
        reporter->end(totals);
    for (const auto &file : output_files)
        all_written &= file->commit();
    if (new_baseline)
        all_written &= new_baseline->write();
    return all_written;
}

int CheckRun::status() const
{
    if (totals.not_read || !all_found || !all_written)
        return STATUS_UNUSABLE;
    return totals.errors ? STATUS_FINDINGS : STATUS_CLEAN;
}

int CheckRun::show_settings() const
{
    SettingsFinder finder;
    std::string problem;
    const Settings *found = finder.settings_of(options.settings_of, problem);
    if (!found) {
        complain(escaped(problem));
        return STATUS_UNUSABLE;
    }
    const std::string text = settings_text(*found);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return STATUS_CLEAN;
}

int CheckRun::run()
{
    const std::string format = options.outputs.empty() ? "text" : options.outputs[0].format;
    if (options.list_rules)
        return list_rules(format);
    if (!options.explain.empty())
        return explain_rule(options.explain);
    if (!options.settings_of.empty())
        return show_settings();
    if (format == "markdown") {
        complain("the format markdown is for --list-rules");
        return STATUS_UNUSABLE;
    }
    if (options.paths.empty()) {
        complain("no files are given; see 'tarnlet check --help'");
        return STATUS_UNUSABLE;
    }
    set_choice();
    const auto is_standard_input = [](const std::string &path) { return path == "-"; };
    if (fix != FixChoice::NONE && !options.diff &&
        std::any_of(options.paths.begin(), options.paths.end(), is_standard_input)) {
        complain("standard input cannot be fixed; --diff prints what would be changed");
        return STATUS_UNUSABLE;
    }
    if (!set_rules() || !collect_work() || !make_reporters())
        return STATUS_UNUSABLE;

    Progress progress(work.size(), !options.quiet);
    const auto check_one = [&](size_t index) { return check(work[index]); };
    const auto take_one = [&](size_t index, Done done) {
        progress.clear();
        const bool go_on = take(work[index], std::move(done));
        progress.show(index + 1, work[index].path);
        return go_on;
    };
    do_in_order<Done>(work.size(), static_cast<size_t>(options.jobs), check_one, take_one);
    progress.clear();
    close();
    return status();
}

// Which --output belongs to which --format.
static void pair_outputs(const CLI::App &app, const CLI::Option *format, const CLI::Option *output,
                         CheckOptions &options)
{
    size_t formats = 0;
    size_t paths = 0;
    for (const CLI::Option *each : app.parse_order())
        if (each == format)
            options.outputs.push_back({options.formats[formats++], ""});
        else if (each == output &&
                 (options.outputs.empty() || !options.outputs.back().path.empty()))
            throw CLI::ValidationError("--output",
                                       "the --format of the file has to come before it");
        else if (each == output)
            options.outputs.back().path = options.output_paths[paths++];
}

std::function<int()> set_up_check(CLI::App &app)
{
    auto options = std::make_shared<CheckOptions>();
    app.add_option("FILE", options->paths,
                   "Files, folders of .bsd, .bsdl, .bsm, .ppc and .prg files, or - for standard "
                   "input");
    const CLI::Option *format =
        app.add_option("--format", options->formats,
                       "How findings are written, text by default; may be repeated, with an "
                       "--output for each; markdown is for --list-rules alone")
            ->check(CLI::IsMember({"text", "gcc", "json", "sarif", "junit", "gitlab", "markdown"}))
            ->type_name("FORMAT")
            ->allow_extra_args(false);
    const CLI::Option *output =
        app.add_option("--output", options->output_paths,
                       "File for the format before it, instead of standard output")
            ->type_name("OUT")
            ->allow_extra_args(false);
    add_read_options(app, options->read);
    app.add_flag("--fast-read", options->read.fast_read,
                 "Stop reading after the instruction and identification registers");
    app.add_flag(
           "--fix{sure}", options->fix,
           "Apply the fixes that are sure to the files; --fix=all also applies those that are "
           "guesses")
        ->check(CLI::IsMember({"sure", "all"}));
    app.add_flag("--diff", options->diff,
                 "Print what --fix would change as a unified diff instead");
    app.add_option("--rule", options->rules, "Set a rule to off, warning or error; may be repeated")
        ->type_name("ID=LEVEL")
        ->allow_extra_args(false);
    app.add_option("--baseline", options->baseline,
                   "Accept the findings of this file, which --write-baseline has written")
        ->type_name("BASELINE");
    app.add_option("--write-baseline", options->new_baseline,
                   "Write the findings that a baseline can accept to this file, for --baseline")
        ->type_name("BASELINE");
    app.add_option("--show-settings", options->settings_of,
                   "Print the settings of .tarnlet.toml that apply to this file and stop")
        ->type_name("FILE");
    app.add_flag("--list-rules", options->list_rules, "Print all rules and stop");
    app.add_option("--explain", options->explain,
                   "Print what a rule means and how to fix a file and stop, as 'tarnlet explain'")
        ->type_name("ID");
    app.add_flag("--werror", options->werror, "Take warnings as errors");
    app.add_flag("--all", options->all, "Show also what only follows from another finding");
    app.add_flag("--as-read", options->as_read,
                 "Show the messages of the reading and nothing else: no hints, no fixes");
    app.add_option("--error-limit", options->error_limit,
                   "Show at most N errors of each file; 0 shows all")
        ->check(CLI::NonNegativeNumber)
        ->type_name("N");
    app.add_flag("--quiet,-q", options->quiet, "Leave out the progress and the closing line");
    app.add_flag("--verbose", options->verbose, "Show all messages, also of what passed");
    app.add_option("-v", options->verbosity,
                   "Show messages up to this verbosity: 1 results, 2 checks, 3 passed, 4 all")
        ->check(CLI::Range(1, 9))
        ->type_name("LEVEL");
    app.add_option("-j,--jobs", options->jobs,
                   "Check N files at the same time; 0: one for each processor")
        ->check(CLI::Range(0, MOST_JOBS))
        ->type_name("N");
    app.add_option("--color", options->colour, "Whether to colour the text format")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->type_name("WHEN");
    app.callback([&app, format, output, options] { pair_outputs(app, format, output, *options); });
    return [options] { return CheckRun(*options).run(); };
}
