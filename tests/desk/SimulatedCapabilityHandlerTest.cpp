#include "SimulatedCapabilityHandler.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

using PmaxGetter = unsigned (ICapabilityHandler::*)(const int**, const int**) const;
using PmaxAnswer = std::optional<CapabilityHandlerAnswers::Pmax> CapabilityHandlerAnswers::*;

struct PmaxOperation {
    const char* name;
    PmaxGetter get;
    PmaxAnswer answer;
};

std::ostream& operator<<(std::ostream& stream, const PmaxOperation& operation) {
    return stream << operation.name;
}

const PmaxOperation pmaxOperations[] = {
    {"getPmaxCapabilityDpd1Ansi", &ICapabilityHandler::getPmaxCapabilityDpd1Ansi,
     &CapabilityHandlerAnswers::pmaxDpd1Ansi},
    {"getPmaxCapabilityDpd2Ansi", &ICapabilityHandler::getPmaxCapabilityDpd2Ansi,
     &CapabilityHandlerAnswers::pmaxDpd2Ansi},
    {"getPmaxCapabilityDpd1Etsi", &ICapabilityHandler::getPmaxCapabilityDpd1Etsi,
     &CapabilityHandlerAnswers::pmaxDpd1Etsi},
    {"getPmaxCapabilityDpd2Etsi", &ICapabilityHandler::getPmaxCapabilityDpd2Etsi,
     &CapabilityHandlerAnswers::pmaxDpd2Etsi},
};

class SimulatedCapabilityHandlerPmaxTest : public testing::TestWithParam<PmaxOperation> {
protected:
    unsigned get() { return (sut.*GetParam().get)(&table, &count); }

    void program(const CapabilityHandlerAnswers::Pmax& pmax) {
        CapabilityHandlerAnswers answers;
        answers.*GetParam().answer = pmax;
        sut.setAnswers(answers);
    }

    SimulatedCapabilityHandler sut;
    const int* table = nullptr;
    const int* count = nullptr;
};

INSTANTIATE_TEST_SUITE_P(EveryTable, SimulatedCapabilityHandlerPmaxTest,
                         testing::ValuesIn(pmaxOperations),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(SimulatedCapabilityHandlerPmaxTest, withoutAnswerSucceedsAndWritesNothing) {
    const unsigned result = get();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(count, nullptr);
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, handsOutRowsAndTheirNumberOfIntegers) {
    program(pmaxTable({{Modulation::QAM4, 2800}, {Modulation::QAM16, -100}}));

    const unsigned result = get();

    EXPECT_EQ(result, 0U);
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(*count, 4);
    EXPECT_THAT(std::vector<int>(table, table + 4), ElementsAre(4, 2800, 16, -100));
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, storesAZeroBehindAnOddListThatTheCountLeavesOut) {
    program(std::vector<int>{4, 2500, 16});

    get();

    ASSERT_NE(count, nullptr);
    EXPECT_EQ(*count, 3);
    EXPECT_THAT(std::vector<int>(table, table + 4), ElementsAre(4, 2500, 16, 0));
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, handsOutAnEmptyListAsATableOfNoIntegers) {
    program(std::vector<int>());

    const unsigned result = get();

    EXPECT_EQ(result, 0U);
    EXPECT_NE(table, nullptr);
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(*count, 0);
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, tellsAnOddListFromTheSameListWithItsZero) {
    program(std::vector<int>{4});
    get();
    const int* const oddCount = count;
    program(std::vector<int>{4, 0});

    get();

    EXPECT_EQ(*oddCount, 1);
    EXPECT_EQ(*count, 2);
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, returnsAResultAloneAndWritesNothing) {
    for (const unsigned code : {0U, 2U, 32767U, 32768U, 4294967295U}) {
        program(ResultOnly{code});

        const unsigned result = get();

        EXPECT_EQ(result, code);
        EXPECT_EQ(table, nullptr);
        EXPECT_EQ(count, nullptr);
    }
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, keepsAHandedOutTableUnchangedUnderNewAnswers) {
    program(std::vector<int>{4, 2500});
    get();
    const int* const oldTable = table;
    const int* const oldCount = count;

    program(std::vector<int>{4, 1000, 16, 900});

    EXPECT_EQ(*oldCount, 2);
    EXPECT_THAT(std::vector<int>(oldTable, oldTable + 2), ElementsAre(4, 2500));
    get();
    EXPECT_NE(table, oldTable);
    EXPECT_EQ(*count, 4);
    EXPECT_THAT(std::vector<int>(table, table + 4), ElementsAre(4, 1000, 16, 900));
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, keepsEqualTablesOnce) {
    program(std::vector<int>{4, 2500});
    get();
    const int* const oldTable = table;
    program(std::vector<int>{4, 1000});
    program(std::vector<int>{4, 2500});

    get();

    EXPECT_EQ(table, oldTable);
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, failsAtTheCallAskedForAndOnlyThen) {
    program(std::vector<int>{4, 2500});
    sut.failAt(2, 32776);

    EXPECT_EQ(get(), 0U);
    table = nullptr;
    count = nullptr;
    EXPECT_EQ(get(), 32776U);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(count, nullptr);
    EXPECT_EQ(get(), 0U);
    EXPECT_NE(table, nullptr);
}

TEST_P(SimulatedCapabilityHandlerPmaxTest, isRecorded) {
    CallLog log;
    sut.recordTo(&log);

    get();

    EXPECT_THAT(log.texts(),
                ElementsAre(std::string("ICapabilityHandler::") + GetParam().name + "()"));
}

TEST(SimulatedCapabilityHandlerTest, withoutAnswersAnswersByTheDefaultBodies) {
    const SimulatedCapabilityHandler sut;
    const int* table = nullptr;

    EXPECT_EQ(sut.getTmuHwProductNumber(), "");
    EXPECT_EQ(sut.getMinOutputPower(&table), 0U);
    EXPECT_EQ(table, nullptr);
    EXPECT_FALSE(sut.isMaxAcmLimitedByHw());
    EXPECT_EQ(sut.getPerformanceProfileIndex(), -1);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw({1, 2}, 0), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(EFrameFormatMarket::Etsi),
              Modulation::UNDEFINED);
}

