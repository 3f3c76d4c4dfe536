// tarnlet diff: what differs between two descriptions of a device.

#include "commands/diff.h"

#include "command.h"
#include "console.h"
#include "formats/table.h"
#include "model.h"
#include "near_name.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <set>

namespace
{

struct DiffJob {
    std::string path_a;
    std::string path_b;
    ReadOptions read;
    std::vector<std::string> ignore;
    bool json = false;
};

// Single values of a device, with their places in the document of `tarnlet info --json`.
struct SingleValue {
    const char *field;
    const char *place;
};

constexpr SingleValue DEVICE[] = {
    {"component", "/component"},
    {"standards", "/standards/uses"},
    {"conformance", "/standards/conformance"},
    {"packages", "/packages/names"},
    {"pin_map", "/pin_map"},
    {"pin_maps", "/pin_maps"},
    {"tdi", "/tap/tdi"},
    {"tdo", "/tap/tdo"},
    {"tms", "/tap/tms"},
    {"tck", "/tap/tck"},
    {"trst", "/tap/trst"},
    {"tck_frequency", "/tap/tck_frequency"},
    {"tck_halt", "/tap/tck_halt"},
    {"compliance", "/compliance"},
    {"instruction_length", "/instruction_register/length"},
    {"instruction_captures", "/instruction_register/captures"},
    {"idcodes", "/idcodes"},
    {"usercodes", "/usercodes"},
    {"boundary_length", "/boundary/length"},
    {"design_warning", "/design_warning"},
};

// Lists, whose rows are found again by a key: their order makes no difference.
struct KeyedList {
    const char *section;
    const char *place;
    const char *key;
    std::vector<const char *> fields;
};

const KeyedList LISTS[] = {
    {"pins", "/pins", "port", {"number", "type", "function", "cells"}},
    {"port_groups", "/port_groups", "representative", {"associated", "type"}},
    {"instructions",
     "/instructions",
     "name",
     {"opcodes", "class", "preload", "register", "length", "capture"}},
    {"registers", "/registers", "name", {"length", "instructions"}},
    {"cells",
     "/boundary/cells",
     "number",
     {"cell", "port", "function", "safe", "control", "disable_value", "disable_result"}},
};

// Families that are compared value by value.
constexpr const char *TREES[] = {"isc", "aio", "prg"};

class Difference
{
  public:
    explicit Difference(const std::vector<std::string> &ignore)
        : ignored(ignore.begin(), ignore.end())
    {
    }
    bool wants(const std::string &section) const { return ignored.count(section) == 0; }
    void add(const std::string &section, const Json &key, const char *field, const char *change,
             const Json &a, const Json &b)
    {
        if (field && ignored.count(section + "." + field) != 0)
            return;
        found.push_back({{"section", section},
                         {"key", key},
                         {"change", change},
                         {"field", field ? Json(field) : Json()},
                         {"a", a},
                         {"b", b}});
    }
    const Json &changes() const { return found; }

  private:
    std::set<std::string> ignored;
    Json found = Json::array();
};

} // namespace

// Rows by key in the order of the first file. Two rows may share a key, as those of a merged cell
// do: the second is "5 (2)".
static std::map<std::string, const Json *> rows_by_key(const Json &rows, const char *key,
                                                       std::vector<std::string> *order)
{
    std::map<std::string, const Json *> result;
    std::map<std::string, int> repeats;
    for (const Json &row : rows) {
        std::string name = folded(value_text(row[key], "", " "));
        if (const int repeat = ++repeats[name]; repeat > 1)
            name += " (" + std::to_string(repeat) + ")";
        order->push_back(name);
        result.emplace(std::move(name), &row);
    }
    return result;
}

static Json shown_key(const Json &row, const char *key, const std::string &name)
{
    const size_t repeat = name.rfind(" (");
    return value_text(row[key], "", " ") +
           (repeat == std::string::npos ? std::string() : name.substr(repeat));
}

// The fields whose order says nothing.
static bool is_set(std::string_view field)
{
    return field == "cells" || field == "instructions" || field == "opcodes";
}

// Letter case is no difference in names and patterns, but it is one in package pins and texts.
static bool same_value(std::string_view field, const Json &a, const Json &b)
{
    if (a == b)
        return true;
    if (field == "number" || field == "design_warning")
        return false;
    if (!is_set(field))
        return folded(a.dump()) == folded(b.dump());
    std::multiset<std::string> elements;
    for (const Json &element : a)
        elements.insert(folded(element.dump()));
    std::multiset<std::string> others;
    for (const Json &element : b)
        others.insert(folded(element.dump()));
    return elements == others;
}

