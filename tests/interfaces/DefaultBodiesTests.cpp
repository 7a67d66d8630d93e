#include "IAcmHandler.h"
#include "ICapabilityHandler.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

/// Neighbours that override nothing.
class BareCapabilityHandler : public ICapabilityHandler {};
class BareAcmHandler : public IAcmHandler {};

using PmaxGetter = unsigned (ICapabilityHandler::*)(const int**, const int**) const;

TEST(DefaultCapabilityHandler, HasNoProductNumber) {
    const BareCapabilityHandler sut;

    EXPECT_EQ(sut.getTmuHwProductNumber(), "");
}

TEST(DefaultCapabilityHandler, GivesNoMinimumPowerAndSucceeds) {
    const BareCapabilityHandler sut;
    const int power = -1000;
    const int* table = &power;

    EXPECT_EQ(sut.getMinOutputPower(&table), 0U);

    EXPECT_EQ(table, &power);
    EXPECT_EQ(power, -1000);
    EXPECT_EQ(sut.getMinOutputPower(nullptr), 0U);
}

TEST(DefaultCapabilityHandler, GivesNoPmaxTableAndSucceeds) {
    const BareCapabilityHandler sut;
    const int row[2] = {4, 2500};
    const int size = 2;

    for (const PmaxGetter getter : {&ICapabilityHandler::getPmaxCapabilityDpd1Ansi,
                                    &ICapabilityHandler::getPmaxCapabilityDpd2Ansi,
                                    &ICapabilityHandler::getPmaxCapabilityDpd1Etsi,
                                    &ICapabilityHandler::getPmaxCapabilityDpd2Etsi}) {
        const int* table = row;
        const int* count = &size;

        EXPECT_EQ((sut.*getter)(&table, &count), 0U);

        EXPECT_EQ(table, row);
        EXPECT_EQ(count, &size);
        EXPECT_EQ((sut.*getter)(nullptr, nullptr), 0U);
    }
}

TEST(DefaultCapabilityHandler, LimitsNoModulation) {
    const BareCapabilityHandler sut;
    const EFrameFormatMarket market = EFrameFormatMarket::Ansi;

    EXPECT_FALSE(sut.isMaxAcmLimitedByHw());
    EXPECT_EQ(sut.getPerformanceProfileIndex(), -1);
    EXPECT_EQ(sut.getMaxModulationLimitedByHw({1, 2, 3}, 1), Modulation{100000});
    EXPECT_EQ(sut.getMaxModulationLimitedByHw({}, -1), Modulation{100000});
    EXPECT_EQ(sut.getMaxModulationWithoutLimitation(market), Modulation{100000});
}

TEST(DefaultAcmHandler, DoesNotProvideTheSelectionAndWritesNothing) {
    BareAcmHandler sut;
    ModulationAndCoding min{31};
    ModulationAndCoding max{81};

    EXPECT_EQ(sut.getMinMaxModulationAndCode(min, max), 32769U);

    EXPECT_EQ(min.code, 31);
    EXPECT_EQ(max.code, 81);
}

} // namespace
