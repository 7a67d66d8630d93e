#pragma once

#include "Limit.h"
#include "OutputPowerCalculator.h"
#include "PlainWay.h"
#include "Scenario.h"

#include <map>
#include <string>
#include <utility>
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
    ConstructAndInitialize
};

/// What is measured: a query on a scenario.
struct Case {
    std::string name;
    Scenario scenario;
    Query query;
    Modulation modulation = Modulation::QAM64; ///< the one that is asked
    bool isTraced = false;                     ///< at level 6

    /// Whether the plain way and the limit know the query too.
    bool hasYardsticks() const { return !isTraced && query < Query::SetPowerCutback; }
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

/// Puts a case's query to one of the three ways of computing.
template <class Way>
__attribute__((noinline)) void ask(Way& way, const Case& measured, QueryAnswer& answer);

extern template void ask(OutputPowerCalculator&, const Case&, QueryAnswer&);
extern template void ask(const PlainWay&, const Case&, QueryAnswer&);
extern template void ask(const Limit&, const Case&, QueryAnswer&);

/// A case set up to be asked in all three ways.
class PreparedCase {
public:
    explicit PreparedCase(const Case& measured);
    ~PreparedCase();
    PreparedCase(const PreparedCase&) = delete;
    PreparedCase& operator=(const PreparedCase&) = delete;

    void askLibrary() { ask(m_service, m_case, m_libraryAnswer); }
    void askPlainWay() { ask(std::as_const(m_plainWay), m_case, m_plainAnswer); }
    void askLimit() { ask(std::as_const(m_limit), m_case, m_limitAnswer); }

    /// Whether all three ways gave the same answer, as they must for a comparison to mean anything.
    bool isAgreed() const;

private:
    Case m_case;
    BenchNode m_node;
    OutputPowerCalculator m_service;
    PlainWay m_plainWay;
    Limit m_limit;
    QueryAnswer m_libraryAnswer;
    QueryAnswer m_plainAnswer;
    QueryAnswer m_limitAnswer;
};
