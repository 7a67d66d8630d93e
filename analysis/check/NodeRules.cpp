#include "NodeRules.h"

#include "CheckRules.h"
#include "CheckText.h"
#include "Decibels.h"
#include "LibraryProbe.h"
#include "OneLine.h"
#include "Printable.h"
#include "Suggestion.h"
#include "TextForms.h"
#include "Utf8.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace {

const FilePlace capabilityHandler{{"capabilityHandler"}};
const FilePlace variablesPlace{{"variables"}};

// Pmax tables

struct PmaxRow {
    std::size_t index;
    Modulation modulation;
    int power;
};

std::vector<PmaxRow> rowsOf(const std::vector<int>& table) {
    std::vector<PmaxRow> rows;
    for (std::size_t row = 0; 2 * row + 1 < table.size(); ++row) {
        rows.push_back({row, Modulation{table[2 * row]}, table[2 * row + 1]});
    }
    return rows;
}

/// The row that counts for each modulation, the first one.
std::map<Modulation, PmaxRow> countingRows(const std::vector<int>& table) {
    std::map<Modulation, PmaxRow> counting;
    for (const PmaxRow& row : rowsOf(table)) {
        counting.emplace(row.modulation, row);
    }
    return counting;
}

// Units

/// Figures of one kind that may be in the wrong unit.
struct Figures {
    std::string name; ///< "the rows of pmaxDpd1Etsi"
    std::string unit; ///< "dB" or "dBm"
    std::vector<std::pair<FilePlace, std::int64_t>> values;
};

/// Not zero and below 1 dB: as whole decibels such figures are usual, as hundredths they are not.
bool isSmall(std::int64_t value) {
    return value != 0 && std::abs(value) < Decibels::one;
}

/// Likewise where steps of 0.1 dB are usual as well.
bool isSmallAndOdd(std::int64_t value) {
    constexpr std::int64_t step = 10;
    return isSmall(value) && value % step != 0;
}

void addWholeDecibels(const Figures& small, FindingList& findings) {
    std::vector<std::string> list;
    list.reserve(small.values.size());
    for (const auto& [place, value] : small.values) {
        list.push_back(std::to_string(value) + " (" + Decibels::format(value) + ' ' + small.unit +
                       ')');
    }
    const std::int64_t first = small.values.front().second;
    findings.add(CheckRules::WholeDecibels, small.values.front().first,
                 small.name + (list.size() == 1 ? " looks" : " look") +
                     " like whole decibels: " + CheckText::list(list),
                 "figures are in hundredths of a " + small.unit + ": " + std::to_string(first) +
                     ' ' + small.unit + " is " + std::to_string(first * Decibels::one));
}

void checkUnits(const CheckedNode& node, FindingList& findings) {
    for (const PmaxTableName& name : pmaxTables) {
        const std::vector<int>* const table = node.pmaxTable(name);
        Figures rows{std::string("the powers of ") + name.key, "dBm", {}};
        bool areSmall = true;
        for (const PmaxRow& row : table == nullptr ? std::vector<PmaxRow>() : rowsOf(*table)) {
            rows.values.emplace_back(node.pmaxRow(name, row.index), row.power);
            areSmall = areSmall && isSmall(row.power);
        }
        // One low row is a high modulation's.
        if (areSmall && rows.values.size() > 1) {
            addWholeDecibels(rows, findings);
        }
    }
    const auto& minimum = node.answers().capabilityHandler->minOutputPower;
    const int* const power = minimum ? std::get_if<int>(&*minimum) : nullptr;
    constexpr int half = 50;
    if (power != nullptr && isSmall(*power) && *power % half != 0) {
        addWholeDecibels(
            {"the minimum output power", "dBm", {{capabilityHandler / "minOutputPower", *power}}},
            findings);
    }
    Figures offsets{"minimum-power offsets", "dB", {}};
    if (node.answers().systemPowerController) {
        std::size_t index = 0;
        for (const auto& offset : node.answers().systemPowerController->minOutputPowerOffsets) {
            if (isSmallAndOdd(offset.offset)) {
                offsets.values.emplace_back(
                    FilePlace{{"systemPowerController", "minOutputPowerOffsets"}} / index,
                    offset.offset);
            }
            ++index;
        }
    }
    if (!offsets.values.empty()) {
        addWholeDecibels(offsets, findings);
    }
}

