#pragma once

#include "CallLog.h"
#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

/// The five neighbours of radio channel 1 in the broker, for as long as the object lives,
/// programmed as a small radio. Create it before the service and end it after.
class Neighbourhood {
public:
    Neighbourhood();
    ~Neighbourhood();
    Neighbourhood(const Neighbourhood&) = delete;
    Neighbourhood& operator=(const Neighbourhood&) = delete;

    /// Records the calls to all of them in one log.
    void recordTo(CallLog* log);

    static CapabilityHandlerAnswers radio();

    SimulatedCapabilityHandler capabilityHandler;
    SimulatedAcmHandler acmHandler;
    SimulatedFrameFormat frameFormat;
    SimulatedSystemPowerController systemPowerController;
    SimulatedHardwareConfigurationHandler hardwareConfigurationHandler;
};
