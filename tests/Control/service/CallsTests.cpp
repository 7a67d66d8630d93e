#include "DeskBoard.h"
#include "ServiceTest.h"

#include <functional>
#include <map>

// Which neighbours an operation asks, in which order and with which arguments.

namespace {

struct CallsCase {
    const char* name;
    std::function<void(RadioAnswers&)> radio;
    std::function<void(OutputPowerCalculator&)> ask;
    Lines expected;
};

class Calls : public StartedServiceTest, public ::testing::WithParamInterface<CallsCase> {};

Lines joined(std::initializer_list<Lines> parts) {
    Lines lines;
    for (const Lines& part : parts) {
        lines.insert(lines.end(), part.begin(), part.end());
    }
    return lines;
}

/// What a neighbour has been asked, and in which groups it comes.
namespace asked {

const std::string acm = "IAcmHandler::getMinMaxModulationAndCode()";
const std::string modulation = "IFrameFormat::getModulation()";
const std::string maxAvailable = "IFrameFormat::getMaxAvailableModulation()";
const std::string codes = "IFrameFormat::getModulationAndCodeArray()";
const std::string spacing = "IFrameFormat::getChannelSpacing()";
const std::string dpdVersion = "IFrameFormat::getDpdVersion()";
const std::string market = "IFrameFormat::getTelecomMarket()";
const std::string product = "ICapabilityHandler::getTmuHwProductNumber()";
const std::string isLimited = "ICapabilityHandler::isMaxAcmLimitedByHw()";
const std::string profileIndex = "ICapabilityHandler::getPerformanceProfileIndex()";
const std::string referenceSec = "ISystemPowerController::getReferenceSec()";
const std::string hardwareMarket = "IHardwareConfigurationHandler::getTelecomMarket(1, 7)";

std::string withoutLimitation(const std::string& marketText) {
    return "ICapabilityHandler::getMaxModulationWithoutLimitation(" + marketText + ")";
}

std::string limitedBy(const std::string& profilesAndIndex) {
    return "ICapabilityHandler::getMaxModulationLimitedByHw(" + profilesAndIndex + ")";
}

std::string offsetAt(const std::string& channelSpacing) {
    return "ISystemPowerController::getMinOutputPowerOffset(" + channelSpacing + ")";
}

const Lines limit = {market, isLimited, withoutLimitation("Etsi")};
const Lines minimum = {spacing, offsetAt("28")};

} // namespace asked

void unchanged(RadioAnswers&) {}

void withoutSelection(RadioAnswers& radio) {
    radio.acmHandler.selection = AcmHandlerAnswers::Range{{163}, {81}};
}

void limitedByHardware(RadioAnswers& radio) {
    radio.capabilityHandler.maxAcmLimitedByHw = true;
}

void withCarrierAggregation(RadioAnswers& radio) {
    limitedByHardware(radio);
    DeskBoard::setCarrierAggregation(true);
}

/// Asks for the capability limit of modem and radio.
auto limitOf(int source, long id) {
    return [source, id](OutputPowerCalculator& sut) {
        Inside::limitMaxModDueToRadioCapability(sut, Inside::UseConfiguredFF{source}, id,
                                                Modulation::QAM64);
    };
}

auto fixedModulation(Modulation actual) {
    return [actual](OutputPowerCalculator& sut) {
        long minPower = 0;
        long maxPower = 0;
        sut.calculatePowerCapabilities(actual, minPower, maxPower);
    };
}

auto adaptiveModulation(Modulation actual) {
    return [actual](OutputPowerCalculator& sut) {
        long minPower = 0;
        long maxPower = 0;
        sut.calculateAdmodPowerCapabilities(actual, rsec2, minPower, maxPower);
    };
}

auto powerArray(long id, EReferenceSEC rsec = rsec2) {
    return [id, rsec](OutputPowerCalculator& sut) {
        long minPower = 0;
        std::map<ModulationAndCoding, long> powerMap;
        sut.getMinMaxOutputPowerVsModulationArray(id, noCode, noCode, rsec, minPower, powerMap);
    };
}

auto fixedPower(int boosterPresence) {
    return [boosterPresence](OutputPowerCalculator& sut) {
        long power = 0;
        sut.setBoosterPresence(boosterPresence, 0, 0, Modulation::CW);
        Inside::getFixModMaxPower(sut, dpd1, etsi, Modulation::QAM16, Modulation::QAM64, 0, power,
                                  false);
    };
}

void setEverything(OutputPowerCalculator& sut) {
    sut.setPowerCutback(1);
    sut.setTemporaryPowerCutback(true, 2);
    sut.setTemperature(3);
    sut.setBoosterPresence(4, 5, 6, Modulation::QAM16);
}

std::vector<CallsCase> callsCases() {
    using namespace asked;
    constexpr int configured = static_cast<int>(Inside::UseConfiguredFF::Configured);
    constexpr int byId = static_cast<int>(Inside::UseConfiguredFF::ById);
    return {
        {"ofInitializeFetchTheTablesInTheOrderOfTheMembersAndThenTheMinimumPower",
         unchanged,
         [](OutputPowerCalculator& sut) { sut.initialize(); },
         {"ICapabilityHandler::getPmaxCapabilityDpd1Etsi()",
          "ICapabilityHandler::getPmaxCapabilityDpd2Etsi()",
          "ICapabilityHandler::getPmaxCapabilityDpd1Ansi()",
          "ICapabilityHandler::getPmaxCapabilityDpd2Ansi()",
          "ICapabilityHandler::getMinOutputPower()"}},
        {"ofTheSettersNotifyNobody", unchanged, setEverything, {}},
        {"ofADestructionTellNoNeighbour",
         unchanged,
         [](OutputPowerCalculator&) { OutputPowerCalculator(2); },
         {}},
        {"ofTheFamilyAskForTheProductNumberEachTime",
         unchanged,
         [](OutputPowerCalculator& sut) {
             Inside::getCalculator(sut);
             Inside::getCalculator(sut);
         },
         {product, product}},

        // The capability limit
        {"ofTheLimitOfTheConfiguredFrameFormat",
         [](RadioAnswers& radio) { radio.frameFormat.market = EFrameFormatMarket::Global; },
         limitOf(configured, 7),
         {market, isLimited, withoutLimitation("Global")}},
        {"ofTheLimitByIdAskForItsMarket",
         unchanged,
         limitOf(byId, 7),
         {hardwareMarket, isLimited, withoutLimitation("Etsi")}},
        {"ofTheLimitByAnUnknownIdTakeTheMarketForEtsi",
         unchanged,
         limitOf(byId, 8),
         {"IHardwareConfigurationHandler::getTelecomMarket(1, 8)", isLimited,
          withoutLimitation("Etsi")}},
        {"ofTheLimitByAnyOtherSourceTakeTheMarketForEtsiUnasked",
         unchanged,
         limitOf(2, 7),
         {isLimited, withoutLimitation("Etsi")}},
        {"ofTheLimitByANegativeSourceTakeTheMarketForEtsiUnasked",
         unchanged,
         limitOf(-1, 7),
         {isLimited, withoutLimitation("Etsi")}},
        {"ofTheLimitOfTheConfiguredFrameFormatPassItsProfiles",
         limitedByHardware,
         limitOf(configured, 7),
         {market, isLimited, "IFrameFormat::getPerformanceProfiles()", profileIndex,
          limitedBy("[1, 2, 3], 2")}},
        {"ofTheLimitWithCarrierAggregationPassThoseProfiles",
         withCarrierAggregation,
         limitOf(configured, 7),
         {market, isLimited, "IFrameFormat::getCarrierAggregationPerformanceProfiles()",
          profileIndex, limitedBy("[4, 5], 2")}},
        {"ofTheLimitByIdPassItsProfiles",
         limitedByHardware,
         limitOf(byId, 7),
         {hardwareMarket, isLimited, "IHardwareConfigurationHandler::getPerformanceProfiles(1, 7)",
          profileIndex, limitedBy("[11, 12], 2")}},
        {"ofTheLimitByIdWithCarrierAggregationPassThoseProfiles",
         withCarrierAggregation,
         limitOf(byId, 7),
         {hardwareMarket, isLimited,
          "IHardwareConfigurationHandler::getCarrierAggregationPerformanceProfiles(1, 7)",
          profileIndex, limitedBy("[13], 2")}},
        {"ofTheLimitByAnyOtherSourceTakeTheProfilesOfTheId",
         [](RadioAnswers& radio) {
             limitedByHardware(radio);
             radio.capabilityHandler.performanceProfileIndex = -1;
         },
         limitOf(2, 7),
         {isLimited, "IHardwareConfigurationHandler::getPerformanceProfiles(1, 7)", profileIndex,
          limitedBy("[11, 12], -1")}},
        {"ofTheLimitWithoutProfilesPassNone",
         [](RadioAnswers& radio) {
             limitedByHardware(radio);
             radio.frameFormat.performanceProfiles.clear();
         },
         limitOf(configured, 0),
         {market, isLimited, "IFrameFormat::getPerformanceProfiles()", profileIndex,
          limitedBy("[], 2")}},

        // Powers
        {"ofTheUnrestrictedPmax",
         unchanged,
         [](OutputPowerCalculator& sut) {
             long pmax = 0;
             sut.getUnrestrictedPmax(pmax);
         },
         {modulation, spacing, product, dpdVersion, market}},
        {"ofAFixedPowerWithoutABoosterAskNobody", unchanged, fixedPower(0), {}},
        {"ofAFixedPowerWithABooster", unchanged, fixedPower(1),
         joined({{referenceSec, maxAvailable}, limit, {product, product}})},
        {"ofFixedModulation", unchanged, fixedModulation(Modulation::QAM16),
         joined({minimum, {acm, spacing, product, dpdVersion, market}})},
        {"ofFixedModulationWithoutASelectionAskForTheFrameFormats", withoutSelection,
         fixedModulation(Modulation::QAM16),
         joined({minimum, {acm, modulation, spacing, product, dpdVersion, market}})},
        {"ofAdaptiveModulation", unchanged, adaptiveModulation(Modulation::QAM16),
         joined({{acm, maxAvailable},
                 limit,
                 {spacing, product, dpdVersion, market, product},
                 minimum})},
        {"ofAdaptiveModulationWithNothingToCountFromAskNobodyElse",
         [](RadioAnswers& radio) {
             withoutSelection(radio);
             radio.frameFormat.modulation = Modulation::UNDEFINED;
         },
         adaptiveModulation(Modulation::QAM16),
         {acm, modulation}},
        {"ofAdaptiveModulationThatFailAskForNoMinimum", unchanged,
         adaptiveModulation(Modulation::QAM128),
         joined({{acm, maxAvailable}, limit, {spacing, product, dpdVersion, market}})},

        // The compensation, then one power for each modulation.
        {"ofThePowerArray", unchanged, powerArray(0, EReferenceSEC::UNDEFINED),
         joined({{referenceSec, acm, acm, codes, dpdVersion, market, spacing},
                 limit,
                 Lines(5, product),
                 minimum})},
        {"ofThePowerArrayThatFailsAskForNoMinimum",
         [](RadioAnswers& radio) { radio.frameFormat.modulationAndCodes.clear(); },
         powerArray(0),
         {acm, acm, codes, dpdVersion, market, spacing}},
        {"ofThePowerArrayByIdNameItsChannelAndId", unchanged,
         powerArray(7, EReferenceSEC::UNDEFINED),
         joined({{referenceSec, acm, acm, "IHardwareConfigurationHandler::getDpdVersion(1, 7)",
                  hardwareMarket, "IHardwareConfigurationHandler::getModulationAndCodeArray(1, 7)",
                  "IHardwareConfigurationHandler::getChannelSpacing(1, 7)", hardwareMarket,
                  isLimited, withoutLimitation("Etsi")},
                 Lines(4, product),
                 {"IHardwareConfigurationHandler::getFrameFormatRecords(false)", offsetAt("56")}})},

        // The minimum
        {"ofTheMinimumByAnUnknownIdAskForSpacing0",
         unchanged,
         [](OutputPowerCalculator& sut) { Inside::getMinOutputPowerUsingRfid(sut, 8); },
         {"IHardwareConfigurationHandler::getFrameFormatRecords(false)", offsetAt("0")}},
        {"ofPminAndPmax", unchanged,
         [](OutputPowerCalculator& sut) {
             long pmin = 0;
             long pmax = 0;
             sut.findPminPmax(pmin, pmax);
         },
         joined({{dpdVersion, market}, minimum})},
    };
}

} // namespace

TEST_P(Calls, goToTheNeighboursInOrder) {
    GetParam().radio(node.answers);
    node.apply();
    recordCalls();

    GetParam().ask(sut);

    EXPECT_EQ(calls.texts(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(, Calls, ::testing::ValuesIn(callsCases()),
                         [](const auto& shown) { return std::string(shown.param.name); });