bool isModulation(Modulation modulation) {
    const auto named = modulationTextForms().find(convertAcmEnumToString(modulation));
    return modulation != Modulation::UNDEFINED && named && *named == modulation;
}

void checkRowsAlone(const CheckedNode& node, const PmaxTableName& name,
                    const std::vector<int>& table, FindingList& findings) {
    std::map<Modulation, std::size_t> first;
    for (const PmaxRow& row : rowsOf(table)) {
        const FilePlace place = node.pmaxRow(name, row.index);
        if (!isModulation(row.modulation)) {
            findings.add(CheckRules::PmaxNoModulation, place,
                         std::string(name.key) + " has a row for " + CheckText::of(row.modulation) +
                             ", which is no modulation",
                         "name the modulation by its text, for example \"16QAM\"");
        }
        const auto [known, isNew] = first.emplace(row.modulation, row.index);
        if (!isNew) {
            findings.add(CheckRules::PmaxTwice, place,
                         std::string(name.key) + " lists " + CheckText::of(row.modulation) +
                             " twice, and the first row, row " + std::to_string(known->second) +
                             ", is the one that counts",
                         "remove one of the two");
        }
    }
}

void checkOrder(const CheckedNode& node, const PmaxTableName& name, const std::vector<int>& table,
                FindingList& findings) {
    const PmaxRow* lower = nullptr;
    const std::map<Modulation, PmaxRow> rows = countingRows(table);
    for (const auto& [modulation, row] : rows) {
        if (!isModulation(modulation)) {
            continue;
        }
        if (lower != nullptr && row.power > lower->power) {
            findings.add(
                CheckRules::PmaxRises, node.pmaxRow(name, row.index),
                std::string(name.key) + " rises with the modulation: " + CheckText::of(modulation) +
                    " may have " + Decibels::dBm(row.power) + ", " +
                    CheckText::of(lower->modulation) + " only " + Decibels::dBm(lower->power),
                "a higher modulation needs the amplifier more linear: compare both rows "
                "with the radio's data");
        }
        lower = &row;
    }
}

void checkPmaxTable(const CheckedNode& node, const PmaxTableName& name, FindingList& findings) {
    const std::vector<int>* const table = node.pmaxTable(name);
    if (table == nullptr) {
        return;
    }
    const FilePlace place = capabilityHandler / name.key;
    if (table->empty()) {
        findings.add(CheckRules::PmaxEmpty, place,
                     std::string(name.key) + " is empty, so no modulation gets a power from it",
                     "give it rows, or refuse it with {\"result\": 32768} so that the next table "
                     "answers");
    }
    if (table->size() % 2 != 0) {
        findings.add(CheckRules::PmaxBrokenRow, place / "integers" / (table->size() - 1),
                     std::string(name.key) + " ends with a modulation that has no power",
                     "add the power, or remove the modulation");
    }
    checkRowsAlone(node, name, *table, findings);
    checkOrder(node, name, *table, findings);
}

/// Predistortion is there to allow more, never less.
void checkPredistortion(const CheckedNode& node, const PmaxTableName& without,
                        const PmaxTableName& with, FindingList& findings) {
    const std::vector<int>* const dpd1 = node.pmaxTable(without);
    const std::vector<int>* const dpd2 = node.pmaxTable(with);
    if (dpd1 == nullptr || dpd2 == nullptr) {
        return;
    }
    const std::map<Modulation, PmaxRow> plain = countingRows(*dpd1);
    const std::map<Modulation, PmaxRow> predistorted = countingRows(*dpd2);
    std::size_t common = 0;
    std::size_t lower = 0;
    bool isAnyHigher = false;
    for (const auto& [modulation, row] : predistorted) {
        const auto found = plain.find(modulation);
        if (found != plain.end()) {
            ++common;
            lower += row.power < found->second.power ? 1U : 0U;
            isAnyHigher = isAnyHigher || row.power > found->second.power;
        }
    }
    if (lower > 1 && !isAnyHigher && 2 * lower > common) {
        findings.add(CheckRules::PredistortionExchanged, capabilityHandler / with.key,
                     std::string(with.key) + " allows less than " + without.key + " at " +
                         std::to_string(lower) + " of " + std::to_string(common) +
                         " modulations, and more at none",
                     "predistortion is there to allow more: exchange the two tables");
        return;
    }
    for (const auto& [modulation, row] : predistorted) {
        const auto found = plain.find(modulation);
        if (found != plain.end() && row.power < found->second.power) {
            findings.add(CheckRules::PredistortionLowers, node.pmaxRow(with, row.index),
                         std::string(with.key) + " allows " + CheckText::of(modulation) + " " +
                             Decibels::dBm(row.power) + ", less than the " +
                             Decibels::dBm(found->second.power) + " of " + without.key,
                         "the two tables may be exchanged");
            return;
        }
    }
}

