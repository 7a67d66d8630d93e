#include "ExplanationForms.h"

#include "Decibels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>
#include <utility>

namespace {

using Basis = Explanation::Basis;
using Step = Explanation::Step;

struct BasisMark {
    Basis basis;
    const char* mark;
    const char* meaning;
};

constexpr std::array basisMarks = {
    BasisMark{Basis::Question, " [asked]", "the library's answer to a further query"},
    BasisMark{Basis::Difference, " [difference]",
              "the difference of two figures that the library gave"},
};

constexpr const char* pathCodes[] = {"none", "fixed", "fixedWithBooster", "adaptive"};
constexpr const char* basisCodes[] = {"reported", "difference", "question", "input"};
constexpr const char* kindCodes[] = {"start", "change", "bound"};

const char* textOf(Basis basis) {
    return basisCodes[static_cast<std::size_t>(basis)];
}

std::string markOf(Basis basis) {
    const auto* const found = std::ranges::find(basisMarks, basis, &BasisMark::basis);
    return found == basisMarks.end() ? "" : found->mark;
}

/// The step that made a bound: its own, or of those before all bounds the one with its rule.
std::size_t stepOfBound(const Explanation& explanation, std::size_t boundIndex) {
    const std::vector<Step>& steps = explanation.steps;
    const Rule rule = explanation.bounds[boundIndex].rule;
    std::size_t bounds = 0;
    std::size_t found = 0;
    for (std::size_t index = 0; index < steps.size(); ++index) {
        if (steps[index].kind == Step::Kind::Bound && ++bounds == boundIndex) {
            return index;
        }
        if (bounds == 0 && steps[index].rule == rule) {
            found = index;
        }
    }
    return found;
}

std::string originOf(const Step& step) {
    std::string origin = step.pointer.empty() ? step.source : step.pointer;
    if (step.wraps) {
        origin += (origin.empty() ? "" : "; ") + std::string("beyond 32 bits: the sum wraps");
    }
    return origin + markOf(step.basis);
}

/// What a step says. In text the one that holds is marked.
Fields<Step> stepFields(const Step* binding = nullptr) {
    using enum Shown;
    const auto rule = [](const Step& step) { return codeOf(step.rule); };
    const auto kind = [](const Step& step) { return codeOf(step.kind); };
    const auto mark = [binding](const Step& step) { return &step == binding ? ">" : ""; };
    const auto amount = [](const Step& step) {
        return step.kind == Step::Kind::Start ? Datum() : Datum(step.amount);
    };
    return {
        {{"rule"}, rule},
        {{"kind"}, kind},
        {{"mark"}, mark, Nowhere, ""},
        {{"words"}, &Step::words, InJson, "Step"},
        {{"amount", "dB"}, amount, Nowhere, "Amount"},
        {{"amount", "dB"}, &Step::amount},
        {{"bound", "dBm"}, &Step::bound, InJson, "Bound"},
        {{"power", "dBm"}, &Step::running, InJson, "Power"},
        {{"pointer"}, orNothing<Step>(&Step::pointer)},
        {{"source"}, orNothing<Step>(&Step::source)},
        {{"basis"}, [](const Step& step) { return textOf(step.basis); }},
        {{"wraps"}, &Step::wraps},
        {{"origin"}, originOf, Nowhere, "Figure from"},
    };
}

std::string stepsOf(const Explanation& explanation, const TextLook& look) {
    const std::size_t binding = explanation.bindingIndex
                                    ? stepOfBound(explanation, *explanation.bindingIndex)
                                    : explanation.steps.size();
    std::string columns = textColumns(stepFields(explanation.steps.data() + binding),
                                      explanation.steps, "", nullptr, {look.width, 2});
    if (!look.allowsColor) {
        return columns;
    }
    std::string styled;
    std::istringstream lines(columns);
    for (std::string line; std::getline(lines, line);) {
        styled += (line.starts_with('>') ? look.styled(line, TextStyle::Bold) : line) + '\n';
    }
    return styled;
}

std::string roleOf(Rule role, Explanation::Path path) {
    if (role == Rule::PmaxSelectedMinimum) {
        return path == Explanation::Path::Adaptive ? ", the selected minimum"
                                                   : ", the selected modulation";
    }
    if (role == Rule::PmaxReference) {
        return ", the reference modulation";
    }
    return role == Rule::RsecCap ? ", the cap of the RSEC" : "";
}

std::string lookupsOf(const Explanation& explanation) {
    std::string text;
    for (const Explanation::Lookup& lookup : explanation.lookups) {
        text += "  Looked up: Pmax of " + convertAcmEnumToString(lookup.modulation) +
                roleOf(lookup.role, explanation.path) + ": ";
        if (lookup.missing) {
            text += *lookup.missing == Rule::UnknownDpdVersion ? "no table for the DPD version"
                                                               : "no row";
        } else {
            text += lookup.power ? Decibels::dBm(*lookup.power) : "not told";
        }
        text += (lookup.pointer.empty() ? "" : ", " + lookup.pointer) + markOf(lookup.basis) + '\n';
    }
    return text;
}

std::string boundText(const Explanation::Bound& bound) {
    return bound.words + " (" + codeOf(bound.rule) + "), " + Decibels::dBm(bound.value);
}

std::string verdictOf(const Explanation& explanation) {
    std::string text;
    if (explanation.refusal) {
        text +=
            "  No power: " + explanation.refusalWords + " (" + codeOf(*explanation.refusal) + ")\n";
    }
    if (const Explanation::Bound* const binding = explanation.binding()) {
        text += "  Limited by: " + boundText(*binding) + '\n';
    }
    for (const Explanation::Bound& bound : explanation.sameFigure) {
        text +=
            "  Rises too:  " + boundText(bound) + ", which reads " + bound.figure + " as well\n";
    }
    if (const Explanation::Bound* const next = explanation.runnerUp()) {
        text += "  Next bound: " + boundText(*next) + ", " +
                Decibels::format(explanation.headroom.value_or(0)) + " dB above\n";
    } else if (explanation.wraps) {
        text += "  Next bound: not told apart, as sums wrap\n";
    } else if (explanation.binding() != nullptr) {
        text += explanation.hasOpenBound ? "  Next bound: not told\n" : "  Next bound: none\n";
    }
    if (explanation.cutback) {
        text += std::string("  Cut back:   by the ") + wordsFor(*explanation.cutback) + " (" +
                codeOf(*explanation.cutback) + ")" +
                (explanation.withoutCutback
                     ? ", " + Decibels::dBm(*explanation.withoutCutback) + " without it"
                     : "") +
                '\n';
    }
    for (const std::string& note : explanation.notes) {
        text += "  Note: " + note + '\n';
    }
    if (!explanation.addsUp()) {
        text += "  DOES NOT ADD UP: " + explanation.mismatch + '\n';
    }
    return text;
}

/// The rows that share one explanation.
struct Group {
    const Explanation* explanation;
    std::vector<const PowerTable::Row*> rows;
};

bool isSame(const Explanation& left, const Explanation& right) {
    return left.modulation == right.modulation && left.answer == right.answer &&
           left.refusalWords == right.refusalWords && left.path == right.path;
}

std::vector<Group> groupsOf(const ExplainedTable& explained) {
    std::vector<Group> groups;
    for (std::size_t index = 0; index < explained.table.rows.size(); ++index) {
        const Explanation& explanation = explained.explanations[index];
        const auto found = std::ranges::find_if(groups, [&explanation](const Group& group) {
            return isSame(*group.explanation, explanation);
        });
        Group& group =
            found == groups.end() ? groups.emplace_back(Group{&explanation, {}}) : *found;
        group.rows.push_back(&explained.table.rows[index]);
    }
    return groups;
}

std::string titleOf(const Group& group) {
    const Explanation& explanation = *group.explanation;
    std::string codes;
    for (const PowerTable::Row* const row : group.rows) {
        const std::int32_t code = row->modulationAndCode.code;
        const std::string name = convertCodeAndModulationEnumToString(row->modulationAndCode);
        codes += (codes.empty() ? "" : ", ") + std::to_string(code) + " " + name;
    }
    return convertAcmEnumToString(explanation.modulation) + ": " +
           (explanation.answer ? Decibels::dBm(*explanation.answer) : "no power") + " (" +
           (group.rows.size() == 1 ? "code " : "codes ") + codes + ")";
}

bool uses(const Explanation& explanation, Basis basis) {
    const auto has = [basis](const auto& figure) { return figure.basis == basis; };
    return std::ranges::any_of(explanation.lookups, has) ||
           std::ranges::any_of(explanation.steps, has) ||
           std::ranges::any_of(explanation.ofSelected, [basis](const Explanation& selected) {
               return uses(selected, basis);
           });
}

Datum datumOf(const Explanation::Lookup& lookup) {
    return Datum::Object{
        {"role", codeOf(lookup.role)},
        {"modulation", lookup.modulation},
        {"table", Datum::orNothing(lookup.table)},
        {"pmaxCentiDbm", lookup.power},
        {"missing", datumOf(lookup.missing)},
        {"pointer", Datum::orNothing(lookup.pointer)},
        {"basis", textOf(lookup.basis)},
    };
}

Datum datumOf(const Explanation::Bound& bound) {
    return Datum::Object{
        {"rule", codeOf(bound.rule)},
        {"words", bound.words},
        {"powerCentiDbm", bound.value},
        {"pointer", Datum::orNothing(bound.pointer)},
        {"figure", Datum::orNothing(bound.figure)},
    };
}

Datum datumOf(const Explanation::Bound* bound) {
    return bound == nullptr ? Datum() : datumOf(*bound);
}

template <class Part>
Datum listOf(const std::vector<Part>& parts) {
    Datum::List list;
    for (const Part& part : parts) {
        list.push_back(datumOf(part));
    }
    return list;
}

} // namespace

