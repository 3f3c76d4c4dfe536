#include "lsp/messages.h"

#include "lsp/document.h"

#include <cstdlib>

namespace lsp
{

// Beyond this a length is no length.
static constexpr unsigned long LONGEST_MESSAGE = 1ul << 30;
static constexpr size_t LONGEST_HEADER = 4096;

static bool read_header(FILE *from, std::string &line)
{
    line.clear();
    for (int c; (c = std::getc(from)) != EOF;) {
        if (c == '\n') {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            return true;
        }
        if (line.size() == LONGEST_HEADER)
            return false;
        line += static_cast<char>(c);
    }
    return false;
}

std::optional<std::string> read_message(FILE *from)
{
    std::optional<unsigned long> length;
    for (std::string line; read_header(from, line);) {
        if (line.empty() && length)
            break;
        constexpr std::string_view NAME = "content-length:";
        if (line.size() > NAME.size() && same_name(line.substr(0, NAME.size()), NAME))
            length = std::strtoul(line.c_str() + NAME.size(), nullptr, 10);
    }
    if (!length || *length > LONGEST_MESSAGE)
        return std::nullopt;
    std::string body;
    while (body.size() < *length) {
        // In parts, so that a length alone takes no memory.
        const size_t before = body.size();
        body.resize(std::min<size_t>(*length, before + (1 << 20)));
        const size_t got = std::fread(body.data() + before, 1, body.size() - before, from);
        if (got < body.size() - before)
            return std::nullopt;
    }
    return body;
}

std::string message_body(json message)
{
    message["jsonrpc"] = "2.0";
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

void write_message(FILE *to, const std::string &body)
{
    std::fprintf(to, "Content-Length: %zu\r\n\r\n", body.size());
    std::fwrite(body.data(), 1, body.size(), to);
    std::fflush(to);
}

} // namespace lsp
