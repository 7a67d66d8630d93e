#pragma once

#include <string>

/// A whole query of the first outdoor family, as a node writes it: 20.00 + 0.50 - 3.00 + 2.00.
inline std::string textLog(const std::string& before) {
    const std::string folder = "Control/OutputPowerCalculator/private/";
    const std::string enter = before + " 6 enter " + folder + "OutputPowerCalculator:1 ";
    const std::string detail = before + " 6 msg " + folder + "OutputPowerCalculator:1 ";
    const std::string family = before + " 5 msg " + folder + "CalculatorKam:1 getMaxPower: ";
    const std::string table = enter + "getMaxPowerArray: dpdVersion=1, market=Etsi\n";
    const std::string lookUp = enter + "getMaxPower: dpdVersion=1, market=Etsi, modulationType=";
    const std::string cut = enter + "applyCutbackToMaxPower: \n";
    const std::string select = detail + "getCalculator: Using KaM max power algorithm\n";
    return enter +
           "calculateAdmodPowerCapabilities: actualModulation=16QAM, "
           "convertRsecEnumToString(rsec)=2\n" +
           enter + "limitMaxModDueToRadioCapability: 0\n" + detail +
           "limitMaxModDueToRadioCapability:  usePerformaceProfiles: No\n" + detail +
           "limitMaxModDueToRadioCapability:  modemMaxAvailableModulation: 256QAM "
           "radioMaxAvailableModulation: 256QAM\n" +
           select + before + " 6 enter " + folder +
           "CalculatorKam:1 getCompensationForChannelSpacing: 28\n" + enter +
           "getAdModMaxPower: dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
           "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, actualMod=16QAM, "
           "csPowerCompensation=50\n" +
           cut + lookUp + "4QAM\n" + table + cut + lookUp + "16QAM\n" + table + cut + select +
           lookUp + "256QAM\n" + table + table + family +
           "getMaxPower std::min parameters: 2200,2050,1950,2400\n" + family +
           "getMaxPower Max power for modulation 16QAM, rsec 0 and max modulation 2000 = 1950\n" +
           enter + "getMinOutputPower: 28\n";
}

/// The start of a service, likewise.
inline std::string startIn(const std::string& before, int channel) {
    const std::string source = " Control/OutputPowerCalculator/private/OutputPowerCalculator:1 ";
    return before + " 6 enter" + source + "initialize: \n" + before + " 5 raw" + source +
           "initialize: started for channel " + std::to_string(channel) + "\n";
}
