#include "QueryTrace.h"

#include "OneLine.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

// The texts that are looked for are the library's own messages, letter for letter, its oddities
// included.

namespace {

using Kind = TraceRecord::Kind;

/// Records above this level are no troubles.
constexpr int troubleLevel = 2;

constexpr const char* noPmaxRow = "the Pmax table has no row for ";

/// What follows a label in a text, up to the next comma or the end; nothing without the label.
std::optional<std::string> valueBehind(std::string_view text, std::string_view label) {
    const std::size_t place = text.find(label);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(place + label.size());
    return std::string(text.substr(0, text.find(',')));
}

/// What follows a beginning; nothing if the text begins otherwise.
std::optional<std::string> rest(std::string_view text, std::string_view beginning) {
    if (!text.starts_with(beginning)) {
        return std::nullopt;
    }
    return std::string(text.substr(beginning.size()));
}

/// What stands between a label and the closing bracket at the end.
std::optional<std::string> inBrackets(std::string_view text, std::string_view label) {
    const std::size_t place = text.find(label);
    if (place == std::string_view::npos || !text.ends_with(')')) {
        return std::nullopt;
    }
    text.remove_prefix(place + label.size());
    text.remove_suffix(1);
    return std::string(text);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool isEntryOf(const TraceRecord& record, std::string_view function) {
    return record.kind == Kind::Enter && record.function == function;
}

std::string inTheLibrarysWords(const TraceRecord& record) {
    return "the library reports " + inQuotes(record.text);
}

/// A missing row of the Pmax table; a raw trace, whose code follows the text.
std::optional<std::string> missingRow(const TraceRecord& record) {
    const std::optional<std::string> modulation =
        rest(record.text, "getPower, unknown modulation type: ");
    if (record.kind != Kind::Raw || !modulation) {
        return std::nullopt;
    }
    return noPmaxRow + modulation->substr(0, modulation->find(' '));
}

/// A missing entry of the family's own tables, of which each family has its own message.
std::optional<std::string> missingEntry(const TraceRecord& record) {
    const std::string& text = record.text;
    std::string what;
    std::string against;
    if (text.starts_with("No power offset found for ref acm=")) {
        what = "power offset";
        against = " against " + *valueBehind(text, "ref acm=");
    } else if (text.starts_with("No power offset found for selected max acm=")) {
        what = "power offset";
        against = " against " + *valueBehind(text, "selected max acm=");
    } else if (text.starts_with("No power offset found for rsec=")) {
        what = "power offset";
    } else if (text.starts_with("No boosted power offset found for ref acm=")) {
        what = "booster adjustment";
    } else if (text.starts_with("No boosted band power offset found for ref acm=")) {
        what = "booster band adjustment";
    } else {
        return std::nullopt;
    }
    return "the family has no " + what + " for " + valueBehind(text, ", acm=").value_or("?") +
           " at RSEC " + valueBehind(text, "rsec=").value_or("?") + against;
}

/// A rule by which a calculator does not apply to a modulation.
std::optional<std::string> notApplicable(const TraceRecord& record) {
    if (const auto booster = inBrackets(record.text, " is higher than booster max ACM (")) {
        return "above the booster's highest modulation, " + *booster;
    }
    if (const auto selected = inBrackets(record.text, " is higher than selected max ACM (")) {
        return "above the selected maximum, " + *selected;
    }
    if (contains(record.text, " type invalid, selected max ")) {
        return "the modulation or the selected maximum is undefined";
    }
    return std::nullopt;
}

/// Which role the modulation of a missing row has, said by the message that follows it.
std::string roleOf(const TraceRecord& record) {
    if (record.text.starts_with("Could not get max ref output power for selected min ")) {
        return ", the selected minimum";
    }
    if (record.text.starts_with("Could not get max output power for reference offset ")) {
        return ", the reference modulation";
    }
    return {};
}

/// Messages that only repeat, further up, that something failed.
bool isConsequence(const TraceRecord& record) {
    constexpr std::string_view beginnings[] = {
        "Could not get max ref output power for ",
        "Could not get max output power for reference offset ",
        "Unable to get power for modulation ",
        "Modulation not supported ",
        "Failed to get AdMod capabilities",
        "Failed to calculate power capabilities for modulation ",
    };
    return std::any_of(
        std::begin(beginnings), std::end(beginnings),
        [&record](std::string_view beginning) { return record.text.starts_with(beginning); });
}

/// The trouble that a record of a calculation reports on its own.
std::optional<QueryTrace::Trouble> troubleIn(const TraceRecord& record) {
    using Trouble = QueryTrace::Trouble;
    if (record.kind == Kind::Enter) {
        return std::nullopt;
    }
    if (const auto text = missingRow(record)) {
        return Trouble{*text, true};
    }
    if (const auto text = missingEntry(record)) {
        return Trouble{*text, false};
    }
    if (const auto text = notApplicable(record)) {
        return Trouble{*text, true};
    }
    if (record.level > troubleLevel || isConsequence(record)) {
        return std::nullopt;
    }
    if (const auto dpdVersion = rest(record.text, "Unknown DPD version ")) {
        return Trouble{"DPD version " + *dpdVersion + " is unknown", true};
    }
    if (record.text.ends_with("No matching RSEC")) {
        return Trouble{"the family has no rule for this RSEC and goes on from the power of the "
                       "modulation before",
                       false};
    }
    return Trouble{inTheLibrarysWords(record), false};
}

/// Follows the library through one query.
class Reader {
public:
    void read(const TraceRecord& record);

    QueryTrace take();

private:
    bool readEntry(const TraceRecord& record);
    void startCalculation(const std::string& modulation);
    void readInCalculation(const TraceRecord& record);
    void readElsewhere(const TraceRecord& record);
    void readLimit(const TraceRecord& record);
    void note(const std::string& text);

    QueryTrace m_trace;
    bool m_isWalking = false;                     ///< through the modulation-and-code array
    bool m_isLimitedByProfile = false;            ///< as last reported
    QueryTrace::Calculation* m_current = nullptr; ///< what the records belong to
    QueryTrace::Calculation m_repeated;           ///< stands in for one that has been made before
};

void Reader::read(const TraceRecord& record) {
    if (const auto family = QueryTrace::familyIn(record)) {
        m_trace.family = family;
    } else if (readEntry(record)) {
        return;
    } else if (m_current != nullptr) {
        readInCalculation(record);
    } else {
        readElsewhere(record);
    }
}

/// Function entries say which part of the query the records that follow belong to.
/// @return whether nothing else is to be read from the record.
bool Reader::readEntry(const TraceRecord& record) {
    if (isEntryOf(record, "populateModulationPowerMap")) {
        m_trace.isAdaptive = valueBehind(record.text, "adModEnable=") == "1";
        m_isWalking = true;
        return true;
    }
    if (isEntryOf(record, "getMinOutputPower") || isEntryOf(record, "getMinOutputPowerUsingRfid")) {
        m_isWalking = false;
        m_current = nullptr;
        return true;
    }
    if (m_isWalking && isEntryOf(record, "getAdModMaxPower")) {
        if (!m_trace.rsec) {
            m_trace.rsec = valueBehind(record.text, "convertRsecEnumToString(rsec)=");
        }
        // With a booster it also runs inside the calculation for a fixed modulation.
        if (m_trace.isAdaptive) {
            startCalculation(valueBehind(record.text, ", actualMod=").value_or(""));
        }
        return true;
    }
    if (m_isWalking && isEntryOf(record, "getFixModMaxPower")) {
        startCalculation(valueBehind(record.text, ", modulation=").value_or(""));
        return true;
    }
    return false;
}

void Reader::startCalculation(const std::string& modulation) {
    const auto [calculation, isNew] = m_trace.calculations.try_emplace(modulation);
    m_repeated = {};
    m_current = isNew ? &calculation->second : &m_repeated;
}

void Reader::readInCalculation(const TraceRecord& record) {
    if (record.kind == Kind::Message && record.function == "populateModulationPowerMap") {
        m_current->failed = true;
        if (m_current->troubles.empty()) {
            m_current->troubles.push_back({inTheLibrarysWords(record), false});
        }
        m_current = nullptr;
        return;
    }
    std::vector<QueryTrace::Trouble>& troubles = m_current->troubles;
    if (const auto trouble = troubleIn(record)) {
        troubles.push_back(*trouble);
        return;
    }
    if (!troubles.empty() && troubles.back().text.starts_with(noPmaxRow)) {
        troubles.back().text += roleOf(record);
    }
}

void Reader::readLimit(const TraceRecord& record) {
    if (const auto byProfile = rest(record.text, " usePerformaceProfiles: ")) {
        m_isLimitedByProfile = *byProfile == "Yes";
        return;
    }
    const auto limits = rest(record.text, " modemMaxAvailableModulation: ");
    constexpr std::string_view label = " radioMaxAvailableModulation: ";
    const std::size_t place = limits ? limits->find(label) : std::string::npos;
    if (place != std::string::npos && !m_trace.modulationLimit) {
        m_trace.modulationLimit = {limits->substr(0, place), limits->substr(place + label.size()),
                                   m_isLimitedByProfile};
    }
}

void Reader::readElsewhere(const TraceRecord& record) {
    readLimit(record);
    if (record.kind == Kind::Enter || record.level > troubleLevel) {
        return;
    }
    const std::string& text = record.text;
    if (text == "Failed to calculate power capabilities, modulationAndCodeArray is empty") {
        m_trace.failure = "the frame format has no modulation-and-codes";
    } else if (text == "Failed to calculate power capabilities for undefined max modulation") {
        m_trace.failure = "the highest code of the frame format has no modulation";
    } else if (const auto variable =
                   rest(text, "getCompensationForChannelSpacing Failed to get variable ")) {
        m_trace.failure =
            "the channel-spacing compensation is unknown, because the stored variable " +
            inQuotes(*variable) + " cannot be read";
    } else if (text.starts_with("Could not get power compensation for channel spacing ")) {
        if (m_trace.failure.empty()) {
            m_trace.failure = inTheLibrarysWords(record);
        }
    } else if (text == "failed to get min and max modulation from ACM handler") {
        note("the ACM handler reports no selected range");
    } else if (text == "Failed to get telecom market, wrong channel or FFID?") {
        note("the hardware configuration gives no market for the frame format; Etsi is taken");
    } else if (text == "Failed to get modulation and code array, wrong channel or FFID?") {
        note("the hardware configuration gives no modulation-and-codes for the frame format");
    } else if (text == "Failed to get channel spacing, wrong channel or FFID?") {
        note("the hardware configuration gives no channel spacing for the frame format; 0 MHz is "
             "taken");
    } else if (const auto spacing = rest(text, " no match for channel spacing : ")) {
        note("no minimum-power offset for a channel spacing of " + *spacing +
             " MHz; the radio's own minimum holds");
    } else {
        note(inTheLibrarysWords(record));
    }
}

QueryTrace Reader::take() {
    // One look-up may fail for the selected and for the asked modulation alike.
    for (auto& [modulation, calculation] : m_trace.calculations) {
        std::set<std::string> seen;
        std::erase_if(calculation.troubles, [&seen](const QueryTrace::Trouble& trouble) {
            return !seen.insert(trouble.text).second;
        });
    }
    return std::move(m_trace);
}

void Reader::note(const std::string& text) {
    std::vector<std::string>& notes = m_trace.notes;
    // The selection is asked for twice in one query.
    if (std::find(notes.begin(), notes.end(), text) == notes.end()) {
        notes.push_back(text);
    }
}

} // namespace

QueryTrace QueryTrace::read(const std::vector<TraceRecord>& records) {
    Reader reader;
    for (const TraceRecord& record : records) {
        reader.read(record);
    }
    return reader.take();
}

const QueryTrace::Calculation* QueryTrace::find(Modulation modulation) const {
    const auto found = calculations.find(convertAcmEnumToString(modulation));
    return found == calculations.end() ? nullptr : &found->second;
}

std::optional<QueryTrace::Family> QueryTrace::familyIn(const TraceRecord& record) {
    if (record.function != "getCalculator" || record.kind != Kind::Message) {
        return std::nullopt;
    }
    const std::string& text = record.text;
    if (text == "Using KaM max power algorithm" ||
        text == "Empty productNumber, using KaM max power algorithm") {
        return Family{"CalculatorKam", "first outdoor family"};
    }
    if (text == "Using KaMV3 max power algorithm") {
        return Family{"CalculatorKamV3", "third outdoor family"};
    }
    if (text == "Using legacy TMU max power algorithm") {
        return Family{"CalculatorVo4", "older radio-unit family"};
    }
    if (text == "Using TMU max power algorithm") {
        return Family{"CalculatorVo5", "newer radio-unit family"};
    }
    return std::nullopt;
}
