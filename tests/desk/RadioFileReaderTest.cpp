#include "RadioFileReader.h"

#include "SampleFile.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

RadioFile read(const std::string& text) {
    return RadioFileReader::read(text);
}

CapabilityHandlerAnswers capabilityOf(const std::string& members) {
    return *read(R"({"channel": 1, "capabilityHandler": {)" + members + "}}")
                .node.capabilityHandler;
}

template <class Call>
Call onlyCallOf(const std::string& request) {
    const RadioFile file = readFile(sampleFileWith("[" + request + "]"));
    return std::get<Call>(file.requests.at(0).call);
}

template <class Value>
Value valueOf(const std::optional<Answer<Value>>& answer) {
    return std::get<Value>(answer.value());
}

template <class Value>
unsigned resultOf(const Answer<Value>& answer) {
    return std::get<ResultOnly>(answer).result;
}

TEST(RadioFileReaderTest, aChannelIsEnough) {
    const RadioFile file = read(R"({"channel": 4294967295})");

    EXPECT_EQ(file.channel, 4294967295U);
    EXPECT_EQ(file.node.capabilityHandler, nullptr);
    EXPECT_EQ(file.node.acmHandler, nullptr);
    EXPECT_EQ(file.node.frameFormat, nullptr);
    EXPECT_EQ(file.node.systemPowerController, nullptr);
    EXPECT_EQ(file.node.hardwareConfigurationHandler, nullptr);
    EXPECT_EQ(file.node.variables, nullptr);
    EXPECT_FALSE(file.node.carrierAggregation);
    EXPECT_TRUE(file.requests.empty());
}

TEST(RadioFileReaderTest, readsTheBoard) {
    EXPECT_TRUE(
        read(R"({"channel": 0, "board": {"carrierAggregation": true}})").node.carrierAggregation);
    EXPECT_FALSE(
        read(R"({"channel": 0, "board": {"carrierAggregation": false}})").node.carrierAggregation);
    EXPECT_FALSE(read(R"({"channel": 0, "board": {}})").node.carrierAggregation);
}

TEST(RadioFileReaderTest, leavesAbsentCapabilitiesToTheDefaultBodies) {
    const CapabilityHandlerAnswers answers = capabilityOf("");

    EXPECT_FALSE(answers.productNumber.has_value());
    EXPECT_FALSE(answers.minOutputPower.has_value());
    EXPECT_FALSE(answers.pmaxDpd1Etsi.has_value());
    EXPECT_FALSE(answers.pmaxDpd2Etsi.has_value());
    EXPECT_FALSE(answers.pmaxDpd1Ansi.has_value());
    EXPECT_FALSE(answers.pmaxDpd2Ansi.has_value());
    EXPECT_FALSE(answers.maxAcmLimitedByHw.has_value());
    EXPECT_FALSE(answers.performanceProfileIndex.has_value());
    EXPECT_FALSE(answers.maxModulationLimitedByHw.has_value());
    EXPECT_FALSE(answers.maxModulationWithoutLimitation.has_value());
}

TEST(RadioFileReaderTest, readsSimpleCapabilities) {
    const CapabilityHandlerAnswers answers =
        capabilityOf(R"("productNumber": "QZT 846 001", "minOutputPower": -2147483648,
                        "maxAcmLimitedByHw": true, "performanceProfileIndex": -32768)");

    EXPECT_EQ(answers.productNumber, "QZT 846 001");
    EXPECT_EQ(valueOf(answers.minOutputPower), -2147483647 - 1);
    EXPECT_EQ(answers.maxAcmLimitedByHw, true);
    EXPECT_EQ(answers.performanceProfileIndex, -32768);
}

TEST(RadioFileReaderTest, readsResultsInPlaceOfCapabilities) {
    const CapabilityHandlerAnswers answers =
        capabilityOf(R"("minOutputPower": {"result": 4294967295}, "pmaxDpd1Ansi": {"result": 0})");

    EXPECT_EQ(resultOf(*answers.minOutputPower), 4294967295U);
    EXPECT_EQ(resultOf(*answers.pmaxDpd1Ansi), 0U);
}

