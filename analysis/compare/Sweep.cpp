#include "Sweep.h"

#include "AnalysisError.h"
#include "OneLine.h"

#include <utility>

namespace {

constexpr std::size_t maxLines = 2;

/// Refuses an option of the query that fixes what is swept.
void refuseFixed(const InputAxis& axis, const AskedInputs& asked) {
    const std::pair<const char*, bool> given[] = {
        {"rsec", asked.rsec.has_value()},
        {"cutback", asked.cutback.has_value()},
        {"temporary-cutback", asked.temporaryCutback.has_value()},
        {"min", asked.min.has_value()},
        {"max", asked.max.has_value()},
    };
    for (const auto& [name, isGiven] : given) {
        if (isGiven && axis.name() == name) {
            throw QuestionError(asked.prefix + axis.name() + " fixes what " + asked.prefix +
                                "over " + axis.name() + " varies; leave one of them out");
        }
    }
}

Sweep::Point pointAt(const RadioCase& radio, std::vector<Inputs::Value> values) {
    Sweep::Point point;
    RadioCase changed = radio;
    for (const Inputs::Value& value : values) {
        changed = Inputs::varied(changed, value);
    }
    point.values = std::move(values);
    try {
        point.powers = RuledTable(changed.explain());
        point.trouble = point.powers.table.failure;
        point.outcome = point.trouble.empty() ? Outcome::Done : Outcome::OtherTrouble;
    } catch (const AnalysisError& error) {
        point.trouble = error.what();
        point.outcome = error.outcome();
    }
    return point;
}

} // namespace

std::vector<Sweep::Line> Sweep::linesOf(const std::vector<std::string>& overs,
                                        const AskedInputs& asked, const RadioCase& radio) {
    const std::string optionName = asked.prefix + "over";
    if (overs.size() > maxLines) {
        throw QuestionError(optionName + " is given more than twice");
    }
    std::vector<Line> lines;
    std::size_t count = 1;
    for (const std::string& over : overs) {
        const std::size_t sign = over.find('=');
        const std::string name = over.substr(0, sign);
        const InputAxis& axis = InputAxis::named(optionName, name);
        refuseFixed(axis, asked);
        if (!lines.empty() && lines.front().axis == &axis) {
            throw QuestionError(optionName + ' ' + axis.name() + " is given twice");
        }
        lines.push_back({&axis, sign == std::string::npos
                                    ? axis.usualValues(optionName, radio)
                                    : axis.valuesOf(optionName, over.substr(sign + 1))});
        count *= lines.back().values.size();
    }
    if (count > maxPoints) {
        throw QuestionError(optionName + ": " + std::to_string(count) +
                            " combinations of values; at most " + std::to_string(maxPoints) +
                            " are answered");
    }
    return lines;
}

Sweep Sweep::run(const RadioCase& radio, std::vector<Line> lines) {
    Sweep sweep;
    sweep.asIs = radio.powers();
    sweep.lines = std::move(lines);
    std::size_t count = sweep.asIs.rows.size();
    for (const Line& line : sweep.lines) {
        count *= line.values.size();
    }
    if (count > maxPowers) {
        throw QuestionError("a sweep of " + std::to_string(count) + " powers; at most " +
                            std::to_string(maxPowers) + " are answered, give fewer values");
    }
    // Without a second input one round is made, whose value counts for nothing.
    const std::vector<Inputs::Value> once(1, EReferenceSEC::UNDEFINED);
    const bool hasTwo = sweep.lines.size() == maxLines;
    for (const Inputs::Value& second : hasTwo ? sweep.lines.back().values : once) {
        for (const Inputs::Value& first : sweep.lines.front().values) {
            std::vector<Inputs::Value> values{first};
            if (hasTwo) {
                values.push_back(second);
            }
            sweep.points.push_back(pointAt(radio, std::move(values)));
        }
    }
    return sweep;
}

Outcome Sweep::outcome() const {
    Outcome outcome = Outcome::Done;
    for (const Point& point : points) {
        outcome = worst(outcome, point.outcome);
    }
    return outcome;
}

const Sweep::Point& Sweep::at(std::size_t first, std::size_t second) const {
    return points[second * lines.front().values.size() + first];
}

std::vector<std::string> Sweep::troubles() const {
    std::vector<std::string> found;
    for (const Point& point : points) {
        found.insert(found.end(), point.powers.mismatches.begin(), point.powers.mismatches.end());
        if (point.trouble.empty()) {
            continue;
        }
        std::string place;
        for (const Inputs::Value& value : point.values) {
            place += (place.empty() ? "" : ", ") + InputAxis::of(value).words() + ' ' +
                     InputAxis::labelOf(value);
        }
        found.push_back(oneLine(asIs.radioFile) + ": no powers at " + place + ": " + point.trouble);
    }
    return found;
}
