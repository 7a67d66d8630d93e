#pragma once

#include "Command.h"
#include "ExampleRadios.h"

#include <string>
#include <vector>

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

    static Command describe();

    /// @throw UsageError
    explicit ExamplesCommand(const Options& options);

    /// Writes nothing at all if a file of one of the names is there already, unless forced.
    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    static void list(Output& output);

    std::vector<ExampleRadio> m_chosen; ///< none: they are listed
    std::string m_folder;
    bool m_force;
};
