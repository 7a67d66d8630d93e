#pragma once

#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Modulation.h"
#include "ResultCode.h"

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
    TxRfMaxPowerCapability() = default;

    /// Remembers what to look for. The table is fetched by initialize(); until then the view is
    /// empty.
    TxRfMaxPowerCapability(unsigned long channel, EDpdVersion dpdVersion,
                           EFrameFormatMarket market);

    TxRfMaxPowerCapability(const TxRfMaxPowerCapability&) = default;            ///< a copy
    TxRfMaxPowerCapability& operator=(const TxRfMaxPowerCapability&) = default; ///< a copy
    virtual ~TxRfMaxPowerCapability() = default;

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
    int getPower(Modulation modulation, long* power) const {
        return find(modulation, *power) ? static_cast<int>(ResultCode::Success)
                                        : traceUnknown(modulation);
    }

    /// Likewise, without a trace.
    /// @return whether the table has a row for the modulation.
    bool find(Modulation modulation, long& power) const {
        return size() > 0 && findInTable(modulation, power);
    }

    /// Likewise, in a view of which is known that it has a row.
    bool findInTable(Modulation modulation, long& power) const {
        const int* row = m_pmaxTable;
        int left = *m_pmaxTableSize;
        // Four rows a turn: keeping count of the rows costs as much as comparing them.
        for (; left >= 8; left -= 8, row += 8) {
#pragma GCC unroll 4
            for (int i = 0; i < 8; i += 2) {
                if (row[i] == static_cast<int>(modulation)) {
                    power = row[i + 1];
                    return true;
                }
            }
        }
        // The last row is compared even if the count leaves its power out: handlers store whole
        // rows.
        for (; left > 0; left -= 2, row += 2) {
            if (row[0] == static_cast<int>(modulation)) {
                power = row[1];
                return true;
            }
        }
        return false;
    }

    /// Highest Pmax of the table; -2147483648 for a table without a whole row.
    /// @return always 0.
    int getMaxPower(long* power) const;

private:
    /// Asks the handler for one of its tables.
    unsigned fetch(PmaxTable table);

    /// Number of integers that may be read. A handler that keeps the default getters hands out
    /// neither table nor count.
    int size() const {
        return m_pmaxTable == nullptr || m_pmaxTableSize == nullptr ? 0 : *m_pmaxTableSize;
    }

    /// Traces for getPower() that there is no row for a modulation; 32776.
    static int traceUnknown(Modulation modulation);

    const int* m_pmaxTable = nullptr;
    const int* m_pmaxTableSize = nullptr;
    unsigned long m_channel = 0;
    EDpdVersion m_dpdVersion{};
    EFrameFormatMarket m_market = EFrameFormatMarket::Etsi;
    ICapabilityHandler* m_capabilityHandler = nullptr;
};
