#pragma once

#include "InputFile.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <unistd.h>

/// Reads a text line by line in constant memory, whatever its length and that of its lines. What is
/// added to a file meanwhile is not read, a byte order mark at the start is dropped.
class LineReader {
public:
    struct Line {
        std::string text;       ///< without the line end, be it "\n" or "\r\n"
        bool isTooLong = false; ///< then the text is only the beginning
    };

    /// @param path of the file, or standardInput.
    /// @param limit of a line's length in bytes.
    /// @param output descriptor that the answers go to.
    /// @throw AnalysisError OtherTrouble if the path cannot be opened, or if the output leads to
    /// that
    ///        file: what is answered would come back as lines.
    LineReader(const std::string& path, std::size_t limit, int output = STDOUT_FILENO);

    /// Whether next() need not wait for who writes: it has a whole line, or the end has come. Reads
    /// what is there.
    bool isReady();

    /// To be waited at until isReady() may be true.
    int descriptor() const { return m_file.descriptor(); }

    /// How much of a plain file is read, from 0 to 1; nothing for others.
    std::optional<double> share() const { return m_file.share(); }

    /// @return nothing behind the last line, which may do without a line end.
    /// @throw AnalysisError OtherTrouble if the input cannot be read, or is UTF-16.
    std::optional<Line> next();

private:
    bool holdsLine() const { return pending().find('\n') != std::string_view::npos; }

    std::string_view pending() const {
        return std::string_view(m_block.data(), m_end).substr(m_start);
    }

    void readOn();
    void append(std::string_view text);
    void dropMark();

    std::string m_name;
    InputFile m_file;
    std::size_t m_limit;
    std::array<char, std::size_t{64} << 10> m_block{};
    std::size_t m_start = 0; ///< of what has not been handed out yet
    std::size_t m_end = 0;
    Line m_begun;           ///< a line of which the end has not been read yet
    bool m_isBegun = false; ///< there is one
    bool m_isAtEnd = false; ///< of the file
    bool m_isFirst = true;
};
