#include "RadioFileReader.h"

#include "JsonPointer.h"
#include "JsonReader.h"
#include "JsonValue.h"
#include "TextForms.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <utility>

namespace {

using nlohmann::json;

/// What is expected where a result code alone can stand too.
std::string orResult(const std::string& expected) {
    return expected + " or {\"result\": N}";
}

// Values

/// A value of an enumeration, by its text forms.
template <auto forms>
auto readNamed(const JsonValue& value) {
    return value.enumeration(forms());
}

constexpr auto readModulation = readNamed<modulationTextForms>;
constexpr auto readModulationAndCode = readNamed<modulationAndCodeTextForms>;
constexpr auto readReferenceSec = readNamed<referenceSecTextForms>;
constexpr auto readMarket = readNamed<marketTextForms>;

EChannelSpacingType readChannelSpacing(const JsonValue& value) {
    return EChannelSpacingType{value.integer<std::int32_t>()};
}

EDpdVersion readDpdVersion(const JsonValue& value) {
    return EDpdVersion{value.integer<std::int32_t>()};
}

/// Makes sure that a value is a list, and not too long.
void expectList(const JsonValue& value, std::string_view what = "a list",
                std::size_t maxLength = RadioFileReader::maxListLength) {
    value.expectList(what);
    if (value.size() > maxLength) {
        value.fail("longer than " + std::to_string(maxLength) + " elements");
    }
}

template <class Read>
auto readElements(const JsonValue& value, Read read) {
    std::vector<decltype(read(value))> list;
    list.reserve(value.size());
    for (std::size_t index = 0; index < value.size(); ++index) {
        list.push_back(read(value.element(index)));
    }
    return list;
}

template <class Read>
auto readList(const JsonValue& value, Read read, std::string_view what = "a list",
              std::size_t maxLength = RadioFileReader::maxListLength) {
    expectList(value, what, maxLength);
    return readElements(value, read);
}

std::vector<ModulationAndCoding> readModulationAndCodes(const JsonValue& value) {
    return readList(value, readModulationAndCode, "a list of modulation-and-codes",
                    RadioFileReader::maxCodes);
}

std::vector<short> readProfilesIfAny(const JsonValue& object, std::string_view key) {
    if (!object.has(key)) {
        return {};
    }
    return readList(object.member(key),
                    [](const JsonValue& value) { return value.integer<std::int16_t>(); });
}

/// Reads an optional key of an object; without it the target keeps what it holds.
template <class Target, class Read>
void readIfAny(Target& target, const JsonValue& object, std::string_view key, Read read) {
    if (object.has(key)) {
        target = read(object.member(key));
    }
}

/// A list of exactly two values.
void expectPair(const JsonValue& value, std::string_view what) {
    value.expectList(what);
    if (value.size() != 2) {
        value.fail("expected " + std::string(what) + ", found a list of " +
                   std::to_string(value.size()));
    }
}

ResultOnly readResult(const JsonValue& object) {
    return {object.member("result").integer<std::uint32_t>()};
}

/// An operation's answer: {"result": N}, or what `read` makes of anything that is no object.
template <class Read>
auto readAnswer(const JsonValue& value, Read read) -> Answer<decltype(read(value))> {
    if (value.isObject()) {
        value.expectKeys({"result"});
        return readResult(value);
    }
    return read(value);
}

// The capability handler

std::vector<int> readPmaxRows(const JsonValue& value) {
    expectList(value, orResult("a list of rows, {\"integers\": [..]}"),
               RadioFileReader::maxPmaxRows);
    std::vector<int> integers;
    integers.reserve(2 * value.size());
    for (std::size_t index = 0; index < value.size(); ++index) {
        const JsonValue row = value.element(index);
        expectPair(row, "a row [modulation, power]");
        integers.push_back(static_cast<int>(readModulation(row.element(0))));
        integers.push_back(row.element(1).integer<std::int32_t>());
    }
    return integers;
}

CapabilityHandlerAnswers::Pmax readPmax(const JsonValue& value) {
    if (!value.isObject()) {
        return readPmaxRows(value);
    }
    value.expectKeys({}, {"integers", "result"});
    if (value.size() != 1) {
        value.fail("expected exactly one of \"integers\" and \"result\"");
    }
    if (value.has("result")) {
        return readResult(value);
    }
    return readList(
        value.member("integers"),
        [](const JsonValue& integer) -> int { return integer.integer<std::int32_t>(); }, "a list",
        2 * RadioFileReader::maxPmaxRows);
}

/// The profile value that a key stands for. A number has one spelling only, so that no two keys of
/// an object mean the same profile.
std::optional<short> profileOf(const std::string& key) {
    short profile = 0;
    const char* const end = key.data() + key.size();
    const std::from_chars_result parsed = std::from_chars(key.data(), end, profile);
    if (parsed.ec != std::errc() || std::to_string(profile) != key) {
        return std::nullopt;
    }
    return profile;
}

CapabilityHandlerAnswers::ModulationByProfile readModulationByProfile(const JsonValue& value) {
    if (!value.isObject()) {
        return value.enumeration(modulationTextForms(), " or an object by profile value");
    }
    std::map<short, Modulation> byProfile;
    for (const auto& [key, modulation] : value.json().items()) {
        const JsonValue member = value.member(key);
        const std::optional<short> profile = profileOf(key);
        if (!profile) {
            member.fail("key is no profile value",
                        "expected -32768 to 32767, without plus sign or leading zeros");
        }
        byProfile[*profile] = readModulation(member);
    }
    return byProfile;
}

CapabilityHandlerAnswers::ModulationByMarket readModulationByMarket(const JsonValue& value) {
    if (!value.isObject()) {
        return value.enumeration(modulationTextForms(), " or an object by market");
    }
    std::map<EFrameFormatMarket, Modulation> byMarket;
    for (const auto& [key, modulation] : value.json().items()) {
        const JsonValue member = value.member(key);
        const std::optional<EFrameFormatMarket> market = marketTextForms().find(key);
        if (!market) {
            member.failWord(marketTextForms().noun(), key, marketTextForms().texts());
        }
        byMarket[*market] = readModulation(member);
    }
    return byMarket;
}

CapabilityHandlerAnswers readCapabilityHandler(const JsonValue& value) {
    value.expectKeys({}, {"productNumber", "minOutputPower", "pmaxDpd1Etsi", "pmaxDpd2Etsi",
                          "pmaxDpd1Ansi", "pmaxDpd2Ansi", "maxAcmLimitedByHw",
                          "performanceProfileIndex", "maxModulationLimitedByHw",
                          "maxModulationWithoutLimitation"});
    CapabilityHandlerAnswers answers;
    readIfAny(answers.productNumber, value, "productNumber",
              [](const JsonValue& member) { return member.string(); });
    readIfAny(answers.minOutputPower, value, "minOutputPower", [](const JsonValue& member) {
        return readAnswer(member, [](const JsonValue& power) -> int {
            return power.integer<std::int32_t>(orResult("an integer"));
        });
    });
    for (const PmaxTableName& table : pmaxTables) {
        readIfAny(answers.*table.answer, value, table.key, readPmax);
    }
    readIfAny(answers.maxAcmLimitedByHw, value, "maxAcmLimitedByHw",
              [](const JsonValue& member) { return member.flag(); });
    readIfAny(answers.performanceProfileIndex, value, "performanceProfileIndex",
              [](const JsonValue& member) { return member.integer<std::int16_t>(); });
    readIfAny(answers.maxModulationLimitedByHw, value, "maxModulationLimitedByHw",
              readModulationByProfile);
    readIfAny(answers.maxModulationWithoutLimitation, value, "maxModulationWithoutLimitation",
              readModulationByMarket);
    return answers;
}

// The other neighbours

AcmHandlerAnswers readAcmHandler(const JsonValue& value) {
    value.expectKeys({}, {"min", "max", "result"});
    if (value.size() == 0) {
        return {};
    }
    if (value.has("result")) {
        if (value.size() != 1) {
            value.fail("expected \"result\" alone, or \"min\" and \"max\"");
        }
        return {readResult(value)};
    }
    value.expectKeys({"min", "max"});
    return {AcmHandlerAnswers::Range{readModulationAndCode(value.member("min")),
                                     readModulationAndCode(value.member("max"))}};
}

FrameFormatAnswers readFrameFormat(const JsonValue& value) {
    value.expectKeys({"modulation", "maxAvailableModulation", "modulationAndCodes",
                      "channelSpacing", "dpdVersion", "market"},
                     {"performanceProfiles", "carrierAggregationPerformanceProfiles"});
    FrameFormatAnswers answers;
    answers.modulation = readModulation(value.member("modulation"));
    answers.maxAvailableModulation = readModulation(value.member("maxAvailableModulation"));
    answers.modulationAndCodes = readModulationAndCodes(value.member("modulationAndCodes"));
    answers.channelSpacing = readChannelSpacing(value.member("channelSpacing"));
    answers.dpdVersion = readDpdVersion(value.member("dpdVersion"));
    answers.market = readMarket(value.member("market"));
    answers.performanceProfiles = readProfilesIfAny(value, "performanceProfiles");
    answers.carrierAggregationPerformanceProfiles =
        readProfilesIfAny(value, "carrierAggregationPerformanceProfiles");
    return answers;
}

SystemPowerControllerAnswers readSystemPowerController(const JsonValue& value) {
    value.expectKeys({"referenceSec", "minOutputPowerOffsets"});
    SystemPowerControllerAnswers answers;
    answers.referenceSec = readReferenceSec(value.member("referenceSec"));
    answers.minOutputPowerOffsets =
        readList(value.member("minOutputPowerOffsets"), [](const JsonValue& pair) {
            expectPair(pair, "a pair [channel spacing, offset]");
            return SystemPowerControllerAnswers::MinOutputPowerOffset{
                readChannelSpacing(pair.element(0)), pair.element(1).integer<std::int32_t>()};
        });
    return answers;
}

HardwareConfigurationHandlerAnswers::FrameFormat readHardwareFrameFormat(const JsonValue& value) {
    value.expectKeys({"id", "channelSpacing", "dpdVersion", "market", "modulationAndCodes"},
                     {"performanceProfiles", "carrierAggregationPerformanceProfiles"});
    HardwareConfigurationHandlerAnswers::FrameFormat frameFormat;
    frameFormat.id = value.member("id").integer<std::int32_t>();
    frameFormat.channelSpacing =
        readAnswer(value.member("channelSpacing"), [](const JsonValue& spacing) {
            return EChannelSpacingType{spacing.integer<std::int32_t>(orResult("an integer"))};
        });
    frameFormat.dpdVersion = readDpdVersion(value.member("dpdVersion"));
    frameFormat.market = readAnswer(value.member("market"), [](const JsonValue& market) {
        return market.enumeration(marketTextForms(), orResult(""));
    });
    frameFormat.modulationAndCodes =
        readAnswer(value.member("modulationAndCodes"), [](const JsonValue& codes) {
            return readList(codes, readModulationAndCode,
                            orResult("a list of modulation-and-codes"), RadioFileReader::maxCodes);
        });
    frameFormat.performanceProfiles = readProfilesIfAny(value, "performanceProfiles");
    frameFormat.carrierAggregationPerformanceProfiles =
        readProfilesIfAny(value, "carrierAggregationPerformanceProfiles");
    return frameFormat;
}

HardwareConfigurationHandlerAnswers readHardwareConfigurationHandler(const JsonValue& value) {
    value.expectKeys({}, {"frameFormats"});
    if (!value.has("frameFormats")) {
        return {};
    }
    return {readList(value.member("frameFormats"), readHardwareFrameFormat)};
}

// The rest of the node

NodeAnswers::Variables readVariables(const JsonValue& value) {
    value.expectObject();
    if (value.json().size() > RadioFileReader::maxVariables) {
        value.fail("more than " + std::to_string(RadioFileReader::maxVariables) + " variables");
    }
    NodeAnswers::Variables variables;
    for (const auto& [name, content] : value.json().items()) {
        const JsonValue variable = value.member(name);
        if (variable.isList()) {
            variables[name] = readList(
                variable, [](const JsonValue& element) { return element.integer<std::int32_t>(); });
            continue;
        }
        const std::int64_t single = variable.integer(std::numeric_limits<std::int32_t>::min(),
                                                     std::numeric_limits<std::uint32_t>::max(),
                                                     "an integer or a list of integers");
        // The upper half of the unsigned numbers is stored bit for bit.
        variables[name] = {static_cast<std::int32_t>(static_cast<std::uint32_t>(single))};
    }
    return variables;
}

bool readBoard(const JsonValue& value) {
    value.expectKeys({}, {"carrierAggregation"});
    return value.has("carrierAggregation") && value.member("carrierAggregation").flag();
}

void readBoardOf(const JsonValue& document, const char* key, NodeAnswers& answers) {
    answers.carrierAggregation = document.has(key) && readBoard(document.member(key));
}

/// Reads what a key of the document holds into a member of the answers; null without the key.
template <auto member, auto read>
void readInto(const JsonValue& document, const char* key, NodeAnswers& answers) {
    using Answers = decltype(read(document));
    answers.*member =
        document.has(key) ? std::make_shared<const Answers>(read(document.member(key))) : nullptr;
}

/// One key of the document that describes the node.
struct Section {
    const char* key;
    bool isNeighbour;
    void (*read)(const JsonValue& document, const char* key, NodeAnswers& answers);
};

constexpr std::array<Section, 7> sections{{
    {"board", false, readBoardOf},
    {"capabilityHandler", true, readInto<&NodeAnswers::capabilityHandler, readCapabilityHandler>},
    {"acmHandler", true, readInto<&NodeAnswers::acmHandler, readAcmHandler>},
    {"frameFormat", true, readInto<&NodeAnswers::frameFormat, readFrameFormat>},
    {"systemPowerController", true,
     readInto<&NodeAnswers::systemPowerController, readSystemPowerController>},
    {"hardwareConfigurationHandler", true,
     readInto<&NodeAnswers::hardwareConfigurationHandler, readHardwareConfigurationHandler>},
    {"variables", false, readInto<&NodeAnswers::variables, readVariables>},
}};

/// The Pmax tables of a checked document that are given as flat integers.
std::set<std::string> flatPmaxTables(const json& file) {
    std::set<std::string> flat;
    const auto handler = file.find("capabilityHandler");
    if (handler == file.end()) {
        return flat;
    }
    for (const auto& [key, value] : handler->items()) {
        if (key.starts_with("pmaxDpd") && value.is_object() && value.contains("integers")) {
            flat.insert(key);
        }
    }
    return flat;
}

std::vector<std::string_view> optionalKeys() {
    std::vector<std::string_view> keys;
    keys.reserve(sections.size() + 2);
    for (const Section& section : sections) {
        keys.emplace_back(section.key);
    }
    keys.emplace_back("notes");
    keys.emplace_back("requests");
    return keys;
}

/// What a section takes at most once it is read, with its long texts: they are names, which are
/// kept.
std::size_t bytesFor(const json& value) {
    constexpr std::size_t element = 8;
    constexpr std::size_t member = 128;
    std::size_t bytes = element;
    if (value.is_object()) {
        for (const auto& [key, content] : value.items()) {
            bytes += member + key.size() + bytesFor(content);
        }
    } else if (value.is_array()) {
        for (const json& content : value) {
            bytes += bytesFor(content);
        }
    } else if (value.is_string()) {
        bytes += value.get_ref<const std::string&>().size();
    }
    return bytes;
}

/// The radio file as the patches so far have left it.
class PatchedFile {
public:
    /// @param keepsPlaces of what patches replace.
    PatchedFile(json file, NodeAnswers answers, bool keepsPlaces)
        : m_file(std::move(file))
        , m_answers(std::move(answers))
        , m_keepsPlaces(keepsPlaces) {}

