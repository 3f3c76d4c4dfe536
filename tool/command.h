#pragma once

#include <functional>
#include <span>

namespace CLI
{
class App;
}

// What every command gives back to the shell.
enum ExitStatus {
    STATUS_CLEAN = 0,
    STATUS_FINDINGS = 1, // errors in a file
    STATUS_UNUSABLE = 2  // a usage error, or a file that cannot be read or written
};

// A line for the shell, and what it does.
struct Example {
    const char *line;
    const char *meaning;
};

// A command of the tool. Only the one that is called is set up, which keeps the start short; the
// help, the manual pages and the completions set up all of them.
struct Command {
    const char *name;
    const char *summary;
    const char *exit_status;
    // Adds the options; the result runs the command once they have their values.
    std::function<int()> (*set_up)(CLI::App &app);
    // One at least; those that are not there are empty.
    Example examples[4];
};

std::span<const Command> all_commands();

constexpr const char *EXIT_STATUS =
    "0 when all is well, 1 when a file has errors, 2 for a usage error "
    "or for a file that cannot be read or written.";

std::function<int()> set_up_check(CLI::App &app);
std::function<int()> set_up_explain(CLI::App &app);
std::function<int()> set_up_find(CLI::App &app);
std::function<int()> set_up_ebst(CLI::App &app);
std::function<int()> set_up_manual(CLI::App &app);
std::function<int()> set_up_completion(CLI::App &app);
std::function<int()> set_up_info(CLI::App &app);
std::function<int()> set_up_pins(CLI::App &app);
std::function<int()> set_up_cells(CLI::App &app);
std::function<int()> set_up_instructions(CLI::App &app);
std::function<int()> set_up_registers(CLI::App &app);
std::function<int()> set_up_diff(CLI::App &app);
std::function<int()> set_up_list(CLI::App &app);
std::function<int()> set_up_lsp(CLI::App &app);
std::function<int()> set_up_report(CLI::App &app);
