#include "PlainWay.h"

#include "CStorageManager.h"
#include "CalculatorKam.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"

#include <algorithm>

namespace {

constexpr int success = 0;
constexpr int notApplicable = 2;
constexpr int failure = 32768;
constexpr int noRadioUnitEntry = 32770;
constexpr int noEntry = 32776;

} // namespace

PlainWay::PlainWay(BenchNode& node, const Scenario& scenario)
    : m_node(node)
    , m_cutback(static_cast<long>(scenario.cutback))
    , m_boosterPresence(scenario.boosterPresence)
    , m_boosterGain(scenario.boosterGain)
    , m_boosterMaxInputPower(scenario.boosterMaxInputPower)
    , m_boosterMaxModulation(scenario.boosterMaxModulation)
    , m_legacyProducts({"QZT35201/1", "QZT35201/11", "QZT35201/12",  "QZT35202/1",  "QZT35203/1",
                        "QZT35204/1", "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",  "QZT35207/1",
                        "QZT35208/1", "QZT35221/1",  "QZT35221/11",  "QZT35221/12", "QZT35222/1",
                        "QZT35223/1", "QZT35224/1",  "QZT35225/1",   "QZT35226/1",  "QZT35227/1"})
    , m_kam(CalculatorKam::initialize())
    , m_vo4(CalculatorVo4::initialize())
    , m_vo5(CalculatorVo5::initialize())
    , m_boosterVo4(CalculatorVo4::initializeBoosterAdjs())
    , m_boosterVo5(CalculatorVo5::initializeBoosterAdjs())
    , m_bandVo4(CalculatorVo4::initializeBoosterBandAdjs())
    , m_bandVo5(CalculatorVo5::initializeBoosterBandAdjs()) {
    node.capabilityHandler().getMinOutputPower(&m_minOutputPower);
    for (const int dpdVersion : {1, 2}) {
        for (const bool isAnsi : {false, true}) {
            PmaxTable& table = m_tables[{dpdVersion, isAnsi}];
            for (std::size_t i = 0; i + 1 < scenario.pmaxTable.size(); i += 2) {
                table.emplace_back(static_cast<Modulation>(scenario.pmaxTable[i]),
                                   scenario.pmaxTable[i + 1]);
            }
        }
    }
}

PlainWay::Family PlainWay::family() const {
    const std::string product = m_node.capabilityHandler().getTmuHwProductNumber();
    if (product.empty() || product == "QZT 846 57" || product == "QZT 846 001") {
        return Family::Kam;
    }
    if (product == "QZT 846 003") {
        return Family::KamV3;
    }
    for (const std::string& legacy : m_legacyProducts) {
        if (product == legacy) {
            return Family::Vo4;
        }
    }
    return Family::Vo5;
}

const PlainWay::PmaxTable& PlainWay::pmaxTable(EDpdVersion dpdVersion,
                                               EFrameFormatMarket market) const {
    const int version = std::min(static_cast<int>(dpdVersion), 2);
    return m_tables.at({version, market == EFrameFormatMarket::Ansi});
}

int PlainWay::pmaxOf(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation modulation,
                     long& power) const {
    for (const auto& [rowModulation, rowPower] : pmaxTable(dpdVersion, market)) {
        if (rowModulation == modulation) {
            power = rowPower;
            return success;
        }
    }
    return noEntry;
}

long PlainWay::compensationOf(EChannelSpacingType spacing) const {
    const Family family = this->family();
    if (family == Family::Vo4 || family == Family::Vo5) {
        return 0;
    }
    const std::string prefix = "channel." + std::to_string(1) + ".tx.rf.pmax.cs.comp.v2.";
    const void* array = nullptr;
    const void* arraySize = nullptr;
    std::uint32_t size = 0;
    CStorageManager_GetVariableContentAddressByName((prefix + "array").c_str(), &array, &size);
    CStorageManager_GetVariableContentAddressByName((prefix + "arraysize").c_str(), &arraySize,
                                                    nullptr);
    const auto* elements = static_cast<const std::int32_t*>(array);
    size = std::min(size, *static_cast<const std::uint32_t*>(arraySize));
    for (std::uint32_t i = 0; i + 1 < size; i += 2) {
        if (elements[i] == static_cast<int>(spacing)) {
            return elements[i + 1];
        }
    }
    return 0;
}