TEST(RadioFileReaderTest, readsEachPmaxTable) {
    const CapabilityHandlerAnswers answers = capabilityOf(
        R"("pmaxDpd1Etsi": [["4QAM", 2800], [16, -100]], "pmaxDpd2Etsi": [],
           "pmaxDpd1Ansi": {"integers": [4, 2500, 16]}, "pmaxDpd2Ansi": {"integers": []})");

    EXPECT_THAT(valueOf(answers.pmaxDpd1Etsi), ElementsAre(4, 2800, 16, -100));
    EXPECT_THAT(valueOf(answers.pmaxDpd2Etsi), IsEmpty());
    EXPECT_THAT(valueOf(answers.pmaxDpd1Ansi), ElementsAre(4, 2500, 16));
    EXPECT_THAT(valueOf(answers.pmaxDpd2Ansi), IsEmpty());
}

TEST(RadioFileReaderTest, readsOneLimitForAll) {
    const CapabilityHandlerAnswers answers = capabilityOf(
        R"("maxModulationLimitedByHw": "512QAM", "maxModulationWithoutLimitation": 7)");

    EXPECT_EQ(std::get<Modulation>(*answers.maxModulationLimitedByHw), Modulation::QAM512);
    EXPECT_EQ(std::get<Modulation>(*answers.maxModulationWithoutLimitation), Modulation{7});
}

TEST(RadioFileReaderTest, readsLimitsByProfileAndMarket) {
    const CapabilityHandlerAnswers answers = capabilityOf(
        R"("maxModulationLimitedByHw": {"1": "512QAM", "-32768": 5, "32767": "CW", "0": "BPSK"},
           "maxModulationWithoutLimitation": {"Etsi": "4096QAM", "Unknown": 9})");

    EXPECT_THAT((std::get<std::map<short, Modulation>>(*answers.maxModulationLimitedByHw)),
                ElementsAre(Pair(-32768, Modulation{5}), Pair(0, Modulation::BPSK),
                            Pair(1, Modulation::QAM512), Pair(32767, Modulation::CW)));
    EXPECT_THAT((std::get<std::map<EFrameFormatMarket, Modulation>>(
                    *answers.maxModulationWithoutLimitation)),
                ElementsAre(Pair(EFrameFormatMarket::Etsi, Modulation::QAM4096),
                            Pair(EFrameFormatMarket::Unknown, Modulation{9})));
}

TEST(RadioFileReaderTest, readsTheAcmSelection) {
    const auto selectionOf = [](const std::string& text) {
        return read(R"({"channel": 1, "acmHandler": )" + text + "}").node.acmHandler->selection;
    };

    const AcmHandlerAnswers::Range range =
        valueOf(selectionOf(R"({"min": "4QAM_STRONG", "max": -5})"));

    EXPECT_EQ(range.min.code, 30);
    EXPECT_EQ(range.max.code, -5);
    EXPECT_EQ(resultOf(*selectionOf(R"({"result": 32768})")), 32768U);
    EXPECT_FALSE(selectionOf("{}").has_value());
}

TEST(RadioFileReaderTest, readsTheFrameFormat) {
    const RadioFile file = read(R"({"channel": 1, "frameFormat": {
        "modulation": "128QAM", "maxAvailableModulation": 1024,
        "modulationAndCodes": ["HALF_BPSK", 163, 2147483647], "channelSpacing": -28,
        "dpdVersion": -2147483648, "market": 9, "performanceProfiles": [-32768, 32767],
        "carrierAggregationPerformanceProfiles": [4]}})");

    const FrameFormatAnswers& answers = *file.node.frameFormat;
    EXPECT_EQ(answers.modulation, Modulation::QAM128);
    EXPECT_EQ(answers.maxAvailableModulation, Modulation::QAM1024);
    EXPECT_THAT(answers.modulationAndCodes,
                ElementsAre(ModulationAndCoding{11}, ModulationAndCoding{163},
                            ModulationAndCoding{2147483647}));
    EXPECT_EQ(answers.channelSpacing, EChannelSpacingType{-28});
    EXPECT_EQ(answers.dpdVersion, EDpdVersion{-2147483647 - 1});
    EXPECT_EQ(answers.market, EFrameFormatMarket{9});
    EXPECT_THAT(answers.performanceProfiles, ElementsAre(-32768, 32767));
    EXPECT_THAT(answers.carrierAggregationPerformanceProfiles, ElementsAre(4));
}

