#pragma once

#include "ModulationAndCoding.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>

/// What a neighbour, the store or the board was asked. Some questions have an argument.
enum class Question : std::uint8_t {
    ProductNumber, ///< bytes of the text; all others are 32-bit words
    MinOutputPower,
    PmaxDpd1Ansi,
    PmaxDpd2Ansi,
    PmaxDpd1Etsi,
    PmaxDpd2Etsi,
    MaxAcmLimitedByHw,
    PerformanceProfileIndex,
    MaxModulationLimitedByHw,       ///< by performance profile, or noProfile
    MaxModulationWithoutLimitation, ///< by market
    AcmSelection,
    Modulation,
    MaxAvailableModulation,
    ModulationAndCodes,
    ChannelSpacing,
    DpdVersion,
    Market,
    PerformanceProfiles,
    CarrierAggregationPerformanceProfiles,
    ReferenceSec,
    MinOutputPowerOffset, ///< by channel spacing
    FrameFormatRecords,
    IdDpdVersion, ///< by frame-format id, as all that follow
    IdMarket,
    IdModulationAndCodes,
    IdChannelSpacing,
    IdPerformanceProfiles,
    IdCarrierAggregationPerformanceProfiles,
    CompensationArray,
    CompensationSize,
    CarrierAggregation,
    LastMaxModulationLimitedByHw, ///< whatever the profile was
    LastMaxModulationWithoutLimitation,
    End
};

/// The argument that stands for an index outside the list of profiles.
constexpr std::int32_t noProfile = 0x10000;

/// The first word of an answer that can fail.
enum class Shape : std::int32_t {
    Value,          ///< the words that follow were written
    ResultOnly,     ///< a result code follows, and nothing was written
    WroteAndFailed, ///< a result code follows, and something was written all the same
    HiddenPower,    ///< of a Pmax table with an odd count: what stands behind the count is not 0
    NoAddress       ///< of a stored variable: it can be read, but has no content
};

/// The operations of the service, in the words of a request: the call, its result, what the power
/// outputs held before, then arguments and outputs.
enum class Call : std::int32_t {
    Initialize,
    SetPowerCutback,
    SetTemporaryPowerCutback,
    SetTemperature,
    SetBoosterPresence,
    CalculatePowerCapabilities,
    CalculateAdmodPowerCapabilities,
    FindPminPmax,
    GetUnrestrictedPmax,
    GetMinMaxOutputPowerVsModulationArray
};

/// What is unsure about a request, as bits.
namespace Doubt {
constexpr std::uint16_t changedMeanwhile = 1; ///< an answer changed while it was under way
constexpr std::uint16_t twoPresets = 2;       ///< an untouched output held something else
constexpr std::uint16_t tooWide = 4;          ///< a number had more than 32 bits
constexpr std::uint16_t threw = 8;            ///< an exception came out of it
constexpr std::uint16_t longMap = 16;         ///< its power maps had too many entries
} // namespace Doubt

/// A lock for a few instructions. Who finds it taken sleeps, so that a thread of low priority can
/// finish.
class BriefLock {
public:
    void lock() {
        if (m_isTaken.exchange(true, std::memory_order_acquire)) {
            wait();
        }
    }
    void unlock() { m_isTaken.store(false, std::memory_order_release); }

private:
    void wait();

    std::atomic<bool> m_isTaken{false};
};

/// A recording in one block of memory that is taken once: the answers as they stand, each stored
/// once however often it came, and the last requests. When it is full the oldest entries go; what
/// they did to the state stays in it.
///
/// Not guarded: whoever uses it holds the lock of the recording.
class Tape {
public:
    using Word = std::int32_t;

    /// One step of the recording: a request, or an answer that is new from here on.
    struct Step {
        static constexpr std::uint16_t request = 0xffff;
        std::uint16_t slot; ///< of the answer, or `request`
        std::uint16_t doubt;
        std::uint32_t value; ///< 0: not known
    };

    /// A question, the answer before the first step and the one after the last.
    struct Slot {
        Question question;
        bool isLost; ///< an answer did not fit
        std::int32_t argument;
        std::uint32_t before; ///< value; 0: not known
        std::uint32_t now;
    };

    /// The operator's inputs that the steps left behind have set.
    struct Inputs {
        Word cutback, useTemporary, temporaryCutback, temperature, booster[4];
        bool hasCutback, hasTemporary, hasTemperature, hasBooster;
    };

