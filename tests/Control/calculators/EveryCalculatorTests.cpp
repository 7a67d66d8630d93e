#include "Calculation.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "DeskVariableStore.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <latch>
#include <limits>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// --- What the families share and where they differ, by type

template <class Family>
struct Promise;

template <>
struct Promise<CalculatorKam> {
    static constexpr std::int32_t lowestColumn = 2;
    static constexpr std::int32_t highestColumn = 16384;
    static constexpr bool hasBooster = false;
    static constexpr bool hasCompensation = true;
    static constexpr long powerAt16Qam = 2200; // 2000 of 256QAM and 2 dB
    static std::int32_t reference(std::int32_t available, std::int32_t) { return available; }
};

template <>
struct Promise<CalculatorKamV2> {
    static constexpr std::int32_t lowestColumn = 2;
    static constexpr std::int32_t highestColumn = 16384;
    static constexpr bool hasBooster = false;
    static constexpr bool hasCompensation = true;
    static constexpr long powerAt16Qam = 2400; // 2000 of 256QAM and 4 dB
    static std::int32_t reference(std::int32_t available, std::int32_t) { return available; }
};

template <>
struct Promise<CalculatorKamV3> {
    static constexpr bool hasBooster = false;
    static constexpr bool hasCompensation = true;
    static constexpr long powerAt16Qam = 2500; // the Pmax at 16QAM
    static std::int32_t reference(std::int32_t available, std::int32_t) { return available; }
};

template <>
struct Promise<CalculatorVo4> {
    static constexpr std::int32_t lowestColumn = 4;
    static constexpr std::int32_t highestColumn = 4096;
    static constexpr bool hasBooster = true;
    static constexpr bool hasCompensation = false;
    static constexpr long powerAt16Qam = 2200; // 2000 of 256QAM and 2 dB
    static std::int32_t reference(std::int32_t, std::int32_t) { return 256; }
};

template <>
struct Promise<CalculatorVo5> {
    static constexpr std::int32_t lowestColumn = 4;
    static constexpr std::int32_t highestColumn = 16384;
    static constexpr bool hasBooster = true;
    static constexpr bool hasCompensation = false;
    static constexpr long powerAt16Qam = 2200; // 2000 of 256QAM and 2 dB
    static std::int32_t reference(std::int32_t, std::int32_t selected) {
        return selected < 4096 ? selected : 4096;
    }
};

/// 16QAM at RSEC 2 with everything selected up to 256QAM; every family has a power for it.
CalculationData calculationAt16Qam() {
    CalculationData data = emptyCalculation();
    data.selectedMinModulation = Modulation::QAM4;
    data.selectedMaxModulation = Modulation::QAM256;
    data.actualModulation = Modulation::QAM16;
    data.refMaxModulation = Modulation::QAM256;
    data.pmaxSelectedMinModulation = 2800;
    data.pmaxActualModulation = 2500;
    data.pmaxRefMaxModulation = 2000;
    return data;
}

template <class Family>
class EveryCalculator : public ::testing::Test {
protected:
    EveryCalculator() {
        // The tables come to life at the first query, which one family traces.
        long power = 0;
        sut.getMaxPower(calculationAt16Qam(), power, 0, 0, 0, Modulation::CW);
    }

    Calculator& sut = *Family::getInstance();
};

using Families =
    ::testing::Types<CalculatorKam, CalculatorKamV2, CalculatorKamV3, CalculatorVo4, CalculatorVo5>;

class FamilyNames {
public:
    template <class Family>
    static std::string GetName(int) {
        if (std::is_same_v<Family, CalculatorKam>) {
            return "Kam";
        }
        if (std::is_same_v<Family, CalculatorKamV2>) {
            return "KamV2";
        }
        if (std::is_same_v<Family, CalculatorKamV3>) {
            return "KamV3";
        }
        return std::is_same_v<Family, CalculatorVo4> ? "Vo4" : "Vo5";
    }
};

TYPED_TEST_SUITE(EveryCalculator, Families, FamilyNames);

/// The families that count from a table of offsets, and so fail where it has no entry.
template <class Family>
class EveryCalculatorWithATable : public EveryCalculator<Family> {};

using FamiliesWithATable =
    ::testing::Types<CalculatorKam, CalculatorKamV2, CalculatorVo4, CalculatorVo5>;

TYPED_TEST_SUITE(EveryCalculatorWithATable, FamiliesWithATable, FamilyNames);

