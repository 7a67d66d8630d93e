#include "LogImport.h"

#include "CallCheck.h"
#include "ModulationAndCoding.h"
#include "OneLine.h"
#include "QueryTrace.h"
#include "TextForms.h"
#include "TraceText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

using Json = LogImport::Json;
using TraceText::isEntryOf;
using TraceText::numberBehind;
using TraceText::valueBehind;

constexpr std::size_t mostNamed = 20; ///< calls that are not in the file

constexpr const char* arrayQuery = "getMinMaxOutputPowerVsModulationArray";

std::int32_t narrow(std::int64_t number) {
    return static_cast<std::int32_t>(number);
}

/// What the library has added or taken off, undone: sums wrap as its own do.
std::int32_t sum(std::int64_t left, std::int64_t right) {
    return narrow(left + right);
}

std::optional<Modulation> modulationIn(const std::optional<std::string>& text) {
    return text ? modulationTextForms().find(*text) : std::nullopt;
}

/// The plain code of a modulation, or UNDEFINED.
std::int32_t plainCodeOf(Modulation modulation) {
    for (std::int32_t code = 1; code < ModulationAndCoding::UNDEFINED; code += 10) {
        if (convertCodeToModulation({code}) == modulation) {
            return code;
        }
    }
    return ModulationAndCoding::UNDEFINED;
}

Json codeText(std::int32_t code) {
    const std::string text = convertCodeAndModulationEnumToString({code});
    return modulationAndCodeTextForms().find(text) == ModulationAndCoding{code} ? Json(text)
                                                                                : Json(code);
}

Json modulationText(std::int32_t value) {
    const std::string text = convertAcmEnumToString(Modulation{value});
    return modulationTextForms().find(text) == Modulation{value} ? Json(text) : Json(value);
}

Json rsecText(std::int64_t value) {
    const EReferenceSEC rsec{narrow(value)};
    const std::string text = convertRsecEnumToString(rsec);
    return referenceSecTextForms().find(text) == rsec ? Json(text) : Json(value);
}

/// A product number of each family.
struct FamilyNumber {
    const char* className;
    const char* productNumber;
};

constexpr FamilyNumber familyNumbers[] = {{"CalculatorKam", "QZT 846 001"},
                                          {"CalculatorKamV3", "QZT 846 003"},
                                          {"CalculatorVo4", "QZT35202/1"},
                                          {"CalculatorVo5", "QZT 860 13"}};

std::optional<std::int32_t> numberOf(const nlohmann::json& answer, const char* key) {
    const auto found = answer.is_object() ? answer.find(key) : answer.end();
    return answer.is_object() && found != answer.end() && found->is_number_integer()
               ? std::optional(narrow(found->get<std::int64_t>()))
               : std::nullopt;
}

/// The message that holds a number behind a beginning.
std::optional<std::int32_t> messageOf(const LoggedCall& call, const char* beginning) {
    for (const TraceRecord& record : call.records) {
        if (const auto number = TraceText::numberAfter(record.text, beginning)) {
            return narrow(*number);
        }
    }
    return std::nullopt;
}

} // namespace

void LogImport::read(const LoggedCall& call) {
    Process& process = m_processes[call.process];
    process.inputs.follow(call);
    const std::string trouble = whyIncomplete(call, process);
    if (!isWanted(call, process)) {
        ++m_ofOthers;
        return;
    }
    if (call.isBehindGap) {
        noteOnce("calls may be missing before line " + std::to_string(call.line) +
                 ", where the log has a line that cannot be read");
    }
    if (trouble.empty()) {
        take(call);
    } else {
        leaveOut(call, trouble);
    }
}

bool LogImport::isWanted(const LoggedCall& call, Process& process) {
    const auto channel = process.inputs.channel();
    if (channel) {
        process.channels.insert(*channel);
    }
    if (!m_source.includes(call, process.inputs)) {
        return false;
    }
    process.isTaken = true;
    if (channel) {
        m_channels.insert(*channel);
    }
    return true;
}

