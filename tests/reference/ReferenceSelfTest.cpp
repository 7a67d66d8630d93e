#include "Capability.h"
#include "Families.h"
#include "Node.h"
#include "RandomRadioFile.h"
#include "Types.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

// The restatement is only worth comparing with once it is trusted itself: every limit and oddity
// of the rules, with figures worked out by hand.

namespace reference {

namespace {

using nlohmann::json;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();

const std::string serviceFile = "Control/OutputPowerCalculator/private/OutputPowerCalculator";
const std::string capabilityFile = "Control/OutputPowerCalculator/private/TxRfMaxPowerCapability";

const std::vector<std::int32_t> allModulations = {0,   2,    4,    16,   32,   64,    128,  256,
                                                  512, 1024, 2048, 4096, 8192, 16384, 65536};

// What a record is, where it comes from and what it says, on one line.
std::string shown(const TraceRecord& record) {
    std::string kind = "raw " + std::to_string(record.code);
    if (record.kind == TraceKind::enter) {
        kind = "enter " + std::to_string(record.level);
    } else if (record.kind == TraceKind::msg) {
        kind = "msg " + std::to_string(record.level);
    }
    const std::string file = record.file.substr(record.file.rfind('/') + 1);
    return kind + " " + file + "::" + record.function + "|" + record.text;
}

std::vector<std::string> shown(const Trace& trace, int traceLevel = 6) {
    std::vector<std::string> lines;
    for (const TraceRecord& record : trace) {
        if (record.level <= traceLevel) {
            lines.push_back(shown(record));
        }
    }
    return lines;
}

using Lines = std::vector<std::string>;

// A radio of the first outdoor family with a table per DPD version and market, each recognisable
// by its last two digits: Dpd1Etsi ..11, Dpd2Etsi ..21, Dpd1Ansi ..12, Dpd2Ansi ..22.
json baseFile() {
    return json::parse(R"({
        "channel": 1,
        "capabilityHandler": {
            "productNumber": "QZT 846 57",
            "minOutputPower": -1000,
            "pmaxDpd1Etsi": [["4QAM", 2811], ["16QAM", 2611], ["64QAM", 2411], ["256QAM", 2211]],
            "pmaxDpd2Etsi": [["4QAM", 2821], ["16QAM", 2621], ["64QAM", 2421], ["256QAM", 2221]],
            "pmaxDpd1Ansi": [["4QAM", 2812], ["16QAM", 2612], ["64QAM", 2412], ["256QAM", 2212]],
            "pmaxDpd2Ansi": [["4QAM", 2822], ["16QAM", 2622], ["64QAM", 2422], ["256QAM", 2222]]
        },
        "acmHandler": {"min": "16QAM", "max": "256QAM"},
        "frameFormat": {
            "modulation": "64QAM", "maxAvailableModulation": "256QAM",
            "modulationAndCodes": ["4QAM", "16QAM", "64QAM", "256QAM"],
            "channelSpacing": 28, "dpdVersion": 1, "market": "Etsi"
        },
        "systemPowerController": {"referenceSec": "2", "minOutputPowerOffsets": [[28, 250]]},
        "hardwareConfigurationHandler": {},
        "variables": {
            "channel.1.tx.rf.pmax.cs.comp.v2.array": [56, 10],
            "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2
        }
    })");
}

// A started service over a radio file.
struct Bench {
    explicit Bench(const json& file)
        : node(file)
        , service(node.channel(), node, process) {
        started = service.initialize();
        service.m_trace.clear();
    }

    Lines trace(int level) const { return shown(service.m_trace, level); }

