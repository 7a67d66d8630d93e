#pragma once

#include "HardwareFamily.h"
#include "ModulationAndCoding.h"
#include "Scenario.h"

#include <array>
#include <cstdint>
#include <map>

/// The least work that an answer can take: the neighbours' answers are handed in as plain values,
/// and one flat function does only the look-ups in dense constant arrays and the arithmetic. No
/// interface, no trace, no record, no name of a variable. It is the yardstick that the library is
/// measured against.
class Limit {
public:
    explicit Limit(const Scenario& scenario);

    int calculatePowerCapabilities(Modulation modulation, long& minPower, long& maxPower) const;
    int calculateAdmodPowerCapabilities(Modulation actual, EReferenceSEC rsec, long& minPower,
                                        long& maxPower) const;
    int findPminPmax(long& pmin, long& pmax) const;
    int getUnrestrictedPmax(long& pmax) const;
    int getMinMaxOutputPowerVsModulationArray(long& minOutputPower,
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

    const Pmax* pmax(bool isAnsi) const;
    long compensation(HardwareFamily family) const;
    long cutback() const;
    Modulation limited(Modulation available) const;
    Modulation selected(const ModulationAndCoding& code, Modulation otherwise) const;
    int adaptive(HardwareFamily family, EReferenceSEC rsec, Modulation selectedMin,
                 Modulation selectedMax, Modulation available, Modulation actual, long compensation,
                 long cutback, long& power) const;
    int fixed(HardwareFamily family, Modulation selected, Modulation modulation, long compensation,
              long cutback, long& power) const;

    const Scenario& m_scenario;
    Offsets m_kam;
    Offsets m_vo4;
    Offsets m_vo5;
    Row m_booster;     ///< by exponent: the same in every RSEC class
    Row m_band;        ///< of band 0, by exponent
    Pmax m_pmax[2][2]; ///< by DPD version less 1, and by whether ANSI
};