    /// Merges a patch into the file and reads again what it touches; all else has been checked
    /// before.
    Calls::Patch merge(const JsonValue& patch) {
        patch.expectObject();
        for (const char* const key : {"channel", "notes", "requests"}) {
            if (patch.has(key)) {
                patch.member(key).fail("a patch cannot change \"" + std::string(key) + "\"");
            }
        }

        std::array<bool, sections.size()> wasPresent{};
        for (std::size_t index = 0; index < sections.size(); ++index) {
            wasPresent[index] = m_file.contains(sections[index].key);
        }
        m_file.merge_patch(patch.json());

        const PatchPlace place{&patch.json(), patch.path()};
        const JsonValue document(m_file, &place);
        document.expectKeys({"channel"}, optionalKeys());
        for (std::size_t index = 0; index < sections.size(); ++index) {
            const Section& section = sections[index];
            if (!patch.has(section.key)) {
                continue;
            }
            const bool isPresent = m_file.contains(section.key);
            if (section.isNeighbour && isPresent != wasPresent[index]) {
                patch.member(section.key)
                    .fail(isPresent ? "a patch cannot add a neighbour"
                                    : "a patch cannot remove a neighbour");
            }
            if (isPresent) {
                countBytes(patch, m_file[section.key]);
            }
            section.read(document, section.key, m_answers);
        }
        Calls::Patch read{m_answers};
        if (m_keepsPlaces) {
            std::vector<std::string> path;
            addPlaces(patch.json(), path, read.replaced);
            read.flatPmaxTables = flatPmaxTables(m_file);
        }
        return read;
    }

private:
    /// A patch goes into objects and replaces everything else as a whole.
    static void addPlaces(const json& patch, std::vector<std::string>& path,
                          std::vector<std::string>& places) {
        for (const auto& [key, value] : patch.items()) {
            path.push_back(key);
            if (value.is_object()) {
                addPlaces(value, path, places);
            } else {
                places.push_back(pointerText(path));
            }
            path.pop_back();
        }
    }