    ProcessState process;
    Node node;
    Service service;
    std::uint32_t started = 1;
};

json baseFileWith(const std::string& pointer, const json& value) {
    json file = baseFile();
    file[json::json_pointer(pointer)] = value;
    return file;
}

json baseFileWithout(const std::string& neighbour) {
    json file = baseFile();
    file.erase(neighbour);
    return file;
}

std::vector<json> replayed(const json& file, int traceLevel) {
    ProcessState process;
    std::vector<json> lines;
    for (const std::string& line : replay(file, traceLevel, process)) {
        lines.push_back(json::parse(line));
    }
    return lines;
}

PowerAnswer powerOf(Family family, const CalculationInput& data, std::int32_t onEntry = 0,
                    const Booster& booster = {}) {
    bool tablesBuilt = true;
    return getMaxPower(family, data, onEntry, booster, tablesBuilt);
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Values and texts

TEST(ReferenceText, ModulationsOutsideTheListReadUndefined) {
    for (const std::int32_t modulation : {100000, 8, 3, -1, 32768, 99999, 100001}) {
        EXPECT_EQ(modulationText(modulation), "UNDEFINED") << modulation;
    }
}

TEST(ReferenceText, ModulationZeroReadsCw) {
    EXPECT_EQ(modulationText(0), "CW");
}

TEST(ReferenceText, ModulationsReadTheirConstellationSize) {
    EXPECT_EQ(modulationText(2), "BPSK");
    for (const std::int32_t size :
         {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 65536}) {
        EXPECT_EQ(modulationText(size), std::to_string(size) + "QAM");
    }
    EXPECT_EQ(listedModulations(), allModulations);
}

TEST(ReferenceText, CodesInTheGapsReadUndefined) {
    std::vector<std::int32_t> gaps = {43, 63, 83, 103, 123, 164, 163, 9, -1, 0};
    for (std::int32_t code = 13; code <= 19; ++code) {
        gaps.push_back(code);
    }
    for (std::int32_t code = 150; code <= 159; ++code) {
        gaps.push_back(code);
    }
    for (const std::int32_t code : gaps) {
        EXPECT_EQ(codeText(code), "UNDEFINED") << code;
        EXPECT_EQ(modulationOfCode(code), 100000) << code;
    }
}

TEST(ReferenceText, StrongestCodingOfTheLargestModulationIsCode143) {
    EXPECT_EQ(codeText(143), "65536QAM_ULTRA_STRONG");
    EXPECT_EQ(modulationOfCode(143), 65536);
}

TEST(ReferenceText, EveryListedCodeNamesItsOwnModulation) {
    // 3 + 3 BPSK, then per modulation: 4 with an ultra strong coding, 3 without.
    EXPECT_EQ(listedCodes().size(), 6U + 8U * 4U + 5U * 3U);
    for (const std::int32_t code : listedCodes()) {
        std::string text = codeText(code);
        if (text.starts_with("HALF_")) {
            text = text.substr(5);
        }
        EXPECT_EQ(modulationText(modulationOfCode(code)), text.substr(0, text.find('_'))) << code;
        EXPECT_EQ(codeOfText(codeText(code)), code);
    }
}

TEST(ReferenceText, OnesDigitOfACodeGivesItsStrength) {
    for (const std::int32_t code : listedCodes()) {
        const std::string text = codeText(code);
        switch (code % 10) {
        case 0:
            EXPECT_TRUE(text.ends_with("QAM_STRONG") || text.ends_with("BPSK_STRONG")) << text;
            break;
        case 1:
            EXPECT_TRUE(text.ends_with("QAM") || text.ends_with("BPSK")) << text;
            break;
        case 2:
            EXPECT_TRUE(text.ends_with("_LIGHT")) << text;
            break;
        default:
            EXPECT_TRUE(text.ends_with("QAM_ULTRA_STRONG")) << text;
            break;
        }
    }
}

TEST(ReferenceText, RsecsReadTheirClass) {
    const std::vector<std::string> classes = {"2",   "4L",  "4H",  "5B",  "6B",
                                              "5LB", "5HB", "6LB", "6HB", "7B"};
    for (std::size_t value = 0; value < classes.size(); ++value) {
        EXPECT_EQ(rsecText(static_cast<std::int32_t>(value)), classes.at(value));
    }
    for (const std::int32_t rsec : {10, 999, 1000, -1}) {
        EXPECT_EQ(rsecText(rsec), "UNDEFINED") << rsec;
    }
}

TEST(ReferenceText, MarketsBeyondTheFourAddNothing) {
    EXPECT_EQ(marketText(0), "Etsi");
    EXPECT_EQ(marketText(1), "Ansi");
    EXPECT_EQ(marketText(2), "Global");
    EXPECT_EQ(marketText(3), "Unknown");
    EXPECT_EQ(marketText(4), "");
    EXPECT_EQ(marketText(-1), "");
}

TEST(ReferenceText, TextOfTheUndefinedValueLeadsBackToIt) {
    EXPECT_EQ(modulationOfText("UNDEFINED"), 100000);
    EXPECT_EQ(codeOfText("UNDEFINED"), 163);
    EXPECT_EQ(rsecOfText("UNDEFINED"), 1000);
    EXPECT_EQ(rsecOfText("2"), 0);
    EXPECT_EQ(marketOfText("Unknown"), 3);
    EXPECT_EQ(modulationOfText("8QAM"), std::nullopt);
}

TEST(ReferenceNames, ChannelZeroIsKeptByOneRuleAndDroppedByTheOther) {
    EXPECT_EQ(nameWithChannel("IFrameFormat", 0), "IFrameFormat_0");
    EXPECT_EQ(nameWithChannelUnlessZero("ICapabilityHandler", 0), "ICapabilityHandler");
    EXPECT_EQ(nameWithChannelUnlessZero("ICapabilityHandler", 1), "ICapabilityHandler_1");
}

TEST(ReferenceNames, LargestChannelIsWrittenUnsigned) {
    EXPECT_EQ(nameWithChannel("IAcmHandler", 4294967295U), "IAcmHandler_4294967295");
    EXPECT_EQ(nameWithChannelUnlessZero("IOutputPowerCalculator", 4294967295U),
              "IOutputPowerCalculator_4294967295");
}

TEST(ReferenceArithmetic, WrapsAtBothEndsOf32Bits) {
    EXPECT_EQ(wrapAdd(2147483647, 1), lowest);
    EXPECT_EQ(wrapAdd(lowest, -1), 2147483647);
    EXPECT_EQ(wrapSubtract(lowest, 1), 2147483647);
    EXPECT_EQ(wrapSubtract(100, 4294967295U), 101);
    EXPECT_EQ(wrapSubtract(0, 2147483648U), lowest);
}

// ---------------------------------------------------------------------------------------------
// The view of a Pmax table

namespace {

Lines initializeCapability(Capability& capability,
                           const std::map<std::int32_t, std::uint32_t>& results,
                           std::uint32_t expectedResult) {
    const PmaxGetter getter = [&results](std::int32_t table) {
        const std::uint32_t result = results.at(table);
        if (result >= 32768) {
            return PmaxAnswer{result, std::nullopt};
        }
        return PmaxAnswer{result,
                          std::make_shared<const PmaxStorage>(PmaxStorage{{4, 1000 + table}, 2})};
    };
    Trace trace;
    EXPECT_EQ(capability.initialize(&getter, trace), expectedResult);
    return shown(trace);
}

} // namespace

TEST(ReferenceCapability, MissingHandlerIsNamedWithTheChannelUnlessItIsZero) {
    for (const auto& [channel, name] : std::vector<std::pair<std::uint32_t, std::string>>{
             {0, "ICapabilityHandler"}, {1, "ICapabilityHandler_1"}}) {
        Capability sut{channel, 1, marketEtsi, nullptr};
        Trace trace;
        EXPECT_EQ(sut.initialize(nullptr, trace), 32768U);
        EXPECT_EQ(
            shown(trace),
            (Lines{"raw 32768 TxRfMaxPowerCapability::initialize|Error getting interface to " +
                   name + "      code: 0x8000\n"}));
    }
}

TEST(ReferenceCapability, RefusedSecondAnsiTableFallsBackToTheFirst) {
    Capability sut{7, 2, marketAnsi, nullptr};
    const std::string start = "raw 2080 TxRfMaxPowerCapability::initialize|";
    EXPECT_EQ(initializeCapability(sut, {{1, 32768}, {0, 0}}, 0),
              (Lines{start + "m_dpdVersion = 2, m_market = 1      code: 0x820\n",
                     start + "PmaxTable with value 1 failed for channel 7      code: 0x820\n",
                     start + "PmaxTable with value 0 succeeded for channel 7      code: 0x820\n"}));
    std::int32_t power = 0;
    Trace trace;
    EXPECT_EQ(sut.getPower(4, power, trace), 0U);
    EXPECT_EQ(power, 1000);
}

TEST(ReferenceCapability, EveryAnsiTableRefusedEndsAtTheEtsiTable) {
    Capability sut{1, 2, marketAnsi, nullptr};
    EXPECT_EQ(initializeCapability(sut, {{1, 32768}, {0, 40000}, {2, 32767}}, 0).size(), 4U);
    EXPECT_EQ(sut.getMaxPower(), 1002);
}

TEST(ReferenceCapability, GlobalTriesTheEtsiTables) {
    Capability sut{1, 2, marketGlobal, nullptr};
    const Lines trace = initializeCapability(sut, {{3, 32769}, {2, 0}}, 0);
    EXPECT_EQ(trace.size(), 3U);
    EXPECT_EQ(sut.getMaxPower(), 1002);
}

TEST(ReferenceCapability, EveryCandidateRefusedFails) {
    Capability sut{1, 1, marketEtsi, nullptr};
    const Lines trace = initializeCapability(sut, {{2, 32768}}, 32768);
    EXPECT_EQ(trace.back(), "raw 32768 TxRfMaxPowerCapability::initialize|"
                            "Failed to get TxRfMaxPowerCapability      code: 0x8000\n");
}

TEST(ReferenceCapability, UnknownMarketIsAnInvalidCombination) {
    Capability sut{1, 1, marketUnknown, nullptr};
    const Lines trace = initializeCapability(sut, {}, 32768);
    EXPECT_EQ(trace.back(),
              "raw 32768 TxRfMaxPowerCapability::initialize|Invalid combination of DPD "
              "version(1) and telecom market(3)      code: 0x8000\n");
}

TEST(ReferenceCapability, DpdVersion3IsAnInvalidCombinationInEveryMarket) {
    for (const std::int32_t market : {0, 1, 2, 3, 7}) {
        Capability sut{1, 3, market, nullptr};
        const Lines trace = initializeCapability(sut, {}, 32768);
        ASSERT_EQ(trace.size(), 2U);
        EXPECT_EQ(trace.back(),
                  "raw 32768 TxRfMaxPowerCapability::initialize|Invalid combination of DPD "
                  "version(3) and telecom market(" +
                      std::to_string(market) + ")      code: 0x8000\n");
    }
}

TEST(ReferenceCapability, FirstRowOfAModulationWinsAndTheHighestPowerIsThePlainMaximum) {
    const std::vector<std::int32_t> table = {4, 2500, 16, 2400, 4, 1000};
    Trace trace;
    std::int32_t power = -7;
    EXPECT_EQ(powerInTable(table, 6, 4, power, trace), 0U);
    EXPECT_EQ(power, 2500);
    EXPECT_EQ(highestPowerInTable(table, 6), 2500);
    EXPECT_TRUE(trace.empty());
}

TEST(ReferenceCapability, IncompleteRowIsComparedButHasNoPartInTheMaximum) {
    const std::vector<std::int32_t> table = {64, 0};
    Trace trace;
    std::int32_t power = -7;
    EXPECT_EQ(powerInTable(table, 1, 64, power, trace), 0U);
    EXPECT_EQ(power, 0);
    EXPECT_EQ(highestPowerInTable(table, 1), lowest);
}

TEST(ReferenceCapability, AbsentModulationIsTracedAndLeavesThePowerAlone) {
    Trace trace;
    std::int32_t power = -7;
    EXPECT_EQ(powerInTable({4, 2500}, 2, 64, power, trace), 32776U);
    EXPECT_EQ(power, -7);
    EXPECT_EQ(shown(trace),
              (Lines{"raw 32776 TxRfMaxPowerCapability::getPower|getPower, unknown modulation "
                     "type: 64QAM      code: 0x8008\n"}));
}

TEST(ReferenceCapability, NoTableActsAsAnEmptyOne) {
    const Capability sut{1, 1, marketEtsi, nullptr};
    Trace trace;
    std::int32_t power = -7;
    EXPECT_EQ(sut.getPower(4, power, trace), 32776U);
    EXPECT_EQ(sut.getMaxPower(), lowest);
}

// ---------------------------------------------------------------------------------------------
// Families: what all promise

TEST(ReferenceFamilies, OutdoorFamiliesAnswerTheAvailableMaximumAsReference) {
    for (const Family family : {Family::Kam, Family::KamV2, Family::KamV3}) {
        const ModulationAnswer answer = getMaxRefModulation(family, 1024, 64);
        EXPECT_EQ(answer.modulation, 1024);
        EXPECT_TRUE(answer.trace.empty());
    }
}

TEST(ReferenceFamilies, RadioUnitFamiliesNeedNoCompensation) {
    for (const Family family : {Family::Vo4, Family::Vo5}) {
        const CompensationAnswer answer =
            getCompensationForChannelSpacing(family, 1, 28, 77, StoredVariables{});
        EXPECT_EQ(answer.code, 0U);
        EXPECT_EQ(answer.compensation, 0);
        EXPECT_TRUE(answer.trace.empty());
    }
}

// ---------------------------------------------------------------------------------------------
// First and second outdoor family

TEST(ReferenceKam, OffsetFromTheReferencePowerBoundsTheResult) {
    // 2000 - 0 = 2000; 16QAM +2 dB = 2200; 4QAM +3 dB = 2300; least of 2300, 2300, 2200, 2300.
    CalculationInput data;
    data.rsec = 0;
    data.refMax = 256;
    data.pmaxRefMax = 2000;
    data.actual = 16;
    data.pmaxActual = 2300;
    data.selectedMin = 4;
    data.pmaxSelectedMin = 2300;
    const PowerAnswer answer = powerOf(Family::Kam, data);
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 2200);
    EXPECT_EQ(shown(answer.trace),
              (Lines{"msg 5 CalculatorKam::getMaxPower|getMaxPower std::min parameters: "
                     "2300,2300,2200,2300",
                     "msg 5 CalculatorKam::getMaxPower|getMaxPower Max power for modulation 16QAM, "
                     "rsec 0 and max modulation 2000 = 2200"}));

    // 1024QAM -1 dB: 1900, also its own Pmax.
    data.selectedMin = 1024;
    data.pmaxSelectedMin = 1900;
    EXPECT_EQ(powerOf(Family::Kam, data).maxPower, 1900);
}

TEST(ReferenceKam, UndefinedRsecFailsAndLeavesThePower) {
    CalculationInput data;
    data.rsec = 1000;
    data.refMax = 256;
    data.actual = 16;
    data.selectedMin = 4;
    const PowerAnswer answer = powerOf(Family::Kam, data, 555);
    EXPECT_EQ(answer.code, 32776U);
    EXPECT_EQ(answer.maxPower, 555);
    EXPECT_EQ(shown(answer.trace), (Lines{"msg 1 CalculatorKam::getMaxPower|No power offset found "
                                          "for rsec=UNDEFINED, acm=16QAM"}));
}

TEST(ReferenceKam, CompensationMovesTheOffsetPowersButNotThePmaxBounds) {
    // -300: 16QAM 1900, 4QAM 2000. +300: 2500 and 2600, so the Pmax 2300 holds.
    CalculationInput data;
    data.refMax = 256;
    data.pmaxRefMax = 2000;
    data.actual = 16;
    data.pmaxActual = 2300;
    data.selectedMin = 4;
    data.pmaxSelectedMin = 2350;
    data.csPowerCompensation = -300;
    EXPECT_EQ(powerOf(Family::Kam, data).maxPower, 1900);
    data.csPowerCompensation = 300;
    EXPECT_EQ(powerOf(Family::Kam, data).maxPower, 2300);
}

TEST(ReferenceKam, ReferenceWithoutOffsetCountsAsPowerZero) {
    // 65536QAM has no column: reference power 0, 16QAM +2 dB = 200, 4QAM +3 dB = 300.
    CalculationInput data;
    data.refMax = 65536;
    data.pmaxRefMax = 1500;
    data.actual = 16;
    data.pmaxActual = 2300;
    data.selectedMin = 4;
    data.pmaxSelectedMin = 2300;
    EXPECT_EQ(powerOf(Family::Kam, data).maxPower, 200);
}

TEST(ReferenceKam, SelectedMinimumWithoutOffsetDropsThatBound) {
    CalculationInput data;
    data.refMax = 256;
    data.pmaxRefMax = 2000;
    data.actual = 16;
    data.pmaxActual = 2300;
    data.selectedMin = 65536;
    data.pmaxSelectedMin = 2250;
    const PowerAnswer answer = powerOf(Family::Kam, data);
    EXPECT_EQ(answer.maxPower, 2200);
    EXPECT_EQ(shown(answer.trace).front(),
              "msg 5 CalculatorKam::getMaxPower|getMaxPower std::min parameters: 2300,2200,2250");
}

TEST(ReferenceKamV2, LowModulationGainsSixDecibelsAtTheLowestClass) {
    CalculationInput data;
    data.refMax = 256;
    data.pmaxRefMax = 2000;
    data.actual = 2;
    data.pmaxActual = 2700;
    data.selectedMin = 2;
    data.pmaxSelectedMin = 2700;
    const PowerAnswer answer = powerOf(Family::KamV2, data);
    EXPECT_EQ(answer.maxPower, 2600);
    EXPECT_EQ(shown(answer.trace).front(), "msg 5 CalculatorKamV2::getMaxPower|getMaxPower "
                                           "std::min parameters: 2700,2600,2600,2700");
}

TEST(ReferenceKamV2, HighestModulationLosesOneDecibel) {
    CalculationInput data;
    data.rsec = 3;
    data.refMax = 256;
    data.pmaxRefMax = 2000;
    data.actual = 16384;
    data.pmaxActual = 2000;
    data.selectedMin = 16384;
    data.pmaxSelectedMin = 2000;
    EXPECT_EQ(powerOf(Family::KamV2, data).maxPower, 1900);
}

namespace {

// The power with all bounds out of the way: reference power 0 plus the offset.
std::int32_t outdoorOffset(Family family, std::int32_t rsec, std::int32_t modulation) {
    CalculationInput data;
    data.rsec = rsec;
    data.refMax = 256;
    data.actual = modulation;
    data.pmaxActual = 100000;
    data.selectedMin = modulation;
    data.pmaxSelectedMin = 100000;
    return powerOf(family, data).maxPower;
}

} // namespace

TEST(ReferenceKam, RowsOfTheTwoTablesAddUp) {
    // Sums of the printed rows, in whole dB.
    const std::vector<std::int32_t> columns = {2,   4,    16,   32,   64,   128,  256,
                                               512, 1024, 2048, 4096, 8192, 16384};
    const auto sumOf = [&columns](Family family, std::int32_t rsec) {
        std::int32_t sum = 0;
        for (const std::int32_t modulation : columns) {
            sum += outdoorOffset(family, rsec, modulation);
        }
        return sum;
    };
    EXPECT_EQ(sumOf(Family::Kam, 0), 100 * (12 - 11));
    EXPECT_EQ(sumOf(Family::KamV2, 0), 100 * (20 - 5));
    EXPECT_EQ(sumOf(Family::KamV2, 1), 100 * (16 - 5));
    EXPECT_EQ(sumOf(Family::KamV2, 2), 100 * (10 - 5));
    for (const std::int32_t rsec : {1, 2}) {
        EXPECT_EQ(sumOf(Family::Kam, rsec), 100 * (10 - 11));
    }
    for (const std::int32_t rsec : {3, 4, 5, 6, 7, 8, 9}) {
        EXPECT_EQ(sumOf(Family::Kam, rsec), 100 * (6 - 11));
        EXPECT_EQ(sumOf(Family::KamV2, rsec), 100 * (6 - 5));
    }
}

// ---------------------------------------------------------------------------------------------
// Channel-spacing compensation

namespace {

const std::string arrayName = "channel.1.tx.rf.pmax.cs.comp.v2.array";
const std::string sizeName = "channel.1.tx.rf.pmax.cs.comp.v2.arraysize";

std::int32_t compensationOf(const std::vector<std::int32_t>& array, std::int32_t arraySize,
                            std::int32_t spacing) {
    const StoredVariables variables = {{arrayName, array}, {sizeName, {arraySize}}};
    const CompensationAnswer answer =
        getCompensationForChannelSpacing(Family::Kam, 1, spacing, 77, variables);
    EXPECT_EQ(answer.code, 0U);
    return answer.compensation;
}

} // namespace

TEST(ReferenceCompensation, MatchingPairGivesItsValueAndNoMatchGivesZero) {
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 6, 3), -200);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 6, 5), 80);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 6, 4), 0);
}

TEST(ReferenceCompensation, ArraySizeEndsTheScan) {
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 2, 3), 0);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 2, 1), 150);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 3, 3), -200);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 1, 1), 150);
    EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, -1, 5), 80);
}

TEST(ReferenceCompensation, ArraySizeZeroOrAnEmptyArrayGivesZero) {
    for (const std::int32_t spacing : {1, 3, 5}) {
        EXPECT_EQ(compensationOf({1, 150, 3, -200, 5, 80}, 0, spacing), 0);
        EXPECT_EQ(compensationOf({}, 6, spacing), 0);
    }
}

TEST(ReferenceCompensation, FirstOfTwoPairsWithOneSpacingWins) {
    EXPECT_EQ(compensationOf({3, 10, 3, 20}, 4, 3), 10);
}

