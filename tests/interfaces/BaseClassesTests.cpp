#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "IInterface.h"
#include "IOutputPowerCalculator.h"
#include "ISystemPowerController.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <typeinfo>

namespace {

/// A base that is not virtual can be cast down from without a look at the object.
template <class Derived>
concept DerivesPlainly = std::is_base_of_v<IInterface, Derived> && requires(IInterface* base) {
    static_cast<Derived*>(base);
};

template <class Derived>
concept DerivesVirtually = std::is_base_of_v<IInterface, Derived> &&
    std::is_convertible_v<Derived*, IInterface*> && !DerivesPlainly<Derived>;

static_assert(DerivesVirtually<IOutputPowerCalculator>);
static_assert(DerivesVirtually<ICapabilityHandler>);
static_assert(DerivesVirtually<IAcmHandler>);
static_assert(DerivesPlainly<IFrameFormat>);
static_assert(DerivesPlainly<ISystemPowerController>);
static_assert(DerivesPlainly<IHardwareConfigurationHandler>);

static_assert(std::has_virtual_destructor_v<IInterface>);
static_assert(std::has_virtual_destructor_v<IOutputPowerCalculator>);
static_assert(std::has_virtual_destructor_v<ICapabilityHandler>);
static_assert(std::has_virtual_destructor_v<IAcmHandler>);
static_assert(std::has_virtual_destructor_v<IFrameFormat>);
static_assert(std::has_virtual_destructor_v<ISystemPowerController>);
static_assert(std::has_virtual_destructor_v<IHardwareConfigurationHandler>);

static_assert(sizeof(IInterface) == sizeof(void*) + sizeof(std::string), "one text and no more");
static_assert(!std::is_copy_constructible_v<IInterface>);

static_assert(!std::is_abstract_v<ICapabilityHandler>, "every operation has a default body");
static_assert(!std::is_abstract_v<IAcmHandler>, "every operation has a default body");
static_assert(std::is_abstract_v<IOutputPowerCalculator>);
static_assert(std::is_abstract_v<IFrameFormat>);
static_assert(std::is_abstract_v<ISystemPowerController>);
static_assert(std::is_abstract_v<IHardwareConfigurationHandler>);

class Controller : public ISystemPowerController {
public:
    EReferenceSEC getReferenceSec() const override { return EReferenceSEC::Class2; }
    bool getMinOutputPowerOffset(EChannelSpacingType, long&) const override { return false; }
};

/// An object that is two neighbours at once and has one root all the same.
class Twofold : public ICapabilityHandler, public IAcmHandler {};

TEST(BaseClasses, OfAnObjectWithAPlainBaseAreFoundAtRunTime) {
    Controller sut;
    IInterface* const root = &sut;

    EXPECT_EQ(dynamic_cast<ISystemPowerController*>(root), &sut);
    EXPECT_EQ(dynamic_cast<IFrameFormat*>(root), nullptr);
    EXPECT_EQ(dynamic_cast<ICapabilityHandler*>(root), nullptr);
    EXPECT_EQ(typeid(*root), typeid(Controller));
}

TEST(BaseClasses, OfAnObjectWithVirtualBasesAreFoundAtRunTimeBehindOneRoot) {
    Twofold sut;
    ICapabilityHandler& capabilityHandler = sut;
    IAcmHandler& acmHandler = sut;
    IInterface* const root = &sut;

    EXPECT_EQ(static_cast<IInterface*>(&capabilityHandler), root);
    EXPECT_EQ(static_cast<IInterface*>(&acmHandler), root);
    EXPECT_EQ(dynamic_cast<ICapabilityHandler*>(root), &capabilityHandler);
    EXPECT_EQ(dynamic_cast<IAcmHandler*>(root), &acmHandler);
    EXPECT_EQ(dynamic_cast<IOutputPowerCalculator*>(root), nullptr);
}

/// Tells when it ends.
class Mortal : public IAcmHandler {
public:
    explicit Mortal(bool& ended)
        : m_ended(ended) {}
    ~Mortal() override { m_ended = true; }

private:
    bool& m_ended;
};

class Named : public IInterface {
public:
    using IInterface::IInterface;
};

/// An explicit instantiation may name a private member, and hands it out here.
const std::string& nameIn(const IInterface& object);
template <std::string IInterface::*member>
struct Opened {
    friend const std::string& nameIn(const IInterface& object) { return object.*member; }
};
template struct Opened<&IInterface::m_name>;

TEST(BaseClasses, HaveAnEmptyNameUnlessTheyAreGivenOne) {
    EXPECT_EQ(nameIn(Named()), "");
    EXPECT_EQ(nameIn(Named("ISomething_1")), "ISomething_1");
}

TEST(BaseClasses, EndTheWholeObjectWhenTheRootIsDeleted) {
    bool ended = false;
    const IInterface* const sut = new Mortal(ended);

    delete sut;

    EXPECT_TRUE(ended);
}

} // namespace
