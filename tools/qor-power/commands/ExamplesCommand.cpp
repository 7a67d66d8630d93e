#include "Commands.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "ExampleRadios.h"
#include "FileWriter.h"
#include "OneLine.h"
#include "TextColumns.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct ExamplesOptions {
    std::vector<std::string> names;
    bool all = false;
    std::optional<std::string> folder;
    bool force = false;
};

std::vector<std::string> namesOfExamples() {
    std::vector<std::string> names;
    for (const ExampleRadio& radio : exampleRadios()) {
        names.emplace_back(radio.name);
    }
    return names;
}

/// What an example is, on one line: the first sentence of the comment at its head.
std::string summaryOf(const ExampleRadio& radio) {
    std::string_view comment = radio.text.substr(0, radio.text.find("*/"));
    comment.remove_prefix(std::min(comment.size(), comment.find_first_not_of("/* ")));
    std::istringstream words{std::string(comment)};
    std::string summary;
    for (std::string word; !summary.ends_with('.') && words >> word;) {
        summary += (summary.empty() ? "" : " ") + word;
    }
    return summary.substr(0, summary.find_last_not_of('.') + 1);
}

/// Nothing if they are to be listed.
std::vector<ExampleRadio> chosen(const ExamplesOptions& options) {
    if (options.all) {
        return exampleRadios();
    }
    std::vector<ExampleRadio> radios;
    for (const std::string& name : options.names) {
        const std::string known = Arguments::word("NAME", name, namesOfExamples());
        const auto found = std::ranges::find_if(
            exampleRadios(), [&known](const ExampleRadio& radio) { return radio.name == known; });
        radios.push_back(*found);
    }
    return radios;
}

void listExamples(Output& output) {
    std::size_t column = 0;
    for (const ExampleRadio& radio : exampleRadios()) {
        column = std::max(column, radio.name.size());
    }
    const TextLook look = output.terminal().look();
    for (const ExampleRadio& radio : exampleRadios()) {
        output.write(fitted(look.styled(radio.name, TextStyle::Bold) +
                                std::string(column - radio.name.size(), ' ') + "  " +
                                summaryOf(radio) + '\n',
                            look.width));
    }
}

/// Prints one, or writes files: all or nothing, and none that is there already, unless forced.
Outcome writeExamples(const ExamplesOptions& options, Output& output) {
    const std::vector<ExampleRadio> radios = chosen(options);
    if (radios.empty()) {
        listExamples(output);
        return Outcome::Done;
    }
    if (!options.all && !options.folder) {
        if (radios.size() > 1 || options.force) {
            throw QuestionError("one example alone is printed; -o FOLDER writes files, -o . here");
        }
        output.write(radios.front().text);
        return Outcome::Done;
    }
    const std::string folder = options.folder.value_or("");
    const auto pathOf = [&folder](const ExampleRadio& radio) {
        return (folder.empty() ? "" : folder + '/') + std::string(radio.name);
    };
    FileWriter files(options.force ? IfThere::Replace : IfThere::Refuse);
    for (const ExampleRadio& radio : radios) {
        files.add(pathOf(radio), radio.text);
    }
    files.publish();
    for (const ExampleRadio& radio : radios) {
        output.write(oneLine(pathOf(radio)) + '\n');
    }
    return Outcome::Done;
}

} // namespace

Command Commands::examples() {
    const auto options = std::make_shared<ExamplesOptions>();
    return {
        .name = "examples",
        .summary = "List the example radio files, print one, or write them",
        .examples =
            {
                {"qor-power examples", "list the example radio files"},
                {"qor-power examples 13ghz-etsi-outdoor1.json > radio.json"},
                {"qor-power examples --all -o radios"},
            },
        .about =
            {"One NAME alone is printed. With --output or --all files are written, none if one "
             "of them is there already, unless --force is given."},
        .options =
            {
                {"NAME", "", "Examples; without any they are listed", &options->names, false,
                 CommandOption::Completion::Words, namesOfExamples()},
                {"--all", "", "Write every example", &options->all},
                {"-o,--output", "FOLDER", "Folder to write to, which has to exist; . is this one",
                 &options->folder, false, CommandOption::Completion::Folders},
                {"--force", "", "Overwrite files that are there already", &options->force},
            },
        .run = [options](Output& output) { return writeExamples(*options, output); },
    };
}