    void countBytes(const JsonValue& patch, const json& section) {
        m_bytes += bytesFor(section);
        if (m_bytes > RadioFileReader::maxPatchedBytes) {
            patch.fail("the patches up to this one change sections of more than " +
                       std::to_string(RadioFileReader::maxPatchedBytes) + " bytes in all");
        }
    }

    json m_file;
    NodeAnswers m_answers;
    bool m_keepsPlaces;
    std::size_t m_bytes = 0;
};

// Requests

/// How the arguments of a call are read.
struct CallForm {
    const char* name;
    std::vector<std::string_view> required;
    std::vector<std::string_view> optional;
    std::vector<std::string_view> outputs; ///< beside the result
    Calls::Any (*read)(const JsonValue& request, PatchedFile& file);
};

std::map<ModulationAndCoding, long> readPowerMap(const JsonValue& value) {
    expectList(value);
    std::map<ModulationAndCoding, long> powerMap;
    for (std::size_t index = 0; index < value.size(); ++index) {
        const JsonValue entry = value.element(index);
        expectPair(entry, "a pair [modulation-and-code, power]");
        powerMap[readModulationAndCode(entry.element(0))] =
            entry.element(1).integer<std::int32_t>();
    }
    return powerMap;
}

Calls::Any readGetMinMaxOutputPowerVsModulationArray(const JsonValue& request, PatchedFile&) {
    Calls::GetMinMaxOutputPowerVsModulationArray call;
    readIfAny(call.frameFormatId, request, "frameFormatId",
              [](const JsonValue& value) { return value.integer<std::int32_t>(); });
    readIfAny(call.minModulationAndCode, request, "minModulationAndCode", readModulationAndCode);
    readIfAny(call.maxModulationAndCode, request, "maxModulationAndCode", readModulationAndCode);
    readIfAny(call.referenceSec, request, "referenceSec", readReferenceSec);
    readIfAny(call.powerMap, request, "powerMap", readPowerMap);
    return call;
}

template <class Call>
Calls::Any readCallWithoutArguments(const JsonValue&, PatchedFile&) {
    return Call{};
}

const std::vector<CallForm>& callForms() {
    static const std::vector<CallForm> forms{
        {Calls::Initialize::name,
         {},
         {},
         {"registered"},
         readCallWithoutArguments<Calls::Initialize>},
        {Calls::SetPowerCutback::name,
         {"cutback"},
         {},
         {},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::SetPowerCutback{request.member("cutback").integer<std::uint32_t>()};
         }},
        {Calls::SetTemporaryPowerCutback::name,
         {"use", "cutback"},
         {},
         {},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::SetTemporaryPowerCutback{
                 request.member("use").flag(), request.member("cutback").integer<std::uint32_t>()};
         }},
        {Calls::SetTemperature::name,
         {"temperature"},
         {},
         {},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::SetTemperature{request.member("temperature").integer<std::int32_t>()};
         }},
        {Calls::SetBoosterPresence::name,
         {"presence", "gain", "maxInputPower", "maxModulation"},
         {},
         {},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::SetBoosterPresence{
                 request.member("presence").integer<std::int32_t>(),
                 request.member("gain").integer<std::int32_t>(),
                 request.member("maxInputPower").integer<std::int32_t>(),
                 readModulation(request.member("maxModulation"))};
         }},
        {Calls::CalculatePowerCapabilities::name,
         {"modulation"},
         {},
         {"minPower", "maxPower"},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::CalculatePowerCapabilities{readModulation(request.member("modulation"))};
         }},
        {Calls::CalculateAdmodPowerCapabilities::name,
         {"modulation", "rsec"},
         {},
         {"minPower", "maxPower"},
         [](const JsonValue& request, PatchedFile&) -> Calls::Any {
             return Calls::CalculateAdmodPowerCapabilities{
                 readModulation(request.member("modulation")),
                 readReferenceSec(request.member("rsec"))};
         }},
        {Calls::FindPminPmax::name,
         {},
         {},
         {"pmin", "pmax"},
         readCallWithoutArguments<Calls::FindPminPmax>},
        {Calls::GetUnrestrictedPmax::name,
         {},
         {},
         {"pmax"},
         readCallWithoutArguments<Calls::GetUnrestrictedPmax>},
        {Calls::GetMinMaxOutputPowerVsModulationArray::name,
         {},
         {"frameFormatId", "minModulationAndCode", "maxModulationAndCode", "referenceSec",
          "powerMap"},
         {"minOutputPower", "powerMap"},
         readGetMinMaxOutputPowerVsModulationArray},
        {Calls::Patch::name,
         {"file"},
         {},
         {},
         [](const JsonValue& request, PatchedFile& file) -> Calls::Any {
             return file.merge(request.member("file"));
         }},
    };
    return forms;
}

