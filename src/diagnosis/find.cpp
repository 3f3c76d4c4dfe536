#include "diagnosis/find.h"

#include "diagnosis/follow_ups.h"
#include "diagnosis/mend.h"
#include "diagnosis/repair.h"
#include "frame/model.h"
#include "ports/ports.h"

#include <algorithm>
#include <map>
#include <memory>
#include <tuple>
#include <utility>

namespace
{

// The part of the work that proofs of repairs may spend.
constexpr size_t BYTES_OF_REPAIRS = size_t{48} << 20;
constexpr size_t MOST_PIN_MAPS = 32;

// The text as it can be read, checked. One without a mistake of syntax, as most are, is read once.
MendedText mended_and_checked(std::string_view text, ReadingOptions *options, Work *work,
                              CheckedText *checked)
{
    *checked = check_text(text, *options);
    const auto keeps_from_reading = [&](const Said &said) {
        return said.level == BSDL_LEVEL_ERROR && said.file == options->file_name &&
               is_syntax_mistake(said.rule.c_str());
    };
    if (std::none_of(checked->messages.begin(), checked->messages.end(), keeps_from_reading)) {
        work->spend(text.size());
        return {.edited = EditedText(text)};
    }
    *checked = {}; // its memory
    MendedText mended = mend_text(text, options, work);
    *checked = check_text(mended.edited.text(), *options);
    return mended;
}

// One text on its way.
class Search
{
  public:
    Search(std::string_view text, ReadingOptions *how, Work *budget)
        : original(text), options(how), work(budget),
          mended(mended_and_checked(text, how, budget, &found.checked)), lines(text),
          mended_lines(mended.edited.text())
    {
    }
    Found run();

  private:
    void check_each_pin_map();
    void draft_mends();
    void draft_missing_packages();
    void draft_messages();
    void doubt_mends();
    void say_what_was_not_checked();
    void to_findings();
    Finding finding_of(const Draft &draft, const Mend *mend) const;
    const std::string &text() const { return mended.edited.text(); }
    Draft *add(Draft draft);
    void set_place(Draft &draft) const;
    bool is_told(const Said &said, size_t at) const;
    FoundPlace original_place(const Draft &draft) const;
    FoundPlace place_of(size_t begin, size_t end) const;

    std::string_view original;
    ReadingOptions *options;
    Work *work;
    Found found;
    MendedText mended;
    Lines lines; // of the original
    Lines mended_lines;
    Drafts drafts;
    std::map<const Draft *, const Mend *> mend_of;
    std::string pin_map;     // that the drafts are about, where the default names none
    Draft *broken = nullptr; // the first statement that could not be read
};

} // namespace

static std::string trimmed(const std::string &text)
{
    constexpr const char *BLANKS = " \t\r\n";
    const size_t begin = text.find_first_not_of(BLANKS);
    if (begin == std::string::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(BLANKS) - begin + 1);
}

static int32_t severity_of(const Said &said)
{
    // The codes of the two levels that tell of mistakes are those of the severities.
    return said.rule.empty() || said.level > BSDL_LEVEL_WARNING ? +BSDL_SEVERITY_NOTE : said.level;
}

static bool tells_a_mistake(const Said &said)
{
    return said.level <= BSDL_LEVEL_WARNING && !said.rule.empty();
}

Draft *Search::add(Draft draft)
{
    drafts.push_back(std::make_unique<Draft>(std::move(draft)));
    return drafts.back().get();
}

void Search::set_place(Draft &draft) const
{
    const Said &said = draft.said;
    if (!said.line || said.file != options->file_name)
        return;
    draft.begin = mended_lines.offset_of(said.line, said.column);
    draft.end = std::max(draft.begin, mended_lines.offset_of(said.end_line, said.end_column));
}

// ----------------------------------------------------------------------------- from text to drafts

