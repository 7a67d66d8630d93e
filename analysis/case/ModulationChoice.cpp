#include "ModulationChoice.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "OneLine.h"
#include "Suggestion.h"
#include "TextForms.h"

#include <charconv>
#include <cstddef>
#include <system_error>
#include <utility>

ModulationChoice::ModulationChoice(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        take(word);
    }
}

bool ModulationChoice::includes(Modulation modulation) const {
    return isEverything() || m_modulations.contains(modulation);
}

bool ModulationChoice::includes(const PowerTable::Row& row) const {
    return includes(row.modulation) || m_codes.contains(row.modulationAndCode);
}

void ModulationChoice::take(const std::string& word) {
    ModulationAndCoding number{};
    const char* const end = word.data() + word.size();
    const std::from_chars_result parsed = std::from_chars(word.data(), end, number.code);
    if (parsed.ec == std::errc() && parsed.ptr == end) {
        m_codes.insert(number);
        return;
    }
    for (const std::string& spelling : {word, Arguments::usualSpelling(word)}) {
        if (const auto modulation = modulationTextForms().find(spelling)) {
            m_modulations.insert(*modulation);
            return;
        }
        if (const auto code = modulationAndCodeTextForms().find(spelling)) {
            m_codes.insert(*code);
            return;
        }
    }
    std::vector<std::string> known = modulationTextForms().texts();
    known.insert(known.end(), modulationAndCodeTextForms().texts().begin(),
                 modulationAndCodeTextForms().texts().end());
    const std::optional<std::string> near = Suggestion::nearest(word, known);
    throw QuestionError("unknown modulation or code " + inQuotes(word) + "; " +
                        (near ? "did you mean \"" + *near + "\"?"
                              : "modulations are named like \"64QAM\", codes like "
                                "\"64QAM_STRONG\""));
}

void ModulationChoice::reduce(ExplainedTable& explained) const {
    std::vector<PowerTable::Row> rows;
    std::vector<Explanation> explanations;
    for (std::size_t index = 0; index < explained.table.rows.size(); ++index) {
        if (includes(explained.table.rows[index])) {
            rows.push_back(explained.table.rows[index]);
            explanations.push_back(explained.explanations[index]);
        }
    }
    explained.table.rows = std::move(rows);
    explained.explanations = std::move(explanations);
}
