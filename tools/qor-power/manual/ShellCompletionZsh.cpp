#include "CommonOptions.h"
#include "ShellCompletion.h"

namespace {

using ShellCompletion::replaced;

/// A text as it may stand between single quotes.
std::string quotable(std::string_view text) {
    return replaced(text, '\'', "'\\''");
}

/// A description as it may stand in brackets or in front of a colon.
std::string described(std::string_view text) {
    std::string safe = replaced(text, '\\', "\\\\");
    for (const char special : {'[', ']', ':'}) {
        safe = replaced(safe, special, std::string("\\") + special);
    }
    return quotable(safe);
}

/// ":FORMAT:(text csv json)"
std::string valueOf(const CommandOption& option, const std::string& name) {
    switch (option.completion) {
    case CommandOption::Completion::Files:
        return ':' + name + ":_files";
    case CommandOption::Completion::Folders:
        return ':' + name + ":_files -/";
    case CommandOption::Completion::Words:
        break;
    }
    return ':' + name + ":(" + ShellCompletion::joined(option.words) + ')';
}

/// One entry for each name of an option, each of which rules out the others.
std::string entriesOf(const CommandOption& option) {
    const std::vector<std::string> names = option.names();
    const std::string others =
        option.isRepeatable() ? "*" : '(' + ShellCompletion::joined(names) + ')';
    const std::string value = option.isFlag() ? "" : valueOf(option, option.valueName);
    std::string text;
    for (const std::string& name : names) {
        text += " \\\n            '" + others + name;
        if (!option.isFlag()) {
            // How a value may be joined to it.
            text += name.starts_with("--") ? '=' : '+';
        }
        text += '[' + described(option.description) + ']' + value + '\'';
    }
    return text;
}

std::string entryOfArgument(const CommandOption& argument) {
    std::string prefix;
    if (argument.isRepeatable()) {
        prefix = "*";
    } else if (!argument.isRequired) {
        prefix = ":";
    }
    return " \\\n            '" + prefix + valueOf(argument, argument.name) + '\'';
}

std::string zshArguments(const Command& command) {
    std::string text = "    " + command.name + ")\n        _arguments -s -S";
    for (const CommandOption& option : CommonOptions::allOf(command)) {
        text += entriesOf(option);
    }
    for (const CommandOption& argument : command.arguments()) {
        text += entryOfArgument(argument);
    }
    return text + "\n        ;;\n";
}

} // namespace

std::string ShellCompletion::forZsh(const std::vector<Command>& commands) {
    std::string text = "#compdef qor-power\n# Completion of qor-power for zsh.\n\n"
                       "_qor-power() {\n    local context curcontext=$curcontext state line\n"
                       "    local -A opt_args\n    local -a commands\n    commands=(\n";
    for (const Command& command : commands) {
        text += "        '" + command.name + ':' + described(command.summary) + "'\n";
    }
    text += "    )\n    _arguments -C";
    for (const CommandOption& option : {CommonOptions::help(), CommonOptions::version()}) {
        text += entriesOf(option);
    }
    text += " \\\n            '1: :->command' \\\n            '*:: :->arguments'\n"
            "    if [[ $state == command ]]; then\n"
            "        _describe -t commands command commands\n        return\n    fi\n"
            "    curcontext=\"${curcontext%:*:*}:qor-power-$words[1]:\"\n"
            "    case $words[1] in\n";
    for (const Command& command : commands) {
        text += zshArguments(command);
    }
    // The file may be found by compinit or be read by hand.
    return text + "    esac\n}\n\n"
                  "if [[ $funcstack[1] == _qor-power ]]; then\n    _qor-power \"$@\"\nelse\n"
                  "    compdef _qor-power qor-power\nfi\n";
}
