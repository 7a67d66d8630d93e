#include "RequestRules.h"

#include "CheckRules.h"
#include "CheckText.h"
#include "Decibels.h"
#include "NodeRules.h"
#include "OneLine.h"
#include "ResultCode.h"
#include "TextForms.h"
#include "TraceTrouble.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <tuple>
#include <variant>

namespace {

/// The highest power of all Pmax tables; nothing without any row.
std::optional<int> highestPmax(const CheckedNode& node) {
    std::optional<int> highest;
    for (const PmaxTableName& name : pmaxTables) {
        const std::vector<int>* const table = node.pmaxTable(name);
        for (std::size_t index = 1; table != nullptr && index < table->size(); index += 2) {
            highest = std::max(highest.value_or((*table)[index]), (*table)[index]);
        }
    }
    return highest;
}

int minOutputPower(const CheckedNode& node) {
    const auto& answer = node.answers().capabilityHandler->minOutputPower;
    const int* const power = answer ? std::get_if<int>(&*answer) : nullptr;
    return power == nullptr ? 0 : *power;
}

bool isDefined(const ModulationAndCoding& code) {
    return code.code != ModulationAndCoding::UNDEFINED;
}

AcmHandlerAnswers::Range selectedRange(const CheckedNode& node) {
    const auto& selection = node.answers().acmHandler->selection;
    const auto* const range =
        selection ? std::get_if<AcmHandlerAnswers::Range>(&*selection) : nullptr;
    return range == nullptr ? AcmHandlerAnswers::Range() : *range;
}

std::string knownIds(const CheckedNode& node) {
    std::vector<std::string> ids;
    for (const CheckedFrameFormat& frameFormat : node.frameFormats()) {
        if (!frameFormat.isConfigured()) {
            ids.push_back(std::to_string(frameFormat.id));
        }
    }
    return ids.empty() ? "the hardware configuration has none"
                       : "the hardware configuration has " + CheckText::list(ids);
}

TraceRecord recordOf(const nlohmann::json& written) {
    TraceRecord record{};
    record.kind = written.at("kind") == "raw" ? TraceRecord::Kind::Raw : TraceRecord::Kind::Message;
    record.level = written.value("level", 1);
    record.function = written.at("function").get<std::string>();
    record.text = written.at("text").get<std::string>();
    return record;
}

/// Why a replayed call failed, from the warnings and errors that the library traced in it.
std::string reasonOf(const nlohmann::json& line) {
    std::string reason = "the library does not say why";
    for (const nlohmann::json& written : line.at("trace")) {
        const TraceRecord record = recordOf(written);
        const std::optional<TraceTrouble> trouble = TraceTrouble::in(record);
        if (trouble && trouble->rule != Rule::Unexplained) {
            return trouble->text;
        }
        if (record.level == 1) {
            reason = "the library reports " + inQuotes(record.text);
        }
    }
    return reason;
}

} // namespace

/// Looks at one request, by its kind.
class RequestRules::Visitor {
public:
    Visitor(RequestRules& rules, std::size_t index, const CheckedNode& node)
        : m_rules(rules)
        , m_place(placeOf(index))
        , m_written((*rules.m_requests)[index])
        , m_node(node) {}

    void operator()(const Calls::SetPowerCutback& call) {
        m_rules.m_permanentCutback = call.cutback;
        checkCutback(call.cutback);
    }

    void operator()(const Calls::SetTemporaryPowerCutback& call) {
        if (!call.use) {
            return;
        }
        checkCutback(call.cutback);
        if (call.cutback == 0 && m_rules.m_permanentCutback != 0) {
            add(CheckRules::CutbackLifted, "cutback",
                "a temporary cutback of 0 dB is in force instead of the permanent " +
                    Decibels::dB(m_rules.m_permanentCutback),
                "end the temporary cutback with \"use\": false");
        }
    }

