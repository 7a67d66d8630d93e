#include "RecordedService.h"

#include <algorithm>
#include <array>

namespace {

using Word = Tape::Word;

/// Entries of power maps before and after a query, together: every code twice, and some.
constexpr std::size_t mostEntries = 128;

/// A radio file has one preset for all outputs. It is that of the maximum power, because a family
/// may count from what it finds there; another one shows in an output that was left alone.
void compareMinimum(RequestScope& scope, long minBefore, long minAfter, long maxBefore) {
    if (minBefore != maxBefore && minAfter == minBefore) {
        scope.doubt(Doubt::twoPresets);
    }
}

/// Copies the first entries of a power map.
/// @return whether a power has more than 32 bits.
__attribute__((noinline)) bool copyEntries(const std::map<ModulationAndCoding, long>& powerMap,
                                           Word* at, std::size_t entries) {
    auto entry = powerMap.begin();
    long notSigned = 0;
    for (const Word* const end = at + 2 * entries; at != end; at += 2) {
        const long power = entry->second;
        at[0] = entry->first.code;
        ++entry;
        at[1] = wordOf(power);
        notSigned |= power ^ wordOf(power);
    }
    const auto isTooWide = [](const auto& any) { return RequestScope::isTooWide(any.second); };
    return notSigned != 0 && std::any_of(powerMap.begin(), powerMap.end(), isTooWide);
}

} // namespace

unsigned RecordedService::getMinMaxOutputPowerVsModulationArray(
    long frameFormatId, ModulationAndCoding minModulationAndCodeIn,
    ModulationAndCoding maxModulationAndCodeIn, EReferenceSEC referenceSec, long& minOutputPower,
    std::map<ModulationAndCoding, long>& powerMap) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.getMinMaxOutputPowerVsModulationArray(frameFormatId, minModulationAndCodeIn,
                                                            maxModulationAndCodeIn, referenceSec,
                                                            minOutputPower, powerMap);
    }
    RequestScope scope(*recording);
    constexpr std::size_t fixed = 9;
    std::array<Word, fixed + 2 * mostEntries> words;
    std::size_t count = fixed;
    const auto addMap = [&] {
        const std::size_t room = (words.size() - count) / 2;
        std::size_t entries = powerMap.size();
        if (entries > room) {
            scope.doubt(Doubt::longMap);
            entries = room;
        }
        Word* at = words.data() + count;
        count += 2 * entries;
        if (copyEntries(powerMap, at, entries)) {
            scope.doubt(Doubt::tooWide);
        }
        return wordOf(entries);
    };
    const auto wordOfNumber = [&](long number) {
        if (RequestScope::isTooWide(number)) {
            scope.doubt(Doubt::tooWide);
        }
        return wordOf(number);
    };
    words[0] = wordOf(Call::GetMinMaxOutputPowerVsModulationArray);
    words[2] = wordOfNumber(minOutputPower);
    words[3] = wordOfNumber(frameFormatId);
    words[4] = minModulationAndCodeIn.code;
    words[5] = maxModulationAndCodeIn.code;
    words[6] = wordOf(referenceSec);
    words[8] = addMap();
    words[1] = wordOf(scope.ask(Call::GetMinMaxOutputPowerVsModulationArray, [&] {
        return m_real.getMinMaxOutputPowerVsModulationArray(frameFormatId, minModulationAndCodeIn,
                                                            maxModulationAndCodeIn, referenceSec,
                                                            minOutputPower, powerMap);
    }));
    words[7] = wordOfNumber(minOutputPower);
    addMap();
    scope.end(words.data(), count, powerMap);
    return static_cast<unsigned>(words[1]);
}

unsigned RecordedService::setTemporaryPowerCutback(bool use, unsigned long cutback) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setTemporaryPowerCutback(use, cutback);
    }
    RequestScope scope(*recording);
    const unsigned result = scope.ask(Call::SetTemporaryPowerCutback, [&] {
        return m_real.setTemporaryPowerCutback(use, cutback);
    });
    scope.end(Call::SetTemporaryPowerCutback, result, 0, use ? 1 : 0, cutback);
    return result;
}

unsigned RecordedService::setPowerCutback(unsigned long cutback) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setPowerCutback(cutback);
    }
    RequestScope scope(*recording);
    const unsigned result =
        scope.ask(Call::SetPowerCutback, [&] { return m_real.setPowerCutback(cutback); });
    scope.end(Call::SetPowerCutback, result, 0, cutback);
    return result;
}

int RecordedService::calculatePowerCapabilities(Modulation modulation, long& minPower,
                                                long& maxPower) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.calculatePowerCapabilities(modulation, minPower, maxPower);
    }
    RequestScope scope(*recording);
    const long minBefore = minPower;
    const long maxBefore = maxPower;
    const int result = scope.ask(Call::CalculatePowerCapabilities, [&] {
        return m_real.calculatePowerCapabilities(modulation, minPower, maxPower);
    });
    compareMinimum(scope, minBefore, minPower, maxBefore);
    scope.end(Call::CalculatePowerCapabilities, result, maxBefore, modulation, minPower, maxPower);
    return result;
}

int RecordedService::calculateAdmodPowerCapabilities(Modulation actualModulation,
                                                     EReferenceSEC rsec, long& minPower,
                                                     long& maxPower) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.calculateAdmodPowerCapabilities(actualModulation, rsec, minPower, maxPower);
    }
    RequestScope scope(*recording);
    const long minBefore = minPower;
    const long maxBefore = maxPower;
    const int result = scope.ask(Call::CalculateAdmodPowerCapabilities, [&] {
        return m_real.calculateAdmodPowerCapabilities(actualModulation, rsec, minPower, maxPower);
    });
    compareMinimum(scope, minBefore, minPower, maxBefore);
    scope.end(Call::CalculateAdmodPowerCapabilities, result, maxBefore, actualModulation, rsec,
              minPower, maxPower);
    return result;
}

int RecordedService::findPminPmax(long& pmin, long& pmax) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.findPminPmax(pmin, pmax);
    }
    RequestScope scope(*recording);
    const long minBefore = pmin;
    const long maxBefore = pmax;
    const int result =
        scope.ask(Call::FindPminPmax, [&] { return m_real.findPminPmax(pmin, pmax); });
    compareMinimum(scope, minBefore, pmin, maxBefore);
    scope.end(Call::FindPminPmax, result, maxBefore, pmin, pmax);
    return result;
}

int RecordedService::getUnrestrictedPmax(long& pmax) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.getUnrestrictedPmax(pmax);
    }
    RequestScope scope(*recording);
    const long before = pmax;
    const int result =
        scope.ask(Call::GetUnrestrictedPmax, [&] { return m_real.getUnrestrictedPmax(pmax); });
    scope.end(Call::GetUnrestrictedPmax, result, before, pmax);
    return result;
}

unsigned RecordedService::setTemperature(long temperature) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setTemperature(temperature);
    }
    RequestScope scope(*recording);
    const unsigned result =
        scope.ask(Call::SetTemperature, [&] { return m_real.setTemperature(temperature); });
    scope.end(Call::SetTemperature, result, 0, temperature);
    return result;
}

unsigned RecordedService::setBoosterPresence(int presence, int gain, int maxInputPower,
                                             Modulation maxModulation) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
    }
    RequestScope scope(*recording);
    const unsigned result = scope.ask(Call::SetBoosterPresence, [&] {
        return m_real.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
    });
    scope.end(Call::SetBoosterPresence, result, 0, presence, gain, maxInputPower, maxModulation);
    return result;
}
