#include "CommonOptions.h"
#include "ShellCompletion.h"

namespace {

std::string inQuotes(std::string_view text) {
    const std::string safe = ShellCompletion::replaced(text, '\\', "\\\\");
    return '\'' + ShellCompletion::replaced(safe, '\'', "\\'") + '\'';
}

/// What is offered as a value; `-x` keeps files away, which are offered otherwise.
std::string valueOf(const CommandOption& option) {
    switch (option.completion) {
    case CommandOption::Completion::Files:
        return " -r -F";
    case CommandOption::Completion::Folders:
        return " -x -a '(__fish_complete_directories)'";
    case CommandOption::Completion::Words:
        break;
    }
    return option.words.empty() ? " -x"
                                : " -x -a " + inQuotes(ShellCompletion::joined(option.words));
}

std::string lineOf(const CommandOption& option, const std::string& condition) {
    std::string line = "complete -c qor-power -n " + inQuotes(condition);
    for (const std::string& name : option.names()) {
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return line + (option.isFlag() ? "" : valueOf(option)) + " -d " + inQuotes(option.description) +
           '\n';
}

/// An argument is what follows no option; its words have no option in front.
std::string lineOfArgument(const CommandOption& argument, const std::string& condition) {
    const std::string line = "complete -c qor-power -n " + inQuotes(condition);
    if (argument.completion == CommandOption::Completion::Files) {
        return line + " -F\n";
    }
    return argument.words.empty()
               ? ""
               : line + " -a " + inQuotes(ShellCompletion::joined(argument.words)) + '\n';
}

} // namespace

std::string ShellCompletion::forFish(const std::vector<Command>& commands) {
    const std::string first = "__fish_use_subcommand";
    std::string text = "# Completion of qor-power for fish.\n\ncomplete -c qor-power -f\n";
    for (const CommandOption& option : {CommonOptions::help(), CommonOptions::version()}) {
        text += lineOf(option, first);
    }
    for (const Command& command : commands) {
        text += "complete -c qor-power -n " + first + " -a " + command.name + " -d " +
                inQuotes(command.summary) + '\n';
    }
    for (const Command& command : commands) {
        const std::string behind = "__fish_seen_subcommand_from " + command.name;
        text += '\n';
        for (const CommandOption& argument : command.arguments()) {
            text += lineOfArgument(argument, behind);
        }
        for (const CommandOption& option : CommonOptions::allOf(command)) {
            text += lineOf(option, behind);
        }
    }
    return text;
}
