#pragma once

#include "HostileFile.h"
#include "MeasuredTool.h"

#include <iosfwd>
#include <string>
#include <vector>

/// A way of calling the tool, with no more arguments than it takes.
struct ToolCommand {
    /// How a command says that a radio file is bad. Most say it on standard error alone.
    enum class Refusal {
        Complaint,
        Finding,      ///< `check` lists it as a finding too
        JsonFinding,  ///< the same, in an object for all files
        LineOfOutput, ///< `batch` answers the line, and complains of nothing
    };

    const char* name; ///< for the names of tests
    /// The arguments. The words below stand for paths.
    std::vector<std::string> words;
    Refusal refusal = Refusal::Complaint;

    static constexpr const char* file = "FILE"; ///< the file in question
    static constexpr const char* list =
        "LIST"; ///< a list of radio files with nothing but that file
    static constexpr const char* radio = "RADIO";     ///< a radio file that is in order
    static constexpr const char* picture = "PICTURE"; ///< a file that is there and may be replaced
    static constexpr const char* log = "LOG";         ///< a log of traces that is in order
};

std::ostream& operator<<(std::ostream& stream, const ToolCommand& command);

/// Every command that reads a radio file, each place for one among its arguments.
const std::vector<ToolCommand>& radioFileCommands();

/// Those that read another kind of file.
const std::vector<ToolCommand>& otherFileCommands();

/// Every command that writes to standard output, in each of its forms.
const std::vector<ToolCommand>& writingCommands();

/// A command together with the files that it needs besides the one in question.
class StagedCommand {
public:
    explicit StagedCommand(const ToolCommand& command);

    /// The tool, about to be run on that file.
    MeasuredTool on(const std::string& path);

    /// Whether the files are as they were.
    bool isUntouched() const;

private:
    const ToolCommand& m_command;
    HostileFile m_radio;
    HostileFile m_list;
    HostileFile m_picture;
    HostileFile m_log;
};
