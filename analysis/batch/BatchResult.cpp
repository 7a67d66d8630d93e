#include "BatchResult.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "ExplanationForms.h"
#include "OneLine.h"
#include "RadioFileError.h"
#include "TextColumns.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace {

constexpr const char* schemaKey = "schema";

/// The texts of all codes, but for the one that is none.
const std::vector<std::string>& codeNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = modulationAndCodeTextForms().texts();
        std::erase(all, convertCodeAndModulationEnumToString(
                            ModulationAndCoding{ModulationAndCoding::UNDEFINED}));
        return all;
    }();
    return names;
}

/// "pmax-row:7 rsec-cap:2", the most frequent first.
std::string rulesOf(const ExplainedTable& powers) {
    RuleCounts counts;
    counts.add(powers);
    std::string text;
    for (const RuleCounts::Count& count : counts.sortedBy(&RuleCounts::Count::codes)) {
        text += (text.empty() ? "" : " ") + std::string(codeOf(count.rule)) + ':' +
                std::to_string(count.codes);
    }
    return text;
}

/// The maximum power of a code; nothing if the frame format lacks it. Of equal codes the last
/// counts.
Datum powerOf(const PowerTable& table, const ModulationAndCoding& code) {
    Datum power;
    for (const PowerTable::Row& row : table.rows) {
        if (row.modulationAndCode == code && row.maxPower) {
            power = row.maxPower;
        }
    }
    return power;
}

/// A field that says something of the powers, and nothing where there are none.
template <class Get>
Field<BatchResult> ofPowers(FieldNames names, Get get) {
    return {std::move(names),
            [get](const BatchResult& result) {
                return result.powers ? Datum(get(*result.powers)) : Datum();
            },
            Shown::InCsv};
}

template <class Get>
Field<BatchResult> ofTable(FieldNames names, Get get) {
    return ofPowers(std::move(names),
                    [get](const ExplainedTable& powers) { return std::invoke(get, powers.table); });
}

Fields<BatchResult> makeFields() {
    using enum Shown;
    Fields<BatchResult> fields = {
        {{schemaKey}, [](const BatchResult&) { return Datum(schemaOf("batch")); }, InJson},
        {{"id"}, orNothing<BatchResult>(&BatchResult::id), InBoth},
        {{"radioFile"}, orNothing<BatchResult>(&BatchResult::radioFile), InBoth},
        ofTable({"productNumber"}, &PowerTable::productNumber),
        ofTable({"family"}, [](const PowerTable& table) { return table.family.name; }),
        ofTable({"market"}, &PowerTable::market),
        ofTable({"channelSpacing", "MHz"}, &PowerTable::channelSpacing),
        ofTable({"dpdVersion"}, &PowerTable::dpdVersion),
        ofTable({"rsec"}, &PowerTable::rsec),
        ofTable({"cutback", "dB"},
                [](const PowerTable& table) { return table.inputs.cutbackInForce(); }),
        ofTable({"minPower", "dBm"}, &PowerTable::minOutputPower),
    };
    for (const std::string& name : codeNames()) {
        const ModulationAndCoding code = *modulationAndCodeTextForms().find(name);
        fields.push_back(ofTable({"maxPower_" + name, "dBm"},
                                 [code](const PowerTable& table) { return powerOf(table, code); }));
    }
    fields.push_back(ofPowers({"rules"}, rulesOf));
    fields.push_back({{"error"}, orNothing<BatchResult>(&BatchResult::error), InBoth});
    fields.push_back({{"place"}, orNothing<BatchResult>(&BatchResult::place), InBoth});
    return fields;
}

const Fields<BatchResult>& resultFields() {
    static const Fields<BatchResult> fields = makeFields();
    return fields;
}

/// What each code of a radio says.
const Fields<PowerTableLine>& batchLineFields() {
    static const Fields<PowerTableLine> fields = [] {
        Fields<PowerTableLine> all = lineFields(true);
        all.push_back({{"headroom", "dB"}, &PowerTableLine::headroom, Shown::InBoth});
        all.push_back({{"cutbackRule"},
                       orNothing<PowerTableLine>(&PowerTableLine::cutbackRule),
                       Shown::InBoth});
        return all;
    }();
    return fields;
}