// The product

/// A product number with single blanks between its words.
std::string withPlainBlanks(const std::string& number) {
    std::string plain;
    Utf8::forEachCharacter(number,
                           [&plain](std::optional<std::uint32_t> code, std::string_view bytes) {
                               const bool isBlank = code && Utf8::isBlank(*code);
                               if (!isBlank) {
                                   plain += bytes;
                               } else if (!plain.empty() && plain.back() != ' ') {
                                   plain += ' ';
                               }
                           });
    plain.resize(plain.find_last_not_of(' ') + 1);
    return plain;
}

/// A product number with every blank as a sign that shows.
std::string withVisibleBlanks(const std::string& number) {
    std::string visible;
    Utf8::forEachCharacter(number,
                           [&visible](std::optional<std::uint32_t> code, std::string_view bytes) {
                               if (code && Utf8::isBlank(*code)) {
                                   constexpr const char* digits = "0123456789abcdef";
                                   std::string hex;
                                   for (int shift = 12; shift >= 0; shift -= 4) {
                                       hex += digits[(*code >> shift) & 0xFU];
                                   }
                                   visible += "\\u" + hex;
                               } else {
                                   visible += bytes;
                               }
                           });
    return visible;
}

void checkProduct(const CapabilityHandlerAnswers& radio, FindingList& findings) {
    const FilePlace place = capabilityHandler / "productNumber";
    if (!radio.productNumber || radio.productNumber->empty()) {
        findings.add(CheckRules::NoProduct, radio.productNumber ? place : capabilityHandler,
                     "there is no product number, so the first outdoor family is taken",
                     "give the number that the radio reports, if it reports one");
        return;
    }
    const std::string& number = *radio.productNumber;
    const std::vector<std::string>& known = knownProducts();
    if (std::ranges::find(known, number) != known.end()) {
        return;
    }
    if (const std::string plain = withPlainBlanks(number); plain != number) {
        const bool isKnown = std::ranges::find(known, plain) != known.end();
        findings.add(CheckRules::HiddenBlanks, place,
                     "the product number \"" + printable(withVisibleBlanks(number)) +
                         "\" has blanks that do not show, so the newer radio-unit family is taken",
                     "write \"" + printable(plain) + "\"" +
                         (isKnown ? "" : ", if the radio does not report it so"));
        return;
    }
    const std::string taken = "the product number \"" + printable(number) +
                              "\" is not known, so the newer radio-unit family is taken";
    // More letters lie between the numbers of different products.
    constexpr std::size_t slipOfThePen = 2;
    const std::optional<std::string> near = Suggestion::nearest(number, known);
    if (near && Suggestion::lettersApart(number, *near) <= slipOfThePen) {
        findings.add(CheckRules::NearProduct, place, taken, "did you mean \"" + *near + "\"?");
    } else {
        findings.add(CheckRules::UnknownProduct, place, taken,
                     "right for a newer radio unit; the known numbers are those of the other "
                     "families");
    }
}

// The limits of the modulation

