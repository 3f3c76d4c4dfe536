#pragma once

#include <string_view>

// The parts of the page, put into the tool by cmake/ReportTemplate.cmake.
extern const std::string_view REPORT_HTML;
extern const std::string_view REPORT_STYLE;
extern const std::string_view REPORT_SCRIPT;
