#include "input_files.h"

#include "console.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <set>
#include <strings.h>
#include <sys/stat.h>
#include <utility>

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

static bool is_folder(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool is_file(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

namespace
{

struct FolderEntry {
    std::string name;
    unsigned char type; // DT_UNKNOWN where the file system does not tell
};

} // namespace

static std::vector<FolderEntry> entries_of(const std::string &folder, bool *readable)
{
    std::vector<FolderEntry> entries;
    DIR *open = opendir(folder.c_str());
    *readable = open != nullptr;
    if (!open)
        return entries;
    while (const dirent *entry = readdir(open))
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            entries.push_back({entry->d_name, entry->d_type});
    closedir(open);
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry &a, const FolderEntry &b) { return a.name < b.name; });
    return entries;
}

static unsigned char type_of(const std::string &path, const FolderEntry &entry)
{
    struct stat status;
    if (entry.type != DT_UNKNOWN || lstat(path.c_str(), &status) != 0)
        return entry.type;
    return IFTODT(status.st_mode);
}

// Links to folders are not followed below the folder that was named: they may lead back.
static void collect_folder(const std::string &top, std::vector<std::string> &files, bool *all_read)
{
    std::vector<std::string> waiting = {top};
    while (!waiting.empty()) {
        const std::string folder = waiting.back();
        waiting.pop_back();
        bool readable;
        std::vector<std::string> folders;
        for (const FolderEntry &entry : entries_of(folder, &readable)) {
            std::string path = folder + (folder.back() == '/' ? "" : "/") + entry.name;
            const unsigned char type = type_of(path, entry);
            if (type == DT_DIR)
                folders.push_back(std::move(path));
            // Pipes and devices below a folder are nobody's descriptions.
            else if (has_known_ending(entry.name.c_str()) &&
                     (type == DT_REG || (type == DT_LNK && is_file(path))))
                files.push_back(std::move(path));
        }
        if (!readable) {
            complain("cannot read folder " + escaped(folder) + ": " + std::strerror(errno));
            *all_read = false;
        }
        waiting.insert(waiting.end(), folders.rbegin(), folders.rend());
    }
}

// A file that is named twice, through a link or another folder, is there once.
static void drop_repeated(std::vector<std::string> &files)
{
    std::set<std::pair<dev_t, ino_t>> seen;
    std::erase_if(files, [&](const std::string &path) {
        struct stat status;
        return path != "-" && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
               !seen.emplace(status.st_dev, status.st_ino).second;
    });
}

std::vector<std::string> collect_files(const std::vector<std::string> &paths, bool *all_read)
{
    std::vector<std::string> files;
    *all_read = true;
    for (const std::string &path : paths) {
        if (path != "-" && is_folder(path))
            collect_folder(path, files, all_read);
        else
            files.push_back(path);
    }
    drop_repeated(files);
    if (files.empty() && *all_read) {
        complain("there are no .bsd, .bsdl, .bsm, .ppc or .prg files in " + escaped(paths[0]) +
                 (paths.size() > 1 ? " and the other folders" : ""));
        *all_read = false;
    }
    return files;
}
