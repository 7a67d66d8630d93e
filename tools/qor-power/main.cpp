#include "Messages.h"
#include "OneLine.h"
#include "ReplayCommand.h"
#include "Suggestion.h"
#include "TableCommand.h"
#include "ToolError.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* toolExamples = R"(Examples:
  qor-power table radio.json                    powers of the configured frame format
  qor-power table radio.json --frame-format 7   powers of another one
  qor-power table radio.json --cutback 3        the same radio under 3 dB of cutback
  qor-power replay radio.json                   play the requests of a radio file
)";

constexpr const char* tableExamples = R"(Examples:
  qor-power table radio.json
  qor-power table radio.json --cutback 3 --rsec 4L
  qor-power table radio.json --frame-format 7 --format csv
  qor-power table radio.json --booster 1,15,14,256QAM
  qor-power table - < radio.json

The cutbacks and the booster that the requests of the file set are in force unless they are given
here; the other requests are not played.
)";

constexpr const char* replayExamples = R"(Examples:
  qor-power replay radio.json
  qor-power replay radio.json --trace 6
  qor-power replay monday.json tuesday.json
  qor-power replay - < radio.json

Each file is played in a fresh service, and each call is printed as one line of JSON.
)";

constexpr const char* exitStatusHelp = R"(Exit status:
  0  done (replay: every request was played, whatever its result)
  1  the answer to a yes-or-no question is no
  2  a bad radio file
  3  the service did not start
  4  anything else: wrong usage, unreadable path, failed write, query without an answer)";

/// Behind it nothing is an option.
constexpr const char* hyphens = "--";

