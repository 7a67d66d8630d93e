#include "HardwareFamily.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace {

struct Product {
    std::string_view number;
    HardwareFamily family;
};

constexpr Product products[] = {
    {"QZT 846 57", HardwareFamily::Outdoor1},
    {"QZT 846 001", HardwareFamily::Outdoor1},
    {"QZT 846 003", HardwareFamily::Outdoor3},
    {"QZT35201/1", HardwareFamily::OlderRadioUnit},
    {"QZT35201/11", HardwareFamily::OlderRadioUnit},
    {"QZT35201/12", HardwareFamily::OlderRadioUnit},
    {"QZT35202/1", HardwareFamily::OlderRadioUnit},
    {"QZT35203/1", HardwareFamily::OlderRadioUnit},
    {"QZT35204/1", HardwareFamily::OlderRadioUnit},
    {"QZT35205/1", HardwareFamily::OlderRadioUnit},
    {"QZT35205/1HP", HardwareFamily::OlderRadioUnit},
    {"QZT35206/1", HardwareFamily::OlderRadioUnit},
    {"QZT35207/1", HardwareFamily::OlderRadioUnit},
    {"QZT35208/1", HardwareFamily::OlderRadioUnit},
    {"QZT35221/1", HardwareFamily::OlderRadioUnit},
    {"QZT35221/11", HardwareFamily::OlderRadioUnit},
    {"QZT35221/12", HardwareFamily::OlderRadioUnit},
    {"QZT35222/1", HardwareFamily::OlderRadioUnit},
    {"QZT35223/1", HardwareFamily::OlderRadioUnit},
    {"QZT35224/1", HardwareFamily::OlderRadioUnit},
    {"QZT35225/1", HardwareFamily::OlderRadioUnit},
    {"QZT35226/1", HardwareFamily::OlderRadioUnit},
    {"QZT35227/1", HardwareFamily::OlderRadioUnit},
};

constexpr std::size_t shortestNumber = 10;
constexpr std::size_t longestNumber = 12;
constexpr std::size_t slotCount = 64;

/// Where a product stands in the slots, from the characters in which the numbers differ. The
/// factors were searched for so that no two products meet; a new product may need others.
constexpr std::size_t slotOf(std::string_view number) {
    const auto character = [number](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(number[place]));
    };
    return (2 * character(6) + 7 * character(7) + character(number.size() - 1) + number.size()) %
           slotCount;
}

/// Index of a product by its slot, one past the products where none stands.
constexpr std::array<unsigned char, slotCount> productsBySlot = [] {
    std::array<unsigned char, slotCount> slots{};
    for (unsigned char& slot : slots) {
        slot = std::size(products);
    }
    for (std::size_t i = 0; i != std::size(products); ++i) {
        slots[slotOf(products[i].number)] = static_cast<unsigned char>(i);
    }
    return slots;
}();

constexpr bool everyProductHasItsSlot = [] {
    for (std::size_t i = 0; i != std::size(products); ++i) {
        if (products[i].number.size() < shortestNumber ||
            products[i].number.size() > longestNumber ||
            productsBySlot[slotOf(products[i].number)] != i) {
            return false;
        }
    }
    return true;
}();
static_assert(everyProductHasItsSlot, "two products meet: choose other factors in slotOf()");

/// What the machine compares at once. The board's compiler calls a function to compare more.
using Word = std::uintptr_t;

bool isSameWord(const char* left, const char* right) {
    Word leftWord = 0;
    Word rightWord = 0;
    std::memcpy(&leftWord, left, sizeof(Word));
    std::memcpy(&rightWord, right, sizeof(Word));
    return leftWord == rightWord;
}

/// Whether two numbers are equal, compared word by word; the last word overlaps the one before.
bool isEqual(std::string_view left, std::string_view right) {
    static_assert(sizeof(Word) <= shortestNumber, "a number has a whole word");
    if (left.size() != right.size()) {
        return false;
    }
    const std::size_t last = left.size() - sizeof(Word);
    for (std::size_t place = 0; place < last; place += sizeof(Word)) {
        if (!isSameWord(left.data() + place, right.data() + place)) {
            return false;
        }
    }
    return isSameWord(left.data() + last, right.data() + last);
}

} // namespace

HardwareFamily hardwareFamilyOf(std::string_view productNumber) {
    if (productNumber.empty()) {
        return HardwareFamily::Outdoor1;
    }
    if (productNumber.size() >= shortestNumber && productNumber.size() <= longestNumber) {
        const std::size_t i = productsBySlot[slotOf(productNumber)];
        if (i < std::size(products) && isEqual(products[i].number, productNumber)) {
            return products[i].family;
        }
    }
    return HardwareFamily::NewerRadioUnit;
}
