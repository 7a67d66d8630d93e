#include "ReplayCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"
#include "Replay.h"
#include "ToolError.h"

#include <algorithm>
#include <limits>
#include <memory>

Command ReplayCommand::describe() {
    const auto options = std::make_shared<Options>();
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

ReplayCommand::ReplayCommand(const Options& options)
    : m_files(options.files)
    // A level above the highest one lets through no more than that; a log may have been taken so.
    , m_traceLevel(static_cast<int>(
          Arguments::integer("--trace", options.traceLevel, 0, std::numeric_limits<int>::max()))) {
    if (std::count(m_files.begin(), m_files.end(), standardInput) > 1) {
        throw UsageError("standard input (-) can be read only once");
    }
}

ExitStatus ReplayCommand::run(Output& output) const {
    ExitStatus status = ExitStatus::Done;
    for (const std::string& file : m_files) {
        status = worst(status, play(file, output));
    }
    return status;
}

ExitStatus ReplayCommand::play(const std::string& file, Output& output) const {
    try {
        const RadioFile radioFile = loadRadioFile(file);
        const bool started =
            Replay(m_traceLevel).play(radioFile, [&output](const std::string& line) {
                output.write(line + '\n');
            });
        output.flush();
        if (started) {
            return ExitStatus::Done;
        }
        complain(inputName(file) + ": the service did not start" +
                 (m_traceLevel > 0 ? "" : "; --trace 1 shows why"));
        return ExitStatus::ServiceDidNotStart;
    } catch (const OutputError&) {
        throw;
    } catch (const ToolError& error) {
        complain(error.what());
        return error.status();
    }
}