/// Help that begins with examples.
class ExamplesFirst : public CLI::Formatter {
public:
    explicit ExamplesFirst(std::string examples)
        : m_examples(std::move(examples)) {
        column_width(30);
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

/// The command line and what it was read into.
class CommandLine {
public:
    CommandLine();

    /// Reads the command line and does what it says.
    ExitStatus run(int argc, const char* const* argv, Output& output);

private:
    void defineTable();
    void defineReplay();

    /// The command that was given, or the tool itself.
    const CLI::App& given() const;

    /// Refuses what no option and no command has taken.
    void refuseLeftOvers(const std::vector<std::string>& arguments) const;

    /// Says in the tool's own words what the command line library found.
    [[noreturn]] void refuse(const CLI::ParseError& error) const;

    CLI::App m_app{
        "Transmit output power of a microwave radio, from a radio file that describes it",
        "qor-power"};
    CLI::App* m_table = m_app.add_subcommand(
        "table", "Show the powers of every modulation-and-code of a frame format");
    CLI::App* m_replay =
        m_app.add_subcommand("replay", "Play the requests of radio files and print the answers");
    TableCommand::Options m_tableOptions;
    ReplayCommand::Options m_replayOptions;
};

CommandLine::CommandLine() {
    m_app.set_version_flag("--version", std::string("qor-power ") + QOR_POWER_VERSION,
                           "Print the version and exit");
    // One command at most: behind it its name is a file like any other.
    m_app.require_subcommand(0, 1);
    m_app.allow_extras();
    m_app.footer(exitStatusHelp);
    m_app.formatter(std::make_shared<ExamplesFirst>(toolExamples));
    m_table->formatter(std::make_shared<ExamplesFirst>(tableExamples));
    m_replay->formatter(std::make_shared<ExamplesFirst>(replayExamples));
    for (CLI::App* const command : {m_table, m_replay}) {
        command->allow_extras();
        command->footer(exitStatusHelp);
        command->group("Commands");
    }
    defineTable();
    defineReplay();
}

void CommandLine::defineTable() {
    m_table->add_option("FILE", m_tableOptions.file, "Radio file; - for standard input")
        ->required()
        ->type_name("");
    m_table
        ->add_option("--frame-format", m_tableOptions.frameFormat,
                     "Frame format of the hardware configuration; 0, the\n"
                     "default, is the configured one")
        ->type_name("ID");
    m_table->add_option("--format", m_tableOptions.format, "text (the default), csv or json")
        ->type_name("FORMAT");
    m_table
        ->add_option("--cutback", m_tableOptions.cutback,
                     "Permanent power cutback in dB, for example 1.5")
        ->type_name("DB");
    m_table
        ->add_option(
            "--temporary-cutback", m_tableOptions.temporaryCutback,
            "Temporary power cutback in dB, in force instead of\nthe permanent one; none lifts it")
        ->type_name("DB");
    m_table
        ->add_option("--booster", m_tableOptions.booster,
                     "PRESENCE,GAIN,MAXINPUT,MAXMODULATION: a number, gain\n"
                     "in dB, highest input power in dBm, highest\nmodulation; none removes it")
        ->type_name("BOOSTER");
    m_table
        ->add_option("--rsec", m_tableOptions.rsec,
                     "Reference spectral efficiency class, for example 4L;\n"
                     "otherwise that of the system power controller")
        ->type_name("CLASS");
}

void CommandLine::defineReplay() {
    m_replay->add_option("FILE", m_replayOptions.files, "Radio files; - for standard input")
        ->required()
        ->type_name("");
    m_replay
        ->add_option(
            "--trace", m_replayOptions.traceLevel,
            "Report the library's traces up to a level: 1 errors,\n2 warnings, 4 invalid input, "
            "5 results,\n6 everything; 0, the default, none")
        ->type_name("LEVEL");
}

const CLI::App& CommandLine::given() const {
    const std::vector<CLI::App*> commands = m_app.get_subcommands();
    return commands.empty() ? m_app : *commands.front();
}

void CommandLine::refuseLeftOvers(const std::vector<std::string>& arguments) const {
    const CLI::App* owner = &given();
    std::vector<std::string> leftOvers = owner->remaining();
    std::erase(leftOvers, hyphens);
    if (leftOvers.empty()) {
        owner = &m_app;
        leftOvers = owner->remaining();
        std::erase(leftOvers, hyphens);
    }
    if (leftOvers.empty()) {
        return;
    }

    const std::string& word = leftOvers.front();
    const auto optionsEnd = std::find(arguments.begin(), arguments.end(), hyphens);
    const bool isOption = word.size() > 1 && word.front() == '-' &&
                          std::find(arguments.begin(), optionsEnd, word) != optionsEnd;
    if (isOption) {
        const std::string option = word.substr(0, word.find('='));
        std::vector<std::string> known;
        for (const CLI::Option* const candidate : owner->get_options()) {
            for (const std::string& name : candidate->get_lnames()) {
                known.push_back("--" + name);
            }
        }
        throw UsageError("unknown option " + inQuotes(option) + "; " +
                         Suggestion::remedy(option, known));
    }
    if (&given() == &m_app) {
        std::vector<std::string> known;
        for (const CLI::App* const command : m_app.get_subcommands({})) {
            known.push_back(command->get_name());
        }
        throw UsageError("unknown command " + inQuotes(word) + "; " +
                         Suggestion::remedy(word, known));
    }
    throw UsageError("too much on the command line: " + inQuotes(word));
}

void CommandLine::refuse(const CLI::ParseError& error) const {
    const std::string help =
        "; try qor-power " + (&given() == &m_app ? "" : given().get_name() + " ") + "--help";
    for (const CLI::Option* const option : given().get_options()) {
        if (option->get_items_expected_max() == 1 && option->count() > 1) {
            throw UsageError(option->get_name() + " is given more than once");
        }
        if (option->get_required() && option->count() == 0) {
            throw UsageError(option->get_name() + " is missing" + help);
        }
    }
    const std::string what = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        throw UsageError(oneLine(what.substr(0, what.find(':'))) + " needs a value" + help);
    }
    throw UsageError(oneLine(what) + help);
}

ExitStatus CommandLine::run(int argc, const char* const* argv, Output& output) {
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    try {
        m_app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        output.write(m_app.help());
        return ExitStatus::Done;
    } catch (const CLI::CallForVersion& version) {
        output.write(std::string(version.what()) + '\n');
        return ExitStatus::Done;
    } catch (const CLI::ParseError& error) {
        // A mistyped option may be why something else is missing.
        refuseLeftOvers(arguments);
        refuse(error);
    }
    refuseLeftOvers(arguments);
    if (m_table->parsed()) {
        return TableCommand(m_tableOptions).run(output);
    }
    if (m_replay->parsed()) {
        return ReplayCommand(m_replayOptions).run(output);
    }
    throw UsageError("a command is missing; try qor-power --help");
}

} // namespace

int main(int argc, char** argv) {
    // A closed pipe is then a failed write, which is reported like any other.
    std::signal(SIGPIPE, SIG_IGN);
    ExitStatus status = ExitStatus::OtherTrouble;
    try {
        Output output(stdout);
        status = CommandLine().run(argc, argv, output);
        output.flush();
    } catch (const ToolError& error) {
        complain(error.what());
        status = error.status();
    } catch (const std::exception& error) {
        complain(oneLine(error.what()));
        status = ExitStatus::OtherTrouble;
    }
    return static_cast<int>(status);
}
