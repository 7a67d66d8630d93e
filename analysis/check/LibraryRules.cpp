#include "LibraryRules.h"

#include "AnalysisError.h"
#include "CheckRules.h"
#include "CheckText.h"
#include "Decibels.h"
#include "LibraryProbe.h"
#include "PowerTableQuery.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using LibraryProbe::ReadTables;

/// Rows of a table that have one thing in common, by what the tool says about them.
using RowGroups = std::map<std::string, std::vector<std::size_t>>;

/// What the library reads for a DPD version and a market, and what it would read if the radio had
/// every table.
struct AskedTables {
    ReadTables read;
    ReadTables wanted;
};

/// Where the cause of a failed query stands, as far as the codes themselves are the cause.
FilePlace causeOf(const CheckedFrameFormat& frameFormat) {
    FilePlace list = frameFormat.place / "modulationAndCodes";
    const std::optional<std::size_t> highest = frameFormat.highestCode();
    if (!highest) {
        return list;
    }
    return convertCodeToModulation((*frameFormat.codes)[*highest]) == Modulation::UNDEFINED
               ? list / *highest
               : frameFormat.place;
}

/// Says about one frame format what is to be said about it.
class FrameFormatCheck {
public:
    FrameFormatCheck(const CheckedNode& node, const CheckedFrameFormat& frameFormat,
                     const PowerTable& table, const AskedTables& tables, FindingList& findings)
        : m_node(node)
        , m_frameFormat(frameFormat)
        , m_table(table)
        , m_findings(findings)
        , m_read(tables.read)
        , m_wanted(tables.wanted) {}

    void run() {
        checkTables();
        checkNotes();
        if (m_table.failure.empty()) {
            checkRows();
        } else {
            checkFailure();
        }
    }

private:
    void checkTables() {
        if (m_wanted.byPowers == nullptr) {
            m_findings.add(CheckRules::UnknownDpd, m_frameFormat.place / "dpdVersion",
                           CheckText::of(m_table.dpdVersion) + " of " + m_frameFormat.name() +
                               " is unknown, so no query gets a power",
                           "known are 1, 2 and 3");
            return;
        }
        if (m_frameFormat.isConfigured() && m_wanted.byFindPminPmax != nullptr &&
            m_wanted.byFindPminPmax != m_wanted.byPowers) {
            m_findings.add(CheckRules::OtherTableForPmax, m_frameFormat.place / "market",
                           "on " + CheckText::of(m_table.market) + " the powers come from " +
                               m_wanted.byPowers->key + ", but findPminPmax reads " +
                               m_wanted.byFindPminPmax->key,
                           "configure Etsi or Ansi, where both read the same table");
        }
        checkFallback(*m_wanted.byPowers);
    }

    void checkFallback(const PmaxTableName& wanted) {
        if (m_read.byPowers == &wanted) {
            return;
        }
        const FilePlace capabilityHandler{{"capabilityHandler"}};
        if (m_read.byPowers == nullptr) {
            const auto& answer = (*m_node.answers().capabilityHandler).*(wanted.answer);
            m_findings.add(
                CheckRules::TableAbsent,
                answer ? capabilityHandler / wanted.key : capabilityHandler,
                std::string(answer ? "no table answers for " : "the table for ") + askedFor() +
                    (answer ? "" : ", " + std::string(wanted.key) + ", is absent") +
                    ", so no modulation has a Pmax row",
                "give " + std::string(wanted.key) +
                    (answer ? ""
                            : ", or refuse it with {\"result\": 32768} so that the next table "
                              "answers"));
            return;
        }
        const PmaxTableName& read = *m_read.byPowers;
        const bool isSameMarket = std::string_view(read.market) == wanted.market;
        m_findings.add(isSameMarket ? CheckRules::DpdFallback : CheckRules::MarketFallback,
                       capabilityHandler / wanted.key,
                       std::string(wanted.key) + " gives no table, so " + read.key +
                           " answers for " + askedFor(),
                       isSameMarket ? "nothing to do if the radio has no table of its own for it"
                                    : "the limits of one market are those of another: give " +
                                          std::string(wanted.key));
    }

    void checkFailure() {
        const FilePlace cause = causeOf(m_frameFormat);
        const bool isByCodes = !(cause == m_frameFormat.place);
        m_findings.add(CheckRules::ArrayFails, cause,
                       "the array query of " + m_frameFormat.name() + " fails with " +
                           std::to_string(m_table.result) + ": " + m_table.failure,
                       isByCodes ? "list the codes that the frame format carries, and only those"
                                 : "give the variables " + m_node.calibrationName() + " and " +
                                       m_node.calibrationSizeName());
    }

    void checkNotes() {
        for (const std::string& note : m_table.notes) {
            if (note.starts_with("no minimum-power offset")) {
                // A radio without any offset is no surprise.
                if (!m_node.answers().systemPowerController->minOutputPowerOffsets.empty()) {
                    m_findings.add(CheckRules::NoMinimumOffset,
                                   m_frameFormat.place / "channelSpacing", note,
                                   "add the spacing to minOutputPowerOffsets, with 0 if it needs "
                                   "none");
                }
            } else if (note.starts_with("the hardware configuration gives")) {
                m_findings.add(CheckRules::AnswerMissing, m_frameFormat.place,
                               m_frameFormat.name() + ": " + note,
                               "give the answer in place of {\"result\": N}");
            }
        }
    }

