#include "RadioFileMaker.h"

#include "MergePatch.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace {

using nlohmann::json;

constexpr std::array<const char*, 16> modulationTexts{
    "CW",     "BPSK",    "4QAM",    "16QAM",   "32QAM",   "64QAM",    "128QAM",   "256QAM",
    "512QAM", "1024QAM", "2048QAM", "4096QAM", "8192QAM", "16384QAM", "65536QAM", "UNDEFINED"};
constexpr std::array<std::int32_t, 16> modulations{
    0, 2, 4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 65536, 100000};

constexpr std::array<const char*, 54> codeTexts{"HALF_BPSK_STRONG",
                                                "HALF_BPSK",
                                                "HALF_BPSK_LIGHT",
                                                "BPSK_STRONG",
                                                "BPSK",
                                                "BPSK_LIGHT",
                                                "4QAM_ULTRA_STRONG",
                                                "4QAM_STRONG",
                                                "4QAM",
                                                "4QAM_LIGHT",
                                                "16QAM_ULTRA_STRONG",
                                                "16QAM_STRONG",
                                                "16QAM",
                                                "16QAM_LIGHT",
                                                "32QAM_STRONG",
                                                "32QAM",
                                                "32QAM_LIGHT",
                                                "64QAM_ULTRA_STRONG",
                                                "64QAM_STRONG",
                                                "64QAM",
                                                "64QAM_LIGHT",
                                                "128QAM_STRONG",
                                                "128QAM",
                                                "128QAM_LIGHT",
                                                "256QAM_ULTRA_STRONG",
                                                "256QAM_STRONG",
                                                "256QAM",
                                                "256QAM_LIGHT",
                                                "512QAM_STRONG",
                                                "512QAM",
                                                "512QAM_LIGHT",
                                                "1024QAM_ULTRA_STRONG",
                                                "1024QAM_STRONG",
                                                "1024QAM",
                                                "1024QAM_LIGHT",
                                                "2048QAM_STRONG",
                                                "2048QAM",
                                                "2048QAM_LIGHT",
                                                "4096QAM_ULTRA_STRONG",
                                                "4096QAM_STRONG",
                                                "4096QAM",
                                                "4096QAM_LIGHT",
                                                "8192QAM_STRONG",
                                                "8192QAM",
                                                "8192QAM_LIGHT",
                                                "16384QAM_ULTRA_STRONG",
                                                "16384QAM_STRONG",
                                                "16384QAM",
                                                "16384QAM_LIGHT",
                                                "65536QAM_ULTRA_STRONG",
                                                "65536QAM_STRONG",
                                                "65536QAM",
                                                "65536QAM_LIGHT",
                                                "UNDEFINED"};
constexpr std::array<std::int32_t, 54> codeValues{
    10,  11,  12,  20,  21,  22,  23,  30,  31,  32,  33,  40,  41,  42,  50,  51,  52,  53,
    60,  61,  62,  70,  71,  72,  73,  80,  81,  82,  90,  91,  92,  93,  100, 101, 102, 110,
    111, 112, 113, 120, 121, 122, 130, 131, 132, 133, 140, 141, 142, 143, 160, 161, 162, 163};

constexpr std::array<const char*, 11> rsecTexts{"2",   "4L",  "4H",  "5B", "6B",       "5LB",
                                                "5HB", "6LB", "6HB", "7B", "UNDEFINED"};
constexpr std::array<std::int32_t, 11> rsecs{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000};

constexpr std::array<const char*, 4> marketTexts{"Etsi", "Ansi", "Global", "Unknown"};
constexpr std::array<std::int32_t, 4> markets{0, 1, 2, 3};

// Neighbours of enumerators, numbers of other enumerations, and the ends of the range.
constexpr std::array<std::int32_t, 16> oddNumbers{-1,
                                                  1,
                                                  3,
                                                  5,
                                                  8,
                                                  10,
                                                  13,
                                                  43,
                                                  162,
                                                  164,
                                                  999,
                                                  1001,
                                                  99999,
                                                  100001,
                                                  std::numeric_limits<std::int32_t>::max(),
                                                  std::numeric_limits<std::int32_t>::min()};

constexpr std::array<std::int32_t, 20> spacings{3,  4,  5,  7,  10, 14, 20,  27, 28, 29,
                                                30, 40, 50, 56, 60, 80, 112, 0,  -1, 3000};

