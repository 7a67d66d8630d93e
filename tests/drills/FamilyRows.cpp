#include "FamilyRows.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

using nlohmann::json;

/// The names of the inputs in the rows, in their order.
const std::vector<std::string> inputNames = {
    "class",           "selectedMin",   "selectedMax",   "actual",       "available", "reference",
    "pmaxSelectedMin", "pmaxActual",    "pmaxReference", "compensation", "presence",  "gain",
    "maxInputPower",   "maxModulation", "power"};

/// As two's complement of 32 bits has it.
std::int32_t wrapped(std::uint32_t sum) {
    return static_cast<std::int32_t>(sum);
}

bool contains(const std::vector<std::int32_t>& list, std::int32_t value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

} // namespace

FamilyRows::FamilyRows(const json& family)
    : m_names(inputNames) {
    for (const auto& [name, rows] : family.at("tables").items()) {
        m_tables[name] = std::make_unique<const Table>(tableOf(rows));
    }
    m_reference = stepsOf(family.at("reference"));
    m_power = stepsOf(family.at("power"));
}

FamilyRows::Table FamilyRows::tableOf(const json& rows) {
    Table table;
    table.columns = rows.at("columns").get<std::vector<std::int32_t>>();
    for (const json& row : rows.at("rows")) {
        const bool isWholeDb = row.contains("wholeDb");
        Table::Row& added = table.rows.emplace_back();
        added.keys = row.at("keys").get<std::vector<std::vector<std::int32_t>>>();
        for (const json& cell : row.at(isWholeDb ? "wholeDb" : "values")) {
            added.cells.push_back(cell.get<std::int32_t>() * (isWholeDb ? 100 : 1));
        }
        if (added.cells.size() > table.columns.size()) {
            throw std::invalid_argument("more cells than columns: " + row.dump());
        }
    }
    return table;
}

std::size_t FamilyRows::nameOf(const std::string& name) {
    const auto found = std::find(m_names.begin(), m_names.end(), name);
    if (found == m_names.end()) {
        throw std::invalid_argument("unknown name: " + name);
    }
    return static_cast<std::size_t>(found - m_names.begin());
}

FamilyRows::Operand FamilyRows::operandOf(const json& text) {
    Operand operand;
    if (text.is_number()) {
        operand.number = text.get<std::int32_t>();
        return operand;
    }
    std::string rest = text.get<std::string>();
    if (rest.front() == '-') {
        operand.isNegative = true;
        rest.erase(0, 1);
    }
    const std::size_t bracket = rest.find('[');
    if (bracket == std::string::npos) {
        operand.names = {nameOf(rest)};
        return operand;
    }
    const std::string table = rest.substr(0, bracket);
    operand.isOfRadio = table == "pmax";
    if (!operand.isOfRadio) {
        operand.table = m_tables.at(table).get();
    }
    std::size_t from = bracket + 1;
    while (from < rest.size()) {
        const std::size_t to = rest.find_first_of(",]", from);
        operand.names.push_back(nameOf(rest.substr(from, to - from)));
        from = to + (rest.at(to) == ',' ? 2 : 1);
    }
    return operand;
}

std::vector<FamilyRows::Step> FamilyRows::stepsOf(const json& list) {
    std::vector<Step> steps;
    for (const json& row : list) {
        Step& step = steps.emplace_back();
        for (const json& condition : row.value("if", json::array())) {
            step.conditions.push_back({operandOf(condition.at(0)),
                                       condition.at(1).get<std::string>(),
                                       operandOf(condition.at(2))});
        }
        if (row.contains("end")) {
            step.end = row.at("end").get<std::uint32_t>();
            continue;
        }
        for (const char* const operation : {"sum", "least", "greatest"}) {
            if (row.contains(operation)) {
                step.operation = operation;
            }
        }
        for (const json& operand : row.at(step.operation)) {
            step.operands.push_back(operandOf(operand));
        }
        const json otherwise = row.value("otherwise", json("nothing"));
        if (otherwise.is_object()) {
            step.otherwiseEnd = otherwise.at("end").get<std::uint32_t>();
        } else if (otherwise.is_number()) {
            step.otherwise = otherwise.get<std::int32_t>();
        } else if (otherwise != "nothing") {
            throw std::invalid_argument("neither a number nor nothing: " + otherwise.dump());
        }
        // Known from here on.
        const auto name = row.at("let").get<std::string>();
        if (std::find(m_names.begin(), m_names.end(), name) == m_names.end()) {
            m_names.push_back(name);
        }
        step.name = nameOf(name);
    }
    return steps;
}

