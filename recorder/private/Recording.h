#pragma once

#include "IHardwareConfigurationHandler.h"
#include "KnownAnswer.h"
#include "RadioChannel.h"
#include "RecordingTriggers.h"
#include "Tape.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class Recording;

/// Marks a variable that every call touches: its place in a thread is fixed when the library is
/// loaded.
#define QOR_OF_THREAD thread_local __attribute__((tls_model("initial-exec")))

/// A request of this thread.
struct RequestUnderWay {
    Recording* recording;
    RequestUnderWay* outer; ///< whose neighbour makes this one
    std::uint32_t askedByOuter;
    std::uint32_t changesExpected; ///< the recording's, if nobody else changes anything
    std::uint16_t doubt;
};

/// What a thread is at.
struct ThreadState {
    RequestUnderWay* request; ///< null: none
    std::uint32_t asked;      ///< questions of the request, as bits
};

inline QOR_OF_THREAD ThreadState ofThread{};

/// Marks a question as asked.
/// @param bit of the question.
inline void markAsked(std::uint32_t bit) {
    ThreadState* thread = &ofThread;
#ifdef __arm__
    // Or the compiler finds the place once to read and once more to write.
    __asm__("" : "+r"(thread));
#endif
    thread->asked |= bit;
}

/// What a recorder's decorators write to: a tape, its lock, and the trigger.
class Recording {
public:
    /// @param requestMissed is called, with the owner, when a neighbour is asked outside of a
    ///        request.
    Recording(RadioChannel channel, std::size_t bytes, void (*requestMissed)(void*), void* owner);

    static constexpr std::uint32_t bitOf(Question question) {
        return 1U << static_cast<unsigned>(question);
    }

    /// Whether a request of this recording is under way on this thread.
    bool isAsking() const {
        return ofThread.request != nullptr && ofThread.request->recording == this;
    }

    /// Notes an answer. Call with the lock held, and within a request or a start.
    /// @return whether it is kept.
    bool noteLocked(Question question, std::int32_t argument, const void* bytes,
                    std::size_t length) noexcept;

    /// Likewise an answer of words, with the lock taken.
    template <std::size_t count>
    void note(Question question, std::int32_t argument, const Tape::Word (&words)[count]) noexcept {
        const std::lock_guard<BriefLock> lock(m_lock);
        const Tape::Slot* const slot = m_tape.slotOf(question, argument);
        if (slot == nullptr ||
            m_tape.isNow(*slot, words[0], words + 1, (count - 1) * sizeof(Tape::Word))) {
            return;
        }
        noteLocked(question, argument, words, sizeof words);
    }

    /// Whether the last answer to a question for a table was no refusal.
    bool hasSucceeded(Question question) noexcept;

    /// Notes an answer of a first word and a list; nothing for one that is too long.
    template <class Element, class ToWord>
    void noteList(Question question, std::int32_t argument, const Element* elements,
                  std::size_t count, ToWord toWord) noexcept;

    /// Notes an answer of a few words, the first `keyCount` of which (0 or 1) are its argument, and
    /// that it is known now.
    template <std::size_t count>
    void noteKnown(Question question, std::size_t keyCount,
                   const std::array<std::int32_t, count>& words,
                   KnownAnswer<count>& known) noexcept {
        const std::lock_guard<BriefLock> lock(m_lock);
        if (noteLocked(question, keyCount > 0 ? words[0] : 0, words.data() + keyCount,
                       (count - keyCount) * sizeof(Tape::Word))) {
            known.set(words);
        }
    }

    void noteKnown(Question question, std::int32_t word, const KnownWord& known) noexcept {
        const std::lock_guard<BriefLock> lock(m_lock);
        if (noteLocked(question, 0, &word, sizeof word)) {
            known.set(word);
        }
    }

    /// Notes a modulation that was asked by a key, as that of the key and as the last one.
    void noteByKey(Question question, Question last, const KnownAnswer<2>::Words& words,
                   KnownAnswer<2>& known) noexcept;

    void noteText(Question question, const std::string& text, KnownText& known) noexcept;

    /// @param table at least `count` integers, in whole rows.
    void notePmax(Question question, const int* table, int count) noexcept;

    void noteRecords(const std::vector<FrameFormatRecord>& records) noexcept;

    /// Reads the variables that the families with a calibration read.
    void noteVariables() noexcept;

    /// Notes that the service fetches its tables.
    void start(bool isRefused) noexcept;

    /// Notes a question that belongs to no request.
    void noteOutside() noexcept;

    /// Notes a request, and lets the trigger see it.
    void request(const Tape::Word* words, std::size_t count, RequestUnderWay& asked,
                 const std::map<ModulationAndCoding, long>* powerMap) noexcept;

    /// Likewise of a request without a power map.
    template <class... Each>
    __attribute__((always_inline)) void requestOf(RequestUnderWay& asked, Each... words) noexcept {
        m_lock.lock();
        doubtChanges(asked);
        // A trigger sees every request.
        if (__builtin_expect(!m_isArmed.load(std::memory_order_relaxed) &&
                                 m_tape.isRepeated(asked.doubt, words...),
                             1)) {
            m_lock.unlock();
            return;
        }
        m_lock.unlock();
        newRequestOf(asked, words...);
    }

