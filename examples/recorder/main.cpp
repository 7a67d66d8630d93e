// A host with a flight recorder: one hour of a node, recorded, and written to a file on SIGUSR1.
//
//   recorder [FILE [SECONDS]]
//
//   SECONDS  to sleep after each half minute of the node
//
// The node is simulated and its hour passes at once, unless there is something to sleep.
// At the end the host sends itself the signal that support would send.

#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "RadioFileRecorder.h"
#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <thread>

namespace {

constexpr RadioChannel channel = 1;

volatile std::sig_atomic_t isWanted = 0;

void wantFile(int) {
    isWanted = 1;
}

/// A 13 GHz radio on 28 MHz. Powers are in hundredths of a dBm.
CapabilityHandlerAnswers radio() {
    CapabilityHandlerAnswers answers;
    answers.productNumber = "QZT 846 001";
    answers.minOutputPower = 800;
    answers.pmaxDpd1Etsi = pmaxTable({{Modulation::QAM4, 2600},
                                      {Modulation::QAM16, 2300},
                                      {Modulation::QAM64, 1800},
                                      {Modulation::QAM256, 1700}});
    return answers;
}

FrameFormatAnswers frameFormat(EChannelSpacingType channelSpacing) {
    FrameFormatAnswers answers{};
    answers.modulation = Modulation::QAM16;
    answers.maxAvailableModulation = Modulation::QAM256;
    answers.modulationAndCodes = {{31}, {41}, {61}, {81}};
    answers.channelSpacing = channelSpacing;
    answers.dpdVersion = EDpdVersion::Dpd1;
    answers.market = EFrameFormatMarket::Etsi;
    return answers;
}

/// The neighbours in the broker and the calibration in the store.
struct Node {
    Node()
        : capabilityHandler(radio())
        , acmHandler({AcmHandlerAnswers::Range{{31}, {81}}})
        , configuredFrameFormat(frameFormat(EChannelSpacingType::MHz28))
        , systemPowerController({EReferenceSEC::Class4L, {{EChannelSpacingType::MHz28, 50}}}) {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
        broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
        broker.registerInterface(IFrameFormat::interfaceName(channel), &configuredFrameFormat);
        broker.registerInterface(ISystemPowerController::interfaceName(channel),
                                 &systemPowerController);
        broker.registerInterface(IHardwareConfigurationHandler::interfaceName(), &configuration);
        DeskVariableStore& store = DeskVariableStore::getInstance();
        store.set("channel.1.tx.rf.pmax.cs.comp.v2.array", {14, 0, 28, -50});
        store.set("channel.1.tx.rf.pmax.cs.comp.v2.arraysize", {4});
    }

    SimulatedCapabilityHandler capabilityHandler;
    SimulatedAcmHandler acmHandler;
    SimulatedFrameFormat configuredFrameFormat;
    SimulatedSystemPowerController systemPowerController;
    SimulatedHardwareConfigurationHandler configuration;
};

/// What the node's control software does twice a minute: it sets the power of the modulation in
/// use.
void control(int second) {
    auto* const calculator = InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
        IOutputPowerCalculator::interfaceName(channel));
    if (second == 40 * 60) {
        calculator->setPowerCutback(300); // the operator saves power
    }
    if (second % (10 * 60) == 0) {
        long minOutputPower = 0;
        std::map<ModulationAndCoding, long> powerMap;
        calculator->getMinMaxOutputPowerVsModulationArray(
            0, {ModulationAndCoding::UNDEFINED}, {ModulationAndCoding::UNDEFINED},
            EReferenceSEC::UNDEFINED, minOutputPower, powerMap);
    }
    // Rain from minute 50 on.
    const Modulation modulation = second < 50 * 60 ? Modulation::QAM256 : Modulation::QAM64;
    long minPower = 0;
    long maxPower = 0;
    calculator->calculateAdmodPowerCapabilities(modulation, EReferenceSEC::Class4L, minPower,
                                                maxPower);
}

} // namespace

int main(int argc, char** argv) {
    const std::string path = argc > 1 ? argv[1] : "field-case.json";
    const std::chrono::seconds pause(argc > 2 ? std::atoi(argv[2]) : 0);
    std::signal(SIGUSR1, wantFile);

    Node node;
    RadioFileRecorder recorder(channel, 8192); // 8 KiB are enough for this
    recorder.attach();                         // the neighbours, before the service looks them up
    OutputPowerCalculator service(channel);
    if (service.initialize() != 0) {
        std::cerr << "The output power calculator did not start.\n";
        return 1;
    }
    recorder.attach(); // the service, before its callers look it up

    for (int second = 0; second <= 60 * 60; second += 30) {
        if (second == 55 * 60) {
            node.configuredFrameFormat.setAnswers(frameFormat(EChannelSpacingType::MHz14));
        }
        if (second == 60 * 60) {
            std::raise(SIGUSR1);
        }
        control(second);
        if (isWanted != 0) {
            isWanted = 0;
            std::ofstream file(path);
            if (!recorder.write(file)) {
                std::cerr << "Nothing was recorded, or " << path << " cannot be written.\n";
                return 1;
            }
            std::cout << path << ": " << recorder.requestCount() << " requests\n";
        }
        std::this_thread::sleep_for(pause);
    }
    return 0;
}
