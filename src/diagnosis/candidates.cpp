#include "diagnosis/candidates.h"

#include "diagnosis/near_words.h"
#include "diagnosis/source_text.h"
#include "scan/keywords.h"

#include <algorithm>
#include <array>
#include <unordered_set>

namespace
{

// Tokens to try before the place of the mistake and after it. When a quotation mark is missing, the
// reader stumbles a few tokens later. Every other mistake shows at the next token or the one after.
constexpr size_t TOKENS_BEFORE = 24;
constexpr size_t TOKENS_BEHIND = 4;
constexpr size_t LONGEST_NUMBER = 9;  // of a cell or a length; what is longer is an opcode
constexpr size_t LONGEST_HEAD = 4096; // of what stands in front of the description
constexpr size_t MOST_MOVES = 8;      // statements that one may be moved over, either way

enum Cost : int {
    COST_LOOK_ALIKE = 1,
    COST_INSERT = 1,
    COST_DELETE_MARK = 1,
    COST_WORD = 1, // and one for each further slip
    COST_SPLIT = 2,
    COST_SPLIT_NUMBER = 3,
    COST_REPLACE_MARK = 2,
    COST_DELETE_WORD = 3,
    COST_RENAME_ENTITY = 1,
    COST_NAME = 2,
    COST_RENAME = 3,
    COST_MOVE = 2,
};

struct Mark {
    char character;
    const char *name;
};

constexpr std::array MARKS = {Mark{',', "comma"},
                              Mark{';', "semicolon"},
                              Mark{':', "colon"},
                              Mark{'&', "'&'"},
                              Mark{'"', "quotation mark"},
                              Mark{'(', "opening parenthesis"},
                              Mark{')', "closing parenthesis"}};

class Finder
{
  public:
    Finder(std::string_view in, size_t at, std::string_view name);

    std::vector<Candidate> run();

  private:
    void insert_marks();
    void delete_tokens();
    void replace_words();
    void rename_entity(std::string_view name);
    void replace_marks();
    void split_words();
    void split_numbers();
    void replace_look_alikes();
    void rename_keyword();
    void move_statement();
    void delete_head();
    void close_description();

    void add(Candidate candidate);
    std::string shown(const RawToken &token) const;
    bool ends_line(size_t i) const; // whether a line ends between this token and the next
    bool is_word_of(size_t i, std::string_view word) const;

    std::string_view text;
    size_t place;
    std::string_view component;
    std::vector<RawToken> tokens;
    std::vector<Candidate> found;
    std::unordered_set<std::string> seen; // the same edit found in two ways
};

} // namespace

static const char *mark_name(char c)
{
    for (const Mark &mark : MARKS)
        if (mark.character == c)
            return mark.name;
    return nullptr;
}

static std::string mark_text(char c)
{
    const char *name = mark_name(c);
    return name ? name : "'" + std::string(1, c) + "'";
}

static std::string with_article(const std::string &noun)
{
    return (noun.starts_with("opening") ? "an " : noun.starts_with("'") ? "an " : "a ") + noun;
}

Finder::Finder(std::string_view in, size_t at, std::string_view name)
    : text(in), place(at), component(name),
      tokens(raw_tokens_around(in, at, TOKENS_BEFORE, TOKENS_BEHIND))
{
}

std::string Finder::shown(const RawToken &token) const { return std::string(token.in(text)); }

void Finder::add(Candidate candidate)
{
    std::string key;
    for (const TextEdit &edit : candidate.edits)
        key += std::to_string(edit.begin) + ',' + std::to_string(edit.end) + ',' + edit.text + ';';
    if (seen.insert(std::move(key)).second)
        found.push_back(std::move(candidate));
}

