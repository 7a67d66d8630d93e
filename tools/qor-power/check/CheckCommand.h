#pragma once

#include "CheckForms.h"
#include "Command.h"
#include "ExitStatus.h"
#include "Output.h"

#include <string>
#include <vector>

/// `qor-power check`: what is wrong with radio files, or likely not meant.
class CheckCommand {
public:
    struct Options {
        std::vector<std::string> files;
        std::string format = "text";
        bool isStrict = false;
    };

    static Command describe();

    /// @throw UsageError
    explicit CheckCommand(const Options& options);

    /// @return Done if nothing but hints was found, AnswerIsNo if a warning or an error was,
    /// BadRadioFile if a file is no radio file: the worst of all files. A file that cannot be read
    /// is complained about, and the others are checked.
    /// @throw OutputError
    ExitStatus run(Output& output) const;

private:
    ExitStatus statusOf(const RadioFileCheck& check) const;

    std::vector<std::string> m_files;
    std::string m_format;
    bool m_isStrict;
};
