#include "AskedInputs.h"

#include "Arguments.h"

#include <cstdint>
#include <limits>

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
    return query;
}
