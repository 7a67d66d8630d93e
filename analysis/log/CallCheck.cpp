#include "CallCheck.h"

#include "LibraryQuestions.h"
#include "Modulation.h"
#include "OneLine.h"
#include "QueryTrace.h"
#include "TextForms.h"
#include "TraceText.h"
#include "Waterfall.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>

namespace {

using Kind = TraceRecord::Kind;
using Values = std::vector<std::string>;

constexpr const char* service = "OutputPowerCalculator";
constexpr const char* pmaxTable = "TxRfMaxPowerCapability";

bool isWordCharacter(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '_' || character == '-';
}

/// Takes a text apart by a form: %n is a decimal number, %w a word, %e a word or nothing, %t the
/// rest, which is not empty.
std::optional<Values> valuesIn(std::string_view text, std::string_view form) {
    Values values;
    while (!form.empty()) {
        if (form.front() != '%') {
            if (text.empty() || text.front() != form.front()) {
                return std::nullopt;
            }
            text.remove_prefix(1);
            form.remove_prefix(1);
            continue;
        }
        const char what = form.at(1);
        form.remove_prefix(2);
        std::size_t length = text.size();
        if (what != 't') {
            length = static_cast<std::size_t>(std::ranges::find_if_not(text, isWordCharacter) -
                                              text.begin());
        }
        if ((length == 0 && what != 'e') ||
            (what == 'n' && !TraceText::number(text.substr(0, length)))) {
            return std::nullopt;
        }
        values.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return text.empty() ? std::optional(values) : std::nullopt;
}

std::string_view sourceOf(const TraceRecord& record) {
    return std::string_view(record.file).substr(record.file.rfind('/') + 1);
}

std::int32_t numberIn(const std::string& text) {
    return static_cast<std::int32_t>(TraceText::number(text).value_or(0));
}

/// Walks one call. A trace that does not belong where it stands ends the walk with a Trouble.
class Walk {
public:
    struct Trouble {
        std::string words;
        bool isAtEnd;
    };

    explicit Walk(const LoggedCall& call)
        : m_call(call) {}

    void call() {
        if (m_call.name == "getMinMaxOutputPowerVsModulationArray") {
            arrayQuery();
        } else if (m_call.name == "calculatePowerCapabilities") {
            fixedQuery();
        } else if (m_call.name == "calculateAdmodPowerCapabilities") {
            adaptiveQuery();
        } else if (m_call.name == "getUnrestrictedPmax") {
            unrestrictedQuery();
        } else {
            otherCall();
        }
        if (m_next < m_call.records.size()) {
            fail("is foreign: this call ends before it, and the line that begins another one is "
                 "missing");
        }
    }

    std::size_t calculations() const { return m_calculations; }
    std::size_t wholeRecords() const { return m_wholeRecords; }
    const std::string& doubt() const { return m_doubt; }

    bool isTwice(const std::string& name) const {
        const auto found = m_bound.find(name);
        return found != m_bound.end() && found->second.times > 1;
    }

    /// The numbers that a cut might have shortened unseen.
    std::vector<std::string> unconfirmed() const {
        std::vector<std::string> lines = m_unconfirmed;
        for (const std::string name : {"csPowerCompensation", "Pmax of the selected minimum"}) {
            const auto found = m_bound.find(name);
            if (found != m_bound.end() && found->second.times == 1 && !found->second.isSure) {
                lines.push_back(once(name, found->second.line));
            }
        }
        return lines;
    }

private:
    struct Bound {
        std::string value;
        std::size_t line;
        std::size_t times = 1;
        bool isSure = false;
    };

    // Taking traces

    std::size_t lineOf(std::size_t index) const {
        return index < m_call.lines.size() ? m_call.lines[index] : m_call.line;
    }

    static std::string once(const std::string& what, std::size_t line) {
        return what + " at the end of line " + std::to_string(line);
    }

    [[noreturn]] void fail(const std::string& words) const {
        throw Trouble{"line " + std::to_string(lineOf(m_next)) + " " + words, false};
    }

    bool next(Kind kind, int level, const char* source, const std::string& function,
              const std::string& form) {
        if (m_next == m_call.records.size()) {
            return false;
        }
        const TraceRecord& record = m_call.records[m_next];
        if (record.kind != kind || (kind != Kind::Raw && record.level != level) ||
            record.function != function || (source != nullptr && sourceOf(record) != source)) {
            return false;
        }
        std::string_view text = record.text;
        while (kind == Kind::Raw && text.ends_with('\n')) {
            text.remove_suffix(1);
        }
        const std::optional<Values> values = valuesIn(text, form);
        if (!values) {
            return false;
        }
        m_values = *values;
        ++m_next;
        return true;
    }

    const Values& expect(Kind kind, int level, const char* source, const std::string& function,
                         const std::string& form) {
        if (next(kind, level, source, function, form)) {
            return m_values;
        }
        const std::string what = "the trace of " + function +
                                 (form.empty() ? "" : ", " + inQuotes(form.substr(0, 40))) +
                                 " is due";
        if (m_next == m_call.records.size()) {
            throw Trouble{"the call breaks off after line " +
                              std::to_string(lineOf(m_next == 0 ? 0 : m_next - 1)) + ", where " +
                              what,
                          true};
        }
        fail("is missing, cut or foreign: " + what + " there");
    }

    const Values& enter(const std::string& function, const std::string& form,
                        const char* source = service) {
        return expect(Kind::Enter, 6, source, function, form);
    }

    bool entered(const std::string& function, const std::string& form,
                 const char* source = service) {
        return next(Kind::Enter, 6, source, function, form);
    }

    const Values& message(int level, const std::string& function, const std::string& form,
                          const char* source = service) {
        return expect(Kind::Message, level, source, function, form);
    }

    bool said(int level, const std::string& function, const std::string& form,
              const char* source = service) {
        return next(Kind::Message, level, source, function, form);
    }

    /// A figure that occurs more than once is the same everywhere.
    void bind(const std::string& name, const std::string& value) {
        const auto [place, isNew] = m_bound.try_emplace(name, Bound{value, lineOf(m_next - 1)});
        if (isNew) {
            return;
        }
        same(name, value, place->second.value, place->second.line);
        ++place->second.times;
    }

    void same(const std::string& name, const std::string& value, const std::string& other,
              std::size_t otherLine) {
        if (value != other) {
            --m_next;
            fail("is cut or foreign: " + name + " is " + oneLine(value) + " there and " +
                 oneLine(other) + " in line " + std::to_string(otherLine));
        }
    }

    void known(bool isKnown, const std::string& what) {
        if (!isKnown) {
            --m_next;
            fail("is cut: it ends in no " + what);
        }
    }

    void modulation(const std::string& text) {
        known(modulationTextForms().find(text) ||
                  text == convertAcmEnumToString(Modulation::UNDEFINED),
              "modulation");
    }

    void modulationAndCode(const std::string& text) {
        known(modulationAndCodeTextForms().find(text).has_value(), "modulation-and-code");
    }

    /// A sum that the traces hold themselves.
    void adds(bool isSo, const std::string& what) {
        if (!isSo) {
            --m_next;
            fail("is cut or foreign: " + what + " does not follow from the lines before");
        }
    }

    std::string bound(const std::string& name) const {
        const auto found = m_bound.find(name);
        return found == m_bound.end() ? std::string() : found->second.value;
    }

    // The ways through a call

    void selection() {
        for (int times = 0; times < 2; ++times) {
            said(2, "getSelectedMinMaxAcm",
                 "failed to get min and max modulation from ACM handler");
        }
    }

    void arrayQuery() {
        Values values = enter("getMinMaxOutputPowerVsModulationArray",
                              "frameformat_id=%n, minModulationAndCodeIn=%w, "
                              "maxModulationAndCodeIn=%w, referenceSec=%n");
        const bool isConfigured = numberIn(values[0]) < 1;
        const std::string id = values[0];
        if (values[3] != "1000") {
            bind("rsec", values[3]);
        }
        selection();
        modulationAndCode(
            enter("getAdmodEnable", "minModulationAndCode=%w, maxModulationAndCode=%w")[1]);
        const std::string common = "rsec=%n, adModEnable=%n, selectedMinMod=%w, selectedMaxMod=%w";
        if (isConfigured) {
            values = enter("getMaxOutputPowerArrayUsingConfigured", common);
        } else {
            values = enter("getMaxOutputPowerArrayUsingRfid", "rfid=%n, " + common);
            same("rfid", values[0], id, m_call.line);
            values.erase(values.begin());
            for (const char* const what :
                 {"telecom market", "modulation and code array", "channel spacing"}) {
                said(1, "getMaxOutputPowerArrayUsingRfid",
                     std::string("Failed to get ") + what + ", wrong channel or FFID?");
            }
        }
        bind("rsec", values[0]);
        if (!populate(values, id)) {
            return;
        }
        if (!isConfigured) {
            const Values byId = enter("getMinOutputPowerUsingRfid", "rfid=%n");
            same("rfid", byId[0], id, m_call.line);
        }
        minOutputPower(isConfigured);
        message(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = %n");
    }

    /// @return whether the query goes on.
    bool populate(const Values& asked, const std::string& id) {
        const char* const name = "populateModulationPowerMap";
        const Values values =
            enter(name, "rsec=%n, adModEnable=%n, selectedMinMod=%w, selectedMaxMod=%w");
        for (std::size_t index = 0; index < values.size(); ++index) {
            same("a figure", values[index], asked[index], lineOf(m_next - 2));
        }
        modulation(values[3]);
        message(6, name, "modulationAndCodeArraySize = %n");
        if (said(1, name,
                 "Failed to calculate power capabilities, modulationAndCodeArray is empty") ||
            said(1, name, "Failed to calculate power capabilities for undefined max modulation")) {
            return false;
        }
        const std::string undefined = convertAcmEnumToString(Modulation::UNDEFINED);
        if (values[2] != undefined) {
            bind("selectedMinMod", values[2]);
        }
        if (values[3] != undefined) {
            bind("selectedMaxMod", values[3]);
        }
        same("the frame format", limit(), numberIn(id) < 1 ? "0" : id, m_call.line);
        if (!compensation()) {
            return false;
        }
        const bool isAdaptive = values[1] == "1";
        const std::string start = isAdaptive ? "getAdModMaxPower" : "getFixModMaxPower";
        while (m_next < m_call.records.size() &&
               TraceText::isEntryOf(m_call.records[m_next], start)) {
            const Outcome outcome = isAdaptive ? adaptive(true) : fixed(true);
            if (outcome == Outcome::Failed) {
                const Values failed =
                    message(2, name, "Failed to calculate power capabilities for modType %w");
                same("the modulation", failed[0], m_modulation, m_calculationLine);
            } else if (outcome == Outcome::NotApplicable) {
                ignored(name);
            }
            countCalculation();
        }
        return true;
    }

    void ignored(const std::string& function) {
        const Values values =
            message(5, function, "ignoring QAM%w as it's not supported by combined HW capability");
        same("the modulation", values[0], m_modulation, m_calculationLine);
    }

    void fixedQuery() {
        const std::string wanted = enter("calculatePowerCapabilities", "%w")[0];
        modulation(wanted);
        bind("modulation", wanted);
        minOutputPower(true);
        selection();
        if (said(1, "calculatePowerCapabilities", "Failed to get AdMod capabilities") ||
            !compensation()) {
            return;
        }
        fixed(true);
        bind("modulation", m_modulation);
        countCalculation();
    }

    void adaptiveQuery() {
        const char* const name = "calculateAdmodPowerCapabilities";
        const Values values = enter(name, "actualModulation=%w, convertRsecEnumToString(rsec)=%w");
        bind("modulation", values[0]);
        known(referenceSecTextForms().find(values[1]).has_value(), "class");
        bind("convertRsecEnumToString(rsec)", values[1]);
        selection();
        if (said(1, name, "Failed to get AdMod capabilities")) {
            return;
        }
        limit();
        if (!compensation()) {
            return;
        }
        const Outcome outcome = adaptive(true);
        bind("modulation", m_modulation);
        if (outcome == Outcome::Failed) {
            message(1, name, "Failed to get AdMod capabilities");
        } else if (outcome == Outcome::NotApplicable) {
            ignored(name);
        } else {
            minOutputPower(true);
        }
        countCalculation();
    }

    void unrestrictedQuery() {
        enter("getUnrestrictedPmax", "");
        if (!compensation()) {
            return;
        }
        if (fixed(false) == Outcome::Failed) {
            const Values values =
                message(2, "getUnrestrictedPmax",
                        "Failed to calculate power capabilities for modulation %w");
            same("the modulation", values[0], m_modulation, m_calculationLine);
        }
        countCalculation();
    }

    void otherCall() {
        if (m_call.name == "setPowerCutback") {
            enter(m_call.name, "%n");
        } else if (m_call.name == "setTemporaryPowerCutback") {
            enter(m_call.name, "useTemporaryPowerCutback=%n, temporaryPowerCutback=%n");
        } else if (m_call.name == "setTemperature") {
            bind("temperature", enter(m_call.name, "%n")[0]);
            bind("temperature", message(5, m_call.name, "New temperature = %n")[0]);
        } else if (m_call.name == "setBoosterPresence") {
            const Values values = message(5, m_call.name, "New boosterPresence = %n");
            if (numberIn(values[0]) >= 1) {
                modulation(message(5, m_call.name,
                                   "New boosterGain = %n, new boosterMaxInputPower = %n, new "
                                   "boosterMaxModulation = %w")[2]);
            }
        } else if (m_call.name == "findPminPmax") {
            enter(m_call.name, "");
            if (!said(1, m_call.name, "Unknown DPD version %n")) {
                minOutputPower(true);
            }
        } else {
            // A start of the service tells nothing that a power depends on.
            while (m_next < m_call.records.size() &&
                   m_call.records[m_next].function == m_call.name) {
                ++m_next;
            }
        }
    }

    void minOutputPower(bool isConfigured) {
        const std::string spacing = enter("getMinOutputPower", "%n")[0];
        if (isConfigured) {
            // As a number with a sign elsewhere.
            bind("channel spacing", std::to_string(numberIn(spacing)));
        }
        if (said(2, "getMinOutputPower", " no match for channel spacing : %n")) {
            same("the channel spacing", m_values[0], spacing, lineOf(m_next - 2));
        }
    }

    /// What cannot be told; the call goes on, but this calculation and those behind it do not
    /// count.
    void leaveOpen(const std::string& words) {
        if (m_doubt.empty()) {
            m_doubt = words;
        }
    }

    void countCalculation() {
        if (m_doubt.empty()) {
            ++m_calculations;
            m_wholeRecords = m_next;
        }
    }

    /// @return the frame format.
    std::string limit() {
        const char* const name = "limitMaxModDueToRadioCapability";
        const std::string id = enter(name, "%n")[0];
        const Values profiles = message(6, name, " usePerformaceProfiles: %w");
        adds(profiles[0] == "Yes" || profiles[0] == "No", "the use of performance profiles");
        const Values values =
            message(6, name, " modemMaxAvailableModulation: %w radioMaxAvailableModulation: %w");
        modulation(values[1]);
        return id;
    }

    void family() {
        bind("the hardware family", message(6, "getCalculator", "%t")[0]);
        const auto family = QueryTrace::familyIn(m_call.records[m_next - 1]);
        adds(family.has_value(), "the hardware family");
        m_family = family->className;
    }

    /// @return whether the query goes on.
    bool compensation() {
        family();
        const char* const name = "getCompensationForChannelSpacing";
        if (m_family == "CalculatorKam") {
            bind("channel spacing", enter(name, "%n", "CalculatorKam")[0]);
        } else if (m_family == "CalculatorKamV3") {
            bind("channel spacing",
                 enter(name, "channel=%n, channelSpacing=%n", "CalculatorKamV3")[1]);
        } else {
            return true;
        }
        if (said(1, name, std::string(name) + " Failed to get variable %t", nullptr)) {
            message(1, "getCsPowerCompensation",
                    "Could not get power compensation for channel spacing %t");
            return false;
        }
        return !said(1, "getCsPowerCompensation",
                     "Could not get power compensation for channel spacing %t");
    }

    enum class Outcome {
        Power,
        NotApplicable,
        Failed
    };

    void cut(bool isCut) {
        if (isCut) {
            enter("applyCutbackToMaxPower", "");
        }
    }

    void market(const Values& values) {
        bind("dpdVersion", values[0]);
        bind("market", values[1]);
    }

    /// Begins a calculation that is not inside another one.
    void beginCalculation(const Values& values, const std::string& wanted,
                          const std::string& compensated) {
        m_modulation = wanted;
        m_calculationLine = lineOf(m_next - 1);
        market(values);
        bind("csPowerCompensation", compensated);
    }

    /// @param wanted empty for one that is not known beforehand.
    /// @return whether there is a row.
    bool lookUp(const std::string& wanted, std::string* found = nullptr) {
        const Values values = enter("getMaxPower", "dpdVersion=%n, market=%e, modulationType=%w");
        market(values);
        modulation(values[2]);
        if (!wanted.empty()) {
            same("the modulation", values[2], wanted, m_calculationLine);
        }
        if (found != nullptr) {
            *found = values[2];
        }
        market(enter("getMaxPowerArray", "dpdVersion=%n, market=%e"));
        if (said(1, "getMaxPowerArray", "Unknown DPD version %n")) {
            message(2, "getMaxPower", "Unable to get power for modulation %w");
            return false;
        }
        return !hasNoRow(values[2]);
    }

    bool hasNoRow(const std::string& wanted) {
        if (!next(Kind::Raw, 1, pmaxTable, "getPower", "getPower, unknown modulation type: %w%t")) {
            return false;
        }
        same("the modulation", m_values[0], wanted, lineOf(m_next - 2));
        return true;
    }

    Outcome adaptive(bool isCut) {
        const Values values =
            enter("getAdModMaxPower",
                  "dpdVersion=%n, market=%e, convertRsecEnumToString(rsec)=%w, selectedMinMod=%w, "
                  "selectedMaxMod=%w, availableMaxMod=%w, actualMod=%w, csPowerCompensation=%n");
        beginCalculation(values, values[6], values[7]);
        bind("convertRsecEnumToString(rsec)", values[2]);
        bind("selectedMinMod", values[3]);
        bind("selectedMaxMod", values[4]);
        bind("availableMaxMod", values[5]);

        cut(isCut);
        const bool hasMin = lookUp(values[3]);
        cut(isCut);
        if (!hasMin) {
            message(1, "getAdModMaxPower",
                    "Could not get max ref output power for selected min %w");
            return Outcome::Failed;
        }
        const bool hasOwn = lookUp(values[6]);
        cut(isCut);
        if (!hasOwn) {
            message(1, "getAdModMaxPower", "Could not get max ref output power for actual %w");
            return Outcome::Failed;
        }
        family();
        std::string reference;
        if (m_family == "CalculatorVo5") {
            enter("getMaxRefModulation", "availableMaxAcm=%w, selectedMaxAcm=%w", "CalculatorVo5");
            reference = message(5, "getMaxRefModulation", "getMaxRefModulationmax power = %w",
                                "CalculatorVo5")[0];
        }
        const bool hasReference = lookUp(reference, &reference);
        bind("the reference modulation", reference);
        if (!hasReference) {
            message(1, "getAdModMaxPower",
                    "Could not get max output power for reference offset %w");
            return Outcome::Failed;
        }
        market(enter("getMaxPowerArray", "dpdVersion=%n, market=%e"));
        entered("initialize", "", m_family.c_str());
        Outcome outcome = Outcome::Failed;
        if (m_family == "CalculatorKam") {
            outcome = offsetFamily(values[3]);
        } else if (m_family == "CalculatorKamV3") {
            outcome = capFamily();
        } else {
            outcome = radioUnit();
        }
        if (outcome == Outcome::Failed) {
            message(1, "getAdModMaxPower", "Modulation not supported %w");
        }
        return outcome;
    }

    Outcome fixed(bool isCut) {
        const Values values =
            enter("getFixModMaxPower", "dpdVersion=%n, market=%e, selectedMod=%w, modulation=%w, "
                                       "csPowerCompensation=%n, useCutback=%n");
        beginCalculation(values, values[3], values[4]);
        m_bound.at("csPowerCompensation").isSure = true; // more follows in its line
        adds(values[5] == (isCut ? "1" : "0"), "the use of the cutback");
        if (m_next < m_call.records.size() &&
            TraceText::isEntryOf(m_call.records[m_next], "limitMaxModDueToRadioCapability")) {
            return fixedWithBooster(isCut, values);
        }
        bool hasRow = lookUp(values[2]);
        cut(isCut);
        if (!hasRow) {
            message(2, "getFixModMaxPower",
                    "Failed to calculate power capabilities for modulation %w");
        }
        hasRow = lookUp(values[3]);
        cut(isCut);
        if (!hasRow) {
            message(2, "getFixModMaxPower",
                    "Failed to calculate power capabilities for modulation %w");
        }
        return Outcome::Power;
    }

    Outcome fixedWithBooster(bool isCut, const Values& values) {
        limit();
        bind("selectedMinMod", values[2]);
        const Outcome selected = adaptive(isCut);
        same("the modulation", m_modulation, values[2], m_calculationLine);
        const Outcome own = adaptive(isCut);
        same("the modulation", m_modulation, values[3], m_calculationLine);
        if (selected == Outcome::Failed || own == Outcome::Failed) {
            message(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: %n, %n");
            return Outcome::Failed;
        }
        return Outcome::Power;
    }

    // The families

    void ownModulation(const std::string& text) {
        same("the modulation", text, m_modulation, m_calculationLine);
    }

    Outcome offsetFamily(const std::string& selectedMin) {
        const char* const source = "CalculatorKam";
        if (said(1, "getMaxPower", "No power offset found for rsec=%w, acm=%w", source)) {
            ownModulation(m_values[1]);
            return Outcome::Failed;
        }
        const std::string list =
            message(5, "getMaxPower", "getMaxPower std::min parameters: %t", source)[0];
        std::optional<Values> powers = valuesIn(list, "%n,%n,%n,%n");
        const bool hasSelected = powers.has_value();
        powers = hasSelected ? powers : valuesIn(list, "%n,%n,%n");
        adds(powers.has_value(), "the list of powers");
        bind("Pmax of the selected minimum", powers->back());
        const Values values = message(
            5, "getMaxPower",
            "getMaxPower Max power for modulation %w, rsec %n and max modulation %n = %n", source);
        ownModulation(values[0]);
        bind("the class of the family", values[1]);
        bind("Pmax of the reference modulation", values[2]);
        std::vector<std::int32_t> numbers;
        std::ranges::transform(*powers, std::back_inserter(numbers), numberIn);
        adds(*std::ranges::min_element(numbers) == numberIn(values[3]), "the power");
        if (numbers.back() == numberIn(values[3])) {
            m_bound.at("Pmax of the selected minimum").isSure = true;
        }
        // The selected minimum is left out where the family has no offset for it; or the line is
        // cut.
        const auto offsets = LibraryQuestions::offsets(source, EReferenceSEC{numberIn(values[1])});
        const auto offsetOf = [&offsets](const std::string& text) {
            const auto named = modulationTextForms().find(text);
            const auto found =
                offsets && named ? offsets->find(*named) : decltype(offsets->end()){};
            return offsets && named && found != offsets->end() ? std::optional(found->second)
                                                               : std::nullopt;
        };
        if (offsets) {
            const auto minimum = offsetOf(selectedMin);
            const auto own = offsetOf(m_modulation);
            adds(minimum.has_value() == hasSelected, "the number of powers");
            adds(!hasSelected || !own ||
                     Waterfall::wrapped(std::int64_t{numbers[1]} - *minimum) ==
                         Waterfall::wrapped(std::int64_t{numbers[2]} - *own),
                 "the offset");
        }
        return Outcome::Power;
    }

    Outcome capFamily() {
        const char* const source = "CalculatorKamV3";
        enter("getMaxPower", "", source);
        const Values pmax =
            message(6, "getMaxPower", "uncompensated Pmax for modulation: %w = %n", source);
        ownModulation(pmax[0]);
        const std::int32_t uncompensated = numberIn(pmax[1]);
        const std::size_t line = lineOf(m_next - 1);
        const bool isCarried = said(1, "getMaxPower", "getMaxPowerNo matching RSEC", source);
        std::optional<std::int32_t> capped;
        if (!isCarried) {
            const bool isMissing = next(Kind::Raw, 1, pmaxTable, "getPower",
                                        "getPower, unknown modulation type: %w%t");
            if (said(6, "getMaxPower", "min() of uncompensated Pmax and %w = %n will be used",
                     source)) {
                capped = numberIn(m_values[1]);
                adds(*capped <= uncompensated, "the capped power");
                if (*capped == 0 && !isMissing && uncompensated != 0) {
                    leaveOpen("the log does not tell whether the cap of 0 dBm in line " +
                              std::to_string(lineOf(m_next - 1)) +
                              " is that of a row, or of a missing one whose line is lost");
                }
            }
            adds(!isMissing || capped.has_value(), "the missing row");
        }
        const Values values = message(
            5, "getMaxPower",
            "getMaxPower Calculated max power = %n for %w with rsec %w and power cutback: %n",
            source);
        ownModulation(values[1]);
        bind("compensation less the cutback", values[3]);
        if (isCarried) {
            m_unconfirmed.push_back(once("Pmax of " + m_modulation, line));
            return Outcome::Power;
        }
        adds(capped.has_value() == (values[2] != "2"), "the cap");
        const std::int32_t before = capped.value_or(uncompensated);
        adds(Waterfall::wrapped(std::int64_t{before} + numberIn(values[3])) == numberIn(values[0]),
             "the power");
        if (before != uncompensated) {
            m_unconfirmed.push_back(once("Pmax of " + m_modulation, line));
        }
        return Outcome::Power;
    }

    Outcome radioUnit() {
        const bool isOlder = m_family == "CalculatorVo4";
        const char* const source = m_family.c_str();
        const char* const name = "getMaxPower";
        const Values data = message(
            6, name,
            std::string(isOlder ? "data.refMaxModulation=" : "data.selectedMaxModulation=") +
                "%w, data.actualModulation=%w, data.rsec=%n, data.pmaxActualModulation=%n, "
                "data.pmaxRefMaxModulation=%n, boosterBand=%n",
            source);
        ownModulation(data[1]);
        bind("data.rsec", data[2]);
        bind("Pmax of the reference modulation", data[4]);
        bind("boosterBand", data[5]);
        const std::string before = isOlder ? "" : "getMaxPower";
        if (!isOlder && said(4, name, "getMaxPower%w type invalid, selected max %w", source)) {
            return Outcome::NotApplicable;
        }
        if (!isOlder &&
            said(5, name, "getMaxPower%w is higher than selected max ACM (%w)", source)) {
            ownModulation(m_values[0]);
            return Outcome::NotApplicable;
        }
        const std::string missing = ", rsec=%w, acm=%w";
        const auto isMissing = [&](const std::string& what) {
            if (!said(1, name, what + "=%w" + missing, source)) {
                return false;
            }
            ownModulation(m_values[2]);
            return true;
        };
        if (isOlder && isMissing("No power offset found for ref acm")) {
            return Outcome::Failed;
        }
        if (said(5, name, before + "%w is higher than booster max ACM (%w)", source)) {
            ownModulation(m_values[0]);
            return Outcome::NotApplicable;
        }
        if (!isOlder && isMissing("No power offset found for selected max acm")) {
            return Outcome::Failed;
        }
        const Values fixed = message(6, name, "Static power for %w = %n", source);
        ownModulation(fixed[0]);
        Values sum = message(6, name,
                             isOlder ? "ACM adjusted power = (%n + %n) = %n"
                                     : "ACM adjusted power for selected max %w(%n + %n) = %n",
                             source);
        if (!isOlder) {
            sum.erase(sum.begin());
        }
        same("the static power", sum[2], fixed[1], lineOf(m_next - 2));
        same("Pmax of the reference modulation", sum[0], data[4], lineOf(m_next - 3));
        adds(Waterfall::wrapped(std::int64_t{numberIn(sum[0])} + numberIn(sum[1])) ==
                 numberIn(sum[2]),
             "the sum");
        const Values power = message(5, name,
                                     std::string("Max power = %n for %w, RSEC-%w, using ") +
                                         (isOlder ? "ref acm %w" : "selected max %w"),
                                     source);
        ownModulation(power[1]);
        modulation(power[3]);
        adds(std::min(numberIn(sum[2]), numberIn(data[3])) == numberIn(power[0]), "the power");
        if (numberIn(data[5]) == 0) {
            return Outcome::Power;
        }
        if (isMissing("No boosted power offset found for ref acm") ||
            isMissing("No boosted band power offset found for ref acm")) {
            return Outcome::Failed;
        }
        booster(numberIn(power[0]), numberIn(data[3]));
        return Outcome::Power;
    }

    void booster(std::int32_t power, std::int32_t pmax) {
        const auto number = [this](const std::string& label) {
            return numberIn(message(6, "getMaxPower", label + ": %n", m_family.c_str())[0]);
        };
        const std::int32_t adjustment = number("boosterPowerAdjustments");
        power = Waterfall::wrapped(std::int64_t{power} + adjustment);
        adds(number("maxPower (boosted.1)") == power, "the adjusted power");
        const std::int32_t band = number("boosterBandPowerAdjustments");
        power = Waterfall::wrapped(std::int64_t{power} + band);
        adds(number("maxPower (boosted.2)") == power, "the adjusted power");
        const std::int32_t atInput = number("maxPower (boosted.3)");
        const std::size_t line = lineOf(m_next - 1);
        adds(number("maxPower (boosted.4)") == std::min(atInput, pmax), "the power");
        if (atInput > pmax) {
            m_unconfirmed.push_back(once("the power at the booster's input", line));
        }
    }

    const LoggedCall& m_call;
    std::size_t m_next = 0;
    Values m_values;
    std::map<std::string, Bound> m_bound;
    std::string m_family;
    std::string m_modulation; ///< of the calculation
    std::size_t m_calculationLine = 0;
    std::size_t m_calculations = 0;
    std::size_t m_wholeRecords = 0; ///< up to the end of the last calculation
    std::vector<std::string> m_unconfirmed;
    std::string m_doubt;
};

/// Whether the last trace of a call is one that closes it.
bool isClosed(const LoggedCall& call) {
    return !call.records.empty() &&
           call.records.back().function == "getMinMaxOutputPowerVsModulationArray" &&
           call.records.back().text.starts_with("minOutputPower = ");
}

} // namespace

CallCheck CallCheck::of(const LoggedCall& call) {
    CallCheck check;
    if (call.name.empty()) {
        check.trouble = "the log does not show which call these traces belong to";
        check.endsAtItsEnd = false;
        return check;
    }
    Walk walk(call);
    try {
        walk.call();
        check.trouble = walk.doubt();
    } catch (const Walk::Trouble& trouble) {
        check.trouble = trouble.words;
        check.endsAtItsEnd = !trouble.isAtEnd && isClosed(call);
    }
    check.calculations = walk.calculations();
    check.wholeRecords = walk.wholeRecords();
    check.isSpacingConfirmed = walk.isTwice("channel spacing");
    check.unconfirmed = walk.unconfirmed();
    return check;
}
