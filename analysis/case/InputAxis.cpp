#include "InputAxis.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "Decibels.h"
#include "OneLine.h"
#include "PowerTableForms.h"
#include "UsualInputs.h"

#include <algorithm>
#include <cstdint>
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
constexpr std::int64_t oneDecibel = 100;

// Reading one value

template <class Enumeration>
Value readNumber(const std::string& option, const std::string& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<Enumeration>(Arguments::integer(option, text, Limits::min(), Limits::max()));
}

Value readRsec(const std::string& option, const std::string& text) {
    return Arguments::rsec(option, text);
}

Value readMarket(const std::string& option, const std::string& text) {
    return Arguments::market(option, text);
}

Value readCutback(const std::string& option, const std::string& text) {
    return Inputs::PermanentCutback{Arguments::cutback(option, text)};
}

Value readTemporaryCutback(const std::string& option, const std::string& text) {
    return Arguments::temporaryCutback(option, text);
}

Value readBooster(const std::string& option, const std::string& text) {
    return Arguments::booster(option, text);
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

std::vector<std::string> splitAt(char separator, std::string_view text) {
    std::vector<std::string> parts;
    while (true) {
        const std::size_t place = text.find(separator);
        parts.emplace_back(text.substr(0, place));
        if (place == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(place + 1);
    }
}

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
        {"rsec", "rsec", "RSEC", "", Scale::None, readRsec, UsualInputs::rsecs},
        {"market", "market", "market", "", Scale::None, readMarket, UsualInputs::markets},
        {"dpd", "dpdVersion", "DPD version", "", Scale::Integers, readNumber<EDpdVersion>,
         UsualInputs::dpdVersions},
        {"channel-spacing", "channelSpacing", "channel spacing", "MHz", Scale::Integers,
         readNumber<EChannelSpacingType>, UsualInputs::channelSpacings},
        {"cutback", "cutback", "permanent cutback", "dB", Scale::Decibels, readCutback,
         UsualInputs::cutbacks},
        {"temporary-cutback", "temporaryCutback", "temporary cutback", "dB", Scale::Decibels,
         readTemporaryCutback, UsualInputs::temporaryCutbacks},
        {"booster", "booster", "booster", "", Scale::None, readBooster, UsualInputs::boosters},
        {"product", "productNumber", "product number", "", Scale::None, readProduct,
         UsualInputs::products},
        {"min", "selectedMin", "selected minimum", "", Scale::None,
         readSelected<Inputs::SelectedMin>, UsualInputs::minima},
        {"max", "selectedMax", "selected maximum", "", Scale::None,
         readSelected<Inputs::SelectedMax>, UsualInputs::maxima},
    };
    return axes;
}

const InputAxis& InputAxis::named(const std::string& option, const std::string& name) {
    std::vector<std::string> names;
    for (const InputAxis& axis : all()) {
        names.push_back(axis.name());
    }
    const std::string known = Arguments::word(option, name, names);
    const auto found = std::find(names.begin(), names.end(), known);
    return all()[static_cast<std::size_t>(std::distance(names.begin(), found))];
}

const InputAxis& InputAxis::of(const Inputs::Value& value) {
    return all()[value.index()];
}

std::string InputAxis::heading() const {
    return m_unit.empty() ? m_words : m_words + " in " + m_unit;
}

std::vector<std::string> InputAxis::expanded(const std::string& option,
                                             const std::string& piece) const {
    if (m_scale == Scale::None || piece.find(rangeDots) == std::string::npos) {
        return {piece};
    }
    const Range range(piece);
    // Refuses what is no value of this axis, so that the numbers below are small enough.
    static_cast<void>(m_read(option, range.first));
    static_cast<void>(m_read(option, range.last));
    const auto number = [this](const std::string& text) {
        const std::optional<std::int64_t> hundredths = ::Decibels::parse(text);
        const bool isWhole = hundredths && *hundredths % oneDecibel == 0;
        return m_scale == Scale::Decibels || isWhole ? hundredths : std::nullopt;
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
        texts.push_back(m_scale == Scale::Decibels ? ::Decibels::format(value)
                                                   : std::to_string(value / oneDecibel));
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
    const std::string name = option + ' ' + m_name;
    std::vector<Inputs::Value> values;
    std::set<std::string> texts;
    for (const std::string& piece : splitAt(holdsCommas ? '/' : ',', list)) {
        for (const std::string& text : expanded(name, piece)) {
            values.push_back(m_read(name, text));
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
    std::vector<Inputs::Value> values = m_findUsual(radio);
    const std::string name = option + ' ' + m_name;
    if (values.empty()) {
        throw QuestionError(name + ": the radio file names no " + m_words + "; list the values, " +
                            name + "=LIST");
    }
    if (values.size() > maxValues) {
        refuseTooMany(name);
    }
    return values;
}

InputAxis::InputAxis(std::string name, std::string key, std::string words, std::string unit,
                     Scale scale, Read read, Find findUsual)
    : m_name(std::move(name))
    , m_key(std::move(key))
    , m_words(std::move(words))
    , m_unit(std::move(unit))
    , m_scale(scale)
    , m_read(read)
    , m_findUsual(findUsual) {}

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
    return {FieldNames{axis.m_key, axis.m_unit}.inJson(), std::visit(DatumMaker(), value)};
}
