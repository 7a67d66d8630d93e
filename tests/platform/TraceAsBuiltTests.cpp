#include "BoardSupport.h"
#include "DeskTrace.h"
#include "RawTrace.h"
#include "VelTrace.h"

#include <gtest/gtest.h>

namespace {

const VelTrace builtBeforeMain("QOR.Test.Static", 2, 256);

TEST(PlatformAtStart, LeavesEveryTraceObjectTheLevelItWasBuiltWith) {
    const VelTrace third("QOR.Test", 3, 256);
    const VelTrace off("QOR.Test", 0, 256);
    const VelTrace all("QOR.Test", 6, 256);

    EXPECT_TRUE(builtBeforeMain.isEnabled(2));
    EXPECT_FALSE(builtBeforeMain.isEnabled(3));
    EXPECT_TRUE(third.isEnabled(3));
    EXPECT_FALSE(third.isEnabled(4));
    EXPECT_FALSE(off.isEnabled(1));
    EXPECT_TRUE(all.isEnabled(6));
}

TEST(PlatformAtStart, LeavesTheRawTraceAtTheLevelOfErrors) {
    EXPECT_GE(SPC_trace, CPexTraceHandler_DmLevel2VtLevel(32768));
    EXPECT_LT(SPC_trace, CPexTraceHandler_DmLevel2VtLevel(2080));
}

TEST(PlatformAtStart, HasNoRecordsAndNoCarrierAggregation) {
    EXPECT_TRUE(DeskTrace::getInstance().records().empty());
    EXPECT_FALSE(os::bsp::rl::isFftypeCarrierAggregation());
}

} // namespace
