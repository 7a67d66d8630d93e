#include "Arguments.h"
#include "CheckSummary.h"
#include "Commands.h"
#include "Input.h"
#include "LineReader.h"
#include "Messages.h"
#include "RadioFileCheck.h"
#include "RadioFileReader.h"
#include "RadioLine.h"
#include "RadioQuestion.h"
#include "TextColumns.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

struct CheckOptions {
    std::vector<std::string> files;
    std::vector<std::string> lists;
    bool isSummary = false;
    std::string format = "text";
    bool isStrict = false;
};

const std::vector<std::string> checkFormats{"text", "json"};

using Work = std::function<Outcome(const std::string& name, const std::string& text)>;

/// Does something with every radio of a list, as batch reads it. A line that goes wrong is
/// complained about, and the next one follows.
Outcome forEachLine(const std::string& list, const Work& work) {
    LineReader lines(list, RadioFileReader::maxSize);
    Outcome outcome = Outcome::Done;
    bool hasRadio = false;
    for (std::size_t number = 1; const auto line = lines.next(); ++number) {
        const std::string place = inputName(list) + ", line " + std::to_string(number);
        const RadioLine radio(*line);
        try {
            const std::string& own = radio.path().empty() ? radio.id() : radio.path();
            const Outcome its = work(own.empty() ? place : own, radio.text());
            outcome = worst(outcome, its);
            hasRadio = hasRadio || its != Outcome::BadRadioFile;
        } catch (const OutputError&) {
            throw;
        } catch (const AnalysisError& error) {
            complain(place + ": " + error.what());
            outcome = worst(outcome, error.outcome());
        }
    }
    if (!hasRadio) {
        complainOfRadioAsList(list);
    }
    return outcome;
}

/// @return Done if nothing but hints was found, AnswerIsNo if a warning or an error was,
/// BadRadioFile if a file is no radio file: the worst of all files.
Outcome checkFiles(const CheckOptions& options, Output& output) {
    const bool isJson = Arguments::word("--format", options.format, checkFormats) == "json";
    if (options.files.empty() && options.lists.empty()) {
        throw QuestionError("FILE is missing; try qor-power check --help");
    }
    std::vector<CheckedFile> checked;
    CheckSummary summary;
    const Work check = [&](const std::string& name, const std::string& text) {
        CheckedFile file{name, RadioFileCheck::run(text)};
        const Outcome own = file.check.outcome(options.isStrict);
        if (options.isSummary) {
            summary.add(file);
        } else if (!isJson) {
            const TextLook look = output.terminal().look();
            output.write(fitted(textForm(file, look), look.width));
            output.flush();
        }
        if (!file.check.isRadioFile) {
            complain(messageOf(file));
        }
        if (isJson && !options.isSummary) {
            checked.push_back(std::move(file));
        }
        return own;
    };
    Outcome outcome = forEachFile(options.files, [&](const std::string& path) {
        return check(givenName(path), readText(path));
    });
    outcome = worst(outcome, forEachFile(options.lists, [&](const std::string& list) {
                        return forEachLine(list, check);
                    }));
    const TextLook look = output.terminal().look();
    if (options.isSummary) {
        output.write(isJson ? jsonForm(summary) : fitted(textForm(summary, look), look.width));
    } else if (isJson) {
        output.write(jsonForm(checked));
    }
    output.flush();
    return outcome;
}

} // namespace

Command Commands::check() {
    const auto options = std::make_shared<CheckOptions>();
    CommandOption files = CommonOptions::radioFiles(options->files);
    files.isRequired = false; // a list does as well
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
                {"qor-power check --summary --list nodes.txt"},
            },
        .about =
            {"Each finding is an error, a warning or a hint, and has a code, a place and mostly a "
             "remedy. The codes are listed in checks.md.",
             "Warnings and errors make the answer no (exit status 1); hints do not, unless "
             "--strict is "
             "given."},
        .options =
            {
                files,
                {"--list", "LIST",
                 "Also the radios of a list, one on a line as in qor-power batch; - for standard "
                 "input; may be repeated",
                 &options->lists, false, CommandOption::Completion::Files},
                CommonOptions::format(options->format, checkFormats),
                {"--summary", "", "Count the findings of all files by their codes",
                 &options->isSummary},
                {"--strict", "", "Let hints count like warnings", &options->isStrict},
            },
        .run = [options](Output& output) { return checkFiles(*options, output); },
    };
}
