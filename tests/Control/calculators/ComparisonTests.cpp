#include "Calculation.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "DeskTrace.h"
#include "LoopStride.h"
#include "TraceCapture.h"
#include "reference/Families.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

// The calculators against the plain restatement of the rules, over every combination of what a
// family looks at. Result codes and powers are compared for all of them; the traces, which take
// longer to write than to work out, for one combination in so many.

namespace {

using ::testing::IsEmpty;

/// The powers of a record, so chosen that each bound wins in turn.
struct Powers {
    std::int32_t pmaxSelectedMin;
    std::int32_t pmaxActual;
    std::int32_t pmaxRefMax;
    std::int32_t csPowerCompensation;
};

const std::vector<Powers> outdoorPowers = {
    {2800, 2700, 2000, -150},         // the offsets of the actual or the minimum modulation
    {2800, 1500, 2000, 100},          // the Pmax of the actual modulation
    {1400, 2700, 2000, 100},          // the Pmax of the selected minimum
    {1900, 1900, 1900, 0},            // several at once
    {intMax, intMax, intMax, intMax}, // sums that wrap at the upper end
    {intMax, intMax, intMin, intMin}, // and at the lower
    {intMin, intMax, 0, 0},           // the ends themselves
    {intMax, intMin, 0, 0}};

const std::vector<Powers> radioUnitPowers = {
    {0, 9000, 2000, 0},     // the offset
    {0, 1500, 2000, 0},     // the Pmax of the actual modulation
    {0, 2900, 2000, 0},     // that Pmax after the booster
    {0, intMax, intMax, 0}, // sums that wrap
    {0, intMin, intMin, 0}};

const std::vector<reference::Booster> boosters = [] {
    std::vector<reference::Booster> all;
    for (const std::int32_t presence : {0, 1, 7, -1}) {
        for (const std::int32_t maxModulation : {0, 64, 1024, 100000}) {
            all.push_back({presence, 300, 2450, maxModulation});
        }
        all.push_back({presence, -300, 9000, 100000});
        all.push_back({presence, intMin, intMax, 16384});
        all.push_back({presence, intMax, intMin, 16384});
    }
    return all;
}();

/// Compares one family's calculator with its restatement and keeps the first differences.
class Comparison {
public:
    Comparison(reference::Family family, Calculator& calculator)
        : m_family(family)
        , m_calculator(calculator) {
        DeskTrace::getInstance().setLevel(0);
        // The tables come to life at the first query, which one family traces.
        long power = 0;
        m_calculator.getMaxPower(data, power, 0, 0, 0, Modulation::CW);
    }

    void setKeys(std::int32_t rsec, std::int32_t selectedMin, std::int32_t selectedMax,
                 std::int32_t actual, std::int32_t refMax) {
        data.rsec = EReferenceSEC{rsec};
        data.selectedMinModulation = Modulation{selectedMin};
        data.selectedMaxModulation = Modulation{selectedMax};
        data.actualModulation = Modulation{actual};
        data.refMaxModulation = Modulation{refMax};
        input.rsec = rsec;
        input.selectedMin = selectedMin;
        input.selectedMax = selectedMax;
        input.actual = actual;
        input.refMax = refMax;
    }

    void setPowers(const Powers& powers) {
        data.pmaxSelectedMinModulation = powers.pmaxSelectedMin;
        data.pmaxActualModulation = powers.pmaxActual;
        data.pmaxRefMaxModulation = powers.pmaxRefMax;
        data.csPowerCompensation = powers.csPowerCompensation;
        input.pmaxSelectedMin = powers.pmaxSelectedMin;
        input.pmaxActual = powers.pmaxActual;
        input.pmaxRefMax = powers.pmaxRefMax;
        input.csPowerCompensation = powers.csPowerCompensation;
    }

