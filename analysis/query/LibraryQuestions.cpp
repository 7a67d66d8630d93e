#include "LibraryQuestions.h"

#include "DeskTrace.h"
#include "Node.h"
#include "OutputPowerCalculator.h"
#include "QueryTrace.h"
#include "ResultCode.h"

#include <memory>
#include <utility>

namespace {

/// A radio-unit family, which has no channel-spacing compensation, selected by a product number
/// that no other family has.
constexpr const char* productWithoutCompensation = "a question";

/// A product number of the outdoor family that has an offset table and that a radio can select.
constexpr const char* productWithOffsets = "QZT 846 001";

/// Above every modulation of an offset table: as the reference it has no offset, so that the powers
/// count from 0 and each one is the offset itself.
constexpr ModulationAndCoding lightestCode{162};

/// Every class is asked for once; more than there are classes only by numbers that are none.
constexpr std::size_t mostKnownClasses = 64;

/// A radio with every Pmax at 0, all codes, and no calibration.
RadioFile radioForOffsets() {
    CapabilityHandlerAnswers capability;
    capability.productNumber = productWithOffsets;
    capability.minOutputPower = 0;
    std::vector<int> pmax;
    FrameFormatAnswers frameFormat;
    for (int code = 0; code <= lightestCode.code; ++code) {
        const Modulation modulation = convertCodeToModulation({code});
        if (modulation != Modulation::UNDEFINED) {
            pmax.insert(pmax.end(), {static_cast<int>(modulation), 0});
            frameFormat.modulationAndCodes.push_back({code});
        }
    }
    capability.pmaxDpd1Etsi = pmax;

    RadioFile file;
    file.node.capabilityHandler =
        std::make_shared<const CapabilityHandlerAnswers>(std::move(capability));
    file.node.frameFormat = std::make_shared<const FrameFormatAnswers>(std::move(frameFormat));
    file.node.acmHandler = std::make_shared<const AcmHandlerAnswers>(AcmHandlerAnswers{
        AcmHandlerAnswers::Range{file.node.frameFormat->modulationAndCodes.front(), lightestCode}});
    file.node.systemPowerController = std::make_shared<const SystemPowerControllerAnswers>();
    file.node.hardwareConfigurationHandler =
        std::make_shared<const HardwareConfigurationHandlerAnswers>();
    file.node.variables = std::make_shared<const NodeAnswers::Variables>(
        NodeAnswers::Variables{{"channel.1.tx.rf.pmax.cs.comp.v2.array", {}},
                               {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize", {0}}});
    return file;
}

LibraryQuestions::Offsets askForOffsets(EReferenceSEC rsec) {
    const RadioFile file = radioForOffsets();
    const DeskTraceScope everything(6);
    DeskTrace& trace = DeskTrace::getInstance();
    {
        const Node node(file.channel, file.node);
        OutputPowerCalculator service(file.channel);
        service.initialize();
        long minPower = 0;
        std::map<ModulationAndCoding, long> powers;
        constexpr ModulationAndCoding asSelected{ModulationAndCoding::UNDEFINED};
        trace.clear();
        service.getMinMaxOutputPowerVsModulationArray(0, asSelected, asSelected, rsec, minPower,
                                                      powers);
    }

    LibraryQuestions::Offsets offsets;
    for (const QueryTrace::Calculation& calculation : QueryTrace::read(trace.take()).calculations) {
        if (const auto power = calculation.figures.offsetFamily.actualPower) {
            offsets[calculation.figures.modulation] = *power;
        }
    }
    return offsets;
}

} // namespace

std::optional<std::int32_t> LibraryQuestions::pmax(const RadioFile& file, EDpdVersion dpdVersion,
                                                   EFrameFormatMarket market,
                                                   Modulation modulation) {
    CapabilityHandlerAnswers capability = *file.node.capabilityHandler;
    capability.productNumber = productWithoutCompensation;
    FrameFormatAnswers frameFormat;
    frameFormat.modulation = modulation;
    frameFormat.dpdVersion = dpdVersion;
    frameFormat.market = market;
    NodeAnswers answers = file.node;
    answers.capabilityHandler =
        std::make_shared<const CapabilityHandlerAnswers>(std::move(capability));
    answers.frameFormat = std::make_shared<const FrameFormatAnswers>(std::move(frameFormat));

    const DeskTraceScope troubles(2);
    DeskTrace& trace = DeskTrace::getInstance();
    long power = 0;
    {
        const Node node(file.channel, answers);
        OutputPowerCalculator service(file.channel);
        service.initialize();
        trace.clear();
        service.getUnrestrictedPmax(power);
    }
    // A missing row counts as 0, and only the trace tells it from a Pmax of 0.
    return trace.take().empty() ? std::optional(static_cast<std::int32_t>(power)) : std::nullopt;
}

std::optional<LibraryQuestions::Offsets> LibraryQuestions::offsets(const std::string& calculator,
                                                                   EReferenceSEC rsec) {
    static std::map<EReferenceSEC, Offsets> known;
    if (calculator != "CalculatorKam") {
        return std::nullopt;
    }
    const auto found = known.find(rsec);
    if (found != known.end()) {
        return found->second;
    }
    if (known.size() >= mostKnownClasses) {
        known.clear();
    }
    return known.emplace(rsec, askForOffsets(rsec)).first->second;
}
