#include "Node.h"

#include <stdexcept>

namespace reference {

namespace {

using nlohmann::json;

const std::string serviceFile = "Control/OutputPowerCalculator/private/OutputPowerCalculator";

std::string flag(bool value) {
    return value ? "1" : "0";
}

std::int32_t integer(const json& value) {
    return static_cast<std::int32_t>(value.get<std::int64_t>());
}

std::uint32_t unsignedInteger(const json& value) {
    return static_cast<std::uint32_t>(value.get<std::int64_t>());
}

std::int32_t enumeration(const json& value,
                         std::optional<std::int32_t> (*ofText)(const std::string&)) {
    if (!value.is_string()) {
        return integer(value);
    }
    const auto listed = ofText(value.get<std::string>());
    if (!listed.has_value()) {
        throw std::invalid_argument("unknown text " + value.dump());
    }
    return *listed;
}

std::int32_t modulationIn(const json& value) {
    return enumeration(value, modulationOfText);
}

std::int32_t codeIn(const json& value) {
    return enumeration(value, codeOfText);
}

std::int32_t rsecIn(const json& value) {
    return enumeration(value, rsecOfText);
}

std::int32_t marketIn(const json& value) {
    return enumeration(value, marketOfText);
}

bool isResult(const json& value) {
    return value.is_object() && value.contains("result");
}

std::vector<std::int32_t> codesIn(const json& list) {
    std::vector<std::int32_t> codes;
    for (const json& code : list) {
        codes.push_back(codeIn(code));
    }
    return codes;
}

std::vector<std::int16_t> profilesIn(const json& owner, bool carrierAggregation) {
    const std::string key =
        carrierAggregation ? "carrierAggregationPerformanceProfiles" : "performanceProfiles";
    std::vector<std::int16_t> profiles;
    if (owner.contains(key)) {
        for (const json& profile : owner.at(key)) {
            profiles.push_back(static_cast<std::int16_t>(profile.get<std::int64_t>()));
        }
    }
    return profiles;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Node

Node::Node(const json& radioFile)
    : m_file(radioFile) {}

void Node::patch(const json& mergePatch) {
    m_file.merge_patch(mergePatch);
}

std::uint32_t Node::channel() const {
    return unsignedInteger(m_file.at("channel"));
}

bool Node::has(const std::string& neighbour) const {
    return m_file.contains(neighbour);
}

std::string Node::productNumber() const {
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains("productNumber")) {
        return "";
    }
    return handler.at("productNumber").get<std::string>();
}

Answer<std::int32_t> Node::minOutputPower() const {
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains("minOutputPower")) {
        return {0, std::nullopt};
    }
    const json& power = handler.at("minOutputPower");
    if (isResult(power)) {
        return {unsignedInteger(power.at("result")), std::nullopt};
    }
    return {0, integer(power)};
}

PmaxAnswer Node::pmaxTable(std::int32_t pmaxTable) const {
    std::string key;
    switch (pmaxTable) {
    case pmaxTableDpd1Ansi:
        key = "pmaxDpd1Ansi";
        break;
    case pmaxTableDpd2Ansi:
        key = "pmaxDpd2Ansi";
        break;
    case pmaxTableDpd1Etsi:
        key = "pmaxDpd1Etsi";
        break;
    case pmaxTableDpd2Etsi:
        key = "pmaxDpd2Etsi";
        break;
    default:
        throw std::invalid_argument("no such Pmax table");
    }
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains(key)) {
        return {0, std::nullopt};
    }
    const json& table = handler.at(key);
    if (isResult(table)) {
        return {unsignedInteger(table.at("result")), std::nullopt};
    }

    PmaxStorage storage;
    if (table.is_object()) {
        for (const json& value : table.at("integers")) {
            storage.integers.push_back(integer(value));
            ++storage.count;
        }
        if (storage.count % 2 != 0) {
            storage.integers.push_back(0);
        }
    } else {
        for (const json& row : table) {
            storage.integers.push_back(modulationIn(row.at(0)));
            storage.integers.push_back(integer(row.at(1)));
            storage.count += 2;
        }
    }
    return {0, std::make_shared<const PmaxStorage>(storage)};
}

bool Node::isMaxAcmLimitedByHw() const {
    const json& handler = m_file.at("capabilityHandler");
    return handler.contains("maxAcmLimitedByHw") && handler.at("maxAcmLimitedByHw").get<bool>();
}

std::int16_t Node::performanceProfileIndex() const {
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains("performanceProfileIndex")) {
        return -1;
    }
    return static_cast<std::int16_t>(handler.at("performanceProfileIndex").get<std::int64_t>());
}

std::int32_t Node::maxModulationLimitedByHw(const std::vector<std::int16_t>& profiles,
                                            std::int16_t index) const {
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains("maxModulationLimitedByHw")) {
        return undefinedModulation;
    }
    const json& limit = handler.at("maxModulationLimitedByHw");
    if (!limit.is_object()) {
        return modulationIn(limit);
    }
    std::int32_t position = 0;
    for (const std::int16_t profile : profiles) {
        if (position == index) {
            const std::string key = std::to_string(profile);
            return limit.contains(key) ? modulationIn(limit.at(key)) : undefinedModulation;
        }
        ++position;
    }
    return undefinedModulation;
}

std::int32_t Node::maxModulationWithoutLimitation(std::int32_t market) const {
    const json& handler = m_file.at("capabilityHandler");
    if (!handler.contains("maxModulationWithoutLimitation")) {
        return undefinedModulation;
    }
    const json& limit = handler.at("maxModulationWithoutLimitation");
    if (!limit.is_object()) {
        return modulationIn(limit);
    }
    const std::string key = marketText(market);
    if (key.empty() || !limit.contains(key)) {
        return undefinedModulation;
    }
    return modulationIn(limit.at(key));
}

Answer<AcmRange> Node::minMaxModulationAndCode() const {
    const json& handler = m_file.at("acmHandler");
    if (isResult(handler)) {
        return {unsignedInteger(handler.at("result")), std::nullopt};
    }
    if (!handler.contains("min")) {
        return {32769, std::nullopt};
    }
    return {0, AcmRange{codeIn(handler.at("min")), codeIn(handler.at("max"))}};
}

