#include "diagnosis/mend.h"

#include "base/names.h"
#include "diagnosis/near_words.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr size_t MOST_MENDS = 100;
// After a mend at least so many tokens have to read, or it has only shifted the mistake.
constexpr size_t TOKENS_OF_PROGRESS = 4;
// Quotes that go or come turn text into string and back: that reads on for a while whatever it is.
constexpr size_t TOKENS_OF_PROGRESS_OF_QUOTES = 60;
// One that reads so many bytes on is as good as one that reads to the end.
constexpr size_t FAR_ENOUGH = 4000;
constexpr size_t MOST_TIES = 12;
constexpr size_t MOST_PACKAGES = 16;

struct Attempt {
    Candidate candidate;
    std::vector<TextEdit> in_original;
    size_t far; // in bytes of the text before the edit
    size_t findings = 0;
};

class Mender
{
  public:
    Mender(std::string_view text, ReadingOptions *how, Work *budget)
        : result{.edited = EditedText(text), .mends = {}, .aside = {}, .packages_missing = {}},
          options(*how), work(budget)
    {
        find_component();
    }

    MendedText run();

  private:
    void find_component();
    bool mend(const Trial &mistake);
    bool set_aside(const Trial &mistake);
    bool stand_in_for_package(const Trial &mistake);
    bool read_as_known_standard(const Trial &mistake);
    std::vector<Attempt> furthest_attempts(const Trial &mistake);
    void keep_one_of_each_meaning(std::vector<Attempt> &attempts) const;
    void keep_least_findings(std::vector<Attempt> &attempts);
    size_t count_findings(const std::string &edited) const;
    Trial trial(const std::string &edited, const std::vector<TextEdit> &edits,
                const TextRange &read_before = {});
    TextRange told_of(const Trial &mistake) const
    {
        return {result.edited.to_original(mistake.far), result.edited.to_original(mistake.far_end)};
    }
    const std::string &text() const { return result.edited.text(); }

    MendedText result;
    ReadingOptions &options;
    Work *work;
    std::string component;
};

} // namespace

void Mender::find_component()
{
    RawToken token;
    for (size_t at = 0; next_raw_token(text(), at, &token); at = token.end) {
        if (slips_between(token.in(text()), "ENTITY", 0) != 0)
            continue;
        if (next_raw_token(text(), token.end, &token) && token.kind == RawKind::WORD)
            component = token.in(text());
        return;
    }
}

// --------------------------------------------------------------------------------------- attempts

static ptrdiff_t shift_of(const std::vector<TextEdit> &edits)
{
    ptrdiff_t shift = 0;
    for (const TextEdit &edit : edits)
        shift += static_cast<ptrdiff_t>(edit.text.size()) -
                 static_cast<ptrdiff_t>(edit.end - edit.begin);
    return shift;
}

static std::vector<TextRange> shifted(std::vector<TextRange> ranges,
                                      const std::vector<TextEdit> &edits)
{
    const auto shift = static_cast<size_t>(shift_of(edits));
    for (TextRange &range : ranges)
        if (range.begin >= edits.front().begin) {
            range.begin += shift;
            range.end += shift;
        }
    return ranges;
}

// The place of the first mistake is that in the text before the edits. A string is read to its end
// before what is in it: an edit that completes one may bring out a mistake far in front of it,
// which has its turn later.
Trial Mender::trial(const std::string &edited, const std::vector<TextEdit> &edits,
                    const TextRange &read_before)
{
    std::vector<TextRange> aside = shifted(result.aside, edits);
    Trial trial = read_to_first_mistake(edited, options, aside, work);
    if (trial.far >= read_before.begin && trial.far < read_before.end &&
        (edits.front().text == "&" || edits.front().text == "\"")) {
        aside.push_back({trial.far, edits.front().begin});
        trial = read_to_first_mistake(edited, options, aside, work);
    }
    if (trial.far != READS_TO_THE_END && trial.far > edits.back().begin)
        trial.far -= static_cast<size_t>(shift_of(edits));
    return trial;
}

