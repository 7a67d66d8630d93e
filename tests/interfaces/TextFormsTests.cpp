#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Texts = std::map<std::int32_t, std::string>;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

const Texts modulationTexts = {
    {0, "CW"},         {2, "BPSK"},         {4, "4QAM"},         {16, "16QAM"},
    {32, "32QAM"},     {64, "64QAM"},       {128, "128QAM"},     {256, "256QAM"},
    {512, "512QAM"},   {1024, "1024QAM"},   {2048, "2048QAM"},   {4096, "4096QAM"},
    {8192, "8192QAM"}, {16384, "16384QAM"}, {65536, "65536QAM"}, {100000, "UNDEFINED"},
};

// clang-format off
const Texts codeTexts = {
    { 10, "HALF_BPSK_STRONG"},     { 11, "HALF_BPSK"},            { 12, "HALF_BPSK_LIGHT"},
    { 20, "BPSK_STRONG"},          { 21, "BPSK"},                 { 22, "BPSK_LIGHT"},
    { 23, "4QAM_ULTRA_STRONG"},    { 30, "4QAM_STRONG"},          { 31, "4QAM"},
    { 32, "4QAM_LIGHT"},           { 33, "16QAM_ULTRA_STRONG"},   { 40, "16QAM_STRONG"},
    { 41, "16QAM"},                { 42, "16QAM_LIGHT"},          { 50, "32QAM_STRONG"},
    { 51, "32QAM"},                { 52, "32QAM_LIGHT"},          { 53, "64QAM_ULTRA_STRONG"},
    { 60, "64QAM_STRONG"},         { 61, "64QAM"},                { 62, "64QAM_LIGHT"},
    { 70, "128QAM_STRONG"},        { 71, "128QAM"},               { 72, "128QAM_LIGHT"},
    { 73, "256QAM_ULTRA_STRONG"},  { 80, "256QAM_STRONG"},        { 81, "256QAM"},
    { 82, "256QAM_LIGHT"},         { 90, "512QAM_STRONG"},        { 91, "512QAM"},
    { 92, "512QAM_LIGHT"},         { 93, "1024QAM_ULTRA_STRONG"}, {100, "1024QAM_STRONG"},
    {101, "1024QAM"},              {102, "1024QAM_LIGHT"},        {110, "2048QAM_STRONG"},
    {111, "2048QAM"},              {112, "2048QAM_LIGHT"},        {113, "4096QAM_ULTRA_STRONG"},
    {120, "4096QAM_STRONG"},       {121, "4096QAM"},              {122, "4096QAM_LIGHT"},
    {130, "8192QAM_STRONG"},       {131, "8192QAM"},              {132, "8192QAM_LIGHT"},
    {133, "16384QAM_ULTRA_STRONG"},{140, "16384QAM_STRONG"},      {141, "16384QAM"},
    {142, "16384QAM_LIGHT"},       {143, "65536QAM_ULTRA_STRONG"},{160, "65536QAM_STRONG"},
    {161, "65536QAM"},             {162, "65536QAM_LIGHT"},       {163, "UNDEFINED"},
};
// clang-format on

const Texts rsecTexts = {
    {0, "2"},   {1, "4L"},  {2, "4H"},  {3, "5B"}, {4, "6B"},           {5, "5LB"},
    {6, "5HB"}, {7, "6LB"}, {8, "6HB"}, {9, "7B"}, {1000, "UNDEFINED"},
};

std::string textIn(const Texts& texts, std::int32_t value) {
    const auto found = texts.find(value);
    return found == texts.end() ? "UNDEFINED" : found->second;
}

std::string streamed(Modulation modulation) {
    std::ostringstream stream;
    stream << modulation;
    return stream.str();
}

std::string streamed(EFrameFormatMarket market) {
    std::ostringstream stream;
    stream << market;
    return stream.str();
}

std::string codeText(std::int32_t code) {
    return convertCodeAndModulationEnumToString(ModulationAndCoding{code});
}

TEST(ModulationText, OfEveryModulationIsTheOneInTheTable) {
    ASSERT_EQ(modulationTexts.size(), 16U);
    for (const auto& [value, text] : modulationTexts) {
        EXPECT_EQ(convertAcmEnumToString(Modulation{value}), text) << value;
        EXPECT_EQ(streamed(Modulation{value}), text) << value;
    }
}

