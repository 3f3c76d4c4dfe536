#include "files.h"

#include "output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <strings.h>
#include <sys/stat.h>

static bool has_known_ending(const char *name)
{
    const char *ending = std::strrchr(name, '.');
    if (!ending)
        return false;
    for (const char *known : {".bsd", ".bsdl", ".bsm", ".ppc", ".prg"})
        if (strcasecmp(ending, known) == 0)
            return true;
    return false;
}

static bool is_folder(const std::string &path, bool follow_link)
{
    struct stat status;
    const int result = follow_link ? stat(path.c_str(), &status) : lstat(path.c_str(), &status);
    return result == 0 && S_ISDIR(status.st_mode);
}

static std::vector<std::string> names_in(const std::string &folder, bool *readable)
{
    std::vector<std::string> names;
    DIR *open = opendir(folder.c_str());
    *readable = open != nullptr;
    if (!open)
        return names;
    while (const dirent *entry = readdir(open))
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    closedir(open);
    std::sort(names.begin(), names.end());
    return names;
}

// Links to folders are not followed below the folder that was named: they may lead back.
static void collect_folder(const std::string &top, std::vector<std::string> &files,
                           std::vector<std::string> &unreadable)
{
    std::vector<std::string> waiting = {top};
    while (!waiting.empty()) {
        const std::string folder = waiting.back();
        waiting.pop_back();
        bool readable;
        std::vector<std::string> folders;
        for (const std::string &name : names_in(folder, &readable)) {
            std::string path = folder + (folder.back() == '/' ? "" : "/") + name;
            if (is_folder(path, false))
                folders.push_back(std::move(path));
            else if (has_known_ending(name.c_str()) && !is_folder(path, true))
                files.push_back(std::move(path));
        }
        if (!readable)
            unreadable.push_back(folder + ": " + std::strerror(errno));
        waiting.insert(waiting.end(), folders.rbegin(), folders.rend());
    }
}

std::vector<std::string> collect_files(const std::vector<std::string> &paths,
                                       std::vector<std::string> &unreadable)
{
    std::vector<std::string> files;
    for (const std::string &path : paths) {
        if (path != "-" && is_folder(path, true))
            collect_folder(path, files, unreadable);
        else
            files.push_back(path);
    }
    return files;
}
