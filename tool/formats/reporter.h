#pragma once

#include "findings.h"

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

// Writes findings in one of the formats.
class Reporter
{
  public:
    virtual ~Reporter() = default;
    virtual void file(const FileFindings &file) = 0;
    virtual void end(const Totals &totals) = 0;
};

using Writer = std::function<void(std::string_view text)>;

// To standard output.
Writer standard_writer();

struct TextStyle {
    bool colour = false;
    bool closing_line = true;
    bool clean_files = false; // name them as well
    bool follow_ups = false;  // show them, not their number
};

std::unique_ptr<Reporter> text_reporter(const TextStyle &style, Writer write);
std::unique_ptr<Reporter> gcc_reporter(const TextStyle &style, Writer write);
std::unique_ptr<Reporter> json_reporter(Writer write);
std::unique_ptr<Reporter> sarif_reporter(Writer write);
std::unique_ptr<Reporter> junit_reporter(Writer write);
std::unique_ptr<Reporter> code_quality_reporter(Writer write);

// As they stand in JSON.
const char *state_name(FileState state);
nlohmann::ordered_json message_of(const Finding &finding, const DiagnosedFile &file);
