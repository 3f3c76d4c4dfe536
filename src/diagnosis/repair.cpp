#include "diagnosis/repair.h"

#include "boundary/boundary.h"
#include "diagnosis/near_words.h"
#include "header/header.h"
#include "ports/ports.h"
#include "registers/registers.h"
#include "scan/keywords.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <tuple>

namespace
{

// What a name in the text may stand for.
enum class NameKind : uint8_t { PORT, CELL, INSTRUCTION, REGISTER, PIN_MAP, ATTRIBUTE };

// Rules about a name that nothing declares.
struct NameRule {
    std::string_view rule;
    NameKind kind;
    const char *noun;
};

constexpr NameRule NAME_RULES[] = {
    {"mapped-port-undeclared", NameKind::PORT, "port"},
    {"representative-port-missing", NameKind::PORT, "port"},
    {"associated-port-missing", NameKind::PORT, "port"},
    {"scan-port-missing", NameKind::PORT, "port"},
    {"compliance-port-missing", NameKind::PORT, "port"},
    {"cell-port-undefined", NameKind::PORT, "port"},
    {"duration-port-no-clock", NameKind::PORT, "port"},
    {"aio-port-unknown", NameKind::PORT, "port"},
    {"isc-fixed-pin-unknown", NameKind::PORT, "port"},
    {"cell-name-unknown", NameKind::CELL, "cell"},
    {"register-instruction-unknown", NameKind::INSTRUCTION, "instruction"},
    {"isc-illegal-exit-unknown", NameKind::INSTRUCTION, "instruction"},
    {"isc-activity-instruction-unknown", NameKind::INSTRUCTION, "instruction"},
    {"register-length-missing", NameKind::REGISTER, "register"},
    {"pin-mapping-missing", NameKind::PIN_MAP, "pin map"},
    {"pin-mapping-unknown", NameKind::PIN_MAP, "pin map"},
    {"extension-undeclared", NameKind::ATTRIBUTE, "attribute"},
};

// Where names of a kind are declared.
struct Declarations {
    NameKind kind;
    std::string_view statement; // the word that its statement begins with, after "attribute"
};

constexpr Declarations DECLARED_IN[] = {{NameKind::PORT, "PORT"},
                                        {NameKind::INSTRUCTION, "INSTRUCTION_OPCODE"}};

// Registers that need no declaration.
constexpr const char *STANDARD_REGISTERS[] = {"BOUNDARY", "BYPASS", "DEVICE_ID"};

struct Proposal {
    std::vector<TextEdit> edits;
    std::string hint;
    std::string fix;
    size_t least_gone = 1; // so many messages it has to do away with
};

constexpr size_t MOST_PROPOSALS = 6; // for one finding

// A row of the boundary register table: its number, and all of it.
struct Row {
    TextRange number;
    TextRange whole;
};

// What messages say, to be compared before and after an edit.
using Messages = std::multiset<std::string>;

class Repairs
{
  public:
    Repairs(const RepairScene &where, Drafts &all) : scene(where), text(where.text), drafts(all) {}
    void run();

  private:
    void repair_names();
    void repair_numbers();
    void repair_lengths();
    void part_pins();
    void part_opcodes();
    void name_instructions_listed_twice();
    bool prove(Draft &draft, std::vector<Proposal> &proposals);
    const Messages &said_with(const std::string &pin_map);
    Messages try_text(const std::string &edited, const std::string &pin_map) const;
    std::vector<Proposal> name_proposals(const Draft &draft, const NameRule &rule);
    std::vector<std::string> near_names(const std::string &word, NameKind kind);
    const std::set<std::string> &words_told();
    const std::vector<std::string> &names(NameKind kind);
    TextRange statement_of(std::string_view word) const;
    void declared_words(NameKind kind, std::string_view word, std::vector<RawToken> *found) const;
    std::multimap<long, Row> rows() const;
    bool worth_trying() const { return scene.work->bytes_left > READ_AND_CHECKED * text.size(); }

    const RepairScene &scene;
    std::string_view text;
    Drafts &drafts;
    std::map<std::string, Messages> said; // before any edit, by pin map
    std::map<NameKind, std::vector<std::string>> names_of;
    std::set<std::string> told;
};

} // namespace

