#pragma once

#include <cstddef>
#include <string>

/// The path that stands for standard input.
inline constexpr const char* standardInput = "-";

/// What messages and headings call an input: its path on one line, or "standard input".
std::string inputName(const std::string& path);

/// A file open for reading, or standard input. Closed at the end, unless it is standard input.
class InputFile {
public:
    /// @param path of the file, or standardInput.
    /// @throw AnalysisError OtherTrouble if it cannot be opened.
    explicit InputFile(std::string path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Reads what is there, at least one byte and at most `size`.
    /// @return how many bytes; 0 at the end.
    /// @throw AnalysisError OtherTrouble
    std::size_t read(char* bytes, std::size_t size);

private:
    std::string m_path;
    bool m_isOwn;
    int m_descriptor;
};
