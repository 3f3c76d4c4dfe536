// tarnlet completion: scripts that let shells complete commands, options and values, from the
// same tables as the help.

#include "command.h"
#include "option_table.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace
{

// How a value is completed.
enum class ValueKind { NONE, FILE, FOLDER, RULE, FIELDS, CHOICE };

constexpr const char *RULE_IDS = "tarnlet check --list-rules 2>/dev/null | cut -d' ' -f1";
// Any number of them, with commas between.
constexpr const char *FIELD_NAMES = "tarnlet list --list-fields 2>/dev/null | cut -d\\  -f1";

} // namespace

static ValueKind kind_of(const OptionEntry &option)
{
    if (!option.choices.empty())
        return ValueKind::CHOICE;
    if (option.value == "DIR")
        return ValueKind::FOLDER;
    if (option.value == "ID" || option.value == "ID=LEVEL")
        return ValueKind::RULE;
    if (option.value == "NAME,...")
        return ValueKind::FIELDS;
    if (option.value == "OUT" || option.value == "FILE" || option.value == "BASELINE")
        return ValueKind::FILE;
    return ValueKind::NONE;
}

static std::string joined(const std::vector<std::string> &words, const char *separator)
{
    std::string result;
    for (const std::string &word : words)
        result += (result.empty() ? "" : separator) + word;
    return result;
}

static std::string command_names()
{
    std::vector<std::string> names;
    for (const Command &command : all_commands())
        names.push_back(command.name);
    return joined(names, " ");
}

// In single quotes of any of the shells.
static std::string shell_text(const std::string &text)
{
    std::string result;
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result;
}

// ------------------------------------------------------------------------------------------ bash

static void print_bash_value(const Command &command, const OptionEntry &option)
{
    const ValueKind kind = kind_of(option);
    const bool has_words = kind == ValueKind::CHOICE;
    if (option.is_argument ? !has_words : option.value.empty() || kind == ValueKind::FILE)
        return;
    std::vector<std::string> patterns;
    // Commands with words for an argument take one: it follows the command.
    if (option.is_argument)
        patterns.push_back(std::string("'") + command.name + " " + command.name + "'");
    else
        for (const std::string &name : option.names)
            patterns.push_back("'" + std::string(command.name) + " " + name + "'");
    std::printf("    %s)\n", joined(patterns, " | ").c_str());
    if (kind == ValueKind::CHOICE)
        std::printf("        mapfile -t COMPREPLY < <(compgen -W '%s' -- \"$cur\")\n",
                    joined(option.choices, " ").c_str());
    else if (kind == ValueKind::FOLDER)
        std::printf("        mapfile -t COMPREPLY < <(compgen -d -- \"$cur\")\n"
                    "        compopt -o filenames\n");
    else if (kind == ValueKind::RULE)
        std::printf("        mapfile -t COMPREPLY < <(compgen -W \"$(%s)\" -- \"$cur\")\n",
                    RULE_IDS);
    else if (kind == ValueKind::FIELDS)
        std::printf("        local before=\n"
                    "        [[ $cur != *,* ]] || before=${cur%%,*},\n"
                    "        mapfile -t COMPREPLY < <(compgen -P \"$before\" -W \"$(%s)\""
                    " -- \"${cur##*,}\")\n"
                    "        compopt -o nospace\n",
                    FIELD_NAMES);
    else
        std::printf("        compopt +o default\n");
    std::printf("        return\n        ;;\n");
}

static void print_bash()
{
    std::printf("# bash completion for tarnlet\n"
                "_tarnlet() {\n"
                "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}\n"
                "    local command=${COMP_WORDS[1]} options=\n"
                "    COMPREPLY=()\n"
                "    if ((COMP_CWORD == 1)); then\n"
                "        mapfile -t COMPREPLY < <(compgen -W '%s --help --version' -- \"$cur\")\n"
                "        return\n"
                "    fi\n"
                "    case \"$command $prev\" in\n",
                command_names().c_str());
    for (const Command &command : all_commands())
        for (const OptionEntry &option : options_of(command))
            print_bash_value(command, option);
    std::printf("    esac\n    [[ $cur == -* ]] || return\n    case $command in\n");
    for (const Command &command : all_commands()) {
        std::vector<std::string> names;
        for (const OptionEntry &option : options_of(command))
            if (!option.is_argument)
                names.insert(names.end(), option.names.begin(), option.names.end());
        std::printf("    %s) options='%s' ;;\n", command.name, joined(names, " ").c_str());
    }
    std::printf("    esac\n"
                "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$cur\")\n"
                "}\n"
                "complete -o default -F _tarnlet tarnlet\n");
}

// ------------------------------------------------------------------------------------------- zsh

// Colons and brackets end the parts of a specification.
static std::string zsh_text(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':')
            result += '\\';
        result += c;
    }
    return shell_text(result);
}

