#include "settings.h"

#include "diagnosed_file.h"
#include "findings.h"
#include "near_name.h"

#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fnmatch.h>
#include <mutex>
#include <sstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

constexpr const char *FILE_NAME = ".tarnlet.toml";

std::optional<Severity> severity_word(std::string_view word)
{
    if (word == "off")
        return Severity::OFF;
    if (word == "warning")
        return Severity::WARNING;
    if (word == "error")
        return Severity::ERROR;
    return {};
}

static std::vector<std::string> rule_names()
{
    std::vector<std::string> names;
    for (uint32_t i = 0; i < bsdlRuleCount(); i++)
        names.emplace_back(bsdlRuleAt(i)->id);
    return names;
}

std::string rule_level_problem(const std::string &rule, std::optional<Severity> level)
{
    if (!bsdlFindRule(rule.c_str()))
        return "there is no rule '" + rule + "'" + did_you_mean(rule, rule_names());
    if (!level)
        return "a rule can be set to off, warning or error";
    if (is_always_on(rule.c_str()) && *level != Severity::ERROR)
        return "'" + rule + "' is always an error: the file could not be read";
    return {};
}

// ----------------------------------------------------------------------------------- one file

namespace
{

class SettingsReader
{
  public:
    SettingsReader(const std::string &path, std::string &why) : problem(why), settings{.path = path}
    {
    }
    bool read(const std::string &text);
    Settings result() { return std::move(settings); }

  private:
    void refuse(const toml::source_region &where, const std::string &what);
    void take(const toml::key &key, const toml::node &value);
    void take_rules(const toml::node &value);
    void take_dirs(const toml::node &value);
    std::vector<std::string> texts_of(const toml::node &value, const std::string &what);

    std::string &problem;
    Settings settings;
};

} // namespace

// The first one is told.
void SettingsReader::refuse(const toml::source_region &where, const std::string &what)
{
    if (problem.empty())
        problem = settings.path + ":" + std::to_string(where.begin.line) + ":" +
                  std::to_string(where.begin.column) + ": " + what;
}

std::vector<std::string> SettingsReader::texts_of(const toml::node &value, const std::string &what)
{
    std::vector<std::string> texts;
    const toml::array *array = value.as_array();
    if (!array) {
        refuse(value.source(), "'" + what + "' is a list of texts: [\"...\"]");
        return texts;
    }
    for (const toml::node &each : *array)
        if (const auto text = each.value_exact<std::string>())
            texts.push_back(*text);
        else
            refuse(each.source(), "'" + what + "' is a list of texts: [\"...\"]");
    return texts;
}

void SettingsReader::take_dirs(const toml::node &value)
{
    const fs::path here = fs::path(settings.path).parent_path();
    for (const std::string &text : texts_of(value, "package-dirs")) {
        const std::string folder = (here / text).lexically_normal().string();
        std::error_code failed;
        if (!fs::is_directory(folder, failed))
            refuse(value.source(), "there is no folder '" + text + "'");
        settings.package_dirs.push_back(folder);
    }
}

void SettingsReader::take_rules(const toml::node &value)
{
    const toml::table *rules = value.as_table();
    if (!rules) {
        refuse(value.source(), "'rules' is a table: [rules]");
        return;
    }
    for (const auto &[key, node] : *rules) {
        const std::string rule(key.str());
        const auto level = severity_word(node.value_exact<std::string>().value_or(""));
        if (const std::string wrong = rule_level_problem(rule, level); !wrong.empty())
            refuse(key.source(), wrong);
        else
            settings.rules[rule] = *level;
    }
}

void SettingsReader::take(const toml::key &key, const toml::node &value)
{
    static const std::vector<std::string> KEYS = {"package-dirs", "package", "strict", "exclude",
                                                  "rules"};
    const std::string name(key.str());
    if (name == "package-dirs") {
        take_dirs(value);
    } else if (name == "rules") {
        take_rules(value);
    } else if (name == "exclude") {
        settings.exclude = texts_of(value, name);
    } else if (name == "package") {
        settings.package = value.value_exact<std::string>();
        if (!settings.package)
            refuse(value.source(), "'package' is a text: \"...\"");
    } else if (name == "strict") {
        settings.strict = value.value_exact<bool>();
        if (!settings.strict)
            refuse(value.source(), "'strict' is true or false");
    } else {
        refuse(key.source(), "there is no setting '" + name + "'" + did_you_mean(name, KEYS));
    }
}

bool SettingsReader::read(const std::string &text)
{
    try {
        const toml::table table = toml::parse(text, settings.path);
        for (const auto &[key, value] : table)
            take(key, value);
    } catch (const toml::parse_error &error) {
        refuse(error.source(), std::string(error.description()));
    }
    return problem.empty();
}

