#include "InputJson.h"

#include <cstdint>

namespace {

class Adder {
public:
    Adder(OrderedJson& object, const Inputs::Value& value)
        : m_object(object)
        , m_text(Inputs::textOf(value)) {}

    void operator()(EReferenceSEC) const { m_object["rsec"] = m_text; }
    void operator()(EFrameFormatMarket) const { m_object["market"] = m_text; }
    void operator()(EDpdVersion version) const {
        m_object["dpdVersion"] = static_cast<std::int32_t>(version);
    }
    void operator()(EChannelSpacingType spacing) const {
        m_object["channelSpacingMHz"] = static_cast<std::int32_t>(spacing);
    }
    void operator()(const Inputs::PermanentCutback& permanent) const {
        m_object["cutbackCentiDb"] = permanent.cutback;
    }
    void operator()(const OperatingInputs::TemporaryCutback& temporary) const {
        m_object["temporaryCutbackCentiDb"] =
            temporary.inForce ? OrderedJson(temporary.cutback) : OrderedJson(nullptr);
    }
    void operator()(const OperatingInputs::Booster& booster) const {
        m_object["booster"] = jsonOf(std::optional(booster));
    }
    void operator()(const Inputs::ProductNumber& product) const {
        m_object["productNumber"] = textOrNull(product.text);
    }
    void operator()(const Inputs::SelectedMin&) const { m_object["selectedMin"] = m_text; }
    void operator()(const Inputs::SelectedMax&) const { m_object["selectedMax"] = m_text; }

private:
    OrderedJson& m_object;
    std::string m_text;
};

} // namespace

void addTo(OrderedJson& object, const Inputs::Value& value) {
    std::visit(Adder(object, value), value);
}
