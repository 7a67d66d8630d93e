#include "DenseTable.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <stdexcept>

// The dense form of the families' tables at the edges that no family's table has.

namespace {

Modulation modulationOf(std::int32_t points) {
    return static_cast<Modulation>(points);
}

constexpr int untouched = 77;

/// What a look-up leaves in the value that it is given.
template <class Table, class... Key>
int lookUp(const Table& table, Key... key) {
    int value = untouched;
    const bool isFound = table.find(key..., value);
    EXPECT_EQ(isFound, value != untouched);
    return value;
}

} // namespace

TEST(ExponentOf, aPowerOfTwoHasItsExponent) {
    EXPECT_EQ(exponentOf(modulationOf(1)), 0U);
    EXPECT_EQ(exponentOf(Modulation::BPSK), 1U);
    EXPECT_EQ(exponentOf(Modulation::QAM4), 2U);
    EXPECT_EQ(exponentOf(modulationOf(8)), 3U);
    EXPECT_EQ(exponentOf(Modulation::QAM4096), 12U);
    EXPECT_EQ(exponentOf(Modulation::QAM16384), 14U);
    EXPECT_EQ(exponentOf(modulationOf(32768)), 15U);
    EXPECT_EQ(exponentOf(Modulation::QAM65536), 16U);
}