// A package that the description leaves open is no mistake: every pin map is checked, and what only
// some of them show carries their names.
void Search::check_each_pin_map()
{
    const auto leaves_open = [](const Said &said) {
        return said.rule == "pin-mapping-missing" || said.rule == "pin-mapping-unspecified";
    };
    const std::vector<Said> &messages = found.checked.messages;
    const auto choice = std::find_if(messages.begin(), messages.end(), leaves_open);
    const Bsdl *bsdl = found.checked.bsdl.get();
    if (options->package || !bsdl || !bsdl->data || choice == messages.end())
        return;
    std::vector<std::string> maps;
    for (const PinMapEntry *map : items<PinMapEntry>(bsdl->data->pin_maps))
        if (map && maps.size() < MOST_PIN_MAPS)
            maps.emplace_back(map->name);
    if (maps.empty())
        return;

    std::string names;
    for (const std::string &map : maps)
        names += (names.empty() ? "" : ", ") + map;
    Draft note = {.said = *choice,
                  .hint = "the description leaves the package open; checked with " + names,
                  .is_note = true};
    set_place(note);
    add(std::move(note));

    struct Seen {
        Said said;
        std::vector<size_t> maps;
    };
    std::vector<Seen> all;
    std::map<std::pair<std::string, std::string>, size_t> known;
    for (size_t i = 0; i < maps.size(); i++) {
        ReadingOptions with_map = *options;
        with_map.package = maps[i].c_str();
        CheckedText checked = check_text(text(), with_map);
        for (Said &said : checked.messages) {
            if (!tells_a_mistake(said))
                continue;
            const auto [place, is_new] = known.try_emplace({said.rule, said.text}, all.size());
            if (is_new)
                all.push_back({said, {}});
            std::vector<size_t> &of = all[place->second].maps;
            if (is_new || of.back() != i)
                of.push_back(i);
        }
        if (i == 0)
            found.checked = std::move(checked);
    }
    pin_map = maps.front();
    found.checked.messages.clear();
    for (Seen &seen : all) {
        if (seen.maps.size() < maps.size())
            seen.said.pin_map = maps[seen.maps.front()];
        found.checked.messages.push_back(std::move(seen.said));
    }
}

void Search::draft_mends()
{
    for (const Mend &mend : mended.mends) {
        Draft *draft =
            add({.said = mend.said, .hint = mend.hint, .fix = mend.fix, .sure = mend.sure});
        mend_of.emplace(draft, &mend);
        if (mend.edits.empty() && !broken)
            broken = draft;
    }
}

void Search::draft_missing_packages()
{
    for (const Said &said : mended.packages_missing) {
        Draft draft = {.said = said};
        set_place(draft);
        add(std::move(draft));
    }
}

// What is wrong with a statement that was set aside has been said.
bool Search::is_told(const Said &said, size_t at) const
{
    if (!is_syntax_mistake(said.rule.c_str()) && said.rule != "statement-skipped")
        return false;
    return std::any_of(mended.aside.begin(), mended.aside.end(),
                       [&](const TextRange &range) { return at >= range.begin && at < range.end; });
}

void Search::draft_messages()
{
    for (const Said &said : found.checked.messages) {
        if (!tells_a_mistake(said))
            continue;
        Draft draft = {.said = said};
        set_place(draft);
        if (draft.has_place() && is_told(said, draft.begin))
            continue;
        Draft *added = add(std::move(draft));
        if (mended.gave_up && !broken && is_syntax_mistake(said.rule.c_str()))
            broken = added;
    }
}

// An edit is not sure when the rules find something in the statement that it has mended.
void Search::doubt_mends()
{
    for (const auto &mend_draft : drafts) {
        const auto mend = mend_of.find(mend_draft.get());
        if (mend == mend_of.end() || mend->second->edits.empty())
            continue;
        const size_t at = mended.edited.from_original(mend->second->edits.front().begin);
        const TextRange statement = statement_around(text(), at);
        for (const auto &other : drafts)
            if (other->has_place() && !other->is_note && other->begin >= statement.begin &&
                other->begin < statement.end)
                mend_draft->sure = false;
    }
}

// ------------------------------------------------------------------------- from drafts to findings

FoundPlace Search::place_of(size_t begin, size_t end) const
{
    return {.file = options->file_name,
            .line = lines.line_of(begin),
            .column = lines.column_of(begin),
            .end_line = lines.line_of(end),
            .end_column = lines.column_of(end)};
}

FoundPlace Search::original_place(const Draft &draft) const
{
    if (!draft.has_place())
        return {draft.said.file, draft.said.line, draft.said.column, draft.said.end_line,
                draft.said.end_column};
    const size_t begin = mended.edited.to_original(draft.begin);
    return place_of(begin, std::max(begin, mended.edited.to_original(draft.end)));
}

