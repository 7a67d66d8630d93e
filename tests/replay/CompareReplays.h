#pragma once

#include "RadioFileReader.h"
#include "Replay.h"
#include "reference/Node.h"
#include "reference/RandomRadioFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
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
        bool isStarted = false; ///< as the library's replay says

        /// The first line that differs, on either side; empty if none does.
        std::string difference() const {
            const auto [left, right] =
                std::mismatch(library.begin(), library.end(), reference.begin(), reference.end());
            if (left == library.end() && right == reference.end()) {
                return {};
            }
            const std::string noLine = "(no line)";
            return "line " + std::to_string(left - library.begin() + 1) +
                   " differs\nlibrary:   " + (left == library.end() ? noLine : *left) +
                   "\nreference: " + (right == reference.end() ? noLine : *right);
        }
    };

    Lines play(const nlohmann::json& radioFile, int traceLevel) {
        return play(RadioFileReader::read(radioFile.dump()), radioFile, traceLevel);
    }

    /// @param radioFile what the file was read from.
    Lines play(const RadioFile& file, const nlohmann::json& radioFile, int traceLevel) {
        Lines lines;
        lines.isStarted = Replay(traceLevel).play(file, [&lines](const std::string& line) {
            lines.library.push_back(line);
        });
        lines.reference = playReference(radioFile, traceLevel);
        return lines;
    }

    std::vector<std::string> playReference(const nlohmann::json& radioFile, int traceLevel) {
        return reference::replay(radioFile, traceLevel, m_process);
    }

    Lines playRandom(std::uint64_t seed, int traceLevel) {
        return play(reference::randomRadioFile(seed), traceLevel);
    }

private:
    reference::ProcessState m_process; ///< what happens once in a process has happened in both
};
