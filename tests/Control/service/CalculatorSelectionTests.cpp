#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "ServiceTest.h"

#include <ostream>

using ::testing::ElementsAre;
using ::testing::Return;
using traced::msg;

namespace {

enum class Family {
    Kam,
    KamV3,
    Vo4,
    Vo5
};

Calculator* instanceOf(Family family) {
    switch (family) {
    case Family::Kam:
        return CalculatorKam::getInstance();
    case Family::KamV3:
        return CalculatorKamV3::getInstance();
    case Family::Vo4:
        return CalculatorVo4::getInstance();
    case Family::Vo5:
        break;
    }
    return CalculatorVo5::getInstance();
}

struct ProductCase {
    std::string productNumber;
    Family family;
    const char* message;

    friend std::ostream& operator<<(std::ostream& stream, const ProductCase& product) {
        return stream << '"' << product.productNumber << '"';
    }
};

ProductCase kam(const std::string& productNumber) {
    return {productNumber, Family::Kam, "Using KaM max power algorithm"};
}

ProductCase legacy(const std::string& productNumber) {
    return {productNumber, Family::Vo4, "Using legacy TMU max power algorithm"};
}

ProductCase newer(const std::string& productNumber) {
    return {productNumber, Family::Vo5, "Using TMU max power algorithm"};
}

class CalculatorSelection : public StartedServiceTest,
                            public ::testing::WithParamInterface<ProductCase> {};

class CalculatorSelectionOverTime : public StrictServiceTest {};

} // namespace

TEST_P(CalculatorSelection, takesTheFamilyOfTheWholeProductNumber) {
    node.answers.productNumber = GetParam().productNumber;
    TraceCapture trace(6);

    const Calculator* const calculator = Inside::getCalculator(sut);

    EXPECT_EQ(calculator, instanceOf(GetParam().family));
    EXPECT_THAT(trace.lines(), ElementsAre(msg(6, "getCalculator", GetParam().message)));
}

INSTANTIATE_TEST_SUITE_P(OfNoProductNumber, CalculatorSelection,
                         ::testing::Values(ProductCase{
                             "", Family::Kam,
                             "Empty productNumber, using KaM max power algorithm"}));

INSTANTIATE_TEST_SUITE_P(OfOutdoorProducts, CalculatorSelection,
                         ::testing::Values(kam("QZT 846 57"), kam("QZT 846 001"),
                                           ProductCase{"QZT 846 003", Family::KamV3,
                                                       "Using KaMV3 max power algorithm"}));

INSTANTIATE_TEST_SUITE_P(
    OfLegacyProducts, CalculatorSelection,
    ::testing::Values(legacy("QZT35201/1"), legacy("QZT35201/11"), legacy("QZT35201/12"),
                      legacy("QZT35202/1"), legacy("QZT35203/1"), legacy("QZT35204/1"),
                      legacy("QZT35205/1"), legacy("QZT35205/1HP"), legacy("QZT35206/1"),
                      legacy("QZT35207/1"), legacy("QZT35208/1"), legacy("QZT35221/1"),
                      legacy("QZT35221/11"), legacy("QZT35221/12"), legacy("QZT35222/1"),
                      legacy("QZT35223/1"), legacy("QZT35224/1"), legacy("QZT35225/1"),
                      legacy("QZT35226/1"), legacy("QZT35227/1")));

