// mutate_files [--cuts N] [--changes N] [--seconds N] [--megabytes N] [--keep FOLDER] FILE...: cuts
// each file at N places and changes it N times at the level of tokens, and runs each text through
// reading, checks, EBST and all queries. Each text has a process of its own, with a bound on its
// time and memory, so that a fault is told with the file and the text that shows it, and the run
// goes on.

#include "mutate.h"
#include "targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

struct Settings {
    size_t cuts = 200;
    size_t changes = 200;
    unsigned seconds = 5;
    long megabytes = 1024;
    std::string keep = "."; // where texts that show a fault are left
};

struct Totals {
    size_t texts = 0;
    size_t faults = 0;
    double longest = 0;
    long largest = 0; // KiB
};

} // namespace

static std::string read_file(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Packages are found beside the file that the text comes from, and in a folder "packages" there.
static GSList *package_dirs_of(const char *path)
{
    const std::string folder = std::filesystem::path(path).parent_path();
    GSList *dirs = g_slist_append(nullptr, g_strdup(folder.c_str()));
    return g_slist_append(dirs, g_strdup((folder + "/packages").c_str()));
}

static void run(const char *path, const std::string &text)
{
    static MemoryFile file("text");
    file.write(text.data(), text.size());
    const auto *data = reinterpret_cast<const uint8_t *>(text.data());
    const bool is_prg = text.find("STD_PRG_2001") != std::string::npos;
    GSList *dirs = package_dirs_of(path);
    exercise(file.path().c_str(), dirs,
             is_prg ? uint32_t{CHECK_PRG} : uint32_t{CHECK | CHECK_ISC | CHECK_AIO},
             fingerprint(data, text.size()));
    g_slist_free_full(dirs, g_free);
}

static std::string variant_of(const std::string &text, const Settings &settings, size_t number)
{
    if (number < settings.cuts)
        return text.substr(0, text.size() * (number + 1) / (settings.cuts + 1));
    Random random(number);
    return mutated(text, text, text.size() * 2 + 4096, &random);
}

// Of the processor, since other work must not look like a fault. The signal ends the process.
static void limit_time(unsigned seconds)
{
    itimerval limit = {};
    limit.it_value.tv_sec = seconds;
    setitimer(ITIMER_PROF, &limit, nullptr);
}

// The texts from `from` on in one process, up to the first that shows a fault.
static bool run_some(const char *path, const std::string &text, const Settings &settings,
                     size_t from, size_t *done, Totals *totals)
{
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const size_t count = settings.cuts + settings.changes;
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        for (size_t i = from; i < count; i++) {
            const std::string variant = variant_of(text, settings, i);
            limit_time(settings.seconds);
            const clock_t start = clock();
            run(path, variant);
            limit_time(0);
            const double seconds = static_cast<double>(clock() - start) / CLOCKS_PER_SEC;
            if (write(ends[1], &seconds, sizeof seconds) != sizeof seconds)
                _exit(1);
            // A handle that is not released would be seen here.
            rusage usage = {};
            getrusage(RUSAGE_SELF, &usage);
            if (usage.ru_maxrss > settings.megabytes * 1024)
                _exit(2);
        }
        _exit(0);
    }
    close(ends[1]);
    double seconds = 0;
    *done = from;
    while (read(ends[0], &seconds, sizeof seconds) == sizeof seconds) {
        totals->longest = std::max(totals->longest, seconds);
        ++*done;
    }
    close(ends[0]);
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    totals->largest = std::max(totals->largest, usage.ru_maxrss);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static void run_file(const char *path, const Settings &settings, Totals *totals)
{
    const std::string text = read_file(path);
    const size_t count = settings.cuts + settings.changes;
    for (size_t at = 0; at < count;) {
        size_t done = at;
        const bool good = run_some(path, text, settings, at, &done, totals);
        totals->texts += done - at;
        at = done;
        if (good)
            continue;
        totals->faults++;
        totals->texts++;
        const std::string kept = settings.keep + "/fault_" + std::to_string(totals->faults) + "_" +
                                 std::filesystem::path(path).filename().string();
        std::ofstream(kept, std::ios::binary) << variant_of(text, settings, at);
        std::printf("%s: fault in text %zu, kept as %s\n", path, at, kept.c_str());
        at++;
    }
}

static bool take_option(const char *name, const char *value, Settings *settings)
{
    const long number = std::strtol(value, nullptr, 10);
    if (!std::strcmp(name, "--cuts"))
        settings->cuts = static_cast<size_t>(number);
    else if (!std::strcmp(name, "--changes"))
        settings->changes = static_cast<size_t>(number);
    else if (!std::strcmp(name, "--seconds"))
        settings->seconds = static_cast<unsigned>(number);
    else if (!std::strcmp(name, "--megabytes"))
        settings->megabytes = number;
    else if (!std::strcmp(name, "--keep"))
        settings->keep = value;
    else
        return false;
    return true;
}

int main(int argc, char **argv)
{
    Settings settings;
    int i = 1;
    while (i + 1 < argc && take_option(argv[i], argv[i + 1], &settings))
        i += 2;
    if (i >= argc) {
        std::fprintf(stderr, "usage: mutate_files [--cuts N] [--changes N] [--seconds N] "
                             "[--megabytes N] [--keep FOLDER] FILE...\n");
        return 2;
    }
    Totals totals;
    for (; i < argc; i++) {
        run_file(argv[i], settings, &totals);
        std::fflush(stdout);
    }
    std::printf("%zu texts, %zu faults, longest %.2f s, largest %ld MiB\n", totals.texts,
                totals.faults, totals.longest, totals.largest / 1024);
    return totals.faults ? 1 : 0;
}