std::int32_t Node::modulation() const {
    return modulationIn(m_file.at("frameFormat").at("modulation"));
}

std::int32_t Node::maxAvailableModulation() const {
    return modulationIn(m_file.at("frameFormat").at("maxAvailableModulation"));
}

std::vector<std::int32_t> Node::modulationAndCodes() const {
    return codesIn(m_file.at("frameFormat").at("modulationAndCodes"));
}

std::int32_t Node::channelSpacing() const {
    return integer(m_file.at("frameFormat").at("channelSpacing"));
}

std::int32_t Node::dpdVersion() const {
    return integer(m_file.at("frameFormat").at("dpdVersion"));
}

std::int32_t Node::market() const {
    return marketIn(m_file.at("frameFormat").at("market"));
}

std::vector<std::int16_t> Node::performanceProfiles(bool carrierAggregation) const {
    return profilesIn(m_file.at("frameFormat"), carrierAggregation);
}

std::int32_t Node::referenceSec() const {
    return rsecIn(m_file.at("systemPowerController").at("referenceSec"));
}

std::optional<std::int32_t> Node::minOutputPowerOffset(std::uint32_t spacing) const {
    for (const json& pair : m_file.at("systemPowerController").at("minOutputPowerOffsets")) {
        if (integer(pair.at(0)) == wrapToSigned(spacing)) {
            return integer(pair.at(1));
        }
    }
    return std::nullopt;
}

json Node::recordOf(std::int32_t id) const {
    const json& handler = m_file.at("hardwareConfigurationHandler");
    if (handler.contains("frameFormats")) {
        for (const json& record : handler.at("frameFormats")) {
            if (integer(record.at("id")) == id) {
                return record;
            }
        }
    }
    return nullptr;
}

std::vector<FrameFormatRecord> Node::frameFormatRecords() const {
    std::vector<FrameFormatRecord> records;
    const json& handler = m_file.at("hardwareConfigurationHandler");
    if (handler.contains("frameFormats")) {
        for (const json& record : handler.at("frameFormats")) {
            const json& spacing = record.at("channelSpacing");
            records.push_back({integer(record.at("id")), isResult(spacing) ? 0 : integer(spacing)});
        }
    }
    return records;
}

std::int32_t Node::dpdVersionOf(std::int32_t id) const {
    const json record = recordOf(id);
    return record.is_null() ? 0 : integer(record.at("dpdVersion"));
}

Answer<std::int32_t> Node::marketOf(std::int32_t id) const {
    const json record = recordOf(id);
    if (record.is_null()) {
        return {32768, std::nullopt};
    }
    const json& market = record.at("market");
    if (isResult(market)) {
        return {unsignedInteger(market.at("result")), std::nullopt};
    }
    return {0, marketIn(market)};
}

Answer<std::vector<std::int32_t>> Node::modulationAndCodesOf(std::int32_t id) const {
    const json record = recordOf(id);
    if (record.is_null()) {
        return {32768, std::nullopt};
    }
    const json& codes = record.at("modulationAndCodes");
    if (isResult(codes)) {
        return {unsignedInteger(codes.at("result")), std::nullopt};
    }
    return {0, codesIn(codes)};
}

Answer<std::int32_t> Node::channelSpacingOf(std::int32_t id) const {
    const json record = recordOf(id);
    if (record.is_null()) {
        return {32768, std::nullopt};
    }
    const json& spacing = record.at("channelSpacing");
    if (isResult(spacing)) {
        return {unsignedInteger(spacing.at("result")), std::nullopt};
    }
    return {0, integer(spacing)};
}

std::vector<std::int16_t> Node::performanceProfilesOf(std::int32_t id,
                                                      bool carrierAggregation) const {
    const json record = recordOf(id);
    if (record.is_null()) {
        return {};
    }
    return profilesIn(record, carrierAggregation);
}

bool Node::isCarrierAggregation() const {
    if (!m_file.contains("board") || !m_file.at("board").contains("carrierAggregation")) {
        return false;
    }
    return m_file.at("board").at("carrierAggregation").get<bool>();
}

StoredVariables Node::variables() const {
    StoredVariables stored;
    if (!m_file.contains("variables")) {
        return stored;
    }
    for (const auto& [name, content] : m_file.at("variables").items()) {
        std::vector<std::int32_t> elements;
        if (content.is_array()) {
            for (const json& element : content) {
                elements.push_back(integer(element));
            }
        } else {
            elements.push_back(integer(content));
        }
        stored[name] = elements;
    }
    return stored;
}

// ---------------------------------------------------------------------------------------------
// Service: lifecycle and operating inputs

Service::Service(std::uint32_t channelGiven, const Node& node, ProcessState& process)
    : m_node(node)
    , m_process(process)
    , m_radioChannel(channelGiven == 1 || channelGiven == 2 ? channelGiven : 1)
    , m_dpd1Etsi{channelGiven, 1, marketEtsi, nullptr}
    , m_dpd2Etsi{channelGiven, 2, marketEtsi, nullptr}
    , m_dpd1Ansi{channelGiven, 1, marketAnsi, nullptr}
    , m_dpd2Ansi{channelGiven, 2, marketAnsi, nullptr} {}

void Service::enter(const std::string& function, const std::string& text) {
    m_trace.push_back(enterRecord(serviceFile, function, text));
}

void Service::message(int level, const std::string& function, const std::string& text) {
    m_trace.push_back(messageRecord(level, serviceFile, function, text));
}

