#include "QueryOptions.h"

#include "Arguments.h"
#include "TextForms.h"

#include <cstdint>
#include <limits>

std::vector<CommandOption> QueryOptions::describe() {
    return {
        {"--frame-format", "ID",
         "Frame format of the hardware configuration; 0, the default, is the configured one",
         &frameFormat},
        {"--cutback", "DB", "Permanent power cutback in dB, for example 1.5", &cutback},
        {"--temporary-cutback", "DB",
         "Temporary power cutback in dB, in force instead of the permanent one; none lifts it",
         &temporaryCutback},
        {"--booster", "BOOSTER",
         "PRESENCE,GAIN,MAXINPUT,MAXMODULATION: a number, gain in dB, highest input power in dBm, "
         "highest modulation; none removes it",
         &booster},
        {"--rsec", "CLASS",
         "Reference spectral efficiency class, for example 4L; otherwise that of the system power "
         "controller",
         &rsec, false, CommandOption::Completion::Words, referenceSecTextForms().texts()},
    };
}

PowerTableQuery QueryOptions::query() const {
    PowerTableQuery query;
    if (frameFormat) {
        query.frameFormatId = static_cast<std::int32_t>(Arguments::integer(
            "--frame-format", *frameFormat, 0, std::numeric_limits<std::int32_t>::max()));
    }
    if (cutback) {
        query.inputs.permanentCutback = Arguments::cutback("--cutback", *cutback);
    }
    if (temporaryCutback) {
        query.inputs.temporaryCutback =
            Arguments::temporaryCutback("--temporary-cutback", *temporaryCutback);
    }
    if (booster) {
        query.inputs.booster = Arguments::booster("--booster", *booster);
    }
    if (rsec) {
        query.rsec = Arguments::rsec("--rsec", *rsec);
    }
    return query;
}
