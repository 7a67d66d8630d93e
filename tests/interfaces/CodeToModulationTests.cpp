#include "ModulationAndCoding.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <vector>

namespace {

struct Group {
    std::vector<std::int32_t> codes;
    std::int32_t modulation;
};

const std::vector<Group> groups = {
    {{10, 11, 12, 20, 21, 22}, 2}, {{23, 30, 31, 32}, 4},
    {{33, 40, 41, 42}, 16},        {{50, 51, 52}, 32},
    {{53, 60, 61, 62}, 64},        {{70, 71, 72}, 128},
    {{73, 80, 81, 82}, 256},       {{90, 91, 92}, 512},
    {{93, 100, 101, 102}, 1024},   {{110, 111, 112}, 2048},
    {{113, 120, 121, 122}, 4096},  {{130, 131, 132}, 8192},
    {{133, 140, 141, 142}, 16384}, {{143, 160, 161, 162}, 65536},
};

std::int32_t modulationOf(std::int32_t code) {
    return static_cast<std::int32_t>(convertCodeToModulation(ModulationAndCoding{code}));
}

TEST(CodeToModulation, OfEveryNumberFromBelowToAboveTheCodesIsTheOneInTheList) {
    std::map<std::int32_t, std::int32_t> expected;
    for (const Group& group : groups) {
        for (const std::int32_t code : group.codes) {
            expected[code] = group.modulation;
        }
    }
    ASSERT_EQ(expected.size(), 53U);

    for (std::int32_t code = -5; code <= 300; ++code) {
        const auto found = expected.find(code);
        EXPECT_EQ(modulationOf(code), found == expected.end() ? 100000 : found->second) << code;
    }
}

TEST(CodeToModulation, AtTheEndsOfTheTableIsDefinedOnTheInsideOnly) {
    EXPECT_EQ(modulationOf(9), 100000);
    EXPECT_EQ(modulationOf(10), 2);
    EXPECT_EQ(modulationOf(162), 65536);
    EXPECT_EQ(modulationOf(163), 100000);
    EXPECT_EQ(modulationOf(164), 100000);
}

TEST(CodeToModulation, FarOutsideTheTableIsUndefined) {
    for (const std::int32_t code :
         {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::min() + 9,
          -1000000, 1000000, 65536 + 10, 65536 + 31, 131072 + 162,
          std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(modulationOf(code), 100000) << code;
    }
}

} // namespace
