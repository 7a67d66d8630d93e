#pragma once

#include "EFrameFormatMarket.h"
#include "Export.h"
#include "IInterface.h"
#include "Modulation.h"

#include <string>
#include <vector>

/// What the radio hardware is and can do. Published once per radio channel.
///
/// An implementation overrides what it knows; each operation has a default body for the rest. The
/// tables that it hands out stay its own: it keeps them alive and unchanged for as long as a
/// service may read them. Powers are in hundredths of a dBm.
class QOR_EXPORT ICapabilityHandler : public virtual IInterface {
public:
    ~ICapabilityHandler() override;

    /// Product number of the radio hardware; it selects the hardware family. Asked at every power
    /// query. Default: empty, which selects the first outdoor family.
    virtual std::string getTmuHwProductNumber() const;

    /// Hands out the minimum output power: a table whose first integer the service reads.
    /// @param[out] table where to write the address.
    /// @return result code. Default: 0 with the address untouched (the service then counts from 0).
    virtual unsigned getMinOutputPower(const int** table) const;

    /// Hands out the Pmax table of DPD version 1 for the ANSI market.
    ///
    /// A Pmax table is a flat array of rows of two integers, the Modulation and the maximum output
    /// power at it. The count is the number of integers, twice the number of rows; the array itself
    /// always holds whole rows, also when the count is odd. Of two rows for one modulation the
    /// first counts. A null count, a null table and a count below 1 all mean an empty table.
    /// @param[out] table where to write the address of the table.
    /// @param[out] count where to write the address of the count.
    /// @return result code; on a failure the next table of the fallback order is tried.
    ///         What a failed call wrote stays written.
    ///         Default: 0 with both untouched.
    virtual unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const;

    /// As getPmaxCapabilityDpd1Ansi(), for DPD version 2 and the ANSI market.
    virtual unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const;

    /// As getPmaxCapabilityDpd1Ansi(), for DPD version 1 and the ETSI market.
    virtual unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const;

    /// As getPmaxCapabilityDpd1Ansi(), for DPD version 2 and the ETSI market.
    virtual unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const;

    /// Whether the hardware's performance profile limits the modulation. Default: false.
    virtual bool isMaxAcmLimitedByHw() const;

    /// Index into the frame format's performance profiles. Default: -1.
    virtual short getPerformanceProfileIndex() const;

    /// Highest modulation that the hardware allows under a performance profile.
    /// @param performanceProfiles the frame format's profiles, passed through unread.
    /// @param performanceProfileIndex what getPerformanceProfileIndex() answered.
    /// @return the modulation; UNDEFINED (the default): no limit is known.
    virtual Modulation getMaxModulationLimitedByHw(const std::vector<short>& performanceProfiles,
                                                   short performanceProfileIndex) const;

    /// Highest modulation that the hardware allows in a market when no profile limits it.
    /// @return the modulation; UNDEFINED (the default): no limit is known.
    virtual Modulation getMaxModulationWithoutLimitation(const EFrameFormatMarket& market) const;

    /// "ICapabilityHandler", followed by "_" and the number unless it is 0.
    static std::string interfaceName(unsigned int channel);
};
