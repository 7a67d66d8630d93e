#include "Commands.h"

#include "Arguments.h"
#include "Input.h"
#include "Messages.h"
#include "RadioQuestion.h"
#include "Replay.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

struct ReplayOptions {
    std::vector<std::string> files;
    std::string traceLevel = "0";
};

/// Plays the requests of radio files and reports every call as a line of JSON. Each file has a
/// service of its own.
Outcome replayFiles(const ReplayOptions& options, Output& output) {
    // A level above the highest one lets through no more than that; a log may have been taken so.
    const auto traceLevel = static_cast<int>(
        Arguments::integer("--trace", options.traceLevel, 0, std::numeric_limits<int>::max()));
    return forEachFile(options.files, [&](const std::string& file) {
        const RadioFile radioFile = loadRadioFile(file);
        const bool started = Replay(traceLevel).play(radioFile, [&output](const std::string& line) {
            output.write(line + '\n');
        });
        output.flush();
        if (started) {
            return Outcome::Done;
        }
        complain(inputName(file) + ": the service did not start" +
                 (traceLevel > 0 ? "" : "; --trace 1 shows why"));
        return Outcome::ServiceDidNotStart;
    });
}

} // namespace

Command Commands::replay() {
    const auto options = std::make_shared<ReplayOptions>();
    return {
        .name = "replay",
        .summary = "Play the requests of radio files and print the answers",
        .examples =
            {
                {"qor-power replay radio.json", "play the requests of a radio file"},
                {"qor-power replay radio.json --trace 6"},
                {"qor-power replay monday.json tuesday.json"},
                {"qor-power replay - < radio.json"},
            },
        .about = {"Each file is played in a fresh service, and each call is printed as one line "
                  "of JSON."},
        .options =
            {
                CommonOptions::radioFiles(options->files),
                {"--trace", "LEVEL",
                 "Report the library's traces up to a level: 1 errors, 2 warnings, 4 invalid "
                 "input, "
                 "5 results, 6 everything; 0, the default, none",
                 &options->traceLevel},
            },
        .run = [options](Output& output) { return replayFiles(*options, output); },
    };
}
