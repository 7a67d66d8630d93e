#include "Limit.h"

#include "CalculatorKam.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "DenseTable.h"
#include "HardwareFamily.h"

#include <algorithm>

namespace {

template <class Offsets>
void fill(Offsets& dense, const PowerOffsets& offsets, int absent) {
    for (auto& block : dense) {
        for (auto& row : block) {
            row.fill(absent);
        }
    }
    for (const auto& [key, offset] : offsets) {
        const auto& [reference, rsec, modulation] = key;
        dense[exponentOf(reference)][static_cast<std::size_t>(rsec)][exponentOf(modulation)] =
            offset;
    }
}

} // namespace

Limit::Limit(const Scenario& scenario)
    : m_scenario(scenario)
    , m_booster{}
    , m_band{} {
    fill(m_kam, CalculatorKam::initialize(), absent);
    fill(m_vo4, CalculatorVo4::initialize(), absent);
    fill(m_vo5, CalculatorVo5::initialize(), absent);
    for (const auto& [key, adjustment] : CalculatorVo5::initializeBoosterAdjs()) {
        m_booster[exponentOf(std::get<1>(key))] = adjustment;
    }
    for (const auto& [key, adjustment] : CalculatorVo5::initializeBoosterBandAdjs()) {
        if (std::get<0>(key) == 0) {
            m_band[exponentOf(std::get<1>(key))] = adjustment;
        }
    }
    for (auto& tables : m_pmax) {
        for (Pmax& pmax : tables) {
            pmax = {scenario.pmaxTable.data(), scenario.pmaxCount};
        }
    }
}

bool Limit::Pmax::find(Modulation modulation, long& power) const {
    const int* row = table;
    for (int left = count; left > 0; left -= 2, row += 2) {
        if (row[0] == static_cast<int>(modulation)) {
            power = row[1];
            return true;
        }
    }
    return false;
}

const Limit::Pmax* Limit::pmax(bool isAnsi) const {
    switch (m_scenario.dpdVersion) {
    case EDpdVersion::Dpd1:
        return &m_pmax[0][isAnsi ? 1 : 0];
    case EDpdVersion::Dpd2:
    case EDpdVersion::Dpd3:
        return &m_pmax[1][isAnsi ? 1 : 0];
    }
    return nullptr;
}

long Limit::cutback() const {
    return static_cast<long>(m_scenario.useTemporaryCutback ? m_scenario.temporaryCutback
                                                            : m_scenario.cutback);
}

Modulation Limit::limited(Modulation available) const {
    return m_scenario.radioMaximum == Modulation::UNDEFINED
               ? available
               : std::min(m_scenario.radioMaximum, available);
}

Modulation Limit::selected(const ModulationAndCoding& code, Modulation otherwise) const {
    const Modulation modulation = convertCodeToModulation(code);
    return modulation == Modulation::UNDEFINED ? otherwise : modulation;
}

long Limit::compensation(HardwareFamily family) const {
    if (family == HardwareFamily::OlderRadioUnit || family == HardwareFamily::NewerRadioUnit) {
        return 0;
    }
    const std::int32_t* pair = m_scenario.compensation.data();
    for (std::uint32_t left = m_scenario.compensationSize; left > 1; left -= 2, pair += 2) {
        if (pair[0] == static_cast<int>(m_scenario.channelSpacing)) {
            return pair[1];
        }
    }
    return 0;
}

