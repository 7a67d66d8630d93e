#include "InputAxis.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "Decibels.h"
#include "OneLine.h"
#include "PowerTableForms.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <optional>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>

namespace {

using Inputs::Value;

constexpr std::string_view rangeDots = "..";

// Reading one value

template <class Enumeration>
Value readNumber(const std::string& option, const std::string& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<Enumeration>(Arguments::integer(option, text, Limits::min(), Limits::max()));
}

template <auto read>
Value readBy(const std::string& option, const std::string& text) {
    return read(option, text);
}

Value readCutback(const std::string& option, const std::string& text) {
    return Inputs::PermanentCutback{Arguments::cutback(option, text)};
}

Value readProduct(const std::string& option, const std::string& text) {
    if (text.empty()) {
        throw QuestionError(option + " \"\": a product number or none is wanted");
    }
    return Inputs::ProductNumber{text == Arguments::none ? std::string() : text};
}

template <class Selected>
Value readSelected(const std::string& option, const std::string& text) {
    return Selected{Arguments::modulationAndCode(option, text)};
}

// The values that make sense for a radio where none are listed; none if the radio names none

using Values = std::vector<Value>;
using FormatRecord = HardwareConfigurationHandlerAnswers::FrameFormat;

template <class Type>
Values valuesFrom(std::initializer_list<Type> list) {
    return Values(list.begin(), list.end());
}

void addSpacings(const SystemPowerControllerAnswers& controller, std::set<std::int32_t>& spacings) {
    for (const auto& offset : controller.minOutputPowerOffsets) {
        spacings.insert(static_cast<std::int32_t>(offset.channelSpacing));
    }
}

void addSpacings(const HardwareConfigurationHandlerAnswers& handler,
                 std::set<std::int32_t>& spacings) {
    for (const FormatRecord& record : handler.frameFormats) {
        if (const auto* const spacing = std::get_if<EChannelSpacingType>(&record.channelSpacing)) {
            spacings.insert(static_cast<std::int32_t>(*spacing));
        }
    }
}

constexpr std::uint32_t usualStep = 100; // one decibel
constexpr std::uint32_t greatestUsualCutback = 10 * usualStep;

std::optional<OperatingInputs::Booster> boosterOf(const RadioCase& radio) {
    std::optional<OperatingInputs::Booster> booster;
    for (const Request& request : radio.file.requests) {
        if (const auto* const call = std::get_if<Calls::SetBoosterPresence>(&request.call);
            call != nullptr && call->presence != 0) {
            booster = {call->presence, call->gain, call->maxInputPower, call->maxModulation};
        }
    }
    if (radio.query.inputs.booster && radio.query.inputs.booster->presence != 0) {
        booster = radio.query.inputs.booster;
    }
    return booster;
}

std::vector<ModulationAndCoding> codesOf(const FormatRecord& record) {
    const auto* const codes =
        std::get_if<std::vector<ModulationAndCoding>>(&record.modulationAndCodes);
    return codes == nullptr ? std::vector<ModulationAndCoding>() : *codes;
}

/// The codes of the frame format that is asked for, in ascending order.
std::vector<ModulationAndCoding> codesOf(const RadioCase& radio) {
    const NodeAnswers& node = radio.file.node;
    const std::int32_t id = radio.query.frameFormatId;
    std::vector<ModulationAndCoding> codes;
    if (id < 1 && node.frameFormat != nullptr) {
        codes = node.frameFormat->modulationAndCodes;
    } else if (id >= 1 && node.hardwareConfigurationHandler != nullptr) {
        const auto& records = node.hardwareConfigurationHandler->frameFormats;
        const auto found = std::ranges::find(records, id, &FormatRecord::id);
        codes = found == records.end() ? codes : codesOf(*found);
    }
    std::sort(codes.begin(), codes.end());
    return codes;
}

/// One code of the frame format for each of its modulations: the powers depend on no more.
template <class Selected>
Values usualSelections(const RadioCase& radio) {
    std::vector<ModulationAndCoding> codes = codesOf(radio);
    constexpr bool isMax = std::is_same_v<Selected, Inputs::SelectedMax>;
    // Of one modulation the lowest code is selected as minimum and the highest as maximum, so that
    // selecting one modulation as both still leaves a range.
    if (isMax) {
        std::ranges::reverse(codes);
    }
    const auto isSameModulation = [](const ModulationAndCoding& left,
                                     const ModulationAndCoding& right) {
        return convertCodeToModulation(left) == convertCodeToModulation(right);
    };
    codes.erase(std::unique(codes.begin(), codes.end(), isSameModulation), codes.end());
    if (isMax) {
        std::ranges::reverse(codes);
    }
    Values values;
    for (const ModulationAndCoding& code : codes) {
        values.emplace_back(Selected{code});
    }
    return values;
}

Values rsecs(const RadioCase&) {
    return valuesFrom({EReferenceSEC::Class2, EReferenceSEC::Class4L, EReferenceSEC::Class4H,
                       EReferenceSEC::Class5LB, EReferenceSEC::Class5HB, EReferenceSEC::Class5B,
                       EReferenceSEC::Class6LB, EReferenceSEC::Class6HB, EReferenceSEC::Class6B,
                       EReferenceSEC::Class7B});
}

Values markets(const RadioCase&) {
    return valuesFrom(
        {EFrameFormatMarket::Etsi, EFrameFormatMarket::Ansi, EFrameFormatMarket::Global});
}

Values dpdVersions(const RadioCase&) {
    return valuesFrom({EDpdVersion::Dpd1, EDpdVersion::Dpd2, EDpdVersion::Dpd3});
}

/// The spacings that the radio itself names: of its frame formats and of its minimum power offsets.
Values channelSpacings(const RadioCase& radio) {
    const NodeAnswers& node = radio.file.node;
    std::set<std::int32_t> spacings;
    if (node.frameFormat != nullptr) {
        spacings.insert(static_cast<std::int32_t>(node.frameFormat->channelSpacing));
    }
    if (node.hardwareConfigurationHandler != nullptr) {
        addSpacings(*node.hardwareConfigurationHandler, spacings);
    }
    if (node.systemPowerController != nullptr) {
        addSpacings(*node.systemPowerController, spacings);
    }
    Values values;
    for (const std::int32_t spacing : spacings) {
        values.emplace_back(static_cast<EChannelSpacingType>(spacing));
    }
    return values;
}

Values cutbacks(const RadioCase&) {
    Values values;
    for (std::uint32_t cutback = 0; cutback <= greatestUsualCutback; cutback += usualStep) {
        values.emplace_back(Inputs::PermanentCutback{cutback});
    }
    return values;
}

Values temporaryCutbacks(const RadioCase&) {
    Values values{OperatingInputs::TemporaryCutback{}};
    for (std::uint32_t cutback = 0; cutback <= greatestUsualCutback; cutback += usualStep) {
        values.emplace_back(OperatingInputs::TemporaryCutback{true, cutback});
    }
    return values;
}

/// None, and the booster that the radio has or had in each of the two bands.
Values boosters(const RadioCase& radio) {
    const std::optional<OperatingInputs::Booster> own = boosterOf(radio);
    if (!own) {
        return {};
    }
    constexpr std::int32_t secondBand = 7;
    OperatingInputs::Booster first = *own;
    first.presence = own->presence == secondBand ? 1 : own->presence;
    OperatingInputs::Booster second = *own;
    second.presence = secondBand;
    return {OperatingInputs::Booster{}, first, second};
}

/// One number for each family of calculators; a number on no list leads to the newer radio units.
Values products(const RadioCase&) {
    return valuesFrom({Inputs::ProductNumber{""}, Inputs::ProductNumber{"QZT 846 001"},
                       Inputs::ProductNumber{"QZT 846 003"}, Inputs::ProductNumber{"QZT35201/1"},
                       Inputs::ProductNumber{"QZT 860 13"}});
}

/// The value in a form for programs.
struct DatumMaker {
    Datum operator()(const Inputs::PermanentCutback& permanent) const { return permanent.cutback; }
    Datum operator()(const OperatingInputs::TemporaryCutback& temporary) const {
        return temporary.inForce ? Datum(temporary.cutback) : Datum();
    }
    Datum operator()(const OperatingInputs::Booster& booster) const {
        return datumOf(std::optional(booster));
    }
    Datum operator()(const Inputs::ProductNumber& product) const {
        return Datum::orNothing(product.text);
    }
    Datum operator()(const Inputs::SelectedMin& selected) const { return selected.code; }
    Datum operator()(const Inputs::SelectedMax& selected) const { return selected.code; }
    template <class Enumeration>
    Datum operator()(Enumeration value) const {
        return value;
    }
};

// Lists

/// "FIRST..LAST" or "FIRST..LAST:STEP" in its three parts, the step "1" where it is missing.
struct Range {
    std::string first;
    std::string last;
    std::string step = "1";

