#include "BoardPlatform.h"
#include "Calculation.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo5.h"
#include "InterfaceBroker.h"
#include "TxRfMaxPowerCapability.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

// What the library asks of its platform, and what it does with answers that the desk never gives.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string capabilityFile =
    "Control/OutputPowerCalculator/private/TxRfMaxPowerCapability:line ";
const std::string array = "channel.1.tx.rf.pmax.cs.comp.v2.array";
const std::string arraySize = "channel.1.tx.rf.pmax.cs.comp.v2.arraysize";

// --- Trace objects

TEST(TraceObjects, OfTheServiceAndTheFiveFamiliesAreBuiltAlike) {
    const std::vector<BoardPlatform::TraceObject>& objects = BoardPlatform::traceObjects();

    EXPECT_EQ(objects.size(), 6U);
    for (const BoardPlatform::TraceObject& object : objects) {
        EXPECT_EQ(object.channelName, "QOR.SPC.Calculator");
        EXPECT_EQ(object.level, 3);
        EXPECT_EQ(object.headerOption, 256);
    }
}

class BoardTest : public ::testing::Test {
protected:
    BoardTest() {
        BoardPlatform::calls().clear();
        BoardPlatform::variables().clear();
        SPC_trace = 3;
    }

    static std::vector<std::string> takeCalls() {
        std::vector<std::string> taken;
        taken.swap(BoardPlatform::calls());
        return taken;
    }
};

TEST_F(BoardTest, TracesErrorsAndNoMoreAtTheLevelThatTraceObjectsAreBuiltWith) {
    CalculationData data = emptyCalculation();
    data.rsec = EReferenceSEC::UNDEFINED;
    data.actualModulation = Modulation::QAM4;
    long power = 0;

    CalculatorKam::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW);
    EXPECT_THAT(takeCalls(),
                ElementsAre("logMsg 1 Control/OutputPowerCalculator/private/CalculatorKam:line "
                            "getMaxPower: No power offset found for rsec=UNDEFINED, acm=4QAM"));

    data.rsec = EReferenceSEC::Class2;
    CalculatorKam::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW);
    data.actualModulation = Modulation::UNDEFINED;
    CalculatorVo5::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW);
    EXPECT_THAT(takeCalls(), IsEmpty());
}

// --- The raw trace

TEST_F(BoardTest, WritesARawTraceInFourCalls) {
    SPC_trace = 6;
    TxRfMaxPowerCapability sut(5, EDpdVersion{1}, EFrameFormatMarket::Etsi);

    sut.initialize();

    EXPECT_THAT(takeCalls(),
                ElementsAre("VT_beginImpl SPC_trace 2 " + capabilityFile + "initialize",
                            "VT_rawprintf [Error getting interface to %s] Error getting interface "
                            "to ICapabilityHandler_5",
                            "VT_rawprintf [      code: %#lx\n]       code: 0x8000\n",
                            "VT_endImpl"));
}

TEST_F(BoardTest, WritesTheRawTracesOfAFetchedTable) {
    SPC_trace = 6;
    const Radio radio({4, 2500});

    radio.capability();

    EXPECT_THAT(takeCalls(),
                ElementsAre("VT_beginImpl SPC_trace 4 " + capabilityFile + "initialize",
                            "VT_rawprintf [m_dpdVersion = %d, m_market = %d] m_dpdVersion = 1, "
                            "m_market = 0",
                            "VT_rawprintf [      code: %#lx\n]       code: 0x820\n", "VT_endImpl",
                            "VT_beginImpl SPC_trace 4 " + capabilityFile + "initialize",
                            "VT_rawprintf [PmaxTable with value %lu succeeded for channel %lu] "
                            "PmaxTable with value 2 succeeded for channel 77",
                            "VT_rawprintf [      code: %#lx\n]       code: 0x820\n", "VT_endImpl"));
}

TEST_F(BoardTest, WritesTheRawTraceOfAnUnknownModulation) {
    SPC_trace = 6;
    const TxRfMaxPowerCapability sut;
    long power = 0;

    sut.getPower(Modulation::QAM64, &power);

    EXPECT_THAT(takeCalls(),
                ElementsAre("VT_beginImpl SPC_trace 2 " + capabilityFile + "getPower",
                            "VT_rawprintf [%s, unknown modulation type: %s] getPower, unknown "
                            "modulation type: 64QAM",
                            "VT_rawprintf [      code: %#lx\n]       code: 0x8008\n",
                            "VT_endImpl"));
}

