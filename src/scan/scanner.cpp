#include "scan/scanner.h"

#include "frame/memory_error.h"
#include "frame/messages.h"
#include "frame/reader_state.h"
#include "grammar.h"
#include "scan/keywords.h"
#include "scan/scan_state.h"

#include <charconv>
#include <cmath>
#include <cstring>

// The scanner takes the longest text that a rule of the rule set in force matches; where rules
// match the same text, the order is: keywords, VHDL words, punctuation, strings, numbers and
// patterns of the scan mode, variables, names, package names, illegal names, part and file names. A
// rule that the mode rules out leaves its text to the next, so one place here has to know which
// rules can match longer than the run of letters, digits and underscores that most tokens are.

namespace
{

constexpr uint32_t TOKEN_SIZE = 16384; // a token has to be shorter
constexpr size_t WITH_ALL = 4;         // any one character and ALL

enum CharClass : uint8_t {
    BLANK, // up to FATAL no token begins
    LINE_END,
    ZERO,
    FATAL,
    OTHER, // in part and file names alone
    LETTER,
    DIGIT,
    QUOTES,
    PUNCTUATION, // stands for itself in all rule sets, and nothing longer begins with it
    MINUS,
    PLUS,
    DOT,
    COLON,
    LESS,
    GREATER,
    QUESTION,
    DOLLAR,
    APOSTROPHE,
    ISC_PUNCTUATION, // in the ISC and PRG rule sets
};

enum WordPart : uint8_t { LETTER_OR_DIGIT = 1, UNDERSCORE = 2 };

struct CharTables {
    CharClass start[256];        // of a token's first character
    uint8_t word[256] = {};      // letters, digits and underscores
    uint8_t part_name[256] = {}; // 1: in a part name; 2: in a file name

    constexpr CharTables()
    {
        for (int c = 0; c < 256; c++)
            start[c] = c < 32 && c != 3 && c != 4 ? FATAL : OTHER;
        start[0] = ZERO;
        for (unsigned char c : {' ', '\t', '\v', '\f'})
            start[c] = BLANK;
        start['\n'] = start['\r'] = LINE_END;
        for (int c = 'A'; c <= 'Z'; c++) {
            start[c] = start[c + 32] = LETTER;
            word[c] = word[c + 32] = LETTER_OR_DIGIT;
        }
        for (int c = '0'; c <= '9'; c++) {
            start[c] = DIGIT;
            word[c] = LETTER_OR_DIGIT;
        }
        word['_'] = UNDERSCORE;
        for (unsigned char c : {';', '&', '=', ',', '*', '[', ']', '(', ')'})
            start[c] = PUNCTUATION;
        start['"'] = QUOTES;
        start['-'] = MINUS;
        start['+'] = PLUS;
        start['.'] = DOT;
        start[':'] = COLON;
        start['<'] = LESS;
        start['>'] = GREATER;
        start['?'] = QUESTION;
        start['$'] = DOLLAR;
        start['\''] = APOSTROPHE;
        start['~'] = start['!'] = ISC_PUNCTUATION;

        for (int c = '#'; c <= '~'; c++)
            part_name[c] = 1;
        part_name['\''] = part_name['`'] = 0;
        for (int c = 0; c < 128; c++)
            if (word[c])
                part_name[c] |= 2;
        for (unsigned char c : {'!', '#', '$', '%', '&', '(', ')', '*',  '+', ',', '-', '.',
                                '/', ':', '<', '>', '?', '@', '[', '\\', ']', '{', '}'})
            part_name[c] |= 2;
    }
};

constexpr CharTables CHARS;

} // namespace

static CharClass start_class(char c) { return CHARS.start[static_cast<unsigned char>(c)]; }

static bool in_word(char c) { return CHARS.word[static_cast<unsigned char>(c)] != 0; }

static bool is_digit(char c) { return c >= '0' && c <= '9'; }

