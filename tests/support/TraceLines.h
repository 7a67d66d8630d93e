#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// Expected trace lines, in the form of TraceCapture::lines(). `function` is one of
/// OutputPowerCalculator's.
namespace traced {

inline std::string enter(const std::string& function, const std::string& text = "") {
    return "6 enter OutputPowerCalculator." + function + ": " + text;
}

inline std::string msg(int level, const std::string& function, const std::string& text) {
    return std::to_string(level) + " msg OutputPowerCalculator." + function + ": " + text;
}

/// The two entries of a Pmax look-up.
inline std::vector<std::string> lookUp(const std::string& dpdVersion, const std::string& market,
                                       const std::string& modulation) {
    const std::string table = "dpdVersion=" + dpdVersion + ", market=" + market;
    return {enter("getMaxPower", table + ", modulationType=" + modulation),
            enter("getMaxPowerArray", table)};
}

/// What a Pmax table writes that has no row for a modulation.
inline std::string noRow(const std::string& modulation) {
    return "1 raw 0x8008 TxRfMaxPowerCapability.getPower: getPower, unknown modulation type: " +
           modulation;
}

/// The entry that belongs to each cutback.
inline std::string cutback() {
    return enter("applyCutbackToMaxPower");
}

/// The lines of a capability limit.
inline std::vector<std::string> limit(const std::string& frameFormatId,
                                      const std::string& usesProfiles, const std::string& modemMax,
                                      const std::string& radioMax) {
    const std::string function = "limitMaxModDueToRadioCapability";
    return {enter(function, frameFormatId),
            msg(6, function, " usePerformaceProfiles: " + usesProfiles),
            msg(6, function,
                " modemMaxAvailableModulation: " + modemMax +
                    " radioMaxAvailableModulation: " + radioMax)};
}

/// The lines of a compensation query to the first outdoor family that finds its variables.
inline std::vector<std::string> kamCompensation(const std::string& channelSpacing) {
    return {msg(6, "getCalculator", "Using KaM max power algorithm"),
            "6 enter CalculatorKam.getCompensationForChannelSpacing: " + channelSpacing};
}

/// What the lines of a power query to the first outdoor family say, of which nothing fails.
struct KamPower {
    std::string dpdVersion = "1";
    std::string market = "Etsi";
    std::string rsec = "2";       ///< as its text
    std::string rsecNumber = "0"; ///< as the calculator gets it
    std::string selectedMin = "4QAM";
    std::string selectedMax = "256QAM";
    std::string availableMax = "256QAM"; ///< the reference too
    std::string actual;
    std::string compensation = "150"; ///< before the cutback
    std::string parameters;           ///< the four powers of which the least counts
    std::string referencePmax = "2200";
    std::string power;
};

/// One line or several.
class Part {
public:
    Part(std::string line)
        : m_lines{std::move(line)} {}
    Part(const char* line)
        : m_lines{line} {}
    Part(std::vector<std::string> lines)
        : m_lines(std::move(lines)) {}

    const std::vector<std::string>& lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

/// All parts one after the other.
inline std::vector<std::string> sequence(std::initializer_list<Part> parts) {
    std::vector<std::string> lines;
    for (const Part& part : parts) {
        lines.insert(lines.end(), part.lines().begin(), part.lines().end());
    }
    return lines;
}

/// The lines of a power query to the first outdoor family with cutback.
inline std::vector<std::string> kamPower(const KamPower& query) {
    const std::string table = "dpdVersion=" + query.dpdVersion + ", market=" + query.market;
    const auto pmax = [&query](const std::string& modulation) {
        return lookUp(query.dpdVersion, query.market, modulation);
    };
    return sequence(
        {enter("getAdModMaxPower",
               table + ", convertRsecEnumToString(rsec)=" + query.rsec + ", selectedMinMod=" +
                   query.selectedMin + ", selectedMaxMod=" + query.selectedMax +
                   ", availableMaxMod=" + query.availableMax + ", actualMod=" + query.actual +
                   ", csPowerCompensation=" + query.compensation),
         cutback(), pmax(query.selectedMin), cutback(), pmax(query.actual), cutback(),
         msg(6, "getCalculator", "Using KaM max power algorithm"), pmax(query.availableMax),
         enter("getMaxPowerArray", table),
         "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: " + query.parameters,
         "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation " + query.actual +
             ", rsec " + query.rsecNumber + " and max modulation " + query.referencePmax + " = " +
             query.power});
}

} // namespace traced
