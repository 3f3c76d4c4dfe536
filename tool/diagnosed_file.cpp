#include "diagnosed_file.h"

#include "findings.h"
#include "package_file.h"

static bool is_standard_input(const std::string &path)
{
    return path == "-" || path == "/dev/stdin";
}

// Called from the library, which knows no exceptions.
static int32_t ask(void *cancelled) noexcept
{
    return (*static_cast<const std::function<bool()> *>(cancelled))();
}

DiagnosisHandle diagnose_text(std::string_view text, const std::string &name,
                              const DiagnosisChoice &choice,
                              const std::vector<BsdlPackageText> &packages)
{
    std::vector<const char *> dirs;
    for (const std::string &dir : choice.read.package_dirs)
        dirs.push_back(dir.c_str());
    const BsdlDiagnosisOptions options = {
        .size = sizeof options,
        .package = choice.read.package.empty() ? nullptr : choice.read.package.c_str(),
        .package_dirs = dirs.data(),
        .package_dir_count = dirs.size(),
        .packages = packages.data(),
        .package_count = packages.size(),
        .flags = (choice.read.strict ? +BSDL_FLAG_STRICT : 0u) |
                 (choice.read.fast_read ? +BSDL_FLAG_FAST_READ : 0u),
        .as_read = choice.as_read || choice.read.fast_read,
        .verbosity = choice.verbosity,
        .cancelled = choice.cancelled ? ask : nullptr,
        .cancel_data = const_cast<std::function<bool()> *>(&choice.cancelled),
        .comments = choice.comments};
    return DiagnosisHandle(bsdlDiagnose(text.data(), text.size(), name.c_str(), &options));
}

DiagnosedFile::DiagnosedFile(const std::string &given, const DiagnosisChoice &choice)
    : path(given), name(is_standard_input(given) ? "<stdin>" : given)
{
    if (!read_bytes(path, own_text)) {
        cannot_read(FileState::NOT_OPENED, "file-not-opened", "Could not open file '" + name + "'");
        return;
    }
    text = own_text;
    diagnose(choice, {});
}

DiagnosedFile::DiagnosedFile(const std::string &given, std::string_view bytes,
                             const DiagnosisChoice &choice,
                             const std::vector<BsdlPackageText> &packages)
    : path(given), name(given), text(bytes)
{
    diagnose(choice, packages);
}

void DiagnosedFile::diagnose(const DiagnosisChoice &choice,
                             const std::vector<BsdlPackageText> &packages)
{
    const std::string package = package_name(text);
    is_package = !package.empty();
    if (is_package)
        diagnose_package(package, choice, packages);
    else
        diagnosis = diagnose_text(text, name, choice, packages);
    if (!diagnosis) {
        cannot_read(FileState::ENDED, RULE_PROCESS_ENDED, "Memory ran out while it was read");
        return;
    }
    const uint32_t count = bsdlFindingCount(diagnosis.get());
    findings.reserve(count);
    for (uint32_t i = 0; i < count; i++) {
        const BsdlFinding *found = bsdlFindingAt(diagnosis.get(), i);
        if (!is_package || name == file_of(found->place))
            findings.push_back(found);
    }
}

// The description stands beside the package, so that it finds the same packages. What is found in
// the description is no matter of the file.
void DiagnosedFile::diagnose_package(const std::string &package, const DiagnosisChoice &choice,
                                     std::vector<BsdlPackageText> packages)
{
    const std::string asked_for = package + ".all";
    DiagnosisChoice as_it_is = choice;
    as_it_is.as_read = true;
    packages.insert(packages.begin(), {.name = asked_for.c_str(),
                                       .file_name = name.c_str(),
                                       .text = text.data(),
                                       .length = text.size()});
    diagnosis = diagnose_text(description_using(package), name + ".user.bsd", as_it_is, packages);
}

void DiagnosedFile::cannot_read(FileState why, const char *rule, std::string reason)
{
    state = why;
    problem_text = std::move(reason);
    problem.severity = BSDL_SEVERITY_ERROR;
    problem.rule = rule;
    problem.place.file = name.c_str();
    problem.text = problem_text.c_str();
    problem.because = -1;
    problem.count = 1;
    findings.push_back(&problem);
}

std::string DiagnosedFile::device() const
{
    if (is_package)
        return {};
    const char *device = bsdlComponentName(bsdlDiagnosisBsdl(diagnosis.get()));
    return device ? device : "";
}

std::string DiagnosedFile::unchecked() const
{
    const char *words = bsdlDiagnosisUnchecked(diagnosis.get());
    return words ? words : "";
}