Modulation PlainWay::limited(Modulation available) const {
    const EFrameFormatMarket market = m_node.frameFormat().getTelecomMarket();
    Modulation radio = m_node.capabilityHandler().isMaxAcmLimitedByHw()
                           ? m_node.capabilityHandler().getMaxModulationLimitedByHw({}, -1)
                           : m_node.capabilityHandler().getMaxModulationWithoutLimitation(market);
    if (radio == Modulation::UNDEFINED) {
        radio = available;
    }
    return std::min(radio, available);
}

Modulation PlainWay::selectedMinimum(const ModulationAndCoding& min) const {
    const Modulation modulation = convertCodeToModulation(min);
    return modulation == Modulation::UNDEFINED ? m_node.frameFormat().getModulation() : modulation;
}

long PlainWay::minOutputPower() const {
    long offset = 0;
    m_node.systemPowerController().getMinOutputPowerOffset(m_node.frameFormat().getChannelSpacing(),
                                                           offset);
    return *m_minOutputPower + offset;
}

int PlainWay::outdoor(const Data& data, long& power) const {
    const auto offsetOf = [&](Modulation modulation) {
        return m_kam.find({Modulation::QAM256, data.rsec, modulation});
    };
    const auto ref = offsetOf(data.refMax);
    const auto actual = offsetOf(data.actual);
    const auto selectedMin = offsetOf(data.selectedMin);
    if (actual == m_kam.end()) {
        return noEntry;
    }
    const long base = data.compensation + (ref == m_kam.end() ? 0 : data.pmaxRefMax - ref->second);
    power = std::min({data.pmaxActual, base + actual->second, data.pmaxSelectedMin});
    if (selectedMin != m_kam.end()) {
        power = std::min(power, base + selectedMin->second);
    }
    return success;
}

int PlainWay::outdoor3(const Data& data, long& power) const {
    static const std::map<EReferenceSEC, Modulation> caps = {
        {EReferenceSEC::Class4L, Modulation::QAM16},  {EReferenceSEC::Class4H, Modulation::QAM32},
        {EReferenceSEC::Class5B, Modulation::QAM64},  {EReferenceSEC::Class6B, Modulation::QAM64},
        {EReferenceSEC::Class5LB, Modulation::QAM64}, {EReferenceSEC::Class5HB, Modulation::QAM64},
        {EReferenceSEC::Class6LB, Modulation::QAM64}, {EReferenceSEC::Class6HB, Modulation::QAM64},
        {EReferenceSEC::Class7B, Modulation::QAM64}};
    const long uncompensated = data.pmaxActual - data.compensation;
    const auto cap = caps.find(data.rsec);
    if (data.rsec == EReferenceSEC::Class2) {
        power = uncompensated;
    } else if (cap != caps.end()) {
        long capPower = 0;
        for (const auto& [modulation, pmax] : data.table) {
            if (modulation == cap->second) {
                capPower = pmax;
                break;
            }
        }
        power = std::min(capPower, uncompensated);
    }
    power += data.compensation;
    return success;
}

