#include "TextForms.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(TextFormsBackwardsTest, knowsEveryModulationAndItsText) {
    EXPECT_THAT(modulationTextForms().texts(),
                ElementsAre("CW", "BPSK", "4QAM", "16QAM", "32QAM", "64QAM", "128QAM", "256QAM",
                            "512QAM", "1024QAM", "2048QAM", "4096QAM", "8192QAM", "16384QAM",
                            "65536QAM", "UNDEFINED"));
    EXPECT_EQ(modulationTextForms().find("CW"), Modulation::CW);
    EXPECT_EQ(modulationTextForms().find("65536QAM"), Modulation::QAM65536);
    EXPECT_EQ(modulationTextForms().find("UNDEFINED"), Modulation{100000});
    EXPECT_EQ(modulationTextForms().find("8QAM"), std::nullopt);
    EXPECT_EQ(modulationTextForms().find("4qam"), std::nullopt);
}

TEST(TextFormsBackwardsTest, knowsEveryModulationAndCodeByItsText) {
    EXPECT_EQ(modulationAndCodeTextForms().texts().size(), 54U);
    EXPECT_EQ(modulationAndCodeTextForms().find("HALF_BPSK_STRONG"), ModulationAndCoding{10});
    EXPECT_EQ(modulationAndCodeTextForms().find("4QAM_STRONG"), ModulationAndCoding{30});
    EXPECT_EQ(modulationAndCodeTextForms().find("65536QAM_ULTRA_STRONG"), ModulationAndCoding{143});
    EXPECT_EQ(modulationAndCodeTextForms().find("65536QAM_LIGHT"), ModulationAndCoding{162});
    EXPECT_EQ(modulationAndCodeTextForms().find("UNDEFINED"), ModulationAndCoding{163});
    EXPECT_EQ(modulationAndCodeTextForms().find("32QAM_ULTRA_STRONG"), std::nullopt);
}

TEST(TextFormsBackwardsTest, knowsEveryRsecByItsText) {
    EXPECT_THAT(
        referenceSecTextForms().texts(),
        ElementsAre("2", "4L", "4H", "5B", "6B", "5LB", "5HB", "6LB", "6HB", "7B", "UNDEFINED"));
    EXPECT_EQ(referenceSecTextForms().find("2"), EReferenceSEC{0});
    EXPECT_EQ(referenceSecTextForms().find("7B"), EReferenceSEC{9});
    EXPECT_EQ(referenceSecTextForms().find("UNDEFINED"), EReferenceSEC{1000});
}

TEST(TextFormsBackwardsTest, knowsEveryMarketByItsText) {
    EXPECT_THAT(marketTextForms().texts(), ElementsAre("Etsi", "Ansi", "Global", "Unknown"));
    EXPECT_EQ(marketTextForms().find("Unknown"), EFrameFormatMarket{3});
    EXPECT_EQ(marketTextForms().find(""), std::nullopt);
}

TEST(TextFormsBackwardsTest, writesAMarketWithoutTextAsItsNumber) {
    EXPECT_EQ(marketText(EFrameFormatMarket::Global), "Global");
    EXPECT_EQ(marketText(EFrameFormatMarket{4}), "4");
    EXPECT_EQ(marketText(EFrameFormatMarket{-1}), "-1");
}

} // namespace