static void compare_list(Difference &difference, const KeyedList &list, const Json &a,
                         const Json &b)
{
    std::vector<std::string> order;
    std::vector<std::string> order_b;
    const auto rows_a = rows_by_key(a, list.key, &order);
    const auto rows_b = rows_by_key(b, list.key, &order_b);
    for (const std::string &name : order) {
        const Json &row = *rows_a.at(name);
        const Json key = shown_key(row, list.key, name);
        const auto other = rows_b.find(name);
        if (other == rows_b.end()) {
            difference.add(list.section, key, nullptr, "removed", row, nullptr);
            continue;
        }
        for (const char *field : list.fields)
            if (const Json &value = (*other->second)[field]; !same_value(field, row[field], value))
                difference.add(list.section, key, field, "changed", row[field], value);
    }
    for (const std::string &name : order_b)
        if (rows_a.count(name) == 0)
            difference.add(list.section, shown_key(*rows_b.at(name), list.key, name), nullptr,
                           "added", nullptr, *rows_b.at(name));
}

// Fields that name an element of a list; the first that it has is taken.
constexpr const char *NAME_FIELDS[] = {"name", "procedure", "port", "part", "tap"};

// What tells an element of a list from the others, so that it is found again in another place:
// "PROC_PROGRAM(ARRAY)". Empty for elements that only have their place.
static std::string element_name(const Json &element)
{
    if (!element.is_object())
        return {};
    std::string name;
    for (const char *field : NAME_FIELDS)
        if (name.empty() && element.contains(field))
            name = value_text(element[field], "", "");
    if (!name.empty() && element.contains("data") && element["data"].is_string())
        name += "(" + value_text(element["data"], "", "") + ")";
    return name;
}

static bool is_part_of_name(std::string_view field)
{
    return field == "data" || std::count(std::begin(NAME_FIELDS), std::end(NAME_FIELDS), field) > 0;
}

// The elements of a list by name, else by place.
static std::vector<std::pair<std::string, const Json *>> named_elements(const Json &list)
{
    std::vector<std::pair<std::string, const Json *>> elements;
    std::map<std::string, int> repeats;
    for (const Json &element : list) {
        std::string name = element_name(element);
        if (name.empty())
            name = std::to_string(elements.size());
        else if (const int repeat = ++repeats[folded(name)]; repeat > 1)
            name += " (" + std::to_string(repeat) + ")";
        elements.emplace_back(std::move(name), &element);
    }
    return elements;
}

static std::vector<std::pair<std::string, const Json *>> children(const Json &value)
{
    if (value.is_array())
        return named_elements(value);
    std::vector<std::pair<std::string, const Json *>> members;
    for (const auto &[name, member] : value.items())
        members.emplace_back(name, &member);
    return members;
}

static bool has_structure(const Json &list)
{
    return std::any_of(list.begin(), list.end(), [](const Json &e) { return e.is_structured(); });
}

static void compare_tree(Difference &difference, const char *section, const std::string &path,
                         const Json &a, const Json &b)
{
    const bool lists = a.is_array() && b.is_array() && (has_structure(a) || has_structure(b));
    if (!lists && !(a.is_object() && b.is_object())) {
        if (folded(a.dump()) != folded(b.dump()))
            difference.add(section, path.empty() ? Json() : Json(path), nullptr,
                           a.is_null()   ? "added"
                           : b.is_null() ? "removed"
                                         : "changed",
                           a, b);
        return;
    }
    const auto at = [&](const std::string &name) {
        return path.empty() ? name : path + "/" + name;
    };
    std::map<std::string, const Json *> rest;
    for (const auto &[name, value] : children(b))
        rest.emplace(folded(name), value);
    for (const auto &[name, value] : children(a)) {
        const auto other = rest.find(folded(name));
        compare_tree(difference, section, at(name), *value,
                     other == rest.end() ? Json() : *other->second);
        if (other != rest.end())
            rest.erase(other);
    }
    for (const auto &[name, value] : children(b))
        if (rest.count(folded(name)) != 0)
            compare_tree(difference, section, at(name), Json(), *value);
}

static void compare(Difference &difference, const Json &a, const Json &b)
{
    if (a["kind"] != b["kind"]) {
        difference.add("device", nullptr, "kind", "changed", a["kind"], b["kind"]);
        return;
    }
    const auto value = [](const Json &json, const char *place) {
        const Json::json_pointer pointer(place);
        return json.contains(pointer) ? json.at(pointer) : Json();
    };
    if (difference.wants("device"))
        for (const SingleValue &single : DEVICE) {
            const Json in_a = value(a, single.place);
            const Json in_b = value(b, single.place);
            if (!same_value(single.field, in_a, in_b))
                difference.add("device", nullptr, single.field, "changed", in_a, in_b);
        }
    for (const KeyedList &list : LISTS)
        if (difference.wants(list.section))
            compare_list(difference, list, value(a, list.place), value(b, list.place));
    for (const char *tree : TREES)
        if (difference.wants(tree)) {
            const std::string place = std::string("/") + tree;
            compare_tree(difference, tree, "", value(a, place.c_str()), value(b, place.c_str()));
        }
}

