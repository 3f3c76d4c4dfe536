#pragma once

#include "findings.h"

#include <memory>

// Writes findings to standard output in one of the formats.
class Reporter
{
  public:
    virtual ~Reporter() = default;
    virtual void file(const FileFindings &file) = 0;
    virtual void end(const Totals &totals) = 0;
};

struct TextStyle {
    bool colour = false;
    bool closing_line = true;
    bool clean_files = false; // name them as well
};

std::unique_ptr<Reporter> text_reporter(const TextStyle &style);
std::unique_ptr<Reporter> gcc_reporter(bool with_closing_line);
std::unique_ptr<Reporter> json_reporter();
std::unique_ptr<Reporter> sarif_reporter();