int Limit::adaptive(HardwareFamily family, EReferenceSEC rsec, Modulation selectedMin,
                    Modulation selectedMax, Modulation available, Modulation actual,
                    long compensation, long cutback, long& power) const {
    const bool isAnsi = m_scenario.market == EFrameFormatMarket::Ansi;
    const Pmax* const pmax = this->pmax(isAnsi);
    long pmaxSelectedMin = 0;
    long pmaxActual = 0;
    if (pmax == nullptr || !pmax->find(selectedMin, pmaxSelectedMin) ||
        !pmax->find(actual, pmaxActual)) {
        return 32776;
    }
    pmaxSelectedMin -= cutback;
    pmaxActual -= cutback;
    compensation -= cutback;
    const auto row = isAnsi ? 0 : static_cast<std::size_t>(rsec);
    if (row > 9) {
        return 32776;
    }
    // The reference's Pmax must be known in every family, also where nothing is computed from it.
    const Modulation reference = family == HardwareFamily::OlderRadioUnit ? Modulation::QAM256
                                 : family == HardwareFamily::NewerRadioUnit
                                     ? std::min(selectedMax, Modulation::QAM4096)
                                     : available;
    long pmaxReference = 0;
    if (!pmax->find(reference, pmaxReference)) {
        return 32776;
    }
    switch (family) {
    case HardwareFamily::Outdoor1: {
        const auto& offsets = m_kam[8][row];
        const int referenceOffset = offsets[exponentOf(available)];
        const int actualOffset = offsets[exponentOf(actual)];
        const int minOffset = offsets[exponentOf(selectedMin)];
        if (actualOffset == absent) {
            return 32776;
        }
        const long base =
            compensation + (referenceOffset == absent ? 0 : pmaxReference - referenceOffset);
        power = std::min({pmaxActual, base + actualOffset, pmaxSelectedMin});
        if (minOffset != absent) {
            power = std::min(power, base + minOffset);
        }
        return 0;
    }
    case HardwareFamily::Outdoor3: {
        const long uncompensated = pmaxActual - compensation;
        long cap = 0;
        if (row != 0) {
            pmax->find(row == 1   ? Modulation::QAM16
                       : row == 2 ? Modulation::QAM32
                                  : Modulation::QAM64,
                       cap);
        }
        power = (row == 0 ? uncompensated : std::min(cap, uncompensated)) + compensation;
        return 0;
    }
    case HardwareFamily::OlderRadioUnit:
    case HardwareFamily::NewerRadioUnit: {
        const bool isNewer = family == HardwareFamily::NewerRadioUnit;
        if (isNewer && selectedMax < actual) {
            return 2;
        }
        if (m_scenario.boosterPresence != 0 && actual > m_scenario.boosterMaxModulation) {
            return 2;
        }
        const int offset = isNewer ? m_vo5[exponentOf(std::max(selectedMax, Modulation::QAM128))]
                                          [row][exponentOf(actual)]
                                   : m_vo4[8][row][exponentOf(actual)];
        if (offset == absent) {
            return 32776;
        }
        power = std::min(pmaxReference + offset, pmaxActual);
        if (m_scenario.boosterPresence != 0) {
            power += m_booster[exponentOf(actual)] + m_band[exponentOf(actual)];
            power = std::min({power - m_scenario.boosterGain,
                              static_cast<long>(m_scenario.boosterMaxInputPower), pmaxActual});
        }
        return 0;
    }
    }
    return 0;
}

int Limit::fixed(HardwareFamily family, Modulation selected, Modulation modulation,
                 long compensation, long cutback, long& power) const {
    if (m_scenario.boosterPresence == 0) {
        const Pmax* const pmax = this->pmax(m_scenario.market == EFrameFormatMarket::Ansi);
        long selectedPmax = 0;
        long modulationPmax = 0;
        if (pmax != nullptr) {
            pmax->find(selected, selectedPmax);
            pmax->find(modulation, modulationPmax);
        }
        power = std::min(selectedPmax, modulationPmax) - cutback + compensation;
        return 0;
    }
    const Modulation available = limited(m_scenario.maxAvailableModulation);
    long selectedPower = 0;
    long modulationPower = 0;
    const int first = adaptive(family, m_scenario.referenceSec, selected, selected, available,
                               selected, compensation, cutback, selectedPower);
    const int second = adaptive(family, m_scenario.referenceSec, selected, selected, available,
                                modulation, compensation, cutback, modulationPower);
    if (first >= 32768 || second >= 32768) {
        return 32768;
    }
    power = std::min(selectedPower, modulationPower);
    return 0;
}

