#include "RecentNames.h"

#include <utility>

namespace {

/// FNV-1a, then mixed so that the low bits depend on all; never 0, which marks an empty slot.
std::uint64_t markOf(std::string_view name) {
    std::uint64_t mark = 0xcbf29ce484222325;
    for (const char letter : name) {
        mark = (mark ^ static_cast<unsigned char>(letter)) * 0x100000001b3;
    }
    mark = (mark ^ (mark >> 32)) * 0x9e3779b97f4a7c15;
    mark ^= mark >> 29;
    return mark == 0 ? 1 : mark;
}

} // namespace

std::size_t RecentNames::placeOf(const std::vector<std::uint64_t>& table, std::uint64_t mark) {
    std::size_t place = mark % slots;
    while (table[place] != 0 && table[place] != mark) {
        place = (place + 1) % slots;
    }
    return place;
}

bool RecentNames::add(std::string_view name) {
    if (m_young.empty()) {
        m_young.resize(slots);
    }
    const std::uint64_t mark = markOf(name);
    const std::size_t place = placeOf(m_young, mark);
    if (m_young[place] == mark || (!m_old.empty() && m_old[placeOf(m_old, mark)] == mark)) {
        return false;
    }
    m_young[place] = mark;
    if (++m_count == remembered) {
        m_old = std::exchange(m_young, std::vector<std::uint64_t>(slots));
        m_count = 0;
    }
    return true;
}