TEST(ModulationText, OfEveryOtherNumberIsUndefined) {
    for (std::int32_t value = -1000; value <= 101000; ++value) {
        ASSERT_EQ(convertAcmEnumToString(Modulation{value}), textIn(modulationTexts, value))
            << value;
    }
    for (const std::int32_t value : {lowest, lowest + 1, 1000000, highest - 1, highest}) {
        EXPECT_EQ(convertAcmEnumToString(Modulation{value}), "UNDEFINED") << value;
    }
}

TEST(ModulationText, StreamedIsUndefinedForNumbersBesideTheModulations) {
    for (const std::int32_t value :
         {lowest, -1, 1, 3, 8, 15, 17, 32768, 65535, 65537, 99999, 100001, highest}) {
        EXPECT_EQ(streamed(Modulation{value}), "UNDEFINED") << value;
    }
}

TEST(ModulationText, StreamedReturnsTheStreamForMore) {
    std::ostringstream stream;

    std::ostream& returned = stream << Modulation::QAM64;
    returned << "|" << Modulation::CW << "|" << Modulation::UNDEFINED;

    EXPECT_EQ(&returned, &stream);
    EXPECT_EQ(stream.str(), "64QAM|CW|UNDEFINED");
}

TEST(CodeText, OfEveryCodeFrom0To200IsTheOneInTheTable) {
    ASSERT_EQ(codeTexts.size(), 54U);
    for (std::int32_t code = 0; code <= 200; ++code) {
        EXPECT_EQ(codeText(code), textIn(codeTexts, code)) << code;
    }
}

TEST(CodeText, OutsideTheCodesIsUndefined) {
    for (const std::int32_t code : {lowest, lowest + 9, -1000, -1, 0, 9, 164, 165, 201, 300, 1000,
                                    100000, highest - 1, highest}) {
        EXPECT_EQ(codeText(code), "UNDEFINED") << code;
    }
}

TEST(CodeText, BetweenTheGroupsIsUndefined) {
    for (const std::int32_t code : {13,  14,  15,  16,  17,  18,  19,  43,  63,  83,  103,
                                    123, 150, 151, 152, 153, 154, 155, 156, 157, 158, 159}) {
        EXPECT_EQ(codeText(code), "UNDEFINED") << code;
    }
}

TEST(CodeText, UltraStrongOf65536QamStandsInTheGroupOf16384Qam) {
    EXPECT_EQ(codeText(143), "65536QAM_ULTRA_STRONG");
    EXPECT_EQ(codeText(153), "UNDEFINED");
    EXPECT_EQ(codeText(163), "UNDEFINED");
}

TEST(RsecText, OfEveryClassIsTheOneInTheTable) {
    ASSERT_EQ(rsecTexts.size(), 11U);
    for (const auto& [value, text] : rsecTexts) {
        EXPECT_EQ(convertRsecEnumToString(EReferenceSEC{value}), text) << value;
    }
}

TEST(RsecText, OfEveryOtherNumberIsUndefined) {
    for (std::int32_t value = -100; value <= 1100; ++value) {
        EXPECT_EQ(convertRsecEnumToString(EReferenceSEC{value}), textIn(rsecTexts, value)) << value;
    }
    for (const std::int32_t value : {lowest, highest}) {
        EXPECT_EQ(convertRsecEnumToString(EReferenceSEC{value}), "UNDEFINED") << value;
    }
}

TEST(MarketText, OfTheFourMarketsIsTheirName) {
    EXPECT_EQ(streamed(EFrameFormatMarket{0}), "Etsi");
    EXPECT_EQ(streamed(EFrameFormatMarket{1}), "Ansi");
    EXPECT_EQ(streamed(EFrameFormatMarket{2}), "Global");
    EXPECT_EQ(streamed(EFrameFormatMarket{3}), "Unknown");
}

TEST(MarketText, OfAnyOtherNumberIsNothingAtAll) {
    for (const std::int32_t value : {lowest, -2, -1, 4, 5, 1000, 100000, highest}) {
        EXPECT_EQ(streamed(EFrameFormatMarket{value}), "") << value;
    }
}

TEST(MarketText, OfAnUnlistedNumberLeavesTheStreamAsItWas) {
    std::ostringstream stream;
    stream << std::setw(6) << std::setfill('*');

    std::ostream& returned = stream << EFrameFormatMarket{4};

    EXPECT_EQ(&returned, &stream);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.width(), 6);
    returned << 12;
    EXPECT_EQ(stream.str(), "****12");
}

} // namespace