static bool is_hex_digit(char c)
{
    return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

static bool is_letter(char c) { return start_class(c) == LETTER; }

// A carriage return and a newline are one line end.
static size_t line_end_length(const char *at) { return at[0] == '\r' && at[1] == '\n' ? 2 : 1; }

static const char *word_end(const char *at)
{
    while (in_word(*at))
        at++;
    return at;
}

static const char *digits_end(const char *at)
{
    while (is_digit(*at))
        at++;
    return at;
}

// A letter, then letters and digits with single underscores between them.
static const char *identifier_end(const char *at)
{
    if (!is_letter(*at))
        return at;
    for (at++;; at++) {
        if (*at == '_' && in_word(at[1]) && at[1] != '_')
            continue;
        if (*at == '_' || !in_word(*at))
            return at;
    }
}

// Digits with at most one point, which needs a digit after it, and an exponent. NULL for no
// number.
static const char *real_end(const char *at)
{
    if (*at == '+' || *at == '-')
        at++;
    const char *end = digits_end(at);
    if (*end == '.' && is_digit(end[1]))
        end = digits_end(end + 1);
    if (end == at)
        return nullptr;
    if (*end == 'e' || *end == 'E') {
        const char *exponent = end[1] == '+' || end[1] == '-' ? end + 2 : end + 1;
        if (is_digit(*exponent))
            end = digits_end(exponent);
    }
    return end;
}

// A value beyond the range becomes the nearest one in the range, so that digits never turn into
// another number.
static int32_t integer_value(const char *at, const char *end)
{
    bool negative = *at == '-';
    if (*at == '-' || *at == '+')
        at++;
    int64_t value = 0;
    for (; at < end && value <= INT32_MAX; at++)
        value = value * 10 + (*at - '0');
    if (negative)
        return static_cast<int32_t>(-value < INT32_MIN ? INT32_MIN : -value);
    return static_cast<int32_t>(value > INT32_MAX ? INT32_MAX : value);
}

// An unsigned number beyond the range of double is infinite or 0: the place of its first digit
// decides.
static double far_value(const char *at, const char *end)
{
    int64_t place = 0; // 1: just before the point
    bool behind_point = false;
    bool begun = false;
    for (; at < end && *at != 'e' && *at != 'E'; at++) {
        behind_point |= *at == '.';
        begun |= is_digit(*at) && *at != '0';
        if (is_digit(*at) && behind_point != begun)
            place += begun ? 1 : -1;
    }
    if (at < end)
        place += integer_value(at + 1, end);
    return place > 0 ? HUGE_VAL : 0;
}

// Independent of the locale of the host.
static double real_value(const char *at, const char *end)
{
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+')
        at++;
    double value = 0;
    if (std::from_chars(at, end, value).ec == std::errc::result_out_of_range)
        value = far_value(at, end);
    return negative ? -value : value;
}

[[gnu::noinline]] static void stop(ScanState *reading, const char *fatal, Place place)
{
    reading->place = place;
    reading->stopped = true;
    reading->ready = false;
    reading->fatal = fatal;
    reading->token_length = 0;
}

// ----------------------------------------------------------------------------------------- tokens

static uint32_t pick_rule_set(const Bsdl *bsdl)
{
    uint32_t standards = bsdl->standards;
    uint64_t unfiltered = standards & ~bsdl->standards_filter;
    uint32_t rules = bsdl->reading->rules ? bsdl->reading->rules : reader_state.rule_set;
    if (standards & BSDL_STANDARD_BIT_1990)
        rules = RULES_1990;
    if (standards & BSDL_STANDARD_BIT_1994)
        rules = RULES_1994;
    if (standards & BSDL_STANDARD_BIT_2001)
        rules = RULES_2001;
    if (unfiltered & (BSDL_STANDARD_BIT_1532_2001 | BSDL_STANDARD_BIT_1532_2002))
        rules = RULES_ISC;
    else if (unfiltered & BSDL_STANDARD_BIT_1149_6_2003)
        rules = RULES_AIO;
    if (standards & BSDL_STANDARD_BIT_PRG_2001)
        rules = RULES_PRG;
    return rules;
}

enum : int {
    NO_TOKEN = -1, // what was matched is passed over
    NO_MATCH = -2,
};

// Kept apart: few tokens end their piece, and what ends all of them has to be short.
[[gnu::noinline]] static void finish_beyond_piece(ScanState *reading, const char *end,
                                                  int looked_ahead)
{
    input_line_of_last_looked_at(reading, end - 1 + looked_ahead);
    reading->place.end = input_place(reading, reading->token, end).end;
}

// Every token ends here, so it is part of each of its callers.
[[gnu::always_inline]] static inline int finish(ScanState *reading, const char *start,
                                                const char *end, int looked_ahead, int token)
{
    reading->token = start;
    reading->token_length = static_cast<uint32_t>(end - start);
    reading->looked_ahead = looked_ahead != 0;
    reading->at = end;
    reading->place.end = reading->place.begin + reading->token_length;
    if (end - 1 + looked_ahead >= reading->piece_end)
        finish_beyond_piece(reading, end, looked_ahead);
    if (reading->token_length >= TOKEN_SIZE) {
        stop(reading, "token too large, exceeds YYLMAX", reading->place);
        return BSDL_YYEOF;
    }
    return token;
}

// End of input to the parser. The current text is empty then.
static int finish_input(ScanState *reading, Place place)
{
    reading->token = reading->at;
    reading->token_length = 0;
    reading->place = place;
    return BSDL_YYEOF;
}

static const char *token_name(Bsdl *bsdl)
{
    const ScanState *reading = bsdl->reading;
    return name_intern_padded(&bsdl->names, reading->token, reading->token_length,
                              text_hash_padded(reading->token, reading->token_length));
}

static int finish_name(Bsdl *bsdl, const char *start, const char *end, int token)
{
    token = finish(bsdl->reading, start, end, 1, token);
    if (token != BSDL_YYEOF)
        bsdl->reading->value->string = token_name(bsdl);
    return token;
}

static int finish_text(Bsdl *bsdl, const char *start, const char *end, int token)
{
    token = finish(bsdl->reading, start, end, 1, token);
    if (token != BSDL_YYEOF)
        bsdl->reading->value->string = model_text(bsdl, {start, static_cast<size_t>(end - start)});
    return token;
}

static int finish_integer(Bsdl *bsdl, const char *start, const char *end, int token, size_t letters)
{
    bsdl->reading->value->integer = integer_value(start + letters, end);
    return finish(bsdl->reading, start, end, 1, token);
}

static int finish_real(Bsdl *bsdl, const char *start, const char *end)
{
    if (end - start < static_cast<ptrdiff_t>(TOKEN_SIZE))
        bsdl->reading->value->real = real_value(start, end);
    return finish(bsdl->reading, start, end, 1, REAL);
}

// A word of the file in a message, with its end.
static int length_of(const char *start, const char *end)
{
    return static_cast<int>(end - start < static_cast<ptrdiff_t>(TOKEN_SIZE) ? end - start
                                                                             : TOKEN_SIZE - 1);
}

// A word that no keyword row takes in this rule set. With `strict` words that are no proper names
// are dropped; without, they are names with a warning.
static int improper_word(Bsdl *bsdl, const char *start, const char *end, bool vhdl)
{
    int token = finish(bsdl->reading, start, end, 1, IDENTIFIER);
    if (token == BSDL_YYEOF)
        return token;
    int32_t level = bsdl->strict ? BSDL_LEVEL_ERROR : BSDL_LEVEL_WARNING;
    if (vhdl)
        parse_message(bsdl, level, 2, "vhdl-keyword", "VHDL keyword '%.*s' is not allowed!",
                      length_of(start, end), start);
    else
        parse_message(bsdl, level, 2, "illegal-identifier", "Illegal identifier '%.*s' on line %i",
                      length_of(start, end), start, bsdl->reading->line);
    if (bsdl->strict)
        return NO_TOKEN;
    bsdl->reading->value->string = token_name(bsdl);
    return IDENTIFIER;
}

// ATTRIBUTE and, after any blanks and line ends, the name of an attribute are one token, whatever
// follows the name.
static int scan_attribute(Bsdl *bsdl, const char *start, const char *behind)
{
    const char *name = behind;
    while (start_class(*name) == BLANK || start_class(*name) == LINE_END)
        name++;
    const char *end = word_end(name);
    auto length = static_cast<size_t>(end - name);
    const Keyword *row = find_attribute(name, length, text_hash_padded(name, length));
    if (!row && name != behind) {
        row = find_attribute_start(name, length);
        if (row)
            end = name + std::strlen(row->word);
    }
    if (!row || !(row->rules & bsdl->reading->rules) ||
        ((row->flags & NOT_IN_PACKAGE) && bsdl->scan_mode == SCAN_MODE_PACKAGE))
        return NO_MATCH;
    int token = finish(bsdl->reading, start, end, 1, row->token);
    input_count_line_ends(bsdl->reading, behind, name);
    if (!(row->flags & OBSOLETE) || token == BSDL_YYEOF)
        return token;
    parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "obsolete-attribute", "%s is VERY obsolete!",
                  row->word);
    return NO_TOKEN;
}

