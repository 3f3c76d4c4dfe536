#include "frame/files.h"

#include "frame/arena.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>

static std::FILE *open_as_written(const char *path)
{
    std::FILE *stream = std::fopen(path, "rb");
    struct stat status;
    if (stream && (fstat(fileno(stream), &status) != 0 || S_ISDIR(status.st_mode))) {
        std::fclose(stream);
        return nullptr;
    }
    return stream;
}

std::FILE *open_to_read(const char *path)
{
    std::FILE *stream = open_as_written(path);
    if (stream || !std::strchr(path, '\\'))
        return stream;
    size_t length = std::strlen(path);
    auto *own = static_cast<char *>(memory_request(length + 1));
    if (!own)
        return nullptr;
    std::replace_copy(path, path + length + 1, own, '\\', PATH_SEPARATOR);
    stream = open_as_written(own);
    memory_return(own);
    return stream;
}

bool can_open(const char *path)
{
    std::FILE *stream = open_to_read(path);
    if (stream)
        std::fclose(stream);
    return stream != nullptr;
}

bool is_path_separator(char c) { return c == '\\' || c == '/' || c == ':'; }
