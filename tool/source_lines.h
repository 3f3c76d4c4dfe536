#pragma once

#include "findings.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// Lines of the files that findings point at, read when they are first asked for.
class SourceLines
{
  public:
    // Without its line end; empty when there is no such line, and for a pipe, which has been read.
    std::string_view line(const std::string &file, int32_t number);
    void forget() { files.clear(); }

  private:
    struct Source {
        std::string text;
        std::vector<size_t> starts;
    };
    std::map<std::string, Source> files;
};

// The place in a line that a finding speaks of: the first of the names and numbers in its message
// that stands in it, else all of it but the white space and the comment.
struct Mark {
    size_t at;
    size_t length;
};
Mark find_mark(std::string_view line, const Finding &finding);
