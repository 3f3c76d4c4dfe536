#pragma once

#include "diagnosed_file.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// The lines of a text, as the library counts them: a lone carriage return ends a line too.
class SourceLines
{
  public:
    SourceLines() : SourceLines(std::string_view()) {}
    explicit SourceLines(std::string_view text); // which has to live as long

    // Without its line end; empty when there is no such line.
    std::string_view line(int32_t number) const;
    // Where a place begins in the text; its end for a place after it.
    size_t offset(int32_t line, int32_t column) const;

  private:
    std::string_view text;
    std::vector<size_t> starts;
};

// The lines of a file that was diagnosed and of the package files that it uses, read when they are
// first asked for.
class Sources
{
  public:
    explicit Sources(const DiagnosedFile &diagnosed) : file(diagnosed) {}
    // Of the file that a place names.
    const SourceLines &of(const BsdlPlace &place);
    std::string_view line_of(const BsdlPlace &place) { return of(place).line(place.line); }

  private:
    struct Source {
        std::string text;
        SourceLines lines;
    };

    const DiagnosedFile &file;
    std::map<std::string, Source, std::less<>> sources;
};

// A part of a line, in bytes.
struct Mark {
    size_t at;
    size_t length; // 0: none
};

// What is to be marked in the line in which a place begins: up to its end there, at least a byte;
// the whole line, less blanks and comment, when the place names no column.
Mark mark_of(std::string_view line, const BsdlPlace &place);
