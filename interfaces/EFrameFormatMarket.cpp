#include "EFrameFormatMarket.h"

#include "private/Literals.h"

#include <ostream>

const char* literalOf(EFrameFormatMarket market) {
    switch (market) {
    case EFrameFormatMarket::Etsi:
        return "Etsi";
    case EFrameFormatMarket::Ansi:
        return "Ansi";
    case EFrameFormatMarket::Global:
        return "Global";
    case EFrameFormatMarket::Unknown:
        return "Unknown";
    }
    return "";
}

std::ostream& operator<<(std::ostream& stream, EFrameFormatMarket market) {
    const char* const text = literalOf(market);
    return *text == '\0' ? stream : stream << text;
}
