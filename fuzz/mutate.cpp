#include "mutate.h"

#include <cctype>
#include <iterator>
#include <vector>

namespace
{

constexpr std::string_view WORDS[] = {
#include "words.inc"
};

constexpr std::string_view NUMBERS[] = {
    "0",
    "1",
    "2",
    "7",
    "8",
    "31",
    "32",
    "33",
    "63",
    "64",
    "65",
    "127",
    "255",
    "256",
    "1000",
    "65535",
    "65536",
    "1000000",
    "9999999",
    "-1",
    "2147483646",
    "2147483647",
    "2147483648",
    "4294967295",
    "99999999999999999999",
    "4294967296",
    "1.0e-3",
    "1.0E6",
    "0.0",
    "1e39",
    "1e-46",
    "1e400",
    "-5.0e3",
    "00000001",
    "",
    "1.",
    "20.0e6",
    "18446744073709551616",
};

// A part of the text.
struct Piece {
    size_t begin;
    size_t end;
    size_t length() const { return end - begin; }
};

using Pieces = std::vector<Piece>;

} // namespace

uint32_t Random::next()
{
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<uint32_t>(state_ >> 32);
}

size_t Random::below(size_t limit) { return limit ? next() % limit : 0; }

// ------------------------------------------------------------------------------------- parting

static bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

static bool is_space(char c) { return std::isspace(static_cast<unsigned char>(c)); }

// Words, numbers and single characters. Quotes are tokens of their own, so that what a string
// holds is parted as well; comments and white space belong to none.
static Pieces tokens_of(std::string_view text)
{
    Pieces tokens;
    for (size_t at = 0; at < text.size();) {
        const size_t begin = at;
        if (is_space(text[at])) {
            at++;
            continue;
        }
        if (text.substr(at, 2) == "--") {
            while (at < text.size() && text[at] != '\n')
                at++;
            continue;
        }
        if (is_word(text[at]))
            while (at < text.size() && (is_word(text[at]) || text[at] == '.'))
                at++;
        else
            at++;
        tokens.push_back({begin, at});
    }
    return tokens;
}

// Whole statements, each with its ';' or, with ',' for `close`, elements of lists.
static Pieces parts_of(std::string_view text, char close)
{
    Pieces parts;
    int depth = 0;
    size_t begin = 0;
    for (size_t at = 0; at < text.size(); at++) {
        const char c = text[at];
        if (c == '(')
            depth++;
        if (c == ')' && depth)
            depth--;
        if (c == ';' && close == ',') {
            begin = at + 1;
            depth = 0;
        }
        if (c != close || (close == ',' && depth > 1))
            continue;
        parts.push_back({begin, at + 1});
        begin = at + 1;
    }
    return parts;
}

static Piece any_of(const Pieces &pieces, Random *random)
{
    return pieces.empty() ? Piece{0, 0} : pieces[random->below(pieces.size())];
}

static std::string_view text_of(std::string_view text, Piece piece)
{
    return text.substr(piece.begin, piece.length());
}

// ------------------------------------------------------------------------------------- changing

static void swap_pieces(std::string *text, Piece a, Piece b)
{
    if (b.begin < a.begin)
        std::swap(a, b);
    if (b.begin < a.end)
        return;
    const std::string first(text_of(*text, a));
    const std::string second(text_of(*text, b));
    text->replace(b.begin, b.length(), first);
    text->replace(a.begin, a.length(), second);
}

// Statements, elements and tokens are changed alike.
static void change_pieces(std::string *text, const Pieces &pieces, std::string_view other,
                          const Pieces &others, Random *random)
{
    const Piece piece = any_of(pieces, random);
    const Piece second = any_of(pieces, random);
    const std::string copy(text_of(*text, piece));
    switch (random->below(7)) {
    case 0:
        text->erase(piece.begin, piece.length());
        break;
    case 1:
        text->insert(piece.end, copy);
        break;
    case 2:
        swap_pieces(text, piece, second);
        break;
    case 3:
        text->replace(second.begin, second.length(), copy);
        break;
    case 4:
        text->insert(piece.begin, text_of(other, any_of(others, random)));
        break;
    case 5:
        text->replace(piece.begin, piece.length(), text_of(other, any_of(others, random)));
        break;
    default: {
        // Long lists, and repeated statements.
        std::string many;
        for (size_t count = random->below(random->one_in(8) ? 300 : 8); count; count--)
            many += copy;
        text->insert(piece.end, many);
        break;
    }
    }
}

