#pragma once

#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The text forms of one enumeration, read backwards. They are made from the library's own convert
/// functions, so that no text is written down twice.
template <class Value>
class TextForms {
public:
    struct Form {
        std::string text;
        Value value;
    };

    /// @param noun what an error message calls a value, for example "modulation".
    TextForms(std::string noun, std::vector<Form> forms);

    /// The value that has a text, upper and lower case told apart.
    std::optional<Value> find(std::string_view text) const;

    /// Every text, in the order of the values.
    const std::vector<std::string>& texts() const { return m_texts; }

    const std::string& noun() const { return m_noun; }

private:
    std::string m_noun;
    std::vector<Form> m_forms;
    std::vector<std::string> m_texts;
};

const TextForms<Modulation>& modulationTextForms();
const TextForms<ModulationAndCoding>& modulationAndCodeTextForms();
const TextForms<EReferenceSEC>& referenceSecTextForms();
const TextForms<EFrameFormatMarket>& marketTextForms();

/// "Etsi"; of a market that has no text, its number: "7".
std::string marketText(EFrameFormatMarket market);
