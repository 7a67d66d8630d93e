#pragma once

#include <cstdlib>
#include <string>

/// Of how many cases of a long loop one is tried: as many as this build takes unless the
/// environment's QOR_LOOP_STRIDE says otherwise, 1 for every case.
inline unsigned loopStride() {
    static const unsigned stride = [] {
        const char* const wanted = std::getenv("QOR_LOOP_STRIDE");
        const unsigned long number = wanted != nullptr ? std::stoul(wanted) : QOR_USUAL_LOOP_STRIDE;
        return number > 0 ? static_cast<unsigned>(number) : 1U;
    }();
    return stride;
}
