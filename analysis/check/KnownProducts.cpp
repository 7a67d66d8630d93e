#include "KnownProducts.h"

const std::vector<std::string>& knownProducts() {
    // The library hands out no list; a test asks it about each of these.
    static const std::vector<std::string> numbers{
        // first and third outdoor family
        "QZT 846 57",
        "QZT 846 001",
        "QZT 846 003",
        // older radio units
        "QZT35201/1",
        "QZT35201/11",
        "QZT35201/12",
        "QZT35202/1",
        "QZT35203/1",
        "QZT35204/1",
        "QZT35205/1",
        "QZT35205/1HP",
        "QZT35206/1",
        "QZT35207/1",
        "QZT35208/1",
        "QZT35221/1",
        "QZT35221/11",
        "QZT35221/12",
        "QZT35222/1",
        "QZT35223/1",
        "QZT35224/1",
        "QZT35225/1",
        "QZT35226/1",
        "QZT35227/1",
    };
    return numbers;
}
