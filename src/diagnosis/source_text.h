#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// A text as its bytes show it, whether it can be read or not.

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Where lines begin. "\n", "\r\n" and "\r" alone end a line.
class Lines
{
  public:
    explicit Lines(std::string_view text);

    // Line and column from 1 of a byte; those of the end for an offset beyond it.
    int32_t line_of(size_t offset) const;
    int32_t column_of(size_t offset) const;
    // The byte at a place; the nearest one for a place outside of the text.
    size_t offset_of(int32_t line, int32_t column) const;

  private:
    std::vector<size_t> starts;
    size_t size;
};

enum class RawKind : uint8_t {
    WORD,  // letters, digits, underscores, points
    MARK,  // one character, quotation marks among them
    OTHER, // a run of bytes that the language has no use for
};

// A run of bytes between blanks and comments, inside of quotes as well as outside.
struct RawToken {
    size_t begin;
    size_t end;
    RawKind kind;

    std::string_view in(std::string_view text) const { return text.substr(begin, end - begin); }
};

// The tokens around a place, in the order of the text: at most `before` that begin before it and
// `behind` from it on. Tokens of comments are left out.
std::vector<RawToken> raw_tokens_around(std::string_view text, size_t place, size_t before,
                                        size_t behind);

// The first raw token at or after the offset. False at the end of the text.
bool next_raw_token(std::string_view text, size_t offset, RawToken *token);

// The statement around a place: from after the `;` before it to after its own, as far as the
// quotation marks can be trusted.
struct TextRange {
    size_t begin;
    size_t end;
};
TextRange statement_around(std::string_view text, size_t place);

// Whether the strings on the lines of a range end on the lines they begin on, as the language
// wants it.
bool strings_end_on_their_lines(std::string_view text, TextRange range);