static bool is_all(const char *at) { return equal_folded(at, "ALL", 3); }

// The name of an extension's package, any one character and ALL are one token in every rule set.
// The character may be one that words are made of. `row` is that of the whole word.
static inline const Keyword *find_with_all(const char *start, size_t length, const Keyword *row)
{
    const char *end = start + length;
    if (row)
        return row->with_all && *end != '\n' && is_all(end + 1) ? row : nullptr;
    if (length <= WITH_ALL || !is_all(end - 3))
        return nullptr;
    length -= WITH_ALL;
    row = find_keyword(start, length, text_hash_padded(start, length));
    return row && row->with_all ? row : nullptr;
}

// In the PRG rule set some words end in a number, which is the token's value.
static int scan_numbered_word(Bsdl *bsdl, const char *start, const char *end)
{
    static constexpr struct {
        const char *word;
        size_t length;
        int token;
    } NUMBERED[] = {{"TAP", 3, TAPXXX}, {"PROGRAM_JCS", 11, JCSXX}, {"PROGRAM_ISC", 11, ISCXXXX}};
    for (const auto &row : NUMBERED)
        if (static_cast<size_t>(end - start) > row.length &&
            equal_folded(start, row.word, row.length) && digits_end(start + row.length) == end)
            return finish_integer(bsdl, start, end, row.token, row.length);
    return NO_TOKEN;
}

