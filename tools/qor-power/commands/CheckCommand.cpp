#include "AnalysisError.h"
#include "Arguments.h"
#include "CheckForms.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"
#include "Output.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

/// `qor-power check`: what is wrong with radio files, or likely not meant.
class CheckCommand {
public:
    struct Options {
        std::vector<std::string> files;
        std::string format = "text";
        bool isStrict = false;
    };

    /// @throw QuestionError
    explicit CheckCommand(const Options& options);

    /// @return Done if nothing but hints was found, AnswerIsNo if a warning or an error was,
    /// BadRadioFile if a file is no radio file: the worst of all files. A file that cannot be read
    /// is complained about, and the others are checked.
    /// @throw OutputError
    Outcome run(Output& output) const;

private:
    std::vector<std::string> m_files;
    std::string m_format;
    bool m_isStrict;
};

const std::vector<std::string> checkFormats{"text", "json"};

CheckCommand::CheckCommand(const Options& options)
    : m_files(options.files)
    , m_format(Arguments::word("--format", options.format, checkFormats))
    , m_isStrict(options.isStrict) {
    if (std::count(m_files.begin(), m_files.end(), standardInput) > 1) {
        throw QuestionError("standard input (-) can be read only once");
    }
}

Outcome CheckCommand::run(Output& output) const {
    Outcome outcome = Outcome::Done;
    std::vector<CheckedFile> checked;
    for (const std::string& path : m_files) {
        try {
            CheckedFile file{inputName(path), RadioFileCheck::run(readText(path))};
            outcome = worst(outcome, file.check.outcome(m_isStrict));
            if (m_format == "text") {
                output.write(textForm(file, output.terminal().look()));
                output.flush();
            }
            if (!file.check.isRadioFile) {
                complain(messageOf(file));
            }
            if (m_format == "json") {
                checked.push_back(std::move(file));
            }
        } catch (const OutputError&) {
            throw;
        } catch (const AnalysisError& error) {
            complain(error.what());
            outcome = worst(outcome, error.outcome());
        }
    }
    if (m_format == "json") {
        output.write(jsonForm(checked));
    }
    output.flush();
    return outcome;
}

} // namespace

Command Commands::check() {
    const auto options = std::make_shared<CheckCommand::Options>();
    Command command;
    command.name = "check";
    command.summary = "Find what is wrong in radio files, or likely not meant";
    command.examples = {
        {"qor-power check radio.json", "what is wrong in a radio file, or likely not meant"},
        {"qor-power check --strict monday.json tuesday.json"},
        {"qor-power check --format json radio.json"},
        {"qor-power check - < radio.json"},
    };
    command.about = {
        "Each finding is an error, a warning or a hint, and has a code, a place and mostly a "
        "remedy. The codes are listed in checks.md.",
        "Warnings and errors make the answer no (exit status 1); hints do not, unless --strict is "
        "given."};
    command.options = {
        CommonOptions::radioFiles(options->files),
        CommonOptions::format(options->format, checkFormats),
        {"--strict", "", "Let hints count like warnings", &options->isStrict},
    };
    command.run = [options](Output& output) { return CheckCommand(*options).run(output); };
    return command;
}