static bool counts(const Said &said)
{
    return said.level <= BSDL_LEVEL_WARNING && !said.rule.empty() && said.rule != "check-failed";
}

static Messages messages_of(const CheckedText &checked)
{
    Messages messages;
    for (const Said &said : checked.messages)
        if (counts(said))
            messages.insert(said.rule + '\n' + said.text);
    return messages;
}

// ------------------------------------------------------------------------------------------- names

// The words of "attribute WORD : BSDL_EXTENSION". The model keeps none that nothing uses.
static void add_declared_extensions(std::string_view text, std::vector<std::string> *names)
{
    RawToken token;
    std::string_view behind_attribute;
    std::string_view last;
    for (size_t at = 0; next_raw_token(text, at, &token); at = token.end) {
        const std::string_view word = token.in(text);
        if (slips_between(last, "ATTRIBUTE", 0) == 0)
            behind_attribute = word;
        if (last == ":" && slips_between(word, "BSDL_EXTENSION", 0) == 0)
            names->emplace_back(behind_attribute);
        last = word;
    }
}

const std::vector<std::string> &Repairs::names(NameKind kind)
{
    const auto [place, is_new] = names_of.try_emplace(kind);
    std::vector<std::string> &names = place->second;
    const Bsdl *bsdl = scene.checked.bsdl.get();
    if (!is_new || !bsdl || !bsdl->data)
        return names;
    const BsdlData *data = bsdl->data;
    const auto add = [&](const char *name) {
        if (name)
            names.emplace_back(name);
    };
    switch (kind) {
    case NameKind::PORT:
        for (const PinSpec *spec : items<PinSpec>(data->logical_ports))
            for (const char *name : items<char>(spec->names))
                add(name);
        break;
    case NameKind::CELL:
        for (const CellDesc *cell : items<CellDesc>(data->cell_descs))
            add(cell->name);
        break;
    case NameKind::INSTRUCTION:
        for (const InstructionEntry *entry :
             items<InstructionEntry>(data->instruction_register->opcode_table))
            add(entry->name);
        break;
    case NameKind::REGISTER:
        for (const RegisterEntry *entry : items<RegisterEntry>(data->register_access))
            if (entry->length >= 0)
                add(entry->name);
        for (const char *name : STANDARD_REGISTERS)
            add(name);
        break;
    case NameKind::PIN_MAP:
        for (const PinMapEntry *map : items<PinMapEntry>(data->pin_maps))
            if (map)
                add(map->name);
        break;
    case NameKind::ATTRIBUTE:
        for (const Keyword &attribute : all_attributes())
            add(attribute.word);
        add_declared_extensions(text, &names);
        break;
    }
    return names;
}

TextRange Repairs::statement_of(std::string_view word) const
{
    RawToken token;
    bool quoted = false;
    for (size_t at = 0; next_raw_token(text, at, &token); at = token.end) {
        quoted ^= text[token.begin] == '"';
        if (!quoted && slips_between(token.in(text), word, 0) == 0)
            return statement_around(text, token.begin);
    }
    return {0, 0};
}

// All places of the statement that declares names of this kind at which the word stands.
void Repairs::declared_words(NameKind kind, std::string_view word,
                             std::vector<RawToken> *found) const
{
    for (const Declarations &row : DECLARED_IN) {
        if (row.kind != kind)
            continue;
        TextRange statement = statement_of(row.statement);
        // The port clause has semicolons of its own.
        if (kind == NameKind::PORT)
            statement.end = std::min(statement_of("USE").begin, text.size());
        RawToken token;
        for (size_t at = statement.begin;
             next_raw_token(text, at, &token) && token.begin < statement.end; at = token.end)
            if (slips_between(token.in(text), word, 0) == 0)
                found->push_back(token);
    }
}

static std::string folded(std::string_view word)
{
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return result;
}

static bool has_letters_of(std::string a, std::string b)
{
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return a == b;
}

// The name that a finding is about, without its subscript.
static std::string_view name_of(const Draft &draft, std::string_view text)
{
    const std::string_view name = draft.name_in(text);
    return name.substr(0, name.find_first_of("( \t\r\n"));
}

