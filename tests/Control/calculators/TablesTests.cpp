#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "DbTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

// Every cell of every table against a second copy, in whole dB and in the layout of the product
// sheets: rows that hold for several classes stand there once.

namespace {

using ::testing::IsEmpty;

using Numbers = std::vector<int>;

struct SheetRow {
    Numbers rsecs;
    Numbers dB;
};
using Sheet = std::vector<SheetRow>;

/// One line of the sheet of the newer radio units: a reference and its three groups of classes.
struct ReferenceRow {
    int reference;
    Numbers rsec0;
    Numbers rsec1And2;
    Numbers rsec3To9;
};

const Numbers from5B = {3, 6, 5, 4, 7, 8, 9};
const Numbers everyClass = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

// clang-format off
const Numbers outdoorColumns =
                {2, 4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384};
const Sheet kamSheet = {
    {{0},       {3, 3,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3}},
    {{1},       {2, 2,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3}},
    {{2},       {2, 2,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3}},
    {from5B,    {1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3}}};
const Sheet kamV2Sheet = {
    {{0},       {6, 6,  4,  2,  1,   1,   0,   0,   -1,   -1,   -1,   -1,    -1}},
    {{1},       {4, 4,  4,  2,  1,   1,   0,   0,   -1,   -1,   -1,   -1,    -1}},
    {{2},       {2, 2,  2,  2,  1,   1,   0,   0,   -1,   -1,   -1,   -1,    -1}},
    {from5B,    {1, 1,  1,  1,  1,   1,   0,   0,   -1,   -1,   -1,   -1,    -1}}};

const Numbers vo4Columns =
                   {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096};
const Sheet vo4Sheet = {
    {{0},          {3,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2}},
    {{1},          {2,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2}},
    {{2},          {2,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2}},
    {from5B,       {1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2}}};
const Sheet vo4BoosterSheet = {
    {everyClass,   {7,  7,  6,  5,   5,   5,   6,    7,    0,    0}}};
const Sheet vo4BandSheet = {
    {{0},          {2,  2,  2,  2,   2,   2,   2,    2,    0,    0}},
    {{1},          {0,  0,  0,  0,   0,   0,   0,    0,    0,    0}}};

const Numbers vo5Columns =
                   {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384};
const std::vector<ReferenceRow> vo5Sheet = {
    {128,
        {2, 1, 1, 0, 0},
        {1, 1, 1, 0, 0},
        {0, 0, 0, 0, 0}},
    {256,
        {3, 2, 2, 1, 1, 0},
        {2, 2, 2, 1, 1, 0},
        {1, 1, 1, 1, 1, 0}},
    {512,
        {3, 2, 2, 1, 1, 0, 0},
        {2, 2, 2, 1, 1, 0, 0},
        {1, 1, 1, 1, 1, 0, 0}},
    {1024,
        {4, 3, 3, 2, 2, 1, 0, 0},
        {3, 3, 3, 2, 2, 1, 0, 0},
        {2, 2, 2, 2, 2, 1, 0, 0}},
    {2048,
        {4, 3, 3, 2, 2, 1, 0, 0, 0},
        {3, 3, 3, 2, 2, 1, 0, 0, 0},
        {2, 2, 2, 2, 2, 1, 0, 0, 0}},
    {4096,
        {5, 4, 4, 3, 3, 2, 1, 1, 0, 0},
        {4, 4, 4, 3, 3, 2, 1, 1, 0, 0},
        {3, 3, 3, 3, 3, 2, 1, 1, 0, 0}},
    {8192,
        {5, 4, 4, 3, 3, 2, 1, 1, 0, -1, -1},
        {4, 4, 4, 3, 3, 2, 1, 1, 0, -1, -1},
        {3, 3, 3, 3, 3, 2, 1, 1, 0, -1, -1}},
    {16384,
        {5, 4, 4, 3, 3, 2, 1, 1, 0, 0, -1, -1},
        {4, 4, 4, 3, 3, 2, 1, 1, 0, 0, -1, -1},
        {3, 3, 3, 3, 3, 2, 1, 1, 0, 0, -1, -1}}};
const Sheet vo5BoosterSheet = {
    {everyClass,   {7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0}}};
const Sheet vo5BandSheet = {
    {{0},          {2,  2,  2,  2,   2,   2,   2,    2,    0,    0,    0,     0}},
    {{1},          {0,  0,  0,  0,   0,   0,   0,    0,    0,    0,    0,     0}}};
// clang-format on

/// A table by its keys, as plain numbers.
using Cells = std::map<Numbers, int>;

void enter(Cells& cells, const Numbers& outerKey, const Sheet& sheet, const Numbers& columns) {
    for (const SheetRow& row : sheet) {
        for (const int rsec : row.rsecs) {
            for (std::size_t column = 0; column < row.dB.size(); ++column) {
                Numbers key = outerKey;
                key.push_back(rsec);
                key.push_back(columns.at(column));
                cells[key] = row.dB[column] * 100;
            }
        }
    }
}

Cells cellsOf(const Numbers& outerKey, const Sheet& sheet, const Numbers& columns) {
    Cells cells;
    enter(cells, outerKey, sheet, columns);
    return cells;
}

template <class Map>
Cells cellsOf(const Map& table) {
    Cells cells;
    for (const auto& [key, value] : table) {
        std::apply(
            [&cells, cell = value](auto... part) { cells[{static_cast<int>(part)...}] = cell; },
            key);
    }
    return cells;
}

std::string textOf(const Numbers& key) {
    std::string text;
    for (const int part : key) {
        text += (text.empty() ? "" : ", ") + std::to_string(part);
    }
    return text;
}

/// What differs, cell by cell.
std::vector<std::string> differences(const Cells& table, const Cells& sheet) {
    std::vector<std::string> found;
    for (const auto& [key, value] : sheet) {
        const auto cell = table.find(key);
        if (cell == table.end()) {
            found.push_back("(" + textOf(key) + ") is missing");
        } else if (cell->second != value) {
            found.push_back("(" + textOf(key) + ") is " + std::to_string(cell->second) + ", not " +
                            std::to_string(value));
        }
    }
    for (const auto& [key, value] : table) {
        if (sheet.count(key) == 0) {
            found.push_back("(" + textOf(key) + ") is " + std::to_string(value) + " too much");
        }
    }
    return found;
}

TEST(Tables, AreWrittenDownInRowsOfALabelAndWholeDecibels) {
    std::vector<int> labels = {7};

    const auto row = dbRow(labels.front(), 3, -2, 0);

    EXPECT_EQ(row.label, 7);
    EXPECT_THAT(row.dB, ::testing::ElementsAre(3, -2, 0));
}

TEST(Tables, OfTheFirstOutdoorFamilyAreThoseOfItsSheet) {
    const PowerOffsets sut = CalculatorKam::initialize();

    EXPECT_EQ(sut.size(), 130U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({256}, kamSheet, outdoorColumns)), IsEmpty());
}

