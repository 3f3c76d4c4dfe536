#include "fixes.h"

#include "console.h"
#include "fingerprint.h"
#include "new_file.h"
#include "source_lines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>

namespace
{

constexpr size_t MOST_TRIALS = 32; // one by one

// A range of the text in bytes and what takes its place.
struct Replacement {
    size_t from;
    size_t to;
    std::string_view text;
};

class Fixing
{
  public:
    Fixing(const DiagnosedFile &diagnosed, const DiagnosisChoice &how)
        : file(diagnosed), choice(how), lines(file.text)
    {
        for (const BsdlFinding *found : file.findings)
            known[key_of(*found)]++;
    }
    FixedText run(FixChoice fix);

  private:
    using Findings = std::vector<const BsdlFinding *>;

    static std::string key_of(const BsdlFinding &found);
    std::string applied(const Findings &chosen) const;
    bool is_better(const std::string &text, const Findings &mended) const;

    const DiagnosedFile &file;
    const DiagnosisChoice &choice;
    SourceLines lines;
    std::map<std::string, size_t> known; // how often each finding was there
};

} // namespace

// Lines move when edits insert some, so that they are no part of it, nor are numbers of lines in
// the text.
std::string Fixing::key_of(const BsdlFinding &found)
{
    return std::string(found.rule) + ' ' + without_line_numbers(found.text);
}

// Edits that are the same are made once: one finding may mend another too. Of two that overlap the
// first is made, and the proof shows whether that is enough.
std::string Fixing::applied(const Findings &chosen) const
{
    std::vector<Replacement> replacements;
    for (const BsdlFinding *found : chosen)
        for (uint32_t i = 0; i < found->edit_count; i++) {
            const auto &[place, text] = found->edits[i];
            replacements.push_back({lines.offset(place.line, place.column),
                                    lines.offset(place.end_line, place.end_column), text});
        }
    const auto in_order = [](const Replacement &a, const Replacement &b) {
        return std::pair(a.from, a.to) < std::pair(b.from, b.to);
    };
    std::stable_sort(replacements.begin(), replacements.end(), in_order);
    std::string result;
    size_t done = 0;
    const Replacement *last = nullptr;
    for (const Replacement &each : replacements) {
        const bool repeated =
            last && last->from == each.from && last->to == each.to && last->text == each.text;
        if (repeated || each.from < done || each.to < each.from)
            continue;
        result.append(file.text, done, each.from - done).append(each.text);
        done = each.to;
        last = &each;
    }
    return result.append(file.text, done);
}

bool Fixing::is_better(const std::string &text, const Findings &mended) const
{
    const DiagnosisHandle diagnosis = diagnose_text(text, file.name, choice);
    if (!diagnosis)
        return false;
    std::map<std::string, size_t> left = known;
    for (const BsdlFinding *found : mended)
        left[key_of(*found)]--;
    for (uint32_t i = 0; i < bsdlFindingCount(diagnosis.get()); i++)
        if (size_t &count = left[key_of(*bsdlFindingAt(diagnosis.get(), i))]; count-- == 0)
            return false;
    return true;
}

FixedText Fixing::run(FixChoice fix)
{
    Findings wanted;
    for (const BsdlFinding *found : file.findings)
        if (found->edit_count && !found->suppressed && (found->fix_sure || fix == FixChoice::ALL))
            wanted.push_back(found);
    const size_t all = wanted.size();
    FixedText result = {.text = std::string(file.text)};
    if (wanted.empty())
        return result;
    Findings kept = wanted;
    std::string text = applied(kept);
    if (!is_better(text, kept)) {
        kept.clear();
        text = file.text;
        wanted.resize(std::min(wanted.size(), MOST_TRIALS));
        for (const BsdlFinding *found : wanted) {
            kept.push_back(found);
            if (std::string tried = applied(kept); is_better(tried, kept))
                text = std::move(tried);
            else
                kept.pop_back();
        }
    }
    result.text = std::move(text);
    result.mended = kept.size();
    result.refused = all - kept.size();
    return result;
}

FixedText fix_text(const DiagnosedFile &file, const DiagnosisChoice &choice, FixChoice fix)
{
    return Fixing(file, choice).run(fix);
}

