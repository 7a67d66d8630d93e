#include "Replay.h"

#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "SampleFile.h"

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

// What the service answers stands as facts elsewhere, which are played through Replay, too.

namespace {

using nlohmann::json;
using testing::ElementsAre;

const char* const started = R"({"call":"initialize","result":0,"registered":true})";

/// The lines of a file, the service's start among them.
std::vector<std::string> linesOf(const json& file) {
    std::vector<std::string> lines;
    Replay().play(readFile(file), [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

/// The lines that requests to the sample node give, after its start.
std::vector<std::string> answersTo(const std::string& requests) {
    std::vector<std::string> lines = linesOf(sampleFileWith(requests));
    EXPECT_EQ(lines.at(0), started);
    lines.erase(lines.begin());
    return lines;
}

TEST(ReplayTest, startsTheServiceFirst) {
    EXPECT_THAT(linesOf(sampleFile()), ElementsAre(started));
}

TEST(ReplayTest, playsTheRequestsInOrder) {
    const std::vector<std::string> lines = linesOf(sampleFileWith(R"([
        {"call": "setPowerCutback", "cutback": 300},
        {"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 0},
        {"call": "calculatePowerCapabilities", "modulation": "64QAM"}])"));

    // At 28 MHz with RSEC 4L: -150 from compensation 150 and cutback 300, 2200 from 256QAM as
    // reference, so 2050; plus the offset 200 at 4QAM and 16QAM, 100 at 64QAM, 0 at 256QAM. From
    // 64QAM up the table's own power less the cutback is lower: 2400 - 300 and 2200 - 300. For the
    // fixed modulation 2400 - 300 + 150.
    EXPECT_THAT(lines,
                ElementsAre(started, R"({"call":"setPowerCutback","result":0})",
                            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-750,"powerMap":[{"code":30,"maxPower":2250},)"
                            R"({"code":31,"maxPower":2250},{"code":41,"maxPower":2250},)"
                            R"({"code":61,"maxPower":2100},{"code":81,"maxPower":1900}]})",
                            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,)"
                            R"("maxPower":2250})"));
}

TEST(ReplayTest, writesTheSameLinesToAStream) {
    std::ostringstream stream;

    const bool isStarted = Replay().play(
        readFile(sampleFileWith(R"([{"call": "setTemperature", "temperature": 25}])")), stream);

    EXPECT_TRUE(isStarted);
    EXPECT_EQ(stream.str(),
              std::string(started) + "\n" + R"({"call":"setTemperature","result":0})" + "\n");
}

TEST(ReplayTest, emitsALineBeforeTheNextCallIsMade) {
    std::vector<std::string> lines;
    const RadioFile file = readFile(sampleFileWith(R"([{"call": "findPminPmax"}])"));
    const auto stopAfterTheStart = [&lines](const std::string& line) {
        lines.push_back(line);
        throw std::runtime_error("enough");
    };

    EXPECT_THROW(Replay().play(file, stopAfterTheStart), std::runtime_error);
    EXPECT_THAT(lines, ElementsAre(started));
}

TEST(ReplayTest, stopsWhenTheServiceDoesNotStart) {
    for (const char* const neighbour : {"capabilityHandler", "acmHandler", "frameFormat",
                                        "systemPowerController", "hardwareConfigurationHandler"}) {
        json file = sampleFileWith(R"([{"call": "findPminPmax"}])");
        file.erase(neighbour);
        std::ostringstream stream;

        const bool isStarted = Replay().play(readFile(file), stream);

        EXPECT_FALSE(isStarted) << neighbour;
        EXPECT_EQ(stream.str(), R"({"call":"initialize","result":32768,"registered":false})"
                                "\n")
            << neighbour;
    }
}

TEST(ReplayTest, reportsSettersByTheirResult) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "setPowerCutback", "cutback": 1},
                    {"call": "setTemporaryPowerCutback", "use": true, "cutback": 2},
                    {"call": "setTemperature", "temperature": -3},
                    {"call": "setBoosterPresence", "presence": 1, "gain": 2, "maxInputPower": 3,
                     "maxModulation": "4QAM"}])"),
                ElementsAre(R"({"call":"setPowerCutback","result":0})",
                            R"({"call":"setTemporaryPowerCutback","result":0})",
                            R"({"call":"setTemperature","result":0})",
                            R"({"call":"setBoosterPresence","result":0})"));
}

