#include "TxRfMaxPowerCapability.h"

#include "Calculation.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr unsigned refused = 32768;

static_assert(std::has_virtual_destructor_v<TxRfMaxPowerCapability>);
static_assert(std::is_copy_constructible_v<TxRfMaxPowerCapability>);
static_assert(std::is_copy_assignable_v<TxRfMaxPowerCapability>);
static_assert(sizeof(TxRfMaxPowerCapability) == 4 * sizeof(void*) + sizeof(unsigned long) + 8,
              "six fields and the pointer of a polymorphic class");
static_assert(PmaxTableDpd1Ansi == 0 && PmaxTableDpd2Ansi == 1 && PmaxTableDpd1Etsi == 2 &&
              PmaxTableDpd2Etsi == 3);

/// What a table getter does: the result it returns and what it writes; null writes nothing.
struct Getter {
    unsigned result = 0;
    const int* table = nullptr;
    const int* count = nullptr;
};

/// A capability handler whose four getters do as they are told.
class Handler : public ICapabilityHandler {
public:
    unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override {
        return answer(0, table, count);
    }
    unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override {
        return answer(1, table, count);
    }
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        return answer(2, table, count);
    }
    unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override {
        return answer(3, table, count);
    }

    Getter getters[4];
    mutable std::vector<int> calls; ///< the tables asked for, in order

private:
    unsigned answer(int index, const int** table, const int** count) const {
        calls.push_back(index);
        const Getter& getter = getters[index];
        if (getter.table != nullptr) {
            *table = getter.table;
        }
        if (getter.count != nullptr) {
            *count = getter.count;
        }
        return getter.result;
    }
};

/// Publishes an object for as long as a test runs.
class Published {
public:
    Published(const std::string& name, IInterface* object)
        : m_name(name) {
        InterfaceBroker::getInstance().registerInterface(name, object);
    }
    ~Published() { InterfaceBroker::getInstance().unregisterInterface(m_name, nullptr); }
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

private:
    std::string m_name;
};

