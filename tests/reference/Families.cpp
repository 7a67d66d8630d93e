#include "Families.h"

#include "Capability.h"

#include <optional>

namespace reference {

namespace {

std::string sourceFileOf(Family family) {
    switch (family) {
    case Family::Kam:
        return "Control/OutputPowerCalculator/private/CalculatorKam";
    case Family::KamV2:
        return "Control/OutputPowerCalculator/private/CalculatorKamV2";
    case Family::KamV3:
        return "Control/OutputPowerCalculator/private/CalculatorKamV3";
    case Family::Vo4:
        return "Control/OutputPowerCalculator/private/CalculatorVo4";
    case Family::Vo5:
        return "Control/OutputPowerCalculator/private/CalculatorVo5";
    }
    return "";
}

std::int32_t lesser(std::int32_t left, std::int32_t right) {
    return left < right ? left : right;
}

// Rows of whole dB that hold for each of the listed RSEC values.
struct Row {
    std::vector<std::int32_t> rsecs;
    std::vector<std::int32_t> wholeDb;
};

std::optional<std::int32_t> findInRows(const std::vector<Row>& rows,
                                       const std::vector<std::int32_t>& columns, std::int32_t rsec,
                                       std::int32_t modulation) {
    for (const Row& row : rows) {
        for (const std::int32_t rowRsec : row.rsecs) {
            if (rowRsec != rsec) {
                continue;
            }
            for (std::size_t column = 0; column < row.wholeDb.size(); ++column) {
                if (columns.at(column) == modulation) {
                    return 100 * row.wholeDb.at(column);
                }
            }
        }
    }
    return std::nullopt;
}

const std::vector<std::int32_t> rsecsFrom5b = {3, 6, 5, 4, 7, 8, 9};

// ---------------------------------------------------------------------------------------------
// First and second outdoor family

const std::vector<std::int32_t> outdoorColumns = {2,   4,    16,   32,   64,   128,  256,
                                                  512, 1024, 2048, 4096, 8192, 16384};

// clang-format off
const std::vector<Row> kamRows = {
    //               BPSK  4 16 32 64 128 256 512 1024 2048 4096 8192 16384
    {{0},           {  3,  3, 2, 2, 1,  1,  0,  0,  -1,  -2,  -2,  -3,  -3}},
    {{1},           {  2,  2, 2, 2, 1,  1,  0,  0,  -1,  -2,  -2,  -3,  -3}},
    {{2},           {  2,  2, 2, 2, 1,  1,  0,  0,  -1,  -2,  -2,  -3,  -3}},
    {rsecsFrom5b,   {  1,  1, 1, 1, 1,  1,  0,  0,  -1,  -2,  -2,  -3,  -3}},
};

const std::vector<Row> kamV2Rows = {
    //               BPSK  4 16 32 64 128 256 512 1024 2048 4096 8192 16384
    {{0},           {  6,  6, 4, 2, 1,  1,  0,  0,  -1,  -1,  -1,  -1,  -1}},
    {{1},           {  4,  4, 4, 2, 1,  1,  0,  0,  -1,  -1,  -1,  -1,  -1}},
    {{2},           {  2,  2, 2, 2, 1,  1,  0,  0,  -1,  -1,  -1,  -1,  -1}},
    {rsecsFrom5b,   {  1,  1, 1, 1, 1,  1,  0,  0,  -1,  -1,  -1,  -1,  -1}},
};
// clang-format on

PowerAnswer outdoorMaxPower(Family family, const CalculationInput& data,
                            std::int32_t maxPowerOnEntry) {
    const std::string file = sourceFileOf(family);
    const std::string function = "getMaxPower";
    const std::vector<Row>& rows = family == Family::Kam ? kamRows : kamV2Rows;
    PowerAnswer answer{0, maxPowerOnEntry, {}};

    const auto refOffset = findInRows(rows, outdoorColumns, data.rsec, data.refMax);
    std::int32_t refPower = 0;
    if (refOffset.has_value()) {
        refPower = wrapSubtract(data.pmaxRefMax, *refOffset);
    }

    const std::int32_t base = wrapAdd(data.csPowerCompensation, refPower);

    const auto actualOffset = findInRows(rows, outdoorColumns, data.rsec, data.actual);
    if (!actualOffset.has_value()) {
        answer.trace.push_back(
            messageRecord(1, file, function,
                          "No power offset found for rsec=" + rsecText(data.rsec) +
                              ", acm=" + modulationText(data.actual)));
        answer.code = 32776;
        return answer;
    }
    const std::int32_t actualPower = wrapAdd(base, *actualOffset);

    const auto minOffset = findInRows(rows, outdoorColumns, data.rsec, data.selectedMin);

    std::string parameters = number(data.pmaxActual) + ",";
    if (minOffset.has_value()) {
        parameters += number(wrapAdd(base, *minOffset)) + ",";
    }
    parameters += number(actualPower) + "," + number(data.pmaxSelectedMin);
    answer.trace.push_back(
        messageRecord(5, file, function, "getMaxPower std::min parameters: " + parameters));

    std::int32_t least = data.pmaxActual;
    if (minOffset.has_value()) {
        least = lesser(wrapAdd(base, *minOffset), least);
    }
    least = lesser(least, actualPower);
    least = lesser(least, data.pmaxSelectedMin);
    answer.maxPower = least;

    answer.trace.push_back(
        messageRecord(5, file, function,
                      "getMaxPower Max power for modulation " + modulationText(data.actual) +
                          ", rsec " + number(data.rsec) + " and max modulation " +
                          number(data.pmaxRefMax) + " = " + number(answer.maxPower)));
    return answer;
}

// ---------------------------------------------------------------------------------------------
// Third outdoor family

PowerAnswer thirdOutdoorMaxPower(const CalculationInput& data, std::int32_t maxPowerOnEntry) {
    const std::string file = sourceFileOf(Family::KamV3);
    const std::string function = "getMaxPower";
    PowerAnswer answer{0, maxPowerOnEntry, {}};

    answer.trace.push_back(enterRecord(file, function, ""));

    const std::int32_t uncompensated = wrapSubtract(data.pmaxActual, data.csPowerCompensation);
    answer.trace.push_back(
        messageRecord(6, file, function,
                      "uncompensated Pmax for modulation: " + modulationText(data.actual) + " = " +
                          number(uncompensated)));

    std::int32_t capModulation = 0;
    std::string capName;
    switch (data.rsec) {
    case 0:
        answer.maxPower = uncompensated;
        break;
    case 1:
        capModulation = 16;
        capName = "tmuMaxPowerFor16Qam";
        break;
    case 2:
        capModulation = 32;
        capName = "tmuMaxPowerFor32Qam";
        break;
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
        capModulation = 64;
        capName = "tmuMaxPowerFor64Qam";
        break;
    default:
        // The power on entry stays and is compensated below like any other.
        answer.trace.push_back(messageRecord(1, file, function, "getMaxPowerNo matching RSEC"));
        break;
    }
    if (capModulation != 0) {
        std::int32_t cap = 0;
        powerInTable(data.pmaxTable, data.pmaxCount, capModulation, cap, answer.trace);
        answer.maxPower = lesser(cap, uncompensated);
        answer.trace.push_back(messageRecord(6, file, function,
                                             "min() of uncompensated Pmax and " + capName + " = " +
                                                 number(answer.maxPower) + " will be used"));
    }

    answer.maxPower = wrapAdd(answer.maxPower, data.csPowerCompensation);

    answer.trace.push_back(
        messageRecord(5, file, function,
                      "getMaxPower Calculated max power = " + number(answer.maxPower) + " for " +
                          modulationText(data.actual) + " with rsec " + rsecText(data.rsec) +
                          " and power cutback: " + number(data.csPowerCompensation)));
    return answer;
}

// ---------------------------------------------------------------------------------------------
// The booster steps of the two radio-unit families

// clang-format off
const std::vector<std::int32_t> vo4Columns = {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096};
const std::vector<std::int32_t> vo5Columns = {4, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096,
                                              8192, 16384};

const std::vector<std::int32_t> everyRsec = {0, 1, 2, 3, 6, 5, 4, 7, 8, 9};

//                                               4 16 32 64 128 256 512 1024 2048 4096 8192 16384
const std::vector<Row> vo4BoosterRows = {
    {everyRsec,                                { 7, 7, 6, 5,  5,  5,  6,   7,   0,   0}}};
const std::vector<Row> vo5BoosterRows = {
    {everyRsec,                                { 7, 7, 6, 5,  5,  5,  6,   7,   0,   0,   0,    0}}};

// Here the row key is the booster band.
const std::vector<Row> vo4BandRows = {
    {{0},                                      { 2, 2, 2, 2,  2,  2,  2,   2,   0,   0}},
    {{1},                                      { 0, 0, 0, 0,  0,  0,  0,   0,   0,   0}}};
const std::vector<Row> vo5BandRows = {
    {{0},                                      { 2, 2, 2, 2,  2,  2,  2,   2,   0,   0,   0,    0}},
    {{1},                                      { 0, 0, 0, 0,  0,  0,  0,   0,   0,   0,   0,    0}}};
// clang-format on

void applyBooster(Family family, const CalculationInput& data, const Booster& booster,
                  PowerAnswer& answer) {
    const std::string file = sourceFileOf(family);
    const std::string function = "getMaxPower";
    const bool older = family == Family::Vo4;
    const std::string key = " offset found for ref acm=" + modulationText(data.refMax) +
                            ", rsec=" + rsecText(data.rsec) +
                            ", acm=" + modulationText(data.actual);

    const auto adjustment = older ? findInRows(vo4BoosterRows, vo4Columns, data.rsec, data.actual)
                                  : findInRows(vo5BoosterRows, vo5Columns, data.rsec, data.actual);
    if (!adjustment.has_value()) {
        answer.trace.push_back(messageRecord(1, file, function, "No boosted power" + key));
        answer.code = 32770;
        return;
    }

    const std::int32_t band = booster.presence == 7 ? 1 : 0;
    const auto bandAdjustment = older ? findInRows(vo4BandRows, vo4Columns, band, data.actual)
                                      : findInRows(vo5BandRows, vo5Columns, band, data.actual);
    if (!bandAdjustment.has_value()) {
        answer.trace.push_back(messageRecord(1, file, function, "No boosted band power" + key));
        answer.code = 32770;
        return;
    }

    answer.trace.push_back(
        messageRecord(6, file, function, "boosterPowerAdjustments: " + number(*adjustment)));
    answer.maxPower = wrapAdd(answer.maxPower, *adjustment);
    answer.trace.push_back(
        messageRecord(6, file, function, "maxPower (boosted.1): " + number(answer.maxPower)));

    answer.trace.push_back(messageRecord(
        6, file, function, "boosterBandPowerAdjustments: " + number(*bandAdjustment)));
    answer.maxPower = wrapAdd(answer.maxPower, *bandAdjustment);
    answer.trace.push_back(
        messageRecord(6, file, function, "maxPower (boosted.2): " + number(answer.maxPower)));

    answer.maxPower = lesser(wrapSubtract(answer.maxPower, booster.gain), booster.maxInputPower);
    answer.trace.push_back(
        messageRecord(6, file, function, "maxPower (boosted.3): " + number(answer.maxPower)));

    answer.maxPower = lesser(answer.maxPower, data.pmaxActual);
    answer.trace.push_back(
        messageRecord(6, file, function, "maxPower (boosted.4): " + number(answer.maxPower)));
}

// ---------------------------------------------------------------------------------------------
// Older radio-unit family

// clang-format off
const std::vector<Row> vo4Rows256 = {
    //               4 16 32 64 128 256 512 1024 2048 4096
    {{0},          { 3, 2, 2, 1,  1,  0, -1,  -1,  -2,  -2}},
    {{1},          { 2, 2, 2, 1,  1,  0, -1,  -1,  -2,  -2}},
    {{2},          { 2, 2, 2, 1,  1,  0, -1,  -1,  -2,  -2}},
    {rsecsFrom5b,  { 1, 1, 1, 1,  1,  0, -1,  -1,  -2,  -2}},
};
// clang-format on

PowerAnswer olderRadioUnitMaxPower(const CalculationInput& data, std::int32_t maxPowerOnEntry,
                                   const Booster& booster) {
    const std::string file = sourceFileOf(Family::Vo4);
    const std::string function = "getMaxPower";
    const std::string ref = modulationText(data.refMax);
    const std::string actual = modulationText(data.actual);
    PowerAnswer answer{0, maxPowerOnEntry, {}};

    answer.trace.push_back(messageRecord(
        6, file, function,
        "data.refMaxModulation=" + ref + ", data.actualModulation=" + actual + ", data.rsec=" +
            number(data.rsec) + ", data.pmaxActualModulation=" + number(data.pmaxActual) +
            ", data.pmaxRefMaxModulation=" + number(data.pmaxRefMax) +
            ", boosterBand=" + number(booster.presence)));

    std::optional<std::int32_t> offset;
    if (data.refMax == 256) {
        offset = findInRows(vo4Rows256, vo4Columns, data.rsec, data.actual);
    }
    if (!offset.has_value()) {
        answer.trace.push_back(messageRecord(1, file, function,
                                             "No power offset found for ref acm=" + ref +
                                                 ", rsec=" + rsecText(data.rsec) +
                                                 ", acm=" + actual));
        answer.code = 32770;
        return answer;
    }

    if (booster.presence != 0 && data.actual > booster.maxModulation) {
        answer.trace.push_back(messageRecord(5, file, function,
                                             actual + " is higher than booster max ACM (" +
                                                 modulationText(booster.maxModulation) + ")"));
        answer.code = 2;
        return answer;
    }

    const std::int32_t adjusted = wrapAdd(data.pmaxRefMax, *offset);
    answer.maxPower = lesser(adjusted, data.pmaxActual);

    answer.trace.push_back(
        messageRecord(6, file, function, "Static power for " + actual + " = " + number(adjusted)));
    answer.trace.push_back(messageRecord(6, file, function,
                                         "ACM adjusted power = (" + number(data.pmaxRefMax) +
                                             " + " + number(*offset) + ") = " + number(adjusted)));
    answer.trace.push_back(messageRecord(5, file, function,
                                         "Max power = " + number(answer.maxPower) + " for " +
                                             actual + ", RSEC-" + rsecText(data.rsec) +
                                             ", using ref acm " + ref));

    if (booster.presence == 0) {
        return answer;
    }
    applyBooster(Family::Vo4, data, booster, answer);
    return answer;
}

// ---------------------------------------------------------------------------------------------
// Newer radio-unit family

struct ReferenceBlock {
    std::int32_t reference;
    std::vector<Row> rows;
};

// clang-format off
const std::vector<std::int32_t> rsecs1And2 = {1, 2};

const std::vector<ReferenceBlock> vo5Blocks = {
    //                           4 16 32 64 128 256 512 1024 2048 4096 8192 16384
    {128,   {{{0},             { 2, 1, 1, 0,  0}},
             {rsecs1And2,      { 1, 1, 1, 0,  0}},
             {rsecsFrom5b,     { 0, 0, 0, 0,  0}}}},
    {256,   {{{0},             { 3, 2, 2, 1,  1,  0}},
             {rsecs1And2,      { 2, 2, 2, 1,  1,  0}},
             {rsecsFrom5b,     { 1, 1, 1, 1,  1,  0}}}},
    {512,   {{{0},             { 3, 2, 2, 1,  1,  0,  0}},
             {rsecs1And2,      { 2, 2, 2, 1,  1,  0,  0}},
             {rsecsFrom5b,     { 1, 1, 1, 1,  1,  0,  0}}}},
    {1024,  {{{0},             { 4, 3, 3, 2,  2,  1,  0,   0}},
             {rsecs1And2,      { 3, 3, 3, 2,  2,  1,  0,   0}},
             {rsecsFrom5b,     { 2, 2, 2, 2,  2,  1,  0,   0}}}},
    {2048,  {{{0},             { 4, 3, 3, 2,  2,  1,  0,   0,   0}},
             {rsecs1And2,      { 3, 3, 3, 2,  2,  1,  0,   0,   0}},
             {rsecsFrom5b,     { 2, 2, 2, 2,  2,  1,  0,   0,   0}}}},
    {4096,  {{{0},             { 5, 4, 4, 3,  3,  2,  1,   1,   0,   0}},
             {rsecs1And2,      { 4, 4, 4, 3,  3,  2,  1,   1,   0,   0}},
             {rsecsFrom5b,     { 3, 3, 3, 3,  3,  2,  1,   1,   0,   0}}}},
    {8192,  {{{0},             { 5, 4, 4, 3,  3,  2,  1,   1,   0,  -1,  -1}},
             {rsecs1And2,      { 4, 4, 4, 3,  3,  2,  1,   1,   0,  -1,  -1}},
             {rsecsFrom5b,     { 3, 3, 3, 3,  3,  2,  1,   1,   0,  -1,  -1}}}},
    {16384, {{{0},             { 5, 4, 4, 3,  3,  2,  1,   1,   0,   0,  -1,   -1}},
             {rsecs1And2,      { 4, 4, 4, 3,  3,  2,  1,   1,   0,   0,  -1,   -1}},
             {rsecsFrom5b,     { 3, 3, 3, 3,  3,  2,  1,   1,   0,   0,  -1,   -1}}}},
};
// clang-format on

PowerAnswer newerRadioUnitMaxPower(const CalculationInput& data, std::int32_t maxPowerOnEntry,
                                   const Booster& booster, bool& tablesBuilt) {
    const std::string file = sourceFileOf(Family::Vo5);
    const std::string function = "getMaxPower";
    const std::string selected = modulationText(data.selectedMax);
    const std::string actual = modulationText(data.actual);
    PowerAnswer answer{0, maxPowerOnEntry, {}};

    if (!tablesBuilt) {
        tablesBuilt = true;
        answer.trace.push_back(enterRecord(file, "initialize", ""));
    }

    answer.trace.push_back(messageRecord(
        6, file, function,
        "data.selectedMaxModulation=" + selected + ", data.actualModulation=" + actual +
            ", data.rsec=" + number(data.rsec) + ", data.pmaxActualModulation=" +
            number(data.pmaxActual) + ", data.pmaxRefMaxModulation=" + number(data.pmaxRefMax) +
            ", boosterBand=" + number(booster.presence)));

    if (data.selectedMax == undefinedModulation || data.actual == undefinedModulation) {
        answer.trace.push_back(messageRecord(
            4, file, function, "getMaxPower" + actual + " type invalid, selected max " + selected));
        answer.code = 2;
        return answer;
    }

    if (data.selectedMax < data.actual) {
        answer.trace.push_back(messageRecord(
            5, file, function,
            "getMaxPower" + actual + " is higher than selected max ACM (" + selected + ")"));
        answer.code = 2;
        return answer;
    }

    if (booster.presence != 0 && data.actual > booster.maxModulation) {
        answer.trace.push_back(messageRecord(5, file, function,
                                             "getMaxPower" + actual +
                                                 " is higher than booster max ACM (" +
                                                 modulationText(booster.maxModulation) + ")"));
        answer.code = 2;
        return answer;
    }

    std::int32_t reference = data.selectedMax;
    if (reference < 128) {
        reference = 128;
    }
    std::optional<std::int32_t> offset;
    for (const ReferenceBlock& block : vo5Blocks) {
        if (block.reference == reference) {
            offset = findInRows(block.rows, vo5Columns, data.rsec, data.actual);
        }
    }
    if (!offset.has_value()) {
        answer.trace.push_back(messageRecord(
            1, file, function,
            "No power offset found for selected max acm=" + modulationText(reference) +
                ", rsec=" + rsecText(data.rsec) + ", acm=" + actual));
        answer.code = 32770;
        return answer;
    }

    const std::int32_t adjusted = wrapAdd(data.pmaxRefMax, *offset);
    answer.maxPower = lesser(adjusted, data.pmaxActual);

    answer.trace.push_back(
        messageRecord(6, file, function, "Static power for " + actual + " = " + number(adjusted)));
    answer.trace.push_back(messageRecord(6, file, function,
                                         "ACM adjusted power for selected max " + selected + "(" +
                                             number(data.pmaxRefMax) + " + " + number(*offset) +
                                             ") = " + number(adjusted)));
    answer.trace.push_back(messageRecord(5, file, function,
                                         "Max power = " + number(answer.maxPower) + " for " +
                                             actual + ", RSEC-" + rsecText(data.rsec) +
                                             ", using selected max " + selected));

    if (booster.presence == 0) {
        return answer;
    }
    applyBooster(Family::Vo5, data, booster, answer);
    return answer;
}

} // namespace

// ---------------------------------------------------------------------------------------------

ModulationAnswer getMaxRefModulation(Family family, std::int32_t availableMax,
                                     std::int32_t selectedMax) {
    if (family == Family::Vo4) {
        return {256, {}};
    }
    if (family == Family::Vo5) {
        const std::string file = sourceFileOf(family);
        const std::string function = "getMaxRefModulation";
        ModulationAnswer answer;
        answer.trace.push_back(enterRecord(file, function,
                                           "availableMaxAcm=" + modulationText(availableMax) +
                                               ", selectedMaxAcm=" + modulationText(selectedMax)));
        answer.modulation = selectedMax >= 4096 ? 4096 : selectedMax;
        answer.trace.push_back(
            messageRecord(5, file, function,
                          "getMaxRefModulationmax power = " + modulationText(answer.modulation)));
        return answer;
    }
    return {availableMax, {}};
}

PowerAnswer getMaxPower(Family family, const CalculationInput& data, std::int32_t maxPowerOnEntry,
                        const Booster& booster, bool& vo5TablesBuilt) {
    switch (family) {
    case Family::Kam:
    case Family::KamV2:
        return outdoorMaxPower(family, data, maxPowerOnEntry);
    case Family::KamV3:
        return thirdOutdoorMaxPower(data, maxPowerOnEntry);
    case Family::Vo4:
        return olderRadioUnitMaxPower(data, maxPowerOnEntry, booster);
    case Family::Vo5:
        return newerRadioUnitMaxPower(data, maxPowerOnEntry, booster, vo5TablesBuilt);
    }
    return {};
}

CompensationAnswer getCompensationForChannelSpacing(Family family, std::uint32_t channel,
                                                    std::int32_t channelSpacing,
                                                    std::int32_t compensationOnEntry,
                                                    const StoredVariables& variables) {
    CompensationAnswer answer{0, compensationOnEntry, {}};
    if (family == Family::Vo4 || family == Family::Vo5) {
        answer.compensation = 0;
        return answer;
    }

    const std::string file = sourceFileOf(family);
    const std::string function = "getCompensationForChannelSpacing";
    std::string entryText = number(channelSpacing);
    if (family == Family::KamV3) {
        entryText =
            "channel=" + std::to_string(channel) + ", channelSpacing=" + number(channelSpacing);
    }
    answer.trace.push_back(enterRecord(file, function, entryText));

    const std::string prefix = "channel." + std::to_string(channel);
    const std::string arrayName = prefix + ".tx.rf.pmax.cs.comp.v2.array";
    const auto arrayVariable = variables.find(arrayName);
    if (arrayVariable == variables.end()) {
        answer.trace.push_back(
            messageRecord(1, file, function,
                          "getCompensationForChannelSpacing Failed to get variable " + arrayName));
        answer.code = 32768;
        return answer;
    }
    const std::string sizeName = prefix + ".tx.rf.pmax.cs.comp.v2.arraysize";
    const auto sizeVariable = variables.find(sizeName);
    if (sizeVariable == variables.end()) {
        answer.trace.push_back(
            messageRecord(1, file, function,
                          "getCompensationForChannelSpacing Failed to get variable " + sizeName));
        answer.code = 32768;
        return answer;
    }

    answer.compensation = 0;
    const std::vector<std::int32_t>& elements = arrayVariable->second;
    const std::uint32_t arraySize =
        sizeVariable->second.empty() ? 0 : static_cast<std::uint32_t>(sizeVariable->second.front());
    if (elements.empty() || arraySize == 0) {
        return answer;
    }
    std::size_t index = 0;
    while (true) {
        // A last pair that lacks its second element matches nothing.
        if (index + 1 < elements.size() && elements.at(index) == channelSpacing) {
            answer.compensation = elements.at(index + 1);
            return answer;
        }
        index += 2;
        if (index >= elements.size() || index >= arraySize) {
            return answer;
        }
    }
}

} // namespace reference
