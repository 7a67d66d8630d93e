#include "Tape.h"

#include "ResultCode.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <new>
#include <thread>

namespace {

constexpr std::uint32_t none = 0;
constexpr std::size_t least = 8192;

/// What lies in front of a value's bytes in the pool.
struct PoolMark {
    std::uint32_t value; ///< 0: nobody's any more
    std::uint32_t room;  ///< bytes behind the mark
};

std::uint32_t hashOf(const unsigned char* bytes, std::size_t length) {
    std::uint32_t hash = 2166136261U;
    std::size_t at = 0;
    for (; at + 4 <= length; at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, bytes + at, 4);
        hash = (hash ^ word) * 16777619U;
        hash ^= hash >> 15;
    }
    for (; at < length; ++at) {
        hash = (hash ^ bytes[at]) * 16777619U;
    }
    return hash ^ (hash >> 13);
}

std::uint32_t aligned(std::size_t bytes) {
    return static_cast<std::uint32_t>((bytes + 7) & ~std::size_t{7});
}

bool isPmax(Question question) {
    return question >= Question::PmaxDpd1Ansi && question <= Question::PmaxDpd2Etsi;
}

} // namespace

void BriefLock::wait() {
    do {
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    } while (m_isTaken.exchange(true, std::memory_order_acquire));
}

Tape::Tape(std::uint32_t servedChannel, std::size_t bytes) noexcept
    : m_channel(servedChannel)
    , m_size(std::min(std::max(bytes, least), std::size_t{16} << 20) & ~std::size_t{7})
    , m_block(new (std::nothrow) unsigned char[m_size]) {
    if (m_block == nullptr) {
        return;
    }
    std::memset(m_block.get(), 0, m_size);
    Head& parts = *new (m_block.get()) Head{};
    const auto size = static_cast<std::uint32_t>(m_size);
    std::uint32_t place = aligned(sizeof(Head));
    const auto take = [&place](std::size_t bytesTaken) {
        const std::uint32_t start = place;
        place += aligned(bytesTaken);
        return start;
    };
    parts.slotCapacity = std::min(32 + size / 512, 4096U);
    parts.stepCapacity = size / 32;
    parts.valueCapacity = 32 + size / 256;
    parts.bucketMask = 31;
    while (parts.bucketMask < parts.valueCapacity / 2) {
        parts.bucketMask = parts.bucketMask * 2 + 1;
    }
    parts.scratchWords = std::min(size / 64, 8200U);
    parts.slotsAt = take(parts.slotCapacity * sizeof(Slot));
    parts.stepsAt = take(parts.stepCapacity * sizeof(Step));
    parts.valuesAt = take(parts.valueCapacity * sizeof(Value));
    parts.bucketsAt = take((parts.bucketMask + 1) * sizeof(std::uint32_t));
    parts.scratchAt = take(parts.scratchWords * sizeof(Word));
    parts.poolAt = place;
    parts.poolSize = size - place;
    // Value 0 stands for none.
    for (std::uint32_t id = parts.valueCapacity - 1; id > 0; --id) {
        value(id).next = parts.freeValue;
        parts.freeValue = id;
    }
}

void Tape::copyFrom(const Tape& other) noexcept {
    if (hasMemory() && other.hasMemory()) {
        std::memcpy(m_block.get(), other.m_block.get(), std::min(m_size, other.m_size));
    }
}

Tape::Slot* Tape::findSlot(Question question, std::int32_t argument) noexcept {
    Head& parts = head();
    std::uint16_t& last = parts.slotOfQuestion[static_cast<std::size_t>(question)];
    Slot* const all = slots();
    if (last > 0) {
        for (std::uint32_t index = 0; index < parts.slotCount; ++index) {
            if (all[index].question == question && all[index].argument == argument) {
                last = static_cast<std::uint16_t>(index + 1);
                return &all[index];
            }
        }
    }
    if (parts.slotCount == parts.slotCapacity) {
        ++parts.losses.answersLost;
        return nullptr;
    }
    all[parts.slotCount] = {question, false, argument, none, none};
    last = static_cast<std::uint16_t>(++parts.slotCount);
    return &all[last - 1];
}

bool Tape::holds(std::uint32_t id, const void* bytes, std::size_t length) const {
    const Value& known = value(id);
    return known.users > 0 && known.length == length &&
           (length == 0 || std::memcmp(pool() + known.place, bytes, length) == 0);
}