/// A handler for channel 1 with one table for DPD 1 and ETSI.
class TableOfOneRadio : public ::testing::Test {
protected:
    /// The view of a table whose count need not be that of the integers.
    TxRfMaxPowerCapability viewOf(const std::vector<int>& integers, int count) {
        m_integers = integers;
        m_count = count;
        handler.getters[PmaxTableDpd1Etsi] = {0, m_integers.data(), &m_count};
        TxRfMaxPowerCapability view(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
        EXPECT_EQ(view.initialize(), 0);
        return view;
    }

    TxRfMaxPowerCapability viewOf(const std::vector<int>& integers) {
        return viewOf(integers, static_cast<int>(integers.size()));
    }

    static long maxPowerOf(const TxRfMaxPowerCapability& view) {
        long power = 4711;
        EXPECT_EQ(view.getMaxPower(&power), 0);
        return power;
    }

    /// The power at a modulation; fails the test if there is none.
    static long powerOf(const TxRfMaxPowerCapability& view, int modulation) {
        long power = 4711;
        EXPECT_EQ(view.getPower(Modulation{modulation}, &power), 0) << modulation;
        return power;
    }

    /// Whether the power at a modulation is refused, with the output as it was.
    static bool isUnknown(const TxRfMaxPowerCapability& view, int modulation) {
        long power = 4711;
        const int result = view.getPower(Modulation{modulation}, &power);
        return result == 32776 && power == 4711;
    }

    Handler handler;
    Published published{"ICapabilityHandler_1", &handler};
    std::vector<int> m_integers;
    int m_count = 0;
};

// --- initialize(): the handler

TEST(CapabilityHandlerOf, Channel0IsTheOneWithoutAChannel) {
    Handler wanted;
    Handler other;
    const Published named("ICapabilityHandler", &wanted);
    const Published numbered("ICapabilityHandler_0", &other);
    TxRfMaxPowerCapability sut(0, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);

    EXPECT_EQ(sut.initialize(), 0);

    EXPECT_THAT(wanted.calls, ElementsAre(2));
    EXPECT_THAT(other.calls, IsEmpty());
}

TEST(CapabilityHandlerOf, AnyOtherChannelHasTheChannelInItsNameAndIsTracedUnsigned) {
    for (const unsigned long channel : {1UL, 2UL, 4294967295UL}) {
        const std::string number = std::to_string(channel);
        Handler handler;
        const Published published("ICapabilityHandler_" + number, &handler);
        TxRfMaxPowerCapability sut(channel, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
        TraceCapture trace(6);

        EXPECT_EQ(sut.initialize(), 0);

        EXPECT_THAT(handler.calls, ElementsAre(2));
        EXPECT_THAT(trace.lines(),
                    ElementsAre("5 raw 0x820 TxRfMaxPowerCapability.initialize: m_dpdVersion = 1, "
                                "m_market = 0",
                                "5 raw 0x820 TxRfMaxPowerCapability.initialize: PmaxTable with "
                                "value 2 succeeded for channel " +
                                    number));
    }
}

TEST(CapabilityHandlerOf, AChannelWithoutOneFailsAndIsTraced) {
    for (const auto& [channel, name] :
         {std::pair{0UL, "ICapabilityHandler"}, std::pair{1UL, "ICapabilityHandler_1"},
          std::pair{4294967295UL, "ICapabilityHandler_4294967295"}}) {
        TxRfMaxPowerCapability sut(channel, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
        TraceCapture trace(6);

        EXPECT_EQ(sut.initialize(), 32768);

        EXPECT_THAT(trace.lines(), ElementsAre("1 raw 0x8000 TxRfMaxPowerCapability.initialize: "
                                               "Error getting interface to " +
                                               std::string(name)));
    }
}

TEST(CapabilityHandlerOf, AChannelWithoutOneComesBeforeAnInvalidCombination) {
    TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd3, EFrameFormatMarket::Unknown);
    TraceCapture trace(6);

    EXPECT_EQ(sut.initialize(), 32768);

    EXPECT_THAT(trace.lines(), ElementsAre("1 raw 0x8000 TxRfMaxPowerCapability.initialize: Error "
                                           "getting interface to ICapabilityHandler_1"));
}

TEST(CapabilityHandlerOf, AnObjectOfAnotherTypeOrANullPointerIsNone) {
    class AcmHandler : public IAcmHandler {};
    AcmHandler acmHandler;
    const Published wrong("ICapabilityHandler_1", &acmHandler);
    const Published nothing("ICapabilityHandler_2", nullptr);
    TxRfMaxPowerCapability ofWrong(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
    TxRfMaxPowerCapability ofNothing(2, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);

    EXPECT_EQ(ofWrong.initialize(), 32768);
    EXPECT_EQ(ofNothing.initialize(), 32768);
}

TEST(CapabilityHandlerOf, AChannelIsNotLookedUpByTheConstructor) {
    Handler handler;
    const Published published("ICapabilityHandler_1", &handler);
    TraceCapture trace(6);

    const TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);

    EXPECT_THAT(handler.calls, IsEmpty());
    EXPECT_THAT(trace.lines(), IsEmpty());
}

// --- initialize(): the tables to try

struct Combination {
    int dpdVersion;
    int market;
    std::vector<int> candidates;
};

class Candidates : public ::testing::TestWithParam<Combination> {};

TEST_P(Candidates, AreTriedInOrderUntilOneSucceeds) {
    const Combination& combination = GetParam();
    const std::string here = "TxRfMaxPowerCapability.initialize: ";
    const std::string start = "5 raw 0x820 " + here +
                              "m_dpdVersion = " + std::to_string(combination.dpdVersion) +
                              ", m_market = " + std::to_string(combination.market);

    for (std::size_t failing = 0; failing <= combination.candidates.size(); ++failing) {
        Handler handler;
        const Published published("ICapabilityHandler_2", &handler);
        const int row[2] = {4, 2500};
        const int count = 2;
        std::vector<int> calls;
        std::vector<std::string> lines = {start};
        for (std::size_t i = 0; i < combination.candidates.size() && i <= failing; ++i) {
            const int candidate = combination.candidates[i];
            const bool fails = i < failing;
            handler.getters[candidate] =
                fails ? Getter{refused, nullptr, nullptr} : Getter{0, row, &count};
            calls.push_back(candidate);
            lines.push_back("5 raw 0x820 " + here + "PmaxTable with value " +
                            std::to_string(candidate) + (fails ? " failed" : " succeeded") +
                            " for channel 2");
        }
        const bool allFail = failing == combination.candidates.size();
        if (allFail) {
            lines.push_back("1 raw 0x8000 " + here + "Failed to get TxRfMaxPowerCapability");
        }
        TxRfMaxPowerCapability sut(2, EDpdVersion{combination.dpdVersion},
                                   EFrameFormatMarket{combination.market});
        TraceCapture trace(6);

        const int result = sut.initialize();

        EXPECT_EQ(result, allFail ? 32768 : 0) << failing;
        EXPECT_THAT(trace.lines(), ElementsAreArray(lines)) << failing;
        EXPECT_THAT(handler.calls, ElementsAreArray(calls)) << failing;
        long power = 4711;
        EXPECT_EQ(sut.getPower(Modulation::QAM4, &power), allFail ? 32776 : 0) << failing;
        EXPECT_EQ(power, allFail ? 4711 : 2500) << failing;
    }
}

std::string nameOf(const ::testing::TestParamInfo<Combination>& test) {
    const std::vector<std::string> markets = {"Etsi", "Ansi", "Global"};
    return "Dpd" + std::to_string(test.param.dpdVersion) +
           markets.at(static_cast<std::size_t>(test.param.market));
}

INSTANTIATE_TEST_SUITE_P(OfEveryCombination, Candidates,
                         ::testing::Values(Combination{2, 1, {1, 0, 2}}, Combination{2, 0, {3, 2}},
                                           Combination{2, 2, {3, 2}}, Combination{1, 1, {0, 2}},
                                           Combination{1, 0, {2}}, Combination{1, 2, {2}}),
                         nameOf);

TEST(InvalidCombination, FailsWithoutAskingForATable) {
    std::vector<std::pair<int, int>> combinations = {{1, 3},  {2, 3},  {1, 4},      {2, 4},
                                                     {1, -1}, {2, -1}, {1, intMin}, {2, intMax}};
    for (const int dpdVersion : {0, 3, 4, -1, intMin, intMax}) {
        for (const int market : {0, 1, 2, 3, 4, -1}) {
            combinations.emplace_back(dpdVersion, market);
        }
    }
    for (const auto& [dpdVersion, market] : combinations) {
        const std::string dpd = std::to_string(dpdVersion);
        const std::string telecomMarket = std::to_string(market);
        Handler handler;
        const Published published("ICapabilityHandler_1", &handler);
        TxRfMaxPowerCapability sut(1, EDpdVersion{dpdVersion}, EFrameFormatMarket{market});
        TraceCapture trace(6);

        EXPECT_EQ(sut.initialize(), 32768);

        EXPECT_THAT(trace.lines(),
                    ElementsAre("5 raw 0x820 TxRfMaxPowerCapability.initialize: m_dpdVersion = " +
                                    dpd + ", m_market = " + telecomMarket,
                                "1 raw 0x8000 TxRfMaxPowerCapability.initialize: Invalid "
                                "combination of DPD version(" +
                                    dpd + ") and telecom market(" + telecomMarket + ")"));
        EXPECT_THAT(handler.calls, IsEmpty());
        const TraceCapture untraced(0);
        EXPECT_EQ(sut.initialize(), 32768);
    }
}

TEST_F(TableOfOneRadio, SucceedsBelow32768AndFailsFromThereUp) {
    for (const auto& [result, isSuccess] :
         {std::pair{0U, true}, std::pair{1U, true}, std::pair{32767U, true},
          std::pair{32768U, false}, std::pair{32769U, false}, std::pair{4294967295U, false}}) {
        handler.getters[PmaxTableDpd1Etsi] = {result, nullptr, nullptr};
        TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd1, EFrameFormatMarket::Global);

        EXPECT_EQ(sut.initialize(), isSuccess ? 0 : 32768) << result;
    }
}

TEST_F(TableOfOneRadio, KeepsJoinsOrOverwritesWhatARefusedRequestWrote) {
    const int rows[4] = {4, 2500, 16, 2400};
    const int otherRow[2] = {4, 1100};
    const int two = 2;
    const int four = 4;
    const struct {
        const char* name;
        Getter first;
        Getter second;
        int result;
        int modulation;
        long power;
    } cases[] = {
        {"keeps", {refused, rows, &two}, {refused, nullptr, nullptr}, 32768, 4, 2500},
        {"joins", {refused, rows, nullptr}, {0, nullptr, &four}, 0, 16, 2400},
        {"overwrites", {refused, rows, &two}, {0, otherRow, &two}, 0, 4, 1100},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        handler.getters[PmaxTableDpd2Etsi] = each.first;
        handler.getters[PmaxTableDpd1Etsi] = each.second;
        TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd2, EFrameFormatMarket::Etsi);

        EXPECT_EQ(sut.initialize(), each.result);

        EXPECT_EQ(powerOf(sut, each.modulation), each.power);
    }
}

