#pragma once

#include "BenchNode.h"
#include "Scenario.h"

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The hardware families as the limits know them.
enum class LimitFamily {
    Outdoor1,
    Outdoor3,
    OlderRadioUnit,
    NewerRadioUnit
};

/// Family of a product number: one slot, one comparison in words.
LimitFamily limitFamilyOf(const std::string& productNumber);

/// Modulation of a code: one index.
Modulation limitModulationOf(const ModulationAndCoding& code);

/// The answers of a node, handed in as plain values.
class HandedAnswers {
public:
    HandedAnswers(BenchNode& node, const Scenario& scenario);

    LimitFamily family() const { return limitFamilyOf(m_scenario.productNumber); }
    void selection(ModulationAndCoding& min, ModulationAndCoding& max) const {
        min = m_scenario.selectedMin;
        max = m_scenario.selectedMax;
    }
    Modulation modulation() const { return m_scenario.modulation; }
    Modulation maxAvailable() const { return m_scenario.maxAvailableModulation; }
    EFrameFormatMarket market(long) const { return m_scenario.market; }
    EDpdVersion dpdVersion(long) const { return m_scenario.dpdVersion; }
    EChannelSpacingType channelSpacing(long) const { return m_scenario.channelSpacing; }
    EReferenceSEC referenceSec() const { return m_scenario.referenceSec; }
    Modulation radioMaximum(long, EFrameFormatMarket) const { return m_scenario.radioMaximum; }
    bool offset(EChannelSpacingType, long& offset) const {
        offset = m_scenario.minOutputPowerOffset;
        return m_scenario.hasMinOutputPowerOffset;
    }
    EChannelSpacingType spacingOfRecord(long) const { return m_scenario.channelSpacing; }
    const std::vector<ModulationAndCoding>& codes(long, std::vector<ModulationAndCoding>&) const {
        return m_scenario.modulationAndCodes;
    }
    const std::int32_t* compensation(std::uint32_t& size) const {
        size = m_scenario.compensationSize;
        return m_scenario.compensation.data();
    }

private:
    const Scenario& m_scenario;
};

/// The answers of a node, asked of its neighbours and its stored variables: each as often as the
/// contract obliges the service to ask, and in that order.
class AskedAnswers {
public:
    AskedAnswers(BenchNode& node, const Scenario& scenario);

    LimitFamily family() const;
    void selection(ModulationAndCoding& min, ModulationAndCoding& max) const;
    Modulation modulation() const;
    Modulation maxAvailable() const;
    EFrameFormatMarket market(long id) const;
    EDpdVersion dpdVersion(long id) const;
    EChannelSpacingType channelSpacing(long id) const;
    EReferenceSEC referenceSec() const;
    Modulation radioMaximum(long id, EFrameFormatMarket market) const;
    bool offset(EChannelSpacingType spacing, long& offset) const;
    EChannelSpacingType spacingOfRecord(long id) const;
    const std::vector<ModulationAndCoding>& codes(long id,
                                                  std::vector<ModulationAndCoding>& room) const;
    const std::int32_t* compensation(std::uint32_t& size) const;

private:
    ICapabilityHandler* m_capabilityHandler;
    IAcmHandler* m_acmHandler;
    IFrameFormat* m_frameFormat;
    ISystemPowerController* m_systemPowerController;
    IHardwareConfigurationHandler* m_hardwareConfigurationHandler;
};

/// The least work that a right answer can take: flat functions that do the look-ups in dense arrays
/// and the arithmetic, and nothing else. No trace, no record, no calculator. Nothing of it is the
/// library's; the arrays are filled beforehand from the tables that the families' builders return.
///
/// The fair limit asks for its answers what the service has to ask. The bare limit has them handed
/// in: no implementation of the contract can reach it.
template <class Answers>
class LimitBy {
public:
    LimitBy(BenchNode& node, const Scenario& scenario);

    int calculatePowerCapabilities(Modulation modulation, long& minPower, long& maxPower) const;
    int calculateAdmodPowerCapabilities(Modulation actual, EReferenceSEC rsec, long& minPower,
                                        long& maxPower) const;
    int findPminPmax(long& pmin, long& pmax) const;
    int getUnrestrictedPmax(long& pmax) const;
    int getMinMaxOutputPowerVsModulationArray(long frameFormatId, long& minOutputPower,
                                              std::map<ModulationAndCoding, long>& powerMap) const;

private:
    /// By reference exponent, RSEC and exponent; `absent` where a family has none, also in the last
    /// row and column, which stand for a modulation that is no power of two.
    static constexpr int absent = INT32_MIN;
    using Row = std::array<int, 18>;
    using Offsets = std::array<std::array<Row, 10>, 18>;

    /// A Pmax table as it is handed in.
    struct Pmax {
        const int* table;
        int count;

        bool find(Modulation modulation, long& power) const;
    };

    /// The powers that all modulations of a query share.
    struct Shared {
        const Pmax* pmax;
        std::size_t rsec;
        bool hasSelectedMin;
        long pmaxSelectedMin;
        Modulation selectedMin;
        Modulation selectedMax;
        Modulation available;
        long compensation;
        long cutback;
    };

    const Pmax* pmax(EDpdVersion dpdVersion, bool isAnsi) const;
    long compensation(EChannelSpacingType spacing) const;
    Modulation limited(long id, Modulation available) const;
    long minOutputPower(EChannelSpacingType spacing) const;
    Shared shared(EDpdVersion dpdVersion, EFrameFormatMarket market, EReferenceSEC rsec,
                  Modulation selectedMin, Modulation selectedMax, Modulation available,
                  long compensation, long cutback) const;
    int adaptive(const Shared& shared, Modulation actual, long& power) const;
    int fixed(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation selected,
              Modulation modulation, long compensation, long cutback, long& power) const;

    Answers m_answers;
    long m_minOutputPower;
    long m_cutback;
    int m_boosterPresence;
    long m_boosterGain;
    long m_boosterMaxInputPower;
    Modulation m_boosterMaxModulation;
    Offsets m_kam;
    Offsets m_vo4;
    Offsets m_vo5;
    Row m_booster;     ///< by exponent: the same in every RSEC class
    Row m_band;        ///< of band 0, by exponent
    Pmax m_pmax[2][2]; ///< by DPD version less 1, and by whether ANSI
};

using BareLimit = LimitBy<HandedAnswers>;
using FairLimit = LimitBy<AskedAnswers>;
