#pragma once

#include <string>

namespace support
{

// The text of a package file; `use` stands in the header and, unless it has its own, in the body.
struct PackageFile {
    std::string name = "own";
    std::string use = "";
    std::string header = "";
    std::string body = "";
    const char *body_use = nullptr;
    const char *end_name = nullptr;
    const char *body_name = nullptr;
    const char *body_end_name = nullptr;

    std::string text() const
    {
        const std::string body_is = body_name ? body_name : name;
        return "package " + name + " is\n" + use + header + "end " + (end_name ? end_name : name) +
               ";\npackage body " + body_is + " is\n" + (body_use ? body_use : use) + body +
               "end " + (body_end_name ? body_end_name : body_is) + ";\n";
    }
};

inline std::string announced(const std::string &name)
{
    return "constant " + name + " : CELL_INFO;\n";
}

inline std::string described(const std::string &name, const std::string &captures)
{
    return "constant " + name + " : CELL_INFO := (" + captures + ");\n";
}

} // namespace support
