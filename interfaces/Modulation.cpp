#include "Modulation.h"

#include "private/Literals.h"

#include <ostream>

const char* literalOf(Modulation modulation) {
    switch (modulation) {
    case Modulation::CW:
        return "CW";
    case Modulation::BPSK:
        return "BPSK";
    case Modulation::QAM4:
        return "4QAM";
    case Modulation::QAM16:
        return "16QAM";
    case Modulation::QAM32:
        return "32QAM";
    case Modulation::QAM64:
        return "64QAM";
    case Modulation::QAM128:
        return "128QAM";
    case Modulation::QAM256:
        return "256QAM";
    case Modulation::QAM512:
        return "512QAM";
    case Modulation::QAM1024:
        return "1024QAM";
    case Modulation::QAM2048:
        return "2048QAM";
    case Modulation::QAM4096:
        return "4096QAM";
    case Modulation::QAM8192:
        return "8192QAM";
    case Modulation::QAM16384:
        return "16384QAM";
    case Modulation::QAM65536:
        return "65536QAM";
    case Modulation::UNDEFINED:
        break;
    }
    return "UNDEFINED";
}

std::string convertAcmEnumToString(Modulation modulation) {
    return literalOf(modulation);
}

std::ostream& operator<<(std::ostream& stream, Modulation modulation) {
    return stream << literalOf(modulation);
}
