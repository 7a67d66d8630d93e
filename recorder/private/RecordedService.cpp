#include "RecordedService.h"

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
    RequestScope scope(*recording, Call::GetMinMaxOutputPowerVsModulationArray);
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
        auto entry = powerMap.begin();
        bool isTooWide = false;
        for (std::size_t left = entries; left > 0; --left, ++entry) {
            *at++ = entry->first.code;
            *at++ = wordOf(entry->second);
            isTooWide |= RequestScope::isTooWide(entry->second);
        }
        if (isTooWide) {
            scope.doubt(Doubt::tooWide);
        }
        return wordOf(entries);
    };
    words[0] = wordOf(Call::GetMinMaxOutputPowerVsModulationArray);
    words[2] = scope.word(minOutputPower);
    words[3] = scope.word(frameFormatId);
    words[4] = minModulationAndCodeIn.code;
    words[5] = maxModulationAndCodeIn.code;
    words[6] = wordOf(referenceSec);
    words[8] = addMap();
    words[1] = wordOf(m_real.getMinMaxOutputPowerVsModulationArray(
        frameFormatId, minModulationAndCodeIn, maxModulationAndCodeIn, referenceSec, minOutputPower,
        powerMap));
    words[7] = scope.word(minOutputPower);
    addMap();
    scope.end(words.data(), count, &powerMap);
    return static_cast<unsigned>(words[1]);
}

unsigned RecordedService::setTemporaryPowerCutback(bool use, unsigned long cutback) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setTemporaryPowerCutback(use, cutback);
    }
    RequestScope scope(*recording, Call::SetTemporaryPowerCutback);
    const unsigned result = m_real.setTemporaryPowerCutback(use, cutback);
    const Word words[] = {wordOf(Call::SetTemporaryPowerCutback), wordOf(result), 0, use ? 1 : 0,
                          scope.word(cutback)};
    scope.end(words, std::size(words));
    return result;
}

unsigned RecordedService::setPowerCutback(unsigned long cutback) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setPowerCutback(cutback);
    }
    RequestScope scope(*recording, Call::SetPowerCutback);
    const unsigned result = m_real.setPowerCutback(cutback);
    const Word words[] = {wordOf(Call::SetPowerCutback), wordOf(result), 0, scope.word(cutback)};
    scope.end(words, std::size(words));
    return result;
}

int RecordedService::calculatePowerCapabilities(Modulation modulation, long& minPower,
                                                long& maxPower) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.calculatePowerCapabilities(modulation, minPower, maxPower);
    }
    RequestScope scope(*recording, Call::CalculatePowerCapabilities);
    const long minBefore = minPower;
    const long maxBefore = maxPower;
    const int result = m_real.calculatePowerCapabilities(modulation, minPower, maxPower);
    const Word words[] = {wordOf(Call::CalculatePowerCapabilities),
                          result,
                          scope.word(maxBefore),
                          wordOf(modulation),
                          scope.word(minPower),
                          scope.word(maxPower)};
    compareMinimum(scope, minBefore, minPower, maxBefore);
    scope.end(words, std::size(words));
    return result;
}

int RecordedService::calculateAdmodPowerCapabilities(Modulation actualModulation,
                                                     EReferenceSEC rsec, long& minPower,
                                                     long& maxPower) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.calculateAdmodPowerCapabilities(actualModulation, rsec, minPower, maxPower);
    }
    RequestScope scope(*recording, Call::CalculateAdmodPowerCapabilities);
    const long minBefore = minPower;
    const long maxBefore = maxPower;
    const int result =
        m_real.calculateAdmodPowerCapabilities(actualModulation, rsec, minPower, maxPower);
    const Word words[] = {wordOf(Call::CalculateAdmodPowerCapabilities),
                          result,
                          scope.word(maxBefore),
                          wordOf(actualModulation),
                          wordOf(rsec),
                          scope.word(minPower),
                          scope.word(maxPower)};
    compareMinimum(scope, minBefore, minPower, maxBefore);
    scope.end(words, std::size(words));
    return result;
}

int RecordedService::findPminPmax(long& pmin, long& pmax) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.findPminPmax(pmin, pmax);
    }
    RequestScope scope(*recording, Call::FindPminPmax);
    const long minBefore = pmin;
    const long maxBefore = pmax;
    const int result = m_real.findPminPmax(pmin, pmax);
    const Word words[] = {wordOf(Call::FindPminPmax), result, scope.word(maxBefore),
                          scope.word(pmin), scope.word(pmax)};
    compareMinimum(scope, minBefore, pmin, maxBefore);
    scope.end(words, std::size(words));
    return result;
}

int RecordedService::getUnrestrictedPmax(long& pmax) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.getUnrestrictedPmax(pmax);
    }
    RequestScope scope(*recording, Call::GetUnrestrictedPmax);
    const long before = pmax;
    const int result = m_real.getUnrestrictedPmax(pmax);
    const Word words[] = {wordOf(Call::GetUnrestrictedPmax), result, scope.word(before),
                          scope.word(pmax)};
    scope.end(words, std::size(words));
    return result;
}

unsigned RecordedService::setTemperature(long temperature) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setTemperature(temperature);
    }
    RequestScope scope(*recording, Call::SetTemperature);
    const unsigned result = m_real.setTemperature(temperature);
    const Word words[] = {wordOf(Call::SetTemperature), wordOf(result), 0, scope.word(temperature)};
    scope.end(words, std::size(words));
    return result;
}

unsigned RecordedService::setBoosterPresence(int presence, int gain, int maxInputPower,
                                             Modulation maxModulation) {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return m_real.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
    }
    RequestScope scope(*recording, Call::SetBoosterPresence);
    const unsigned result = m_real.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
    const Word words[] = {wordOf(Call::SetBoosterPresence),
                          wordOf(result),
                          0,
                          presence,
                          gain,
                          maxInputPower,
                          wordOf(maxModulation)};
    scope.end(words, std::size(words));
    return result;
}