const CallForm& formOf(const JsonValue& call) {
    const std::string& name = call.string();
    const std::vector<CallForm>& forms = callForms();
    const auto found = std::ranges::find(forms, name, &CallForm::name);
    if (found != forms.end()) {
        return *found;
    }
    std::vector<std::string> names;
    names.reserve(forms.size());
    for (const CallForm& form : forms) {
        names.emplace_back(form.name);
    }
    call.failWord("call", name, names);
}

std::vector<std::string_view> argumentsOfAllCalls() {
    std::vector<std::string_view> arguments{"preset", "expect"};
    for (const CallForm& form : callForms()) {
        arguments.insert(arguments.end(), form.required.begin(), form.required.end());
        arguments.insert(arguments.end(), form.optional.begin(), form.optional.end());
    }
    return arguments;
}

/// Checks the recorded answer of a request: keys of the line that replay prints.
std::string readExpectation(const JsonValue& value, const CallForm& form) {
    value.expectKeys({"result"}, form.outputs);
    value.member("result").integer<std::uint32_t>();
    for (const std::string_view key : form.outputs) {
        if (!value.has(key)) {
            continue;
        }
        const JsonValue output = value.member(key);
        if (key == "registered") {
            output.flag();
        } else if (key != "powerMap") {
            output.integer<std::int32_t>();
        } else {
            readList(output, [](const JsonValue& entry) {
                entry.expectKeys({"code", "maxPower"});
                return entry.member("code").integer<std::int32_t>() +
                       std::int64_t{entry.member("maxPower").integer<std::int32_t>()};
            });
        }
    }
    return value.json().dump();
}