std::string LogImport::whyIncomplete(const LoggedCall& call, Process& process) {
    const CallCheck check = CallCheck::of(call);
    const std::size_t brokenOff =
        std::exchange(process.brokenOff, check.endsAtItsEnd ? 0 : call.line);
    if (!check.isWhole()) {
        return check.trouble;
    }
    return brokenOff != 0 && call.answer.is_null()
               ? "the call before, line " + std::to_string(brokenOff) +
                     ", breaks off, and its lines may stand among these"
               : "";
}

void LogImport::leaveOut(const LoggedCall& call, const std::string& trouble) {
    if (++m_incomplete <= mostNamed) {
        noteOnce("line " + std::to_string(call.line) + ": " +
                 (call.name.empty() ? "a call without its beginning" : oneLine(call.name)) +
                 " is not in the file: " + trouble);
    }
    if (m_incomplete == 1) {
        noteOnce(
            "an operating input that was set in a missing line is not in the file: from line " +
            std::to_string(call.line) + " on, figures that hold a cutback may be off by it");
    }
}

std::string LogImport::mixture() const {
    std::string processes;
    std::size_t count = 0;
    for (const auto& [name, process] : m_processes) {
        if (process.isTaken) {
            processes += (count++ == 0 ? "" : ", ") + (name.empty() ? "(no name)" : inQuotes(name));
        }
    }
    if (count > 1) {
        return "calls of " + std::to_string(count) + " processes, " + processes +
               "; choose one with --process";
    }
    return m_channels.size() > 1 ? "services of several channels; choose one with --channel" : "";
}

void LogImport::take(const LoggedCall& call) {
    for (const TraceRecord& record : call.records) {
        if (const auto channel = numberBehind(record.text, " for channel ")) {
            m_channel = static_cast<std::uint32_t>(*channel);
        }
    }
    if (call.name == "initialize") {
        if (!m_isFirst) {
            emit({{"call", "initialize"}});
        }
        m_isFirst = false;
        return;
    }
    if (std::exchange(m_isFirst, false)) {
        noteOnce("the log does not begin with initialize: inputs that were set before it count as "
                 "never set");
    }
    if (TraceLog::isQuery(call.name) || call.name == "findPminPmax") {
        readQuery(call);
    } else if (call.name == "patch") {
        noteOnce("a patch in the log is told by what it changed");
    } else {
        readInput(call);
    }
}

// What the operator sets

void LogImport::readInput(const LoggedCall& call) {
    Json request{{"call", call.name}};
    if (call.name == "setPowerCutback" || call.name == "setTemperature") {
        const auto number = TraceText::number(call.arguments);
        if (!number) {
            noteOnce("line " + std::to_string(call.line) + ": " + call.name + " without its value");
            return;
        }
        if (call.name == "setPowerCutback") {
            m_inputs.permanentCutback = static_cast<std::uint32_t>(*number);
            request["cutback"] = static_cast<std::uint32_t>(*number);
        } else {
            request["temperature"] = narrow(*number);
        }
    } else if (call.name == "setTemporaryPowerCutback") {
        const bool isUsed = numberBehind(call.arguments, "useTemporaryPowerCutback=") == 1;
        const auto cutback = static_cast<std::uint32_t>(
            numberBehind(call.arguments, "temporaryPowerCutback=").value_or(0));
        m_inputs.temporaryCutback = {isUsed, cutback};
        request["use"] = isUsed;
        request["cutback"] = cutback;
    } else if (call.name != "setBoosterPresence") {
        noteOnce("line " + std::to_string(call.line) + ": an unknown call");
        return;
    } else {
        request["presence"] = messageOf(call, "New boosterPresence = ").value_or(0);
        std::int32_t gain = 0;
        std::int32_t input = 0;
        Json highest = "CW";
        for (const TraceRecord& record : call.records) {
            if (const auto told = TraceText::numberAfter(record.text, "New boosterGain = ")) {
                gain = narrow(*told);
                input =
                    narrow(numberBehind(record.text, "new boosterMaxInputPower = ").value_or(0));
                highest = valueBehind(record.text, "new boosterMaxModulation = ").value_or("CW");
            }
        }
        request["gain"] = gain;
        request["maxInputPower"] = input;
        request["maxModulation"] = highest;
    }
    request["expect"] = {{"result", numberOf(call.answer, "result").value_or(0)}};
    emit(std::move(request));
}

