#include "HardwareFamily.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

// The choice of the family, for every product number and whatever comes nearest to one.

namespace {

/// Every text that one character more, less or other makes of a text, and the text itself. The
/// characters are those of numbers and names, and the first and last of all.
std::vector<std::string> withinOneEdit(const std::string& text) {
    static const std::string characters =
        std::string("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz /-\xff") + '\0';
    std::vector<std::string> texts{text};
    for (std::size_t place = 0; place <= text.size(); ++place) {
        const std::string before = text.substr(0, place);
        const std::string behind = text.substr(place);
        for (const char character : characters) {
            texts.push_back(before + character + behind);
            if (!behind.empty()) {
                texts.push_back(before + character + behind.substr(1));
            }
        }
        if (!behind.empty()) {
            texts.push_back(before + behind.substr(1));
        }
    }
    return texts;
}

} // namespace

TEST(HardwareFamily, IsThatOfTheWholeProductNumberWithinOneEditOfEveryOne) {
    std::map<std::string, HardwareFamily> families = {{"", HardwareFamily::Outdoor1},
                                                      {"QZT 846 57", HardwareFamily::Outdoor1},
                                                      {"QZT 846 001", HardwareFamily::Outdoor1},
                                                      {"QZT 846 003", HardwareFamily::Outdoor3}};
    for (const char* const number :
         {"QZT35201/1", "QZT35201/11", "QZT35201/12",  "QZT35202/1",  "QZT35203/1",
          "QZT35204/1", "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",  "QZT35207/1",
          "QZT35208/1", "QZT35221/1",  "QZT35221/11",  "QZT35221/12", "QZT35222/1",
          "QZT35223/1", "QZT35224/1",  "QZT35225/1",   "QZT35226/1",  "QZT35227/1"}) {
        families[number] = HardwareFamily::OlderRadioUnit;
    }
    std::size_t cases = 0;
    for (const auto& [number, family] : families) {
        for (const std::string& text : withinOneEdit(number)) {
            const auto known = families.find(text);
            const HardwareFamily right =
                known == families.end() ? HardwareFamily::NewerRadioUnit : known->second;
            if (hardwareFamilyOf(text) != right) {
                FAIL() << '"' << text << '"';
            }
            ++cases;
        }
    }
    EXPECT_GT(cases, 30000U);
}