TEST_F(BoardTest, ComparesTheThresholdWithTheLevelThatThePlatformGivesTheCode) {
    const TxRfMaxPowerCapability sut;
    long power = 0;

    SPC_trace = BoardPlatform::levelOfFailures - 1;
    sut.getPower(Modulation::QAM64, &power);
    EXPECT_THAT(takeCalls(), IsEmpty());

    SPC_trace = BoardPlatform::levelOfFailures;
    sut.getPower(Modulation::QAM64, &power);
    EXPECT_EQ(takeCalls().size(), 4U);

    const Radio radio({4, 2500});
    SPC_trace = BoardPlatform::levelOfOthers - 1;
    radio.capability();
    EXPECT_THAT(takeCalls(), IsEmpty());

    SPC_trace = BoardPlatform::levelOfOthers;
    radio.capability();
    EXPECT_EQ(takeCalls().size(), 8U);
}

TEST_F(BoardTest, KeepsATableWhoseHandlerIsGone) {
    TxRfMaxPowerCapability sut(77, EDpdVersion{1}, EFrameFormatMarket::Etsi);
    const std::vector<int> integers = {4, 2500};
    {
        const Radio radio(integers);
        ASSERT_EQ(sut.initialize(), 0);
        InterfaceBroker::getInstance().unregisterInterface("ICapabilityHandler_77", nullptr);
        long power = 0;

        EXPECT_EQ(sut.initialize(), 32768);

        EXPECT_EQ(sut.getPower(Modulation::QAM4, &power), 0);
        EXPECT_EQ(power, 2500);
    }
}

TEST_F(BoardTest, FindsWhatStandsBehind65536RowsOfATable) {
    std::vector<int> integers(2 * 65540, -300);
    integers[2 * 65538] = 4;
    integers[2 * 65538 + 1] = 9;
    const Radio radio(integers);
    const TxRfMaxPowerCapability sut = radio.capability();
    long power = 0;

    EXPECT_EQ(sut.getMaxPower(&power), 0);
    EXPECT_EQ(power, 9);
    EXPECT_EQ(sut.getPower(Modulation::QAM4, &power), 0);
    EXPECT_EQ(power, 9);
}

// --- The variable store

struct OutdoorFamily {
    std::string name;
    Calculator* (*calculator)();
};

class StoredCompensation : public BoardTest, public ::testing::WithParamInterface<OutdoorFamily> {
protected:
    /// Stores the calibration of channel 1 in memory that may be larger than the reported size.
    void calibrate(std::uint32_t reportedSize, std::uint32_t validSize) {
        m_validSize = validSize;
        BoardPlatform::variables()[array] = {0, m_elements, reportedSize};
        // No reader asks for the size of a single value.
        BoardPlatform::variables()[arraySize] = {0, &m_validSize, 0};
    }

    int ask(std::int32_t spacing, long& compensation) const {
        return sut.getCompensationForChannelSpacing(1, EChannelSpacingType{spacing}, compensation);
    }

    long at(std::int32_t spacing) const {
        long compensation = 4711;
        EXPECT_EQ(ask(spacing, compensation), 0);
        return compensation;
    }

    const std::int32_t m_elements[6] = {1, 150, 3, -200, 5, 80};
    std::uint32_t m_validSize = 0;
    const Calculator& sut = *GetParam().calculator();
};

TEST_P(StoredCompensation, ReadsTheArrayWithItsSizeAndThenTheArraysizeWithout) {
    calibrate(6, 6);

    EXPECT_EQ(at(3), -200);

    EXPECT_THAT(takeCalls(), ElementsAre("read " + array + " with its size", "read " + arraySize));
}

TEST_P(StoredCompensation, DoesNotReadTheArraysizeWithoutTheArray) {
    long compensation = 4711;

    EXPECT_EQ(ask(3, compensation), 32768);

    EXPECT_EQ(compensation, 4711);
    EXPECT_THAT(takeCalls(),
                ElementsAre("read " + array + " with its size",
                            "logMsg 1 Control/OutputPowerCalculator/private/" + GetParam().name +
                                ":line getCompensationForChannelSpacing: "
                                "getCompensationForChannelSpacing Failed to get variable " +
                                array));
}

