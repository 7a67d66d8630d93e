#pragma once

#include "EChannelSpacingType.h"
#include "EReferenceSEC.h"
#include "Export.h"
#include "IInterface.h"
#include "RadioChannel.h"

#include <string>

/// The node's view of the link's power: its spectral efficiency class and how the minimum output
/// power moves with the channel spacing. Published per radio channel.
class QOR_EXPORT ISystemPowerController : public IInterface {
public:
    ~ISystemPowerController() override;

    /// Reference spectral efficiency class of the link.
    virtual EReferenceSEC getReferenceSec() const = 0;

    /// Offset to add to the radio's minimum output power at a channel spacing.
    /// @param[out] offset in hundredths of a dB; read only when the answer is true.
    /// @return whether an offset is known for the spacing.
    virtual bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing,
                                         long& offset) const = 0;

    /// "ISystemPowerController_" and the channel, also for channel 0.
    static std::string interfaceName(RadioChannel channel);
};
