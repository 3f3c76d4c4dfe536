// tarnlet: the command line on the exports of libtarnlet.

#include "command.h"
#include "console.h"
#include "near_name.h"
#include "option_table.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace
{

constexpr const char *EXIT_STATUS_OF_QUERIES =
    "0 when all is well, 1 when a file has syntax errors, 2 for a usage error or a file that "
    "cannot be read.";
constexpr const char *EXIT_STATUS_OF_DIFF = "0 when nothing differs, 1 when something does, 2 for "
                                            "a usage error or a file that cannot be read.";
constexpr const char *EXIT_STATUS_OF_REPORT =
    "0 when the pages are written, whatever the files hold, 2 for a usage error or a file that "
    "cannot be read or written.";
constexpr const char *EXIT_STATUS_OF_FIND = "0 when there is one, 1 when there is none, 2 for a "
                                            "usage error or a file that cannot be read.";
constexpr const char *EXIT_STATUS_OF_TEXTS = "0 when all is well, 2 for a usage error.";

constexpr const char *EXIT_STATUS_OF_SERVER =
    "0 when the client has shut the server down, 1 when it went away, 2 for a usage error.";

constexpr Command COMMANDS[] = {
    {"check",
     "Check descriptions and data files",
     EXIT_STATUS,
     set_up_check,
     {{"tarnlet check -j 4 parts/", "Check all files below a folder, four at a time."},
      {"tarnlet check --strict -I packages device.bsd",
       "Look for package files in a folder of the user's, and be strict."},
      {"tarnlet check --format sarif --output check.sarif parts/",
       "Write a report that code hosts can show, and the text to the terminal."},
      {"tarnlet check --rule pin-without-cell=error --rule opcode-duplicate=off device.bsd",
       "Make a warning an error, and leave another out."}}},
    {"explain",
     "Tell what a rule means and how to fix a file",
     EXIT_STATUS_OF_TEXTS,
     set_up_explain,
     {{"tarnlet explain pin-without-cell", "Read about the rule that a finding names."}}},
    {"ebst",
     "Write the EBST file of a description",
     EXIT_STATUS,
     set_up_ebst,
     {{"tarnlet ebst -o device.dsh device.bsd", "Write the EBST file under a given name."}}},
    {"info",
     "Show what a description or a data file holds",
     EXIT_STATUS_OF_QUERIES,
     set_up_info,
     {{"tarnlet info device.bsd", "Show what the device has."},
      {"tarnlet info --json device.bsd > device.json", "Write all of it for a program to read."}}},
    {"pins",
     "List the pins of a device",
     EXIT_STATUS_OF_QUERIES,
     set_up_pins,
     {{"tarnlet pins --package BGA49 device.bsd", "List the pins of one package of the device."}}},
    {"cells",
     "List the cells of the boundary register",
     EXIT_STATUS_OF_QUERIES,
     set_up_cells,
     {{"tarnlet cells --csv device.bsd > cells.csv", "Write them for a spreadsheet."},
      {"tarnlet cells --sort port device.bsd", "Read them port by port."}}},
    {"instructions",
     "List the instructions with their opcodes and registers",
     EXIT_STATUS_OF_QUERIES,
     set_up_instructions,
     {{"tarnlet instructions device.bsd", "List them as a table."}}},
    {"registers",
     "List the data registers that the instructions select",
     EXIT_STATUS_OF_QUERIES,
     set_up_registers,
     {{"tarnlet registers device.bsd", "List them as a table."}}},
    {"diff",
     "Show what differs between two descriptions of a device",
     EXIT_STATUS_OF_DIFF,
     set_up_diff,
     {{"tarnlet diff old.bsd new.bsd", "Show what has changed."},
      {"tarnlet diff --ignore cells old.bsd new.bsd",
       "Show what has changed beside the boundary register."}}},
    {"list",
     "List fields of many files, a row for each file",
     EXIT_STATUS_OF_QUERIES,
     set_up_list,
     {{"tarnlet list parts/", "List the devices of a folder."},
      {"tarnlet list --fields file,ir-length,opcode:EXTEST parts/",
       "List what a chain of these devices needs."}}},
    {"lsp",
     "Serve an editor: findings, fixes, hover, completion (LSP)",
     EXIT_STATUS_OF_SERVER,
     set_up_lsp,
     {{"tarnlet lsp", "What an editor runs; editors/README.md has its settings."}}},
    {"report",
     "Write pages that show devices",
     EXIT_STATUS_OF_REPORT,
     set_up_report,
     {{"tarnlet report device.bsd -o device.html", "Write a page to look at, or to send."},
      {"tarnlet report parts/ -o pages", "Write a page for each file of a folder, and an index."},
      {"tarnlet report --diff old.bsd new.bsd -o diff.html",
       "Show both packages with what differs."}}},
    {"find",
     "Find the descriptions of an IDCODE",
     EXIT_STATUS_OF_FIND,
     set_up_find,
     {{"tarnlet find 0x06415041 parts/", "Find what a chain has answered."},
      {"tarnlet find 0xX6415041 parts/", "Find it whatever the version."}}},
    {"manual",
     "Print a manual page",
     EXIT_STATUS_OF_TEXTS,
     set_up_manual,
     {{"tarnlet manual check | man -l -", "Read the page of a command."}}},
    {"completion",
     "Print a completion script for a shell",
     EXIT_STATUS_OF_TEXTS,
     set_up_completion,
     {{"source <(tarnlet completion bash)", "Complete commands and options in this shell."}}},
};

static_assert(std::ranges::all_of(COMMANDS, [](const Command &command) {
    return command.examples[0].line != nullptr;
}));

constexpr const char *SUMMARY = "Reads, checks and queries boundary scan descriptions (BSDL).";

} // namespace