TEST(ReferenceCompensation, IncompleteLastPairNeverMatches) {
    EXPECT_EQ(compensationOf({1, 150, 3}, 4, 3), 0);
    EXPECT_EQ(compensationOf({3}, 1, 3), 0);
}

TEST(ReferenceCompensation, VariableNamesCarryTheChannel) {
    const StoredVariables variables = {{"channel.12.tx.rf.pmax.cs.comp.v2.array", {28, 40}},
                                       {"channel.12.tx.rf.pmax.cs.comp.v2.arraysize", {2}}};
    EXPECT_EQ(getCompensationForChannelSpacing(Family::Kam, 12, 28, 0, variables).compensation, 40);
}

TEST(ReferenceCompensation, UnreadableVariableFailsWithOneErrorAndLeavesTheOutput) {
    const CompensationAnswer noArray =
        getCompensationForChannelSpacing(Family::Kam, 12, 28, 77, StoredVariables{});
    EXPECT_EQ(noArray.code, 32768U);
    EXPECT_EQ(noArray.compensation, 77);
    EXPECT_EQ(shown(noArray.trace),
              (Lines{"enter 6 CalculatorKam::getCompensationForChannelSpacing|28",
                     "msg 1 CalculatorKam::getCompensationForChannelSpacing|"
                     "getCompensationForChannelSpacing Failed to get variable "
                     "channel.12.tx.rf.pmax.cs.comp.v2.array"}));

    const CompensationAnswer noSize = getCompensationForChannelSpacing(
        Family::KamV2, 1, -5, 77, StoredVariables{{arrayName, {28, 40}}});
    EXPECT_EQ(noSize.code, 32768U);
    EXPECT_EQ(noSize.compensation, 77);
    EXPECT_EQ(shown(noSize.trace),
              (Lines{"enter 6 CalculatorKamV2::getCompensationForChannelSpacing|-5",
                     "msg 1 CalculatorKamV2::getCompensationForChannelSpacing|"
                     "getCompensationForChannelSpacing Failed to get variable "
                     "channel.1.tx.rf.pmax.cs.comp.v2.arraysize"}));
}

TEST(ReferenceCompensation, ThirdOutdoorFamilyNamesChannelAndSpacingOnEntry) {
    const StoredVariables variables = {{arrayName, {28, 40}}, {sizeName, {2}}};
    const CompensationAnswer answer =
        getCompensationForChannelSpacing(Family::KamV3, 1, 28, 0, variables);
    EXPECT_EQ(answer.compensation, 40);
    EXPECT_EQ(shown(answer.trace),
              (Lines{"enter 6 CalculatorKamV3::getCompensationForChannelSpacing|channel=1, "
                     "channelSpacing=28"}));
}

// ---------------------------------------------------------------------------------------------
// Third outdoor family

TEST(ReferenceKamV3, LowestClassHasNoCap) {
    CalculationInput data;
    data.rsec = 0;
    data.actual = 64;
    data.pmaxActual = 2500;
    data.csPowerCompensation = 100;
    const PowerAnswer answer = powerOf(Family::KamV3, data);
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 2500);
    EXPECT_EQ(
        shown(answer.trace),
        (Lines{"enter 6 CalculatorKamV3::getMaxPower|",
               "msg 6 CalculatorKamV3::getMaxPower|uncompensated Pmax for modulation: 64QAM = 2400",
               "msg 5 CalculatorKamV3::getMaxPower|getMaxPower Calculated max power = 2500 for "
               "64QAM with rsec 2 and power cutback: 100"}));
}

TEST(ReferenceKamV3, CapIsComparedWithTheUncompensatedPower) {
    // min(2200, 2500 - 100) + 100
    CalculationInput data;
    data.rsec = 1;
    data.actual = 64;
    data.pmaxActual = 2500;
    data.csPowerCompensation = 100;
    data.pmaxTable = {16, 2200};
    data.pmaxCount = 2;
    const PowerAnswer answer = powerOf(Family::KamV3, data);
    EXPECT_EQ(answer.maxPower, 2300);
    EXPECT_EQ(shown(answer.trace).at(2),
              "msg 6 CalculatorKamV3::getMaxPower|min() of uncompensated Pmax and "
              "tmuMaxPowerFor16Qam = 2200 will be used");
}

TEST(ReferenceKamV3, ClassesChooseTheirCapModulation) {
    CalculationInput data;
    data.pmaxActual = 2500;
    data.pmaxTable = {16, 1600, 32, 1320, 64, 1640};
    data.pmaxCount = 6;
    const std::vector<std::int32_t> expected = {2500, 1600, 1320, 1640, 1640,
                                                1640, 1640, 1640, 1640, 1640};
    for (std::size_t rsec = 0; rsec < expected.size(); ++rsec) {
        data.rsec = static_cast<std::int32_t>(rsec);
        EXPECT_EQ(powerOf(Family::KamV3, data).maxPower, expected.at(rsec)) << rsec;
    }
}

TEST(ReferenceKamV3, TableWithoutTheCapModulationCapsAtZero) {
    CalculationInput data;
    data.rsec = 9;
    data.actual = 256;
    data.pmaxActual = 2500;
    const PowerAnswer answer = powerOf(Family::KamV3, data);
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 0);
    EXPECT_EQ(shown(answer.trace).at(2),
              "raw 32776 TxRfMaxPowerCapability::getPower|getPower, unknown modulation type: "
              "64QAM      code: 0x8008\n");
}

TEST(ReferenceKamV3, UndefinedClassCompensatesThePowerOnEntry) {
    CalculationInput data;
    data.rsec = 1000;
    data.actual = 64;
    data.pmaxActual = 2500;
    data.csPowerCompensation = 50;
    const PowerAnswer answer = powerOf(Family::KamV3, data, 1800);
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 1850);
    EXPECT_EQ(shown(answer.trace, 1),
              (Lines{"msg 1 CalculatorKamV3::getMaxPower|getMaxPowerNo matching RSEC"}));
}

// ---------------------------------------------------------------------------------------------
// Older radio-unit family

namespace {

CalculationInput radioUnitInput(std::int32_t rsec, std::int32_t actual, std::int32_t pmaxActual) {
    CalculationInput data;
    data.rsec = rsec;
    data.selectedMax = actual;
    data.actual = actual;
    data.refMax = 256;
    data.pmaxActual = pmaxActual;
    data.pmaxRefMax = 2000;
    return data;
}

} // namespace

TEST(ReferenceVo4, ReferenceIsAlways256Qam) {
    const ModulationAnswer answer = getMaxRefModulation(Family::Vo4, 4, 16384);
    EXPECT_EQ(answer.modulation, 256);
    EXPECT_TRUE(answer.trace.empty());
}

TEST(ReferenceVo4, AnotherReferenceHasNoOffsets) {
    for (const std::int32_t reference : {128, 512, 100000}) {
        CalculationInput data = radioUnitInput(0, 64, 2500);
        data.refMax = reference;
        const PowerAnswer answer = powerOf(Family::Vo4, data, 555);
        EXPECT_EQ(answer.code, 32770U);
        EXPECT_EQ(answer.maxPower, 555);
        EXPECT_EQ(shown(answer.trace).back(),
                  "msg 1 CalculatorVo4::getMaxPower|No power offset found for ref acm=" +
                      modulationText(reference) + ", rsec=2, acm=64QAM");
    }
}

TEST(ReferenceVo4, OffsetsByClass) {
    EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(0, 4, 9000)).maxPower, 2300);
    for (const std::int32_t rsec : {3, 4, 5, 6, 7, 8, 9}) {
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(rsec, 4, 9000)).maxPower, 2100);
    }
    for (std::int32_t rsec = 0; rsec <= 9; ++rsec) {
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(rsec, 256, 9000)).maxPower, 2000);
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(rsec, 4096, 9000)).maxPower, 1800);
    }
}

TEST(ReferenceVo4, RowsAddUp) {
    const std::map<std::int32_t, std::int32_t> sums = {
        {0, 9 - 6}, {1, 8 - 6}, {2, 8 - 6}, {3, 5 - 6}, {4, 5 - 6},
        {5, 5 - 6}, {6, 5 - 6}, {7, 5 - 6}, {8, 5 - 6}, {9, 5 - 6}};
    for (const auto& [rsec, sum] : sums) {
        std::int32_t found = 0;
        for (const std::int32_t modulation : {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096}) {
            found += powerOf(Family::Vo4, radioUnitInput(rsec, modulation, 9000)).maxPower - 2000;
        }
        EXPECT_EQ(found, 100 * sum) << rsec;
    }
}

TEST(ReferenceVo4, WithoutBoosterItsMaximumModulationPlaysNoPart) {
    const PowerAnswer answer =
        powerOf(Family::Vo4, radioUnitInput(0, 64, 2500), 0, Booster{0, 500, 100, 4});
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 2100);
    EXPECT_EQ(shown(answer.trace),
              (Lines{"msg 6 CalculatorVo4::getMaxPower|data.refMaxModulation=256QAM, "
                     "data.actualModulation=64QAM, data.rsec=0, data.pmaxActualModulation=2500, "
                     "data.pmaxRefMaxModulation=2000, boosterBand=0",
                     "msg 6 CalculatorVo4::getMaxPower|Static power for 64QAM = 2100",
                     "msg 6 CalculatorVo4::getMaxPower|ACM adjusted power = (2000 + 100) = 2100",
                     "msg 5 CalculatorVo4::getMaxPower|Max power = 2100 for 64QAM, RSEC-2, using "
                     "ref acm 256QAM"}));
}

TEST(ReferenceVo4, BoosterStepsRunInOrder) {
    // 64QAM at "2": 2100; +5 dB 2600; band 0 +2 dB 2800; gain 500 off 2300; input limit 2250;
    // Pmax 2200.
    const PowerAnswer answer =
        powerOf(Family::Vo4, radioUnitInput(0, 64, 2200), 0, Booster{1, 500, 2250, 64});
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 2200);
    const Lines trace = shown(answer.trace);
    ASSERT_EQ(trace.size(), 10U);
    const std::string start = "msg 6 CalculatorVo4::getMaxPower|";
    EXPECT_EQ(
        Lines(trace.begin() + 4, trace.end()),
        (Lines{start + "boosterPowerAdjustments: 500", start + "maxPower (boosted.1): 2600",
               start + "boosterBandPowerAdjustments: 200", start + "maxPower (boosted.2): 2800",
               start + "maxPower (boosted.3): 2250", start + "maxPower (boosted.4): 2200"}));
}

TEST(ReferenceVo4, HighestModulationsGetNoAdjustmentButGainAndInputLimitApply) {
    // 1800 - 300 = 1500, then the input limit 1400.
    for (const std::int32_t modulation : {2048, 4096}) {
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(0, modulation, 9000), 0,
                          Booster{1, 300, 9000, 4096})
                      .maxPower,
                  1500);
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(0, modulation, 9000), 0,
                          Booster{1, 300, 1400, 4096})
                      .maxPower,
                  1400);
    }
}

TEST(ReferenceVo4, OnlyPresence7LeavesTheBandAdjustmentOut) {
    // 256QAM: 2000 + 5 dB, and + 2 dB in band 0.
    for (const std::int32_t presence : {1, 2, 6, 8, -1, -7}) {
        EXPECT_EQ(
            powerOf(Family::Vo4, radioUnitInput(0, 256, 9000), 0, Booster{presence, 0, 9000, 4096})
                .maxPower,
            2700)
            << presence;
    }
    EXPECT_EQ(
        powerOf(Family::Vo4, radioUnitInput(0, 256, 9000), 0, Booster{7, 0, 9000, 4096}).maxPower,
        2500);
}

TEST(ReferenceVo4, ModulationAtTheBoostersLimitPassesAndOneAboveDoesNot) {
    EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(0, 256, 9000), 0, Booster{1, 0, 9000, 256}).code,
              0U);
    const PowerAnswer above =
        powerOf(Family::Vo4, radioUnitInput(0, 512, 9000), 555, Booster{-1, 0, 9000, 256});
    EXPECT_EQ(above.code, 2U);
    EXPECT_EQ(above.maxPower, 555);
    EXPECT_EQ(shown(above.trace).back(),
              "msg 5 CalculatorVo4::getMaxPower|512QAM is higher than booster max ACM (256QAM)");
}

TEST(ReferenceVo4, PmaxOfTheModulationStillBoundsTheBoostedPower) {
    EXPECT_EQ(
        powerOf(Family::Vo4, radioUnitInput(0, 256, 1950), 0, Booster{1, 0, 9000, 4096}).maxPower,
        1950);
}

TEST(ReferenceVo4, ModulationsOutsideTheTenHaveNoOffset) {
    for (const std::int32_t modulation : {0, 2, 8192, 16384, 65536, 100000, 8, 3}) {
        EXPECT_EQ(powerOf(Family::Vo4, radioUnitInput(0, modulation, 2500)).code, 32770U);
    }
}