void checkWhichLimit(const CapabilityHandlerAnswers& radio, FindingList& findings) {
    const bool byProfile = radio.maxAcmLimitedByHw.value_or(false);
    const char* const asked =
        byProfile ? "maxModulationLimitedByHw" : "maxModulationWithoutLimitation";
    const char* const other =
        byProfile ? "maxModulationWithoutLimitation" : "maxModulationLimitedByHw";
    const bool hasAsked = byProfile ? radio.maxModulationLimitedByHw.has_value()
                                    : radio.maxModulationWithoutLimitation.has_value();
    const bool hasOther = byProfile ? radio.maxModulationWithoutLimitation.has_value()
                                    : radio.maxModulationLimitedByHw.has_value();
    const std::string flag = std::string("maxAcmLimitedByHw is ") + (byProfile ? "true" : "false");
    if (hasOther && !hasAsked) {
        findings.add(CheckRules::LimitNotAsked, capabilityHandler / other,
                     std::string(other) + " is never asked for, because " + flag +
                         ", and the radio has no limit",
                     byProfile ? "set maxAcmLimitedByHw to false, or give " + std::string(asked)
                               : "set maxAcmLimitedByHw to true, or give " + std::string(asked));
    } else if (byProfile && !hasAsked) {
        findings.add(CheckRules::LimitMissing, capabilityHandler / "maxAcmLimitedByHw",
                     flag + " but " + asked + " is absent, so the radio has no limit",
                     "give " + std::string(asked) + ", or leave maxAcmLimitedByHw out");
    }
}

std::string profileWords(const CheckedFrameFormat& frameFormat, short index) {
    const auto& profiles = frameFormat.performanceProfiles;
    if (index < 0 || static_cast<std::size_t>(index) >= profiles.size()) {
        return "has no profile at performanceProfileIndex " + std::to_string(index);
    }
    return "has profile " + std::to_string(profiles[static_cast<std::size_t>(index)]) +
           ", which maxModulationLimitedByHw does not list";
}

/// A frame format for which the radio's answer by profile or by market has no entry.
void checkLimitOf(const CheckedFrameFormat& frameFormat, const CapabilityHandlerAnswers& radio,
                  FindingList& findings) {
    const SimulatedCapabilityHandler handler(radio);
    if (handler.isMaxAcmLimitedByHw()) {
        const short index = handler.getPerformanceProfileIndex();
        const bool isByProfile =
            radio.maxModulationLimitedByHw &&
            std::holds_alternative<std::map<short, Modulation>>(*radio.maxModulationLimitedByHw);
        if (isByProfile && handler.getMaxModulationLimitedByHw(frameFormat.performanceProfiles,
                                                               index) == Modulation::UNDEFINED) {
            findings.add(CheckRules::ProfileWithoutLimit, frameFormat.place,
                         frameFormat.name() + " " + profileWords(frameFormat, index) +
                             ", so the radio does not limit its modulation",
                         "compare the profile list with performanceProfileIndex and "
                         "maxModulationLimitedByHw");
        }
        return;
    }
    const bool isByMarket = radio.maxModulationWithoutLimitation &&
                            std::holds_alternative<std::map<EFrameFormatMarket, Modulation>>(
                                *radio.maxModulationWithoutLimitation);
    if (isByMarket && frameFormat.market &&
        handler.getMaxModulationWithoutLimitation(*frameFormat.market) == Modulation::UNDEFINED) {
        findings.add(CheckRules::MarketWithoutLimit, frameFormat.place / "market",
                     "maxModulationWithoutLimitation does not list " +
                         CheckText::of(*frameFormat.market) + ", the market of " +
                         frameFormat.name() + ", so the radio does not limit its modulation",
                     "list the market, if the radio is sold for it");
    }
}

// Frame formats

void checkCodes(const CheckedFrameFormat& frameFormat, FindingList& findings) {
    std::set<std::int32_t> seen;
    for (std::size_t index = 0; frameFormat.codes && index < frameFormat.codes->size(); ++index) {
        const ModulationAndCoding& code = (*frameFormat.codes)[index];
        if (!seen.insert(code.code).second) {
            findings.add(CheckRules::CodeTwice, frameFormat.place / "modulationAndCodes" / index,
                         frameFormat.name() + " lists " + CheckText::of(code) + " twice",
                         "remove one of the two; another code may have been meant");
        }
    }
}

bool isUsualSpacing(std::int32_t spacing) {
    static constexpr std::int32_t usual[] = {3,  4,  5,  7,  10, 14, 20, 27, 28,
                                             29, 30, 40, 50, 56, 60, 80, 112};
    return std::find(std::begin(usual), std::end(usual), spacing) != std::end(usual);
}

