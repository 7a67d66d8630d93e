#pragma once

#include "BenchNode.h"

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// The queries as a straightforward first version would have them: maps keyed by tuples, product
/// numbers compared one by one, names put together as strings. Nothing is copied that such an
/// engineer would not copy. It asks the same neighbours as often as the service does and traces
/// nothing. It is the yardstick that the library must stay well below.
class PlainWay {
public:
    PlainWay(BenchNode& node, const Scenario& scenario);

    int calculatePowerCapabilities(Modulation modulation, long& minPower, long& maxPower) const;
    int calculateAdmodPowerCapabilities(Modulation actual, EReferenceSEC rsec, long& minPower,
                                        long& maxPower) const;
    int findPminPmax(long& pmin, long& pmax) const;
    int getUnrestrictedPmax(long& pmax) const;
    int getMinMaxOutputPowerVsModulationArray(long& minOutputPower,
                                              std::map<ModulationAndCoding, long>& powerMap) const;

private:
    using PmaxTable = std::vector<std::pair<Modulation, long>>;
    using Offsets = std::map<std::tuple<Modulation, EReferenceSEC, Modulation>, int>;

    enum class Family {
        Kam,
        KamV3,
        Vo4,
        Vo5
    };

    struct Data {
        EReferenceSEC rsec;
        Modulation selectedMin;
        Modulation selectedMax;
        Modulation actual;
        Modulation refMax;
        long pmaxSelectedMin;
        long pmaxActual;
        long pmaxRefMax;
        long compensation;
        const PmaxTable& table;
    };

    Family family() const;
    bool usesBooster(Family family) const;
    const PmaxTable& pmaxTable(EDpdVersion dpdVersion, EFrameFormatMarket market) const;
    int pmaxOf(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation modulation,
               long& power) const;
    long compensationOf(EChannelSpacingType spacing) const;
    Modulation limited(Modulation available) const;
    Modulation selectedMinimum(const ModulationAndCoding& min) const;
    long minOutputPower() const;
    int adaptive(EDpdVersion dpdVersion, EFrameFormatMarket market, EReferenceSEC rsec,
                 Modulation selectedMin, Modulation selectedMax, Modulation available,
                 Modulation actual, long compensation, long& power, bool useCutback) const;
    int fixed(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation selected,
              Modulation modulation, long compensation, long& power, bool useCutback) const;
    int outdoor(const Data& data, long& power) const;
    int outdoor3(const Data& data, long& power) const;
    int radioUnit(const Data& data, bool isNewer, long& power) const;

    BenchNode& m_node;
    long m_cutback;
    int m_boosterPresence;
    long m_boosterGain;
    long m_boosterMaxInputPower;
    Modulation m_boosterMaxModulation;
    const int* m_minOutputPower = nullptr;
    std::map<std::pair<int, bool>, PmaxTable> m_tables; ///< by DPD version and whether ANSI
    std::vector<std::string> m_legacyProducts;
    Offsets m_kam;
    Offsets m_vo4;
    Offsets m_vo5;
    std::map<std::tuple<EReferenceSEC, Modulation>, int> m_boosterVo4;
    std::map<std::tuple<EReferenceSEC, Modulation>, int> m_boosterVo5;
    std::map<std::tuple<int, Modulation>, int> m_bandVo4;
    std::map<std::tuple<int, Modulation>, int> m_bandVo5;
};
