#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Export.h"
#include "IInterface.h"
#include "ModulationAndCoding.h"
#include "RadioChannel.h"

#include <string>
#include <vector>

/// One frame format of the hardware configuration, as the list of all of them shows it.
struct FrameFormatRecord {
    long id;                            ///< by which queries ask for it
    EChannelSpacingType channelSpacing; ///< in whole MHz
};

/// Every frame format that the unit's hardware configuration knows, by (radio channel, frame-format
/// id). Published once for the whole unit.
///
/// A query that can fail returns a result code and leaves its output untouched on failure.
class QOR_EXPORT IHardwareConfigurationHandler : public IInterface {
public:
    ~IHardwareConfigurationHandler() override;

    /// All frame formats, in the handler's order; of two records with one id the first counts.
    /// @param flag the service always passes false.
    /// @param[out] records replaced by the records; its storage is reused. A channel spacing of
    ///        3000 in a record means that it has none: where the minimum power is concerned, it
    ///        counts as 0 MHz.
    virtual void getFrameFormatRecords(bool flag,
                                       std::vector<FrameFormatRecord>& records) const = 0;

    /// DPD version of a frame format; a value outside EDpdVersion if the frame format is unknown.
    virtual EDpdVersion getDpdVersion(RadioChannel channel, long frameFormatId) const = 0;

    /// Telecom market of a frame format.
    virtual unsigned getTelecomMarket(RadioChannel channel, long frameFormatId,
                                      EFrameFormatMarket& market) const = 0;

    /// The codes that a frame format can use.
    /// @param[out] modulationAndCodes replaced by the codes.
    virtual unsigned
    getModulationAndCodeArray(RadioChannel channel, long frameFormatId,
                              std::vector<ModulationAndCoding>& modulationAndCodes) const = 0;

    /// Channel spacing of a frame format, in whole MHz.
    virtual unsigned getChannelSpacing(RadioChannel channel, long frameFormatId,
                                       EChannelSpacingType& channelSpacing) const = 0;

    /// Performance profiles of a frame format, for ICapabilityHandler to interpret.
    /// @param[out] performanceProfiles replaced by the profiles; empty for an unknown frame format.
    virtual void getPerformanceProfiles(RadioChannel channel, long frameFormatId,
                                        std::vector<short>& performanceProfiles) const = 0;

    /// The profiles that hold when the frame-format type is carrier aggregation.
    /// @param[out] performanceProfiles replaced by the profiles; empty for an unknown frame format.
    virtual void
    getCarrierAggregationPerformanceProfiles(RadioChannel channel, long frameFormatId,
                                             std::vector<short>& performanceProfiles) const = 0;

    /// "IHardwareConfigurationHandler": one for the whole unit, therefore never a channel.
    static std::string interfaceName();
};