// ---------------------------------------------------------------------------------------------
// Newer radio-unit family

TEST(ReferenceVo5, SelectedMaximumIsRaisedTo128QamForTheLookup) {
    // The 128QAM block gives 0 dB at 64QAM in the lowest class.
    const PowerAnswer answer = powerOf(Family::Vo5, radioUnitInput(0, 64, 9000));
    EXPECT_EQ(answer.code, 0U);
    EXPECT_EQ(answer.maxPower, 2000);
    EXPECT_EQ(shown(answer.trace),
              (Lines{"msg 6 CalculatorVo5::getMaxPower|data.selectedMaxModulation=64QAM, "
                     "data.actualModulation=64QAM, data.rsec=0, data.pmaxActualModulation=9000, "
                     "data.pmaxRefMaxModulation=2000, boosterBand=0",
                     "msg 6 CalculatorVo5::getMaxPower|Static power for 64QAM = 2000",
                     "msg 6 CalculatorVo5::getMaxPower|ACM adjusted power for selected max "
                     "64QAM(2000 + 0) = 2000",
                     "msg 5 CalculatorVo5::getMaxPower|Max power = 2000 for 64QAM, RSEC-2, using "
                     "selected max 64QAM"}));
}

TEST(ReferenceVo5, SelectedBelowActualIsNotApplicableBeforeAnyBoosterOrTableTest) {
    CalculationInput data = radioUnitInput(1000, 64, 2500);
    data.selectedMax = 16;
    const PowerAnswer answer = powerOf(Family::Vo5, data, 555, Booster{1, 0, 0, 4});
    EXPECT_EQ(answer.code, 2U);
    EXPECT_EQ(answer.maxPower, 555);
    EXPECT_EQ(shown(answer.trace).back(),
              "msg 5 CalculatorVo5::getMaxPower|getMaxPower64QAM is higher than selected max ACM "
              "(16QAM)");
}

TEST(ReferenceVo5, UndefinedSelectedOrActualIsNotApplicable) {
    CalculationInput data = radioUnitInput(0, 64, 2500);
    data.selectedMax = 100000;
    const PowerAnswer noSelected = powerOf(Family::Vo5, data, 555);
    EXPECT_EQ(noSelected.code, 2U);
    EXPECT_EQ(noSelected.maxPower, 555);
    EXPECT_EQ(shown(noSelected.trace).back(),
              "msg 4 CalculatorVo5::getMaxPower|getMaxPower64QAM type invalid, selected max "
              "UNDEFINED");
    data.selectedMax = 64;
    data.actual = 100000;
    const PowerAnswer noActual = powerOf(Family::Vo5, data);
    EXPECT_EQ(noActual.code, 2U);
    EXPECT_EQ(shown(noActual.trace).back(),
              "msg 4 CalculatorVo5::getMaxPower|getMaxPowerUNDEFINED type invalid, selected max "
              "64QAM");
}

TEST(ReferenceVo5, ModulationAboveTheBoostersLimitIsNotApplicable) {
    const PowerAnswer answer =
        powerOf(Family::Vo5, radioUnitInput(0, 512, 2500), 555, Booster{1, 0, 9000, 256});
    EXPECT_EQ(answer.code, 2U);
    EXPECT_EQ(shown(answer.trace).back(),
              "msg 5 CalculatorVo5::getMaxPower|getMaxPower512QAM is higher than booster max ACM "
              "(256QAM)");
    EXPECT_EQ(powerOf(Family::Vo5, radioUnitInput(0, 256, 2500), 0, Booster{1, 0, 9000, 256}).code,
              0U);
}

TEST(ReferenceVo5, TwoHighestReferencesLoseOneDecibelAtTheirOwnModulation) {
    EXPECT_EQ(powerOf(Family::Vo5, radioUnitInput(0, 16384, 9000)).maxPower, 1900);
    EXPECT_EQ(powerOf(Family::Vo5, radioUnitInput(0, 8192, 9000)).maxPower, 1900);
    CalculationInput below = radioUnitInput(0, 4096, 9000);
    below.selectedMax = 8192;
    EXPECT_EQ(powerOf(Family::Vo5, below).maxPower, 1900);
    below.selectedMax = 16384;
    EXPECT_EQ(powerOf(Family::Vo5, below).maxPower, 2000);
}

TEST(ReferenceVo5, ReferenceWithoutABlockFails) {
    CalculationInput data = radioUnitInput(3, 65536, 9000);
    const PowerAnswer answer = powerOf(Family::Vo5, data, 555);
    EXPECT_EQ(answer.code, 32770U);
    EXPECT_EQ(answer.maxPower, 555);
    EXPECT_EQ(shown(answer.trace).back(),
              "msg 1 CalculatorVo5::getMaxPower|No power offset found for selected max "
              "acm=65536QAM, rsec=5B, acm=65536QAM");
    // The raised reference is the one that is named.
    data = radioUnitInput(0, 2, 9000);
    EXPECT_EQ(shown(powerOf(Family::Vo5, data).trace).back(),
              "msg 1 CalculatorVo5::getMaxPower|No power offset found for selected max "
              "acm=128QAM, rsec=2, acm=BPSK");
}

TEST(ReferenceVo5, ReferenceFollowsTheSelectedMaximumUpTo4096Qam) {
    const ModulationAnswer high = getMaxRefModulation(Family::Vo5, 16, 8192);
    EXPECT_EQ(high.modulation, 4096);
    EXPECT_EQ(shown(high.trace),
              (Lines{"enter 6 CalculatorVo5::getMaxRefModulation|availableMaxAcm=16QAM, "
                     "selectedMaxAcm=8192QAM",
                     "msg 5 CalculatorVo5::getMaxRefModulation|getMaxRefModulationmax power = "
                     "4096QAM"}));
    EXPECT_EQ(getMaxRefModulation(Family::Vo5, 16, 1024).modulation, 1024);
    EXPECT_EQ(getMaxRefModulation(Family::Vo5, 16384, 1024).modulation, 1024);
    EXPECT_EQ(getMaxRefModulation(Family::Vo5, 16, 4096).modulation, 4096);
    EXPECT_EQ(getMaxRefModulation(Family::Vo5, 16, 100000).modulation, 4096);
}

TEST(ReferenceVo5, NoAdjustmentFrom2048QamUp) {
    CalculationInput data = radioUnitInput(0, 2048, 9000);
    for (const std::int32_t modulation : {2048, 4096}) {
        data.actual = modulation;
        data.selectedMax = modulation;
        EXPECT_EQ(powerOf(Family::Vo5, data, 0, Booster{1, 300, 9000, 16384}).maxPower, 1700);
    }
    for (const std::int32_t modulation : {8192, 16384}) {
        data.actual = modulation;
        data.selectedMax = modulation;
        EXPECT_EQ(powerOf(Family::Vo5, data, 0, Booster{1, 300, 9000, 16384}).maxPower, 1600);
    }
    // 1024QAM: +7 dB and, but for presence 7, +2 dB.
    data = radioUnitInput(0, 1024, 9000);
    EXPECT_EQ(powerOf(Family::Vo5, data, 0, Booster{1, 300, 9000, 16384}).maxPower, 2600);
    EXPECT_EQ(powerOf(Family::Vo5, data, 0, Booster{7, 300, 9000, 16384}).maxPower, 2400);
}

TEST(ReferenceVo5, RowsOfTheEightBlocksAddUp) {
    struct Sums {
        std::int32_t reference;
        std::int32_t lowest; // class "2"
        std::int32_t second; // "4L" and "4H"
        std::int32_t allOthers;
    };
    // 128: 2+1+1; 1+1+1; 0. 256 and 512: 3+2+2+1+1; 2+2+2+1+1; 1+1+1+1+1.
    // 1024 and 2048: 4+3+3+2+2+1; 3+3+3+2+2+1; 2*5+1. 4096: 5+4+4+3+3+2+1+1; 4*3+3+3+2+1+1;
    // 3*5+2+1+1. 8192 and 16384: the same less 2.
    const std::vector<Sums> expected = {
        {128, 4, 3, 0},     {256, 9, 8, 5},     {512, 9, 8, 5},     {1024, 15, 14, 11},
        {2048, 15, 14, 11}, {4096, 23, 22, 19}, {8192, 21, 20, 17}, {16384, 21, 20, 17},
    };
    const std::vector<std::int32_t> columns = {4,   16,   32,   64,   128,  256,
                                               512, 1024, 2048, 4096, 8192, 16384};
    std::int32_t entries = 0;
    for (const Sums& sums : expected) {
        for (std::int32_t rsec = 0; rsec <= 9; ++rsec) {
            std::int32_t found = 0;
            for (const std::int32_t modulation : columns) {
                if (modulation > sums.reference) {
                    continue;
                }
                CalculationInput data = radioUnitInput(rsec, modulation, 9000);
                data.selectedMax = sums.reference;
                const PowerAnswer answer = powerOf(Family::Vo5, data);
                EXPECT_EQ(answer.code, 0U);
                found += answer.maxPower - 2000;
                ++entries;
            }
            std::int32_t wanted = sums.allOthers;
            if (rsec == 0) {
                wanted = sums.lowest;
            } else if (rsec <= 2) {
                wanted = sums.second;
            }
            EXPECT_EQ(found, 100 * wanted) << sums.reference << " " << rsec;
        }
    }
    EXPECT_EQ(entries, 680);
}

TEST(ReferenceVo5, TableBuilderIsTracedOnceInAProcessEvenIfTheCallIsNotApplicable) {
    bool tablesBuilt = false;
    CalculationInput data = radioUnitInput(0, 64, 2500);
    data.selectedMax = 4;
    const PowerAnswer first = getMaxPower(Family::Vo5, data, 0, Booster{}, tablesBuilt);
    EXPECT_EQ(first.code, 2U);
    EXPECT_EQ(shown(first.trace).front(), "enter 6 CalculatorVo5::initialize|");
    const PowerAnswer second = getMaxPower(Family::Vo5, data, 0, Booster{}, tablesBuilt);
    EXPECT_EQ(second.trace.size(), first.trace.size() - 1);
}

// ---------------------------------------------------------------------------------------------
// Service: lifecycle and operating inputs

TEST(ReferenceService, ChannelsBut1And2AreServedAs1WhileTheTablesKeepTheNumber) {
    for (const auto& [given, tablesName] : std::vector<std::pair<std::uint32_t, std::string>>{
             {0, "0"}, {3, "3"}, {4294967295U, "4294967295"}, {2, "2"}, {1, "1"}}) {
        const json lines = replayed(baseFileWith("/channel", given), 6);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines.at(0).at("registered"), true);
        EXPECT_EQ(lines.at(0).at("trace").at(2).at("text"),
                  "PmaxTable with value 2 succeeded for channel " + tablesName +
                      "      code: 0x820\n");
        const Node node(baseFile());
        ProcessState process;
        EXPECT_EQ(Service(given, node, process).m_radioChannel, given == 2 ? 2U : 1U);
    }
}

TEST(ReferenceService, WithoutCapabilityHandlerNothingElseIsLookedUp) {
    const std::vector<json> lines = replayed(baseFileWithout("capabilityHandler"), 1);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.at(0).at("result"), 32768);
    EXPECT_EQ(lines.at(0).at("registered"), false);
    const json& trace = lines.at(0).at("trace");
    ASSERT_EQ(trace.size(), 5U);
    for (std::size_t table = 0; table < 4; ++table) {
        EXPECT_EQ(trace.at(table).at("text"),
                  "Error getting interface to ICapabilityHandler_1      code: 0x8000\n");
    }
    EXPECT_EQ(trace.at(4), (json{{"level", 1},
                                 {"kind", "msg"},
                                 {"file", serviceFile},
                                 {"function", "initialize"},
                                 {"text", "Error getting interface to ICapabilityHandler_1"}}));
}

TEST(ReferenceService, EveryOtherMissingNeighbourStopsTheStartWithItsName) {
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"frameFormat", "Failed to get interfaceIFrameFormat_1"},
        {"hardwareConfigurationHandler", "Could not get interface IHardwareConfigurationHandler"},
        {"acmHandler", "Could not get interface IAcmHandler_1"},
        {"systemPowerController", "Could not get interface ISystemPowerController_1"}};
    for (const auto& [neighbour, text] : expected) {
        json file = baseFileWithout(neighbour);
        file["requests"] = json::array({json{{"call", "findPminPmax"}}});
        const std::vector<json> lines = replayed(file, 1);
        ASSERT_EQ(lines.size(), 1U) << neighbour;
        EXPECT_EQ(lines.at(0).at("result"), 32768);
        EXPECT_EQ(lines.at(0).at("registered"), false);
        ASSERT_EQ(lines.at(0).at("trace").size(), 1U);
        EXPECT_EQ(lines.at(0).at("trace").at(0).at("text"), text);
    }
}