static size_t behind_tokens(std::string_view text, size_t place, size_t count)
{
    RawToken token = {place, place, RawKind::MARK};
    while (count > 0 && next_raw_token(text, token.end, &token))
        count--;
    return token.begin;
}

static bool changes_quotes(std::string_view text, const std::vector<TextEdit> &edits)
{
    return std::any_of(edits.begin(), edits.end(), [&](const TextEdit &edit) {
        const std::string_view old = text.substr(edit.begin, edit.end - edit.begin);
        return std::count(old.begin(), old.end(), '"') !=
               std::count(edit.text.begin(), edit.text.end(), '"');
    });
}

// One quotation mark too many or too few makes a string of all that follows, up to the next one.
static bool leaves_string_open(std::string_view edited, const std::vector<TextEdit> &edits)
{
    const size_t end = edits.back().end + static_cast<size_t>(shift_of(edits));
    return !strings_end_on_their_lines(edited, {edits.front().begin, end});
}

// Those that read furthest, and of these the ones of least cost.
std::vector<Attempt> Mender::furthest_attempts(const Trial &mistake)
{
    const size_t least = behind_tokens(text(), mistake.far, TOKENS_OF_PROGRESS);
    const size_t least_of_quotes = behind_tokens(text(), mistake.far, TOKENS_OF_PROGRESS_OF_QUOTES);
    const TextRange read_before = {statement_around(text(), mistake.far).begin,
                                   begin_of_window(text(), mistake.far)};
    const bool lines_close_strings = strings_end_on_their_lines(text(), {0, read_before.begin});
    std::vector<Attempt> best;
    for (Candidate &candidate : mend_candidates(text(), mistake.far, component)) {
        if (!best.empty() && candidate.cost > best.front().candidate.cost &&
            (best.front().far == READS_TO_THE_END || best.front().far > mistake.far + FAR_ENOUGH))
            break;
        if (work->bytes_left == 0 || work->was_cancelled)
            break;
        auto in_original = result.edited.in_original(candidate.edits);
        if (!in_original)
            continue;
        const std::string edited = apply_edits(text(), candidate.edits);
        const bool quotes = changes_quotes(text(), candidate.edits);
        if (quotes && lines_close_strings && leaves_string_open(edited, candidate.edits))
            continue;
        const size_t far = trial(edited, candidate.edits, read_before).far;
        if (far < (quotes ? least_of_quotes : least))
            continue;
        if (!best.empty() && far > best.front().far)
            best.clear();
        if (best.empty() ||
            (far == best.front().far && candidate.cost == best.front().candidate.cost))
            best.push_back({std::move(candidate), std::move(*in_original), far});
    }
    return best;
}

// Edits that differ only in blanks and in which of two joined strings a mark goes into come to the
// same. The form stays that the text has elsewhere.
static std::string meaning_around(const std::string &edited, size_t begin, size_t end)
{
    constexpr size_t AROUND = 300;
    const size_t from = begin > AROUND ? begin - AROUND : 0;
    std::string result;
    RawToken token;
    for (size_t at = from; next_raw_token(edited, at, &token) && token.begin < end + AROUND;
         at = token.end) {
        result += token.in(edited);
        if (token.kind == RawKind::WORD)
            result += ' ';
    }
    for (size_t at = result.find("\"&\""); at != std::string::npos; at = result.find("\"&\"", at))
        result.erase(at, 3);
    return result;
}

void Mender::keep_one_of_each_meaning(std::vector<Attempt> &attempts) const
{
    // The window is the same for all, wherever in it the edit lies.
    size_t begin = SIZE_MAX;
    size_t end = 0;
    for (const Attempt &attempt : attempts) {
        begin = std::min(begin, attempt.candidate.edits.front().begin);
        end = std::max(end, attempt.candidate.edits.back().end);
    }
    std::vector<std::string> meanings;
    std::vector<Attempt> kept;
    for (Attempt &attempt : attempts) {
        const auto &edits = attempt.candidate.edits;
        const auto shift = static_cast<size_t>(shift_of(edits));
        std::string meaning = meaning_around(apply_edits(text(), edits), begin, end + shift);
        const auto same = std::find(meanings.begin(), meanings.end(), meaning);
        if (same == meanings.end()) {
            meanings.push_back(std::move(meaning));
            kept.push_back(std::move(attempt));
        } else {
            Attempt &other = kept[static_cast<size_t>(same - meanings.begin())];
            if (edits.front().begin < other.candidate.edits.front().begin)
                other = std::move(attempt);
        }
    }
    attempts = std::move(kept);
}

