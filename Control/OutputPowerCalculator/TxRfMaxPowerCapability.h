#pragma once

#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Modulation.h"

class ICapabilityHandler;

/// The Pmax tables that a capability handler may have, one for each DPD version and market.
enum PmaxTable : unsigned long {
    PmaxTableDpd1Ansi = 0,
    PmaxTableDpd2Ansi = 1,
    PmaxTableDpd1Etsi = 2,
    PmaxTableDpd2Etsi = 3
};

/// View of the Pmax table (maximum output power of each modulation) that holds for one radio
/// channel, DPD version and market.
///
/// The table belongs to the channel's ICapabilityHandler, see there for its layout; the view keeps
/// a pointer. Copies share the table. Powers are in hundredths of a dBm.
class TxRfMaxPowerCapability {
public:
    /// A view of nothing, to be assigned to.
    TxRfMaxPowerCapability();

    /// Remembers what to look for. The table is fetched by initialize(); until then the view is
    /// empty.
    TxRfMaxPowerCapability(unsigned long channel, EDpdVersion dpdVersion,
                           EFrameFormatMarket market);

    TxRfMaxPowerCapability(const TxRfMaxPowerCapability&) = default;
    TxRfMaxPowerCapability& operator=(const TxRfMaxPowerCapability&) = default;
    virtual ~TxRfMaxPowerCapability();

    /// Finds the channel's capability handler and fetches the table.
    ///
    /// A handler that has no table for DPD 2 gives that of DPD 1 for the same market, and a missing
    /// ANSI table is replaced by the ETSI one of DPD 1. DPD 3 and the market Unknown have no
    /// tables.
    /// @return 0; 32768 without a handler, for a combination without tables, or when the handler
    ///         refuses every table. What a refused request wrote into the view stays there.
    int initialize();

    /// Pmax at a modulation.
    /// @param[out] power untouched on failure.
    /// @return 0; 32776 if the table has no row for the modulation.
    int getPower(Modulation modulation, long* power) const;

    /// Highest Pmax of the table; -2147483648 for a table without a whole row.
    /// @return always 0.
    int getMaxPower(long* power) const;

private:
    /// Asks the handler for one of its tables.
    unsigned fetch(PmaxTable table);

    /// Number of integers that may be read, 0 without a table.
    int size() const;

    const int* m_pmaxTable = nullptr;
    const int* m_pmaxTableSize = nullptr;
    unsigned long m_channel;
    EDpdVersion m_dpdVersion;
    EFrameFormatMarket m_market;
    ICapabilityHandler* m_capabilityHandler = nullptr;
};
