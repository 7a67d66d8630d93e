#include "AnalysisError.h"
#include "Arguments.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Input.h"
#include "LineReader.h"
#include "LoggedPowersForms.h"
#include "Messages.h"
#include "ModulationChoice.h"
#include "Output.h"
#include "QueryOptions.h"
#include "RadioQuestion.h"
#include "TextForms.h"
#include "TraceLog.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

/// `qor-power explain`: how the powers of a radio come about, step by step; or, from a log that was
/// captured on a node, how those came about that were asked for there.
class ExplainCommand {
public:
    /// As on the command line. What is not given is left to the radio file.
    struct Options {
        std::vector<std::string> words; ///< a radio file, then modulations and codes
        std::string format = "text";
        std::optional<std::string> traceLog;
        QueryOptions query;
    };

    /// @throw QuestionError
    explicit ExplainCommand(const Options& options);

    /// @throw AnalysisError
    Outcome run(Output& output) const;

private:
    Outcome explainFile(Output& output) const;
    Outcome explainLog(Output& output) const;

    Options m_options;
    PowerTableQuery m_query;
};

const std::vector<std::string> explainFormats{"text", "json"};

/// Says loudly what does not add up.
/// @return whether everything does.
bool complainOfMismatches(const std::string& where, const std::vector<Explanation>& explanations) {
    const std::vector<std::string> lines = mismatchesOf(explanations);
    for (const std::string& line : lines) {
        complain(where + ": " + line);
    }
    return lines.empty();
}

ExplainCommand::ExplainCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query()) {
    Arguments::word("--format", options.format, explainFormats);
    if (!options.traceLog && options.words.empty()) {
        throw QuestionError("FILE is missing; try qor-power explain --help");
    }
    if (options.traceLog && (options.query.frameFormat || options.query.rsec)) {
        throw QuestionError("--trace-log goes without --frame-format and --rsec: the log says what "
                            "was asked for");
    }
}

Outcome ExplainCommand::run(Output& output) const {
    return m_options.traceLog ? explainLog(output) : explainFile(output);
}

Outcome ExplainCommand::explainFile(Output& output) const {
    RadioQuestion radio(Question::Topic::Explanation);
    radio.file = m_options.words.front();
    radio.format = m_options.format;
    radio.query = m_options.query;
    radio.question.modulations = {m_options.words.begin() + 1, m_options.words.end()};
    return radio.run(output);
}

Outcome ExplainCommand::explainLog(Output& output) const {
    const ModulationChoice wanted(m_options.words);
    if (wanted.hasCodes()) {
        throw QuestionError(
            "traces tell modulations, not codes; name modulations with --trace-log");
    }
    const std::string name = inputName(*m_options.traceLog);
    LoggedInputs inputs;
    inputs.fix(m_query.inputs);
    Outcome outcome = Outcome::Done;
    bool isFirst = true;
    std::size_t explained = 0;

    TraceLog log([&](const LoggedCall& call) {
        inputs.follow(call, std::exchange(isFirst, false));
        if (!TraceLog::isQuery(call.name) && !call.name.empty()) {
            return;
        }
        LoggedPowers powers = LoggedPowers::of(call, inputs);
        if (!wanted.isEverything()) {
            std::erase_if(powers.explanations, [&wanted](const Explanation& explanation) {
                return !wanted.includes(explanation.modulation);
            });
        }
        if (m_options.format == "json") {
            output.write(jsonLine(powers));
        } else {
            output.write((explained == 0 ? "" : "\n") + textForm(powers, output.terminal().look()));
        }
        ++explained;
        if (!complainOfMismatches(name + ", line " + std::to_string(call.line),
                                  powers.explanations)) {
            outcome = Outcome::OtherTrouble;
        }
    });
    LineReader reader(*m_options.traceLog, TraceLog::maxSize);
    try {
        while (const auto line = reader.next()) {
            log.read(line->text, line->isTooLong);
        }
        log.end();
    } catch (const TraceLogError& error) {
        output.flush();
        throw AnalysisError(Outcome::OtherTrouble, name + ": " + error.what());
    }
    output.flush();

    if (log.leftOut() != 0) {
        complain(name + ": " + std::to_string(log.leftOut()) + " of " +
                 std::to_string(log.lines()) + " lines are no traces and were left out");
    }
    if (explained == 0) {
        throw AnalysisError(Outcome::OtherTrouble,
                            name + ": no query to explain among " + std::to_string(log.records()) +
                                " traces; log what the library traces up to level 6");
    }
    return outcome;
}

} // namespace

Command Commands::explain() {
    struct Words {
        ExplainCommand::Options options;
        std::optional<std::string> file;
        std::vector<std::string> modulations;
    };
    const auto words = std::make_shared<Words>();
    ExplainCommand::Options& options = words->options;
    Command command;
    command.name = "explain";
    command.summary = "Explain step by step how the powers come about and what limits them";
    command.examples = {
        {"qor-power explain radio.json", "every power of the configured frame format"},
        {"qor-power explain radio.json 64QAM 4QAM_STRONG"},
        {"qor-power explain radio.json 64QAM --cutback 3"},
        {"qor-power explain radio.json --format json"},
        {"qor-power explain --trace-log node.log"},
    };
    command.about = {
        "The explanation is made from what the library reports while it answers (its traces at "
        "level 6), and its steps are checked to add up to the answer exactly. The bound that holds "
        "is marked with >. Figures from the radio file are named by their JSON Pointer.",
        "With --trace-log a log is explained that was captured on a node, without a radio file: "
        "the lines of qor-power replay --trace 6, or traces as lines of text. What the log does "
        "not tell of cutbacks and booster can be given as options."};
    command.options = {{"FILE", "", "Radio file; - for standard input", &words->file, false,
                        CommandOption::Completion::Files},
                       {"MODULATION", "",
                        "Modulations (all their codes) and codes, as text or number; all if none "
                        "is named",
                        &words->modulations, false, CommandOption::Completion::Words,
                        modulationTextForms().texts()},
                       CommonOptions::format(options.format, explainFormats),
                       {"--trace-log", "LOG", "Explain a log of traces; - for standard input",
                        &options.traceLog, false, CommandOption::Completion::Files}};
    const std::vector<CommandOption> query = options.query.describe();
    command.options.insert(command.options.end(), query.begin(), query.end());
    command.run = [words](Output& output) {
        ExplainCommand::Options given = words->options;
        given.words = words->modulations;
        if (words->file) {
            given.words.insert(given.words.begin(), *words->file);
        }
        return ExplainCommand(given).run(output);
    };
    return command;
}