/// What a radio answers, as a JSON object says it.
Datum::Object objectOf(const BatchResult& result) {
    Datum::Object line = objectOf(resultFields(), result);
    if (result.powers) {
        const Datum::List rows = listOf(batchLineFields(), linesOf(RuledTable(*result.powers)));
        for (auto& member : objectOf(result.powers->table, rows)) {
            // The batch itself says where the radio comes from.
            if (member.first != "radioFile") {
                line.push_back(std::move(member));
            }
        }
    }
    return line;
}

/// The keys of a radio's object in their order.
std::vector<std::string> radioKeys() {
    BatchResult result;
    result.powers.emplace();
    std::vector<std::string> keys;
    for (const auto& member : objectOf(result)) {
        keys.push_back(member.first);
    }
    return keys;
}

/// The members of an object that are wanted, in the order of the wishes.
Datum::Object selected(const Datum::Object& object, const std::vector<std::string>& wanted) {
    Datum::Object members;
    for (const std::string& key : wanted) {
        const auto found = std::ranges::find(
            object, key, [](const auto& member) -> const auto& { return member.first; });
        // A bad line has not all of them.
        members.emplace_back(key, found == object.end() ? Datum() : found->second);
    }
    return members;
}

template <class Row>
std::vector<std::string> namesOf(const Fields<Row>& fields, bool isCsv) {
    std::vector<std::string> names;
    for (const Field<Row>& field : fields) {
        if (isCsv ? field.isInCsv() : field.isInJson()) {
            names.push_back(isCsv ? field.inCsv() : field.inJson());
        }
    }
    return names;
}

/// The fields of a form that are wanted, in the order of the wishes, which are all known.
template <class Row>
Fields<Row> selected(const Fields<Row>& fields, bool isCsv,
                     const std::vector<std::string>& wanted) {
    Fields<Row> chosen;
    for (const std::string& name : wanted) {
        chosen.push_back(*std::ranges::find_if(fields, [&](const Field<Row>& field) {
            return (isCsv ? field.isInCsv() && field.inCsv() == name
                          : field.isInJson() && field.inJson() == name);
        }));
    }
    return chosen;
}

const char* troubleInWords(BatchResult::Trouble trouble) {
    using enum BatchResult::Trouble;
    switch (trouble) {
    case None:
        return "";
    case Line:
        return "no radio file on the line";
    case Unreadable:
        return "the file cannot be read";
    case BadRadioFile:
        return "no valid radio file";
    case NotStarted:
        return "the service did not start";
    case NoPowers:
        return "the query failed";
    case Contradiction:
        return "the explanation contradicts the library";
    case Other:
        break;
    }
    return "other trouble";
}

} // namespace

BatchResult BatchResult::of(std::string id, std::string path,
                            const std::function<std::string()>& text, const AskedInputs& inputs) {
    using enum Trouble;
    BatchResult result;
    result.id = std::move(id);
    result.radioFile = std::move(path);
    try {
        result.setPowers(inputs.radio(text(), "").explain());
    } catch (const RadioFileError& error) {
        result.fail(
            BadRadioFile,
            oneLine(error.problem() + (error.remedy().empty() ? "" : "; " + error.remedy())),
            error.place());
    } catch (const QuestionError& error) {
        result.fail(NoPowers, oneLine(error.what()));
    } catch (const AnalysisError& error) {
        const Trouble withoutNode = result.radioFile.empty() ? Line : Unreadable;
        result.fail(error.outcome() == Outcome::ServiceDidNotStart ? NotStarted : withoutNode,
                    oneLine(error.what()));
    } catch (const std::exception& error) {
        result.fail(Other, oneLine(error.what()));
    }
    return result;
}

void BatchResult::setPowers(ExplainedTable explained) {
    powers = std::move(explained);
    const std::vector<std::string> mismatches = mismatchesOf(powers->explanations);
    if (!mismatches.empty()) {
        fail(Trouble::Contradiction, mismatches.front());
    } else if (!powers->table.failure.empty()) {
        fail(Trouble::NoPowers, "no powers: " + powers->table.failure);
    }
}

void BatchResult::fail(Trouble kind, std::string why, std::string where) {
    trouble = kind;
    error = std::move(why);
    place = std::move(where);
}

struct BatchForm::CodeOfRadio {
    const BatchResult& radio;
    std::optional<PowerTableLine> code;
};

