#include "CommandLine.h"

#include "AnalysisError.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "ExitStatus.h"
#include "OneLine.h"
#include "Suggestion.h"
#include "TextColumns.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>

namespace {

/// Behind it nothing is an option.
constexpr const char* hyphens = "--";

/// In front of a command's name it asks what --help behind it does.
constexpr const char* helpWord = "help";

/// Columns in front of the description of an option, and of the description itself.
constexpr std::size_t nameColumns = 30;
constexpr std::size_t descriptionColumns = 52;

/// Of help where nobody says how wide it may be.
constexpr std::size_t usualColumns = 84;

/// Help that begins with examples.
class ExamplesFirst : public CLI::Formatter {
public:
    explicit ExamplesFirst(std::string examples)
        : m_examples(std::move(examples)) {
        column_width(nameColumns);
        label("REQUIRED", "");
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
    }

    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override {
        const std::string help = Formatter::make_help(app, name, mode);
        return mode == CLI::AppFormatMode::Sub ? help : m_examples + '\n' + help;
    }

private:
    std::string m_examples;
};

std::string examplesOf(const Command& command) {
    std::string text = "Examples:\n";
    for (const Command::Example& example : command.examples) {
        text += "  " + example.commandLine + '\n';
    }
    for (const std::string& paragraph : command.about) {
        text += '\n' + wrapped(paragraph, usualColumns) + '\n';
    }
    return text;
}

/// The first example of each command, with what it is for.
std::string examplesOf(const std::vector<Command>& commands) {
    std::size_t column = 0;
    for (const Command& command : commands) {
        column = std::max(column, command.examples.front().commandLine.size());
    }
    std::string text = "Examples:\n";
    for (const Command& command : commands) {
        std::string line = command.examples.front().commandLine;
        line.resize(column, ' ');
        text += "  " + line + "   " + command.examples.front().meaning + '\n';
    }
    return text +
           "\nqor-power help COMMAND, or qor-power COMMAND --help, tells more of a command.\n";
}

std::string exitStatusHelp() {
    std::string text = "Exit status:";
    for (const ExitStatusMeaning& row : exitStatusTable) {
        text += "\n  " + std::to_string(exitStatusOf(row.outcome)) + "  " + row.meaning;
    }
    return text;
}

void define(CLI::App& app, const CommandOption& option) {
    const std::string description = wrapped(option.description, descriptionColumns);
    CLI::Option* const defined = std::visit(
        [&](auto* target) -> CLI::Option* {
            if constexpr (std::is_same_v<decltype(target), bool*>) {
                return app.add_flag(option.name, *target, description);
            } else {
                return app.add_option(option.name, *target, description);
            }
        },
        option.target);
    defined->required(option.isRequired);
    if (!option.isFlag()) {
        defined->type_name(option.valueName);
    }
    if (option.isRepeatable() && !option.isArgument()) {
        // One value each time; the next word is something else again.
        defined->allow_extra_args(false);
    }
}

void setHelpOf(CLI::App& app) {
    const CommandOption help = CommonOptions::help();
    app.set_help_flag(help.name, help.description);
}

std::vector<std::string> optionNamesOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/// What neither an option nor a command has taken.
std::vector<std::string> leftOversOf(const CLI::App& app) {
    std::vector<std::string> words = app.remaining();
    std::erase(words, hyphens);
    return words;
}

[[noreturn]] void refuseOption(const std::string& word, const CLI::App& owner) {
    const std::string option = word.substr(0, word.find('='));
    throw QuestionError("unknown option " + inQuotes(option) + "; " +
                        Suggestion::remedy(option, optionNamesOf(owner)));
}

/// The command line library's picture of the commands. It is kept out of the header, because that
/// library takes long to compile.
class Parser {
public:
    explicit Parser(std::vector<Command> commands);

    Outcome run(int argc, const char* const* argv, Output& output) {
        if (parse(argc, argv, output)) {
            return Outcome::Done;
        }
        for (const Command& command : m_commands) {
            if (given().get_name() == command.name) {
                output.setColorChoice(CommonOptions::colorChoice(m_color));
                return command.run(output);
            }
        }
        throw QuestionError("a command is missing; try qor-power --help");
    }

private:
    CLI::App* add(const Command& command) {
        CLI::App* const app = m_app.add_subcommand(command.name, command.summary);
        setHelpOf(*app);
        app->formatter(std::make_shared<ExamplesFirst>(examplesOf(command)));
        app->allow_extras();
        app->footer(exitStatusHelp());
        app->group(command.group);
        for (const CommandOption& option : command.options) {
            define(*app, option);
        }
        define(*app, CommonOptions::color(&m_color));
        return app;
    }

