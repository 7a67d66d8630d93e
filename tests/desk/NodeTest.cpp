#include "Node.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "IOutputPowerCalculator.h"
#include "InterfaceBroker.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using testing::ElementsAre;

NodeAnswers fullNode() {
    NodeAnswers answers;
    answers.capabilityHandler = std::make_shared<const CapabilityHandlerAnswers>();
    answers.acmHandler = std::make_shared<const AcmHandlerAnswers>();
    answers.frameFormat = std::make_shared<const FrameFormatAnswers>();
    answers.systemPowerController = std::make_shared<const SystemPowerControllerAnswers>();
    answers.hardwareConfigurationHandler =
        std::make_shared<const HardwareConfigurationHandlerAnswers>();
    return answers;
}

template <class Interface>
Interface* find(const std::string& name) {
    return InterfaceBroker::getInstance().getInterface<Interface>(name);
}

/// The elements of a stored variable; nothing if it cannot be read.
std::optional<std::vector<std::int32_t>> variable(const std::string& name) {
    const void* address = nullptr;
    std::uint32_t size = 0;
    if (CStorageManager_GetVariableContentAddressByName(name.c_str(), &address, &size) != 0) {
        return std::nullopt;
    }
    const auto* const elements = static_cast<const std::int32_t*>(address);
    return std::vector<std::int32_t>(elements, elements + size);
}

TEST(NodeTest, registersEveryNeighbourForTheServedChannel) {
    for (const std::uint32_t channel : {1U, 2U}) {
        Node sut(channel, fullNode());
        const std::string suffix = channel == 1 ? "_1" : "_2";

        EXPECT_EQ(find<ICapabilityHandler>("ICapabilityHandler" + suffix), sut.capabilityHandler());
        EXPECT_EQ(find<IAcmHandler>("IAcmHandler" + suffix), sut.acmHandler());
        EXPECT_EQ(find<IFrameFormat>("IFrameFormat" + suffix), sut.frameFormat());
        EXPECT_EQ(find<ISystemPowerController>("ISystemPowerController" + suffix),
                  sut.systemPowerController());
        EXPECT_EQ(find<IHardwareConfigurationHandler>("IHardwareConfigurationHandler"),
                  sut.hardwareConfigurationHandler());
        EXPECT_NE(sut.capabilityHandler(), nullptr);
    }
}

TEST(NodeTest, servesChannel1ForAnyOtherNumberAndPublishesTheCapabilityHandlerUnderBoth) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "ICapabilityHandler"},
        {3, "ICapabilityHandler_3"},
        {4294967295U, "ICapabilityHandler_4294967295"},
    };
    for (const auto& [channel, name] : cases) {
        Node sut(channel, fullNode());

        EXPECT_EQ(find<ICapabilityHandler>(name), sut.capabilityHandler()) << name;
        EXPECT_EQ(find<ICapabilityHandler>("ICapabilityHandler_1"), sut.capabilityHandler());
        EXPECT_EQ(find<IFrameFormat>("IFrameFormat_1"), sut.frameFormat());
        EXPECT_NE(sut.capabilityHandler(), nullptr);
    }
    EXPECT_EQ(find<ICapabilityHandler>("ICapabilityHandler_3"), nullptr);
}

TEST(NodeTest, doesNotRegisterAnAbsentNeighbour) {
    Node sut(1, NodeAnswers());

    EXPECT_EQ(find<IInterface>("ICapabilityHandler_1"), nullptr);
    EXPECT_EQ(find<IInterface>("IAcmHandler_1"), nullptr);
    EXPECT_EQ(find<IInterface>("IFrameFormat_1"), nullptr);
    EXPECT_EQ(find<IInterface>("ISystemPowerController_1"), nullptr);
    EXPECT_EQ(find<IInterface>("IHardwareConfigurationHandler"), nullptr);
    EXPECT_EQ(sut.capabilityHandler(), nullptr);
    EXPECT_EQ(sut.acmHandler(), nullptr);
    EXPECT_EQ(sut.frameFormat(), nullptr);
    EXPECT_EQ(sut.systemPowerController(), nullptr);
    EXPECT_EQ(sut.hardwareConfigurationHandler(), nullptr);
}

TEST(NodeTest, setsVariablesAndBoard) {
    NodeAnswers answers;
    answers.carrierAggregation = true;
    answers.variables = std::make_shared<const NodeAnswers::Variables>(
        NodeAnswers::Variables{{"array", {28, -150}}, {"single", {4}}, {"empty", {}}});

    const Node sut(1, answers);

    EXPECT_TRUE(os::bsp::rl::isFftypeCarrierAggregation());
    EXPECT_THAT(variable("array"), testing::Optional(ElementsAre(28, -150)));
    EXPECT_THAT(variable("single"), testing::Optional(ElementsAre(4)));
    EXPECT_THAT(variable("empty"), testing::Optional(ElementsAre()));
    EXPECT_EQ(variable("other"), std::nullopt);
}

TEST(NodeTest, leavesNothingBehind) {
    NodeAnswers answers = fullNode();
    answers.carrierAggregation = true;
    answers.variables =
        std::make_shared<const NodeAnswers::Variables>(NodeAnswers::Variables{{"single", {4}}});

    { const Node sut(3, answers); }

    EXPECT_EQ(find<IInterface>("ICapabilityHandler_1"), nullptr);
    EXPECT_EQ(find<IInterface>("ICapabilityHandler_3"), nullptr);
    EXPECT_EQ(find<IInterface>("IAcmHandler_1"), nullptr);
    EXPECT_EQ(find<IInterface>("IFrameFormat_1"), nullptr);
    EXPECT_EQ(find<IInterface>("ISystemPowerController_1"), nullptr);
    EXPECT_EQ(find<IInterface>("IHardwareConfigurationHandler"), nullptr);
    EXPECT_EQ(variable("single"), std::nullopt);
    EXPECT_FALSE(os::bsp::rl::isFftypeCarrierAggregation());
}

