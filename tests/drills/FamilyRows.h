#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

/// The rules of the hardware families as family-rows.json has them: rows, not code. It knows no
/// family, and shares nothing with the restatement nor with the library.
///
/// A table has rows under columns; a row holds for every combination of its lists of keys, its
/// cells stand as "values" or, for hundredths of a dB, as "wholeDb". "offset[class, actual]" is the
/// cell of the row of a class in the column of a modulation.
///
/// A step lets a name be the "sum", the "least" or the "greatest" of other names, of cells, with or
/// without a minus, and of numbers; or it ends with a result. With an "if" it is only taken when
/// all comparisons hold. A name may be without a value: the least is that of those which have one;
/// a sum in which one or a cell is missing is what "otherwise" says: a number, "nothing", or an
/// end.
class FamilyRows {
public:
    /// What the rules are told. In "pmax[modulation]" is the radio's own table.
    enum Input : std::size_t {
        Class,
        SelectedMin,
        SelectedMax,
        Actual,
        Available,
        Reference,
        PmaxSelectedMin,
        PmaxActual,
        PmaxReference,
        Compensation,
        Presence,
        Gain,
        MaxInputPower,
        MaxModulation,
        PowerOnEntry,
        InputCount
    };
    using Inputs = std::array<std::int32_t, InputCount>;

    /// Modulations and powers in pairs.
    using RadioTable = std::vector<std::int32_t>;

    struct Answer {
        std::uint32_t result = 0;
        std::int32_t power = 0;
    };

    /// @throws std::exception if the rows cannot be understood.
    explicit FamilyRows(const nlohmann::json& family);

    std::int32_t referenceOf(const Inputs& inputs) const;
    Answer powerOf(const Inputs& inputs, const RadioTable& radioTable) const;

private:
    struct Table {
        std::vector<std::int32_t> columns;
        struct Row {
            std::vector<std::vector<std::int32_t>> keys;
            std::vector<std::int32_t> cells;
        };
        std::vector<Row> rows;
    };

    /// A name, a number or a cell.
    struct Operand {
        bool isNegative = false;
        std::optional<std::int32_t> number;
        const Table* table = nullptr; ///< null: a name, unless a number
        bool isOfRadio = false;
        std::vector<std::size_t> names; ///< the name, or the keys and the column
    };

    struct Comparison {
        Operand left;
        std::string sign;
        Operand right;
    };

    struct Step {
        std::vector<Comparison> conditions;
        std::optional<std::uint32_t> end;
        std::size_t name = 0;
        std::string operation;
        std::vector<Operand> operands;
        std::optional<std::int32_t> otherwise;
        std::optional<std::uint32_t> otherwiseEnd;
    };

    using Values = std::vector<std::optional<std::int32_t>>;

    static Table tableOf(const nlohmann::json& rows);
    std::size_t nameOf(const std::string& name);
    Operand operandOf(const nlohmann::json& text);
    std::vector<Step> stepsOf(const nlohmann::json& list);

    static std::optional<std::int32_t> cellOf(const Table& table, const Values& values,
                                              const std::vector<std::size_t>& names);
    static std::optional<std::int32_t> valueOf(const Operand& operand, const Values& values,
                                               const RadioTable& radioTable);
    static bool holds(const Comparison& comparison, const Values& values,
                      const RadioTable& radioTable);
    static std::optional<std::int32_t> resultOf(const Step& step, const Values& values,
                                                const RadioTable& radioTable);
    std::uint32_t take(const std::vector<Step>& steps, Values& values,
                       const RadioTable& radioTable) const;
    Values valuesOf(const Inputs& inputs) const;

    std::map<std::string, std::unique_ptr<const Table>> m_tables;
    std::vector<std::string> m_names;
    std::vector<Step> m_reference;
    std::vector<Step> m_power;
};
