#include "Decibels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

namespace {

struct Written {
    const char* text;
    std::int64_t hundredths;
};

void PrintTo(const Written& written, std::ostream* stream) {
    *stream << written.text;
}

class DecibelsOf : public testing::TestWithParam<Written> {};

TEST_P(DecibelsOf, ReadsTheTextExactly) {
    EXPECT_EQ(Decibels::parse(GetParam().text), GetParam().hundredths);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DecibelsOf,
    testing::Values(Written{"0", 0}, Written{"-0", 0}, Written{"0.00", 0}, Written{"1", 100},
                    Written{"+1", 100}, Written{"-1", -100}, Written{"1.5", 150},
                    Written{"1.05", 105}, Written{"1.50", 150}, Written{"-1.5", -150},
                    Written{"0.01", 1}, Written{"-0.01", -1}, Written{"-0.05", -5},
                    Written{"007.1", 710}, Written{".5", 50}, Written{"-.05", -5},
                    // No binary fraction has these values.
                    Written{"0.29", 29}, Written{"1.15", 115}, Written{"4.35", 435},
                    Written{"21474836.47", 2147483647}, Written{"21474836.48", 2147483648},
                    Written{"-21474836.48", -2147483648}, Written{"42949672.95", 4294967295},
                    Written{"92233720368547758.07", std::numeric_limits<std::int64_t>::max()},
                    Written{"-92233720368547758.08", std::numeric_limits<std::int64_t>::min()},
                    Written{"92233720368547758.08", std::numeric_limits<std::int64_t>::max()},
                    Written{"-92233720368547758.09", std::numeric_limits<std::int64_t>::min()},
                    Written{"99999999999999999999999999", std::numeric_limits<std::int64_t>::max()},
                    Written{"-99999999999999999999999999",
                            std::numeric_limits<std::int64_t>::min()}));

class NoDecibels : public testing::TestWithParam<const char*> {};

TEST_P(NoDecibels, AreRefused) {
    EXPECT_EQ(Decibels::parse(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Texts, NoDecibels,
                         testing::Values("", "-", "+", ".", "5.", "-.", "1.234", "1.500", "1,5",
                                         "1e2", "0x10", " 1", "1 ", "--1", "+-1", "1.-5", "1.5.5",
                                         "1dB", "inf", "nan", "one"));

TEST(NoDecibels, ANulByteDoesNotEndTheText) {
    EXPECT_EQ(Decibels::parse(std::string("1\0", 2)), std::nullopt);
}

class DecibelsWritten : public testing::TestWithParam<Written> {};

TEST_P(DecibelsWritten, HasTwoDecimals) {
    EXPECT_EQ(Decibels::format(GetParam().hundredths), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, DecibelsWritten,
    testing::Values(Written{"0.00", 0}, Written{"0.01", 1}, Written{"-0.01", -1},
                    Written{"0.09", 9}, Written{"0.10", 10}, Written{"-0.99", -99},
                    Written{"0.99", 99}, Written{"1.00", 100}, Written{"-1.00", -100},
                    Written{"22.50", 2250}, Written{"-7.50", -750},
                    Written{"21474836.47", 2147483647}, Written{"-21474836.48", -2147483648},
                    Written{"42949672.95", 4294967295},
                    Written{"92233720368547758.07", std::numeric_limits<std::int64_t>::max()},
                    Written{"-92233720368547758.08", std::numeric_limits<std::int64_t>::min()}));

} // namespace