    void operator()(const Calls::SetBoosterPresence& call) {
        if (call.presence < 0) {
            add(CheckRules::OddPresence, "presence",
                "a presence of " + std::to_string(call.presence) +
                    " counts as a booster in the calculation",
                "0 is no booster, 7 one of the second band, any other number one of the first");
        }
        if (call.presence == 0) {
            return;
        }
        checkStep("gain", call.gain, "dB");
        checkStep("maxInputPower", call.maxInputPower, "dBm");
        const std::string text = CheckText::of(call.maxModulation);
        const bool isText = modulationTextForms().find(text).has_value();
        if (call.maxModulation == Modulation::UNDEFINED || !isText) {
            add(CheckRules::BoosterWithoutLimit, "maxModulation",
                "the booster's highest modulation, " + text + ", is none",
                "name the highest modulation that the booster carries");
        }
    }

    void operator()(const Calls::CalculatePowerCapabilities& call) {
        checkModulation(call.modulation);
    }

    void operator()(const Calls::CalculateAdmodPowerCapabilities& call) {
        checkModulation(call.modulation);
        NodeRules::checkClass(&m_written.at("rsec"), m_place / "rsec", m_rules.m_findings);
        if (m_node.configured() != nullptr) {
            checkClassCounts(*m_node.configured(), call.rsec, "rsec");
        }
    }

    void operator()(const Calls::GetMinMaxOutputPowerVsModulationArray& call) {
        const CheckedFrameFormat* const frameFormat = m_node.find(call.frameFormatId);
        if (frameFormat == nullptr) {
            add(CheckRules::NoFrameFormat, "frameFormatId",
                "there is no frame format " + std::to_string(call.frameFormatId), knownIds(m_node));
            return;
        }
        checkRange(call, *frameFormat);
        if (m_written.contains("powerMap") &&
            m_written.at("powerMap").size() != call.powerMap.size()) {
            add(CheckRules::MapEntryTwice, "powerMap",
                "the power map lists a code twice, and the last entry counts",
                "remove one of the two");
        }
        if (m_written.contains("referenceSec")) {
            NodeRules::checkClass(&m_written.at("referenceSec"), m_place / "referenceSec",
                                  m_rules.m_findings);
            checkClassCounts(*frameFormat, call.referenceSec, "referenceSec");
        }
    }

    template <class OtherCall>
    void operator()(const OtherCall&) {}

private:
    void add(const CheckRule& rule, const char* key, const std::string& message,
             const std::string& remedy) {
        m_rules.m_findings.add(rule, m_place / key, message, remedy);
    }

    void checkCutback(std::uint32_t cutback) {
        constexpr std::uint32_t oneDecibel = 100;
        constexpr std::uint32_t tenthOfDecibel = 10;
        if (cutback < oneDecibel && cutback % tenthOfDecibel != 0) {
            add(CheckRules::OddStep, "cutback",
                "a cutback of " + std::to_string(cutback) + " is " + Decibels::dB(cutback),
                "cutbacks are in hundredths of a dB: " + std::to_string(cutback) + " dB is " +
                    std::to_string(cutback * oneDecibel));
        }
        if (cutback > std::numeric_limits<std::int32_t>::max()) {
            add(CheckRules::CutbackTooLarge, "cutback",
                "a cutback of " + std::to_string(cutback) + " counts as " +
                    Decibels::dB(static_cast<std::int32_t>(cutback)) +
                    ", because powers are summed up in 32 bits with a sign",
                "cutbacks are in hundredths of a dB, from 0");
            return;
        }
        const std::optional<int> highest = highestPmax(m_node);
        if (!highest) {
            return;
        }
        const std::int64_t room = std::int64_t{*highest} - minOutputPower(m_node);
        // A minimum above every Pmax is another fault than the cutback.
        if (room >= 0 && std::int64_t{cutback} > room) {
            add(CheckRules::CutbackTooLarge, "cutback",
                "a cutback of " + Decibels::dB(cutback) +
                    " takes every modulation below the minimum: the highest Pmax, " +
                    Decibels::dBm(*highest) + ", is " + Decibels::dB(room) + " above it",
                "cutbacks are in hundredths of a dB");
        }
    }

