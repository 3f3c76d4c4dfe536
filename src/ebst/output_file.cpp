#include "ebst/output_file.h"

#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int ATTEMPTS = 1000;
constexpr mode_t NEW_FILE = 0666; // less what the process masks
constexpr mode_t PERMISSIONS = 07777;

} // namespace

// ----------------------------------------------------------------------------------------- opening

// An existing file may be one that in its folder cannot be opened with O_CREAT.
static bool open_directly(OutputFile *file, int create = O_CREAT)
{
    file->beside[0] = '\0';
    file->handle = open(file->target, O_WRONLY | create | O_TRUNC | O_CLOEXEC, NEW_FILE);
    return file->handle >= 0;
}

// In the target's folder, so that the new file can be renamed onto it.
static bool open_beside(OutputFile *file)
{
    const char *slash = std::strrchr(file->target, '/');
    int folder = slash ? static_cast<int>(slash - file->target) + 1 : 0;
    for (int attempt = 0; attempt < ATTEMPTS; attempt++) {
        int length = std::snprintf(file->beside, sizeof file->beside, "%.*s.ebst-%ld-%d", folder,
                                   file->target, static_cast<long>(getpid()), attempt);
        if (length < 0 || static_cast<size_t>(length) >= sizeof file->beside)
            return false;
        file->handle = open(file->beside, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILE);
        if (file->handle >= 0 || errno != EEXIST)
            return file->handle >= 0;
    }
    return false;
}

// Names of open files, such as /dev/stdout, lead to files that others hold open.
static bool names_open_file(const char *name)
{
    return std::strncmp(name, "/dev/", 5) == 0 || std::strncmp(name, "/proc/", 6) == 0;
}

// In a folder with the sticky bit a file is replaced only by its owner or the folder's.
static bool may_replace(const char *target, const struct stat &found)
{
    char folder[PATH_MAX];
    const char *slash = std::strrchr(target, '/');
    const int length = slash ? static_cast<int>(slash - target) + 1 : 0;
    std::snprintf(folder, sizeof folder, "%.*s.", length, target);
    struct stat around;
    const uid_t user = geteuid();
    return stat(folder, &around) != 0 || !(around.st_mode & S_ISVTX) || user == 0 ||
           user == found.st_uid || user == around.st_uid;
}

bool output_open(OutputFile *file, const char *name)
{
    file->failed = false;
    file->used = 0;
    file->beside[0] = '\0';
    size_t length = std::strlen(name);
    if (length == 0 || name[length - 1] == '/' || length >= sizeof file->target)
        return false;
    std::memcpy(file->target, name, length + 1);

    struct stat found;
    if (lstat(name, &found) != 0)
        return errno == ENOENT && open_beside(file);
    if (names_open_file(name))
        return open_directly(file);
    // A link stays; the file that it leads to is replaced.
    if (S_ISLNK(found.st_mode) &&
        (!realpath(name, file->target) || stat(file->target, &found) != 0)) {
        std::memcpy(file->target, name, length + 1);
        return open_directly(file);
    }
    if (!S_ISREG(found.st_mode))
        return open_directly(file);
    if (access(file->target, W_OK) != 0)
        return false;
    if (!may_replace(file->target, found))
        return open_directly(file, 0);
    if (!open_beside(file))
        return (errno == EACCES || errno == EPERM) && open_directly(file, 0);
    fchmod(file->handle, found.st_mode & PERMISSIONS);
    return true;
}

// ----------------------------------------------------------------------------------------- writing

static void write_through(OutputFile *file, const char *text, size_t length)
{
    while (length && !file->failed) {
        ssize_t written = write(file->handle, text, length);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            file->failed = true;
            return;
        }
        text += written;
        length -= static_cast<size_t>(written);
    }
}

static void flush(OutputFile *file)
{
    write_through(file, file->buffer, file->used);
    file->used = 0;
}

void put(OutputFile *file, const char *text, size_t length)
{
    if (length > sizeof file->buffer - file->used)
        flush(file);
    if (length > sizeof file->buffer) {
        write_through(file, text, length);
        return;
    }
    std::memcpy(file->buffer + file->used, text, length);
    file->used += length;
}

void put(OutputFile *file, const char *text) { put(file, text, std::strlen(text)); }

void put(OutputFile *file, char c) { put(file, &c, 1); }

static void put_padded(OutputFile *file, const char *text, size_t length, size_t width)
{
    static constexpr char BLANKS[] = "                                ";
    put(file, text, length);
    for (size_t left = width > length ? width - length : 0; left;) {
        size_t piece = left < sizeof BLANKS - 1 ? left : sizeof BLANKS - 1;
        put(file, BLANKS, piece);
        left -= piece;
    }
}

void put_padded(OutputFile *file, const char *text, size_t width)
{
    put_padded(file, text, std::strlen(text), width);
}

void put_padded(OutputFile *file, int32_t number, size_t width)
{
    char digits[12];
    auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    put_padded(file, digits, static_cast<size_t>(end - digits), width);
}

void put_line(OutputFile *file, const char *format, ...)
{
    // No token of a description and no path comes near the size of the buffer.
    for (int attempt = 0; attempt < 2; attempt++) {
        size_t room = sizeof file->buffer - file->used;
        va_list arguments;
        va_start(arguments, format);
        int length = std::vsnprintf(file->buffer + file->used, room, format, arguments);
        va_end(arguments);
        if (length >= 0 && static_cast<size_t>(length) < room) {
            file->used += static_cast<size_t>(length);
            return;
        }
        flush(file);
    }
    file->failed = true;
}

bool output_close(OutputFile *file)
{
    flush(file);
    if (close(file->handle) != 0)
        file->failed = true;
    if (!file->beside[0])
        return !file->failed;
    if (!file->failed && rename(file->beside, file->target) != 0)
        file->failed = true;
    if (file->failed)
        unlink(file->beside);
    return !file->failed;
}
