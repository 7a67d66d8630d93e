#include "Limit.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "CalculatorKam.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"

#include <algorithm>
#include <cstring>
#include <iterator>

// A query is one piece of code, as its author would write it who thinks of nothing but speed.
#define QOR_WHOLE __attribute__((flatten))

namespace {

constexpr RadioChannel channel = 1;
constexpr int failure = 32768;
constexpr int noEntry = 32776;

/// Exponent of a modulation; 17 for a value that is no power of two.
unsigned int exponentIn(Modulation modulation) {
    const auto points = static_cast<std::uint32_t>(modulation);
    return points == 0 || (points & (points - 1)) != 0 || points > 65536
               ? 17U
               : static_cast<unsigned int>(__builtin_ctz(points));
}

template <class Offsets>
void fill(Offsets& dense, const PowerOffsets& offsets, int absent) {
    for (auto& block : dense) {
        for (auto& row : block) {
            row.fill(absent);
        }
    }
    for (const auto& [key, offset] : offsets) {
        const auto& [reference, rsec, modulation] = key;
        dense[exponentIn(reference)][static_cast<std::size_t>(rsec)][exponentIn(modulation)] =
            offset;
    }
}

struct ProductSlot {
    char text[16];
    LimitFamily family;
};

constexpr std::size_t productSlots = 128;

/// One slot for each product, by the characters in which they differ.
std::size_t slotIn(const char* text, std::size_t size) {
    return (static_cast<std::size_t>(text[6]) * 2 + static_cast<std::size_t>(text[7]) * 7 +
            static_cast<std::size_t>(text[size - 1]) + size) %
           productSlots;
}

struct Products {
    ProductSlot slots[productSlots] = {};

    Products() {
        for (const char* text : {"QZT 846 57", "QZT 846 001"}) {
            enter(text, LimitFamily::Outdoor1);
        }
        enter("QZT 846 003", LimitFamily::Outdoor3);
        for (const char* text :
             {"QZT35201/1", "QZT35201/11", "QZT35201/12",  "QZT35202/1",  "QZT35203/1",
              "QZT35204/1", "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",  "QZT35207/1",
              "QZT35208/1", "QZT35221/1",  "QZT35221/11",  "QZT35221/12", "QZT35222/1",
              "QZT35223/1", "QZT35224/1",  "QZT35225/1",   "QZT35226/1",  "QZT35227/1"}) {
            enter(text, LimitFamily::OlderRadioUnit);
        }
    }