int PlainWay::radioUnit(const Data& data, bool isNewer, long& power) const {
    if (isNewer && data.selectedMax < data.actual) {
        return notApplicable;
    }
    const bool hasBooster = m_boosterPresence != 0;
    if (isNewer && hasBooster && data.actual > m_boosterMaxModulation) {
        return notApplicable;
    }
    const Offsets& offsets = isNewer ? m_vo5 : m_vo4;
    const Modulation reference =
        isNewer ? std::max(data.selectedMax, Modulation::QAM128) : data.refMax;
    const auto offset = offsets.find({reference, data.rsec, data.actual});
    if (offset == offsets.end()) {
        return noRadioUnitEntry;
    }
    if (hasBooster && data.actual > m_boosterMaxModulation) {
        return notApplicable;
    }
    power = std::min(data.pmaxRefMax + offset->second, data.pmaxActual);
    if (!hasBooster) {
        return success;
    }
    const auto& adjustments = isNewer ? m_boosterVo5 : m_boosterVo4;
    const auto& bands = isNewer ? m_bandVo5 : m_bandVo4;
    const auto adjustment = adjustments.find({data.rsec, data.actual});
    const auto band = bands.find({m_boosterPresence == 7 ? 1 : 0, data.actual});
    if (adjustment == adjustments.end() || band == bands.end()) {
        return noRadioUnitEntry;
    }
    power += adjustment->second;
    power += band->second;
    power = std::min(power - m_boosterGain, m_boosterMaxInputPower);
    power = std::min(power, data.pmaxActual);
    return success;
}

int PlainWay::adaptive(EDpdVersion dpdVersion, EFrameFormatMarket market, EReferenceSEC rsec,
                       Modulation selectedMin, Modulation selectedMax, Modulation available,
                       Modulation actual, long compensation, long& power, bool useCutback) const {
    const long cutback = useCutback ? m_cutback : 0;
    Data data = {market == EFrameFormatMarket::Ansi ? EReferenceSEC::Class2 : rsec,
                 selectedMin,
                 selectedMax,
                 actual,
                 Modulation::UNDEFINED,
                 0,
                 0,
                 0,
                 compensation - cutback,
                 pmaxTable(dpdVersion, market)};
    if (pmaxOf(dpdVersion, market, selectedMin, data.pmaxSelectedMin) != success ||
        pmaxOf(dpdVersion, market, actual, data.pmaxActual) != success) {
        return noEntry;
    }
    data.pmaxSelectedMin -= cutback;
    data.pmaxActual -= cutback;
    const Family family = this->family();
    data.refMax = family == Family::Vo4   ? Modulation::QAM256
                  : family == Family::Vo5 ? std::min(selectedMax, Modulation::QAM4096)
                                          : available;
    if (pmaxOf(dpdVersion, market, data.refMax, data.pmaxRefMax) != success) {
        return noEntry;
    }
    int result = success;
    switch (family) {
    case Family::Kam:
        result = outdoor(data, power);
        break;
    case Family::KamV3:
        result = outdoor3(data, power);
        break;
    case Family::Vo4:
        result = radioUnit(data, false, power);
        break;
    case Family::Vo5:
        result = radioUnit(data, true, power);
        break;
    }
    return result >= failure ? noEntry : result;
}

int PlainWay::fixed(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation selected,
                    Modulation modulation, long compensation, long& power, bool useCutback) const {
    if (m_boosterPresence != 0) {
        const EReferenceSEC rsec = m_node.systemPowerController().getReferenceSec();
        const Modulation available = limited(m_node.frameFormat().getMaxAvailableModulation());
        long selectedPower = 0;
        long modulationPower = 0;
        const int first = adaptive(dpdVersion, market, rsec, selected, selected, available,
                                   selected, compensation, selectedPower, useCutback);
        const int second = adaptive(dpdVersion, market, rsec, selected, selected, available,
                                    modulation, compensation, modulationPower, useCutback);
        if (first >= failure || second >= failure) {
            return failure;
        }
        power = std::min(selectedPower, modulationPower);
        return success;
    }
    const long cutback = useCutback ? m_cutback : 0;
    long selectedPmax = 0;
    long pmax = 0;
    pmaxOf(dpdVersion, market, selected, selectedPmax);
    pmaxOf(dpdVersion, market, modulation, pmax);
    power = std::min(selectedPmax - cutback, pmax - cutback) + compensation;
    return success;
}

