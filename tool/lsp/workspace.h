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
    ReadingSettings client_settings; // from the client; a settings file of the project wins

    Document *open_document(const std::string &uri);
    const std::map<std::string, Document> &open_documents() const { return documents; }
    Document &open(const std::string &uri, std::string text, int64_t version);
    void close(const std::string &uri);

    ReadingSettings settings_of(const Document &document) const;
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
    struct Loaded {
        std::filesystem::file_time_type time;
        Document document;
    };

    std::vector<std::string> folders_of(const Document &user) const;

    std::map<std::string, Document> documents;
    std::map<std::string, Loaded> loaded; // package files from the disk, by path
};

} // namespace lsp