TEST(ReferenceService, RefusedMinimumPowerStopsTheStart) {
    const json refused{{"result", 32768}};
    const std::vector<json> lines =
        replayed(baseFileWith("/capabilityHandler/minOutputPower", refused), 1);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.at(0).at("trace").at(0).at("text"),
              "Failed to get Pmin from capability handler");
}

TEST(ReferenceService, TemporaryCutbackReplacesThePermanentOne) {
    Bench sut(baseFile());
    sut.service.setTemporaryPowerCutback(true, 300);
    sut.service.setPowerCutback(500);
    std::int32_t power = 2000;
    sut.service.applyCutbackToMaxPower(power);
    EXPECT_EQ(power, 1700);
    sut.service.setTemporaryPowerCutback(false, 300);
    power = 2000;
    sut.service.applyCutbackToMaxPower(power);
    EXPECT_EQ(power, 1500);
    EXPECT_EQ(sut.trace(6), (Lines{"enter 6 OutputPowerCalculator::setTemporaryPowerCutback|"
                                   "useTemporaryPowerCutback=1, temporaryPowerCutback=300",
                                   "enter 6 OutputPowerCalculator::setPowerCutback|500",
                                   "enter 6 OutputPowerCalculator::applyCutbackToMaxPower|",
                                   "enter 6 OutputPowerCalculator::setTemporaryPowerCutback|"
                                   "useTemporaryPowerCutback=0, temporaryPowerCutback=300",
                                   "enter 6 OutputPowerCalculator::applyCutbackToMaxPower|"}));
}

TEST(ReferenceService, AbsentBoosterTracesThePresenceAlone) {
    Bench sut(baseFile());
    sut.service.setBoosterPresence(0, 500, 2000, 64);
    sut.service.setBoosterPresence(-1, 500, 2000, 64);
    sut.service.setBoosterPresence(1, 500, 2000, 8);
    EXPECT_EQ(sut.trace(6),
              (Lines{"msg 5 OutputPowerCalculator::setBoosterPresence|New boosterPresence = 0",
                     "msg 5 OutputPowerCalculator::setBoosterPresence|New boosterPresence = -1",
                     "msg 5 OutputPowerCalculator::setBoosterPresence|New boosterPresence = 1",
                     "msg 5 OutputPowerCalculator::setBoosterPresence|New boosterGain = 500, new "
                     "boosterMaxInputPower = 2000, new boosterMaxModulation = UNDEFINED"}));
}

TEST(ReferenceService, TemperatureIsTracedOnEntryAndOnceStored) {
    Bench sut(baseFile());
    sut.service.setTemperature(-40);
    EXPECT_EQ(sut.trace(6),
              (Lines{"enter 6 OutputPowerCalculator::setTemperature|-40",
                     "msg 5 OutputPowerCalculator::setTemperature|New temperature = -40"}));
}

// ---------------------------------------------------------------------------------------------
// Service: the calculator of a product number

TEST(ReferenceService, ProductNumberChoosesTheFamilyByWholeText) {
    const std::string kam = "Using KaM max power algorithm";
    const std::string kamV3 = "Using KaMV3 max power algorithm";
    const std::string legacy = "Using legacy TMU max power algorithm";
    const std::string tmu = "Using TMU max power algorithm";
    std::vector<std::tuple<std::string, Family, std::string>> expected = {
        {"", Family::Kam, "Empty productNumber, using KaM max power algorithm"},
        {"QZT 846 57", Family::Kam, kam},
        {"QZT 846 001", Family::Kam, kam},
        {"QZT 846 003", Family::KamV3, kamV3},
        {"QZT 846 002", Family::Vo5, tmu},
        {"QZT35205/1 ", Family::Vo5, tmu},
        {"qzt35201/1", Family::Vo5, tmu},
        {"QZT35209/1", Family::Vo5, tmu},
    };
    for (const char* number :
         {"1/1", "1/11", "1/12", "2/1", "3/1", "4/1", "5/1", "5/1HP", "6/1", "7/1", "8/1"}) {
        expected.emplace_back(std::string("QZT3520") + number, Family::Vo4, legacy);
    }
    for (const char* number : {"1/1", "1/11", "1/12", "2/1", "3/1", "4/1", "5/1", "6/1", "7/1"}) {
        expected.emplace_back(std::string("QZT3522") + number, Family::Vo4, legacy);
    }
    for (const auto& [product, family, text] : expected) {
        Bench sut(baseFileWith("/capabilityHandler/productNumber", product));
        EXPECT_EQ(sut.service.getCalculator(), family) << product;
        EXPECT_EQ(sut.trace(6), (Lines{"msg 6 OutputPowerCalculator::getCalculator|" + text}));
    }
}

TEST(ReferenceService, AbsentProductNumberIsEmpty) {
    json file = baseFile();
    file["capabilityHandler"].erase("productNumber");
    Bench sut(file);
    EXPECT_EQ(sut.service.getCalculator(), Family::Kam);
}

// ---------------------------------------------------------------------------------------------
// Service: max power queries

TEST(ReferenceService, DpdVersion3ReadsTheTablesOfVersion2) {
    Bench sut(baseFile());
    for (const std::int32_t version : {2, 3}) {
        std::int32_t power = 0;
        EXPECT_EQ(sut.service.getMaxPower(version, marketEtsi, 16, power), 0U);
        EXPECT_EQ(power, 2621);
    }
}

TEST(ReferenceService, UnknownDpdVersionFailsAndIsTraced) {
    for (const std::int32_t version : {0, 4, -1}) {
        Bench sut(baseFile());
        std::int32_t power = 5;
        EXPECT_EQ(sut.service.getMaxPower(version, marketEtsi, 16, power), 32768U);
        EXPECT_EQ(power, 5);
        const std::string number = std::to_string(version);
        EXPECT_EQ(
            sut.trace(6),
            (Lines{"enter 6 OutputPowerCalculator::getMaxPower|dpdVersion=" + number +
                       ", market=Etsi, modulationType=16QAM",
                   "enter 6 OutputPowerCalculator::getMaxPowerArray|dpdVersion=" + number +
                       ", market=Etsi",
                   "msg 1 OutputPowerCalculator::getMaxPowerArray|Unknown DPD version " + number,
                   "msg 2 OutputPowerCalculator::getMaxPower|Unable to get power for "
                   "modulation 16QAM"}));
    }
}

TEST(ReferenceService, OnlyAnsiReadsTheAnsiTable) {
    Bench sut(baseFile());
    const std::map<std::int32_t, std::int32_t> expected = {
        {0, 2611}, {1, 2612}, {2, 2611}, {3, 2611}, {7, 2611}};
    for (const auto& [market, wanted] : expected) {
        std::int32_t power = 0;
        EXPECT_EQ(sut.service.getMaxPower(1, market, 16, power), 0U);
        EXPECT_EQ(power, wanted) << market;
    }
    EXPECT_EQ(sut.trace(6).at(8), "enter 6 OutputPowerCalculator::getMaxPower|dpdVersion=1, "
                                  "market=, modulationType=16QAM");
}

TEST(ReferenceService, AnsiAsksTheCalculatorWithTheLowestClass) {
    Bench sut(baseFileWith("/capabilityHandler/productNumber", "QZT35201/1"));
    std::int32_t power = 0;
    // "7B" would give 64QAM +1 dB like "2"; 4QAM tells them apart: 2212 + 3 dB.
    EXPECT_EQ(sut.service.getAdModMaxPower(1, marketAnsi, 9, 16, 256, 256, 4, 0, power, false), 0U);
    EXPECT_EQ(power, 2512);
    const Lines trace = sut.trace(6);
    EXPECT_EQ(trace.front(),
              "enter 6 OutputPowerCalculator::getAdModMaxPower|dpdVersion=1, market=Ansi, "
              "convertRsecEnumToString(rsec)=7B, selectedMinMod=16QAM, selectedMaxMod=256QAM, "
              "availableMaxMod=256QAM, actualMod=4QAM, csPowerCompensation=0");
    EXPECT_NE(trace.at(trace.size() - 4).find("data.rsec=0,"), std::string::npos);
}

TEST(ReferenceService, FixedModulationWithBothPowersMissingGivesTheCompensation) {
    Bench sut(baseFile());
    std::int32_t power = 0;
    EXPECT_EQ(sut.service.getFixModMaxPower(1, marketEtsi, 512, 1024, -75, power, false), 0U);
    EXPECT_EQ(power, -75);
    EXPECT_EQ(
        sut.trace(2),
        (Lines{"raw 32776 TxRfMaxPowerCapability::getPower|getPower, unknown modulation type: "
               "512QAM      code: 0x8008\n",
               "msg 2 OutputPowerCalculator::getFixModMaxPower|Failed to calculate power "
               "capabilities for modulation 512QAMQAM",
               "raw 32776 TxRfMaxPowerCapability::getPower|getPower, unknown modulation type: "
               "1024QAM      code: 0x8008\n",
               "msg 2 OutputPowerCalculator::getFixModMaxPower|Failed to calculate power "
               "capabilities for modulation 1024QAM"}));
}

TEST(ReferenceService, FixedModulationTakesTheLowerTablePowerPlusTheCompensation) {
    const json table = json::array({json::array({16, 2400}), json::array({64, 2100})});
    Bench sut(baseFileWith("/capabilityHandler/pmaxDpd1Etsi", table));
    std::int32_t power = 0;
    EXPECT_EQ(sut.service.getFixModMaxPower(1, marketEtsi, 16, 64, -50, power, false), 0U);
    EXPECT_EQ(power, 2050);
    EXPECT_EQ(sut.service.getFixModMaxPower(1, marketEtsi, 64, 16, -50, power, false), 0U);
    EXPECT_EQ(power, 2050);
}

TEST(ReferenceService, CutbackLowersBothPowersAndTheCompensationButNotTheReference) {
    Bench sut(baseFile());
    sut.service.setPowerCutback(300);
    sut.service.m_trace.clear();
    std::int32_t power = 0;
    EXPECT_EQ(sut.service.getAdModMaxPower(1, marketEtsi, 0, 16, 256, 256, 64, 50, power, true),
              0U);
    // Pmax 2611 and 2411 each less 300; base = 50 - 300 + 2211 = 1961; 16QAM +2 dB, 64QAM +1 dB.
    EXPECT_EQ(power, 2061);
    EXPECT_EQ(sut.trace(5), (Lines{"msg 5 CalculatorKam::getMaxPower|getMaxPower std::min "
                                   "parameters: 2111,2161,2061,2311",
                                   "msg 5 CalculatorKam::getMaxPower|getMaxPower Max power for "
                                   "modulation 64QAM, rsec 0 and max modulation 2211 = 2061"}));
}

TEST(ReferenceService, AdaptiveModulationTracesEveryStepInOrder) {
    Bench sut(baseFile());
    std::int32_t power = 0;
    EXPECT_EQ(sut.service.getAdModMaxPower(1, marketEtsi, 0, 16, 256, 256, 64, 0, power, true), 0U);
    const std::string s = " OutputPowerCalculator::";
    const auto lookup = [&s](const std::string& modulation) {
        return Lines{"enter 6" + s +
                         "getMaxPower|dpdVersion=1, market=Etsi, modulationType=" + modulation,
                     "enter 6" + s + "getMaxPowerArray|dpdVersion=1, market=Etsi"};
    };
    Lines expected = {
        "enter 6" + s +
        "getAdModMaxPower|dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
        "selectedMinMod=16QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
        "actualMod=64QAM, csPowerCompensation=0"};
    const std::string cutback = "enter 6" + s + "applyCutbackToMaxPower|";
    expected.push_back(cutback);
    expected.insert(expected.end(), {lookup("16QAM").at(0), lookup("16QAM").at(1), cutback});
    expected.insert(expected.end(), {lookup("64QAM").at(0), lookup("64QAM").at(1), cutback});
    expected.push_back("msg 6" + s + "getCalculator|Using KaM max power algorithm");
    expected.insert(expected.end(), {lookup("256QAM").at(0), lookup("256QAM").at(1)});
    expected.push_back("enter 6" + s + "getMaxPowerArray|dpdVersion=1, market=Etsi");
    Lines found = sut.trace(6);
    ASSERT_EQ(found.size(), expected.size() + 2);
    found.resize(expected.size());
    EXPECT_EQ(found, expected);
}

