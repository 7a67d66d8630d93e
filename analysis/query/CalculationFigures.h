#pragma once

#include "DeskTrace.h"
#include "Modulation.h"
#include "Rule.h"
#include "TraceTrouble.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The figures that the library reported while it calculated the power of one modulation, as they
/// stand in its traces. What it did not report is nothing.
///
/// Powers in hundredths of a dBm, offsets in hundredths of a dB.
class CalculationFigures {
public:
    enum class Outcome {
        Power,         ///< or, for want of a complete log, unknown
        NotApplicable, ///< the calculator does not apply to the modulation
        Failed
    };

    /// A look-up in the radio's Pmax table.
    struct Lookup {
        Modulation modulation = Modulation::UNDEFINED;
        std::optional<Rule> missing; ///< MissingPmaxRow or UnknownDpdVersion
    };

    /// Of the outdoor families that have an offset table.
    struct OffsetFamily {
        std::optional<std::int32_t> pmaxActual;       ///< less the cutback
        std::optional<std::int32_t> selectedMinPower; ///< nothing also if it has no offset
        std::optional<std::int32_t> actualPower;
        std::optional<std::int32_t> pmaxSelectedMin; ///< less the cutback
        std::optional<std::int32_t> pmaxReference;
        std::optional<std::int32_t> rsec; ///< number of the class that was calculated with
    };

    /// Of the outdoor family that caps by the RSEC.
    struct CapFamily {
        std::optional<std::int32_t> uncompensated; ///< Pmax without the compensation
        std::optional<Modulation> cap;             ///< the modulation whose Pmax caps the power
        std::optional<std::int32_t> capped;        ///< the lower of the two
        std::optional<std::int32_t> compensation;  ///< less the cutback
        std::string rsec;                          ///< text of the class
        bool isCapMissing = false;                 ///< no row: the cap counts as 0
        bool isCarried = false; ///< no rule for the class: an earlier power was taken
    };

    /// Of the two radio-unit families.
    struct RadioUnit {
        std::optional<std::int32_t> pmaxActual; ///< less the cutback
        std::optional<std::int32_t> pmaxReference;
        std::optional<std::int32_t> presence; ///< of the booster; 0: none
        std::optional<std::int32_t> offset;
        std::optional<std::int32_t> adjusted; ///< Pmax of the reference and the offset
        std::optional<std::int32_t> withoutBooster;
        std::string rsec;    ///< text of the class
        std::string against; ///< text of the modulation that the offset is against
        std::optional<std::int32_t> boosterAdjustment;
        std::optional<std::int32_t> boosterBandAdjustment;
        std::optional<std::int32_t> withAdjustment;
        std::optional<std::int32_t> withBandAdjustment;
        std::optional<std::int32_t> atInput; ///< less the gain, and at most the booster's input
        std::optional<std::int32_t> bounded; ///< at most Pmax
    };

    /// @param entry the function entry that starts the calculation.
    explicit CalculationFigures(const TraceRecord& entry);

    /// Whether a record is such an entry.
    static bool isStart(const TraceRecord& record);

    /// Takes what a record says. An entry of a calculation that runs inside this one starts an
    /// inner one.
    void read(const TraceRecord& record);

    // As said on entry. Modulations are UNDEFINED if nothing is said.
    bool isFixed = false;
    Modulation modulation = Modulation::UNDEFINED; ///< that is asked for
    Modulation selectedMin = Modulation::UNDEFINED;
    Modulation selectedMax = Modulation::UNDEFINED;
    std::string rsec; ///< text of the class; empty for a fixed modulation
    std::string market;
    std::optional<std::int32_t> dpdVersion;
    std::optional<std::int32_t> compensation; ///< of the channel spacing, without cutback

    std::vector<Lookup> lookups; ///< for the selected, the asked and the reference modulation
    std::uint32_t cutbackCount = 0;
    std::string calculator; ///< class that reported; empty if none did
    OffsetFamily offsetFamily;
    CapFamily capFamily;
    RadioUnit radioUnit;
    std::optional<std::int32_t> maxPower; ///< the last one that was reported
    Outcome outcome = Outcome::Power;
    std::optional<TraceTrouble> refusal; ///< why the outcome is not a power

    /// With a booster a fixed modulation is calculated as two: the selected and the asked one.
    std::vector<CalculationFigures> inner;

private:
    void readOutcome(const TraceRecord& record);
    void readLookup(const TraceRecord& record);
    void readOffsetFamily(const std::string& text);
    void readCapFamily(const TraceRecord& record);
    void readRadioUnit(const std::string& text);
    void readBooster(const std::string& text);
};