// A mark goes right after the token before it, but for those that open something in their line.
void Finder::insert_marks()
{
    for (size_t i = tokens.size(); i-- > 0;) {
        const RawToken &token = tokens[i];
        const bool line_ends = ends_line(i);
        const bool line_begins = i > 0 && ends_line(i - 1);
        const char before = i > 0 ? text[tokens[i - 1].begin] : '\0';
        const char behind = i + 1 < tokens.size() ? text[tokens[i + 1].begin] : '\0';
        for (const Mark &mark : MARKS) {
            const std::string insert(1, mark.character);
            const bool quotes = mark.character == '"';
            const bool opens = (mark.character == '(' && !line_begins) ||
                               (quotes && (line_begins || before == '&' || before == '=' ||
                                           before == '(' || is_word_of(i - 1, "IS"))) ||
                               (mark.character == ':' && text[token.begin] == '=');
            // Behind '&' a string begins with what stands on the next line.
            const bool ends_string = text[token.begin] != '&' &&
                                     (line_ends || behind == '&' || behind == ';' || behind == ')');
            const bool closes = quotes ? ends_string : mark.character != '(' || line_ends;
            if (closes)
                add({.edits = {{token.end, token.end, insert}},
                     .cost = COST_INSERT,
                     .certain_words = true,
                     .hint = with_article(mark.name) + " is missing after " + shown(token),
                     .fix = "insert '" + insert + "'"});
            if (opens)
                add({.edits = {{token.begin, token.begin, insert}},
                     .cost = COST_INSERT,
                     .certain_words = true,
                     .hint = with_article(mark.name) + " is missing before " + shown(token),
                     .fix = "insert '" + insert + "'"});
        }
    }
}

bool Finder::ends_line(size_t i) const
{
    return i + 1 >= tokens.size() ||
           text.substr(tokens[i].end, tokens[i + 1].begin - tokens[i].end).find_first_of("\r\n") !=
               std::string_view::npos;
}

bool Finder::is_word_of(size_t i, std::string_view word) const
{
    return i < tokens.size() && slips_between(tokens[i].in(text), word, 0) == 0;
}

void Finder::delete_tokens()
{
    for (size_t i = tokens.size(); i-- > 0;) {
        const RawToken &token = tokens[i];
        const bool mark = token.kind == RawKind::MARK;
        add({.edits = {{token.begin, token.end, ""}},
             .cost = mark ? +COST_DELETE_MARK : +COST_DELETE_WORD,
             .certain_words = mark,
             .hint = (mark ? mark_text(text[token.begin]) : shown(token)) + " does not belong here",
             .fix = "delete '" + shown(token) + "'"});
    }
}

void Finder::replace_marks()
{
    for (const RawToken &token : tokens) {
        if (token.kind != RawKind::MARK || token.end + 2 < place)
            continue;
        for (const Mark &mark : MARKS)
            if (mark.character != text[token.begin])
                add({.edits = {{token.begin, token.end, std::string(1, mark.character)}},
                     .cost = COST_REPLACE_MARK,
                     .certain_words = true,
                     .hint = with_article(mark.name) + " belongs here instead of " +
                             mark_text(text[token.begin]),
                     .fix = "replace '" + shown(token) + "' with '" + mark.character + "'"});
    }
}

void Finder::replace_words()
{
    for (size_t i = tokens.size(); i-- > 0;) {
        const RawToken &token = tokens[i];
        if (token.kind != RawKind::WORD)
            continue;
        const std::string_view word = token.in(text);
        const int most = slips_allowed(word.size());
        const auto try_word = [&](const char *other) {
            const int slips = slips_between(word, other, most);
            if (slips == 0 || slips > most)
                return;
            const std::string spelt = in_case_of(word, other);
            add({.edits = {{token.begin, token.end, spelt}},
                 .cost = COST_WORD + slips - 1,
                 .certain_words = true,
                 .hint = "there is no '" + shown(token) + "' here; " + spelt + "?",
                 .fix = "replace '" + shown(token) + "' with '" + spelt + "'"});
        };
        for (const Keyword &keyword : all_keywords())
            if (keyword.token)
                try_word(keyword.word);
        for (const Keyword &attribute : all_attributes())
            try_word(attribute.word);
        const bool names_entity =
            is_word_of(i - 1, "OF") || is_word_of(i - 1, "END") || is_word_of(i - 1, "ENTITY");
        if (!component.empty() && word != component && names_entity) {
            rename_entity(word);
            add({.edits = {{token.begin, token.end, std::string(component)}},
                 .cost = COST_NAME,
                 .certain_words = false,
                 .hint = "the entity is called " + std::string(component),
                 .fix = "replace '" + shown(token) + "' with '" + std::string(component) + "'"});
        }
    }
}

