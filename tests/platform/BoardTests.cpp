#include "BoardSupport.h"
#include "DeskBoard.h"

#include <gtest/gtest.h>

namespace {

class DeskBoardTest : public ::testing::Test {
protected:
    ~DeskBoardTest() override { DeskBoard::setCarrierAggregation(false); }
};

TEST_F(DeskBoardTest, HasNoCarrierAggregationUntilItIsSet) {
    EXPECT_FALSE(os::bsp::rl::isFftypeCarrierAggregation());
}

TEST_F(DeskBoardTest, AnswersWhatWasSetLast) {
    DeskBoard::setCarrierAggregation(true);
    EXPECT_TRUE(os::bsp::rl::isFftypeCarrierAggregation());

    DeskBoard::setCarrierAggregation(false);
    EXPECT_FALSE(os::bsp::rl::isFftypeCarrierAggregation());
}

} // namespace
