#include "Recording.h"

#include "CStorageManager.h"
#include "CallName.h"
#include "ResultCode.h"

#include <cstdio>
#include <new>
#include <utility>

namespace {

/// What the store counts in elements may not run behind what a radio file can hold.
constexpr std::uint32_t mostElements = 1024;
constexpr std::size_t mostRows = 256; ///< likewise of a Pmax table

} // namespace

Recording::Recording(RadioChannel channel, std::size_t bytes, void (*requestMissed)(void*),
                     void* owner)
    : m_channel(channel)
    , m_requestMissed(requestMissed)
    , m_owner(owner)
    , m_tape(channel, bytes) {
    const char* const pattern = "channel.%u.tx.rf.pmax.cs.comp.v2.array%s";
    std::snprintf(m_arrayName.data(), m_arrayName.size(), pattern, channel, "");
    std::snprintf(m_sizeName.data(), m_sizeName.size(), pattern, channel, "size");
}

bool Recording::noteLocked(Question question, std::int32_t argument, const void* bytes,
                           std::size_t length) noexcept {
    Tape::Slot* const slot = m_tape.slotOf(question, argument);
    if (slot == nullptr) {
        return false;
    }
    const std::uint32_t before = m_tape.changes();
    const bool isKept = m_tape.answer(*slot, bytes, length);
    const std::uint32_t now = m_tape.changes();
    if (now != before) {
        m_changes.store(now, std::memory_order_relaxed);
        if (isAsking()) {
            ++ofThread.request->changesExpected;
            if ((ofThread.asked & bitOf(question)) != 0) {
                ofThread.request->doubt |= Doubt::changedMeanwhile;
            }
        }
    }
    return isKept;
}

bool Recording::hasSucceeded(Question question) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    const Tape::Slot* const slot = m_tape.slotOf(question, 0);
    if (slot == nullptr || slot->now == 0) {
        return false;
    }
    const Tape::Word* const words = m_tape.wordsOf(slot->now);
    const auto shape = static_cast<Shape>(words[0]);
    return (shape != Shape::ResultOnly && shape != Shape::WroteAndFailed) ||
           !ResultCode::isFailure(words[1]);
}

void Recording::noteByKey(Question question, Question last, const KnownAnswer<2>::Words& words,
                          KnownAnswer<2>& known) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    const bool isKept = noteLocked(question, words[0], &words[1], sizeof words[1]);
    // Other keys have other answers: that is no change.
    Tape::Slot* const slot = m_tape.slotOf(last, 0);
    if (slot != nullptr && m_tape.answer(*slot, &words[1], sizeof words[1], false) && isKept) {
        known.set(words);
    }
}

void Recording::noteText(Question question, const std::string& text, KnownText& known) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    if (noteLocked(question, 0, text.data(), text.size())) {
        known.set(text);
    }
}

void Recording::notePmax(Question question, const int* table, int count) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    const auto length = static_cast<std::size_t>(count);
    Tape::Word* const words = m_tape.scratch(length <= 2 * mostRows ? length + 1 : ~std::size_t{0});
    if (words == nullptr) {
        if (Tape::Slot* const slot = m_tape.slotOf(question, 0)) {
            slot->isLost = true;
        }
        return;
    }
    // Rows are whole: behind an odd count stands a power.
    const bool isHidden = count % 2 != 0 && table[count] != 0;
    words[0] = static_cast<Tape::Word>(isHidden ? Shape::HiddenPower : Shape::Value);
    for (std::size_t index = 0; index < length; ++index) {
        words[index + 1] = table[index];
    }
    noteLocked(question, 0, words, (length + 1) * sizeof(Tape::Word));
}

void Recording::noteRecords(const std::vector<FrameFormatRecord>& records) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    Tape::Word* const words =
        m_tape.scratch(records.size() <= mostElements ? 2 * records.size() : ~std::size_t{0});
    if (words == nullptr) {
        return;
    }
    std::size_t index = 0;
    for (const FrameFormatRecord& record : records) {
        words[index++] = static_cast<Tape::Word>(record.id);
        words[index++] = static_cast<Tape::Word>(record.channelSpacing);
    }
    noteLocked(Question::FrameFormatRecords, 0, words, index * sizeof(Tape::Word));
}

void Recording::noteVariables() noexcept {
    if (!isAsking()) {
        return;
    }
    const void* array = nullptr;
    const void* size = nullptr;
    std::uint32_t count = 1;
    std::uint32_t arrayStatus = 0;
    std::uint32_t sizeStatus = 0;
    bool hasThrown = false;
    try {
        arrayStatus =
            CStorageManager_GetVariableContentAddressByName(m_arrayName.data(), &array, &count);
        sizeStatus =
            CStorageManager_GetVariableContentAddressByName(m_sizeName.data(), &size, nullptr);
    } catch (...) {
        // A store that is out of memory for the recorder may have some for the service.
        hasThrown = true;
    }
    const std::lock_guard<BriefLock> lock(m_lock);
    if (hasThrown) {
        ++m_tape.losses().answersLost;
        return;
    }
    if (!isVariableNow(Question::CompensationArray, arrayStatus, array, count)) {
        noteVariable(Question::CompensationArray, arrayStatus, array, count);
    }
    if (!isVariableNow(Question::CompensationSize, sizeStatus, size, 1)) {
        noteVariable(Question::CompensationSize, sizeStatus, size, 1);
    }
}

