#include "OddAnswers.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>

namespace {

using Values = std::vector<std::int32_t>;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

// The domains, each with values beside, between and far from its own.

const Values modulations = {0,     2,     4,     16,     32,    64,     128,    256,    512, 1024,
                            2048,  4096,  8192,  16384,  65536, 100000, -1,     1,      3,   8,
                            65535, 32768, 65537, 131072, 99999, 100001, lowest, highest};

const Values codes = {10,  11,  12,  20,  21,  22,  23,  30,  31,  32,  33,  40,     41,
                      42,  50,  51,  52,  53,  60,  61,  62,  70,  71,  72,  73,     80,
                      81,  82,  90,  91,  92,  93,  100, 101, 102, 110, 111, 112,    113,
                      120, 121, 122, 130, 131, 132, 133, 140, 141, 142, 143, 160,    161,
                      162, 163, 0,   -1,  9,   13,  34,  150, 159, 164, 173, lowest, highest};

const Values classes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, -1, 10, 999, 1001, lowest, highest};
const Values markets = {0, 1, 2, 3, -1, 4, lowest, highest};
const Values dpdVersions = {1, 2, 3, 0, -1, 4, lowest, highest};
const Values channelSpacings = {3,  4,  5,  7,  10,  14, 20, 27,  28,   29,     30,     40,
                                50, 56, 60, 80, 112, 0,  -1, 113, 3000, lowest, highest};
const Values powers = {0, -1, 1, -1000, 2400, lowest, highest};

/// Success, the answer that there is none, the last that is no failure, every failure in use, and
/// the highest.
const std::vector<std::uint32_t> results = {0,      1,      2,      0x820,  0x7FFF, 0x8000,
                                            0x8001, 0x8002, 0x8003, 0x8008, 0x800A, 0xFFFFFFFF};

ScriptedAnswer valuesOf(Values values) {
    ScriptedAnswer answer;
    answer.values = std::move(values);
    return answer;
}

std::vector<ScriptedAnswer> eachOf(const Values& domain) {
    std::vector<ScriptedAnswer> answers;
    for (const std::int32_t value : domain) {
        answers.push_back(valuesOf({value}));
    }
    return answers;
}

std::vector<ScriptedAnswer> listsOf(std::initializer_list<Values> lists) {
    std::vector<ScriptedAnswer> answers;
    for (const Values& list : lists) {
        answers.push_back(valuesOf(list));
    }
    return answers;
}

/// Adds every result code, once with the outputs written and once without.
std::vector<ScriptedAnswer> withResults(std::vector<ScriptedAnswer> answers,
                                        const ScriptedAnswer& usual) {
    for (const std::uint32_t result : results) {
        for (const bool isWritten : {true, false}) {
            answers.push_back(usual);
            answers.back().result = result;
            answers.back().isWritten = isWritten;
        }
    }
    return answers;
}

std::vector<ScriptedAnswer> productNumbers() {
    std::vector<ScriptedAnswer> answers;
    for (const char* const number :
         {"", "QZT 846 57", "QZT 846 001", "QZT 846 003", "QZT35201/1", "QZT35201/11",
          "QZT35201/12", "QZT35202/1", "QZT35203/1", "QZT35204/1", "QZT35205/1", "QZT35205/1HP",
          "QZT35206/1", "QZT35207/1", "QZT35208/1", "QZT35221/1", "QZT35221/11", "QZT35221/12",
          "QZT35222/1", "QZT35223/1", "QZT35224/1", "QZT35225/1", "QZT35226/1", "QZT35227/1",
          // No product
          " ", "QZT", "QZT 846", "QZT 846 002", "QZT 846 001 ", " QZT 846 001", "qzt 846 003",
          "QZT35209/1", "QZT35205/1H", "QZT35201/111",
          "\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff"}) {
        answers.emplace_back().text = number;
    }
    answers.emplace_back().text = std::string(1000, 'Q');
    answers.emplace_back().text = std::string("QZT 846 001\0", 12);
    return answers;
}

/// Both ends in turn; the other stays as it is.
std::vector<ScriptedAnswer> acmRanges(const ScriptedAnswer& usual) {
    std::vector<ScriptedAnswer> answers;
    for (const std::int32_t code : codes) {
        answers.push_back(valuesOf({code, usual.values.at(1)}));
        answers.push_back(valuesOf({usual.values.at(0), code}));
        answers.push_back(valuesOf({code, code}));
    }
    return withResults(std::move(answers), usual);
}

