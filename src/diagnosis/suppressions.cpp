#include "diagnosis/suppressions.h"

#include "tarnlet/diagnosis.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

constexpr std::string_view BLANKS = " \t";
constexpr int32_t WAITING = -1; // for the line with code that follows
constexpr int32_t WHOLE_FILE = -2;

} // namespace

static bool is_always_on(const std::string &rule)
{
    const BsdlRule *known = bsdlFindRule(rule.c_str());
    return known && known->always_on;
}

static std::string_view without_blanks(std::string_view text)
{
    const size_t first = std::min(text.find_first_not_of(BLANKS), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

// Where the comment of a line begins, npos without one. `in_string` tells whether the line begins
// within quotes, and then whether it ends within them.
static size_t find_comment(std::string_view line, bool &in_string)
{
    for (size_t at = 0; at < line.size(); at++) {
        if (line[at] == '"')
            in_string = !in_string;
        else if (!in_string && line.substr(at).starts_with("--"))
            return at;
    }
    return std::string_view::npos;
}

Suppressions::Suppressions(std::string_view text)
{
    if (text.find("tarnlet:") == std::string_view::npos)
        return;
    bool in_string = false;
    for (int32_t number = 1; !text.empty(); number++) {
        const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
        const size_t comment = find_comment(line, in_string);
        const bool has_code = !without_blanks(line.substr(0, comment)).empty();
        if (has_code && !waiting.empty())
            by_line[number] = std::exchange(waiting, {});
        if (comment != std::string_view::npos)
            read_comment(line, comment, number, !has_code);
        text.remove_prefix(line.size());
        text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
    }
}

void Suppressions::read_comment(std::string_view line, size_t at, int32_t number, bool alone)
{
    constexpr std::string_view MARK = "tarnlet:";
    at = std::min(line.find_first_not_of(BLANKS, at + 2), line.size());
    if (!line.substr(at).starts_with(MARK))
        return;
    const size_t word = std::min(line.find_first_not_of(BLANKS, at + MARK.size()), line.size());
    const size_t end = std::min(line.find_first_of(BLANKS, word), line.size());
    const std::string_view what = line.substr(word, end - word);
    if (what == "off" && end < line.size())
        read_rules(line, end, number, alone ? WAITING : number);
    else if (what == "off-file" && end < line.size())
        read_rules(line, end, number, WHOLE_FILE);
    else
        not_understood.push_back({.rule = "suppression-unknown",
                                  .line = number,
                                  .column = static_cast<int32_t>(at) + 1,
                                  .end_column = static_cast<int32_t>(line.size()) + 1,
                                  .text = "This comment for tarnlet is not understood",
                                  .hint = "'tarnlet: off RULE' or 'tarnlet: off-file RULE'"});
}

void Suppressions::read_rules(std::string_view line, size_t at, int32_t number, int32_t covered)
{
    const size_t end = std::min(line.find(':', at), line.size());
    const std::string reason(without_blanks(line.substr(std::min(end + 1, line.size()))));
    while (at < end) {
        const size_t comma = std::min(line.find(',', at), end);
        const std::string_view name = without_blanks(line.substr(at, comma - at));
        const auto column = static_cast<int32_t>(name.data() - line.data()) + 1;
        const size_t index = entries.size();
        entries.push_back({std::string(name), number, column, reason, false});
        if (covered == WAITING)
            waiting.push_back(index);
        else if (covered == WHOLE_FILE)
            by_file_rule.try_emplace(std::string(name), index);
        else
            by_line[covered].push_back(index);
        at = comma + 1;
    }
}

bool Suppressions::covers(int32_t line, std::string_view rule, std::string *reason)
{
    if (entries.empty())
        return false; // as in most texts
    Entry *entry = nullptr;
    if (const auto found = by_line.find(line); found != by_line.end())
        for (const size_t index : found->second)
            if (!entry && entries[index].rule == rule)
                entry = &entries[index];
    if (const auto found = by_file_rule.find(std::string(rule));
        !entry && found != by_file_rule.end())
        entry = &entries[found->second];
    if (!entry || is_always_on(entry->rule))
        return false;
    if (reason)
        *reason = entry->reason;
    return entry->used = true;
}

static std::string with_name(std::string_view format, const std::string &name)
{
    const size_t at = format.find("%s");
    return std::string(format.substr(0, at)) + name + std::string(format.substr(at + 2));
}

std::vector<Suppressions::Remark> Suppressions::remarks(bool all_looked_at) const
{
    std::vector<Remark> result = not_understood;
    for (const Entry &entry : entries) {
        Remark remark = {.rule = "suppression-unused",
                         .line = entry.line,
                         .column = entry.column,
                         .end_column = entry.column + static_cast<int32_t>(entry.rule.size()),
                         .text = {},
                         .hint = {}};
        if (!bsdlFindRule(entry.rule.c_str())) {
            remark.rule = "suppression-unknown";
            remark.text = with_name("There is no rule '%s' to be turned off", entry.rule);
            if (entry.rule.find(' ') != std::string::npos)
                remark.hint = "put commas between rules, and a colon before the reason";
        } else if (is_always_on(entry.rule)) {
            remark.text = with_name("'%s' cannot be turned off", entry.rule);
        } else if (!entry.used && all_looked_at) {
            remark.text =
                with_name("'%s' is turned off here, but there is nothing of it", entry.rule);
            remark.hint = "remove the comment";
        } else {
            continue;
        }
        result.push_back(std::move(remark));
    }
    return result;
}

// --------------------------------------------------------------------- in the list of findings

static Finding finding_of(const Suppressions::Remark &remark, const std::string &file)
{
    Finding finding;
    finding.severity = BSDL_SEVERITY_WARNING;
    finding.rule = remark.rule;
    finding.place = {file, remark.line, remark.column, remark.line, remark.end_column};
    finding.text = remark.text;
    finding.hint = remark.hint;
    return finding;
}

// What follows from a finding that is turned off is turned off with it. The way to the cause has no
// more steps than there are findings.
static void suppress_follow_ups(std::vector<Finding> *findings)
{
    for (Finding &finding : *findings) {
        const Finding *cause = &finding;
        for (size_t steps = 0; steps < findings->size() && cause->because >= 0; steps++)
            cause = &(*findings)[static_cast<size_t>(cause->because)];
        finding.suppressed |= cause->suppressed;
    }
}

// The remarks go in where they stand in the text, and indexes of causes move with their findings.
static void merge(std::vector<Finding> *findings, std::vector<Finding> remarks)
{
    std::stable_sort(remarks.begin(), remarks.end(), [](const Finding &a, const Finding &b) {
        return a.place.line < b.place.line;
    });
    std::vector<Finding> merged;
    std::vector<int32_t> moved;
    auto next = remarks.begin();
    for (Finding &finding : *findings) {
        for (; next != remarks.end() && next->place.line < finding.place.line; ++next)
            merged.push_back(std::move(*next));
        moved.push_back(static_cast<int32_t>(merged.size()));
        merged.push_back(std::move(finding));
    }
    merged.insert(merged.end(), std::move_iterator(next), std::move_iterator(remarks.end()));
    for (const int32_t index : moved)
        if (int32_t &because = merged[static_cast<size_t>(index)].because; because >= 0)
            because = moved[static_cast<size_t>(because)];
    *findings = std::move(merged);
}

void suppress(std::string_view text, const std::string &file, bool all_looked_at,
              std::vector<Finding> *findings)
{
    Suppressions suppressions(text);
    for (Finding &finding : *findings)
        if (finding.place.file == file || finding.place.file.empty())
            finding.suppressed =
                suppressions.covers(finding.place.line, finding.rule, &finding.reason);
    suppress_follow_ups(findings);
    std::vector<Finding> remarks;
    for (const Suppressions::Remark &remark : suppressions.remarks(all_looked_at))
        remarks.push_back(finding_of(remark, file));
    if (!remarks.empty())
        merge(findings, std::move(remarks));
}
