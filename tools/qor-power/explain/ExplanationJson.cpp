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

Json lookupOf(const Explanation::Lookup& lookup) {
    Json object;
    object["role"] = codeOf(lookup.role);
    object["modulation"] = convertAcmEnumToString(lookup.modulation);
    object["table"] = textOrNull(lookup.table);
    object["pmaxCentiDbm"] = orNull(lookup.power);
    object["missing"] = ruleOrNull(lookup.missing);
    object["pointer"] = textOrNull(lookup.pointer);
    object["basis"] = textOf(lookup.basis);
    return object;
}

Json stepOf(const Explanation::Step& step) {
    Json object;
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

Json boundOf(const Explanation::Bound& bound) {
    Json object;
    object["rule"] = codeOf(bound.rule);
    object["words"] = bound.words;
    object["powerCentiDbm"] = bound.value;
    object["pointer"] = textOrNull(bound.pointer);
    return object;
}

Json boundOrNull(const Explanation::Bound* bound) {
    return bound == nullptr ? Json(nullptr) : boundOf(*bound);
}

template <class Value>
Json listOf(const std::vector<Value>& values, Json (*of)(const Value&)) {
    Json list = Json::array();
    for (const Value& value : values) {
        list.push_back(of(value));
    }
    return list;
}

Json refusalOf(const Explanation& explanation) {
    if (!explanation.refusal) {
        return nullptr;
    }
    Json refusal;
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

Json ruleOrNull(const std::optional<Rule>& rule) {
    return rule ? Json(codeOf(*rule)) : Json(nullptr);
}

Json jsonOf(const Explanation& explanation) {
    Json object;
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
    object["selected"] =
        explanation.ofSelected.empty() ? Json(nullptr) : jsonOf(explanation.ofSelected.front());
    return object;
}

std::string jsonForm(const ExplainedTable& explained) {
    Json object = jsonOf(explained.table);
    object["pmaxTable"] = textOrNull(explained.pmaxTable);
    Json& rows = object["rows"];
    for (std::size_t index = 0; index < explained.explanations.size(); ++index) {
        rows[index]["explanation"] = jsonOf(explained.explanations[index]);
    }
    return printed(object);
}
