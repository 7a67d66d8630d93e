#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// The last answer that a recording holds of a question, to be compared without its lock. One
/// thread sets it at a time: who holds the lock.
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
        const bool isSame = ((m_words[index++].load(std::memory_order_acquire) == words) && ...);
        // A single word is known once and for all. An odd version is being written.
        return isSame && version != 0 &&
               (count == 1 ||
                (version % 2 == 0 && m_version.load(std::memory_order_relaxed) == version));
    }

    void set(const Words& words) {
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        if (count > 1) {
            m_version.store(version | 1, std::memory_order_relaxed);
        }
        for (std::size_t index = 0; index < count; ++index) {
            m_words[index].store(words[index], std::memory_order_release);
        }
        m_version.store((version | 1) + 1, std::memory_order_release);
    }

    void forget() {
        // Several words stay as if they were being written: a version never comes twice, so nobody
        // who compares meanwhile takes words of before for those of after.
        m_version.store(count > 1 ? m_version.load(std::memory_order_relaxed) | 1 : 0,
                        std::memory_order_release);
    }

private:
    std::atomic<std::uint32_t> m_version{0}; ///< 0, or odd: nothing is known
    std::array<std::atomic<std::int32_t>, count> m_words{};
};

/// Likewise of a text of 8 to 32 characters; others are never known.
class KnownText {
public:
    bool is(const std::string& text) const {
        const std::uint32_t version = m_version.load(std::memory_order_acquire);
        const std::size_t length = text.size();
        // Without a known text the length is 0, and no text that is compared has that.
        if (m_length.load(std::memory_order_acquire) != length || length == 0 || version % 2 != 0) {
            return false;
        }
        const char* const characters = text.data();
        const char* const last = characters + length - sizeof(Word);
        std::size_t index = 0;
        for (const char* at = characters; at < last; at += sizeof(Word), ++index) {
            if (m_words[index].load(std::memory_order_acquire) != wordAt(at)) {
                return false;
            }
        }
        return m_words[index].load(std::memory_order_acquire) == wordAt(last) &&
               m_version.load(std::memory_order_relaxed) == version;
    }

    void set(const std::string& text) {
        const std::size_t length = text.size();
        if (length < sizeof(Word) || length > m_words.size() * sizeof(Word)) {
            forget();
            return;
        }
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        m_version.store(version | 1, std::memory_order_relaxed);
        m_length.store(length, std::memory_order_release);
        const char* const last = text.data() + length - sizeof(Word);
        std::size_t index = 0;
        for (const char* at = text.data(); at < last; at += sizeof(Word), ++index) {
            m_words[index].store(wordAt(at), std::memory_order_release);
        }
        // The last word overlaps the one before it.
        m_words[index].store(wordAt(last), std::memory_order_release);
        m_version.store((version | 1) + 1, std::memory_order_release);
    }

    void forget() {
        const std::uint32_t version = m_version.load(std::memory_order_relaxed);
        m_version.store(version | 1, std::memory_order_relaxed);
        m_length.store(0, std::memory_order_release);
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
    std::array<std::atomic<Word>, 32 / sizeof(Word)> m_words{};
};
