#include "CallLog.h"

#include "SimulatedAcmHandler.h"
#include "SimulatedFrameFormat.h"

#include <gmock/gmock.h>

#include <sstream>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CallLogTest, showsTheOrderAcrossNeighbours) {
    CallLog sut;
    SimulatedFrameFormat frameFormat;
    SimulatedAcmHandler acmHandler;
    ModulationAndCoding min{0};
    ModulationAndCoding max{0};
    frameFormat.recordTo(&sut);
    acmHandler.recordTo(&sut);

    frameFormat.getDpdVersion();
    acmHandler.getMinMaxModulationAndCode(min, max);
    frameFormat.getModulation();

    EXPECT_THAT(sut.calls(),
                ElementsAre(RecordedCall{"IFrameFormat", "getDpdVersion", ""},
                            RecordedCall{"IAcmHandler", "getMinMaxModulationAndCode", ""},
                            RecordedCall{"IFrameFormat", "getModulation", ""}));
}

TEST(CallLogTest, aNeighbourRecordsOnlyWhileALogIsSet) {
    CallLog sut;
    SimulatedFrameFormat frameFormat;

    frameFormat.getModulation();
    frameFormat.recordTo(&sut);
    frameFormat.getDpdVersion();
    frameFormat.recordTo(nullptr);
    frameFormat.getTelecomMarket();

    EXPECT_THAT(sut.texts(), ElementsAre("IFrameFormat::getDpdVersion()"));
}

TEST(CallLogTest, forgetsWhenCleared) {
    CallLog sut;
    sut.add({"IFrameFormat", "getModulation", ""});

    sut.clear();

    EXPECT_THAT(sut.calls(), IsEmpty());
}

TEST(CallLogTest, tellsCallsApartByEveryPart) {
    const RecordedCall call{"I", "f", "1"};

    EXPECT_FALSE(call == (RecordedCall{"J", "f", "1"}));
    EXPECT_FALSE(call == (RecordedCall{"I", "g", "1"}));
    EXPECT_FALSE(call == (RecordedCall{"I", "f", "2"}));
    EXPECT_TRUE(call == (RecordedCall{"I", "f", "1"}));
}

TEST(CallLogTest, writesACallAsText) {
    std::ostringstream stream;

    stream << RecordedCall{"ISystemPowerController", "getMinOutputPowerOffset", "28"};

    EXPECT_EQ(stream.str(), "ISystemPowerController::getMinOutputPowerOffset(28)");
}

TEST(CallLogTest, takesCallsFromSeveralThreads) {
    CallLog sut;
    SimulatedFrameFormat frameFormat;
    frameFormat.recordTo(&sut);
    const auto ask = [&frameFormat] {
        for (int call = 0; call < 1000; ++call) {
            frameFormat.getModulation();
        }
    };

    std::thread first(ask);
    std::thread second(ask);
    first.join();
    second.join();

    EXPECT_EQ(sut.calls().size(), 2000U);
}

} // namespace
