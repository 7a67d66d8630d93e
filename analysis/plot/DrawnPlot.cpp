#include "DrawnPlot.h"

#include "Sweep.h"

namespace {

/// Some of the values of a line, evenly spread, the first and the last among them.
std::vector<Inputs::Value> thinnedOut(const std::vector<Inputs::Value>& values,
                                      std::size_t wanted) {
    std::vector<Inputs::Value> chosen;
    chosen.reserve(wanted);
    for (std::size_t index = 0; index < wanted; ++index) {
        chosen.push_back(values[index * (values.size() - 1) / (wanted - 1)]);
    }
    return chosen;
}

/// @param mayThinOut whether some values may be left out to have few enough lines.
DrawnPlot drawnFrom(const RadioCase& radio, const Sweep::Line& line, const AskedInputs& asked,
                    bool mayThinOut) {
    const Sweep sweep = Sweep::run(radio, {line});
    DrawnPlot drawn{PowerPlot::of(sweep), sweep.outcome(), sweep.troubles()};
    const std::size_t count = drawn.plot.series.size();
    if (count > PowerPlot::maxSeries && mayThinOut) {
        constexpr std::size_t wanted = 6;
        return drawnFrom(radio, {line.axis, thinnedOut(line.values, wanted)}, asked, false);
    }
    if (count > PowerPlot::maxSeries) {
        throw QuestionError(asked.prefix + "over " + line.axis->name() + ": " +
                            std::to_string(count) + " lines; at most " +
                            std::to_string(PowerPlot::maxSeries) +
                            " can be told apart, list fewer values");
    }
    return drawn;
}

} // namespace

DrawnPlot DrawnPlot::of(const RadioCase& radio, const std::vector<std::string>& over,
                        const AskedInputs& asked) {
    if (over.empty()) {
        const RuledTable powers(radio.explain());
        if (!powers.table.failure.empty()) {
            throw AnalysisError(Outcome::OtherTrouble,
                                (radio.name.empty() ? "" : radio.name + ": ") +
                                    "no powers: " + powers.table.failure);
        }
        return {PowerPlot::of(powers), Outcome::Done, powers.mismatches};
    }
    const bool isUsual = over.front().find('=') == std::string::npos;
    return drawnFrom(radio, Sweep::linesOf(over, asked, radio).front(), asked, isUsual);
}
