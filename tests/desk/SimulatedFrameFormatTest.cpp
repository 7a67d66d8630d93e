#include "SimulatedFrameFormat.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SimulatedFrameFormatTest, byDefaultIsAnEmptyFormatOf28MhzForEtsiAndDpd1) {
    const SimulatedFrameFormat sut;
    std::vector<ModulationAndCoding> codes{{31}};
    std::vector<short> profiles{1};
    std::vector<short> aggregatedProfiles{2};

    sut.getModulationAndCodeArray(codes);
    sut.getPerformanceProfiles(profiles);
    sut.getCarrierAggregationPerformanceProfiles(aggregatedProfiles);

    EXPECT_EQ(sut.getModulation(), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxAvailableModulation(), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getChannelSpacing(), EChannelSpacingType::MHz28);
    EXPECT_EQ(sut.getDpdVersion(), EDpdVersion::Dpd1);
    EXPECT_EQ(sut.getTelecomMarket(), EFrameFormatMarket::Etsi);
    EXPECT_THAT(codes, IsEmpty());
    EXPECT_THAT(profiles, IsEmpty());
    EXPECT_THAT(aggregatedProfiles, IsEmpty());
}

TEST(SimulatedFrameFormatTest, answersWhatItIsProgrammedWith) {
    FrameFormatAnswers answers;
    answers.modulation = Modulation::QAM128;
    answers.maxAvailableModulation = Modulation::QAM1024;
    answers.modulationAndCodes = {{30}, {81}};
    answers.channelSpacing = EChannelSpacingType{3000};
    answers.dpdVersion = EDpdVersion{-1};
    answers.market = EFrameFormatMarket::Ansi;
    answers.performanceProfiles = {1, 2};
    answers.carrierAggregationPerformanceProfiles = {3};
    SimulatedFrameFormat sut;
    std::vector<ModulationAndCoding> codes{{10}, {11}, {12}};
    std::vector<short> profiles;
    std::vector<short> aggregatedProfiles;

    sut.setAnswers(answers);
    sut.getModulationAndCodeArray(codes);
    sut.getPerformanceProfiles(profiles);
    sut.getCarrierAggregationPerformanceProfiles(aggregatedProfiles);

    EXPECT_EQ(sut.getModulation(), Modulation::QAM128);
    EXPECT_EQ(sut.getMaxAvailableModulation(), Modulation::QAM1024);
    EXPECT_EQ(sut.getChannelSpacing(), EChannelSpacingType{3000});
    EXPECT_EQ(sut.getDpdVersion(), EDpdVersion{-1});
    EXPECT_EQ(sut.getTelecomMarket(), EFrameFormatMarket::Ansi);
    EXPECT_THAT(codes, ElementsAre(ModulationAndCoding{30}, ModulationAndCoding{81}));
    EXPECT_THAT(profiles, ElementsAre(1, 2));
    EXPECT_THAT(aggregatedProfiles, ElementsAre(3));
}

TEST(SimulatedFrameFormatTest, recordsEveryOperation) {
    SimulatedFrameFormat sut;
    CallLog log;
    std::vector<ModulationAndCoding> codes;
    std::vector<short> profiles;
    sut.recordTo(&log);

    sut.getModulation();
    sut.getMaxAvailableModulation();
    sut.getModulationAndCodeArray(codes);
    sut.getChannelSpacing();
    sut.getDpdVersion();
    sut.getTelecomMarket();
    sut.getPerformanceProfiles(profiles);
    sut.getCarrierAggregationPerformanceProfiles(profiles);

    EXPECT_THAT(
        log.texts(),
        ElementsAre("IFrameFormat::getModulation()", "IFrameFormat::getMaxAvailableModulation()",
                    "IFrameFormat::getModulationAndCodeArray()",
                    "IFrameFormat::getChannelSpacing()", "IFrameFormat::getDpdVersion()",
                    "IFrameFormat::getTelecomMarket()", "IFrameFormat::getPerformanceProfiles()",
                    "IFrameFormat::getCarrierAggregationPerformanceProfiles()"));
}

} // namespace
