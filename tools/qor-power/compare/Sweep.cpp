#include "Sweep.h"

#include "Messages.h"
#include "ToolError.h"

#include <utility>

namespace {

constexpr const char* optionName = "--over";
constexpr std::size_t maxLines = 2;

/// Refuses an option of the query that fixes what is swept.
void refuseFixed(const InputAxis& axis, const QueryOptions& options) {
    const std::pair<const char*, bool> given[] = {
        {"rsec", options.rsec.has_value()},
        {"cutback", options.cutback.has_value()},
        {"temporary-cutback", options.temporaryCutback.has_value()},
    };
    for (const auto& [name, isGiven] : given) {
        if (isGiven && axis.name() == name) {
            throw UsageError("--" + axis.name() + " fixes what " + optionName + ' ' + axis.name() +
                             " varies; leave one of them out");
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
        point.powers = changed.explain();
        point.trouble = point.powers.table.failure;
        point.status = point.trouble.empty() ? ExitStatus::Done : ExitStatus::OtherTrouble;
    } catch (const ToolError& error) {
        point.trouble = error.what();
        point.status = error.status();
    }
    return point;
}

} // namespace

CommandOption Sweep::option(std::vector<std::string>& overs, bool isRequired) {
    std::vector<std::string> names;
    for (const InputAxis& axis : InputAxis::all()) {
        names.push_back(axis.name());
    }
    return {optionName, "INPUT[=LIST]", "Input to vary and the values it takes; once or twice",
            &overs,     isRequired,     CommandOption::Completion::Words,
            names};
}

std::vector<Sweep::Line> Sweep::linesOf(const std::vector<std::string>& overs,
                                        const QueryOptions& options, const RadioCase& radio) {
    if (overs.size() > maxLines) {
        throw UsageError(std::string(optionName) + " is given more than twice");
    }
    std::vector<Line> lines;
    std::size_t count = 1;
    for (const std::string& over : overs) {
        const std::size_t sign = over.find('=');
        const InputAxis& axis = InputAxis::named(optionName, over.substr(0, sign));
        refuseFixed(axis, options);
        if (!lines.empty() && lines.front().axis == &axis) {
            throw UsageError(std::string(optionName) + ' ' + axis.name() + " is given twice");
        }
        lines.push_back({&axis, sign == std::string::npos
                                    ? axis.usualValues(optionName, radio)
                                    : axis.valuesOf(optionName, over.substr(sign + 1))});
        count *= lines.back().values.size();
    }
    if (count > maxPoints) {
        throw UsageError(std::string(optionName) + ": " + std::to_string(count) +
                         " combinations of values; at most " + std::to_string(maxPoints) +
                         " are answered");
    }
    return lines;
}

Sweep Sweep::run(const RadioCase& radio, std::vector<Line> lines) {
    Sweep sweep;
    sweep.asIs = radio.powers();
    sweep.lines = std::move(lines);
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

ExitStatus Sweep::status() const {
    ExitStatus status = ExitStatus::Done;
    for (const Point& point : points) {
        status = worst(status, point.status);
    }
    return status;
}

const Sweep::Point& Sweep::at(std::size_t first, std::size_t second) const {
    return points[second * lines.front().values.size() + first];
}

void Sweep::complainOfTroubles() const {
    for (const Point& point : points) {
        if (point.trouble.empty()) {
            continue;
        }
        std::string place;
        for (const Inputs::Value& value : point.values) {
            place += (place.empty() ? "" : ", ") + InputAxis::of(value).words() + ' ' +
                     Inputs::labelOf(value);
        }
        complain(asIs.radioFile + ": no powers at " + place + ": " + point.trouble);
    }
}
