#include "QueryTrace.h"

#include "OneLine.h"
#include "TraceText.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string_view>
#include <utility>

// The texts that are looked for are the library's own messages, letter for letter, its oddities
// included.

namespace {

using Kind = TraceRecord::Kind;
using TraceText::isEntryOf;
using TraceText::rest;
using TraceText::valueBehind;

/// A message of the library, and what it means.
struct Meaning {
    const char* text;
    const char* words;
    std::optional<Rule> failure = {}; ///< that ends the query as a whole; nothing: it goes on
};

constexpr Meaning meanings[] = {
    {"Failed to calculate power capabilities, modulationAndCodeArray is empty",
     "the frame format has no modulation-and-codes", Rule::QueryFailed},
    {"Failed to calculate power capabilities for undefined max modulation",
     "the highest code of the frame format has no modulation", Rule::UndefinedModulation},
    {"Failed to get AdMod capabilities",
     "no modulation is selected, and the frame format has none either", Rule::UndefinedModulation},
    {"failed to get min and max modulation from ACM handler",
     "the ACM handler reports no selected range"},
    {"Failed to get telecom market, wrong channel or FFID?",
     "the hardware configuration gives no market for the frame format; Etsi is taken"},
    {"Failed to get modulation and code array, wrong channel or FFID?",
     "the hardware configuration gives no modulation-and-codes for the frame format"},
    {"Failed to get channel spacing, wrong channel or FFID?",
     "the hardware configuration gives no channel spacing for the frame format; 0 MHz is taken"},
};

/// Whether a message of a query says that the calculation before it gave no power.
bool saysWithoutPower(const TraceRecord& record) {
    return record.kind == Kind::Message && (record.function == "populateModulationPowerMap" ||
                                            record.function == "calculateAdmodPowerCapabilities" ||
                                            record.function == "getUnrestrictedPmax");
}

/// Follows the library through one query.
class Reader {
public:
    void read(const TraceRecord& record) {
        if (const auto family = QueryTrace::familyIn(record)) {
            m_trace.family = family;
        } else if (readEntry(record)) {
            return;
        } else if (m_isCalculating) {
            readInCalculation(record);
        } else {
            readElsewhere(record);
        }
    }

    QueryTrace take() {
        for (QueryTrace::Calculation& calculation : m_trace.calculations) {
            calculation.failed |= calculation.figures.outcome != CalculationFigures::Outcome::Power;
            // One look-up may fail for the selected and for the asked modulation alike.
            std::set<std::string> seen;
            std::erase_if(calculation.troubles, [&seen](const TraceTrouble& trouble) {
                return !seen.insert(trouble.text).second;
            });
        }
        return std::move(m_trace);
    }

private:
    /// Function entries say which part of the query the records that follow belong to.
    /// @return whether nothing else is to be read from the record.
    bool readEntry(const TraceRecord& record) {
        if (isEntryOf(record, "populateModulationPowerMap")) {
            m_trace.isAdaptive = valueBehind(record.text, "adModEnable=") == "1";
            return true;
        }
        if (isEntryOf(record, "getMinOutputPower") ||
            isEntryOf(record, "getMinOutputPowerUsingRfid")) {
            m_isCalculating = false;
            return true;
        }
        if (CalculationFigures::isStart(record)) {
            startCalculation(record);
            return true;
        }
        return false;
    }

    void startCalculation(const TraceRecord& entry) {
        const bool isAdaptive = entry.function == "getAdModMaxPower";
        if (isAdaptive && !m_trace.rsec) {
            m_trace.rsec = valueBehind(entry.text, "convertRsecEnumToString(rsec)=");
        }
        // With a booster an adaptive one also runs inside the calculation for a fixed modulation.
        if (isAdaptive && m_isCalculating && current().figures.isFixed) {
            current().figures.read(entry);
            return;
        }
        m_trace.isAdaptive = isAdaptive;
        m_trace.calculations.push_back({CalculationFigures(entry)});
        m_isCalculating = true;
    }

    void readInCalculation(const TraceRecord& record) {
        if (saysWithoutPower(record)) {
            current().failed = true;
            if (current().troubles.empty()) {
                current().troubles.push_back(TraceTrouble::unknown(record));
            }
            m_isCalculating = false;
            return;
        }
        current().figures.read(record);
        std::vector<TraceTrouble>& troubles = current().troubles;
        if (const auto trouble = TraceTrouble::in(record)) {
            troubles.push_back(*trouble);
        } else if (!troubles.empty()) {
            troubles.back().learnFrom(record);
        }
    }