std::optional<std::int32_t> FamilyRows::cellOf(const Table& table, const Values& values,
                                               const std::vector<std::size_t>& names) {
    for (const std::size_t name : names) {
        if (!values[name].has_value()) {
            return std::nullopt;
        }
    }
    const auto column =
        std::find(table.columns.begin(), table.columns.end(), *values[names.back()]);
    const auto index = static_cast<std::size_t>(column - table.columns.begin());
    for (const Table::Row& row : table.rows) {
        bool isRow = row.keys.size() + 1 == names.size();
        for (std::size_t key = 0; isRow && key < row.keys.size(); ++key) {
            isRow = contains(row.keys[key], *values[names[key]]);
        }
        if (isRow && index < row.cells.size()) {
            return row.cells[index];
        }
    }
    return std::nullopt;
}

std::optional<std::int32_t> FamilyRows::valueOf(const Operand& operand, const Values& values,
                                                const RadioTable& radioTable) {
    std::optional<std::int32_t> value;
    if (operand.number.has_value()) {
        value = operand.number;
    } else if (operand.isOfRadio) {
        for (std::size_t row = radioTable.size() / 2; row-- > 0;) {
            // The first row of a modulation is the one that counts.
            if (values[operand.names.back()] == radioTable[2 * row]) {
                value = radioTable[2 * row + 1];
            }
        }
    } else if (operand.table != nullptr) {
        value = cellOf(*operand.table, values, operand.names);
    } else {
        value = values[operand.names.back()];
    }
    if (value.has_value() && operand.isNegative) {
        value = wrapped(0U - static_cast<std::uint32_t>(*value));
    }
    return value;
}

bool FamilyRows::holds(const Comparison& comparison, const Values& values,
                       const RadioTable& radioTable) {
    const std::int32_t left = valueOf(comparison.left, values, radioTable).value();
    const std::int32_t right = valueOf(comparison.right, values, radioTable).value();
    if (comparison.sign == "==") {
        return left == right;
    }
    if (comparison.sign == "!=") {
        return left != right;
    }
    if (comparison.sign == "<") {
        return left < right;
    }
    if (comparison.sign == "<=") {
        return left <= right;
    }
    if (comparison.sign == ">") {
        return left > right;
    }
    throw std::invalid_argument("unknown comparison: " + comparison.sign);
}

std::optional<std::int32_t> FamilyRows::resultOf(const Step& step, const Values& values,
                                                 const RadioTable& radioTable) {
    std::vector<std::int32_t> known;
    for (const Operand& operand : step.operands) {
        const std::optional<std::int32_t> value = valueOf(operand, values, radioTable);
        if (value.has_value()) {
            known.push_back(*value);
        } else if (step.operation == "sum") {
            return std::nullopt;
        }
    }
    if (step.operation == "sum") {
        std::uint32_t sum = 0;
        for (const std::int32_t value : known) {
            sum += static_cast<std::uint32_t>(value);
        }
        return wrapped(sum);
    }
    return step.operation == "least" ? *std::min_element(known.begin(), known.end())
                                     : *std::max_element(known.begin(), known.end());
}

std::uint32_t FamilyRows::take(const std::vector<Step>& steps, Values& values,
                               const RadioTable& radioTable) const {
    for (const Step& step : steps) {
        const bool isTaken = std::all_of(
            step.conditions.begin(), step.conditions.end(),
            [&](const Comparison& condition) { return holds(condition, values, radioTable); });
        if (!isTaken) {
            continue;
        }
        if (step.end.has_value()) {
            return *step.end;
        }
        const std::optional<std::int32_t> result = resultOf(step, values, radioTable);
        if (!result.has_value() && step.otherwiseEnd.has_value()) {
            return *step.otherwiseEnd;
        }
        values[step.name] = result.has_value() ? result : step.otherwise;
    }
    return 0;
}

FamilyRows::Values FamilyRows::valuesOf(const Inputs& inputs) const {
    Values values(m_names.size());
    std::copy(inputs.begin(), inputs.end(), values.begin());
    return values;
}

std::int32_t FamilyRows::referenceOf(const Inputs& inputs) const {
    Values values = valuesOf(inputs);
    take(m_reference, values, {});
    return values[Reference].value();
}

FamilyRows::Answer FamilyRows::powerOf(const Inputs& inputs, const RadioTable& radioTable) const {
    Values values = valuesOf(inputs);
    const std::uint32_t result = take(m_power, values, radioTable);
    return {result, values[PowerOnEntry].value()};
}