static std::string other_number(std::string_view number, Random *random)
{
    if (random->one_in(2) || number.size() > 9)
        return std::string(NUMBERS[random->below(std::size(NUMBERS))]);
    unsigned value = 0;
    for (char c : number)
        value = std::isdigit(static_cast<unsigned char>(c)) ? value * 10 + (c - '0') : value;
    return std::to_string(value + static_cast<unsigned>(random->below(5)) - 2);
}

static std::string other_word(std::string_view word, Random *random)
{
    std::string changed(word);
    const size_t at = random->below(changed.size());
    switch (random->below(5)) {
    case 0:
        for (char &c : changed)
            c = static_cast<char>(random->one_in(2) ? std::toupper(c) : std::tolower(c));
        break;
    case 1:
        changed.insert(at, 1, "aZ_0X.9"[random->below(7)]);
        break;
    case 2:
        changed.erase(at, 1);
        break;
    case 3:
        changed[at] = "01XxAF_"[random->below(7)];
        break;
    default:
        for (size_t count = random->below(random->one_in(10) ? 400 : 20); count; count--)
            changed += changed[at];
        break;
    }
    return changed;
}

static void edit_token(std::string *text, const Pieces &tokens, Random *random)
{
    const Piece piece = any_of(tokens, random);
    const std::string token(text_of(*text, piece));
    if (token.empty())
        return;
    std::string changed;
    if (random->one_in(4))
        changed = WORDS[random->below(std::size(WORDS))];
    else if (std::isdigit(static_cast<unsigned char>(token[0])))
        changed = other_number(token, random);
    else if (is_word(token[0]))
        changed = other_word(token, random);
    else
        changed = std::string(1, "();,:\"&*-=!?$[]<>{}.+~"[random->below(22)]);
    text->replace(piece.begin, piece.length(), changed);
}

// A string in two pieces, or two in one.
static void change_string(std::string *text, const Pieces &tokens, Random *random)
{
    const size_t joint = text->find("\" &", any_of(tokens, random).begin);
    if (random->one_in(2) && joint != std::string::npos) {
        const size_t quote = text->find('"', joint + 1);
        if (quote != std::string::npos)
            text->erase(joint, quote + 1 - joint);
        return;
    }
    text->insert(any_of(tokens, random).begin, random->one_in(3) ? "\" & \"\" & \"" : "\" & \"");
}

std::string mutated(std::string_view text, std::string_view other, size_t limit, Random *random)
{
    std::string changed(text);
    for (size_t count = 1 + random->below(random->one_in(4) ? 8 : 3); count; count--) {
        const Pieces tokens = tokens_of(changed);
        const size_t kind = random->below(16);
        if (tokens.empty() || kind == 0)
            changed.insert(tokens.empty() ? 0 : any_of(tokens, random).end,
                           WORDS[random->below(std::size(WORDS))]);
        else if (kind <= 5)
            edit_token(&changed, tokens, random);
        else if (kind <= 8)
            change_pieces(&changed, tokens, other, tokens_of(other), random);
        else if (kind <= 11)
            change_pieces(&changed, parts_of(changed, ','), other, parts_of(other, ','), random);
        else if (kind <= 14)
            change_pieces(&changed, parts_of(changed, ';'), other, parts_of(other, ';'), random);
        else if (random->one_in(12))
            changed.resize(any_of(tokens, random).end);
        else
            change_string(&changed, tokens, random);
        if (changed.size() > limit)
            changed.resize(limit);
    }
    return changed;
}