    explicit Range(const std::string& text) {
        const std::size_t dots = text.find(rangeDots);
        first = text.substr(0, dots);
        last = text.substr(dots + rangeDots.size());
        if (const std::size_t colon = last.find(':'); colon != std::string::npos) {
            step = last.substr(colon + 1);
            last.resize(colon);
        }
    }
};

} // namespace

const std::vector<InputAxis>& InputAxis::all() {
    static const std::vector<InputAxis> axes = {
        {{"rsec", "rsec", "RSEC", "", Scale::None, readBy<Arguments::rsec>, rsecs}},
        {{"market", "market", "market", "", Scale::None, readBy<Arguments::market>, markets}},
        {{"dpd", "dpdVersion", "DPD version", "", Scale::Integers, readNumber<EDpdVersion>,
          dpdVersions}},
        {{"channel-spacing", "channelSpacing", "channel spacing", "MHz", Scale::Integers,
          readNumber<EChannelSpacingType>, channelSpacings}},
        {{"cutback", "cutback", "permanent cutback", "dB", Scale::Decibels, readCutback, cutbacks}},
        {{"temporary-cutback", "temporaryCutback", "temporary cutback", "dB", Scale::Decibels,
          readBy<Arguments::temporaryCutback>, temporaryCutbacks}},
        {{"booster", "booster", "booster", "", Scale::None, readBy<Arguments::booster>, boosters}},
        {{"product", "productNumber", "product number", "", Scale::None, readProduct, products}},
        {{"min", "selectedMin", "selected minimum", "", Scale::None,
          readSelected<Inputs::SelectedMin>, usualSelections<Inputs::SelectedMin>}},
        {{"max", "selectedMax", "selected maximum", "", Scale::None,
          readSelected<Inputs::SelectedMax>, usualSelections<Inputs::SelectedMax>}},
    };
    return axes;
}

