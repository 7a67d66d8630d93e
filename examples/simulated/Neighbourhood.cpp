#include "Neighbourhood.h"

#include "DeskVariableStore.h"
#include "InterfaceBroker.h"

namespace {

constexpr RadioChannel channel = 1;

// The codes of the frame format
constexpr ModulationAndCoding code4Qam{31};
constexpr ModulationAndCoding code16Qam{41};
constexpr ModulationAndCoding code64Qam{61};
constexpr ModulationAndCoding code256Qam{81};

} // namespace

CapabilityHandlerAnswers Neighbourhood::radio() {
    CapabilityHandlerAnswers answers;
    answers.productNumber = "QZT 846 57";
    answers.minOutputPower = 800;
    answers.pmaxDpd1Etsi = pmaxTable({{Modulation::QAM4, 2600},
                                      {Modulation::QAM16, 2300},
                                      {Modulation::QAM64, 2000},
                                      {Modulation::QAM256, 1700}});
    return answers;
}

Neighbourhood::Neighbourhood() {
    capabilityHandler.setAnswers(radio());

    AcmHandlerAnswers acm;
    acm.selection = AcmHandlerAnswers::Range{code4Qam, code256Qam};
    acmHandler.setAnswers(acm);

    FrameFormatAnswers format; // 28 MHz, ETSI and DPD version 1 unless told otherwise
    format.modulation = Modulation::QAM4;
    format.maxAvailableModulation = Modulation::QAM256;
    format.modulationAndCodes = {code4Qam, code16Qam, code64Qam, code256Qam};
    frameFormat.setAnswers(format);

    SystemPowerControllerAnswers power;
    power.referenceSec = EReferenceSEC::Class4L;
    power.minOutputPowerOffsets = {{EChannelSpacingType::MHz28, 50}};
    systemPowerController.setAnswers(power);

    // The hardware configuration handler keeps what it answers by default: no frame format.

    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &systemPowerController);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(),
                             &hardwareConfigurationHandler);

    DeskVariableStore& store = DeskVariableStore::getInstance();
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.array", {28, 0});
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.arraysize", {2});
}

Neighbourhood::~Neighbourhood() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(channel), nullptr);
    broker.unregisterInterface(IHardwareConfigurationHandler::interfaceName(), nullptr);
    DeskVariableStore::getInstance().clear();
}

void Neighbourhood::recordTo(CallLog* log) {
    capabilityHandler.recordTo(log);
    acmHandler.recordTo(log);
    frameFormat.recordTo(log);
    systemPowerController.recordTo(log);
    hardwareConfigurationHandler.recordTo(log);
}
