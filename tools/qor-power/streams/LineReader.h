#pragma once

#include "InputFile.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Reads a text line by line in constant memory, whatever its length and that of its lines. What is
/// added to a file meanwhile is not read.
class LineReader {
public:
    struct Line {
        std::string text;       ///< without the line end, be it "\n" or "\r\n"
        bool isTooLong = false; ///< then the text is only the beginning
    };

    /// @param path of the file, or standardInput.
    /// @param limit of a line's length in bytes.
    /// @throw AnalysisError OtherTrouble if the path cannot be opened, or if standard output leads
    /// to
    ///        that file: what is answered would come back as lines.
    LineReader(const std::string& path, std::size_t limit);

    /// Whether next() has a whole line already and need not wait for one.
    bool holdsLine() const { return pending().find('\n') != std::string_view::npos; }

    /// @return nothing behind the last line, which may do without a line end.
    /// @throw AnalysisError OtherTrouble if the input cannot be read.
    std::optional<Line> next();

private:
    std::string_view pending() const {
        return std::string_view(m_block.data(), m_end).substr(m_start);
    }

    void append(Line& line, std::string_view text) const;

    InputFile m_file;
    std::size_t m_limit;
    std::array<char, std::size_t{64} << 10> m_block{};
    std::size_t m_start = 0; ///< of what has not been handed out yet
    std::size_t m_end = 0;
};