static std::string zsh_action(const OptionEntry &option)
{
    switch (kind_of(option)) {
    case ValueKind::CHOICE:
        return "(" + joined(option.choices, " ") + ")";
    case ValueKind::FOLDER:
        return "_files -/";
    case ValueKind::RULE:
        return "_tarnlet_rules";
    case ValueKind::FIELDS:
        return "_sequence _tarnlet_fields";
    case ValueKind::FILE:
        return "_files";
    case ValueKind::NONE:
        break;
    }
    return " ";
}

static void print_zsh_option(const OptionEntry &option)
{
    if (option.is_argument) {
        const bool is_file = option.choices.empty();
        std::printf(" \\\n            '%s:%s:%s'", option.repeats ? "*" : "",
                    option.names[0].c_str(), is_file ? "_files" : zsh_action(option).c_str());
        return;
    }
    for (const std::string &name : option.names) {
        std::printf(" \\\n            '%s%s[%s]", option.repeats ? "*" : "", name.c_str(),
                    zsh_text(option.description).c_str());
        if (!option.value.empty())
            std::printf(":%s:%s", zsh_text(option.value).c_str(), zsh_action(option).c_str());
        std::printf("'");
    }
}

static void print_zsh()
{
    std::printf("#compdef tarnlet\n\n"
                "_tarnlet_rules() {\n"
                "    local -a rules\n"
                "    rules=(${(f)\"$(%s)\"})\n"
                "    compadd -a rules\n"
                "}\n\n"
                "_tarnlet_fields() {\n"
                "    local -a fields\n"
                "    fields=(${(f)\"$(%s)\"})\n"
                "    compadd \"$@\" -a fields\n"
                "}\n\n"
                "_tarnlet() {\n"
                "    if ((CURRENT == 2)); then\n"
                "        local -a commands\n"
                "        commands=(\n",
                RULE_IDS, FIELD_NAMES);
    for (const Command &command : all_commands())
        std::printf("            '%s:%s'\n", command.name, zsh_text(command.summary).c_str());
    std::printf("        )\n"
                "        _describe command commands\n"
                "        return\n"
                "    fi\n"
                "    local command=$words[2]\n"
                "    shift words\n"
                "    ((CURRENT--))\n"
                "    case $command in\n");
    for (const Command &command : all_commands()) {
        std::printf("    %s)\n        _arguments", command.name);
        for (const OptionEntry &option : options_of(command))
            print_zsh_option(option);
        std::printf("\n        ;;\n");
    }
    std::printf("    esac\n}\n\n_tarnlet \"$@\"\n");
}

// ------------------------------------------------------------------------------------------ fish

static void print_fish_option(const Command &command, const OptionEntry &option)
{
    if (option.is_argument) {
        if (!option.choices.empty())
            std::printf("complete -c tarnlet -n '__fish_seen_subcommand_from %s' -f -a '%s'\n",
                        command.name, joined(option.choices, " ").c_str());
        return;
    }
    std::printf("complete -c tarnlet -n '__fish_seen_subcommand_from %s'", command.name);
    for (const std::string &name : option.names)
        std::printf(" %s %s", name.starts_with("--") ? "-l" : "-s",
                    name.substr(name.find_first_not_of('-')).c_str());
    switch (kind_of(option)) {
    case ValueKind::CHOICE:
        std::printf(" -x -a '%s'", joined(option.choices, " ").c_str());
        break;
    case ValueKind::FOLDER:
        std::printf(" -x -a '(__fish_complete_directories)'");
        break;
    case ValueKind::RULE:
        std::printf(" -x -a \"(%s)\"", RULE_IDS);
        break;
    case ValueKind::FIELDS:
        std::printf(" -x -a \"(__fish_complete_list , '%s')\"", FIELD_NAMES);
        break;
    case ValueKind::FILE:
        std::printf(" -r");
        break;
    case ValueKind::NONE:
        std::printf("%s", option.value.empty() ? "" : " -x");
        break;
    }
    std::printf(" -d '%s'\n", shell_text(option.description).c_str());
}

static void print_fish()
{
    for (const Command &command : all_commands()) {
        std::printf("complete -c tarnlet -n __fish_use_subcommand -f -a %s -d '%s'\n", command.name,
                    shell_text(command.summary).c_str());
        for (const OptionEntry &option : options_of(command))
            print_fish_option(command, option);
    }
}

std::function<int()> set_up_completion(CLI::App &app)
{
    auto shell = std::make_shared<std::string>();
    app.add_option("SHELL", *shell, "Shell that it is for")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    return [shell] {
        if (*shell == "bash")
            print_bash();
        else if (*shell == "zsh")
            print_zsh();
        else
            print_fish();
        return STATUS_CLEAN;
    };
}
