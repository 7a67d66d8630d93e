// Callers on the board call through the slots below: their order is part of the binary contract.

#include "Calculator.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "IInterface.h"
#include "IOutputPowerCalculator.h"
#include "OutputPowerCalculator.h"
#include "TxRfMaxPowerCapability.h"
#include "VirtualTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

using abi_layout::addressOf;
using abi_layout::notVirtual;
using abi_layout::slotOf;
using abi_layout::virtualTableOf;
using testing::ElementsAre;

// The functions that the tables have to point at, by the names that the linker knows them by: those
// of a destructor are not to be had otherwise, and the names pin the signatures as well.
// clang-format off
void interfaceDestructor()          __asm__("_ZN10IInterfaceD1Ev");
void interfaceDeletingDestructor()  __asm__("_ZN10IInterfaceD0Ev");

void capabilityDestructor()         __asm__("_ZN22TxRfMaxPowerCapabilityD1Ev");
void capabilityDeletingDestructor() __asm__("_ZN22TxRfMaxPowerCapabilityD0Ev");

void serviceDestructor()            __asm__("_ZN21OutputPowerCalculatorD1Ev");
void serviceDeletingDestructor()    __asm__("_ZN21OutputPowerCalculatorD0Ev");
void servicePowerArray()            __asm__("_ZNK21OutputPowerCalculator37getMinMaxOutputPowerVsModulationArrayEl19ModulationAndCodingS0_13EReferenceSECRlRSt3mapIS0_lSt4lessIS0_ESaISt4pairIKS0_lEEE");
void serviceTemporaryCutback()      __asm__("_ZN21OutputPowerCalculator24setTemporaryPowerCutbackEbm");
void serviceCutback()               __asm__("_ZN21OutputPowerCalculator15setPowerCutbackEm");
void servicePowers()                __asm__("_ZNK21OutputPowerCalculator26calculatePowerCapabilitiesE10ModulationRlS1_");
void serviceAdmodPowers()           __asm__("_ZN21OutputPowerCalculator31calculateAdmodPowerCapabilitiesE10Modulation13EReferenceSECRlS2_");
void servicePminPmax()              __asm__("_ZNK21OutputPowerCalculator12findPminPmaxERlS0_");
void serviceUnrestrictedPmax()      __asm__("_ZNK21OutputPowerCalculator19getUnrestrictedPmaxERl");
void serviceTemperature()           __asm__("_ZN21OutputPowerCalculator14setTemperatureEl");
void serviceBooster()               __asm__("_ZN21OutputPowerCalculator18setBoosterPresenceEiii10Modulation");

#define FAMILY_FUNCTIONS(family, length)                                                           \
    void family##Destructor()         __asm__("_ZN" #length #family "D1Ev");                       \
    void family##DeletingDestructor() __asm__("_ZN" #length #family "D0Ev");                       \
    void family##RefModulation()      __asm__("_ZN" #length #family "19getMaxRefModulationE10ModulationS0_"); \
    void family##MaxPower()           __asm__("_ZN" #length #family "11getMaxPowerE15CalculationDataRliii10Modulation")
FAMILY_FUNCTIONS(CalculatorKam, 13);
FAMILY_FUNCTIONS(CalculatorKamV2, 15);
FAMILY_FUNCTIONS(CalculatorKamV3, 15);
FAMILY_FUNCTIONS(CalculatorVo4, 13);
FAMILY_FUNCTIONS(CalculatorVo5, 13);
#undef FAMILY_FUNCTIONS

#define COMPENSATION "32getCompensationForChannelSpacingEj19EChannelSpacingTypeRl"
void CalculatorCompensation()       __asm__("_ZNK10Calculator" COMPENSATION);
void CalculatorKamCompensation()    __asm__("_ZNK13CalculatorKam" COMPENSATION);
void CalculatorKamV2Compensation()  __asm__("_ZNK15CalculatorKamV2" COMPENSATION);
void CalculatorKamV3Compensation()  __asm__("_ZNK15CalculatorKamV3" COMPENSATION);
#undef COMPENSATION
// clang-format on

namespace {

/// A class whose one operation of its own lies in the first slot after its base's.
template <class Base>
class After : public Base {
public:
    virtual void next() = 0;
};

/// The first slots of an object's virtual table.
template <class Class>
std::vector<std::intptr_t> slots(const Class& object, std::size_t count) {
    const std::intptr_t* const table = virtualTableOf(object);
    return {table, table + count};
}

TEST(VirtualSlots, OfTheRootHoldItsTwoDestructorsAndNothingElse) {
    const IInterface sut;

    EXPECT_THAT(slots(sut, 2), ElementsAre(addressOf(interfaceDestructor),
                                           addressOf(interfaceDeletingDestructor)));
    EXPECT_EQ(slotOf(&After<IInterface>::next), 2U);
}

TEST(VirtualSlots, OfTheServicesInterfaceFollowItsOrder) {
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::getMinMaxOutputPowerVsModulationArray), 2U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::setTemporaryPowerCutback), 3U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::setPowerCutback), 4U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::calculatePowerCapabilities), 5U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::calculateAdmodPowerCapabilities), 6U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::findPminPmax), 7U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::getUnrestrictedPmax), 8U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::setTemperature), 9U);
    EXPECT_EQ(slotOf(&IOutputPowerCalculator::setBoosterPresence), 10U);
    EXPECT_EQ(slotOf(&After<IOutputPowerCalculator>::next), 11U);
}

