#include "lsp/workspace.h"

#include "file_report.h"

#include <algorithm>
#include <cstdlib>

namespace lsp
{

namespace fs = std::filesystem;

Document *Workspace::open_document(const std::string &uri)
{
    const auto at = documents.find(uri);
    return at == documents.end() ? nullptr : &at->second;
}

Document &Workspace::open(const std::string &uri, std::string text, int64_t version)
{
    documents.erase(uri);
    return documents.emplace(uri, Document(uri, std::move(text), version, encoding)).first->second;
}

void Workspace::close(const std::string &uri)
{
    documents.erase(uri);
    findings.erase(uri);
}

const Settings *Workspace::settings_of(const Document &document, std::string &problem) const
{
    return project_settings.settings_of(document.path(), problem);
}

static bool is_package_file(const std::string &path)
{
    return same_name(fs::path(path).extension().string(), ".all");
}

bool Workspace::is_package(const Document &document) const
{
    return is_package_file(document.path());
}

std::vector<PackageText> Workspace::open_packages() const
{
    std::vector<PackageText> packages;
    for (const auto &[uri, document] : documents)
        if (is_package_file(document.path()))
            packages.push_back({.name = fs::path(document.path()).filename().string(),
                                .path = document.path(),
                                .text = document.shared_text()});
    return packages;
}

Job Workspace::job_for(const Document &document) const
{
    Job job = {.uri = document.uri(),
               .path = document.path(),
               .version = document.version(),
               .text = document.shared_text(),
               .read = client_settings,
               .rules = {},
               .packages = open_packages()};
    if (const Settings *settings = settings_of(document, job.settings_problem)) {
        job.read = with_settings(client_settings, *settings);
        job.rules = settings->rules;
        job.excluded = settings->excludes(document.path());
    }
    return job;
}

const DeviceFacts *Workspace::facts_of(const Document &document) const
{
    const auto at = findings.find(document.uri());
    return at == findings.end() ? nullptr : &at->second->facts;
}

void Workspace::get_ready() const
{
    for (const auto &[uri, document] : documents)
        document.symbols();
}

// --------------------------------------------------------------------------------------- packages

// The folders that the library searches, in its order, without the folder of the library itself.
std::vector<std::string> Workspace::folders_of(const Document &user) const
{
    std::vector<std::string> folders = client_settings.package_dirs;
    std::string problem;
    if (const Settings *settings = settings_of(user, problem))
        folders = with_settings(client_settings, *settings).package_dirs;
    folders.emplace_back(".");
    folders.push_back(fs::path(user.path()).parent_path().string());
    if (const char *variable = std::getenv("BST64"))
        folders.emplace_back(variable);
    folders.push_back(installed_package_folder());
    return folders;
}

static std::string find_in(const std::string &folder, const std::string &file_name)
{
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
        if (same_name(entry.path().filename().string(), file_name))
            return entry.path().string();
    return {};
}

const Document *Workspace::package(const Document &user, const std::string &name)
{
    const std::string file_name = name + ".all";
    for (const auto &[uri, document] : documents)
        if (same_name(fs::path(document.path()).filename().string(), file_name))
            return &document;
    for (const std::string &folder : folders_of(user)) {
        const std::string path = find_in(folder, file_name);
        if (path.empty())
            continue;
        std::error_code error;
        const fs::file_time_type time = fs::last_write_time(path, error);
        auto at = loaded.find(path);
        if (at == loaded.end() || at->second.time != time) {
            std::optional<std::string> text = read_file(path);
            if (!text)
                return nullptr;
            loaded.erase(path);
            at = loaded
                     .emplace(path, Loaded{time, Document(uri_of_path(path), std::move(*text), 0,
                                                          encoding)})
                     .first;
        }
        return &at->second.document;
    }
    return nullptr;
}

std::vector<const Document *> Workspace::packages_of(const Document &user)
{
    std::vector<const Document *> packages;
    for (const BsdlStatement &statement : user.statements())
        if (statement.kind == BSDL_STATEMENT_USE && statement.name >= 0)
            if (const Document *found =
                    package(user, user.word(user.symbols()[static_cast<size_t>(statement.name)])))
                packages.push_back(found);
    return packages;
}

std::vector<std::string> Workspace::package_names(const Document &user) const
{
    std::vector<std::string> names = {"STD_1149_1_1990", "STD_1149_1_1994", "STD_1149_1_2001"};
    for (const std::string &folder : folders_of(user)) {
        std::error_code error;
        for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
            if (is_package_file(entry.path().string()))
                names.push_back(upper(entry.path().stem().string()));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace lsp