bool Tape::answer(Slot& slot, const void* bytes, std::size_t length, bool isCounted) noexcept {
    if (slot.now != none && holds(slot.now, bytes, length)) {
        return true;
    }
    const std::uint32_t id = intern(bytes, length);
    Head& parts = head();
    if (id == none) {
        slot.isLost = true;
        ++parts.losses.answersLost;
        return false;
    }
    value(id).users += 2; // the slot's own and another, before anything is released
    if (slot.now == none) {
        slot.before = slot.now = id;
        return true;
    }
    release(slot.now);
    slot.now = id;
    push({static_cast<std::uint16_t>(&slot - slots()), 0, id});
    parts.changes += isCounted ? 1U : 0U;
    return true;
}

void Tape::push(const Step& step) noexcept {
    Head& parts = head();
    if (parts.stepCount == parts.stepCapacity) {
        fold();
    }
    std::uint32_t place = parts.firstStep + parts.stepCount;
    if (place >= parts.stepCapacity) {
        place -= parts.stepCapacity;
    }
    at<Step>(parts.stepsAt)[place] = step;
    ++parts.stepCount;
}

void Tape::pushRequest(std::uint32_t id, std::uint16_t doubt) noexcept {
    ++value(id).users;
    push({Step::request, doubt, id});
}

void Tape::request(const Word* words, std::size_t count, std::uint16_t doubt) noexcept {
    std::uint32_t& recent = this->recent(words[0], words[3]);
    if (!holds(recent, words, count * sizeof(Word))) {
        const std::uint32_t id = intern(words, count * sizeof(Word));
        if (id == none) {
            ++head().losses.requestsLost;
            return;
        }
        recent = id;
    }
    // One that threw is not counted among those that are left behind.
    const bool isQuery =
        static_cast<Call>(words[0]) >= Call::CalculatePowerCapabilities && doubt != Doubt::threw;
    repeat(recent, doubt, isQuery);
}

void Tape::start(bool isRefused) noexcept {
    Head& parts = head();
    if (!parts.isStarted) {
        // The state of the file is the one that the service has really started in.
        for (std::uint32_t index = 0; index < parts.slotCount; ++index) {
            Slot& tables = slots()[index];
            if ((isPmax(tables.question) || tables.question == Question::MinOutputPower) &&
                tables.before != tables.now) {
                ++value(tables.now).users;
                release(tables.before);
                tables.before = tables.now;
            }
        }
        parts.isStarted = !isRefused;
        return;
    }
    const Word words[] = {static_cast<Word>(Call::Initialize), isRefused ? 1 : 0, 0, 0};
    request(words, 4, 0);
}

Tape::Word* Tape::scratch(std::size_t words) noexcept {
    if (words > head().scratchWords) {
        ++head().losses.answersLost;
        return nullptr;
    }
    return at<Word>(head().scratchAt);
}

const Tape::Step& Tape::step(std::uint32_t index) const {
    const Head& parts = head();
    std::uint32_t place = parts.firstStep + index;
    if (place >= parts.stepCapacity) {
        place -= parts.stepCapacity;
    }
    return at<Step>(parts.stepsAt)[place];
}

const Tape::Word* Tape::wordsOf(std::uint32_t id) const {
    return at<const Word>(head().poolAt + value(id).place);
}

std::uint32_t Tape::lengthOf(std::uint32_t id) const {
    return value(id).length;
}

void Tape::fold() noexcept {
    Head& parts = head();
    const Step oldest = at<Step>(parts.stepsAt)[parts.firstStep];
    parts.firstStep = parts.firstStep + 1 == parts.stepCapacity ? 0 : parts.firstStep + 1;
    --parts.stepCount;
    if (oldest.slot != Step::request) {
        Slot& slot = slots()[oldest.slot];
        const bool isRefusal =
            (slot.question == Question::MinOutputPower || isPmax(slot.question)) &&
            wordsOf(oldest.value)[0] != static_cast<Word>(Shape::Value);
        parts.losses.refusedAtRestart |= isRefusal;
        // The service keeps the minimum that it has, and a file that began with the refusal would
        // not start.
        if (isRefusal && slot.question == Question::MinOutputPower) {
            release(oldest.value);
            return;
        }
        release(slot.before);
        slot.before = oldest.value; // the step's share of it goes over
        return;
    }
    if (oldest.doubt == Doubt::threw) {
        release(oldest.value);
        return;
    }
    ++parts.losses.stepsFolded;
    const Word* const words = wordsOf(oldest.value);
    const auto call = static_cast<Call>(words[0]);
    if (call < Call::CalculatePowerCapabilities) {
        foldInput(call, words);
    }
    release(oldest.value);
}