// Where most attributes name another entity, it is the entity that has the wrong name.
void Finder::rename_entity(std::string_view name)
{
    Candidate candidate = {.edits = {},
                           .cost = COST_RENAME_ENTITY,
                           .certain_words = false,
                           .hint = "the attributes are of " + std::string(name),
                           .fix = "rename the entity to '" + std::string(name) + "'"};
    size_t of_name = 0;
    size_t of_component = 0;
    RawToken token;
    std::string_view before;
    for (size_t at = 0; next_raw_token(text, at, &token); at = token.end) {
        const std::string_view word = token.in(text);
        const bool of = slips_between(before, "OF", 0) == 0;
        of_name += of && slips_between(word, name, 0) == 0;
        of_component += of && slips_between(word, component, 0) == 0;
        if (slips_between(word, component, 0) == 0 &&
            (slips_between(before, "ENTITY", 0) == 0 || slips_between(before, "END", 0) == 0))
            candidate.edits.push_back({token.begin, token.end, std::string(name)});
        before = word;
    }
    if (of_name > of_component && of_name > 1 && !candidate.edits.empty())
        add(std::move(candidate));
}

static bool is_letter(char c) { return (c | 32) >= 'a' && (c | 32) <= 'z'; }

// Two tokens that have run into each other: "17PA4", "bit_vector0".
void Finder::split_words()
{
    for (size_t i = tokens.size(); i-- > 0;) {
        const RawToken &token = tokens[i];
        if (token.kind != RawKind::WORD)
            continue;
        for (size_t at = token.begin + 1; at < token.end; at++) {
            const bool turns = (is_digit(text[at - 1]) && is_letter(text[at])) ||
                               (is_letter(text[at - 1]) && is_digit(text[at]));
            const std::string_view head = text.substr(token.begin, at - token.begin);
            const auto is_head = [&](const Keyword &keyword) {
                return keyword.token && slips_between(head, keyword.word, 0) == 0;
            };
            const bool keyword = std::any_of(all_keywords().begin(), all_keywords().end(), is_head);
            if (!turns && !keyword)
                continue;
            // "DATA3)" lacks a parenthesis or has one too many: one slip is as likely as the other.
            const bool subscript =
                is_digit(text[at]) && token.end < text.size() && text[token.end] == ')';
            for (const char mark : {',', ':', '(', ')', ';', ' '})
                add({.edits = {{at, at, std::string(1, mark)}},
                     .cost = mark == '(' && subscript ? +COST_INSERT : +COST_SPLIT,
                     .certain_words = true,
                     .hint = (mark == ' ' ? "a blank" : with_article(mark_text(mark))) +
                             " is missing after " + std::string(head),
                     .fix = "insert '" + std::string(1, mark) + "'"});
        }
    }
}

// Two numbers that have run into each other: "1270" for "1,270".
void Finder::split_numbers()
{
    for (size_t i = tokens.size(); i-- > 0;) {
        const RawToken &token = tokens[i];
        const std::string_view number = token.in(text);
        if (number.size() > LONGEST_NUMBER || !std::all_of(number.begin(), number.end(), is_digit))
            continue;
        for (size_t head = 1; head < number.size(); head++)
            add({.edits = {{token.begin + head, token.begin + head, ","}},
                 .cost = COST_SPLIT_NUMBER,
                 .certain_words = false,
                 .hint = "a comma is missing after " + std::string(number.substr(0, head)),
                 .fix = "insert ','"});
    }
}

// ------------------------------------------------------------------------------------- look-alikes

namespace
{

struct LookAlike {
    std::string_view bytes;
    const char *meant;
    const char *name;
};

// Of typesetting programs, in UTF-8 and in the single bytes of older systems.
constexpr std::array LOOK_ALIKES = {
    LookAlike{"\xE2\x80\x9C", "\"", "typographic quotation marks"},
    LookAlike{"\xE2\x80\x9D", "\"", "typographic quotation marks"},
    LookAlike{"\xE2\x80\x9E", "\"", "typographic quotation marks"},
    LookAlike{"\xE2\x80\x9F", "\"", "typographic quotation marks"},
    LookAlike{"\xC2\xAB", "\"", "typographic quotation marks"},
    LookAlike{"\xC2\xBB", "\"", "typographic quotation marks"},
    LookAlike{"\xE2\x80\x93", "--", "dashes"},
    LookAlike{"\xE2\x80\x94", "--", "dashes"},
    LookAlike{"\xC2\xA0", " ", "non-breaking blanks"},
    LookAlike{"\x93", "\"", "typographic quotation marks"},
    LookAlike{"\x94", "\"", "typographic quotation marks"},
    LookAlike{"\x96", "--", "dashes"},
    LookAlike{"\x97", "--", "dashes"},
    LookAlike{"\xA0", " ", "non-breaking blanks"},
    LookAlike{"//", "--", "slashes"},
};

} // namespace