Fields<BatchForm::CodeOfRadio> BatchForm::codeOfRadioFields() {
    Fields<CodeOfRadio> fields;
    const auto isThere = [&fields](const FieldNames& names) {
        return std::ranges::find(fields, names.key, &FieldNames::key) != fields.end();
    };
    const auto ofRadio = [&fields](const Field<BatchResult>& field) {
        fields.emplace_back(
            static_cast<const FieldNames&>(field),
            [get = field.value](const CodeOfRadio& row) { return get(row.radio); },
            field.key == schemaKey ? Shown::InJson : Shown::InBoth);
    };
    const auto isOfAll = [](const Field<BatchResult>& field) {
        return field.key == "rules" || field.key.starts_with("maxPower_");
    };
    const auto isAboutTrouble = [](const Field<BatchResult>& field) {
        return field.key == "error" || field.key == "place";
    };
    for (const Field<BatchResult>& field : resultFields()) {
        if (!isOfAll(field) && !isAboutTrouble(field)) {
            ofRadio(field);
        }
    }
    for (const Field<PowerTableLine>& field : batchLineFields()) {
        if (!isThere(field)) {
            fields.emplace_back(
                static_cast<const FieldNames&>(field),
                [get = field.value](const CodeOfRadio& row) {
                    return row.code ? get(*row.code) : Datum();
                },
                Shown::InBoth);
        }
    }
    for (const Field<BatchResult>& field : resultFields()) {
        if (isAboutTrouble(field)) {
            ofRadio(field);
        }
    }
    return fields;
}

BatchForm::BatchForm(Choice choice)
    : m_choice(std::move(choice))
    , m_radioFields(resultFields())
    , m_codeFields(codeOfRadioFields()) {
    if (m_choice.columns.empty()) {
        return;
    }
    const std::vector<std::string> ofRadio =
        m_choice.isCsv ? namesOf(m_radioFields, true) : radioKeys();
    const std::vector<std::string> known =
        m_choice.isByCode ? namesOf(m_codeFields, m_choice.isCsv) : ofRadio;
    for (const std::string& column : m_choice.columns) {
        Arguments::word(m_choice.columnsOption, column, known);
    }
    if (!m_choice.isCsv &&
        std::ranges::find(m_choice.columns, schemaKey) == m_choice.columns.end()) {
        m_choice.columns.insert(m_choice.columns.begin(), schemaKey);
    }
    if (m_choice.isByCode) {
        m_codeFields = selected(m_codeFields, m_choice.isCsv, m_choice.columns);
    } else if (m_choice.isCsv) {
        m_radioFields = selected(m_radioFields, true, m_choice.columns);
    }
}

std::string BatchForm::header() const {
    if (!m_choice.isCsv) {
        return "";
    }
    return m_choice.isByCode ? csvHeader(m_codeFields) : csvHeader(m_radioFields);
}

std::string BatchForm::beginning() const {
    return m_choice.isCsv ? ""
                          : "{\"" + std::string(schemaKey) + "\":\"" + schemaOf("batch") + "\",";
}

std::string BatchForm::linesOf(const BatchResult& result) const {
    if (m_choice.hasErrorsOnly && !result.isBad()) {
        return "";
    }
    if (m_choice.isByCode) {
        std::vector<CodeOfRadio> rows;
        if (result.powers) {
            for (PowerTableLine& line : ::linesOf(RuledTable(*result.powers))) {
                rows.push_back({result, std::move(line)});
            }
        }
        if (rows.empty()) {
            rows.push_back({result, std::nullopt});
        }
        std::string lines;
        for (const CodeOfRadio& row : rows) {
            lines += m_choice.isCsv ? csvLine(m_codeFields, row)
                                    : jsonLine(::objectOf(m_codeFields, row));
        }
        return lines;
    }
    if (m_choice.isCsv) {
        return csvLine(m_radioFields, result);
    }
    const Datum::Object object = objectOf(result);
    return jsonLine(m_choice.columns.empty() ? object : selected(object, m_choice.columns));
}

bool BatchForm::haveSameNames(const std::string& left, const std::string& right) const {
    const auto namesOf = [this](const std::string& line) {
        const char* const behindNames = m_choice.isCsv ? "," : ",\"error\":";
        std::size_t end = line.find(behindNames);
        if (m_choice.isCsv && end != std::string::npos) {
            end = line.find(behindNames, end + 1);
        }
        return line.substr(0, end);
    };
    return namesOf(left) == namesOf(right);
}