TEST(RadioFileReaderTest, aFrameFormatNeedsNoProfiles) {
    const RadioFile file = read(R"({"channel": 1, "frameFormat": {
        "modulation": "UNDEFINED", "maxAvailableModulation": "CW", "modulationAndCodes": [],
        "channelSpacing": 28, "dpdVersion": 1, "market": "Global"}})");

    EXPECT_EQ(file.node.frameFormat->modulation, Modulation{100000});
    EXPECT_EQ(file.node.frameFormat->market, EFrameFormatMarket::Global);
    EXPECT_THAT(file.node.frameFormat->performanceProfiles, IsEmpty());
    EXPECT_THAT(file.node.frameFormat->carrierAggregationPerformanceProfiles, IsEmpty());
}

TEST(RadioFileReaderTest, readsTheSystemPowerController) {
    const RadioFile file = read(R"({"channel": 1, "systemPowerController": {
        "referenceSec": "2", "minOutputPowerOffsets": [[28, 250], [28, -1]]}})");

    const SystemPowerControllerAnswers& answers = *file.node.systemPowerController;
    EXPECT_EQ(answers.referenceSec, EReferenceSEC{0});
    ASSERT_EQ(answers.minOutputPowerOffsets.size(), 2U);
    EXPECT_EQ(answers.minOutputPowerOffsets[0].channelSpacing, EChannelSpacingType::MHz28);
    EXPECT_EQ(answers.minOutputPowerOffsets[0].offset, 250);
    EXPECT_EQ(answers.minOutputPowerOffsets[1].offset, -1);
}

TEST(RadioFileReaderTest, tellsAnRsecsTextFromItsNumber) {
    const auto rsecOf = [](const std::string& rsec) {
        return read(R"({"channel": 1, "systemPowerController": {"referenceSec": )" + rsec +
                    R"(, "minOutputPowerOffsets": []}})")
            .node.systemPowerController->referenceSec;
    };

    EXPECT_EQ(rsecOf("\"2\""), EReferenceSEC{0});
    EXPECT_EQ(rsecOf("2"), EReferenceSEC{2});
    EXPECT_EQ(rsecOf("\"UNDEFINED\""), EReferenceSEC{1000});
}

TEST(RadioFileReaderTest, readsTheHardwareConfiguration) {
    const RadioFile file = read(R"({"channel": 1, "hardwareConfigurationHandler": {
        "frameFormats": [
            {"id": 7, "channelSpacing": 56, "dpdVersion": 1, "market": "Ansi",
             "modulationAndCodes": ["4QAM", "16QAM"], "performanceProfiles": [1],
             "carrierAggregationPerformanceProfiles": [2]},
            {"id": -1, "channelSpacing": {"result": 1}, "dpdVersion": 0, "market": {"result": 2},
             "modulationAndCodes": {"result": 3}}]}})");

    const auto& frameFormats = file.node.hardwareConfigurationHandler->frameFormats;
    ASSERT_EQ(frameFormats.size(), 2U);
    EXPECT_EQ(frameFormats[0].id, 7);
    EXPECT_EQ(std::get<EChannelSpacingType>(frameFormats[0].channelSpacing),
              EChannelSpacingType::MHz56);
    EXPECT_EQ(frameFormats[0].dpdVersion, EDpdVersion::Dpd1);
    EXPECT_EQ(std::get<EFrameFormatMarket>(frameFormats[0].market), EFrameFormatMarket::Ansi);
    EXPECT_THAT(std::get<std::vector<ModulationAndCoding>>(frameFormats[0].modulationAndCodes),
                ElementsAre(ModulationAndCoding{31}, ModulationAndCoding{41}));
    EXPECT_THAT(frameFormats[0].performanceProfiles, ElementsAre(1));
    EXPECT_THAT(frameFormats[0].carrierAggregationPerformanceProfiles, ElementsAre(2));
    EXPECT_EQ(frameFormats[1].id, -1);
    EXPECT_EQ(resultOf(frameFormats[1].channelSpacing), 1U);
    EXPECT_EQ(frameFormats[1].dpdVersion, EDpdVersion{0});
    EXPECT_EQ(resultOf(frameFormats[1].market), 2U);
    EXPECT_EQ(resultOf(frameFormats[1].modulationAndCodes), 3U);
    EXPECT_THAT(frameFormats[1].performanceProfiles, IsEmpty());
    EXPECT_THAT(frameFormats[1].carrierAggregationPerformanceProfiles, IsEmpty());
}

