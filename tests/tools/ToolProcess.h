#pragma once

#include "DrivenTool.h"

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

/// What a run of the tool left behind.
struct ToolResult {
    int status = 0; ///< exit status; 1000 and the number if a signal ended it
    std::string output;
    std::string errors;

    /// Whether standard error holds exactly one line, and that begins with the tool's name.
    bool hasOneErrorLine() const;
};

/// For failed expectations.
std::ostream& operator<<(std::ostream& stream, const ToolResult& result);

/// The built tool, to be run as a process of its own, in the folder of these tests unless told
/// otherwise.
class ToolProcess {
public:
    explicit ToolProcess(std::vector<std::string> arguments)
        : m_arguments(std::move(arguments)) {}

    /// What the tool finds on its standard input; nothing by default.
    ToolProcess& withInput(std::string input);

    /// Runs it in another folder.
    ToolProcess& inFolder(std::string folder);

    /// Sends standard output to a path, which is not read back.
    ToolProcess& withOutputTo(std::string path);

    /// Sends standard output into a pipe that nobody reads any more.
    ToolProcess& withClosedPipe();

    /// Starts the tool with no standard output at all.
    ToolProcess& withoutOutput();

    /// Puts standard output on a terminal, 100 columns wide, which changes no line end.
    ToolProcess& withOutputOnTerminal();

    /// Likewise standard error; where both are, on the same terminal, which either result shows.
    ToolProcess& withErrorsOnTerminal();

    /// Sets a variable of the environment for the tool; an empty value takes it away.
    ToolProcess& withEnvironment(const std::string& name, const std::string& value);

    ToolResult run() const;

private:
    enum class Sink {
        Captured,
        Path,
        ClosedPipe,
        None,
        Terminal
    };

    std::vector<std::string> m_arguments;
    std::string m_input;
    std::string m_folder;
    Sink m_sink = Sink::Captured;
    std::string m_outputPath;
    bool m_hasErrorTerminal = false;
    std::map<std::string, std::string> m_environment{
        {"TERM", "xterm"}, {"NO_COLOR", ""}, {"COLUMNS", ""}, {"LC_ALL", "C.UTF-8"}};
};

/// Runs the tool with nothing but arguments.
ToolResult runTool(std::vector<std::string> arguments);

/// A text's lines without their ends.
std::vector<std::string> linesOf(const std::string& text);

/// The paths of the example radios, in order.
std::vector<std::string> exampleRadios();

/// The content of a file below the folder of these tests.
std::string contentOf(const std::string& path);
