#include "PowerTableForms.h"

#include "Decibels.h"
#include "OneLine.h"
#include "TextForms.h"

namespace {

using enum Shown;

using Chooser = PowerTable::Chooser;

/// Behind what a neighbour has not chosen.
const char* wordsFor(Chooser chooser) {
    if (chooser == Chooser::Radio) {
        return "";
    }
    return chooser == Chooser::Asker ? ", as given" : ", of the request";
}

std::string channelText(const PowerTable& table) {
    std::string text = std::to_string(table.servedChannel);
    if (table.channel != table.servedChannel) {
        text += " (the file says " + std::to_string(table.channel) + ")";
    }
    return text;
}

std::string productText(const PowerTable& table) {
    return (table.productNumber.empty() ? "none" : oneLine(table.productNumber)) + " -> " +
           table.family.name + " (" + table.family.className + ")";
}

std::string describedMarket(EFrameFormatMarket market) {
    const std::string text = marketText(market);
    return marketTextForms().find(text) ? text : "unknown, number " + text;
}

std::string rsecText(const PowerTable& table) {
    const std::string rsecClass = convertRsecEnumToString(table.rsec);
    std::string text = rsecClass;
    if (rsecClass == convertRsecEnumToString(EReferenceSEC::UNDEFINED) &&
        table.rsec != EReferenceSEC::UNDEFINED) {
        text += ", number " + std::to_string(static_cast<std::int32_t>(table.rsec));
    }
    text += table.rsecBy == Chooser::Radio ? ", from the system power controller"
                                           : wordsFor(table.rsecBy);
    if (!table.failure.empty()) {
        return text;
    }
    if (!table.usedRsec) {
        return text + "; no power depends on it here";
    }
    if (*table.usedRsec != rsecClass) {
        text += table.market == EFrameFormatMarket::Ansi
                    ? "; counts as " + *table.usedRsec + " on the ANSI market"
                    : "; not used for one fixed modulation, where " + *table.usedRsec +
                          " of the system power controller holds";
    }
    return text;
}

std::string acmText(const PowerTable& table) {
    const bool isSelected = table.selectedMin.code != ModulationAndCoding::UNDEFINED ||
                            table.selectedMax.code != ModulationAndCoding::UNDEFINED;
    std::string range = isSelected ? convertCodeAndModulationEnumToString(table.selectedMin) +
                                         wordsFor(table.selectedMinBy) + " to " +
                                         convertCodeAndModulationEnumToString(table.selectedMax) +
                                         wordsFor(table.selectedMaxBy)
                                   : "none";
    if (!table.failure.empty()) {
        return range;
    }
    return range + (table.isAdaptive ? ", adaptive modulation" : ", one fixed modulation");
}

std::string limitText(const QueryTrace::ModulationLimit& limit) {
    // A radio that knows no limit is reported with the frame format's.
    if (limit.radio == limit.modem) {
        return limit.modem + " of the frame format; the radio sets no lower limit";
    }
    return limit.radio + " by the radio" + (limit.byProfile ? "'s performance profile" : "") +
           ", " + limit.modem + " of the frame format";
}

std::string cutbackText(const OperatingInputs& inputs) {
    const std::string permanent = Decibels::dB(inputs.permanentCutback.value_or(0));
    return inputs.isTemporary()
               ? Decibels::dB(inputs.cutbackInForce()) + ", temporary; the permanent one of " +
                     permanent + " is not in force"
               : permanent + ", permanent";
}

} // namespace

std::string textOf(const std::optional<OperatingInputs::Booster>& booster) {
    return !booster || booster->presence == 0
               ? "none"
               : "presence " + std::to_string(booster->presence) + ", gain " +
                     Decibels::dB(booster->gain) + ", input at most " +
                     Decibels::dBm(booster->maxInputPower) + ", up to " +
                     convertAcmEnumToString(booster->maxModulation);
}

Datum datumOf(const std::optional<OperatingInputs::Booster>& booster) {
    if (!booster || booster->presence == 0) {
        return {};
    }
    return Datum::Object{{"presence", booster->presence},
                         {"gainCentiDb", booster->gain},
                         {"maxInputPowerCentiDbm", booster->maxInputPower},
                         {"maxModulation", booster->maxModulation}};
}

Heading headingOf(const PowerTable& table) {
    Heading heading = {
        {"Radio file", oneLine(table.radioFile)},
        {"Radio channel", channelText(table)},
        {"Product number", productText(table)},
        {"Frame format",
         table.frameFormatId < 1 ? "configured" : "id " + std::to_string(table.frameFormatId)},
        {"Market", describedMarket(table.market)},
        {"Channel spacing",
         std::to_string(static_cast<std::int32_t>(table.channelSpacing)) + " MHz"},
        {"DPD version", std::to_string(static_cast<std::int32_t>(table.dpdVersion))},
        {"RSEC", rsecText(table)},
        {"Selected ACM range", acmText(table)},
    };
    if (table.request) {
        heading.insert(heading.begin() + 1,
                       {"Request", std::to_string(*table.request) + ", " + table.requestWords});
    }
    if (table.modulationLimit) {
        heading.emplace_back("Highest modulation", limitText(*table.modulationLimit));
    }
    heading.emplace_back("Power cutback", cutbackText(table.inputs));
    heading.emplace_back("Booster", textOf(table.inputs.booster));
    if (table.inputs.temperature) {
        heading.emplace_back("Temperature", std::to_string(*table.inputs.temperature) +
                                                ", stored; no power depends on it");
    }
    heading.emplace_back("Minimum power",
                         table.minOutputPower ? Decibels::dBm(*table.minOutputPower) : "-");
    for (const std::string& note : table.notes) {
        heading.emplace_back("Note", note);
    }
    if (!table.failure.empty()) {
        heading.emplace_back("No powers", table.failure);
    }
    return heading;
}

