#pragma once

#include "ExitStatus.h"

#include <stdexcept>
#include <string>

/// Ends what the tool is doing. what() is one line without control characters, ready for
/// complain().
class ToolError : public std::runtime_error {
public:
    ToolError(ExitStatus status, const std::string& line)
        : std::runtime_error(line)
        , m_status(status) {}

    ExitStatus status() const { return m_status; }

private:
    ExitStatus m_status;
};

/// The command line asks for something that the tool does not have.
class UsageError : public ToolError {
public:
    explicit UsageError(const std::string& line)
        : ToolError(ExitStatus::OtherTrouble, line) {}
};

/// Standard output cannot take more. There is no point in going on.
class OutputError : public ToolError {
public:
    explicit OutputError(const std::string& line)
        : ToolError(ExitStatus::OtherTrouble, line) {}
};
