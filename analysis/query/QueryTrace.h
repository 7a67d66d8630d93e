#pragma once

#include "CalculationFigures.h"
#include "DeskTrace.h"
#include "Modulation.h"
#include "TraceTrouble.h"

#include <optional>
#include <string>
#include <vector>

/// What the library reported, at trace level 6, while it answered one
/// getMinMaxOutputPowerVsModulationArray(): which rules were in use, and why a modulation got no
/// power or a doubtful one. Troubles, notes and failures are in words, for people.
struct QueryTrace {
    struct Family {
        std::string className; ///< for example "CalculatorKam"
        std::string name;      ///< for example "first outdoor family"
    };

    /// Where the radio's highest modulation comes from, as texts of modulations.
    struct ModulationLimit {
        std::string modem;      ///< highest modulation of the frame format's array
        std::string radio;      ///< what the radio hardware allows; as `modem` if it knows no limit
        bool byProfile = false; ///< the radio's is by its performance profile; else by the market
    };

    using Trouble = TraceTrouble;

    /// The calculation for one modulation. It may go wrong and succeed all the same.
    struct Calculation {
        CalculationFigures figures;
        bool failed = false;
        std::vector<Trouble> troubles = {};

        /// The troubles on one line; empty without one.
        std::string words() const;

        /// The rule of the trouble that the words begin with.
        std::optional<Rule> firstTrouble() const;
    };

    /// Reads the records of one query, in the order written.
    static QueryTrace read(const std::vector<TraceRecord>& records);

    /// The family that a record names as the selected one.
    static std::optional<Family> familyIn(const TraceRecord& record);

    /// The first calculation for a modulation, or null if none was made.
    const Calculation* find(Modulation modulation) const;

    std::optional<Family> family; ///< nothing if the query ended before a family was selected
    bool isAdaptive = false;      ///< whether adaptive modulation was in use
    std::optional<ModulationLimit> modulationLimit; ///< nothing if the query ended before
    std::optional<std::string> rsec; ///< class handed to the calculator; nothing if none was
    std::string failure;             ///< why the query failed as a whole; empty if nothing says so
    std::vector<std::string> notes;  ///< what else was out of the ordinary
    Rule failureRule = Rule::QueryFailed;
    std::vector<Calculation> calculations; ///< in the order made
};
