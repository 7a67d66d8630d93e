#include "Replay.h"

#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "SampleFile.h"

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

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

TEST(ReplayTest, doesNotStartWithoutAMinimumPower) {
    json file = sampleFile();
    file["capabilityHandler"]["minOutputPower"] = {{"result", 40000}};

    EXPECT_THAT(linesOf(file),
                ElementsAre(R"({"call":"initialize","result":32768,"registered":false})"));
}

TEST(ReplayTest, startsWithAMinimumPowerThatSucceedsAndWritesNothing) {
    json file = sampleFileWith(R"([{"call": "findPminPmax"}])");
    file["capabilityHandler"]["minOutputPower"] = {{"result", 32767}};

    EXPECT_THAT(linesOf(file), ElementsAre(started, R"({"call":"findPminPmax","result":0,)"
                                                    R"("pmin":250,"pmax":2800})"));
}

TEST(ReplayTest, servesChannel1ForEveryNumberBut2WithTheTablesOfTheNumberItself) {
    for (const std::uint32_t channel : {0U, 1U, 3U, 4294967295U}) {
        json file =
            sampleFileWith(R"([{"call": "findPminPmax"}, {"call": "getUnrestrictedPmax"}])");
        file["channel"] = channel;
        file["frameFormat"]["modulation"] = "64QAM";

        EXPECT_THAT(linesOf(file),
                    ElementsAre(started,
                                R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800})",
                                R"({"call":"getUnrestrictedPmax","result":0,"pmax":2550})"))
            << channel;
    }
}

TEST(ReplayTest, readsTheVariablesOfChannel2ForChannel2) {
    json file = sampleFileWith(R"([{"call": "getUnrestrictedPmax"},
        {"call": "patch", "file": {"variables": {
            "channel.2.tx.rf.pmax.cs.comp.v2.array": [28, -50],
            "channel.2.tx.rf.pmax.cs.comp.v2.arraysize": 2}}},
        {"call": "getUnrestrictedPmax"}])");
    file["channel"] = 2;
    file["frameFormat"]["modulation"] = "64QAM";

    EXPECT_THAT(linesOf(file),
                ElementsAre(started, R"({"call":"getUnrestrictedPmax","result":32768,"pmax":0})",
                            R"({"call":"patch","result":0})",
                            R"({"call":"getUnrestrictedPmax","result":0,"pmax":2350})"));
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

TEST(ReplayTest, passesCutbacksOn) {
    // 2400 at 64QAM, less the cutback in force, plus compensation 150. The largest cutback wraps
    // around to one hundredth more.
    EXPECT_THAT(answersTo(R"([
                    {"call": "setPowerCutback", "cutback": 300},
                    {"call": "setTemporaryPowerCutback", "use": true, "cutback": 500},
                    {"call": "calculatePowerCapabilities", "modulation": "64QAM"},
                    {"call": "setTemporaryPowerCutback", "use": false, "cutback": 500},
                    {"call": "calculatePowerCapabilities", "modulation": "64QAM"},
                    {"call": "setPowerCutback", "cutback": 4294967295},
                    {"call": "calculatePowerCapabilities", "modulation": "64QAM"}])"),
                ElementsAre(R"({"call":"setPowerCutback","result":0})",
                            R"({"call":"setTemporaryPowerCutback","result":0})",
                            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,)"
                            R"("maxPower":2050})",
                            R"({"call":"setTemporaryPowerCutback","result":0})",
                            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,)"
                            R"("maxPower":2250})",
                            R"({"call":"setPowerCutback","result":0})",
                            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,)"
                            R"("maxPower":2551})"));
}

TEST(ReplayTest, passesABoosterOn) {
    // With a booster the way leads through adaptive modulation with 256QAM as reference: 150 + 2200
    // + 200 at 4QAM; at 64QAM the table's own 2400 is lower than 150 + 2200 + 100.
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch",
                     "file": {"frameFormat": {"maxAvailableModulation": "256QAM"}}},
                    {"call": "setBoosterPresence", "presence": 1, "gain": 0, "maxInputPower": 0,
                     "maxModulation": "CW"},
                    {"call": "calculatePowerCapabilities", "modulation": "64QAM"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"setBoosterPresence","result":0})",
                            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,)"
                            R"("maxPower":2400})"));
}

