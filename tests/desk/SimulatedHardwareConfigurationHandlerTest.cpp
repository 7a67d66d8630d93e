#include "SimulatedHardwareConfigurationHandler.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

HardwareConfigurationHandlerAnswers twoFrameFormats() {
    HardwareConfigurationHandlerAnswers::FrameFormat seven;
    seven.id = 7;
    seven.channelSpacing = EChannelSpacingType::MHz56;
    seven.dpdVersion = EDpdVersion::Dpd2;
    seven.market = EFrameFormatMarket::Ansi;
    seven.modulationAndCodes = std::vector<ModulationAndCoding>{{31}, {41}};
    seven.performanceProfiles = {1, 2};
    seven.carrierAggregationPerformanceProfiles = {3};

    HardwareConfigurationHandlerAnswers::FrameFormat refusing;
    refusing.id = -2;
    refusing.channelSpacing = ResultOnly{40001};
    refusing.dpdVersion = EDpdVersion{9};
    refusing.market = ResultOnly{40002};
    refusing.modulationAndCodes = ResultOnly{1};

    HardwareConfigurationHandlerAnswers::FrameFormat hidden;
    hidden.id = 7;
    hidden.channelSpacing = EChannelSpacingType::MHz112;
    hidden.dpdVersion = EDpdVersion::Dpd3;

    return {{seven, refusing, hidden}};
}

class SimulatedHardwareConfigurationHandlerTest : public testing::Test {
protected:
    SimulatedHardwareConfigurationHandler sut{twoFrameFormats()};
    EFrameFormatMarket market{44};
    EChannelSpacingType channelSpacing{45};
    std::vector<ModulationAndCoding> codes{{46}};
    std::vector<short> profiles{47};
};

