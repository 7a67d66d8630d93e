#pragma once

#include "ScratchFolder.h"

#include <cstddef>
#include <string>
#include <string_view>

/// A file alone in a folder of its own. It is written piece by piece: the tests stay small, so that
/// the memory of what they start is its own.
class HostileFile {
public:
    HostileFile& add(std::string_view text);

    /// Adds a text again and again.
    HostileFile& add(std::size_t times, std::string_view text);

    /// Adds a text until the file has at least this many bytes.
    HostileFile& fillTo(std::size_t size, std::string_view text);

    std::string path() const { return (m_folder.path() / "radio.json").string(); }
    std::size_t size() const { return m_size; }

    /// Whether the file is still alone and as long as it was written.
    bool isUntouched() const;

    /// Whether the file begins with this text.
    bool begins(const std::string& text) const;

private:
    ScratchFolder m_folder;
    std::size_t m_size = 0;
};