    void checkStep(const char* key, std::int32_t value, const char* unit) {
        constexpr std::int64_t one = 100;
        constexpr std::int64_t tenth = 10;
        const std::int64_t hundredths = value;
        const bool isSmall = hundredths != 0 && std::abs(hundredths) < one;
        if (!isSmall && hundredths % tenth == 0) {
            return;
        }
        const std::string shown =
            unit == std::string("dB") ? Decibels::dB(hundredths) : Decibels::dBm(hundredths);
        add(CheckRules::OddStep, key,
            "the booster's " + std::string(key) + " of " + std::to_string(value) + " is " + shown,
            isSmall ? "figures are in hundredths: " + std::to_string(value) + " " + unit + " is " +
                          std::to_string(hundredths * one)
                    : "figures are in hundredths, and boosters are specified in steps of 0.1 " +
                          std::string(unit));
    }

    void checkModulation(Modulation modulation) {
        const CheckedFrameFormat* const configured = m_node.configured();
        if (configured != nullptr && !configured->carries(modulation)) {
            add(CheckRules::ModulationNotCarried, "modulation",
                "the configured frame format has no code for " + CheckText::of(modulation),
                "ask for the modulation of one of its modulationAndCodes");
        }
    }

    void checkRange(const Calls::GetMinMaxOutputPowerVsModulationArray& call,
                    const CheckedFrameFormat& frameFormat) {
        const AcmHandlerAnswers::Range selected = selectedRange(m_node);
        const bool isMinGiven = isDefined(call.minModulationAndCode);
        const bool isMaxGiven = isDefined(call.maxModulationAndCode);
        const ModulationAndCoding min = isMinGiven ? call.minModulationAndCode : selected.min;
        const ModulationAndCoding max = isMaxGiven ? call.maxModulationAndCode : selected.max;
        if ((isMinGiven || isMaxGiven) && isDefined(min) && isDefined(max) && min.code > max.code) {
            const char* const isSelected = " (as selected)";
            add(CheckRules::RequestReversed,
                isMinGiven ? "minModulationAndCode" : "maxModulationAndCode",
                "the minimum, " + CheckText::of(min) + (isMinGiven ? "" : isSelected) +
                    ", is above the maximum, " + CheckText::of(max) +
                    (isMaxGiven ? "" : isSelected),
                "exchange the two, or give both");
        }
        for (const auto& [key, code, isGiven] :
             {std::tuple{"minModulationAndCode", min, isMinGiven},
              std::tuple{"maxModulationAndCode", max, isMaxGiven}}) {
            if (isGiven && frameFormat.codes && !frameFormat.carries(code)) {
                add(CheckRules::RequestNotCarried, key,
                    frameFormat.name() + " has no code " + CheckText::of(code),
                    "take one of its modulationAndCodes");
            }
        }
    }

    void checkClassCounts(const CheckedFrameFormat& frameFormat, EReferenceSEC rsec,
                          const char* key) {
        if (rsec == EReferenceSEC::UNDEFINED) {
            return;
        }
        const auto table = m_rules.m_library.powersOf(m_node, frameFormat, rsec);
        if (table && table->usedRsec && *table->usedRsec != convertRsecEnumToString(rsec)) {
            add(CheckRules::ClassIgnored, key,
                "class " + CheckText::of(rsec) + " does not count: on " +
                    CheckText::of(table->market) + " the powers are calculated with class " +
                    *table->usedRsec,
                "nothing to do, or compare the market");
        }
    }

    RequestRules& m_rules;
    FilePlace m_place;
    const nlohmann::json& m_written;
    const CheckedNode& m_node;
};

RequestRules::RequestRules(const RadioFile& file, const nlohmann::json& requests,
                           LibraryRules& library, const FindingList& known, FindingList& findings)
    : m_file(file)
    , m_requests(&requests)
    , m_library(library)
    , m_known(known)
    , m_findings(findings) {}