    void checkRows() {
        for (std::size_t index = 0; index < m_table.rows.size(); ++index) {
            checkRow(index);
        }
        const std::string table = m_read.byPowers == nullptr ? "" : m_read.byPowers->key;
        report(CheckRules::NoPmaxRow, "cannot be looked up: " + table + " has no row for ",
               "cannot be looked up: " + table + " has no row for ",
               "add the row to " + table + ", or take the code out");
        report(CheckRules::AboveRadio, "gets no power: ", "get no power: ",
               "nothing to do if the modem can do more than the radio");
        report(CheckRules::NoPower, "gets no power: ", "get no power: ",
               "take the code out, or change what the reason names");
        report(CheckRules::DoubtfulPower,
               "gets a doubtful power: ", "get a doubtful power: ", "change what the reason names");
        report(CheckRules::BelowMinimum, "has a maximum power below ",
               "have a maximum power below ",
               "compare minOutputPower and minOutputPowerOffsets with the Pmax tables");
    }

    void checkRow(std::size_t index) {
        const PowerTable::Row& row = m_table.rows[index];
        const std::string& words = row.maxPower ? row.warning : row.reason;
        if (row.isBelowMinimum) {
            m_groups[&CheckRules::BelowMinimum]
                    ["the minimum of " + Decibels::dBm(m_table.minOutputPower.value_or(0))]
                        .push_back(index);
        }
        if (words.empty()) {
            return;
        }
        if (row.modulation == Modulation::UNDEFINED) {
            m_findings.add(CheckRules::NoSuchCode, codePlace(index),
                           "the code " + std::to_string(row.modulationAndCode.code) + " of " +
                               m_frameFormat.name() + " stands for no modulation",
                           "write the code by its text, for example \"16QAM\"");
        } else if (row.trouble == Rule::HardwareLimit) {
            m_groups[&CheckRules::AboveRadio][words].push_back(index);
        } else if (row.trouble == Rule::SelectedMaximum || m_read.byPowers == nullptr) {
            return; // the operator's own limit, or said of the table as a whole
        } else if (!hasPmaxRow(row.modulation)) {
            m_groups[&CheckRules::NoPmaxRow][CheckText::of(row.modulation) +
                                             (row.maxPower ? ", which counts as 0 dBm" : "")]
                .push_back(index);
        } else {
            m_groups[row.maxPower ? &CheckRules::DoubtfulPower : &CheckRules::NoPower][words]
                .push_back(index);
        }
    }

    /// @param ofOne what one code does, @param ofSeveral what several do.
    void report(const CheckRule& rule, const std::string& ofOne, const std::string& ofSeveral,
                const std::string& remedy) {
        for (const auto& [words, indexes] : m_groups[&rule]) {
            std::vector<std::string> codes;
            for (const std::size_t index : indexes) {
                codes.push_back(CheckText::of(m_table.rows[index].modulationAndCode));
            }
            m_findings.add(rule, codePlace(indexes.front()),
                           CheckText::list(codes) + " of " + m_frameFormat.name() + " " +
                               (codes.size() == 1 ? ofOne : ofSeveral) + words,
                           remedy);
        }
    }

    FilePlace codePlace(std::size_t index) const {
        return m_frameFormat.place / "modulationAndCodes" / index;
    }

    bool hasPmaxRow(Modulation modulation) const {
        const std::vector<int>* const table =
            m_read.byPowers == nullptr ? nullptr : m_node.pmaxTable(*m_read.byPowers);
        for (std::size_t index = 0; table != nullptr && index < table->size(); index += 2) {
            if (Modulation{(*table)[index]} == modulation) {
                return true;
            }
        }
        return false;
    }

    std::string askedFor() const {
        return CheckText::of(m_table.dpdVersion) + " on " + CheckText::of(m_table.market);
    }

    const CheckedNode& m_node;
    const CheckedFrameFormat& m_frameFormat;
    const PowerTable& m_table;
    FindingList& m_findings;
    ReadTables m_read;
    ReadTables m_wanted;
    std::map<const CheckRule*, RowGroups> m_groups;
};

} // namespace

std::optional<PowerTable> LibraryRules::powersOf(const CheckedNode& node,
                                                 const CheckedFrameFormat& frameFormat,
                                                 EReferenceSEC rsec) {
    if (isExhausted()) {
        return std::nullopt;
    }
    --m_queriesLeft;
    PowerTableQuery query;
    query.frameFormatId = frameFormat.id;
    query.rsec = rsec;
    try {
        return query.run(node.radioFileWith(frameFormat));
    } catch (const AnalysisError&) {
        return std::nullopt; // a service that does not start has been found by then
    }
}

void LibraryRules::checkFrameFormats(const CheckedNode& node) {
    std::map<std::pair<EDpdVersion, EFrameFormatMarket>, AskedTables> asked;
    for (const CheckedFrameFormat& frameFormat : node.frameFormats()) {
        const std::optional<PowerTable> table = powersOf(node, frameFormat);
        if (!table) {
            return;
        }
        const auto [tables, isNew] =
            asked.try_emplace({table->dpdVersion, table->market}, AskedTables());
        if (isNew) {
            tables->second = {LibraryProbe::tablesOf(*node.answers().capabilityHandler,
                                                     table->dpdVersion, table->market),
                              LibraryProbe::wantedTables(table->dpdVersion, table->market)};
        }
        FrameFormatCheck(node, frameFormat, *table, tables->second, m_findings).run();
    }
}
