#include "ModulationAndCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <type_traits>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

static_assert(std::is_same_v<decltype(ModulationAndCoding::code), std::int32_t>);
static_assert(std::is_trivially_copyable_v<ModulationAndCoding>);
static_assert(sizeof(ModulationAndCoding) == 4);

TEST(ModulationAndCoding, ComparesByTheCodeAsASignedNumber) {
    const std::less<ModulationAndCoding> sut;

    EXPECT_TRUE(sut({10}, {11}));
    EXPECT_FALSE(sut({11}, {11}));
    EXPECT_FALSE(sut({12}, {11}));
    EXPECT_TRUE(sut({-1}, {0}));
    EXPECT_TRUE(sut({std::numeric_limits<std::int32_t>::min()},
                    {std::numeric_limits<std::int32_t>::max()}));
}

TEST(ModulationAndCoding, IsEqualExactlyWhenTheCodesAre) {
    EXPECT_TRUE((ModulationAndCoding{31} == ModulationAndCoding{31}));
    EXPECT_FALSE((ModulationAndCoding{31} == ModulationAndCoding{32}));
    EXPECT_FALSE((ModulationAndCoding{31} != ModulationAndCoding{31}));
    EXPECT_TRUE((ModulationAndCoding{31} != ModulationAndCoding{30}));
}

TEST(ModulationAndCoding, AsMapKeyStandsInTheOrderOfSpectralEfficiency) {
    std::map<ModulationAndCoding, long, std::less<ModulationAndCoding>> sut;

    sut[{163}] = 7;
    sut[{143}] = 6;
    sut[{31}] = 3;
    sut[{23}] = 2;
    sut[{142}] = 5;
    sut[{10}] = 1;
    sut[{93}] = 4;
    sut[{31}] = 33;

    std::vector<std::pair<std::int32_t, long>> entries;
    for (const auto& [key, value] : sut) {
        entries.emplace_back(key.code, value);
    }
    EXPECT_THAT(entries, ElementsAre(Pair(10, 1), Pair(23, 2), Pair(31, 33), Pair(93, 4),
                                     Pair(142, 5), Pair(143, 6), Pair(163, 7)));
}

TEST(ModulationAndCoding, UndefinedIs163) {
    EXPECT_EQ(+ModulationAndCoding::UNDEFINED, 163);
}

} // namespace
