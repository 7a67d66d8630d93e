#pragma once

#include "DocumentEdit.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "ModulationAndCoding.h"
#include "PowerTableQuery.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Values of command-line options, from their text. What cannot be read is a QuestionError that
/// names the option, shows the text and says what is wanted.
namespace Arguments {

/// The word for an input that is not there: no cutback in force, no booster, no product number.
inline constexpr const char* none = "none";

/// A decimal integer within a range.
std::int64_t integer(const std::string& option, const std::string& text, std::int64_t least,
                     std::int64_t greatest);

/// A cutback in dB with at most two decimals, as hundredths; 0 to 42949672.95 dB.
std::uint32_t cutback(const std::string& option, const std::string& text);

/// Likewise, or "none" for a temporary cutback that is not in force.
OperatingInputs::TemporaryCutback temporaryCutback(const std::string& option,
                                                   const std::string& text);

/// "PRESENCE,GAIN,MAXINPUT,MAXMODULATION", or "none".
OperatingInputs::Booster booster(const std::string& option, const std::string& text);

/// A power in dBm with at most two decimals, as hundredths; of 32 bits.
std::int32_t power(const std::string& option, const std::string& text);

/// The text of a class; "UNDEFINED" leaves the choice to the system power controller.
EReferenceSEC rsec(const std::string& option, const std::string& text);

/// The text of a market.
EFrameFormatMarket market(const std::string& option, const std::string& text);

/// The text of a modulation-and-code; "UNDEFINED" is none.
ModulationAndCoding modulationAndCode(const std::string& option, const std::string& text);

/// A modulation or code in the spelling of the radio file, if it is written as others write it:
/// "QPSK" is "4QAM", "QAM64" and "64-QAM" are "64QAM", in small letters too.
std::string usualSpelling(std::string_view text);

/// One word out of a list.
std::string word(const std::string& option, const std::string& text,
                 const std::vector<std::string>& known);

/// The parts of a list; an empty text is one empty part.
std::vector<std::string> splitAt(char separator, std::string_view text);

} // namespace Arguments

/// Which powers are asked for and under which operating inputs, as texts, the way a command line or
/// a form has them. What is not given is left to the radio file.
struct AskedInputs {
    std::optional<std::string> frameFormat;      ///< id; 0 is the configured one
    std::optional<std::string> cutback;          ///< in dB
    std::optional<std::string> temporaryCutback; ///< in dB, or "none"
    std::optional<std::string> booster; ///< "PRESENCE,GAIN,MAXINPUT,MAXMODULATION", or "none"
    std::optional<std::string> rsec;
    std::optional<std::string> min;     ///< of the selected range, a modulation-and-code
    std::optional<std::string> max;     ///< likewise
    std::optional<std::string> request; ///< in whose place is asked, counted from 0
    std::vector<std::string> set = {};  ///< "POINTER=VALUE": changes of the radio file, see
                                        ///< DocumentEdit

    /// What messages put before the name of an input: "--" where it is an option of a command line.
    std::string prefix = {};

    /// Whether nothing is set.
    bool isEmpty() const;

    /// What can be read without the radio; of a request nothing can.
    /// @throw QuestionError for what cannot be read.
    PowerTableQuery query() const;

    /// The radio of a radio file's text, and what is asked of it: changed by `set`, and as it is at
    /// the request.
    /// @throw QuestionError; RadioFileError, also for a change that the file cannot take.
    RadioCase radio(std::string_view text, const std::string& name) const;

private:
    std::vector<DocumentEdit> edits() const;
};
