#include "RandomRadioFile.h"

#include "Types.h"

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace reference {

namespace {

using nlohmann::json;

const std::vector<std::string> listedProducts = {
    "QZT 846 57", "QZT 846 001", "QZT 846 003", "QZT35201/1",  "QZT35201/11",  "QZT35201/12",
    "QZT35202/1", "QZT35203/1",  "QZT35204/1",  "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",
    "QZT35207/1", "QZT35208/1",  "QZT35221/1",  "QZT35221/11", "QZT35221/12",  "QZT35222/1",
    "QZT35223/1", "QZT35224/1",  "QZT35225/1",  "QZT35226/1",  "QZT35227/1",
};

const std::vector<std::string> nearMissProducts = {
    "QZT 846 002",
    "QZT 846 57 ",
    " QZT 846 57",
    "qzt 846 57",
    "QZT 846 0011",
    "QZT 846 00",
    "QZT 846 003 ",
    "QZT846 003",
    "QZT35205/1 ",
    "qzt35201/1",
    "QZT35209/1",
    "QZT35201/13",
    "QZT35205/1hp",
    "QZT35205/HP",
    "QZT35227/1HP",
    "QZT 352 01/1",
    "QZT35228/1",
    "0",
    " ",
    "QZT35201/1\t",
};

const std::vector<std::int64_t> oddEnumerationValues = {
    8,  3,   -1,    13,    163,    164,    999,        1000,
    15, 150, 32768, 99999, 100000, 100001, 2147483647, -2147483648LL,
};

const std::vector<std::int64_t> extremePowers = {
    -2147483648LL, -2147483647, -2147480000, 2147483647, 2147483000, -1, 0, 1, 100000,
};

const std::vector<std::int64_t> successResults = {0, 1, 2, 3, 2080, 32767};
const std::vector<std::int64_t> failureResults = {32768, 32769,        32770,       32776,
                                                  65535, 2147483648LL, 4294967295LL};

// The modulations of a usual Pmax table, in order.
const std::vector<std::int64_t> tableModulations = {2,   4,    16,   32,   64,   128,  256,
                                                    512, 1024, 2048, 4096, 8192, 16384};

const std::vector<std::int64_t> usualSpacings = {4, 7, 14, 20, 28, 40, 56, 80, 112};

// Pieces of product numbers, and what is awkward to print.
const std::vector<std::string> productPieces = {
    "QZT 846 ", "57",  "001", "003",  "QZT35", "201",      "/1",           "HP",
    " ",        "qzt", "\n",  "\"\\", "\x7F",  "\xC3\xA9", "\xE2\x80\xA8", std::string(1, '\0')};

std::string variablePrefix(std::uint32_t channel) {
    return "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.";
}

class RandomDecisions : public Decisions {
public:
    explicit RandomDecisions(std::uint64_t seed)
        : m_engine(seed) {}

    std::uint64_t below(std::uint64_t count) override { return m_engine() % count; }
    bool chance(std::uint64_t percent) override { return below(100) < percent; }
    bool anything() override { return false; }
    bool areUsedUp() const override { return false; }

private:
    std::mt19937_64 m_engine;
};

// Decisions are taken one statement, or one element of a braced list, at a time: the order of
// evaluation within any other expression is not the same everywhere.
class Generator {
public:
    explicit Generator(Decisions& decisions)
        : m_decisions(decisions) {}

    json radioFile();

private:
    std::uint64_t below(std::uint64_t count) { return m_decisions.below(count); }
    bool chance(std::uint64_t percent) { return m_decisions.chance(percent); }

    // Counts up instead of casting: whether a cast to std::size_t is needed depends on the
    // platform.
    std::size_t indexBelow(std::size_t count) {
        const std::uint64_t drawn = below(count);
        std::size_t index = 0;
        while (index < drawn) {
            ++index;
        }
        return index;
    }

    std::int64_t between(std::int64_t low, std::int64_t high) {
        const std::uint64_t span = static_cast<std::uint64_t>(high - low) + 1;
        return low + static_cast<std::int64_t>(below(span));
    }

    template <typename Value>
    Value pick(const std::vector<Value>& values) {
        return values.at(indexBelow(values.size()));
    }

    template <typename Value>
    void shuffle(std::vector<Value>& values) {
        for (std::size_t left = values.size(); left > 1; --left) {
            const std::size_t other = indexBelow(left);
            std::swap(values.at(left - 1), values.at(other));
        }
    }

    std::int64_t any32() { return between(-2147483648LL, 2147483647); }

    std::int64_t odd(const std::vector<std::int64_t>& values) {
        return m_decisions.anything() ? any32() : pick(values);
    }

    std::int64_t oddUnsigned(const std::vector<std::int64_t>& values) {
        return m_decisions.anything() ? between(0, 4294967295LL) : pick(values);
    }

    std::int64_t odd16(const std::vector<std::int64_t>& values) {
        return m_decisions.anything() ? between(-32768, 32767) : pick(values);
    }

    // The value as its text, most of the time, or as its number.
    json shown(std::int64_t value, const std::string& text, bool textStandsForValue) {
        if (textStandsForValue && !chance(25)) {
            return text;
        }
        return value;
    }

    json modulationJson(std::int64_t value) {
        const std::string text = modulationText(static_cast<std::int32_t>(value));
        return shown(value, text, modulationOfText(text) == static_cast<std::int32_t>(value));
    }

    json codeJson(std::int64_t value) {
        const std::string text = codeText(static_cast<std::int32_t>(value));
        return shown(value, text, codeOfText(text) == static_cast<std::int32_t>(value));
    }

    json rsecJson(std::int64_t value) {
        const std::string text = rsecText(static_cast<std::int32_t>(value));
        return shown(value, text, rsecOfText(text) == static_cast<std::int32_t>(value));
    }

    json marketJson(std::int64_t value) {
        const std::string text = marketText(static_cast<std::int32_t>(value));
        return shown(value, text, marketOfText(text) == static_cast<std::int32_t>(value));
    }

    std::int64_t modulation(std::uint64_t oddPercent) {
        if (chance(oddPercent)) {
            return odd(oddEnumerationValues);
        }
        if (chance(4)) {
            return pick(std::vector<std::int64_t>{0, 65536});
        }
        return pick(tableModulations);
    }

    // The modulation of a query: mostly one that every family knows.
    std::int64_t askedModulation() {
        if (chance(70)) {
            return pick(std::vector<std::int64_t>{4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096});
        }
        return modulation(15);
    }

    std::int64_t highModulation() {
        if (chance(3)) {
            return undefinedModulation;
        }
        return pick(std::vector<std::int64_t>{256, 512, 1024, 2048, 4096, 8192, 16384});
    }

    std::int64_t code(std::uint64_t oddPercent) {
        if (chance(oddPercent)) {
            return odd(oddEnumerationValues);
        }
        const std::vector<std::int32_t> codes = listedCodes();
        // Half-rate codes and those of 65536QAM are rarer than the rest.
        std::int32_t chosen = pick(codes);
        if ((chosen < 23 || chosen > 142) && chance(60)) {
            chosen = pick(codes);
        }
        return chosen;
    }

    std::int64_t rsec(std::uint64_t oddPercent) {
        if (chance(oddPercent)) {
            if (chance(60)) {
                return undefinedRsec;
            }
            return odd({10, 999, -1, 13, 163, 100000, 2147483647});
        }
        return between(0, 9);
    }

    // The first value whose share, counted up in percent, is not reached; an odd one behind them.
    std::int64_t mostly(const std::vector<std::pair<std::uint64_t, std::int64_t>>& shares,
                        const std::vector<std::int64_t>& oddValues) {
        const std::uint64_t draw = below(100);
        for (const auto& [percent, value] : shares) {
            if (draw < percent) {
                return value;
            }
        }
        return odd(oddValues);
    }

    std::int64_t market() {
        return mostly({{48, 0}, {78, 1}, {88, 2}, {93, 3}, {98, 7}}, oddEnumerationValues);
    }

    std::int64_t dpdVersion() {
        return mostly({{38, 1}, {78, 2}, {95, 3}, {97, 0}, {99, 4}},
                      {-1, 2147483647, -2147483648LL});
    }

    std::int64_t spacing() {
        if (chance(94)) {
            return pick(usualSpacings);
        }
        return odd({0, 3000, 1, -1, -5, 2147483647, -2147483648LL});
    }

    std::int64_t power(std::int64_t low, std::int64_t high) {
        const std::uint64_t draw = below(100);
        if (draw < 95) {
            return between(low, high);
        }
        if (draw < 97) {
            return any32();
        }
        return odd(extremePowers);
    }

    std::int64_t cutback() {
        const std::uint64_t draw = below(100);
        if (draw < 80) {
            return between(0, 40) * 25;
        }
        if (draw < 90) {
            return between(0, 4000);
        }
        return oddUnsigned({4294967295LL, 4294967294LL, 2147483648LL, 2147483647, 100000, 0});
    }

    json failure() {
        return {{"result",
                 m_decisions.anything() ? between(32768, 4294967295LL) : pick(failureResults)}};
    }

    json success() { return {{"result", pick(successResults)}}; }

    json failureOrSuccess() { return chance(60) ? failure() : success(); }

    json productNumber() {
        const std::uint64_t draw = below(100);
        if (draw < 8) {
            return "";
        }
        if (draw < 24) {
            return chance(50) ? "QZT 846 57" : "QZT 846 001";
        }
        if (draw < 46) {
            return "QZT 846 003";
        }
        if (draw < 72) {
            return listedProducts.at(3 + indexBelow(20));
        }
        if (m_decisions.anything()) {
            std::string text;
            const std::uint64_t pieces = below(8);
            for (std::uint64_t piece = 0; piece < pieces; ++piece) {
                text += pick(productPieces);
            }
            return text;
        }
        return pick(nearMissProducts);
    }

    json pmaxRows();
    json pmaxTable();
    json minOutputPower();
    json patchedMinOutputPower();
    json byProfile();
    json byMarket();
    json capabilityHandler();
    json acmHandler();
    json codes();
    json profiles();
    void addProfiles(json& frameFormat);
    json frameFormat();
    json offsets();
    json systemPowerController();
    json frameFormatRecords();
    json calibrationArray(std::int64_t& size);
    void addVariables(json& variables, std::uint32_t channel);

    json request();
    json arrayQuery();
    json patchRequest();
    json patchContent();
    json toReplace(const std::vector<std::string>& path, const json& value) const;
    json toReplaceOrDrop(const std::string& neighbour, const std::string& key,
                         std::uint64_t dropPercent, json (Generator::*make)());

    Decisions& m_decisions;
    json m_now; // the file as the patches so far leave it
    std::vector<std::int64_t> m_ids;
};

json Generator::pmaxRows() {
    std::vector<std::int64_t> modulations = tableModulations;
    if (chance(70)) {
        modulations.insert(modulations.begin(), 0);
        modulations.push_back(65536);
    }
    if (chance(14)) {
        const std::uint64_t removals = 1 + below(3);
        for (std::uint64_t removal = 0; removal < removals; ++removal) {
            const std::int64_t removed = pick(modulations);
            modulations.erase(std::find(modulations.begin(), modulations.end(), removed));
        }
    }
    if (chance(4)) {
        modulations.push_back(pick(tableModulations));
    }
    if (chance(5)) {
        modulations.push_back(odd(oddEnumerationValues));
    }

    std::int64_t level = between(36, 64) * 50;
    const std::int64_t steepest = between(1, 5);
    std::vector<std::pair<std::int64_t, std::int64_t>> rows;
    for (const std::int64_t modulation : modulations) {
        std::int64_t rowPower = level;
        if (chance(1)) {
            rowPower = odd(extremePowers);
        }
        rows.emplace_back(modulation, rowPower);
        level -= between(0, steepest) * 50;
    }
    if (chance(15)) {
        shuffle(rows);
    }

    json table = json::array();
    for (const auto& [modulation, rowPower] : rows) {
        table.push_back(json::array({modulationJson(modulation), rowPower}));
    }
    return table;
}

json Generator::pmaxTable() {
    const std::uint64_t draw = below(100);
    if (draw < 83) {
        return pmaxRows();
    }
    if (draw < 86) {
        return failure();
    }
    if (draw < 87) {
        return success();
    }
    if (draw < 88) {
        return json::array();
    }

    json integers = json::array();
    if (draw < 96) {
        // A usual table as flat integers, cut off after a modulation in half of the cases.
        const json rows = pmaxRows();
        for (const json& row : rows) {
            const json& modulation = row.at(0);
            if (modulation.is_string()) {
                integers.push_back(*modulationOfText(modulation.get<std::string>()));
            } else {
                integers.push_back(modulation);
            }
            integers.push_back(row.at(1));
        }
        if (chance(50)) {
            integers.erase(integers.size() - 1);
        }
    } else {
        const std::uint64_t count = below(8);
        for (std::uint64_t index = 0; index < count; ++index) {
            integers.push_back(chance(50) ? modulation(20) : power(1500, 3000));
        }
    }
    return json{{"integers", integers}};
}

json Generator::minOutputPower() {
    return chance(5) ? success() : json(power(-2000, 500));
}

json Generator::patchedMinOutputPower() {
    return chance(10) ? failure() : minOutputPower();
}

json Generator::byProfile() {
    if (chance(35)) {
        return modulationJson(highModulation());
    }
    json limits = json::object();
    const std::uint64_t count = 1 + below(6);
    for (std::uint64_t index = 0; index < count; ++index) {
        const std::int64_t profile = chance(95) ? between(1, 6) : odd16({0, -1, -32768, 32767});
        limits[std::to_string(profile)] = modulationJson(highModulation());
    }
    return limits;
}

json Generator::byMarket() {
    if (chance(35)) {
        return modulationJson(highModulation());
    }
    json limits = json::object();
    for (std::int32_t market = 0; market <= 3; ++market) {
        if (chance(75)) {
            limits[marketText(market)] = modulationJson(highModulation());
        }
    }
    return limits;
}

json Generator::capabilityHandler() {
    json handler = json::object();
    if (chance(94)) {
        handler["productNumber"] = productNumber();
    }
    if (chance(92)) {
        handler["minOutputPower"] = chance(2) ? failure() : minOutputPower();
    }
    for (const char* key : {"pmaxDpd1Etsi", "pmaxDpd2Etsi", "pmaxDpd1Ansi", "pmaxDpd2Ansi"}) {
        if (chance(95)) {
            handler[key] = pmaxTable();
        }
    }
    if (chance(80)) {
        handler["maxAcmLimitedByHw"] = chance(50);
    }
    if (chance(85)) {
        handler["performanceProfileIndex"] =
            chance(93) ? between(0, 3) : odd16({-1, 4, 32767, -32768});
    }
    if (chance(85)) {
        handler["maxModulationLimitedByHw"] = byProfile();
    }
    if (chance(85)) {
        handler["maxModulationWithoutLimitation"] = byMarket();
    }
    return handler;
}

json Generator::acmHandler() {
    const std::uint64_t draw = below(100);
    if (draw < 10) {
        return json::object();
    }
    if (draw < 14) {
        return success();
    }
    if (draw < 20) {
        return failure();
    }
    std::int64_t first = 0;
    std::int64_t second = 0;
    if (draw < 75) {
        first = pick(std::vector<std::int64_t>{23, 30, 31, 32, 33, 40, 41, 42, 50, 51, 60, 61});
        second = pick(std::vector<std::int64_t>{61,  62,  70,  71,  73,  80,  81,  82,  90,
                                                91,  93,  100, 101, 102, 110, 111, 113, 120,
                                                121, 122, 130, 131, 133, 140, 141, 142, 163});
    } else if (draw < 88) {
        first = code(0);
        second = code(0);
    } else {
        first = code(40);
        second = code(40);
    }
    if (chance(12)) {
        second = first;
    }
    json handler = json::object();
    handler["min"] = codeJson(first);
    handler["max"] = codeJson(second);
    return handler;
}

json Generator::codes() {
    if (chance(3)) {
        return json::array();
    }
    std::vector<std::int64_t> chosen;
    const std::uint64_t keepPercent = 10 + below(60);
    for (const std::int32_t listed : listedCodes()) {
        const bool rare = listed < 20 || listed > 142;
        if (chance(rare ? keepPercent / 3 : keepPercent)) {
            chosen.push_back(listed);
        }
    }
    if (chosen.empty()) {
        chosen.push_back(31);
    }
    if (chance(6)) {
        chosen.push_back(pick(chosen));
    }
    if (chance(3)) {
        chosen.push_back(undefinedCode);
    }
    if (chance(6)) {
        // Small ones only: the largest code decides the modulation of the whole array.
        chosen.push_back(pick(std::vector<std::int64_t>{5, 0, -1, 8, 3, 13, 9, -2147483648LL, 43}));
    }
    if (chance(2)) {
        chosen.push_back(odd({164, 100000, 2147483647}));
    }
    if (chance(12)) {
        shuffle(chosen);
    }
    json list = json::array();
    for (const std::int64_t value : chosen) {
        list.push_back(codeJson(value));
    }
    return list;
}

json Generator::profiles() {
    json list = json::array();
    const std::uint64_t count = below(5);
    for (std::uint64_t index = 0; index < count; ++index) {
        list.push_back(chance(96) ? between(1, 6) : odd16({0, -1, 32767, -32768}));
    }
    return list;
}

void Generator::addProfiles(json& frameFormat) {
    for (const char* key : {"performanceProfiles", "carrierAggregationPerformanceProfiles"}) {
        if (chance(85)) {
            frameFormat[key] = profiles();
        }
    }
}

json Generator::frameFormat() {
    json format = json::object();
    std::int64_t current = askedModulation();
    if (chance(5)) {
        current = undefinedModulation;
    }
    format["modulation"] = modulationJson(current);
    std::int64_t available = highModulation();
    if (chance(4)) {
        available = undefinedModulation;
    }
    if (chance(5)) {
        available = modulation(40);
    }
    format["maxAvailableModulation"] = modulationJson(available);
    format["modulationAndCodes"] = codes();
    format["channelSpacing"] = spacing();
    format["dpdVersion"] = dpdVersion();
    format["market"] = marketJson(market());
    addProfiles(format);
    return format;
}

json Generator::offsets() {
    json list = json::array();
    for (const std::int64_t usual : usualSpacings) {
        if (chance(55)) {
            list.push_back(json::array({usual, power(-500, 800)}));
        }
    }
    const std::uint64_t more = below(3);
    for (std::uint64_t index = 0; index < more; ++index) {
        list.push_back(json::array({spacing(), power(-500, 800)}));
    }
    if (chance(20)) {
        list.push_back(json::array({0, power(-500, 800)}));
    }
    return list;
}

json Generator::systemPowerController() {
    return {{"referenceSec", rsecJson(rsec(5))}, {"minOutputPowerOffsets", offsets()}};
}

json Generator::frameFormatRecords() {
    json records = json::array();
    m_ids.clear();
    const std::uint64_t count = below(5);
    for (std::uint64_t index = 0; index < count; ++index) {
        std::int64_t id = between(1, 9);
        if (chance(8)) {
            id = odd({0, -1, 2147483647, -2147483648LL});
        }
        if (chance(15) && !m_ids.empty()) {
            id = pick(m_ids);
        }
        m_ids.push_back(id);

        json record = json::object();
        record["id"] = id;
        if (chance(88)) {
            record["channelSpacing"] = spacing();
        } else if (chance(40)) {
            record["channelSpacing"] = 3000;
        } else {
            record["channelSpacing"] = failureOrSuccess();
        }
        record["dpdVersion"] = dpdVersion();
        record["market"] = chance(92) ? marketJson(market()) : failureOrSuccess();
        record["modulationAndCodes"] = chance(92) ? codes() : failureOrSuccess();
        addProfiles(record);
        records.push_back(record);
    }
    return records;
}

json Generator::calibrationArray(std::int64_t& size) {
    json elements = json::array();
    if (chance(4)) {
        size = 0;
        return elements;
    }
    std::vector<std::int64_t> spacings = usualSpacings;
    shuffle(spacings);
    const std::size_t pairs = 1 + indexBelow(8);
    for (std::size_t index = 0; index < pairs; ++index) {
        elements.push_back(chance(94) ? spacings.at(index) : spacing());
        elements.push_back(power(-400, 400));
    }
    if (chance(8)) {
        elements.push_back(pick(usualSpacings)); // the first half of a pair
    }
    size = static_cast<std::int64_t>(elements.size());
    if (chance(2)) {
        return oddUnsigned(usualSpacings); // a single value where an array belongs
    }
    return elements;
}

void Generator::addVariables(json& variables, std::uint32_t channel) {
    const std::string prefix = variablePrefix(channel);
    std::int64_t size = 0;
    const json elements = calibrationArray(size);
    if (chance(97)) {
        variables[prefix + "array"] = elements;
    }
    if (chance(12)) {
        const std::vector<std::int64_t> disagreeing = {
            0, 1, 2, 3, 4, 5, size + 2, 1000, 4294967295LL, -1, -2147483648LL};
        size = pick(disagreeing);
    }
    if (chance(97)) {
        variables[prefix + "arraysize"] = size;
    }
}

json Generator::request() {
    const std::uint64_t draw = below(100);
    if (draw < 3) {
        return {{"call", "initialize"}};
    }
    if (draw < 12) {
        return {{"call", "setPowerCutback"}, {"cutback", cutback()}};
    }
    if (draw < 19) {
        return {{"call", "setTemporaryPowerCutback"}, {"use", chance(50)}, {"cutback", cutback()}};
    }
    if (draw < 22) {
        return {{"call", "setTemperature"}, {"temperature", power(-40, 90)}};
    }
    if (draw < 31) {
        return {{"call", "setBoosterPresence"},
                {"presence", odd({0, 0, 1, 1, 1, 2, 6, 7, 7, 8, -1})},
                {"gain", power(0, 2000)},
                {"maxInputPower", power(0, 3000)},
                {"maxModulation", modulationJson(chance(80) ? highModulation() : modulation(20))}};
    }
    if (draw >= 90) {
        return patchRequest();
    }
    json asked;
    if (draw < 43) {
        asked = {{"call", "calculatePowerCapabilities"},
                 {"modulation", modulationJson(askedModulation())}};
    } else if (draw < 58) {
        asked = {{"call", "calculateAdmodPowerCapabilities"},
                 {"modulation", modulationJson(askedModulation())},
                 {"rsec", rsecJson(rsec(8))}};
    } else if (draw < 64) {
        asked = {{"call", "findPminPmax"}};
    } else if (draw < 70) {
        asked = {{"call", "getUnrestrictedPmax"}};
    } else {
        asked = arrayQuery();
    }
    if (chance(25)) {
        asked["preset"] = power(-2000, 3000);
    }
    return asked;
}

json Generator::arrayQuery() {
    json asked = {{"call", "getMinMaxOutputPowerVsModulationArray"}};
    if (chance(70)) {
        std::int64_t id = 0;
        if (!m_ids.empty() && chance(70)) {
            id = pick(m_ids);
        } else if (chance(40)) {
            id = odd({1, 5, 9, 10, -1, 2147483647, -2147483648LL});
        }
        asked["frameFormatId"] = id;
    }
    for (const char* key : {"minModulationAndCode", "maxModulationAndCode"}) {
        if (chance(45)) {
            asked[key] = codeJson(code(8));
        }
    }
    if (chance(60)) {
        asked["referenceSec"] = rsecJson(rsec(10));
    }
    if (chance(25)) {
        json entries = json::array();
        std::set<std::int64_t> taken;
        const std::uint64_t count = below(5);
        for (std::uint64_t index = 0; index < count; ++index) {
            const std::int64_t key = code(15);
            if (taken.insert(key).second) {
                entries.push_back(json::array({codeJson(key), power(0, 2500)}));
            }
        }
        asked["powerMap"] = entries;
    }
    return asked;
}

json Generator::patchRequest() {
    json patch = json::object();
    const std::uint64_t parts = chance(75) ? 1 : 2 + below(3);
    for (std::uint64_t part = 0; part < parts; ++part) {
        const json next = patchContent();
        bool touchesTheSame = false;
        for (const auto& [neighbour, content] : next.items()) {
            for (const auto& [key, value] : content.items()) {
                touchesTheSame |= patch.contains(neighbour) && patch.at(neighbour).contains(key);
            }
        }
        if (touchesTheSame) {
            continue;
        }
        m_now.merge_patch(next);
        // A null has to survive, so the parts are joined and not merged.
        for (const auto& [neighbour, content] : next.items()) {
            if (!patch.contains(neighbour)) {
                patch[neighbour] = json::object();
            }
            for (const auto& [key, value] : content.items()) {
                patch[neighbour][key] = value;
            }
        }
    }
    json asked = json::object();
    asked["call"] = "patch";
    asked["file"] = patch;
    return asked;
}

// A patch that leaves exactly `value` at this place, whatever object stood there before.
json Generator::toReplace(const std::vector<std::string>& path, const json& value) const {
    const json* before = &m_now;
    for (const std::string& step : path) {
        if (before == nullptr || !before->is_object() || !before->contains(step)) {
            before = nullptr;
            break;
        }
        before = &before->at(step);
    }
    json content = value;
    if (content.is_object() && before != nullptr && before->is_object()) {
        for (const auto& [key, old] : before->items()) {
            if (!content.contains(key)) {
                content[key] = nullptr;
            }
        }
    }
    json patch = content;
    for (auto step = path.rbegin(); step != path.rend(); ++step) {
        json outer = json::object();
        outer[*step] = patch;
        patch = outer;
    }
    return patch;
}

// The same, or in some percent of the cases one that takes the key away.
json Generator::toReplaceOrDrop(const std::string& neighbour, const std::string& key,
                                std::uint64_t dropPercent, json (Generator::*make)()) {
    return toReplace({neighbour, key}, chance(dropPercent) ? json() : (this->*make)());
}

json Generator::patchContent() {
    const std::uint64_t draw = below(100);
    if (draw < 1) {
        return json::object();
    }
    if (draw < 16) {
        return toReplaceOrDrop("capabilityHandler", "productNumber", 8, &Generator::productNumber);
    }
    if (draw < 32) {
        const std::string key = pick(std::vector<std::string>{"pmaxDpd1Etsi", "pmaxDpd2Etsi",
                                                              "pmaxDpd1Ansi", "pmaxDpd2Ansi"});
        return toReplaceOrDrop("capabilityHandler", key, 5, &Generator::pmaxTable);
    }
    if (draw < 37) {
        return toReplaceOrDrop("capabilityHandler", "minOutputPower", 10,
                               &Generator::patchedMinOutputPower);
    }
    if (draw < 46) {
        return toReplace({"frameFormat", "market"}, marketJson(market()));
    }
    if (draw < 52) {
        return toReplace({"frameFormat", "dpdVersion"}, dpdVersion());
    }
    if (draw < 58) {
        return toReplace({"frameFormat", "channelSpacing"}, spacing());
    }
    if (draw < 63) {
        return toReplace({"frameFormat", "modulationAndCodes"}, codes());
    }
    if (draw < 66) {
        return toReplace({"frameFormat", "modulation"}, modulationJson(modulation(10)));
    }
    if (draw < 69) {
        return toReplace({"frameFormat", "maxAvailableModulation"},
                         modulationJson(highModulation()));
    }
    if (draw < 74) {
        const std::string key =
            chance(50) ? "performanceProfiles" : "carrierAggregationPerformanceProfiles";
        return toReplaceOrDrop("frameFormat", key, 15, &Generator::profiles);
    }
    if (draw < 80) {
        return toReplace({"acmHandler"}, acmHandler());
    }
    if (draw < 84) {
        return toReplace({"systemPowerController", "referenceSec"}, rsecJson(rsec(5)));
    }
    if (draw < 87) {
        return toReplace({"systemPowerController", "minOutputPowerOffsets"}, offsets());
    }
    if (draw < 90) {
        return toReplace({"hardwareConfigurationHandler", "frameFormats"}, frameFormatRecords());
    }
    if (draw < 92) {
        return toReplace({"board", "carrierAggregation"}, chance(50));
    }
    if (draw < 96) {
        const std::uint32_t served = m_now.at("channel") == 2 ? 2 : 1;
        json variables = json::object();
        addVariables(variables, served);
        if (chance(8)) {
            variables[variablePrefix(served) + "array"] = nullptr;
        }
        return {{"variables", variables}};
    }
    if (draw < 98) {
        return toReplace({"capabilityHandler", "maxModulationLimitedByHw"}, byProfile());
    }
    if (chance(50)) {
        return toReplace({"capabilityHandler", "maxAcmLimitedByHw"}, chance(50));
    }
    return toReplace({"capabilityHandler", "maxModulationWithoutLimitation"}, byMarket());
}

json Generator::radioFile() {
    json file = json::object();

    const std::uint64_t draw = below(100);
    std::int64_t channel = 1;
    if (draw >= 60 && draw < 80) {
        channel = 2;
    } else if (draw >= 80) {
        channel = oddUnsigned({0, 3, 12, 4294967295LL});
    }
    file["channel"] = channel;

    if (chance(85)) {
        json board = json::object();
        if (chance(90)) {
            board["carrierAggregation"] = chance(40);
        }
        file["board"] = board;
    }

    file["capabilityHandler"] = capabilityHandler();
    file["acmHandler"] = acmHandler();
    file["frameFormat"] = frameFormat();
    file["systemPowerController"] = systemPowerController();
    json hardware = json::object();
    if (chance(92)) {
        hardware["frameFormats"] = frameFormatRecords();
    }
    file["hardwareConfigurationHandler"] = hardware;
    if (chance(3)) {
        file.erase(pick(std::vector<std::string>{"capabilityHandler", "acmHandler", "frameFormat",
                                                 "systemPowerController",
                                                 "hardwareConfigurationHandler"}));
    }

    if (chance(97)) {
        json variables = json::object();
        addVariables(variables, channel == 2 ? 2 : 1);
        if (chance(30)) {
            addVariables(variables, channel == 2 ? 1 : 2);
        }
        if (chance(20)) {
            addVariables(variables, 12);
        }
        if (chance(10)) {
            variables["some.other.variable"] = power(0, 100);
        }
        file["variables"] = variables;
    }

    m_now = file;
    const bool everyNeighbour = file.contains("capabilityHandler") && file.contains("acmHandler") &&
                                file.contains("frameFormat") &&
                                file.contains("systemPowerController") &&
                                file.contains("hardwareConfigurationHandler");

    json requests = json::array();
    const std::uint64_t count = 5 + below(26);
    while (requests.size() < count && !m_decisions.areUsedUp()) {
        const json next = request();
        const bool patches = next.at("call") == "patch";
        // A file that does not start plays no patch, and none could name the missing neighbour.
        if (patches && !everyNeighbour) {
            continue;
        }
        requests.push_back(next);
        if (patches && requests.size() < count && chance(30)) {
            requests.push_back(json{{"call", "initialize"}});
        }
    }
    file["requests"] = requests;
    return file;
}

} // namespace

json makeRadioFile(Decisions& decisions) {
    return Generator(decisions).radioFile();
}

json randomRadioFile(std::uint64_t seed) {
    RandomDecisions decisions(seed);
    return makeRadioFile(decisions);
}

} // namespace reference