    /// Compares the answers, and the traces too if they are wanted.
    void compare(std::int32_t onEntry, const reference::Booster& booster, bool withTrace) {
        if (count++ % loopStride() != 0) {
            return;
        }
        ++comparedCount;
        std::optional<TraceCapture> trace;
        if (withTrace) {
            trace.emplace(6);
        }
        long power = onEntry;
        const int code =
            m_calculator.getMaxPower(data, power, booster.presence, booster.gain,
                                     booster.maxInputPower, Modulation{booster.maxModulation});

        bool tablesBuilt = true;
        const reference::PowerAnswer expected =
            reference::getMaxPower(m_family, input, onEntry, booster, tablesBuilt);
        bool isEqual = static_cast<std::uint32_t>(code) == expected.code &&
                       power == static_cast<long>(expected.maxPower);
        if (withTrace) {
            ++traceCount;
            std::vector<std::string> lines;
            for (const reference::TraceRecord& record : expected.trace) {
                lines.push_back(describe(recordOf(record)));
            }
            isEqual = isEqual && trace->lines() == lines;
        }
        if (!isEqual && differences.size() < 10) {
            differences.push_back(describeKeys(booster) + ": " + std::to_string(code) + ", " +
                                  std::to_string(power) + ", not " + std::to_string(expected.code) +
                                  ", " + std::to_string(expected.maxPower) + ", or the trace");
        }
    }

    std::vector<std::string> differences;
    std::size_t count = 0;
    std::size_t comparedCount = 0;
    std::size_t traceCount = 0;
    CalculationData data = emptyCalculation();
    reference::CalculationInput input;

private:
    static TraceRecord recordOf(const reference::TraceRecord& record) {
        TraceRecord::Kind kind = TraceRecord::Kind::Raw;
        if (record.kind == reference::TraceKind::enter) {
            kind = TraceRecord::Kind::Enter;
        } else if (record.kind == reference::TraceKind::msg) {
            kind = TraceRecord::Kind::Message;
        }
        return {kind, record.level, record.code, record.file, record.function, 0, record.text};
    }

    std::string describeKeys(const reference::Booster& booster) const {
        return "rsec " + std::to_string(input.rsec) + ", selected " +
               std::to_string(input.selectedMin) + " to " + std::to_string(input.selectedMax) +
               ", actual " + std::to_string(input.actual) + ", reference " +
               std::to_string(input.refMax) + ", Pmax " + std::to_string(input.pmaxSelectedMin) +
               " " + std::to_string(input.pmaxActual) + " " + std::to_string(input.pmaxRefMax) +
               ", compensation " + std::to_string(input.csPowerCompensation) + ", booster " +
               std::to_string(booster.presence) + " " + std::to_string(booster.gain) + " " +
               std::to_string(booster.maxInputPower) + " " + std::to_string(booster.maxModulation);
    }