void checkSpacing(const CheckedFrameFormat& frameFormat, FindingList& findings) {
    if (!frameFormat.channelSpacing) {
        return;
    }
    if (!isUsualSpacing(static_cast<std::int32_t>(*frameFormat.channelSpacing))) {
        findings.add(CheckRules::OddSpacing, frameFormat.place / "channelSpacing",
                     CheckText::of(*frameFormat.channelSpacing) + " is no usual channel spacing",
                     "spacings are in whole MHz: 3, 4, 5, 7, 10, 14, 20, 27, 28, 29, 30, 40, 50, "
                     "56, 60, 80, 112");
    }
}

void checkConfigured(const CheckedNode& node, FindingList& findings) {
    const CheckedFrameFormat* const configured = node.configured();
    const std::optional<std::size_t> highestCode =
        configured == nullptr ? std::nullopt : configured->highestCode();
    if (!highestCode) {
        return;
    }
    const FrameFormatAnswers& answers = *node.answers().frameFormat;
    const Modulation highest = convertCodeToModulation((*configured->codes)[*highestCode]);
    if (highest != Modulation::UNDEFINED && highest != answers.maxAvailableModulation) {
        findings.add(CheckRules::MaxModulationDiffers, configured->place / "maxAvailableModulation",
                     "the highest code is for " + CheckText::of(highest) +
                         ", but maxAvailableModulation is " +
                         CheckText::of(answers.maxAvailableModulation) +
                         ": the array query goes by the first, the other queries by the second",
                     "make the two agree");
    }
    if (answers.modulation != Modulation::UNDEFINED && !configured->carries(answers.modulation)) {
        findings.add(CheckRules::ModulationWithoutCode, configured->place / "modulation",
                     "no code of the configured frame format is for its modulation, " +
                         CheckText::of(answers.modulation),
                     "take the modulation of one of modulationAndCodes");
    }
}

/// How two frame formats differ, in words.
std::vector<std::string> differencesOf(const CheckedFrameFormat& configured,
                                       const CheckedFrameFormat& record) {
    std::vector<std::string> differences;
    if (record.dpdVersion != configured.dpdVersion) {
        differences.push_back(CheckText::of(configured.dpdVersion) + " in place of " +
                              CheckText::of(record.dpdVersion));
    }
    if (record.market && configured.market && record.market != configured.market) {
        differences.push_back("market " + CheckText::of(*configured.market) + " in place of " +
                              CheckText::of(*record.market));
    }
    if (record.codes && configured.codes && record.codes != configured.codes) {
        differences.emplace_back("other modulation-and-codes");
    }
    return differences;
}

/// The configured frame format is one of those of the unit: a record of the same spacing that is
/// like it but for one thing is most likely its own.
void checkOwnRecord(const CheckedNode& node, FindingList& findings) {
    const CheckedFrameFormat* const configured = node.configured();
    const CheckedFrameFormat* near = nullptr;
    std::string difference;
    for (const CheckedFrameFormat& record : node.frameFormats()) {
        if (configured == nullptr || record.isConfigured() ||
            record.channelSpacing != configured->channelSpacing) {
            continue;
        }
        const std::vector<std::string> differences = differencesOf(*configured, record);
        if (differences.empty()) {
            return;
        }
        if (differences.size() == 1 && near == nullptr) {
            near = &record;
            difference = differences.front();
        }
    }
    if (near != nullptr) {
        findings.add(CheckRules::UnlikeItsRecord, configured->place,
                     "the configured frame format is " + near->name() +
                         " but for one thing: " + difference,
                     "make the two agree, if they are the same");
    }
}

void checkIds(const CheckedNode& node, FindingList& findings) {
    if (!node.answers().hardwareConfigurationHandler) {
        return;
    }
    const FilePlace list{{"hardwareConfigurationHandler", "frameFormats"}};
    std::map<long, std::size_t> first;
    std::size_t index = 0;
    for (const auto& record : node.answers().hardwareConfigurationHandler->frameFormats) {
        const FilePlace place = list / index / "id";
        const auto [known, isNew] = first.emplace(record.id, index);
        if (record.id < 1) {
            findings.add(CheckRules::IdOutOfReach, place,
                         "a frame format with id " + std::to_string(record.id) +
                             " cannot be asked for: below 1 a query means the configured one",
                         "give it an id of 1 or more");
        } else if (!isNew) {
            findings.add(CheckRules::IdTwice, place,
                         "id " + std::to_string(record.id) + " is also that of record " +
                             std::to_string(known->second) + ", which answers for both",
                         "give this one another id");
        }
        ++index;
    }
}