std::uint32_t Service::initialize() {
    const std::string function = "initialize";
    enter(function, "");

    const bool hasCapabilityHandler = m_node.has("capabilityHandler");
    const PmaxGetter getter = [this](std::int32_t table) { return m_node.pmaxTable(table); };
    const PmaxGetter* handler = hasCapabilityHandler ? &getter : nullptr;
    m_dpd1Etsi.initialize(handler, m_trace);
    m_dpd2Etsi.initialize(handler, m_trace);
    m_dpd1Ansi.initialize(handler, m_trace);
    m_dpd2Ansi.initialize(handler, m_trace);

    if (!hasCapabilityHandler) {
        message(1, function,
                "Error getting interface to " +
                    nameWithChannelUnlessZero("ICapabilityHandler", m_radioChannel));
        return 32768;
    }

    const Answer<std::int32_t> minimum = m_node.minOutputPower();
    if (minimum.written.has_value()) {
        m_minOutputPower = minimum.written;
    }
    if (failed(minimum.result)) {
        message(1, function, "Failed to get Pmin from capability handler");
        return 32768;
    }

    if (!m_node.has("frameFormat")) {
        message(1, function,
                "Failed to get interface" + nameWithChannel("IFrameFormat", m_radioChannel));
        return 32768;
    }
    if (!m_node.has("hardwareConfigurationHandler")) {
        message(1, function, "Could not get interface IHardwareConfigurationHandler");
        return 32768;
    }
    if (!m_node.has("acmHandler")) {
        message(1, function,
                "Could not get interface " + nameWithChannel("IAcmHandler", m_radioChannel));
        return 32768;
    }
    if (!m_node.has("systemPowerController")) {
        message(1, function,
                "Could not get interface " +
                    nameWithChannel("ISystemPowerController", m_radioChannel));
        return 32768;
    }

    m_registered = true;
    return 0;
}

std::uint32_t Service::setPowerCutback(std::uint32_t cutback) {
    enter("setPowerCutback", std::to_string(cutback));
    m_powerCutback = cutback;
    return 0;
}

std::uint32_t Service::setTemporaryPowerCutback(bool use, std::uint32_t cutback) {
    enter("setTemporaryPowerCutback", "useTemporaryPowerCutback=" + flag(use) +
                                          ", temporaryPowerCutback=" + std::to_string(cutback));
    m_useTemporaryPowerCutback = use;
    m_temporaryPowerCutback = cutback;
    return 0;
}

std::uint32_t Service::setTemperature(std::int32_t temperature) {
    enter("setTemperature", number(temperature));
    m_temperature = temperature;
    message(5, "setTemperature", "New temperature = " + number(m_temperature));
    return 0;
}

std::uint32_t Service::setBoosterPresence(std::int32_t presence, std::int32_t gain,
                                          std::int32_t maxInputPower, std::int32_t maxModulation) {
    m_booster.presence = presence;
    m_booster.gain = gain;
    m_booster.maxInputPower = maxInputPower;
    m_booster.maxModulation = maxModulation;
    message(5, "setBoosterPresence", "New boosterPresence = " + number(presence));
    if (presence >= 1) {
        message(5, "setBoosterPresence",
                "New boosterGain = " + number(gain) +
                    ", new boosterMaxInputPower = " + number(maxInputPower) +
                    ", new boosterMaxModulation = " + modulationText(maxModulation));
    }
    return 0;
}

void Service::applyCutbackToMaxPower(std::int32_t& power) {
    enter("applyCutbackToMaxPower", "");
    if (m_useTemporaryPowerCutback) {
        power = wrapSubtract(power, m_temporaryPowerCutback);
    } else {
        power = wrapSubtract(power, m_powerCutback);
    }
}

// ---------------------------------------------------------------------------------------------
// Service: max power queries

Family Service::getCalculator() {
    const std::string function = "getCalculator";
    const std::string product = m_node.productNumber();
    if (product.empty()) {
        message(6, function, "Empty productNumber, using KaM max power algorithm");
        return Family::Kam;
    }
    if (product == "QZT 846 57" || product == "QZT 846 001") {
        message(6, function, "Using KaM max power algorithm");
        return Family::Kam;
    }
    if (product == "QZT 846 003") {
        message(6, function, "Using KaMV3 max power algorithm");
        return Family::KamV3;
    }
    const std::vector<std::string> legacyProducts = {
        "QZT35201/1", "QZT35201/11", "QZT35201/12",  "QZT35202/1",  "QZT35203/1",
        "QZT35204/1", "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",  "QZT35207/1",
        "QZT35208/1", "QZT35221/1",  "QZT35221/11",  "QZT35221/12", "QZT35222/1",
        "QZT35223/1", "QZT35224/1",  "QZT35225/1",   "QZT35226/1",  "QZT35227/1",
    };
    for (const std::string& legacy : legacyProducts) {
        if (product == legacy) {
            message(6, function, "Using legacy TMU max power algorithm");
            return Family::Vo4;
        }
    }
    message(6, function, "Using TMU max power algorithm");
    return Family::Vo5;
}

std::uint32_t Service::getMaxPowerArray(std::int32_t dpdVersion, std::int32_t market,
                                        Capability& out) {
    enter("getMaxPowerArray",
          "dpdVersion=" + number(dpdVersion) + ", market=" + marketText(market));
    if (dpdVersion == 1) {
        out = market == marketAnsi ? m_dpd1Ansi : m_dpd1Etsi;
        return 0;
    }
    if (dpdVersion == 2 || dpdVersion == 3) {
        out = market == marketAnsi ? m_dpd2Ansi : m_dpd2Etsi;
        return 0;
    }
    message(1, "getMaxPowerArray", "Unknown DPD version " + number(dpdVersion));
    return 32768;
}

std::uint32_t Service::getMaxPower(std::int32_t dpdVersion, std::int32_t market,
                                   std::int32_t modulation, std::int32_t& maxPower) {
    enter("getMaxPower", "dpdVersion=" + number(dpdVersion) + ", market=" + marketText(market) +
                             ", modulationType=" + modulationText(modulation));
    Capability local;
    const std::uint32_t result = getMaxPowerArray(dpdVersion, market, local);
    if (!failed(result)) {
        return local.getPower(modulation, maxPower, m_trace);
    }
    message(2, "getMaxPower", "Unable to get power for modulation " + modulationText(modulation));
    return result;
}