Request readRequest(const JsonValue& value, PatchedFile& file) {
    value.expectObject();
    if (!value.has("call")) {
        value.expectKeys({"call"}, argumentsOfAllCalls());
    }
    const CallForm& form = formOf(value.member("call"));

    std::vector<std::string_view> required{"call"};
    required.insert(required.end(), form.required.begin(), form.required.end());
    std::vector<std::string_view> optional{form.optional};
    optional.emplace_back("preset");
    // A patch asks nothing.
    if (form.name != std::string_view(Calls::Patch::name)) {
        optional.emplace_back("expect");
    }
    value.expectKeys(required, optional);

    Request request{form.read(value, file)};
    readIfAny(request.preset, value, "preset",
              [](const JsonValue& preset) { return preset.integer<std::int32_t>(); });
    readIfAny(request.expect, value, "expect",
              [&form](const JsonValue& expect) { return readExpectation(expect, form); });
    return request;
}

} // namespace

RadioFile RadioFileReader::read(std::string_view text, const Wish& wish) {
    json file = JsonReader::read(text, maxSize);
    for (const DocumentEdit& edit : wish.edits) {
        edit.applyTo(file);
    }
    const JsonValue document(file);
    document.expectKeys({"channel"}, optionalKeys());

    RadioFile radioFile;
    radioFile.channel = document.member("channel").integer<std::uint32_t>();
    for (const Section& section : sections) {
        section.read(document, section.key, radioFile.node);
    }
    radioFile.flatPmaxTables = flatPmaxTables(file);

    readIfAny(radioFile.notes, document, "notes", [](const JsonValue& notes) {
        return readList(notes, [](const JsonValue& note) { return note.string(); });
    });

    if (document.has("requests")) {
        // What the patches are merged into holds no requests. `document` still names their place.
        json requests = std::exchange(file["requests"], json());
        file.erase("requests");
        const JsonValue list(requests, document, "requests");
        PatchedFile patchedFile(std::move(file), radioFile.node, wish.keepsPlaces);
        list.expectList();
        std::size_t index = 0;
        radioFile.requests = readElements(list, [&](const JsonValue& request) {
            Request read = readRequest(request, patchedFile);
            requests[index++] =
                nullptr; // what has been read makes room for what is kept of the next
            return read;
        });
    }
    return radioFile;
}
