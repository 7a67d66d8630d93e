#include "CalculationFigures.h"

#include "TextForms.h"
#include "TraceText.h"

#include <cstddef>
#include <string_view>
#include <utility>

using TraceText::numberAfter;
using TraceText::numberBehind;
using TraceText::rest;
using TraceText::valueBehind;

// The texts that are looked for are the library's own messages, letter for letter, its oddities
// included.

namespace {

using Kind = TraceRecord::Kind;
using Power = std::optional<std::int32_t>;

/// A reported number, which has 32 bits.
Power power(const std::optional<std::int64_t>& number) {
    return number ? Power(static_cast<std::int32_t>(*number)) : Power();
}

/// UNDEFINED also where nothing is said.
Modulation modulationNamed(const std::optional<std::string>& text) {
    return modulationTextForms().find(text.value_or("")).value_or(Modulation::UNDEFINED);
}

/// The number behind the last "= " of a text.
Power result(std::string_view text) {
    constexpr std::string_view label = "= ";
    const std::size_t place = text.rfind(label);
    return place == std::string_view::npos
               ? Power()
               : power(TraceText::number(text.substr(place + label.size())));
}

/// The last part of a source path.
std::string_view classOf(std::string_view file) {
    return file.substr(file.rfind('/') + 1); // without a slash that is all
}

std::vector<Power> numbersIn(std::string_view list) {
    std::vector<Power> numbers;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = list.find(',');
        numbers.push_back(power(TraceText::number(list.substr(0, comma))));
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    return numbers;
}

} // namespace

bool CalculationFigures::isStart(const TraceRecord& record) {
    return TraceText::isEntryOf(record, "getAdModMaxPower") ||
           TraceText::isEntryOf(record, "getFixModMaxPower");
}

CalculationFigures::CalculationFigures(const TraceRecord& entry)
    : isFixed(entry.function == "getFixModMaxPower")
    , market(valueBehind(entry.text, "market=").value_or(""))
    , dpdVersion(power(numberBehind(entry.text, "dpdVersion=")))
    , compensation(power(numberBehind(entry.text, ", csPowerCompensation="))) {
    const std::string& text = entry.text;
    if (isFixed) {
        modulation = modulationNamed(valueBehind(text, ", modulation="));
        selectedMin = selectedMax = modulationNamed(valueBehind(text, ", selectedMod="));
        return;
    }
    rsec = valueBehind(text, "convertRsecEnumToString(rsec)=").value_or("");
    modulation = modulationNamed(valueBehind(text, ", actualMod="));
    selectedMin = modulationNamed(valueBehind(text, "selectedMinMod="));
    selectedMax = modulationNamed(valueBehind(text, "selectedMaxMod="));
}

void CalculationFigures::read(const TraceRecord& record) {
    if (isFixed && TraceText::isEntryOf(record, "getAdModMaxPower")) {
        inner.emplace_back(record);
        return;
    }
    readOutcome(record);
    if (!inner.empty()) {
        if (record.function != "getFixModMaxPower") {
            inner.back().read(record);
        }
        return;
    }
    readLookup(record);
    if (record.function == "getMaxPower" && classOf(record.file).starts_with("Calculator")) {
        calculator = classOf(record.file);
    }
    readCapFamily(record);
    if (record.kind == Kind::Message) {
        readOffsetFamily(record.text);
        readRadioUnit(record.text);
        readBooster(record.text);
    }
}

void CalculationFigures::readOutcome(const TraceRecord& record) {
    const std::optional<TraceTrouble> trouble = TraceTrouble::in(record);
    if (trouble) {
        refusal = trouble;
        const bool isIgnored = trouble->rule == Rule::BoosterMaxModulation ||
                               trouble->rule == Rule::SelectedMaximum ||
                               trouble->rule == Rule::UndefinedModulation;
        if (isIgnored && !isFixed) {
            outcome = Outcome::NotApplicable;
        }
        return;
    }
    if (record.kind != Kind::Message) {
        return;
    }
    if (refusal) {
        refusal->learnFrom(record);
    }
    const bool isFailure = isFixed ? record.text.starts_with("Failed to get AdMod capabilities, ")
                                   : record.function == "getAdModMaxPower" && record.level <= 2;
    if (isFailure) {
        outcome = Outcome::Failed;
    }
}

