#include "CheckCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "JsonPointer.h"
#include "Messages.h"
#include "OneLine.h"
#include "ToolError.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

const std::vector<std::string> formats{"text", "json"};

/// What every command says of a bad radio file, in the same words.
void complainOfForm(const CheckedFile& file) {
    const RadioFileCheck::PlacedFinding& placed = file.check.findings.front();
    const Finding& finding = placed.finding;
    complain(
        file.name + ": " +
        oneLine(placed.hasPointer ? pointerText(finding.place.path) : placeText(placed.textPlace)) +
        ": " + oneLine(finding.message) +
        (finding.remedy.empty() ? "" : "; " + oneLine(finding.remedy)));
}

} // namespace

Command CheckCommand::describe() {
    const auto options = std::make_shared<Options>();
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
        CommonOptions::format(options->format, formats),
        {"--strict", "", "Let hints count like warnings", &options->isStrict},
    };
    command.run = [options](Output& output) { return CheckCommand(*options).run(output); };
    return command;
}

CheckCommand::CheckCommand(const Options& options)
    : m_files(options.files)
    , m_format(Arguments::word("--format", options.format, formats))
    , m_isStrict(options.isStrict) {
    if (std::count(m_files.begin(), m_files.end(), standardInput) > 1) {
        throw UsageError("standard input (-) can be read only once");
    }
}

ExitStatus CheckCommand::statusOf(const RadioFileCheck& check) const {
    if (!check.isRadioFile) {
        return ExitStatus::BadRadioFile;
    }
    const bool isClean = check.count(Severity::Error) == 0 && check.count(Severity::Warning) == 0 &&
                         (!m_isStrict || check.count(Severity::Hint) == 0);
    return isClean ? ExitStatus::Done : ExitStatus::AnswerIsNo;
}

ExitStatus CheckCommand::run(Output& output) const {
    ExitStatus status = ExitStatus::Done;
    std::vector<CheckedFile> checked;
    for (const std::string& path : m_files) {
        try {
            CheckedFile file{inputName(path), RadioFileCheck::run(readText(path))};
            status = worst(status, statusOf(file.check));
            if (m_format == "text") {
                output.write(textForm(file, output.terminal()));
                output.flush();
            }
            if (!file.check.isRadioFile) {
                complainOfForm(file);
            }
            if (m_format == "json") {
                checked.push_back(std::move(file));
            }
        } catch (const OutputError&) {
            throw;
        } catch (const ToolError& error) {
            complain(error.what());
            status = worst(status, error.status());
        }
    }
    if (m_format == "json") {
        output.write(jsonForm(checked));
    }
    output.flush();
    return status;
}
