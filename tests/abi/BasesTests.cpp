// The broker finds an interface by its run-time type record, and callers reach a virtual base
// through the virtual table: both are read here as the C++ ABI lays them out.

#include "Calculator.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "IInterface.h"
#include "IOutputPowerCalculator.h"
#include "ISystemPowerController.h"
#include "OutputPowerCalculator.h"
#include "TxRfMaxPowerCapability.h"
#include "VirtualTable.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cxxabi.h>
#include <typeinfo>

using abi_layout::virtualTableOf;

namespace {

/// Where a virtual table keeps the offset of the one virtual base: before the type record and the
/// offset to the top of the object.
constexpr std::ptrdiff_t virtualBaseSlot = -3;

template <class Class>
void expectOnlyVirtualBase(const std::type_info& base) {
    const auto* const record = dynamic_cast<const abi::__vmi_class_type_info*>(&typeid(Class));

    ASSERT_NE(record, nullptr) << "its record is not that of a class with a virtual base";
    ASSERT_EQ(record->__base_count, 1U);
    const abi::__base_class_type_info& only = record->__base_info[0];
    EXPECT_EQ(*only.__base_type, base);
    EXPECT_TRUE(only.__is_virtual_p());
    EXPECT_TRUE(only.__is_public_p());
    EXPECT_EQ(only.__offset(), virtualBaseSlot * static_cast<std::ptrdiff_t>(sizeof(void*)));
}

template <class Class>
void expectOnlyPlainBase(const std::type_info& base) {
    const auto* const record = dynamic_cast<const abi::__si_class_type_info*>(&typeid(Class));

    ASSERT_NE(record, nullptr) << "its record is not that of a class with one plain base";
    EXPECT_EQ(*record->__base_type, base);
}

template <class Class>
void expectNoBase() {
    const std::type_info& record = typeid(Class);

    EXPECT_EQ(typeid(record), typeid(abi::__class_type_info));
}

TEST(Bases, OfTheServicesInterfaceAndTwoNeighboursAreVirtual) {
    expectOnlyVirtualBase<IOutputPowerCalculator>(typeid(IInterface));
    expectOnlyVirtualBase<ICapabilityHandler>(typeid(IInterface));
    expectOnlyVirtualBase<IAcmHandler>(typeid(IInterface));
}

TEST(Bases, OfTheOtherNeighboursAreNotVirtual) {
    expectOnlyPlainBase<IFrameFormat>(typeid(IInterface));
    expectOnlyPlainBase<ISystemPowerController>(typeid(IInterface));
    expectOnlyPlainBase<IHardwareConfigurationHandler>(typeid(IInterface));
}

TEST(Bases, OfTheServiceAndTheFamiliesAreNotVirtual) {
    expectOnlyPlainBase<OutputPowerCalculator>(typeid(IOutputPowerCalculator));
    expectOnlyPlainBase<CalculatorKam>(typeid(Calculator));
    expectOnlyPlainBase<CalculatorKamV2>(typeid(Calculator));
    expectOnlyPlainBase<CalculatorKamV3>(typeid(Calculator));
    expectOnlyPlainBase<CalculatorVo4>(typeid(Calculator));
    expectOnlyPlainBase<CalculatorVo5>(typeid(Calculator));
}

TEST(Bases, AreNoneOfTheRootTheCalculatorAndTheCapabilityTable) {
    expectNoBase<IInterface>();
    expectNoBase<Calculator>();
    expectNoBase<TxRfMaxPowerCapability>();
}

TEST(Bases, ThatAreVirtualAreFoundThroughTheVirtualTable) {
    const OutputPowerCalculator service(1);
    const IOutputPowerCalculator& sut = service;
    const IInterface& root = service;
    const auto* const start = reinterpret_cast<const std::byte*>(&sut);

    const std::ptrdiff_t offset = virtualTableOf(sut)[virtualBaseSlot];

    EXPECT_EQ(start + offset, reinterpret_cast<const std::byte*>(&root));
    EXPECT_EQ(start, reinterpret_cast<const std::byte*>(&service)) << "the interface comes first";
}

} // namespace