// --- The instance

TYPED_TEST(EveryCalculator, HasOneInstance) {
    EXPECT_NE(TypeParam::getInstance(), nullptr);
    EXPECT_EQ(TypeParam::getInstance(), TypeParam::getInstance());
    EXPECT_EQ(TypeParam::getInstance(), &this->sut);
}

TYPED_TEST(EveryCalculator, IsNothingButItsOperations) {
    static_assert(std::is_base_of_v<Calculator, TypeParam>);
    static_assert(sizeof(TypeParam) == sizeof(void*));
    static_assert(!std::is_copy_constructible_v<TypeParam>);
    static_assert(!std::is_default_constructible_v<TypeParam>);

    EXPECT_NE(dynamic_cast<TypeParam*>(&this->sut), nullptr);
}

TEST(Calculators, AreDistinct) {
    const std::set<const Calculator*> instances = {
        CalculatorKam::getInstance(), CalculatorKamV2::getInstance(),
        CalculatorKamV3::getInstance(), CalculatorVo4::getInstance(), CalculatorVo5::getInstance()};

    EXPECT_EQ(instances.size(), 5U);
}

// --- The reference modulation

TYPED_TEST(EveryCalculator, ChoosesItsReferenceModulationByItsRule) {
    for (const std::int32_t available : allModulations()) {
        for (const std::int32_t selected : allModulations()) {
            const Modulation reference =
                this->sut.getMaxRefModulation(Modulation{available}, Modulation{selected});

            EXPECT_EQ(static_cast<std::int32_t>(reference),
                      Promise<TypeParam>::reference(available, selected))
                << available << ", " << selected;
        }
    }
}

// --- The power

