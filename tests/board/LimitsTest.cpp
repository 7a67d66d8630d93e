#include "RadioFileReader.h"
#include "Replay.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAreArray;

std::string textOf(const std::string& name) {
    std::ifstream stream(std::filesystem::path(QOR_LIMITS_FOLDER) / name);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> linesOf(const std::string& name) {
    std::istringstream stream(textOf(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Plays a radio file and compares its lines with those that were worked out by hand beside it.
class Limits : public testing::TestWithParam<const char*> {};

/// A radio file with one number beyond what 32 bits (16 for a profile) hold, and where that number
/// is.
struct Refused {
    const char* file;
    const char* place;
};

class RefusedLimits : public testing::TestWithParam<Refused> {};

} // namespace

TEST_P(Limits, answersAsWorkedOutByHand) {
    const std::string name = GetParam();
    const std::vector<std::string> expected = linesOf(name + ".jsonl");
    ASSERT_FALSE(expected.empty());
    std::vector<std::string> lines;

    const bool started =
        Replay().play(RadioFileReader::read(textOf(name + ".json")),
                      [&lines](const std::string& line) { lines.push_back(line); });

    EXPECT_TRUE(started);
    EXPECT_THAT(lines, ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(Board, Limits,
                         testing::Values("fixed-modulation", "adaptive", "power-map"));

TEST_P(RefusedLimits, nameThePlaceOfANumberThatDoesNotFit) {
    const std::string text = textOf(GetParam().file);
    ASSERT_FALSE(text.empty());

    try {
        RadioFileReader::read(text);
        FAIL() << "accepted";
    } catch (const RadioFileError& error) {
        EXPECT_EQ(error.place(), GetParam().place);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Board, RefusedLimits,
    testing::Values(Refused{"refused-channel.json", "/channel"},
                    Refused{"refused-cutback.json", "/requests/0/cutback"},
                    Refused{"refused-id.json", "/requests/0/frameFormatId"},
                    Refused{"refused-offset.json",
                            "/systemPowerController/minOutputPowerOffsets/0/1"},
                    Refused{"refused-power.json", "/capabilityHandler/minOutputPower"},
                    Refused{"refused-profile.json", "/capabilityHandler/performanceProfileIndex"},
                    Refused{"refused-result.json", "/capabilityHandler/pmaxDpd1Etsi/result"},
                    Refused{"refused-variable.json", "/variables/some.variable"}));
