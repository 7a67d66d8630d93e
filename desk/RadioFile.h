#pragma once

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "NodeAnswers.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <variant>
#include <vector>

/// The calls that a radio file can request, one record each, `name` being the text that selects it.
/// Powers and gains in hundredths of a dB or dBm.
namespace Calls {

struct Initialize {
    static constexpr const char* name = "initialize";
};

struct SetPowerCutback {
    static constexpr const char* name = "setPowerCutback";
    std::uint32_t cutback;
};

struct SetTemporaryPowerCutback {
    static constexpr const char* name = "setTemporaryPowerCutback";
    bool use;
    std::uint32_t cutback;
};

struct SetTemperature {
    static constexpr const char* name = "setTemperature";
    std::int32_t temperature;
};

struct SetBoosterPresence {
    static constexpr const char* name = "setBoosterPresence";
    std::int32_t presence;
    std::int32_t gain;
    std::int32_t maxInputPower;
    Modulation maxModulation;
};

struct CalculatePowerCapabilities {
    static constexpr const char* name = "calculatePowerCapabilities";
    Modulation modulation;
};

struct CalculateAdmodPowerCapabilities {
    static constexpr const char* name = "calculateAdmodPowerCapabilities";
    Modulation modulation;
    EReferenceSEC rsec;
};

struct FindPminPmax {
    static constexpr const char* name = "findPminPmax";
};

struct GetUnrestrictedPmax {
    static constexpr const char* name = "getUnrestrictedPmax";
};

struct GetMinMaxOutputPowerVsModulationArray {
    static constexpr const char* name = "getMinMaxOutputPowerVsModulationArray";
    std::int32_t frameFormatId = 0;
    ModulationAndCoding minModulationAndCode{ModulationAndCoding::UNDEFINED};
    ModulationAndCoding maxModulationAndCode{ModulationAndCoding::UNDEFINED};
    EReferenceSEC referenceSec = EReferenceSEC::UNDEFINED;
    std::map<ModulationAndCoding, long> powerMap; ///< the map's entries before the call
};

/// The node answers differently from here on.
struct Patch {
    static constexpr const char* name = "patch";
    NodeAnswers answers; ///< all answers of the patched file, changed or not
};

using Any =
    std::variant<Initialize, SetPowerCutback, SetTemporaryPowerCutback, SetTemperature,
                 SetBoosterPresence, CalculatePowerCapabilities, CalculateAdmodPowerCapabilities,
                 FindPminPmax, GetUnrestrictedPmax, GetMinMaxOutputPowerVsModulationArray, Patch>;

} // namespace Calls

/// One request of a radio file.
struct Request {
    Calls::Any call;
    std::int32_t preset = 0; ///< what every power output holds before the call

    /// The answer that was recorded, as JSON: keys of the line that replay prints; empty: none.
    std::string expect{};
};

/// A radio file, read and checked: a node, and what to ask of the service in it.
struct RadioFile {
    std::uint32_t channel = 1; ///< the number that the service is built with
    NodeAnswers node;
    std::vector<Request> requests;

    /// Keys of the Pmax tables that the file gives as flat integers, not as rows: the same table
    /// stands in another place then.
    std::set<std::string> flatPmaxTables;

    std::vector<std::string> notes; ///< what whoever wrote the file has to say of it
};