size_t Mender::count_findings(const std::string &edited) const
{
    work->spend(READ_AND_CHECKED * edited.size());
    const CheckedText checked = check_text(edited, options);
    const auto counts = [](const Said &said) {
        return said.level <= BSDL_LEVEL_WARNING && !said.rule.empty();
    };
    return static_cast<size_t>(
        std::count_if(checked.messages.begin(), checked.messages.end(), counts));
}

void Mender::keep_least_findings(std::vector<Attempt> &attempts)
{
    if (attempts.size() < 2)
        return;
    if (attempts.size() > MOST_TIES)
        attempts.resize(MOST_TIES);
    size_t least = SIZE_MAX;
    for (Attempt &attempt : attempts) {
        attempt.findings = count_findings(apply_edits(text(), attempt.candidate.edits));
        least = std::min(least, attempt.findings);
    }
    std::erase_if(attempts, [&](const Attempt &each) { return each.findings > least; });
    const auto place = [](const Attempt &each) { return each.candidate.edits.front().begin; };
    std::stable_sort(attempts.begin(), attempts.end(),
                     [&](const Attempt &a, const Attempt &b) { return place(a) < place(b); });
}

bool Mender::mend(const Trial &mistake)
{
    std::vector<Attempt> attempts = furthest_attempts(mistake);
    if (attempts.empty())
        return false;
    keep_one_of_each_meaning(attempts);
    keep_least_findings(attempts);
    Attempt &best = attempts.front();
    result.mends.push_back(
        {.said = mistake.first,
         .told_of = told_of(mistake),
         .edits = best.in_original,
         .sure = attempts.size() == 1 && best.candidate.certain_words && !result.standard_unknown,
         .hint = std::move(best.candidate.hint),
         .fix = std::move(best.candidate.fix)});
    result.aside = shifted(std::move(result.aside), best.candidate.edits);
    result.edited.apply(best.in_original);
    find_component();
    return true;
}

// ----------------------------------------------------------------------------------- setting aside

// The reader goes over a statement without a value, or without the statement; blanks keep all else
// where it is.
bool Mender::set_aside(const Trial &mistake)
{
    const TextRange statement = statement_around(text(), mistake.far);
    RawToken token;
    size_t value = statement.begin;
    for (size_t at = statement.begin;
         next_raw_token(text(), at, &token) && token.end < statement.end; at = token.end) {
        if (slips_between(token.in(text()), "IS", 0) == 0 || text()[token.begin] == '=') {
            value = token.end;
            break;
        }
        if (text()[token.begin] == '"')
            break;
    }
    for (const size_t from : {value, statement.begin}) {
        if (statement.end - from < 2)
            continue;
        std::string blanks(text(), from, statement.end - 1 - from);
        for (char &c : blanks)
            if (c != '\n' && c != '\r')
                c = ' ';
        const std::vector<TextEdit> edits = {
            {from, statement.end - (from == value ? 1 : 0), from == value ? blanks : blanks + " "}};
        auto in_original = result.edited.in_original(edits);
        if (!in_original)
            continue;
        std::vector<TextRange> aside = std::exchange(result.aside, {});
        result.aside = aside;
        result.aside.push_back(statement);
        if (trial(apply_edits(text(), edits), edits).far <= statement.end) {
            result.aside = std::move(aside);
            continue;
        }
        result.mends.push_back({.said = mistake.first,
                                .told_of = told_of(mistake),
                                .edits = {},
                                .sure = false,
                                .hint = "this statement could not be read; it was set aside, and "
                                        "what it says was not checked",
                                .fix = {}});
        result.edited.apply(*in_original);
        return true;
    }
    return false;
}

