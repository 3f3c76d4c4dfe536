#include "base/files.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

bool is_path_separator(char c) { return c == '/' || c == '\\' || c == ':'; }

static FILE *open_as_written(const char *path)
{
    FILE *file = std::fopen(path, "re");
    if (!file)
        return nullptr;
    struct stat status = {};
    if (fstat(fileno(file), &status) == 0 && !S_ISDIR(status.st_mode))
        return file;
    std::fclose(file);
    return nullptr;
}

static FILE *open_in_form(const char *path, char (&form)[LONGEST_PATH])
{
    size_t length = std::strlen(path);
    if (length >= sizeof form)
        return nullptr;
    std::memcpy(form, path, length + 1);
    if (FILE *file = open_as_written(form))
        return file;
    if (!std::strchr(form, '\\'))
        return nullptr;
    for (size_t i = 0; i < length; i++)
        if (form[i] == '\\')
            form[i] = PATH_SEPARATOR;
    return open_as_written(form);
}

FILE *open_to_read(const char *path)
{
    char form[LONGEST_PATH];
    return open_in_form(path, form);
}

bool find_to_read(const char *path, char (&found)[LONGEST_PATH])
{
    FILE *file = open_in_form(path, found);
    if (!file)
        return false;
    std::fclose(file);
    return true;
}

// A component ".." is left to the system: the parent of the folder that a link leads to is not the
// one that the path names.
static bool has_parent_component(const char *path)
{
    for (const char *at = path; (at = std::strstr(at, "..")); at += 2)
        if ((at == path || at[-1] == PATH_SEPARATOR) && (!at[2] || at[2] == PATH_SEPARATOR))
            return true;
    return false;
}

void absolute_path(const char *path, char (&absolute)[LONGEST_PATH])
{
    if (has_parent_component(path) && realpath(path, absolute))
        return;
    size_t length = 0;
    if (*path != PATH_SEPARATOR && getcwd(absolute, sizeof absolute))
        length = std::strlen(absolute);
    if (length == 1)
        length = 0; // the root, which the next component brings along
    std::string_view rest = path;
    while (!rest.empty()) {
        std::string_view component = rest.substr(0, rest.find(PATH_SEPARATOR));
        rest.remove_prefix(component.size() + (component.size() < rest.size()));
        if (component.empty() || component == ".")
            continue;
        if (length + 1 + component.size() >= sizeof absolute) {
            std::snprintf(absolute, sizeof absolute, "%s", path);
            return;
        }
        absolute[length++] = PATH_SEPARATOR;
        std::memcpy(absolute + length, component.data(), component.size());
        length += component.size();
    }
    absolute[length] = '\0';
}