constexpr std::array<std::int32_t, 8> extremePowers{std::numeric_limits<std::int32_t>::max(),
                                                    std::numeric_limits<std::int32_t>::max() - 1,
                                                    std::numeric_limits<std::int32_t>::max() - 2000,
                                                    std::numeric_limits<std::int32_t>::min(),
                                                    std::numeric_limits<std::int32_t>::min() + 1,
                                                    std::numeric_limits<std::int32_t>::min() + 2000,
                                                    100000,
                                                    -100000};

constexpr std::array<std::uint32_t, 12> unsignedNumbers{
    0, 1, 50, 200, 300, 1000, 32767, 32768, 2147483647, 2147483648, 4294967294, 4294967295};

constexpr std::array<std::uint32_t, 12> resultCodes{
    0, 1, 2, 2080, 32767, 32768, 32769, 32770, 32776, 65536, 2147483648, 4294967295};

// Every number that selects a family.
constexpr std::array<const char*, 23> products{
    "QZT 846 57", "QZT 846 001", "QZT 846 003", "QZT35201/1",  "QZT35201/11",  "QZT35201/12",
    "QZT35202/1", "QZT35203/1",  "QZT35204/1",  "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",
    "QZT35207/1", "QZT35208/1",  "QZT35221/1",  "QZT35221/11", "QZT35221/12",  "QZT35222/1",
    "QZT35223/1", "QZT35224/1",  "QZT35225/1",  "QZT35226/1",  "QZT35227/1"};

// Pieces of near misses, and what is awkward to print.
const std::array<std::string, 16> productPieces{
    "QZT 846 ", "57",  "001", "003",  "QZT35", "201",      "/1",           "HP",
    " ",        "qzt", "\n",  "\"\\", "\x7F",  "\xC3\xA9", "\xE2\x80\xA8", std::string(1, '\0')};

constexpr std::array<const char*, 4> pmaxKeys{"pmaxDpd1Etsi", "pmaxDpd2Etsi", "pmaxDpd1Ansi",
                                              "pmaxDpd2Ansi"};

constexpr std::array<const char*, 5> neighbours{"capabilityHandler", "acmHandler", "frameFormat",
                                                "systemPowerController",
                                                "hardwareConfigurationHandler"};

} // namespace

// Values. The first choices of each are what a radio has; 0 is the most usual.

json RadioFileMaker::oddValue(unsigned choice) {
    return choice < 24 ? oddNumbers[choice % oddNumbers.size()] : m_input.signedNumber();
}

template <std::size_t count>
json RadioFileMaker::enumeration(const std::array<const char*, count>& texts,
                                 const std::array<std::int32_t, count>& values) {
    const unsigned choice = m_input.choice();
    if (choice >= 224) {
        return oddValue(choice - 224);
    }
    const std::size_t index = choice / 2 % count;
    return choice % 2 == 0 ? json(texts[index]) : json(values[index]);
}

json RadioFileMaker::modulation() {
    return enumeration(modulationTexts, modulations);
}

json RadioFileMaker::modulationNumber() {
    const unsigned choice = m_input.choice();
    return choice < 224 ? json(modulations[choice % modulations.size()]) : oddValue(choice - 224);
}

json RadioFileMaker::code() {
    return enumeration(codeTexts, codeValues);
}

json RadioFileMaker::rsec() {
    return enumeration(rsecTexts, rsecs);
}

json RadioFileMaker::market() {
    return enumeration(marketTexts, markets);
}

json RadioFileMaker::spacing() {
    const unsigned choice = m_input.choice();
    return choice < 240 ? spacings[choice % spacings.size()] : m_input.signedNumber();
}

json RadioFileMaker::dpdVersion() {
    const unsigned choice = m_input.choice();
    if (choice < 224) {
        return 1 + choice % 3;
    }
    return choice < 240 ? json(choice % 2 * 4) : oddValue(choice - 240);
}

json RadioFileMaker::power() {
    const unsigned choice = m_input.choice();
    if (choice < 224) {
        return 2800 - 25 * static_cast<std::int32_t>(choice);
    }
    return choice < 240 ? extremePowers[choice % extremePowers.size()] : m_input.signedNumber();
}

json RadioFileMaker::unsignedValue() {
    const unsigned choice = m_input.choice();
    return choice < 240 ? unsignedNumbers[choice % unsignedNumbers.size()] : m_input.number();
}

json RadioFileMaker::profile() {
    const unsigned choice = m_input.choice();
    return choice < 224 ? static_cast<std::int32_t>(choice % 8) - 1
                        : static_cast<std::int16_t>(m_input.number());
}

