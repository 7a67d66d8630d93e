#include "Commands.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"
#include "Replay.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

/// `qor-power replay`: plays the requests of radio files and reports every call as a line of JSON.
///
/// Each file has a service of its own. A file that is bad, cannot be read, or whose service does
/// not start is complained about, and the next one is played.
class ReplayCommand {
public:
    struct Options {
        std::vector<std::string> files;
        std::string traceLevel = "0";
    };

    /// @throw QuestionError
    explicit ReplayCommand(const Options& options);

    /// @return the worst outcome of all files.
    /// @throw OutputError
    Outcome run(Output& output) const;

private:
    Outcome play(const std::string& file, Output& output) const;

    std::vector<std::string> m_files;
    int m_traceLevel;
};

ReplayCommand::ReplayCommand(const Options& options)
    : m_files(options.files)
    // A level above the highest one lets through no more than that; a log may have been taken so.
    , m_traceLevel(static_cast<int>(
          Arguments::integer("--trace", options.traceLevel, 0, std::numeric_limits<int>::max()))) {
    if (std::count(m_files.begin(), m_files.end(), standardInput) > 1) {
        throw QuestionError("standard input (-) can be read only once");
    }
}

Outcome ReplayCommand::run(Output& output) const {
    Outcome outcome = Outcome::Done;
    for (const std::string& file : m_files) {
        outcome = worst(outcome, play(file, output));
    }
    return outcome;
}

Outcome ReplayCommand::play(const std::string& file, Output& output) const {
    try {
        const RadioFile radioFile = loadRadioFile(file);
        const bool started =
            Replay(m_traceLevel).play(radioFile, [&output](const std::string& line) {
                output.write(line + '\n');
            });
        output.flush();
        if (started) {
            return Outcome::Done;
        }
        complain(inputName(file) + ": the service did not start" +
                 (m_traceLevel > 0 ? "" : "; --trace 1 shows why"));
        return Outcome::ServiceDidNotStart;
    } catch (const OutputError&) {
        throw;
    } catch (const AnalysisError& error) {
        complain(error.what());
        return error.outcome();
    }
}

} // namespace

Command Commands::replay() {
    const auto options = std::make_shared<ReplayCommand::Options>();
    Command command;
    command.name = "replay";
    command.summary = "Play the requests of radio files and print the answers";
    command.examples = {
        {"qor-power replay radio.json", "play the requests of a radio file"},
        {"qor-power replay radio.json --trace 6"},
        {"qor-power replay monday.json tuesday.json"},
        {"qor-power replay - < radio.json"},
    };
    command.about = {"Each file is played in a fresh service, and each call is printed as one line "
                     "of JSON."};
    command.options = {
        CommonOptions::radioFiles(options->files),
        {"--trace", "LEVEL",
         "Report the library's traces up to a level: 1 errors, 2 warnings, 4 invalid input, "
         "5 results, 6 everything; 0, the default, none",
         &options->traceLevel},
    };
    command.run = [options](Output& output) { return ReplayCommand(*options).run(output); };
    return command;
}
