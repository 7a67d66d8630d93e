#pragma once

#include "AnalysisError.h"
#include "Arguments.h"
#include "InputAxis.h"
#include "TextLook.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The powers of a radio over one or two of its inputs. Every point is a node and a service of its
/// own with the changed inputs.
struct Sweep {
    /// An input and the values that it takes.
    struct Line {
        const InputAxis* axis;
        std::vector<Inputs::Value> values;
    };

    struct Point {
        std::vector<Inputs::Value> values; ///< one for each line
        RuledTable powers;                 ///< without rows where the service did not start
        std::string trouble;               ///< why there are no powers at all; empty if there are
        Outcome outcome = Outcome::Done;
    };

    /// More points, and more powers in all, than anybody reads would keep the machine busy.
    static constexpr std::size_t maxPoints = 4096;
    static constexpr std::size_t maxPowers = 32768;

    /// What is said to be varied: "AXIS" or "AXIS=LIST", once or twice.
    /// @param asked what is swept cannot be fixed there.
    /// @throw QuestionError
    static std::vector<Line> linesOf(const std::vector<std::string>& overs,
                                     const AskedInputs& asked, const RadioCase& radio);

    /// Asks for the powers of the radio as it is and at every point. A point that fails does not
    /// stop the others.
    /// @throw AnalysisError if the radio's service does not start at all, QuestionError if there
    /// are
    ///        too many powers.
    static Sweep run(const RadioCase& radio, std::vector<Line> lines);

    /// Why points have no powers, and what does not add up, one line each.
    std::vector<std::string> troubles() const;

    /// The worst outcome of the points.
    Outcome outcome() const;

    /// The point with a value of each line.
    const Point& at(std::size_t first, std::size_t second = 0) const;

    PowerTable asIs;           ///< the radio without a change
    std::vector<Line> lines;   ///< one or two
    std::vector<Point> points; ///< the first line's values run fastest
};

/// A sweep for people: what all powers have in common, then one column for each value of the first
/// input, and one block for each value of the second.
std::string textForm(const Sweep& sweep, const TextLook& look = {});

/// A sweep for spreadsheets, in long form: one line for each modulation-and-code of each point.
std::string csvForm(const Sweep& sweep);

/// A sweep for programs: one JSON object and a line end.
std::string jsonForm(const Sweep& sweep);
