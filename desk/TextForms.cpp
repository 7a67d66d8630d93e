#include "TextForms.h"

#include "CallLog.h"

#include <cstdint>
#include <numeric>
#include <utility>

namespace {

/// What the convert functions answer for a value that has no text of its own.
constexpr const char* undefinedText = "UNDEFINED";

/// The forms of those numbers that have a text of their own, and of the one that stands for none.
template <class Value>
TextForms<Value> makeForms(const char* noun, const std::vector<std::int32_t>& numbers,
                           Value undefined, std::string (*textOf)(const Value&)) {
    std::vector<typename TextForms<Value>::Form> forms;
    for (const std::int32_t number : numbers) {
        const Value value{number};
        if (const std::string text = textOf(value); text != undefinedText) {
            forms.push_back({text, value});
        }
    }
    forms.push_back({textOf(undefined), undefined});
    return {noun, std::move(forms)};
}

std::vector<std::int32_t> numbersBelow(std::int32_t end) {
    std::vector<std::int32_t> numbers(static_cast<std::size_t>(end));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

TextForms<Modulation> makeModulations() {
    // Every modulation but CW has a power of two for its number of constellation points.
    std::vector<std::int32_t> numbers{0};
    for (std::int32_t points = 1; points <= 65536; points *= 2) {
        numbers.push_back(points);
    }
    return makeForms<Modulation>(
        "modulation", numbers, Modulation::UNDEFINED,
        [](const Modulation& value) { return convertAcmEnumToString(value); });
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
    static const TextForms<ModulationAndCoding> forms = makeForms<ModulationAndCoding>(
        "modulation-and-code", numbersBelow(ModulationAndCoding::UNDEFINED),
        ModulationAndCoding{ModulationAndCoding::UNDEFINED}, [](const ModulationAndCoding& value) {
            return convertCodeAndModulationEnumToString(value);
        });
    return forms;
}

const TextForms<EReferenceSEC>& referenceSecTextForms() {
    static const TextForms<EReferenceSEC> forms = makeForms<EReferenceSEC>(
        "RSEC", numbersBelow(static_cast<std::int32_t>(EReferenceSEC::UNDEFINED)),
        EReferenceSEC::UNDEFINED,
        [](const EReferenceSEC& value) { return convertRsecEnumToString(value); });
    return forms;
}

const TextForms<EFrameFormatMarket>& marketTextForms() {
    static const TextForms<EFrameFormatMarket> forms = makeMarkets();
    return forms;
}

std::string marketText(EFrameFormatMarket market) {
    return CallText::textOf(market);
}