    reference::Family m_family;
    Calculator& m_calculator;
};

/// Whether it is the turn of one in so many. The numbers used are primes, so that the turns wander
/// through all values of every dimension.
bool isTurn(const Comparison& comparison, std::size_t of) {
    return comparison.count % of == 0;
}

void expectNoDifference(const Comparison& comparison, std::size_t count) {
    std::cout << "[ CASES    ] " << comparison.comparedCount << " of " << comparison.count << '\n';
    EXPECT_THAT(comparison.differences, IsEmpty());
    EXPECT_EQ(comparison.count, count);
}

void compareOffsetFamily(Comparison& comparison) {
    for (const Powers& powers : outdoorPowers) {
        comparison.setPowers(powers);
        for (const std::int32_t rsec : allRsecs()) {
            for (const std::int32_t actual : allModulations()) {
                for (const std::int32_t selectedMin : allModulations()) {
                    for (const std::int32_t refMax : allModulations()) {
                        // Not looked at: the selected maximum.
                        comparison.setKeys(rsec, selectedMin, refMax, actual, refMax);
                        comparison.compare(4711, {}, isTurn(comparison, 31));
                    }
                }
            }
        }
    }
}

TEST(EveryCombination, OfTheFirstOutdoorFamilyIsAsRestated) {
    Comparison comparison(reference::Family::Kam, *CalculatorKam::getInstance());

    compareOffsetFamily(comparison);

    expectNoDifference(comparison, 8U * 14 * 18 * 18 * 18);
}

TEST(EveryCombination, OfTheSecondOutdoorFamilyIsAsRestated) {
    Comparison comparison(reference::Family::KamV2, *CalculatorKamV2::getInstance());

    compareOffsetFamily(comparison);

    expectNoDifference(comparison, 8U * 14 * 18 * 18 * 18);
}

TEST(EveryCombination, OfTheThirdOutdoorFamilyIsAsRestated) {
    Comparison comparison(reference::Family::KamV3, *CalculatorKamV3::getInstance());
    const std::vector<std::vector<int>> tables = {{},
                                                  {16, 2200, 32, 2100, 64, 2000},
                                                  {64, -100, 16, intMin, 32, intMax, 64, 5},
                                                  {4, 2800, 256, 1900}};

    for (const std::vector<int>& table : tables) {
        const Radio radio(table);
        comparison.data.maxPowerCapability = radio.capability();
        comparison.input.pmaxTable = table;
        comparison.input.pmaxCount = static_cast<std::int32_t>(table.size());
        for (const Powers& powers : outdoorPowers) {
            comparison.setPowers(powers);
            for (const std::int32_t rsec : allRsecs()) {
                for (const std::int32_t actual : allModulations()) {
                    for (const std::int32_t onEntry : {4711, intMin, intMax}) {
                        // Not looked at: every modulation but the actual one.
                        const std::int32_t other =
                            allModulations()[comparison.count % allModulations().size()];
                        comparison.setKeys(rsec, other, other, actual, other);
                        comparison.compare(onEntry, {}, isTurn(comparison, 7));
                    }
                }
            }
        }
    }

    expectNoDifference(comparison, 4U * 8 * 14 * 18 * 3);
}

TEST(EveryCombination, OfTheOlderRadioUnitsIsAsRestated) {
    Comparison comparison(reference::Family::Vo4, *CalculatorVo4::getInstance());

    for (const Powers& powers : radioUnitPowers) {
        comparison.setPowers(powers);
        for (const std::int32_t rsec : allRsecs()) {
            for (const std::int32_t actual : allModulations()) {
                for (const std::int32_t refMax : allModulations()) {
                    // Not looked at: what is selected.
                    comparison.setKeys(rsec, refMax, actual, actual, refMax);
                    for (const reference::Booster& booster : boosters) {
                        comparison.compare(4711, booster, isTurn(comparison, 31));
                        if (refMax != 256 && booster.presence == 1) {
                            // Without an offset the booster is not looked at: a few will do.
                            break;
                        }
                    }
                }
            }
        }
    }

    expectNoDifference(comparison, 5U * 14 * 18 * (28 + 17 * 8));
}

TEST(EveryCombination, OfTheNewerRadioUnitsIsAsRestated) {
    Comparison comparison(reference::Family::Vo5, *CalculatorVo5::getInstance());

    for (const Powers& powers : radioUnitPowers) {
        comparison.setPowers(powers);
        for (const std::int32_t rsec : allRsecs()) {
            for (const std::int32_t actual : allModulations()) {
                for (const std::int32_t selectedMax : allModulations()) {
                    // Not looked at but in two messages: the reference modulation.
                    comparison.setKeys(rsec, actual, selectedMax, actual, selectedMax);
                    for (const reference::Booster& booster : boosters) {
                        comparison.compare(4711, booster, isTurn(comparison, 31));
                    }
                }
            }
        }
    }

    expectNoDifference(comparison, 5U * 14 * 18 * 18 * 28);
}

} // namespace
