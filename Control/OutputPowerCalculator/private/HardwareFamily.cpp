#include "HardwareFamily.h"

#include <array>
#include <cstddef>
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

/// Whether two numbers are equal. Their first and their last eight characters overlap, and a
/// compiler compares eight without a call.
bool isEqual(std::string_view left, std::string_view right) {
    constexpr std::size_t part = 8;
    static_assert(part <= shortestNumber && longestNumber <= 2 * part, "no character is left out");
    return left.size() == right.size() && std::memcmp(left.data(), right.data(), part) == 0 &&
           std::memcmp(left.data() + left.size() - part, right.data() + right.size() - part,
                       part) == 0;
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
