// tarnlet report: devices as pages to look at.

#include "command.h"
#include "commands/diff.h"
#include "console.h"
#include "formats/reporter.h"
#include "input_files.h"
#include "new_file.h"
#include "report/device.h"
#include "report/page.h"
#include "settings.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <utility>

namespace
{

struct ReportOptions {
    std::vector<std::string> paths;
    std::string output;
    ReadOptions read;
    unsigned jobs = 0;
    bool diff = false;
};

enum class Written { NEW, AS_IT_WAS, FAILED };

} // namespace

// ------------------------------------------------------------------------------------- the pages

// A reader has nothing of a page that is the same as before.
static Written write_page(const std::string &path, const std::string &page)
{
    if (path == "-")
        return std::fwrite(page.data(), 1, page.size(), stdout) == page.size() ? Written::NEW
                                                                               : Written::FAILED;
    if (is_file(path)) {
        std::ifstream stream(path, std::ios::binary);
        if (std::equal(page.begin(), page.end(), std::istreambuf_iterator<char>(stream), {}))
            return Written::AS_IT_WAS;
    }
    return write_new_file(path, page) ? Written::NEW : Written::FAILED;
}

static Json document(const char *kind)
{
    return {{"schema", "tarnlet-report-1"}, {"version", TARNLET_VERSION}, {"kind", kind}};
}

static std::string name_of(const Json &device)
{
    const Json &model = device["model"];
    return !model.is_null() && model["component"].is_string() ? model["component"] : device["file"];
}

static std::string device_page(Json device)
{
    const std::string title = name_of(device);
    Json data = document("device");
    data["device"] = std::move(device);
    return page_of(title, data);
}

// ------------------------------------------------------------------------------ many descriptions

