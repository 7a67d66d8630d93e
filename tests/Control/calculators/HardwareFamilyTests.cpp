#include "HardwareFamily.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace {

/// Text that ends where readable memory ends: who reads behind it crashes.
class TextBeforeTheEdge {
public:
    TextBeforeTheEdge()
        : m_size(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)))
        , m_pages(::mmap(nullptr, 2 * m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                         -1, 0)) {
        if (m_pages == MAP_FAILED || ::mprotect(edge(), m_size, PROT_NONE) != 0) {
            throw std::bad_alloc();
        }
    }
    ~TextBeforeTheEdge() { ::munmap(m_pages, 2 * m_size); }
    TextBeforeTheEdge(const TextBeforeTheEdge&) = delete;
    TextBeforeTheEdge& operator=(const TextBeforeTheEdge&) = delete;

    std::string_view put(std::string_view text) {
        char* const start = edge() - text.size();
        std::memcpy(start, text.data(), text.size());
        return {start, text.size()};
    }

private:
    char* edge() const { return static_cast<char*>(m_pages) + m_size; }

    std::size_t m_size;
    void* m_pages;
};

} // namespace

TEST(HardwareFamilyOf, readsNothingBehindANumberOfAnyLength) {
    TextBeforeTheEdge text;

    for (std::size_t length = 1; length <= 20; ++length) {
        const std::string number(length, 'Q');
        EXPECT_EQ(hardwareFamilyOf(text.put(number)), HardwareFamily::NewerRadioUnit) << number;
    }
    EXPECT_EQ(hardwareFamilyOf(text.put("")), HardwareFamily::Outdoor1);
    EXPECT_EQ(hardwareFamilyOf(text.put("QZT35201/1")), HardwareFamily::OlderRadioUnit);
    EXPECT_EQ(hardwareFamilyOf(text.put("QZT35205/1HP")), HardwareFamily::OlderRadioUnit);
}

TEST(HardwareFamilyOf, aNumberThatDiffersInOneCharacterIsUnknown) {
    const std::string known = "QZT35205/1HP";

    for (std::size_t place = 0; place < known.size(); ++place) {
        std::string other = known;
        other[place] = '~';
        EXPECT_EQ(hardwareFamilyOf(other), HardwareFamily::NewerRadioUnit) << other;
    }
}

TEST(HardwareFamilyOf, whatGoesOnBehindAKnownNumberIsUnknown) {
    for (const char* number : {"QZT 846 571", "QZT 846 0011", "QZT 846 0031", "QZT35205/1HPX",
                               "QZT35205/1HPXYZW", "QZT35201/111", "QZT35201/1 "}) {
        EXPECT_EQ(hardwareFamilyOf(number), HardwareFamily::NewerRadioUnit) << number;
    }
}
