#pragma once

#include "PlotScale.h"
#include "Rule.h"
#include "Sweep.h"
#include "TextLook.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What a picture of powers shows: maximum power over modulation, as steps, of one radio or of one
/// radio under several values of an input. Powers in hundredths of a dBm.
struct PowerPlot {
    struct Step {
        std::optional<std::int64_t> power;
        Rule rule; ///< the binding one, or what denied the power

        bool operator==(const Step&) const = default;
    };

    /// One line of steps. Values of the input with the same powers share a line.
    struct Series {
        std::string label; ///< values of the input with their unit; empty if nothing is varied
        std::vector<Step> steps; ///< one for each modulation
        std::optional<std::int64_t> minimum;
    };

    /// More lines nobody can tell apart.
    static constexpr std::size_t maxSeries = 8;

    /// One radio as it is.
    static PowerPlot of(const RuledTable& powers);

    /// A sweep over one input, as many lines as it needs; points without any power are left out.
    static PowerPlot of(const Sweep& sweep);

    /// The conditions in lines of a width, none broken that fits into one.
    std::vector<std::string> conditionLines(std::size_t width) const;

    /// The rules that hold somewhere, in the order of the enumeration: of powers, or of what is
    /// denied.
    std::vector<Rule> rulesWhere(bool hasPower) const;

    /// Where a rule stands among those that limit and then those that deny, by which it has its
    /// letter.
    std::size_t placeOf(Rule rule) const;

    /// An axis that shows every figure.
    PlotScale scale(std::int64_t maxTicks) const;

    /// The minimum where all lines have the same.
    std::optional<std::int64_t> commonMinimum() const;

    /// The lowest and the highest figure of all, minima included; 0 without any.
    std::pair<std::int64_t, std::int64_t> extremes() const;

    std::string title;                   ///< the radio
    std::vector<std::string> conditions; ///< what the powers hold for, but for what is varied
    std::string over; ///< the input, "channel spacing in MHz"; empty if nothing is varied
    std::vector<std::string> modulations; ///< in ascending order
    std::vector<Series> series;
};

/// A picture as an SVG document: the same bytes for the same powers. It brings its own light
/// ground, so that it reads on a dark page and in print alike.
std::string svgForm(const PowerPlot& plot);

/// A picture made of block characters, at most `look.width` columns wide where that leaves
/// room for bars.
std::string blockForm(const PowerPlot& plot, const TextLook& look);

/// The letter by which a picture's legend names a rule.
std::string letterOf(std::size_t index);

/// What a picture of a radio's powers shows, and how well the queries for it went.
struct DrawnPlot {
    /// @param over nothing, or one input that is varied (see InputAxis). Of usual values that make
    ///        more lines than can be told apart some are left out.
    /// @throw AnalysisError if there is nothing to draw, QuestionError for too many lines.
    static DrawnPlot of(const RadioCase& radio, const std::vector<std::string>& over,
                        const AskedInputs& asked);

    PowerPlot plot;
    Outcome outcome = Outcome::Done;
    std::vector<std::string> troubles = {}; ///< as of a sweep
};
