#pragma once

#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

namespace lsp
{

using nlohmann::json;

enum ErrorCode {
    PARSE_ERROR = -32700,
    INVALID_REQUEST = -32600,
    METHOD_NOT_FOUND = -32601,
    INVALID_PARAMS = -32602,
    INTERNAL_ERROR = -32603,
    SERVER_NOT_INITIALIZED = -32002,
    REQUEST_FAILED = -32803,
    REQUEST_CANCELLED = -32800
};

// A request that cannot be answered, with the reason for the user.
class RequestError : public std::runtime_error
{
  public:
    RequestError(int why, const std::string &text) : std::runtime_error(text), code(why) {}
    int code;
};

// The body of the next message; nothing at the end of the input, or where it can no longer be told
// where a message begins.
std::optional<std::string> read_message(FILE *from);

std::string message_body(json message);
void write_message(FILE *to, const std::string &body);

} // namespace lsp
