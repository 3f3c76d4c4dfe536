// tarnlet manual: manual pages from the tables of commands and options.

#include "command.h"
#include "console.h"
#include "option_table.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string_view>

// Of the tool; those of the commands stand with them.
static constexpr Example EXAMPLES[] = {
    {"tarnlet check device.bsd", "Check a description."},
    {"tarnlet check --explain pin-without-cell", "Tell what a message is about."},
};

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

static void print_examples(std::span<const Example> examples)
{
    std::printf(".SH EXAMPLES\n");
    for (const Example &example : examples)
        if (example.line)
            std::printf(".TP\n.B %s\n%s\n", roff(example.line).c_str(),
                        roff(example.meaning).c_str());
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
    std::printf("\n%s.\n", roff(full_description(option)).c_str());
}

static void print_command_page(const Command &command)
{
    print_heading(command.name, command.summary);
    const std::vector<OptionEntry> options = options_of(command);
    std::printf(".SH SYNOPSIS\n.B tarnlet %s\n[\\fIOPTION\\fR...]\\fI%s\\fR\n.SH OPTIONS\n",
                command.name, roff(arguments_of(options)).c_str());
    for (const OptionEntry &option : options)
        print_option(option);
    print_examples(command.examples);
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
    print_examples(EXAMPLES);
    std::printf(".SH ENVIRONMENT\n.TP\n.B BST64\nA folder in which package files are looked for.\n"
                ".TP\n.B NO_COLOR\nWhen set, output is not coloured.\n"
                ".TP\n.B CLICOLOR_FORCE\nWhen set to other than 0, output is coloured even when it "
                "goes to a file or pipe.\n");
    print_exit_status(EXIT_STATUS);
}

static int print_manual(const std::string &name)
{
    if (name.empty())
        print_tool_page();
    for (const Command &command : all_commands())
        if (name == command.name) {
            print_command_page(command);
            break;
        }
    return STATUS_CLEAN;
}

std::function<int()> set_up_manual(CLI::App &app)
{
    auto name = std::make_shared<std::string>();
    std::vector<std::string> commands;
    for (const Command &command : all_commands())
        commands.push_back(command.name);
    app.add_option("COMMAND", *name, "Command whose page is printed; without it that of the tool")
        ->check(CLI::IsMember(commands));
    return [name] { return print_manual(*name); };
}