Finding Search::finding_of(const Draft &draft, const Mend *mend) const
{
    Finding finding = {.severity = draft.is_note ? +BSDL_SEVERITY_NOTE : severity_of(draft.said),
                       .rule = draft.said.rule,
                       .place = original_place(draft),
                       .text = trimmed(draft.said.text),
                       .hint = draft.hint,
                       .fix = draft.fix,
                       .edits = {},
                       .sure = draft.sure,
                       .related = {},
                       .count = draft.count,
                       .pin_map = draft.said.pin_map};
    std::vector<TextEdit> edits;
    if (mend) {
        edits = mend->edits;
        finding.place = edits.empty() ? place_of(mend->told_of.begin, mend->told_of.end)
                                      : place_of(edits.front().begin, edits.back().end);
        if (finding.place.end_line > finding.place.line && edits.size() > 1) // far apart
            finding.place = place_of(edits.front().begin, edits.front().end);
    } else if (auto in_original = mended.edited.in_original(draft.edits)) {
        edits = std::move(*in_original);
    }
    for (TextEdit &edit : edits)
        finding.edits.push_back({place_of(edit.begin, edit.end), std::move(edit.text)});
    if (edits.empty())
        finding.fix.clear();
    for (const std::string &folder : draft.said.searched) {
        const FoundPlace place = {.file = folder};
        finding.related.push_back({place, "searched in this folder"});
    }
    for (const auto &[range, text] : draft.related)
        finding.related.push_back(
            {place_of(mended.edited.to_original(range.begin), mended.edited.to_original(range.end)),
             text});
    return finding;
}

void Search::to_findings()
{
    std::vector<std::pair<const Draft *, Finding>> all;
    for (const auto &draft : drafts) {
        const auto mend = mend_of.find(draft.get());
        all.emplace_back(draft.get(),
                         finding_of(*draft, mend == mend_of.end() ? nullptr : mend->second));
    }
    const auto key = [&](const Finding &finding) {
        return std::tuple(finding.place.file != options->file_name, finding.place.line,
                          finding.place.column);
    };
    const auto order = [&](const auto &each) {
        return std::tuple(key(each.second), each.first->because != nullptr);
    };
    std::stable_sort(all.begin(), all.end(),
                     [&](const auto &a, const auto &b) { return order(a) < order(b); });
    std::map<const Draft *, int32_t> index;
    for (const auto &[draft, finding] : all)
        index.emplace(draft, static_cast<int32_t>(index.size()));
    for (auto &[draft, finding] : all) {
        const Draft *cause = draft->because;
        while (cause && cause->because)
            cause = cause->because;
        if (cause)
            finding.because = index.at(cause);
        found.findings.push_back(std::move(finding));
    }
}

void Search::say_what_was_not_checked()
{
    if (mended.gave_up && broken)
        found.unchecked = "checked up to line " + std::to_string(original_place(*broken).line) +
                          "; what follows only as far as the reader could go on";
}

Found Search::run()
{
    draft_mends();
    draft_missing_packages();
    check_each_pin_map();
    draft_messages();
    doubt_mends();
    fold_alike(text(), drafts);
    Work repairs = *work;
    repairs.bytes_left = std::min(repairs.bytes_left, BYTES_OF_REPAIRS);
    repair_findings({text(), *options, found.checked, pin_map, &repairs}, drafts);
    work->was_cancelled |= repairs.was_cancelled;
    find_follow_ups(drafts, broken);
    say_what_was_not_checked();
    to_findings();
    found.text = mended.edited.take_text();
    return std::move(found);
}

Found find(std::string_view text, ReadingOptions *options, Work *work)
{
    return Search(text, options, work).run();
}

Found found_as_read(std::string_view text, const ReadingOptions &options, uint32_t verbosity)
{
    Found found = {.text = std::string(text), .checked = check_text(text, options), .findings = {}};
    for (const Said &said : found.checked.messages) {
        if (verbosity ? said.verbosity > verbosity : !tells_a_mistake(said))
            continue;
        found.findings.push_back(
            {.severity = severity_of(said),
             .rule = said.rule,
             .place = {said.file, said.line, said.column, said.end_line, said.end_column},
             .text = said.text});
    }
    return found;
}