static size_t line_begin(std::string_view text, size_t at)
{
    const size_t end = text.find_last_of("\r\n", at == 0 ? 0 : at - 1);
    return end == std::string_view::npos || at == 0 ? 0 : end + 1;
}

// All of a line at once: quotes come in pairs.
void Finder::replace_look_alikes()
{
    if (tokens.empty())
        return;
    size_t from = line_begin(text, tokens.front().begin);
    const size_t to = tokens.back().end;
    while (from < to) {
        const size_t end = std::min(text.find_first_of("\r\n", from), text.size());
        Candidate candidate = {
            .edits = {}, .cost = COST_LOOK_ALIKE, .certain_words = true, .hint = {}, .fix = {}};
        const char *name = nullptr;
        for (size_t at = from; at < end;) {
            const auto starts = [&](const LookAlike &each) {
                return text.substr(at, each.bytes.size()) == each.bytes;
            };
            const auto *row = std::find_if(LOOK_ALIKES.begin(), LOOK_ALIKES.end(), starts);
            if (row == LOOK_ALIKES.end()) {
                at++;
                continue;
            }
            candidate.edits.push_back({at, at + row->bytes.size(), row->meant});
            name = name ? name : row->name;
            at += row->bytes.size();
        }
        if (name) {
            const std::string meant = candidate.edits.front().text;
            candidate.hint = std::string(name) + " stand where " +
                             (meant == "--"  ? "--"
                              : meant == " " ? "blanks"
                                             : "\"") +
                             " is meant";
            candidate.fix = "replace the " + std::string(name) + " with '" + meant + "'";
            add(std::move(candidate));
        }
        from = end + 1;
    }
    // The letter O among digits, l and I for 1.
    for (const RawToken &token : tokens) {
        if (token.kind != RawKind::WORD)
            continue;
        Candidate candidate = {.edits = {},
                               .cost = COST_LOOK_ALIKE,
                               .certain_words = true,
                               .hint = "letters stand among the digits of " + shown(token),
                               .fix = {}};
        bool digits = false;
        std::string meant = shown(token);
        for (char &c : meant) {
            if (c == 'O' || c == 'o')
                c = '0';
            else if (c == 'l' || c == 'I')
                c = '1';
            else if (!is_digit(c) && c != 'X' && c != 'x')
                meant.clear();
            else
                digits |= is_digit(c);
            if (meant.empty())
                break;
        }
        if (meant.empty() || !digits || meant == token.in(text))
            continue;
        for (size_t i = 0; i < meant.size(); i++)
            if (meant[i] != text[token.begin + i])
                candidate.edits.push_back(
                    {token.begin + i, token.begin + i + 1, std::string(1, meant[i])});
        candidate.fix = "write '" + meant + "'";
        add(std::move(candidate));
    }
}

// A word of the language where a name belongs, such as a port called CLOCK.
void Finder::rename_keyword()
{
    RawToken token;
    if (!next_raw_token(text, place, &token) || token.kind != RawKind::WORD)
        return;
    const auto is_it = [&](const Keyword &keyword) {
        return slips_between(token.in(text), keyword.word, 0) == 0;
    };
    if (!std::any_of(all_keywords().begin(), all_keywords().end(), is_it))
        return;
    add({.edits = {{token.end, token.end, "_1"}},
         .cost = COST_RENAME,
         .certain_words = false,
         .hint = shown(token) + " is a word of the language and cannot be a name; rename it",
         .fix = "rename it to '" + shown(token) + "_1'"});
}

