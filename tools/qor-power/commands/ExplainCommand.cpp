#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "LineReader.h"
#include "LoggedPowers.h"
#include "Messages.h"
#include "ModulationChoice.h"
#include "RadioQuestion.h"
#include "TextColumns.h"
#include "TextForms.h"
#include "TraceLog.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

struct ExplainOptions {
    std::optional<std::string> file; ///< with a log the first of the modulations
    std::vector<std::string> modulations;
    std::string format = "text";
    std::optional<std::string> traceLog;
    LogSourceOptions source;
    std::optional<std::string> since;
    std::optional<std::string> call;
    QueryOptions query;

    bool choosesQueries() const { return source.isGiven() || since || call; }
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

Outcome explainFile(const ExplainOptions& options, Output& output) {
    if (options.choosesQueries()) {
        throw QuestionError(
            "--channel, --process, --since and --call choose queries of a log: they go with "
            "--trace-log");
    }
    if (!options.file) {
        throw QuestionError("FILE is missing; try qor-power explain --help");
    }
    RadioQuestion radio(Question::Topic::Explanation);
    radio.file = *options.file;
    radio.format = options.format;
    radio.query = options.query;
    radio.question.modulations = options.modulations;
    return radio.run(output);
}

LoggedQueries::Choice choiceOf(const ExplainOptions& options) {
    LoggedQueries::Choice choice;
    choice.source = options.source.source();
    choice.since = options.since.value_or("");
    if (options.call) {
        choice.query = static_cast<std::size_t>(
            Arguments::integer("--call", *options.call, 1, std::int64_t{1} << 53));
    }
    choice.inputs = options.query.query().inputs;
    return choice;
}

Outcome explainLog(const ExplainOptions& options, Output& output) {
    const QueryOptions& query = options.query;
    if (query.frameFormat || query.rsec || query.min || query.max || query.request ||
        !query.set.empty()) {
        throw QuestionError(
            "--trace-log goes without --frame-format, --rsec, --min, --max, --request and "
            "--set: the log says what was asked for");
    }
    std::vector<std::string> words = options.modulations;
    if (options.file) {
        words.insert(words.begin(), *options.file);
    }
    const ModulationChoice wanted(words);
    if (wanted.hasCodes()) {
        throw QuestionError(
            "traces tell modulations, not codes; name modulations with --trace-log");
    }
    const std::string name = inputName(*options.traceLog);
    Outcome outcome = Outcome::Done;
    std::size_t explained = 0;
    LoggedQueries queries(choiceOf(options), [&](LoggedPowers powers) {
        if (!wanted.isEverything()) {
            std::erase_if(powers.explanations, [&wanted](const Explanation& explanation) {
                return !wanted.includes(explanation.modulation);
            });
        }
        if (options.format == "json") {
            output.write(jsonLine(powers));
        } else {
            const TextLook look = output.terminal().look();
            output.write((explained == 0 ? "" : "\n") + fitted(textForm(powers, look), look.width));
        }
        ++explained;
        if (!powers.isComplete()) {
            outcome = worst(outcome, Outcome::AnswerIsNo);
        }
        if (!complainOfMismatches(name + ", line " + std::to_string(powers.line),
                                  powers.explanations)) {
            outcome = Outcome::OtherTrouble;
        }
    });
    const TraceLog& log = queries.log();
    try {
        LineReader reader(*options.traceLog, TraceLog::maxSize);
        while (const auto line = reader.next()) {
            queries.read(line->text, line->isTooLong);
        }
        queries.end();
    } catch (const TraceLogError& error) {
        output.flush();
        throw AnalysisError(Outcome::OtherTrouble, name + ": " + error.what());
    }
    output.flush();

    if (log.leftOut() != 0) {
        complain(name + ": " + std::to_string(log.leftOut()) + " of " +
                 std::to_string(log.lines()) + " lines are no traces and were left out");
    }
    if (explained == 0 && queries.found() != 0) {
        throw AnalysisError(Outcome::OtherTrouble,
                            name + ": none of its " + std::to_string(queries.found()) +
                                " queries is one that --channel, --process, --since and --call "
                                "choose");
    }
    if (explained == 0) {
        throw AnalysisError(Outcome::OtherTrouble,
                            name + ": no query to explain among " + log.tracesAndRemedy());
    }
    return outcome;
}

/// How the powers of a radio come about, step by step; or, from a log that was captured on a node,
/// how those came about that were asked for there.
Outcome explainPowers(const ExplainOptions& options, Output& output) {
    static_cast<void>(options.query.query());
    Arguments::word("--format", options.format, explainFormats);
    return options.traceLog ? explainLog(options, output) : explainFile(options, output);
}

} // namespace

Command Commands::explain() {
    const auto options = std::make_shared<ExplainOptions>();
    return {
        .name = "explain",
        .summary = "Explain step by step how the powers come about and what limits them",
        .examples =
            {
                {"qor-power explain radio.json", "every power of the configured frame format"},
                {"qor-power explain radio.json 64QAM 4QAM_STRONG"},
                {"qor-power explain radio.json 64QAM --cutback 3"},
                {"qor-power explain radio.json --format json"},
                {"qor-power explain field.json --request 12"},
                {"qor-power explain --trace-log node.log"},
            },
        .about = {"The explanation is made from what the library reports while it answers (its "
                  "traces at "
                  "level 6), and its steps are checked to add up to the answer exactly. The bound "
                  "that holds "
                  "is marked with >. Figures from the radio file are named by their JSON Pointer.",
                  "With --trace-log a log is explained that was captured on a node, without a "
                  "radio file. Two forms of lines are taken, also mixed: those of qor-power replay "
                  "--trace 6, and traces as lines of text, LEVEL KIND FILE:LINE FUNCTION: TEXT, "
                  "where KIND is enter, msg or raw and anything may stand before LEVEL. Each query "
                  "says whether all its lines are there, or which one is missing, cut or foreign; "
                  "powers are told only where the lines are whole. What the log does not tell of "
                  "cutbacks and booster can be given as options. The exit status is 1 if "
                  "something could not be told."},
        .options = options->query.behind(
            {{"FILE", "", "Radio file; - for standard input", &options->file, false,
              CommandOption::Completion::Files},
             {"MODULATION", "",
              "Modulations (all their codes) and codes, as text or number; all if none "
              "is named",
              &options->modulations, false, CommandOption::Completion::Words,
              modulationTextForms().texts()},
             CommonOptions::format(options->format, explainFormats),
             {"--trace-log", "LOG", "Explain a log of traces; - for standard input",
              &options->traceLog, false, CommandOption::Completion::Files},
             options->source.channelOption("the queries"),
             options->source.processOption("the queries"),
             {"--since", "TIME",
              "Of a log only the queries from this time on, written as in the log",
              &options->since},
             {"--call", "NUMBER", "Of a log only this query, counted from 1", &options->call}}),
        .run = [options](Output& output) { return explainPowers(*options, output); },
    };
}
