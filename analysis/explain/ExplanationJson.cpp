#include "ExplanationForms.h"

namespace {

const char* textOf(Explanation::Path path) {
    switch (path) {
    case Explanation::Path::Fixed:
        return "fixed";
    case Explanation::Path::FixedWithBooster:
        return "fixedWithBooster";
    case Explanation::Path::Adaptive:
        return "adaptive";
    case Explanation::Path::None:
        break;
    }
    return "none";
}

const char* textOf(Explanation::Basis basis) {
    switch (basis) {
    case Explanation::Basis::Difference:
        return "difference";
    case Explanation::Basis::Question:
        return "question";
    case Explanation::Basis::Input:
        return "input";
    case Explanation::Basis::Reported:
        break;
    }
    return "reported";
}

OrderedJson lookupOf(const Explanation::Lookup& lookup) {
    OrderedJson object;
    object["role"] = codeOf(lookup.role);
    object["modulation"] = convertAcmEnumToString(lookup.modulation);
    object["table"] = textOrNull(lookup.table);
    object["pmaxCentiDbm"] = orNull(lookup.power);
    object["missing"] = ruleOrNull(lookup.missing);
    object["pointer"] = textOrNull(lookup.pointer);
    object["basis"] = textOf(lookup.basis);
    return object;
}

OrderedJson stepOf(const Explanation::Step& step) {
    OrderedJson object;
    object["rule"] = codeOf(step.rule);
    object["kind"] = codeOf(step.kind);
    object["words"] = step.words;
    object["amountCentiDb"] = step.amount;
    object["boundCentiDbm"] = orNull(step.bound);
    object["powerCentiDbm"] = step.running;
    object["pointer"] = textOrNull(step.pointer);
    object["source"] = textOrNull(step.source);
    object["basis"] = textOf(step.basis);
    object["wraps"] = step.wraps;
    return object;
}

OrderedJson boundOf(const Explanation::Bound& bound) {
    OrderedJson object;
    object["rule"] = codeOf(bound.rule);
    object["words"] = bound.words;
    object["powerCentiDbm"] = bound.value;
    object["pointer"] = textOrNull(bound.pointer);
    return object;
}

OrderedJson boundOrNull(const Explanation::Bound* bound) {
    return bound == nullptr ? OrderedJson(nullptr) : boundOf(*bound);
}

template <class Value>
OrderedJson listOf(const std::vector<Value>& values, OrderedJson (*of)(const Value&)) {
    OrderedJson list = OrderedJson::array();
    for (const Value& value : values) {
        list.push_back(of(value));
    }
    return list;
}

OrderedJson refusalOf(const Explanation& explanation) {
    if (!explanation.refusal) {
        return nullptr;
    }
    OrderedJson refusal;
    refusal["rule"] = codeOf(*explanation.refusal);
    refusal["words"] = explanation.refusalWords;
    return refusal;
}

} // namespace

const char* codeOf(Explanation::Step::Kind kind) {
    switch (kind) {
    case Explanation::Step::Kind::Start:
        return "start";
    case Explanation::Step::Kind::Bound:
        return "bound";
    case Explanation::Step::Kind::Change:
        break;
    }
    return "change";
}

OrderedJson ruleOrNull(const std::optional<Rule>& rule) {
    return rule ? OrderedJson(codeOf(*rule)) : OrderedJson(nullptr);
}

OrderedJson jsonOf(const Explanation& explanation) {
    OrderedJson object;
    object["modulation"] = convertAcmEnumToString(explanation.modulation);
    object["path"] = textOf(explanation.path);
    object["maxPowerCentiDbm"] = orNull(explanation.answer);
    object["rule"] = codeOf(explanation.decisiveRule());
    object["refusal"] = refusalOf(explanation);
    object["binding"] = boundOrNull(explanation.binding());
    object["runnerUp"] = boundOrNull(explanation.runnerUp());
    object["headroomCentiDb"] = orNull(explanation.headroom);
    object["lookups"] = listOf(explanation.lookups, lookupOf);
    object["steps"] = listOf(explanation.steps, stepOf);
    object["bounds"] = listOf(explanation.bounds, boundOf);
    object["addsUp"] = explanation.addsUp();
    object["mismatch"] = textOrNull(explanation.mismatch);
    object["notes"] = explanation.notes;
    object["selected"] = explanation.ofSelected.empty() ? OrderedJson(nullptr)
                                                        : jsonOf(explanation.ofSelected.front());
    return object;
}

std::string jsonForm(const ExplainedTable& explained) {
    OrderedJson object = jsonOf(explained.table);
    object["pmaxTable"] = textOrNull(explained.pmaxTable);
    OrderedJson& rows = object["rows"];
    for (std::size_t index = 0; index < explained.explanations.size(); ++index) {
        rows[index]["explanation"] = jsonOf(explained.explanations[index]);
    }
    return printed(object);
}