json RadioFileMaker::result() {
    const unsigned choice = m_input.choice();
    return {{"result", choice < 240 ? resultCodes[choice % resultCodes.size()] : m_input.number()}};
}

json RadioFileMaker::productNumber() {
    const unsigned choice = m_input.choice();
    if (choice < 200) {
        return products[choice % products.size()];
    }
    std::string text;
    for (unsigned piece = 0; piece < choice % 8; ++piece) {
        text += m_input.pick(productPieces);
    }
    return text;
}

// Parts of neighbours

template <class Make>
json RadioFileMaker::list(std::size_t limit, Make makeElement) {
    json values = json::array();
    const std::size_t count = m_input.below(limit + 1);
    for (std::size_t index = 0; index < count; ++index) {
        values.push_back((this->*makeElement)());
    }
    return values;
}

json RadioFileMaker::pmaxTable() {
    const unsigned choice = m_input.choice();
    if (choice >= 240) {
        return result();
    }
    json rows = json::array();
    if (choice < 160) {
        // A whole table, high modulations with less power, and some row left out or given twice.
        const std::size_t missing = m_input.below(24);
        for (std::size_t index = 0; index < modulations.size(); ++index) {
            if (index == missing) {
                continue;
            }
            rows.push_back(
                {modulationTexts[index], 2600 - 10 * static_cast<std::int32_t>(choice * index)});
        }
        return rows;
    }
    if (choice < 200) {
        const std::size_t count = m_input.below(20);
        for (std::size_t index = 0; index < count; ++index) {
            const json rowModulation = modulation();
            rows.push_back({rowModulation, power()});
        }
        return rows;
    }
    const std::size_t count = m_input.below(24);
    for (std::size_t index = 0; index < count; ++index) {
        rows.push_back(index % 2 == 0 ? modulationNumber() : power());
    }
    return {{"integers", rows}};
}

json RadioFileMaker::modulationByProfile() {
    if (m_input.flag()) {
        return modulation();
    }
    json limits = json::object();
    const std::size_t count = m_input.below(6);
    for (std::size_t index = 0; index < count; ++index) {
        const json key = profile();
        limits[std::to_string(key.get<int>())] = modulation();
    }
    return limits;
}

json RadioFileMaker::modulationByMarket() {
    if (m_input.flag()) {
        return modulation();
    }
    json limits = json::object();
    const unsigned listed = m_input.choice();
    for (std::size_t index = 0; index < marketTexts.size(); ++index) {
        if ((listed >> index & 1U) != 0) {
            limits[marketTexts[index]] = modulation();
        }
    }
    return limits;
}

json RadioFileMaker::codes() {
    const unsigned choice = m_input.choice();
    if (choice >= 128) {
        return list(40, &RadioFileMaker::code);
    }
    // Every code from one on, some of them skipped.
    json all = json::array();
    const std::size_t step = 1 + choice % 8;
    for (std::size_t index = choice / 8; index + 1 < codeValues.size(); index += step) {
        all.push_back(codeTexts[index]);
    }
    return all;
}

json RadioFileMaker::profiles() {
    return list(5, &RadioFileMaker::profile);
}

json RadioFileMaker::calibration() {
    if (m_input.once(16)) {
        return unsignedValue();
    }
    json elements = json::array();
    const std::size_t count = m_input.below(20);
    for (std::size_t index = 0; index < count; ++index) {
        elements.push_back(index % 2 == 0 ? spacing() : power());
    }
    return elements;
}

// The sections of a file

json RadioFileMaker::board() {
    json section = json::object();
    const unsigned choice = m_input.choice();
    if (choice % 4 != 3) {
        section["carrierAggregation"] = choice % 4 == 1;
    }
    return section;
}

json RadioFileMaker::capabilityHandler() {
    json section = json::object();
    // A bit says that the handler leaves the operation out.
    const unsigned first = m_input.choice();
    const unsigned left = m_input.once(128) ? first : 0;
    const auto has = [left](unsigned bit) { return (left >> bit & 1U) == 0; };
    if (has(0)) {
        section["productNumber"] = productNumber();
    }
    if (has(1)) {
        section["minOutputPower"] = m_input.once(16) ? result() : power();
    }
    for (const char* const key : pmaxKeys) {
        if (has(2) || m_input.flag()) {
            section[key] = pmaxTable();
        }
    }
    if (has(3)) {
        section["maxAcmLimitedByHw"] = m_input.flag();
    }
    if (has(4)) {
        section["performanceProfileIndex"] = profile();
    }
    if (has(5)) {
        section["maxModulationLimitedByHw"] = modulationByProfile();
    }
    if (has(6)) {
        section["maxModulationWithoutLimitation"] = modulationByMarket();
    }
    return section;
}