TEST(SimulatedCapabilityHandlerTest, answersWhatItIsProgrammedWith) {
    CapabilityHandlerAnswers answers;
    answers.productNumber = "QZT 846 003";
    answers.maxAcmLimitedByHw = true;
    answers.performanceProfileIndex = short{-7};

    const SimulatedCapabilityHandler sut(answers);

    EXPECT_EQ(sut.getTmuHwProductNumber(), "QZT 846 003");
    EXPECT_TRUE(sut.isMaxAcmLimitedByHw());
    EXPECT_EQ(sut.getPerformanceProfileIndex(), -7);
}

TEST(SimulatedCapabilityHandlerTest, handsOutTheMinimumPowerAndKeepsItUnderNewAnswers) {
    CapabilityHandlerAnswers answers;
    answers.minOutputPower = -1000;
    SimulatedCapabilityHandler sut(answers);
    const int* before = nullptr;
    const int* after = nullptr;
    ASSERT_EQ(sut.getMinOutputPower(&before), 0U);

    answers.minOutputPower = -900;
    sut.setAnswers(answers);

    EXPECT_EQ(*before, -1000);
    ASSERT_EQ(sut.getMinOutputPower(&after), 0U);
    EXPECT_EQ(*after, -900);
}

TEST(SimulatedCapabilityHandlerTest, refusesTheMinimumPowerWithAResultAlone) {
    CapabilityHandlerAnswers answers;
    answers.minOutputPower = ResultOnly{32768};
    const SimulatedCapabilityHandler sut(answers);
    const int* table = nullptr;

    const unsigned result = sut.getMinOutputPower(&table);

    EXPECT_EQ(result, 32768U);
    EXPECT_EQ(table, nullptr);
}

TEST(SimulatedCapabilityHandlerTest, oneLimitHoldsForEveryProfileAndAnyIndex) {
    CapabilityHandlerAnswers answers;
    answers.maxModulationLimitedByHw = Modulation::QAM512;
    const SimulatedCapabilityHandler sut(answers);

    EXPECT_EQ(sut.getMaxModulationLimitedByHw({1}, 0), Modulation::QAM512);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw({}, 9), Modulation::QAM512);
}