static bool all_of(const char *start, const char *end, bool (*member)(char))
{
    while (start < end && member(*start))
        start++;
    return start == end;
}

static bool is_bin(char c) { return c == '0' || c == '1'; }

static bool is_bin_x(char c) { return is_bin(c) || c == 'X' || c == 'x'; }

// The rules that a scan mode adds for a run of letters and digits. NO_TOKEN: none takes it whole.
static int scan_in_mode(Bsdl *bsdl, const char *start, const char *end)
{
    switch (bsdl->scan_mode) {
    case SCAN_MODE_BIN_X:
        return all_of(start, end, is_bin_x) ? finish_text(bsdl, start, end, BIN_X_PATTERN)
                                            : NO_TOKEN;
    case SCAN_MODE_BIN:
        return all_of(start, end, is_bin) ? finish_text(bsdl, start, end, BIN_PATTERN) : NO_TOKEN;
    case SCAN_MODE_INTEGER:
    case SCAN_MODE_SIGNED:
        return digits_end(start) == end ? finish_integer(bsdl, start, end, INTEGER, 0) : NO_TOKEN;
    case SCAN_MODE_HEX:
        return all_of(start, end, is_hex_digit) ? finish_text(bsdl, start, end, HEX_PATTERN)
                                                : NO_TOKEN;
    case SCAN_MODE_REAL: {
        const char *number = real_end(start);
        return number && number >= end ? finish_real(bsdl, start, number) : NO_TOKEN;
    }
    case SCAN_MODE_DATE:
        if (end - start == 8 && all_of(start, end, is_digit) && *end == '.' &&
            digits_end(end + 1) - end >= 5)
            return finish_text(bsdl, start, end + 5, DATE_STRING);
        return NO_TOKEN;
    default:
        return NO_TOKEN;
    }
}

// A package name of a use statement may hold points.
static const char *use_name_end(const char *at)
{
    while (in_word(*at) || *at == '.')
        at++;
    return at;
}

static int finish_use_name(Bsdl *bsdl, const char *start)
{
    bsdl->scan_mode = SCAN_MODE_INTEGER;
    return finish_name(bsdl, start, use_name_end(start), USE_IDENT);
}

// What begins with a digit is neither keyword nor name, and mostly a number.
static int scan_digits(Bsdl *bsdl, const char *start)
{
    if (bsdl->scan_mode == SCAN_MODE_INTEGER) {
        const char *end = digits_end(start);
        if (!in_word(*end))
            return finish_integer(bsdl, start, end, INTEGER, 0);
    }
    if (bsdl->scan_mode == SCAN_MODE_USE)
        return finish_use_name(bsdl, start);
    const char *end = word_end(start);
    int token = scan_in_mode(bsdl, start, end);
    return token != NO_TOKEN ? token : improper_word(bsdl, start, end, false);
}

