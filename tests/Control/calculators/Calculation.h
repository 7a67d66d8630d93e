#pragma once

#include "CalculationData.h"
#include "Calculator.h"
#include "ICapabilityHandler.h"
#include "InterfaceBroker.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

inline constexpr std::int32_t intMin = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t intMax = std::numeric_limits<std::int32_t>::max();

/// The one calculator of a family, for tables of cases.
template <class Family>
Calculator* calculatorOf() {
    return Family::getInstance();
}

/// A record of zeros without a Pmax table, for a test to fill in what it is about.
inline CalculationData emptyCalculation() {
    return {EReferenceSEC::Class2,
            Modulation::CW,
            Modulation::CW,
            Modulation::CW,
            Modulation::CW,
            0,
            0,
            0,
            0,
            0,
            TxRfMaxPowerCapability()};
}

/// The modulations that have a name, and two numbers that no modulation has.
inline const std::vector<std::int32_t>& allModulations() {
    static const std::vector<std::int32_t> modulations = {
        0, 2, 4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 65536, 100000, 8, 3};
    return modulations;
}

/// The RSEC classes, and numbers that no class has, the undefined one among them.
inline const std::vector<std::int32_t>& allRsecs() {
    static const std::vector<std::int32_t> rsecs = {0, 1, 2, 3,  4,   5,    6,
                                                    7, 8, 9, 10, 999, 1000, -1};
    return rsecs;
}

/// A radio with one Pmax table, which serves DPD 1 on the ETSI market.
class Radio : public ICapabilityHandler {
public:
    /// @param integers rows of (modulation, power) one after the other.
    explicit Radio(std::vector<int> integers)
        : m_integers(std::move(integers))
        , m_count(static_cast<int>(m_integers.size())) {
        InterfaceBroker::getInstance().registerInterface(name(), this);
    }
    ~Radio() override { InterfaceBroker::getInstance().unregisterInterface(name(), nullptr); }

    /// The view of the table; the radio must outlive it.
    TxRfMaxPowerCapability capability() const {
        TxRfMaxPowerCapability capability(channel, EDpdVersion{1}, EFrameFormatMarket::Etsi);
        capability.initialize();
        return capability;
    }

    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        *table = m_integers.data();
        *count = &m_count;
        return 0;
    }

private:
    static constexpr unsigned channel = 77;

    static std::string name() { return "ICapabilityHandler_77"; }

    std::vector<int> m_integers;
    int m_count;
};