TEST(NodeTest, answersDifferentlyOnceNewAnswersAreApplied) {
    NodeAnswers answers = fullNode();
    answers.variables = std::make_shared<const NodeAnswers::Variables>(
        NodeAnswers::Variables{{"old", {1}}, {"both", {2}}});
    Node sut(1, answers);
    CapabilityHandlerAnswers capability;
    capability.productNumber = "QZT 846 003";
    FrameFormatAnswers frameFormat;
    frameFormat.modulation = Modulation::QAM64;
    HardwareConfigurationHandlerAnswers hardware;
    hardware.frameFormats.emplace_back();
    ModulationAndCoding min{0};
    ModulationAndCoding max{0};

    answers.capabilityHandler = std::make_shared<const CapabilityHandlerAnswers>(capability);
    answers.acmHandler = std::make_shared<const AcmHandlerAnswers>(
        AcmHandlerAnswers{AcmHandlerAnswers::Range{{30}, {81}}});
    answers.frameFormat = std::make_shared<const FrameFormatAnswers>(frameFormat);
    answers.systemPowerController = std::make_shared<const SystemPowerControllerAnswers>(
        SystemPowerControllerAnswers{EReferenceSEC::Class7B, {}});
    answers.hardwareConfigurationHandler =
        std::make_shared<const HardwareConfigurationHandlerAnswers>(hardware);
    answers.carrierAggregation = true;
    answers.variables = std::make_shared<const NodeAnswers::Variables>(
        NodeAnswers::Variables{{"both", {3}}, {"new", {4}}});
    sut.apply(answers);

    EXPECT_EQ(sut.capabilityHandler()->getTmuHwProductNumber(), "QZT 846 003");
    EXPECT_EQ(sut.acmHandler()->getMinMaxModulationAndCode(min, max), 0U);
    EXPECT_EQ(sut.frameFormat()->getModulation(), Modulation::QAM64);
    EXPECT_EQ(sut.systemPowerController()->getReferenceSec(), EReferenceSEC::Class7B);
    EXPECT_EQ(sut.hardwareConfigurationHandler()->getDpdVersion(1, 0), EDpdVersion::Dpd1);
    EXPECT_TRUE(os::bsp::rl::isFftypeCarrierAggregation());
    EXPECT_EQ(variable("old"), std::nullopt);
    EXPECT_THAT(variable("both"), testing::Optional(ElementsAre(3)));
    EXPECT_THAT(variable("new"), testing::Optional(ElementsAre(4)));
}

TEST(NodeTest, forgetsAllVariablesWhenThereAreNoneAnyMore) {
    NodeAnswers answers;
    answers.variables =
        std::make_shared<const NodeAnswers::Variables>(NodeAnswers::Variables{{"old", {1}}});
    Node sut(1, answers);

    sut.apply(NodeAnswers());

    EXPECT_EQ(variable("old"), std::nullopt);
}

TEST(NodeTest, refusesAnswersOfOtherNeighboursAndStaysAsItIs) {
    const auto lack = [](auto NodeAnswers::*neighbour) {
        NodeAnswers answers = fullNode();
        (answers.*neighbour).reset();
        return answers;
    };
    Node sut(1, fullNode());

    EXPECT_THROW(sut.apply(lack(&NodeAnswers::capabilityHandler)), std::invalid_argument);
    EXPECT_THROW(sut.apply(lack(&NodeAnswers::acmHandler)), std::invalid_argument);
    EXPECT_THROW(sut.apply(lack(&NodeAnswers::frameFormat)), std::invalid_argument);
    EXPECT_THROW(sut.apply(lack(&NodeAnswers::systemPowerController)), std::invalid_argument);
    EXPECT_THROW(sut.apply(lack(&NodeAnswers::hardwareConfigurationHandler)),
                 std::invalid_argument);
    EXPECT_NE(find<IFrameFormat>("IFrameFormat_1"), nullptr);
}

TEST(NodeTest, refusesANeighbourThatItLacks) {
    Node sut(1, NodeAnswers());

    EXPECT_THROW(sut.apply(fullNode()), std::invalid_argument);
}

TEST(NodeTest, recordsTheCallsToEveryNeighbourInOneLog) {
    Node sut(1, fullNode());
    CallLog log;
    ModulationAndCoding code{0};
    sut.recordTo(&log);

    sut.hardwareConfigurationHandler()->getDpdVersion(1, 2);
    sut.systemPowerController()->getReferenceSec();
    sut.frameFormat()->getModulation();
    sut.acmHandler()->getMinMaxModulationAndCode(code, code);
    sut.capabilityHandler()->isMaxAcmLimitedByHw();
    sut.recordTo(nullptr);
    sut.frameFormat()->getModulation();

    EXPECT_THAT(log.texts(), ElementsAre("IHardwareConfigurationHandler::getDpdVersion(1, 2)",
                                         "ISystemPowerController::getReferenceSec()",
                                         "IFrameFormat::getModulation()",
                                         "IAcmHandler::getMinMaxModulationAndCode()",
                                         "ICapabilityHandler::isMaxAcmLimitedByHw()"));
}

TEST(NodeTest, recordsWhateverNeighboursThereAre) {
    Node sut(1, NodeAnswers());
    CallLog log;

    sut.recordTo(&log);

    EXPECT_TRUE(log.calls().empty());
}

} // namespace