int Limit::calculatePowerCapabilities(Modulation modulation, long& minPower, long& maxPower) const {
    const HardwareFamily family = hardwareFamilyOf(m_scenario.productNumber);
    minPower = m_scenario.minOutputPower + m_scenario.minOutputPowerOffset;
    const Modulation selectedMin = selected(m_scenario.selectedMin, m_scenario.modulation);
    if (selectedMin == Modulation::UNDEFINED) {
        return 32768;
    }
    return fixed(family, selectedMin, modulation, compensation(family), cutback(), maxPower);
}

int Limit::calculateAdmodPowerCapabilities(Modulation actual, EReferenceSEC rsec, long& minPower,
                                           long& maxPower) const {
    const HardwareFamily family = hardwareFamilyOf(m_scenario.productNumber);
    const Modulation selectedMin = selected(m_scenario.selectedMin, m_scenario.modulation);
    if (selectedMin == Modulation::UNDEFINED) {
        return 32768;
    }
    const Modulation available = limited(m_scenario.maxAvailableModulation);
    const int result =
        adaptive(family, rsec, selectedMin, selected(m_scenario.selectedMax, available), available,
                 actual, compensation(family), cutback(), maxPower);
    if (result == 0) {
        minPower = m_scenario.minOutputPower + m_scenario.minOutputPowerOffset;
    }
    return result;
}

int Limit::findPminPmax(long& pmin, long& pmax) const {
    const Pmax* const found = this->pmax(m_scenario.market != EFrameFormatMarket::Etsi);
    if (found == nullptr) {
        return 32768;
    }
    int highest = INT32_MIN;
    for (int i = 1; i < found->count; i += 2) {
        highest = std::max(highest, found->table[i]);
    }
    pmax = highest;
    pmin = m_scenario.minOutputPower + m_scenario.minOutputPowerOffset;
    return 0;
}

int Limit::getUnrestrictedPmax(long& pmax) const {
    const HardwareFamily family = hardwareFamilyOf(m_scenario.productNumber);
    fixed(family, m_scenario.modulation, m_scenario.modulation, compensation(family), 0, pmax);
    return 0;
}

int Limit::getMinMaxOutputPowerVsModulationArray(
    long& minOutputPower, std::map<ModulationAndCoding, long>& powerMap) const {
    const HardwareFamily family = hardwareFamilyOf(m_scenario.productNumber);
    if (m_scenario.modulationAndCodes.empty()) {
        return 32771;
    }
    const auto [lowest, highest] = std::minmax_element(m_scenario.modulationAndCodes.begin(),
                                                       m_scenario.modulationAndCodes.end());
    const Modulation available = convertCodeToModulation(*highest);
    if (available == Modulation::UNDEFINED) {
        return 32771;
    }
    const bool isAdaptive = m_scenario.selectedMin != m_scenario.selectedMax;
    const Modulation selectedMin =
        selected(m_scenario.selectedMin, convertCodeToModulation(*lowest));
    const Modulation selectedMax = selected(m_scenario.selectedMax, available);
    const Modulation limitedMax = limited(available);
    const long spacingCompensation = compensation(family);
    const long cutback = this->cutback();
    Modulation last = Modulation::UNDEFINED;
    long power = 0;
    auto place = powerMap.begin();
    for (const ModulationAndCoding& code : m_scenario.modulationAndCodes) {
        const Modulation modulation = convertCodeToModulation(code);
        if (limitedMax < modulation) {
            continue;
        }
        if (modulation != last) {
            const int result =
                isAdaptive
                    ? adaptive(family, m_scenario.referenceSec, selectedMin, selectedMax,
                               limitedMax, modulation, spacingCompensation, cutback, power)
                    : fixed(family, selectedMin, modulation, spacingCompensation, cutback, power);
            if (result != 0) {
                continue;
            }
            last = modulation;
        }
        place = std::next(powerMap.insert_or_assign(place, code, power));
    }
    minOutputPower = m_scenario.minOutputPower + m_scenario.minOutputPowerOffset;
    return 0;
}
