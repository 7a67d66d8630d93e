#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// The last answer of one word that a recording holds of a question, to be compared without its
/// lock.
class KnownWord {
public:
    bool is(std::int32_t word) const {
        return m_word.load(std::memory_order_relaxed) == static_cast<std::uint32_t>(word);
    }
    void set(std::int32_t word) const {
        m_word.store(static_cast<std::uint32_t>(word), std::memory_order_relaxed);
    }
    void forget() { m_word.store(nothing, std::memory_order_relaxed); }

private:
    static constexpr std::uint64_t nothing = ~std::uint64_t{0}; ///< no word has that many bits

    // What a decorator knows of its neighbour is no part of its state to others, so that its
    // operations are const. In one piece, and what else is read because of it is read behind the
    // lock, which whoever set it had taken.
    mutable std::atomic<std::uint64_t> m_word{nothing};
};

/// Whether a version is still what it was before something was read; one barrier for all of it.
inline bool isStill(const std::atomic<std::uint32_t>& version, std::uint32_t before) {
    std::atomic_thread_fence(std::memory_order_acquire);
    return version.load(std::memory_order_relaxed) == before;
}

/// Likewise of a few words. One thread sets it at a time: who holds the lock.
template <std::size_t count>
class KnownAnswer {
public:
    using Words = std::array<std::int32_t, count>;

    /// @param words as many as there are; apart, so that they stay in registers.
    template <class... Each>
    bool is(Each... words) const {
        static_assert(sizeof...(words) == count);
        const std::uint32_t version = m_version.load(std::memory_order_acquire);
        std::size_t index = 0;
        return ((m_words[index++].load(std::memory_order_relaxed) == words) && ...) &&
               version % 2 == 0 && isStill(m_version, version);
    }

    void set(const Words& words) {
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        m_version.store(version | 1, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        for (std::size_t index = 0; index < count; ++index) {
            m_words[index].store(words[index], std::memory_order_relaxed);
        }
        m_version.store((version | 1) + 1, std::memory_order_release);
    }

    void forget() {
        // As if they were being written: a version never comes twice, so nobody who compares
        // meanwhile takes words of before for those of after.
        m_version.store(m_version.load(std::memory_order_relaxed) | 1, std::memory_order_release);
    }

private:
    std::atomic<std::uint32_t> m_version{1}; ///< odd: nothing is known, or it is being written
    std::array<std::atomic<std::int32_t>, count> m_words{};
};

/// Likewise of a text of 8 to 32 characters; others are never known.
class KnownText {
public:
    bool is(const std::string& text) const {
        const std::uint32_t version = m_version.load(std::memory_order_acquire);
        const std::size_t length = text.size();
        // Without a known text the length is 0, and no text that is compared has that.
        if (m_length.load(std::memory_order_relaxed) != length || length == 0 || version % 2 != 0) {
            return false;
        }
        // The word that overlaps the one before it has a place of its own.
        const char* at = text.data();
        const char* const last = at + length - sizeof(Word);
        if (m_last.load(std::memory_order_relaxed) != wordAt(last)) {
            return false;
        }
        for (const auto& word : m_words) {
            if (at >= last) {
                break;
            }
            if (word.load(std::memory_order_relaxed) != wordAt(at)) {
                return false;
            }
            at += sizeof(Word);
        }
        return isStill(m_version, version);
    }

    void set(const std::string& text) {
        const std::size_t length = text.size();
        if (length < sizeof(Word) || length > m_words.size() * sizeof(Word)) {
            forget();
            return;
        }
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        m_version.store(version | 1, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        m_length.store(length, std::memory_order_relaxed);
        const char* const last = text.data() + length - sizeof(Word);
        std::size_t index = 0;
        for (const char* at = text.data(); at < last; at += sizeof(Word), ++index) {
            m_words[index].store(wordAt(at), std::memory_order_relaxed);
        }
        m_last.store(wordAt(last), std::memory_order_relaxed);
        m_version.store((version | 1) + 1, std::memory_order_release);
    }

    void forget() {
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        m_version.store(version | 1, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        m_length.store(0, std::memory_order_relaxed);
        m_version.store((version | 1) + 1, std::memory_order_release);
    }

private:
    using Word = std::size_t;

    static Word wordAt(const char* characters) {
        Word word = 0;
        std::memcpy(&word, characters, sizeof word);
        return word;
    }

    std::atomic<std::uint32_t> m_version{0};
    std::atomic<std::size_t> m_length{0};
    std::atomic<Word> m_last{0};
    std::array<std::atomic<Word>, 32 / sizeof(Word)> m_words{};
};
