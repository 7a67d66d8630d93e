#pragma once

#include "Explanation.h"
#include "PowerTableQuery.h"
#include "RadioFile.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Adds up explanations again, step by step and apart from the tool's own check, and looks up every
/// place that they name.
class ExplanationAudit {
public:
    /// Explains every answer of a random radio file: of the configured frame format and of each one
    /// of the hardware configuration, as the file stands and with every kind of booster and cutback
    /// that its seed draws.
    void auditRandomFile(std::uint64_t seed);

    /// Explains every query of a random radio file's replay from its traces alone.
    void auditRandomLog(std::uint64_t seed);

    /// Explains and checks one table.
    /// @param document the text that the radio file was read from.
    void audit(const ExplainedTable& explained, const nlohmann::json& document,
               const std::string& name);

    /// What was wrong, one line each.
    const std::vector<std::string>& findings() const { return m_findings; }

    std::uint64_t answers() const { return m_answers; }
    std::uint64_t refusals() const { return m_refusals; }
    std::uint64_t loggedAnswers() const { return m_loggedAnswers; }
    std::uint64_t starts() const { return m_starts; } ///< services that started

    /// How often each rule was decisive.
    const std::map<Rule, std::uint64_t>& decisive() const { return m_decisive; }

    std::uint64_t raised() const { return m_raised; } ///< figures, to see what holds next
    std::uint64_t raisedTogether() const { return m_raisedTogether; } ///< with several bounds
    std::uint64_t cutBack() const { return m_cutBack; }

private:
    void auditCutback(const ExplainedTable& explained, PowerTableQuery query, const RadioFile& file,
                      const std::string& name);
    void auditNextBound(const ExplainedTable& explained, const PowerTableQuery& query,
                        const RadioFile& file, std::uint64_t start, const std::string& name);
    void auditSteps(const Explanation& explanation, const std::string& name);
    void auditAnswer(const Explanation& explanation, const nlohmann::json& document,
                     const std::string& name);
    void auditBounds(const Explanation& explanation, bool wraps, const std::string& name);
    void auditPlaces(const Explanation& explanation, const nlohmann::json& document,
                     const std::string& name);
    void find(const std::string& name, const std::string& problem);

    std::vector<std::string> m_findings;
    std::map<Rule, std::uint64_t> m_decisive;
    std::uint64_t m_answers = 0;
    std::uint64_t m_refusals = 0;
    std::uint64_t m_loggedAnswers = 0;
    std::uint64_t m_starts = 0;
    std::uint64_t m_raised = 0;
    std::uint64_t m_raisedTogether = 0;
    std::uint64_t m_cutBack = 0;
};

/// A step in a line: "pmax-reference 2200", "offset-table +200 2250", "pmax-row <=2300 2250".
std::string lineOf(const Explanation::Step& step);

/// All steps of an explanation, likewise.
std::vector<std::string> stepsOf(const Explanation& explanation);
