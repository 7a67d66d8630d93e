#include "Scenario.h"

#include <algorithm>

const std::vector<ModulationAndCoding>& allCodes() {
    static const std::vector<ModulationAndCoding> codes = {
        {10},  {11},  {12},  {20},  {21},  {22},  {23},  {30},  {31},  {32},  {33},
        {40},  {41},  {42},  {50},  {51},  {52},  {53},  {60},  {61},  {62},  {70},
        {71},  {72},  {73},  {80},  {81},  {82},  {90},  {91},  {92},  {93},  {100},
        {101}, {102}, {110}, {111}, {112}, {113}, {120}, {121}, {122}, {130}, {131},
        {132}, {133}, {140}, {141}, {142}, {143}, {160}, {161}, {162}};
    return codes;
}

Scenario scenarioOf(const std::string& name, const std::string& productNumber,
                    std::size_t codeCount, std::size_t firstCode) {
    Scenario scenario;
    scenario.name = name;
    scenario.productNumber = productNumber;
    int power = 2600;
    for (const int modulation :
         {2, 4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 65536}) {
        scenario.pmaxTable.push_back(modulation);
        scenario.pmaxTable.push_back(power);
        power -= 100;
    }
    scenario.pmaxCount = static_cast<int>(scenario.pmaxTable.size());
    const auto first = allCodes().begin() + static_cast<std::ptrdiff_t>(firstCode);
    scenario.modulationAndCodes.assign(first, first + static_cast<std::ptrdiff_t>(codeCount));
    return scenario;
}

Scenario withoutPmaxOf64Qam(Scenario scenario, std::size_t codeCount) {
    std::vector<int>& table = scenario.pmaxTable;
    const auto row = std::find(table.begin(), table.end(), static_cast<int>(Modulation::QAM64));
    table.erase(row, row + 2);
    scenario.pmaxCount = static_cast<int>(table.size());
    const std::vector<ModulationAndCoding> codesOf64Qam = {{53}, {60}, {61}, {62}};
    std::vector<ModulationAndCoding>& codes = scenario.modulationAndCodes;
    const auto begin = std::find(codes.begin(), codes.end(), codesOf64Qam.front());
    codes.erase(begin + static_cast<std::ptrdiff_t>(codeCount), begin + 4);
    return scenario;
}

Scenario withBoosterAndCutback(Scenario scenario) {
    scenario.cutback = 300;
    scenario.boosterPresence = 1;
    scenario.boosterGain = 1500;
    scenario.boosterMaxInputPower = 1400;
    scenario.boosterMaxModulation = Modulation::QAM4096;
    return scenario;
}