json RadioFileMaker::acmHandler() {
    const unsigned choice = m_input.choice();
    if (choice < 208) {
        json section = json::object();
        section["min"] = code();
        section["max"] = code();
        return section;
    }
    return choice < 224 ? json::object() : result();
}

json RadioFileMaker::frameFormat() {
    json section = json::object();
    section["modulation"] = modulation();
    section["maxAvailableModulation"] = modulation();
    section["modulationAndCodes"] = codes();
    section["channelSpacing"] = spacing();
    section["dpdVersion"] = dpdVersion();
    section["market"] = market();
    const unsigned given = m_input.choice();
    if (given % 2 == 0) {
        section["performanceProfiles"] = profiles();
    }
    if (given / 2 % 2 == 0) {
        section["carrierAggregationPerformanceProfiles"] = profiles();
    }
    return section;
}

json RadioFileMaker::systemPowerController() {
    json section = json::object();
    section["referenceSec"] = rsec();
    json offsets = json::array();
    const std::size_t count = m_input.below(8);
    for (std::size_t index = 0; index < count; ++index) {
        const json offsetSpacing = spacing();
        offsets.push_back({offsetSpacing, power()});
    }
    section["minOutputPowerOffsets"] = offsets;
    return section;
}

json RadioFileMaker::hardwareConfigurationHandler() {
    json section = json::object();
    const std::size_t count = m_input.below(5);
    if (count == 4) {
        return section;
    }
    section["frameFormats"] = json::array();
    for (std::size_t index = 0; index < count; ++index) {
        json record = json::object();
        const unsigned id = m_input.choice();
        record["id"] = id < 224 ? json(id % 4) : oddValue(id - 224);
        const unsigned failing = m_input.choice();
        const auto fails = [failing](unsigned bit) {
            return failing >= 224 && (failing >> bit & 1U);
        };
        record["channelSpacing"] = fails(0) ? result() : spacing();
        record["market"] = fails(1) ? result() : market();
        record["modulationAndCodes"] = fails(2) ? result() : codes();
        record["dpdVersion"] = dpdVersion();
        const unsigned given = m_input.choice();
        if (given % 2 == 0) {
            record["performanceProfiles"] = profiles();
        }
        if (given / 2 % 2 == 0) {
            record["carrierAggregationPerformanceProfiles"] = profiles();
        }
        section["frameFormats"].push_back(record);
    }
    return section;
}

json RadioFileMaker::variables() {
    json section = json::object();
    const std::uint32_t channel = m_file.at("channel").get<std::uint32_t>();
    const std::uint32_t served = channel == 2 ? 2 : 1;
    const unsigned choice = m_input.choice();
    // Mostly the channel that is served, sometimes one that nobody reads.
    const std::uint32_t named = choice < 240 ? served : channel + 1;
    const std::string prefix = "channel." + std::to_string(named) + ".tx.rf.pmax.cs.comp.v2.";
    json array = calibration();
    if (choice % 16 != 15) {
        const unsigned size = m_input.choice();
        const std::size_t elements = array.is_array() ? array.size() : 1;
        if (size < 192) {
            section[prefix + "arraysize"] = elements;
        } else if (size < 224) {
            section[prefix + "arraysize"] = size % 32;
        } else {
            section[prefix + "arraysize"] = calibration();
        }
    }
    if (choice % 16 != 14) {
        section[prefix + "array"] = std::move(array);
    }
    return section;
}

// Requests

