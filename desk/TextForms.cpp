#include "TextForms.h"

#include "CallLog.h"

#include <cstdint>
#include <utility>

namespace {

/// What the convert functions answer for a value that has no text of its own.
constexpr const char* undefinedText = "UNDEFINED";

template <class Value>
void addIfNamed(std::vector<typename TextForms<Value>::Form>& forms, const std::string& text,
                Value value) {
    if (text != undefinedText) {
        forms.push_back({text, value});
    }
}

TextForms<Modulation> makeModulations() {
    std::vector<TextForms<Modulation>::Form> forms;
    const auto add = [&forms](std::int32_t points) {
        const auto modulation = static_cast<Modulation>(points);
        addIfNamed(forms, convertAcmEnumToString(modulation), modulation);
    };
    // Every modulation but CW has a power of two for its number of constellation points.
    add(0);
    for (std::int32_t points = 1; points <= 65536; points *= 2) {
        add(points);
    }
    forms.push_back({convertAcmEnumToString(Modulation::UNDEFINED), Modulation::UNDEFINED});
    return {"modulation", std::move(forms)};
}

TextForms<ModulationAndCoding> makeModulationAndCodes() {
    constexpr ModulationAndCoding undefined{ModulationAndCoding::UNDEFINED};
    std::vector<TextForms<ModulationAndCoding>::Form> forms;
    for (std::int32_t code = 0; code < undefined.code; ++code) {
        const ModulationAndCoding modulationAndCode{code};
        addIfNamed(forms, convertCodeAndModulationEnumToString(modulationAndCode),
                   modulationAndCode);
    }
    forms.push_back({convertCodeAndModulationEnumToString(undefined), undefined});
    return {"modulation-and-code", std::move(forms)};
}

TextForms<EReferenceSEC> makeReferenceSecs() {
    std::vector<TextForms<EReferenceSEC>::Form> forms;
    const auto undefined = static_cast<std::int32_t>(EReferenceSEC::UNDEFINED);
    for (std::int32_t value = 0; value < undefined; ++value) {
        const auto rsec = static_cast<EReferenceSEC>(value);
        addIfNamed(forms, convertRsecEnumToString(rsec), rsec);
    }
    forms.push_back({convertRsecEnumToString(EReferenceSEC::UNDEFINED), EReferenceSEC::UNDEFINED});
    return {"RSEC", std::move(forms)};
}

TextForms<EFrameFormatMarket> makeMarkets() {
    std::vector<TextForms<EFrameFormatMarket>::Form> forms;
    for (std::int32_t value = 0;; ++value) {
        const auto market = static_cast<EFrameFormatMarket>(value);
        const std::string text = marketText(market);
        if (text == std::to_string(value)) {
            break; // the last market stands before the first that has only its number
        }
        forms.push_back({text, market});
    }
    return {"market", std::move(forms)};
}

} // namespace

template <class Value>
TextForms<Value>::TextForms(std::string noun, std::vector<Form> forms)
    : m_noun(std::move(noun))
    , m_forms(std::move(forms)) {
    for (const Form& form : m_forms) {
        m_texts.push_back(form.text);
    }
}

template <class Value>
std::optional<Value> TextForms<Value>::find(std::string_view text) const {
    for (const Form& form : m_forms) {
        if (form.text == text) {
            return form.value;
        }
    }
    return std::nullopt;
}

template class TextForms<Modulation>;
template class TextForms<ModulationAndCoding>;
template class TextForms<EReferenceSEC>;
template class TextForms<EFrameFormatMarket>;

const TextForms<Modulation>& modulationTextForms() {
    static const TextForms<Modulation> forms = makeModulations();
    return forms;
}

const TextForms<ModulationAndCoding>& modulationAndCodeTextForms() {
    static const TextForms<ModulationAndCoding> forms = makeModulationAndCodes();
    return forms;
}

const TextForms<EReferenceSEC>& referenceSecTextForms() {
    static const TextForms<EReferenceSEC> forms = makeReferenceSecs();
    return forms;
}

const TextForms<EFrameFormatMarket>& marketTextForms() {
    static const TextForms<EFrameFormatMarket> forms = makeMarkets();
    return forms;
}

std::string marketText(EFrameFormatMarket market) {
    return CallText::textOf(market);
}
