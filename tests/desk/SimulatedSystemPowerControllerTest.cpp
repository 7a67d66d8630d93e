#include "SimulatedSystemPowerController.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class SimulatedSystemPowerControllerTest : public testing::Test {
protected:
    void program() {
        sut.setAnswers({EReferenceSEC::Class4L,
                        {{EChannelSpacingType::MHz28, 250},
                         {EChannelSpacingType::MHz56, -400},
                         {EChannelSpacingType::MHz28, 999}}});
    }

    SimulatedSystemPowerController sut;
    long offset = 7;
};

TEST_F(SimulatedSystemPowerControllerTest, byDefaultKnowsNothing) {
    EXPECT_EQ(sut.getReferenceSec(), EReferenceSEC::UNDEFINED);
    EXPECT_FALSE(sut.getMinOutputPowerOffset(EChannelSpacingType::MHz28, offset));
    EXPECT_EQ(offset, 7);
}

TEST_F(SimulatedSystemPowerControllerTest, answersWhatItIsProgrammedWith) {
    program();

    EXPECT_EQ(sut.getReferenceSec(), EReferenceSEC::Class4L);
    EXPECT_TRUE(sut.getMinOutputPowerOffset(EChannelSpacingType::MHz56, offset));
    EXPECT_EQ(offset, -400);
}

TEST_F(SimulatedSystemPowerControllerTest, takesTheFirstOfTwoOffsetsForOneSpacing) {
    program();

    const bool isKnown = sut.getMinOutputPowerOffset(EChannelSpacingType::MHz28, offset);

    EXPECT_TRUE(isKnown);
    EXPECT_EQ(offset, 250);
}

TEST_F(SimulatedSystemPowerControllerTest, leavesTheOffsetOfAnUnknownSpacingAlone) {
    program();

    const bool isKnown = sut.getMinOutputPowerOffset(EChannelSpacingType::MHz7, offset);

    EXPECT_FALSE(isKnown);
    EXPECT_EQ(offset, 7);
}

TEST_F(SimulatedSystemPowerControllerTest, knowsNoOffsetAtTheCallThatIsToFail) {
    program();
    sut.failAt(2);

    EXPECT_TRUE(sut.getMinOutputPowerOffset(EChannelSpacingType::MHz56, offset));
    offset = 7;
    EXPECT_FALSE(sut.getMinOutputPowerOffset(EChannelSpacingType::MHz56, offset));
    EXPECT_EQ(offset, 7);
    EXPECT_TRUE(sut.getMinOutputPowerOffset(EChannelSpacingType::MHz56, offset));
}

TEST_F(SimulatedSystemPowerControllerTest, recordsItsCalls) {
    CallLog log;
    sut.recordTo(&log);

    sut.getReferenceSec();
    sut.getMinOutputPowerOffset(EChannelSpacingType{-5}, offset);

    EXPECT_THAT(log.texts(), ElementsAre("ISystemPowerController::getReferenceSec()",
                                         "ISystemPowerController::getMinOutputPowerOffset(-5)"));
}

} // namespace
