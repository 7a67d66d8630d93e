#pragma once

#include <string_view>

/// The hardware families that product numbers lead to. The second outdoor family is not among them:
/// no product has it.
enum class HardwareFamily {
    Outdoor1,
    Outdoor3,
    OlderRadioUnit,
    NewerRadioUnit
};

/// Family of a product number, compared as a whole and to the letter.
///
/// No product number (an empty one) means the first outdoor family, an unknown one the newer
/// radio-unit family: the difference is meant, because a capability handler of the former need not
/// know its product, while a radio that is newer than this list is of the latter. The cost does not
/// depend on the product.
HardwareFamily hardwareFamilyOf(std::string_view productNumber);
