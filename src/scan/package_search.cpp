// Where package files are looked for, and the queries about what was found.

#include "scan/package_search.h"

#include "base/arena.h"
#include "base/files.h"
#include "frame/memory_error.h"
#include "frame/messages.h"
#include "header/header.h"
#include "scan/scanner.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>

namespace
{

constexpr size_t LONGEST_VARIABLE = 1000;

enum TryFlag : uint32_t {
    OPEN = 0,
    CLOSED = 1,          // the directory ends with a separator
    SAID_WHEN_FOUND = 2, // the try is named only when it succeeds
};

struct Search {
    Bsdl *bsdl;
    const char *name;
    char found[LONGEST_PATH];
};

} // namespace

// One place: a directory as it was given, a separator unless the directory ends with one, the name.
static bool try_in(Search *search, std::string_view directory, uint32_t flags = OPEN)
{
    const size_t name_length = std::strlen(search->name);
    auto *path = static_cast<char *>(memory_request(directory.size() + name_length + 2));
    if (!path) {
        memory_ran_out(search->bsdl);
        return false;
    }
    char *end = path + directory.copy(path, directory.size());
    if (!(flags & CLOSED))
        *end++ = PATH_SEPARATOR;
    std::memcpy(end, search->name, name_length + 1);
    const bool found = find_to_read(path, search->found);
    if (found || !(flags & SAID_WHEN_FOUND))
        parse_message(search->bsdl, BSDL_LEVEL_INFO, 4, "package-file-tried", "\tTrying '%s'",
                      path);
    memory_return(path);
    return found;
}

// The part of a path before its last separator; false without one.
static bool directory_of(std::string_view path, std::string_view *directory)
{
    while (!path.empty() && !is_path_separator(path.back()))
        path.remove_suffix(1);
    if (path.empty())
        return false;
    *directory = path.substr(0, path.size() - 1);
    return true;
}

static bool try_package_dirs(Search *search)
{
    for (const char *name : items<char>(search->bsdl->package_dirs)) {
        if (!name)
            continue;
        const std::string_view directory = name;
        const bool closed =
            !directory.empty() && (directory.back() == '\\' || directory.back() == PATH_SEPARATOR);
        if (try_in(search, directory, closed ? CLOSED : OPEN))
            return true;
    }
    return false;
}

static bool try_beside_description(Search *search)
{
    std::string_view directory = ".";
    directory_of(search->bsdl->file_name, &directory);
    return try_in(search, directory);
}

static bool try_environment(Search *search)
{
    const char *variable = std::getenv("BST64");
    if (!variable || !*variable)
        return false;
    return try_in(search, std::string_view(variable).substr(0, LONGEST_VARIABLE));
}

// The loader may name the module by a path from where the process stood when it was loaded; the
// system knows the path in full.
static bool mapped_module(uintptr_t address, char (&path)[LONGEST_PATH])
{
    FILE *maps = std::fopen("/proc/self/maps", "re");
    if (!maps)
        return false;
    bool found = false;
    char line[LONGEST_PATH + 128];
    while (!found && std::fgets(line, sizeof line, maps)) {
        char *rest = line;
        const uintptr_t begin = std::strtoull(rest, &rest, 16);
        const uintptr_t end = *rest == '-' ? std::strtoull(rest + 1, &rest, 16) : 0;
        const char *name = std::strchr(rest, PATH_SEPARATOR);
        found = address >= begin && address < end && name;
        if (found)
            std::snprintf(path, sizeof path, "%.*s", static_cast<int>(std::strcspn(name, "\n")),
                          name);
    }
    std::fclose(maps);
    return found;
}

static bool module_path(char (&path)[LONGEST_PATH])
{
    const auto *here = reinterpret_cast<const void *>(&read_package);
    Dl_info module;
    if (!dladdr(here, &module) || !module.dli_fname)
        return false;
    if (*module.dli_fname != PATH_SEPARATOR)
        return mapped_module(reinterpret_cast<uintptr_t>(here), path);
    std::snprintf(path, sizeof path, "%s", module.dli_fname);
    return true;
}

// The way from the module to the folder is that of the install layout, so that an installed tree
// can be moved. The module may have been loaded through a link from elsewhere.
bool installed_package_folder(char (&folder)[LONGEST_PATH])
{
    char module[LONGEST_PATH];
    char real[LONGEST_PATH];
    std::string_view directory;
    if (!module_path(module) || !realpath(module, real) || !directory_of(real, &directory))
        return false;
    char packages[LONGEST_PATH + sizeof TARNLET_PACKAGE_PATH];
    std::snprintf(packages, sizeof packages, "%.*s%c%s", static_cast<int>(directory.size()),
                  directory.data(), PATH_SEPARATOR, TARNLET_PACKAGE_PATH);
    return realpath(packages, folder) != nullptr;
}