// Statements have an order: one that is told where it stands may belong after or before others.
void Finder::move_statement()
{
    RawToken token;
    RawToken name;
    if (!next_raw_token(text, place, &token) ||
        slips_between(token.in(text), "ATTRIBUTE", 0) != 0 ||
        !next_raw_token(text, token.end, &name))
        return;
    const TextRange statement = statement_around(text, token.begin);
    const std::string moved(text.substr(token.begin, statement.end - token.begin));
    const auto add_move = [&](std::vector<TextEdit> edits, const std::string &where) {
        add({.edits = std::move(edits),
             .cost = COST_MOVE,
             .certain_words = false,
             .hint = shown(name) + " belongs " + where,
             .fix = "move " + shown(name) + " " + where});
    };
    size_t at = statement.end;
    for (size_t i = 0; i < MOST_MOVES && next_raw_token(text, at, &token); i++) {
        const TextRange other = statement_around(text, token.begin);
        RawToken other_name;
        if (slips_between(token.in(text), "ATTRIBUTE", 0) != 0 ||
            !next_raw_token(text, token.end, &other_name))
            break;
        add_move({{place, statement.end, ""}, {other.end, other.end, "\n" + moved}},
                 "after " + shown(other_name));
        at = other.end;
    }
    size_t before = statement.begin;
    for (size_t i = 0; i < MOST_MOVES && before > 0; i++) {
        const TextRange other = statement_around(text, before - 1);
        RawToken other_name;
        if (!next_raw_token(text, other.begin, &token) ||
            slips_between(token.in(text), "ATTRIBUTE", 0) != 0 ||
            !next_raw_token(text, token.end, &other_name))
            break;
        add_move({{token.begin, token.begin, moved + "\n"}, {place, statement.end, ""}},
                 "before " + shown(other_name));
        before = other.begin;
    }
}

// ------------------------------------------------------------------------------ the ends of a text

// Testers put a line with their stamp in front of a description, some programs a byte order mark.
void Finder::delete_head()
{
    RawToken token;
    size_t head_end = 0;
    for (size_t at = 0; at < LONGEST_HEAD && next_raw_token(text, at, &token); at = token.end) {
        if (slips_between(token.in(text), "ENTITY", 0) != 0)
            continue;
        head_end = token.begin;
        break;
    }
    RawToken first;
    if (head_end == 0 || !next_raw_token(text, 0, &first) || first.begin >= head_end)
        return;
    RawToken last = first;
    for (size_t at = first.end; next_raw_token(text, at, &token) && token.begin < head_end;
         at = token.end)
        last = token;
    add({.edits = {{first.begin, last.end, ""}},
         .cost = COST_LOOK_ALIKE,
         .certain_words = true,
         .hint = "what stands in front of the entity is no part of the description",
         .fix = "delete the text in front of the entity"});
}

void Finder::close_description()
{
    RawToken token;
    if (component.empty() || next_raw_token(text, place, &token))
        return;
    size_t end = text.size();
    while (end > 0 && (text[end - 1] == '\n' || text[end - 1] == '\r' || text[end - 1] == ' '))
        end--;
    // After a comment the new line has to be one of its own.
    add({.edits = {{end, end, "\nend " + std::string(component) + ";"}},
         .cost = COST_INSERT,
         .certain_words = true,
         .hint = "the end of the description is missing",
         .fix = "insert 'end " + std::string(component) + ";'"});
    add({.edits = {{end, end, ";"}},
         .cost = COST_INSERT,
         .certain_words = true,
         .hint = "a semicolon is missing at the end",
         .fix = "insert ';'"});
}

std::vector<Candidate> Finder::run()
{
    replace_look_alikes();
    delete_head();
    close_description();
    insert_marks();
    delete_tokens();
    replace_words();
    split_words();
    split_numbers();
    replace_marks();
    rename_keyword();
    move_statement();
    std::stable_sort(found.begin(), found.end(),
                     [](const Candidate &a, const Candidate &b) { return a.cost < b.cost; });
    return std::move(found);
}

size_t begin_of_window(std::string_view text, size_t place)
{
    const std::vector<RawToken> tokens = raw_tokens_around(text, place, TOKENS_BEFORE, 0);
    return tokens.empty() ? place : tokens.front().begin;
}

std::vector<Candidate> mend_candidates(std::string_view text, size_t place,
                                       std::string_view component)
{
    return Finder(text, place, component).run();
}

std::string apply_edits(std::string_view text, const std::vector<TextEdit> &edits)
{
    std::string result;
    result.reserve(text.size() + 64);
    size_t from = 0;
    for (const TextEdit &edit : edits) {
        result.append(text.substr(from, edit.begin - from));
        result.append(edit.text);
        from = edit.end;
    }
    result.append(text.substr(from));
    return result;
}