INSTANTIATE_TEST_SUITE_P(
    OfNearMisses, CalculatorSelection,
    ::testing::Values(
        newer("QZT35205/1 "), newer(" QZT35205/1"), newer("qzt35201/1"), newer("QZT35209/1"),
        newer("QZT35220/1"), newer("QZT35228/1"), newer("QZT35200/1"), newer("QZT35201"),
        newer("QZT35201/"), newer("QZT35201/2"), newer("QZT35201/13"), newer("QZT35201/111"),
        newer("QZT35202/11"), newer("QZT35202/12"), newer("QZT35205/1hp"), newer("QZT35205/1H"),
        newer("QZT35206/1HP"), newer("QZT35221/13"), newer("QZT 35201/1"), newer("QZT 846 002"),
        newer("QZT 846 004"), newer("QZT 846 57 "), newer("QZT 846 5"), newer("QZT 846 571"),
        newer("QZT 846 058"), newer("QZT 846 1"), newer("QZT 846 0011"), newer("QZT 846 00"),
        newer("QZT846001"), newer("QZT846 57"), newer("qzt 846 001"), newer("QZT  846 001"),
        newer("QZT 846 003 "), newer(" QZT 846 003"), newer("QZT 846 3"), newer(" "), newer("KaM"),
        newer(std::string("QZT 846 001\0", 12)), newer(std::string("\0", 1))));

TEST_F(CalculatorSelectionOverTime, asksForTheProductNumberAtEveryCall) {
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(3);

    Inside::getCalculator(sut);
    Inside::getCalculator(sut);
    Inside::getCalculator(sut);
}

TEST_F(CalculatorSelectionOverTime, followsAProductNumberThatChanges) {
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber)
        .WillOnce(Return("QZT 846 003"))
        .WillOnce(Return("QZT35227/1"))
        .WillOnce(Return(""))
        .WillOnce(Return("QZT 846 003"))
        .WillOnce(Return("X"));
    TraceCapture trace(6);

    EXPECT_EQ(Inside::getCalculator(sut), CalculatorKamV3::getInstance());
    EXPECT_EQ(Inside::getCalculator(sut), CalculatorVo4::getInstance());
    EXPECT_EQ(Inside::getCalculator(sut), CalculatorKam::getInstance());
    EXPECT_EQ(Inside::getCalculator(sut), CalculatorKamV3::getInstance());
    EXPECT_EQ(Inside::getCalculator(sut), CalculatorVo5::getInstance());

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(msg(6, "getCalculator", "Using KaMV3 max power algorithm"),
                    msg(6, "getCalculator", "Using legacy TMU max power algorithm"),
                    msg(6, "getCalculator", "Empty productNumber, using KaM max power algorithm"),
                    msg(6, "getCalculator", "Using KaMV3 max power algorithm"),
                    msg(6, "getCalculator", "Using TMU max power algorithm")));
}

namespace {

class CalculatorSelectionInAQuery : public StartedServiceTest {};

} // namespace

TEST_F(CalculatorSelectionInAQuery, followsAProductNumberThatChangesBetweenTwoQueries) {
    long minPower = untouched;
    long ofFirstOutdoor = untouched;
    long ofOldRadioUnit = untouched;

    node.answers.productNumber = "QZT 846 001";
    sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, ofFirstOutdoor);
    node.answers.productNumber = "QZT35201/1";
    sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, ofOldRadioUnit);

    EXPECT_EQ(ofFirstOutdoor, 2550); // 2200 + 200 and the spacing's 150
    EXPECT_EQ(ofOldRadioUnit, 2400); // 2200 + 200; the family knows no compensation
}

TEST_F(CalculatorSelectionInAQuery, followsAProductNumberThatChangesWithinAQuery) {
    // The compensation comes from the first outdoor family, the power from the older radio units.
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber)
        .WillOnce(Return("QZT 846 57"))
        .WillOnce(Return("QZT35201/1"));
    TraceCapture trace(5);
    long minPower = untouched;
    long maxPower = untouched;

    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2400);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorVo4.getMaxPower: Max power = 2400 for 16QAM, RSEC-2, "
                            "using ref acm 256QAM"));
}

TEST_F(CalculatorSelectionInAQuery, neverTakesTheSecondOutdoorFamily) {
    for (const char* const productNumber : {"", "QZT 846 57", "QZT 846 001", "QZT 846 002", "X"}) {
        node.answers.productNumber = productNumber;
        EXPECT_NE(Inside::getCalculator(sut), CalculatorKamV2::getInstance()) << productNumber;
    }
}