json RadioFileMaker::request() {
    json asked = json::object();
    const unsigned choice = m_input.choice();
    switch (choice % 16) {
    case 0:
    case 1:
    case 2:
        asked["call"] = "getMinMaxOutputPowerVsModulationArray";
        if (const unsigned id = m_input.choice(); id >= 64) {
            asked["frameFormatId"] = id < 224 ? json(id % 4) : oddValue(id - 224);
        }
        if (const unsigned given = m_input.choice(); given != 0) {
            if ((given & 1U) != 0) {
                asked["minModulationAndCode"] = code();
            }
            if ((given & 2U) != 0) {
                asked["maxModulationAndCode"] = code();
            }
            if ((given & 4U) != 0) {
                asked["referenceSec"] = rsec();
            }
            if ((given & 8U) != 0) {
                asked["powerMap"] = json::array();
                const std::size_t count = m_input.below(6);
                for (std::size_t index = 0; index < count; ++index) {
                    const json key = code();
                    asked["powerMap"].push_back({key, power()});
                }
            }
        }
        break;
    case 3:
    case 4:
        asked["call"] = "calculatePowerCapabilities";
        asked["modulation"] = modulation();
        break;
    case 5:
    case 6:
    case 7:
        asked["call"] = "calculateAdmodPowerCapabilities";
        asked["modulation"] = modulation();
        asked["rsec"] = rsec();
        break;
    case 8:
        asked["call"] = "findPminPmax";
        break;
    case 9:
        asked["call"] = "getUnrestrictedPmax";
        break;
    case 10:
        asked["call"] = "setPowerCutback";
        asked["cutback"] = unsignedValue();
        break;
    case 11:
        asked["call"] = "setTemporaryPowerCutback";
        asked["use"] = m_input.flag();
        asked["cutback"] = unsignedValue();
        break;
    case 12:
        asked["call"] = "setBoosterPresence";
        if (const unsigned presence = m_input.choice(); presence < 224) {
            constexpr std::array<std::int32_t, 8> usual{1, 7, 0, 2, 6, 8, -1, 1};
            asked["presence"] = usual[presence % usual.size()];
        } else {
            asked["presence"] = oddValue(presence - 224);
        }
        asked["gain"] = power();
        asked["maxInputPower"] = power();
        asked["maxModulation"] = modulation();
        break;
    case 13:
        if (choice < 128) {
            asked["call"] = "setTemperature";
            asked["temperature"] = power();
        } else {
            asked["call"] = "initialize";
        }
        break;
    default:
        return patch();
    }
    if (choice >= 192) {
        asked["preset"] = power();
    }
    return asked;
}

json RadioFileMaker::patch() {
    constexpr std::array<std::pair<const char*, Section>, 7> sections{{
        {"capabilityHandler", &RadioFileMaker::capabilityHandler},
        {"frameFormat", &RadioFileMaker::frameFormat},
        {"acmHandler", &RadioFileMaker::acmHandler},
        {"systemPowerController", &RadioFileMaker::systemPowerController},
        {"hardwareConfigurationHandler", &RadioFileMaker::hardwareConfigurationHandler},
        {"variables", &RadioFileMaker::variables},
        {"board", &RadioFileMaker::board},
    }};
    json next = m_file;
    const std::size_t count = 1 + m_input.below(2);
    for (std::size_t index = 0; index < count; ++index) {
        const auto& [key, makeSection] = m_input.pick(sections);
        const bool isNeighbour =
            std::find(neighbours.begin(), neighbours.end(), std::string(key)) != neighbours.end();
        if (!isNeighbour || m_file.contains(key)) {
            const json section = (this->*makeSection)();
            // Half of the time one key of the section changes, and the others stay.
            if (section.empty() || m_input.flag() || std::string(key) == "acmHandler") {
                next[key] = section;
            } else {
                auto changed = section.begin();
                std::advance(changed, static_cast<std::ptrdiff_t>(m_input.below(section.size())));
                next[key][changed.key()] = changed.value();
            }
        }
    }
    json asked{{"call", "patch"}, {"file", mergePatchBetween(m_file, next)}};
    m_file = std::move(next);
    return asked;
}

json RadioFileMaker::make() {
    m_file = json::object();
    const unsigned channel = m_input.choice();
    m_file["channel"] = channel < 192 ? json(1 + channel % 2) : unsignedValue();
    m_file["capabilityHandler"] = capabilityHandler();
    m_file["acmHandler"] = acmHandler();
    m_file["frameFormat"] = frameFormat();
    m_file["systemPowerController"] = systemPowerController();
    m_file["hardwareConfigurationHandler"] = hardwareConfigurationHandler();
    const unsigned more = m_input.choice();
    if (more % 4 != 3) {
        m_file["variables"] = variables();
    }
    if (more / 4 % 2 != 0) {
        m_file["board"] = board();
    }
    if (more >= 252) {
        m_file.erase(m_input.pick(neighbours));
    }

    json file = m_file;
    constexpr std::size_t mostRequests = 24;
    json requests = json::array();
    while (!m_input.isUsedUp() && requests.size() < mostRequests) {
        requests.push_back(request());
    }
    if (!requests.empty() || more % 8 != 0) {
        file["requests"] = std::move(requests);
    }
    return file;
}