void RuleCounts::add(const ExplainedTable& powers) {
    std::set<Rule> ofNode;
    const auto countCode = [&](Rule rule) {
        Count& count = m_counts.try_emplace(rule, Count{rule}).first->second;
        ++count.codes;
        if (ofNode.insert(rule).second) {
            ++count.nodes;
        }
    };
    for (const Explanation& explanation : powers.explanations) {
        countCode(explanation.decisiveRule());
        if (explanation.cutback) {
            countCode(*explanation.cutback);
        }
    }
}

std::vector<RuleCounts::Count> RuleCounts::sortedBy(std::uint64_t Count::*number) const {
    std::vector<Count> counts;
    counts.reserve(m_counts.size());
    for (const auto& [rule, count] : m_counts) {
        counts.push_back(count);
    }
    std::ranges::stable_sort(counts, [number](const Count& left, const Count& right) {
        return left.*number > right.*number;
    });
    return counts;
}

void RuleCounts::add(const Count& other) {
    Count& count = m_counts.try_emplace(other.rule, Count{other.rule}).first->second;
    count.nodes += other.nodes;
    count.codes += other.codes;
}

void RuleCounts::add(const RuleCounts& others) {
    for (const auto& [rule, count] : others.m_counts) {
        add(count);
    }
}

void BatchTotals::add(const BatchResult& result) {
    ++lines;
    if (result.isBad()) {
        ++bad;
        ++troubles[result.trouble];
    } else if (result.powers) {
        rules.add(*result.powers);
    }
}

void BatchTotals::add(const BatchTotals& others) {
    lines += others.lines;
    bad += others.bad;
    for (const auto& [trouble, count] : others.troubles) {
        troubles[trouble] += count;
    }
    rules.add(others.rules);
}

std::vector<std::string> BatchTotals::inWords(std::size_t width) const {
    std::vector<std::string> words{counted(lines, "line") + ": " + counted(lines - bad, "node") +
                                   ", " + std::to_string(bad) + " bad"};
    const auto addColumns = [&words, width](const std::vector<Align>& align,
                                            const std::vector<std::vector<std::string>>& table) {
        // A heading alone says nothing.
        std::istringstream text(table.size() > 1 ? alignedColumns(align, table, {width}) : "");
        for (std::string line; std::getline(text, line);) {
            words.push_back(line);
        }
    };
    std::vector<std::vector<std::string>> table{{"Bad because", "Lines"}};
    for (const auto& [trouble, count] : troubles) {
        table.push_back({troubleInWords(trouble), std::to_string(count)});
    }
    addColumns({Align::Left, Align::Right}, table);
    table = {{"Limited by", "Nodes", "Codes", "In words"}};
    for (const RuleCounts::Count& count : rules.sortedBy(&RuleCounts::Count::nodes)) {
        table.push_back({codeOf(count.rule), std::to_string(count.nodes),
                         std::to_string(count.codes), wordsFor(count.rule)});
    }
    addColumns({Align::Left, Align::Right, Align::Right, Align::Left}, table);
    return words;
}

std::string BatchTotals::packed() const {
    std::string text =
        std::to_string(lines) + ' ' + std::to_string(bad) + ' ' + std::to_string(troubles.size());
    for (const auto& [trouble, count] : troubles) {
        text += ' ' + std::to_string(static_cast<int>(trouble)) + ' ' + std::to_string(count);
    }
    for (const RuleCounts::Count& count : rules.sortedBy(&RuleCounts::Count::nodes)) {
        text += ' ' + std::to_string(static_cast<int>(count.rule)) + ' ' +
                std::to_string(count.nodes) + ' ' + std::to_string(count.codes);
    }
    return text;
}

BatchTotals BatchTotals::unpacked(const std::string& text) {
    BatchTotals totals;
    std::istringstream numbers(text);
    std::size_t kinds = 0;
    numbers >> totals.lines >> totals.bad >> kinds;
    int kind = 0;
    std::uint64_t count = 0;
    for (std::size_t index = 0; index < kinds && numbers >> kind >> count; ++index) {
        totals.troubles[static_cast<BatchResult::Trouble>(kind)] = count;
    }
    RuleCounts::Count rule{};
    while (numbers >> kind >> rule.nodes >> rule.codes) {
        rule.rule = static_cast<Rule>(kind);
        totals.rules.add(rule);
    }
    return totals;
}
