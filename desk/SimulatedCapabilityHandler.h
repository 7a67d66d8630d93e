#pragma once

#include "Answer.h"
#include "CallRecorder.h"
#include "FailureDrill.h"
#include "ICapabilityHandler.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// What a SimulatedCapabilityHandler answers. An answer that is not set leaves its operation to the
/// default body of ICapabilityHandler. Powers in hundredths of a dBm.
struct CapabilityHandlerAnswers {
    /// The integers of a Pmax table: modulation, power, modulation, power ... The count that is
    /// handed out is their number, also when it is odd.
    using Pmax = Answer<std::vector<int>>;

    /// One modulation whatever is asked, or one by performance profile. What the map does not list
    /// is answered with Modulation::UNDEFINED.
    using ModulationByProfile = std::variant<Modulation, std::map<short, Modulation>>;

    /// Likewise by market.
    using ModulationByMarket = std::variant<Modulation, std::map<EFrameFormatMarket, Modulation>>;

    std::optional<std::string> productNumber;     ///< of getTmuHwProductNumber()
    std::optional<Answer<int>> minOutputPower;    ///< of getMinOutputPower()
    std::optional<Pmax> pmaxDpd1Ansi;             ///< of getPmaxCapabilityDpd1Ansi()
    std::optional<Pmax> pmaxDpd2Ansi;             ///< of getPmaxCapabilityDpd2Ansi()
    std::optional<Pmax> pmaxDpd1Etsi;             ///< of getPmaxCapabilityDpd1Etsi()
    std::optional<Pmax> pmaxDpd2Etsi;             ///< of getPmaxCapabilityDpd2Etsi()
    std::optional<bool> maxAcmLimitedByHw;        ///< of isMaxAcmLimitedByHw()
    std::optional<short> performanceProfileIndex; ///< of getPerformanceProfileIndex()
    /// Of getMaxModulationLimitedByHw().
    std::optional<ModulationByProfile> maxModulationLimitedByHw;
    /// Of getMaxModulationWithoutLimitation().
    std::optional<ModulationByMarket> maxModulationWithoutLimitation;
};

/// The flat integers of a Pmax table, from rows: pmaxTable({{Modulation::QAM4, 2800}, ...}).
std::vector<int> pmaxTable(std::initializer_list<std::pair<Modulation, int>> rows);

/// A capability handler with programmable answers.
///
/// A table that was handed out stays where it is, unchanged, for as long as the handler lives, also
/// under new answers: those reach a service with its next getter call. Equal tables are kept once.
///
/// Any number of threads may ask; setAnswers() must not run beside them. The operations that can
/// fail (FailureDrill) are getMinOutputPower() and the four Pmax getters.
class SimulatedCapabilityHandler : public ICapabilityHandler,
                                   public CallRecorder,
                                   public FailureDrill {
public:
    /// Programs the first answers.
    explicit SimulatedCapabilityHandler(const CapabilityHandlerAnswers& answers = {});

    /// Programs further answers.
    void setAnswers(const CapabilityHandlerAnswers& answers);

    std::string getTmuHwProductNumber() const override;
    unsigned getMinOutputPower(const int** table) const override;
    unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override;
    bool isMaxAcmLimitedByHw() const override;
    short getPerformanceProfileIndex() const override;

    /// Where the answer goes by profile, the profile is the element of the passed list at the
    /// passed index; an index outside the list answers Modulation::UNDEFINED.
    Modulation getMaxModulationLimitedByHw(const std::vector<short>& performanceProfiles,
                                           short performanceProfileIndex) const override;
    Modulation getMaxModulationWithoutLimitation(const EFrameFormatMarket& market) const override;

private:
    /// A table as it is handed out: whole rows, whatever the count.
    struct Table {
        std::vector<int> integers;
        int count;

        bool operator<(const Table& other) const;
    };

    using PreparedTable = std::optional<Answer<const Table*>>;

    const Table* keep(std::vector<int> integers);
    PreparedTable prepare(const std::optional<CapabilityHandlerAnswers::Pmax>& answer);

    template <class DefaultBody>
    unsigned handOut(const char* operation, const PreparedTable& prepared, const int** table,
                     const int** count, DefaultBody defaultBody) const;

    CapabilityHandlerAnswers m_answers;
    std::set<Table> m_tables; ///< every table so far; its nodes never move
    PreparedTable m_minOutputPower;
    PreparedTable m_pmaxDpd1Ansi;
    PreparedTable m_pmaxDpd2Ansi;
    PreparedTable m_pmaxDpd1Etsi;
    PreparedTable m_pmaxDpd2Etsi;
};
