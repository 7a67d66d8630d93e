#pragma once

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "NodeAnswers.h"

#include <cstddef>
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

    // Where the reader is to keep places; else empty.
    std::vector<std::string> replaced = {};    ///< JSON Pointers of what it replaces as a whole
    std::set<std::string> flatPmaxTables = {}; ///< as in RadioFile, of the patched file
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
    /// Where a patch holds what it has replaced, by the pointer of the place that it took.
    std::map<std::string, std::string> patched;

    /// The JSON Pointer of a value of the node: in the file's own sections, or in the patch that
    /// has set it last.
    std::string placeOf(const std::vector<std::string>& path) const;

    /// The node as a query finds it that is put in place of a request: the patches before that one
    /// are made, and of the Pmax tables and the minimum output power those count that the service
    /// fetched when it started last. Of the requests those before it are left.
    /// @param request less than there are requests. The file was read with its places kept.
    RadioFile at(std::size_t request) const;
};
