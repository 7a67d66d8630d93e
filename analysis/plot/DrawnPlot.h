#pragma once

#include "AnalysisError.h"
#include "AskedInputs.h"
#include "PowerPlot.h"
#include "RadioCase.h"

#include <string>
#include <vector>

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
