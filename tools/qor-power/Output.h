#pragma once

#include <string_view>

/// Standard output. What cannot be written is an error of the tool, never lost silently.
class Output {
public:
    /// @throw OutputError
    void write(std::string_view text);

    /// Hands on what was written. To be called before anything is said on standard error, so that
    /// the two stand in order on a terminal, and at the end.
    /// @throw OutputError
    void flush();
};