// All words of the messages: where a name is misspelt, another message misses the right one.
const std::set<std::string> &Repairs::words_told()
{
    if (told.empty())
        for (const auto &draft : drafts) {
            const std::string_view message = draft->said.text;
            RawToken token;
            for (size_t at = 0; next_raw_token(message, at, &token); at = token.end)
                if (token.kind == RawKind::WORD)
                    told.insert(folded(token.in(message)));
        }
    return told;
}

// The names that the word may stand for, the likeliest first.
std::vector<std::string> Repairs::near_names(const std::string &word, NameKind kind)
{
    const int most = slips_allowed(word.size());
    std::vector<std::tuple<bool, int, bool, std::string>> near;
    for (const std::string &name : names(kind)) {
        const int slips = slips_between(word, name, most);
        if (slips > 0 && slips <= most)
            near.emplace_back(!words_told().contains(folded(name)), slips,
                              !has_letters_of(folded(word), folded(name)), name);
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());
    std::vector<std::string> result(near.size());
    std::transform(near.begin(), near.end(), result.begin(),
                   [](const auto &each) { return std::get<std::string>(each); });
    return result;
}

std::vector<Proposal> Repairs::name_proposals(const Draft &draft, const NameRule &rule)
{
    const std::string_view read = name_of(draft, text);
    // The scanner passes over an underscore that no name may begin with.
    const auto begin_of = [&](size_t at) { return at > 0 && text[at - 1] == '_' ? at - 1 : at; };
    const size_t begin = begin_of(draft.begin);
    const std::string word(text.substr(begin, draft.begin + read.size() - begin));
    std::vector<Proposal> proposals;
    for (const std::string &near : near_names(word, rule.kind)) {
        if (proposals.size() >= MOST_PROPOSALS)
            break;
        const bool kept_as_written = rule.kind == NameKind::PORT || rule.kind == NameKind::CELL;
        const std::string name = kept_as_written ? near : in_case_of(word, near);
        const std::string unknown = std::string("there is no ") + rule.noun + " " + word;
        Proposal here = {.edits = {{begin, begin + word.size(), name}},
                         .hint = unknown + "; " + name + "?",
                         .fix = "replace '" + word + "' with '" + name + "'"};
        for (const TextRange &place : draft.alike)
            if (place.begin > here.edits.back().end)
                here.edits.push_back({begin_of(place.begin), place.begin + read.size(), name});
        proposals.push_back(std::move(here));
        // Or the declaration is what is misspelt.
        std::vector<RawToken> declared;
        if (worth_trying())
            declared_words(rule.kind, name, &declared);
        if (declared.size() == 1)
            proposals.push_back({.edits = {{declared.front().begin, declared.front().end, word}},
                                 .hint = name + " is used as " + word + " elsewhere; " + word + "?",
                                 .fix = "replace '" + name + "' with '" + word + "'"});
    }
    return proposals;
}

// ------------------------------------------------------------------------------------------- proof

// What is said of the text when it is read with a pin map; empty for the default.
Messages Repairs::try_text(const std::string &edited, const std::string &pin_map) const
{
    scene.work->spend(READ_AND_CHECKED * text.size());
    if (pin_map.empty())
        return messages_of(check_text(edited, scene.options));
    ReadingOptions options = scene.options;
    options.package = pin_map.c_str();
    return messages_of(check_text(edited, options));
}

const Messages &Repairs::said_with(const std::string &pin_map)
{
    const auto [place, is_new] = said.try_emplace(pin_map);
    if (is_new)
        place->second =
            pin_map.empty() ? messages_of(scene.checked) : try_text(std::string(text), pin_map);
    return place->second;
}

