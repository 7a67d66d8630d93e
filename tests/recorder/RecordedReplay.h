#pragma once

#include "RadioFileReader.h"
#include "RadioFileRecorder.h"
#include "Replay.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

/// A radio file played with a recorder attached, and what the recorder wrote.
class RecordedReplay {
public:
    using Lines = std::vector<std::string>;

    /// What a file prints, with every trace.
    static Lines linesOf(const RadioFile& file) {
        Lines lines;
        Replay(6).play(file, [&lines](const std::string& line) { lines.push_back(line); });
        return lines;
    }

    explicit RecordedReplay(const RadioFile& file,
                            std::size_t bytes = RadioFileRecorder::usualSize) {
        RadioFileRecorder recorder(file.channel, bytes);
        Replay replay(6);
        replay.whenStarted([&recorder] { recorder.attach(); });
        replay.play(file, [this](const std::string& line) { lines.push_back(line); });
        std::ostringstream stream;
        isWritten = recorder.write(stream);
        text = stream.str();
        isDetached = recorder.detach();
    }

    /// The first line that differs, on both sides; patches may stand elsewhere and are left out.
    static std::string firstDifference(const Lines& lines, const Lines& others) {
        const Lines left = withoutPatches(lines);
        const Lines right = withoutPatches(others);
        const auto [one, other] =
            std::mismatch(left.begin(), left.end(), right.begin(), right.end());
        if (one == left.end() && other == right.end()) {
            return {};
        }
        const std::string first = one == left.end() ? "(no line)" : *one;
        const std::string second = other == right.end() ? "(no line)" : *other;
        const auto place = static_cast<std::size_t>(
            std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first -
            first.begin());
        const std::size_t start = place < 100 ? 0 : place - 100;
        return "line " + std::to_string(one - left.begin()) + ", " + first.substr(0, 60) + "\n" +
               first.substr(start, 200) + "\nand\n" +
               (start < second.size() ? second.substr(start, 200) : "");
    }

    Lines lines;
    bool isWritten = false;
    bool isDetached = false;
    std::string text;

private:
    static Lines withoutPatches(const Lines& lines) {
        Lines rest;
        for (const std::string& line : lines) {
            if (line.find(R"({"call":"patch")") != 0) {
                rest.push_back(line);
            }
        }
        return rest;
    }
};