std::uint32_t Service::getCsPowerCompensation(std::int32_t channelSpacing,
                                              std::int32_t& compensation) {
    const Family calculator = getCalculator();
    compensation = 0;
    const CompensationAnswer answer = getCompensationForChannelSpacing(
        calculator, m_radioChannel, channelSpacing, compensation, m_node.variables());
    m_trace.insert(m_trace.end(), answer.trace.begin(), answer.trace.end());
    compensation = answer.compensation;
    if (failed(answer.code)) {
        message(1, "getCsPowerCompensation",
                "Could not get power compensation for channel spacing " + number(channelSpacing) +
                    "MHz");
        return 32768;
    }
    return 0;
}

std::uint32_t Service::getAdModMaxPower(std::int32_t dpdVersion, std::int32_t market,
                                        std::int32_t rsec, std::int32_t selectedMinMod,
                                        std::int32_t selectedMaxMod, std::int32_t availableMaxMod,
                                        std::int32_t actualMod, std::int32_t csPowerCompensation,
                                        std::int32_t& maxPower, bool useCutback) {
    const std::string function = "getAdModMaxPower";
    enter(function, "dpdVersion=" + number(dpdVersion) + ", market=" + marketText(market) +
                        ", convertRsecEnumToString(rsec)=" + rsecText(rsec) +
                        ", selectedMinMod=" + modulationText(selectedMinMod) +
                        ", selectedMaxMod=" + modulationText(selectedMaxMod) +
                        ", availableMaxMod=" + modulationText(availableMaxMod) +
                        ", actualMod=" + modulationText(actualMod) +
                        ", csPowerCompensation=" + number(csPowerCompensation));

    CalculationInput record;
    record.rsec = market == marketAnsi ? 0 : rsec;
    record.selectedMin = selectedMinMod;
    record.selectedMax = selectedMaxMod;
    record.actual = actualMod;
    record.refMax = undefinedModulation;
    record.csPowerCompensation = csPowerCompensation;

    std::uint32_t minResult = 0;
    std::uint32_t actualResult = 0;
    if (!useCutback) {
        minResult = getMaxPower(dpdVersion, market, selectedMinMod, record.pmaxSelectedMin);
        if (!failed(minResult)) {
            actualResult = getMaxPower(dpdVersion, market, actualMod, record.pmaxActual);
        }
    } else {
        applyCutbackToMaxPower(record.csPowerCompensation);
        minResult = getMaxPower(dpdVersion, market, selectedMinMod, record.pmaxSelectedMin);
        applyCutbackToMaxPower(record.pmaxSelectedMin);
        if (!failed(minResult)) {
            actualResult = getMaxPower(dpdVersion, market, actualMod, record.pmaxActual);
            applyCutbackToMaxPower(record.pmaxActual);
        }
    }
    if (failed(minResult)) {
        message(1, function,
                "Could not get max ref output power for selected min " +
                    modulationText(selectedMinMod) + "QAM");
        return 32776;
    }
    if (failed(actualResult)) {
        message(1, function,
                "Could not get max ref output power for actual " + modulationText(actualMod) +
                    "QAM");
        return 32776;
    }

    const Family calculator = getCalculator();

    const ModulationAnswer refMax =
        getMaxRefModulation(calculator, availableMaxMod, selectedMaxMod);
    m_trace.insert(m_trace.end(), refMax.trace.begin(), refMax.trace.end());
    record.refMax = refMax.modulation;

    // The reference power is never cut back.
    const std::uint32_t refResult =
        getMaxPower(dpdVersion, market, record.refMax, record.pmaxRefMax);
    if (failed(refResult)) {
        message(1, function,
                "Could not get max output power for reference offset " + number(record.pmaxRefMax) +
                    "QAM");
        return 32776;
    }

    Capability table;
    getMaxPowerArray(dpdVersion, market, table);
    if (table.table != nullptr) {
        record.pmaxTable = table.table->integers;
        record.pmaxCount = table.table->count;
    }

    const PowerAnswer answer =
        reference::getMaxPower(calculator, record, maxPower, m_booster, m_process.vo5TablesBuilt);
    m_trace.insert(m_trace.end(), answer.trace.begin(), answer.trace.end());
    maxPower = answer.maxPower;
    if (answer.code == 2) {
        return 2;
    }
    if (failed(answer.code)) {
        message(1, function, "Modulation not supported " + modulationText(actualMod) + "QAM");
        return 32776;
    }
    return 0;
}

std::uint32_t Service::getFixModMaxPower(std::int32_t dpdVersion, std::int32_t market,
                                         std::int32_t selectedMod, std::int32_t modulation,
                                         std::int32_t csPowerCompensation, std::int32_t& maxPower,
                                         bool useCutback) {
    const std::string function = "getFixModMaxPower";
    enter(function, "dpdVersion=" + number(dpdVersion) + ", market=" + marketText(market) +
                        ", selectedMod=" + modulationText(selectedMod) +
                        ", modulation=" + modulationText(modulation) + ", csPowerCompensation=" +
                        number(csPowerCompensation) + ", useCutback=" + flag(useCutback));

    if (m_booster.presence == 0) {
        std::int32_t selectedPmax = 0;
        std::int32_t modulationPmax = 0;

        const std::uint32_t selectedResult =
            getMaxPower(dpdVersion, market, selectedMod, selectedPmax);
        if (useCutback) {
            applyCutbackToMaxPower(selectedPmax);
        }
        if (failed(selectedResult)) {
            message(2, function,
                    "Failed to calculate power capabilities for modulation " +
                        modulationText(selectedMod) + "QAM");
        }

        const std::uint32_t modulationResult =
            getMaxPower(dpdVersion, market, modulation, modulationPmax);
        if (useCutback) {
            applyCutbackToMaxPower(modulationPmax);
        }
        if (failed(modulationResult)) {
            message(2, function,
                    "Failed to calculate power capabilities for modulation " +
                        modulationText(modulation));
        }

        const std::int32_t smaller = selectedPmax < modulationPmax ? selectedPmax : modulationPmax;
        maxPower = wrapAdd(smaller, csPowerCompensation);
        return 0;
    }

    const std::int32_t rsec = m_node.referenceSec();
    const std::int32_t maxAvailable = m_node.maxAvailableModulation();
    const std::int32_t limited = limitMaxModDueToRadioCapability(0, 0, maxAvailable);
    std::int32_t firstPower = 0;
    std::int32_t secondPower = 0;
    const std::uint32_t first =
        getAdModMaxPower(dpdVersion, market, rsec, selectedMod, selectedMod, limited, selectedMod,
                         csPowerCompensation, firstPower, useCutback);
    const std::uint32_t second =
        getAdModMaxPower(dpdVersion, market, rsec, selectedMod, selectedMod, limited, modulation,
                         csPowerCompensation, secondPower, useCutback);
    if (!failed(first) && !failed(second)) {
        maxPower = firstPower < secondPower ? firstPower : secondPower;
        return 0;
    }
    message(2, function,
            "Failed to get AdMod capabilities, error: " + std::to_string(first) + ", " +
                std::to_string(second));
    return 32768;
}