TEST(RadioFileReaderTest, aHardwareConfigurationNeedsNoFrameFormats) {
    const RadioFile file = read(R"({"channel": 1, "hardwareConfigurationHandler": {}})");

    ASSERT_NE(file.node.hardwareConfigurationHandler, nullptr);
    EXPECT_TRUE(file.node.hardwareConfigurationHandler->frameFormats.empty());
}

TEST(RadioFileReaderTest, readsVariables) {
    const RadioFile file = read(R"({"channel": 1, "variables": {
        "array": [28, -2147483648, 2147483647], "empty": [], "lowest": -2147483648,
        "signed": 2147483647, "unsigned": 2147483648, "highest": 4294967295, "": 1}})");

    EXPECT_THAT(*file.node.variables,
                ElementsAre(Pair("", ElementsAre(1)),
                            Pair("array", ElementsAre(28, -2147483647 - 1, 2147483647)),
                            Pair("empty", IsEmpty()), Pair("highest", ElementsAre(-1)),
                            Pair("lowest", ElementsAre(-2147483647 - 1)),
                            Pair("signed", ElementsAre(2147483647)),
                            Pair("unsigned", ElementsAre(-2147483647 - 1))));
}

TEST(RadioFileReaderTest, readsCallsWithoutArguments) {
    const RadioFile file = readFile(sampleFileWith(
        R"([{"call": "initialize"}, {"call": "findPminPmax"}, {"call": "getUnrestrictedPmax"}])"));

    ASSERT_EQ(file.requests.size(), 3U);
    EXPECT_TRUE(std::holds_alternative<Calls::Initialize>(file.requests[0].call));
    EXPECT_TRUE(std::holds_alternative<Calls::FindPminPmax>(file.requests[1].call));
    EXPECT_TRUE(std::holds_alternative<Calls::GetUnrestrictedPmax>(file.requests[2].call));
}

TEST(RadioFileReaderTest, readsSetters) {
    const auto cutback =
        onlyCallOf<Calls::SetPowerCutback>(R"({"call": "setPowerCutback", "cutback": 4294967295})");
    const auto temporary = onlyCallOf<Calls::SetTemporaryPowerCutback>(
        R"({"call": "setTemporaryPowerCutback", "use": true, "cutback": 0})");
    const auto temperature = onlyCallOf<Calls::SetTemperature>(
        R"({"call": "setTemperature", "temperature": -2147483648})");
    const auto booster = onlyCallOf<Calls::SetBoosterPresence>(
        R"({"call": "setBoosterPresence", "presence": -1, "gain": 2, "maxInputPower": -3,
            "maxModulation": "64QAM"})");

    EXPECT_EQ(cutback.cutback, 4294967295U);
    EXPECT_TRUE(temporary.use);
    EXPECT_EQ(temporary.cutback, 0U);
    EXPECT_EQ(temperature.temperature, -2147483647 - 1);
    EXPECT_EQ(booster.presence, -1);
    EXPECT_EQ(booster.gain, 2);
    EXPECT_EQ(booster.maxInputPower, -3);
    EXPECT_EQ(booster.maxModulation, Modulation::QAM64);
}