// What is asked

void LogImport::readQuery(const LoggedCall& call) {
    Json request{{"call", call.name}};
    m_id = 0;
    m_channelSpacing.reset();
    m_minimumSpacing.reset();
    m_hasOffset = true;
    m_asksForNodesRsec = false;
    m_isSelectionRefused = false;
    m_isFixedSelection = call.name == "calculatePowerCapabilities";
    if (call.name == arrayQuery) {
        m_id = narrow(numberBehind(call.arguments, "frameformat_id=").value_or(0));
        request["frameFormatId"] = m_id;
        for (const char* const key : {"minModulationAndCode", "maxModulationAndCode"}) {
            request[key] =
                valueBehind(call.arguments, std::string(key) + "In=").value_or("UNDEFINED");
        }
        const std::int64_t rsec = numberBehind(call.arguments, "referenceSec=").value_or(1000);
        request["referenceSec"] = rsecText(rsec);
        m_asksForNodesRsec = rsec == static_cast<std::int32_t>(EReferenceSEC::UNDEFINED);
    } else if (call.name == "calculatePowerCapabilities") {
        request["modulation"] = call.arguments;
    } else if (call.name == "calculateAdmodPowerCapabilities") {
        request["modulation"] =
            valueBehind(call.arguments, "actualModulation=").value_or("UNDEFINED");
        request["rsec"] =
            valueBehind(call.arguments, "convertRsecEnumToString(rsec)=").value_or("UNDEFINED");
    }

    for (const TraceRecord& record : call.records) {
        readEntry(record);
        readSelection(record);
        readLimit(record);
        if (const auto family = QueryTrace::familyIn(record)) {
            for (const FamilyNumber& number : familyNumbers) {
                if (family->className == number.className) {
                    observe("capabilityHandler", "productNumber", number.productNumber);
                    noteOnce(std::string("the product number ") + number.productNumber +
                             " stands for its family, the " + family->name +
                             ": the log does not tell the node's");
                }
            }
        }
    }
    if (m_id < 1 && (m_channelSpacing || m_minimumSpacing)) {
        observe("frameFormat", "channelSpacing",
                m_channelSpacing ? *m_channelSpacing : *m_minimumSpacing);
    }

    std::vector<CalculationFigures> calculations;
    for (const QueryTrace::Calculation& calculation : QueryTrace::read(call.records).calculations) {
        calculations.push_back(calculation.figures);
        readCalculation(calculation.figures);
    }
    if (calculations.size() == 1 && calculations.front().isFixed) {
        readFixedPower(call, calculations.front());
    }
    readCodes(call, calculations);
    readMinimum(call);

    if (Json expect = expected(call, calculations); !expect.is_null()) {
        request["expect"] = std::move(expect);
    } else {
        noteOnce("answers that the log does not hold are not in the file, the first in line " +
                 std::to_string(call.line));
    }
    emit(std::move(request));
}

