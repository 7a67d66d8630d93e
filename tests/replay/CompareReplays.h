#pragma once

#include "RadioFileReader.h"
#include "Replay.h"
#include "reference/Node.h"
#include "reference/RandomRadioFile.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Plays random radio files through the library and through the plain restatement of its rules, and
/// compares what they print, trace records included.
class CompareReplays {
public:
    /// One comparison for the whole process, as the library's one-time traces are the process's.
    static CompareReplays& ofThisProcess() {
        static CompareReplays instance;
        return instance;
    }

    struct Lines {
        std::vector<std::string> library;
        std::vector<std::string> reference;
    };

    Lines play(const nlohmann::json& radioFile, int traceLevel) {
        Lines lines;
        const RadioFile file = RadioFileReader::read(radioFile.dump());
        Replay(traceLevel).play(file, [&lines](const std::string& line) {
            lines.library.push_back(line);
        });
        lines.reference = reference::replay(radioFile, traceLevel, m_process);
        return lines;
    }

    Lines playRandom(std::uint64_t seed, int traceLevel) {
        return play(reference::randomRadioFile(seed), traceLevel);
    }

private:
    reference::ProcessState m_process; ///< what happens once in a process has happened in both
};