const char* codeOf(Explanation::Step::Kind kind) {
    return kindCodes[static_cast<std::size_t>(kind)];
}

Datum datumOf(const std::optional<Rule>& rule) {
    return rule ? Datum(codeOf(*rule)) : Datum();
}

Datum datumOf(const Explanation& explanation) {
    return Datum::Object{
        {"modulation", explanation.modulation},
        {"path", pathCodes[static_cast<std::size_t>(explanation.path)]},
        {"maxPowerCentiDbm", explanation.answer},
        {"rule", codeOf(explanation.decisiveRule())},
        {"refusal", explanation.refusal ? Datum::Object{{"rule", codeOf(*explanation.refusal)},
                                                        {"words", explanation.refusalWords}}
                                        : Datum()},
        {"binding", datumOf(explanation.binding())},
        {"runnerUp", datumOf(explanation.runnerUp())},
        {"sameFigure", listOf(explanation.sameFigure)},
        {"headroomCentiDb", explanation.headroom},
        {"cutback", datumOf(explanation.cutback)},
        {"withoutCutbackCentiDbm", explanation.withoutCutback},
        {"lookups", listOf(explanation.lookups)},
        {"steps", listOf(stepFields(), explanation.steps)},
        {"bounds", listOf(explanation.bounds)},
        {"addsUp", explanation.addsUp()},
        {"mismatch", Datum::orNothing(explanation.mismatch)},
        {"notes", explanation.notes},
        {"selected",
         explanation.ofSelected.empty() ? Datum() : datumOf(explanation.ofSelected.front())},
    };
}

