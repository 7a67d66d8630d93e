#include "CodePicker.h"

#include "ResultCode.h"

#include <map>

CodePicker::CodePicker(const IOutputPowerCalculator& calculator)
    : m_calculator(calculator) {}

std::optional<ModulationAndCoding> CodePicker::highestCodeWith(long power) const {
    const ModulationAndCoding asSelected{ModulationAndCoding::UNDEFINED};
    long minOutputPower = 0;
    std::map<ModulationAndCoding, long> powerMap;
    const unsigned result = m_calculator.getMinMaxOutputPowerVsModulationArray(
        0, asSelected, asSelected, EReferenceSEC::UNDEFINED, minOutputPower, powerMap);
    if (ResultCode::isFailure(result)) {
        return std::nullopt;
    }
    for (auto entry = powerMap.rbegin(); entry != powerMap.rend(); ++entry) {
        if (entry->second >= power) {
            return entry->first;
        }
    }
    return std::nullopt;
}