static int scan_word(Bsdl *bsdl, const char *start)
{
    // Its end and, on the way, whether it is a name: underscores stand single between the others.
    const char *end = start;
    uint8_t before = LETTER_OR_DIGIT;
    uint8_t pairs = 0;
    while (uint8_t part = CHARS.word[static_cast<unsigned char>(*end)]) {
        pairs |= part & before;
        before = part;
        end++;
    }
    const bool is_name = before != UNDERSCORE && !(pairs & UNDERSCORE);
    auto length = static_cast<size_t>(end - start);
    uint64_t hash = text_hash_padded(start, length);
    const Keyword *row = find_keyword(start, length, hash);

    if (const Keyword *package = find_with_all(start, length, row)) {
        const char *behind = start + std::strlen(package->word) + WITH_ALL;
        if (bsdl->scan_mode != SCAN_MODE_USE || use_name_end(start) <= behind)
            return finish_name(bsdl, start, behind, package->with_all);
    }
    if (bsdl->scan_mode == SCAN_MODE_USE && use_name_end(start) > end)
        return finish_use_name(bsdl, start);
    if (row && (row->rules & bsdl->reading->rules)) {
        if (row->token == ATTRIBUTE) {
            int token = scan_attribute(bsdl, start, end);
            if (token != NO_MATCH)
                return token;
        }
        int token = finish(bsdl->reading, start, end, 1, row->token);
        if (row->with_all || row->token == Y_STD_PRG_2001)
            bsdl->reading->value->string = token_name(bsdl);
        return token;
    }
    if (row && (row->flags & REFUSED_IN_1990) && bsdl->reading->rules == RULES_1990) {
        finish(bsdl->reading, start, end, 1, NO_TOKEN);
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "keyword-not-in-1990",
                      "Keyword '%.*s' is not supported in BSDL90", length_of(start, end), start);
        return NO_TOKEN;
    }
    if (length > 9 && equal_folded(start, "ATTRIBUTE", 9)) {
        int token = scan_attribute(bsdl, start, start + 9);
        if (token != NO_MATCH)
            return token;
    }
    if (bsdl->reading->rules == RULES_PRG) {
        int token = scan_numbered_word(bsdl, start, end);
        if (token != NO_TOKEN)
            return token;
    }
    if (row && (row->flags & VHDL_WORD))
        return improper_word(bsdl, start, end, true);
    int token = scan_in_mode(bsdl, start, end);
    if (token != NO_TOKEN)
        return token;
    if (is_name) {
        token = finish(bsdl->reading, start, end, 1, IDENTIFIER);
        if (token == IDENTIFIER)
            bsdl->reading->value->string = name_intern_padded(&bsdl->names, start, length, hash);
        return token;
    }
    if (bsdl->scan_mode == SCAN_MODE_USE)
        return finish_use_name(bsdl, start);
    return improper_word(bsdl, start, end, false);
}

static int scan_string(Bsdl *bsdl, const char *start)
{
    ScanState *reading = bsdl->reading;
    const auto *close = static_cast<const char *>(
        std::memchr(start + 1, '"', static_cast<size_t>(reading->end - start - 1)));
    if (!close) {
        if (reading->end - start >= TOKEN_SIZE) {
            stop(reading, "input buffer overflow, can't enlarge buffer because scanner uses REJECT",
                 input_place(reading, start, start + 1));
            return BSDL_YYEOF;
        }
        // What is missing is its end; what shows is the mark that opens it.
        finish_input(reading, input_place(reading, start, start + 1));
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "incomplete-string",
                      "Incomplete quoted string on line %i", reading->line);
        reading->at = reading->end;
        return BSDL_YYEOF;
    }
    const char *end = close + 1;
    bool skipped = bsdl->fast_read == 2;
    int token = finish(reading, start, end, 0, skipped ? SKIP_QUOTED_STRING : QUOTED_STRING);
    if (token == BSDL_YYEOF)
        return token;
    input_count_line_ends(reading, start, end);
    // "E" alone is taken for a string without a text.
    bool empty = end - start == 3 && (start[1] == 'E' || start[1] == 'e');
    // The text lies in a buffer of ours, where the pieces of a value are moved together.
    if (empty)
        bsdl->reading->value->quoted = {nullptr, 0};
    else
        bsdl->reading->value->quoted = {const_cast<char *>(start),
                                        static_cast<uint32_t>(end - start)};
    return empty ? static_cast<int>(QUOTED_STRING) : token;
}