// The link

void checkSelection(const CheckedNode& node, FindingList& findings) {
    if (!node.answers().acmHandler) {
        return;
    }
    const FilePlace place{{"acmHandler"}};
    const auto& selection = node.answers().acmHandler->selection;
    const AcmHandlerAnswers::Range* const range =
        selection ? std::get_if<AcmHandlerAnswers::Range>(&*selection) : nullptr;
    constexpr std::int32_t none = ModulationAndCoding::UNDEFINED;
    if (range == nullptr || (range->min.code == none && range->max.code == none)) {
        findings.add(CheckRules::NoSelection, place,
                     "no range is selected, so the queries go by the frame format",
                     "give min and max, if the operator has selected any");
        return;
    }
    if (range->min.code != none && range->max.code != none && range->min.code > range->max.code) {
        findings.add(CheckRules::SelectionReversed, place / "min",
                     "the selected minimum, " + CheckText::of(range->min) +
                         ", is above the selected maximum, " + CheckText::of(range->max),
                     "exchange the two");
    }
    const CheckedFrameFormat* const configured = node.configured();
    for (const auto& [key, code] : {std::pair{"min", range->min}, std::pair{"max", range->max}}) {
        if (configured != nullptr && code.code != none && !configured->carries(code)) {
            findings.add(CheckRules::SelectionNotCarried, place / key,
                         "the configured frame format has no code " + CheckText::of(code) +
                             ", the selected " + key + "imum",
                         "select one of its modulationAndCodes");
        }
    }
}

void checkOffsets(const CheckedNode& node, FindingList& findings) {
    if (!node.answers().systemPowerController) {
        return;
    }
    const FilePlace list{{"systemPowerController", "minOutputPowerOffsets"}};
    std::set<EChannelSpacingType> seen;
    std::size_t index = 0;
    for (const auto& offset : node.answers().systemPowerController->minOutputPowerOffsets) {
        if (!seen.insert(offset.channelSpacing).second) {
            findings.add(CheckRules::OffsetTwice, list / index,
                         CheckText::of(offset.channelSpacing) +
                             " has two minimum-power offsets, and the first one counts",
                         "remove one of the two");
        }
        ++index;
    }
}

// Variables

void checkArraySize(const CheckedNode& node, FindingList& findings) {
    const auto* const array = node.variable(node.calibrationName());
    const auto* const size = node.variable(node.calibrationSizeName());
    if (array == nullptr || size == nullptr) {
        return;
    }
    const std::size_t stated =
        size->empty() ? 0 : static_cast<std::size_t>(static_cast<std::uint32_t>(size->front()));
    if (stated == array->size()) {
        return;
    }
    findings.add(CheckRules::ArraySizeDiffers, variablesPlace / node.calibrationSizeName(),
                 "the arraysize is " + std::to_string(stated) + ", but the array has " +
                     std::to_string(array->size()) + " integers, and only " +
                     std::to_string(std::min(stated, array->size())) + " of them count",
                 "set it to " + std::to_string(array->size()));
}

/// Pairs of which the second number is a channel spacing and the first one is none.
/// @return whether there are any.
bool findReversedPairs(const std::vector<std::int32_t>& array, const FilePlace& place,
                       FindingList& findings) {
    std::vector<std::string> reversed;
    FilePlace first;
    for (std::size_t index = 0; index + 1 < array.size(); index += 2) {
        if (!isUsualSpacing(array[index]) && isUsualSpacing(array[index + 1])) {
            first = reversed.empty() ? place / index : first;
            reversed.push_back(std::to_string(array[index]) + ", " +
                               std::to_string(array[index + 1]));
        }
    }
    if (!reversed.empty()) {
        const std::size_t comma = reversed.front().find(',');
        findings.add(
            CheckRules::PairsReversed, first,
            counted(reversed.size(), "calibration pair") +
                (reversed.size() == 1 ? " names" : " name") +
                " the compensation before the channel spacing: " + CheckText::list(reversed),
            "write the spacing first: " + reversed.front().substr(comma + 2) + ", " +
                reversed.front().substr(0, comma));
    }
    return !reversed.empty();
}