std::string remarkOf(const PowerTable::Row& row) {
    if (!row.maxPower) {
        return row.reason;
    }
    std::string remark = row.isBelowMinimum ? "below the minimum power" : "";
    if (!row.warning.empty()) {
        remark += (remark.empty() ? "" : "; ") + row.warning;
    }
    return remark;
}

std::vector<PowerTableLine> linesOf(const PowerTable& table) {
    std::vector<PowerTableLine> lines;
    lines.reserve(table.rows.size());
    for (const PowerTable::Row& row : table.rows) {
        lines.push_back({row, table.minOutputPower});
    }
    return lines;
}

Fields<PowerTableLine> lineFields(bool withRule) {
    using Line = PowerTableLine;
    Fields<Line> fields = codeFields<Line>();
    const Fields<Line> own = {
        {{"maxPower", "dBm"}, &Line::maxPower, InBoth, "Max power"},
        {{"minPower", "dBm"}, &Line::minPower, InCsv},
        {{"belowMinimum"}, &Line::isBelowMinimum},
        {{"rule"}, &Line::rule, withRule ? InCsv : Nowhere},
        {{"reason"}, orNothing<Line>(&Line::reason), InBoth},
        {{"warning"}, orNothing<Line>(&Line::warning), InBoth},
        {{"rule"}, &Line::rule, withRule ? InJson : Nowhere},
        {{"remark"}, remarkOf, Nowhere, "Remark"},
    };
    fields.insert(fields.end(), own.begin(), own.end());
    return fields;
}

Datum::Object objectOf(const PowerTable& table, Datum rows) {
    static constexpr const char* rsecSources[] = {"systemPowerController", "commandLine",
                                                  "request"};
    const OperatingInputs& inputs = table.inputs;
    const OperatingInputs::TemporaryCutback temporary =
        inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback());
    const auto& limit = table.modulationLimit;
    Datum::Object object{
        {"radioFile", table.radioFile},
        {"request", table.request ? Datum(static_cast<std::int64_t>(*table.request)) : Datum()},
        {"channel", table.servedChannel},
        {"productNumber", table.productNumber},
        {"family", table.family.name},
        {"calculator", table.family.className},
        {"frameFormat",
         Datum::Object{{"id", table.frameFormatId < 1 ? Datum() : Datum(table.frameFormatId)},
                       {"market", table.market},
                       {"channelSpacingMHz", table.channelSpacing},
                       {"dpdVersion", table.dpdVersion}}},
        {"rsec", Datum::Object{{"class", table.rsec},
                               {"value", static_cast<std::int32_t>(table.rsec)},
                               {"source", rsecSources[static_cast<std::size_t>(table.rsecBy)]},
                               {"used", table.usedRsec}}},
        {"acm", Datum::Object{{"min", table.selectedMin},
                              {"max", table.selectedMax},
                              {"adaptive", table.isAdaptive}}},
        {"maxModulation", limit ? Datum::Object{{"frameFormat", limit->modem},
                                                {"radio", limit->radio},
                                                {"byPerformanceProfile", limit->byProfile}}
                                : Datum()},
        {"cutback", Datum::Object{{"inForceCentiDb", inputs.cutbackInForce()},
                                  {"isTemporary", inputs.isTemporary()},
                                  {"permanentCentiDb", inputs.permanentCutback.value_or(0)},
                                  {"temporaryCentiDb", temporary.cutback}}},
        {"booster", datumOf(inputs.booster)},
        {"temperature", inputs.temperature},
        {"result", table.result},
        {"failure", Datum::orNothing(table.failure)},
        {"minPowerCentiDbm", table.minOutputPower},
        {"notes", table.notes},
    };
    object.emplace_back("rows", std::move(rows));
    return object;
}

std::string textForm(const PowerTable& table, const TextLook& look) {
    const std::string heading = textOf(headingOf(table));
    return table.rows.empty()
               ? heading
               : heading + '\n' +
                     textColumns(lineFields(false), linesOf(table), "-", nullptr, {look.width});
}

std::string csvForm(const PowerTable& table) {
    return csvForm(lineFields(false), linesOf(table));
}

std::string jsonForm(const PowerTable& table) {
    return jsonDocument(
        answerOf("table", objectOf(table, listOf(lineFields(false), linesOf(table)))));
}
