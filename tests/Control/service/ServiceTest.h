#pragma once

#include "CalculatorVo5.h"
#include "DeskTrace.h"
#include "Neighbours.h"
#include "OutputPowerCalculator.h"
#include "OutputPowerCalculatorInside.h"
#include "TraceCapture.h"
#include "TraceLines.h"

#include <string>
#include <vector>

using Inside = OutputPowerCalculatorInside;
using Lines = std::vector<std::string>;

/// What an output holds that nothing has written.
constexpr long untouched = -123456789;

// Short names for what most queries are asked with.
constexpr EFrameFormatMarket etsi = EFrameFormatMarket::Etsi;
constexpr EFrameFormatMarket ansi = EFrameFormatMarket::Ansi;
constexpr EDpdVersion dpd1 = EDpdVersion::Dpd1;
constexpr EReferenceSEC rsec2 = EReferenceSEC::Class2;
constexpr ModulationAndCoding noCode = {ModulationAndCoding::UNDEFINED};

/// A service of channel 1 that is not initialised yet, among its neighbours.
class ServiceTest : public NodeFixture {
protected:
    ServiceTest() {
        // The newer radio-unit family traces the building of its tables once in a process. It is
        // done here, so that no test's trace depends on which tests ran before.
        long power = 0;
        CalculatorVo5::getInstance()->getMaxPower(CalculationData{}, power, 0, 0, 0,
                                                  Modulation::CW);
    }

    OutputPowerCalculator sut{1};
};

/// A service that runs.
class StartedServiceTest : public ServiceTest {
protected:
    void SetUp() override { ASSERT_EQ(sut.initialize(), 0U); }
};
