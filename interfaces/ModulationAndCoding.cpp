#include "ModulationAndCoding.h"

#include "private/Literals.h"
#include "private/ModulationOfCode.h"

static_assert(static_cast<Modulation>(Codes::undefinedModulation) == Modulation::UNDEFINED,
              "the codes' table counts in the numbers of the modulations");

const char* literalOf(const ModulationAndCoding& modulationAndCoding) {
    for (const Codes::CodeRow& row : Codes::codeRows) {
        if (row.code == modulationAndCoding.code) {
            return row.text;
        }
    }
    return "UNDEFINED";
}

std::string convertCodeAndModulationEnumToString(const ModulationAndCoding& modulationAndCoding) {
    return literalOf(modulationAndCoding);
}

Modulation convertCodeToModulation(const ModulationAndCoding& modulationAndCoding) {
    return static_cast<Modulation>(Codes::modulationOf(modulationAndCoding.code));
}