std::vector<ScriptedAnswer> codeArrays() {
    std::vector<ScriptedAnswer> answers = listsOf({
        {},
        {81, 61, 32, 31},             // falling
        {31, 61, 31},                 // one twice
        {10, 11, 12, 20, 21, 22, 23}, // two modulations
        {31, 61, 163},                // with the undefined code
        {31, 13, 61},                 // with a number between the codes
        {0, 31},
        {lowest, 31, highest},
        {lowest, 31},
        {61, 164},
    });
    for (const std::int32_t code : codes) {
        answers.push_back(valuesOf({code}));
    }
    return answers;
}

/// The count that is handed out, then the integers. The last row is always whole.
std::vector<ScriptedAnswer> pmaxTables(const ScriptedAnswer& usual) {
    return withResults(listsOf({{0},
                                {-1},
                                {lowest},
                                {0, 4, 2500},
                                {1, 4, 2500},
                                {2, 4, 2500},
                                {3, 4, 2500, 64, 2400},
                                {6, 4, 2500, 16, 2400, 4, 1000},
                                {4, 64, lowest, 4, highest},
                                {4, 64, highest, 4, lowest},
                                {4, lowest, 1, highest, 2}}),
                       usual);
}

} // namespace

std::vector<ScriptedAnswer> oddAnswers(Call call, const ScriptedAnswer& usual) {
    switch (call) {
    case Call::ProductNumber:
        return productNumbers();
    case Call::MinOutputPower:
        return withResults(eachOf(powers), usual);
    case Call::PmaxDpd1Ansi:
    case Call::PmaxDpd2Ansi:
    case Call::PmaxDpd1Etsi:
    case Call::PmaxDpd2Etsi:
        return pmaxTables(usual);
    case Call::IsMaxAcmLimited:
    case Call::IsCarrierAggregation:
        return eachOf({0, 1});
    case Call::ProfileIndex:
        return eachOf({-1, 0, 1, 2, 3, INT16_MIN, INT16_MAX});
    case Call::Modulation:
    case Call::MaxAvailableModulation:
    case Call::MaxModulationLimited:
    case Call::MaxModulationUnlimited:
        return eachOf(modulations);
    case Call::AcmRange:
        return acmRanges(usual);
    case Call::Codes:
        return codeArrays();
    case Call::CodesById:
        return withResults(codeArrays(), usual);
    case Call::ChannelSpacing:
        return eachOf(channelSpacings);
    case Call::ChannelSpacingById:
        return withResults(eachOf(channelSpacings), usual);
    case Call::DpdVersion:
    case Call::DpdVersionById:
        return eachOf(dpdVersions);
    case Call::Market:
        return eachOf(markets);
    case Call::MarketById:
        return withResults(eachOf(markets), usual);
    case Call::Profiles:
    case Call::CarrierAggregationProfiles:
    case Call::ProfilesById:
    case Call::CarrierAggregationProfilesById:
        return listsOf({{}, {0}, {-1}, {1, 1}, {INT16_MIN, INT16_MAX}});
    case Call::ReferenceSec:
        return eachOf(classes);
    case Call::Offset: {
        std::vector<ScriptedAnswer> answers = eachOf(powers);
        answers.push_back(usual);
        answers.back().isWritten = false;
        return answers;
    }
    case Call::Records:
        return listsOf({{},
                        {8, 56},
                        {7, 3000},
                        {7, 0},
                        {7, -1},
                        {7, lowest},
                        {7, highest},
                        {7, 28, 7, 56},
                        {8, 28, 7, 56},
                        {-7, 28, lowest, 28, highest, 28}});
    case Call::CompensationArray:
        return withResults(listsOf({{},
                                    {28},
                                    {28, 100, 56},
                                    {56, 1, 28, 2},
                                    {28, lowest},
                                    {28, highest, 28, 0},
                                    {lowest, 1, highest, 2}}),
                           usual);
    case Call::CompensationArraySize:
        return withResults(eachOf({0, 1, 2, 3, 4, 5, -1, lowest, highest}), usual);
    }
    return {};
}