// Tries the proposals. The one that leaves the fewest findings goes into the draft, and the drafts
// that it does away with follow from this one. False when none holds.
bool Repairs::prove(Draft &draft, std::vector<Proposal> &proposals)
{
    if (proposals.empty())
        return false;
    const std::string own = draft.said.rule + '\n' + draft.said.text;
    const std::string &pin_map = draft.said.pin_map.empty() ? scene.pin_map : draft.said.pin_map;
    const Messages &said_before = said_with(pin_map);
    const Proposal *best = nullptr;
    Messages left;
    for (const Proposal &proposal : proposals) {
        if (!worth_trying())
            break;
        const Messages now = try_text(apply_edits(text, proposal.edits), pin_map);
        const bool gone = now.count(own) < said_before.count(own);
        if (!gone || (draft.count > 1 && now.count(own)) ||
            now.size() + proposal.least_gone > said_before.size() ||
            !std::includes(said_before.begin(), said_before.end(), now.begin(), now.end()))
            continue;
        if (!best || now.size() < left.size()) {
            best = &proposal;
            left = now;
        }
    }
    if (!best)
        return false;
    draft.edits = best->edits;
    draft.hint = best->hint;
    draft.fix = best->fix;
    const TextRange own_place = {draft.begin, draft.end};
    if (best->edits.front().begin != draft.begin) {
        draft.related.emplace_back(own_place, "the mistake shows here");
        draft.begin = best->edits.front().begin;
        draft.end = best->edits.front().end;
    }
    Messages gone;
    std::set_difference(said_before.begin(), said_before.end(), left.begin(), left.end(),
                        std::inserter(gone, gone.end()));
    for (const auto &other : drafts) {
        const auto message = gone.find(other->said.rule + '\n' + other->said.text);
        if (other.get() == &draft || other->because || !other->edits.empty() ||
            message == gone.end())
            continue;
        gone.erase(message);
        other->because = &draft;
    }
    return true;
}

void Repairs::repair_names()
{
    for (const NameRule &rule : NAME_RULES)
        for (const auto &draft : drafts) {
            if (draft->said.rule != rule.rule || draft->because || !draft->has_place() ||
                !draft->edits.empty())
                continue;
            const std::vector<std::string> &declared = names(rule.kind);
            draft->name_is_declared =
                std::any_of(declared.begin(), declared.end(), [&](const std::string &name) {
                    return slips_between(name, name_of(*draft, text), 0) == 0;
                });
            if (draft->name_is_declared)
                continue;
            std::vector<Proposal> proposals = name_proposals(*draft, rule);
            if (proposals.empty() || prove(*draft, proposals))
                continue;
            const std::string known = draft->hint.empty() ? "" : " (" + draft->hint + ")";
            draft->hint = "there is no " + std::string(rule.noun) + " " +
                          std::string(name_of(*draft, text)) + "; " +
                          proposals.front().edits.front().text + "?" + known;
        }
}

// ----------------------------------------------------------------------------------------- numbers

static bool is_number(std::string_view word)
{
    return !word.empty() && word.size() < 10 && std::all_of(word.begin(), word.end(), is_digit);
}

// The rows by number: a number in front of a parenthesis, after a quotation mark or a comma.
std::multimap<long, Row> Repairs::rows() const
{
    std::multimap<long, Row> rows;
    const TextRange statement = statement_of("BOUNDARY_REGISTER");
    RawToken token;
    RawToken behind;
    int depth = 0;
    Row *open = nullptr;
    for (size_t at = statement.begin;
         next_raw_token(text, at, &token) && token.begin < statement.end; at = token.end) {
        const char mark = text[token.begin];
        if (mark == '(')
            depth++;
        if (mark == ')' && depth > 0 && --depth == 0 && open)
            open->whole.end = token.end;
        const std::string_view word = token.in(text);
        if (depth == 0 && is_number(word) && next_raw_token(text, token.end, &behind) &&
            text[behind.begin] == '(') {
            const TextRange number = {token.begin, token.end};
            open = &rows.emplace(std::stol(std::string(word)), Row{number, number})->second;
        }
    }
    return rows;
}

static std::string_view first_number(std::string_view message)
{
    const size_t begin = message.find_first_of("0123456789");
    if (begin == std::string_view::npos)
        return {};
    return message.substr(begin, message.find_first_not_of("0123456789", begin) - begin);
}

