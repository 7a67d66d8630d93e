#include "Arguments.h"
#include "Commands.h"
#include "Input.h"
#include "Messages.h"
#include "RadioFileCheck.h"
#include "RadioQuestion.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    std::string format = "text";
    bool isStrict = false;
};

const std::vector<std::string> checkFormats{"text", "json"};

/// @return Done if nothing but hints was found, AnswerIsNo if a warning or an error was,
/// BadRadioFile if a file is no radio file: the worst of all files.
Outcome checkFiles(const CheckOptions& options, Output& output) {
    const bool isJson = Arguments::word("--format", options.format, checkFormats) == "json";
    std::vector<CheckedFile> checked;
    const Outcome outcome = forEachFile(options.files, [&](const std::string& path) {
        CheckedFile file{inputName(path), RadioFileCheck::run(readText(path))};
        const Outcome own = file.check.outcome(options.isStrict);
        if (!isJson) {
            output.write(textForm(file, output.terminal().look()));
            output.flush();
        }
        if (!file.check.isRadioFile) {
            complain(messageOf(file));
        }
        if (isJson) {
            checked.push_back(std::move(file));
        }
        return own;
    });
    if (isJson) {
        output.write(jsonForm(checked));
    }
    output.flush();
    return outcome;
}

} // namespace

Command Commands::check() {
    const auto options = std::make_shared<CheckOptions>();
    return {
        .name = "check",
        .summary = "Find what is wrong in radio files, or likely not meant",
        .examples =
            {
                {"qor-power check radio.json",
                 "what is wrong in a radio file, or likely not meant"},
                {"qor-power check --strict monday.json tuesday.json"},
                {"qor-power check --format json radio.json"},
                {"qor-power check - < radio.json"},
            },
        .about =
            {"Each finding is an error, a warning or a hint, and has a code, a place and mostly a "
             "remedy. The codes are listed in checks.md.",
             "Warnings and errors make the answer no (exit status 1); hints do not, unless "
             "--strict is "
             "given."},
        .options =
            {
                CommonOptions::radioFiles(options->files),
                CommonOptions::format(options->format, checkFormats),
                {"--strict", "", "Let hints count like warnings", &options->isStrict},
            },
        .run = [options](Output& output) { return checkFiles(*options, output); },
    };
}