const InputAxis& InputAxis::named(std::string_view option, std::string_view name) {
    std::vector<std::string> names;
    for (const InputAxis& axis : all()) {
        names.push_back(axis.name());
    }
    const std::string known = Arguments::word(std::string(option), std::string(name), names);
    const auto found = std::ranges::find(names, known);
    return all()[static_cast<std::size_t>(std::distance(names.begin(), found))];
}

const InputAxis& InputAxis::of(const Inputs::Value& value) {
    return all()[value.index()];
}

std::string InputAxis::heading() const {
    return m_is.unit.empty() ? m_is.words : m_is.words + " in " + m_is.unit;
}

std::vector<std::string> InputAxis::expanded(const std::string& option,
                                             const std::string& piece) const {
    if (m_is.scale == Scale::None || piece.find(rangeDots) == std::string::npos) {
        return {piece};
    }
    const Range range(piece);
    // Refuses what is no value of this axis, so that the numbers below are small enough.
    static_cast<void>(m_is.read(option, range.first));
    static_cast<void>(m_is.read(option, range.last));
    const auto number = [this](const std::string& text) {
        const std::optional<std::int64_t> hundredths = ::Decibels::parse(text);
        const bool isWhole = hundredths && *hundredths % ::Decibels::one == 0;
        return m_is.scale == Scale::Decibels || isWhole ? hundredths : std::nullopt;
    };
    const std::optional<std::int64_t> first = number(range.first);
    const std::optional<std::int64_t> last = number(range.last);
    const std::optional<std::int64_t> step = number(range.step);
    if (!first || !last || !step || *step <= 0 || *first > *last) {
        throw QuestionError(option + ' ' + inQuotes(piece) +
                            ": FIRST..LAST or FIRST..LAST:STEP is wanted, for example 0..6:2");
    }
    if ((*last - *first) / *step >= static_cast<std::int64_t>(maxValues)) {
        refuseTooMany(option);
    }
    std::vector<std::string> texts;
    for (std::int64_t value = *first; value <= *last; value += *step) {
        texts.push_back(m_is.scale == Scale::Decibels ? ::Decibels::format(value)
                                                      : std::to_string(value / ::Decibels::one));
    }
    return texts;
}

void InputAxis::refuseTooMany(const std::string& option) {
    throw QuestionError(option + ": more than " + std::to_string(maxValues) + " values");
}

std::vector<Inputs::Value> InputAxis::valuesOf(const std::string& option,
                                               const std::string& list) const {
    constexpr std::size_t boosterIndex = 6;
    static_assert(std::is_same_v<std::variant_alternative_t<boosterIndex, Inputs::Value>,
                                 OperatingInputs::Booster>);
    const bool holdsCommas = this == &all()[boosterIndex];
    const std::string name = option + ' ' + m_is.name;
    std::vector<Inputs::Value> values;
    std::set<std::string> texts;
    for (const std::string& piece : Arguments::splitAt(holdsCommas ? '/' : ',', list)) {
        for (const std::string& text : expanded(name, piece)) {
            values.push_back(m_is.read(name, text));
            if (!texts.insert(Inputs::textOf(values.back())).second) {
                throw QuestionError(name + ' ' + inQuotes(text) + ": is given twice");
            }
        }
        if (values.size() > maxValues) {
            refuseTooMany(name);
        }
    }
    return values;
}

std::vector<Inputs::Value> InputAxis::usualValues(const std::string& option,
                                                  const RadioCase& radio) const {
    std::vector<Inputs::Value> values = m_is.findUsual(radio);
    const std::string name = option + ' ' + m_is.name;
    if (values.empty()) {
        throw QuestionError(name + ": the radio file names no " + m_is.words +
                            "; list the values, " + name + "=LIST");
    }
    if (values.size() > maxValues) {
        refuseTooMany(name);
    }
    return values;
}

std::string InputAxis::labelOf(const Inputs::Value& value) {
    if (const auto* const booster = std::get_if<OperatingInputs::Booster>(&value)) {
        return ::textOf(std::optional(*booster));
    }
    const std::string text = Inputs::textOf(value);
    const std::string& unit = of(value).unit();
    return unit.empty() || text == Arguments::none ? text : text + ' ' + unit;
}

std::pair<std::string, Datum> InputAxis::memberOf(const Inputs::Value& value) {
    const InputAxis& axis = of(value);
    return {FieldNames{axis.m_is.key, axis.m_is.unit}.inJson(), std::visit(DatumMaker(), value)};
}
