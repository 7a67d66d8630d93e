#include "InputJson.h"
#include "PowerTableJson.h"
#include "SweepForms.h"

namespace {

OrderedJson lineOf(const Sweep::Line& line) {
    OrderedJson object;
    object["input"] = line.axis->name();
    object["unit"] = textOrNull(line.axis->unit());
    OrderedJson& values = object["values"] = OrderedJson::array();
    for (const Inputs::Value& value : line.values) {
        values.push_back(Inputs::textOf(value));
    }
    return object;
}

OrderedJson pointOf(const Sweep::Point& point) {
    OrderedJson object;
    OrderedJson& inputs = object["inputs"] = OrderedJson::object();
    for (const Inputs::Value& value : point.values) {
        addTo(inputs, value);
    }
    object["failure"] = textOrNull(point.trouble);
    object["minPowerCentiDbm"] = orNull(point.powers.table.minOutputPower);
    OrderedJson& rows = object["rows"] = OrderedJson::array();
    for (std::size_t index = 0; index < point.powers.table.rows.size(); ++index) {
        OrderedJson row = jsonOf(point.powers.table.rows[index]);
        row["rule"] = codeOf(point.powers.explanations[index].decisiveRule());
        rows.push_back(std::move(row));
    }
    return object;
}

} // namespace

std::string jsonForm(const Sweep& sweep) {
    OrderedJson object;
    object["radioFile"] = sweep.asIs.radioFile;
    OrderedJson& over = object["over"] = OrderedJson::array();
    for (const Sweep::Line& line : sweep.lines) {
        over.push_back(lineOf(line));
    }
    OrderedJson& points = object["points"] = OrderedJson::array();
    for (const Sweep::Point& point : sweep.points) {
        points.push_back(pointOf(point));
    }
    return printed(object);
}
