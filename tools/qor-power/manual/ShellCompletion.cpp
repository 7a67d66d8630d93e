#include "ShellCompletion.h"

#include "CommonOptions.h"

#include <cstddef>
#include <string_view>

namespace {

/// Words with blanks between them.
std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/// A text with something in place of each occurrence of a character.
std::string replaced(std::string_view text, char character, std::string_view with) {
    std::string result;
    for (const char letter : text) {
        if (letter == character) {
            result += with;
        } else {
            result += letter;
        }
    }
    return result;
}

/// What is said of the values of an option, by what they are.
std::string byCompletion(const CommandOption& option, const std::string& files,
                         const std::string& folders, const std::string& words) {
    if (option.completion == CommandOption::Completion::Words) {
        return words;
    }
    return option.completion == CommandOption::Completion::Files ? files : folders;
}

// bash

constexpr const char* beginning = R"(# Completion of qor-power for bash.

_qor_power_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

# $1: -f for files, -d for folders
_qor_power_paths() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$current")
}

)";

constexpr const char* middle = R"(
_qor_power() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command='' argument=0 index word
    COMPREPLY=()
    # An option and its value may be joined by "=", which is then a word of its own.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi

    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        if [[ -z $command ]]; then
            [[ $word == -* ]] || command=$word
        elif [[ $word == = ]]; then
            ((index++))
        elif [[ $word == -?* ]]; then
            if [[ ${COMP_WORDS[index+1]} != = ]] && _qor_power_takes_value "$command $word"; then
                ((index++))
            fi
        else
            ((argument++))
        fi
    done

    case "$command $previous" in
)";

constexpr const char* ending = R"(    esac
}

complete -F _qor_power qor-power
)";

/// The call that offers the values of an option or argument; empty if there is nothing to offer.
std::string offer(const CommandOption& option) {
    const std::string words =
        option.words.empty() ? "" : "_qor_power_words '" + joined(option.words) + '\'';
    return byCompletion(option, "_qor_power_paths -f", "_qor_power_paths -d", words);
}

/// "'table -o' | 'table --output'", as a pattern.
std::string patternOf(const Command& command, const CommandOption& option) {
    std::string pattern;
    for (const std::string& name : option.names()) {
        pattern += pattern.empty() ? "'" : " | '";
        pattern += command.name;
        pattern += ' ';
        pattern += name;
        pattern += '\'';
    }
    return pattern;
}

/// A case for each option with a value, of what `actionFor` makes of it.
template <class ActionFor>
std::string casesOfValues(const std::vector<Command>& commands, ActionFor actionFor) {
    std::string text;
    for (const Command& command : commands) {
        for (const CommandOption& option : CommonOptions::allOf(command)) {
            if (!option.isFlag()) {
                text += "    " + patternOf(command, option) + ") " + actionFor(option) + " ;;\n";
            }
        }
    }
    return text;
}

std::string namesOf(const std::vector<CommandOption>& options) {
    std::vector<std::string> names;
    for (const CommandOption& option : options) {
        for (const std::string& name : option.names()) {
            names.push_back(name);
        }
    }
    return joined(names);
}

std::string argumentsOf(const Command& command) {
    std::string text = "    " + command.name + ")\n        if [[ $current == -* ]]; then\n";
    text += "            _qor_power_words '" + namesOf(CommonOptions::allOf(command)) + "'\n";
    text += "            return\n        fi\n";
    const std::vector<CommandOption> arguments = command.arguments();
    std::string cases;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string call = offer(arguments[index]);
        if (!call.empty()) {
            const std::string position =
                arguments[index].isRepeatable() ? "*" : std::to_string(index);
            cases += "        ";
            cases += position;
            cases += ") " + call + " ;;\n";
        }
    }
    if (!cases.empty()) {
        text += "        case $argument in\n" + cases + "        esac\n";
    }
    return text + "        ;;\n";
}

// fish

std::string fishQuoted(std::string_view text) {
    const std::string safe = replaced(text, '\\', "\\\\");
    return '\'' + replaced(safe, '\'', "\\'") + '\'';
}

/// What is offered as a value; `-x` keeps files away, which are offered otherwise.
std::string valueOf(const CommandOption& option) {
    const std::string words = option.words.empty() ? "" : " -a " + fishQuoted(joined(option.words));
    return byCompletion(option, " -r -F", " -x -a '(__fish_complete_directories)'", " -x" + words);
}

std::string lineOf(const CommandOption& option, const std::string& condition) {
    std::string line = "complete -c qor-power -n " + fishQuoted(condition);
    for (const std::string& name : option.names()) {
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return line + (option.isFlag() ? "" : valueOf(option)) + " -d " +
           fishQuoted(option.description) + '\n';
}

/// An argument is what follows no option; its words have no option in front.
std::string lineOfArgument(const CommandOption& argument, const std::string& condition) {
    const std::string line = "complete -c qor-power -n " + fishQuoted(condition);
    if (argument.completion == CommandOption::Completion::Files) {
        return line + " -F\n";
    }
    return argument.words.empty() ? "" : line + " -a " + fishQuoted(joined(argument.words)) + '\n';
}

// zsh

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
    const std::string words = '(' + joined(option.words) + ')';
    return ':' + name + ':' + byCompletion(option, "_files", "_files -/", words);
}

/// One entry for each name of an option, each of which rules out the others.
std::string entriesOf(const CommandOption& option) {
    const std::vector<std::string> names = option.names();
    const std::string others = option.isRepeatable() ? "*" : '(' + joined(names) + ')';
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

std::string ShellCompletion::forBash(const std::vector<Command>& commands) {
    std::vector<std::string> first;
    std::string arguments;
    for (const Command& command : commands) {
        first.push_back(command.name);
        arguments += argumentsOf(command);
    }
    first.push_back(namesOf({CommonOptions::help(), CommonOptions::version()}));

    const auto offerAndReturn = [](const CommandOption& option) {
        const std::string call = offer(option);
        return call + (call.empty() ? "" : "; ") + "return";
    };
    return std::string(beginning) + "_qor_power_takes_value() {\n    case $1 in\n" +
           casesOfValues(commands, [](const CommandOption&) { return "return 0"; }) +
           "    esac\n    return 1\n}\n" + middle + casesOfValues(commands, offerAndReturn) +
           "    esac\n\n    case $command in\n    '') _qor_power_words '" + joined(first) +
           "' ;;\n" + arguments + ending;
}

std::string ShellCompletion::forFish(const std::vector<Command>& commands) {
    const std::string first = "__fish_use_subcommand";
    std::string text = "# Completion of qor-power for fish.\n\ncomplete -c qor-power -f\n";
    for (const CommandOption& option : {CommonOptions::help(), CommonOptions::version()}) {
        text += lineOf(option, first);
    }
    for (const Command& command : commands) {
        text += "complete -c qor-power -n " + first + " -a " + command.name + " -d " +
                fishQuoted(command.summary) + '\n';
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
