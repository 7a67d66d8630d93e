#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "IInterface.h"
#include "IOutputPowerCalculator.h"
#include "ISystemPowerController.h"

#include <gtest/gtest.h>

namespace {

TEST(InterfaceName, OfAnyBaseAlwaysHasTheChannel) {
    EXPECT_EQ(IInterface::interfaceName("IFrameFormat", 0), "IFrameFormat_0");
    EXPECT_EQ(IInterface::interfaceName("IFrameFormat", 1), "IFrameFormat_1");
    EXPECT_EQ(IInterface::interfaceName("Anything", 2), "Anything_2");
    EXPECT_EQ(IInterface::interfaceName("", 12), "_12");
    EXPECT_EQ(IInterface::interfaceName("IFrameFormat", 4294967295U), "IFrameFormat_4294967295");
}

TEST(InterfaceName, OfTheFrameFormatAlwaysHasTheChannel) {
    EXPECT_EQ(IFrameFormat::interfaceName(0), "IFrameFormat_0");
    EXPECT_EQ(IFrameFormat::interfaceName(1), "IFrameFormat_1");
    EXPECT_EQ(IFrameFormat::interfaceName(2), "IFrameFormat_2");
    EXPECT_EQ(IFrameFormat::interfaceName(4294967295U), "IFrameFormat_4294967295");
}

TEST(InterfaceName, OfTheAcmHandlerAlwaysHasTheChannel) {
    EXPECT_EQ(IAcmHandler::interfaceName(0), "IAcmHandler_0");
    EXPECT_EQ(IAcmHandler::interfaceName(1), "IAcmHandler_1");
    EXPECT_EQ(IAcmHandler::interfaceName(2), "IAcmHandler_2");
    EXPECT_EQ(IAcmHandler::interfaceName(4294967295U), "IAcmHandler_4294967295");
}

TEST(InterfaceName, OfTheSystemPowerControllerAlwaysHasTheChannel) {
    EXPECT_EQ(ISystemPowerController::interfaceName(0), "ISystemPowerController_0");
    EXPECT_EQ(ISystemPowerController::interfaceName(1), "ISystemPowerController_1");
    EXPECT_EQ(ISystemPowerController::interfaceName(2), "ISystemPowerController_2");
    EXPECT_EQ(ISystemPowerController::interfaceName(4294967295U),
              "ISystemPowerController_4294967295");
}

TEST(InterfaceName, OfTheCapabilityHandlerHasTheChannelUnlessItIs0) {
    EXPECT_EQ(ICapabilityHandler::interfaceName(0), "ICapabilityHandler");
    EXPECT_EQ(ICapabilityHandler::interfaceName(1), "ICapabilityHandler_1");
    EXPECT_EQ(ICapabilityHandler::interfaceName(2), "ICapabilityHandler_2");
    EXPECT_EQ(ICapabilityHandler::interfaceName(4294967295U), "ICapabilityHandler_4294967295");
}

TEST(InterfaceName, OfTheOutputPowerCalculatorHasTheChannelUnlessItIs0) {
    EXPECT_EQ(IOutputPowerCalculator::interfaceName(0), "IOutputPowerCalculator");
    EXPECT_EQ(IOutputPowerCalculator::interfaceName(1), "IOutputPowerCalculator_1");
    EXPECT_EQ(IOutputPowerCalculator::interfaceName(2), "IOutputPowerCalculator_2");
    EXPECT_EQ(IOutputPowerCalculator::interfaceName(4294967295U),
              "IOutputPowerCalculator_4294967295");
}

TEST(InterfaceName, OfTheHardwareConfigurationHandlerNeverHasAChannel) {
    EXPECT_EQ(IHardwareConfigurationHandler::interfaceName(), "IHardwareConfigurationHandler");
}

} // namespace
