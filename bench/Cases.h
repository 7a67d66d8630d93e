#pragma once

#include "ForwardingNode.h"
#include "Limit.h"
#include "OutputPowerCalculator.h"
#include "PlainWay.h"
#include "RadioFileRecorder.h"
#include "Scenario.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// A query as callers put it.
enum class Query {
    PowerCapabilities,
    AdmodPowerCapabilities,
    FindPminPmax,
    UnrestrictedPmax,
    Array,
    SetPowerCutback,
    SetTemporaryPowerCutback,
    SetTemperature,
    SetBoosterPresence,
    SecondOutdoorFamily, ///< its calculator alone: no product number leads to it
    ConstructAndInitialize
};

/// The ways of computing.
enum class Way {
    Library,
    Plain,
    Fair,
    Bare
};

/// The word of a way in the output.
const char* nameOf(Way way);

/// What is measured: a query on a scenario.
struct Case {
    std::string name;
    Scenario scenario;
    Query query;
    Modulation modulation = Modulation::QAM64; ///< the one that is asked
    long frameFormatId = 0;
    int traceLevel = 3; ///< threshold; 3 is what a node's trace objects begin with
    bool isMapFresh = false;
    bool isTroubled = false; ///< something is traced at threshold 3
    /// With the flight recorder; its fair limit is the query without it, its bare limit the query
    /// with decorators that only hand through.
    bool isRecorded = false;
    bool isInTurn = false; ///< with another query before and after it, so that all are not the same

    bool isArrayById() const { return query == Query::Array && frameFormatId > 0; }

    /// Whether the limits know the query, and there is nothing to trace that they leave out.
    bool hasLimits() const {
        return query < Query::SetPowerCutback && traceLevel <= 3 && !isTroubled;
    }

    /// Whether the plain way does as well.
    bool hasPlainWay() const {
        return hasLimits() && !isArrayById() && !scenario.isLimitedByProfile && !isRecorded;
    }
};

/// Every case, each under a name of its own.
std::vector<Case> allCases();

/// The cases of the first query of a family in a process, which builds the family's tables. They
/// must run before any other query, each once.
std::vector<Case> firstUseCases();

/// What a query answered. The map keeps its nodes from one query to the next, as a caller's would.
struct QueryAnswer {
    int result = 0;
    long first = 0;
    long second = 0;
    std::map<ModulationAndCoding, long> powerMap;
};

/// Puts a case's query to one of the ways of computing.
template <class Computing>
__attribute__((noinline)) void ask(Computing& way, const Case& measured, QueryAnswer& answer);

extern template void ask(IOutputPowerCalculator&, const Case&, QueryAnswer&);
extern template void ask(OutputPowerCalculator&, const Case&, QueryAnswer&);
extern template void ask(const PlainWay&, const Case&, QueryAnswer&);
extern template void ask(const FairLimit&, const Case&, QueryAnswer&);
extern template void ask(const BareLimit&, const Case&, QueryAnswer&);

/// A case set up to be asked in every way.
class PreparedCase {
public:
    explicit PreparedCase(const Case& measured);
    ~PreparedCase();
    PreparedCase(const PreparedCase&) = delete;
    PreparedCase& operator=(const PreparedCase&) = delete;

    /// The ways that know the case's query.
    std::vector<Way> ways() const;

    void askIn(Way way);

    /// What a way needs before it is asked to be measured: it has answered before, and its map is
    /// empty if the case is about a fresh one.
    void warmUp(Way way);

    /// Whether all ways gave the same answer, as they must for a comparison to mean anything.
    bool isAgreed() const;

private:
    void start(OutputPowerCalculator& service) const;

    Case m_case;
    BenchNode m_node;
    OutputPowerCalculator m_service;
    PlainWay m_plainWay;
    FairLimit m_fairLimit;
    BareLimit m_bareLimit;
    std::optional<ForwardingNode> m_forwarding;
    std::optional<OutputPowerCalculator> m_forwardedService;
    std::optional<ForwardingService> m_forwarded; ///< before the service
    std::optional<RadioFileRecorder> m_recorder;
    std::optional<OutputPowerCalculator> m_recordedService;
    IOutputPowerCalculator* m_recorded = nullptr; ///< before the service
    std::array<QueryAnswer, 4> m_answers;         ///< by way
};