TEST(RadioFileReaderTest, readsPowerQueries) {
    const auto fixed = onlyCallOf<Calls::CalculatePowerCapabilities>(
        R"({"call": "calculatePowerCapabilities", "modulation": 8})");
    const auto adaptive = onlyCallOf<Calls::CalculateAdmodPowerCapabilities>(
        R"({"call": "calculateAdmodPowerCapabilities", "modulation": "4QAM", "rsec": "6LB"})");

    EXPECT_EQ(fixed.modulation, Modulation{8});
    EXPECT_EQ(adaptive.modulation, Modulation::QAM4);
    EXPECT_EQ(adaptive.rsec, EReferenceSEC{7});
}

TEST(RadioFileReaderTest, anArrayQueryNeedsNoArguments) {
    const auto call = onlyCallOf<Calls::GetMinMaxOutputPowerVsModulationArray>(
        R"({"call": "getMinMaxOutputPowerVsModulationArray"})");

    EXPECT_EQ(call.frameFormatId, 0);
    EXPECT_EQ(call.minModulationAndCode.code, 163);
    EXPECT_EQ(call.maxModulationAndCode.code, 163);
    EXPECT_EQ(call.referenceSec, EReferenceSEC{1000});
    EXPECT_THAT(call.powerMap, IsEmpty());
}

TEST(RadioFileReaderTest, readsTheArgumentsOfAnArrayQuery) {
    const auto call = onlyCallOf<Calls::GetMinMaxOutputPowerVsModulationArray>(
        R"({"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": -7,
            "minModulationAndCode": "BPSK", "maxModulationAndCode": 81, "referenceSec": 3,
            "powerMap": [["4QAM", 5], [81, -6]]})");

    EXPECT_EQ(call.frameFormatId, -7);
    EXPECT_EQ(call.minModulationAndCode.code, 21);
    EXPECT_EQ(call.maxModulationAndCode.code, 81);
    EXPECT_EQ(call.referenceSec, EReferenceSEC::Class5B);
    EXPECT_THAT(call.powerMap,
                ElementsAre(Pair(ModulationAndCoding{31}, 5), Pair(ModulationAndCoding{81}, -6)));
}

TEST(RadioFileReaderTest, theLastOfTwoPowersForOneCodeWins) {
    const auto call = onlyCallOf<Calls::GetMinMaxOutputPowerVsModulationArray>(
        R"({"call": "getMinMaxOutputPowerVsModulationArray",
            "powerMap": [["4QAM", 5], [31, 6]]})");

    EXPECT_THAT(call.powerMap, ElementsAre(Pair(ModulationAndCoding{31}, 6)));
}

TEST(RadioFileReaderTest, everyCallTakesAPreset) {
    const std::string calls[] = {
        R"("call": "initialize")",
        R"("call": "setPowerCutback", "cutback": 1)",
        R"("call": "setTemporaryPowerCutback", "use": false, "cutback": 1)",
        R"("call": "setTemperature", "temperature": 1)",
        R"("call": "setBoosterPresence", "presence": 1, "gain": 1, "maxInputPower": 1,
           "maxModulation": 1)",
        R"("call": "calculatePowerCapabilities", "modulation": 1)",
        R"("call": "calculateAdmodPowerCapabilities", "modulation": 1, "rsec": 1)",
        R"("call": "findPminPmax")",
        R"("call": "getUnrestrictedPmax")",
        R"("call": "getMinMaxOutputPowerVsModulationArray")",
        R"("call": "patch", "file": {})",
    };
    EXPECT_EQ(std::size(calls), std::variant_size_v<Calls::Any>);

    for (const std::string& call : calls) {
        const RadioFile file =
            readFile(sampleFileWith("[{" + call + R"(, "preset": -2147483648}, {)" + call + "}]"));

        EXPECT_EQ(file.requests.at(0).preset, -2147483647 - 1) << call;
        EXPECT_EQ(file.requests.at(1).preset, 0) << call;
        EXPECT_EQ(file.requests.at(0).call.index(), file.requests.at(1).call.index()) << call;
    }
}

} // namespace
