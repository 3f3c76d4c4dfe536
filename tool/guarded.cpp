#include "guarded.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

// Works from `first` on and writes a line for each item.
static void child(size_t first, size_t count, const GuardedWork &work, int to)
{
    FILE *stream = fdopen(to, "w");
    for (size_t item = first; stream && item < count; item++) {
        const std::string line = work.work(item) + "\n";
        std::fwrite(line.data(), 1, line.size(), stream);
        if (std::fflush(stream) != 0)
            break;
    }
    std::_Exit(0);
}

// Gives how many items came back.
static size_t collect(size_t first, const GuardedWork &work, int from)
{
    FILE *stream = fdopen(from, "r");
    char *line = nullptr;
    size_t capacity = 0;
    size_t item = first;
    for (ssize_t length; stream && (length = getline(&line, &capacity, stream)) > 0;)
        if (line[length - 1] == '\n')
            work.done(item++, std::string(line, static_cast<size_t>(length) - 1));
    std::free(line);
    if (stream)
        std::fclose(stream);
    return item - first;
}

void run_guarded(size_t count, const GuardedWork &work)
{
    for (size_t first = 0; first < count;) {
        int ends[2];
        std::fflush(stdout);
        if (pipe(ends) != 0)
            break;
        const pid_t process = fork();
        if (process == 0) {
            close(ends[0]);
            child(first, count, work, ends[1]);
        }
        close(ends[1]);
        if (process < 0) {
            close(ends[0]);
            break;
        }
        first += collect(first, work, ends[0]);
        while (waitpid(process, nullptr, 0) < 0 && errno == EINTR)
            continue;
        if (first < count)
            work.lost(first++);
    }
}