TEST_F(SimulatedHardwareConfigurationHandlerTest, byDefaultKnowsNoFrameFormat) {
    const SimulatedHardwareConfigurationHandler empty;
    std::vector<FrameFormatRecord> records{{1, EChannelSpacingType{2}}};

    empty.getFrameFormatRecords(false, records);

    EXPECT_THAT(records, IsEmpty());
    EXPECT_EQ(empty.getDpdVersion(1, 0), EDpdVersion{0});
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, listsEveryRecordInOrderARefusedSpacingAs0) {
    std::vector<FrameFormatRecord> records;

    sut.getFrameFormatRecords(false, records);

    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].id, 7);
    EXPECT_EQ(records[0].channelSpacing, EChannelSpacingType::MHz56);
    EXPECT_EQ(records[1].id, -2);
    EXPECT_EQ(records[1].channelSpacing, EChannelSpacingType{0});
    EXPECT_EQ(records[2].id, 7);
    EXPECT_EQ(records[2].channelSpacing, EChannelSpacingType::MHz112);
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, answersByTheFirstRecordOfAnIdOnAnyChannel) {
    for (const RadioChannel channel : {1U, 2U, 77U}) {
        EXPECT_EQ(sut.getDpdVersion(channel, 7), EDpdVersion::Dpd2);
        EXPECT_EQ(sut.getTelecomMarket(channel, 7, market), 0U);
        EXPECT_EQ(market, EFrameFormatMarket::Ansi);
        EXPECT_EQ(sut.getChannelSpacing(channel, 7, channelSpacing), 0U);
        EXPECT_EQ(channelSpacing, EChannelSpacingType::MHz56);
        EXPECT_EQ(sut.getModulationAndCodeArray(channel, 7, codes), 0U);
        EXPECT_THAT(codes, ElementsAre(ModulationAndCoding{31}, ModulationAndCoding{41}));
        sut.getPerformanceProfiles(channel, 7, profiles);
        EXPECT_THAT(profiles, ElementsAre(1, 2));
        sut.getCarrierAggregationPerformanceProfiles(channel, 7, profiles);
        EXPECT_THAT(profiles, ElementsAre(3));
    }
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, returnsAResultAloneAndWritesNothing) {
    EXPECT_EQ(sut.getTelecomMarket(1, -2, market), 40002U);
    EXPECT_EQ(market, EFrameFormatMarket{44});
    EXPECT_EQ(sut.getChannelSpacing(1, -2, channelSpacing), 40001U);
    EXPECT_EQ(channelSpacing, EChannelSpacingType{45});
    EXPECT_EQ(sut.getModulationAndCodeArray(1, -2, codes), 1U);
    EXPECT_THAT(codes, ElementsAre(ModulationAndCoding{46}));
    EXPECT_EQ(sut.getDpdVersion(1, -2), EDpdVersion{9});
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, refusesAnUnknownId) {
    EXPECT_EQ(sut.getDpdVersion(1, 8), EDpdVersion{0});
    EXPECT_EQ(sut.getTelecomMarket(1, 8, market), 32768U);
    EXPECT_EQ(market, EFrameFormatMarket{44});
    EXPECT_EQ(sut.getChannelSpacing(1, 8, channelSpacing), 32768U);
    EXPECT_EQ(channelSpacing, EChannelSpacingType{45});
    EXPECT_EQ(sut.getModulationAndCodeArray(1, 8, codes), 32768U);
    EXPECT_THAT(codes, ElementsAre(ModulationAndCoding{46}));
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, anUnknownIdHasNoProfiles) {
    std::vector<short> aggregatedProfiles{48};

    sut.getPerformanceProfiles(1, 8, profiles);
    sut.getCarrierAggregationPerformanceProfiles(1, 8, aggregatedProfiles);

    EXPECT_THAT(profiles, IsEmpty());
    EXPECT_THAT(aggregatedProfiles, IsEmpty());
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, failsAtTheCallAskedForOfThoseThatCanFail) {
    std::vector<FrameFormatRecord> records;
    sut.failAt(3, 32770);

    sut.getFrameFormatRecords(false, records);
    sut.getDpdVersion(1, 7);
    EXPECT_EQ(sut.getTelecomMarket(1, 7, market), 0U);
    sut.getPerformanceProfiles(1, 7, profiles);
    EXPECT_EQ(sut.getModulationAndCodeArray(1, 7, codes), 0U);
    EXPECT_EQ(sut.getChannelSpacing(1, 7, channelSpacing), 32770U);
    EXPECT_EQ(channelSpacing, EChannelSpacingType{45});
    EXPECT_EQ(sut.getChannelSpacing(1, 7, channelSpacing), 0U);
}

TEST_F(SimulatedHardwareConfigurationHandlerTest, recordsArguments) {
    CallLog log;
    std::vector<FrameFormatRecord> records;
    sut.recordTo(&log);

    sut.getFrameFormatRecords(false, records);
    sut.getFrameFormatRecords(true, records);
    sut.getDpdVersion(1, 7);
    sut.getTelecomMarket(2, -2, market);
    sut.getModulationAndCodeArray(4294967295U, 2147483647, codes);
    sut.getChannelSpacing(1, 0, channelSpacing);
    sut.getPerformanceProfiles(1, 7, profiles);
    sut.getCarrierAggregationPerformanceProfiles(1, 7, profiles);

    EXPECT_THAT(
        log.texts(),
        ElementsAre(
            "IHardwareConfigurationHandler::getFrameFormatRecords(false)",
            "IHardwareConfigurationHandler::getFrameFormatRecords(true)",
            "IHardwareConfigurationHandler::getDpdVersion(1, 7)",
            "IHardwareConfigurationHandler::getTelecomMarket(2, -2)",
            "IHardwareConfigurationHandler::getModulationAndCodeArray(4294967295, 2147483647)",
            "IHardwareConfigurationHandler::getChannelSpacing(1, 0)",
            "IHardwareConfigurationHandler::getPerformanceProfiles(1, 7)",
            "IHardwareConfigurationHandler::getCarrierAggregationPerformanceProfiles(1, 7)"));
}

} // namespace