    /// What does not fit into the steps.
    struct Losses {
        std::uint32_t stepsFolded;    ///< requests that were left behind
        std::uint32_t requestsLost;   ///< requests that did not fit
        std::uint32_t answersLost;    ///< answers that did not fit
        std::uint32_t askedOutside;   ///< questions outside of recorded requests
        std::uint32_t predicateThrew; ///< a trigger that threw
        bool refusedAtRestart;        ///< a start was refused, and is left behind
    };

    /// @param servedChannel in whose name variables are stored.
    /// @param bytes of memory; without it nothing is recorded.
    Tape(std::uint32_t servedChannel, std::size_t bytes) noexcept;

    bool hasMemory() const { return m_block != nullptr; }
    std::size_t size() const { return m_size; }
    std::uint32_t channel() const { return m_channel; }

    /// Copies another tape of the same size.
    void copyFrom(const Tape& other) noexcept;

    /// The slot of a question; null if there is no room for one more.
    Slot* slotOf(Question question, std::int32_t argument) noexcept;

    /// Notes an answer; changes() counts those that are not the first and other than the last.
    /// @param isCounted whether another answer is one of the changes().
    /// @return whether it is kept.
    bool answer(Slot& slot, const void* bytes, std::size_t length, bool isCounted = true) noexcept;

    /// Whether the answer of a slot is this word and what follows it.
    bool isNow(const Slot& slot, Word first, const void* rest, std::size_t length) const;

    /// Likewise a list, behind the word of a value.
    template <class Element, class ToWord>
    bool isListNow(const Slot& slot, const Element* elements, std::size_t count,
                   ToWord toWord) const;

    /// Notes a request.
    void request(const Word* words, std::size_t count, std::uint16_t doubt) noexcept;

    /// Likewise, if the same one was among the last; the words stay in registers.
    /// @return false: nothing is noted.
    template <class... Each>
    bool isRepeated(std::uint16_t doubt, Word call, Each... others) noexcept;

    /// Notes that the service has fetched its tables.
    void start(bool isRefused) noexcept;

    /// Room to build an answer in; null if it is too long to be kept.
    Word* scratch(std::size_t words) noexcept;

    // Reading

    std::uint32_t slotCount() const { return head().slotCount; }
    Slot& slot(std::uint32_t index) const { return slots()[index]; }
    std::uint32_t stepCount() const { return head().stepCount; }
    const Step& step(std::uint32_t index) const;
    const Word* wordsOf(std::uint32_t value) const;
    std::uint32_t lengthOf(std::uint32_t value) const; ///< in bytes

    /// Makes the oldest step part of the state.
    void fold() noexcept;

    Losses& losses() { return head().losses; }
    const Losses& losses() const { return head().losses; }
    const Inputs& inputs() const { return head().inputs; }
    bool isStarted() const { return head().isStarted; }
    std::uint32_t changes() const { return head().changes; }

private:
    struct Value {
        std::uint32_t place;  ///< of its bytes in the pool
        std::uint32_t length; ///< in bytes
        std::uint32_t users;  ///< 0: free
        std::uint32_t hash;
        std::uint32_t next; ///< in its bucket, or of the free ones
    };

    struct Head {
        std::uint32_t slotCount, slotCapacity;
        std::uint32_t firstStep, stepCount, stepCapacity;
        std::uint32_t valueCapacity, freeValue, bucketMask;
        std::uint32_t poolSize, poolEnd, poolDead;
        std::uint32_t scratchWords;
        std::uint32_t slotsAt, stepsAt, valuesAt, bucketsAt, poolAt, scratchAt;
        std::uint32_t changes;
        bool isStarted;
        Inputs inputs;
        Losses losses;
        std::uint16_t slotOfQuestion[static_cast<std::size_t>(Question::End)]; ///< its last + 1
        std::uint32_t recent[16]; ///< the last values of requests, by their beginning
    };

