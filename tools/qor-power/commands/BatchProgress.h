#pragma once

#include "Terminal.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

/// Tells on standard error how far a batch has come: on a terminal in one line that is written
/// over, elsewhere in a line every few seconds.
class BatchProgress {
public:
    explicit BatchProgress(bool isOn);
    ~BatchProgress();
    BatchProgress(const BatchProgress&) = delete;
    BatchProgress& operator=(const BatchProgress&) = delete;

    /// To be called after every line.
    void show(std::uint64_t lines, std::uint64_t bad);

    /// Takes the line away from the terminal.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    bool m_isOn;
    Terminal m_terminal;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_due = m_start;
    std::size_t m_shown = 0; ///< columns that the line on the terminal takes
};