TEST(SimulatedCapabilityHandlerTest, looksALimitUpByTheProfileAtTheIndex) {
    CapabilityHandlerAnswers answers;
    answers.maxModulationLimitedByHw = std::map<short, Modulation>{
        {short{1}, Modulation::QAM512}, {short{-3}, Modulation::QAM1024}};
    const SimulatedCapabilityHandler sut(answers);
    const std::vector<short> profiles{1, 2, -3};

    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, 0), Modulation::QAM512);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, 1), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, 2), Modulation::QAM1024);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, 3), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, -1), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw(profiles, -32768), Modulation::UNDEFINED);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw({}, 0), Modulation::UNDEFINED);
}

TEST(SimulatedCapabilityHandlerTest, oneLimitHoldsForEveryMarket) {
    CapabilityHandlerAnswers answers;
    answers.maxModulationWithoutLimitation = Modulation::QAM64;
    const SimulatedCapabilityHandler sut(answers);

    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(EFrameFormatMarket::Ansi), Modulation::QAM64);
    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(EFrameFormatMarket{9}), Modulation::QAM64);
}

TEST(SimulatedCapabilityHandlerTest, looksALimitUpByMarket) {
    CapabilityHandlerAnswers answers;
    answers.maxModulationWithoutLimitation =
        std::map<EFrameFormatMarket, Modulation>{{EFrameFormatMarket::Ansi, Modulation::QAM2048}};
    const SimulatedCapabilityHandler sut(answers);

    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(EFrameFormatMarket::Ansi), Modulation::QAM2048);
    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(EFrameFormatMarket::Etsi),
              Modulation::UNDEFINED);
}

TEST(SimulatedCapabilityHandlerTest, recordsArguments) {
    SimulatedCapabilityHandler sut;
    CallLog log;
    const int* table = nullptr;
    sut.recordTo(&log);

    sut.getTmuHwProductNumber();
    sut.getMinOutputPower(&table);
    sut.isMaxAcmLimitedByHw();
    sut.getPerformanceProfileIndex();
    sut.getMaxModulationLimitedByHw({1, -2}, 3);
    sut.getMaxModulationLimitedByHw({}, -1);
    sut.getMaxModulationWithoutLimitation(EFrameFormatMarket::Global);
    sut.getMaxModulationWithoutLimitation(EFrameFormatMarket{-4});

    EXPECT_THAT(log.texts(),
                ElementsAre("ICapabilityHandler::getTmuHwProductNumber()",
                            "ICapabilityHandler::getMinOutputPower()",
                            "ICapabilityHandler::isMaxAcmLimitedByHw()",
                            "ICapabilityHandler::getPerformanceProfileIndex()",
                            "ICapabilityHandler::getMaxModulationLimitedByHw([1, -2], 3)",
                            "ICapabilityHandler::getMaxModulationLimitedByHw([], -1)",
                            "ICapabilityHandler::getMaxModulationWithoutLimitation(Global)",
                            "ICapabilityHandler::getMaxModulationWithoutLimitation(-4)"));
}

TEST(SimulatedCapabilityHandlerTest, countsOnlyOperationsThatCanFail) {
    CapabilityHandlerAnswers answers;
    answers.minOutputPower = -1000;
    SimulatedCapabilityHandler sut(answers);
    const int* table = nullptr;
    const int* count = nullptr;
    sut.failAt(2);

    sut.getTmuHwProductNumber();
    sut.isMaxAcmLimitedByHw();
    const unsigned first = sut.getMinOutputPower(&table);
    sut.getPerformanceProfileIndex();
    const unsigned second = sut.getPmaxCapabilityDpd1Etsi(&table, &count);

    EXPECT_EQ(first, 0U);
    EXPECT_EQ(second, 32768U);
}

TEST(SimulatedCapabilityHandlerTest, callsAnOutstandingFailureOff) {
    SimulatedCapabilityHandler sut;
    const int* table = nullptr;
    sut.failAt(1);

    sut.failAt(0);

    EXPECT_EQ(sut.getMinOutputPower(&table), 0U);
}

} // namespace