TEST_F(TableOfOneRadio, KeepsItsTableWhenARepeatedRequestWritesNothing) {
    TxRfMaxPowerCapability sut = viewOf({4, 2500});
    handler.getters[PmaxTableDpd1Etsi] = {0, nullptr, nullptr};

    EXPECT_EQ(sut.initialize(), 0);

    EXPECT_EQ(powerOf(sut, 4), 2500);
}

TEST_F(TableOfOneRadio, TakesTheNewTableOfARepeatedRequest) {
    TxRfMaxPowerCapability sut = viewOf({4, 2500});
    const int row[2] = {4, 1700};
    const int count = 2;
    handler.getters[PmaxTableDpd1Etsi] = {0, row, &count};

    EXPECT_EQ(sut.initialize(), 0);

    EXPECT_EQ(powerOf(sut, 4), 1700);
}

// --- Views without a table

TEST_F(TableOfOneRadio, IsEmptyBeforeItIsInitialised) {
    const int row[2] = {4, 2500};
    const int count = 2;
    handler.getters[PmaxTableDpd1Etsi] = {0, row, &count};
    const TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
    const TxRfMaxPowerCapability ofNothing;

    EXPECT_TRUE(isUnknown(sut, 4));
    EXPECT_EQ(maxPowerOf(sut), intMin);
    EXPECT_TRUE(isUnknown(ofNothing, 4));
    EXPECT_EQ(maxPowerOf(ofNothing), intMin);
}