void LogImport::readEntry(const TraceRecord& record) {
    const std::string& text = record.text;
    if (isEntryOf(record, "getCompensationForChannelSpacing")) {
        const auto named = numberBehind(text, ", channelSpacing=");
        if (const auto spacing = named ? named : TraceText::number(text)) {
            m_channelSpacing = narrow(*spacing);
        }
        if (const auto channel = numberBehind(text, "channel=")) {
            m_channel = static_cast<std::uint32_t>(*channel);
        }
    } else if (isEntryOf(record, "getMinOutputPower")) {
        if (const auto spacing = TraceText::number(text)) {
            m_minimumSpacing = narrow(*spacing);
        }
    } else if (TraceText::contains(text, " no match for channel spacing")) {
        m_hasOffset = false;
    } else if (TraceText::contains(text, "Failed to get variable")) {
        m_isVariableMissing = true;
        noteOnce("the node could not read its calibration; the file has none");
    } else if (m_asksForNodesRsec && (isEntryOf(record, "getMaxOutputPowerArrayUsingConfigured") ||
                                      isEntryOf(record, "getMaxOutputPowerArrayUsingRfid"))) {
        if (const auto rsec = numberBehind(text, "rsec=")) {
            observe("systemPowerController", "referenceSec", rsecText(*rsec));
        }
    } else if (TraceText::contains(text, "failed to get min and max modulation from ACM handler")) {
        m_isSelectionRefused = true;
        observe("acmHandler", "selection", Json{{"result", 32768}});
    }
}

/// What the operator selected; a range without codes is written with the plain ones.
void LogImport::readSelection(const TraceRecord& record) {
    if (m_isSelectionRefused) {
        return;
    }
    if (isEntryOf(record, "getAdmodEnable")) {
        const auto min = valueBehind(record.text, "minModulationAndCode=");
        const auto max = valueBehind(record.text, "maxModulationAndCode=");
        if (min && max) {
            m_selected["min"] = *min;
            m_selected["max"] = *max;
            observeSelection();
        }
        return;
    }
    const bool isAdaptive = isEntryOf(record, "getAdModMaxPower");
    if (m_id > 0 || !(isAdaptive || isEntryOf(record, "getFixModMaxPower"))) {
        return;
    }
    const auto select = [this](const char* key, const std::optional<Modulation>& modulation) {
        const auto code = modulationAndCodeTextForms().find(m_selected[key]);
        if (modulation && (!code || convertCodeToModulation(*code) != *modulation)) {
            m_selected[key] = convertCodeAndModulationEnumToString({plainCodeOf(*modulation)});
        }
    };
    if (isAdaptive && !m_isFixedSelection) {
        select("min", modulationIn(valueBehind(record.text, "selectedMinMod=")));
        select("max", modulationIn(valueBehind(record.text, "selectedMaxMod=")));
        observeSelection();
    } else if (m_isFixedSelection && !isAdaptive) {
        select("min", modulationIn(valueBehind(record.text, "selectedMod=")));
        observeSelection();
    } else if (!isAdaptive) {
        observe("frameFormat", "modulation",
                valueBehind(record.text, "selectedMod=").value_or("UNDEFINED"));
    }
}

void LogImport::readLimit(const TraceRecord& record) {
    if (const auto isLimited = TraceText::rest(record.text, " usePerformaceProfiles: ")) {
        observe("capabilityHandler", "maxAcmLimitedByHw", *isLimited == "Yes");
        return;
    }
    const std::string modem = " modemMaxAvailableModulation: ";
    const std::string radio = " radioMaxAvailableModulation: ";
    const std::size_t place = record.text.find(radio);
    if (!record.text.starts_with(modem) || place == std::string::npos) {
        return;
    }
    const std::string ofModem = record.text.substr(modem.size(), place - modem.size());
    if (m_id < 1) {
        observe("frameFormat", "maxAvailableModulation", ofModem);
    }
    const Json& handler = m_now["capabilityHandler"];
    const auto isLimited = handler.find("maxAcmLimitedByHw");
    const bool isByProfile = isLimited != handler.end() && *isLimited == true;
    const std::string ofRadio = record.text.substr(place + radio.size());
    // A radio without a limit shows the modem's.
    observe("capabilityHandler",
            isByProfile ? "maxModulationLimitedByHw" : "maxModulationWithoutLimitation",
            ofRadio == ofModem ? "UNDEFINED" : ofRadio);
}

