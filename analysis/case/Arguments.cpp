#include "Arguments.h"

#include "AnalysisError.h"
#include "Decibels.h"
#include "OneLine.h"
#include "RadioFileReader.h"
#include "Suggestion.h"
#include "TextForms.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <set>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

namespace {

constexpr const char* requestName = "request";

/// One value that an option asks for: what messages call it, and what was given.
struct Given {
    std::string name;
    std::string text;

    [[noreturn]] void refuse(const std::string& why) const {
        throw QuestionError(name + " " + inQuotes(text) + ": " + why);
    }
};

std::int64_t integerOf(const Given& value, std::int64_t least, std::int64_t greatest) {
    std::int64_t number = 0;
    const char* const end = value.text.data() + value.text.size();
    const auto [rest, error] = std::from_chars(value.text.data(), end, number);
    if (rest != end || error == std::errc::invalid_argument) {
        value.refuse("an integer is wanted");
    }
    if (error == std::errc::result_out_of_range || number < least || number > greatest) {
        value.refuse("out of range, " + std::to_string(least) + " to " + std::to_string(greatest));
    }
    return number;
}

/// @param unit "dB" or "dBm".
std::int64_t decibelsOf(const Given& value, const std::string& unit, std::int64_t least,
                        std::int64_t greatest) {
    const std::optional<std::int64_t> hundredths = Decibels::parse(value.text);
    if (!hundredths) {
        value.refuse("a decimal number of " + unit +
                     " with at most two decimals is wanted, for example 1.5");
    }
    if (*hundredths < least || *hundredths > greatest) {
        value.refuse("out of range, " + Decibels::format(least) + " to " +
                     Decibels::format(greatest) + " " + unit);
    }
    return *hundredths;
}

std::int32_t decibels32Of(const Given& value, const std::string& unit) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(decibelsOf(value, unit, Limits::min(), Limits::max()));
}

std::uint32_t cutbackOf(const Given& value) {
    using Limits = std::numeric_limits<std::uint32_t>;
    return static_cast<std::uint32_t>(decibelsOf(value, "dB", Limits::min(), Limits::max()));
}

template <class Enumeration>
Enumeration enumeratorOf(const Given& value, const TextForms<Enumeration>& forms) {
    std::optional<Enumeration> found = forms.find(value.text);
    if constexpr (std::is_same_v<Enumeration, Modulation> ||
                  std::is_same_v<Enumeration, ModulationAndCoding>) {
        found = found ? found : forms.find(Arguments::usualSpelling(value.text));
    }
    if (!found) {
        value.refuse("unknown " + forms.noun() + "; " +
                     Suggestion::remedy(value.text, forms.texts()));
    }
    return *found;
}

} // namespace

std::int64_t Arguments::integer(const std::string& option, const std::string& text,
                                std::int64_t least, std::int64_t greatest) {
    return integerOf({option, text}, least, greatest);
}

std::uint32_t Arguments::cutback(const std::string& option, const std::string& text) {
    return cutbackOf({option, text});
}

OperatingInputs::TemporaryCutback Arguments::temporaryCutback(const std::string& option,
                                                              const std::string& text) {
    if (text == none) {
        return {false, 0};
    }
    return {true, cutbackOf({option, text})};
}

OperatingInputs::Booster Arguments::booster(const std::string& option, const std::string& text) {
    if (text == none) {
        return {};
    }
    const std::vector<std::string> parts = splitAt(',', text);
    constexpr std::size_t count = 4;
    if (parts.size() != count) {
        Given{option, text}.refuse("PRESENCE,GAIN,MAXINPUT,MAXMODULATION or none is wanted, for "
                                   "example 1,15,14,256QAM");
    }
    using Limits = std::numeric_limits<std::int32_t>;
    OperatingInputs::Booster booster;
    booster.presence = static_cast<std::int32_t>(
        integerOf({option + " PRESENCE", parts[0]}, Limits::min(), Limits::max()));
    booster.gain = decibels32Of({option + " GAIN", parts[1]}, "dB");
    booster.maxInputPower = decibels32Of({option + " MAXINPUT", parts[2]}, "dBm");
    booster.maxModulation =
        enumeratorOf({option + " MAXMODULATION", parts[3]}, modulationTextForms());
    return booster;
}

std::int32_t Arguments::power(const std::string& option, const std::string& text) {
    return decibels32Of({option, text}, "dBm");
}

EReferenceSEC Arguments::rsec(const std::string& option, const std::string& text) {
    return enumeratorOf({option, text}, referenceSecTextForms());
}

EFrameFormatMarket Arguments::market(const std::string& option, const std::string& text) {
    return enumeratorOf({option, text}, marketTextForms());
}

