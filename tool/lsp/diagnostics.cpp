// Findings as the editor shows them, and what can be done about them.

#include "file_report.h"
#include "lsp/features.h"

#include <algorithm>

namespace lsp
{

using Finding = Findings::Finding;

// Columns of the library count bytes of a line, from 1.
static uint32_t offset_of(const Document &document, int32_t line, int32_t column)
{
    if (line < 1)
        return 0;
    const auto at = static_cast<uint32_t>(line - 1);
    if (at >= document.line_count())
        return static_cast<uint32_t>(document.text().size());
    return std::min(document.line_begin(at) + static_cast<uint32_t>(std::max(column, 1) - 1),
                    document.line_end(at));
}

static bool is_in(const Document &document, const Findings::Place &place)
{
    return place.file.empty() || place.file == document.path();
}

// Where a place says less than a range, it is the line without the blanks around it.
static std::pair<uint32_t, uint32_t> extent(const Document &document, const Findings::Place &place)
{
    if (place.line < 1)
        return {0, 0};
    uint32_t begin = offset_of(document, place.line, place.column);
    if (place.column > 0 && place.end_line > 0) {
        const uint32_t end = offset_of(document, place.end_line, place.end_column);
        return {begin, std::max(begin, end)};
    }
    uint32_t end = document.line_end(document.line_of(begin));
    const std::string &text = document.text();
    while (begin < end && (text[begin] == ' ' || text[begin] == '\t'))
        begin++;
    while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t'))
        end--;
    return {begin, end};
}

// A finding in a package file shows where the description takes the file in.
static std::pair<uint32_t, uint32_t> use_of(const Document &document, const std::string &file)
{
    for (const BsdlStatement &statement : document.statements())
        if (statement.kind == BSDL_STATEMENT_USE && statement.name >= 0 &&
            same_name(std::filesystem::path(file).stem().string(),
                      document.statement_name(statement)))
            return {statement.begin, statement.end};
    return {0, 0};
}

static json location_json(const Document &document, const Findings::Place &place)
{
    if (is_in(document, place)) {
        const auto [begin, end] = extent(document, place);
        return {{"uri", document.uri()}, {"range", document.range(begin, end)}};
    }
    const json at = {{"line", std::max(place.line - 1, 0)},
                     {"character", std::max(place.column - 1, 0)}};
    return {{"uri", uri_of_path(place.file)}, {"range", {{"start", at}, {"end", at}}}};
}

// Where the rules are explained, beside the package files that are installed with the tool; empty
// when it is not there.
static const std::string &rule_pages()
{
    static const std::string pages = [] {
        const std::filesystem::path page =
            std::filesystem::path(installed_package_folder()) / "../../doc/tarnlet/rules.md";
        std::error_code error;
        const std::filesystem::path found = std::filesystem::canonical(page, error);
        return error ? std::string() : uri_of_path(found.string());
    }();
    return pages;
}

// A quotation mark too many makes an error of each row. Mended findings replace them in a moment.
static constexpr size_t MOST_AS_READ = 500;

// As the protocol counts: an error is 1, a warning 2, information 3.
static int severity_code(Severity severity)
{
    return static_cast<int>(Severity::ERROR) + 1 - static_cast<int>(severity);
}

// Of each finding, those that follow from it.
using FollowUps = std::vector<std::vector<const Finding *>>;

static FollowUps follow_ups_in(const Findings &findings)
{
    FollowUps follow_ups(findings.all.size());
    for (const Finding &finding : findings.all)
        if (finding.because >= 0)
            follow_ups[static_cast<size_t>(finding.because)].push_back(&finding);
    return follow_ups;
}

static json diagnostic(const Document &document, const Finding &finding,
                       const std::vector<const Finding *> &follow_ups)
{
    std::string text = finding.text;
    if (!finding.hint.empty())
        text += "\n" + finding.hint;
    if (finding.count > 1)
        text += "\n" + std::to_string(finding.count) + " alike, first here";
    const bool here = is_in(document, finding.place);
    const auto [begin, end] =
        here ? extent(document, finding.place) : use_of(document, finding.place.file);
    json result = {{"range", document.range(begin, end)},
                   {"severity", severity_code(finding.severity)},
                   {"source", "tarnlet"},
                   {"message", std::move(text)}};
    if (!finding.rule.empty()) {
        result["code"] = finding.rule;
        if (!rule_pages().empty())
            result["codeDescription"] = {{"href", rule_pages() + "#" + finding.rule}};
    }
    json related = json::array();
    if (!here)
        related.push_back({{"location", location_json(document, finding.place)},
                           {"message", "in this package file"}});
    for (const Findings::Related &other : finding.related)
        related.push_back(
            {{"location", location_json(document, other.place)}, {"message", other.text}});
    for (const Finding *other : follow_ups)
        related.push_back({{"location", location_json(document, other->place)},
                           {"message", "follows from this: " + other->text}});
    if (!related.empty())
        result["relatedInformation"] = std::move(related);
    return result;
}

json diagnostics(const Document &document, const Findings &findings)
{
    json list = json::array();
    if (findings.excluded)
        return list;
    if (!findings.settings_problem.empty())
        list.push_back({{"range", document.range(0, document.line_end(0))},
                        {"severity", severity_code(Severity::ERROR)},
                        {"source", "tarnlet"},
                        {"message", findings.settings_problem}});
    const FollowUps follow_ups = follow_ups_in(findings);
    const size_t most = findings.as_read ? MOST_AS_READ : SIZE_MAX;
    for (size_t i = 0; i < findings.all.size() && list.size() < most; i++)
        if (findings.all[i].because < 0 && !findings.all[i].suppressed)
            list.push_back(diagnostic(document, findings.all[i], follow_ups[i]));
    return list;
}

void require_readable(const Workspace &workspace, const Document &document, const char *action)
{
    const std::shared_ptr<const Findings> findings = diagnose(workspace.job_for(document), true);
    if (!findings)
        throw RequestError(REQUEST_FAILED, "memory ran out");
    for (const Finding &finding : findings->all)
        if (finding.rule == "syntax-error" || finding.rule == "unreadable-input" ||
            finding.rule == "incomplete-string")
            throw RequestError(REQUEST_FAILED,
                               std::string("Fix the syntax errors before ") + action + ": line " +
                                   std::to_string(finding.place.line) + ": " + finding.text);
}

// ---------------------------------------------------------------------------------- code actions

static json edits_json(const Document &document, const Finding &finding)
{
    json edits = json::array();
    for (const Findings::Edit &edit : finding.edits) {
        const uint32_t begin = offset_of(document, edit.place.line, edit.place.column);
        const uint32_t end = offset_of(document, edit.place.end_line, edit.place.end_column);
        edits.push_back(
            {{"range", document.range(begin, std::max(begin, end))}, {"newText", edit.text}});
    }
    return edits;
}

static bool can_be_applied(const Document &document, const Finding &finding)
{
    return !finding.edits.empty() &&
           std::all_of(finding.edits.begin(), finding.edits.end(),
                       [&](const Findings::Edit &edit) { return is_in(document, edit.place); });
}

static json workspace_edit(const Document &document, json edits)
{
    return {
        {"documentChanges",
         json::array({{{"textDocument", {{"uri", document.uri()}, {"version", document.version()}}},
                       {"edits", std::move(edits)}}})}};
}

// The edit that adds the comment which turns a rule off: at the end of the line, or on a line of
// its own above it when the line already has a comment. Null when a string goes on over the end of
// the line, for no comment can stand there.
static json turned_off(const Document &document, const Finding &finding)
{
    const uint32_t line = document.line_of(extent(document, finding.place).first);
    const uint32_t end = document.line_end(line);
    bool quoted = false;
    bool comment = false;
    for (uint32_t i = document.line_begin(line); i < end && !comment; i++) {
        quoted ^= document.text()[i] == '"';
        comment = !quoted && document.text().compare(i, 2, "--") == 0;
    }
    if (quoted)
        return nullptr;
    const std::string note = "-- tarnlet: off " + finding.rule;
    if (!comment)
        return json::array({{{"range", document.range(end, end)}, {"newText", " " + note}}});
    const uint32_t begin = document.line_begin(line);
    const std::string line_end = document.text().find("\r\n") != std::string::npos ? "\r\n" : "\n";
    return json::array({{{"range", document.range(begin, begin)}, {"newText", note + line_end}}});
}

// The edits of all findings that are certain, in their order; of two that overlap the first.
static json all_sure_edits(const Document &document, const Findings &findings)
{
    std::vector<std::pair<uint32_t, const Finding *>> sure;
    for (const Finding &finding : findings.all)
        if (finding.sure && !finding.suppressed && can_be_applied(document, finding))
            sure.emplace_back(offset_of(document, finding.edits.front().place.line,
                                        finding.edits.front().place.column),
                              &finding);
    std::stable_sort(sure.begin(), sure.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    json edits = json::array();
    uint32_t free_from = 0;
    for (const auto &[begin, finding] : sure) {
        if (!edits.empty() && begin < free_from)
            continue;
        for (json &edit : edits_json(document, *finding))
            edits.push_back(std::move(edit));
        free_from = offset_of(document, finding->edits.back().place.end_line,
                              finding->edits.back().place.end_column) +
                    1;
    }
    return edits;
}

static bool wanted(const json &context, const std::string &kind)
{
    if (!context.contains("only"))
        return true;
    return std::any_of(context["only"].begin(), context["only"].end(), [&](const json &only) {
        const std::string prefix = only.get<std::string>();
        return prefix.empty() || kind == prefix || kind.starts_with(prefix + ".");
    });
}

json code_actions(const Workspace &workspace, const Document &document, const json &params)
{
    const uint32_t begin = document.offset(params.at("range").at("start"));
    const uint32_t end = document.offset(params.at("range").at("end"));
    const json context = params.value("context", json::object());
    json actions = json::array();
    const auto known = workspace.findings.find(document.uri());
    // Edits of an older text would be put into the wrong places.
    if (known == workspace.findings.end() || known->second->version != document.version())
        return actions;
    const Findings &findings = *known->second;
    if (findings.excluded)
        return actions;
    const FollowUps follow_ups = follow_ups_in(findings);
    for (size_t i = 0; i < findings.all.size(); i++) {
        const Finding &finding = findings.all[i];
        if (finding.because >= 0 || finding.suppressed || !is_in(document, finding.place))
            continue;
        const auto [from, to] = extent(document, finding.place);
        if (from > end || to < begin)
            continue;
        const json about = json::array({diagnostic(document, finding, follow_ups[i])});
        if (can_be_applied(document, finding) && wanted(context, "quickfix"))
            actions.push_back(
                {{"title", finding.fix.empty() ? "Fix: " + finding.rule : finding.fix},
                 {"kind", "quickfix"},
                 {"diagnostics", about},
                 {"isPreferred", finding.sure},
                 {"edit", workspace_edit(document, edits_json(document, finding))}});
        if (finding.rule.empty() || is_always_on(finding.rule.c_str()) ||
            !wanted(context, "quickfix"))
            continue;
        if (json edits = turned_off(document, finding); !edits.is_null())
            actions.push_back({{"title", "Turn " + finding.rule + " off here"},
                               {"kind", "quickfix"},
                               {"diagnostics", about},
                               {"edit", workspace_edit(document, std::move(edits))}});
    }
    if (wanted(context, "source.fixAll.tarnlet"))
        if (json edits = all_sure_edits(document, findings); !edits.empty())
            actions.push_back({{"title", "Fix all that is certain"},
                               {"kind", "source.fixAll.tarnlet"},
                               {"edit", workspace_edit(document, std::move(edits))}});
    return actions;
}

} // namespace lsp
