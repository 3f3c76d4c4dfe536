#include "model.h"

#include "code_words.h"
#include "console.h"
#include "diagnosed_file.h"
#include "formats/table.h"
#include "settings.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <strings.h>
#include <unordered_set>

// ------------------------------------------------------------------------------ rows, counted

namespace
{

// References to a port bit, equal whatever the case of their letters.
struct PortBit {
    const PortId *port;

    bool operator==(const PortBit &other) const
    {
        return port->subscripted == other.port->subscripted &&
               (!port->subscripted || port->subscript == other.port->subscript) &&
               (port->name == other.port->name || strcasecmp(port->name, other.port->name) == 0);
    }
};

struct HashPortBit {
    size_t operator()(const PortBit &bit) const
    {
        size_t hash = bit.port->subscripted ? static_cast<size_t>(bit.port->subscript) + 1 : 0;
        for (const char *c = bit.port->name; *c; c++)
            hash = hash * 31 + (static_cast<unsigned char>(*c) | 0x20);
        return hash;
    }
};

} // namespace

size_t WordCounts::place_of(const char *word)
{
    const auto [found, is_new] = places_.try_emplace(word ? word : "", counts.size());
    if (is_new)
        counts.emplace_back(text_value(word), 0);
    return found->second;
}

void WordCounts::add(const char *word)
{
    const auto [found, is_new] = known_.try_emplace(word);
    if (is_new)
        found->second = place_of(word);
    counts[found->second].second++;
}

static void count_rows(Bsdl *bsdl, RowCounts &rows)
{
    std::unordered_set<PortBit, HashPortBit> observed;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        rows.cells++;
        rows.cell_functions.add(cell_function_word(bsdlGetCellFunction(cell)));
        rows.cell_names.add(bsdlGetCellName(cell));
        if (const PortId *port = bsdlGetCellPort(cell); port && port->name)
            observed.insert(PortBit{port});
    }
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        rows.pins++;
        rows.pin_types.add(pin_type_word(bsdlGetPinType(pin)));
        rows.pin_functions.add(pin_function_word(bsdlGetPinFunction(pin)));
        const PortId *port = bsdlGetPinPortID(pin);
        rows.pins_with_cells += port && port->name ? observed.count(PortBit{port}) : 0;
        rows.pins_without_number += !bsdlGetPinPhysicalName(pin);
    }
}

// ------------------------------------------------------------------------------- from the file

static std::string with_line(const BsdlFinding &finding)
{
    const std::string text = escaped_line(finding.text);
    return finding.place.line > 0 ? "line " + std::to_string(finding.place.line) + ": " + text
                                  : text;
}

// What a person would count: what follows from another finding is none.
static void count_findings(const DiagnosedFile &file, Model &model)
{
    for (const BsdlFinding *finding : file.findings) {
        const bool is_error = finding->severity == BSDL_SEVERITY_ERROR;
        if (is_error && model.first_error.empty())
            model.first_error = with_line(*finding);
        if (finding->because >= 0 || finding->suppressed)
            continue;
        if (is_error && std::string_view(finding->rule) == "syntax-error")
            model.syntax_errors++;
        else if (is_error)
            model.errors++;
        else
            model.warnings += finding->severity == BSDL_SEVERITY_WARNING;
    }
}

static bool read_and_check(const std::string &path, ReadOptions options, Model &model,
                           const std::function<void(Bsdl *bsdl)> &describe)
{
    if (const std::string problem = add_settings(path, options); !problem.empty()) {
        complain(escaped(problem));
        return false;
    }
    const DiagnosedFile file(path, {.read = options});
    if (file.is_package) {
        complain(escaped(path) +
                 ": a package, which describes no device; 'tarnlet check' checks it");
        return false;
    }
    Bsdl *bsdl = bsdlDiagnosisBsdl(file.diagnosis.get());
    count_findings(file, model);
    if (!bsdl) {
        complain(escaped(path) + ": " +
                 (model.first_error.empty() ? "cannot be read" : model.first_error));
        return false;
    }
    model.is_prg = bsdlIsPrg(bsdl) != 0;
    model.component = text_value(bsdlComponentName(bsdl));
    describe(bsdl);
    return true;
}

static void describe(Bsdl *bsdl, const std::string &path, Model &model)
{
    model.json = document_without_rows(bsdl, path);
    model.json["syntax_errors"] = model.syntax_errors;
    model.json["check"] = {{"passed", model.syntax_errors == 0 && model.errors == 0},
                           {"errors", model.errors},
                           {"warnings", model.warnings}};
}

static void print_with_rows(Bsdl *bsdl, const Json &json);

bool read_summary(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        count_rows(bsdl, model.rows);
    });
}

bool read_model(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        if (!model.is_prg)
            add_rows(bsdl, model.json);
    });
}

bool print_model(const std::string &path, const ReadOptions &options, Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        describe(bsdl, path, model);
        if (model.is_prg)
            print_json(model.json);
        else
            print_with_rows(bsdl, model.json);
    });
}

bool read_model(const std::string &path, const ReadOptions &options, Json (*part)(Bsdl *bsdl),
                Model &model)
{
    return read_and_check(path, options, model, [&](Bsdl *bsdl) {
        if (!model.is_prg)
            model.json = part(bsdl);
    });
}

void note_syntax_errors(const std::string &path, const Model &model)
{
    if (model.syntax_errors > 0)
        complain(escaped(path) + ": " +
                 counted(static_cast<size_t>(model.syntax_errors), "syntax error") +
                 ", so what is shown may not be all; the first: " + model.first_error);
}

// As a part of a larger document: each line but the first goes to the right.
static void print_indented(const Json &json, size_t blanks)
{
    const std::string text = json.dump(2, ' ', true);
    const std::string indentation(blanks, ' ');
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        std::fwrite(text.data() + at, 1, end - at, stdout);
        if (end < text.size())
            std::fwrite(indentation.data(), 1, blanks, stdout);
        at = end;
    }
}

// One row after the other, so that no more than one is held.
static void print_rows(Bsdl *bsdl, void (*each_row)(Bsdl *bsdl, const TakeRow &take), size_t blanks)
{
    const char *between = "[";
    each_row(bsdl, [&](const Json &row) {
        std::printf("%s\n%*s", between, static_cast<int>(blanks) + 2, "");
        print_indented(row, blanks + 2);
        between = ",";
    });
    if (*between == '[')
        std::fputs("[]", stdout);
    else
        std::printf("\n%*s]", static_cast<int>(blanks), "");
}

static void print_with_rows(Bsdl *bsdl, const Json &json)
{
    const char *between = "{";
    for (const auto &[key, value] : json.items()) {
        std::printf("%s\n  \"%s\": ", between, key.c_str());
        between = ",";
        if (key == "pins") {
            print_rows(bsdl, each_pin, 2);
        } else if (key == "boundary") {
            std::printf("{\n    \"length\": %s,\n    \"cells\": ", value["length"].dump().c_str());
            print_rows(bsdl, each_cell, 4);
            std::fputs("\n  }", stdout);
        } else {
            print_indented(value, 2);
        }
    }
    std::fputs("\n}\n", stdout);
}
