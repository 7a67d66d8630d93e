#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Export.h"
#include "IInterface.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "RadioChannel.h"

#include <string>
#include <vector>

/// The frame format that is configured on the radio now. Published per radio channel.
///
/// No query can fail. The service asks afresh whenever it needs an answer, several times within one
/// query where its steps say so.
class QOR_EXPORT IFrameFormat : public IInterface {
public:
    ~IFrameFormat() override;

    /// Modulation of the frame format; UNDEFINED if it has none.
    virtual Modulation getModulation() const = 0;

    /// Highest modulation that the modem can use with the frame format.
    virtual Modulation getMaxAvailableModulation() const = 0;

    /// The codes that the frame format can use, usually in ascending order.
    /// @param[out] modulationAndCodes replaced by the codes; its storage is reused.
    virtual void
    getModulationAndCodeArray(std::vector<ModulationAndCoding>& modulationAndCodes) const = 0;

    /// Channel spacing in whole MHz.
    virtual EChannelSpacingType getChannelSpacing() const = 0;

    /// DPD version that the transmitter uses.
    virtual EDpdVersion getDpdVersion() const = 0;

    /// Telecom market of the frame format.
    virtual EFrameFormatMarket getTelecomMarket() const = 0;

    /// Performance profiles of the frame format, for ICapabilityHandler to interpret.
    /// @param[out] performanceProfiles replaced by the profiles; its storage is reused.
    virtual void getPerformanceProfiles(std::vector<short>& performanceProfiles) const = 0;

    /// The profiles that hold when the frame-format type is carrier aggregation.
    /// @param[out] performanceProfiles replaced by the profiles; its storage is reused.
    virtual void
    getCarrierAggregationPerformanceProfiles(std::vector<short>& performanceProfiles) const = 0;

    /// "IFrameFormat_" and the channel, also for channel 0.
    static std::string interfaceName(RadioChannel channel);
};