TEST(ReplayTest, reportsOutputsThatAFailureLeftAlone) {
    // 1024QAM, the highest available modulation, is in no table.
    EXPECT_THAT(answersTo(R"([
                    {"call": "calculateAdmodPowerCapabilities", "modulation": "16QAM",
                     "rsec": "4L"},
                    {"call": "calculateAdmodPowerCapabilities", "modulation": "16QAM",
                     "rsec": "4L", "preset": -2147483648}])"),
                ElementsAre(R"({"call":"calculateAdmodPowerCapabilities","result":32776,)"
                            R"("minPower":0,"maxPower":0})",
                            R"({"call":"calculateAdmodPowerCapabilities","result":32776,)"
                            R"("minPower":-2147483648,"maxPower":-2147483648})"));
}

TEST(ReplayTest, presetsEveryPowerOutput) {
    EXPECT_THAT(
        answersTo(R"([
            {"call": "patch", "file": {"frameFormat": {"dpdVersion": 4}}},
            {"call": "findPminPmax", "preset": 5},
            {"call": "patch", "file": {"variables": null}, "preset": 5},
            {"call": "getUnrestrictedPmax", "preset": 6},
            {"call": "calculatePowerCapabilities", "modulation": "4QAM", "preset": 7},
            {"call": "getMinMaxOutputPowerVsModulationArray", "preset": 2147483647}])"),
        ElementsAre(R"({"call":"patch","result":0})",
                    R"({"call":"findPminPmax","result":32768,"pmin":5,"pmax":5})",
                    R"({"call":"patch","result":0})",
                    R"({"call":"getUnrestrictedPmax","result":32768,"pmax":6})",
                    R"({"call":"calculatePowerCapabilities","result":32768,"minPower":-750,)"
                    R"("maxPower":7})",
                    R"({"call":"getMinMaxOutputPowerVsModulationArray","result":32768,)"
                    R"("minOutputPower":2147483647,"powerMap":[]})"));
}

TEST(ReplayTest, aPresetHoldsForItsOwnRequestOnly) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"frameFormat": {"dpdVersion": 4}}},
                    {"call": "findPminPmax", "preset": 5},
                    {"call": "findPminPmax"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"findPminPmax","result":32768,"pmin":5,"pmax":5})",
                            R"({"call":"findPminPmax","result":32768,"pmin":0,"pmax":0})"));
}

TEST(ReplayTest, overwritesEntriesOfThePowerMapThatGetPower) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "getMinMaxOutputPowerVsModulationArray",
                     "minModulationAndCode": "256QAM", "maxModulationAndCode": "256QAM",
                     "powerMap": [["256QAM", 6], ["512QAM", 5]]}])"),
                // A fixed modulation: the lower of 2200 at 256QAM and the code's own, plus 150.
                ElementsAre(R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-750,"powerMap":[{"code":30,"maxPower":2350},)"
                            R"({"code":31,"maxPower":2350},{"code":41,"maxPower":2350},)"
                            R"({"code":61,"maxPower":2350},{"code":81,"maxPower":2350},)"
                            R"({"code":91,"maxPower":5}]})"));
}

TEST(ReplayTest, aPatchOfTheBoardSelectsTheOtherProfiles) {
    // Profile 5 limits to 16QAM, which is then the reference: 150 + 2600 - 200, plus 200 at both
    // modulations; at 16QAM the table's own 2600 is lower.
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"board": {"carrierAggregation": true}}},
                    {"call": "getMinMaxOutputPowerVsModulationArray"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-750,"powerMap":[{"code":30,"maxPower":2750},)"
                            R"({"code":31,"maxPower":2750},{"code":41,"maxPower":2600}]})"));
}

TEST(ReplayTest, everyFileMeetsAFreshService) {
    const json first = sampleFileWith(R"([{"call": "setPowerCutback", "cutback": 300}])");
    const json second =
        sampleFileWith(R"([{"call": "calculatePowerCapabilities", "modulation": "64QAM"}])");

    linesOf(first);

    EXPECT_THAT(linesOf(second),
                ElementsAre(started, R"({"call":"calculatePowerCapabilities","result":0,)"
                                     R"("minPower":-750,"maxPower":2550})"));
}

TEST(ReplayTest, leavesNothingBehind) {
    const RadioFile file = readFile(sampleFileWith(R"([{"call": "findPminPmax"}])"));
    const void* address = nullptr;

    Replay(6).play(file, [](const std::string&) {});

    EXPECT_EQ(InterfaceBroker::getInstance().getInterface<IInterface>("IOutputPowerCalculator_1"),
              nullptr);
    EXPECT_EQ(InterfaceBroker::getInstance().getInterface<IInterface>("IFrameFormat_1"), nullptr);
    EXPECT_EQ(DeskVariableStore::getInstance().find("channel.1.tx.rf.pmax.cs.comp.v2.arraysize",
                                                    &address, nullptr),
              32768U);
    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
}

} // namespace