void checkPairs(const CheckedNode& node, FindingList& findings) {
    const auto* const array = node.variable(node.calibrationName());
    if (array == nullptr) {
        return;
    }
    const FilePlace place = variablesPlace / node.calibrationName();
    Figures small{"calibrated compensations", "dB", {}};
    for (std::size_t index = 1; index < array->size(); index += 2) {
        if (isSmallAndOdd((*array)[index])) {
            small.values.emplace_back(place / index, (*array)[index]);
        }
    }
    if (!small.values.empty()) {
        addWholeDecibels(small, findings);
    }
    if (array->size() % 2 != 0) {
        findings.add(CheckRules::HalfPair, place / (array->size() - 1),
                     "the calibration ends with a channel spacing that has no compensation",
                     "add the compensation, or remove the spacing");
    }
    std::set<std::int32_t> seen;
    std::vector<std::string> unused;
    FilePlace firstUnused;
    for (std::size_t index = 0; index < array->size(); index += 2) {
        const EChannelSpacingType spacing{(*array)[index]};
        const bool isUsed = std::ranges::any_of(node.frameFormats(),
                                                [spacing](const CheckedFrameFormat& frameFormat) {
                                                    return frameFormat.channelSpacing == spacing;
                                                });
        if (!seen.insert((*array)[index]).second) {
            findings.add(CheckRules::CalibratedTwice, place / index,
                         CheckText::of(spacing) + " is calibrated twice, and the first pair counts",
                         "remove one of the two");
        } else if (!isUsed) {
            firstUnused = unused.empty() ? place / index : firstUnused;
            unused.push_back(CheckText::of(spacing));
        }
    }
    if (!unused.empty()) {
        findings.add(CheckRules::CalibrationUnused, firstUnused,
                     "no frame format has a channel spacing of " + CheckText::list(unused) +
                         ", which the calibration lists",
                     "nothing to do if the radio is calibrated for more than it is used with");
    }
}

void checkCalibrated(const CheckedNode& node, FindingList& findings) {
    const auto* const array = node.variable(node.calibrationName());
    if (array == nullptr || array->empty()) {
        return;
    }
    std::set<EChannelSpacingType> calibrated;
    for (std::size_t index = 0; index < array->size(); index += 2) {
        calibrated.insert(EChannelSpacingType{(*array)[index]});
    }
    for (const CheckedFrameFormat& frameFormat : node.frameFormats()) {
        if (frameFormat.channelSpacing && !calibrated.contains(*frameFormat.channelSpacing)) {
            findings.add(CheckRules::NotCalibrated, frameFormat.place / "channelSpacing",
                         CheckText::of(*frameFormat.channelSpacing) +
                             " is not calibrated, so it gets no compensation",
                         "add a pair for it to " + node.calibrationName());
        }
    }
}

void checkNames(const CheckedNode& node, bool areRead, FindingList& findings) {
    const std::vector<std::string> read{node.calibrationName(), node.calibrationSizeName()};
    for (const auto& [name, elements] : *node.answers().variables) {
        if (findings.isFull(CheckRules::VariableUnread) ||
            findings.isFull(CheckRules::NearVariable)) {
            return; // a file can hold a great many of them
        }
        const FilePlace place = variablesPlace / name;
        const bool isKnown = std::ranges::find(read, name) != read.end();
        if (isKnown && !areRead) {
            findings.add(CheckRules::VariableUnread, place,
                         "the radio's family reads no calibration, and so not " + inQuotes(name),
                         "nothing to do, or compare the product number");
        } else if (!isKnown) {
            const std::optional<std::string> near = Suggestion::nearest(name, read);
            const bool isMissing = near && node.variable(*near) == nullptr;
            const std::string message = "nothing reads the variable \"" + printable(name) + "\"";
            // Beside the variable that is read, one of a like name is another channel's.
            if (areRead && isMissing) {
                findings.add(CheckRules::NearVariable, place, message,
                             "did you mean \"" + *near + "\"?");
            } else {
                findings.add(CheckRules::VariableUnread, place, message, "nothing to do");
            }
        }
    }
}

