#pragma once

#include "CalculationFigures.h"
#include "OperatingInputs.h"
#include "TraceLog.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Makes of a log's calls as much of a radio file as they tell.
///
/// A figure that changes in the log becomes a patch before the request that saw the new one. What a
/// radio file must have and the log does not tell is stood in for, and named in the notes; so is
/// what the log tells in two ways. A call whose traces are not all there is left out and named.
///
/// A radio file is one service's: where the calls of several are in the log, one has to be chosen.
class LogImport {
public:
    using Json = nlohmann::ordered_json;

    explicit LogImport(LogSource source = {})
        : m_source(std::move(source)) {}

    /// Takes the next call of the log.
    void read(const LoggedCall& call);

    /// The services whose calls were taken, in words, if they are more than one: then there is no
    /// radio file of them. Else empty.
    std::string mixture() const;

    /// What is wrong with the log itself, as in notes().
    const std::vector<std::string>& troubles() const { return m_notes; }

    /// The radio file so far, one line for each section and each request.
    std::string radioFile() const;

    /// What the log does not tell, for people.
    std::vector<std::string> notes() const;

    bool isEmpty() const { return m_requests.empty(); }

private:
    /// A Pmax table; powers by modulation.
    struct Pmax {
        std::map<std::int32_t, std::int32_t> rows;
        std::map<std::int32_t, std::int32_t> atLeast; ///< what is known of rows without a figure
    };

    /// A frame format by its id.
    struct FrameFormat {
        std::optional<std::int32_t> channelSpacing;
        std::optional<std::int32_t> dpdVersion;
        std::string market;
        Json modulationAndCodes = Json::array();
    };

    /// The calls of one process so far.
    struct Process {
        LoggedInputs inputs;
        std::size_t brokenOff = 0; ///< line of the call before, if lines of it may follow; else 0
        bool isTaken = false;
        std::set<std::int64_t> channels; ///< of the services that started in it
    };

    bool isWanted(const LoggedCall& call, Process& process);
    /// @return which line is missing; empty if all are there.
    static std::string whyIncomplete(const LoggedCall& call, Process& process);
    void leaveOut(const LoggedCall& call, const std::string& trouble);
    void take(const LoggedCall& call);
    void readInput(const LoggedCall& call);
    void readQuery(const LoggedCall& call);
    void readEntry(const TraceRecord& record);
    void readSelection(const TraceRecord& record);
    void readLimit(const TraceRecord& record);
    void readCalculation(const CalculationFigures& figures);
    void readOutdoor(const CalculationFigures& figures, Pmax& table);
    void readMinimum(const LoggedCall& call);
    void readFixedPower(const LoggedCall& call, const CalculationFigures& figures);
    void readCodes(const LoggedCall& call, const std::vector<CalculationFigures>& calculations);
    static Json expected(const LoggedCall& call,
                         const std::vector<CalculationFigures>& calculations);

    void observe(const char* section, const char* key, const Json& value);
    void observeSelection();
    void row(Pmax& table, Modulation modulation, std::int32_t power);
    Pmax& tableOf(std::int32_t dpdVersion, const std::string& market);
    void emit(Json request);
    void noteOnce(const std::string& note);
    bool isKnown(const char* section, const char* key) const;
    Json node(std::vector<std::string>& untold) const;
    std::uint32_t cutback() const { return m_inputs.cutbackInForce(); }

    LogSource m_source;
    std::map<std::string, Process> m_processes;
    std::set<std::int64_t> m_channels; ///< of the services that were taken
    std::size_t m_ofOthers = 0;        ///< calls of services that are not wanted
    std::size_t m_incomplete = 0;      ///< calls whose traces are not all there
    Json m_first;                      ///< sections with what the log told first
    Json m_now;                        ///< likewise, last
    Json m_patch;                      ///< what changed since the last request
    Json m_requests = Json::array();
    std::map<std::string, Pmax> m_tables;
    std::map<std::int32_t, std::int32_t> m_compensations; ///< by channel spacing
    std::map<std::int32_t, std::int32_t> m_minimumPowers; ///< by channel spacing
    std::optional<std::int32_t> m_minimumWithoutOffset;
    std::map<std::int32_t, FrameFormat> m_frameFormats;
    std::optional<std::int32_t> m_channelSpacing; ///< of the calculation
    bool m_hasOffset = true;                      ///< of the last minimum power
    std::optional<std::int32_t> m_minimumSpacing;
    bool m_isVariableMissing = false;
    std::int32_t m_id = 0; ///< of the query's frame format; below 1: the configured one
    bool m_isFixedSelection = false;
    std::map<std::string, std::string> m_selected{{"min", "UNDEFINED"}, {"max", "UNDEFINED"}};
    bool m_asksForNodesRsec = false;
    bool m_isSelectionRefused = false;
    OperatingInputs m_inputs;
    std::uint32_t m_channel = 1;
    bool m_isFirst = true;
    std::vector<std::string> m_notes;
};