ModulationAndCoding Arguments::modulationAndCode(const std::string& option,
                                                 const std::string& text) {
    return enumeratorOf({option, text}, modulationAndCodeTextForms());
}

std::string Arguments::usualSpelling(std::string_view text) {
    std::string word;
    for (const char letter : text) {
        const bool isSmall = letter >= 'a' && letter <= 'z';
        if (letter != '-') {
            word += isSmall ? static_cast<char>(letter - 'a' + 'A') : letter;
        }
    }
    const std::string_view name = "QAM";
    if (word.starts_with("QPSK")) {
        word.replace(0, 4, "4QAM");
    } else if (word.starts_with(name)) {
        const std::size_t end =
            std::min(word.find_first_not_of("0123456789", name.size()), word.size());
        word = word.substr(name.size(), end - name.size()) + std::string(name) + word.substr(end);
    }
    return word;
}

std::string Arguments::word(const std::string& option, const std::string& text,
                            const std::vector<std::string>& known) {
    if (std::ranges::find(known, text) != known.end()) {
        return text;
    }
    Given{option, text}.refuse("unknown; " + Suggestion::remedy(text, known));
}

std::vector<std::string> Arguments::splitAt(char separator, std::string_view text) {
    std::vector<std::string> parts;
    while (true) {
        const std::size_t comma = text.find(separator);
        parts.emplace_back(text.substr(0, comma));
        if (comma == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(comma + 1);
    }
}

bool AskedInputs::isEmpty() const {
    return set.empty() &&
           std::ranges::none_of(std::array{&frameFormat, &cutback, &temporaryCutback, &booster,
                                           &rsec, &min, &max, &request},
                                [](const auto* value) { return value->has_value(); });
}

PowerTableQuery AskedInputs::query() const {
    PowerTableQuery query;
    if (frameFormat) {
        query.frameFormatId = static_cast<std::int32_t>(Arguments::integer(
            prefix + "frame-format", *frameFormat, 0, std::numeric_limits<std::int32_t>::max()));
    }
    if (cutback) {
        query.inputs.permanentCutback = Arguments::cutback(prefix + "cutback", *cutback);
    }
    if (temporaryCutback) {
        query.inputs.temporaryCutback =
            Arguments::temporaryCutback(prefix + "temporary-cutback", *temporaryCutback);
    }
    if (booster) {
        query.inputs.booster = Arguments::booster(prefix + "booster", *booster);
    }
    if (rsec) {
        query.rsec = Arguments::rsec(prefix + "rsec", *rsec);
    }
    if (min) {
        query.min = Arguments::modulationAndCode(prefix + "min", *min);
    }
    if (max) {
        query.max = Arguments::modulationAndCode(prefix + "max", *max);
    }
    if (request) {
        static_cast<void>(Arguments::integer(prefix + requestName, *request, 0,
                                             std::numeric_limits<std::int32_t>::max()));
    }
    static_cast<void>(edits());
    return query;
}

std::vector<DocumentEdit> AskedInputs::edits() const {
    std::vector<DocumentEdit> edits;
    for (const std::string& text : set) {
        const std::optional<DocumentEdit> edit = DocumentEdit::read(text);
        if (!edit) {
            Given{prefix + "set", text}.refuse(
                "POINTER=VALUE is wanted, for example /frameFormat/channelSpacing=28");
        }
        edits.push_back(*edit);
    }
    return edits;
}

RadioCase AskedInputs::radio(std::string_view text, const std::string& name) const {
    RadioCase radio{RadioFileReader::read(text, {edits(), request.has_value()}), query(), name};
    if (!request) {
        return radio;
    }
    const std::vector<Request>& requests = radio.file.requests;
    const auto index = static_cast<std::size_t>(Arguments::integer(
        prefix + requestName, *request, 0, std::numeric_limits<std::int32_t>::max()));
    if (index >= requests.size()) {
        Given{prefix + requestName, *request}.refuse(requests.empty()
                                                         ? "the radio file has no requests"
                                                         : "the radio file has requests 0 to " +
                                                               std::to_string(requests.size() - 1));
    }
    std::set<std::string> given;
    for (const auto& [option, value] :
         {std::pair{"frame-format", &frameFormat}, {"rsec", &rsec}, {"min", &min}, {"max", &max}}) {
        if (*value) {
            given.insert(option);
        }
    }
    const std::string refused = radio.query.askAt(index, requests[index], given);
    if (!refused.empty()) {
        throw QuestionError(prefix + refused + ": " + radio.query.request->words +
                            " has no such argument; " + prefix +
                            "set changes what the node answers");
    }
    radio.file = radio.file.at(index);
    return radio;
}