// A cell number without a row: another row has it by mistake, or the row is gone.
void Repairs::repair_numbers()
{
    std::multimap<long, Row> table;
    for (const auto &draft : drafts) {
        if (draft->said.rule != "cell-number-missing" || draft->because || !draft->edits.empty())
            continue;
        if (table.empty())
            table = rows();
        const std::string missing(first_number(draft->said.text));
        const long number = is_number(missing) ? std::stol(missing) : -1;
        const auto before = table.find(number - 1);
        const auto behind = table.find(number + 1);
        // The finding stands where the row should.
        const auto stand_at = [&](const Row &row) {
            draft->begin = row.whole.begin;
            draft->end = row.whole.end;
        };
        std::vector<Proposal> proposals;
        for (auto row = table.begin(); row != table.end(); ++row) {
            if (table.count(row->first) < 2 || proposals.size() == MOST_PROPOSALS)
                continue;
            const std::string twice(text.substr(row->second.number.begin,
                                                row->second.number.end - row->second.number.begin));
            proposals.push_back(
                {.edits = {{row->second.number.begin, row->second.number.end, missing}},
                 .hint = "two rows have the number " + twice + ", and none has " + missing,
                 .fix = "replace " + twice + " with " + missing,
                 .least_gone = 2}); // two cells may share a number
        }
        if (prove(*draft, proposals))
            continue;
        draft->hint = "the table has no row " + missing;
        if (before != table.end())
            stand_at(before->second);
        else if (behind != table.end())
            stand_at(behind->second);
    }
}

// A length that the table, or all opcodes, speak against.
void Repairs::repair_lengths()
{
    const auto length_token = [&](std::string_view statement, RawToken *token) {
        const TextRange range = statement_of(statement);
        bool behind_is = false;
        for (size_t at = range.begin; next_raw_token(text, at, token) && token->begin < range.end;
             at = token->end) {
            if (behind_is && is_number(token->in(text)))
                return true;
            behind_is |= slips_between(token->in(text), "IS", 0) == 0;
        }
        return false;
    };
    std::set<std::string_view> tried; // the edit is the same for all findings of a rule
    for (const auto &draft : drafts) {
        const bool of_table =
            draft->said.rule == "cell-number-range" || draft->said.rule == "cell-number-missing";
        const bool of_opcodes =
            draft->said.rule == "opcode-length" || draft->said.rule == "instruction-capture-length";
        RawToken token;
        if (draft->because || !draft->edits.empty() || (!of_table && !of_opcodes) ||
            !tried.insert(draft->said.rule).second ||
            !length_token(of_table ? "BOUNDARY_LENGTH" : "INSTRUCTION_LENGTH", &token))
            continue;
        std::vector<Proposal> proposals;
        const auto propose = [&](const std::string &length, const std::string &why) {
            if (length != token.in(text))
                proposals.push_back(
                    {.edits = {{token.begin, token.end, length}},
                     .hint = why,
                     .fix = "replace " + std::string(token.in(text)) + " with " + length});
        };
        if (of_table) {
            const std::multimap<long, Row> table = rows();
            if (!table.empty())
                propose(std::to_string(table.rbegin()->first + 1),
                        "the table ends with row " + std::to_string(table.rbegin()->first));
        } else {
            // Both messages show the bits in parentheses; their number is the length to try.
            const size_t open = draft->said.text.find('(');
            const size_t close = draft->said.text.find(')', open);
            if (open != std::string::npos && close != std::string::npos)
                propose(std::to_string(close - open - 1),
                        "the opcodes have " + std::to_string(close - open - 1) + " bits");
        }
        prove(*draft, proposals);
    }
}

// ----------------------------------------------------------------------------- words run together

// Where two pins may have run into each other: between digit and letter, and anywhere in a number.
static std::vector<size_t> partings(std::string_view word)
{
    std::vector<size_t> places;
    for (size_t i = 1; i < word.size(); i++)
        if (is_number(word) ? word[i] != '0' : is_digit(word[i - 1]) && !is_digit(word[i]))
            places.push_back(i);
    // Both halves are about as long as each other.
    const auto from_middle = [&](size_t i) { return std::max(i, word.size() - i); };
    std::stable_sort(places.begin(), places.end(),
                     [&](size_t a, size_t b) { return from_middle(a) < from_middle(b); });
    return places;
}

static Proposal parting(std::string_view text, size_t at, const RawToken &token)
{
    return {.edits = {{at, at, ","}},
            .hint = "a comma is missing after " +
                    std::string(text.substr(token.begin, at - token.begin)),
            .fix = "insert ','"};
}