TEST(ExponentOf, everyOtherNumberHasNoColumn) {
    for (const std::int32_t points : {0, 3, 5, 6, 7, 12, 15, 17, 24, 100, 65535, 65537, 100000,
                                      131072, 1073741824, -1, -2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(exponentOf(modulationOf(points)), 17U) << points;
    }
}

TEST(DenseTable, findsTheCellsOfItsFirstAndItsLastRowAndColumn) {
    DenseTable<3> table;
    table.set(0, modulationOf(1), 100);
    table.set(0, Modulation::QAM65536, 200);
    table.set(2, modulationOf(1), -300);
    table.set(2, Modulation::QAM65536, 0);

    EXPECT_EQ(lookUp(table, 0U, modulationOf(1)), 100);
    EXPECT_EQ(lookUp(table, 0U, Modulation::QAM65536), 200);
    EXPECT_EQ(lookUp(table, 2U, modulationOf(1)), -300);
    EXPECT_EQ(lookUp(table, 2U, Modulation::QAM65536), 0);
}

TEST(DenseTable, hasNoCellThatWasNotEntered) {
    DenseTable<3> table;
    table.set(1, Modulation::QAM64, 100);

    EXPECT_EQ(lookUp(table, 0U, Modulation::QAM64), untouched);
    EXPECT_EQ(lookUp(table, 1U, Modulation::QAM32), untouched);
    EXPECT_EQ(lookUp(table, 1U, Modulation::QAM128), untouched);
    EXPECT_EQ(lookUp(table, 2U, Modulation::QAM64), untouched);
}

TEST(DenseTable, hasNoRowBehindItsLastAndNoColumnForOtherModulations) {
    DenseTable<2> table;
    for (const unsigned int row : {0U, 1U}) {
        table.set(row, modulationOf(1), 100);
        table.set(row, Modulation::QAM65536, 200);
    }

    EXPECT_EQ(lookUp(table, 2U, modulationOf(1)), untouched);
    EXPECT_EQ(lookUp(table, 0xFFFFFFFFU, modulationOf(1)), untouched);
    EXPECT_EQ(lookUp(table, 0U, Modulation::CW), untouched);
    EXPECT_EQ(lookUp(table, 0U, Modulation::UNDEFINED), untouched);
    EXPECT_EQ(lookUp(table, 0U, modulationOf(131072)), untouched);
}

TEST(DenseTable, refusesToEnterWhereItHasNoCell) {
    DenseTable<2> table;

    EXPECT_THROW(table.set(2, Modulation::QAM4, 100), std::out_of_range);
    EXPECT_THROW(table.set(0, Modulation::UNDEFINED, 100), std::out_of_range);
}

namespace {

using TwoReferences = DenseOffsets<Modulation::QAM128, Modulation::QAM256>;

/// Cells at the first and the last class of two references, and nothing else.
TwoReferences offsetsOfTwoReferences() {
    TwoReferences offsets;
    offsets.set(Modulation::QAM128, EReferenceSEC::Class2, Modulation::QAM4, 100);
    offsets.set(Modulation::QAM128, EReferenceSEC::Class7B, Modulation::QAM4, 200);
    offsets.set(Modulation::QAM256, EReferenceSEC::Class2, Modulation::QAM4, 300);
    offsets.set(Modulation::QAM256, EReferenceSEC::Class7B, Modulation::QAM4, 400);
    return offsets;
}

} // namespace

TEST(DenseOffsets, keepsReferencesAndClassesApart) {
    const TwoReferences offsets = offsetsOfTwoReferences();

    EXPECT_EQ(lookUp(offsets, Modulation::QAM128, EReferenceSEC::Class2, Modulation::QAM4), 100);
    EXPECT_EQ(lookUp(offsets, Modulation::QAM128, EReferenceSEC::Class7B, Modulation::QAM4), 200);
    EXPECT_EQ(lookUp(offsets, Modulation::QAM256, EReferenceSEC::Class2, Modulation::QAM4), 300);
    EXPECT_EQ(lookUp(offsets, Modulation::QAM256, EReferenceSEC::Class7B, Modulation::QAM4), 400);
    EXPECT_EQ(lookUp(offsets, Modulation::QAM128, EReferenceSEC::Class4L, Modulation::QAM4),
              untouched);
}

TEST(DenseOffsets, aClassOutsideTheClassesReachesNoOtherReference) {
    const TwoReferences offsets = offsetsOfTwoReferences();

    for (const std::int32_t number : {-1, 10, 19, 1000, INT32_MAX, INT32_MIN}) {
        const auto rsec = static_cast<EReferenceSEC>(number);
        EXPECT_EQ(lookUp(offsets, Modulation::QAM128, rsec, Modulation::QAM4), untouched) << number;
        EXPECT_EQ(lookUp(offsets, Modulation::QAM256, rsec, Modulation::QAM4), untouched) << number;
    }
}

TEST(DenseOffsets, hasNothingForReferencesOutside) {
    const TwoReferences offsets = offsetsOfTwoReferences();

    for (const Modulation reference :
         {Modulation::CW, Modulation::QAM64, Modulation::QAM512, Modulation::UNDEFINED}) {
        for (const EReferenceSEC rsec : {EReferenceSEC::Class2, EReferenceSEC::Class7B}) {
            EXPECT_EQ(lookUp(offsets, reference, rsec, Modulation::QAM4), untouched);
        }
    }
}

TEST(DenseTable, hasTheCellsOfAWrittenTableAtTheirLabelsAndColumns) {
    // No constants, which nobody could see being made into the table.
    std::array rows = {dbRow(1, 2, -3), dbRow(0, 0, 4)};
    constexpr std::array columns = {Modulation::QAM4, Modulation::QAM16, Modulation::QAM32};
    const DenseTable<bandCount> dense = denseTable<bandCount>(rows, columns);

    EXPECT_EQ(lookUp(dense, 1U, Modulation::QAM4), 200);
    EXPECT_EQ(lookUp(dense, 1U, Modulation::QAM16), -300);
    EXPECT_EQ(lookUp(dense, 0U, Modulation::QAM4), 0);
    EXPECT_EQ(lookUp(dense, 0U, Modulation::QAM16), 400);
    EXPECT_EQ(lookUp(dense, 0U, Modulation::QAM32), untouched);
    EXPECT_EQ(lookUp(dense, 2U, Modulation::QAM4), untouched);
}

TEST(DenseOffsets, hasTheBlockThatWasEnteredAtItsReferenceAlone) {
    constexpr std::array rows = {dbRow(EReferenceSEC::Class2, 2, -3)};
    constexpr std::array columns = {Modulation::QAM4, Modulation::QAM16};
    TwoReferences offsets;

    offsets.enter(Modulation::QAM256, rows, columns);

    EXPECT_EQ(lookUp(offsets, Modulation::QAM256, EReferenceSEC::Class2, Modulation::QAM16), -300);
    EXPECT_EQ(lookUp(offsets, Modulation::QAM128, EReferenceSEC::Class2, Modulation::QAM16),
              untouched);
}
