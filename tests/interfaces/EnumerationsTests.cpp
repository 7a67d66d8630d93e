#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "RadioChannel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace {

using ::testing::ElementsAre;

template <class Enumeration>
std::int32_t number(Enumeration value) {
    static_assert(std::is_same_v<std::underlying_type_t<Enumeration>, std::int32_t>,
                  "enumerations are signed 32-bit numbers");
    return static_cast<std::int32_t>(value);
}

static_assert(std::is_same_v<RadioChannel, std::uint32_t>);

TEST(Modulation, HasTheNumberOfItsConstellationPoints) {
    EXPECT_EQ(number(Modulation::CW), 0);
    EXPECT_EQ(number(Modulation::BPSK), 2);
    EXPECT_EQ(number(Modulation::QAM4), 4);
    EXPECT_EQ(number(Modulation::QAM16), 16);
    EXPECT_EQ(number(Modulation::QAM32), 32);
    EXPECT_EQ(number(Modulation::QAM64), 64);
    EXPECT_EQ(number(Modulation::QAM128), 128);
    EXPECT_EQ(number(Modulation::QAM256), 256);
    EXPECT_EQ(number(Modulation::QAM512), 512);
    EXPECT_EQ(number(Modulation::QAM1024), 1024);
    EXPECT_EQ(number(Modulation::QAM2048), 2048);
    EXPECT_EQ(number(Modulation::QAM4096), 4096);
    EXPECT_EQ(number(Modulation::QAM8192), 8192);
    EXPECT_EQ(number(Modulation::QAM16384), 16384);
    EXPECT_EQ(number(Modulation::QAM65536), 65536);
    EXPECT_EQ(number(Modulation::UNDEFINED), 100000);
}

TEST(Modulation, UndefinedComparesAboveEveryRealOne) {
    EXPECT_LT(Modulation::QAM65536, Modulation::UNDEFINED);
    EXPECT_EQ(std::min(Modulation::QAM65536, Modulation::UNDEFINED), Modulation::QAM65536);
    EXPECT_EQ(std::max(Modulation::CW, Modulation::UNDEFINED), Modulation::UNDEFINED);
}

TEST(EReferenceSEC, HasTheClassesInTheirNumericOrder) {
    EXPECT_EQ(number(EReferenceSEC::Class2), 0);
    EXPECT_EQ(number(EReferenceSEC::Class4L), 1);
    EXPECT_EQ(number(EReferenceSEC::Class4H), 2);
    EXPECT_EQ(number(EReferenceSEC::Class5B), 3);
    EXPECT_EQ(number(EReferenceSEC::Class6B), 4);
    EXPECT_EQ(number(EReferenceSEC::Class5LB), 5);
    EXPECT_EQ(number(EReferenceSEC::Class5HB), 6);
    EXPECT_EQ(number(EReferenceSEC::Class6LB), 7);
    EXPECT_EQ(number(EReferenceSEC::Class6HB), 8);
    EXPECT_EQ(number(EReferenceSEC::Class7B), 9);
    EXPECT_EQ(number(EReferenceSEC::UNDEFINED), 1000);
}

TEST(EFrameFormatMarket, CountsFromEtsi) {
    EXPECT_EQ(number(EFrameFormatMarket::Etsi), 0);
    EXPECT_EQ(number(EFrameFormatMarket::Ansi), 1);
    EXPECT_EQ(number(EFrameFormatMarket::Global), 2);
    EXPECT_EQ(number(EFrameFormatMarket::Unknown), 3);
}

TEST(EDpdVersion, HasTheNumberOfTheVersion) {
    EXPECT_EQ(number(EDpdVersion::Dpd1), 1);
    EXPECT_EQ(number(EDpdVersion::Dpd2), 2);
    EXPECT_EQ(number(EDpdVersion::Dpd3), 3);
}

TEST(EChannelSpacingType, OfTheEtsiSpacingsIsTheNearestFreeWholeMhz) {
    const std::vector<std::int32_t> spacings = {
        number(EChannelSpacingType::MHz3p5),  number(EChannelSpacingType::MHz7),
        number(EChannelSpacingType::MHz14),   number(EChannelSpacingType::MHz28),
        number(EChannelSpacingType::MHz27p5), number(EChannelSpacingType::MHz29),
        number(EChannelSpacingType::MHz30),   number(EChannelSpacingType::MHz40),
        number(EChannelSpacingType::MHz56),   number(EChannelSpacingType::MHz112)};

    EXPECT_THAT(spacings, ElementsAre(3, 7, 14, 28, 27, 29, 30, 40, 56, 112));
}

TEST(EChannelSpacingType, OfTheAnsiSpacingsIsTheNearestFreeWholeMhz) {
    const std::vector<std::int32_t> spacings = {
        number(EChannelSpacingType::MHz3p75), number(EChannelSpacingType::MHz5),
        number(EChannelSpacingType::MHz10),   number(EChannelSpacingType::MHz20),
        number(EChannelSpacingType::MHz30),   number(EChannelSpacingType::MHz40),
        number(EChannelSpacingType::MHz50),   number(EChannelSpacingType::MHz60),
        number(EChannelSpacingType::MHz80)};

    EXPECT_THAT(spacings, ElementsAre(4, 5, 10, 20, 30, 40, 50, 60, 80));
}

} // namespace
