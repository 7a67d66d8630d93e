#pragma once

#include "AnalysisError.h"
#include "Output.h"

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What the tool is for, in one line.
inline constexpr const char* toolSummary =
    "Transmit output power of a microwave radio, from a radio file that describes it";

/// An option or an argument of a command: what the command line, the help, the manual page and the
/// shells' completions have to know.
struct CommandOption {
    /// Where the value goes: a flag, a value with a default, a value that may be missing, or all
    /// values of an option that may be repeated and of an argument that takes several.
    using Target =
        std::variant<bool*, std::string*, std::optional<std::string>*, std::vector<std::string>*>;

    /// What a shell offers as its value.
    enum class Completion {
        Words, ///< those of `words`, if any
        Files,
        Folders
    };

    std::string name;        ///< "--format" or "-o,--output"; "FILE" for an argument
    std::string valueName;   ///< "FORMAT"; empty for a flag and for an argument
    std::string description; ///< without line ends, which each form sets for itself
    Target target;
    bool isRequired = false;
    Completion completion = Completion::Words;
    std::vector<std::string> words = {};

    /// "-o" and "--output" of "-o,--output"; of an argument nothing.
    std::vector<std::string> names() const;

    bool isArgument() const { return name.front() != '-'; }
    bool isFlag() const { return std::holds_alternative<bool*>(target); }
    bool isRepeatable() const { return std::holds_alternative<std::vector<std::string>*>(target); }
};

/// One command of the tool, whole: its place on the command line, its documentation and its work.
struct Command {
    struct Example {
        std::string commandLine;
        std::string meaning = {}; ///< a phrase; the first example's stands in the tool's own help
    };

    std::string name;
    std::string summary;                     ///< one line, in the imperative
    std::vector<Example> examples;           ///< at least one
    std::vector<std::string> about = {};     ///< paragraphs without line ends
    std::vector<CommandOption> options = {}; ///< arguments in their order

    /// Does what the targets of the options say by now.
    /// @throw AnalysisError
    std::function<Outcome(Output&)> run;

    std::string group = "Commands";

    std::vector<CommandOption> arguments() const;
};
