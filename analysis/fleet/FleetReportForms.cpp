#include "FleetReport.h"

#include "Decibels.h"
#include "Field.h"
#include "OneLine.h"
#include "Rule.h"
#include "TextColumns.h"

#include <algorithm>

namespace {

constexpr std::size_t shownOutliers = 20;

/// The group that lines belong to, where there are groups.
template <class Line>
Fields<Line> groupField(const FleetReport& report) {
    if (report.by().empty()) {
        return {};
    }
    std::string heading = report.by();
    std::ranges::replace(heading, '-', ' ');
    heading.front() = static_cast<char>(heading.front() - 'a' + 'A');
    return {{{"group"}, [](const Line& line) { return line.group; }, Shown::InBoth, heading}};
}

/// The figures of a spread.
template <class Line>
Fields<Line> spreadFields(const std::string& prefix, const char* unit,
                          const Distribution Line::*spread) {
    using enum Shown;
    const auto named = [&](const std::string& key) -> FieldNames {
        return {prefix.empty()
                    ? key
                    : prefix + static_cast<char>(key.front() - 'a' + 'A') + key.substr(1),
                unit};
    };
    const auto share = [spread](unsigned percent) {
        return [spread, percent](const Line& line) { return Datum((line.*spread).at(percent)); };
    };
    return {
        {named("least"), [spread](const Line& line) { return Datum((line.*spread).least()); },
         InBoth, "Least"},
        {named("lowerQuarter"), share(25), InBoth, "25 %"},
        {named("median"), share(50), InBoth, "Median"},
        {named("upperQuarter"), share(75), InBoth, "75 %"},
        {named("greatest"), [spread](const Line& line) { return Datum((line.*spread).greatest()); },
         InBoth, "Greatest"},
        {named("mean"), [spread](const Line& line) { return Datum((line.*spread).mean()); }, InBoth,
         "Mean"},
        {{prefix.empty() ? "step" : prefix + "Step", "dB"},
         [spread](const Line& line) { return (line.*spread).step(); },
         InBoth},
    };
}

template <class Line>
Fields<Line> joined(Fields<Line> first, const Fields<Line>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Fields<FleetReport::Powers> fleetPowerFields(const FleetReport& report) {
    using Line = FleetReport::Powers;
    using enum Shown;
    const Fields<Line> own = {
        {{"family"}, &Line::family, InBoth, "Family"},
        {{"modulation"}, &Line::modulation, InBoth, "Modulation"},
        {{"codes"}, [](const Line& line) { return line.powers.count(); }, InBoth, "Codes"},
        {{"denied"}, &Line::denied, InBoth, "Without"},
    };
    return joined(joined(groupField<Line>(report), own),
                  spreadFields<Line>("", "dBm", &Line::powers));
}

Fields<FleetReport::Limits> fleetRuleFields(const FleetReport& report) {
    using Line = FleetReport::Limits;
    using enum Shown;
    const Fields<Line> own = {
        {{"rule"}, &Line::rule, InBoth, "Limited by"},
        {{"radios"}, &Line::radios, InBoth, "Radios"},
        {{"codes"}, &Line::codes, InBoth, "Codes"},
        {{"withHeadroom"},
         [](const Line& line) { return line.headroom.count(); },
         InBoth,
         "Headroom of"},
    };
    return joined(joined(groupField<Line>(report), own),
                  spreadFields<Line>("headroom", "dB", &Line::headroom));
}

Fields<FleetReport::Outlier> fleetOutlierFields() {
    using Line = FleetReport::Outlier;
    using enum Shown;
    return {
        {{"radio"}, &Line::radio, InBoth, "Radio"},
        {{"name"}, &Line::name, InBoth, "Name"},
        {{"power", "dBm"}, &Line::power, InBoth, "Power"},
        {{"usual", "dBm"}, &Line::usual, InBoth, "Usual"},
        {{"difference", "dB"}, &Line::difference, InBoth, "Difference"},
        {{"codes"}, &Line::codes, InBoth, "Codes"},
        {{"likes"}, &Line::likes, InBoth, "Of like"},
        {{"kind"}, &Line::kind, InBoth, "Kind"},
    };
}

} // namespace

std::string textForm(const FleetReport& report, const TextLook& look) {
    const TableRoom room{look.width};
    std::string text;
    std::int64_t widestStep = 1;
    if (report.radios() > 0) {
        text += "Powers of the codes of each modulation\n" +
                textColumns(fleetPowerFields(report), report.powers(), "-", nullptr, room) +
                "\nWhat limits them, and the headroom up to the next bound\n" +
                textColumns(fleetRuleFields(report), report.limits(), "-", nullptr, room) + '\n';
        for (const FleetReport::Powers& line : report.powers()) {
            widestStep = std::max(widestStep, line.powers.step());
        }
        for (const FleetReport::Limits& line : report.limits()) {
            widestStep = std::max(widestStep, line.headroom.step());
        }
    }
    if (widestStep > 1) {
        text += "Of so many figures quarters and medians are rounded down, by less than " +
                Decibels::dB(widestStep) + ";\ncsv and json have the step of each line\n\n";
    }
    std::vector<FleetReport::Outlier> outliers = report.outliers();
    if (!outliers.empty()) {
        const std::size_t all = outliers.size();
        outliers.resize(std::min(all, shownOutliers));
        text += "Radios unlike their like\n" +
                textColumns(fleetOutlierFields(), outliers, "-", nullptr, room);
        if (all > shownOutliers) {
            text +=
                "and " + std::to_string(all - shownOutliers) + " more, which csv and json have\n";
        }
        text += '\n';
    }
    text += counted(report.radios(), "radio") + " with powers, " + std::to_string(report.bad()) +
            " bad; " + counted(report.unlikeCodes(), "code") + " unlike those of their like\n";
    if (report.doubled() > 0) {
        text += counted(report.doubled(), "answer") + " of names that came before, left out\n";
    }
    if (report.unreadable() > 0) {
        text += counted(report.unreadable(), "line") +
                " left out; the first: " + report.firstUnreadable() + '\n';
    }
    if (report.unsorted() > 0) {
        text +=
            counted(report.unsorted(), "code") + " of so many kinds that they were not compared\n";
    }
    return text;
}

std::string csvForm(const FleetReport& report, FleetTable table) {
    switch (table) {
    case FleetTable::Powers:
        return csvForm(fleetPowerFields(report), report.powers());
    case FleetTable::Rules:
        return csvForm(fleetRuleFields(report), report.limits());
    case FleetTable::Outliers:
        break;
    }
    return csvForm(fleetOutlierFields(), report.outliers());
}

std::string jsonForm(const FleetReport& report) {
    return jsonDocument(
        answerOf("fleet", {{"by", Datum::orNothing(report.by())},
                           {"radios", report.radios()},
                           {"bad", report.bad()},
                           {"doubled", report.doubled()},
                           {"unreadable", report.unreadable()},
                           {"firstUnreadable", Datum::orNothing(report.firstUnreadable())},
                           {"powers", listOf(fleetPowerFields(report), report.powers())},
                           {"rules", listOf(fleetRuleFields(report), report.limits())},
                           {"unlikeCodes", report.unlikeCodes()},
                           {"unsortedCodes", report.unsorted()},
                           {"outliers", listOf(fleetOutlierFields(), report.outliers())}}));
}
