#pragma once

#include "CalculatorVo5.h"
#include "MockNeighbours.h"
#include "OutputPowerCalculator.h"
#include "OutputPowerCalculatorInside.h"
#include "TraceCapture.h"
#include "TraceLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Inside = OutputPowerCalculatorInside;

/// What an output holds that nothing has written.
constexpr long untouched = -123456789;

// Short names for what most queries are asked with.
constexpr EFrameFormatMarket etsi = EFrameFormatMarket::Etsi;
constexpr EFrameFormatMarket ansi = EFrameFormatMarket::Ansi;
constexpr EDpdVersion dpd1 = EDpdVersion::Dpd1;
constexpr EReferenceSEC rsec2 = EReferenceSEC::Class2;
constexpr EReferenceSEC rsec4L = EReferenceSEC::Class4L;
constexpr ModulationAndCoding noCode = {ModulationAndCoding::UNDEFINED};

/// A service of channel 1 that is not initialised yet, among neighbours that answer as
/// RadioAnswers and FrameFormatAnswers say.
template <template <class> class Strictness>
class ServiceFixture : public NodeFixture<Strictness> {
protected:
    ServiceFixture() {
        // The newer radio-unit family traces the building of its tables once in a process. It is
        // done here, so that no test's trace depends on which tests ran before.
        long power = 0;
        CalculatorVo5::getInstance()->getMaxPower(CalculationData{}, power, 0, 0, 0,
                                                  Modulation::CW);
    }

    OutputPowerCalculator sut{1};
};

using ServiceTest = ServiceFixture<::testing::NiceMock>;

/// A service that runs.
class StartedServiceTest : public ServiceTest {
protected:
    void SetUp() override { ASSERT_EQ(sut.initialize(), 0U); }
};

/// A service that runs among neighbours of which every call must be expected.
class StrictServiceTest : public ServiceFixture<::testing::StrictMock> {
protected:
    void SetUp() override {
        EXPECT_CALL(node.capabilityHandler, getPmaxCapabilityDpd1Etsi);
        EXPECT_CALL(node.capabilityHandler, getPmaxCapabilityDpd2Etsi);
        EXPECT_CALL(node.capabilityHandler, getPmaxCapabilityDpd1Ansi);
        EXPECT_CALL(node.capabilityHandler, getPmaxCapabilityDpd2Ansi);
        EXPECT_CALL(node.capabilityHandler, getMinOutputPower);
        ASSERT_EQ(sut.initialize(), 0U);
        ::testing::Mock::VerifyAndClearExpectations(&node.capabilityHandler);
    }

    // What follows one another in a sequence of expectations that a test has opened.

    void expectCapabilityLimit() {
        EXPECT_CALL(node.frameFormat, getTelecomMarket);
        EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
        EXPECT_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation);
    }

    void expectMinOutputPower() {
        EXPECT_CALL(node.frameFormat, getChannelSpacing);
        EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset);
    }
};
