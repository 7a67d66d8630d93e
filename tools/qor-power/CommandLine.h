#pragma once

#include "Command.h"

#include <memory>
#include <string>
#include <vector>

/// Reads the words behind the tool's name and does what they say.
class CommandLine {
public:
    explicit CommandLine(std::vector<Command> commands);
    ~CommandLine();

    /// @throw AnalysisError, a QuestionError for what the words ask in vain.
    Outcome run(int argc, const char* const* argv, Output& output);

private:
    class Parser;

    std::unique_ptr<Parser> m_parser;
};
