#include "SimulatedAcmHandler.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class SimulatedAcmHandlerTest : public testing::Test {
protected:
    unsigned get() { return sut.getMinMaxModulationAndCode(min, max); }

    SimulatedAcmHandler sut;
    ModulationAndCoding min{1};
    ModulationAndCoding max{2};
};

TEST_F(SimulatedAcmHandlerTest, withoutSelectionAnswersByTheDefaultBody) {
    const unsigned result = get();

    EXPECT_EQ(result, 32769U);
    EXPECT_EQ(min.code, 1);
    EXPECT_EQ(max.code, 2);
}

TEST_F(SimulatedAcmHandlerTest, writesTheSelectedRange) {
    sut.setAnswers({AcmHandlerAnswers::Range{{30}, {81}}});

    const unsigned result = get();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(min.code, 30);
    EXPECT_EQ(max.code, 81);
}

TEST_F(SimulatedAcmHandlerTest, selectsNothingByDefaultInARange) {
    sut.setAnswers({AcmHandlerAnswers::Range{}});

    get();

    EXPECT_EQ(min.code, 163);
    EXPECT_EQ(max.code, 163);
}

TEST_F(SimulatedAcmHandlerTest, returnsAResultAloneAndWritesNothing) {
    for (const unsigned code : {0U, 32767U, 32768U}) {
        sut.setAnswers({ResultOnly{code}});

        const unsigned result = get();

        EXPECT_EQ(result, code);
        EXPECT_EQ(min.code, 1);
        EXPECT_EQ(max.code, 2);
    }
}

TEST_F(SimulatedAcmHandlerTest, failsAtTheCallAskedForAndOnlyThen) {
    sut.setAnswers({AcmHandlerAnswers::Range{{30}, {81}}});
    sut.failAt(1, 40000);

    EXPECT_EQ(get(), 40000U);
    EXPECT_EQ(min.code, 1);
    EXPECT_EQ(get(), 0U);
    EXPECT_EQ(min.code, 30);
}

TEST_F(SimulatedAcmHandlerTest, recordsItsCallsAlsoAFailingOne) {
    CallLog log;
    sut.recordTo(&log);
    sut.failAt(1);

    get();

    EXPECT_THAT(log.texts(), ElementsAre("IAcmHandler::getMinMaxModulationAndCode()"));
}

} // namespace
