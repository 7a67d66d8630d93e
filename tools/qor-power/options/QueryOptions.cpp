#include "QueryOptions.h"

#include "TextForms.h"

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