TEST(ReferenceService, FailedLookupsOfAdaptiveModulationNameTheModulationTwice) {
    std::int32_t power = 5;
    Bench minimum(baseFile());
    minimum.service.setPowerCutback(0);
    EXPECT_EQ(minimum.service.getAdModMaxPower(1, 0, 0, 512, 256, 256, 64, 0, power, true), 32776U);
    const Lines trace = minimum.trace(6);
    EXPECT_EQ(trace.back(), "msg 1 OutputPowerCalculator::getAdModMaxPower|Could not get max ref "
                            "output power for selected min 512QAMQAM");
    // The cutback is applied to the missing power before the failure is told.
    EXPECT_EQ(trace.at(trace.size() - 2), "enter 6 OutputPowerCalculator::applyCutbackToMaxPower|");

    Bench actual(baseFile());
    EXPECT_EQ(actual.service.getAdModMaxPower(1, 0, 0, 16, 256, 256, 512, 0, power, false), 32776U);
    EXPECT_EQ(actual.trace(6).back(), "msg 1 OutputPowerCalculator::getAdModMaxPower|Could not get "
                                      "max ref output power for actual 512QAMQAM");

    Bench reference(baseFile());
    EXPECT_EQ(reference.service.getAdModMaxPower(1, 0, 0, 16, 256, 512, 64, 0, power, false),
              32776U);
    EXPECT_EQ(reference.trace(6).back(), "msg 1 OutputPowerCalculator::getAdModMaxPower|Could not "
                                         "get max output power for reference offset 0QAM");

    Bench calculator(baseFile());
    EXPECT_EQ(calculator.service.getAdModMaxPower(1, 0, 1000, 16, 256, 256, 64, 0, power, false),
              32776U);
    EXPECT_EQ(calculator.trace(6).back(), "msg 1 OutputPowerCalculator::getAdModMaxPower|"
                                          "Modulation not supported 64QAMQAM");
    EXPECT_EQ(power, 5);
}

TEST(ReferenceService, NotApplicableIsPassedOnAndCountsAsSuccessForAFixedModulation) {
    json file = baseFileWith("/capabilityHandler/productNumber", "unlisted");
    Bench sut(file);
    std::int32_t power = 5;
    EXPECT_EQ(sut.service.getAdModMaxPower(1, 0, 0, 16, 16, 256, 64, 0, power, false), 2U);
    EXPECT_EQ(power, 5);

    // With a booster: 16QAM as selected maximum is not applicable to 64QAM, whose power stays 0;
    // 16QAM itself gives min(2611 + 1 dB, 2611) boosted and bounded by 2611.
    sut.service.setBoosterPresence(1, 0, 9000, 4096);
    EXPECT_EQ(sut.service.getFixModMaxPower(1, 0, 16, 64, 0, power, false), 0U);
    EXPECT_EQ(power, 0);
}

TEST(ReferenceService, FixedModulationWithBoosterTakesTheLowerOfTwoAdaptiveAnswers) {
    Bench sut(baseFileWith("/capabilityHandler/productNumber", "QZT35201/1"));
    sut.service.setBoosterPresence(-1, 700, 1900, 4096);
    sut.service.m_trace.clear();
    std::int32_t power = 5;
    // 16QAM: min(2211 + 200, 2611) + 700 + 200 - 700 = 2611, input limit 1900.
    // 256QAM: 2211 + 500 + 200 - 700 = 2211, input limit 1900.
    EXPECT_EQ(sut.service.getFixModMaxPower(1, 0, 16, 256, 100, power, false), 0U);
    EXPECT_EQ(power, 1900);
    const Lines trace = sut.trace(6);
    EXPECT_EQ(trace.at(0),
              "enter 6 OutputPowerCalculator::getFixModMaxPower|dpdVersion=1, market=Etsi, "
              "selectedMod=16QAM, modulation=256QAM, csPowerCompensation=100, useCutback=0");
    EXPECT_EQ(trace.at(1), "enter 6 OutputPowerCalculator::limitMaxModDueToRadioCapability|0");
    EXPECT_EQ(trace.at(2), "msg 6 OutputPowerCalculator::limitMaxModDueToRadioCapability| "
                           "usePerformaceProfiles: No");
    EXPECT_EQ(trace.at(3),
              "msg 6 OutputPowerCalculator::limitMaxModDueToRadioCapability| "
              "modemMaxAvailableModulation: 256QAM radioMaxAvailableModulation: 256QAM");
}

TEST(ReferenceService, FailureOfEitherAdaptiveAnswerFailsTheFixedModulation) {
    Bench sut(baseFileWith("/capabilityHandler/productNumber", "QZT35201/1"));
    sut.service.setBoosterPresence(1, 0, 9000, 4096);
    std::int32_t power = 5;
    EXPECT_EQ(sut.service.getFixModMaxPower(1, 0, 16, 512, 0, power, false), 32768U);
    EXPECT_EQ(power, 5);
    EXPECT_EQ(sut.trace(2).back(), "msg 2 OutputPowerCalculator::getFixModMaxPower|Failed to get "
                                   "AdMod capabilities, error: 0, 32776");
}

TEST(ReferenceService, UnrestrictedPmaxIsThePowerOfTheConfiguredModulationWithoutCutback) {
    json file = baseFile();
    file["variables"][arrayName] = json::array({28, -60});
    Bench sut(file);
    sut.service.setPowerCutback(500);
    std::int32_t pmax = 0;
    EXPECT_EQ(sut.service.getUnrestrictedPmax(pmax), 0U);
    EXPECT_EQ(pmax, 2351);
}

TEST(ReferenceService, UnrestrictedPmaxSucceedsEvenWhenThePowerFails) {
    json file = baseFileWith("/frameFormat/modulation", "512QAM");
    Bench sut(file);
    sut.service.setBoosterPresence(1, 0, 9000, 4096);
    std::int32_t pmax = 5;
    EXPECT_EQ(sut.service.getUnrestrictedPmax(pmax), 0U);
    EXPECT_EQ(pmax, 5);
    EXPECT_EQ(sut.trace(2).back(), "msg 2 OutputPowerCalculator::getUnrestrictedPmax|Failed to "
                                   "calculate power capabilities for modulation 512QAM");
}

TEST(ReferenceService, UnreadableCompensationIsToldWithTheSpacing) {
    json file = baseFileWith("/frameFormat/channelSpacing", -5);
    file.erase("variables");
    Bench sut(file);
    std::int32_t pmax = 5;
    EXPECT_EQ(sut.service.getUnrestrictedPmax(pmax), 32768U);
    EXPECT_EQ(pmax, 5);
    EXPECT_EQ(sut.trace(2).back(), "msg 1 OutputPowerCalculator::getCsPowerCompensation|Could not "
                                   "get power compensation for channel spacing -5MHz");
}

// ---------------------------------------------------------------------------------------------
// Service: minimum output power

TEST(ReferenceService, MinimumPowerIsRaisedByTheOffsetOfTheSpacing) {
    Bench sut(baseFile());
    EXPECT_EQ(sut.service.getMinOutputPower(28), -750);
    EXPECT_EQ(sut.trace(6), (Lines{"enter 6 OutputPowerCalculator::getMinOutputPower|28"}));
}

TEST(ReferenceService, SpacingWithoutOffsetGivesThePlainMinimumPower) {
    Bench sut(baseFile());
    EXPECT_EQ(sut.service.getMinOutputPower(4294967291U), -1000);
    EXPECT_EQ(sut.trace(6), (Lines{"enter 6 OutputPowerCalculator::getMinOutputPower|4294967291",
                                   "msg 2 OutputPowerCalculator::getMinOutputPower| no match for "
                                   "channel spacing : 4294967291"}));
}

TEST(ReferenceService, MinimumPowerThatWasNeverHandedOutCountsAsZero) {
    json file = baseFile();
    file["capabilityHandler"].erase("minOutputPower");
    Bench sut(file);
    EXPECT_EQ(sut.started, 0U);
    EXPECT_EQ(sut.service.getMinOutputPower(28), 250);
}

TEST(ReferenceService, UnlistedFrameFormatIdHasSpacingZero) {
    json file = baseFile();
    file["systemPowerController"]["minOutputPowerOffsets"] =
        json::parse("[[0, 40], [56, 70], [3000, 90], [0, 1]]");
    file["hardwareConfigurationHandler"]["frameFormats"] = json::parse(R"([
        {"id": 5, "channelSpacing": 56, "dpdVersion": 1, "market": 0, "modulationAndCodes": []},
        {"id": 5, "channelSpacing": 28, "dpdVersion": 1, "market": 0, "modulationAndCodes": []},
        {"id": 6, "channelSpacing": 3000, "dpdVersion": 1, "market": 0, "modulationAndCodes": []},
        {"id": 7, "channelSpacing": {"result": 0}, "dpdVersion": 1, "market": 0,
         "modulationAndCodes": []}])");
    Bench sut(file);
    EXPECT_EQ(sut.service.getMinOutputPowerUsingRfid(9), -960);
    EXPECT_EQ(sut.service.getMinOutputPowerUsingRfid(5), -930);
    EXPECT_EQ(sut.service.getMinOutputPowerUsingRfid(6), -960);
    EXPECT_EQ(sut.service.getMinOutputPowerUsingRfid(7), -960);
    EXPECT_EQ(sut.trace(6).at(0),
              "enter 6 OutputPowerCalculator::getMinOutputPowerUsingRfid|rfid=9");
    EXPECT_EQ(sut.trace(6).at(1), "enter 6 OutputPowerCalculator::getMinOutputPower|0");
}

TEST(ReferenceService, PminPmaxReadsAnEtsiTableForEtsiAlone) {
    const std::map<std::int32_t, std::int32_t> expected = {
        {0, 2821}, {1, 2822}, {2, 2822}, {3, 2822}, {7, 2822}};
    for (const auto& [market, wanted] : expected) {
        json file = baseFileWith("/frameFormat/market", market);
        file["frameFormat"]["dpdVersion"] = 2;
        Bench sut(file);
        std::int32_t pmin = 0;
        std::int32_t pmax = 0;
        EXPECT_EQ(sut.service.findPminPmax(pmin, pmax), 0U);
        EXPECT_EQ(pmin, -750);
        EXPECT_EQ(pmax, wanted) << market;
    }
}

TEST(ReferenceService, PminPmaxOfAnUnknownDpdVersionTouchesNothing) {
    Bench sut(baseFileWith("/frameFormat/dpdVersion", 4));
    std::int32_t pmin = 5;
    std::int32_t pmax = 6;
    EXPECT_EQ(sut.service.findPminPmax(pmin, pmax), 32768U);
    EXPECT_EQ(pmin, 5);
    EXPECT_EQ(pmax, 6);
    EXPECT_EQ(sut.trace(6),
              (Lines{"enter 6 OutputPowerCalculator::findPminPmax|",
                     "msg 1 OutputPowerCalculator::findPminPmax|Unknown DPD version 4"}));
}

TEST(ReferenceService, PmaxOfAnEmptyTableIsTheLowestNumber) {
    Bench sut(baseFileWith("/capabilityHandler/pmaxDpd1Etsi", json::array()));
    std::int32_t pmin = 5;
    std::int32_t pmax = 6;
    EXPECT_EQ(sut.service.findPminPmax(pmin, pmax), 0U);
    EXPECT_EQ(pmax, lowest);
}

// ---------------------------------------------------------------------------------------------
// Service: power capabilities per modulation

TEST(ReferenceService, AcmHandlerWithoutItsOwnAnswerLeavesNoSelection) {
    Bench sut(baseFileWith("/acmHandler", json::object()));
    std::int32_t min = 1;
    std::int32_t max = 2;
    EXPECT_EQ(sut.service.getSelectedMinMaxAcm(min, max), 0U);
    EXPECT_EQ(min, 163);
    EXPECT_EQ(max, 163);
    EXPECT_EQ(sut.trace(6),
              (Lines{"msg 2 OutputPowerCalculator::getSelectedMinMaxAcm|failed to get min and max "
                     "modulation from ACM handler"}));

    // The configured 64QAM bounds the asked 4QAM.
    std::int32_t minPower = 0;
    std::int32_t maxPower = 0;
    EXPECT_EQ(sut.service.calculatePowerCapabilities(4, minPower, maxPower), 0U);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, 2411);
}

TEST(ReferenceService, AcmHandlerThatSucceedsWithoutWritingLeavesNoSelectionSilently) {
    Bench sut(baseFileWith("/acmHandler", json{{"result", 32767}}));
    std::int32_t min = 1;
    std::int32_t max = 2;
    sut.service.getSelectedMinMaxAcm(min, max);
    EXPECT_EQ(min, 163);
    EXPECT_EQ(max, 163);
    EXPECT_TRUE(sut.service.m_trace.empty());
}

TEST(ReferenceService, AdaptiveModulationIsInUseWhenTheEffectiveCodesDiffer) {
    Bench differ(baseFileWith("/acmHandler", json{{"min", 33}, {"max", 73}}));
    EXPECT_TRUE(differ.service.getAdmodEnable(163, 163));
    EXPECT_EQ(differ.trace(6),
              (Lines{"enter 6 OutputPowerCalculator::getAdmodEnable|minModulationAndCode="
                     "16QAM_ULTRA_STRONG, maxModulationAndCode=256QAM_ULTRA_STRONG"}));
    Bench same(baseFileWith("/acmHandler", json{{"min", 33}, {"max", 33}}));
    EXPECT_FALSE(same.service.getAdmodEnable(163, 163));
    Bench half(baseFileWith("/acmHandler", json{{"min", 33}, {"max", 40}}));
    EXPECT_FALSE(half.service.getAdmodEnable(40, 163));
    EXPECT_TRUE(half.service.getAdmodEnable(163, 163));
    EXPECT_TRUE(half.service.getAdmodEnable(13, 163));
}

