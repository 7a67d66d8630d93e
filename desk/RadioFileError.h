#pragma once

#include "DocumentPlaces.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// What is wrong with a radio file. what() is one line: "PLACE: PROBLEM", and "; REMEDY" if one is
/// known. It holds no control characters, and long texts out of the file are shortened.
///
/// The place is "LINE:COLUMN" for a syntax error (both from 1, columns in characters), else the
/// JSON Pointer of the value or key: "/frameFormat/market". The document as a whole is
/// "(document)".
class RadioFileError : public std::runtime_error {
public:
    /// About the text.
    RadioFileError(const TextPlace& place, const std::string& problem,
                   const std::string& remedy = std::string());

    /// About the value or key at a path; an empty path is the document as a whole.
    RadioFileError(const std::vector<std::string>& path, const std::string& problem,
                   const std::string& remedy = std::string());

    const std::string& place() const { return m_place; }

    /// Of a syntax error; of any other DocumentPlaces knows it by the path.
    const std::optional<TextPlace>& textPlace() const { return m_textPlace; }

    const std::vector<std::string>& path() const { return m_path; }
    const std::string& problem() const { return m_problem; }
    const std::string& remedy() const { return m_remedy; } ///< may be empty

private:
    std::optional<TextPlace> m_textPlace;
    std::vector<std::string> m_path;
    std::string m_place;
    std::string m_problem;
    std::string m_remedy;
};