// ----------------------------------------------------------------------- what is not there to read

// A package that is not found ends the reading of a description. An empty one in its place keeps it
// going; what it would have declared is then missing, and nothing else.
bool Mender::stand_in_for_package(const Trial &mistake)
{
    if (mistake.first.rule != "package-not-found")
        return false;
    const std::string &said = mistake.first.text;
    const size_t open = said.find('\'');
    const size_t close = said.rfind('\'');
    if (open == std::string::npos || close <= open)
        return false;
    const std::string file = said.substr(open + 1, close - open - 1);
    const std::string name = file.substr(0, file.find('.'));
    const auto is_it = [&](const BsdlPackageText &package) {
        return same_text(package.name, file.c_str());
    };
    if (name.empty() || result.packages_missing.size() == MOST_PACKAGES ||
        std::any_of(options.packages.begin(), options.packages.end(), is_it))
        return false;
    // As it is read without: where it was searched is said too.
    CheckedText missing = check_text(text(), options);
    const std::string &kept_name = options.stand_ins.emplace_back(file);
    const std::string &kept_text = options.stand_ins.emplace_back(
        "package " + name + " is end " + name + "; package body " + name + " is end " + name + ";");
    options.packages.push_back({.name = kept_name.c_str(),
                                .file_name = "",
                                .text = kept_text.c_str(),
                                .length = kept_text.size()});
    for (Said &each : missing.messages)
        if (each.line == mistake.first.line &&
            (each.rule == "package-not-found" || each.rule == "package-missing"))
            result.packages_missing.push_back(std::move(each));
    return true;
}

// The newest standard that is known here stands for a later one. Statements that are new in it are
// set aside where the reader comes to them, and new kinds of ports are none that take part in
// tests.
bool Mender::read_as_known_standard(const Trial &mistake)
{
    constexpr std::string_view FAMILY = "STD_1149_1_";
    constexpr const char *NEWEST = "STD_1149_1_2001";
    RawToken token;
    if (mistake.first.rule != "standard-unknown" || !next_raw_token(text(), mistake.far, &token))
        return false;
    const std::string word(token.in(text()).substr(0, token.in(text()).find('.')));
    if (word.size() != FAMILY.size() + 4 ||
        slips_between(std::string_view(word).substr(0, FAMILY.size()), FAMILY, 0) != 0 ||
        word.compare(FAMILY.size(), 4, "2001") <= 0)
        return false;
    const TextRange name = {result.edited.to_original(token.begin),
                            result.edited.to_original(token.begin + word.size())};
    result.mends.push_back({.said = mistake.first,
                            .told_of = name,
                            .edits = {},
                            .sure = false,
                            .hint = "this standard is not known here; the description is read as "
                                    "one of STD_1149_1_2001",
                            .fix = {}});
    std::vector<TextEdit> edits;
    const size_t standard = token.begin;
    for (size_t at = 0; next_raw_token(text(), at, &token) && token.begin < standard;
         at = token.end)
        for (const std::string_view kind : {"LINKAGE_", "POWER_", "VREF_"})
            if (token.end - token.begin > kind.size() &&
                slips_between(token.in(text()).substr(0, kind.size()), kind, 0) == 0)
                edits.push_back({token.begin, token.end, "linkage"});
    edits.push_back({standard, standard + word.size(), NEWEST});
    auto in_original = result.edited.in_original(edits);
    if (!in_original)
        return false;
    result.edited.apply(*in_original);
    result.standard_unknown = true;
    return true;
}

MendedText Mender::run()
{
    while (!work->was_cancelled) {
        const Trial mistake = read_to_first_mistake(text(), options, result.aside, work);
        if (mistake.far == READS_TO_THE_END)
            break;
        if (stand_in_for_package(mistake) || read_as_known_standard(mistake))
            continue;
        result.gave_up =
            result.mends.size() == MOST_MENDS || !(mend(mistake) || set_aside(mistake));
        if (result.gave_up)
            break;
    }
    return std::move(result);
}

MendedText mend_text(std::string_view text, ReadingOptions *options, Work *work)
{
    return Mender(text, options, work).run();
}
