#include "ExamplesCommand.h"

#include "Arguments.h"
#include "OneLine.h"
#include "ToolError.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <sstream>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

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

[[noreturn]] void fail(const std::string& path) {
    const std::string remedy = errno == EEXIST ? "; --force overwrites it" : "";
    throw ToolError(ExitStatus::OtherTrouble,
                    oneLine(path) + ": cannot be written: " + std::strerror(errno) + remedy);
}

void writeAll(int file, std::string_view text, const std::string& path) {
    while (!text.empty()) {
        const ssize_t count = ::write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            const int error = errno;
            ::close(file);
            errno = error;
            fail(path);
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void writeFile(const std::string& path, std::string_view text, bool force) {
    constexpr mode_t permissions = 0666; // less those of the umask
    const int file = ::open(
        path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (force ? O_TRUNC : O_EXCL), permissions);
    if (file < 0) {
        fail(path);
    }
    writeAll(file, text, path);
    if (::close(file) != 0) {
        fail(path);
    }
}

} // namespace

Command ExamplesCommand::describe() {
    const auto options = std::make_shared<Options>();
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
    const Terminal terminal = output.terminal();
    for (const ExampleRadio& radio : exampleRadios()) {
        output.write(terminal.styled(radio.name, TextStyle::Bold) +
                     std::string(column - radio.name.size(), ' ') + "  " + summaryOf(radio) + '\n');
    }
}

ExitStatus ExamplesCommand::run(Output& output) const {
    if (m_chosen.empty()) {
        list(output);
        return ExitStatus::Done;
    }
    const auto pathOf = [this](const ExampleRadio& radio) {
        return (m_folder.empty() ? "" : m_folder + '/') + std::string(radio.name);
    };
    for (const ExampleRadio& radio : m_chosen) {
        if (!m_force && ::access(pathOf(radio).c_str(), F_OK) == 0) {
            errno = EEXIST;
            fail(pathOf(radio));
        }
    }
    for (const ExampleRadio& radio : m_chosen) {
        writeFile(pathOf(radio), radio.text, m_force);
        output.write(oneLine(pathOf(radio)) + '\n');
    }
    return ExitStatus::Done;
}
