#include "AllocationCount.h"
#include "BoardSupport.h"
#include "InterfaceBroker.h"
#include "Neighbours.h"
#include "OutputPowerCalculator.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

// What the service asks of the platform is pinned call by call: this program has a broker and a
// board of its own, which take the place of the desk's and note who asks them.

namespace {

using Calls = std::vector<std::string>;

Calls s_calls;
bool s_isCarrierAggregation = false;

/// The calls since the last time.
Calls taken() {
    return std::exchange(s_calls, {});
}

/// The look-ups of a start, up to the one of a name.
Calls startedUpTo(const std::string& last) {
    Calls calls;
    for (const char* const name :
         {// The four Pmax tables.
          "ICapabilityHandler_1", "ICapabilityHandler_1", "ICapabilityHandler_1",
          "ICapabilityHandler_1",
          // The service itself.
          "ICapabilityHandler_1", "IFrameFormat_1", "IHardwareConfigurationHandler",
          "IAcmHandler_1", "ISystemPowerController_1"}) {
        calls.push_back(std::string("find ") + name);
        if (name == last && calls.size() > 4) {
            break;
        }
    }
    return calls;
}

class PlatformCalls : public NodeFixture {
protected:
    PlatformCalls() { taken(); }
    ~PlatformCalls() override { s_isCarrierAggregation = false; }

    static void withdraw(const std::string& name) {
        InterfaceBroker::getInstance().unregisterInterface(name, nullptr);
        taken();
    }
};

} // namespace

InterfaceBroker& InterfaceBroker::getInstance() {
    static InterfaceBroker broker;
    return broker;
}

unsigned InterfaceBroker::registerInterface(const std::string& name, IInterface* object) {
    s_calls.push_back("register " + name);
    m_interfaces[name] = object;
    return 0;
}

unsigned InterfaceBroker::unregisterInterface(const std::string& name, IInterface**) {
    s_calls.push_back("unregister " + name);
    m_interfaces.erase(name);
    return 0;
}

IInterface* InterfaceBroker::find(const std::string& name) const {
    s_calls.push_back("find " + name);
    const auto place = m_interfaces.find(name);
    return place == m_interfaces.end() ? nullptr : place->second;
}

bool os::bsp::rl::isFftypeCarrierAggregation() {
    const AllocationCount::Elsewhere here;
    s_calls.emplace_back("isFftypeCarrierAggregation");
    return s_isCarrierAggregation;
}

TEST_F(PlatformCalls, ofAServiceAreItsLookUpsItsPublicationAndItsWithdrawal) {
    {
        OutputPowerCalculator sut(1);
        EXPECT_EQ(taken(), Calls());

        Calls start = startedUpTo("ISystemPowerController_1");
        start.emplace_back("register IOutputPowerCalculator_1");
        EXPECT_EQ(sut.initialize(), 0U);
        EXPECT_EQ(taken(), start);
        EXPECT_EQ(sut.initialize(), 0U);
        EXPECT_EQ(taken(), start);
    }
    EXPECT_EQ(taken(), Calls{"unregister IOutputPowerCalculator_1"});
}

TEST_F(PlatformCalls, ofAStartEndAtTheFirstNeighbourThatIsMissing) {
    for (const char* const name :
         {"ISystemPowerController_1", "IAcmHandler_1", "IHardwareConfigurationHandler",
          "IFrameFormat_1", "ICapabilityHandler_1"}) {
        OutputPowerCalculator sut(1);
        withdraw(name);

        EXPECT_NE(sut.initialize(), 0U);
        EXPECT_EQ(taken(), startedUpTo(name));
    }
}

TEST_F(PlatformCalls, ofAQueryAskTheBoardOnceWhereProfilesLimitIt) {
    OutputPowerCalculator sut(1);
    long minPower = 0;
    long maxPower = 0;
    const auto ask = [&] {
        EXPECT_EQ(sut.initialize(), 0U);
        taken();
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, EReferenceSEC::Class2, minPower,
                                            maxPower);
        return taken();
    };

    EXPECT_EQ(ask(), Calls());
    node.answers.capabilityHandler.maxAcmLimitedByHw = true;
    node.apply();
    EXPECT_EQ(ask(), Calls{"isFftypeCarrierAggregation"});
    s_isCarrierAggregation = true;
    EXPECT_EQ(ask(), Calls{"isFftypeCarrierAggregation"});
}