TEST_P(StoredCompensation, SucceedsBelowStatus32768AndFailsFromThereUp) {
    for (const std::uint32_t status : {0U, 1U, 32767U}) {
        calibrate(6, 6);
        BoardPlatform::variables()[array].status = status;
        EXPECT_EQ(at(3), -200) << status;

        calibrate(6, 6);
        BoardPlatform::variables()[arraySize].status = status;
        EXPECT_EQ(at(3), -200) << status;
    }
    for (const std::uint32_t status : {32768U, 32769U, 65536U, 98304U, 4294967295U}) {
        for (const std::string& name : {array, arraySize}) {
            calibrate(6, 6);
            BoardPlatform::variables()[name].status = status;
            long compensation = 4711;

            EXPECT_EQ(ask(3, compensation), 32768) << status;

            EXPECT_EQ(compensation, 4711);
        }
    }
}

TEST_P(StoredCompensation, IsFoundBehind65536Pairs) {
    std::vector<std::int32_t> elements(140000, -1);
    elements[139998] = 28;
    elements[139999] = 99;
    const std::uint32_t size = 140000;
    BoardPlatform::variables()[array] = {0, elements.data(), size};
    BoardPlatform::variables()[arraySize] = {0, &size, 0};

    EXPECT_EQ(at(28), 99);
}

TEST_P(StoredCompensation, IsThatOfAChannelBehind65536) {
    const std::string name = "channel.65537.tx.rf.pmax.cs.comp.v2.array";
    calibrate(6, 6);
    BoardPlatform::variables()[name] = BoardPlatform::variables()[array];
    BoardPlatform::variables()[name + "size"] = BoardPlatform::variables()[arraySize];
    takeCalls();
    long compensation = 4711;

    EXPECT_EQ(sut.getCompensationForChannelSpacing(65537, EChannelSpacingType{3}, compensation), 0);

    EXPECT_EQ(compensation, -200);
    EXPECT_THAT(takeCalls(),
                ElementsAre("read " + name + " with its size", "read " + name + "size"));
}

TEST_P(StoredCompensation, ReadsNoElementBehindTheReportedSize) {
    struct Row {
        std::uint32_t reportedSize;
        long at1;
        long at3;
        long at5;
    };
    for (const Row& row : {Row{0, 0, 0, 0}, Row{1, 0, 0, 0}, Row{2, 150, 0, 0}, Row{3, 150, 0, 0},
                           Row{4, 150, -200, 0}, Row{5, 150, -200, 0}, Row{6, 150, -200, 80}}) {
        for (const std::uint32_t validSize : {6U, 7U, 4294967295U}) {
            calibrate(row.reportedSize, validSize);

            EXPECT_EQ(at(1), row.at1) << row.reportedSize;
            EXPECT_EQ(at(3), row.at3) << row.reportedSize;
            EXPECT_EQ(at(5), row.at5) << row.reportedSize;
        }
    }
}

TEST_P(StoredCompensation, TakesASizeInBytesAsItStands) {
    calibrate(24, 6);

    EXPECT_EQ(at(5), 80);
    EXPECT_EQ(at(7), 0);
}

TEST_P(StoredCompensation, Is0WhenTheStoreGivesNoAddress) {
    calibrate(6, 6);
    BoardPlatform::variables()[array].address = nullptr;
    EXPECT_EQ(at(1), 0);

    calibrate(6, 6);
    BoardPlatform::variables()[arraySize].address = nullptr;
    EXPECT_EQ(at(1), 0);
}

TEST_P(StoredCompensation, Is0WhenTheStoreGivesNoSize) {
    calibrate(6, 6);
    BoardPlatform::variables()[array].size.reset();

    EXPECT_EQ(at(1), 0);
    EXPECT_EQ(at(5), 0);
}

template <class Family>
Calculator* calculatorOf() {
    return Family::getInstance();
}

INSTANTIATE_TEST_SUITE_P(
    Of, StoredCompensation,
    ::testing::Values(OutdoorFamily{"CalculatorKam", &calculatorOf<CalculatorKam>},
                      OutdoorFamily{"CalculatorKamV2", &calculatorOf<CalculatorKamV2>},
                      OutdoorFamily{"CalculatorKamV3", &calculatorOf<CalculatorKamV3>}),
    [](const auto& test) { return test.param.name; });

} // namespace