void LogImport::readCalculation(const CalculationFigures& figures) {
    for (const CalculationFigures& inner : figures.inner) {
        readCalculation(inner);
    }
    const std::int32_t dpdVersion = figures.dpdVersion.value_or(0);
    if (figures.market.empty()) {
        noteOnce("the log shows a market without a name; it stands as Unknown");
    }
    const std::string market = figures.market.empty() ? "Unknown" : figures.market;
    if (m_id < 1) {
        observe("frameFormat", "dpdVersion", dpdVersion);
        observe("frameFormat", "market", market);
    } else {
        m_frameFormats[m_id].dpdVersion = dpdVersion;
        m_frameFormats[m_id].market = market;
        if (m_channelSpacing) {
            m_frameFormats[m_id].channelSpacing = m_channelSpacing;
        }
    }
    if (figures.compensation && m_channelSpacing) {
        m_compensations.try_emplace(*m_channelSpacing, *figures.compensation);
        if (m_compensations[*m_channelSpacing] != *figures.compensation) {
            noteOnce("the compensation of " + std::to_string(*m_channelSpacing) +
                     " MHz changes in the log; the first one stands in the file");
        }
    }
    Pmax& table = tableOf(dpdVersion, figures.market);
    if (figures.isFixed) {
        return;
    }
    for (const CalculationFigures::Lookup& lookup : figures.lookups) {
        if (!lookup.missing) {
            table.atLeast.try_emplace(static_cast<std::int32_t>(lookup.modulation),
                                      std::numeric_limits<std::int32_t>::min());
        }
    }
    readOutdoor(figures, table);
    if (figures.radioUnit.pmaxActual) {
        row(table, figures.modulation, sum(*figures.radioUnit.pmaxActual, narrow(cutback())));
    }
    if (figures.radioUnit.pmaxReference && figures.lookups.size() > 2) {
        row(table, figures.lookups[2].modulation, *figures.radioUnit.pmaxReference);
    }
}

void LogImport::readOutdoor(const CalculationFigures& figures, Pmax& table) {
    const CalculationFigures::OffsetFamily& offset = figures.offsetFamily;
    if (offset.pmaxActual) {
        row(table, figures.modulation, sum(*offset.pmaxActual, narrow(cutback())));
    }
    if (offset.pmaxSelectedMin) {
        row(table, figures.selectedMin, sum(*offset.pmaxSelectedMin, narrow(cutback())));
    }
    if (offset.pmaxReference && figures.lookups.size() > 2) {
        row(table, figures.lookups[2].modulation, *offset.pmaxReference);
    }
    const CalculationFigures::CapFamily& cap = figures.capFamily;
    if (!cap.uncompensated) {
        return;
    }
    // Pmax and compensation are both cut back there, so that their difference is not.
    row(table, figures.modulation, sum(*cap.uncompensated, figures.compensation.value_or(0)));
    if (cap.cap && cap.capped && !cap.isCapMissing) {
        if (*cap.capped < *cap.uncompensated) {
            row(table, *cap.cap, *cap.capped);
        } else {
            std::int32_t& least = table.atLeast[static_cast<std::int32_t>(*cap.cap)];
            least = std::max(least, *cap.capped);
        }
    }
}

/// A fixed modulation's power is the lower Pmax of two, with compensation and cutback.
void LogImport::readFixedPower(const LoggedCall& call, const CalculationFigures& figures) {
    const bool isUncut = call.name == "getUnrestrictedPmax";
    const auto answer = numberOf(call.answer, isUncut ? "pmax" : "maxPower");
    if (!answer || numberOf(call.answer, "result") != 0 || !figures.inner.empty()) {
        return;
    }
    const bool hasMissing = std::any_of(
        figures.lookups.begin(), figures.lookups.end(),
        [](const CalculationFigures::Lookup& lookup) { return lookup.missing.has_value(); });
    if (hasMissing) {
        return; // counts as 0
    }
    const std::int32_t pmax = sum(std::int64_t{*answer} - figures.compensation.value_or(0),
                                  isUncut ? 0 : narrow(cutback()));
    Pmax& table = tableOf(figures.dpdVersion.value_or(0), figures.market);
    const auto powerOf = [&table](Modulation modulation) {
        const auto found = table.rows.find(static_cast<std::int32_t>(modulation));
        return found == table.rows.end() ? std::optional<std::int32_t>() : found->second;
    };
    const bool isSelectedHigher =
        powerOf(figures.selectedMin) && *powerOf(figures.selectedMin) > pmax;
    if (figures.selectedMin == figures.modulation || isSelectedHigher) {
        row(table, figures.modulation, pmax);
    } else {
        std::int32_t& asked = table.atLeast[static_cast<std::int32_t>(figures.modulation)];
        asked = std::max(asked, pmax);
        std::int32_t& selected = table.atLeast[static_cast<std::int32_t>(figures.selectedMin)];
        selected = std::max(selected, pmax);
    }
}

