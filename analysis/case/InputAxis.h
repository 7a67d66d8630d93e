#pragma once

#include "Datum.h"
#include "Inputs.h"
#include "PowerTableQuery.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One input of a radio: its name on the command line and the values that it can have.
class InputAxis {
public:
    /// rsec, market, dpd, channel-spacing, cutback, temporary-cutback, booster, product, min, max.
    static const std::vector<InputAxis>& all();

    /// @param option that names it, for the message.
    /// @throw QuestionError for an unknown name, with the nearest known one.
    static const InputAxis& named(std::string_view option, std::string_view name);

    /// The axis that a value belongs to.
    static const InputAxis& of(const Inputs::Value& value);

    /// A value as a member of an object for programs: "channelSpacingMHz", "cutbackCentiDb",
    /// "booster" ... Nothing for what is not in force or not there.
    static std::pair<std::string, Datum> memberOf(const Inputs::Value& value);

    /// A value for people, with its unit where it has one: "28 MHz", "1.50 dB".
    static std::string labelOf(const Inputs::Value& value);

    const std::string& name() const { return m_is.name; }   ///< "channel-spacing"
    const std::string& words() const { return m_is.words; } ///< "channel spacing"
    const std::string& unit() const { return m_is.unit; }   ///< "MHz" or "dB"; empty: none
    std::string heading() const;                            ///< "channel spacing in MHz"

    /// A list of values. Numbers may be ranges: "0..6:0.5,10" is 0, 0.5 ... 6 and 10. Boosters hold
    /// commas and are separated by "/".
    /// @throw QuestionError for what is no value, a value given twice and more than `maxValues`.
    std::vector<Inputs::Value> valuesOf(const std::string& option, const std::string& list) const;

    /// The values that make sense for a radio where none are listed.
    /// @throw QuestionError where there are none, for example no booster to leave away.
    std::vector<Inputs::Value> usualValues(const std::string& option, const RadioCase& radio) const;

    static constexpr std::size_t maxValues = 256;

private:
    /// What its values count, for ranges.
    enum class Scale {
        None, ///< no numbers
        Integers,
        Decibels
    };

    /// Reads one value.
    using Read = Inputs::Value (*)(const std::string& option, const std::string& text);
    /// Finds the usual values of a radio.
    using Find = std::vector<Inputs::Value> (*)(const RadioCase& radio);

    /// What tells one axis from another.
    struct Description {
        std::string name;
        std::string key; ///< of a JSON object, without the unit
        std::string words;
        std::string unit;
        Scale scale;
        Read read;
        Find findUsual;
    };

    InputAxis(Description description)
        : m_is(std::move(description)) {}

    /// The values of a range, or the piece itself if it is none.
    std::vector<std::string> expanded(const std::string& option, const std::string& piece) const;
    [[noreturn]] static void refuseTooMany(const std::string& option);

    Description m_is;
};
