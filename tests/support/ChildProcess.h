#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

/// A program that tests run as a process of its own.
struct ChildProcess {
    /// How it ended, and what it took.
    struct End {
        int status = 0; ///< exit status; 1000 and the number if a signal ended it
        double processorSeconds = 0;
        double seconds = 0;
        double peakMiB = 0; ///< resident memory
    };

    std::vector<std::string> words;                 ///< its command line
    std::string folder;                             ///< in which it runs
    std::map<std::string, std::string> environment; ///< what differs; an empty value takes it away

    // Where its streams lead; below 0: it has none.
    int input = -1;
    int output = -1;
    int errors = -1;

    /// A program that hangs must not hang the tests: it is killed after two minutes.
    /// @throw std::runtime_error if no process can be made.
    void start();

    /// Waits for its end.
    End wait() const;

private:
    [[noreturn]] void become();

    pid_t m_id = -1;
    std::chrono::steady_clock::time_point m_start;
};

/// @throw std::runtime_error that says what did not work and why.
[[noreturn]] void failForTheSystem(const std::string& what);