void LogImport::readCodes(const LoggedCall& call,
                          const std::vector<CalculationFigures>& calculations) {
    if (call.name != arrayQuery) {
        return;
    }
    std::vector<std::int32_t> codes;
    if (call.answer.is_object() && call.answer.contains("powerMap")) {
        for (const auto& entry : call.answer["powerMap"]) {
            codes.push_back(narrow(entry.value("code", std::int64_t{0})));
        }
    } else {
        for (const CalculationFigures& figures : calculations) {
            codes.push_back(plainCodeOf(figures.modulation));
        }
    }
    // The highest code decides on the reference, also where it has no power.
    for (const TraceRecord& record : call.records) {
        const std::string modem = " modemMaxAvailableModulation: ";
        if (const auto rest = TraceText::rest(record.text, modem)) {
            const auto highest = modulationIn(rest->substr(0, rest->find(' ')));
            const bool isThere =
                std::any_of(codes.begin(), codes.end(), [&highest](std::int32_t code) {
                    return convertCodeToModulation({code}) == highest;
                });
            if (highest && !isThere) {
                codes.push_back(plainCodeOf(*highest));
            }
            break;
        }
    }
    Json list = Json::array();
    for (const std::int32_t code : codes) {
        list.push_back(codeText(code));
    }
    if (m_id < 1) {
        observe("frameFormat", "modulationAndCodes", list);
    } else {
        m_frameFormats[m_id].modulationAndCodes = list;
    }
    noteOnce("codes that got no power are not in the lists of codes");
}

void LogImport::readMinimum(const LoggedCall& call) {
    std::optional<std::int32_t> minimum;
    for (const char* const key : {"minOutputPower", "minPower", "pmin"}) {
        if (!minimum) {
            minimum = numberOf(call.answer, key);
        }
    }
    if (!minimum) {
        minimum = messageOf(call, "minOutputPower = ");
    }
    if (!minimum || !m_minimumSpacing) {
        return;
    }
    if (m_id > 0) {
        m_frameFormats[m_id].channelSpacing = m_minimumSpacing;
    }
    const std::int32_t& known =
        m_hasOffset ? m_minimumPowers.try_emplace(*m_minimumSpacing, *minimum).first->second
                    : m_minimumWithoutOffset.emplace(m_minimumWithoutOffset.value_or(*minimum));
    if (known != *minimum) {
        noteOnce("the minimum power of " + std::to_string(*m_minimumSpacing) +
                 " MHz changes in the log; the first one stands in the file");
    }
}

Json LogImport::expected(const LoggedCall& call,
                         const std::vector<CalculationFigures>& calculations) {
    if (call.answer.is_object()) {
        Json expect = Json::object();
        for (const auto& [key, value] : call.answer.items()) {
            if (key != "call") {
                expect[key] = value;
            }
        }
        return expect;
    }
    // A log of plain traces: what the calculators reported.
    if (call.name == "calculateAdmodPowerCapabilities" && calculations.size() == 1 &&
        calculations.front().maxPower &&
        calculations.front().outcome == CalculationFigures::Outcome::Power) {
        return {{"result", 0}, {"maxPower", *calculations.front().maxPower}};
    }
    if (call.name != arrayQuery || calculations.empty()) {
        return nullptr;
    }
    Json map = Json::array();
    for (const CalculationFigures& figures : calculations) {
        if (figures.isFixed || !figures.maxPower) {
            return nullptr;
        }
        if (figures.outcome == CalculationFigures::Outcome::Power) {
            map.push_back(
                {{"code", plainCodeOf(figures.modulation)}, {"maxPower", *figures.maxPower}});
        }
    }
    return {{"result", 0}, {"powerMap", std::move(map)}};
}