    /// The command that was given, or the tool itself.
    const CLI::App& given() const {
        const std::vector<CLI::App*> commands = m_app.get_subcommands();
        return commands.empty() ? m_app : *commands.front();
    }

    /// @return whether the words asked for help or for the version, which they have got.
    bool parse(int argc, const char* const* argv, Output& output) {
        std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
        if (!arguments.empty() && arguments.front() == helpWord) {
            askForHelp(arguments);
        }
        try {
            m_app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        } catch (const CLI::CallForHelp&) {
            output.write(fitted(m_app.help(), output.terminal().width()));
            return true;
        } catch (const CLI::CallForVersion& version) {
            output.write(std::string(version.what()) + '\n');
            return true;
        } catch (const CLI::ParseError& error) {
            // A mistyped option may be why something else is missing.
            refuseLeftOvers(arguments);
            refuse(error);
        }
        refuseLeftOvers(arguments);
        return false;
    }

    /// Turns "help COMMAND" into what the command line library knows.
    void askForHelp(std::vector<std::string>& arguments) const {
        arguments.erase(arguments.begin());
        if (arguments.size() > 1) {
            throw QuestionError("too much on the command line: " + inQuotes(arguments[1]));
        }
        const bool isCommand =
            !arguments.empty() && arguments.front().front() != '-' && arguments.front() != helpWord;
        if (isCommand && !std::ranges::any_of(m_commands, [&arguments](const Command& command) {
                return command.name == arguments.front();
            })) {
            refuseCommand(arguments.front());
        }
        arguments.resize(isCommand ? 1 : 0);
        arguments.emplace_back("--help");
    }

    /// Refuses what no option and no command has taken.
    void refuseLeftOvers(const std::vector<std::string>& arguments) const {
        const CLI::App* owner = &given();
        std::vector<std::string> leftOvers = leftOversOf(*owner);
        if (leftOvers.empty()) {
            owner = &m_app;
            leftOvers = leftOversOf(*owner);
        }
        if (leftOvers.empty()) {
            return;
        }

        const std::string& word = leftOvers.front();
        const auto optionsEnd = std::ranges::find(arguments, hyphens);
        if (word.size() > 1 && word.front() == '-' &&
            std::find(arguments.begin(), optionsEnd, word) != optionsEnd) {
            refuseOption(word, *owner);
        }
        if (&given() == &m_app) {
            refuseCommand(word);
        }
        throw QuestionError("too much on the command line: " + inQuotes(word));
    }

    [[noreturn]] void refuseCommand(const std::string& word) const {
        std::vector<std::string> known;
        known.reserve(m_commands.size());
        for (const Command& command : m_commands) {
            known.push_back(command.name);
        }
        throw QuestionError("unknown command " + inQuotes(word) + "; " +
                            Suggestion::remedy(word, known));
    }

    /// Says in the tool's own words what the command line library found.
    [[noreturn]] void refuse(const CLI::ParseError& error) const {
        const std::string help =
            "; try qor-power " + (&given() == &m_app ? "" : given().get_name() + " ") + "--help";
        for (const CLI::Option* const option : given().get_options()) {
            if (option->get_items_expected_max() == 1 && option->count() > 1) {
                throw QuestionError(option->get_name() + " is given more than once");
            }
            if (option->get_required() && option->count() == 0) {
                throw QuestionError(option->get_name() + " is missing" + help);
            }
        }
        const std::string what = error.what();
        if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
            throw QuestionError(oneLine(what.substr(0, what.find(':'))) + " needs a value" + help);
        }
        throw QuestionError(oneLine(what) + help);
    }

    std::vector<Command> m_commands;
    std::string m_color = "auto";
    CLI::App m_app{toolSummary, "qor-power"};
};

Parser::Parser(std::vector<Command> commands)
    : m_commands(std::move(commands)) {
    setHelpOf(m_app);
    const CommandOption version = CommonOptions::version();
    m_app.set_version_flag(version.name, std::string("qor-power ") + QOR_POWER_VERSION,
                           version.description);
    // One command at most: behind it its name is a file like any other.
    m_app.require_subcommand(0, 1);
    m_app.allow_extras();
    m_app.footer(exitStatusHelp());
    m_app.formatter(std::make_shared<ExamplesFirst>(examplesOf(m_commands)));
    for (const Command& command : m_commands) {
        add(command);
    }
}

} // namespace

Outcome runCommandLine(std::vector<Command> commands, int argc, const char* const* argv,
                       Output& output) {
    return Parser(std::move(commands)).run(argc, argv, output);
}
