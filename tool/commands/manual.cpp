// tarnlet manual: manual pages from the tables of commands and options.

#include "command.h"
#include "console.h"
#include "option_table.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string_view>

namespace
{

struct Example {
    const char *command; // "" for the page of the tool
    const char *line;
    const char *meaning;
};

constexpr Example EXAMPLES[] = {
    {"", "tarnlet check device.bsd", "Check a description."},
    {"", "tarnlet check --explain pin-without-cell", "Tell what a message is about."},
    {"check", "tarnlet check -j 4 parts/", "Check all files below a folder, four at a time."},
    {"check", "tarnlet check --strict -I packages device.bsd",
     "Look for package files in a folder of the user's, and be strict."},
    {"check", "tarnlet check --format sarif parts/ > check.sarif",
     "Write a report that code hosts can show."},
    {"check", "tarnlet check --rule pin-without-cell=error --rule opcode-duplicate=off x.bsd",
     "Make a warning an error, and leave another out."},
    {"ebst", "tarnlet ebst -o device.dsh device.bsd", "Write the EBST file under a given name."},
};

} // namespace

// Roff reads a backslash and a dot or quote at the start of a line as its own, and makes a
// hyphen of a minus.
static std::string roff(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n'))
            result += std::string("\\&") + c;
        else
            result += c;
    }
    return result;
}

static std::string page_name(std::string_view command)
{
    return command.empty() ? "tarnlet" : "tarnlet-" + std::string(command);
}

static void print_heading(std::string_view command, const char *summary)
{
    std::string name = page_name(command);
    std::string upper = name;
    for (char &c : upper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::printf(".TH %s 1 \"\" \"tarnlet %s\" \"User Commands\"\n.SH NAME\n%s \\- %s\n",
                roff(upper).c_str(), TARNLET_VERSION, roff(name).c_str(), roff(summary).c_str());
}

static void print_examples(std::string_view command)
{
    const char *heading = ".SH EXAMPLES\n";
    for (const Example &example : EXAMPLES) {
        if (command != example.command)
            continue;
        std::printf("%s.TP\n.B %s\n%s\n", heading, roff(example.line).c_str(),
                    roff(example.meaning).c_str());
        heading = "";
    }
}

static void print_exit_status(const char *text)
{
    std::printf(".SH EXIT STATUS\n%s\n", roff(text).c_str());
}

static void print_option(const OptionEntry &option)
{
    std::printf(".TP\n");
    const char *separator = "";
    for (const std::string &name : option.names) {
        std::printf("%s\\fB%s\\fR", separator, roff(name).c_str());
        separator = ", ";
    }
    if (!option.value.empty())
        std::printf(" \\fI%s\\fR", roff(option.value).c_str());
    std::printf("\n%s", roff(option.description).c_str());
    if (!option.choices.empty()) {
        std::printf(" (");
        separator = "";
        for (const std::string &choice : option.choices) {
            std::printf("%s%s", separator, roff(choice).c_str());
            separator = ", ";
        }
        std::printf(")");
    }
    std::printf(".\n");
}

static void print_command_page(const Command &command)
{
    print_heading(command.name, command.summary);
    std::printf(".SH SYNOPSIS\n.B tarnlet %s\n[\\fIOPTION\\fR...]", command.name);
    const std::vector<OptionEntry> options = options_of(command);
    for (const OptionEntry &option : options)
        if (option.is_argument)
            std::printf(" \\fI%s\\fR%s", roff(option.names[0]).c_str(),
                        option.repeats ? "..." : "");
    std::printf("\n.SH OPTIONS\n");
    for (const OptionEntry &option : options)
        print_option(option);
    print_examples(command.name);
    print_exit_status(command.exit_status);
    std::printf(".SH SEE ALSO\n.BR tarnlet (1)\n");
}

static void print_tool_page()
{
    print_heading("", "read, check and query boundary scan descriptions");
    std::printf(".SH SYNOPSIS\n.B tarnlet\n\\fICOMMAND\\fR [\\fIOPTION\\fR...] ...\n"
                ".SH DESCRIPTION\n"
                "Reads BSDL descriptions of devices by IEEE 1149.1, IEEE 1532 and IEEE 1149.6, and "
                "PPC/PRG data files.\n.SH COMMANDS\n");
    for (const Command &command : all_commands())
        std::printf(".TP\n.BR tarnlet\\-%s (1)\n%s.\n", command.name,
                    roff(command.summary).c_str());
    print_examples("");
    std::printf(".SH ENVIRONMENT\n.TP\n.B BST64\nA folder in which package files are looked for.\n"
                ".TP\n.B NO_COLOR\nWhen set, output is not coloured.\n"
                ".TP\n.B CLICOLOR_FORCE\nWhen set to other than 0, output is coloured even when it "
                "goes to a file or pipe.\n");
    print_exit_status(EXIT_STATUS);
}

static int print_manual(const std::string &name)
{
    if (name.empty()) {
        print_tool_page();
        return STATUS_CLEAN;
    }
    for (const Command &command : all_commands())
        if (name == command.name) {
            print_command_page(command);
            return STATUS_CLEAN;
        }
    complain("there is no command '" + escaped(name) + "'");
    return STATUS_UNUSABLE;
}

std::function<int()> set_up_manual(CLI::App &app)
{
    auto name = std::make_shared<std::string>();
    app.add_option("COMMAND", *name, "Command whose page is printed; without it that of the tool");
    return [name] { return print_manual(*name); };
}
