#include "FamilyRows.h"
#include "LoopStride.h"
#include "reference/Families.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <limits>
#include <set>
#include <string>
#include <vector>

// The plain restatement of the rules, with which all else is compared, against the same rules as
// rows.

namespace {

constexpr std::int32_t intMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t intMax = std::numeric_limits<std::int32_t>::max();

struct RowsOf {
    const char* name;
    reference::Family family;
    bool isOutdoor; ///< whether the lowest selected modulation counts, or else the booster
};

const std::vector<RowsOf> everyFamily = {{"FirstOutdoor", reference::Family::Kam, true},
                                         {"SecondOutdoor", reference::Family::KamV2, true},
                                         {"ThirdOutdoor", reference::Family::KamV3, true},
                                         {"OlderRadioUnit", reference::Family::Vo4, false},
                                         {"NewerRadioUnit", reference::Family::Vo5, false}};

const nlohmann::json& everyRow() {
    static const nlohmann::json rows = nlohmann::json::parse(std::ifstream(QOR_FAMILY_ROWS));
    return rows;
}

/// All classes, and numbers beside and far from them that are none.
const std::vector<std::int32_t> classes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, -1, 10, intMin};

/// All modulations, and numbers between and far from them that are none.
std::vector<std::int32_t> everyModulation() {
    std::vector<std::int32_t> modulations = reference::listedModulations();
    modulations.insert(modulations.end(), {100000, 8, 32768, -1});
    return modulations;
}

/// The powers of a case, so chosen that each bound wins in turn, and the ends.
struct Powers {
    std::int32_t pmaxSelectedMin;
    std::int32_t pmaxActual;
    std::int32_t pmaxReference;
    std::int32_t compensation;
};

const std::vector<Powers> everyPowers = {
    {2800, 2700, 2000, -150},         {2800, 1500, 2000, 100},
    {1400, 2700, 2000, 100},          {1900, 1900, 1900, 0},
    {9000, 9000, 2000, 30},           {intMax, intMax, intMax, intMax},
    {intMax, intMax, intMin, intMin}, {intMin, intMax, 0, 0},
    {intMax, intMin, 0, 1},           {0, intMin, intMin, intMin}};

const std::vector<reference::Booster> everyBooster = [] {
    std::vector<reference::Booster> all;
    for (const std::int32_t presence : {0, 1, 7, -1, 8}) {
        for (const std::int32_t maxModulation : {0, 64, 1024, 100000}) {
            all.push_back({presence, 300, 2450, maxModulation});
        }
        all.push_back({presence, -300, 9000, 100000});
        all.push_back({presence, intMin, intMax, 16384});
        all.push_back({presence, intMax, intMin, 16384});
    }
    return all;
}();

const std::vector<FamilyRows::RadioTable> everyRadioTable = {
    {16, 2200, 32, 2100, 64, 2000}, {64, intMin, 16, intMax, 32, 1, 16, 5, 64, 6}, {4, 2500}};

class Restatement : public ::testing::TestWithParam<RowsOf> {
protected:
    void compare(const reference::CalculationInput& input, const reference::Booster& booster,
                 const FamilyRows::RadioTable& radioTable) {
        constexpr std::int32_t onEntry = 1800;
        const FamilyRows::Inputs inputs = {input.rsec,
                                           input.selectedMin,
                                           input.selectedMax,
                                           input.actual,
                                           0,
                                           input.refMax,
                                           input.pmaxSelectedMin,
                                           input.pmaxActual,
                                           input.pmaxRefMax,
                                           input.csPowerCompensation,
                                           booster.presence,
                                           booster.gain,
                                           booster.maxInputPower,
                                           booster.maxModulation,
                                           onEntry};
        const FamilyRows::Answer right = m_rows.powerOf(inputs, radioTable);
        bool areTablesBuilt = true;
        const reference::PowerAnswer answer =
            reference::getMaxPower(GetParam().family, input, onEntry, booster, areTablesBuilt);
        ++m_cases;
        ASSERT_EQ(answer.code, right.result) << textOf(input, booster);
        ASSERT_EQ(answer.maxPower, right.power) << textOf(input, booster);
    }