inline bool Recording::isVariableNow(Question question, std::uint32_t status, const void* address,
                                     std::uint32_t count) noexcept {
    if (ResultCode::isFailure(status) || address == nullptr) {
        return false;
    }
    const Tape::Slot* const slot = m_tape.slotOf(question, 0);
    return slot != nullptr &&
           m_tape.isNow(*slot, wordOf(Shape::Value), address, count * sizeof(Tape::Word));
}

void Recording::noteVariable(Question question, std::uint32_t status, const void* address,
                             std::uint32_t count) noexcept {
    Shape shape = Shape::Value;
    if (ResultCode::isFailure(status)) {
        shape = Shape::ResultOnly;
        count = 0;
    } else if (address == nullptr) {
        shape = Shape::NoAddress;
        count = 0;
    }
    const Tape::Word first = wordOf(shape);
    const std::size_t length = count * sizeof(Tape::Word);
    Tape::Slot* const slot = m_tape.slotOf(question, 0);
    if (slot == nullptr || m_tape.isNow(*slot, first, address, length)) {
        return;
    }
    Tape::Word* const words = m_tape.scratch(count <= mostElements ? count + 1 : ~std::size_t{0});
    if (words == nullptr) {
        slot->isLost = true;
        return;
    }
    words[0] = first;
    for (std::uint32_t index = 0; index < count; ++index) {
        words[index + 1] = static_cast<const Tape::Word*>(address)[index];
    }
    noteLocked(question, 0, words, length + sizeof(Tape::Word));
}

void Recording::start(bool isRefused) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    m_tape.start(isRefused);
}

void Recording::noteOutside() noexcept {
    {
        const std::lock_guard<BriefLock> lock(m_lock);
        ++m_tape.losses().askedOutside;
    }
    if (m_requestMissed != nullptr) {
        m_requestMissed(m_owner);
    }
}

void Recording::request(const Tape::Word* words, std::size_t count, RequestUnderWay& asked,
                        const std::map<ModulationAndCoding, long>* powerMap) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    if (asked.doubt != Doubt::threw) {
        doubtChanges(asked);
    }
    m_tape.request(words, count, asked.doubt);
    if (m_isArmed.load(std::memory_order_relaxed)) {
        pullTrigger(words, powerMap);
    }
}

void Recording::pullTrigger(const Tape::Word* words,
                            const std::map<ModulationAndCoding, long>* powerMap) noexcept {
    const auto call = static_cast<Call>(words[0]);
    RecordedRequest request{
        nameOf(call), Modulation::UNDEFINED, static_cast<unsigned>(words[1]), nullptr, nullptr,
        powerMap};
    long minPower = 0;
    long maxPower = 0;
    const auto hasPowers = [&](long min, long max) {
        minPower = min;
        maxPower = max;
        request.minPower = &minPower;
        request.maxPower = &maxPower;
    };
    if (call == Call::CalculatePowerCapabilities) {
        request.modulation = Modulation{words[3]};
        hasPowers(words[4], words[5]);
    } else if (call == Call::CalculateAdmodPowerCapabilities) {
        request.modulation = Modulation{words[3]};
        hasPowers(words[5], words[6]);
    } else if (call == Call::FindPminPmax) {
        hasPowers(words[3], words[4]);
    } else if (call == Call::GetUnrestrictedPmax) {
        hasPowers(0, words[3]);
        request.minPower = nullptr;
    } else if (call == Call::GetMinMaxOutputPowerVsModulationArray) {
        hasPowers(words[7], 0);
        request.maxPower = nullptr;
    }
    try {
        if (!m_trigger(request)) {
            return;
        }
    } catch (...) {
        ++m_tape.losses().predicateThrew;
        return;
    }
    m_kept->copyFrom(m_tape);
    m_isArmed.store(false, std::memory_order_relaxed);
    m_isTriggered.store(true, std::memory_order_release);
}

bool Recording::copyTo(Tape& tape) const noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    const bool hasTrigger = m_kept != nullptr;
    if (!hasMemory() || !tape.hasMemory() || (hasTrigger && !isTriggered())) {
        return false;
    }
    tape.copyFrom(hasTrigger ? *m_kept : m_tape);
    return true;
}

bool Recording::arm(RecordingTrigger trigger) {
    std::unique_ptr<Tape> kept;
    if (trigger) {
        kept.reset(new (std::nothrow) Tape(m_channel, m_tape.size()));
        if (kept == nullptr || !kept->hasMemory()) {
            return false;
        }
    }
    const std::lock_guard<BriefLock> lock(m_lock);
    // What was there before ends outside of the lock.
    std::swap(m_kept, kept);
    std::swap(m_trigger, trigger);
    m_isTriggered.store(false, std::memory_order_release);
    m_isArmed.store(m_kept != nullptr, std::memory_order_relaxed);
    return true;
}

std::size_t Recording::requestCount() const noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    std::size_t count = 0;
    for (std::uint32_t index = 0; hasMemory() && index < m_tape.stepCount(); ++index) {
        count += m_tape.step(index).slot == Tape::Step::request ? 1U : 0U;
    }
    return count;
}
