#pragma once

#include "Export.h"
#include "IInterface.h"
#include "ModulationAndCoding.h"
#include "RadioChannel.h"

#include <string>

/// The operator's selection for adaptive coding and modulation (ACM). Published per radio channel.
class QOR_EXPORT IAcmHandler : public virtual IInterface {
public:
    ~IAcmHandler() override;

    /// The selected range of modulation-and-codes.
    /// @param[out] min lowest selected code; ModulationAndCoding::UNDEFINED: none is selected.
    /// @param[out] max highest selected code; likewise.
    /// @return result code; on a failure nothing counts as selected. Default: 32769 (not provided)
    ///         with both outputs untouched.
    virtual unsigned getMinMaxModulationAndCode(ModulationAndCoding& min, ModulationAndCoding& max);

    /// "IAcmHandler_" and the channel, also for channel 0.
    static std::string interfaceName(RadioChannel channel);
};