TEST_F(TableOfOneRadio, IsEmptyWithAHandlerThatOverridesNothing) {
    class BareHandler : public ICapabilityHandler {};
    BareHandler bare;
    const Published bareOne("ICapabilityHandler_2", &bare);
    TxRfMaxPowerCapability sut(2, EDpdVersion::Dpd2, EFrameFormatMarket::Ansi);
    TraceCapture trace(6);

    EXPECT_EQ(sut.initialize(), 0);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("5 raw 0x820 TxRfMaxPowerCapability.initialize: m_dpdVersion = 2, m_market = 1",
                    "5 raw 0x820 TxRfMaxPowerCapability.initialize: PmaxTable with value 1 "
                    "succeeded for channel 2"));
    EXPECT_TRUE(isUnknown(sut, 4));
    EXPECT_TRUE(isUnknown(sut, 0));
    EXPECT_EQ(maxPowerOf(sut), intMin);
}

TEST_F(TableOfOneRadio, IsEmptyWithoutACountOrWithoutATable) {
    const int row[2] = {4, 2500};
    const int count = 2;
    for (const Getter& getter : {Getter{0, row, nullptr}, Getter{0, nullptr, &count}}) {
        handler.getters[PmaxTableDpd1Etsi] = getter;
        TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
        sut.initialize();

        EXPECT_TRUE(isUnknown(sut, 4));
        EXPECT_EQ(maxPowerOf(sut), intMin);
    }
}

// --- getPower()

