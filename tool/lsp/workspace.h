#pragma once

#include "lsp/analysis.h"
#include "lsp/document.h"

#include <filesystem>
#include <map>

namespace lsp
{

// Texts that are open, package files beside them, and how they are read.
class Workspace
{
  public:
    Encoding encoding = Encoding::UTF16;
    ReadOptions client_settings; // they count as the command line does for `tarnlet check`

    Document *open_document(const std::string &uri);
    const std::map<std::string, Document> &open_documents() const { return documents; }
    Document &open(const std::string &uri, std::string text, int64_t version);
    void close(const std::string &uri);

    void forget_settings() { project_settings = {}; }
    // Finds the symbols of texts that have changed, which requests would have to wait for.
    void get_ready() const;
    // A package file that was read from the disk.
    void note_package(const std::string &path) { packages_in_use.note(path); }
    // Whether files of settings, or package files that are in use, are no longer as they were.
    bool files_have_changed() const
    {
        return project_settings.have_changed() || packages_in_use.have_changed();
    }
    bool is_package(const Document &document) const;
    // Package files that are open, by the names that use statements have for them.
    std::vector<PackageText> open_packages() const;
    Job job_for(const Document &document) const;

    // The package file of a use statement: open, or from the disk. NULL when there is none.
    const Document *package(const Document &user, const std::string &name);
    // All package files that a text uses, in their order.
    std::vector<const Document *> packages_of(const Document &user);
    // Names of packages that a text could use.
    std::vector<std::string> package_names(const Document &user) const;

    // By URI; nothing before the first findings.
    std::map<std::string, std::shared_ptr<const Findings>> findings;
    const DeviceFacts *facts_of(const Document &document) const;

  private:
    // Those of the project; the problem is set where they cannot be used.
    const Settings *settings_of(const Document &document, std::string &problem) const;

    struct Loaded {
        std::filesystem::file_time_type time;
        Document document;
    };

    std::vector<std::string> folders_of(const Document &user) const;

    std::map<std::string, Document> documents;
    std::map<std::string, Loaded> loaded; // package files from the disk, by path
    mutable SettingsFinder project_settings;
    FileStamps packages_in_use;
};

} // namespace lsp
