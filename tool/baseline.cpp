#include "baseline.h"

#include "console.h"
#include "diagnosed_file.h"
#include "new_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

using nlohmann::ordered_json;
namespace fs = std::filesystem;

constexpr int VERSION = 1;

Baseline::Baseline(const std::string &given) : path(given) {}

std::string Baseline::name_of(const std::string &file) const
{
    std::error_code ignored;
    const fs::path folder = fs::absolute(path, ignored).parent_path();
    const fs::path name = fs::absolute(file, ignored).lexically_proximate(folder);
    return name.lexically_normal().string();
}

void Baseline::add(const std::string &file, const std::string &rule, const std::string &fingerprint)
{
    Entry &entry = entries[{name_of(file), fingerprint}];
    entry.rule = rule;
    entry.count++;
}

size_t Baseline::count(const std::string &file, const std::string &fingerprint) const
{
    const auto found = entries.find({name_of(file), fingerprint});
    return found == entries.end() ? 0 : found->second.count;
}

bool Baseline::read()
{
    std::string text;
    if (!read_bytes(path, text)) {
        complain("cannot read the baseline " + escaped(path) + ": " + std::strerror(errno));
        return false;
    }
    try {
        const ordered_json document = ordered_json::parse(text);
        if (document.at("version") == VERSION) {
            for (const ordered_json &each : document.at("findings"))
                entries[{each.at("file"), each.at("fingerprint")}] = {each.at("rule"),
                                                                      each.at("count")};
            return true;
        }
    } catch (const ordered_json::exception &) {
    }
    complain(escaped(path) + " is no baseline of this version; --write-baseline writes one");
    return false;
}

bool Baseline::write() const
{
    ordered_json findings = ordered_json::array();
    for (const auto &[key, entry] : entries)
        findings.push_back({{"file", key.first},
                            {"rule", entry.rule},
                            {"fingerprint", key.second},
                            {"count", entry.count}});
    const ordered_json document = {{"version", VERSION}, {"findings", std::move(findings)}};
    return write_new_file(
        path, document.dump(2, ' ', true, ordered_json::error_handler_t::replace) + "\n");
}
