#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

/// A file of lines that was broken off, to which the missing ones are added. One that is not there
/// is empty.
///
/// Nothing of it changes before cutRest(): first it has to be sure that it is the file that is
/// meant.
class ResumedFile {
public:
    /// Bytes of a line; a file with a longer one is something else.
    static constexpr std::size_t maxLine = std::size_t{8} << 20;

    /// @throw AnalysisError OtherTrouble if it cannot be read and written, is no plain file, or is
    ///        being written by another run.
    explicit ResumedFile(std::string path);
    ~ResumedFile();
    ResumedFile(const ResumedFile&) = delete;
    ResumedFile& operator=(const ResumedFile&) = delete;

    std::uint64_t lines() const { return m_lines; }      ///< that are whole
    const std::string& first() const { return m_first; } ///< with its line end; or empty
    const std::string& last() const { return m_last; }   ///< likewise
    const std::string& rest() const { return m_rest; }   ///< behind the last whole line

    /// Takes away what stands behind the last whole line.
    void cutRest();

    /// To write at the end. Closed with this object.
    std::FILE* stream() const { return m_stream; }
    int descriptor() const { return ::fileno(m_stream); }

    /// @throw AnalysisError OtherTrouble, that it cannot be gone on with.
    [[noreturn]] void fail(const std::string& why) const;

private:
    void read();

    std::string m_path;
    std::FILE* m_stream;
    std::uint64_t m_lines = 0;
    std::uint64_t m_size = 0; ///< of the whole lines
    std::string m_first;
    std::string m_last;
    std::string m_rest;
};
