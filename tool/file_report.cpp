#include "file_report.h"

#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>
#include <utility>

// Tries of a package search are kept until it is known whether the package was found.
constexpr uint32_t SEARCH_VERBOSITY = 4;

static bool is_try(const Message &message) { return message.rule == RULE_PACKAGE_FILE_TRIED; }

static uint32_t checks_for(Reading &reading, const ReadOptions &read)
{
    if (reading.is_prg())
        return CHECKED_PRG;
    uint32_t checks = CHECKED_BSDL;
    if (!read.fast_read)
        checks |= (reading.has_isc() ? +CHECKED_ISC : 0u) | (reading.has_aio() ? +CHECKED_AIO : 0u);
    return checks;
}

void check_file(const std::string &path, const CheckJob &job, FileReport &report)
{
    std::vector<Message> tries;
    const auto keep = [&](const Message &message) {
        const bool finding = message.level <= BSDL_LEVEL_WARNING;
        const bool wanted = finding ? message.verbosity <= job.finding_verbosity
                                    : message.verbosity <= job.note_verbosity;
        if (message.rule == "file-not-opened")
            report.state = FileState::NOT_OPENED;
        if (message.rule == "package-not-found" && job.note_verbosity < SEARCH_VERBOSITY)
            report.messages.insert(report.messages.end(), tries.begin(), tries.end());
        if (wanted)
            report.messages.push_back(message);
        else if (is_try(message))
            tries.push_back(message);
        if (!is_try(message))
            tries.clear();
    };
    report.path = path;
    Reading reading(path, job.read, SEARCH_VERBOSITY, keep);
    if (!reading.handle()) {
        if (report.state != FileState::NOT_OPENED)
            report.state = FileState::READ;
        return;
    }
    if (const char *device = bsdlComponentName(reading.handle()))
        report.device = device;
    report.syntax_errors = bsdlGetNumErrors(reading.handle());
    if (job.checks) {
        report.checks = checks_for(reading, job.read);
        report.passed = reading.check();
    }
    if (job.afterwards)
        job.afterwards(reading, report);
    report.state = FileState::READ;
}

std::string installed_package_folder()
{
    Dl_info library;
    char real[PATH_MAX];
    if (!dladdr(reinterpret_cast<const void *>(&readBsdl), &library) || !library.dli_fname ||
        !realpath(library.dli_fname, real))
        return {};
    std::string folder(real);
    folder.erase(folder.rfind('/') + 1);
    folder += TARNLET_PACKAGE_PATH;
    return realpath(folder.c_str(), real) ? real : folder;
}