void checkCapabilityHandler(const CheckedNode& node, FindingList& findings) {
    if (!node.answers().capabilityHandler) {
        return;
    }
    for (const PmaxTableName& name : pmaxTables) {
        checkPmaxTable(node, name, findings);
    }
    for (const PmaxTableName& without : pmaxTables) {
        for (const PmaxTableName& with : pmaxTables) {
            if (without.dpdVersion < with.dpdVersion &&
                std::string_view(without.market) == with.market) {
                checkPredistortion(node, without, with, findings);
            }
        }
    }
    checkUnits(node, findings);
    const CapabilityHandlerAnswers& radio = *node.answers().capabilityHandler;
    checkProduct(radio, findings);
    checkWhichLimit(radio, findings);
    for (const CheckedFrameFormat& frameFormat : node.frameFormats()) {
        checkLimitOf(frameFormat, radio, findings);
    }
}

void checkFrameFormats(const CheckedNode& node, FindingList& findings) {
    for (const CheckedFrameFormat& frameFormat : node.frameFormats()) {
        checkCodes(frameFormat, findings);
        checkSpacing(frameFormat, findings);
    }
    checkConfigured(node, findings);
    checkOwnRecord(node, findings);
    checkIds(node, findings);
}

void checkLink(const CheckedNode& node, FindingList& findings) {
    checkSelection(node, findings);
    checkOffsets(node, findings);
    const FilePlace referenceSec{{"systemPowerController", "referenceSec"}};
    NodeRules::checkClass(node.at(referenceSec), referenceSec, findings);
}

void checkVariables(const CheckedNode& node, FindingList& findings) {
    if (!node.answers().variables || !node.answers().capabilityHandler) {
        return;
    }
    const bool areRead =
        LibraryProbe::readsCalibration(node.answers().capabilityHandler->productNumber);
    checkNames(node, areRead, findings);
    if (areRead) {
        checkArraySize(node, findings);
        const auto* const array = node.variable(node.calibrationName());
        if (array == nullptr ||
            !findReversedPairs(*array, variablesPlace / node.calibrationName(), findings)) {
            checkPairs(node, findings);
            checkCalibrated(node, findings);
        }
    }
}

} // namespace

const std::vector<std::string>& knownProducts() {
    // The first and third outdoor family and the older radio units. The library hands out no list;
    // a test asks it about each of these.
    static const std::vector<std::string> numbers{
        "QZT 846 57", "QZT 846 001", "QZT 846 003", "QZT35201/1",  "QZT35201/11",  "QZT35201/12",
        "QZT35202/1", "QZT35203/1",  "QZT35204/1",  "QZT35205/1",  "QZT35205/1HP", "QZT35206/1",
        "QZT35207/1", "QZT35208/1",  "QZT35221/1",  "QZT35221/11", "QZT35221/12",  "QZT35222/1",
        "QZT35223/1", "QZT35224/1",  "QZT35225/1",  "QZT35226/1",  "QZT35227/1"};
    return numbers;
}

void NodeRules::checkClass(const nlohmann::json* written, const FilePlace& place,
                           FindingList& findings) {
    if (written == nullptr || !written->is_number_integer()) {
        return;
    }
    const auto number = written->get<std::int32_t>();
    const std::string digits = std::to_string(number);
    const std::string taken = CheckText::of(EReferenceSEC{number});
    std::vector<std::string> meant;
    for (const std::string& text : referenceSecTextForms().texts()) {
        if (text.starts_with(digits)) {
            meant.push_back(text);
        }
    }
    const bool isText = referenceSecTextForms().find(taken).has_value();
    if (isText && !meant.empty() && !taken.starts_with(digits)) {
        findings.add(CheckRules::ClassByNumber, place,
                     "the number " + digits + " is class " + taken + ", not class " +
                         CheckText::list(meant),
                     "write the class as its text, \"" + taken + "\" or \"" + meant.front() + "\"");
    }
}

void NodeRules::check(const CheckedNode& node, FindingList& findings) {
    checkCapabilityHandler(node, findings);
    checkFrameFormats(node, findings);
    checkLink(node, findings);
    checkVariables(node, findings);
}
