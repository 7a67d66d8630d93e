#pragma once

#include "PowerTableQuery.h"

#include <optional>
#include <string>

/// Which powers are asked for and under which operating inputs, as texts, the way a command line or
/// a form has them. What is not given is left to the radio file.
struct AskedInputs {
    std::optional<std::string> frameFormat;      ///< id; 0 is the configured one
    std::optional<std::string> cutback;          ///< in dB
    std::optional<std::string> temporaryCutback; ///< in dB, or "none"
    std::optional<std::string> booster; ///< "PRESENCE,GAIN,MAXINPUT,MAXMODULATION", or "none"
    std::optional<std::string> rsec;

    /// What messages put before the name of an input: "--" where it is an option of a command line.
    std::string prefix = {};

    /// @throw QuestionError for what cannot be read.
    PowerTableQuery query() const;
};
