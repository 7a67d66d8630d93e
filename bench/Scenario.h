#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// One radio node with its operating inputs, as every way of computing sees it: the library,
/// the plain way and the limits. The defaults are a 28 MHz ETSI hop up to 4096QAM.
struct Scenario {
    std::string name;

    // What the neighbours answer
    std::string productNumber;
    std::vector<int>
        pmaxTable; ///< rows of modulation and power, one table for every DPD and market
    int pmaxCount = 0;
    int minOutputPower = 800;
    ModulationAndCoding selectedMin{30};
    ModulationAndCoding selectedMax{121};
    Modulation modulation = Modulation::QAM4;
    Modulation maxAvailableModulation = Modulation::QAM4096;
    Modulation radioMaximum = Modulation::UNDEFINED;
    std::vector<ModulationAndCoding> modulationAndCodes;
    EChannelSpacingType channelSpacing = EChannelSpacingType::MHz28;
    EDpdVersion dpdVersion = EDpdVersion::Dpd2;
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    EReferenceSEC referenceSec = EReferenceSEC::Class5LB;
    bool hasMinOutputPowerOffset = true;
    long minOutputPowerOffset = 100;
    bool isLimitedByProfile = false;
    bool isCarrierAggregation = false;
    std::vector<std::int32_t> compensation = {7, -50, 14, -25, 28, 25, 56, 50};
    std::uint32_t compensationSize = 8;

    // Operating inputs
    unsigned long cutback = 0;
    unsigned long temporaryCutback = 0;
    bool useTemporaryCutback = false;
    int boosterPresence = 0;
    int boosterGain = 0;
    int boosterMaxInputPower = 0;
    Modulation boosterMaxModulation = Modulation::CW;
};

/// A node of a family, by its product number. Codes are `codeCount` of the 53 that exist.
Scenario scenarioOf(const std::string& name, const std::string& productNumber,
                    std::size_t codeCount = 39, std::size_t firstCode = 0);

/// Likewise, with a cutback and, where the family knows one, a booster.
Scenario withBoosterAndCutback(Scenario scenario);

/// Likewise, with `codeCount` codes of 64QAM, for which the radio has no Pmax.
Scenario withoutPmaxOf64Qam(Scenario scenario, std::size_t codeCount);

/// Every code, ascending.
const std::vector<ModulationAndCoding>& allCodes();
