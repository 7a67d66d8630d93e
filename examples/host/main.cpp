// A host of the output power calculator: five neighbours, one service, one query.
//
// A board's control software has neighbours of its own and the board's platform. This host answers
// for a small radio, and knows of the platform what the headers of the library declare.

#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "ResultCode.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

/// The radio hardware. What it does not override has a default: no limit by performance profiles,
/// for example. Powers are in hundredths of a dBm.
class Radio : public ICapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override { return "QZT 846 57"; }

    unsigned getMinOutputPower(const int** table) const override {
        static const int minOutputPower[] = {800};
        *table = minOutputPower;
        return 0;
    }

    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        // Rows of a modulation and the maximum power at it; the count is that of the integers. The
        // service keeps both addresses.
        static const int pmax[] = {4, 2600, 16, 2300, 64, 2000, 256, 1700};
        static const int size = 8;
        *table = pmax;
        *count = &size;
        return 0;
    }
};

/// The operator's selection for adaptive modulation.
class Acm : public IAcmHandler {
public:
    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override {
        min = {31}; // 4QAM
        max = {81}; // 256QAM
        return 0;
    }
};

/// The frame format that is configured now: 28 MHz, ETSI.
class ConfiguredFrameFormat : public IFrameFormat {
public:
    Modulation getModulation() const override { return Modulation::QAM4; }
    Modulation getMaxAvailableModulation() const override { return Modulation::QAM256; }
    void getModulationAndCodeArray(std::vector<ModulationAndCoding>& codes) const override {
        codes = {{31}, {41}, {61}, {81}}; // 4QAM, 16QAM, 64QAM, 256QAM
    }
    EChannelSpacingType getChannelSpacing() const override { return EChannelSpacingType::MHz28; }
    EDpdVersion getDpdVersion() const override { return EDpdVersion::Dpd1; }
    EFrameFormatMarket getTelecomMarket() const override { return EFrameFormatMarket::Etsi; }
    void getPerformanceProfiles(std::vector<short>& profiles) const override { profiles.clear(); }
    void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
        profiles.clear();
    }
};

/// The node's view of the link's power.
class Link : public ISystemPowerController {
public:
    EReferenceSEC getReferenceSec() const override { return EReferenceSEC::Class4L; }

    bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing, long& offset) const override {
        offset = 50;
        return channelSpacing == EChannelSpacingType::MHz28;
    }
};

/// Every frame format of the unit by its id. This host asks for the configured one alone, so there
/// is none.
class Configuration : public IHardwareConfigurationHandler {
public:
    void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& records) const override {
        records.clear();
    }
    EDpdVersion getDpdVersion(RadioChannel, long) const override { return EDpdVersion{}; }
    unsigned getTelecomMarket(RadioChannel, long, EFrameFormatMarket&) const override {
        return ResultCode::Failure;
    }
    unsigned getModulationAndCodeArray(RadioChannel, long,
                                       std::vector<ModulationAndCoding>&) const override {
        return ResultCode::Failure;
    }
    unsigned getChannelSpacing(RadioChannel, long, EChannelSpacingType&) const override {
        return ResultCode::Failure;
    }
    void getPerformanceProfiles(RadioChannel, long, std::vector<short>& profiles) const override {
        profiles.clear();
    }
    void getCarrierAggregationPerformanceProfiles(RadioChannel, long,
                                                  std::vector<short>& profiles) const override {
        profiles.clear();
    }
};

/// Hundredths of a dBm as text: 1850 is "18.50 dBm".
std::string dBm(long power) {
    char text[32];
    std::snprintf(text, sizeof text, "%s%ld.%02ld dBm", power < 0 ? "-" : "",
                  std::labs(power) / 100, std::labs(power) % 100);
    return text;
}

} // namespace

int main() {
    constexpr RadioChannel channel = 1;

    // The neighbours go into the broker, which borrows them: they live longer than the service.
    Radio radio;
    Acm acm;
    ConfiguredFrameFormat frameFormat;
    Link link;
    Configuration configuration;
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &radio);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acm);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel), &link);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(), &configuration);

    // The radio's calibration comes from the platform's store of variables.
    OutputPowerCalculator service(channel);
    if (service.initialize() != ResultCode::Success) {
        std::cerr << "The output power calculator did not start.\n";
        return 1;
    }

    // Whoever asks finds the service in the broker.
    const auto* const calculator =
        broker.getInterface<IOutputPowerCalculator>(IOutputPowerCalculator::interfaceName(channel));
    const ModulationAndCoding asSelected{ModulationAndCoding::UNDEFINED};
    long minOutputPower = 0;
    std::map<ModulationAndCoding, long> powerMap;
    const unsigned result = calculator->getMinMaxOutputPowerVsModulationArray(
        0, asSelected, asSelected, EReferenceSEC::UNDEFINED, minOutputPower, powerMap);
    if (ResultCode::isFailure(result)) {
        std::cerr << "The query failed with " << result << ".\n";
        return 1;
    }

    std::cout << "At least " << dBm(minOutputPower) << '\n';
    for (const auto& [code, power] : powerMap) {
        std::cout << convertCodeAndModulationEnumToString(code) << ": at most " << dBm(power)
                  << '\n';
    }
    return 0;
}