TYPED_TEST(EveryCalculator, GivesAPowerAndSucceeds) {
    long power = 4711;

    EXPECT_EQ(this->sut.getMaxPower(calculationAt16Qam(), power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, Promise<TypeParam>::powerAt16Qam);
}

TYPED_TEST(EveryCalculator, NeverGivesMoreThanThePmaxOfTheActualModulation) {
    CalculationData data = calculationAt16Qam();
    data.pmaxActualModulation = 700;
    long power = 4711;

    EXPECT_EQ(this->sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, 700);
}

TYPED_TEST(EveryCalculator, ReadsNoPmaxOfTheSelectedMaximum) {
    CalculationData data = calculationAt16Qam();
    data.pmaxSelectedMaxModulation = -9999;
    long power = 4711;

    EXPECT_EQ(this->sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, Promise<TypeParam>::powerAt16Qam);
}

TYPED_TEST(EveryCalculatorWithATable, LeavesTheOutputWhenItFails) {
    CalculationData unknownRsec = calculationAt16Qam();
    unknownRsec.rsec = EReferenceSEC::UNDEFINED;
    CalculationData unknownModulation = calculationAt16Qam();
    unknownModulation.actualModulation = Modulation{8};

    for (const int presence : {0, 1, 7}) {
        for (const CalculationData& data : {unknownRsec, unknownModulation}) {
            long power = 4711;

            EXPECT_GE(this->sut.getMaxPower(data, power, presence, 100, 2000, Modulation::QAM16384),
                      32768);

            EXPECT_EQ(power, 4711);
        }
    }
}

TYPED_TEST(EveryCalculatorWithATable, HasAPowerForTheModulationsOfItsTableAndForNoOtherNumber) {
    const std::set<std::int32_t> columns = {2,   4,    16,   32,   64,   128,  256,
                                            512, 1024, 2048, 4096, 8192, 16384};
    std::vector<std::int32_t> modulations = {std::numeric_limits<std::int32_t>::min(),
                                             std::numeric_limits<std::int32_t>::min() + 4};
    for (std::int32_t modulation = -300; modulation <= 17000; ++modulation) {
        modulations.push_back(modulation);
    }
    for (const std::int32_t modulation : {32767, 32768, 65535, 65536, 65537, 65540, 100000, 131072,
                                          1 << 30, std::numeric_limits<std::int32_t>::max()}) {
        modulations.push_back(modulation);
    }
    std::vector<std::int32_t> wrong;
    for (const std::int32_t modulation : modulations) {
        CalculationData data = calculationAt16Qam();
        data.selectedMaxModulation = Modulation::QAM16384;
        data.actualModulation = Modulation{modulation};
        long power = 0;

        const int result = this->sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW);

        const bool hasPower = columns.count(modulation) == 1 &&
                              modulation >= Promise<TypeParam>::lowestColumn &&
                              modulation <= Promise<TypeParam>::highestColumn;
        if ((result == 0) != hasPower) {
            wrong.push_back(modulation);
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TYPED_TEST(EveryCalculatorWithATable, HasAPowerForTheTenClassesAndForNoOtherNumber) {
    std::vector<std::int32_t> rsecs = {std::numeric_limits<std::int32_t>::min(), 1 << 16, 1 << 24,
                                       std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t rsec = -300; rsec <= 1300; ++rsec) {
        rsecs.push_back(rsec);
    }
    std::vector<std::int32_t> wrong;
    for (const std::int32_t rsec : rsecs) {
        CalculationData data = calculationAt16Qam();
        data.rsec = EReferenceSEC{rsec};
        long power = 0;

        const int result = this->sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW);

        if ((result == 0) != (rsec >= 0 && rsec <= 9)) {
            wrong.push_back(rsec);
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TYPED_TEST(EveryCalculator, IgnoresTheBoosterUnlessItsFamilyHasOne) {
    TraceCapture trace(6);
    long without = 4711;
    this->sut.getMaxPower(calculationAt16Qam(), without, 0, 0, 0, Modulation::CW);
    const std::vector<std::string> linesWithout = trace.lines();
    bool isIgnored = true;

    for (const int presence : {1, 7, -1, std::numeric_limits<int>::max()}) {
        for (const int gain : {0, 3000, -3000}) {
            for (const int maxInputPower : {-1000, 5000}) {
                for (const Modulation maxModulation : {Modulation::CW, Modulation::UNDEFINED}) {
                    long with = 4711;
                    const int result = this->sut.getMaxPower(calculationAt16Qam(), with, presence,
                                                             gain, maxInputPower, maxModulation);
                    isIgnored = isIgnored && result == 0 && with == without &&
                                trace.lines() == linesWithout;
                }
            }
        }
    }

    EXPECT_EQ(isIgnored, !Promise<TypeParam>::hasBooster);
}

TYPED_TEST(EveryCalculator, TakesItsRecordByValue) {
    const CalculationData data = calculationAt16Qam();
    long first = 1;
    long second = 2;

    this->sut.getMaxPower(data, first, 0, 0, 0, Modulation::CW);
    this->sut.getMaxPower(data, second, 0, 0, 0, Modulation::CW);

    EXPECT_EQ(first, second);
    EXPECT_EQ(data.pmaxActualModulation, 2500);
    EXPECT_EQ(data.pmaxRefMaxModulation, 2000);
}

TYPED_TEST(EveryCalculator, TracesWhatItsLevelAsksForAndNoMore) {
    std::vector<std::string> all;
    {
        TraceCapture trace(6);
        long power = 0;
        this->sut.getMaxPower(calculationAt16Qam(), power, 1, 0, 0, Modulation::QAM256);
        all = trace.lines();
    }
    EXPECT_FALSE(all.empty());

    for (int level = 0; level <= 5; ++level) {
        std::vector<std::string> wanted;
        for (const std::string& line : all) {
            if (line.front() - '0' <= level) {
                wanted.push_back(line);
            }
        }
        TraceCapture trace(level);
        long power = 0;

        this->sut.getMaxPower(calculationAt16Qam(), power, 1, 0, 0, Modulation::QAM256);

        EXPECT_EQ(trace.lines(), wanted) << level;
    }
}

TYPED_TEST(EveryCalculator, AnswersSeveralThreadsAtOnce) {
    constexpr int threadCount = 4;
    std::latch start(threadCount);
    std::vector<long> powers(threadCount, 4711);
    std::vector<std::thread> threads;
    for (long& power : powers) {
        threads.emplace_back([this, &start, &power] {
            start.arrive_and_wait();
            this->sut.getMaxPower(calculationAt16Qam(), power, 0, 0, 0, Modulation::CW);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_THAT(powers, ::testing::Each(Promise<TypeParam>::powerAt16Qam));
}

// --- The compensation

TYPED_TEST(EveryCalculator, HasNoCompensationUnlessItsFamilyIsCalibrated) {
    DeskVariableStore::getInstance().clear();
    for (const RadioChannel channel : {0U, 1U, 2U, 12U, 4294967295U}) {
        for (const std::int32_t spacing : {-1, 0, 28, 56, 3000}) {
            TraceCapture trace(6);
            long compensation = 4711;

            const int result = this->sut.getCompensationForChannelSpacing(
                channel, EChannelSpacingType{spacing}, compensation);

            if (Promise<TypeParam>::hasCompensation) {
                EXPECT_EQ(result, 32768);
                EXPECT_EQ(compensation, 4711);
            } else {
                EXPECT_EQ(result, 0);
                EXPECT_EQ(compensation, 0);
                EXPECT_THAT(trace.lines(), IsEmpty());
            }
        }
    }
}

TYPED_TEST(EveryCalculator, IgnoresStoredCompensationUnlessItsFamilyIsCalibrated) {
    DeskVariableStore& store = DeskVariableStore::getInstance();
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.array", {28, 150});
    store.set("channel.1.tx.rf.pmax.cs.comp.v2.arraysize", {2});
    long compensation = 4711;

    EXPECT_EQ(this->sut.getCompensationForChannelSpacing(1, EChannelSpacingType{28}, compensation),
              0);

    EXPECT_EQ(compensation, Promise<TypeParam>::hasCompensation ? 150 : 0);
    store.clear();
}

// --- The contract

static_assert(
    std::is_same_v<decltype(&Calculator::getMaxPower),
                   int (Calculator::*)(CalculationData, long&, int, int, int, Modulation)>);
static_assert(std::is_same_v<decltype(&Calculator::getMaxRefModulation),
                             Modulation (Calculator::*)(Modulation, Modulation)>);
static_assert(std::is_same_v<decltype(&Calculator::getCompensationForChannelSpacing),
                             int (Calculator::*)(RadioChannel, EChannelSpacingType, long&) const>);
static_assert(std::is_abstract_v<Calculator>);
static_assert(std::has_virtual_destructor_v<Calculator>);
static_assert(sizeof(Calculator) == sizeof(void*), "no data members");

/// A family that has nothing but what it must have.
class BareCalculator : public Calculator {
public:
    Modulation getMaxRefModulation(Modulation, Modulation) override { return Modulation::CW; }
    int getMaxPower(CalculationData, long&, int, int, int, Modulation) override { return 0; }
};

TEST(Calculator, WithoutACompensationOfItsOwnHas0) {
    const BareCalculator sut;
    long compensation = 4711;

    EXPECT_EQ(sut.getCompensationForChannelSpacing(2, EChannelSpacingType{56}, compensation), 0);

    EXPECT_EQ(compensation, 0);
}

/// Where an operation stands in the table of virtual operations.
template <class Operation>
std::ptrdiff_t slotOf(Operation operation) {
    std::ptrdiff_t words[2] = {};
    static_assert(sizeof(operation) == sizeof(words));
    std::memcpy(words, &operation, sizeof(words));
    return words[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(Calculator, HasItsOperationsInTheAgreedOrderBehindTheTwoDestructors) {
    EXPECT_EQ(slotOf(&Calculator::getMaxRefModulation), 2);
    EXPECT_EQ(slotOf(&Calculator::getMaxPower), 3);
    EXPECT_EQ(slotOf(&Calculator::getCompensationForChannelSpacing), 4);
}

TEST(CalculationData, HasItsFieldsInTheAgreedOrder) {
    const CalculationData sut = {EReferenceSEC{1},
                                 Modulation{2},
                                 Modulation{3},
                                 Modulation{4},
                                 Modulation{5},
                                 6,
                                 7,
                                 8,
                                 9,
                                 10,
                                 TxRfMaxPowerCapability()};

    EXPECT_EQ(static_cast<int>(sut.rsec), 1);
    EXPECT_EQ(static_cast<int>(sut.selectedMinModulation), 2);
    EXPECT_EQ(static_cast<int>(sut.selectedMaxModulation), 3);
    EXPECT_EQ(static_cast<int>(sut.actualModulation), 4);
    EXPECT_EQ(static_cast<int>(sut.refMaxModulation), 5);
    EXPECT_EQ(sut.pmaxSelectedMinModulation, 6);
    EXPECT_EQ(sut.pmaxSelectedMaxModulation, 7);
    EXPECT_EQ(sut.pmaxActualModulation, 8);
    EXPECT_EQ(sut.pmaxRefMaxModulation, 9);
    EXPECT_EQ(sut.csPowerCompensation, 10);
}

} // namespace
