#include "Calculation.h"
#include "CalculatorVo5.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// The one test of this program: a family's tables come to life once in a process.
TEST(CalculatorVo5, BuildsItsTablesAtItsFirstPowerQueryAndNeverAgain) {
    static bool hasRun = false;
    if (hasRun) {
        GTEST_SKIP() << "the first query of this process was that of the run before";
    }
    hasRun = true;
    CalculationData data = emptyCalculation();
    data.selectedMaxModulation = Modulation::QAM4;
    data.actualModulation = Modulation::QAM16;
    long power = 4711;
    long compensation = 4711;
    TraceCapture trace(6);

    CalculatorVo5& sut = *CalculatorVo5::getInstance();
    sut.getMaxRefModulation(Modulation::QAM16, Modulation::QAM4);
    sut.getCompensationForChannelSpacing(1, EChannelSpacingType::MHz28, compensation);
    EXPECT_THAT(trace.lines(), Not(Contains(HasSubstr("initialize"))));

    EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 2);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorVo5.initialize: ",
                    "6 msg CalculatorVo5.getMaxPower: data.selectedMaxModulation=4QAM, "
                    "data.actualModulation=16QAM, data.rsec=0, data.pmaxActualModulation=0, "
                    "data.pmaxRefMaxModulation=0, boosterBand=0",
                    "5 msg CalculatorVo5.getMaxPower: getMaxPower16QAM is higher than selected max "
                    "ACM (4QAM)"));

    EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 2);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 msg CalculatorVo5.getMaxPower: data.selectedMaxModulation=4QAM, "
                    "data.actualModulation=16QAM, data.rsec=0, data.pmaxActualModulation=0, "
                    "data.pmaxRefMaxModulation=0, boosterBand=0",
                    "5 msg CalculatorVo5.getMaxPower: getMaxPower16QAM is higher than selected max "
                    "ACM (4QAM)"));
}

} // namespace