void RequestRules::check(std::size_t index, const CheckedNode& node) {
    Visitor visitor(*this, index, node);
    std::visit(visitor, m_file.requests[index].call);
}

/// Whether another finding says already why a request fails.
bool RequestRules::isKnownToFail(std::size_t index, const CheckedNode& node) const {
    const Calls::Any& call = m_file.requests[index].call;
    const std::vector<Finding>& known = m_known.findings();
    if (std::holds_alternative<Calls::Initialize>(call)) {
        return std::ranges::any_of(known, [](const Finding& finding) {
            return finding.rule == &CheckRules::DoesNotStart;
        });
    }
    const auto* const array = std::get_if<Calls::GetMinMaxOutputPowerVsModulationArray>(&call);
    const CheckedFrameFormat* const frameFormat =
        node.find(array == nullptr ? 0 : array->frameFormatId);
    if (frameFormat == nullptr) {
        return true; // there is no such frame format
    }
    return std::ranges::any_of(known, [frameFormat](const Finding& finding) {
        return (finding.rule == &CheckRules::ArrayFails ||
                finding.rule == &CheckRules::UnknownDpd) &&
               finding.place.isWithin(frameFormat->place);
    });
}

void RequestRules::checkAnswer(std::size_t index, const nlohmann::json& line,
                               const CheckedNode& node) {
    const auto result = line.at("result").get<std::uint32_t>();
    if (!ResultCode::isFailure(result)) {
        checkMinimum(index, line, node);
    } else if (!isKnownToFail(index, node)) {
        m_findings.add(CheckRules::RequestFails, placeOf(index),
                       line.at("call").get<std::string>() + " fails with " +
                           std::to_string(result) + ": " + reasonOf(line),
                       "a replay with all traces shows the whole calculation");
    }
}

/// Powers that are below the minimum with the operating inputs of the requests, but not without.
void RequestRules::checkMinimum(std::size_t index, const nlohmann::json& line,
                                const CheckedNode& node) {
    std::optional<std::int64_t> lowest;
    std::int64_t minimum = 0;
    const Calls::Any& call = m_file.requests[index].call;
    const auto* const array = std::get_if<Calls::GetMinMaxOutputPowerVsModulationArray>(&call);
    if (array != nullptr) {
        minimum = line.at("minOutputPower").get<std::int64_t>();
        for (const nlohmann::json& entry : line.at("powerMap")) {
            const ModulationAndCoding code{entry.at("code").get<std::int32_t>()};
            const auto power = entry.at("maxPower").get<std::int64_t>();
            if (!array->powerMap.contains(code)) {
                lowest = std::min(lowest.value_or(power), power);
            }
        }
    } else if (line.contains("maxPower") && line.at("result") == 0) {
        minimum = line.at("minPower").get<std::int64_t>();
        lowest = line.at("maxPower").get<std::int64_t>();
    }
    const bool isMeantOtherwise =
        m_findings.has(CheckRules::ModulationNotCarried, placeOf(index) / "modulation");
    if (!lowest || *lowest >= minimum || isMeantOtherwise) {
        return;
    }
    const CheckedFrameFormat* const frameFormat =
        node.find(array == nullptr ? 0 : array->frameFormatId);
    const std::vector<Finding>& known = m_known.findings();
    const bool isKnown = std::ranges::any_of(known, [frameFormat](const Finding& finding) {
        return finding.rule == &CheckRules::BelowMinimum && frameFormat != nullptr &&
               finding.place.isWithin(frameFormat->place);
    });
    if (!isKnown) {
        m_findings.add(CheckRules::BelowMinimum, placeOf(index),
                       "the lowest maximum power of the answer, " + Decibels::dBm(*lowest) +
                           ", is below the minimum of " + Decibels::dBm(minimum),
                       "compare the cutback and the booster with the Pmax tables");
    }
}
