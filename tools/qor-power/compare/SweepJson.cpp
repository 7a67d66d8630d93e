#include "InputJson.h"
#include "PowerTableJson.h"
#include "SweepForms.h"

namespace {

Json lineOf(const Sweep::Line& line) {
    Json object;
    object["input"] = line.axis->name();
    object["unit"] = textOrNull(line.axis->unit());
    Json& values = object["values"] = Json::array();
    for (const Inputs::Value& value : line.values) {
        values.push_back(Inputs::textOf(value));
    }
    return object;
}

Json pointOf(const Sweep::Point& point) {
    Json object;
    Json& inputs = object["inputs"] = Json::object();
    for (const Inputs::Value& value : point.values) {
        addTo(inputs, value);
    }
    object["failure"] = textOrNull(point.trouble);
    object["minPowerCentiDbm"] = orNull(point.powers.table.minOutputPower);
    Json& rows = object["rows"] = Json::array();
    for (std::size_t index = 0; index < point.powers.table.rows.size(); ++index) {
        Json row = jsonOf(point.powers.table.rows[index]);
        row["rule"] = codeOf(point.powers.explanations[index].decisiveRule());
        rows.push_back(std::move(row));
    }
    return object;
}

} // namespace

std::string jsonForm(const Sweep& sweep) {
    Json object;
    object["radioFile"] = sweep.asIs.radioFile;
    Json& over = object["over"] = Json::array();
    for (const Sweep::Line& line : sweep.lines) {
        over.push_back(lineOf(line));
    }
    Json& points = object["points"] = Json::array();
    for (const Sweep::Point& point : sweep.points) {
        points.push_back(pointOf(point));
    }
    return printed(object);
}