TEST(VirtualSlots, OfTheServiceHoldItsOverridesInTheInterfacesOrder) {
    const OutputPowerCalculator service(1);
    const IOutputPowerCalculator& sut = service;

    EXPECT_THAT(slots(sut, 11),
                ElementsAre(addressOf(serviceDestructor), addressOf(serviceDeletingDestructor),
                            addressOf(servicePowerArray), addressOf(serviceTemporaryCutback),
                            addressOf(serviceCutback), addressOf(servicePowers),
                            addressOf(serviceAdmodPowers), addressOf(servicePminPmax),
                            addressOf(serviceUnrestrictedPmax), addressOf(serviceTemperature),
                            addressOf(serviceBooster)));
    EXPECT_EQ(slotOf(&After<OutputPowerCalculator>::next), 11U);
}

TEST(VirtualSlots, AreNotTakenByTheServicesOwnOperations) {
    EXPECT_EQ(slotOf(&OutputPowerCalculator::initialize), notVirtual);
    EXPECT_EQ(slotOf(&OutputPowerCalculator::applyCutbackToMaxPower), notVirtual);
}

TEST(VirtualSlots, OfACapabilityTableHoldItsTwoDestructorsAndNothingElse) {
    const TxRfMaxPowerCapability sut;

    EXPECT_THAT(slots(sut, 2), ElementsAre(addressOf(capabilityDestructor),
                                           addressOf(capabilityDeletingDestructor)));
    EXPECT_EQ(slotOf(&After<TxRfMaxPowerCapability>::next), 2U);
    EXPECT_EQ(slotOf(&TxRfMaxPowerCapability::initialize), notVirtual);
    EXPECT_EQ(slotOf(&TxRfMaxPowerCapability::getPower), notVirtual);
    EXPECT_EQ(slotOf(&TxRfMaxPowerCapability::getMaxPower), notVirtual);
}

TEST(VirtualSlots, OfACalculatorFollowItsOrder) {
    EXPECT_EQ(slotOf(&Calculator::getMaxRefModulation), 2U);
    EXPECT_EQ(slotOf(&Calculator::getMaxPower), 3U);
    EXPECT_EQ(slotOf(&Calculator::getCompensationForChannelSpacing), 4U);
    EXPECT_EQ(slotOf(&After<Calculator>::next), 5U);
}

/// One of the hardware families.
struct Family {
    const char* name;
    const Calculator* calculator;
    std::size_t end; ///< slots that the class has
    void (*destructor)();
    void (*deletingDestructor)();
    void (*refModulation)();
    void (*maxPower)();
    void (*compensation)();
};

/// In messages a family is its name; its addresses differ from run to run.
void PrintTo(const Family& family, std::ostream* stream) {
    *stream << family.name;
}

/// Names a family in a test's name.
std::string nameOf(const testing::TestParamInfo<Family>& family) {
    return family.param.name;
}

class VirtualSlotsOfFamily : public testing::TestWithParam<Family> {};

TEST_P(VirtualSlotsOfFamily, HoldItsOverridesInTheCalculatorsOrder) {
    const Calculator& sut = *GetParam().calculator;

    EXPECT_THAT(slots(sut, 5),
                ElementsAre(addressOf(GetParam().destructor),
                            addressOf(GetParam().deletingDestructor),
                            addressOf(GetParam().refModulation), addressOf(GetParam().maxPower),
                            addressOf(GetParam().compensation)));
    EXPECT_EQ(GetParam().end, 5U);
}

// The radio-unit families need no compensation and keep the body of the base.
#define FAMILY(family, compensation)                                                               \
    Family {                                                                                       \
#family, family::getInstance(), slotOf(&After <family>::next), family##Destructor,         \
            family##DeletingDestructor, family##RefModulation, family##MaxPower, compensation      \
    }
INSTANTIATE_TEST_SUITE_P(Families, VirtualSlotsOfFamily,
                         testing::Values(FAMILY(CalculatorKam, CalculatorKamCompensation),
                                         FAMILY(CalculatorKamV2, CalculatorKamV2Compensation),
                                         FAMILY(CalculatorKamV3, CalculatorKamV3Compensation),
                                         FAMILY(CalculatorVo4, CalculatorCompensation),
                                         FAMILY(CalculatorVo5, CalculatorCompensation)),
                         nameOf);
#undef FAMILY

} // namespace
