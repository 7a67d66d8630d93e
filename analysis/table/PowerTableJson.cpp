#include "PowerTableJson.h"

#include "PowerTableForms.h"
#include "TextForms.h"

namespace {

OrderedJson frameFormatOf(const PowerTable& table) {
    OrderedJson frameFormat;
    frameFormat["id"] =
        table.frameFormatId < 1 ? OrderedJson(nullptr) : OrderedJson(table.frameFormatId);
    frameFormat["market"] = marketText(table.market);
    frameFormat["channelSpacingMHz"] = static_cast<std::int32_t>(table.channelSpacing);
    frameFormat["dpdVersion"] = static_cast<std::int32_t>(table.dpdVersion);
    return frameFormat;
}

OrderedJson rsecOf(const PowerTable& table) {
    OrderedJson rsec;
    rsec["class"] = convertRsecEnumToString(table.rsec);
    rsec["value"] = static_cast<std::int32_t>(table.rsec);
    rsec["source"] = table.isRsecGiven ? "commandLine" : "systemPowerController";
    rsec["used"] = orNull(table.usedRsec);
    return rsec;
}

OrderedJson acmOf(const PowerTable& table) {
    OrderedJson acm;
    acm["min"] = convertCodeAndModulationEnumToString(table.selectedMin);
    acm["max"] = convertCodeAndModulationEnumToString(table.selectedMax);
    acm["adaptive"] = table.isAdaptive;
    return acm;
}

OrderedJson limitOf(const PowerTable& table) {
    if (!table.modulationLimit) {
        return nullptr;
    }
    OrderedJson limit;
    limit["frameFormat"] = table.modulationLimit->modem;
    limit["radio"] = table.modulationLimit->radio;
    limit["byPerformanceProfile"] = table.modulationLimit->byProfile;
    return limit;
}

OrderedJson cutbackOf(const OperatingInputs& inputs) {
    const OperatingInputs::TemporaryCutback temporary =
        inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback());
    const std::uint32_t permanent = inputs.permanentCutback.value_or(0);
    OrderedJson cutback;
    cutback["inForceCentiDb"] = temporary.inForce ? temporary.cutback : permanent;
    cutback["isTemporary"] = temporary.inForce;
    cutback["permanentCentiDb"] = permanent;
    cutback["temporaryCentiDb"] = temporary.cutback;
    return cutback;
}

} // namespace

OrderedJson jsonOf(const std::optional<OperatingInputs::Booster>& booster) {
    if (!booster || booster->presence == 0) {
        return nullptr;
    }
    OrderedJson object;
    object["presence"] = booster->presence;
    object["gainCentiDb"] = booster->gain;
    object["maxInputPowerCentiDbm"] = booster->maxInputPower;
    object["maxModulation"] = convertAcmEnumToString(booster->maxModulation);
    return object;
}

OrderedJson jsonOf(const PowerTable::Row& row) {
    OrderedJson line;
    line["code"] = row.modulationAndCode.code;
    line["name"] = convertCodeAndModulationEnumToString(row.modulationAndCode);
    line["modulation"] = convertAcmEnumToString(row.modulation);
    line["maxPowerCentiDbm"] = orNull(row.maxPower);
    line["belowMinimum"] = row.isBelowMinimum;
    line["reason"] = textOrNull(row.reason);
    line["warning"] = textOrNull(row.warning);
    return line;
}

OrderedJson textOrNull(const std::string& text) {
    return text.empty() ? OrderedJson(nullptr) : OrderedJson(text);
}

std::string printed(const OrderedJson& document) {
    constexpr int indentation = 2;
    return document.dump(indentation, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

OrderedJson jsonOf(const PowerTable& table) {
    OrderedJson object;
    object["radioFile"] = table.radioFile;
    object["channel"] = table.servedChannel;
    object["productNumber"] = table.productNumber;
    object["family"] = table.family.name;
    object["calculator"] = table.family.className;
    object["frameFormat"] = frameFormatOf(table);
    object["rsec"] = rsecOf(table);
    object["acm"] = acmOf(table);
    object["maxModulation"] = limitOf(table);
    object["cutback"] = cutbackOf(table.inputs);
    object["booster"] = jsonOf(table.inputs.booster);
    object["temperature"] = orNull(table.inputs.temperature);
    object["result"] = table.result;
    object["failure"] = textOrNull(table.failure);
    object["minPowerCentiDbm"] = orNull(table.minOutputPower);
    object["notes"] = table.notes;
    OrderedJson& rows = object["rows"] = OrderedJson::array();
    for (const PowerTable::Row& row : table.rows) {
        rows.push_back(jsonOf(row));
    }
    return object;
}

std::string jsonForm(const PowerTable& table) {
    return printed(jsonOf(table));
}