// A comment goes on over the pieces of a string, and into the file after them, up to a line end.
static int skip_comment(Bsdl *bsdl, const char *start)
{
    ScanState *reading = bsdl->reading;
    const Place begin = input_place(reading, start, start + 2);
    const char *at = start;
    size_t length = 0;
    for (;;) {
        const char *from = at;
        while (at < reading->end && *at != '\n' && *at != '\r')
            at++;
        length += static_cast<size_t>(at - from);
        if (at < reading->end || !reading->strings.active)
            break;
        input_leave_strings(reading);
        at = reading->at;
    }
    const size_t line_end = at < reading->end ? line_end_length(at) : 0;
    if (length + line_end >= TOKEN_SIZE) {
        stop(reading, "token too large, exceeds YYLMAX", begin);
        return BSDL_YYEOF;
    }
    if (line_end)
        input_count_line_end(reading, at);
    reading->at = at + line_end;
    return NO_TOKEN;
}

// A Control-Z with nothing but its like, zeros and white space after it ends the text, as it does
// in files from systems that close texts with it.
static bool ends_as_text(const ScanState *reading, const char *at)
{
    if (*at != '\x1A' || reading->strings.active)
        return false;
    while (at < reading->end && (*at == '\x1A' || *at == '\0' || start_class(*at) == BLANK ||
                                 start_class(*at) == LINE_END))
        at++;
    return at == reading->end;
}

static int illegal_character(Bsdl *bsdl, const char *at)
{
    ScanState *reading = bsdl->reading;
    bool strict = bsdl->strict != 0;
    finish(reading, at, at + 1, 0, NO_TOKEN);
    if (strict)
        parse_message(bsdl, BSDL_LEVEL_ERROR, 2, "illegal-character",
                      "Illegal character '%c' on line %i", *at, reading->line);
    else if (*at)
        parse_message(bsdl, BSDL_LEVEL_WARNING, 2, "illegal-character",
                      "Ignoring illegal character '%c' on line %i", *at, reading->line);
    if (*at && !strict)
        return NO_TOKEN;
    return finish_input(reading, reading->place);
}

static int punctuation(Bsdl *bsdl, const char *start, size_t length, int token)
{
    // Only characters that something longer begins with come here, so one more is looked at.
    return finish(bsdl->reading, start, start + length, length == 1, token);
}

static bool isc_signs(Bsdl *bsdl) { return (bsdl->reading->rules & (RULES_ISC | RULES_PRG)) != 0; }

// A sign belongs to the number where the mode says so.
static int scan_sign(Bsdl *bsdl, const char *start)
{
    int32_t mode = bsdl->scan_mode;
    if (mode == SCAN_MODE_SIGNED && is_digit(start[1]))
        return finish_integer(bsdl, start, digits_end(start + 1), INTEGER, 0);
    if (mode == SCAN_MODE_REAL)
        if (const char *end = real_end(start))
            return finish_real(bsdl, start, end);
    if (isc_signs(bsdl))
        return punctuation(bsdl, start, 1, *start);
    return illegal_character(bsdl, start);
}

