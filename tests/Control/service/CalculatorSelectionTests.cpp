#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "ServiceTest.h"

#include <ostream>

using traced::msg;

namespace {

/// Product numbers of one family, and what the trace says of them.
struct FamilyCase {
    const char* name;
    Calculator* (*calculator)();
    const char* message;
    std::vector<std::string> productNumbers;
};

/// What getInstance() of a family gives, as a calculator.
template <class Family>
Calculator* instance() {
    return Family::getInstance();
}

const FamilyCase familyCases[] = {
    {"NoProductNumber",
     instance<CalculatorKam>,
     "Empty productNumber, using KaM max power algorithm",
     {""}},
    {"FirstOutdoor",
     instance<CalculatorKam>,
     "Using KaM max power algorithm",
     {"QZT 846 57", "QZT 846 001"}},
    {"ThirdOutdoor", instance<CalculatorKamV3>, "Using KaMV3 max power algorithm", {"QZT 846 003"}},
    {"OlderRadioUnits",
     instance<CalculatorVo4>,
     "Using legacy TMU max power algorithm",
     {"QZT35201/1", "QZT35201/11", "QZT35201/12",  "QZT35202/1",  "QZT35203/1",
      "QZT35204/1", "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",  "QZT35207/1",
      "QZT35208/1", "QZT35221/1",  "QZT35221/11",  "QZT35221/12", "QZT35222/1",
      "QZT35223/1", "QZT35224/1",  "QZT35225/1",   "QZT35226/1",  "QZT35227/1"}},
    // Anything else, however near it comes
    {"NewerRadioUnits",
     instance<CalculatorVo5>,
     "Using TMU max power algorithm",
     {"QZT35205/1 ",
      " QZT35205/1",
      "qzt35201/1",
      "QZT35209/1",
      "QZT35220/1",
      "QZT35228/1",
      "QZT35200/1",
      "QZT35201",
      "QZT35201/",
      "QZT35201/2",
      "QZT35201/13",
      "QZT35201/111",
      "QZT35202/11",
      "QZT35202/12",
      "QZT35205/1hp",
      "QZT35205/1H",
      "QZT35206/1HP",
      "QZT35221/13",
      "QZT 35201/1",
      "QZT 846 002",
      "QZT 846 004",
      "QZT 846 57 ",
      "QZT 846 5",
      "QZT 846 571",
      "QZT 846 058",
      "QZT 846 1",
      "QZT 846 0011",
      "QZT 846 00",
      "QZT846001",
      "QZT846 57",
      "qzt 846 001",
      "QZT  846 001",
      "QZT 846 003 ",
      " QZT 846 003",
      "QZT 846 3",
      " ",
      "KaM",
      std::string("QZT 846 001\0", 12),
      std::string("\0", 1)}}};

class CalculatorSelection : public StartedServiceTest,
                            public ::testing::WithParamInterface<FamilyCase> {};

} // namespace

TEST_P(CalculatorSelection, takesTheFamilyOfTheWholeProductNumberOfTheMoment) {
    for (const std::string& productNumber : GetParam().productNumbers) {
        SCOPED_TRACE('"' + productNumber + '"');
        node.answers.capabilityHandler.productNumber = productNumber;
        node.apply();
        TraceCapture trace(6);

        const Calculator* const calculator = Inside::getCalculator(sut);

        EXPECT_EQ(calculator, GetParam().calculator());
        EXPECT_NE(calculator, CalculatorKamV2::getInstance()); // no product number leads there
        EXPECT_EQ(trace.lines(), Lines{msg(6, "getCalculator", GetParam().message)});
    }
}

INSTANTIATE_TEST_SUITE_P(, CalculatorSelection, ::testing::ValuesIn(familyCases),
                         [](const auto& shown) { return std::string(shown.param.name); });
