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

} // namespace traced
