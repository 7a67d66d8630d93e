#include "Commands.h"

#include "AnalysisError.h"
#include "CommonOptions.h"
#include "Input.h"
#include "LineReader.h"
#include "LogImport.h"
#include "Messages.h"
#include "Printable.h"
#include "RadioFileReader.h"
#include "RecordedAnswers.h"
#include "Replay.h"

#include <memory>
#include <string>
#include <vector>

namespace {

/// `qor-power import`: makes of a log as much of a radio file as it tells.
Outcome radioFileOf(const std::string& log, const LogSource& source, Output& output) {
    const std::string name = inputName(log);
    LogImport import(source);
    TraceLog traces([&import](const LoggedCall& call) { import.read(call); });
    LineReader reader(log, TraceLog::maxSize);
    try {
        while (const auto line = reader.next()) {
            traces.read(line->text, line->isTooLong);
        }
        traces.end();
    } catch (const TraceLogError& error) {
        throw AnalysisError(Outcome::OtherTrouble, name + ": " + error.what());
    }
    if (const std::string mixture = import.mixture(); !mixture.empty()) {
        throw AnalysisError(Outcome::OtherTrouble, name + ": " + mixture);
    }
    if (import.isEmpty()) {
        for (const std::string& trouble : import.troubles()) {
            complain(name + ": " + trouble);
        }
        throw AnalysisError(Outcome::OtherTrouble,
                            name + ": no request among " + traces.tracesAndRemedy());
    }
    const std::string text = import.radioFile();
    output.write(text);
    output.flush();
    for (const std::string& note : import.notes()) {
        complain(name + ": " + note);
    }

    // Whether the file gets the powers that the log shows.
    std::vector<std::string> lines;
    std::vector<std::string> differences;
    try {
        const RadioFile file = RadioFileReader::read(text);
        Replay().play(file, [&lines](const std::string& line) { lines.push_back(line); });
        differences = RecordedAnswers::differences(file, lines);
    } catch (const RadioFileError& error) {
        throw AnalysisError(Outcome::OtherTrouble,
                            name + ": the log tells what no radio file can hold: " + error.what());
    }
    for (const std::string& difference : differences) {
        complain(name + ": the file's replay differs: " + difference);
    }
    return differences.empty() ? Outcome::Done : Outcome::AnswerIsNo;
}

} // namespace

Command Commands::importLog() {
    struct Options {
        std::string log;
        LogSourceOptions source;
    };
    const auto options = std::make_shared<Options>();
    return {
        .name = "import",
        .summary = "Make a radio file of what a log tells",
        .examples =
            {
                {"qor-power import node.log > node.json", "a radio file of a log of traces"},
                {"qor-power replay radio.json --trace 6 | qor-power import -"},
            },
        .about =
            {"The log is one of traces at level 6, as for explain --trace-log. The file gets the "
             "family, the frame format, the selection, the calibration, the rows of the Pmax "
             "tables and the requests with their answers, as far as the log tells them. What it "
             "does not tell is named in the file's notes and on standard error.",
             "A call of which a line is missing, cut or foreign is left out and named. A file is "
             "one service's: where the log has several, --channel and --process choose one.",
             "The file is replayed at once; answers that differ from those of the log are shown "
             "on standard error, and the status is then 1."},
        .options = {{"LOG", "", "Log of traces; - for standard input", &options->log, true,
                     CommandOption::Completion::Files},
                    options->source.channelOption("the calls"),
                    options->source.processOption("the calls")},
        .run =
            [options](Output& output) {
                return radioFileOf(options->log, options->source.source(), output);
            },
    };
}