    std::uint32_t changes() const { return m_changes.load(std::memory_order_relaxed); }

    /// Copies what write() has to write.
    /// @return false if there is nothing.
    bool copyTo(Tape& tape) const noexcept;

    bool arm(RecordingTrigger trigger);
    bool isTriggered() const { return m_isTriggered.load(std::memory_order_acquire); }
    std::size_t requestCount() const noexcept;
    std::size_t size() const { return m_tape.size(); }
    bool hasMemory() const { return m_tape.hasMemory(); }
    RadioChannel channel() const { return m_channel; }

private:
    /// With the lock held, so that no other change comes between this and what is noted: whether
    /// another thread has noted an answer that this request may have seen both ways.
    void doubtChanges(RequestUnderWay& asked) const {
        if (changes() != asked.changesExpected) {
            asked.doubt |= Doubt::changedMeanwhile;
        }
    }

    template <class... Each>
    __attribute__((noinline)) void newRequestOf(RequestUnderWay& asked, Each... words) noexcept {
        const Tape::Word all[] = {words...};
        request(all, sizeof...(words), asked, nullptr);
    }

    void pullTrigger(const Tape::Word* words,
                     const std::map<ModulationAndCoding, long>* powerMap) noexcept;
    bool isVariableNow(Question question, std::uint32_t status, const void* address,
                       std::uint32_t count) noexcept;
    void noteVariable(Question question, std::uint32_t status, const void* address,
                      std::uint32_t count) noexcept;

    RadioChannel m_channel;
    void (*m_requestMissed)(void*);
    void* m_owner;
    mutable BriefLock m_lock;
    Tape m_tape;
    std::atomic<std::uint32_t> m_changes{0};
    std::atomic<bool> m_isArmed{false};
    std::atomic<bool> m_isTriggered{false};
    std::unique_ptr<Tape> m_kept; ///< of the trigger
    RecordingTrigger m_trigger;
    std::array<char, 64> m_arrayName{};
    std::array<char, 64> m_sizeName{};
};

/// A request from its beginning to its end.
class RequestScope {
public:
    explicit RequestScope(Recording& recording)
        : m_this{&recording, ofThread.request, ofThread.asked, recording.changes(), 0} {
        ofThread = {&m_this, 0};
    }

    RequestScope(const RequestScope&) = delete;
    RequestScope& operator=(const RequestScope&) = delete;

    /// Hands a request through; one that throws ends here.
    template <class Ask>
    auto ask(Call call, const Ask& ask) {
        try {
            return ask();
        } catch (...) {
            threw(call);
            throw;
        }
    }

    /// Whether a number is not one that 32 bits hold, with a sign or without.
    template <class Number>
    static bool isTooWide(Number number) {
        constexpr std::uint64_t half = std::uint64_t{1} << 31;
        return sizeof(Number) > sizeof(Tape::Word) &&
               static_cast<std::uint64_t>(number) + half >= 3 * half;
    }

    void doubt(std::uint16_t what) { m_this.doubt |= what; }

    /// The end of a request without a power map: its call, its result and its other words.
    template <class... Numbers>
    __attribute__((always_inline)) void end(Call call, Numbers... numbers) {
        if ((isTooWide(numbers) || ...)) {
            doubt(Doubt::tooWide);
        }
        leave();
        m_this.recording->requestOf(m_this, wordOf(call), wordOf(numbers)...);
    }

    /// The end of a request with a power map.
    void end(const Tape::Word* words, std::size_t count,
             const std::map<ModulationAndCoding, long>& powerMap) {
        leave();
        m_this.recording->request(words, count, m_this, &powerMap);
    }

private:
    void leave() { ofThread = {m_this.outer, m_this.askedByOuter}; }

    __attribute__((noinline)) void threw(Call call) {
        leave();
        const Tape::Word words[] = {wordOf(call), 0, 0, 0};
        // Nothing that it saw is played again.
        m_this.doubt = Doubt::threw;
        m_this.recording->request(words, 4, m_this, nullptr);
    }

    RequestUnderWay m_this;
};

template <class Element, class ToWord>
void Recording::noteList(Question question, std::int32_t argument, const Element* elements,
                         std::size_t count, ToWord toWord) noexcept {
    const std::lock_guard<BriefLock> lock(m_lock);
    Tape::Slot* const slot = m_tape.slotOf(question, argument);
    if (slot == nullptr || m_tape.isListNow(*slot, elements, count, toWord)) {
        return;
    }
    // Longer lists have no place in a radio file.
    constexpr std::size_t mostElements = 256;
    Tape::Word* const words = m_tape.scratch(count <= mostElements ? count + 1 : ~std::size_t{0});
    if (words == nullptr) {
        return;
    }
    words[0] = static_cast<Tape::Word>(Shape::Value);
    for (std::size_t index = 0; index < count; ++index) {
        words[index + 1] = toWord(elements[index]);
    }
    noteLocked(question, argument, words, (count + 1) * sizeof(Tape::Word));
}