void Tape::foldInput(Call call, const Word* words) noexcept {
    Inputs& inputs = head().inputs;
    if (call == Call::SetPowerCutback) {
        inputs.hasCutback = true;
        inputs.cutback = words[3];
    } else if (call == Call::SetTemporaryPowerCutback) {
        inputs.hasTemporary = true;
        inputs.useTemporary = words[3];
        inputs.temporaryCutback = words[4];
    } else if (call == Call::SetTemperature) {
        inputs.hasTemperature = true;
        inputs.temperature = words[3];
    } else if (call == Call::SetBoosterPresence) {
        inputs.hasBooster = true;
        std::copy(words + 3, words + 7, inputs.booster);
    }
}

std::uint32_t Tape::intern(const void* bytes, std::size_t length) noexcept {
    Head& parts = head();
    const std::uint32_t hash = hashOf(static_cast<const unsigned char*>(bytes), length);
    auto* const buckets = at<std::uint32_t>(parts.bucketsAt);
    for (std::uint32_t id = buckets[hash & parts.bucketMask]; id != none; id = value(id).next) {
        if (value(id).hash == hash && holds(id, bytes, length)) {
            return id;
        }
    }
    while (parts.freeValue == none && parts.stepCount > 0) {
        fold();
    }
    const std::uint32_t place = takeRoom(length);
    // Making room may have freed values, never taken one.
    if (parts.freeValue == none || place == none) {
        return none;
    }
    const std::uint32_t id = parts.freeValue;
    Value& fresh = value(id);
    parts.freeValue = fresh.next;
    fresh = {place, static_cast<std::uint32_t>(length), 0, hash, buckets[hash & parts.bucketMask]};
    buckets[hash & parts.bucketMask] = id;
    at<PoolMark>(parts.poolAt + place)[-1].value = id;
    std::memcpy(pool() + place, bytes, length);
    return id;
}

std::uint32_t Tape::takeRoom(std::size_t length) noexcept {
    Head& parts = head();
    const std::size_t needed = sizeof(PoolMark) + aligned(std::max(length, std::size_t{1}));
    if (needed > parts.poolSize) {
        return none;
    }
    if (parts.poolSize - parts.poolEnd < needed) {
        // Some more than is needed, or the next one would have to make room again.
        const std::size_t wanted =
            std::min<std::size_t>(parts.poolSize, needed + parts.poolSize / 8);
        while (parts.poolSize - parts.poolEnd + parts.poolDead < wanted && parts.stepCount > 0) {
            fold();
        }
        compact();
        if (parts.poolSize - parts.poolEnd < needed) {
            return none;
        }
    }
    auto* const mark = at<PoolMark>(parts.poolAt + parts.poolEnd);
    *mark = {none, static_cast<std::uint32_t>(needed - sizeof(PoolMark))};
    const std::uint32_t place = parts.poolEnd + static_cast<std::uint32_t>(sizeof(PoolMark));
    parts.poolEnd += static_cast<std::uint32_t>(needed);
    return place;
}

void Tape::compact() noexcept {
    Head& parts = head();
    std::uint32_t to = 0;
    for (std::uint32_t from = 0; from < parts.poolEnd;) {
        const auto* const mark = at<const PoolMark>(parts.poolAt + from);
        const auto size = static_cast<std::uint32_t>(sizeof(PoolMark)) + mark->room;
        const std::uint32_t id = mark->value;
        if (id != none) {
            std::memmove(pool() + to, pool() + from, size);
            value(id).place = to + static_cast<std::uint32_t>(sizeof(PoolMark));
            to += size;
        }
        from += size;
    }
    parts.poolEnd = to;
    parts.poolDead = 0;
}

void Tape::release(std::uint32_t id) noexcept {
    if (id != none && --value(id).users == 0) {
        end(id);
    }
}

void Tape::end(std::uint32_t id) noexcept {
    Head& parts = head();
    Value& old = value(id);
    std::uint32_t* link = &at<std::uint32_t>(parts.bucketsAt)[old.hash & parts.bucketMask];
    while (*link != id) {
        link = &value(*link).next;
    }
    *link = old.next;
    auto& mark = at<PoolMark>(parts.poolAt + old.place)[-1];
    mark.value = none;
    parts.poolDead += static_cast<std::uint32_t>(sizeof(PoolMark)) + mark.room;
    old.next = parts.freeValue;
    parts.freeValue = id;
}