    /// With the usual reference, once with and once without a booster, and with each radio's table
    /// where that counts.
    void compareWhatEveryBuildTries(reference::CalculationInput input) {
        input.refMax = 256;
        input.selectedMax = 256;
        input.selectedMin = 64;
        for (const std::int32_t presence : {0, 7}) {
            ASSERT_NO_FATAL_FAILURE(compare(input, {presence, 300, 2450, 100000}, {}));
        }
        if (GetParam().family != reference::Family::KamV3) {
            return;
        }
        for (const FamilyRows::RadioTable& radioTable : everyRadioTable) {
            input.pmaxTable = radioTable;
            input.pmaxCount = static_cast<std::int32_t>(radioTable.size());
            ASSERT_NO_FATAL_FAILURE(compare(input, {}, radioTable));
        }
    }

    /// With every reference, and every lowest selected modulation or every booster.
    void compareByTurns(reference::CalculationInput input) {
        const std::size_t others =
            GetParam().isOutdoor ? m_modulations.size() : everyBooster.size();
        const std::size_t count = m_modulations.size() * others;
        for (; m_turn < count; m_turn += loopStride()) {
            // What one family takes for the reference is the highest selected to another.
            input.refMax = m_modulations[m_turn / others];
            input.selectedMax = input.refMax;
            const std::size_t other = m_turn % others;
            input.selectedMin = GetParam().isOutdoor ? m_modulations[other] : 64;
            ASSERT_NO_FATAL_FAILURE(compare(
                input, GetParam().isOutdoor ? everyBooster.back() : everyBooster[other], {}));
        }
        m_turn -= count;
    }

    static std::string textOf(const reference::CalculationInput& input,
                              const reference::Booster& booster) {
        return "class " + std::to_string(input.rsec) + ", modulation " +
               std::to_string(input.actual) + ", selected " + std::to_string(input.selectedMin) +
               " to " + std::to_string(input.selectedMax) + ", reference " +
               std::to_string(input.refMax) + ", booster " + std::to_string(booster.presence) +
               " up to " + std::to_string(booster.maxModulation);
    }

    static void setPowers(reference::CalculationInput& input, const Powers& powers) {
        input.pmaxSelectedMin = powers.pmaxSelectedMin;
        input.pmaxActual = powers.pmaxActual;
        input.pmaxRefMax = powers.pmaxReference;
        input.csPowerCompensation = powers.compensation;
    }

    const std::vector<std::int32_t> m_modulations = everyModulation();
    const FamilyRows m_rows{everyRow().at(GetParam().name)};
    std::size_t m_turn = 0;
    std::size_t m_cases = 0;
};

} // namespace

TEST(RestatementRows, thereAreSomeForEachFamily) {
    std::set<std::string> named;
    for (const RowsOf& rows : everyFamily) {
        named.insert(rows.name);
    }
    std::set<std::string> found;
    for (const auto& [name, rows] : everyRow().items()) {
        found.insert(name);
    }
    EXPECT_EQ(found, named);
}

TEST_P(Restatement, hasTheReferenceOfTheRows) {
    for (const std::int32_t available : everyModulation()) {
        for (const std::int32_t selected : everyModulation()) {
            FamilyRows::Inputs inputs{};
            inputs[FamilyRows::Available] = available;
            inputs[FamilyRows::SelectedMax] = selected;
            ASSERT_EQ(
                reference::getMaxRefModulation(GetParam().family, available, selected).modulation,
                m_rows.referenceOf(inputs))
                << available << ' ' << selected;
        }
    }
}

TEST_P(Restatement, hasThePowersOfTheRows) {
    for (const std::int32_t rsec : classes) {
        for (const std::int32_t actual : m_modulations) {
            for (const Powers& powers : everyPowers) {
                reference::CalculationInput input;
                input.rsec = rsec;
                input.actual = actual;
                setPowers(input, powers);
                ASSERT_NO_FATAL_FAILURE(compareWhatEveryBuildTries(input));
                ASSERT_NO_FATAL_FAILURE(compareByTurns(input));
            }
        }
    }
    RecordProperty("cases", static_cast<int>(m_cases));
    std::cout << "[ CASES    ] " << m_cases << " cases of rows\n";
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, Restatement, ::testing::ValuesIn(everyFamily),
                         [](const auto& family) { return std::string(family.param.name); });
