#include "CheckText.h"

#include "Datum.h"
#include "TextForms.h"

#include <algorithm>

namespace {

/// The text of an enumerator, or the number of a value that is none.
template <class Value>
std::string orNumber(const TextForms<Value>& forms, const std::string& text, std::int32_t number) {
    const auto named = forms.find(text);
    constexpr const char* undefined = "UNDEFINED";
    return named && (text != undefined || *named == Value{number}) ? text : std::to_string(number);
}

} // namespace

std::string CheckText::of(Modulation modulation) {
    return orNumber(modulationTextForms(), convertAcmEnumToString(modulation),
                    static_cast<std::int32_t>(modulation));
}

std::string CheckText::of(const ModulationAndCoding& code) {
    const std::string text = convertCodeAndModulationEnumToString(code);
    const bool isNamed = modulationAndCodeTextForms().find(text)->code == code.code;
    return isNamed ? text : std::to_string(code.code);
}

std::string CheckText::of(EReferenceSEC rsec) {
    return orNumber(referenceSecTextForms(), convertRsecEnumToString(rsec),
                    static_cast<std::int32_t>(rsec));
}

std::string CheckText::of(EFrameFormatMarket market) {
    const std::string text = marketText(market);
    return marketTextForms().find(text) ? text : "market " + text;
}

std::string CheckText::of(EDpdVersion dpdVersion) {
    return "DPD version " + std::to_string(static_cast<std::int32_t>(dpdVersion));
}

std::string CheckText::of(EChannelSpacingType spacing) {
    return std::to_string(static_cast<std::int32_t>(spacing)) + " MHz";
}

std::string CheckText::list(const std::vector<std::string>& words) {
    constexpr std::size_t shown = 4;
    std::string text;
    const std::size_t count = words.size() <= shown ? words.size() : shown - 1;
    for (std::size_t index = 0; index < count; ++index) {
        if (index > 0) {
            text += index + 1 == words.size() ? " and " : ", ";
        }
        text += words[index];
    }
    if (count < words.size()) {
        text += " and " + std::to_string(words.size() - count) + " more";
    }
    return text;
}