TEST(ReferenceService, SelectedCodeWithoutModulationIsNoSelection) {
    for (const std::int32_t code : {13, 163, 9, 164, -1}) {
        Bench sut(baseFileWith("/acmHandler", json{{"min", code}, {"max", code}}));
        std::int32_t minPower = 0;
        std::int32_t maxPower = 0;
        EXPECT_EQ(sut.service.calculatePowerCapabilities(4, minPower, maxPower), 0U);
        EXPECT_EQ(maxPower, 2411);
    }
}

TEST(ReferenceService, NoSelectionAndAnUndefinedConfiguredModulationFails) {
    json file = baseFileWith("/frameFormat/modulation", "UNDEFINED");
    file["acmHandler"] = json{{"min", 163}, {"max", 163}};
    Bench sut(file);
    std::int32_t minPower = 5;
    std::int32_t maxPower = 6;
    EXPECT_EQ(sut.service.calculatePowerCapabilities(4, minPower, maxPower), 32768U);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, 6);
    EXPECT_EQ(sut.trace(1), (Lines{"msg 1 OutputPowerCalculator::calculatePowerCapabilities|Failed "
                                   "to get AdMod capabilities"}));

    minPower = 5;
    EXPECT_EQ(sut.service.calculateAdmodPowerCapabilities(4, 0, minPower, maxPower), 32768U);
    EXPECT_EQ(minPower, 5);
    EXPECT_EQ(maxPower, 6);
}

TEST(ReferenceService, PowerCapabilitiesTakeTheLowerPowerLessTheCutback) {
    json file = baseFile();
    file["capabilityHandler"]["pmaxDpd1Etsi"] = json::parse("[[16, 2500], [64, 2300]]");
    Bench sut(file);
    sut.service.setPowerCutback(200);
    std::int32_t minPower = 0;
    std::int32_t maxPower = 0;
    EXPECT_EQ(sut.service.calculatePowerCapabilities(64, minPower, maxPower), 0U);
    EXPECT_EQ(maxPower, 2100);
    EXPECT_EQ(minPower, -750);
}

TEST(ReferenceService, AdaptiveCapabilitiesSetTheMinimumPowerOnSuccessAlone) {
    Bench sut(baseFile());
    std::int32_t minPower = 5;
    std::int32_t maxPower = 6;
    EXPECT_EQ(sut.service.calculateAdmodPowerCapabilities(64, 0, minPower, maxPower), 0U);
    // 2211 + 1 dB, below the Pmax 2411.
    EXPECT_EQ(maxPower, 2311);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(sut.trace(6).front(),
              "enter 6 OutputPowerCalculator::calculateAdmodPowerCapabilities|"
              "actualModulation=64QAM, convertRsecEnumToString(rsec)=2");

    minPower = 5;
    EXPECT_EQ(sut.service.calculateAdmodPowerCapabilities(512, 0, minPower, maxPower), 32776U);
    EXPECT_EQ(minPower, 5);
    EXPECT_EQ(sut.trace(1).back(), "msg 1 OutputPowerCalculator::calculateAdmodPowerCapabilities|"
                                   "Failed to get AdMod capabilities");

    Bench newer(baseFileWith("/capabilityHandler/productNumber", "unlisted"));
    newer.service.setBoosterPresence(1, 0, 9000, 16);
    EXPECT_EQ(newer.service.calculateAdmodPowerCapabilities(64, 0, minPower, maxPower), 2U);
    EXPECT_EQ(minPower, 5);
    EXPECT_EQ(newer.trace(5).back(),
              "msg 5 OutputPowerCalculator::calculateAdmodPowerCapabilities|ignoring QAM64QAM as "
              "it's not supported by combined HW capability");
}

TEST(ReferenceService, UndefinedClassCarriesTheCallersPowerThroughTheThirdOutdoorFamily) {
    json file = baseFileWith("/capabilityHandler/productNumber", "QZT 846 003");
    file["variables"][arrayName] = json::array({28, 50});
    Bench sut(file);
    std::int32_t minPower = 0;
    std::int32_t maxPower = 1800;
    EXPECT_EQ(sut.service.calculateAdmodPowerCapabilities(64, 1000, minPower, maxPower), 0U);
    EXPECT_EQ(maxPower, 1850);
}

TEST(ReferenceService, RadioLimitComesFromTheProfileOrTheMarket) {
    json file = baseFile();
    file["capabilityHandler"]["maxModulationWithoutLimitation"] =
        json::parse(R"({"Etsi": "64QAM", "Ansi": "16QAM"})");
    file["hardwareConfigurationHandler"]["frameFormats"] = json::parse(R"([
        {"id": 5, "channelSpacing": 56, "dpdVersion": 1, "market": "Ansi",
         "modulationAndCodes": [], "carrierAggregationPerformanceProfiles": [4, 9]}])");
    Bench byMarket(file);
    EXPECT_EQ(byMarket.service.limitMaxModDueToRadioCapability(0, 0, 256), 64);
    EXPECT_EQ(byMarket.service.limitMaxModDueToRadioCapability(1, 5, 256), 16);
    // The market of an unknown id stays Etsi.
    EXPECT_EQ(byMarket.service.limitMaxModDueToRadioCapability(1, 6, 256), 64);
    EXPECT_EQ(byMarket.service.limitMaxModDueToRadioCapability(1, 5, 4), 4);

    file["capabilityHandler"]["maxAcmLimitedByHw"] = true;
    file["capabilityHandler"]["maxModulationLimitedByHw"] =
        json::parse(R"({"4": "4QAM", "9": "16QAM"})");
    file["capabilityHandler"]["performanceProfileIndex"] = 1;
    file["frameFormat"]["performanceProfiles"] = json::parse("[9, 4]");
    file["frameFormat"]["carrierAggregationPerformanceProfiles"] = json::parse("[4, 9]");
    Bench byProfile(file);
    EXPECT_EQ(byProfile.service.limitMaxModDueToRadioCapability(0, 0, 256), 4);
    // A record without plain profiles: the index is outside the list, hence no limit.
    EXPECT_EQ(byProfile.service.limitMaxModDueToRadioCapability(1, 5, 256), 256);

    file["board"] = json{{"carrierAggregation", true}};
    Bench aggregated(file);
    EXPECT_EQ(aggregated.service.limitMaxModDueToRadioCapability(0, 0, 256), 16);
    EXPECT_EQ(aggregated.service.limitMaxModDueToRadioCapability(1, 5, 256), 16);
    EXPECT_EQ(aggregated.service.limitMaxModDueToRadioCapability(1, 6, 256), 256);
    EXPECT_EQ(aggregated.trace(6).at(1),
              "msg 6 OutputPowerCalculator::limitMaxModDueToRadioCapability| "
              "usePerformaceProfiles: Yes");
}

// ---------------------------------------------------------------------------------------------
// Service: power of every modulation-and-code

namespace {

struct ArrayAnswer {
    std::uint32_t result = 0;
    std::int32_t minOutputPower = 5;
    PowerMap powerMap;
};

ArrayAnswer arrayOf(Bench& sut, std::int32_t id, std::int32_t rsec = 1000, PowerMap before = {}) {
    ArrayAnswer answer;
    answer.powerMap = std::move(before);
    answer.result = sut.service.getMinMaxOutputPowerVsModulationArray(
        id, 163, 163, rsec, answer.minOutputPower, answer.powerMap);
    return answer;
}

} // namespace

TEST(ReferenceService, FrameFormatIdBelow1MeansTheConfiguredOne) {
    json file = baseFile();
    file["systemPowerController"]["minOutputPowerOffsets"] = json::parse("[[28, 250], [56, 400]]");
    file["hardwareConfigurationHandler"]["frameFormats"] = json::parse(R"([
        {"id": 1, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
         "modulationAndCodes": ["4QAM"]}])");
    Bench sut(file);
    for (const std::int32_t id : {0, -1}) {
        const ArrayAnswer answer = arrayOf(sut, id);
        EXPECT_EQ(answer.result, 0U);
        EXPECT_EQ(answer.minOutputPower, -750);
        EXPECT_EQ(answer.powerMap.size(), 4U);
    }
    const ArrayAnswer byId = arrayOf(sut, 1);
    EXPECT_EQ(byId.result, 0U);
    EXPECT_EQ(byId.minOutputPower, -600);
    // The reference is the 4QAM of the array: 2822 - 300 = 2522, plus spacing 56 compensation 10,
    // 4QAM +3 dB = 2832; 16QAM, the selected minimum, +2 dB = 2732 and Pmax 2622.
    EXPECT_EQ(byId.powerMap, (PowerMap{{31, 2622}}));
}

TEST(ReferenceService, PowersOfTheConfiguredFrameFormatByHand) {
    Bench sut(baseFile());
    const ArrayAnswer answer = arrayOf(sut, 0);
    // Reference 256QAM 2211 at class "2": 16QAM (minimum) 2411 bounds all; 64QAM 2311; 256QAM 2211.
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 2411}, {41, 2411}, {61, 2311}, {81, 2211}}));
    const Lines trace = sut.trace(6);
    EXPECT_EQ(Lines(trace.begin(), trace.begin() + 8),
              (Lines{"enter 6 OutputPowerCalculator::getMinMaxOutputPowerVsModulationArray|"
                     "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                     "maxModulationAndCodeIn=UNDEFINED, referenceSec=1000",
                     "enter 6 OutputPowerCalculator::getAdmodEnable|minModulationAndCode=16QAM, "
                     "maxModulationAndCode=256QAM",
                     "enter 6 OutputPowerCalculator::getMaxOutputPowerArrayUsingConfigured|rsec=0, "
                     "adModEnable=1, selectedMinMod=16QAM, selectedMaxMod=256QAM",
                     "enter 6 OutputPowerCalculator::populateModulationPowerMap|rsec=0, "
                     "adModEnable=1, selectedMinMod=16QAM, selectedMaxMod=256QAM",
                     "msg 6 OutputPowerCalculator::populateModulationPowerMap|"
                     "modulationAndCodeArraySize = 4",
                     "enter 6 OutputPowerCalculator::limitMaxModDueToRadioCapability|0",
                     "msg 6 OutputPowerCalculator::limitMaxModDueToRadioCapability| "
                     "usePerformaceProfiles: No",
                     "msg 6 OutputPowerCalculator::limitMaxModDueToRadioCapability| "
                     "modemMaxAvailableModulation: 256QAM radioMaxAvailableModulation: 256QAM"}));
    EXPECT_EQ(trace.back(), "msg 5 OutputPowerCalculator::getMinMaxOutputPowerVsModulationArray|"
                            "minOutputPower = -750");
}

TEST(ReferenceService, OnlyTheUndefinedClassIsReplacedByTheControllersOwn) {
    json file = baseFileWith("/systemPowerController/referenceSec", "7B");
    Bench sut(file);
    // 4QAM: class "7B" +1 dB for the minimum 16QAM too, class "2" +2 dB.
    EXPECT_EQ(arrayOf(sut, 0, 1000).powerMap.at(31), 2311);
    EXPECT_EQ(arrayOf(sut, 0, 0).powerMap.at(31), 2411);
    EXPECT_EQ(arrayOf(sut, 0, 999).powerMap.size(), 0U);
}

TEST(ReferenceService, ConsecutiveCodesOfOneModulationShareOneComputation) {
    json file = baseFileWith("/frameFormat/modulationAndCodes", json::array({10, 11, 12, 20}));
    file["capabilityHandler"]["pmaxDpd1Etsi"] = json::parse(R"([["BPSK", 2900], ["16QAM", 2800]])");
    Bench sut(file);
    const ArrayAnswer answer = arrayOf(sut, 0);
    // Reference BPSK: 2900 - 300; 16QAM +2 dB = 2800 and its Pmax.
    EXPECT_EQ(answer.powerMap, (PowerMap{{10, 2800}, {11, 2800}, {12, 2800}, {20, 2800}}));
    std::size_t computations = 0;
    for (const TraceRecord& record : sut.service.m_trace) {
        computations += record.function == "getAdModMaxPower" ? 1U : 0U;
    }
    EXPECT_EQ(computations, 1U);
}

TEST(ReferenceService, CodesAboveTheRadiosLimitAreLeftOut) {
    Bench sut(baseFileWith("/capabilityHandler/maxModulationWithoutLimitation", "64QAM"));
    const ArrayAnswer answer = arrayOf(sut, 0);
    EXPECT_EQ(answer.result, 0U);
    // The reference is now 64QAM: 2411 - 100 = 2311; 16QAM +2 dB 2511, 64QAM 2411.
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 2511}, {41, 2511}, {61, 2411}}));
}

