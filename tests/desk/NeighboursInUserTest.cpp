// What a user of the library writes to test his own code against simulated neighbours.

#include "InterfaceBroker.h"
#include "Node.h"
#include "OutputPowerCalculator.h"

#include <gtest/gtest.h>

#include <memory>

static_assert(__cplusplus == 201703L, "the neighbours must stay usable from C++17");

#ifdef INCLUDE_NLOHMANN_JSON_HPP_
#error "the neighbours must stay usable without JSON"
#endif

TEST(NeighboursInUserTest, aServiceAnswersFromProgrammedNeighbours) {
    CapabilityHandlerAnswers capability;
    capability.minOutputPower = -500;
    capability.pmaxDpd1Etsi = pmaxTable({{Modulation::QAM4, 2500}, {Modulation::QAM16, 2300}});
    NodeAnswers answers;
    answers.capabilityHandler = std::make_shared<const CapabilityHandlerAnswers>(capability);
    answers.acmHandler = std::make_shared<const AcmHandlerAnswers>();
    answers.frameFormat = std::make_shared<const FrameFormatAnswers>();
    answers.systemPowerController = std::make_shared<const SystemPowerControllerAnswers>();
    answers.hardwareConfigurationHandler =
        std::make_shared<const HardwareConfigurationHandlerAnswers>();
    Node node(1, answers);
    OutputPowerCalculator sut(1);
    ASSERT_EQ(sut.initialize(), 0U);
    CallLog log;
    node.recordTo(&log);
    long pmin = 0;
    long pmax = 0;

    const int result = sut.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(pmin, -500);
    EXPECT_EQ(pmax, 2500);
    EXPECT_FALSE(log.calls().empty());
}

TEST(NeighboursInUserTest, aNeighbourCanBeToldToFailTheServicesStart) {
    NodeAnswers answers;
    answers.capabilityHandler = std::make_shared<const CapabilityHandlerAnswers>();
    Node node(1, answers);
    OutputPowerCalculator sut(1);
    node.capabilityHandler()->failAt(5); // behind the four Pmax tables: the minimum power
    CallLog log;
    node.recordTo(&log);

    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 32768U);
    EXPECT_EQ(log.texts().back(), "ICapabilityHandler::getMinOutputPower()");
}
