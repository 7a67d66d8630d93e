#pragma once

#include "BatchResult.h"
#include "Command.h"
#include "LineReader.h"
#include "PowerTableQuery.h"
#include "QueryOptions.h"

#include <string>

/// `qor-power batch`: the powers of any number of radio files, one line of input and one line of
/// output for each. A filter in constant memory: what is read is answered before more is read.
class BatchCommand {
public:
    struct Options {
        std::string file = "-";
        std::string format = "ndjson";
        bool withoutHeader = false;
        bool progress = false;
        bool quiet = false;
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit BatchCommand(const Options& options);

    /// A bad line is answered in its place, and the next one follows.
    /// @return BadRadioFile if any line was bad.
    /// @throw ToolError if the list cannot be read or no more can be written.
    ExitStatus run(Output& output) const;

private:
    BatchResult answer(const LineReader::Line& line) const;
    void query(const std::string& text, BatchResult& result) const;
    std::string form(const BatchResult& result) const;

    std::string m_file;
    bool m_isCsv;
    bool m_withoutHeader;
    bool m_progress;
    bool m_quiet;
    PowerTableQuery m_query;
};