static int scan_token_at(Bsdl *bsdl, const char *at, CharClass first)
{
    switch (first) {
    case LETTER:
        return scan_word(bsdl, at);
    case DIGIT:
        return scan_digits(bsdl, at);
    case PUNCTUATION:
        return finish(bsdl->reading, at, at + 1, 0, *at);
    case QUOTES:
        return scan_string(bsdl, at);
    case MINUS:
        if (at[1] == '-')
            return skip_comment(bsdl, at);
        return scan_sign(bsdl, at);
    case PLUS:
        return scan_sign(bsdl, at);
    case DOT:
        if (bsdl->scan_mode == SCAN_MODE_REAL && is_digit(at[1]))
            return finish_real(bsdl, at, real_end(at));
        return punctuation(bsdl, at, 1, '.');
    case COLON:
        if (at[1] == '=')
            return punctuation(bsdl, at, 2, COL_EQ);
        if (at[1] == ':' && bsdl->reading->rules == RULES_PRG)
            return punctuation(bsdl, at, 2, D_COLON);
        return punctuation(bsdl, at, 1, ':');
    case LESS:
        if (at[1] == '>')
            return punctuation(bsdl, at, 2, BOX);
        if (at[1] == '<' && isc_signs(bsdl))
            return punctuation(bsdl, at, 2, SH_L);
        return punctuation(bsdl, at, 1, '<');
    case GREATER:
        if (at[1] == '>' && isc_signs(bsdl))
            return punctuation(bsdl, at, 2, SH_R);
        return punctuation(bsdl, at, 1, '>');
    case QUESTION:
        if (!isc_signs(bsdl))
            return illegal_character(bsdl, at);
        return at[1] == '!' ? punctuation(bsdl, at, 2, IO_OP) : punctuation(bsdl, at, 1, '?');
    case DOLLAR:
        if (is_letter(at[1]))
            return finish_name(bsdl, at, identifier_end(at + 1), VARIABLE);
        return isc_signs(bsdl) ? punctuation(bsdl, at, 1, '$') : illegal_character(bsdl, at);
    case APOSTROPHE:
        return finish(bsdl->reading, at, at + 1, 0, QUOTE);
    case ISC_PUNCTUATION:
        return isc_signs(bsdl) ? finish(bsdl->reading, at, at + 1, 0, *at)
                               : illegal_character(bsdl, at);
    default:
        return illegal_character(bsdl, at);
    }
}

// The name of an extension's package with ALL, which may go on beyond the word; NULL for none.
static const char *with_all_end(const char *start)
{
    const auto length = static_cast<size_t>(word_end(start) - start);
    const Keyword *row = find_keyword(start, length, text_hash_padded(start, length));
    const Keyword *package = find_with_all(start, length, row);
    return package ? start + std::strlen(package->word) + WITH_ALL : nullptr;
}

// Where part and file names stand they win over anything shorter.
[[gnu::noinline]] static int scan_part_or_file_name(Bsdl *bsdl, const char *start)
{
    bool part = bsdl->scan_mode == SCAN_MODE_PART_NAME;
    const char *end = start;
    while (CHARS.part_name[static_cast<unsigned char>(*end)] & (part ? 1 : 2))
        end++;
    const char *shorter = start + 1;
    if (start_class(*start) == LETTER || start_class(*start) == DIGIT)
        shorter = word_end(start);
    else if (start_class(*start) == OTHER)
        shorter = start; // nothing else takes such a character
    for (const char *pair : {"::", ":=", "<>", "<<", ">>", "?!"})
        if (std::strncmp(start, pair, 2) == 0)
            shorter = start + 2;
    if (*start == '$')
        shorter = identifier_end(start + 1);
    if (end <= shorter || std::strncmp(start, "--", 2) == 0 || end == with_all_end(start))
        return NO_TOKEN;
    return part ? finish_name(bsdl, start, end, PART_NAME)
                : finish_text(bsdl, start, end, FILE_NAME);
}

// Before the first token, and when other words have become keywords. False when the reading is
// over.
[[gnu::noinline]] static bool make_ready(Bsdl *bsdl)
{
    ScanState *reading = bsdl->reading;
    if (reading->stopped)
        return false;
    reading->rules = reader_state.rule_set = pick_rule_set(bsdl);
    reading->ready = true;
    return true;
}

void scan_standards(Bsdl *bsdl, uint32_t standards, uint64_t filter)
{
    bsdl->standards = standards;
    bsdl->standards_filter = filter;
    bsdl->reading->ready = false;
}

