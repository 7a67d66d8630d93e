#pragma once

#include "Explanation.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "PowerTable.h"

#include <set>
#include <string>
#include <vector>

/// Modulations and codes that a command line names. Without any everything is chosen.
class ModulationChoice {
public:
    /// A modulation's name counts for all its codes, also where one code has the same name; the
    /// name or the number of a code counts for that code.
    /// @throw QuestionError for a word that is no modulation and no code.
    explicit ModulationChoice(const std::vector<std::string>& words);

    bool isEverything() const { return m_modulations.empty() && m_codes.empty(); }
    bool hasCodes() const { return !m_codes.empty(); }
    bool includes(Modulation modulation) const;
    bool includes(const PowerTable::Row& row) const;

    /// Leaves out the rows that are not chosen.
    void reduce(ExplainedTable& explained) const;

private:
    void take(const std::string& word);

    std::set<Modulation> m_modulations;
    std::set<ModulationAndCoding> m_codes;
};
