#pragma once

#include "ChildProcess.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

/// What a run of the tool left behind, and what it took.
struct ToolRun : ChildProcess::End {
    std::string firstOutput = {}; ///< at most the first 64 KiB of standard output
    std::uintmax_t outputSize = 0;
    std::string errors = {};
    std::vector<std::string> leftBehind = {}; ///< what it left in the folder that it ran in
};

/// For failed expectations.
std::ostream& operator<<(std::ostream& stream, const ToolRun& run);

/// The built tool, run as a process of its own in an empty folder, which is also its home and its
/// place for temporary files.
class MeasuredTool {
public:
    explicit MeasuredTool(std::vector<std::string> arguments)
        : m_arguments(std::move(arguments)) {}

    /// Standard input comes from this path instead of /dev/null.
    MeasuredTool& withInputFrom(std::string path);

    /// Starts the tool without a standard input.
    MeasuredTool& withoutInput();

    /// Standard output goes to this path, unseen.
    MeasuredTool& withOutputTo(std::string path);

    /// Standard output is a pipe whose reader takes this many bytes and then closes it.
    MeasuredTool& withReaderOf(std::size_t bytes);

    ToolRun run() const;

private:
    std::vector<std::string> m_arguments;
    std::string m_input = "/dev/null";
    std::string m_output; ///< empty: captured
    bool m_hasReader = false;
    std::size_t m_readerBytes = 0;
};
