#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IInterface.h"
#include "ISystemPowerController.h"
#include "InterfaceBroker.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class CapabilityHandler : public ICapabilityHandler {};
class AcmHandler : public IAcmHandler {};

class Controller : public ISystemPowerController {
public:
    EReferenceSEC getReferenceSec() const override { return EReferenceSEC::Class2; }
    bool getMinOutputPowerOffset(EChannelSpacingType, long&) const override { return false; }
};

/// Leaves the one broker of the process as it was.
class BrokerTest : public ::testing::Test {
protected:
    ~BrokerTest() override {
        for (const char* name : {"first", "second", "", "FIRST", "first_1"}) {
            sut.unregisterInterface(name, nullptr);
        }
    }

    InterfaceBroker& sut = InterfaceBroker::getInstance();
};

TEST_F(BrokerTest, IsOneForTheWholeProcess) {
    EXPECT_EQ(&InterfaceBroker::getInstance(), &sut);
}

TEST_F(BrokerTest, LooksUpAnUnknownNameAsNull) {
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
    EXPECT_EQ(sut.getInterface<IInterface>("first"), nullptr);
}

TEST_F(BrokerTest, LooksUpANameWithANullPointerAsNull) {
    EXPECT_EQ(sut.registerInterface("first", nullptr), 0U);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
    EXPECT_EQ(sut.getInterface<IInterface>("first"), nullptr);
}

TEST_F(BrokerTest, LooksUpAnObjectOfAnotherTypeAsNull) {
    AcmHandler acmHandler;
    Controller controller;

    sut.registerInterface("first", &acmHandler);
    sut.registerInterface("second", &controller);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
    EXPECT_EQ(sut.getInterface<ISystemPowerController>("first"), nullptr);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("second"), nullptr);
}

TEST_F(BrokerTest, LooksUpAnObjectThroughItsVirtualBase) {
    CapabilityHandler capabilityHandler;

    EXPECT_EQ(sut.registerInterface("first", &capabilityHandler), 0U);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), &capabilityHandler);
    EXPECT_EQ(sut.getInterface<CapabilityHandler>("first"), &capabilityHandler);
    EXPECT_EQ(sut.getInterface<IInterface>("first"), &capabilityHandler);
}

TEST_F(BrokerTest, LooksUpAnObjectThroughItsPlainBase) {
    Controller controller;

    sut.registerInterface("first", &controller);

    EXPECT_EQ(sut.getInterface<ISystemPowerController>("first"), &controller);
}

TEST_F(BrokerTest, FindsNamesByExactMatchOnly) {
    CapabilityHandler capabilityHandler;
    CapabilityHandler nameless;

    sut.registerInterface("first", &capabilityHandler);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("FIRST"), nullptr);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("firs"), nullptr);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first_1"), nullptr);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>(""), nullptr);
    sut.registerInterface("", &nameless);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>(""), &nameless);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), &capabilityHandler);
}

TEST_F(BrokerTest, ReplacesAnObjectThatHasTheNameAlready) {
    CapabilityHandler former;
    CapabilityHandler latter;
    sut.registerInterface("first", &former);

    EXPECT_EQ(sut.registerInterface("first", &latter), 0U);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), &latter);
}

TEST_F(BrokerTest, KeepsOneObjectUnderSeveralNames) {
    CapabilityHandler capabilityHandler;
    sut.registerInterface("first", &capabilityHandler);
    sut.registerInterface("second", &capabilityHandler);

    sut.unregisterInterface("first", nullptr);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("second"), &capabilityHandler);
}

TEST_F(BrokerTest, UnregistersAndHandsOutTheObject) {
    CapabilityHandler capabilityHandler;
    sut.registerInterface("first", &capabilityHandler);
    IInterface* removed = nullptr;

    EXPECT_EQ(sut.unregisterInterface("first", &removed), 0U);

    EXPECT_EQ(removed, &capabilityHandler);
    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
}

TEST_F(BrokerTest, UnregistersWithoutHandingOutTheObject) {
    CapabilityHandler capabilityHandler;
    sut.registerInterface("first", &capabilityHandler);

    EXPECT_EQ(sut.unregisterInterface("first", nullptr), 0U);

    EXPECT_EQ(sut.getInterface<ICapabilityHandler>("first"), nullptr);
}

TEST_F(BrokerTest, RefusesToUnregisterAnUnknownName) {
    CapabilityHandler capabilityHandler;
    IInterface* removed = &capabilityHandler;

    EXPECT_EQ(sut.unregisterInterface("first", &removed), 32768U);

    EXPECT_EQ(removed, nullptr);
    EXPECT_EQ(sut.unregisterInterface("first", nullptr), 32768U);
}

TEST_F(BrokerTest, UnregistersANameWithANullPointer) {
    CapabilityHandler capabilityHandler;
    IInterface* removed = &capabilityHandler;
    sut.registerInterface("first", nullptr);

    EXPECT_EQ(sut.unregisterInterface("first", &removed), 0U);

    EXPECT_EQ(removed, nullptr);
    EXPECT_EQ(sut.unregisterInterface("first", &removed), 32768U);
}

} // namespace
