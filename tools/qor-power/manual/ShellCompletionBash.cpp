#include "CommonOptions.h"
#include "ShellCompletion.h"

#include <cstddef>

namespace {

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
    switch (option.completion) {
    case CommandOption::Completion::Files:
        return "_qor_power_paths -f";
    case CommandOption::Completion::Folders:
        return "_qor_power_paths -d";
    case CommandOption::Completion::Words:
        break;
    }
    if (option.words.empty()) {
        return "";
    }
    return "_qor_power_words '" + ShellCompletion::joined(option.words) + '\'';
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

std::string optionsWithValue(const std::vector<Command>& commands) {
    std::string text = "_qor_power_takes_value() {\n    case $1 in\n";
    for (const Command& command : commands) {
        for (const CommandOption& option : CommonOptions::allOf(command)) {
            if (!option.isFlag()) {
                text += "    " + patternOf(command, option) + ") return 0 ;;\n";
            }
        }
    }
    return text + "    esac\n    return 1\n}\n";
}

std::string valuesOfOptions(const std::vector<Command>& commands) {
    std::string text;
    for (const Command& command : commands) {
        for (const CommandOption& option : CommonOptions::allOf(command)) {
            if (!option.isFlag()) {
                const std::string call = offer(option);
                text += "    " + patternOf(command, option) + ") " + call +
                        (call.empty() ? "" : "; ") + "return ;;\n";
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
    return ShellCompletion::joined(names);
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

} // namespace

std::string ShellCompletion::forBash(const std::vector<Command>& commands) {
    std::vector<std::string> first;
    std::string arguments;
    for (const Command& command : commands) {
        first.push_back(command.name);
        arguments += argumentsOf(command);
    }
    first.push_back(namesOf({CommonOptions::help(), CommonOptions::version()}));

    return beginning + optionsWithValue(commands) + middle + valuesOfOptions(commands) +
           "    esac\n\n    case $command in\n    '') _qor_power_words '" + joined(first) +
           "' ;;\n" + arguments + ending;
}
