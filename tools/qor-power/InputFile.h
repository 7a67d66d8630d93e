#pragma once

#include <cstddef>
#include <string>

/// A file open for reading, or standard input. Closed at the end, unless it is standard input.
class InputFile {
public:
    /// @param path of the file, or standardInput.
    /// @throw ToolError OtherTrouble if it cannot be opened.
    explicit InputFile(std::string path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Reads what is there, at least one byte and at most `size`.
    /// @return how many bytes; 0 at the end.
    /// @throw ToolError OtherTrouble
    std::size_t read(char* bytes, std::size_t size);

private:
    std::string m_path;
    bool m_isOwn;
    int m_descriptor;
};