TEST(ReplayTest, reportsAdaptivePowers) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch",
                     "file": {"frameFormat": {"maxAvailableModulation": "256QAM"}}},
                    {"call": "calculateAdmodPowerCapabilities", "modulation": "16QAM",
                     "rsec": "4L"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"calculateAdmodPowerCapabilities","result":0,)"
                            R"("minPower":-750,"maxPower":2550})"));
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

TEST(ReplayTest, anEmptyTableHasTheLowestPower) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"frameFormat": {"market": "Ansi"}}},
                    {"call": "findPminPmax"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"findPminPmax","result":0,"pmin":-750,)"
                            R"("pmax":-2147483648})"));
}

TEST(ReplayTest, reportsAFrameFormatById) {
    // At 56 MHz the compensation is -200; with 16QAM as reference 2600 - 200, plus 200 at both
    // modulations. The minimum is -1000 + 400.
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"hardwareConfigurationHandler": {"frameFormats": [
                        {"id": 7, "channelSpacing": 56, "dpdVersion": 1, "market": "Etsi",
                         "modulationAndCodes": ["4QAM", "16QAM"], "performanceProfiles": [1]}]}}},
                    {"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 7}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-600,"powerMap":[{"code":31,"maxPower":2400},)"
                            R"({"code":41,"maxPower":2400}]})"));
}

TEST(ReplayTest, keepsEntriesOfThePowerMapThatGetNoPower) {
    // The ANSI tables are empty.
    EXPECT_THAT(answersTo(R"([
                    {"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 7,
                     "powerMap": [["256QAM", 6], ["4QAM", 5], [-1, 8], [31, 7]]}])"),
                ElementsAre(R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-600,"powerMap":[{"code":-1,"maxPower":8},)"
                            R"({"code":31,"maxPower":7},{"code":81,"maxPower":6}]})"));
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

TEST(ReplayTest, leavesTheOutputsAloneForAnUnknownFrameFormat) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 8,
                     "preset": 9, "powerMap": [[31, 7]]}])"),
                ElementsAre(R"({"call":"getMinMaxOutputPowerVsModulationArray","result":32771,)"
                            R"("minOutputPower":9,"powerMap":[{"code":31,"maxPower":7}]})"));
}

TEST(ReplayTest, passesTheReferenceSecOn) {
    // RSEC "2" gives 4QAM 300 more than 256QAM: 150 + 2200 + 300. RSEC 77 is in no table.
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"frameFormat": {"modulationAndCodes": [31, 81]}}},
                    {"call": "getMinMaxOutputPowerVsModulationArray", "referenceSec": "2"},
                    {"call": "getMinMaxOutputPowerVsModulationArray", "referenceSec": 77}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-750,"powerMap":[{"code":31,"maxPower":2650},)"
                            R"({"code":81,"maxPower":2200}]})",
                            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,)"
                            R"("minOutputPower":-750,"powerMap":[]})"));
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

TEST(ReplayTest, tablesThatWereHandedOutStayUntilTheServiceStartsAgain) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"capabilityHandler": {
                        "minOutputPower": -900, "pmaxDpd1Etsi": [["4QAM", 2000]]}}},
                    {"call": "findPminPmax"},
                    {"call": "initialize"},
                    {"call": "findPminPmax"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800})",
                            started,
                            R"({"call":"findPminPmax","result":0,"pmin":-650,"pmax":2000})"));
}

TEST(ReplayTest, tablesThatAreRefusedOnASecondStartStay) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"capabilityHandler": {
                        "minOutputPower": {"result": 0}, "pmaxDpd1Etsi": {"result": 32768}}}},
                    {"call": "initialize"},
                    {"call": "findPminPmax"}])"),
                ElementsAre(R"({"call":"patch","result":0})", started,
                            R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800})"));
}

TEST(ReplayTest, aSecondStartThatFailsLeavesTheServiceRegisteredAndGoesOn) {
    EXPECT_THAT(answersTo(R"([
                    {"call": "patch", "file": {"capabilityHandler": {
                        "minOutputPower": {"result": 32768}}}},
                    {"call": "initialize"},
                    {"call": "findPminPmax"}])"),
                ElementsAre(R"({"call":"patch","result":0})",
                            R"({"call":"initialize","result":32768,"registered":true})",
                            R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2800})"));
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
