// The calculator on a desk: the desk platform stands in for the board's, simulated neighbours for
// the radio, and the program sets what a node would have stored and reads what the library traced.

#include "DeskBoard.h"
#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

#include <iostream>

namespace {

constexpr RadioChannel channel = 1;

/// An outdoor radio. Powers are in hundredths of a dBm.
CapabilityHandlerAnswers radio() {
    CapabilityHandlerAnswers answers;
    answers.productNumber = "QZT 846 001";
    answers.minOutputPower = 800;
    answers.pmaxDpd1Etsi = pmaxTable({{Modulation::QAM4, 2600}, {Modulation::QAM64, 1800}});
    return answers;
}

/// 4QAM and 64QAM on 28 MHz, ETSI.
FrameFormatAnswers frameFormat() {
    FrameFormatAnswers answers{};
    answers.modulation = Modulation::QAM4;
    answers.maxAvailableModulation = Modulation::QAM64;
    answers.modulationAndCodes = {{31}, {61}};
    answers.channelSpacing = EChannelSpacingType::MHz28;
    answers.dpdVersion = EDpdVersion::Dpd1;
    answers.market = EFrameFormatMarket::Etsi;
    return answers;
}

} // namespace

int main() {
    SimulatedCapabilityHandler capabilityHandler(radio());
    SimulatedAcmHandler acmHandler({AcmHandlerAnswers::Range{{31}, {61}}});
    SimulatedFrameFormat configuredFrameFormat(frameFormat());
    SimulatedSystemPowerController link(
        {EReferenceSEC::Class4L, {{EChannelSpacingType::MHz28, 50}}});
    SimulatedHardwareConfigurationHandler configuration;
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &configuredFrameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel), &link);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(), &configuration);

    // What the node has stored: at 28 MHz this radio delivers half a decibel less.
    DeskVariableStore& store = DeskVariableStore::getInstance();
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.array", {28, -50});
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.arraysize", {2});
    DeskBoard::setCarrierAggregation(false);

    OutputPowerCalculator service(channel);
    if (service.initialize() != 0) {
        std::cerr << "The output power calculator did not start.\n";
        return 1;
    }

    // What it says of one power: limits and results.
    const DeskTraceScope traces(5);
    long minPower = 0;
    long maxPower = 0;
    service.calculateAdmodPowerCapabilities(Modulation::QAM64, EReferenceSEC::Class4L, minPower,
                                            maxPower);
    std::cout << "64QAM: " << minPower << " to " << maxPower << " hundredths of a dBm\n";
    for (const TraceRecord& record : DeskTrace::getInstance().take()) {
        std::cout << record.function << ": " << record.text << '\n';
    }
    return 0;
}
