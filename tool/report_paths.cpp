#include "report_paths.h"

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace fs = std::filesystem;

std::string report_path(const std::string &path)
{
    std::error_code failed;
    const fs::path here = fs::current_path(failed);
    const fs::path absolute = fs::absolute(path, failed).lexically_normal();
    if (failed)
        return path;
    const fs::path relative = absolute.lexically_relative(here);
    return relative.empty() || *relative.begin() == ".." ? absolute.string() : relative.string();
}

std::string report_uri(const std::string &path)
{
    constexpr std::string_view PLAIN = "-._~/!$&'()*+,;=@";
    const std::string named = report_path(path);
    std::string uri = named.starts_with('/') ? "file://" : "";
    for (const char c : named) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x80 && std::isalnum(byte)) || PLAIN.find(c) != std::string_view::npos) {
            uri += c;
        } else {
            char code[4];
            std::snprintf(code, sizeof code, "%%%02X", byte);
            uri += code;
        }
    }
    return uri;
}