static int scan_from(const char *at, Bsdl *bsdl)
{
    ScanState *reading = bsdl->reading;
    for (;;) {
        const CharClass first = start_class(*at);
        if (first == BLANK) {
            at++;
            continue;
        }
        if (first == LINE_END) {
            input_count_line_end(reading, at);
            at += line_end_length(at);
            continue;
        }
        if (first == ZERO && at >= reading->end) {
            reading->at = at;
            if (input_next(reading)) {
                at = reading->at;
                continue;
            }
            // After the text, not after the line end that was put there.
            return finish_input(reading, input_place(reading, at - 1, at - 1));
        }
        if (first == FATAL) {
            if (ends_as_text(reading, at)) {
                // As at the end of a file, a line end closes the last token.
                input_count_line_end(reading, at);
                at = reading->end;
                continue;
            }
            stop(reading, "non printable", input_place(reading, at, at + 1));
            return BSDL_YYEOF;
        }
        if (at >= reading->piece_end)
            input_pass_pieces(reading, at);
        reading->place.begin = low_half(at) - reading->origin;
        int token = NO_TOKEN;
        if (reading->rules == RULES_PRG &&
            (bsdl->scan_mode == SCAN_MODE_PART_NAME || bsdl->scan_mode == SCAN_MODE_FILE_NAME))
            token = scan_part_or_file_name(bsdl, at);
        if (token == NO_TOKEN)
            token = scan_token_at(bsdl, at, first);
        if (token != NO_TOKEN) {
            if (bsdl->arena.failed) { // no room for its text
                memory_ran_out(bsdl);
                return BSDL_YYEOF;
            }
            // Values in quotes are marked token by token, when they are read.
            if (token != QUOTED_STRING && token != '&' && token != BSDL_YYEOF)
                mark_token(reading->base, reading->place);
            return token;
        }
        at = reading->at;
    }
}

// Kept apart, so that the simplest tokens do not pay for what the others need.
[[gnu::noinline]] static int scan_longer_token(const char *at, BSDL_YYSTYPE *value, Place *place,
                                               Bsdl *bsdl)
{
    bsdl->reading->value = value;
    const int token = scan_from(at, bsdl);
    *place = bsdl->reading->place;
    return token;
}

int scan_token(BSDL_YYSTYPE *value, Place *place, Bsdl *bsdl)
{
    ScanState *reading = bsdl->reading;
    if (bsdl->arena.failed)
        stop(reading, nullptr, {});
    if (!reading->ready && !make_ready(bsdl))
        return BSDL_YYEOF;
    const char *at = reading->at;
    while (start_class(*at) == BLANK)
        at++;
    // Half of all tokens are such, and much simpler than the others.
    if (start_class(*at) != PUNCTUATION || at >= reading->piece_end || reading->rules == RULES_PRG)
        return scan_longer_token(at, value, place, bsdl);
    const int token = static_cast<unsigned char>(*at);
    reading->place.begin = low_half(at) - reading->origin;
    finish(reading, at, at + 1, 0, token);
    if (token != '&')
        mark_token(reading->base, reading->place);
    *place = reading->place;
    return token;
}

TokenText scan_token_text(const Bsdl *bsdl)
{
    return {bsdl->reading->token, static_cast<int>(bsdl->reading->token_length)};
}

int32_t scan_line(const Bsdl *bsdl) { return bsdl->reading->line; }

Place scan_place(const Bsdl *bsdl) { return bsdl->reading ? bsdl->reading->place : Place{}; }

Place scan_place_of_statement(const Bsdl *bsdl)
{
    Place place = bsdl->reading->place;
    if (bsdl->reading->strings_behind > place.begin)
        place.end = bsdl->reading->strings_behind;
    return place;
}

void scan_place_set(Bsdl *bsdl, Place place) { bsdl->reading->place = place; }

bool scan_stopped(const Bsdl *bsdl) { return bsdl->reading->stopped; }

bool reading_is_over(const Bsdl *bsdl)
{
    const SourceTexts *source = bsdl->reading->source;
    return source && source->over && *source->over;
}

void end_reading(Bsdl *bsdl, int status)
{
    if (!bsdl->reading->source)
        std::exit(status);
    stop(bsdl->reading, nullptr, {});
}

const char *integer_text(Bsdl *bsdl, int32_t value)
{
    char digits[12];
    return model_text(bsdl, {digits, std::to_chars(digits, digits + sizeof digits, value).ptr});
}

const char *integer_name(Bsdl *bsdl, int32_t value)
{
    char digits[24] = {}; // with room to be read by words
    const char *end = std::to_chars(digits, digits + 12, value).ptr;
    const auto length = static_cast<size_t>(end - digits);
    return name_intern_padded(&bsdl->names, digits, length, text_hash_padded(digits, length));
}