void CalculationFigures::readLookup(const TraceRecord& record) {
    if (TraceText::isEntryOf(record, "applyCutbackToMaxPower")) {
        ++cutbackCount;
        return;
    }
    if (TraceText::isEntryOf(record, "getMaxPower")) {
        if (const auto text = valueBehind(record.text, ", modulationType=")) {
            lookups.push_back({modulationNamed(text), {}});
        }
        return;
    }
    if (lookups.empty() || lookups.back().missing) {
        return;
    }
    if (record.text.starts_with("Unknown DPD version ")) {
        lookups.back().missing = Rule::UnknownDpdVersion;
    } else if (!capFamily.uncompensated && TraceText::missingRow(record)) {
        lookups.back().missing = Rule::MissingPmaxRow;
    }
}

void CalculationFigures::readOffsetFamily(const std::string& text) {
    if (const auto list = rest(text, "getMaxPower std::min parameters: ")) {
        const std::vector<Power> numbers = numbersIn(*list);
        // The selected minimum is left out if it has no offset.
        if (numbers.size() == 3 || numbers.size() == 4) {
            offsetFamily.pmaxActual = numbers.front();
            offsetFamily.selectedMinPower = numbers.size() == 4 ? numbers[1] : Power();
            offsetFamily.actualPower = numbers[numbers.size() - 2];
            offsetFamily.pmaxSelectedMin = numbers.back();
        }
        return;
    }
    if (text.starts_with("getMaxPower Max power for modulation ")) {
        offsetFamily.rsec = power(numberBehind(text, ", rsec "));
        offsetFamily.pmaxReference = power(numberBehind(text, " and max modulation "));
        maxPower = result(text);
    }
}

void CalculationFigures::readCapFamily(const TraceRecord& record) {
    const std::string& text = record.text;
    if (TraceText::missingRow(record)) {
        capFamily.isCapMissing = capFamily.uncompensated.has_value();
    } else if (text.starts_with("uncompensated Pmax for modulation: ")) {
        capFamily.uncompensated = result(text);
    } else if (text == "getMaxPowerNo matching RSEC") {
        capFamily.isCarried = true;
    } else if (const auto cap = rest(text, "min() of uncompensated Pmax and tmuMaxPowerFor")) {
        const std::string constellation = cap->substr(0, cap->find("Qam"));
        capFamily.cap = modulationNamed(constellation + "QAM");
        capFamily.capped = power(numberBehind(text, " = "));
    } else if (const auto answer = numberAfter(text, "getMaxPower Calculated max power = ")) {
        maxPower = power(answer);
        capFamily.rsec = valueBehind(text, " with rsec ").value_or("");
        capFamily.rsec.resize(capFamily.rsec.find(' ') == std::string::npos
                                  ? capFamily.rsec.size()
                                  : capFamily.rsec.find(' '));
        capFamily.compensation = power(numberBehind(text, " and power cutback: "));
    }
}

void CalculationFigures::readRadioUnit(const std::string& text) {
    if (text.starts_with("data.refMaxModulation=") ||
        text.starts_with("data.selectedMaxModulation=")) {
        radioUnit.pmaxActual = power(numberBehind(text, ", data.pmaxActualModulation="));
        radioUnit.pmaxReference = power(numberBehind(text, ", data.pmaxRefMaxModulation="));
        radioUnit.presence = power(numberBehind(text, ", boosterBand="));
    } else if (text.starts_with("ACM adjusted power ")) {
        radioUnit.offset = power(numberBehind(text, " + "));
        radioUnit.adjusted = result(text);
    } else if (const auto answer = numberAfter(text, "Max power = ")) {
        maxPower = power(answer);
        radioUnit.withoutBooster = maxPower;
        radioUnit.rsec = valueBehind(text, ", RSEC-").value_or("");
        radioUnit.against = valueBehind(text, ", using ref acm ")
                                .value_or(valueBehind(text, ", using selected max ").value_or(""));
    }
}

void CalculationFigures::readBooster(const std::string& text) {
    static constexpr std::pair<const char*, Power RadioUnit::*> figures[] = {
        {"boosterPowerAdjustments: ", &RadioUnit::boosterAdjustment},
        {"maxPower (boosted.1): ", &RadioUnit::withAdjustment},
        {"boosterBandPowerAdjustments: ", &RadioUnit::boosterBandAdjustment},
        {"maxPower (boosted.2): ", &RadioUnit::withBandAdjustment},
        {"maxPower (boosted.3): ", &RadioUnit::atInput},
        {"maxPower (boosted.4): ", &RadioUnit::bounded},
    };
    for (const auto& [beginning, figure] : figures) {
        if (const auto number = numberAfter(text, beginning)) {
            radioUnit.*figure = power(number);
            maxPower = figure == &RadioUnit::bounded ? radioUnit.bounded : maxPower;
            return;
        }
    }
}