static bool is_folder(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// With those above it.
static bool make_folder(const std::string &path)
{
    for (size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string folder = path.substr(0, slash);
        if (mkdir(folder.c_str(), 0777) != 0 && !is_folder(folder)) {
            complain("cannot make folder " + escaped(folder) + ": " + std::strerror(errno));
            return false;
        }
        if (slash == std::string::npos)
            return true;
    }
}

// The page of a file below the folder of the index, at the place of the file below its own: no two
// files share a page, and a page keeps its name whatever files come and go.
static std::string page_name(const std::string &path, const std::string &top)
{
    std::string name = path == "-" ? "stdin" : path.substr(path.rfind('/') + 1);
    if (path.starts_with(top) && path.size() > top.size()) {
        name = path.substr(top.size());
        name.erase(0, name.find_first_not_of('/'));
    }
    return name + ".html";
}

static Json index_row(const Json &device, const std::string &page)
{
    const Json &model = device["model"];
    Json row = {{"page", text_value(page.c_str())}};
    for (const char *field : {"file", "state", "errors", "warnings"})
        row[field] = device[field];
    const bool has_pins = model.contains("pins");
    row["component"] = model.is_null() ? Json() : model["component"];
    row["passed"] = device["errors"] == 0;
    row["idcodes"] = has_pins ? model["idcodes"] : Json::array();
    row["pin_map"] = has_pins ? model["pin_map"] : Json();
    row["pins"] = has_pins ? Json(model["pins"].size()) : Json();
    row["cells"] = has_pins ? model["boundary"]["length"] : Json();
    return row;
}

// Null when there is nothing to show. What is wrong with the file as a whole has been said.
static Json read_device(const std::string &path, const ReportOptions &options)
{
    DiagnosisChoice choice = {.read = options.read};
    if (const std::string problem = add_settings(path, choice.read); !problem.empty()) {
        complain(escaped(path) + ": " + escaped(problem));
        return nullptr;
    }
    const DiagnosedFile file(path, choice);
    if (file.state != FileState::READ)
        complain(escaped(path) + ": " + escaped(file.findings[0]->text));
    return file.state == FileState::NOT_OPENED ? Json() : shown_device(file, choice);
}

namespace
{

class FolderReport
{
  public:
    FolderReport(const ReportOptions &given, std::string to)
        : options(given), folder(std::move(to)),
          top(given.paths.size() == 1 && is_folder(given.paths[0]) ? given.paths[0] : "")
    {
        while (folder.size() > 1 && folder.back() == '/')
            folder.pop_back();
    }
    int run();

  private:
    bool names_differ() const;
    void work();
    Json write(const std::string &path);

    const ReportOptions &options;
    std::string folder;
    std::string top;
    std::vector<std::string> files;
    std::vector<Json> rows; // of the files, null for one that could not be opened
    std::atomic<size_t> next = 0;
    std::atomic<size_t> written = 0;
    std::atomic<bool> failed = false;
};

} // namespace

// Only files that are named one by one can stand in each other's way.
bool FolderReport::names_differ() const
{
    std::vector<std::string> names;
    for (const std::string &file : files)
        names.push_back(page_name(file, top));
    std::sort(names.begin(), names.end());
    const auto same = std::adjacent_find(names.begin(), names.end());
    if (same != names.end())
        complain("two of the files would have the page " + escaped(*same));
    return same == names.end();
}

// Writes the page of a file and gives its row of the index.
Json FolderReport::write(const std::string &path)
{
    Json device = read_device(path, options);
    failed = failed || device.is_null() || device["state"] != state_name(FileState::READ);
    if (device.is_null())
        return nullptr;
    const std::string name = page_name(path, top);
    Json row = index_row(device, name);
    const std::string page = folder + "/" + name;
    if (!make_folder(page.substr(0, page.rfind('/')))) {
        failed = true;
        return row;
    }
    const Written result = write_page(page, device_page(std::move(device)));
    written += result == Written::NEW;
    failed = failed || result == Written::FAILED;
    return row;
}

void FolderReport::work()
{
    for (size_t i = next++; i < files.size(); i = next++)
        rows[i] = write(files[i]);
}

int FolderReport::run()
{
    bool all_found;
    files = collect_files(options.paths, &all_found);
    if (!names_differ() || !make_folder(folder))
        return STATUS_UNUSABLE;
    rows.resize(files.size());
    const size_t wanted = options.jobs ? options.jobs : std::thread::hardware_concurrency();
    std::vector<std::thread> others;
    while (others.size() + 1 < std::min(wanted, files.size()))
        others.emplace_back([this] { work(); });
    work();
    for (std::thread &other : others)
        other.join();

    Json data = document("index");
    data["devices"] = Json::array();
    for (Json &row : rows)
        if (!row.is_null())
            data["devices"].push_back(std::move(row));
    const std::string index = folder + "/index.html";
    if (write_page(index, page_of("Devices", data)) == Written::FAILED)
        failed = true;
    std::printf("%s, %zu written: %s\n", counted(data["devices"].size(), "page").c_str(),
                written.load(), escaped(index).c_str());
    return failed || !all_found ? STATUS_UNUSABLE : STATUS_CLEAN;
}

// ------------------------------------------------------------------------------------ one or two

// "a/b.bsd" gives "b.html".
static std::string derived_name(const std::string &path, const char *ending)
{
    const std::string name = path == "-" ? "stdin" : path.substr(path.rfind('/') + 1);
    return name.substr(0, name.rfind('.')) + ending;
}

static bool same_file(const std::string &a, const std::string &b)
{
    struct stat first;
    struct stat second;
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// The devices of the files; fewer, and that has been said, when some could not be read.
static std::vector<Json> read_devices(const ReportOptions &options)
{
    std::vector<Json> devices;
    for (const std::string &path : options.paths)
        if (Json device = read_device(path, options); !device.is_null())
            devices.push_back(std::move(device));
    return devices;
}

static std::string diff_page(std::vector<Json> devices)
{
    Json data = document("diff");
    data["changes"] = changes_between(devices[0]["model"], devices[1]["model"]);
    for (Json &device : devices)
        device.erase("source");
    const std::string title = name_of(devices[0]) + " and " + name_of(devices[1]);
    data["old"] = std::move(devices[0]);
    data["new"] = std::move(devices[1]);
    return page_of(title, data);
}

static int run_single(const ReportOptions &options)
{
    const std::string output =
        !options.output.empty()
            ? options.output
            : derived_name(options.paths.back(), options.diff ? ".diff.html" : ".html");
    for (const std::string &path : options.paths)
        if (same_file(path, output)) {
            complain("the page would overwrite the description " + escaped(path));
            return STATUS_UNUSABLE;
        }
    std::vector<Json> devices = read_devices(options);
    if (devices.size() < options.paths.size())
        return STATUS_UNUSABLE;
    for (const Json &device : devices)
        if (options.diff && device["model"].is_null()) {
            complain(escaped(device["file"].get<std::string>()) + ": holds nothing to compare");
            return STATUS_UNUSABLE;
        }
    const std::string page =
        options.diff ? diff_page(std::move(devices)) : device_page(std::move(devices[0]));
    return write_page(output, page) == Written::FAILED ? STATUS_UNUSABLE : STATUS_CLEAN;
}

// ----------------------------------------------------------------------------------- the command

static int run(const ReportOptions &options)
{
    const bool folders = std::any_of(options.paths.begin(), options.paths.end(), is_folder);
    if (options.diff && (options.paths.size() != 2 || folders)) {
        complain("--diff takes two files");
        return STATUS_UNUSABLE;
    }
    const bool into_folder =
        !options.output.empty() && (is_folder(options.output) || options.output.back() == '/');
    const bool one_page = options.diff || (options.paths.size() == 1 && !folders);
    if (one_page && !into_folder)
        return run_single(options);
    if (options.diff) {
        complain("--diff writes one page: " + escaped(options.output) + " is a folder");
        return STATUS_UNUSABLE;
    }
    if (options.output.empty() || options.output == "-") {
        complain("-o DIR is needed for the pages of more than one file");
        return STATUS_UNUSABLE;
    }
    return FolderReport(options, options.output).run();
}

std::function<int()> set_up_report(CLI::App &app)
{
    auto options = std::make_shared<ReportOptions>();
    app.add_option("FILE", options->paths,
                   "Descriptions and data files, folders of them, or - for standard input")
        ->required();
    app.add_option("-o,--output", options->output,
                   "Page to write, - for standard output; by default the name of the file with the "
                   "ending .html, in this folder. For a folder or several files: the folder for "
                   "the pages and their index")
        ->type_name("OUT");
    app.add_flag("--diff", options->diff, "One page that shows what differs between two files");
    add_read_options(app, options->read);
    app.add_option("-j,--jobs", options->jobs,
                   "Read N files at the same time; by default one for each processor")
        ->type_name("N");
    return [options] { return run(*options); };
}