// A port has a pin less than it should: two of them may stand without a comma between.
void Repairs::part_pins()
{
    for (const auto &draft : drafts) {
        if (draft->said.rule != "pin-count-mismatch" || draft->because || !draft->has_place() ||
            !draft->edits.empty())
            continue;
        std::vector<Proposal> proposals;
        std::vector<RawToken> pins;
        RawToken token;
        bool comma = true; // between the latest pin and this one
        for (size_t at = draft->end; next_raw_token(text, at, &token) && text[token.begin] != ')';
             at = token.end) {
            comma |= text[token.begin] == ',' || text[token.begin] == '(';
            if (token.kind != RawKind::WORD)
                continue;
            if (!comma) // one ends a string, the other begins the next
                proposals.push_back(parting(text, pins.back().end, pins.back()));
            comma = false;
            pins.push_back(token);
        }
        // Two in one are longer than the others.
        std::stable_sort(pins.begin(), pins.end(), [](const RawToken &a, const RawToken &b) {
            return a.end - a.begin > b.end - b.begin;
        });
        for (const RawToken &pin : pins)
            for (const size_t place : partings(pin.in(text)))
                if (proposals.size() < MOST_PROPOSALS)
                    proposals.push_back(parting(text, pin.begin + place, pin));
        prove(*draft, proposals);
    }
}

// An opcode twice as long as it should be is two.
void Repairs::part_opcodes()
{
    for (const auto &draft : drafts) {
        const std::string_view opcode = draft->name_in(text);
        if (draft->said.rule != "opcode-length" || draft->because || !draft->edits.empty() ||
            opcode.size() % 2)
            continue;
        const size_t middle = draft->begin + opcode.size() / 2;
        std::vector<Proposal> proposals = {
            parting(text, middle, {draft->begin, draft->end, RawKind::WORD})};
        prove(*draft, proposals);
    }
}

// ---------------------------------------------------------------------------- entries listed twice

// An entry of the opcode table with the comma that parts it from its neighbours.
static TextRange entry_to_delete(std::string_view text, const RawToken &name)
{
    TextRange entry = {name.begin, name.end};
    RawToken token;
    for (size_t at = name.end; next_raw_token(text, at, &token); at = token.end) {
        entry.end = token.end;
        if (text[token.begin] == ')')
            break;
    }
    if (next_raw_token(text, entry.end, &token) && text[token.begin] == ',')
        entry.end = token.end;
    return entry;
}

// Of two entries with one name only one gets the register; no message tells the true reason.
void Repairs::name_instructions_listed_twice()
{
    Drafts added;
    for (const auto &draft : drafts) {
        if (draft->said.rule != "public-instruction-without-register" || draft->because ||
            !draft->edits.empty() || !draft->has_place())
            continue;
        const std::string name(draft->name_in(text));
        std::vector<RawToken> entries;
        declared_words(NameKind::INSTRUCTION, name, &entries);
        if (entries.size() < 2)
            continue;
        const RawToken &second = entries[1];
        auto twice = std::make_unique<Draft>(Draft{.said = draft->said});
        twice->said.rule = "instruction-listed-twice";
        twice->said.text = "Instruction " + name + " is listed twice in INSTRUCTION_OPCODE";
        twice->begin = second.begin;
        twice->end = second.end;
        twice->hint = "one entry is enough; only one of the two gets the register";
        twice->related.push_back({{entries[0].begin, entries[0].end}, "the other entry"});
        const TextRange entry = entry_to_delete(text, second);
        std::vector<Proposal> proposals = {
            {.edits = {{entry.begin, entry.end, ""}}, .hint = {}, .fix = "delete this entry"}};
        const Draft before = *draft;
        if (prove(*draft, proposals)) {
            twice->edits = draft->edits;
            twice->fix = draft->fix;
            *draft = before;
        }
        draft->because = twice.get();
        added.push_back(std::move(twice));
    }
    std::move(added.begin(), added.end(), std::back_inserter(drafts));
}

void Repairs::run()
{
    repair_names();
    part_pins();
    part_opcodes();
    repair_lengths();
    repair_numbers();
    name_instructions_listed_twice();
}

void repair_findings(const RepairScene &scene, Drafts &drafts) { Repairs(scene, drafts).run(); }
