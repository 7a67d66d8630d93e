#include "ResultCode.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(ResultCode, HasTheAgreedNumbers) {
    EXPECT_EQ(ResultCode::Success, 0U);
    EXPECT_EQ(ResultCode::NotApplicable, 2U);
    EXPECT_EQ(ResultCode::Information, 2080U);
    EXPECT_EQ(ResultCode::Failure, 32768U);
    EXPECT_EQ(ResultCode::NotProvided, 32769U);
    EXPECT_EQ(ResultCode::NoRadioUnitEntry, 32770U);
    EXPECT_EQ(ResultCode::MapFailure, 32771U);
    EXPECT_EQ(ResultCode::NoEntry, 32776U);
    EXPECT_EQ(ResultCode::NoCalculator, 32778U);
}

TEST(ResultCode, From32768UpIsAFailure) {
    EXPECT_FALSE(ResultCode::isFailure(0U));
    EXPECT_FALSE(ResultCode::isFailure(2U));
    EXPECT_FALSE(ResultCode::isFailure(2080U));
    EXPECT_FALSE(ResultCode::isFailure(32767U));
    EXPECT_TRUE(ResultCode::isFailure(32768U));
    EXPECT_TRUE(ResultCode::isFailure(32769U));
    EXPECT_TRUE(ResultCode::isFailure(std::numeric_limits<unsigned>::max()));
}

TEST(ResultCode, InASignedNumberCountsAsTheUnsignedOne) {
    EXPECT_FALSE(ResultCode::isFailure(0));
    EXPECT_FALSE(ResultCode::isFailure(32767));
    EXPECT_TRUE(ResultCode::isFailure(32768));
    EXPECT_TRUE(ResultCode::isFailure(std::numeric_limits<int>::max()));
    EXPECT_TRUE(ResultCode::isFailure(std::numeric_limits<int>::min()));
    EXPECT_TRUE(ResultCode::isFailure(-1));
}

} // namespace
