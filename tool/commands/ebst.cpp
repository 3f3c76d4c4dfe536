// tarnlet ebst: reads and checks a description and writes its EBST file.

#include "command.h"
#include "console.h"
#include "file_report.h"
#include "formats/reporter.h"
#include "settings.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{

struct EbstOptions {
    std::string path;
    std::string output;
    ReadOptions read;
    bool force = false;
};

class EbstRun
{
  public:
    explicit EbstRun(EbstOptions given) : options(std::move(given)) {}
    int run();

  private:
    bool choose_output();
    void write(Reading &reading, bool passed);
    void copy_to_standard_output();
    void show_findings();
    int status() const;

    EbstOptions options;
    std::string output;
    int copy = -1;            // of what is to go to standard output
    int standard_output = -1; // while messages go to standard error
    bool was_read = false;
    bool written = false;
    bool write_failed = false;
    bool is_prg = false;
    size_t errors = 0;
};

} // namespace

// As the library derives it: the last part of the name with another ending, in this folder.
static std::string derived_name(const std::string &path)
{
    std::string name = path == "-" ? "stdin" : path.substr(path.find_last_of("/\\") + 1);
    return name.substr(0, name.rfind('.')) + ".dsh";
}

static bool same_file(const std::string &a, const std::string &b)
{
    struct stat first;
    struct stat second;
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool EbstRun::choose_output()
{
    output = options.output.empty() ? derived_name(options.path) : options.output;
    if (output == "-") {
        copy = memfd_create("ebst", MFD_CLOEXEC);
        // Messages must not get between the lines of the file.
        std::fflush(stdout);
        standard_output = dup(STDOUT_FILENO);
        if (copy < 0 || standard_output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
            complain(std::string("cannot write to standard output: ") + std::strerror(errno));
            return false;
        }
        output = "/proc/self/fd/" + std::to_string(copy);
        return true;
    }
    if (same_file(output, options.path)) {
        complain("the EBST file would overwrite its description " + escaped(options.path));
        return false;
    }
    return true;
}

void EbstRun::copy_to_standard_output()
{
    std::string text;
    char buffer[1 << 16];
    lseek(copy, 0, SEEK_SET);
    for (ssize_t got; (got = read(copy, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<size_t>(got));
    // The header names the file: by the name that it gets where none is given.
    const std::string named = "\"" + std::to_string(copy) + " created by";
    if (const size_t at = text.find(named); at != std::string::npos)
        text.replace(at, named.size(), "\"" + derived_name(options.path) + " created by");

    for (size_t done = 0; done < text.size() && !write_failed;) {
        const ssize_t part = ::write(standard_output, text.data() + done, text.size() - done);
        write_failed = part < 0 && errno != EINTR;
        done += part > 0 ? static_cast<size_t>(part) : 0;
    }
    if (write_failed && errno != EPIPE)
        complain(std::string("cannot write to standard output: ") + std::strerror(errno));
}

void EbstRun::write(Reading &reading, bool passed)
{
    is_prg = reading.is_prg();
    if (is_prg || (!passed && !options.force))
        return;
    Bsdl *bsdl = reading.handle();
    write_failed = bsdlSetEbstFile(bsdl, output.c_str()) != BSDL_RESULT_OK ||
                   bsdlGenEbst(bsdl) != BSDL_RESULT_OK || bsdlCreateEbst(bsdl) != BSDL_RESULT_OK;
    if (!write_failed && copy >= 0)
        copy_to_standard_output();
    written = !write_failed;
}

void EbstRun::show_findings()
{
    const DiagnosedFile file(options.path, {.read = options.read});
    if (file.is_package)
        complain("a package describes no device and has no EBST file");
    const FileFindings findings = select_findings(file, {});
    errors = findings.errors;
    text_reporter({.colour = copy < 0 && colour_wanted("auto"), .closing_line = false},
                  standard_writer())
        ->file(findings);
    std::fflush(stdout);
}

int EbstRun::status() const
{
    if (!was_read || write_failed || is_prg)
        return STATUS_UNUSABLE;
    return errors || !written ? STATUS_FINDINGS : STATUS_CLEAN;
}

int EbstRun::run()
{
    if (!choose_output())
        return STATUS_UNUSABLE;
    if (const std::string problem = add_settings(options.path, options.read); !problem.empty()) {
        complain(escaped(problem));
        return STATUS_UNUSABLE;
    }
    show_findings();
    std::string said; // by the writing
    const auto keep = [&](const Message &message) {
        if (message.level == BSDL_LEVEL_ERROR)
            said = message.text;
    };
    Reading reading(options.path, options.read, 1, keep);
    was_read = reading.handle() != nullptr;
    if (was_read) {
        const bool passed = reading.check();
        said.clear();
        write(reading, passed);
    }

    if (write_failed && !said.empty())
        complain(escaped_line(said));
    if (is_prg)
        complain("a PPC/PRG file has no EBST file");
    else if (was_read && !written && !write_failed)
        complain("the check failed, so no EBST file was written; --force writes it anyway");
    return status();
}

std::function<int()> set_up_ebst(CLI::App &app)
{
    auto options = std::make_shared<EbstOptions>();
    app.add_option("FILE", options->path, "Description, or - for standard input")->required();
    app.add_option("-o,--output", options->output,
                   "File to write, - for standard output; by default the name of the description "
                   "with the ending .dsh, in this folder")
        ->type_name("OUT");
    add_read_options(app, options->read);
    app.add_flag("--force", options->force, "Write it even if the check failed");
    return [options] { return EbstRun(*options).run(); };
}
