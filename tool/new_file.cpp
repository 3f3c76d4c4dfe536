#include "new_file.h"

#include "console.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

constexpr int ATTEMPTS = 1000;
constexpr mode_t ANYBODY = 0666; // less what the process masks
constexpr mode_t PERMISSIONS = 0777;
constexpr size_t BUFFER = size_t{64} << 10;

NewFile::NewFile(const std::string &given) : path(given), target(given)
{
    open_target();
    if (handle < 0)
        fail();
}

NewFile::~NewFile()
{
    if (handle >= 0)
        close(handle);
    if (handle >= 0 && !beside.empty())
        unlink(beside.c_str());
}

void NewFile::fail()
{
    if (reason.empty())
        reason = std::strerror(errno);
}

// Names of open files, such as /dev/stdout, lead to files that others hold open.
static bool names_open_file(const std::string &name)
{
    return name.starts_with("/dev/") || name.starts_with("/proc/");
}

// In the folder of the target, so that it can be renamed, under a name that is never too long.
void NewFile::open_beside()
{
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    for (int attempt = 0; attempt < ATTEMPTS && handle < 0; attempt++) {
        beside = folder + ".tarnlet-" + std::to_string(getpid()) + "-" + std::to_string(attempt);
        handle = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ANYBODY);
        if (handle < 0 && errno != EEXIST)
            return;
    }
}

void NewFile::open_target()
{
    if (target.empty() || target.back() == '/') {
        errno = target.empty() ? ENOENT : EISDIR;
        return;
    }
    struct stat found;
    if (stat(target.c_str(), &found) != 0) {
        struct stat link;
        if (errno != ENOENT)
            return;
        // A link that leads nowhere makes the file that it names.
        if (lstat(target.c_str(), &link) == 0)
            handle = open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, ANYBODY);
        else
            open_beside();
        return;
    }
    if (!S_ISREG(found.st_mode) || names_open_file(target)) {
        handle = open(target.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
        return;
    }
    char *real = realpath(target.c_str(), nullptr);
    if (!real)
        return;
    target = real;
    std::free(real);
    // Renaming would replace a file that may not be written.
    if (access(target.c_str(), W_OK) != 0)
        return;
    open_beside();
    if (handle < 0)
        return;
    // Nobody but root can keep another owner.
    [[maybe_unused]] const int kept = fchown(handle, found.st_uid, found.st_gid);
    fchmod(handle, found.st_mode & PERMISSIONS);
}

void NewFile::write_through(std::string_view text)
{
    while (!text.empty() && reason.empty()) {
        const ssize_t written = ::write(handle, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            fail();
    }
}

void NewFile::write(std::string_view text)
{
    if (buffer.size() + text.size() > BUFFER) {
        write_through(buffer);
        buffer.clear();
    }
    if (text.size() > BUFFER)
        write_through(text);
    else
        buffer += text;
}

bool NewFile::commit()
{
    write_through(buffer);
    buffer.clear();
    if (handle >= 0 && reason.empty()) {
        const int finished = std::exchange(handle, -1);
        if (close(finished) != 0 ||
            (!beside.empty() && rename(beside.c_str(), target.c_str()) != 0)) {
            fail();
            if (!beside.empty())
                unlink(beside.c_str());
        }
    }
    if (!reason.empty())
        complain("cannot write " + escaped(path) + ": " + reason);
    return reason.empty();
}

bool write_new_file(const std::string &path, std::string_view text)
{
    NewFile file(path);
    file.write(text);
    return file.commit();
}