std::vector<PowerTableLine> linesOf(const RuledTable& ruled) {
    std::vector<PowerTableLine> lines = linesOf(ruled.table);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        lines[index].rule = codeOf(ruled.rules[index]);
        lines[index].headroom = ruled.headrooms[index];
        if (const std::optional<Rule> cutback = ruled.cutbacks[index]) {
            lines[index].cutbackRule = codeOf(*cutback);
        }
    }
    return lines;
}

std::string textForm(const std::string& title, const Explanation& explanation,
                     const TextLook& look) {
    std::string text = look.styled(title, TextStyle::Bold) + '\n' + lookupsOf(explanation);
    if (!explanation.steps.empty()) {
        text += stepsOf(explanation, look);
    }
    text += verdictOf(explanation);
    for (const Explanation& selected : explanation.ofSelected) {
        text +=
            textForm("  The selected modulation, " + convertAcmEnumToString(selected.modulation) +
                         ": " + Decibels::dBm(selected.answer.value_or(0)),
                     selected, look);
    }
    return text;
}

std::string legendOf(const std::vector<Explanation>& explanations) {
    std::string text;
    for (const BasisMark& mark : basisMarks) {
        const bool isUsed =
            std::ranges::any_of(explanations, [&mark](const Explanation& explanation) {
                return uses(explanation, mark.basis);
            });
        if (isUsed) {
            text += std::string(mark.mark).substr(1) + " " + mark.meaning + '\n';
        }
    }
    return text;
}

std::string textForm(const ExplainedTable& explained, const TextLook& look) {
    Heading heading = headingOf(explained.table);
    if (!explained.pmaxTable.empty()) {
        heading.emplace_back("Pmax table", explained.pmaxTable);
    }
    std::string text = textOf(heading);
    for (const Group& group : groupsOf(explained)) {
        text += '\n' + textForm(titleOf(group), *group.explanation, look);
    }
    const std::string legend = legendOf(explained.explanations);
    return legend.empty() ? text : text + '\n' + legend;
}

std::string jsonForm(const ExplainedTable& explained) {
    const Fields<PowerTableLine> fields = lineFields(false);
    const std::vector<PowerTableLine> lines = linesOf(explained.table);
    const auto rowAt = [&](std::size_t index) {
        Datum::Object row = objectOf(fields, lines[index]);
        row.emplace_back("explanation", datumOf(explained.explanations[index]));
        return Datum(std::move(row));
    };
    Datum::Object object = objectOf(explained.table, Datum::Made{lines.size(), rowAt});
    object.emplace_back("pmaxTable", Datum::orNothing(explained.pmaxTable));
    return jsonDocument(answerOf("explain", std::move(object)));
}
