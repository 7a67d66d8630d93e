#pragma once

#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Everything that the output power calculator sees of a radio node, but for the channel.
///
/// Cheap to copy: states of one node that differ in part share the rest.
struct NodeAnswers {
    /// Stored variables by name, each a row of 32-bit elements; a single value is one element.
    using Variables = std::map<std::string, std::vector<std::int32_t>>;

    // A null pointer is a neighbour that is not registered.
    std::shared_ptr<const CapabilityHandlerAnswers> capabilityHandler;
    std::shared_ptr<const AcmHandlerAnswers> acmHandler;
    std::shared_ptr<const FrameFormatAnswers> frameFormat;
    std::shared_ptr<const SystemPowerControllerAnswers> systemPowerController;
    std::shared_ptr<const HardwareConfigurationHandlerAnswers> hardwareConfigurationHandler;

    std::shared_ptr<const Variables> variables; ///< null: none
    bool carrierAggregation = false;            ///< what the board answers
};

/// One of the four Pmax tables of a capability handler.
struct PmaxTableName {
    const char* key; ///< in the radio file
    int dpdVersion;
    const char* market;
    std::optional<CapabilityHandlerAnswers::Pmax> CapabilityHandlerAnswers::*answer;
};

/// The four, in the order of the manual.
inline constexpr std::array<PmaxTableName, 4> pmaxTables{{
    {"pmaxDpd1Etsi", 1, "Etsi", &CapabilityHandlerAnswers::pmaxDpd1Etsi},
    {"pmaxDpd2Etsi", 2, "Etsi", &CapabilityHandlerAnswers::pmaxDpd2Etsi},
    {"pmaxDpd1Ansi", 1, "Ansi", &CapabilityHandlerAnswers::pmaxDpd1Ansi},
    {"pmaxDpd2Ansi", 2, "Ansi", &CapabilityHandlerAnswers::pmaxDpd2Ansi},
}};
