// tarnlet lsp: the language server, for editors.

#include "command.h"
#include "lsp/server.h"

#include <CLI/CLI.hpp>

#include <cstdio>

std::function<int()> set_up_lsp(CLI::App &app)
{
    // Clients add it to the command line of a server, to say how they talk to it.
    auto stdio = std::make_shared<bool>();
    app.add_flag("--stdio", *stdio, "Use standard input and output; this is also the default");
    return [stdio] { return lsp::serve(stdin, stdout); };
}
