#pragma once

#include "DeskTrace.h"

#include <string>
#include <vector>

/// Traces up to a level while it lives, and switches tracing off at its end.
class TraceCapture {
public:
    explicit TraceCapture(int level)
        : m_scope(level) {}

    /// The records since the start or the last call, one line each:
    ///
    ///     6 enter OutputPowerCalculator.getMaxPower: dpdVersion=1, market=Etsi
    ///     1 msg CalculatorKam.getMaxPower: No power offset found for rsec=UNDEFINED, acm=4QAM
    ///     5 raw 0x820 TxRfMaxPowerCapability.initialize: m_dpdVersion = 1, m_market = 0
    ///
    /// A path below Control/OutputPowerCalculator/private is cut to its last part, any other is
    /// shown whole. The text of a raw trace is shown up to its code line; should that not be
    /// exactly as it has to be, "(code line: missing)" follows; should nothing be traced at the
    /// line that a record of the library names, "(line N: no trace)" does.
    std::vector<std::string> lines();

private:
    DeskTraceScope m_scope;
};

/// One record as TraceCapture::lines() shows it.
std::string describe(const TraceRecord& record);