    void readElsewhere(const TraceRecord& record) {
        readLimit(record);
        if (record.kind == Kind::Enter || record.level > TraceTrouble::highestLevel) {
            return;
        }
        const std::string& text = record.text;
        const auto* const known =
            std::ranges::find_if(meanings, [&](const Meaning& one) { return text == one.text; });
        if (known != std::end(meanings) && known->failure) {
            fail(*known->failure, known->words);
        } else if (known != std::end(meanings)) {
            note(known->words);
        } else if (const auto variable =
                       rest(text, "getCompensationForChannelSpacing Failed to get variable ")) {
            fail(Rule::MissingCalibration,
                 "the channel-spacing compensation is unknown, because the stored variable " +
                     inQuotes(*variable) + " cannot be read");
        } else if (text.starts_with("Could not get power compensation for channel spacing ")) {
            if (m_trace.failure.empty()) {
                fail(Rule::MissingCalibration, TraceTrouble::unknown(record).text);
            }
        } else if (const auto spacing = rest(text, " no match for channel spacing : ")) {
            note("no minimum-power offset for a channel spacing of " + *spacing +
                 " MHz; the radio's own minimum holds");
        } else {
            note(TraceTrouble::unknown(record).text);
        }
    }

    void readLimit(const TraceRecord& record) {
        if (const auto byProfile = rest(record.text, " usePerformaceProfiles: ")) {
            m_isLimitedByProfile = *byProfile == "Yes";
            return;
        }
        const std::string limits =
            rest(record.text, " modemMaxAvailableModulation: ").value_or(std::string());
        constexpr std::string_view label = " radioMaxAvailableModulation: ";
        const std::size_t place = limits.find(label);
        if (place != std::string::npos && !m_trace.modulationLimit) {
            m_trace.modulationLimit = {limits.substr(0, place), limits.substr(place + label.size()),
                                       m_isLimitedByProfile};
        }
    }

    void fail(Rule rule, const std::string& words) {
        m_trace.failure = words;
        m_trace.failureRule = rule;
    }

    void note(const std::string& text) {
        std::vector<std::string>& notes = m_trace.notes;
        // The selection is asked for twice in one query.
        if (std::ranges::find(notes, text) == notes.end()) {
            notes.push_back(text);
        }
    }

    QueryTrace::Calculation& current() { return m_trace.calculations.back(); }

    QueryTrace m_trace;
    bool m_isCalculating = false;      ///< the records belong to the last calculation
    bool m_isLimitedByProfile = false; ///< as last reported
};

} // namespace

QueryTrace QueryTrace::read(const std::vector<TraceRecord>& records) {
    Reader reader;
    for (const TraceRecord& record : records) {
        reader.read(record);
    }
    return reader.take();
}

const QueryTrace::Calculation* QueryTrace::find(Modulation modulation) const {
    const std::string text = convertAcmEnumToString(modulation);
    const auto found = std::ranges::find_if(calculations, [&text](const Calculation& calculation) {
        return convertAcmEnumToString(calculation.figures.modulation) == text;
    });
    return found == calculations.end() ? nullptr : &*found;
}

std::optional<Rule> QueryTrace::Calculation::firstTrouble() const {
    return troubles.empty() ? std::nullopt : std::optional(troubles.front().rule);
}

std::string QueryTrace::Calculation::words() const {
    std::string words;
    for (const TraceTrouble& trouble : troubles) {
        words += (words.empty() ? "" : "; ") + trouble.text;
        if (trouble.countsAsZero && !failed) {
            words += " (counted as 0 dBm)";
        }
    }
    return words;
}

std::optional<QueryTrace::Family> QueryTrace::familyIn(const TraceRecord& record) {
    if (record.function != "getCalculator" || record.kind != Kind::Message) {
        return std::nullopt;
    }
    static const std::map<std::string, Family> families{
        {"Using KaM max power algorithm", {"CalculatorKam", "first outdoor family"}},
        {"Empty productNumber, using KaM max power algorithm",
         {"CalculatorKam", "first outdoor family"}},
        {"Using KaMV3 max power algorithm", {"CalculatorKamV3", "third outdoor family"}},
        {"Using legacy TMU max power algorithm", {"CalculatorVo4", "older radio-unit family"}},
        {"Using TMU max power algorithm", {"CalculatorVo5", "newer radio-unit family"}},
    };
    const auto found = families.find(record.text);
    return found == families.end() ? std::nullopt : std::optional(found->second);
}
