#pragma once

#include "LineReader.h"

#include <string>

/// A line of a list of radios: the path of a radio file or, where it begins with {, a radio file
/// itself; in front of either an id and a tab may stand.
class RadioLine {
public:
    explicit RadioLine(const LineReader::Line& line);

    const std::string& id() const { return m_id; } ///< may be empty

    /// As given; empty where the line is a radio file or too long for one.
    const std::string& path() const { return m_path; }

    /// The radio file's.
    /// @throw AnalysisError OtherTrouble for a line that names none and for a path that cannot be
    ///        read.
    std::string text() const;

private:
    std::string m_id;
    std::string m_path;
    std::string m_text;
    bool m_isTooLong;
};