Json changes_between(const Json &a, const Json &b)
{
    Difference difference({});
    compare(difference, a, b);
    return difference.changes();
}

// What --ignore may name: a section or a field of one.
static std::vector<std::string> ignorable()
{
    std::vector<std::string> names = {"device"};
    for (const SingleValue &single : DEVICE)
        names.push_back(std::string("device.") + single.field);
    for (const KeyedList &list : LISTS) {
        names.emplace_back(list.section);
        for (const char *field : list.fields)
            names.push_back(names.back().substr(0, names.back().find('.')) + "." + field);
    }
    names.insert(names.end(), std::begin(TREES), std::end(TREES));
    return names;
}

// "number 34, type linkage": a row without what is null and what has parts of its own. The key
// that stands before it says the name already.
static std::string row_text(const Json &row, const std::string &key)
{
    if (!row.is_object())
        return has_structure(row) ? std::string() : value_text(row, "-", " ");
    const std::string name = element_name(row);
    const bool is_named = !name.empty() && key.ends_with(name);
    std::string text;
    for (const auto &[field, value] : row.items()) {
        const std::string words = value_text(value, "", " ");
        const bool is_plain = !value.is_object() && !has_structure(value);
        if (is_plain && !words.empty() && words != key && !(is_named && is_part_of_name(field)))
            text.append(text.empty() ? "" : ", ").append(field).append(" ").append(words);
    }
    return text;
}

static std::string plain_text(const Json &value)
{
    if (value.is_array() && !value.empty() && value[0].is_object() && value[0].contains("pattern"))
        return value_text(value[0]["hex"], "-", " ") + (value.size() > 1 ? " ..." : "");
    return value.is_null() ? "-" : row_text(value, "");
}

static std::string change_line(const Json &change)
{
    const bool added = change["change"] == "added";
    const bool removed = change["change"] == "removed";
    const std::string key = value_text(change["key"], "", "");
    const std::string field = value_text(change["field"], "", "");
    std::string subject = key;
    if (!field.empty())
        subject.append(key.empty() ? "" : " ").append(field);
    const std::string values = added || removed
                                   ? row_text(change[added ? "b" : "a"], key)
                                   : plain_text(change["a"]) + " -> " + plain_text(change["b"]);
    return std::string(added     ? "  + "
                       : removed ? "  - "
                                 : "  ~ ") +
           subject + (subject.empty() || values.empty() ? "" : ": ") + values + "\n";
}

static void print_text(const DiffJob &job, const Json &changes)
{
    if (changes.empty())
        return;
    std::string text = "--- " + escaped(job.path_a) + "\n+++ " + escaped(job.path_b) + "\n";
    std::string section;
    std::map<std::string, size_t> counts;
    for (const Json &change : changes) {
        if (change["section"] != section) {
            section = change["section"];
            text += section + "\n";
        }
        text += change_line(change);
        counts[change["change"].get<std::string>()]++;
    }
    text += counted(changes.size(), "difference") + ": ";
    const char *joint = "";
    for (const char *kind : {"added", "removed", "changed"})
        if (const size_t count = counts[kind]) {
            text += joint + std::to_string(count) + " " + kind;
            joint = ", ";
        }
    text += "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
}

static int run(const DiffJob &job)
{
    Model a;
    Model b;
    if (!read_model(job.path_a, job.read, a) || !read_model(job.path_b, job.read, b))
        return STATUS_UNUSABLE;
    note_syntax_errors(job.path_a, a);
    note_syntax_errors(job.path_b, b);
    Difference difference(job.ignore);
    compare(difference, a.json, b.json);
    const Json &changes = difference.changes();
    if (job.json)
        print_json({{"schema", "tarnlet-diff-1"},
                    {"a", a.json["file"]},
                    {"b", b.json["file"]},
                    {"equal", changes.empty()},
                    {"changes", changes}});
    else
        print_text(job, changes);
    return changes.empty() ? STATUS_CLEAN : STATUS_FINDINGS;
}

std::function<int()> set_up_diff(CLI::App &app)
{
    auto job = std::make_shared<DiffJob>();
    app.add_option("A", job->path_a, "The first description or data file")->required();
    app.add_option("B", job->path_b, "The second one")->required();
    add_read_options(app, job->read);
    app.add_option(
           "--ignore", job->ignore,
           "Leave out a section (device, pins, port_groups, instructions, registers, cells, "
           "isc, aio, prg) or one field of it, as in pins.number; may be repeated")
        ->type_name("WHAT")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string &what) {
            const std::vector<std::string> known = ignorable();
            return std::find(known.begin(), known.end(), what) != known.end()
                       ? std::string()
                       : "there is nothing that is called '" + escaped(what) + "'" +
                             did_you_mean(what, known);
        });
    app.add_flag("--json", job->json, "Print the changes as JSON");
    return [job] { return run(*job); };
}
