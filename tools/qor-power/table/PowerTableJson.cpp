#include "PowerTableJson.h"

#include "PowerTableForms.h"

#include <sstream>

namespace {

/// The market's text, or its number in decimal if it has none.
std::string textOf(EFrameFormatMarket market) {
    std::ostringstream text;
    text << market;
    return text.str().empty() ? std::to_string(static_cast<std::int32_t>(market)) : text.str();
}

Json frameFormatOf(const PowerTable& table) {
    Json frameFormat;
    frameFormat["id"] = table.frameFormatId < 1 ? Json(nullptr) : Json(table.frameFormatId);
    frameFormat["market"] = textOf(table.market);
    frameFormat["channelSpacingMHz"] = static_cast<std::int32_t>(table.channelSpacing);
    frameFormat["dpdVersion"] = static_cast<std::int32_t>(table.dpdVersion);
    return frameFormat;
}

Json rsecOf(const PowerTable& table) {
    Json rsec;
    rsec["class"] = convertRsecEnumToString(table.rsec);
    rsec["value"] = static_cast<std::int32_t>(table.rsec);
    rsec["source"] = table.isRsecGiven ? "commandLine" : "systemPowerController";
    rsec["used"] = orNull(table.usedRsec);
    return rsec;
}

Json acmOf(const PowerTable& table) {
    Json acm;
    acm["min"] = convertCodeAndModulationEnumToString(table.selectedMin);
    acm["max"] = convertCodeAndModulationEnumToString(table.selectedMax);
    acm["adaptive"] = table.isAdaptive;
    return acm;
}

Json limitOf(const PowerTable& table) {
    if (!table.modulationLimit) {
        return nullptr;
    }
    Json limit;
    limit["frameFormat"] = table.modulationLimit->modem;
    limit["radio"] = table.modulationLimit->radio;
    limit["byPerformanceProfile"] = table.modulationLimit->byProfile;
    return limit;
}

Json cutbackOf(const OperatingInputs& inputs) {
    const OperatingInputs::TemporaryCutback temporary =
        inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback());
    const std::uint32_t permanent = inputs.permanentCutback.value_or(0);
    Json cutback;
    cutback["inForceCentiDb"] = temporary.inForce ? temporary.cutback : permanent;
    cutback["isTemporary"] = temporary.inForce;
    cutback["permanentCentiDb"] = permanent;
    cutback["temporaryCentiDb"] = temporary.cutback;
    return cutback;
}

} // namespace

Json jsonOf(const std::optional<OperatingInputs::Booster>& booster) {
    if (!booster || booster->presence == 0) {
        return nullptr;
    }
    Json object;
    object["presence"] = booster->presence;
    object["gainCentiDb"] = booster->gain;
    object["maxInputPowerCentiDbm"] = booster->maxInputPower;
    object["maxModulation"] = convertAcmEnumToString(booster->maxModulation);
    return object;
}

Json jsonOf(const PowerTable::Row& row) {
    Json line;
    line["code"] = row.modulationAndCode.code;
    line["name"] = convertCodeAndModulationEnumToString(row.modulationAndCode);
    line["modulation"] = convertAcmEnumToString(row.modulation);
    line["maxPowerCentiDbm"] = orNull(row.maxPower);
    line["belowMinimum"] = row.isBelowMinimum;
    line["reason"] = textOrNull(row.reason);
    line["warning"] = textOrNull(row.warning);
    return line;
}

Json textOrNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

std::string printed(const Json& document) {
    constexpr int indentation = 2;
    return document.dump(indentation, ' ', false, Json::error_handler_t::replace) + '\n';
}

Json jsonOf(const PowerTable& table) {
    Json object;
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
    Json& rows = object["rows"] = Json::array();
    for (const PowerTable::Row& row : table.rows) {
        rows.push_back(jsonOf(row));
    }
    return object;
}

std::string jsonForm(const PowerTable& table) {
    return printed(jsonOf(table));
}
