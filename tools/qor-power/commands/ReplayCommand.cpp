#include "Commands.h"

#include "Arguments.h"
#include "Input.h"
#include "Messages.h"
#include "Printable.h"
#include "RadioQuestion.h"
#include "RecordedAnswers.h"
#include "Replay.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

struct ReplayOptions {
    std::vector<std::string> files;
    std::string traceLevel = "0";
    bool verify = false;
};

Outcome complainOfStart(const std::string& file, const char* remedy) {
    complain(inputName(file) + ": the service did not start" + remedy);
    return Outcome::ServiceDidNotStart;
}

/// Plays a file and prints what is not as it was recorded.
Outcome verify(const std::string& file, const RadioFile& radioFile, Output& output) {
    const auto recorded =
        std::count_if(radioFile.requests.begin(), radioFile.requests.end(),
                      [](const Request& request) { return !request.expect.empty(); });
    if (recorded == 0) {
        complain(inputName(file) + ": no request has a recorded answer (\"expect\")");
        return Outcome::OtherTrouble;
    }
    std::size_t line = 0; // the first is the start
    std::size_t differences = 0;
    const bool started = Replay().play(radioFile, [&](const std::string& answer) {
        const std::size_t index = line++;
        if (index == 0) {
            return;
        }
        const auto difference =
            RecordedAnswers::difference(radioFile.requests[index - 1], index - 1, answer);
        if (difference) {
            ++differences;
            output.write(*difference + '\n');
        }
    });
    output.flush();
    if (!started) {
        return complainOfStart(file, "; replay --trace 1 shows why");
    }
    if (differences == 0) {
        return Outcome::Done;
    }
    complain(inputName(file) + ": " + std::to_string(differences) + " of " +
             std::to_string(recorded) + " recorded answers differ");
    for (const std::string& note : radioFile.notes) {
        complain("  " + printable(note));
    }
    return Outcome::AnswerIsNo;
}

/// Plays the requests of radio files and reports every call as a line of JSON. Each file has a
/// service of its own.
Outcome replayFiles(const ReplayOptions& options, Output& output) {
    // A level above the highest one lets through no more than that; a log may have been taken so.
    const auto traceLevel = static_cast<int>(
        Arguments::integer("--trace", options.traceLevel, 0, std::numeric_limits<int>::max()));
    if (options.verify && traceLevel > 0) {
        throw QuestionError("--verify prints what differs, and no traces: leave out --trace");
    }
    return forEachFile(options.files, [&](const std::string& file) {
        const RadioFile radioFile = loadRadioFile(file);
        if (options.verify) {
            return verify(file, radioFile, output);
        }
        const bool started = Replay(traceLevel).play(radioFile, [&output](const std::string& line) {
            output.write(line + '\n');
        });
        output.flush();
        if (started) {
            return Outcome::Done;
        }
        return complainOfStart(file, traceLevel > 0 ? "" : "; --trace 1 shows why");
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
                {"qor-power replay field.json --verify",
                 "whether the answers that a flight recorder wrote down come out again"},
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
                {"--verify", "",
                 "Print only the answers that differ from those that were recorded (\"expect\"); "
                 "status 1 if any does",
                 &options->verify},
            },
        .run = [options](Output& output) { return replayFiles(*options, output); },
    };
}