// What becomes of it

bool LogImport::isKnown(const char* section, const char* key) const {
    const auto found = m_now.find(section);
    return found != m_now.end() && found->contains(key);
}

void LogImport::observe(const char* section, const char* key, const Json& value) {
    if (!isKnown(section, key)) {
        m_first[section][key] = value;
        m_now[section][key] = value;
    } else if (m_now[section][key] != value) {
        m_now[section][key] = value;
        m_patch[section][key] = value;
    }
}

void LogImport::observeSelection() {
    observe("acmHandler", "selection",
            Json{{"min", m_selected["min"]}, {"max", m_selected["max"]}});
}

void LogImport::row(Pmax& table, Modulation modulation, std::int32_t power) {
    const auto [place, isNew] =
        table.rows.try_emplace(static_cast<std::int32_t>(modulation), power);
    if (!isNew && place->second != power) {
        noteOnce("Pmax of " + convertAcmEnumToString(modulation) +
                 " changes in the log, or a cutback was set before it; the first one stands in the "
                 "file");
    }
}

LogImport::Pmax& LogImport::tableOf(std::int32_t dpdVersion, const std::string& market) {
    return m_tables[std::string(dpdVersion == 1 ? "pmaxDpd1" : "pmaxDpd2") +
                    (market == "Ansi" ? "Ansi" : "Etsi")];
}

void LogImport::emit(Json request) {
    if (!m_patch.is_null()) {
        if (m_patch.contains("acmHandler")) {
            // A patch is merged: what stood there in another form goes.
            const Json selection = m_patch["acmHandler"]["selection"];
            Json& merged = m_patch["acmHandler"];
            merged = Json::object();
            for (const char* const key : {"min", "max", "result"}) {
                merged[key] = selection.value(key, Json());
            }
        }
        m_requests.push_back({{"call", "patch"}, {"file", std::exchange(m_patch, nullptr)}});
    }
    m_requests.push_back(std::move(request));
}

void LogImport::noteOnce(const std::string& note) {
    if (std::find(m_notes.begin(), m_notes.end(), note) == m_notes.end()) {
        m_notes.push_back(note);
    }
}