std::uint32_t Service::getUnrestrictedPmax(std::int32_t& pmax) {
    const std::string function = "getUnrestrictedPmax";
    enter(function, "");
    const std::int32_t modulation = m_node.modulation();
    std::int32_t compensation = 0;
    if (failed(getCsPowerCompensation(m_node.channelSpacing(), compensation))) {
        return 32768;
    }
    const std::int32_t dpdVersion = m_node.dpdVersion();
    const std::int32_t market = m_node.market();
    const std::uint32_t result =
        getFixModMaxPower(dpdVersion, market, modulation, modulation, compensation, pmax, false);
    if (failed(result)) {
        message(2, function,
                "Failed to calculate power capabilities for modulation " +
                    modulationText(modulation));
    }
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Service: minimum output power

std::int32_t Service::getMinOutputPower(std::uint32_t channelSpacing) {
    enter("getMinOutputPower", std::to_string(channelSpacing));
    const std::int32_t base = m_minOutputPower.value_or(0);
    const auto offset = m_node.minOutputPowerOffset(channelSpacing);
    if (offset.has_value()) {
        return wrapAdd(base, *offset);
    }
    message(2, "getMinOutputPower",
            " no match for channel spacing : " + std::to_string(channelSpacing));
    return base;
}

std::int32_t Service::getMinOutputPowerUsingRfid(std::uint32_t rfid) {
    enter("getMinOutputPowerUsingRfid", "rfid=" + std::to_string(rfid));
    std::int32_t channelSpacing = 0;
    for (const FrameFormatRecord& record : m_node.frameFormatRecords()) {
        if (static_cast<std::uint32_t>(record.id) == rfid) {
            channelSpacing = record.channelSpacing == 3000 ? 0 : record.channelSpacing;
            break;
        }
    }
    return getMinOutputPower(static_cast<std::uint32_t>(channelSpacing));
}

std::uint32_t Service::findPminPmax(std::int32_t& pmin, std::int32_t& pmax) {
    const std::string function = "findPminPmax";
    enter(function, "");
    const std::int32_t dpdVersion = m_node.dpdVersion();
    // Only Etsi reads an Etsi table here.
    const auto isEtsi = [this] { return m_node.market() == marketEtsi; };
    if (dpdVersion == 1) {
        pmax = isEtsi() ? m_dpd1Etsi.getMaxPower() : m_dpd1Ansi.getMaxPower();
    } else if (dpdVersion == 2 || dpdVersion == 3) {
        pmax = isEtsi() ? m_dpd2Etsi.getMaxPower() : m_dpd2Ansi.getMaxPower();
    } else {
        message(1, function, "Unknown DPD version " + number(m_node.dpdVersion()));
        return 32768;
    }
    pmin = getMinOutputPower(static_cast<std::uint32_t>(m_node.channelSpacing()));
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Service: power capabilities per modulation

std::uint32_t Service::getSelectedMinMaxAcm(std::int32_t& min, std::int32_t& max) {
    min = undefinedCode;
    max = undefinedCode;
    const Answer<AcmRange> answer = m_node.minMaxModulationAndCode();
    if (answer.written.has_value()) {
        min = answer.written->min;
        max = answer.written->max;
    }
    if (failed(answer.result)) {
        message(2, "getSelectedMinMaxAcm", "failed to get min and max modulation from ACM handler");
        min = undefinedCode;
        max = undefinedCode;
    }
    return 0;
}

bool Service::getAdmodEnable(std::int32_t min, std::int32_t max) {
    std::int32_t selectedMin = undefinedCode;
    std::int32_t selectedMax = undefinedCode;
    getSelectedMinMaxAcm(selectedMin, selectedMax);
    enter("getAdmodEnable", "minModulationAndCode=" + codeText(selectedMin) +
                                ", maxModulationAndCode=" + codeText(selectedMax));
    const std::int32_t effectiveMin = min != undefinedCode ? min : selectedMin;
    const std::int32_t effectiveMax = max != undefinedCode ? max : selectedMax;
    return effectiveMin != effectiveMax;
}

std::uint32_t Service::calculatePowerCapabilities(std::int32_t modulation, std::int32_t& minPower,
                                                  std::int32_t& maxPower) {
    const std::string function = "calculatePowerCapabilities";
    enter(function, modulationText(modulation));
    minPower = getMinOutputPower(static_cast<std::uint32_t>(m_node.channelSpacing()));

    std::int32_t selectedMinCode = undefinedCode;
    std::int32_t selectedMaxCode = undefinedCode;
    getSelectedMinMaxAcm(selectedMinCode, selectedMaxCode);
    std::int32_t selected = modulationOfCode(selectedMinCode);
    if (selected == undefinedModulation) {
        selected = m_node.modulation();
        if (selected == undefinedModulation) {
            message(1, function, "Failed to get AdMod capabilities");
            return 32768;
        }
    }

    std::int32_t compensation = 0;
    if (failed(getCsPowerCompensation(m_node.channelSpacing(), compensation))) {
        return 32768;
    }
    return getFixModMaxPower(m_node.dpdVersion(), m_node.market(), selected, modulation,
                             compensation, maxPower, true);
}

std::int32_t Service::limitMaxModDueToRadioCapability(std::int32_t useConfiguredFF,
                                                      std::int32_t rfid,
                                                      std::int32_t modemMaxAvailableModulation) {
    const std::string function = "limitMaxModDueToRadioCapability";
    enter(function, number(rfid));

    std::int32_t market = 0;
    if (useConfiguredFF == 0) {
        market = m_node.market();
    } else if (useConfiguredFF == 1) {
        const Answer<std::int32_t> answer = m_node.marketOf(rfid);
        if (answer.written.has_value()) {
            market = *answer.written;
        }
    }

    const bool limited = m_node.isMaxAcmLimitedByHw();
    std::int32_t radioMax = undefinedModulation;
    message(6, function, std::string(" usePerformaceProfiles: ") + (limited ? "Yes" : "No"));

    if (limited) {
        const bool carrierAggregation = m_node.isCarrierAggregation();
        const std::vector<std::int16_t> profiles =
            useConfiguredFF == 0 ? m_node.performanceProfiles(carrierAggregation)
                                 : m_node.performanceProfilesOf(rfid, carrierAggregation);
        const std::int16_t index = m_node.performanceProfileIndex();
        radioMax = m_node.maxModulationLimitedByHw(profiles, index);
    } else {
        radioMax = m_node.maxModulationWithoutLimitation(market);
    }

    if (radioMax == undefinedModulation) {
        radioMax = modemMaxAvailableModulation;
    }
    message(6, function,
            " modemMaxAvailableModulation: " + modulationText(modemMaxAvailableModulation) +
                " radioMaxAvailableModulation: " + modulationText(radioMax));
    return radioMax < modemMaxAvailableModulation ? radioMax : modemMaxAvailableModulation;
}

std::uint32_t Service::calculateAdmodPowerCapabilities(std::int32_t actualModulation,
                                                       std::int32_t rsec, std::int32_t& minPower,
                                                       std::int32_t& maxPower) {
    const std::string function = "calculateAdmodPowerCapabilities";
    enter(function, "actualModulation=" + modulationText(actualModulation) +
                        ", convertRsecEnumToString(rsec)=" + rsecText(rsec));

    std::int32_t selectedMinCode = undefinedCode;
    std::int32_t selectedMaxCode = undefinedCode;
    getSelectedMinMaxAcm(selectedMinCode, selectedMaxCode);
    std::int32_t selectedMin = modulationOfCode(selectedMinCode);
    if (selectedMin == undefinedModulation) {
        selectedMin = m_node.modulation();
        if (selectedMin == undefinedModulation) {
            message(1, function, "Failed to get AdMod capabilities");
            return 32768;
        }
    }

    const std::int32_t limitedMax =
        limitMaxModDueToRadioCapability(0, 0, m_node.maxAvailableModulation());

    std::int32_t selectedMax = modulationOfCode(selectedMaxCode);
    if (selectedMax == undefinedModulation) {
        selectedMax = limitedMax;
    }

    std::int32_t compensation = 0;
    if (failed(getCsPowerCompensation(m_node.channelSpacing(), compensation))) {
        return 32768;
    }

    const std::int32_t dpdVersion = m_node.dpdVersion();
    const std::int32_t market = m_node.market();
    const std::uint32_t result =
        getAdModMaxPower(dpdVersion, market, rsec, selectedMin, selectedMax, limitedMax,
                         actualModulation, compensation, maxPower, true);
    if (failed(result)) {
        message(1, function, "Failed to get AdMod capabilities");
        return result;
    }
    if (result == 2) {
        message(5, function,
                "ignoring QAM" + modulationText(actualModulation) +
                    " as it's not supported by combined HW capability");
        return 2;
    }
    minPower = getMinOutputPower(static_cast<std::uint32_t>(m_node.channelSpacing()));
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Service: power of every modulation-and-code

std::uint32_t
Service::getMinMaxOutputPowerVsModulationArray(std::int32_t frameFormatId, std::int32_t minCode,
                                               std::int32_t maxCode, std::int32_t referenceSec,
                                               std::int32_t& minOutputPower, PowerMap& powerMap) {
    const std::string function = "getMinMaxOutputPowerVsModulationArray";
    enter(function, "frameformat_id=" + number(frameFormatId) + ", minModulationAndCodeIn=" +
                        codeText(minCode) + ", maxModulationAndCodeIn=" + codeText(maxCode) +
                        ", referenceSec=" + number(referenceSec));

    std::int32_t rsec = referenceSec;
    if (rsec == undefinedRsec) {
        rsec = m_node.referenceSec();
    }

    std::int32_t minModulation = modulationOfCode(minCode);
    std::int32_t maxModulation = modulationOfCode(maxCode);

    std::int32_t selectedMinCode = undefinedCode;
    std::int32_t selectedMaxCode = undefinedCode;
    getSelectedMinMaxAcm(selectedMinCode, selectedMaxCode);
    if (minCode == undefinedCode) {
        minModulation = modulationOfCode(selectedMinCode);
    }
    if (maxCode == undefinedCode) {
        maxModulation = modulationOfCode(selectedMaxCode);
    }

    const bool adModEnable = getAdmodEnable(minCode, maxCode);

    std::uint32_t result = 0;
    if (frameFormatId < 1) {
        result = getMaxOutputPowerArrayUsingConfigured(rsec, adModEnable, minModulation,
                                                       maxModulation, powerMap);
        if (failed(result)) {
            return result;
        }
        minOutputPower = getMinOutputPower(static_cast<std::uint32_t>(m_node.channelSpacing()));
    } else {
        result = getMaxOutputPowerArrayUsingRfid(frameFormatId, rsec, adModEnable, minModulation,
                                                 maxModulation, powerMap);
        if (failed(result)) {
            return result;
        }
        minOutputPower = getMinOutputPowerUsingRfid(static_cast<std::uint32_t>(frameFormatId));
    }
    message(5, function, "minOutputPower = " + number(minOutputPower));
    return result;
}

std::uint32_t Service::getMaxOutputPowerArrayUsingConfigured(std::int32_t rsec, bool adModEnable,
                                                             std::int32_t selectedMinMod,
                                                             std::int32_t selectedMaxMod,
                                                             PowerMap& powerMap) {
    enter("getMaxOutputPowerArrayUsingConfigured",
          "rsec=" + number(rsec) + ", adModEnable=" + flag(adModEnable) +
              ", selectedMinMod=" + modulationText(selectedMinMod) +
              ", selectedMaxMod=" + modulationText(selectedMaxMod));
    const std::vector<std::int32_t> codes = m_node.modulationAndCodes();
    const std::int32_t dpdVersion = m_node.dpdVersion();
    const std::int32_t market = m_node.market();
    const std::int32_t channelSpacing = m_node.channelSpacing();
    return populateModulationPowerMap(codes, 0, rsec, adModEnable, selectedMinMod, selectedMaxMod,
                                      0, dpdVersion, market, channelSpacing, powerMap);
}

std::uint32_t Service::getMaxOutputPowerArrayUsingRfid(std::int32_t rfid, std::int32_t rsec,
                                                       bool adModEnable,
                                                       std::int32_t selectedMinMod,
                                                       std::int32_t selectedMaxMod,
                                                       PowerMap& powerMap) {
    const std::string function = "getMaxOutputPowerArrayUsingRfid";
    enter(function, "rfid=" + number(rfid) + ", rsec=" + number(rsec) + ", adModEnable=" +
                        flag(adModEnable) + ", selectedMinMod=" + modulationText(selectedMinMod) +
                        ", selectedMaxMod=" + modulationText(selectedMaxMod));

    const std::int32_t dpdVersion = m_node.dpdVersionOf(rfid);

    std::int32_t market = marketEtsi;
    const Answer<std::int32_t> marketAnswer = m_node.marketOf(rfid);
    if (marketAnswer.written.has_value()) {
        market = *marketAnswer.written;
    }
    if (failed(marketAnswer.result)) {
        message(1, function, "Failed to get telecom market, wrong channel or FFID?");
    }

    std::vector<std::int32_t> codes;
    const Answer<std::vector<std::int32_t>> codesAnswer = m_node.modulationAndCodesOf(rfid);
    if (codesAnswer.written.has_value()) {
        codes = *codesAnswer.written;
    }
    if (failed(codesAnswer.result)) {
        message(1, function, "Failed to get modulation and code array, wrong channel or FFID?");
    }

    std::int32_t channelSpacing = 0;
    const Answer<std::int32_t> spacingAnswer = m_node.channelSpacingOf(rfid);
    if (spacingAnswer.written.has_value()) {
        channelSpacing = *spacingAnswer.written;
    }
    if (failed(spacingAnswer.result)) {
        message(1, function, "Failed to get channel spacing, wrong channel or FFID?");
    }

    return populateModulationPowerMap(codes, rfid, rsec, adModEnable, selectedMinMod,
                                      selectedMaxMod, 1, dpdVersion, market, channelSpacing,
                                      powerMap);
}

std::uint32_t Service::populateModulationPowerMap(
    const std::vector<std::int32_t>& codes, std::int32_t rfid, std::int32_t rsec, bool adModEnable,
    std::int32_t selectedMinMod, std::int32_t selectedMaxMod, std::int32_t useConfiguredFF,
    std::int32_t dpdVersion, std::int32_t market, std::int32_t channelSpacing, PowerMap& powerMap) {
    const std::string function = "populateModulationPowerMap";
    enter(function, "rsec=" + number(rsec) + ", adModEnable=" + flag(adModEnable) +
                        ", selectedMinMod=" + modulationText(selectedMinMod) +
                        ", selectedMaxMod=" + modulationText(selectedMaxMod));
    message(6, function, "modulationAndCodeArraySize = " + std::to_string(codes.size()));

    if (codes.empty()) {
        message(1, function,
                "Failed to calculate power capabilities, modulationAndCodeArray is empty");
        return 32771;
    }

    std::int32_t largestCode = codes.front();
    std::int32_t smallestCode = codes.front();
    for (const std::int32_t code : codes) {
        if (code > largestCode) {
            largestCode = code;
        }
        if (code < smallestCode) {
            smallestCode = code;
        }
    }
    const std::int32_t availableMax = modulationOfCode(largestCode);
    if (availableMax == undefinedModulation) {
        message(1, function, "Failed to calculate power capabilities for undefined max modulation");
        return 32771;
    }

    std::int32_t selectedMin = selectedMinMod;
    if (selectedMin == undefinedModulation) {
        selectedMin = modulationOfCode(smallestCode);
    }

    const std::int32_t limitedMax =
        limitMaxModDueToRadioCapability(useConfiguredFF, rfid, availableMax);

    const std::int32_t effectiveSelectedMax =
        selectedMaxMod == undefinedModulation ? availableMax : selectedMaxMod;

    std::int32_t compensation = 0;
    if (failed(getCsPowerCompensation(channelSpacing, compensation))) {
        return 32768;
    }

    std::int32_t lastStored = undefinedModulation;
    std::int32_t power = 0;
    for (const std::int32_t code : codes) {
        if (code == undefinedCode) {
            continue;
        }
        const std::int32_t modulation = modulationOfCode(code);
        if (limitedMax < modulation) {
            continue;
        }
        if (modulation == lastStored) {
            powerMap[code] = power;
            continue;
        }
        std::uint32_t result = 0;
        if (adModEnable) {
            result = getAdModMaxPower(dpdVersion, market, rsec, selectedMin, effectiveSelectedMax,
                                      limitedMax, modulation, compensation, power, true);
        } else {
            result = getFixModMaxPower(dpdVersion, market, selectedMin, modulation, compensation,
                                       power, true);
        }
        if (failed(result)) {
            message(2, function,
                    "Failed to calculate power capabilities for modType " +
                        modulationText(modulation));
            continue;
        }
        if (result == 2) {
            message(5, function,
                    "ignoring QAM" + modulationText(modulation) +
                        " as it's not supported by combined HW capability");
            continue;
        }
        powerMap[code] = power;
        lastStored = modulation;
    }
    return 0;
}

// ---------------------------------------------------------------------------------------------
// Replay

namespace {

nlohmann::ordered_json traceOf(const Trace& trace, int traceLevel) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const TraceRecord& record : trace) {
        if (record.level > traceLevel) {
            continue;
        }
        nlohmann::ordered_json shown;
        if (record.kind == TraceKind::raw) {
            shown["code"] = record.code;
            shown["kind"] = "raw";
        } else {
            shown["level"] = record.level;
            shown["kind"] = record.kind == TraceKind::enter ? "enter" : "msg";
        }
        shown["file"] = record.file;
        shown["function"] = record.function;
        shown["text"] = record.text;
        list.push_back(shown);
    }
    return list;
}

std::string finished(nlohmann::ordered_json line, Service& service, int traceLevel) {
    if (traceLevel > 0) {
        line["trace"] = traceOf(service.m_trace, traceLevel);
    }
    service.m_trace.clear();
    return line.dump();
}

nlohmann::ordered_json lineOf(const std::string& call, std::uint32_t result) {
    nlohmann::ordered_json line;
    line["call"] = call;
    line["result"] = result;
    return line;
}

nlohmann::ordered_json played(const json& request, Service& service, Node& node) {
    const std::string call = request.at("call").get<std::string>();
    const std::int32_t preset = request.contains("preset") ? integer(request.at("preset")) : 0;

    if (call == "initialize") {
        const std::uint32_t result = service.initialize();
        nlohmann::ordered_json line = lineOf(call, result);
        line["registered"] = service.m_registered;
        return line;
    }
    if (call == "setPowerCutback") {
        return lineOf(call, service.setPowerCutback(unsignedInteger(request.at("cutback"))));
    }
    if (call == "setTemporaryPowerCutback") {
        return lineOf(call,
                      service.setTemporaryPowerCutback(request.at("use").get<bool>(),
                                                       unsignedInteger(request.at("cutback"))));
    }
    if (call == "setTemperature") {
        return lineOf(call, service.setTemperature(integer(request.at("temperature"))));
    }
    if (call == "setBoosterPresence") {
        return lineOf(call, service.setBoosterPresence(integer(request.at("presence")),
                                                       integer(request.at("gain")),
                                                       integer(request.at("maxInputPower")),
                                                       modulationIn(request.at("maxModulation"))));
    }
    if (call == "calculatePowerCapabilities") {
        std::int32_t minPower = preset;
        std::int32_t maxPower = preset;
        const std::uint32_t result = service.calculatePowerCapabilities(
            modulationIn(request.at("modulation")), minPower, maxPower);
        nlohmann::ordered_json line = lineOf(call, result);
        line["minPower"] = minPower;
        line["maxPower"] = maxPower;
        return line;
    }
    if (call == "calculateAdmodPowerCapabilities") {
        std::int32_t minPower = preset;
        std::int32_t maxPower = preset;
        const std::uint32_t result = service.calculateAdmodPowerCapabilities(
            modulationIn(request.at("modulation")), rsecIn(request.at("rsec")), minPower, maxPower);
        nlohmann::ordered_json line = lineOf(call, result);
        line["minPower"] = minPower;
        line["maxPower"] = maxPower;
        return line;
    }
    if (call == "findPminPmax") {
        std::int32_t pmin = preset;
        std::int32_t pmax = preset;
        const std::uint32_t result = service.findPminPmax(pmin, pmax);
        nlohmann::ordered_json line = lineOf(call, result);
        line["pmin"] = pmin;
        line["pmax"] = pmax;
        return line;
    }
    if (call == "getUnrestrictedPmax") {
        std::int32_t pmax = preset;
        const std::uint32_t result = service.getUnrestrictedPmax(pmax);
        nlohmann::ordered_json line = lineOf(call, result);
        line["pmax"] = pmax;
        return line;
    }
    if (call == "getMinMaxOutputPowerVsModulationArray") {
        std::int32_t frameFormatId = 0;
        std::int32_t minCode = undefinedCode;
        std::int32_t maxCode = undefinedCode;
        std::int32_t referenceSec = undefinedRsec;
        PowerMap powerMap;
        if (request.contains("frameFormatId")) {
            frameFormatId = integer(request.at("frameFormatId"));
        }
        if (request.contains("minModulationAndCode")) {
            minCode = codeIn(request.at("minModulationAndCode"));
        }
        if (request.contains("maxModulationAndCode")) {
            maxCode = codeIn(request.at("maxModulationAndCode"));
        }
        if (request.contains("referenceSec")) {
            referenceSec = rsecIn(request.at("referenceSec"));
        }
        if (request.contains("powerMap")) {
            for (const json& entry : request.at("powerMap")) {
                powerMap[codeIn(entry.at(0))] = integer(entry.at(1));
            }
        }
        std::int32_t minOutputPower = preset;
        const std::uint32_t result = service.getMinMaxOutputPowerVsModulationArray(
            frameFormatId, minCode, maxCode, referenceSec, minOutputPower, powerMap);
        nlohmann::ordered_json line = lineOf(call, result);
        line["minOutputPower"] = minOutputPower;
        line["powerMap"] = nlohmann::ordered_json::array();
        for (const auto& [code, maxPower] : powerMap) {
            nlohmann::ordered_json entry;
            entry["code"] = code;
            entry["maxPower"] = maxPower;
            line["powerMap"].push_back(entry);
        }
        return line;
    }
    if (call == "patch") {
        node.patch(request.at("file"));
        return lineOf(call, 0);
    }
    throw std::invalid_argument("unknown call " + call);
}

} // namespace

std::vector<std::string> replay(const json& radioFile, int traceLevel, ProcessState& process) {
    std::vector<std::string> lines;
    Node node(radioFile);
    Service service(node.channel(), node, process);

    const std::uint32_t started = service.initialize();
    nlohmann::ordered_json first = lineOf("initialize", started);
    first["registered"] = service.m_registered;
    lines.push_back(finished(first, service, traceLevel));
    if (failed(started)) {
        return lines;
    }

    if (radioFile.contains("requests")) {
        for (const json& request : radioFile.at("requests")) {
            const nlohmann::ordered_json line = played(request, service, node);
            lines.push_back(finished(line, service, traceLevel));
        }
    }
    return lines;
}

} // namespace reference