TEST_F(TableOfOneRadio, GivesTheFirstOfTwoRowsForAModulation) {
    const TxRfMaxPowerCapability sut = viewOf({4, 2500, 16, 2400, 4, 1000});

    EXPECT_EQ(powerOf(sut, 4), 2500);
    EXPECT_EQ(maxPowerOf(sut), 2500);
}

TEST_F(TableOfOneRadio, FindsRowsInAnyOrderWithPowersAtBothEndsOf32Bits) {
    const TxRfMaxPowerCapability sut =
        viewOf({16384, 1500, 2, intMin, 100000, -7, 256, intMax, 0, 2700, 8, 5});

    EXPECT_EQ(powerOf(sut, 16384), 1500);
    EXPECT_EQ(powerOf(sut, 2), intMin);
    EXPECT_EQ(powerOf(sut, 100000), -7);
    EXPECT_EQ(powerOf(sut, 256), intMax);
    EXPECT_EQ(powerOf(sut, 0), 2700);
    EXPECT_EQ(powerOf(sut, 8), 5);
    EXPECT_EQ(maxPowerOf(sut), intMax);
}

TEST_F(TableOfOneRadio, NeverTakesAPowerForAModulation) {
    const TxRfMaxPowerCapability sut = viewOf({4, 64, 16, 4});

    EXPECT_TRUE(isUnknown(sut, 64));
    EXPECT_EQ(powerOf(sut, 4), 64);
}

TEST_F(TableOfOneRadio, ComparesEveryRowThatBeginsBelowTheCount) {
    const std::vector<int> rows = {4,    2500, 16,   2400, 32,   2300, 64,   2200, 128,
                                   2100, 256,  2000, 512,  1900, 1024, 1800, 2048, 1700};
    const auto most = static_cast<int>(rows.size());
    for (const int count : {intMin, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15, 16, 17}) {
        const TxRfMaxPowerCapability sut = viewOf(rows, count);

        for (int place = 0; place < most; place += 2) {
            // A row counts as soon as its modulation lies below the count.
            const int modulation = rows[static_cast<std::size_t>(place)];
            EXPECT_EQ(isUnknown(sut, modulation), place >= count) << modulation << ' ' << count;
        }
    }
}

TEST_F(TableOfOneRadio, GivesThePowerOfARowThatTheCountLeavesIncomplete) {
    const TxRfMaxPowerCapability sut = viewOf({4, 2500}, 1);

    EXPECT_EQ(powerOf(sut, 4), 2500);
    EXPECT_EQ(maxPowerOf(sut), intMin);
}