    template <class T>
    T* at(std::uint32_t place) const {
        // Every part of the block begins at a multiple of 8.
        return static_cast<T*>(static_cast<void*>(m_block.get() + place));
    }
    Head& head() const { return *at<Head>(0); }
    Slot* slots() const { return at<Slot>(head().slotsAt); }
    Value& value(std::uint32_t id) const { return at<Value>(head().valuesAt)[id]; }
    unsigned char* pool() const { return at<unsigned char>(head().poolAt); }
    bool holds(std::uint32_t id, const void* bytes, std::size_t length) const;
    std::uint32_t intern(const void* bytes, std::size_t length) noexcept;
    std::uint32_t takeRoom(std::size_t length) noexcept;
    void compact() noexcept;
    Slot* findSlot(Question question, std::int32_t argument) noexcept;
    std::uint32_t& recent(Word call, Word argument) const;
    void pushRequest(std::uint32_t id, std::uint16_t doubt) noexcept;
    void repeat(std::uint32_t id, std::uint16_t doubt, bool isQuery) noexcept;
    void release(std::uint32_t id) noexcept;
    void end(std::uint32_t id) noexcept;
    void foldInput(Call call, const Word* words) noexcept;
    void push(const Step& step) noexcept;

    std::uint32_t m_channel;
    std::size_t m_size;
    std::unique_ptr<unsigned char[]> m_block;
};

// What every request does, so that it costs no calls.

/// A value as a word of the recording.
template <class Value>
constexpr Tape::Word wordOf(Value value) {
    return static_cast<Tape::Word>(value);
}

inline Tape::Slot* Tape::slotOf(Question question, std::int32_t argument) noexcept {
    const std::uint16_t last = head().slotOfQuestion[static_cast<std::size_t>(question)];
    return last > 0 && slots()[last - 1].argument == argument ? &slots()[last - 1]
                                                              : findSlot(question, argument);
}

inline bool Tape::isNow(const Slot& slot, Word first, const void* rest, std::size_t length) const {
    const Value& known = value(slot.now);
    const auto* const words = at<const Word>(head().poolAt + known.place);
    // Value 0, of no answer, has no bytes.
    if (known.length != sizeof(Word) + length || words[0] != first) {
        return false;
    }
    return length == 0 || std::memcmp(words + 1, rest, length) == 0;
}

template <class Element, class ToWord>
bool Tape::isListNow(const Slot& slot, const Element* elements, std::size_t count,
                     ToWord toWord) const {
    const Value& known = value(slot.now);
    const auto* const words = at<const Word>(head().poolAt + known.place);
    if (known.length != (count + 1) * sizeof(Word) || words[0] != wordOf(Shape::Value)) {
        return false;
    }
    if constexpr (std::is_same_v<Element, ModulationAndCoding>) {
        // A code is one word, and lists of codes are long.
        return count == 0 || std::memcmp(words + 1, elements, count * sizeof(Word)) == 0;
    }
    Word difference = 0;
    for (std::size_t index = 0; index < count; ++index) {
        difference |= words[index + 1] ^ toWord(elements[index]);
    }
    return difference == 0;
}

inline std::uint32_t& Tape::recent(Word call, Word argument) const {
    return head().recent[static_cast<std::uint32_t>(call * 5 ^ argument ^ (argument >> 5)) & 15];
}

template <class... Each>
inline __attribute__((always_inline)) bool Tape::isRepeated(std::uint16_t doubt, Word call,
                                                            Each... others) noexcept {
    constexpr std::size_t argument = 2; // of the others
    std::size_t index = 0;
    Word first = 0;
    ((first = index++ == argument ? others : first), ...);
    const std::uint32_t id = recent(call, first);
    const Value& known = value(id);
    const auto* words = at<const Word>(head().poolAt + known.place);
    if (known.users == 0 || known.length != (1 + sizeof...(others)) * sizeof(Word) ||
        *words != call || !((*++words == others) && ...)) {
        return false;
    }
    repeat(id, doubt, static_cast<Call>(call) >= Call::CalculatePowerCapabilities);
    return true;
}

inline __attribute__((always_inline)) void Tape::repeat(std::uint32_t id, std::uint16_t doubt,
                                                        bool isQuery) noexcept {
    Head& parts = head();
    if (isQuery && parts.stepCount == parts.stepCapacity) {
        const Step& oldest = at<const Step>(parts.stepsAt)[parts.firstStep];
        if (oldest.value == id && oldest.slot == Step::request && oldest.doubt == doubt) {
            // The oldest goes, changes no state, and comes again as the newest in its place.
            const std::uint32_t next = parts.firstStep + 1;
            parts.firstStep = next == parts.stepCapacity ? 0 : next;
            ++parts.losses.stepsFolded;
            return;
        }
    }
    pushRequest(id, doubt);
}
