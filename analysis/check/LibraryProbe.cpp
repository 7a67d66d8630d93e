#include "LibraryProbe.h"

#include "Node.h"
#include "OutputPowerCalculator.h"
#include "ResultCode.h"

#include <memory>
#include <utility>

namespace {

constexpr std::uint32_t probedChannel = 1;

/// A number that leads to a family without calibration.
constexpr const char* uncalibratedProduct = "probe";

NodeAnswers nodeWith(CapabilityHandlerAnswers radio, EDpdVersion dpdVersion,
                     EFrameFormatMarket market) {
    FrameFormatAnswers frameFormat;
    frameFormat.modulation = Modulation::QAM4;
    frameFormat.maxAvailableModulation = Modulation::QAM4;
    frameFormat.dpdVersion = dpdVersion;
    frameFormat.market = market;

    NodeAnswers node;
    node.capabilityHandler = std::make_shared<CapabilityHandlerAnswers>(std::move(radio));
    node.acmHandler = std::make_shared<AcmHandlerAnswers>();
    node.frameFormat = std::make_shared<FrameFormatAnswers>(frameFormat);
    node.systemPowerController = std::make_shared<SystemPowerControllerAnswers>();
    node.hardwareConfigurationHandler = std::make_shared<HardwareConfigurationHandlerAnswers>();
    return node;
}

/// What the tables hold instead of their powers: by its one power the library's answer shows the
/// table that it came from. No power is 0, which stands for a look-up that found nothing.
int markOf(std::size_t table) {
    return static_cast<int>(table) + 1;
}

const PmaxTableName* tableOf(long mark) {
    for (std::size_t index = 0; index < pmaxTables.size(); ++index) {
        if (markOf(index) == mark) {
            return &pmaxTables.at(index);
        }
    }
    return nullptr;
}

LibraryProbe::ReadTables ask(const CapabilityHandlerAnswers& radio, EDpdVersion dpdVersion,
                             EFrameFormatMarket market) {
    const Node node(probedChannel, nodeWith(radio, dpdVersion, market));
    OutputPowerCalculator service(probedChannel);
    long minPower = 0;
    long power = 0;
    long highestPower = 0;
    if (!ResultCode::isFailure(service.initialize())) {
        static_cast<void>(service.calculatePowerCapabilities(Modulation::QAM4, minPower, power));
        static_cast<void>(service.findPminPmax(minPower, highestPower));
    }
    return {tableOf(power), tableOf(highestPower)};
}

} // namespace

LibraryProbe::ReadTables LibraryProbe::tablesOf(const CapabilityHandlerAnswers& radio,
                                                EDpdVersion dpdVersion, EFrameFormatMarket market) {
    CapabilityHandlerAnswers marked;
    marked.productNumber = uncalibratedProduct;
    for (std::size_t index = 0; index < pmaxTables.size(); ++index) {
        const PmaxTableName& name = pmaxTables.at(index);
        marked.*(name.answer) = radio.*(name.answer);
        auto& answer = marked.*(name.answer);
        if (answer && std::holds_alternative<std::vector<int>>(*answer)) {
            answer = pmaxTable({{Modulation::QAM4, markOf(index)}});
        }
    }
    return ask(marked, dpdVersion, market);
}

LibraryProbe::ReadTables LibraryProbe::wantedTables(EDpdVersion dpdVersion,
                                                    EFrameFormatMarket market) {
    CapabilityHandlerAnswers whole;
    for (const PmaxTableName& name : pmaxTables) {
        whole.*(name.answer) = std::vector<int>();
    }
    return tablesOf(whole, dpdVersion, market);
}

bool LibraryProbe::readsCalibration(const std::optional<std::string>& productNumber) {
    CapabilityHandlerAnswers radio;
    radio.productNumber = productNumber;
    const Node node(probedChannel, nodeWith(radio, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi));
    OutputPowerCalculator service(probedChannel);
    long minPower = 0;
    long power = 0;
    // The node stores no variables: who reads one fails.
    return !ResultCode::isFailure(service.initialize()) &&
           ResultCode::isFailure(
               service.calculatePowerCapabilities(Modulation::QAM4, minPower, power));
}