TEST_F(TableOfOneRadio, WritesNoTraceForAModulationThatItKnows) {
    const TxRfMaxPowerCapability sut = viewOf({4, 2500});
    TraceCapture trace(6);

    powerOf(sut, 4);
    maxPowerOf(sut);

    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(TableOfOneRadio, TracesAModulationThatItDoesNotKnowByItsText) {
    const TxRfMaxPowerCapability sut = viewOf({1000, 1});
    const std::vector<std::pair<int, std::string>> texts = {
        {0, "CW"},         {2, "BPSK"},         {4, "4QAM"},         {16, "16QAM"},
        {32, "32QAM"},     {64, "64QAM"},       {128, "128QAM"},     {256, "256QAM"},
        {512, "512QAM"},   {1024, "1024QAM"},   {2048, "2048QAM"},   {4096, "4096QAM"},
        {8192, "8192QAM"}, {16384, "16384QAM"}, {65536, "65536QAM"}, {100000, "UNDEFINED"},
        {8, "UNDEFINED"},  {-1, "UNDEFINED"}};
    for (const auto& [modulation, text] : texts) {
        TraceCapture trace(6);

        EXPECT_TRUE(isUnknown(sut, modulation)) << text;

        EXPECT_THAT(trace.lines(), ElementsAre("1 raw 0x8008 TxRfMaxPowerCapability.getPower: "
                                               "getPower, unknown modulation type: " +
                                               text));
    }
}

// --- getMaxPower()

TEST_F(TableOfOneRadio, GivesTheHighestPowerOfTheWholeRows) {
    const std::vector<int> rows = {4, -300, 16, -100, 32, -200, 64, 50};
    const std::vector<std::pair<int, long>> countAndHighest = {
        {intMin, intMin}, {-3, intMin}, {-1, intMin}, {0, intMin}, {1, intMin}, {2, -300},
        {3, -300},        {4, -100},    {5, -100},    {6, -100},   {7, -100},   {8, 50}};
    for (const auto& [count, highest] : countAndHighest) {
        const TxRfMaxPowerCapability sut = viewOf(rows, count);

        EXPECT_EQ(maxPowerOf(sut), highest) << count;
    }
}

TEST_F(TableOfOneRadio, FindsTheHighestPowerWhereverItStands) {
    EXPECT_EQ(maxPowerOf(viewOf({4, 9, 16, 1, 32, 2})), 9);
    EXPECT_EQ(maxPowerOf(viewOf({4, 1, 16, 9, 32, 2})), 9);
    EXPECT_EQ(maxPowerOf(viewOf({4, 1, 16, 2, 32, 9})), 9);
    // A modulation is no power, and powers have a sign.
    EXPECT_EQ(maxPowerOf(viewOf({65536, 100, 100000, 50})), 100);
    EXPECT_EQ(maxPowerOf(viewOf({4, intMin})), intMin);
    EXPECT_EQ(maxPowerOf(viewOf({4, intMin, 16, -1})), -1);
    EXPECT_EQ(maxPowerOf(viewOf({4, -1, 16, intMax, 32, 0})), intMax);
}

// --- Copies

TEST_F(TableOfOneRadio, SharesItsTableWithItsCopies) {
    TxRfMaxPowerCapability original = viewOf({4, 2500, 16, 2400}, 2);
    const TxRfMaxPowerCapability sut(original);
    TxRfMaxPowerCapability assigned;
    assigned = original;

    m_integers[1] = 2600;
    m_count = 4;

    EXPECT_EQ(powerOf(sut, 4), 2600);
    EXPECT_EQ(powerOf(sut, 16), 2400);
    EXPECT_EQ(powerOf(assigned, 4), 2600);
    EXPECT_EQ(powerOf(original, 16), 2400);
}

TEST_F(TableOfOneRadio, RemembersInACopyWhatToLookFor) {
    const int row[2] = {4, 1200};
    const int count = 2;
    handler.getters[PmaxTableDpd2Etsi] = {0, row, &count};
    const TxRfMaxPowerCapability original(1, EDpdVersion::Dpd2, EFrameFormatMarket::Etsi);
    TxRfMaxPowerCapability sut;
    sut = original;

    EXPECT_EQ(sut.initialize(), 0);

    EXPECT_EQ(powerOf(sut, 4), 1200);
    EXPECT_TRUE(isUnknown(original, 4));
}

// --- The threshold of the raw trace

TEST_F(TableOfOneRadio, TracesErrorsFromLevel1AndTheRestFromLevel5) {
    handler.getters[PmaxTableDpd1Etsi] = {refused, nullptr, nullptr};
    const std::string start =
        "5 raw 0x820 TxRfMaxPowerCapability.initialize: m_dpdVersion = 1, m_market = 0";
    const std::string attempt = "5 raw 0x820 TxRfMaxPowerCapability.initialize: PmaxTable with "
                                "value 2 failed for channel 1";
    const std::string end =
        "1 raw 0x8000 TxRfMaxPowerCapability.initialize: Failed to get TxRfMaxPowerCapability";
    const std::string unknown =
        "1 raw 0x8008 TxRfMaxPowerCapability.getPower: getPower, unknown modulation type: 4QAM";
    for (int level = 0; level <= 6; ++level) {
        TxRfMaxPowerCapability sut(1, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi);
        TraceCapture trace(level);

        sut.initialize();
        isUnknown(sut, 4);

        const std::vector<std::string> lines = trace.lines();
        if (level == 0) {
            EXPECT_THAT(lines, IsEmpty());
        } else if (level < 5) {
            EXPECT_THAT(lines, ElementsAre(end, unknown)) << level;
        } else {
            EXPECT_THAT(lines, ElementsAre(start, attempt, end, unknown)) << level;
        }
    }
}

} // namespace
