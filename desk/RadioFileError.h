#pragma once

#include <stdexcept>
#include <string>

/// What is wrong with a radio file. what() is one line: "PLACE: PROBLEM", and "; REMEDY" if one is
/// known. It holds no control characters, and long texts out of the file are shortened.
///
/// The place is "LINE:COLUMN" for a syntax error (both from 1, columns in characters), else the
/// JSON Pointer of the value or key: "/frameFormat/market". The document as a whole is
/// "(document)".
class RadioFileError : public std::runtime_error {
public:
    RadioFileError(const std::string& place, const std::string& problem,
                   const std::string& remedy = std::string());

    const std::string& place() const { return m_place; }
    const std::string& problem() const { return m_problem; }
    const std::string& remedy() const { return m_remedy; } ///< may be empty

private:
    std::string m_place;
    std::string m_problem;
    std::string m_remedy;
};
