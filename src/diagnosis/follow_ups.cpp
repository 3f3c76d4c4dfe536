#include "diagnosis/follow_ups.h"

#include <algorithm>
#include <map>
#include <utility>

namespace
{

struct FollowUp {
    std::string_view cause;
    std::string_view follower;
};

// Of each pair the second cannot but fail where the first does.
constexpr FollowUp FOLLOW_UPS[] = {
    {"package-not-found", "package-missing"},
    {"package-not-found", "cell-name-unknown"},
    {"package-not-found", "extension-undeclared"},
    {"package-not-found", "aio-missing"},
    {"package-not-found", "isc-missing"},
    {"package-not-opened", "package-missing"},
    {"package-not-opened", "cell-name-unknown"},
    {"pattern-not-32-bits", "idcode-length"},
    {"pattern-not-32-bits", "usercode-length"},
    {"pin-mapping-missing", "pin-mapping-first-used"},
    {"pin-mapping-missing", "scan-port-missing"},
    {"pin-mapping-unspecified", "pin-mapping-first-used"},
    {"pin-mapping-unspecified", "scan-port-missing"},
    {"pin-mapping-unknown", "scan-port-missing"},
    {"pin-count-mismatch", "scan-port-missing"},
    {"mapped-port-undeclared", "scan-port-missing"},
    {"port-not-mapped", "scan-port-missing"},
    {"pin-id-not-unique", "scan-port-missing"},
    {"opcode-length", "opcode-all-zeros"},
    {"opcode-length", "opcode-all-ones"},
    {"opcode-length", "opcode-duplicate"},
    {"opcode-length", "opcode-ambiguous"},
    {"port-name-not-unique", "mapped-port-undeclared"},
    {"cell-number-missing", "pin-without-cell"},
    {"cell-number-missing", "out-port-without-driver"},
    {"cell-number-missing", "buffer-port-without-driver"},
    {"cell-number-missing", "inout-port-without-input"},
    {"cell-number-missing", "representative-port-without-cell"},
    {"cell-number-missing", "control-cell-range"},
    {"cell-number-missing", "control-cell-function"},
    {"cell-number-missing", "control-cell-unused"},
    {"cell-number-missing", "aio-input-cell-unknown"},
    {"cell-number-missing", "aio-select-cell-unknown"},
    {"cell-number-missing", "merged-cell-no-input"},
    {"mapped-port-undeclared", "port-not-mapped"},
    {"mapped-port-undeclared", "cell-port-undefined"},
    {"opcode-duplicate", "public-instruction-without-register"},
    {"aio-missing", "aio-pins-missing"},
};

// A missing row explains at most so many findings of one rule. If there are more, they have another
// cause.
constexpr size_t MOST_OF_A_RULE = 2;

} // namespace

// Whether a rule reports that something is missing.
static bool tells_of_absence(std::string_view rule)
{
    static constexpr std::string_view WORDS[] = {"missing",    "unknown",       "without",
                                                 "undefined",  "undeclared",    "unspecified",
                                                 "not-mapped", "not-associated"};
    static constexpr std::string_view OTHERS[] = {"check-failed", "pin-mapping-first-used",
                                                  "capture-source-of-output", "statement-skipped",
                                                  "control-cell-unused"};
    return std::any_of(std::begin(WORDS), std::end(WORDS),
                       [&](std::string_view word) { return rule.find(word) != rule.npos; }) ||
           std::find(std::begin(OTHERS), std::end(OTHERS), rule) != std::end(OTHERS);
}

// Rules about single words. After a statement that could not be read, the reader goes on in a wrong
// place and reports words that are right where they stand.
static bool is_of_words(std::string_view rule)
{
    return rule == "illegal-identifier" || rule == "illegal-character" || rule == "vhdl-keyword" ||
           rule == "incomplete-string" || rule == "syntax-error";
}

static Draft *first_of(const Drafts &drafts, std::string_view rule)
{
    for (const auto &draft : drafts)
        if (draft->said.rule == rule && !draft->because)
            return draft.get();
    return nullptr;
}

static bool is_open(const Draft &draft)
{
    return !draft.because && draft.edits.empty() && !draft.is_note;
}

void find_follow_ups(Drafts &drafts, Draft *broken)
{
    if (broken)
        for (const auto &draft : drafts)
            if (is_open(*draft) && draft.get() != broken &&
                (tells_of_absence(draft->said.rule) || is_of_words(draft->said.rule)) &&
                draft->said.rule != "package-not-found")
                draft->because = broken;
    for (const FollowUp &row : FOLLOW_UPS) {
        Draft *cause = first_of(drafts, row.cause);
        if (!cause || !cause->edits.empty())
            continue; // an edit has shown what follows
        std::vector<Draft *> followers;
        for (const auto &draft : drafts)
            if (draft->said.rule == row.follower && is_open(*draft) &&
                (row.follower != "scan-port-missing" || draft->name_is_declared))
                followers.push_back(draft.get());
        const auto causes =
            static_cast<size_t>(std::count_if(drafts.begin(), drafts.end(), [&](const auto &draft) {
                return draft->said.rule == row.cause && !draft->because;
            }));
        if (row.cause == "cell-number-missing" && followers.size() > MOST_OF_A_RULE * causes)
            continue;
        for (Draft *follower : followers)
            follower->because = cause;
    }
    // A check that failed without an error of its own follows from the first other error.
    const auto error = std::find_if(drafts.begin(), drafts.end(), [](const auto &draft) {
        return draft->said.level == BSDL_LEVEL_ERROR && !draft->because && !draft->is_note &&
               draft->said.rule != "check-failed";
    });
    if (error != drafts.end())
        for (const auto &draft : drafts)
            if (draft->said.rule == "check-failed" && is_open(*draft))
                draft->because = error->get();
}

// The name that a finding is about: what stands at its place when that is one word.
static bool is_word(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               c == '_' || c == '.';
    });
}

void fold_alike(std::string_view text, Drafts &drafts)
{
    std::map<std::pair<std::string, std::string>, Draft *> firsts;
    Drafts kept;
    for (auto &draft : drafts) {
        const std::string_view name = draft->name_in(text);
        const bool of_name = is_word(name) && draft->said.rule.ends_with("-unknown");
        const bool of_place = draft->has_place();
        if (of_name || of_place) {
            std::string subject =
                of_name ? std::string(name)
                        : std::to_string(draft->begin) + '-' + std::to_string(draft->end);
            const auto [first, is_new] =
                firsts.try_emplace({draft->said.rule, std::move(subject)}, draft.get());
            if (!is_new) {
                first->second->count++;
                first->second->alike.push_back({draft->begin, draft->end});
                continue;
            }
        }
        kept.push_back(std::move(draft));
    }
    drafts = std::move(kept);
}