int PlainWay::calculatePowerCapabilities(Modulation modulation, long& minPower,
                                         long& maxPower) const {
    minPower = minOutputPower();
    ModulationAndCoding min{163};
    ModulationAndCoding max{163};
    m_node.acmHandler().getMinMaxModulationAndCode(min, max);
    const Modulation selected = selectedMinimum(min);
    const long compensation = compensationOf(m_node.frameFormat().getChannelSpacing());
    return fixed(m_node.frameFormat().getDpdVersion(), m_node.frameFormat().getTelecomMarket(),
                 selected, modulation, compensation, maxPower, true);
}

int PlainWay::calculateAdmodPowerCapabilities(Modulation actual, EReferenceSEC rsec, long& minPower,
                                              long& maxPower) const {
    ModulationAndCoding min{163};
    ModulationAndCoding max{163};
    m_node.acmHandler().getMinMaxModulationAndCode(min, max);
    const Modulation selectedMin = selectedMinimum(min);
    const Modulation available = limited(m_node.frameFormat().getMaxAvailableModulation());
    Modulation selectedMax = convertCodeToModulation(max);
    if (selectedMax == Modulation::UNDEFINED) {
        selectedMax = available;
    }
    const long compensation = compensationOf(m_node.frameFormat().getChannelSpacing());
    const int result =
        adaptive(m_node.frameFormat().getDpdVersion(), m_node.frameFormat().getTelecomMarket(),
                 rsec, selectedMin, selectedMax, available, actual, compensation, maxPower, true);
    if (result == success) {
        minPower = minOutputPower();
    }
    return result;
}

int PlainWay::findPminPmax(long& pmin, long& pmax) const {
    const PmaxTable& table =
        pmaxTable(m_node.frameFormat().getDpdVersion(), m_node.frameFormat().getTelecomMarket());
    pmax = std::max_element(table.begin(), table.end(), [](const auto& left, const auto& right) {
               return left.second < right.second;
           })->second;
    pmin = minOutputPower();
    return success;
}

int PlainWay::getUnrestrictedPmax(long& pmax) const {
    const Modulation modulation = m_node.frameFormat().getModulation();
    const long compensation = compensationOf(m_node.frameFormat().getChannelSpacing());
    fixed(m_node.frameFormat().getDpdVersion(), m_node.frameFormat().getTelecomMarket(), modulation,
          modulation, compensation, pmax, false);
    return success;
}

int PlainWay::getMinMaxOutputPowerVsModulationArray(
    long& minPower, std::map<ModulationAndCoding, long>& powerMap) const {
    const EReferenceSEC rsec = m_node.systemPowerController().getReferenceSec();
    ModulationAndCoding min{163};
    ModulationAndCoding max{163};
    m_node.acmHandler().getMinMaxModulationAndCode(min, max);
    m_node.acmHandler().getMinMaxModulationAndCode(min, max);
    const Modulation selectedMin = convertCodeToModulation(min);
    const Modulation selectedMax = convertCodeToModulation(max);
    std::vector<ModulationAndCoding> codes;
    m_node.frameFormat().getModulationAndCodeArray(codes);
    const EDpdVersion dpdVersion = m_node.frameFormat().getDpdVersion();
    const EFrameFormatMarket market = m_node.frameFormat().getTelecomMarket();
    const Modulation available =
        convertCodeToModulation(*std::max_element(codes.begin(), codes.end()));
    const Modulation limitedMax = limited(available);
    const long compensation = compensationOf(m_node.frameFormat().getChannelSpacing());
    Modulation last = Modulation::UNDEFINED;
    long power = 0;
    for (const ModulationAndCoding& code : codes) {
        const Modulation modulation = convertCodeToModulation(code);
        if (limitedMax < modulation) {
            continue;
        }
        if (modulation != last) {
            const int result =
                min != max
                    ? adaptive(dpdVersion, market, rsec, selectedMin, selectedMax, limitedMax,
                               modulation, compensation, power, true)
                    : fixed(dpdVersion, market, selectedMin, modulation, compensation, power, true);
            if (result != success) {
                continue;
            }
            last = modulation;
        }
        powerMap[code] = power;
    }
    minPower = minOutputPower();
    return success;
}
