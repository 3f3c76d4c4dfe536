#include "reading.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

void add_read_options(CLI::App &app, ReadOptions &options)
{
    app.add_flag("--strict", options.strict,
                 "Take what the standard forbids but files often do as errors");
    app.add_option("--package", options.package,
                   "Device package whose pin map is used, instead of the default")
        ->type_name("NAME");
    app.add_option("-I,--include", options.package_dirs,
                   "Look for package files in this folder first; may be repeated")
        ->type_name("DIR")
        ->allow_extra_args(false);
}

static void make_standard_input_a_file()
{
    const int copy = memfd_create("stdin", MFD_CLOEXEC);
    if (copy < 0)
        return;
    char buffer[1 << 16];
    for (ssize_t got; (got = read(STDIN_FILENO, buffer, sizeof buffer)) > 0;)
        for (ssize_t done = 0; done < got;) {
            const ssize_t part = write(copy, buffer + done, static_cast<size_t>(got - done));
            if (part < 0)
                return;
            done += part;
        }
    dup2(copy, STDIN_FILENO);
    close(copy);
}

const char *standard_input_file()
{
    // Threads may ask for it at once.
    static std::once_flag made;
    std::call_once(made, make_standard_input_a_file);
    return "/dev/stdin";
}

bool read_bytes(const std::string &path, std::string &bytes)
{
    const int file = open(path == "-" ? standard_input_file() : path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        bytes.reserve(static_cast<size_t>(status.st_size));
    char buffer[1 << 16];
    ssize_t got;
    while ((got = read(file, buffer, sizeof buffer)) > 0 || (got < 0 && errno == EINTR))
        if (got > 0)
            bytes.append(buffer, static_cast<size_t>(got));
    const int reason = errno;
    close(file);
    errno = reason;
    return got == 0;
}

static uint32_t flags_of(const ReadOptions &options)
{
    return (options.strict ? BSDL_FLAG_STRICT : 0) | (options.fast_read ? BSDL_FLAG_FAST_READ : 0);
}

Reading::Reading(const std::string &path, const ReadOptions &options, uint32_t verbosity,
                 MessageSink to)
    : sink(std::move(to)), context{take, this, verbosity}, fast_read(options.fast_read)
{
    GSList *dirs = nullptr;
    for (auto dir = options.package_dirs.rbegin(); dir != options.package_dirs.rend(); ++dir)
        dirs = g_slist_prepend(dirs, const_cast<char *>(dir->c_str()));
    const char *file = path == "-" ? standard_input_file() : path.c_str();
    const char *package = options.package.empty() ? nullptr : options.package.c_str();
    // From memory, since a reading of a file may end the process; what cannot be opened is said by
    // the library as well.
    if (std::string bytes; read_bytes(path, bytes))
        bsdl = readBsdlText(bytes.data(), bytes.size(), file, package, dirs, flags_of(options),
                            &context, nullptr, 0);
    else
        bsdl = readBsdl(file, package, dirs, flags_of(options), &context);
    g_slist_free(dirs);
}

Reading::~Reading() { bsdlRelease(bsdl); }

void Reading::take(void *self, BsdlMessage *message)
{
    const char *file = bsdlMessageFile();
    const char *rule = bsdlMessageRule();
    static_cast<Reading *>(self)->sink({.level = message->level,
                                        .verbosity = message->verbosity,
                                        .line = bsdlMessageLine(),
                                        .file = file ? file : "",
                                        .rule = rule ? rule : "",
                                        .text = message->text});
}

bool Reading::is_prg() const { return bsdlIsPrg(bsdl) != 0; }

bool Reading::has_isc() const
{
    return bsdlIs1532(bsdl) != 0 || bsdl_check_isc_status(bsdl) != BSDL_RESULT_NO_ISC;
}

// Statements without the package have no query; one of the checks tells whether they are there.
bool Reading::has_aio()
{
    if (bsdlIsAio(bsdl))
        return true;
    const MessageSink messages = std::exchange(sink, [](const Message &) {});
    const bool found = bsdl_check_aio_extest_pulse(bsdl) != BSDL_RESULT_NO_AIO;
    sink = messages;
    return found;
}

bool Reading::check()
{
    bool passed = bsdlGetNumErrors(bsdl) == 0;
    if (is_prg())
        return bsdl_check_prg(bsdl) == BSDL_RESULT_OK && passed;
    passed &= bsdl_check(bsdl) == BSDL_RESULT_OK;
    if (fast_read)
        return passed;
    if (has_isc())
        passed &= bsdl_check_isc(bsdl) == BSDL_RESULT_OK;
    if (has_aio())
        passed &= bsdl_check_aio(bsdl) == BSDL_RESULT_OK;
    return passed;
}