TEST(Tables, OfTheSecondOutdoorFamilyAreThoseOfItsSheet) {
    const PowerOffsets sut = CalculatorKamV2::initialize();

    EXPECT_EQ(sut.size(), 130U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({256}, kamV2Sheet, outdoorColumns)), IsEmpty());
}

TEST(Tables, OfTheOlderRadioUnitsAreThoseOfTheirSheet) {
    const PowerOffsets sut = CalculatorVo4::initialize();

    EXPECT_EQ(sut.size(), 100U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({256}, vo4Sheet, vo4Columns)), IsEmpty());
}

TEST(Tables, OfTheBoosterOfTheOlderRadioUnitsAreThoseOfTheirSheet) {
    const BoosterAdjustments sut = CalculatorVo4::initializeBoosterAdjs();

    EXPECT_EQ(sut.size(), 100U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({}, vo4BoosterSheet, vo4Columns)), IsEmpty());
}

TEST(Tables, OfTheBoosterBandsOfTheOlderRadioUnitsAreThoseOfTheirSheet) {
    const BoosterBandAdjustments sut = CalculatorVo4::initializeBoosterBandAdjs();

    EXPECT_EQ(sut.size(), 20U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({}, vo4BandSheet, vo4Columns)), IsEmpty());
}

TEST(Tables, OfTheNewerRadioUnitsAreThoseOfTheirSheet) {
    Cells sheet;
    for (const ReferenceRow& row : vo5Sheet) {
        enter(sheet, {row.reference},
              {{{0}, row.rsec0}, {{1, 2}, row.rsec1And2}, {from5B, row.rsec3To9}}, vo5Columns);
    }
    const PowerOffsets sut = CalculatorVo5::initialize();

    EXPECT_EQ(sut.size(), 680U);
    EXPECT_THAT(differences(cellsOf(sut), sheet), IsEmpty());
}

TEST(Tables, OfTheBoosterOfTheNewerRadioUnitsAreThoseOfTheirSheet) {
    const BoosterAdjustments sut = CalculatorVo5::initializeBoosterAdjs();

    EXPECT_EQ(sut.size(), 120U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({}, vo5BoosterSheet, vo5Columns)), IsEmpty());
}

TEST(Tables, OfTheBoosterBandsOfTheNewerRadioUnitsAreThoseOfTheirSheet) {
    const BoosterBandAdjustments sut = CalculatorVo5::initializeBoosterBandAdjs();

    EXPECT_EQ(sut.size(), 24U);
    EXPECT_THAT(differences(cellsOf(sut), cellsOf({}, vo5BandSheet, vo5Columns)), IsEmpty());
}

} // namespace
