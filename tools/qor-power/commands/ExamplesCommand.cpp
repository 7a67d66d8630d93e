#include "Commands.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "ExampleRadios.h"
#include "FileWriter.h"
#include "OneLine.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// `qor-power examples`: lists the example radio files, which are part of the tool, and writes
/// them.
class ExamplesCommand {
public:
    struct Options {
        std::vector<std::string> names;
        bool all = false;
        std::string folder; ///< empty: the current one
        bool force = false;
    };

    /// @throw QuestionError
    explicit ExamplesCommand(const Options& options);

    /// Writes all or nothing, and none that is there already, unless forced.
    /// @throw AnalysisError
    Outcome run(Output& output) const;

private:
    static void list(Output& output);

    std::vector<ExampleRadio> m_chosen; ///< none: they are listed
    std::string m_folder;
    bool m_force;
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

ExamplesCommand::ExamplesCommand(const Options& options)
    : m_folder(options.folder)
    , m_force(options.force) {
    if (options.all) {
        m_chosen = exampleRadios();
        return;
    }
    for (const std::string& name : options.names) {
        const std::string known = Arguments::word("NAME", name, namesOfExamples());
        const auto found =
            std::find_if(exampleRadios().begin(), exampleRadios().end(),
                         [&known](const ExampleRadio& radio) { return radio.name == known; });
        m_chosen.push_back(*found);
    }
}

void ExamplesCommand::list(Output& output) {
    std::size_t column = 0;
    for (const ExampleRadio& radio : exampleRadios()) {
        column = std::max(column, radio.name.size());
    }
    const TextLook look = output.terminal().look();
    for (const ExampleRadio& radio : exampleRadios()) {
        output.write(look.styled(radio.name, TextStyle::Bold) +
                     std::string(column - radio.name.size(), ' ') + "  " + summaryOf(radio) + '\n');
    }
}

Outcome ExamplesCommand::run(Output& output) const {
    if (m_chosen.empty()) {
        list(output);
        return Outcome::Done;
    }
    const auto pathOf = [this](const ExampleRadio& radio) {
        return (m_folder.empty() ? "" : m_folder + '/') + std::string(radio.name);
    };
    FileWriter files(m_force ? IfThere::Replace : IfThere::Refuse);
    for (const ExampleRadio& radio : m_chosen) {
        files.add(pathOf(radio), radio.text);
    }
    files.publish();
    for (const ExampleRadio& radio : m_chosen) {
        output.write(oneLine(pathOf(radio)) + '\n');
    }
    return Outcome::Done;
}

} // namespace

Command Commands::examples() {
    const auto options = std::make_shared<ExamplesCommand::Options>();
    Command command;
    command.name = "examples";
    command.summary = "List the example radio files, or write them";
    command.examples = {
        {"qor-power examples", "list the example radio files"},
        {"qor-power examples 13ghz-etsi-outdoor1.json"},
        {"qor-power examples --all -o radios"},
    };
    command.about = {"Nothing is written if one of the files is there already, unless --force is "
                     "given."};
    command.options = {
        {"NAME", "", "Examples to write; without any they are listed", &options->names, false,
         CommandOption::Completion::Words, namesOfExamples()},
        {"--all", "", "Write every example", &options->all},
        {"-o,--output", "FOLDER", "Folder to write to, which has to exist; otherwise this one",
         &options->folder, false, CommandOption::Completion::Folders},
        {"--force", "", "Overwrite files that are there already", &options->force},
    };
    command.run = [options](Output& output) { return ExamplesCommand(*options).run(output); };
    return command;
}