// Beside the running module, then in the folder that is installed with it.
static bool try_module(Search *search)
{
    char module[LONGEST_PATH];
    std::string_view directory;
    if (!module_path(module) || !directory_of(module, &directory))
        return false;
    if (try_in(search, directory))
        return true;
    // Users do not know this folder, so a failed try there is not reported.
    char packages[LONGEST_PATH];
    return installed_package_folder(packages) && try_in(search, packages, SAID_WHEN_FOUND);
}

void read_package(Bsdl *bsdl, const char *name, const char *token)
{
    bsdl->data->package_file = nullptr;
    const BsdlPackageText *text = find_package_text(bsdl, name);
    Search search;
    search.bsdl = bsdl;
    search.name = name;
    if (!text && !try_package_dirs(&search) && !try_in(&search, ".") &&
        !try_beside_description(&search) && !try_environment(&search) && !try_module(&search)) {
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "package-not-found", "Cannot find file '%s'",
                      token);
        return;
    }

    char absolute[LONGEST_PATH];
    if (text)
        std::snprintf(absolute, sizeof absolute, "%s",
                      text->file_name ? text->file_name : text->name);
    else
        absolute_path(search.found, absolute);
    bsdl->data->current_package = name;
    bsdl->data->package_file = model_text(bsdl, absolute);
    parse_message(bsdl, BSDL_LEVEL_INFO, 3, nullptr, "\tUser package file: %s", absolute);
    if (include_depth(bsdl) >= INCLUDE_DEPTH) {
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "package-nested-too-deep",
                      "Includes nested too deep");
        end_reading(bsdl, 1);
        return;
    }
    if (!include_file(bsdl, bsdl->data->package_file, text))
        parse_message(bsdl, BSDL_LEVEL_ERROR, 1, "package-not-opened", "Cannot open file %s",
                      token);
}

// ----------------------------------------------------------------- directories that hosts hand in

GSList *bsdlUsrPackDirs(const char *first, ...)
{
    GSList *dirs = nullptr;
    va_list arguments;
    va_start(arguments, first);
    for (const char *dir = first; dir; dir = va_arg(arguments, const char *))
        dirs = g_slist_prepend(dirs, const_cast<char *>(dir));
    va_end(arguments);
    return g_slist_reverse(dirs);
}

void bsdlFreeUsrPackDirs(GSList *dirs) { g_slist_free_full(dirs, g_free); }

// ----------------------------------------------------------------------------------------- queries

static Iteration package_files(Bsdl *h)
{
    if (!h || !h->data)
        return {};
    return {&h->data->user_package_walk, h->data->user_packages, &h->data->dot_all_file_cursor};
}

static Iteration package_specs(Bsdl *h)
{
    if (!h || !h->data)
        return {};
    return {&h->data->package_spec_walk, h->data->package_specs, &h->data->dot_all_spec_cursor};
}

// A package of a standard in a file of its own name is no package of a user.
static bool is_user_file(const UserPackage *package)
{
    if (package->standard_file)
        return package->file_name && !text_starts_with(package->file_name, package->name);
    return !package->file_path || *package->file_path;
}

static const char *file_or_next(const UserPackage *package, const Iteration &files)
{
    while (package && !is_user_file(package))
        package = iteration_next<UserPackage>(files);
    if (!package)
        return nullptr;
    return package->file_path ? package->file_path : package->file_name;
}

const char *bsdlGetFirstDotALLFileSpec(Bsdl *h)
{
    const Iteration files = package_files(h);
    return file_or_next(iteration_first<UserPackage>(files), files);
}

const char *bsdlGetNextDotALLFileSpec(Bsdl *h)
{
    const Iteration files = package_files(h);
    return file_or_next(iteration_next<UserPackage>(files), files);
}

static const char *name_of(const PackageSpec *spec) { return spec ? spec->name : nullptr; }

const char *bsdlGetFirstDotALLSpec(Bsdl *h)
{
    return name_of(iteration_first<PackageSpec>(package_specs(h)));
}

const char *bsdlGetNextDotALLSpec(Bsdl *h)
{
    return name_of(iteration_next<PackageSpec>(package_specs(h)));
}
