#include "process.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

double seconds_now()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

ProcessResult run_process(const std::vector<std::string> &arguments)
{
    ProcessResult result{.status = -1, .seconds = 0, .output = {}};
    std::vector<char *> argv;
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);

    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return result;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);

    const double start = seconds_now();
    pid_t child = 0;
    const int failed = posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failed == 0) {
        char buffer[65536];
        for (ssize_t got; (got = read(ends[0], buffer, sizeof buffer)) > 0;)
            result.output.append(buffer, static_cast<size_t>(got));
        int status = 0;
        waitpid(child, &status, 0);
        result.seconds = seconds_now() - start;
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    close(ends[0]);
    return result;
}

const std::string &scratch_folder()
{
    struct Scratch {
        std::string path;
        Scratch()
        {
            const char *base = getenv("TMPDIR");
            path = std::string(base && *base ? base : "/tmp") + "/tarnlet_bench_XXXXXX";
            if (!mkdtemp(path.data()))
                abort();
        }
        ~Scratch()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    };
    static const Scratch scratch;
    return scratch.path;
}
