#include "Decibels.h"
#include "OneLine.h"
#include "PowerTableForms.h"
#include "TextColumns.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>

namespace {

std::string decibels(std::int64_t hundredths) {
    return Decibels::format(hundredths) + " dB";
}

std::string decibelsMilliwatt(std::int64_t hundredths) {
    return Decibels::format(hundredths) + " dBm";
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
    text += table.isRsecGiven ? ", as given" : ", from the system power controller";
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
    std::string range = isSelected
                            ? convertCodeAndModulationEnumToString(table.selectedMin) + " to " +
                                  convertCodeAndModulationEnumToString(table.selectedMax)
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
    const std::uint32_t permanent = inputs.permanentCutback.value_or(0);
    if (!inputs.temporaryCutback || !inputs.temporaryCutback->inForce) {
        return decibels(permanent) + ", permanent";
    }
    return decibels(inputs.temporaryCutback->cutback) + ", temporary; the permanent one of " +
           decibels(permanent) + " is not in force";
}

std::string boosterText(const OperatingInputs& inputs) {
    if (!inputs.booster || inputs.booster->presence == 0) {
        return "none";
    }
    const OperatingInputs::Booster& booster = *inputs.booster;
    return "presence " + std::to_string(booster.presence) + ", gain " + decibels(booster.gain) +
           ", input at most " + decibelsMilliwatt(booster.maxInputPower) + ", up to " +
           convertAcmEnumToString(booster.maxModulation);
}

} // namespace

Heading headingOf(const PowerTable& table) {
    Heading heading = {
        {"Radio file", table.radioFile},
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
    if (table.modulationLimit) {
        heading.emplace_back("Highest modulation", limitText(*table.modulationLimit));
    }
    heading.emplace_back("Power cutback", cutbackText(table.inputs));
    heading.emplace_back("Booster", boosterText(table.inputs));
    if (table.inputs.temperature) {
        heading.emplace_back("Temperature", std::to_string(*table.inputs.temperature) +
                                                ", stored; no power depends on it");
    }
    heading.emplace_back("Minimum power",
                         table.minOutputPower ? decibelsMilliwatt(*table.minOutputPower) : "-");
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

std::string textOf(const Heading& heading) {
    std::size_t labelWidth = 0;
    for (const auto& [label, value] : heading) {
        labelWidth = std::max(labelWidth, label.size());
    }
    std::string text;
    for (const auto& [label, value] : heading) {
        text += padded(label, labelWidth, Align::Left) + "  " + value + '\n';
    }
    return text;
}

std::string textForm(const PowerTable& table) {
    std::string heading = textOf(headingOf(table));
    if (table.rows.empty()) {
        return heading;
    }
    std::vector<std::vector<std::string>> lines = {
        {"Code", "Name", "Modulation", "Max power/dBm", "Remark"}};
    for (const PowerTable::Row& row : table.rows) {
        lines.push_back({std::to_string(row.modulationAndCode.code),
                         convertCodeAndModulationEnumToString(row.modulationAndCode),
                         convertAcmEnumToString(row.modulation),
                         row.maxPower ? Decibels::format(*row.maxPower) : "-", remarkOf(row)});
    }
    return heading + '\n' +
           alignedColumns({Align::Right, Align::Left, Align::Left, Align::Right, Align::Left},
                          lines);
}