std::span<const Command> all_commands() { return COMMANDS; }

static std::string near_command(std::string_view name)
{
    std::vector<std::string> names;
    for (const Command &command : COMMANDS)
        names.emplace_back(command.name);
    return did_you_mean(name, names);
}

static const Command *find_command(std::string_view name)
{
    for (const Command &command : COMMANDS)
        if (name == command.name)
            return &command;
    return nullptr;
}

// For the first of the arguments that nobody wants.
static std::string near_option(const CLI::App &app)
{
    std::vector<std::string> names;
    for (const CLI::Option *option : app.get_options())
        for (const std::string &name : option->get_lnames())
            names.push_back("--" + name);
    for (const std::string &rest : app.remaining())
        if (rest.starts_with("--"))
            return did_you_mean(rest.substr(0, rest.find('=')), names);
    return {};
}

static int run(const Command &command, int argc, char **argv)
{
    CLI::App app(command.summary, std::string("tarnlet ") + command.name);
    std::function<int()> action = command.set_up(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0) {
            print_command_help(command);
            return STATUS_CLEAN;
        }
        complain(escaped(error.what()) + near_option(app) +
                 "\nRun with --help for more information.");
        return STATUS_UNUSABLE;
    }
    return action();
}

static void print_help(FILE *to)
{
    std::fprintf(to, "%s\n\nUsage: tarnlet COMMAND [OPTION...] ...\n\nCommands:\n", SUMMARY);
    for (const Command &command : COMMANDS)
        std::fprintf(to, "  %-14s%s\n", command.name, command.summary);
    std::fprintf(to, "\n'tarnlet COMMAND --help' has the options of a command; "
                     "'tarnlet --version' gives the version.\n");
}

// A file that is opened while one of the first three is closed would take its place, and messages
// would go into it. What stands in for standard output takes nothing, so that the loss shows.
static void occupy_standard_files()
{
    while (true) {
        const int file = open("/dev/null", O_RDWR);
        if (file == STDOUT_FILENO) {
            close(file);
            open("/dev/null", O_RDONLY);
        } else if (file < 0 || file > STDERR_FILENO) {
            close(file);
            return;
        }
    }
}

int main(int argc, char **argv)
{
    occupy_standard_files();
    // A reader that has gone away shows as a write error, which ends the run tidily.
    std::signal(SIGPIPE, SIG_IGN);
    const std::string_view first = argc > 1 ? argv[1] : "";
    int status = STATUS_CLEAN;
    if (first == "--help" || first == "-h" || first == "help") {
        print_help(stdout);
    } else if (first == "--version" || first == "-V") {
        std::printf("tarnlet %s\n", TARNLET_VERSION);
    } else if (const Command *command = find_command(first)) {
        status = run(*command, argc - 1, argv + 1);
    } else {
        if (argc > 1)
            complain("there is no command '" + escaped(first) + "'" + near_command(first) + "\n");
        print_help(stderr);
        return STATUS_UNUSABLE;
    }
    return close_output() ? status : STATUS_UNUSABLE;
}
