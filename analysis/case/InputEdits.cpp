#include "InputEdits.h"

#include "DocumentText.h"
#include "RadioFileReader.h"
#include "TextForms.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>
#include <variant>
#include <vector>

namespace {

using nlohmann::json;
using Path = std::vector<std::string>;

/// An enumerator as a radio file has it: its text, or the number of one that has none.
json named(const std::string& text) {
    const bool isNumber =
        !text.empty() && text.find_first_not_of("-0123456789") == std::string::npos;
    return isNumber ? json(std::stoll(text)) : json(text);
}

/// Finds the place of an input and what stands there.
class Setting {
public:
    explicit Setting(const RadioCase& radio)
        : m_radio(radio) {}

    std::optional<std::string> operator()(EFrameFormatMarket market) const {
        return ofFormat("market", named(marketText(market)));
    }
    std::optional<std::string> operator()(EDpdVersion version) const {
        return ofFormat("dpdVersion", static_cast<std::int32_t>(version));
    }
    std::optional<std::string> operator()(EChannelSpacingType spacing) const {
        return ofFormat("channelSpacing", static_cast<std::int32_t>(spacing));
    }
    std::optional<std::string> operator()(const Inputs::ProductNumber& number) const {
        if (m_radio.file.node.capabilityHandler == nullptr) {
            return std::nullopt;
        }
        return at({"capabilityHandler", "productNumber"}, number.text);
    }
    template <class Other>
    std::optional<std::string> operator()(const Other&) const {
        return std::nullopt;
    }

private:
    std::string at(const Path& path, const json& value) const {
        return m_radio.file.placeOf(path) + '=' + value.dump();
    }

    /// Of the frame format that is asked for; a record that the radio lacks stays away.
    std::optional<std::string> ofFormat(const std::string& key, const json& value) const {
        const NodeAnswers& node = m_radio.file.node;
        const std::int32_t id = m_radio.query.frameFormatId;
        if (id < 1) {
            return node.frameFormat == nullptr ? std::nullopt
                                               : std::optional(at({"frameFormat", key}, value));
        }
        const auto& handler = node.hardwareConfigurationHandler;
        for (std::size_t index = 0; handler && index < handler->frameFormats.size(); ++index) {
            if (handler->frameFormats[index].id == id) {
                return at(
                    {"hardwareConfigurationHandler", "frameFormats", std::to_string(index), key},
                    value);
            }
        }
        return std::nullopt;
    }

    const RadioCase& m_radio;
};

/// Changes one value after the other in the text of a radio file.
class Editor {
public:
    explicit Editor(std::string text)
        : m_text(std::move(text)) {}

    const std::string& text() const { return m_text; }

    void make(const PowerTableQuery& query) {
        if (query.inputs.permanentCutback) {
            request<Calls::SetPowerCutback>({{"cutback", *query.inputs.permanentCutback}});
        }
        if (const auto& temporary = query.inputs.temporaryCutback) {
            request<Calls::SetTemporaryPowerCutback>(
                {{"use", temporary->inForce}, {"cutback", temporary->cutback}});
        }
        if (const auto& booster = query.inputs.booster) {
            request<Calls::SetBoosterPresence>(
                {{"presence", booster->presence},
                 {"gain", booster->gain},
                 {"maxInputPower", booster->maxInputPower},
                 {"maxModulation", named(convertAcmEnumToString(booster->maxModulation))}});
        }
        if (query.rsec != EReferenceSEC::UNDEFINED) {
            set({"systemPowerController", "referenceSec"}, convertRsecEnumToString(query.rsec));
        }
        select("min", query.min);
        select("max", query.max);
    }

private:
    void set(const Path& path, const json& value) {
        m_text = DocumentText::withValue(m_text, path, value.dump());
    }

    /// One end of the selected range; where the neighbour answers none, the other end is undefined.
    void select(const std::string& key, const ModulationAndCoding& code) {
        const RadioFile file = RadioFileReader::read(m_text);
        const auto& handler = file.node.acmHandler;
        if (!handler || code == ModulationAndCoding{ModulationAndCoding::UNDEFINED}) {
            return;
        }
        const json text = named(convertCodeAndModulationEnumToString(code));
        if (handler->selection &&
            std::holds_alternative<AcmHandlerAnswers::Range>(*handler->selection)) {
            set({"acmHandler", key}, text);
            return;
        }
        json range{{"min", "UNDEFINED"}, {"max", "UNDEFINED"}};
        range[key] = text;
        set({"acmHandler"}, range);
    }

    /// The last request of a call has the arguments, or a new one.
    template <class Call>
    void request(const std::vector<std::pair<std::string, json>>& arguments) {
        const std::vector<Request> requests = RadioFileReader::read(m_text).requests;
        for (std::size_t index = requests.size(); index-- > 0;) {
            if (std::holds_alternative<Call>(requests[index].call)) {
                for (const auto& [key, value] : arguments) {
                    set({"requests", std::to_string(index), key}, value);
                }
                return;
            }
        }
        nlohmann::ordered_json added{{"call", Call::name}};
        for (const auto& [key, value] : arguments) {
            added[key] = value;
        }
        const std::string before = m_text;
        m_text = DocumentText::withValue(m_text, {"requests", std::to_string(requests.size())},
                                         added.dump());
        if (m_text == before) {
            m_text = DocumentText::withValue(m_text, {"requests"}, '[' + added.dump() + ']');
        }
    }

    std::string m_text;
};

} // namespace

std::optional<std::string> InputEdits::settingOf(const RadioCase& radio,
                                                 const Inputs::Value& value) {
    return std::visit(Setting(radio), value);
}

std::string InputEdits::withInputs(std::string_view text, const AskedInputs& inputs) {
    static_cast<void>(inputs.radio(text, ""));
    std::string changed(text);
    for (const std::string& setting : inputs.set) {
        changed = DocumentEdit::read(setting)->madeIn(changed);
    }
    Editor editor(std::move(changed));
    editor.make(inputs.query());
    return editor.text();
}
