#include "TxRfMaxPowerCapability.h"

#include "ICapabilityHandler.h"
#include "InterfaceBroker.h"
#include "RawTrace.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace {

/// Opens a raw trace keyed by a code, if the platform wants it.
bool beginRawTrace(std::uint32_t code, const char* function, int line) {
    const int level = CPexTraceHandler_DmLevel2VtLevel(code);
    if (SPC_trace < level) {
        return false;
    }
    const TraceHeader header = {"Control/OutputPowerCalculator/private/TxRfMaxPowerCapability",
                                line, function};
    VT_beginImpl(&SPC_trace, level, &header);
    return true;
}

/// Closes a raw trace with the line of its code.
void endRawTrace(std::uint32_t code) {
    VT_rawprintf("      code: %#lx\n", static_cast<unsigned long>(code));
    VT_endImpl();
}

// A macro, because a format must be a literal and the arguments of a trace that is off must not be
// worked out: what follows the code is what follows in a printf.
#define RAW_TRACE_OF(function, code, ...)                                                          \
    do {                                                                                           \
        if (beginRawTrace(code, function, __LINE__)) {                                             \
            VT_rawprintf(__VA_ARGS__);                                                             \
            endRawTrace(code);                                                                     \
        }                                                                                          \
    } while (false)
#define RAW_TRACE(code, ...) RAW_TRACE_OF(__func__, code, __VA_ARGS__)

/// The tables to try for a DPD version and market, in order.
struct Candidates {
    std::array<PmaxTable, 3> tables;
    std::size_t count; ///< 0: there is no table for the combination
};

Candidates candidatesFor(EDpdVersion dpdVersion, EFrameFormatMarket market) {
    const bool isAnsi = market == EFrameFormatMarket::Ansi;
    const bool isEtsi = market == EFrameFormatMarket::Etsi || market == EFrameFormatMarket::Global;
    if (dpdVersion == EDpdVersion::Dpd2 && isAnsi) {
        return {{PmaxTableDpd2Ansi, PmaxTableDpd1Ansi, PmaxTableDpd1Etsi}, 3};
    }
    if (dpdVersion == EDpdVersion::Dpd2 && isEtsi) {
        return {{PmaxTableDpd2Etsi, PmaxTableDpd1Etsi}, 2};
    }
    if (dpdVersion == EDpdVersion::Dpd1 && isAnsi) {
        return {{PmaxTableDpd1Ansi, PmaxTableDpd1Etsi}, 2};
    }
    if (dpdVersion == EDpdVersion::Dpd1 && isEtsi) {
        return {{PmaxTableDpd1Etsi}, 1};
    }
    return {{}, 0};
}

} // namespace

TxRfMaxPowerCapability::TxRfMaxPowerCapability(unsigned long channel, EDpdVersion dpdVersion,
                                               EFrameFormatMarket market)
    : m_channel(channel)
    , m_dpdVersion(dpdVersion)
    , m_market(market) {}

int TxRfMaxPowerCapability::initialize() {
    const std::string name =
        ICapabilityHandler::interfaceName(static_cast<unsigned int>(m_channel));
    m_capabilityHandler = InterfaceBroker::getInstance().getInterface<ICapabilityHandler>(name);
    if (m_capabilityHandler == nullptr) {
        RAW_TRACE(ResultCode::Failure, "Error getting interface to %s", name.c_str());
        return ResultCode::Failure;
    }
    RAW_TRACE(ResultCode::Information, "m_dpdVersion = %d, m_market = %d", numberOf(m_dpdVersion),
              numberOf(m_market));

    const Candidates candidates = candidatesFor(m_dpdVersion, m_market);
    if (candidates.count == 0) {
        RAW_TRACE(ResultCode::Failure,
                  "Invalid combination of DPD version(%d) and telecom market(%d)",
                  numberOf(m_dpdVersion), numberOf(m_market));
        return ResultCode::Failure;
    }
    for (std::size_t i = 0; i < candidates.count; ++i) {
        const PmaxTable table = candidates.tables[i];
        if (!ResultCode::isFailure(fetch(table))) {
            RAW_TRACE(ResultCode::Information, "PmaxTable with value %lu succeeded for channel %lu",
                      table, m_channel);
            return ResultCode::Success;
        }
        RAW_TRACE(ResultCode::Information, "PmaxTable with value %lu failed for channel %lu", table,
                  m_channel);
    }
    RAW_TRACE(ResultCode::Failure, "Failed to get TxRfMaxPowerCapability");
    return ResultCode::Failure;
}

unsigned TxRfMaxPowerCapability::fetch(PmaxTable table) {
    if (table == PmaxTableDpd1Ansi) {
        return m_capabilityHandler->getPmaxCapabilityDpd1Ansi(&m_pmaxTable, &m_pmaxTableSize);
    }
    if (table == PmaxTableDpd2Ansi) {
        return m_capabilityHandler->getPmaxCapabilityDpd2Ansi(&m_pmaxTable, &m_pmaxTableSize);
    }
    if (table == PmaxTableDpd1Etsi) {
        return m_capabilityHandler->getPmaxCapabilityDpd1Etsi(&m_pmaxTable, &m_pmaxTableSize);
    }
    return m_capabilityHandler->getPmaxCapabilityDpd2Etsi(&m_pmaxTable, &m_pmaxTableSize);
}

int TxRfMaxPowerCapability::traceUnknown(Modulation modulation) {
    RAW_TRACE_OF("getPower", ResultCode::NoEntry, "%s, unknown modulation type: %s", "getPower",
                 convertAcmEnumToString(modulation).c_str());
    return ResultCode::NoEntry;
}

int TxRfMaxPowerCapability::getMaxPower(long* power) const {
    std::int32_t highest = std::numeric_limits<std::int32_t>::min();
    const int rows = size() / 2;
    // Unrolled: keeping count of the rows costs as much as comparing them.
#pragma GCC unroll 4
    for (int row = 0; row < rows; ++row) {
        highest = std::max(highest, m_pmaxTable[2 * row + 1]);
    }
    *power = highest;
    return ResultCode::Success;
}