bool replace_file(const DiagnosedFile &file, const std::string &text)
{
    NewFile replacement(file.path);
    replacement.write(text);
    std::string now;
    if (!read_bytes(file.path, now) || now != file.text) {
        complain(escaped(file.name) + " has changed meanwhile and is left as it is");
        return false;
    }
    return replacement.commit();
}

// ------------------------------------------------------------------------------------------ diff

namespace
{

constexpr size_t CONTEXT = 3;

using Lines = std::vector<std::string_view>; // with their ends

} // namespace

static Lines lines_of(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const size_t length = end == text.npos ? text.size() : end + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

namespace
{

// Lines of the one text that stand for lines of the other.
struct Change {
    size_t from; // in the text before
    size_t count;
    size_t to; // in the text after
    size_t to_count;
};

} // namespace

// Edits are few and small, so that the next line both texts share is near: looked for in ever wider
// steps, it is found after as many as the change has lines.
static std::vector<Change> changes_between(const Lines &before, const Lines &after)
{
    std::vector<Change> changes;
    size_t a = 0;
    size_t b = 0;
    const auto same = [&](size_t i, size_t j) {
        return i < before.size() && j < after.size() && before[i] == after[j];
    };
    const auto at_end = [&](size_t i, size_t j) { return i == before.size() && j == after.size(); };
    while (!at_end(a, b)) {
        if (same(a, b)) {
            a++;
            b++;
            continue;
        }
        Change change = {a, 0, b, 0};
        for (size_t step = 1; !change.count && !change.to_count; step++)
            for (size_t more = 0; more <= step; more++) {
                const size_t i = std::min(a + step - more, before.size());
                const size_t j = std::min(b + more, after.size());
                // Two lines in a row: blank ones are alike everywhere.
                if ((same(i, j) && (same(i + 1, j + 1) || at_end(i + 1, j + 1))) || at_end(i, j)) {
                    change.count = i - a;
                    change.to_count = j - b;
                    break;
                }
            }
        a += change.count;
        b += change.to_count;
        changes.push_back(change);
    }
    return changes;
}

static void add_line(std::string &diff, char mark, std::string_view line)
{
    diff += mark;
    diff += line;
    if (!line.ends_with('\n'))
        diff += "\n\\ No newline at end of file\n";
}

static std::string range(size_t from, size_t count)
{
    return std::to_string(count ? from + 1 : from) +
           (count == 1 ? "" : "," + std::to_string(count));
}

std::string unified_diff(const std::string &name, std::string_view before, const std::string &after)
{
    const Lines old_lines = lines_of(before);
    const Lines new_lines = lines_of(after);
    const std::vector<Change> changes = changes_between(old_lines, new_lines);
    if (changes.empty())
        return {};
    std::string diff = "--- " + name + "\n+++ " + name + "\n";
    for (size_t first = 0; first < changes.size();) {
        size_t last = first;
        while (last + 1 < changes.size() &&
               changes[last + 1].from <= changes[last].from + changes[last].count + 2 * CONTEXT)
            last++;
        const size_t ahead = std::min(changes[first].from, CONTEXT);
        const size_t start = changes[first].from - ahead;
        const size_t end =
            std::min(changes[last].from + changes[last].count + CONTEXT, old_lines.size());
        std::string body;
        size_t at = start;
        size_t added = 0;
        size_t removed = 0;
        for (; first <= last; first++) {
            const Change &change = changes[first];
            for (; at < change.from; at++)
                add_line(body, ' ', old_lines[at]);
            for (size_t i = 0; i < change.count; i++)
                add_line(body, '-', old_lines[at++]);
            for (size_t i = 0; i < change.to_count; i++)
                add_line(body, '+', new_lines[change.to + i]);
            added += change.to_count;
            removed += change.count;
        }
        for (; at < end; at++)
            add_line(body, ' ', old_lines[at]);
        const Change &start_change = changes[last];
        const size_t new_count = end - start + added - removed;
        // Where the last change ends in both texts tells where the hunk begins in the new one.
        const size_t new_end = start_change.to + start_change.to_count +
                               (end - start_change.from - start_change.count);
        diff += "@@ -" + range(start, end - start) + " +" + range(new_end - new_count, new_count) +
                " @@\n" + body;
    }
    return diff;
}