TEST(ReferenceService, ArrayWithTheUndefinedCodeFailsAndLeavesTheMap) {
    Bench sut(baseFileWith("/frameFormat/modulationAndCodes", json::array({31, 163, 41})));
    const ArrayAnswer answer = arrayOf(sut, 0, 1000, PowerMap{{31, 7}});
    EXPECT_EQ(answer.result, 32771U);
    EXPECT_EQ(answer.minOutputPower, 5);
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 7}}));
    EXPECT_EQ(sut.trace(1),
              (Lines{"msg 1 OutputPowerCalculator::populateModulationPowerMap|Failed "
                     "to calculate power capabilities for undefined max modulation"}));
}

TEST(ReferenceService, EmptyArrayFails) {
    Bench sut(baseFileWith("/frameFormat/modulationAndCodes", json::array()));
    EXPECT_EQ(arrayOf(sut, 0).result, 32771U);
    EXPECT_EQ(sut.trace(1), (Lines{"msg 1 OutputPowerCalculator::populateModulationPowerMap|Failed "
                                   "to calculate power capabilities, modulationAndCodeArray is "
                                   "empty"}));
}

TEST(ReferenceService, EntriesOfSkippedCodesStayAndOthersAreOverwritten) {
    Bench sut(baseFileWith("/capabilityHandler/maxModulationWithoutLimitation", "64QAM"));
    const ArrayAnswer answer = arrayOf(sut, 0, 1000, PowerMap{{61, 1}, {81, 2}, {-3, 4}});
    EXPECT_EQ(answer.powerMap, (PowerMap{{-3, 4}, {31, 2511}, {41, 2511}, {61, 2411}, {81, 2}}));
}

TEST(ReferenceService, WithoutAnySelectionTheSmallestCodeGivesTheMinimum) {
    Bench sut(baseFileWith("/acmHandler", json::object()));
    const ArrayAnswer answer = arrayOf(sut, 0);
    EXPECT_EQ(answer.result, 0U);
    // Both codes undefined: fixed modulation, so the lower of 4QAM's and each modulation's Pmax.
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 2811}, {41, 2611}, {61, 2411}, {81, 2211}}));
    const Lines trace = sut.trace(6);
    EXPECT_EQ(trace.at(1), trace.at(2));
    EXPECT_EQ(trace.at(4), "enter 6 OutputPowerCalculator::getMaxOutputPowerArrayUsingConfigured|"
                           "rsec=0, adModEnable=0, selectedMinMod=UNDEFINED, "
                           "selectedMaxMod=UNDEFINED");
}

TEST(ReferenceService, UnknownFrameFormatIdTellsThreeFailuresAndEndsAtTheEmptyArray) {
    Bench sut(baseFile());
    EXPECT_EQ(arrayOf(sut, 8).result, 32771U);
    const std::string start = "msg 1 OutputPowerCalculator::getMaxOutputPowerArrayUsingRfid|"
                              "Failed to get ";
    const std::string end = ", wrong channel or FFID?";
    EXPECT_EQ(sut.trace(1),
              (Lines{start + "telecom market" + end, start + "modulation and code array" + end,
                     start + "channel spacing" + end,
                     "msg 1 OutputPowerCalculator::populateModulationPowerMap|Failed to calculate "
                     "power capabilities, modulationAndCodeArray is empty"}));
}

TEST(ReferenceService, FailedCodeIsLeftOutAndTheWalkGoesOn) {
    Bench sut(baseFileWith("/frameFormat/modulationAndCodes", json::array({31, 51, 32, 81})));
    const ArrayAnswer answer = arrayOf(sut, 0);
    EXPECT_EQ(answer.result, 0U);
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 2411}, {32, 2411}, {81, 2211}}));
    EXPECT_EQ(sut.trace(2).back(), "msg 2 OutputPowerCalculator::populateModulationPowerMap|Failed "
                                   "to calculate power capabilities for modType 32QAM");
}

TEST(ReferenceService, CodeAboveTheSelectedMaximumIsIgnoredByTheNewerFamily) {
    json file = baseFileWith("/capabilityHandler/productNumber", "unlisted");
    file["acmHandler"]["max"] = "64QAM";
    Bench sut(file);
    const ArrayAnswer answer = arrayOf(sut, 0);
    // Reference 64QAM 2411 raised to the 128QAM block: 4QAM +2 dB, 16QAM +1 dB, 64QAM 0.
    EXPECT_EQ(answer.powerMap, (PowerMap{{31, 2611}, {41, 2511}, {61, 2411}}));
    const Lines trace = sut.trace(5);
    EXPECT_EQ(trace.at(trace.size() - 2),
              "msg 5 OutputPowerCalculator::populateModulationPowerMap|ignoring QAM256QAM as it's "
              "not supported by combined HW capability");
}

// ---------------------------------------------------------------------------------------------
// Replay

TEST(ReferenceReplay, LinesOfTheDocumentedCalls) {
    json file = baseFile();
    file["requests"] = json::parse(R"([
        {"call": "setPowerCutback", "cutback": 300},
        {"call": "getMinMaxOutputPowerVsModulationArray"},
        {"call": "calculatePowerCapabilities", "modulation": "64QAM"},
        {"call": "calculateAdmodPowerCapabilities", "modulation": 512, "rsec": "2", "preset": -9},
        {"call": "findPminPmax"},
        {"call": "getUnrestrictedPmax"}])");
    ProcessState process;
    EXPECT_EQ(
        replay(file, 0, process),
        (Lines{
            R"({"call":"initialize","result":0,"registered":true})",
            R"({"call":"setPowerCutback","result":0})",
            R"({"call":"getMinMaxOutputPowerVsModulationArray","result":0,"minOutputPower":-750,)"
            R"("powerMap":[{"code":31,"maxPower":2111},{"code":41,"maxPower":2111},)"
            R"({"code":61,"maxPower":2011},{"code":81,"maxPower":1911}]})",
            R"({"call":"calculatePowerCapabilities","result":0,"minPower":-750,"maxPower":2111})",
            R"({"call":"calculateAdmodPowerCapabilities","result":32776,"minPower":-9,)"
            R"("maxPower":-9})",
            R"({"call":"findPminPmax","result":0,"pmin":-750,"pmax":2811})",
            R"({"call":"getUnrestrictedPmax","result":0,"pmax":2411})"}));
}

TEST(ReferenceReplay, TraceRecordsHaveTheirKeysInOrder) {
    json file = baseFile();
    file["requests"] = json::parse(R"([{"call": "patch", "file": {}},
                                       {"call": "setTemperature", "temperature": 5}])");
    ProcessState process;
    const Lines lines = replay(file, 5, process);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines.at(0).substr(0, 230),
              (R"({"call":"initialize","result":0,"registered":true,"trace":[{"code":2080,)"
               R"("kind":"raw","file":")" +
               capabilityFile +
               R"(","function":"initialize","text":"m_dpdVersion = 1, m_market = 0      code: )"
               R"(0x820\n"},)")
                  .substr(0, 230));
    EXPECT_EQ(lines.at(1), R"({"call":"patch","result":0,"trace":[]})");
    EXPECT_EQ(lines.at(2), R"({"call":"setTemperature","result":0,"trace":[{"level":5,)"
                           R"("kind":"msg","file":")" +
                               serviceFile +
                               R"(","function":"setTemperature","text":"New temperature = 5"}]})");
}

TEST(ReferenceReplay, TablesStayUntilTheServiceStartsAgain) {
    json file = baseFile();
    file["requests"] = json::parse(R"([
        {"call": "patch", "file": {"capabilityHandler": {
            "pmaxDpd1Etsi": [["4QAM", 1000]], "minOutputPower": -2000}}},
        {"call": "findPminPmax"},
        {"call": "initialize"},
        {"call": "findPminPmax"},
        {"call": "patch", "file": {"capabilityHandler": {
            "pmaxDpd1Etsi": {"result": 32768}, "minOutputPower": {"result": 40000}}}},
        {"call": "initialize"},
        {"call": "findPminPmax"}])");
    const std::vector<json> lines = replayed(file, 0);
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines.at(2).at("pmax"), 2811);
    EXPECT_EQ(lines.at(2).at("pmin"), -750);
    EXPECT_EQ(lines.at(4).at("pmax"), 1000);
    EXPECT_EQ(lines.at(4).at("pmin"), -1750);
    // A second start that fails leaves the service registered and the old tables in use.
    EXPECT_EQ(lines.at(6).at("result"), 32768);
    EXPECT_EQ(lines.at(6).at("registered"), true);
    EXPECT_EQ(lines.at(7).at("pmax"), 1000);
    EXPECT_EQ(lines.at(7).at("pmin"), -1750);
}

TEST(ReferenceReplay, ProductNumberMayChangeBetweenTwoCalls) {
    json file = baseFile();
    file["requests"] = json::parse(R"([
        {"call": "calculateAdmodPowerCapabilities", "modulation": 64, "rsec": 0},
        {"call": "patch", "file": {"capabilityHandler": {"productNumber": "QZT 846 003"}}},
        {"call": "calculateAdmodPowerCapabilities", "modulation": 64, "rsec": 0}])");
    const std::vector<json> lines = replayed(file, 0);
    EXPECT_EQ(lines.at(1).at("maxPower"), 2311);
    EXPECT_EQ(lines.at(3).at("maxPower"), 2411);
}

TEST(ReferenceReplay, CountOfAnOddListLeavesItsPaddingOut) {
    const json odd{{"integers", json::array({16, 900, 4})}};
    json file = baseFileWith("/capabilityHandler/pmaxDpd1Etsi", odd);
    file["requests"] = json::parse(R"([{"call": "findPminPmax"}])");
    EXPECT_EQ(replayed(file, 0).at(1).at("pmax"), 900);
    Bench sut(file);
    std::int32_t power = 5;
    EXPECT_EQ(sut.service.getMaxPower(1, 0, 4, power), 0U);
    EXPECT_EQ(power, 0);
}

// ---------------------------------------------------------------------------------------------
// Random radio files

namespace {

void expectOneForm(const json& value) {
    if (!value.is_object()) {
        return;
    }
    if (value.contains("result") || value.contains("integers")) {
        EXPECT_EQ(value.size(), 1U) << value.dump();
    }
}

void expectFormsOf(const json& file) {
    if (file.contains("capabilityHandler")) {
        for (const auto& [key, value] : file.at("capabilityHandler").items()) {
            expectOneForm(value);
        }
    }
    if (file.contains("acmHandler")) {
        const json& acm = file.at("acmHandler");
        expectOneForm(acm);
        EXPECT_EQ(acm.contains("min"), acm.contains("max"));
    }
    if (file.contains("hardwareConfigurationHandler") &&
        file.at("hardwareConfigurationHandler").contains("frameFormats")) {
        for (const json& record : file.at("hardwareConfigurationHandler").at("frameFormats")) {
            for (const auto& [key, value] : record.items()) {
                expectOneForm(value);
            }
            for (const char* key :
                 {"id", "channelSpacing", "dpdVersion", "market", "modulationAndCodes"}) {
                EXPECT_TRUE(record.contains(key)) << key;
            }
        }
    }
    if (file.contains("frameFormat")) {
        for (const char* key : {"modulation", "maxAvailableModulation", "modulationAndCodes",
                                "channelSpacing", "dpdVersion", "market"}) {
            EXPECT_TRUE(file.at("frameFormat").contains(key)) << key;
        }
    }
}

} // namespace

TEST(ReferenceRandomFile, IsTheSameForASeedAndAnotherForTheNext) {
    EXPECT_EQ(randomRadioFile(1).dump(), randomRadioFile(1).dump());
    EXPECT_NE(randomRadioFile(1).dump(), randomRadioFile(2).dump());
}

TEST(ReferenceRandomFile, StaysValidUnderItsPatchesAndPlaysThrough) {
    std::size_t started = 0;
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        const json file = randomRadioFile(seed);
        ASSERT_GE(file.at("requests").size(), 5U);
        ASSERT_LE(file.at("requests").size(), 30U);
        json now = file;
        expectFormsOf(now);
        for (const json& request : file.at("requests")) {
            if (request.at("call") == "patch") {
                const json& patch = request.at("file");
                EXPECT_FALSE(patch.contains("channel") || patch.contains("requests"));
                now.merge_patch(patch);
                expectFormsOf(now);
            }
        }
        const std::vector<json> lines = replayed(file, 6);
        if (lines.at(0).at("result") == 0) {
            ++started;
            EXPECT_EQ(lines.size(), 1 + file.at("requests").size());
        } else {
            EXPECT_EQ(lines.size(), 1U);
        }
    }
    EXPECT_GT(started, 270U);
}

} // namespace reference
