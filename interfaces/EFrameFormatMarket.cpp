#include "EFrameFormatMarket.h"

#include <ostream>

std::ostream& operator<<(std::ostream& stream, EFrameFormatMarket market) {
    switch (market) {
    case EFrameFormatMarket::Etsi:
        return stream << "Etsi";
    case EFrameFormatMarket::Ansi:
        return stream << "Ansi";
    case EFrameFormatMarket::Global:
        return stream << "Global";
    case EFrameFormatMarket::Unknown:
        return stream << "Unknown";
    }
    return stream;
}