std::unique_ptr<Settings> read_settings(const std::string &path, std::string &problem)
{
    std::string text;
    problem.clear();
    if (!read_bytes(path, text)) {
        problem = "cannot read " + path + ": " + std::strerror(errno);
        return nullptr;
    }
    SettingsReader reader(path, problem);
    return reader.read(text) ? std::make_unique<Settings>(reader.result()) : nullptr;
}

bool Settings::excludes(const std::string &file) const
{
    if (exclude.empty())
        return false;
    std::error_code failed;
    const fs::path folder = fs::absolute(path, failed).lexically_normal().parent_path();
    const fs::path name = fs::absolute(file, failed).lexically_normal().lexically_relative(folder);
    for (const std::string &pattern : exclude) {
        if (fnmatch(pattern.c_str(), name.c_str(), 0) == 0)
            return true;
        // A folder stands for all that is in it.
        const std::string within = pattern + (pattern.ends_with('/') ? "*" : "/*");
        if (fnmatch(within.c_str(), name.c_str(), 0) == 0)
            return true;
    }
    return false;
}

ReadOptions with_settings(ReadOptions said, const Settings &settings)
{
    said.package_dirs.insert(said.package_dirs.end(), settings.package_dirs.begin(),
                             settings.package_dirs.end());
    if (said.package.empty())
        said.package = settings.package.value_or("");
    said.strict |= settings.strict.value_or(false);
    return said;
}

std::string settings_text(const Settings &settings)
{
    if (settings.path.empty())
        return std::string("# no ") + FILE_NAME + " applies\n";
    const auto texts = [](const std::vector<std::string> &all) {
        toml::array array;
        for (const std::string &text : all)
            array.push_back(text);
        return array;
    };
    toml::table table;
    if (!settings.package_dirs.empty())
        table.insert("package-dirs", texts(settings.package_dirs));
    if (settings.package)
        table.insert("package", *settings.package);
    if (settings.strict)
        table.insert("strict", *settings.strict);
    if (!settings.exclude.empty())
        table.insert("exclude", texts(settings.exclude));
    toml::table rules;
    for (const auto &[rule, level] : settings.rules)
        rules.insert(rule, severity_name(level));
    if (!rules.empty())
        table.insert("rules", std::move(rules));
    std::ostringstream text;
    text << "# " << settings.path << "\n" << table << "\n";
    return text.str();
}

// --------------------------------------------------------------------------------- what changes

FileStamps::Stamp FileStamps::stamp_of(const std::string &path)
{
    struct stat found;
    if (stat(path.c_str(), &found) != 0)
        return {};
    return {.size = found.st_size, .time = found.st_mtim, .number = found.st_ino};
}

void FileStamps::note(const std::string &path) { stamps[path] = stamp_of(path); }

bool FileStamps::have_changed() const
{
    return std::any_of(stamps.begin(), stamps.end(), [](const auto &noted) {
        const Stamp now = stamp_of(noted.first);
        const Stamp &then = noted.second;
        return now.size != then.size || now.number != then.number ||
               now.time.tv_sec != then.time.tv_sec || now.time.tv_nsec != then.time.tv_nsec;
    });
}

// ---------------------------------------------------------------------------------- the nearest

// Folders are looked through upwards once; what was found holds for all of them.
const SettingsFinder::Known &SettingsFinder::in_folder(const std::string &folder)
{
    const auto [at, added] = folders.try_emplace(folder);
    Known &known = at->second;
    if (!added)
        return known;
    const fs::path path = fs::path(folder) / FILE_NAME;
    const fs::path parent = fs::path(folder).parent_path();
    stamps.note(path.string());
    struct stat found;
    if (lstat(path.c_str(), &found) == 0) {
        known.settings = read_settings(path.string(), known.problem);
    } else if (parent != folder && !parent.empty()) {
        const Known &above = in_folder(parent.string());
        known.problem = above.problem;
        if (above.settings)
            known.settings = std::make_unique<Settings>(*above.settings);
    } else {
        known.settings = std::make_unique<Settings>();
    }
    return known;
}

const Settings *SettingsFinder::settings_of(const std::string &file, std::string &problem)
{
    std::error_code failed;
    const fs::path named = fs::absolute(file == "-" ? "stdin" : file, failed).lexically_normal();
    const Known &known = in_folder(named.parent_path().string());
    problem = known.problem;
    return known.settings.get();
}

std::string add_settings(const std::string &file, ReadOptions &options)
{
    static std::mutex turn;
    static SettingsFinder finder;
    const std::lock_guard lock(turn);
    std::string problem;
    if (const Settings *settings = finder.settings_of(file, problem))
        options = with_settings(options, *settings);
    return problem;
}
