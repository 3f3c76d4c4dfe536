#include "console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <unistd.h>

size_t utf8_length(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    size_t length = byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (length == 0 || byte(0) > 0xF4 || length > text.size())
        return 0;
    for (size_t i = 1; i < length; i++)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    const bool overlong =
        (byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xF0 && byte(1) < 0x90);
    const bool surrogate = byte(0) == 0xED && byte(1) > 0x9F;
    const bool beyond = byte(0) == 0xF4 && byte(1) > 0x8F;
    const bool control = byte(0) == 0xC2 && byte(1) < 0xA0;
    const bool no_character = byte(0) == 0xEF && byte(1) == 0xBF && byte(2) >= 0xBE;
    return overlong || surrogate || beyond || control || no_character ? 0 : length;
}

std::string escaped(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text[0]);
        size_t length = byte < 0x80 ? 1 : utf8_length(text);
        if (byte == '\n' || byte == '\t') {
            result += byte == '\n' ? "\\n" : "\\t";
        } else if (length == 0 || byte < 0x20 || byte == 0x7F) {
            char code[5];
            std::snprintf(code, sizeof code, "\\x%02X", byte);
            result += code;
            length = 1;
        } else {
            result.append(text.substr(0, length));
        }
        text.remove_prefix(length);
    }
    return result;
}

std::string escaped_line(std::string_view text)
{
    constexpr const char *WHITE = " \t\n\r";
    const size_t first = text.find_first_not_of(WHITE);
    if (first == std::string_view::npos)
        return {};
    return escaped(text.substr(first, text.find_last_not_of(WHITE) - first + 1));
}

std::string counted(size_t count, const char *noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

size_t columns_of(std::string_view text)
{
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

void complain(const std::string &text) { std::fprintf(stderr, "tarnlet: %s\n", text.c_str()); }

bool output_failed() { return std::ferror(stdout) != 0; }

// Whatever the write that failed has left in errno.
static bool reader_has_gone()
{
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

bool close_output()
{
    errno = 0;
    if (std::fflush(stdout) == 0 && !output_failed())
        return true;
    // A long text has gone out, and failed to, before this flush: then the reason is not known.
    const std::string reason = errno ? std::string(": ") + std::strerror(errno) : "";
    if (!reader_has_gone())
        complain("cannot write to standard output" + reason);
    return false;
}

static bool is_set(const char *variable)
{
    const char *value = std::getenv(variable);
    return value && *value;
}

bool colour_wanted(const std::string &choice)
{
    if (choice != "auto")
        return choice == "always";
    if (is_set("NO_COLOR"))
        return false;
    if (is_set("CLICOLOR_FORCE") && std::strcmp(std::getenv("CLICOLOR_FORCE"), "0") != 0)
        return true;
    const char *terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) && (!terminal || std::strcmp(terminal, "dumb") != 0);
}