    void enter(const char* text, LimitFamily family) {
        ProductSlot& slot = slots[slotIn(text, std::strlen(text))];
        std::strncpy(slot.text, text, sizeof slot.text - 1);
        slot.family = family;
    }
};

const Products products;

std::uint32_t wordAt(const char* text) {
    std::uint32_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

struct Modulations {
    std::array<Modulation, 154> byCode;

    Modulations() {
        byCode.fill(Modulation::UNDEFINED);
        for (const ModulationAndCoding& code : allCodes()) {
            byCode[static_cast<std::size_t>(code.code - 10)] = convertCodeToModulation(code);
        }
    }
};

const Modulations modulations;

} // namespace

// Numbers that are equal in length, first eight and last four characters are equal: twelve is the
// longest.
LimitFamily limitFamilyOf(const std::string& productNumber) {
    const std::size_t size = productNumber.size();
    if (size == 0) {
        return LimitFamily::Outdoor1;
    }
    if (size < 10 || size > 12) {
        return LimitFamily::NewerRadioUnit;
    }
    const char* const text = productNumber.data();
    const ProductSlot& slot = products.slots[slotIn(text, size)];
    const bool isEqual =
        wordAt(slot.text) == wordAt(text) && wordAt(slot.text + 4) == wordAt(text + 4) &&
        wordAt(slot.text + size - 4) == wordAt(text + size - 4) && slot.text[size] == '\0';
    return isEqual ? slot.family : LimitFamily::NewerRadioUnit;
}

Modulation limitModulationOf(const ModulationAndCoding& code) {
    const auto index = static_cast<std::uint32_t>(code.code - 10);
    return index < modulations.byCode.size() ? modulations.byCode[index] : Modulation::UNDEFINED;
}

// What is asked

HandedAnswers::HandedAnswers(BenchNode&, const Scenario& scenario)
    : m_scenario(scenario) {}

AskedAnswers::AskedAnswers(BenchNode& node, const Scenario&)
    : m_capabilityHandler(&node.capabilityHandler())
    , m_acmHandler(&node.acmHandler())
    , m_frameFormat(&node.frameFormat())
    , m_systemPowerController(&node.systemPowerController())
    , m_hardwareConfigurationHandler(&node.hardwareConfigurationHandler()) {}

LimitFamily AskedAnswers::family() const {
    return limitFamilyOf(m_capabilityHandler->getTmuHwProductNumber());
}

void AskedAnswers::selection(ModulationAndCoding& min, ModulationAndCoding& max) const {
    if (m_acmHandler->getMinMaxModulationAndCode(min, max) >= failure) {
        min = max = {ModulationAndCoding::UNDEFINED};
    }
}

Modulation AskedAnswers::modulation() const {
    return m_frameFormat->getModulation();
}

Modulation AskedAnswers::maxAvailable() const {
    return m_frameFormat->getMaxAvailableModulation();
}

EFrameFormatMarket AskedAnswers::market(long id) const {
    if (id < 1) {
        return m_frameFormat->getTelecomMarket();
    }
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    m_hardwareConfigurationHandler->getTelecomMarket(channel, id, market);
    return market;
}

EDpdVersion AskedAnswers::dpdVersion(long id) const {
    return id < 1 ? m_frameFormat->getDpdVersion()
                  : m_hardwareConfigurationHandler->getDpdVersion(channel, id);
}

EChannelSpacingType AskedAnswers::channelSpacing(long id) const {
    if (id < 1) {
        return m_frameFormat->getChannelSpacing();
    }
    EChannelSpacingType spacing{};
    m_hardwareConfigurationHandler->getChannelSpacing(channel, id, spacing);
    return spacing;
}

EReferenceSEC AskedAnswers::referenceSec() const {
    return m_systemPowerController->getReferenceSec();
}

Modulation AskedAnswers::radioMaximum(long id, EFrameFormatMarket market) const {
    if (!m_capabilityHandler->isMaxAcmLimitedByHw()) {
        return m_capabilityHandler->getMaxModulationWithoutLimitation(market);
    }
    std::vector<short> profiles;
    if (os::bsp::rl::isFftypeCarrierAggregation()) {
        if (id < 1) {
            m_frameFormat->getCarrierAggregationPerformanceProfiles(profiles);
        } else {
            m_hardwareConfigurationHandler->getCarrierAggregationPerformanceProfiles(channel, id,
                                                                                     profiles);
        }
    } else if (id < 1) {
        m_frameFormat->getPerformanceProfiles(profiles);
    } else {
        m_hardwareConfigurationHandler->getPerformanceProfiles(channel, id, profiles);
    }
    const short index = m_capabilityHandler->getPerformanceProfileIndex();
    return m_capabilityHandler->getMaxModulationLimitedByHw(profiles, index);
}

bool AskedAnswers::offset(EChannelSpacingType spacing, long& offset) const {
    return m_systemPowerController->getMinOutputPowerOffset(spacing, offset);
}

EChannelSpacingType AskedAnswers::spacingOfRecord(long id) const {
    std::vector<FrameFormatRecord> records;
    m_hardwareConfigurationHandler->getFrameFormatRecords(false, records);
    for (const FrameFormatRecord& record : records) {
        if (record.id == id) {
            return static_cast<int>(record.channelSpacing) == 3000 ? EChannelSpacingType{}
                                                                   : record.channelSpacing;
        }
    }
    return {};
}

const std::vector<ModulationAndCoding>&
AskedAnswers::codes(long id, std::vector<ModulationAndCoding>& room) const {
    if (id < 1) {
        m_frameFormat->getModulationAndCodeArray(room);
    } else {
        m_hardwareConfigurationHandler->getModulationAndCodeArray(channel, id, room);
    }
    return room;
}

const std::int32_t* AskedAnswers::compensation(std::uint32_t& size) const {
    const void* array = nullptr;
    const void* arraySize = nullptr;
    CStorageManager_GetVariableContentAddressByName("channel.1.tx.rf.pmax.cs.comp.v2.array", &array,
                                                    &size);
    CStorageManager_GetVariableContentAddressByName("channel.1.tx.rf.pmax.cs.comp.v2.arraysize",
                                                    &arraySize, nullptr);
    size = std::min(size, *static_cast<const std::uint32_t*>(arraySize));
    return static_cast<const std::int32_t*>(array);
}

// What is done with the answers

template <class Answers>
LimitBy<Answers>::LimitBy(BenchNode& node, const Scenario& scenario)
    : m_answers(node, scenario)
    , m_minOutputPower(scenario.minOutputPower)
    , m_cutback(static_cast<long>(scenario.cutback))
    , m_boosterPresence(scenario.boosterPresence)
    , m_boosterGain(scenario.boosterGain)
    , m_boosterMaxInputPower(scenario.boosterMaxInputPower)
    , m_boosterMaxModulation(scenario.boosterMaxModulation)
    , m_booster{}
    , m_band{} {
    fill(m_kam, CalculatorKam::initialize(), absent);
    fill(m_vo4, CalculatorVo4::initialize(), absent);
    fill(m_vo5, CalculatorVo5::initialize(), absent);
    for (const auto& [key, adjustment] : CalculatorVo5::initializeBoosterAdjs()) {
        m_booster[exponentIn(std::get<1>(key))] = adjustment;
    }
    for (const auto& [key, adjustment] : CalculatorVo5::initializeBoosterBandAdjs()) {
        if (std::get<0>(key) == 0) {
            m_band[exponentIn(std::get<1>(key))] = adjustment;
        }
    }
    for (auto& tables : m_pmax) {
        for (Pmax& pmax : tables) {
            pmax = {scenario.pmaxTable.data(), scenario.pmaxCount};
        }
    }
}

template <class Answers>
bool LimitBy<Answers>::Pmax::find(Modulation modulation, long& power) const {
    const auto wanted = static_cast<int>(modulation);
    const int* row = table;
    const int* const end = table + count;
    // Four rows a turn: keeping count of them costs as much as comparing them.
    for (; end - row >= 8; row += 8) {
        for (int i = 0; i < 8; i += 2) {
            if (row[i] == wanted) {
                power = row[i + 1];
                return true;
            }
        }
    }
    for (; row < end; row += 2) {
        if (row[0] == wanted) {
            power = row[1];
            return true;
        }
    }
    return false;
}

template <class Answers>
const typename LimitBy<Answers>::Pmax* LimitBy<Answers>::pmax(EDpdVersion dpdVersion,
                                                              bool isAnsi) const {
    if (dpdVersion < EDpdVersion::Dpd1 || dpdVersion > EDpdVersion::Dpd3) {
        return nullptr;
    }
    return &m_pmax[dpdVersion == EDpdVersion::Dpd1 ? 0 : 1][isAnsi ? 1 : 0];
}

template <class Answers>
long LimitBy<Answers>::compensation(EChannelSpacingType spacing) const {
    const LimitFamily family = m_answers.family();
    if (family == LimitFamily::OlderRadioUnit || family == LimitFamily::NewerRadioUnit) {
        return 0;
    }
    std::uint32_t size = 0;
    const std::int32_t* pair = m_answers.compensation(size);
    for (; size > 1; size -= 2, pair += 2) {
        if (pair[0] == static_cast<int>(spacing)) {
            return pair[1];
        }
    }
    return 0;
}

template <class Answers>
Modulation LimitBy<Answers>::limited(long id, Modulation available) const {
    const EFrameFormatMarket market = m_answers.market(id);
    // The undefined modulation is above every other.
    return std::min(m_answers.radioMaximum(id, market), available);
}

template <class Answers>
long LimitBy<Answers>::minOutputPower(EChannelSpacingType spacing) const {
    long offset = 0;
    return m_answers.offset(spacing, offset) ? m_minOutputPower + offset : m_minOutputPower;
}

template <class Answers>
typename LimitBy<Answers>::Shared
LimitBy<Answers>::shared(EDpdVersion dpdVersion, EFrameFormatMarket market, EReferenceSEC rsec,
                         Modulation selectedMin, Modulation selectedMax, Modulation available,
                         long compensation, long cutback) const {
    const bool isAnsi = market == EFrameFormatMarket::Ansi;
    Shared shared{};
    shared.pmax = pmax(dpdVersion, isAnsi);
    shared.rsec = isAnsi ? 0 : static_cast<std::size_t>(rsec);
    shared.hasSelectedMin =
        shared.pmax != nullptr && shared.pmax->find(selectedMin, shared.pmaxSelectedMin);
    shared.pmaxSelectedMin -= cutback;
    shared.selectedMin = selectedMin;
    shared.selectedMax = selectedMax;
    shared.available = available;
    shared.compensation = compensation - cutback;
    shared.cutback = cutback;
    return shared;
}

template <class Answers>
int LimitBy<Answers>::adaptive(const Shared& shared, Modulation actual, long& power) const {
    long pmaxActual = 0;
    if (!shared.hasSelectedMin || !shared.pmax->find(actual, pmaxActual) || shared.rsec > 9) {
        return noEntry;
    }
    pmaxActual -= shared.cutback;
    const LimitFamily family = m_answers.family();
    // The reference's Pmax must be known in every family, also where nothing is computed from it.
    const Modulation reference = family == LimitFamily::OlderRadioUnit ? Modulation::QAM256
                                 : family == LimitFamily::NewerRadioUnit
                                     ? std::min(shared.selectedMax, Modulation::QAM4096)
                                     : shared.available;
    long pmaxReference = 0;
    if (!shared.pmax->find(reference, pmaxReference)) {
        return noEntry;
    }
    switch (family) {
    case LimitFamily::Outdoor1: {
        const auto& offsets = m_kam[8][shared.rsec];
        const int referenceOffset = offsets[exponentIn(shared.available)];
        const int actualOffset = offsets[exponentIn(actual)];
        const int minOffset = offsets[exponentIn(shared.selectedMin)];
        if (actualOffset == absent) {
            return noEntry;
        }
        const long base =
            shared.compensation + (referenceOffset == absent ? 0 : pmaxReference - referenceOffset);
        power = std::min({pmaxActual, base + actualOffset, shared.pmaxSelectedMin});
        if (minOffset != absent) {
            power = std::min(power, base + minOffset);
        }
        return 0;
    }
    case LimitFamily::Outdoor3: {
        const long uncompensated = pmaxActual - shared.compensation;
        long cap = 0;
        if (shared.rsec != 0) {
            shared.pmax->find(shared.rsec == 1   ? Modulation::QAM16
                              : shared.rsec == 2 ? Modulation::QAM32
                                                 : Modulation::QAM64,
                              cap);
        }
        power =
            (shared.rsec == 0 ? uncompensated : std::min(cap, uncompensated)) + shared.compensation;
        return 0;
    }
    case LimitFamily::OlderRadioUnit:
    case LimitFamily::NewerRadioUnit: {
        const bool isNewer = family == LimitFamily::NewerRadioUnit;
        if (isNewer && shared.selectedMax < actual) {
            return 2;
        }
        if (m_boosterPresence != 0 && actual > m_boosterMaxModulation) {
            return 2;
        }
        const int offset = isNewer
                               ? m_vo5[exponentIn(std::max(shared.selectedMax, Modulation::QAM128))]
                                      [shared.rsec][exponentIn(actual)]
                               : m_vo4[8][shared.rsec][exponentIn(actual)];
        if (offset == absent) {
            return noEntry;
        }
        power = std::min(pmaxReference + offset, pmaxActual);
        if (m_boosterPresence != 0) {
            power += m_booster[exponentIn(actual)] + m_band[exponentIn(actual)];
            power = std::min({power - m_boosterGain, m_boosterMaxInputPower, pmaxActual});
        }
        return 0;
    }
    }
    return 0;
}

template <class Answers>
int LimitBy<Answers>::fixed(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation selected,
                            Modulation modulation, long compensation, long cutback,
                            long& power) const {
    if (m_boosterPresence == 0) {
        const Pmax* const pmax = this->pmax(dpdVersion, market == EFrameFormatMarket::Ansi);
        long selectedPmax = 0;
        long modulationPmax = 0;
        if (pmax != nullptr) {
            pmax->find(selected, selectedPmax);
            pmax->find(modulation, modulationPmax);
        }
        power = std::min(selectedPmax, modulationPmax) - cutback + compensation;
        return 0;
    }
    const EReferenceSEC rsec = m_answers.referenceSec();
    const Modulation available = limited(0, m_answers.maxAvailable());
    const Shared shared = this->shared(dpdVersion, market, rsec, selected, selected, available,
                                       compensation, cutback);
    long selectedPower = 0;
    long modulationPower = 0;
    const int first = adaptive(shared, selected, selectedPower);
    const int second = adaptive(shared, modulation, modulationPower);
    if (first >= failure || second >= failure) {
        return failure;
    }
    power = std::min(selectedPower, modulationPower);
    return 0;
}

template <class Answers>
QOR_WHOLE int LimitBy<Answers>::calculatePowerCapabilities(Modulation modulation, long& minPower,
                                                           long& maxPower) const {
    minPower = minOutputPower(m_answers.channelSpacing(0));
    ModulationAndCoding min{};
    ModulationAndCoding max{};
    m_answers.selection(min, max);
    Modulation selectedMin = limitModulationOf(min);
    if (selectedMin == Modulation::UNDEFINED &&
        (selectedMin = m_answers.modulation()) == Modulation::UNDEFINED) {
        return failure;
    }
    const long compensation = this->compensation(m_answers.channelSpacing(0));
    const EDpdVersion dpdVersion = m_answers.dpdVersion(0);
    const EFrameFormatMarket market = m_answers.market(0);
    return fixed(dpdVersion, market, selectedMin, modulation, compensation, m_cutback, maxPower);
}

template <class Answers>
QOR_WHOLE int LimitBy<Answers>::calculateAdmodPowerCapabilities(Modulation actual,
                                                                EReferenceSEC rsec, long& minPower,
                                                                long& maxPower) const {
    ModulationAndCoding min{};
    ModulationAndCoding max{};
    m_answers.selection(min, max);
    Modulation selectedMin = limitModulationOf(min);
    if (selectedMin == Modulation::UNDEFINED &&
        (selectedMin = m_answers.modulation()) == Modulation::UNDEFINED) {
        return failure;
    }
    const Modulation available = limited(0, m_answers.maxAvailable());
    Modulation selectedMax = limitModulationOf(max);
    if (selectedMax == Modulation::UNDEFINED) {
        selectedMax = available;
    }
    const long compensation = this->compensation(m_answers.channelSpacing(0));
    const EDpdVersion dpdVersion = m_answers.dpdVersion(0);
    const EFrameFormatMarket market = m_answers.market(0);
    const Shared shared = this->shared(dpdVersion, market, rsec, selectedMin, selectedMax,
                                       available, compensation, m_cutback);
    const int result = adaptive(shared, actual, maxPower);
    if (result == 0) {
        minPower = minOutputPower(m_answers.channelSpacing(0));
    }
    return result;
}

template <class Answers>
QOR_WHOLE int LimitBy<Answers>::findPminPmax(long& pmin, long& pmax) const {
    const EDpdVersion dpdVersion = m_answers.dpdVersion(0);
    const Pmax* const found =
        this->pmax(dpdVersion, m_answers.market(0) != EFrameFormatMarket::Etsi);
    if (found == nullptr) {
        return failure;
    }
    int highest = INT32_MIN;
    for (int i = 1; i < found->count; i += 2) {
        highest = std::max(highest, found->table[i]);
    }
    pmax = highest;
    pmin = minOutputPower(m_answers.channelSpacing(0));
    return 0;
}

template <class Answers>
QOR_WHOLE int LimitBy<Answers>::getUnrestrictedPmax(long& pmax) const {
    const Modulation modulation = m_answers.modulation();
    const long compensation = this->compensation(m_answers.channelSpacing(0));
    const EDpdVersion dpdVersion = m_answers.dpdVersion(0);
    const EFrameFormatMarket market = m_answers.market(0);
    fixed(dpdVersion, market, modulation, modulation, compensation, 0, pmax);
    return 0;
}

template <class Answers>
QOR_WHOLE int LimitBy<Answers>::getMinMaxOutputPowerVsModulationArray(
    long id, long& minPower, std::map<ModulationAndCoding, long>& powerMap) const {
    const EReferenceSEC rsec = m_answers.referenceSec();
    ModulationAndCoding min{};
    ModulationAndCoding max{};
    m_answers.selection(min, max);
    Modulation selectedMin = limitModulationOf(min);
    Modulation selectedMax = limitModulationOf(max);
    m_answers.selection(min, max);
    const bool isAdaptive = min != max;

    std::vector<ModulationAndCoding> room;
    const auto askCodes = [&]() -> const std::vector<ModulationAndCoding>& {
        return m_answers.codes(id, room);
    };
    const std::vector<ModulationAndCoding>* codes = id < 1 ? &askCodes() : nullptr;
    const EDpdVersion dpdVersion = m_answers.dpdVersion(id);
    const EFrameFormatMarket market = m_answers.market(id);
    if (codes == nullptr) {
        codes = &askCodes();
    }
    const EChannelSpacingType spacing = m_answers.channelSpacing(id);
    if (codes->empty()) {
        return 32771;
    }
    const auto [lowest, highest] = std::minmax_element(codes->begin(), codes->end());
    const Modulation available = limitModulationOf(*highest);
    if (available == Modulation::UNDEFINED) {
        return 32771;
    }
    if (selectedMin == Modulation::UNDEFINED) {
        selectedMin = limitModulationOf(*lowest);
    }
    const Modulation limitedMax = limited(id, available);
    if (selectedMax == Modulation::UNDEFINED) {
        selectedMax = available;
    }
    const long compensation = this->compensation(spacing);
    const Shared shared = this->shared(dpdVersion, market, rsec, selectedMin, selectedMax,
                                       limitedMax, compensation, m_cutback);
    Modulation last = Modulation::UNDEFINED;
    long power = 0;
    auto place = powerMap.begin();
    for (const ModulationAndCoding& code : *codes) {
        const Modulation modulation = limitModulationOf(code);
        if (limitedMax < modulation) {
            continue;
        }
        if (modulation != last) {
            const int result = isAdaptive ? adaptive(shared, modulation, power)
                                          : fixed(dpdVersion, market, selectedMin, modulation,
                                                  compensation, m_cutback, power);
            if (result != 0) {
                continue;
            }
            last = modulation;
        }
        if (place != powerMap.end() && place->first == code) {
            place->second = power;
            ++place;
        } else {
            place = std::next(powerMap.insert_or_assign(place, code, power));
        }
    }
    minPower = minOutputPower(id < 1 ? m_answers.channelSpacing(0) : m_answers.spacingOfRecord(id));
    return 0;
}

template class LimitBy<HandedAnswers>;
template class LimitBy<AskedAnswers>;
