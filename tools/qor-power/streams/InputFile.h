#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <sys/stat.h>

/// The path that stands for standard input.
inline constexpr const char* standardInput = "-";

/// What messages and headings call an input: its path on one line, or "standard input".
std::string inputName(const std::string& path);

/// The same for programs: the path as it is given.
std::string givenName(const std::string& path);

/// A file open for reading, or standard input. Closed at the end, unless it is standard input.
///
/// A file that changes while it is read is an error, so that what was read is one state of it. Of a
/// named pipe the first bytes have to come in time; then, as on standard input, it may take as long
/// as it likes.
class InputFile {
public:
    enum class Growth {
        IsChange, ///< like any other
        IsLeftOut ///< what is written behind the end meanwhile is not read: a log goes on
    };

    /// How long a named pipe may have nothing to read: perhaps nobody will ever write to it.
    static constexpr std::chrono::milliseconds usualPatience = std::chrono::seconds(30);

    /// @param path of the file, or standardInput.
    /// @throw AnalysisError OtherTrouble if it cannot be opened.
    explicit InputFile(std::string path, Growth growth = Growth::IsChange,
                       std::chrono::milliseconds patience = usualPatience);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Reads what is there, at least one byte and at most `size`.
    /// @return how many bytes; 0 at the end.
    /// @throw AnalysisError OtherTrouble
    std::size_t read(char* bytes, std::size_t size);

    /// Whether what is written to a descriptor is added to this very file.
    bool isSameAs(int output) const;

    /// Whether read() need not wait for who writes.
    bool isReady() const;

    int descriptor() const { return m_descriptor; }

    /// How much of a plain file is read, from 0 to 1; nothing for others.
    std::optional<double> share() const;

private:
    void awaitWriter(std::chrono::milliseconds patience) const;
    void expectUnchanged() const;

    std::string m_path;
    Growth m_growth;
    bool m_isOwn;
    int m_descriptor;
    struct stat m_status {};
    std::optional<std::uint64_t> m_left; ///< bytes of a plain file that are not read yet
};