Json LogImport::node(std::vector<std::string>& untold) const {
    Json node = m_first.is_null() ? Json::object() : m_first;
    const auto need = [&](const char* section, const char* key, const Json& standIn) {
        if (!node.contains(section) || !node[section].contains(key)) {
            node[section][key] = standIn;
            untold.push_back(std::string("/") + section + "/" + key);
        }
    };
    need("frameFormat", "modulation", "UNDEFINED");
    need("frameFormat", "maxAvailableModulation", "UNDEFINED");
    need("frameFormat", "modulationAndCodes", Json::array());
    need("frameFormat", "channelSpacing", 0);
    need("frameFormat", "dpdVersion", 0);
    need("frameFormat", "market", "Unknown");
    need("systemPowerController", "referenceSec", "UNDEFINED");
    if (node.contains("acmHandler")) {
        node["acmHandler"] = Json(node["acmHandler"]["selection"]);
    } else {
        node["acmHandler"] = Json::object();
        untold.emplace_back("/acmHandler");
    }

    Json& radio = node["capabilityHandler"];
    const std::int32_t base = m_minimumWithoutOffset.value_or(0);
    radio["minOutputPower"] = base;
    for (const char* const name :
         {"pmaxDpd1Etsi", "pmaxDpd2Etsi", "pmaxDpd1Ansi", "pmaxDpd2Ansi"}) {
        const auto found = m_tables.find(name);
        if (found == m_tables.end()) {
            radio[name] = {{"result", 32768}};
            continue;
        }
        std::map<std::int32_t, std::int32_t> rows = found->second.rows;
        for (const auto& [modulation, least] : found->second.atLeast) {
            if (rows.try_emplace(modulation, std::max(least, 0)).second) {
                untold.push_back(std::string("/capabilityHandler/") + name + ", the power at " +
                                 convertAcmEnumToString(Modulation{modulation}));
            }
        }
        radio[name] = Json::array();
        for (const auto& [modulation, power] : rows) {
            radio[name].push_back({modulationText(modulation), power});
        }
    }

    Json& offsets = node["systemPowerController"]["minOutputPowerOffsets"] = Json::array();
    for (const auto& [spacing, minimum] : m_minimumPowers) {
        offsets.push_back({spacing, sum(minimum, -std::int64_t{base})});
    }
    Json& formats = node["hardwareConfigurationHandler"]["frameFormats"] = Json::array();
    for (const auto& [id, format] : m_frameFormats) {
        formats.push_back({{"id", id},
                           {"channelSpacing", format.channelSpacing.value_or(0)},
                           {"dpdVersion", format.dpdVersion.value_or(0)},
                           {"market", format.market.empty() ? "Unknown" : format.market},
                           {"modulationAndCodes", format.modulationAndCodes}});
    }
    if (!m_isVariableMissing) {
        const std::string name =
            "channel." + std::to_string(m_channel == 2 ? 2 : 1) + ".tx.rf.pmax.cs.comp.v2.array";
        Json pairs = Json::array();
        for (const auto& [spacing, compensation] : m_compensations) {
            pairs.push_back(spacing);
            pairs.push_back(compensation);
        }
        node["variables"][name + "size"] = pairs.size();
        node["variables"][name] = std::move(pairs);
    }
    return node;
}

std::vector<std::string> LogImport::notes() const {
    std::vector<std::string> untold;
    node(untold);
    std::vector<std::string> notes{"Imported from a log. It holds what the library reported of a "
                                   "node, and no other data."};
    notes.insert(notes.end(), m_notes.begin(), m_notes.end());
    if (m_ofOthers > 0) {
        notes.push_back(std::to_string(m_ofOthers) +
                        " calls of other services in the log, or of an unknown one, are not in "
                        "the file");
    }
    for (const auto& [name, process] : m_processes) {
        if (process.isTaken && process.channels.size() > 1) {
            notes.emplace_back(
                "services of several channels start in one process, whose traces do "
                "not tell them apart: each call counts as the last one's that started");
            break;
        }
    }
    if (m_incomplete > mostNamed) {
        notes.push_back(std::to_string(m_incomplete - mostNamed) +
                        " more calls are not in the file because lines of them are missing");
    }
    notes.emplace_back("the minimum power is told with its offset; the file has it as an offset");
    if (!untold.empty()) {
        std::string note = "The log does not tell, so these values are not the node's:";
        for (const std::string& place : untold) {
            note += (&place == &untold.front() ? " " : "; ") + place;
        }
        notes.push_back(note);
    }
    return notes;
}

std::string LogImport::radioFile() const {
    std::vector<std::string> untold;
    std::string text = "{\n  \"channel\": " + std::to_string(m_channel) + ",\n  \"notes\": [";
    const char* separator = "\n    ";
    for (const std::string& note : notes()) {
        text += separator + Json(note).dump(-1, ' ', false, Json::error_handler_t::replace);
        separator = ",\n    ";
    }
    text += "\n  ],\n";
    const Json sections = node(untold);
    for (const auto& [name, section] : sections.items()) {
        text += "  \"" + name + "\": " + section.dump() + ",\n";
    }
    text += "  \"requests\": [";
    separator = "\n    ";
    for (const Json& request : m_requests) {
        text += separator + request.dump();
        separator = ",\n    ";
    }
    return text + "\n  ]\n}\n";
}
