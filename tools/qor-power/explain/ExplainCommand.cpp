#include "ExplainCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "ExplanationForms.h"
#include "Input.h"
#include "LineReader.h"
#include "LoggedPowersForms.h"
#include "Messages.h"
#include "ModulationChoice.h"
#include "RadioCase.h"
#include "TextForms.h"
#include "ToolError.h"
#include "TraceLog.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace {

const std::vector<std::string> formats{"text", "json"};

/// Leaves out the rows that are not wanted.
void reduce(ExplainedTable& explained, const ModulationChoice& wanted) {
    std::vector<PowerTable::Row> rows;
    std::vector<Explanation> explanations;
    for (std::size_t index = 0; index < explained.table.rows.size(); ++index) {
        if (wanted.includes(explained.table.rows[index])) {
            rows.push_back(explained.table.rows[index]);
            explanations.push_back(explained.explanations[index]);
        }
    }
    explained.table.rows = std::move(rows);
    explained.explanations = std::move(explanations);
}

/// Says loudly what does not add up.
/// @return whether everything does.
bool complainOfMismatches(const std::string& where, const std::vector<Explanation>& explanations) {
    const std::vector<std::string> lines = mismatchesOf(explanations);
    for (const std::string& line : lines) {
        complain(where + ": " + line);
    }
    return lines.empty();
}

} // namespace

Command ExplainCommand::describe() {
    struct Words {
        Options options;
        std::optional<std::string> file;
        std::vector<std::string> modulations;
    };
    const auto words = std::make_shared<Words>();
    Options& options = words->options;
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
                       CommonOptions::format(options.format, formats),
                       {"--trace-log", "LOG", "Explain a log of traces; - for standard input",
                        &options.traceLog, false, CommandOption::Completion::Files}};
    const std::vector<CommandOption> query = options.query.describe();
    command.options.insert(command.options.end(), query.begin(), query.end());
    command.run = [words](Output& output) {
        Options given = words->options;
        given.words = words->modulations;
        if (words->file) {
            given.words.insert(given.words.begin(), *words->file);
        }
        return ExplainCommand(given).run(output);
    };
    return command;
}

ExplainCommand::ExplainCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query()) {
    Arguments::word("--format", options.format, formats);
    if (!options.traceLog && options.words.empty()) {
        throw UsageError("FILE is missing; try qor-power explain --help");
    }
    if (options.traceLog && (options.query.frameFormat || options.query.rsec)) {
        throw UsageError("--trace-log goes without --frame-format and --rsec: the log says what "
                         "was asked for");
    }
}

ExitStatus ExplainCommand::run(Output& output) const {
    return m_options.traceLog ? explainLog(output) : explainFile(output);
}

ExitStatus ExplainCommand::explainFile(Output& output) const {
    const ModulationChoice wanted({m_options.words.begin() + 1, m_options.words.end()});
    const RadioCase radio = loadRadioCase(m_options.words.front(), m_query);
    ExplainedTable explained = radio.explain();
    const bool hadRows = !explained.table.rows.empty();
    reduce(explained, wanted);
    if (hadRows && explained.table.rows.empty()) {
        throw ToolError(ExitStatus::OtherTrouble,
                        radio.name + ": the frame format has none of these modulations and codes; "
                                     "try qor-power table");
    }
    output.write(m_options.format == "json" ? jsonForm(explained)
                                            : textForm(explained, output.terminal()));
    output.flush();
    ExitStatus status = ExitStatus::Done;
    if (!explained.table.failure.empty()) {
        complain(radio.name + ": no powers: " + explained.table.failure);
        status = ExitStatus::OtherTrouble;
    }
    return complainOfMismatches(radio.name, explained.explanations) ? status
                                                                    : ExitStatus::OtherTrouble;
}

ExitStatus ExplainCommand::explainLog(Output& output) const {
    const ModulationChoice wanted(m_options.words);
    if (wanted.hasCodes()) {
        throw UsageError("traces tell modulations, not codes; name modulations with --trace-log");
    }
    const std::string name = inputName(*m_options.traceLog);
    LoggedInputs inputs;
    inputs.fix(m_query.inputs);
    ExitStatus status = ExitStatus::Done;
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
            output.write((explained == 0 ? "" : "\n") + textForm(powers, output.terminal()));
        }
        ++explained;
        if (!complainOfMismatches(name + ", line " + std::to_string(call.line),
                                  powers.explanations)) {
            status = ExitStatus::OtherTrouble;
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
        throw ToolError(ExitStatus::OtherTrouble, name + ": " + error.what());
    }
    output.flush();

    if (log.leftOut() != 0) {
        complain(name + ": " + std::to_string(log.leftOut()) + " of " +
                 std::to_string(log.lines()) + " lines are no traces and were left out");
    }
    if (explained == 0) {
        throw ToolError(ExitStatus::OtherTrouble,
                        name + ": no query to explain among " + std::to_string(log.records()) +
                            " traces; log what the library traces up to level 6");
    }
    return status;
}
